// The noise functions by samples a second, and the escape count beside the plain loop. The times are those of the
// processor, so that a busy machine changes little.
#include "zyr_common/geometry/zyr_noise.h"

#include <benchmark/benchmark.h>
#include <random>
#include <vector>

using namespace zyr;

static constexpr size_t SAMPLES = 4096;

/// Places on both sides of 0, in and beyond the period.
template <typename T> static std::vector<T> makePlaces() {
    std::mt19937 random(1);
    std::uniform_real_distribution<T> place(-2000, 4000);
    std::vector<T> places(SAMPLES);
    for (T& x : places) {
        x = place(random);
    }
    return places;
}

template <typename T, T (*Noise)(T, int, int)> static void sample(benchmark::State& p_state) {
    const std::vector<T> places = makePlaces<T>();
    const int period = static_cast<int>(p_state.range(0));
    for (auto _ : p_state) {
        T sum = 0;
        for (const T& x : places) {
            sum += Noise(x, 7, period);
        }
        benchmark::DoNotOptimize(sum);
    }
    p_state.SetItemsProcessed(static_cast<int64_t>(p_state.iterations() * SAMPLES));
}
BENCHMARK_TEMPLATE(sample, float, &zyr_noiseFirst)->Arg(1024)->Arg(1 << 30);
BENCHMARK_TEMPLATE(sample, double, &zyr_noiseFirst)->Arg(1024)->Arg(1 << 30);
BENCHMARK_TEMPLATE(sample, float, &zyr_noiseSecond)->Arg(1024);
BENCHMARK_TEMPLATE(sample, double, &zyr_noiseSecond)->Arg(1024);

/// What anybody would write.
static uint32_t countByHand(double p_real, double p_imaginary, int p_maximum) {
    double x = 0;
    double y = 0;
    double xx = 0;
    double yy = 0;
    uint32_t count = 0;
    for (; count < static_cast<uint32_t>(p_maximum); ++count) {
        y = 2 * x * y + p_imaginary;
        x = xx - yy + p_real;
        xx = x * x;
        yy = y * y;
        if (xx + yy >= 4) {
            break;
        }
    }
    return count;
}

template <uint32_t (*Count)(double, double, int)> static void escape(benchmark::State& p_state) {
    for (auto _ : p_state) {
        uint32_t sum = 0;
        for (int row = 0; row < 64; ++row) {
            for (int column = 0; column < 64; ++column) {
                sum += Count(column / 21.0 - 2.25, row / 24.0 - 1.3, 200);
            }
        }
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK_TEMPLATE(escape, &zyr_mandelbrotSolve);
BENCHMARK_TEMPLATE(escape, &countByHand);
