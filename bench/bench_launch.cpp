// launchUserProcess beside posix_spawn and, where it is installed, GLib's spawn: a short program started and waited
// for, with few and with many open descriptors that it must not get. The ways take turns, and medians are compared:
// only the ratios mean something.
//
//   bench_launch [ROUNDS]
#include "zyr_common/process/zyr_user_process_launch.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#ifdef ZYR_BENCH_GLIB
#include <glib.h>
#endif

using namespace zyr;

namespace {

constexpr const char* PROGRAM = "/bin/true";
constexpr int DESCRIPTOR_COUNTS[] = {10, 10000};

pid_t launchHere() {
    UserProcessOptions options;
    options.executablePath = PROGRAM;
    String error;
    const uint32_t child = launchUserProcess(options, error);
    if (child == 0) {
        fprintf(stderr, "bench_launch: %s\n", error.getData());
        exit(1);
    }
    return pid_t(child);
}

// In a session of its own and with the same descriptors closed.
pid_t launchByPosixSpawn() {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addclosefrom_np(&actions, 3);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    char* const arguments[] = {const_cast<char*>(PROGRAM), nullptr};
    char* const environment[] = {nullptr};
    pid_t child = -1;
    if (posix_spawn(&child, PROGRAM, &actions, &attributes, arguments, environment) != 0) {
        perror("bench_launch: posix_spawn");
        exit(1);
    }
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return child;
}

#ifdef ZYR_BENCH_GLIB
// A set-up function, as a session of its own needs one, keeps it from using posix_spawn.
pid_t launchByGlib() {
    char* arguments[] = {const_cast<char*>(PROGRAM), nullptr};
    char* environment[] = {nullptr};
    GPid child = -1;
    GError* error = nullptr;
    if (!g_spawn_async(
            nullptr, arguments, environment, G_SPAWN_DO_NOT_REAP_CHILD, [](gpointer) { setsid(); }, nullptr, &child,
            &error)) {
        fprintf(stderr, "bench_launch: %s\n", error->message);
        exit(1);
    }
    return child;
}
#endif

struct Way {
    const char* m_name;
    pid_t (*m_launch)();
    std::vector<double> m_times;
};

double median(std::vector<double>& p_values) {
    std::nth_element(p_values.begin(), p_values.begin() + p_values.size() / 2, p_values.end());
    return p_values[p_values.size() / 2];
}

} // namespace

int main(int argc, char** argv) {
    const int rounds = argc > 1 ? atoi(argv[1]) : 500;
    rlimit limit;
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = std::min<rlim_t>(limit.rlim_max, 20000);
    setrlimit(RLIMIT_NOFILE, &limit);
    std::vector<Way> ways = {{"launchUserProcess", launchHere, {}}, {"posix_spawn", launchByPosixSpawn, {}}};
#ifdef ZYR_BENCH_GLIB
    ways.push_back({"g_spawn_async", launchByGlib, {}});
#endif
    std::vector<int> open{STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO};
    printf("limit of descriptors %llu, %d rounds\n", (unsigned long long)limit.rlim_cur, rounds);
    for (const int count : DESCRIPTOR_COUNTS) {
        while (int(open.size()) < count) {
            const int descriptor = ::open("/dev/null", O_RDONLY);
            if (descriptor < 0) {
                perror("bench_launch: /dev/null");
                return 1;
            }
            open.push_back(descriptor);
        }
        for (Way& way : ways) {
            way.m_times.clear();
        }
        for (int i = 0; i < rounds; i++) {
            for (Way& way : ways) {
                const auto start = std::chrono::steady_clock::now();
                const pid_t child = way.m_launch();
                waitpid(child, nullptr, 0);
                way.m_times.push_back(
                    std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count());
            }
        }
        const double own = median(ways[0].m_times);
        for (Way& way : ways) {
            const double time = median(way.m_times);
            printf("%6d open  %-18s %8.1f us  launchUserProcess takes %.2f of it\n", count, way.m_name, time,
                   own / time);
        }
    }
    return 0;
}
