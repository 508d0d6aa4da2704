#include "zyr_common/process/zyr_user_process_launch.h"

#include "zyr_common/containers/zyr_array.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zyr {

namespace {

constexpr size_t ACCOUNT_BUFFER_SIZE = 65536;
constexpr int FIRST_GROUP_ROOM = 16;
constexpr long DEFAULT_DESCRIPTOR_BOUND = 65536;
constexpr rlim_t UNLIMITED_DESCRIPTOR_BOUND = 1048576;
constexpr int EXEC_FAILURE_STATUS = 127;

struct Identity {
    uid_t m_uid = geteuid();
    gid_t m_gid = getegid();
    Array<uint32_t> m_groups;
    bool m_switch = false;
};

/// All that the child needs. It runs between fork and exec in a process that may have had other threads, so it neither
/// allocates nor logs.
struct ChildPlan {
    const char* m_path;
    char* const* m_arguments;
    char* const* m_environment;
    const char* m_workingDirectory;
    int m_inheritedDescriptor;
    int m_reportDescriptor;
    long m_descriptorBound;
    pid_t m_parent;
    const Identity* m_identity; // null: credentials stay
};

/// Closes the descriptors from p_first up to p_end, excluded.
void closeDescriptors(long p_first, long p_end) {
    if (p_first >= p_end) {
        return;
    }
    const unsigned int last = static_cast<unsigned int>(std::min(p_end - 1, long(INT_MAX)));
    if (syscall(SYS_close_range, static_cast<unsigned int>(p_first), last, 0u) == 0) {
        return;
    }
    // Kernels before 5.9.
    for (long i = p_first; i <= long(last); i++) {
        close(static_cast<int>(i));
    }
}

/// Resolves the account before the fork. Gives the reason of a failure, or null.
const char* resolveIdentity(const String& p_userName, Identity& p_identity) {
    Array<char> buffer;
    buffer.resize(ACCOUNT_BUFFER_SIZE);
    passwd record;
    passwd* account = nullptr;
    if (getpwnam_r(p_userName.getData(), &record, buffer.getData(), buffer.getSize(), &account) != 0 ||
        account == nullptr) {
        return "User account is unavailable";
    }
    p_identity.m_uid = account->pw_uid;
    p_identity.m_gid = account->pw_gid;
    if (geteuid() != 0 && geteuid() != p_identity.m_uid) {
        return "Only root can launch another user's desktop";
    }
    int count = FIRST_GROUP_ROOM;
    p_identity.m_groups.resize(count);
    if (getgrouplist(p_userName.getData(), p_identity.m_gid, p_identity.m_groups.getData(), &count) < 0) {
        p_identity.m_groups.resize(count);
        if (getgrouplist(p_userName.getData(), p_identity.m_gid, p_identity.m_groups.getData(), &count) < 0) {
            return "Unable to resolve supplementary groups";
        }
    }
    p_identity.m_groups.resize(count);
    p_identity.m_switch = true;
    return nullptr;
}

/// Points into the strings, which stay where they are.
void appendPointers(Array<char*>& p_vector, const List<String>& p_texts) {
    for (const String& text : p_texts) {
        p_vector.pushBack(const_cast<char*>(text.getData()));
    }
    p_vector.pushBack(nullptr);
}

/// Takes the child from the fork to where only signals and descriptors are left. Gives 0 or the first failure's errno.
int prepareChild(const ChildPlan& p_plan) {
    if (setsid() < 0) {
        return errno;
    }
    if (p_plan.m_identity != nullptr) {
        const Identity& identity = *p_plan.m_identity;
        if (setgroups(identity.m_groups.getSize(), identity.m_groups.getData()) != 0 || setgid(identity.m_gid) != 0 ||
            setuid(identity.m_uid) != 0) {
            return errno;
        }
    }
    // Behind the credentials, since a change of them clears this.
    if (prctl(PR_SET_PDEATHSIG, SIGTERM) != 0) {
        return errno;
    }
    if (getppid() != p_plan.m_parent) {
        return ESRCH;
    }
    if (*p_plan.m_workingDirectory != '\0' && chdir(p_plan.m_workingDirectory) != 0) {
        return errno;
    }
    if (p_plan.m_inheritedDescriptor >= 0 && fcntl(p_plan.m_inheritedDescriptor, F_SETFD, 0) != 0) {
        return errno;
    }
    return 0;
}

[[noreturn]] void runChild(const ChildPlan& p_plan) {
    int32_t code = prepareChild(p_plan);
    struct sigaction action = {};
    action.sa_handler = SIG_DFL;
    for (int signal : {SIGCHLD, SIGTERM, SIGINT, SIGPIPE}) {
        sigaction(signal, &action, nullptr);
    }
    const long low = std::min(p_plan.m_inheritedDescriptor, p_plan.m_reportDescriptor);
    const long high = std::max(p_plan.m_inheritedDescriptor, p_plan.m_reportDescriptor);
    closeDescriptors(3, std::min(low, p_plan.m_descriptorBound));
    closeDescriptors(std::max(low + 1, 3L), std::min(high, p_plan.m_descriptorBound));
    closeDescriptors(std::max(high + 1, 3L), p_plan.m_descriptorBound);
    if (code == 0) {
        execve(p_plan.m_path, p_plan.m_arguments, p_plan.m_environment);
        code = errno;
    }
    // There is nobody to tell when this fails: the parent then reads nothing but the end.
    [[maybe_unused]] const ssize_t written = write(p_plan.m_reportDescriptor, &code, sizeof(code));
    _exit(EXEC_FAILURE_STATUS);
}

/// Reads what the child reports. True when the program runs.
bool readReport(int p_descriptor, int32_t& p_code) {
    ssize_t size = read(p_descriptor, &p_code, sizeof(p_code));
    while (size < 0 && errno == EINTR) {
        size = read(p_descriptor, &p_code, sizeof(p_code));
    }
    close(p_descriptor);
    return size == 0;
}

} // namespace

uint32_t launchUserProcess(const UserProcessOptions& p_options, String& p_error) {
    p_error = "User process launch is unsupported on this platform";

    Identity identity;
    if (!p_options.userName.isEmpty()) {
        const char* reason = resolveIdentity(p_options.userName, identity);
        if (reason != nullptr) {
            p_error = reason;
            return 0;
        }
    }
    const String& path = p_options.executablePath;
    if (!path.isAbsolutePath() || access(path.getData(), X_OK) != 0) {
        p_error = "Executable is unavailable: ";
        p_error += path;
        return 0;
    }
    Array<char*> arguments;
    arguments.pushBack(const_cast<char*>(path.getData()));
    appendPointers(arguments, p_options.arguments);
    Array<char*> environment;
    appendPointers(environment, p_options.environment);

    const bool switchCredentials = geteuid() == 0 && identity.m_switch;
    int report[2];
    if (pipe2(report, O_CLOEXEC) != 0) {
        p_error = strerror(errno);
        return 0;
    }
    // A number that was not open may now be the pipe's own. The child must not keep that: it would hold the pipe open.
    const bool isCallers = p_options.inheritedDescriptor != report[0] && p_options.inheritedDescriptor != report[1];
    const long bound = sysconf(_SC_OPEN_MAX);
    const ChildPlan plan = {path.getData(),
                            arguments.getData(),
                            environment.getData(),
                            p_options.workingDirectory.getData(),
                            isCallers ? p_options.inheritedDescriptor : INT_MAX,
                            report[1],
                            bound >= 0 ? bound : DEFAULT_DESCRIPTOR_BOUND,
                            getpid(),
                            switchCredentials ? &identity : nullptr};
    const pid_t child = fork();
    if (child == 0) {
        runChild(plan);
    }
    const int forkError = errno;
    close(report[1]);
    if (child < 0) {
        p_error = strerror(forkError);
        close(report[0]);
        return 0;
    }
    int32_t code = 0;
    if (readReport(report[0], code)) {
        p_error.clear();
        return static_cast<uint32_t>(child);
    }
    p_error = "Unable to launch ";
    p_error += path;
    p_error += ": ";
    p_error += strerror(code != 0 ? code : EIO);
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
    return 0;
}

uint32_t zyr_launchProcessWithDescriptor(const String& p_executable, const List<String>& p_arguments,
                                         int p_descriptor) {
    constexpr size_t maxArguments = 32;
    if (p_descriptor < 0 || p_arguments.getSize() > maxArguments) {
        return 0;
    }
    char* arguments[maxArguments + 2];
    size_t count = 0;
    arguments[count++] = const_cast<char*>(p_executable.getData());
    for (const String& argument : p_arguments) {
        arguments[count++] = const_cast<char*>(argument.getData());
    }
    arguments[count] = nullptr;
    const char* const environment[] = {"PATH=/usr/sbin:/usr/bin:/sbin:/bin", "HOME=/", "LANG=C.UTF-8", nullptr};

    rlimit limit;
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) {
        return 0;
    }
    const rlim_t bound = limit.rlim_cur == RLIM_INFINITY ? UNLIMITED_DESCRIPTOR_BOUND : limit.rlim_cur;
    const int copy = fcntl(p_descriptor, F_DUPFD_CLOEXEC, 4);
    if (copy < 0) {
        return 0;
    }
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child == 0) {
        if (prctl(PR_SET_PDEATHSIG, SIGTERM) != 0 || getppid() != parent || dup2(copy, 3) < 0) {
            _exit(EXEC_FAILURE_STATUS);
        }
        closeDescriptors(4, static_cast<long>(std::min(bound, rlim_t(INT_MAX))));
        execve(p_executable.getData(), arguments, const_cast<char* const*>(environment));
        _exit(EXEC_FAILURE_STATUS);
    }
    close(copy);
    return child > 0 ? static_cast<uint32_t>(child) : 0;
}

void setProcessEnvironmentValue(List<String>& p_environment, const String& p_name, const String& p_value) {
    const String prefix = p_name + "=";
    List<String> entries;
    for (const String& entry : p_environment) {
        if (strncmp(entry.getData(), prefix.getData(), prefix.getLengthInBytes()) != 0) {
            entries.pushBack(entry);
        }
    }
    entries.pushBack(prefix + p_value);
    p_environment.clear();
    for (const String& entry : entries) {
        p_environment.pushBack(entry);
    }
}

} // namespace zyr
