#include "zyr_common/process/zyr_process_control.h"

#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/process/zyr_command_vector.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

namespace zyr {

uint32_t zyr_launchProcess(const String& p_directory, const String& p_commandLine, const List<String>* p_arguments) {
    const CommandVector command(p_directory, p_commandLine, p_arguments);
    const pid_t child = fork();
    if (child < 0) {
        ZYR_LOG_WARN("fork() failed");
        return 0;
    }
    if (child == 0) {
        execv(command.getPath(), command.getArguments());
        perror("exec failed");
        exit(1);
    }
    ZYR_LOG_INFO("Created new process:%s (PID:%lu)", command.getPath(), static_cast<unsigned long>(child));
    return static_cast<uint32_t>(child);
}

bool_t zyr_terminateProcess(uint32_t p_processId) {
    if (kill(static_cast<pid_t>(p_processId), SIGTERM) == 0) {
        ZYR_LOG_INFO("Process %u terminated successfully", p_processId);
        return 1;
    }
    const int error = errno;
    switch (error) {
    case ESRCH:
        ZYR_LOG_WARN("Unable to close process %u because it doesn't exist", p_processId);
        break;
    case EPERM:
        ZYR_LOG_WARN("Permission denied to kill process %u", p_processId);
        break;
    default:
        ZYR_LOG_WARN("Unable to terminate process %u (errno %d)", p_processId, error);
    }
    return 0;
}

bool_t zyr_checkIfProcessExists(uint32_t p_processId) {
    return kill(static_cast<pid_t>(p_processId), 0) == 0 || errno != ESRCH;
}

// The code that the signal interrupts must find its errno again.
static void reapChildren(int) {
    const int error = errno;
    while (waitpid(-1, nullptr, WNOHANG) > 0) {
    }
    errno = error;
}

int zyr_reapChildrenProcesses() {
    struct sigaction action = {};
    action.sa_handler = reapChildren;
    action.sa_flags = SA_RESTART | SA_NOCLDSTOP;
    sigemptyset(&action.sa_mask);
    return sigaction(SIGCHLD, &action, nullptr);
}

} // namespace zyr
