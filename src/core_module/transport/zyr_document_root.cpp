#include "core_module/transport/zyr_document_root.h"

#include "zyr_common/text/zyr_c_locale.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace zyr {

namespace {

struct ContentType {
    const char* m_extension;
    const char* m_type;
};

constexpr ContentType CONTENT_TYPES[] = {
    {"html", "text/html; charset=utf-8"},
    {"css", "text/css; charset=utf-8"},
    {"js", "text/javascript; charset=utf-8"},
    {"mjs", "text/javascript; charset=utf-8"},
    {"json", "application/json"},
    {"map", "application/json"},
    {"webmanifest", "application/manifest+json"},
    {"txt", "text/plain; charset=utf-8"},
    {"xml", "application/xml"},
    {"svg", "image/svg+xml"},
    {"png", "image/png"},
    {"jpg", "image/jpeg"},
    {"jpeg", "image/jpeg"},
    {"gif", "image/gif"},
    {"webp", "image/webp"},
    {"ico", "image/x-icon"},
    {"wasm", "application/wasm"},
    {"woff", "font/woff"},
    {"woff2", "font/woff2"},
    {"mp4", "video/mp4"},
    {"webm", "video/webm"},
};

const char* findContentType(const char* p_name) {
    const char* dot = strrchr(p_name, '.');
    for (const ContentType& entry : CONTENT_TYPES) {
        if (dot != nullptr && strcasecmp_l(dot + 1, entry.m_extension, getCLocale()) == 0) {
            return entry.m_type;
        }
    }
    return "application/octet-stream";
}

int readHexDigit(char p_character) {
    const char lower = static_cast<char>(p_character | 0x20);
    if (p_character >= '0' && p_character <= '9') {
        return p_character - '0';
    }
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

// Neither the directory itself nor the one above it has another name.
bool isServedName(const String& p_name) {
    return !p_name.isEmpty() && p_name.getData()[0] != '.';
}

} // namespace

bool zyr_decodeTargetPath(TextPart p_target, String& p_path) {
    p_path.clear();
    for (size_t i = 0; i < p_target.m_size && p_target.m_data[i] != '?'; i++) {
        char character = p_target.m_data[i];
        if (character == '%') {
            const int high = i + 2 < p_target.m_size ? readHexDigit(p_target.m_data[i + 1]) : -1;
            const int low = i + 2 < p_target.m_size ? readHexDigit(p_target.m_data[i + 2]) : -1;
            if (high < 0 || low < 0) {
                return false;
            }
            character = static_cast<char>(high * 16 + low);
            i += 2;
        } else if (character == '#') {
            return false;
        }
        if (static_cast<unsigned char>(character) < 0x20 || character == 0x7f || character == '\\') {
            return false;
        }
        p_path.pushBackAsciiCharacter(character);
    }
    return true;
}

bool DocumentRoot::open(const String& p_directory, const String& p_indexFile) {
    FileDescriptor root;
    root.set(::open(p_directory.getData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!root.isSet()) {
        return false;
    }
    m_root.swap(root);
    m_indexFile = p_indexFile;
    return true;
}

bool DocumentRoot::find(const String& p_path, ServedFile& p_file) const {
    FileDescriptor directory;
    directory.set(openat(m_root.get(), ".", O_PATH | O_DIRECTORY | O_CLOEXEC));
    String name;
    // From one directory to the next by its bare name, so that no part of the path can lead out.
    const char* rest = p_path.getData() + 1;
    for (const char* slash = strchr(rest, '/'); slash != nullptr; slash = strchr(rest, '/')) {
        name.assignUTF8SubString(rest, static_cast<size_t>(slash - rest));
        if (slash == rest || !isServedName(name)) {
            return false;
        }
        directory.set(openat(directory.get(), name.getData(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (!directory.isSet()) {
            return false;
        }
        rest = slash + 1;
    }
    name = *rest != 0 ? rest : m_indexFile.getData();
    if (!isServedName(name) || strchr(name.getData(), '/') != nullptr) {
        return false;
    }
    // A FIFO must not hold the open up.
    p_file.m_descriptor.set(openat(directory.get(), name.getData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    if (!p_file.m_descriptor.isSet() || fstat(p_file.m_descriptor.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        p_file.m_descriptor.clear();
        return false;
    }
    p_file.m_size = static_cast<uint64_t>(status.st_size);
    p_file.m_contentType = findContentType(name.getData());
    return true;
}

} // namespace zyr
