#include "host/conform/zyr_conform_child.h"
#include "host/conform/zyr_conform_road.h"
#include "host/zyr_child.h"

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <malloc.h>
#include <memory>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace zyr::host {

namespace {

constexpr uint32_t WIDTH = 96;
constexpr uint32_t HEIGHT = 64;
constexpr unsigned WARM_UP = 60;
constexpr unsigned ROUNDS = 4;
constexpr unsigned OPENINGS = 250; ///< Of each round.
/// Less than what the smallest object takes, 64 bytes, for each opening. The heap's own caches grow by more now and
/// then, but not in every round.
constexpr size_t LARGEST_GROWTH = OPENINGS * 60;

void checkTwoContexts(const ConformSubject& p_subject) {
    PluginBench bench(p_subject);
    ConformMarket market(bench);
    for (Match* match : market.listPairs()) {
        ConformRoad first(market, *match);
        ConformRoad second(market, *match);
        for (unsigned i = 1; i <= 10; i++) {
            first.send(WIDTH, HEIGHT, i);
            second.send(WIDTH + 31, HEIGHT - 15, i + 5);
        }
    }
}

void checkTwoThreads(const ConformSubject& p_subject) {
    PluginBench bench(p_subject);
    ConformMarket market(bench);
    for (Match* match : market.listPairs()) {
        ConformRoad first(market, *match);
        ConformRoad second(market, *match);
        std::string reasons[2];
        const auto run = [](ConformRoad& p_road, uint32_t p_width, std::string& p_reason) {
            try {
                for (unsigned i = 1; i <= 20; i++) {
                    p_road.send(p_width, HEIGHT, i);
                }
            } catch (const std::exception& error) {
                p_reason = error.what();
            }
        };
        std::thread other(run, std::ref(second), WIDTH + 31, std::ref(reasons[1]));
        run(first, WIDTH, reasons[0]);
        other.join();
        for (const std::string& reason : reasons) {
            require(reason.empty(), reason);
        }
    }
}

size_t countEntries(const char* p_directory) {
    const std::filesystem::directory_iterator entries(p_directory);
    return size_t(std::distance(begin(entries), end(entries)));
}

/// What a process holds.
struct Holdings {
    size_t m_heap; ///< Bytes in use. Sanitizers don't tell and look after it themselves.
    size_t m_descriptors = countEntries("/proc/self/fd");
    size_t m_threads = countEntries("/proc/self/task");

    Holdings() {
        const struct mallinfo2 info = mallinfo2();
        m_heap = info.uordblks + info.hblkhd;
    }
};

void checkOpenings(const ConformSubject& p_subject) {
    PluginBench bench(p_subject);
    ConformMarket market(bench);
    const std::vector<Match*> pairs = market.listPairs();
    std::vector<std::unique_ptr<ConformRoad>> roads;
    for (Match* match : pairs) {
        roads.push_back(std::make_unique<ConformRoad>(market, *match));
    }
    const auto open = [&](unsigned p_count) {
        for (unsigned i = 0; i < p_count; i++) {
            ConformRoad& road = *roads[i % roads.size()];
            road.reopen();
            road.send(32, 32, 1);
            road.close();
            // What the log said is kept until it is taken.
            bench.takeWarning();
        }
        malloc_trim(0);
    };
    open(WARM_UP);
    const Holdings before;
    Holdings after = before;
    std::string growth;
    unsigned growing = 0;
    for (unsigned round = 0; round < ROUNDS; round++) {
        const size_t heap = after.m_heap;
        open(OPENINGS);
        after = Holdings();
        growing += after.m_heap > heap + LARGEST_GROWTH ? 1 : 0;
        growth += " " + std::to_string(ptrdiff_t(after.m_heap) - ptrdiff_t(heap));
    }
    require(after.m_threads <= before.m_threads,
            "threads grow from " + std::to_string(before.m_threads) + " to " + std::to_string(after.m_threads));
    require(after.m_descriptors <= before.m_descriptors, "descriptors grow from " +
                                                             std::to_string(before.m_descriptors) + " to " +
                                                             std::to_string(after.m_descriptors));
    require(growing < ROUNDS,
            "memory grows in each round of " + std::to_string(OPENINGS) + " openings, by" + growth + " bytes");
}

void checkDeinitialize(const ConformSubject& p_subject) {
    PluginBench bench(p_subject);
    bench.start();
    const size_t before = bench.listClasses().size();
    bench.call("", "zyr_plugin_deinitialize", 0, [&] {
        bench.getExports().m_deinitialize();
        return 0;
    });
    require(bench.listClasses().size() == before, "classes are gone from the registry");
    bench.createAll(zyr_getInterfaceGUID<IObject>());
}

void checkUseAfterDeinitialize(const ConformSubject& p_subject) {
    PluginBench bench(p_subject);
    ConformMarket market(bench);
    for (Match* match : market.listPairs()) {
        ConformRoad old(market, *match);
        old.send(WIDTH, HEIGHT, 1);
        bench.call("", "zyr_plugin_deinitialize", 0, [&] {
            bench.getExports().m_deinitialize();
            return 0;
        });
        old.send(WIDTH, HEIGHT, 2);
        ConformRoad fresh(market, *match);
        fresh.send(WIDTH, HEIGHT, 1);
    }
}

/// In a process of its own, which ends as a host does: with destructors and what stands in atexit.
void checkProcessEnd(const ConformSubject& p_subject) {
    noteConformStep("the end of a process");
    const pid_t child = fork();
    require(child >= 0, "there is no process for it");
    if (child == 0) {
        try {
            PluginBench bench(p_subject);
            bench.start();
            bench.createAll(zyr_getInterfaceGUID<IObject>());
            bench.getExports().m_deinitialize();
            exit(0);
        } catch (const std::exception&) {
            // Which is for other cases to tell.
            _exit(0);
        }
    }
    const int status = waitForChild(child);
    if (WIFSIGNALED(status)) {
        throw ConformFailure("a process that has used it crashes at its end (" + nameEndingSignal(status) + ")");
    }
}

} // namespace

std::vector<ConformCase> listEnduranceCases() {
    return {
        {"two-contexts",
         "Contexts of one codec do not know of each other.",
         {"picture-per-packet"},
         checkTwoContexts,
         60},
        {"two-threads",
         "Two threads with a context each do not disturb each other.",
         {"two-contexts"},
         checkTwoThreads,
         60},
        {"thousand-openings",
         "A thousand contexts, one behind the other and each with a frame, leave no memory, descriptor or thread "
         "behind.",
         {"picture-per-packet"},
         checkOpenings,
         240},
        {"deinitialize",
         "Behind zyr_plugin_deinitialize the classes stay registered and objects can be created.",
         {"registration"},
         checkDeinitialize},
        {"use-after-deinitialize",
         "Streams that are open then go on, and others can be opened.",
         {"picture-per-packet", "deinitialize"},
         checkUseAfterDeinitialize},
        {"process-end", "A process that has used the module ends by itself.", {"deinitialize"}, checkProcessEnd},
    };
}

} // namespace zyr::host
