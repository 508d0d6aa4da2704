/// Parts of the system replaced for one test: files, directories, mounts and, through /etc, accounts. What is mounted
/// is seen by this process and its children only, so nothing outside of them changes. Link zyr_test_private_mounts.
///
/// A test that stays in its process derives from PrivateMountsTest, whose mounts are gone at its end. One that changes
/// identities or accounts does all of it in a child, where mounts are left to the child's end:
///
///     TEST(Accounts, AreSeen) {
///         ZYR_NEEDS_PRIVATE_SYSTEM();
///         runInChild([] {
///             enterPrivateMounts();
///             appendToSystemFile("/etc/passwd", "somebody:x:47111:47111::/:/bin/sh\n");
///             EXPECT_NE(getpwnam("somebody"), nullptr);
///         });
///     }
#pragma once

#include "support/zyr_temporary_directory.h"

#include <cerrno>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

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

/// Whether this machine lets the test have mounts and accounts of its own: root, and the right to make a namespace.
/// Leaves this process as it is.
bool canMountPrivately();

/// Skips a test that changes mounts or identities where that can't be done.
#define ZYR_NEEDS_PRIVATE_SYSTEM()                                                                                     \
    if (!::zyr::canMountPrivately()) {                                                                                 \
        GTEST_SKIP() << "takes root in a system whose / is a mount point, to have mounts and accounts of its own";     \
    }

/// Mounts made from now on are seen by this process and its children only; fails the test where that can't be.
void enterPrivateMounts();

/// Lets lines follow the text of a system file, once for each file and for as long as this process lives, behind
/// enterPrivateMounts().
void appendToSystemFile(const std::string& p_path, const std::string& p_lines);

/// What is mounted through it is gone at its end.
class PrivateMounts {
public:
    PrivateMounts() = default;
    ~PrivateMounts();
    PrivateMounts(const PrivateMounts&) = delete;
    PrivateMounts& operator=(const PrivateMounts&) = delete;

    /// Why this machine doesn't let the process have a namespace of its own; empty where it does. The first call enters
    /// it: root directly, others as the owner of a user namespace with their own user in it, which allows all but
    /// makeChangeable.
    static const std::string& getRefusal();

    /// An empty directory in the place of an existing one.
    void mountEmpty(const std::string& p_path);
    /// Another file in the place of an existing one.
    void replaceFile(const std::string& p_path, const std::string& p_text);
    /// A directory that looks as before and takes changes to itself. Takes root.
    void makeChangeable(const std::string& p_path);
    void unmountLast();

private:
    void mountOrFail(const std::string& p_path, const char* p_type, const std::string& p_options);

    TemporaryDirectory m_directory;
    std::vector<std::string> m_mounted;
};

/// Tests that need the namespace.
class PrivateMountsTest : public testing::Test {
protected:
    void SetUp() override {
        if (!PrivateMounts::getRefusal().empty()) {
            GTEST_SKIP() << PrivateMounts::getRefusal();
        }
    }

    PrivateMounts m_mounts;
};

} // namespace zyr
