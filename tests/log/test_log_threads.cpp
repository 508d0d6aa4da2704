// Several threads at one log. Run it in the tsan build, too.
#include "zyr_common/log/zyr_log.h"

#include "support/zyr_logged_application.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <thread>

using namespace zyr;

static constexpr int NUM_OF_THREADS = 4;
static constexpr int NUM_OF_MESSAGES = 500;

template <typename Work> static void runThreads(Work p_work) {
    std::vector<std::thread> threads;
    for (int thread = 0; thread < NUM_OF_THREADS; ++thread) {
        threads.emplace_back(p_work, thread);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST(LogThreads, EveryMessageArrivesWholeAndOnce) {
    LoggedApplication application;
    runThreads([](int p_thread) {
        for (int i = 0; i < NUM_OF_MESSAGES; ++i) {
            zyr_printLog("m", 0, ZYR_LOG_LEVEL_WARN, "f", "thread %d message %d", p_thread, i);
        }
    });
    EXPECT_EQ(application.getFileNames().size(), 1u);
    std::vector<std::string> messages = application.getMessages();
    std::vector<std::string> expected;
    for (int thread = 0; thread < NUM_OF_THREADS; ++thread) {
        for (int i = 0; i < NUM_OF_MESSAGES; ++i) {
            expected.push_back("thread " + std::to_string(thread) + " message " + std::to_string(i));
        }
    }
    std::sort(messages.begin(), messages.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(messages, expected);
}

TEST(LogThreads, FoldedRunsOfEachThreadKeepTheirForm) {
    LoggedApplication application;
    runThreads([](int p_thread) {
        for (int i = 0; i < NUM_OF_MESSAGES; ++i) {
            zyr_printLog("m", 0, ZYR_LOG_LEVEL_WARN, "f", "thread %d", p_thread);
        }
    });
    // Pieces of two threads may change places, but a summary and its repeated line are one piece.
    std::vector<std::string> bodies = application.getBodies();
    size_t accounted = 0;
    for (size_t i = 0; i < bodies.size(); ++i) {
        unsigned int repeats = 0;
        if (sscanf(bodies[i].c_str(), "... repeated %u times", &repeats) == 1) {
            EXPECT_GE(repeats, 1u);
            ASSERT_LT(i + 1, bodies.size());
            EXPECT_NE(bodies[i + 1].find(" - thread "), std::string::npos);
            accounted += repeats;
        } else {
            EXPECT_NE(bodies[i].find(" - thread "), std::string::npos);
            accounted++;
        }
    }
    EXPECT_LE(accounted, size_t(NUM_OF_THREADS) * NUM_OF_MESSAGES);
}

TEST(LogThreads, SettingsMayChangeMeanwhile) {
    LoggedApplication application;
    runThreads([](int p_thread) {
        for (int i = 0; i < NUM_OF_MESSAGES; ++i) {
            if (p_thread == 0) {
                zyr_setLogLevel(i % 2 == 0 ? ZYR_LOG_LEVEL_ERROR : ZYR_LOG_LEVEL_TRACE);
                String directory;
                zyr_getLogDirectory(directory);
                zyr_setLogDirectory(directory);
            } else {
                ZYR_LOG_WARN("thread %d message %d", p_thread, i);
            }
        }
    });
    for (const std::string& message : application.getMessages()) {
        EXPECT_EQ(message.compare(0, 7, "thread "), 0) << message;
    }
}
