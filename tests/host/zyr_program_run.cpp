#include "zyr_program_run.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zyr {

ProgramRun runProgram(const std::string& p_program, const std::vector<std::string>& p_arguments,
                      const std::function<void(int)>& p_onFirstError) {
    std::vector<char*> arguments{const_cast<char*>(p_program.c_str())};
    for (const std::string& argument : p_arguments) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    int out[2];
    int err[2];
    if (pipe2(out, O_CLOEXEC) != 0 || pipe2(err, O_CLOEXEC) != 0) {
        return {};
    }
    const pid_t child = fork();
    if (child == 0) {
        dup2(out[1], STDOUT_FILENO);
        dup2(err[1], STDERR_FILENO);
        execv(p_program.c_str(), arguments.data());
        _exit(127);
    }
    close(out[1]);
    close(err[1]);
    ProgramRun run;
    pollfd streams[2] = {{out[0], POLLIN, 0}, {err[0], POLLIN, 0}};
    int open = 2;
    bool told = false;
    while (open > 0 && poll(streams, 2, -1) > 0) {
        for (int i = 0; i < 2; i++) {
            if (streams[i].fd < 0 || streams[i].revents == 0) {
                continue;
            }
            char buffer[4096];
            const ssize_t count = read(streams[i].fd, buffer, sizeof(buffer));
            if (count <= 0) {
                streams[i].fd = -1;
                open--;
                continue;
            }
            (i == 0 ? run.m_out : run.m_err).append(buffer, size_t(count));
            if (i == 1 && !told && p_onFirstError) {
                told = true;
                p_onFirstError(child);
            }
        }
    }
    close(out[0]);
    close(err[0]);
    int status = 0;
    waitpid(child, &status, 0);
    run.m_exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

} // namespace zyr
