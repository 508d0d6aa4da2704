#include "zyr_common/platform/zyr_process_identity.h"

#include "zyr_common/memory/zyr_memory.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/text/zyr_string.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <pwd.h>
#include <unistd.h>

namespace zyr {

namespace {

constexpr size_t FIRST_RECORD_BUFFER_SIZE = 16384;
constexpr size_t LARGEST_RECORD_BUFFER_SIZE = 1048576;

// Runs a reentrant look-up in the password database, with a larger buffer as long as the present one is too small, and
// hands the record to p_use while the buffer lives.
template <typename LookUp, typename Use> bool_t useAccountRecord(LookUp p_lookUp, Use p_use) {
    size_t size = FIRST_RECORD_BUFFER_SIZE;
    char* buffer = static_cast<char*>(zyr_malloc(size));
    passwd record = {};
    passwd* found = nullptr;
    int error = p_lookUp(&record, buffer, size, &found);
    while (error == ERANGE && size < LARGEST_RECORD_BUFFER_SIZE) {
        size *= 2;
        zyr_free(buffer);
        buffer = static_cast<char*>(zyr_malloc(size));
        error = p_lookUp(&record, buffer, size, &found);
    }
    bool_t result = error == 0 && found != nullptr && p_use(*found);
    zyr_free(buffer);
    return result;
}

} // namespace

uint32_t zyr_getCurrentProcessId() {
    return static_cast<uint32_t>(getpid());
}

bool_t zyr_getCurrentProcessName(String& p_name) {
    FILE* file = fopen("/proc/self/comm", "rb");
    if (file == nullptr) {
        fprintf(stderr, "ERROR: Unable to open /proc/self/comm\n");
        return 0;
    }
    char line[1024];
    bool_t read = fgets(line, sizeof(line), file) != nullptr;
    fclose(file);
    if (!read) {
        fprintf(stderr, "ERROR: Unable to read process name\n");
        return 0;
    }
    line[strcspn(line, "\n")] = '\0';
    p_name = line;
    return 1;
}

bool_t zyr_getCurrentProcessDirectory(String& p_directory) {
    char path[4096];
    ssize_t size = readlink("/proc/self/exe", path, sizeof(path) - 1);
    if (size < 0) {
        ZYR_LOG_WARN("Unable to read symbolic link /proc/self/exe");
        return 0;
    }
    path[size] = '\0';
    char* separator = strrchr(path, '/');
    if (separator == nullptr) {
        ZYR_LOG_WARN("Unable to get process directory");
        return 0;
    }
    separator[1] = '\0';
    p_directory = path;
    return 1;
}

bool_t zyr_getCurrentWorkingDirectory(String& p_directory) {
    char path[1024];
    if (getcwd(path, sizeof(path)) == nullptr) {
        ZYR_LOG_WARN("Unable to get current working directory. getcwd returned with error");
        return 0;
    }
    p_directory = path;
    p_directory += "/";
    return 1;
}

bool_t zyr_setCurrentWorkingDirectory(const String& p_directory) {
    if (chdir(p_directory.getData()) == 0) {
        ZYR_LOG_WARN("Unable to set current working directory");
        return 0;
    }
    return 1;
}

bool_t zyr_getCurrentProcessUserName(String& p_name) {
    p_name.clear();
    uid_t uid = geteuid();
    return useAccountRecord([uid](passwd* p_record, char* p_buffer, size_t p_size,
                                  passwd** p_found) { return getpwuid_r(uid, p_record, p_buffer, p_size, p_found); },
                            [&p_name](const passwd& p_record) {
                                if (p_record.pw_name == nullptr || p_record.pw_name[0] == '\0') {
                                    return false;
                                }
                                p_name = p_record.pw_name;
                                return true;
                            });
}

bool_t zyr_getUserAccountIdentity(const String& p_account, String& p_identity, long& p_uid) {
    // The account may be the very text that takes the identity.
    const String account = p_account;
    p_identity.clear();
    p_uid = -1;
    if (account.isEmpty()) {
        return 0;
    }
    return useAccountRecord(
        [&account](passwd* p_record, char* p_buffer, size_t p_size, passwd** p_found) {
            return getpwnam_r(account.getData(), p_record, p_buffer, p_size, p_found);
        },
        [&p_identity, &p_uid](const passwd& p_record) {
            p_uid = static_cast<long>(p_record.pw_uid);
            String::newFormatted(p_identity, "%llu", static_cast<unsigned long long>(p_record.pw_uid));
            return true;
        });
}

bool_t zyr_getUserConfigDirectory(String& p_directory) {
    if (zyr_isCurrentProcessRunningAsSystem()) {
        p_directory = "/usr/share/";
        return 1;
    }
    const char* configHome = getenv("XDG_CONFIG_HOME");
    if (configHome != nullptr) {
        p_directory = configHome;
        p_directory += "/";
        return 1;
    }
    const char* home = getenv("HOME");
    if (home == nullptr) {
        const passwd* record = getpwuid(getuid());
        home = record != nullptr ? record->pw_dir : nullptr;
    }
    if (home == nullptr) {
        return 0;
    }
    p_directory = home;
    p_directory += "/.config/";
    return 1;
}

bool_t zyr_isCurrentProcessRunningAsSystem() {
    return geteuid() == 0;
}

bool_t zyr_isCurrentProcessRunningAsDaemon() {
    return 0;
}

} // namespace zyr
