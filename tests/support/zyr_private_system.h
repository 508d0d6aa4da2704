/// A child process of the test in which users, mounts and directories can be changed without a trace.
#pragma once

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zyr {

/// Runs the code in a child. Its expectations count for the test; their texts go to the standard output.
template <typename Code> void runInChild(Code p_code) {
    fflush(stdout);
    fflush(stderr);
    const pid_t child = fork();
    if (child == 0) {
        p_code();
        fflush(stdout);
        fflush(stderr);
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        ADD_FAILURE() << "the child ended with status " << status;
    }
}

/// Whether this machine lets the test have mounts of its own: root, and the right to make a namespace.
inline bool canMountPrivately() {
    const pid_t child = fork();
    if (child == 0) {
        _exit(unshare(CLONE_NEWNS) == 0 && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// Skips a test that changes mounts or identities where that can't be done.
#define ZYR_NEEDS_PRIVATE_SYSTEM()                                                                                     \
    if (!::zyr::canMountPrivately()) {                                                                                 \
        GTEST_SKIP() << "only root can have mounts and accounts of its own";                                           \
    }

/// Mounts made from now on are seen by this process and its children only. For children of a test.
inline void enterPrivateMounts() {
    ASSERT_EQ(unshare(CLONE_NEWNS), 0);
    ASSERT_EQ(mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr), 0);
}

/// Lets lines follow the text of a system file, for this process and its children, behind enterPrivateMounts().
inline void appendToSystemFile(const std::string& p_path, const std::string& p_lines) {
    char copy[] = "/tmp/zyr-test-file-XXXXXX";
    const int descriptor = mkstemp(copy);
    ASSERT_GE(descriptor, 0);
    close(descriptor);
    {
        std::ifstream present(p_path, std::ios::binary);
        std::ofstream(copy, std::ios::binary) << present.rdbuf() << p_lines;
    }
    EXPECT_EQ(chmod(copy, 0644), 0);
    EXPECT_EQ(mount(copy, p_path.c_str(), nullptr, MS_BIND, nullptr), 0) << p_path;
    unlink(copy);
}

} // namespace zyr
