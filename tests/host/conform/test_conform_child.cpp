// A case of the conformance kit in its process, whatever the module does to that.

#include "host/conform/zyr_conform_child.h"
#include "host/conform/zyr_conform_command.h"
#include "support/zyr_failing_import.h"
#include "support/zyr_private_mounts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <unistd.h>

namespace zyr::host {

namespace {

using testing::StartsWith;

constexpr unsigned FOREVER_SECONDS = 3600;

/// Open in every process that a case has started.
int g_life[2] = {-1, -1};

ConformVerdict run(void (*p_case)(const ConformSubject&), unsigned p_seconds) {
    return runConformCase({"case", "rule", {}, p_case}, {}, p_seconds);
}

[[noreturn]] void waitForever() {
    for (;;) {
        pause();
    }
}

} // namespace

TEST(ConformChild, IsGivenNoMoreTimeWhenItClosesItsDescriptors) {
    const ConformVerdict verdict = run(
        [](const ConformSubject&) {
            for (int i = 3; i < 1024; i++) {
                close(i);
            }
            waitForever();
        },
        1);
    EXPECT_EQ(verdict.m_result, ConformResult::FAILED);
    EXPECT_EQ(verdict.m_reason, "it is not done within 1 s");
}

TEST(ConformChild, IsDoneBeforeWhatItHasStartedAndTakesThatWithIt) {
    ASSERT_EQ(pipe(g_life), 0);
    const ConformVerdict verdict = run(
        [](const ConformSubject&) {
            if (fork() == 0) {
                waitForever();
            }
        },
        FOREVER_SECONDS);
    EXPECT_EQ(verdict.m_result, ConformResult::PASSED) << verdict.m_reason;
    close(g_life[1]);
    char byte;
    EXPECT_EQ(read(g_life[0], &byte, 1), 0) << "what it has started has ended";
    close(g_life[0]);
}

TEST(ConformChild, IsEndedWhenItPrintsWithoutEnd) {
    const ConformVerdict verdict = run(
        [](const ConformSubject&) {
            const std::string text(1 << 20, '.');
            while (write(STDOUT_FILENO, text.data(), text.size()) >= 0) {
            }
        },
        FOREVER_SECONDS);
    EXPECT_EQ(verdict.m_result, ConformResult::FAILED);
    EXPECT_THAT(verdict.m_reason, StartsWith("it crashed (SIGXFSZ)"));
}

TEST(ConformChild, IsMissedByAHarnessThatIsTold) {
    int output[2];
    ASSERT_EQ(pipe(output), 0);
    runInChild([&] {
        dup2(output[1], STDOUT_FILENO);
        close(output[0]);
        // Not by taking all descriptors: sanitizers need some themselves.
        const test::FailingImport none("", "pipe2", -1, EMFILE);
        ConformOptions options;
        options.m_path = "/proc/self/exe";
        options.m_only = {"load"};
        EXPECT_ANY_THROW(runConform(options));
        EXPECT_TRUE(none.hasFailed());
    });
    close(output[1]);
    std::string text;
    char part[256];
    for (ssize_t size; (size = read(output[0], part, sizeof(part))) > 0;) {
        text.append(part, size_t(size));
    }
    close(output[0]);
    EXPECT_EQ(text, "TAP version 14\n1..1\nBail out! no memory or pipe for a child: Too many open files\n");
}

} // namespace zyr::host
