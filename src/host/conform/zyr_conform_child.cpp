#include "host/conform/zyr_conform_child.h"

#include "host/zyr_child.h"
#include "host/zyr_descriptor.h"
#include "host/zyr_plugin_guard.h"
#include "host/zyr_standard_output.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zyr::host {

namespace {

typedef std::chrono::steady_clock Clock;

constexpr rlim_t LARGEST_FILE = rlim_t{64} << 20;

/// What the child says, in memory that outlives it. Zero-filled at first.
struct ConformPage {
    ConformResult m_result;
    bool m_done;
    char m_reason[2048];
    char m_step[256];
};

ConformPage* g_page = nullptr;

void setText(char* p_target, size_t p_size, const std::string& p_text) {
    const size_t size = std::min(p_size - 1, p_text.size());
    memcpy(p_target, p_text.data(), size);
    p_target[size] = 0;
}

void limitMemory() {
    // What the module prints is kept in memory.
    const rlimit output = {LARGEST_FILE, LARGEST_FILE};
    setrlimit(RLIMIT_FSIZE, &output);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    // The sanitizers reserve far more than they use.
    const rlimit memory = {rlim_t{4} << 30, rlim_t{4} << 30};
    setrlimit(RLIMIT_AS, &memory);
#endif
}

void judgeInChild(const ConformCase& p_case, const ConformSubject& p_subject) {
    ConformPage& page = *g_page;
    page.m_result = ConformResult::FAILED;
    try {
        const PluginGuard guard;
        p_case.m_run(p_subject);
        page.m_result = ConformResult::PASSED;
    } catch (const ConformSkip& skip) {
        page.m_result = ConformResult::SKIPPED;
        setText(page.m_reason, sizeof(page.m_reason), skip.what());
    } catch (const std::exception& error) {
        std::string reason = error.what();
        for (size_t line = reason.find("\n  "); line != std::string::npos; line = reason.find("\n  ")) {
            reason.replace(line, 3, ", ");
        }
        setText(page.m_reason, sizeof(page.m_reason), reason);
    }
    page.m_done = true;
}

[[noreturn]] void runChild(const ConformCase& p_case, const ConformSubject& p_subject, int p_output, pid_t p_parent) {
    setpgid(0, 0);
    becomeChild(p_parent, p_output);
    limitMemory();
    const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
    dup2(null, STDIN_FILENO);
    judgeInChild(p_case, p_subject);
    // No destructors: after a crash nothing that the module holds may be touched.
    _exit(0);
}

/// Whether the child has ended in time. Its end closes the pipe, but what it has started may hold that open, and it may
/// have closed it long before.
bool waitForEnd(pid_t p_child, int p_pipe, unsigned p_seconds) {
    constexpr long OPEN_MILLISECONDS = 100;
    constexpr long CLOSED_MILLISECONDS = 2;
    const Clock::time_point deadline = Clock::now() + std::chrono::seconds(p_seconds);
    bool closed = false;
    while (!hasChildEnded(p_child)) {
        const long left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0) {
            return false;
        }
        pollfd descriptor = {closed ? -1 : p_pipe, POLLIN, 0};
        const long slice = std::min(left, closed ? CLOSED_MILLISECONDS : OPEN_MILLISECONDS);
        closed = poll(&descriptor, 1, static_cast<int>(slice)) > 0 || closed;
    }
    return true;
}

std::string describeEnd(int p_status, bool p_timedOut, unsigned p_seconds, const std::string& p_said) {
    const std::string step = g_page->m_step[0] != 0 ? std::string(" in ") + g_page->m_step : "";
    if (p_timedOut) {
        return "it is not done within " + std::to_string(p_seconds) + " s" + step;
    }
    std::string text;
    if (WIFSIGNALED(p_status)) {
        text = "it crashed" + step + " (" + nameEndingSignal(p_status) + ")";
    } else {
        text = describeExit(p_status) + step;
    }
    return p_said.empty() ? text : text + ": " + p_said;
}

} // namespace

void noteConformStep(const std::string& p_step) {
    if (g_page != nullptr) {
        setText(g_page->m_step, sizeof(g_page->m_step), p_step);
    }
}

ConformVerdict runConformCase(const ConformCase& p_case, const ConformSubject& p_subject, unsigned p_seconds) {
    ConformVerdict verdict;
    int ends[2] = {-1, -1};
    void* memory = mmap(nullptr, sizeof(ConformPage), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED || pipe2(ends, O_CLOEXEC) != 0) {
        throw std::runtime_error(std::string("no memory or pipe for a child: ") + strerror(errno));
    }
    g_page = static_cast<ConformPage*>(memory);
    const Descriptor readEnd(ends[0]);
    Descriptor writeEnd(ends[1]);
    const Descriptor output(memfd_create("conform", MFD_CLOEXEC));
    fflush(nullptr);
    const Clock::time_point start = Clock::now();
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error(std::string("no child process: ") + strerror(errno));
    }
    if (child == 0) {
        runChild(p_case, p_subject, output.get(), parent);
    }
    writeEnd.close();
    const bool ended = waitForEnd(child, readEnd.get(), p_seconds);
    // With all that the module has started; the child itself, if its group is not there yet.
    if (kill(-child, SIGKILL) != 0 && !ended) {
        kill(child, SIGKILL);
    }
    const int status = waitForChild(child);
    verdict.m_seconds = std::chrono::duration<double>(Clock::now() - start).count();
    if (ended && g_page->m_done) {
        verdict.m_result = g_page->m_result;
        verdict.m_reason = g_page->m_reason;
    } else {
        verdict.m_reason = describeEnd(status, !ended, p_seconds, maskControls(readLastLine(output.get())));
    }
    munmap(memory, sizeof(ConformPage));
    g_page = nullptr;
    return verdict;
}

} // namespace zyr::host
