#include "zyr_system_calls.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <grp.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace zyr {

namespace {

struct Call {
    pid_t m_process;
    char m_text[60];
};

struct SharedState {
    static constexpr int MAX_CALLS = 20000;
    static constexpr int MAX_FAULTS = 4;

    struct Fault {
        char m_name[32];
        int m_error;
        std::atomic<int> m_passing;
        std::atomic<int> m_failing;
    };

    std::atomic<bool> m_watching;
    // Of the process that watches. A test in a process of its own has a parent that waits for it meanwhile.
    pid_t m_parent;
    std::atomic<int> m_callCount;
    Call m_calls[MAX_CALLS];
    int m_faultCount;
    Fault m_faults[MAX_FAULTS];
};

SharedState& shared() {
    static SharedState* const state = static_cast<SharedState*>(
        mmap(nullptr, sizeof(SharedState), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    return *state;
}

// The memory is there before anything forks.
[[maybe_unused]] SharedState& s_made = shared();

/// Writes the call down. True when it shall fail; errno is then set.
__attribute__((format(printf, 2, 3))) bool fails(const char* p_name, const char* p_details, ...) {
    SharedState& state = shared();
    const pid_t process = pid_t(syscall(SYS_getpid));
    if (!state.m_watching || process == state.m_parent) {
        return false;
    }
    const int number = state.m_callCount++;
    if (number < SharedState::MAX_CALLS) {
        Call& call = state.m_calls[number];
        const int length = snprintf(call.m_text, sizeof(call.m_text), "%s", p_name);
        va_list arguments;
        va_start(arguments, p_details);
        vsnprintf(call.m_text + length, sizeof(call.m_text) - length, p_details, arguments);
        va_end(arguments);
        call.m_process = process;
    }
    for (int i = 0; i < state.m_faultCount; i++) {
        SharedState::Fault& fault = state.m_faults[i];
        if (strcmp(fault.m_name, p_name) == 0 && fault.m_passing-- <= 0 && fault.m_failing-- > 0) {
            errno = fault.m_error;
            return true;
        }
    }
    return false;
}

std::atomic<int64_t> s_heldBlocks{0};
std::string s_interposedName;
std::function<void()> s_interposed;

void runInterposed(const char* p_name) {
    if (s_interposed && s_interposedName == p_name) {
        std::function<void()> code;
        code.swap(s_interposed);
        code();
    }
}

std::vector<std::string> getCalls(bool p_ofThisProcess) {
    std::vector<std::string> calls;
    const SharedState& state = shared();
    for (int i = 0; i < state.m_callCount && i < SharedState::MAX_CALLS; i++) {
        if ((state.m_calls[i].m_process == getpid()) == p_ofThisProcess) {
            calls.push_back(state.m_calls[i].m_text);
        }
    }
    return calls;
}

} // namespace

SystemCalls::SystemCalls() {
    SharedState& state = shared();
    state.m_callCount = 0;
    state.m_faultCount = 0;
    state.m_parent = pid_t(syscall(SYS_getppid));
    state.m_watching = true;
}

SystemCalls::~SystemCalls() {
    shared().m_watching = false;
    s_interposed = nullptr;
}

void SystemCalls::fail(const std::string& p_name, int p_error, int p_times, int p_passing) {
    SharedState& state = shared();
    SharedState::Fault& fault = state.m_faults[state.m_faultCount++];
    snprintf(fault.m_name, sizeof(fault.m_name), "%s", p_name.c_str());
    fault.m_error = p_error;
    fault.m_passing = p_passing;
    fault.m_failing = p_times;
}

void SystemCalls::interpose(const std::string& p_name, const std::function<void()>& p_code) {
    s_interposedName = p_name;
    s_interposed = p_code;
}

std::vector<std::string> SystemCalls::getCallsOfChildren() const {
    return getCalls(false);
}

std::vector<std::string> SystemCalls::getCallsOfThisProcess() const {
    return getCalls(true);
}

int64_t getHeldBlocks() {
    return s_heldBlocks;
}

} // namespace zyr

using zyr::fails;

// The linker sends the program's calls of x to __wrap_x, and calls of __real_x to x.
extern "C" {

void* __real_malloc(size_t p_size);
void* __real_calloc(size_t p_count, size_t p_size);
void* __real_realloc(void* p_block, size_t p_size);
void __real_free(void* p_block);
pid_t __real_fork();
pid_t __real_setsid();
int __real_setgroups(size_t p_count, const gid_t* p_groups);
int __real_initgroups(const char* p_name, gid_t p_group);
int __real_setgid(gid_t p_gid);
int __real_setuid(uid_t p_uid);
int __real_prctl(int p_option, ...);
pid_t __real_getppid();
int __real_chdir(const char* p_path);
int __real_fcntl(int p_descriptor, int p_command, ...);
int __real_sigaction(int p_signal, const struct sigaction* p_action, struct sigaction* p_old);
long __real_syscall(long p_number, ...);
int __real_close(int p_descriptor);
int __real_dup2(int p_from, int p_to);
int __real_execve(const char* p_path, char* const* p_arguments, char* const* p_environment);
int __real_execv(const char* p_path, char* const* p_arguments);
int __real_pipe2(int* p_ends, int p_flags);
ssize_t __real_read(int p_descriptor, void* p_data, size_t p_size);
long __real_sysconf(int p_name);
int __real_getrlimit(__rlimit_resource_t p_resource, rlimit* p_limit);
int __real_getgrouplist(const char* p_user, gid_t p_group, gid_t* p_groups, int* p_count);
pid_t __real_waitpid(pid_t p_process, int* p_status, int p_options);
int __real_kill(pid_t p_process, int p_signal);
int __real_open(const char* p_path, int p_flags, ...);
int __real_openat(int p_directory, const char* p_path, int p_flags, ...);
int __real_unlinkat(int p_directory, const char* p_path, int p_flags);
int __real_fstat(int p_descriptor, struct stat* p_status);
int __real_fstatat(int p_directory, const char* p_path, struct stat* p_status, int p_flags);
int __real_flock(int p_descriptor, int p_operation);

void* __wrap_malloc(size_t p_size) {
    void* block = __real_malloc(p_size);
    zyr::s_heldBlocks += block != nullptr;
    return block;
}
void* __wrap_calloc(size_t p_count, size_t p_size) {
    void* block = __real_calloc(p_count, p_size);
    zyr::s_heldBlocks += block != nullptr;
    return block;
}
void* __wrap_realloc(void* p_block, size_t p_size) {
    const bool held = p_block != nullptr;
    void* block = __real_realloc(p_block, p_size);
    zyr::s_heldBlocks += int(block != nullptr) - int(held && (block != nullptr || p_size == 0));
    return block;
}
void __wrap_free(void* p_block) {
    zyr::s_heldBlocks -= p_block != nullptr;
    __real_free(p_block);
}

pid_t __wrap_fork() {
    return fails("fork", "%s", "") ? -1 : __real_fork();
}
pid_t __wrap_setsid() {
    return fails("setsid", "%s", "") ? -1 : __real_setsid();
}
int __wrap_setgroups(size_t p_count, const gid_t* p_groups) {
    return fails("setgroups", " %zu", p_count) ? -1 : __real_setgroups(p_count, p_groups);
}
int __wrap_initgroups(const char* p_name, gid_t p_group) {
    return fails("initgroups", " %s %u", p_name, p_group) ? -1 : __real_initgroups(p_name, p_group);
}
int __wrap_setgid(gid_t p_gid) {
    return fails("setgid", " %u", p_gid) ? -1 : __real_setgid(p_gid);
}
int __wrap_setuid(uid_t p_uid) {
    return fails("setuid", " %u", p_uid) ? -1 : __real_setuid(p_uid);
}
int __wrap_prctl(int p_option, ...) {
    va_list arguments;
    va_start(arguments, p_option);
    const unsigned long argument = va_arg(arguments, unsigned long);
    va_end(arguments);
    return fails("prctl", " %d", p_option) ? -1 : __real_prctl(p_option, argument, 0ul, 0ul, 0ul);
}
pid_t __wrap_getppid() {
    return fails("getppid", "%s", "") ? 0 : __real_getppid();
}
int __wrap_chdir(const char* p_path) {
    return fails("chdir", " %s", p_path) ? -1 : __real_chdir(p_path);
}
int __wrap_fcntl(int p_descriptor, int p_command, ...) {
    va_list arguments;
    va_start(arguments, p_command);
    const long argument = va_arg(arguments, long);
    va_end(arguments);
    return fails("fcntl", " %d %d", p_descriptor, p_command) ? -1 : __real_fcntl(p_descriptor, p_command, argument);
}
int __wrap_sigaction(int p_signal, const struct sigaction* p_action, struct sigaction* p_old) {
    return fails("sigaction", " %d", p_signal) ? -1 : __real_sigaction(p_signal, p_action, p_old);
}
long __wrap_syscall(long p_number, ...) {
    va_list arguments;
    va_start(arguments, p_number);
    const unsigned int first = va_arg(arguments, unsigned int);
    const unsigned int last = va_arg(arguments, unsigned int);
    const unsigned int flags = va_arg(arguments, unsigned int);
    va_end(arguments);
    if (p_number == SYS_close_range && fails("close_range", " %u %u", first, last)) {
        return -1;
    }
    return __real_syscall(p_number, first, last, flags);
}
int __wrap_close(int p_descriptor) {
    return fails("close", " %d", p_descriptor) ? -1 : __real_close(p_descriptor);
}
int __wrap_dup2(int p_from, int p_to) {
    return fails("dup2", " %d", p_to) ? -1 : __real_dup2(p_from, p_to);
}
int __wrap_execve(const char* p_path, char* const* p_arguments, char* const* p_environment) {
    return fails("execve", " %s", p_path) ? -1 : __real_execve(p_path, p_arguments, p_environment);
}
int __wrap_execv(const char* p_path, char* const* p_arguments) {
    return fails("execv", " %s", p_path) ? -1 : __real_execv(p_path, p_arguments);
}
int __wrap_pipe2(int* p_ends, int p_flags) {
    return fails("pipe2", "%s", "") ? -1 : __real_pipe2(p_ends, p_flags);
}
ssize_t __wrap_read(int p_descriptor, void* p_data, size_t p_size) {
    return fails("read", "%s", "") ? -1 : __real_read(p_descriptor, p_data, p_size);
}
long __wrap_sysconf(int p_name) {
    return fails("sysconf", " %d", p_name) ? -1 : __real_sysconf(p_name);
}
int __wrap_getrlimit(__rlimit_resource_t p_resource, rlimit* p_limit) {
    return fails("getrlimit", " %d", int(p_resource)) ? -1 : __real_getrlimit(p_resource, p_limit);
}
int __wrap_getgrouplist(const char* p_user, gid_t p_group, gid_t* p_groups, int* p_count) {
    const bool failing = fails("getgrouplist", " %d", *p_count);
    return failing ? -1 : __real_getgrouplist(p_user, p_group, p_groups, p_count);
}
pid_t __wrap_waitpid(pid_t p_process, int* p_status, int p_options) {
    return fails("waitpid", "%s", "") ? -1 : __real_waitpid(p_process, p_status, p_options);
}
int __wrap_kill(pid_t p_process, int p_signal) {
    return fails("kill", " %d %d", p_process, p_signal) ? -1 : __real_kill(p_process, p_signal);
}
int __wrap_open(const char* p_path, int p_flags, ...) {
    va_list arguments;
    va_start(arguments, p_flags);
    const mode_t mode = va_arg(arguments, mode_t);
    va_end(arguments);
    return fails((p_flags & O_CREAT) != 0 ? "create" : "open", " %s", p_path) ? -1 : __real_open(p_path, p_flags, mode);
}
int __wrap_openat(int p_directory, const char* p_path, int p_flags, ...) {
    va_list arguments;
    va_start(arguments, p_flags);
    const mode_t mode = va_arg(arguments, mode_t);
    va_end(arguments);
    zyr::runInterposed("openat");
    return __real_openat(p_directory, p_path, p_flags, mode);
}
int __wrap_unlinkat(int p_directory, const char* p_path, int p_flags) {
    zyr::runInterposed((p_flags & AT_REMOVEDIR) != 0 ? "rmdirat" : "unlinkat");
    return __real_unlinkat(p_directory, p_path, p_flags);
}
int __wrap_fstat(int p_descriptor, struct stat* p_status) {
    return fails("fstat", "%s", "") ? -1 : __real_fstat(p_descriptor, p_status);
}
int __wrap_fstatat(int p_directory, const char* p_path, struct stat* p_status, int p_flags) {
    zyr::runInterposed("fstatat");
    return __real_fstatat(p_directory, p_path, p_status, p_flags);
}
int __wrap_flock(int p_descriptor, int p_operation) {
    return fails("flock", " %d", p_operation) ? -1 : __real_flock(p_descriptor, p_operation);
}
}
