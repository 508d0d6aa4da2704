#include "zyr_common/process/zyr_process_cleanup.h"

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/platform/zyr_time.h"
#include "zyr_common/text/zyr_string.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zyr {

namespace {

constexpr uint32_t POLL_INTERVAL = 10000; // microseconds
constexpr int GRACE_ROUNDS = 50;
constexpr int CHILDREN_ROUNDS = 100;

constexpr char SESSION_PREFIX[] = "/tmp/zvd-vsession-";
constexpr size_t SESSION_PREFIX_LENGTH = sizeof(SESSION_PREFIX) - 1;
constexpr size_t SESSION_SUFFIX_LENGTH = 6;

constexpr int DIRECTORY_FLAGS = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

bool isSessionPath(const String& p_path) {
    if (p_path.getLengthInBytes() != SESSION_PREFIX_LENGTH + SESSION_SUFFIX_LENGTH ||
        strncmp(p_path.getData(), SESSION_PREFIX, SESSION_PREFIX_LENGTH) != 0) {
        return false;
    }
    for (const char* c = p_path.getData() + SESSION_PREFIX_LENGTH; *c != '\0'; c++) {
        if (!((*c >= 'a' && *c <= 'z') || (*c >= 'A' && *c <= 'Z') || (*c >= '0' && *c <= '9'))) {
            return false;
        }
    }
    return strlen(p_path.getData()) == p_path.getLengthInBytes();
}

/// Which mount a descriptor's file stands on. A bind mount shows the device of its source, so the kernel's number of
/// the mount decides where it can be had.
struct MountPlace {
    explicit MountPlace(int p_descriptor) {
        struct stat status;
        if (fstat(p_descriptor, &status) == 0) {
            m_device = status.st_dev;
        }
        char text[256];
        snprintf(text, sizeof(text), "/proc/self/fdinfo/%d", p_descriptor);
        const int info = open(text, O_RDONLY | O_CLOEXEC);
        if (info < 0) {
            return;
        }
        const ssize_t size = read(info, text, sizeof(text) - 1);
        close(info);
        text[size > 0 ? size : 0] = '\0';
        const char* number = strstr(text, "mnt_id:");
        if (number != nullptr) {
            m_mount = atoi(number + strlen("mnt_id:"));
        }
    }

    bool operator==(const MountPlace& p_other) const {
        return m_mount >= 0 && p_other.m_mount >= 0 ? m_mount == p_other.m_mount : m_device == p_other.m_device;
    }

    dev_t m_device = 0;
    int m_mount = -1;
};

/// Empties a directory. The walk keeps one open descriptor for each level and names everything relative to it, so
/// that no path is resolved twice, whatever is renamed meanwhile. Levels stand on the heap: the depth is the owner's
/// choice.
class DirectoryEraser {
public:
    /// Takes the descriptor over. True when nothing failed.
    static bool erase(int p_descriptor) { return DirectoryEraser(p_descriptor).run(); }

private:
    struct Level {
        DIR* m_stream;
        const dirent* m_entry; // the directory that is walked now; the stream keeps it until it moves on
    };

    explicit DirectoryEraser(int p_descriptor) : m_place(p_descriptor) {
        m_levels.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, ZYR_ALLOC_STEP_POWER_OF_TWO);
        enter(p_descriptor);
    }

    bool run() {
        while (!m_levels.isEmpty()) {
            Level& level = m_levels[m_levels.getSize() - 1];
            errno = 0;
            level.m_entry = readdir(level.m_stream);
            if (level.m_entry == nullptr) {
                note(errno == 0);
                leave();
            } else if (strcmp(level.m_entry->d_name, ".") != 0 && strcmp(level.m_entry->d_name, "..") != 0) {
                eraseEntry(dirfd(level.m_stream), level.m_entry->d_name);
            }
        }
        return m_succeeded;
    }

    void eraseEntry(int p_directory, const char* p_name) {
        struct stat status;
        if (fstatat(p_directory, p_name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
            note(false);
        } else if (!S_ISDIR(status.st_mode)) {
            note(unlinkat(p_directory, p_name, 0) == 0);
        } else {
            enter(openat(p_directory, p_name, DIRECTORY_FLAGS));
        }
    }

    void enter(int p_descriptor) {
        const bool here = p_descriptor >= 0 && MountPlace(p_descriptor) == m_place;
        DIR* stream = here ? fdopendir(p_descriptor) : nullptr;
        if (stream != nullptr) {
            m_levels.pushBack({stream, nullptr});
            return;
        }
        if (p_descriptor >= 0) {
            close(p_descriptor);
        }
        note(false);
    }

    void leave() {
        closedir(m_levels[m_levels.getSize() - 1].m_stream);
        m_levels.resize(m_levels.getSize() - 1);
        if (!m_levels.isEmpty()) {
            const Level& above = m_levels[m_levels.getSize() - 1];
            note(unlinkat(dirfd(above.m_stream), above.m_entry->d_name, AT_REMOVEDIR) == 0);
        }
    }

    void note(bool p_succeeded) { m_succeeded = m_succeeded && p_succeeded; }

    MountPlace m_place;
    Array<Level> m_levels;
    bool m_succeeded = true;
};

} // namespace

void stopUserProcessGroup(uint32_t p_processId) {
    const pid_t leader = static_cast<pid_t>(p_processId);
    // To kill(), the negative of 1 is no group but every process, and a negative number asks for a single process.
    if (leader <= 1 || getpgid(leader) != leader) {
        return;
    }
    kill(-leader, SIGTERM);
    for (int round = 0; round < GRACE_ROUNDS && kill(-leader, 0) == 0; round++) {
        zyr_sleep(POLL_INTERVAL);
    }
    kill(-leader, SIGKILL);
    while (waitpid(leader, nullptr, 0) < 0 && errno == EINTR) {
    }
}

void stopUserSessionChildren() {
    char path[96];
    snprintf(path, sizeof(path), "/proc/self/task/%u/children", static_cast<unsigned int>(getpid()));
    for (int round = 0; round < CHILDREN_ROUNDS; round++) {
        FILE* file = fopen(path, "re");
        if (file == nullptr) {
            return;
        }
        bool found = false;
        unsigned int child = 0;
        while (fscanf(file, "%u", &child) == 1) {
            kill(static_cast<pid_t>(child), SIGKILL);
            found = true;
        }
        fclose(file);
        while (waitpid(-1, nullptr, WNOHANG) > 0) {
        }
        if (!found) {
            return;
        }
        zyr_sleep(POLL_INTERVAL);
    }
}

bool_t removeUserSessionDirectory(const String& p_path) {
    if (!isSessionPath(p_path)) {
        return 0;
    }
    const int descriptor = open(p_path.getData(), DIRECTORY_FLAGS);
    if (descriptor < 0) {
        return errno == ENOENT;
    }
    return DirectoryEraser::erase(descriptor) && rmdir(p_path.getData()) == 0;
}

} // namespace zyr
