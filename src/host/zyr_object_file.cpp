#include "host/zyr_object_file.h"

#include "host/zyr_descriptor.h"
#include "host/zyr_run_error.h"

#include "zyr_common/memory/zyr_memory.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/storage/zyr_load_save.h"
#include "zyr_common/storage/zyr_payload_wrapper.h"
#include "zyr_common/storage/zyr_replacing_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zyr::host {

std::string getDirectoryOf(const std::string& p_path) {
    const size_t slash = p_path.rfind('/');
    return slash == std::string::npos ? "./" : p_path.substr(0, slash + 1);
}

std::string getExtensionOf(const std::string& p_path) {
    const size_t slash = p_path.rfind('/');
    const size_t period = p_path.rfind('.');
    const bool has = period != std::string::npos && (slash == std::string::npos || period > slash);
    return has ? p_path.substr(period + 1) : "";
}

bool isObjectFormat(const std::string& p_format) {
    return p_format == "raw" || p_format == "zbf" || p_format == "xml" || p_format == "json";
}

std::string findObjectFormat(const std::string& p_bytes) {
    if (p_bytes.size() >= c_payloadIdentifierSize) {
        const PayloadFormat format = zyr_getPayloadFormat(reinterpret_cast<const uint8_t*>(p_bytes.data()));
        if (format != PayloadFormat::UNKNOWN) {
            return format == PayloadFormat::ZBF ? "zbf" : "raw";
        }
    }
    const size_t mark = p_bytes.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
    const size_t first = p_bytes.find_first_not_of(" \t\r\n", mark);
    if (first == std::string::npos) {
        return "";
    }
    return p_bytes[first] == '{' ? "json" : p_bytes[first] == '<' ? "xml" : "";
}

namespace {

// A text format may begin with blanks, but not with so many.
constexpr size_t BEGINNING = 65536;

/// Reads on behind the bytes that are there, to the wanted size or the end of the file.
void readUpTo(int p_file, size_t p_size, std::string& p_bytes) {
    // What the heap does not give ends the program otherwise.
    void* const room = zyr_tryMalloc(p_size);
    if (room == nullptr && p_size != 0) {
        throw RunError("there is no memory for its " + std::to_string(p_size) + " bytes");
    }
    zyr_free(room);
    size_t size = p_bytes.size();
    p_bytes.resize(p_size);
    while (size < p_size) {
        const ssize_t count = read(p_file, p_bytes.data() + size, p_size - size);
        if (count < 0 && errno != EINTR) {
            throw RunError(std::string("it cannot be read: ") + strerror(errno));
        }
        if (count == 0) {
            break;
        }
        size += count > 0 ? static_cast<size_t>(count) : 0;
    }
    p_bytes.resize(size);
}

std::string readFile(const std::string& p_path, bool p_isObject) {
    const Descriptor file(open(p_path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status {};
    if (file.get() < 0 || fstat(file.get(), &status) != 0) {
        throw RunError(std::string("it cannot be read: ") + strerror(errno));
    }
    if (!S_ISREG(status.st_mode)) {
        throw RunError("it is no regular file");
    }
    const size_t size = static_cast<size_t>(status.st_size);
    std::string bytes;
    if (p_isObject && size > BEGINNING) {
        readUpTo(file.get(), BEGINNING, bytes);
        if (findObjectFormat(bytes).empty()) {
            return bytes;
        }
    }
    readUpTo(file.get(), size, bytes);
    return bytes;
}

} // namespace

std::string readWholeFile(const std::string& p_path) {
    return readFile(p_path, false);
}

std::string readObjectFile(const std::string& p_path) {
    return readFile(p_path, true);
}

std::string chooseObjectFormat(const std::string& p_path, const std::string& p_bytes, const std::string& p_format) {
    if (!p_format.empty()) {
        return p_format;
    }
    const std::string found = findObjectFormat(p_bytes);
    const std::string extension = getExtensionOf(p_path);
    if (!found.empty() || isObjectFormat(extension)) {
        return found.empty() ? extension : found;
    }
    throw RunError("it holds no saved object");
}

std::vector<std::string> ObjectLog::stop() {
    std::vector<std::string> messages;
    for (const std::string& line : m_data.stopListening()) {
        LogLine parts;
        // The readers tell at the level of information which field or byte they stumbled over.
        if (parseLogLine(line, parts) &&
            (parts.m_level == "ERROR" || parts.m_level == "WARN" || parts.m_message.compare(0, 7, "Unable ") == 0) &&
            std::find(messages.begin(), messages.end(), parts.m_message) == messages.end()) {
            messages.push_back(parts.m_message);
        }
    }
    return messages;
}

Ref<IObject> loadObject(Framework& p_framework, const std::string& p_path, const std::string& p_format,
                        std::vector<std::string>& p_reasons) {
    // A relative path would be joined to the directory, which it holds already.
    char* whole = realpath(p_path.c_str(), nullptr);
    const std::string path = whole != nullptr ? whole : p_path;
    free(whole);
    ObjectLog log(p_framework);
    auto object = Ref<IObject>::adopt(zyr_loadFromFile(path.c_str(), p_format.c_str(), getDirectoryOf(path).c_str()));
    const std::vector<std::string> messages = log.stop();
    if (!object) {
        p_reasons.insert(p_reasons.end(), messages.begin(), messages.end());
    }
    return object;
}

namespace {

/// Gives an empty text, or why the bytes are not in the file. The log knows no errors of the system, so the file is
/// written here.
std::string writeObjectFile(const std::string& p_path, const Array<unsigned char>& p_bytes) {
    ReplacingFile file(zyr_createObject<IOutputStreamFile>());
    errno = 0;
    std::string reason;
    if (!file.open(p_path.c_str())) {
        reason = "Unable to open file: " + p_path + " for writing";
    } else if (!file.write(p_bytes.getData(), p_bytes.getSize()) || !file.finish()) {
        reason = "Unable to write file: " + p_path;
    }
    const int error = errno;
    return reason.empty() || error == 0 ? reason : reason + ": " + strerror(error);
}

} // namespace

bool saveObject(Framework& p_framework, IObject& p_object, const std::string& p_path, const std::string& p_format,
                std::vector<std::string>& p_reasons) {
    const std::string format = p_format.empty() ? getExtensionOf(p_path) : p_format;
    ObjectLog log(p_framework);
    Array<unsigned char> bytes;
    const bool made = zyr_saveToData(&p_object, bytes, format.c_str(), 0, "") != 0;
    const std::vector<std::string> messages = log.stop();
    if (!made) {
        p_reasons.insert(p_reasons.end(), messages.begin(), messages.end());
        return false;
    }
    const std::string reason = writeObjectFile(p_path, bytes);
    if (!reason.empty()) {
        p_reasons.push_back(reason);
    }
    return reason.empty();
}

} // namespace zyr::host
