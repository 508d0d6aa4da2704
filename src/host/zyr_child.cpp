#include "host/zyr_child.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zyr::host {

void becomeChild(pid_t p_parent, int p_words) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != p_parent) {
        _exit(1);
    }
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    dup2(p_words, STDOUT_FILENO);
    dup2(p_words, STDERR_FILENO);
}

bool hasChildEnded(pid_t p_child) {
    siginfo_t end{};
    return waitid(P_PID, id_t(p_child), &end, WEXITED | WNOHANG | WNOWAIT) != 0 || end.si_pid == p_child;
}

int waitForChild(pid_t p_child) {
    int status = 0;
    while (waitpid(p_child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

std::string readLastLine(int p_words) {
    std::array<char, 2048> tail{};
    const off_t size = lseek(p_words, 0, SEEK_END);
    const off_t start = std::max<off_t>(0, size - off_t(tail.size()));
    const ssize_t count = pread(p_words, tail.data(), tail.size(), start);
    std::string text(tail.data(), count > 0 ? size_t(count) : 0);
    text.erase(text.find_last_not_of("\n ") + 1);
    return text.substr(text.rfind('\n') + 1);
}

std::string nameEndingSignal(int p_status) {
    return std::string("SIG") + sigabbrev_np(WTERMSIG(p_status));
}

std::string describeExit(int p_status) {
    return "it ended the process with status " + std::to_string(WEXITSTATUS(p_status));
}

} // namespace zyr::host
