#include "zyr_common/platform/zyr_files.h"

#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/memory/zyr_report.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <sys/stat.h>

namespace zyr {

namespace {

// The last entry is the decimal number: it gives 03361 and is relied upon.
constexpr mode_t DIRECTORY_MODES[] = {0700, 0755, 0777, 1777};

mode_t getDirectoryMode(DirectoryPermissionTypeEnum p_permission) {
    return p_permission < sizeof(DIRECTORY_MODES) / sizeof(DIRECTORY_MODES[0]) ? DIRECTORY_MODES[p_permission] : 0;
}

// The path as opendir takes it: without the final slash.
String getListedPath(const String& p_path) {
    size_t length = p_path.getLengthInBytes();
    if (length == 0 || p_path.getData()[length - 1] != '/') {
        return p_path;
    }
    String path;
    path.assignUTF8SubString(p_path.getData(), length - 1);
    return path;
}

// Gives the next name that is neither the directory itself nor its parent, null at the end.
const char* readName(DIR* p_directory) {
    const dirent* entry = readdir(p_directory);
    while (entry != nullptr && (strcmp(entry->d_name, ".") == 0 || strcmp(entry->d_name, "..") == 0)) {
        entry = readdir(p_directory);
    }
    return entry != nullptr ? entry->d_name : nullptr;
}

String joinPath(const String& p_directory, const char* p_name) {
    String path = p_directory;
    path.pushBackAsciiCharacter('/');
    path.pushBackUTF8String(p_name);
    return path;
}

bool_t describeFile(const String& p_path, FileDescription& p_description) {
    struct stat status;
    if (stat(p_path.getData(), &status) != 0) {
        return 0;
    }
    p_description.m_path = p_path;
    p_description.m_isDirectory = S_ISDIR(status.st_mode);
    p_description.m_size = static_cast<uint64_t>(status.st_size);
    p_description.m_statusChangeTime = static_cast<uint64_t>(status.st_ctime);
    p_description.m_accessTime = static_cast<uint64_t>(status.st_atime);
    p_description.m_modificationTime = static_cast<uint64_t>(status.st_mtime);
    return 1;
}

} // namespace

bool_t zyr_checkIfDirectoryExists(const String& p_path) {
    struct stat status;
    return stat(p_path.getData(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool_t zyr_checkIfFileExists(const String& p_path) {
    String path = p_path;
    path.setCoherentPathSlashes();
    struct stat status;
    return stat(path.getData(), &status) == 0;
}

bool_t zyr_deleteFile(const String& p_path) {
    if (remove(p_path.getData()) != 0) {
        ZYR_LOG_WARN("Unable to delete file: %s", p_path.getData());
        return 0;
    }
    return 1;
}

bool_t zyr_getFilesListInDirectory(const String& p_path, List<FileDescription>& p_files, bool_t p_recursive) {
    const String path = getListedPath(p_path);
    DIR* directory = opendir(path.getData());
    if (directory == nullptr) {
        ZYR_LOG_WARN("Unable to open directory: %s", path.getData());
        return 0;
    }
    while (const char* name = readName(directory)) {
        FileDescription description;
        const String filePath = joinPath(path, name);
        if (!describeFile(filePath, description)) {
            ZYR_LOG_WARN("Unable to get stat from file path: %s", filePath.getData());
            continue;
        }
        if (!p_recursive || !description.m_isDirectory) {
            p_files.pushBack(description);
        } else if (!zyr_getFilesListInDirectory(filePath, p_files, p_recursive)) {
            ZYR_LOG_WARN("Unable to get file in sub directory: %s", filePath.getData());
            closedir(directory);
            return 0;
        }
    }
    closedir(directory);
    return 1;
}

bool_t listFilesSilently(const String& p_path, List<FileDescription>& p_files) {
    const String path = getListedPath(p_path);
    DIR* directory = opendir(path.getData());
    if (directory == nullptr) {
        return 0;
    }
    while (const char* name = readName(directory)) {
        FileDescription description;
        if (describeFile(joinPath(path, name), description)) {
            p_files.pushBack(description);
        }
    }
    closedir(directory);
    return 1;
}

bool_t zyr_createDirectoryIfMissing(const String& p_root, const String& p_path,
                                    DirectoryPermissionTypeEnum p_permission) {
    List<String> levels;
    p_path.getNestedDirectories(levels);
    for (const String& level : levels) {
        const String directory = p_root + level;
        if (mkdir(directory.getData(), getDirectoryMode(p_permission)) != 0 && errno != EEXIST) {
            ZYR_LOG_WARN("Unable to create directory:%s with error:%d", directory.getData(), errno);
            return 0;
        }
    }
    return 1;
}

} // namespace zyr
