#include "host/doctor/zyr_child_question.h"

#include "host/zyr_child.h"
#include "host/zyr_descriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zyr::host {

namespace {

// What stands before the text that comes through the pipe.
constexpr char ANSWER = 'a';
constexpr char EXCEPTION = 'e';

void writeAll(int p_file, const std::string& p_text) {
    for (size_t done = 0; done < p_text.size();) {
        const ssize_t count = write(p_file, p_text.data() + done, p_text.size() - done);
        if (count < 0 && errno != EINTR) {
            return;
        }
        done += count > 0 ? size_t(count) : 0;
    }
}

[[noreturn]] void answer(int p_pipe, int p_words, pid_t p_parent, const std::function<std::string()>& p_work) {
    becomeChild(p_parent, p_words);
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGCHLD}) {
        std::signal(signal, SIG_DFL);
    }
    std::string text;
    try {
        text = ANSWER + p_work();
    } catch (const std::exception& error) {
        text = EXCEPTION + std::string(error.what());
    }
    writeAll(p_pipe, text);
    _exit(0);
}

/// Reads until the child has ended; false when that takes too long. What the child has started may hold the pipe open,
/// and the child may have closed it long before its end.
bool readAll(pid_t p_child, int p_pipe, unsigned p_seconds, std::string& p_text) {
    using Clock = std::chrono::steady_clock;
    constexpr long OPEN_MILLISECONDS = 100;
    constexpr long CLOSED_MILLISECONDS = 2;
    const Clock::time_point end = Clock::now() + std::chrono::seconds(p_seconds);
    for (bool closed = false;;) {
        const bool ended = hasChildEnded(p_child);
        const long left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        const long slice = ended ? 0 : std::min(left, closed ? CLOSED_MILLISECONDS : OPEN_MILLISECONDS);
        pollfd stream{closed ? -1 : p_pipe, POLLIN, 0};
        const int ready = slice >= 0 ? poll(&stream, 1, int(slice)) : 0;
        if (ready <= 0 && (ended || left <= 0)) {
            return ended;
        }
        if (ready > 0) {
            std::array<char, 4096> buffer{};
            const ssize_t count = read(p_pipe, buffer.data(), buffer.size());
            closed = count == 0 || (count < 0 && errno != EINTR);
            p_text.append(buffer.data(), count > 0 ? size_t(count) : 0);
        }
    }
}

} // namespace

ChildAnswer askChild(unsigned p_seconds, const std::function<std::string()>& p_work) {
    ChildAnswer result;
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        result.m_reason = std::string("no pipe to a child: ") + strerror(errno);
        return result;
    }
    const Descriptor readEnd(ends[0]);
    Descriptor writeEnd(ends[1]);
    const Descriptor words(memfd_create("words", MFD_CLOEXEC));
    // What is still to be written out must not be written twice.
    fflush(nullptr);
    const pid_t parent = getpid();
    const pid_t child = words.get() >= 0 ? fork() : -1;
    if (child == 0) {
        ::close(readEnd.get());
        answer(writeEnd.get(), words.get(), parent, p_work);
    }
    if (child < 0) {
        result.m_reason = std::string("no child: ") + strerror(errno);
        return result;
    }
    writeEnd.close();
    std::string text;
    const bool inTime = readAll(child, readEnd.get(), p_seconds, text);
    if (!inTime) {
        kill(child, SIGKILL);
    }
    const int status = waitForChild(child);
    if (!inTime) {
        result.m_reason = "no answer within " + std::to_string(p_seconds) + " s";
    } else if (WIFSIGNALED(status)) {
        const std::string line = readLastLine(words.get());
        result.m_crashed = true;
        result.m_reason = "it crashed (" + nameEndingSignal(status) + ")" + (line.empty() ? "" : ": " + line);
    } else if (text.empty() || WEXITSTATUS(status) != 0) {
        result.m_reason = describeExit(status);
    } else {
        result.m_isGiven = text[0] == ANSWER;
        (result.m_isGiven ? result.m_text : result.m_reason) = text.substr(1);
    }
    return result;
}

} // namespace zyr::host
