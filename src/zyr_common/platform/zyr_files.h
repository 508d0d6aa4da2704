/// Files and directories. Paths are UTF-8 and relative ones start at the working directory. Safe on any thread.
#pragma once

#include "zyr_common/text/zyr_string.h"
#include "zyr_common/zyr_types.h"

namespace zyr {

/// One entry of a directory listing. Times are whole seconds since 1970.
struct FileDescription {
    String m_path;
    bool_t m_isDirectory = 0;
    uint64_t m_size = 0;
    uint64_t m_statusChangeTime = 0;
    uint64_t m_accessTime = 0;
    uint64_t m_modificationTime = 0;
};

/// Who may use a new directory. The process's umask applies on top.
enum DirectoryPermissionTypeEnum : uint32_t {
    ZYR_DIRECTORY_PERMISSION_PRIVATE = 0,  ///< mode 0700
    ZYR_DIRECTORY_PERMISSION_READABLE = 1, ///< mode 0755
    ZYR_DIRECTORY_PERMISSION_SHARED = 2,   ///< mode 0777
    ZYR_DIRECTORY_PERMISSION_STICKY = 3    ///< mode 03361: the decimal number 1777 is used as it is, and relied upon
};

/// Tells whether the path names a directory.
ZYR_API bool_t zyr_checkIfDirectoryExists(const String& p_path);

/// Tells whether the path names anything, a directory included. Backslashes are taken as slashes.
ZYR_API bool_t zyr_checkIfFileExists(const String& p_path);

/// Removes a file or an empty directory. On failure logs a line and gives false.
ZYR_API bool_t zyr_deleteFile(const String& p_path);

/// Appends the entries of a directory to p_files, in the system's order. Entries that can't be examined are skipped
/// with a line in the log.
/// @param p_recursive  whether to list the files of all directories below in place of those directories
/// @return false when a directory can't be opened; p_files then holds what was found before
ZYR_API bool_t zyr_getFilesListInDirectory(const String& p_path, List<FileDescription>& p_files, bool_t p_recursive);

/// The listing without recursion and without a line in the log, for the log's own work.
bool_t listFilesSilently(const String& p_path, List<FileDescription>& p_files);

/// Makes each level of p_path below p_root, which is prepended as it is: it ends in a separator and exists. Directories
/// that exist are no failure. Any other failure is logged and ends the walk with false.
ZYR_API bool_t zyr_createDirectoryIfMissing(const String& p_root, const String& p_path,
                                            DirectoryPermissionTypeEnum p_permission);

} // namespace zyr
