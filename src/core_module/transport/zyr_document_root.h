/// The files below a directory, as HTTP hands them out. Not thread safe.
#pragma once

#include "core_module/transport/zyr_http_head.h"

#include <unistd.h>
#include <utility>

namespace zyr {

/// The owner of a descriptor.
class FileDescriptor {
public:
    FileDescriptor() = default;
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { clear(); }

    int get() const { return m_descriptor; }
    bool isSet() const { return m_descriptor >= 0; }
    void set(int p_descriptor) {
        clear();
        m_descriptor = p_descriptor;
    }
    void clear() {
        if (m_descriptor >= 0) {
            ::close(m_descriptor);
        }
        m_descriptor = -1;
    }
    void swap(FileDescriptor& p_other) { std::swap(m_descriptor, p_other.m_descriptor); }

private:
    int m_descriptor = -1;
};

/// A file that is open for reading.
struct ServedFile {
    FileDescriptor m_descriptor;
    uint64_t m_size = 0;
    const char* m_contentType = "";
};

/// Decodes the path of a target, without its query. False for what no path of a file can be: control characters,
/// backslashes, a fragment, broken escapes.
bool zyr_decodeTargetPath(TextPart p_target, String& p_path);

class DocumentRoot {
public:
    /// False, with nothing changed, if the directory can't be opened.
    bool open(const String& p_directory, const String& p_indexFile);
    void close() { m_root.clear(); }
    bool isOpen() const { return m_root.isSet(); }
    /// Opens the regular file of a decoded path. False where there is none: names that begin with a dot, symbolic links
    /// and directories count as missing.
    bool find(const String& p_path, ServedFile& p_file) const;

private:
    FileDescriptor m_root;
    String m_indexFile;
};

} // namespace zyr
