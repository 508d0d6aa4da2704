#include "storage/failing_calls.h"

#include <cerrno>
#include <cstdarg>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace zyr::test {

namespace {

thread_local int callsLeft = 0;
std::string failedCall;

} // namespace

static bool fails(const char* p_name, int p_error) {
    if (callsLeft == 0 || --callsLeft != 0) {
        return false;
    }
    failedCall = p_name;
    errno = p_error;
    return true;
}

void failCall(int p_number) {
    if (p_number != 0) {
        failedCall.clear();
    }
    callsLeft = p_number;
}

const std::string& getFailedCall() {
    return failedCall;
}

} // namespace zyr::test

#define ZYR_CALL extern "C" __attribute__((visibility("default")))

ZYR_CALL int open(const char* p_path, int p_flags, ...) {
    va_list arguments;
    va_start(arguments, p_flags);
    const unsigned mode = va_arg(arguments, unsigned);
    va_end(arguments);
    return zyr::test::fails("open", EMFILE)
               ? -1
               : static_cast<int>(syscall(SYS_openat, AT_FDCWD, p_path, p_flags, (p_flags & O_CREAT) != 0 ? mode : 0));
}

ZYR_CALL ssize_t read(int p_file, void* p_data, size_t p_size) {
    return zyr::test::fails("read", EIO) ? -1 : syscall(SYS_read, p_file, p_data, p_size);
}

ZYR_CALL ssize_t write(int p_file, const void* p_data, size_t p_size) {
    return zyr::test::fails("write", ENOSPC) ? -1 : syscall(SYS_write, p_file, p_data, p_size);
}

ZYR_CALL int fsync(int p_file) {
    (void)p_file; // The disk of the test's machine is not waited for.
    return zyr::test::fails("fsync", EIO) ? -1 : 0;
}

ZYR_CALL int fstat(int p_file, struct stat* p_status) {
    return zyr::test::fails("fstat", EIO) ? -1 : static_cast<int>(syscall(SYS_fstat, p_file, p_status));
}

ZYR_CALL off_t lseek(int p_file, off_t p_offset, int p_origin) {
    return zyr::test::fails("lseek", EIO) ? -1 : syscall(SYS_lseek, p_file, p_offset, p_origin);
}

ZYR_CALL int rename(const char* p_from, const char* p_to) {
    return zyr::test::fails("rename", EXDEV)
               ? -1
               : static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, p_from, AT_FDCWD, p_to, 0));
}

ZYR_CALL int close(int p_file) {
    const long result = syscall(SYS_close, p_file);
    return zyr::test::fails("close", EIO) ? -1 : static_cast<int>(result);
}
