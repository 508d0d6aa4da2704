#include "core_module/plugins/zyr_plugin_probe.h"

#include "core_module/plugins/zyr_plugin_rehearsal.h"
#include "zyr_common/application/zyr_application_data.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

namespace zyr {

static constexpr size_t MAX_REASON_SIZE = 1024;

// What the child says: whether the module is usable, and the reason why not.
struct ProbeVerdict {
    bool_t m_usable;
    char m_reason[MAX_REASON_SIZE];
};

static bool_t tryPlugin(const char* p_path, RehearsalStep& p_step, String& p_reason) {
    void* handle = dlopen(p_path, RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        const char* error = dlerror();
        p_reason = error != nullptr ? error : "the loader gives no reason";
        return 0;
    }
    PluginExports exports;
    if (!exports.lookUp(handle, p_reason)) {
        return 0;
    }
    exports.m_getVersion();
    if (exports.m_getName() == nullptr || exports.m_getLongName() == nullptr || exports.m_getGUID() == nullptr ||
        exports.m_getDescription() == nullptr || exports.m_getNamespace() == nullptr ||
        exports.m_getDependenciesComponentModules() == nullptr || exports.m_getDependenciesPluginModules() == nullptr) {
        p_reason = "it doesn't tell its identity";
        return 0;
    }
    ApplicationData* applicationData = zyr_getApplicationData();
    if (applicationData != nullptr) {
        // The real start logs the same again.
        applicationData->setLogLevel(static_cast<LogLevelEnum>(0));
        rehearsePlugin(exports, *applicationData, p_step);
    }
    return 1;
}

[[noreturn]] static void runProbe(const char* p_path, RehearsalStep& p_step, int p_pipe, pid_t p_parent) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != p_parent) {
        _exit(1);
    }
    // A crash ends the child quietly: neither the host's handlers nor a core file nor text on its standard output.
    for (int number : {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT, SIGTERM, SIGINT}) {
        signal(number, SIG_DFL);
    }
    const rlimit noCore = {0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    const int null = open("/dev/null", O_RDWR);
    if (null >= 0) {
        dup2(null, STDIN_FILENO);
        dup2(null, STDOUT_FILENO);
    }
    String reason;
    ProbeVerdict verdict = {};
    verdict.m_usable = tryPlugin(p_path, p_step, reason);
    strncpy(verdict.m_reason, reason.getData(), sizeof(verdict.m_reason) - 1);
    // Smaller than PIPE_BUF: it arrives whole or not at all.
    const ssize_t written = write(p_pipe, &verdict, sizeof(verdict));
    _exit(written == static_cast<ssize_t>(sizeof(verdict)) ? 0 : 1);
}

static int64_t getMilliseconds() {
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * int64_t(1000) + now.tv_nsec / 1000000;
}

// Waits for the verdict; false when the child ends without one or its time is over.
static bool readVerdict(int p_pipe, uint32_t p_milliseconds, ProbeVerdict& p_verdict, bool& p_timedOut) {
    const int64_t deadline = getMilliseconds() + p_milliseconds;
    for (;;) {
        const int64_t left = deadline - getMilliseconds();
        pollfd descriptor = {p_pipe, POLLIN, 0};
        const int ready = left > 0 ? poll(&descriptor, 1, static_cast<int>(left)) : 0;
        if (ready == 0) {
            p_timedOut = true;
            return false;
        }
        if (ready < 0 && errno == EINTR) {
            continue;
        }
        const ssize_t size = read(p_pipe, &p_verdict, sizeof(p_verdict));
        if (size < 0 && errno == EINTR) {
            continue;
        }
        return size == static_cast<ssize_t>(sizeof(p_verdict));
    }
}

// Waits for the end of the child and tells how it came about, and in which call.
static void describeEnd(pid_t p_child, bool p_timedOut, uint32_t p_milliseconds, const RehearsalStep& p_step,
                        String& p_reason) {
    char text[512];
    int status = 0;
    pid_t ended;
    do {
        ended = waitpid(p_child, &status, 0);
    } while (ended < 0 && errno == EINTR);
    const char* step = p_step.m_text;
    const char* in = *step != 0 ? " in " : "";
    if (p_timedOut) {
        snprintf(text, sizeof(text), "it doesn't answer within %u ms%s%s", p_milliseconds, in, step);
    } else if (ended == p_child && WIFSIGNALED(status) && *step != 0) {
        snprintf(text, sizeof(text), "it crashed in %s (SIG%s)", step, sigabbrev_np(WTERMSIG(status)));
    } else if (ended == p_child && WIFSIGNALED(status)) {
        snprintf(text, sizeof(text), "loading it ends the process with signal %d (%s)", WTERMSIG(status),
                 strsignal(WTERMSIG(status)));
    } else if (ended == p_child) {
        snprintf(text, sizeof(text), "%s ends the process with status %d%s%s", *step != 0 ? "it" : "loading it",
                 WEXITSTATUS(status), in, step);
    } else { // Somebody else has reaped the child.
        snprintf(text, sizeof(text), "%s ends the process%s%s", *step != 0 ? "it" : "loading it", in, step);
    }
    p_reason = text;
}

bool_t probePlugin(const String& p_path, String& p_reason, uint32_t p_milliseconds) {
    int pipes[2];
    if (pipe2(pipes, O_CLOEXEC) != 0) {
        p_reason = "no pipe to try it: ";
        p_reason += strerror(errno);
        return 0;
    }
    void* shared = mmap(nullptr, sizeof(RehearsalStep), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED) {
        p_reason = "no memory to try it: ";
        p_reason += strerror(errno);
        close(pipes[0]);
        close(pipes[1]);
        return 0;
    }
    RehearsalStep& step = *static_cast<RehearsalStep*>(shared);
    // A module that calls exit() must not write out once more what this process has yet to write.
    fflush(nullptr);
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child < 0) {
        p_reason = "no process to try it: ";
        p_reason += strerror(errno);
        close(pipes[0]);
        close(pipes[1]);
        munmap(shared, sizeof(RehearsalStep));
        return 0;
    }
    if (child == 0) {
        close(pipes[0]);
        runProbe(p_path.getData(), step, pipes[1], parent);
    }
    close(pipes[1]);
    ProbeVerdict verdict;
    bool timedOut = false;
    const bool answered = readVerdict(pipes[0], p_milliseconds, verdict, timedOut);
    close(pipes[0]);
    if (timedOut) {
        kill(child, SIGKILL);
    }
    String end;
    describeEnd(child, timedOut, p_milliseconds, step, end);
    munmap(shared, sizeof(RehearsalStep));
    if (!answered) {
        p_reason = end;
        return 0;
    }
    verdict.m_reason[sizeof(verdict.m_reason) - 1] = 0;
    p_reason = verdict.m_reason;
    return verdict.m_usable;
}

} // namespace zyr
