#include "zyr_common/process/zyr_user_process_launch.h"

#include "support/zyr_temporary_directory.h"
#include "zyr_process_test.h"
#include "zyr_system_calls.h"

#include <atomic>
#include <cerrno>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace zyr {

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool IS_SANITIZED = true;
#else
constexpr bool IS_SANITIZED = false;
#endif

constexpr int THREADS = 4;

/// 10,000 where programs run at their own speed.
int getLaunchCount() {
    const bool emulated = TemporaryDirectory::readFile("/proc/self/comm").rfind("qemu", 0) == 0;
    return IS_SANITIZED || emulated ? 400 : 10000;
}

} // namespace

TEST(LaunchStress, LeavesNoDescriptorNoZombieAndNoByte) {
    UserProcessOptions options;
    options.executablePath = "/bin/true";
    options.userName = geteuid() == 0 ? "root" : "";
    options.environment = listOf({"PATH=/usr/bin:/bin"});
    UserProcessOptions failing = options;
    failing.workingDirectory = "/nowhere/at/all";

    const int launchesOfThread = getLaunchCount() / THREADS;
    std::atomic<int> failures{0};
    std::atomic<int> wrongResults{0};
    const auto launchMany = [&](int p_count) {
        for (int i = 0; i < p_count; i++) {
            // An error that fits inside the text's own buffer, and one that does not, are both left behind.
            String error;
            if (i % 50 == 49) {
                failures += launchUserProcess(failing, error) == 0;
                continue;
            }
            const uint32_t child = launchUserProcess(options, error);
            wrongResults += child == 0 || !error.isEmpty() || waitForExit(child) != 0;
        }
    };
    const auto runThreads = [&](int p_count) {
        std::vector<std::thread> threads;
        for (int i = 0; i < THREADS; i++) {
            threads.emplace_back(launchMany, p_count);
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    };

    runThreads(10); // what is made at first use
    const std::vector<int> descriptors = getOpenDescriptors();
    const int64_t blocks = getHeldBlocks();
    failures = 0;
    runThreads(launchesOfThread);
    const int64_t blocksAfter = getHeldBlocks();
    EXPECT_EQ(wrongResults, 0);
    EXPECT_EQ(failures, THREADS * (launchesOfThread / 50));
    EXPECT_EQ(blocksAfter, blocks);
    EXPECT_EQ(getOpenDescriptors(), descriptors);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

} // namespace zyr
