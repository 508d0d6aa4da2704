#include "host/zyr_command_line.h"

#include "zyr_common/platform/zyr_process_identity.h"
#include "zyr_common/process/zyr_login_session.h"
#include "zyr_common/process/zyr_user_process_launch.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <sys/wait.h>
#include <unistd.h>

namespace zyr::host {

namespace {

// What the signal handler knows. A signal that comes before the program runs is kept until it does.
constexpr int NOT_YET = 0;
constexpr int ENDED = -1;
std::atomic<int> s_group{NOT_YET};
std::atomic<bool> s_terminateEarly{false};
std::atomic<bool> s_interruptEarly{false};
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

void forwardSignal(int p_signal) {
    const int error = errno;
    const int group = s_group;
    if (group > 0) {
        kill(-group, p_signal);
    } else if (group == NOT_YET) {
        (p_signal == SIGTERM ? s_terminateEarly : s_interruptEarly) = true;
    }
    errno = error;
}

void installForwarding() {
    struct sigaction action = {};
    action.sa_handler = forwardSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGINT, &action, nullptr);
    // An ignored SIGCHLD, which a caller may leave behind, would swallow the program's status.
    signal(SIGCHLD, SIG_DFL);
}

/// Waits for the end of the program and gives its exit status as a shell does: 128 and the signal that ended it.
int waitForProgram(uint32_t p_processId) {
    s_group = static_cast<int>(p_processId);
    if (s_terminateEarly.exchange(false)) {
        forwardSignal(SIGTERM);
    }
    if (s_interruptEarly.exchange(false)) {
        forwardSignal(SIGINT);
    }
    // Until it is waited for, its number can't be that of another group.
    siginfo_t info;
    while (waitid(P_PID, p_processId, &info, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
    }
    s_group = ENDED;
    int status = 0;
    while (waitpid(static_cast<pid_t>(p_processId), &status, 0) < 0 && errno == EINTR) {
    }
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

/// The path of a program that is named without a slash, by the PATH of its own environment; else the name as it is.
String findProgram(const std::string& p_name, const List<String>& p_environment) {
    if (p_name.find('/') != std::string::npos) {
        return String(p_name);
    }
    std::string path;
    for (const String& entry : p_environment) {
        if (strncmp(entry.getData(), "PATH=", 5) == 0) {
            path = entry.getData() + 5;
        }
    }
    for (size_t start = 0; start < path.size();) {
        const size_t end = std::min(path.find(':', start), path.size());
        const std::string candidate = path.substr(start, end - start) + "/" + p_name;
        if (candidate[0] == '/' && access(candidate.c_str(), X_OK) == 0) {
            return String(candidate);
        }
        start = end + 1;
    }
    return String(p_name);
}

int fail(const String& p_reason) {
    fprintf(stderr, "zyr-host: %s\n", p_reason.getData());
    return EXIT_RUN_FAILED;
}

} // namespace

int runLaunch(const LaunchOptions& p_options) {
    UserProcessOptions options;
    options.userName = String(p_options.m_user);
    options.workingDirectory = String(p_options.m_directory);
    for (size_t i = 1; i < p_options.m_command.size(); i++) {
        options.arguments.pushBack(String(p_options.m_command[i]));
    }
    // The session stands until the program has ended.
    UserLoginSession session;
    String error;
    if (p_options.m_user.empty() && p_options.m_service.empty()) {
        for (char** entry = environ; *entry != nullptr; entry++) {
            options.environment.pushBack(*entry);
        }
    } else {
        String user = options.userName;
        if (user.isEmpty() && !zyr_getCurrentProcessUserName(user)) {
            return fail("this process's user has no account");
        }
        if (!session.open(user, String(p_options.m_service), error)) {
            return fail(error);
        }
        session.getEnvironment(options.environment);
    }
    options.executablePath = findProgram(p_options.m_command[0], options.environment);

    installForwarding();
    // On the main thread, which lives as long as the process: the program ends with the thread that launched it.
    const uint32_t processId = launchUserProcess(options, error);
    return processId != 0 ? waitForProgram(processId) : fail(error);
}

} // namespace zyr::host
