#include "zyr_common/process/zyr_session_lookup.h"

#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/platform/zyr_process_identity.h"
#include "zyr_common/text/zyr_string.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zyr {

namespace {

struct DisplayManager {
    const char* m_command;
    const char* m_account;
};

constexpr DisplayManager DISPLAY_MANAGERS[] = {
    {"pidof gdm > /dev/null 2>&1", "gdm"},   {"pidof gdm3 > /dev/null 2>&1", "gdm"},
    {"pidof sddm > /dev/null 2>&1", "sddm"}, {"pidof lightdm > /dev/null 2>&1", "lightdm"},
    {"pidof xdm > /dev/null 2>&1", "xdm"},   {"pidof lxdm > /dev/null 2>&1", "lxdm"},
    {"pidof mdm > /dev/null 2>&1", "mdm"},   {"pidof kdm > /dev/null 2>&1", "kdm"},
    {"pidof slim > /dev/null 2>&1", "slim"}, {"pidof entrance > /dev/null 2>&1", "entrance"},
    {"pidof wdm > /dev/null 2>&1", "wdm"},
};

constexpr unsigned int AMD_VENDOR = 0x1002;

// One read of the file at p_path, ended by a zero byte. False when there is nothing.
template <size_t Size> bool readStart(const char* p_path, char (&p_text)[Size], size_t& p_length) {
    int descriptor = open(p_path, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        return false;
    }
    ssize_t length = read(descriptor, p_text, Size - 1);
    close(descriptor);
    if (length <= 0) {
        return false;
    }
    p_length = static_cast<size_t>(length);
    p_text[p_length] = '\0';
    return true;
}

// The process of an entry of /proc; 0 for an entry of another kind.
int parseProcessId(const dirent& p_entry) {
    if (p_entry.d_type != DT_DIR || p_entry.d_name[strspn(p_entry.d_name, "0123456789")] != '\0') {
        return 0;
    }
    long number = strtol(p_entry.d_name, nullptr, 10);
    return number <= INT32_MAX ? static_cast<int>(number) : 0;
}

char* getEnvVarFromProcess(int p_process, const char* p_name) {
    char path[64];
    snprintf(path, sizeof(path), "/proc/%d/environ", p_process);
    char text[8192];
    size_t length = 0;
    if (!readStart(path, text, length)) {
        return nullptr;
    }
    size_t nameLength = strlen(p_name);
    for (const char* entry = text; entry < text + length; entry += strlen(entry) + 1) {
        if (strncmp(entry, p_name, nameLength) == 0 && entry[nameLength] == '=') {
            return strdup(entry + nameLength + 1);
        }
    }
    return nullptr;
}

// Tells whether the file at directory + name begins with the given text.
bool fileBeginsWith(const String& p_directory, const char* p_name, const char* p_text) {
    char text[32];
    size_t length = 0;
    return readStart((p_directory + p_name).getData(), text, length) && strncmp(text, p_text, strlen(p_text)) == 0;
}

bool isVendor(const String& p_path, unsigned int p_vendor) {
    FILE* file = fopen(p_path.getData(), "re");
    if (file == nullptr) {
        return false;
    }
    unsigned int vendor = 0;
    bool found = fscanf(file, "%x", &vendor) == 1 && vendor == p_vendor;
    fclose(file);
    return found;
}

} // namespace

bool_t zyr_userOwnsSession(const String& p_account, uint32_t p_session) {
    if (p_session >= 0xFFFFFFFE) {
        return 0;
    }
    String identity;
    long uid = -1;
    return zyr_getUserAccountIdentity(p_account, identity, uid) && uid == static_cast<long>(p_session);
}

bool_t zyr_getSingleActiveAMDOutput(String& p_output) {
    p_output.clear();
    DIR* directory = opendir("/sys/class/drm");
    if (directory == nullptr) {
        return 0;
    }
    size_t numOfConnected = 0;
    bool enabled = false;
    bool isAmd = false;
    while (const dirent* entry = readdir(directory)) {
        // Connectors only: cards have no "-".
        const char* separator = strchr(entry->d_name, '-');
        if (strncmp(entry->d_name, "card", 4) != 0 || separator == nullptr) {
            continue;
        }
        String connector("/sys/class/drm/");
        connector += entry->d_name;
        if (!fileBeginsWith(connector, "/status", "connected")) {
            continue;
        }
        numOfConnected++;
        enabled = fileBeginsWith(connector, "/enabled", "enabled");
        p_output = entry->d_name;
        String vendorPath("/sys/class/drm/");
        vendorPath.pushBackUTF8SubString(entry->d_name, static_cast<size_t>(separator - entry->d_name));
        vendorPath += "/device/vendor";
        isAmd = isVendor(vendorPath, AMD_VENDOR);
    }
    closedir(directory);
    if (numOfConnected == 1 && enabled && isAmd) {
        return 1;
    }
    p_output.clear();
    return 0;
}

bool_t detectDisplayManagerUserUid(uid_t& p_uid) {
    for (const DisplayManager& manager : DISPLAY_MANAGERS) {
        if (system(manager.m_command) != 0) {
            continue;
        }
        const passwd* record = getpwnam(manager.m_account);
        if (record == nullptr) {
            return 0;
        }
        p_uid = record->pw_uid;
        ZYR_LOG_INFO("[Greeter] Using DM=%s, UID=%d, DISPLAY=%s, XAUTHORITY=%s", manager.m_account,
                     static_cast<int>(p_uid), getenv("DISPLAY"), getenv("XAUTHORITY"));
        return 1;
    }
    return 0;
}

char* getEnvVarFromUid(uid_t p_uid, const char* p_name) {
    DIR* directory = opendir("/proc");
    if (directory == nullptr) {
        return nullptr;
    }
    char* value = nullptr;
    while (value == nullptr) {
        const dirent* entry = readdir(directory);
        if (entry == nullptr) {
            break;
        }
        int process = parseProcessId(*entry);
        if (process <= 0) {
            continue;
        }
        char path[32];
        snprintf(path, sizeof(path), "/proc/%d", process);
        struct stat status;
        if (stat(path, &status) == 0 && status.st_uid == p_uid) {
            ZYR_LOG_INFO("pid:%d associated to uid:%d", process, static_cast<int>(p_uid));
            value = getEnvVarFromProcess(process, p_name);
        }
    }
    closedir(directory);
    return value;
}

} // namespace zyr
