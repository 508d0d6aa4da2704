#include "host/zyr_plugin_guard.h"

#include <atomic>
#include <cerrno>
#include <csetjmp>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <pthread.h>
#include <sys/mman.h>
#include <unistd.h>

namespace zyr::host {

namespace {

constexpr int CRASH_SIGNALS[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};
constexpr int NUM_OF_SIGNALS = 5;
constexpr unsigned int COMPLETION_SECONDS = 10;
constexpr size_t MAX_CALLS = 64;

/// A call that is under way, where a thread that crashes can find it.
struct Site {
    const PluginCall* m_call = nullptr;
    pthread_t m_thread{};
    sigjmp_buf m_return;
    volatile sig_atomic_t m_signal = 0;
};

// The handler reads these. A site stands in the table as long as its call lasts.
std::atomic<Site*> g_sites[MAX_CALLS];
std::atomic<bool> g_crashed{false};
std::atomic<bool> g_guarded{false};
static_assert(std::atomic<Site*>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);
struct sigaction g_previous[NUM_OF_SIGNALS];

const char* nameOf(int p_signal) {
    switch (p_signal) {
    case SIGSEGV:
        return "SIGSEGV";
    case SIGBUS:
        return "SIGBUS";
    case SIGFPE:
        return "SIGFPE";
    case SIGILL:
        return "SIGILL";
    default:
        return "SIGABRT";
    }
}

Site* findSite(bool p_ofThisThread) {
    for (std::atomic<Site*>& place : g_sites) {
        Site* site = place.load();
        if (site != nullptr && (!p_ofThisThread || pthread_equal(site->m_thread, pthread_self()) != 0)) {
            return site;
        }
    }
    return nullptr;
}

/// Nothing but what is allowed in a handler: no heap, no locks, no streams.
void onCrash(int p_signal) {
    Site* site = findSite(true);
    if (site != nullptr) {
        if (site->m_signal == 0) {
            site->m_signal = p_signal;
        }
        g_crashed = true;
        siglongjmp(site->m_return, 1);
    }
    site = findSite(false);
    if (site != nullptr && !g_crashed.exchange(true)) {
        // A thread of the plug-in's own. Its call comes to an end in the thread that made it; this one goes no further.
        site->m_signal = p_signal;
        pthread_kill(site->m_thread, p_signal);
        for (;;) {
            pause();
        }
    }
    if (g_crashed) {
        // While the files were being completed.
        _exit(1);
    }
    signal(p_signal, SIG_DFL);
    raise(p_signal);
}

[[noreturn]] void onCompletionTimeout(int) {
    static const char text[] = "zyr-host: the files could not be completed after the crash\n";
    const ssize_t ignored = write(STDERR_FILENO, text, sizeof(text) - 1);
    static_cast<void>(ignored);
    _exit(1);
}

/// A crash for want of stack needs another stack for its handler.
class SignalStack {
public:
    SignalStack() {
        m_memory = mmap(nullptr, SIZE, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        stack_t stack{};
        stack.ss_sp = m_memory;
        stack.ss_size = SIZE;
        if (m_memory != MAP_FAILED) {
            sigaltstack(&stack, nullptr);
        }
    }
    ~SignalStack() {
        stack_t none{};
        none.ss_flags = SS_DISABLE;
        sigaltstack(&none, nullptr);
        if (m_memory != MAP_FAILED) {
            munmap(m_memory, SIZE);
        }
    }
    SignalStack(const SignalStack&) = delete;
    SignalStack& operator=(const SignalStack&) = delete;

private:
    static constexpr size_t SIZE = 65536;
    void* m_memory;
};

/// A site in the table.
class SiteEntry {
public:
    explicit SiteEntry(Site& p_site) {
        for (std::atomic<Site*>& place : g_sites) {
            Site* expected = nullptr;
            if (place.compare_exchange_strong(expected, &p_site)) {
                m_place = &place;
                return;
            }
        }
    }
    ~SiteEntry() {
        if (m_place != nullptr) {
            *m_place = nullptr;
        }
    }
    SiteEntry(const SiteEntry&) = delete;
    SiteEntry& operator=(const SiteEntry&) = delete;

private:
    std::atomic<Site*>* m_place = nullptr;
};

std::string describe(const PluginCall& p_call, const std::string& p_did) {
    std::string text = "plug-in " + std::string(p_call.m_plugin) + " " + p_did + " in " + p_call.m_call;
    if (p_call.m_frame != 0) {
        text += " of frame " + std::to_string(p_call.m_frame);
    }
    return text;
}

std::string classLine(const PluginCall& p_call) {
    return "\n  class " + std::string(p_call.m_class);
}

} // namespace

PluginGuard::PluginGuard() {
    struct sigaction action {};
    action.sa_handler = onCrash;
    action.sa_flags = SA_ONSTACK | SA_NODEFER;
    for (int i = 0; i < NUM_OF_SIGNALS; i++) {
        sigaction(CRASH_SIGNALS[i], &action, &g_previous[i]);
    }
    g_crashed = false;
    g_guarded = true;
}

PluginGuard::~PluginGuard() {
    g_guarded = false;
    for (int i = 0; i < NUM_OF_SIGNALS; i++) {
        // After a crash what is left of the process may fall over; it has said what there is to say.
        if (!g_crashed) {
            sigaction(CRASH_SIGNALS[i], &g_previous[i], nullptr);
        }
    }
}

void callPlugin(const PluginCall& p_call, const std::function<void()>& p_work) {
    if (!g_guarded) {
        p_work();
        return;
    }
    thread_local SignalStack stack;
    static_cast<void>(stack);
    Site site;
    site.m_call = &p_call;
    site.m_thread = pthread_self();
    if (sigsetjmp(site.m_return, 1) == 0) {
        const SiteEntry entry(site);
        try {
            p_work();
        } catch (const std::exception& error) {
            throw PluginError(describe(p_call, "threw an exception") + ": " + error.what() + classLine(p_call));
        } catch (...) {
            throw PluginError(describe(p_call, "threw an exception") + classLine(p_call));
        }
        return;
    }
    // The jump has left the entry behind.
    for (std::atomic<Site*>& place : g_sites) {
        Site* expected = &site;
        place.compare_exchange_strong(expected, nullptr);
    }
    struct sigaction timeout {};
    timeout.sa_handler = onCompletionTimeout;
    sigaction(SIGALRM, &timeout, nullptr);
    alarm(COMPLETION_SECONDS);
    throw PluginError(describe(p_call, "crashed") + " (" + nameOf(site.m_signal) + ")" + classLine(p_call));
}

std::string describeFault(const PluginCall& p_call, const std::string& p_reason) {
    return describe(p_call, "handed out " + p_reason) + classLine(p_call);
}

} // namespace zyr::host
