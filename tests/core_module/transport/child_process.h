/// A program that talks to a transport while the test drives it.
#pragma once

#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace zyr {

/// Its standard output and error come as one text; its standard input has the given text and then ends.
class ChildProcess {
public:
    ChildProcess(const std::vector<std::string>& p_arguments, const std::string& p_input = "") {
        int output[2];
        int input[2];
        if (pipe2(output, O_CLOEXEC) != 0 || pipe2(input, O_CLOEXEC) != 0) {
            abort();
        }
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, input[0], 0);
        posix_spawn_file_actions_adddup2(&actions, output[1], 1);
        posix_spawn_file_actions_adddup2(&actions, output[1], 2);
        std::vector<char*> arguments;
        for (const std::string& argument : p_arguments) {
            arguments.push_back(const_cast<char*>(argument.c_str()));
        }
        arguments.push_back(nullptr);
        m_isStarted = posix_spawnp(&m_pid, arguments[0], &actions, nullptr, arguments.data(), environ) == 0;
        posix_spawn_file_actions_destroy(&actions);
        ::close(input[0]);
        ::close(output[1]);
        m_output = output[0];
        m_input = input[1];
        fcntl(m_output, F_SETFL, O_NONBLOCK);
        // A program that has ended already must not end the test.
        if (m_isStarted && !p_input.empty()) {
            m_isStarted = ::write(m_input, p_input.data(), p_input.size()) == static_cast<ssize_t>(p_input.size());
        }
    }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess() {
        closeInput();
        if (m_pid > 0) {
            kill(m_pid, SIGKILL);
            waitpid(m_pid, nullptr, 0);
        }
        ::close(m_output);
    }

    bool isStarted() const { return m_isStarted; }
    /// Readable when there is something to read, or it has ended.
    int getDescriptor() const { return m_output; }
    void closeInput() {
        if (m_input >= 0) {
            ::close(m_input);
        }
        m_input = -1;
    }
    /// Reads on; whether it has ended.
    bool hasEnded() {
        char bytes[4096];
        ssize_t count = 0;
        while ((count = ::read(m_output, bytes, sizeof(bytes))) > 0) {
            m_text.append(bytes, static_cast<size_t>(count));
        }
        if (count == 0 && m_pid > 0) {
            int status = 0;
            waitpid(m_pid, &status, 0);
            m_exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
            m_pid = -1;
        }
        return count == 0;
    }
    const std::string& getText() const { return m_text; }
    int getExitCode() const { return m_exitCode; }

private:
    pid_t m_pid = -1;
    bool m_isStarted = false;
    int m_output = -1;
    int m_input = -1;
    int m_exitCode = -1;
    std::string m_text;
};

} // namespace zyr
