/// Measures sides that do the same work against each other, in turns, so that whatever else the machine does falls on
/// all of them alike.
///
///     static void product(benchmark::State& p_state) {
///         compareSides(p_state, 64, {{"zyr", [&] { ... }}, {"peer", [&] { ... }}});
///     }
///
/// Each side does p_count pieces of work in one call. The time is the processor's, the figure the median of all turns.
/// Shown are the nanoseconds of one piece for each side, and as "ratio" the speed of the first side as a share of the
/// fastest other one's: 1 is as fast, 2 twice as fast.
#pragma once

#include <algorithm>
#include <benchmark/benchmark.h>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

namespace zyr::bench {

/// One way to do the work. The function must be the same kind of loop for all sides.
struct Side {
    std::string m_name;
    std::function<void()> m_work;
};

/// The time that this thread has spent on the processor, in nanoseconds.
inline double getProcessorTime() {
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e9 + double(time.tv_nsec);
}

inline double getMedian(std::vector<double>& p_values) {
    if (p_values.empty()) {
        return 0;
    }
    const auto middle = p_values.begin() + std::ptrdiff_t(p_values.size() / 2);
    std::nth_element(p_values.begin(), middle, p_values.end());
    return *middle;
}

/// Runs all sides in each iteration; one call of a side does p_count pieces. Gives the median nanoseconds of one piece
/// of the first side.
inline double compareSides(benchmark::State& p_state, size_t p_count, const std::vector<Side>& p_sides) {
    // Long enough that reading the clock does not show.
    constexpr double TURN = 100e3;
    std::vector<size_t> repeats;
    for (const Side& side : p_sides) {
        size_t repeat = 1;
        for (double spent = 0; spent < TURN / 2; repeat *= 2) {
            const double start = getProcessorTime();
            for (size_t i = 0; i < repeat; i++) {
                side.m_work();
            }
            spent = getProcessorTime() - start;
        }
        repeats.push_back(repeat);
    }
    std::vector<std::vector<double>> times(p_sides.size());
    for (auto _ : p_state) {
        for (size_t i = 0; i < p_sides.size(); i++) {
            const double start = getProcessorTime();
            for (size_t k = 0; k < repeats[i]; k++) {
                p_sides[i].m_work();
            }
            times[i].push_back((getProcessorTime() - start) / double(repeats[i] * p_count));
        }
    }
    double first = 0;
    double best = 0;
    for (size_t i = 0; i < p_sides.size(); i++) {
        const double median = getMedian(times[i]);
        p_state.counters["ns:" + p_sides[i].m_name] = median;
        if (i == 0) {
            first = median;
        } else if (best == 0 || median < best) {
            best = median;
        }
    }
    if (best != 0) {
        p_state.counters["ratio"] = best / first;
    }
    return first;
}

} // namespace zyr::bench
