#include "zyr_common/geometry/zyr_noise.h"

#include "zyr_common/memory/zyr_numeric.h"

#include <cmath>

namespace zyr {

namespace {

/// The random value of a whole number, from 0 up to 1.
template <typename T> [[gnu::always_inline]] inline T getLatticeValue(uint32_t p_number) {
    const uint32_t k = p_number ^ (p_number << 13);
    const uint32_t hash = k * (k * k * 15731 + 789221) + 1376312589;
    return static_cast<T>(static_cast<int32_t>(hash & 0x7FFFFFFF) * 4.656612873077393e-10);
}

/// Below 0 the period counts backward from p_period - 1. A period of 0 collapses all cells from 0 on to 0 and those
/// below to -1, which is relied upon.
[[gnu::always_inline]] inline int32_t wrap(int32_t p_index, int32_t p_period) {
    if (p_index >= p_period) {
        return p_period != 0 ? p_index % p_period : 0;
    }
    if (p_index >= 0) {
        return p_index;
    }
    return p_period != 0 ? p_period - 1 - (-p_index - 1) % p_period : -1;
}

/// Where a value lies: its cell, and how far into it. At exactly 0 the fraction is 1 and not 0, which is relied upon.
template <typename T> struct NoisePlace {
    int32_t m_cell;
    T m_fraction;

    [[gnu::always_inline]] explicit NoisePlace(T p_x) {
        const T x = p_x < 0 ? p_x - 1 : p_x;
        m_cell = zyr_saturate<int32_t>(x);
        const T whole = static_cast<T>(m_cell);
        m_fraction = x > 0 ? x - whole : 1 - (whole - x);
    }
};

template <typename T> [[gnu::always_inline]] inline T getValueAt(int32_t p_cell, int32_t p_seed, int32_t p_period) {
    return getLatticeValue<T>(static_cast<uint32_t>(p_seed) + static_cast<uint32_t>(wrap(p_cell, p_period)));
}

template <typename T> [[gnu::always_inline]] inline T noiseFirst(T p_x, int32_t p_seed, int32_t p_period) {
    const NoisePlace<T> place(p_x);
    const T a = getValueAt<T>(place.m_cell, p_seed, p_period);
    const T b = getValueAt<T>(place.m_cell + 1, p_seed, p_period);
    return std::fma(b - a, place.m_fraction, a);
}

template <typename T> T noiseSecond(T p_x, int32_t p_seed, int32_t p_period) {
    const NoisePlace<T> place(p_x);
    const T a = getValueAt<T>(place.m_cell, p_seed, p_period);
    const T b = getValueAt<T>(place.m_cell + 1, p_seed, p_period);
    const T c = getValueAt<T>(place.m_cell + 2, p_seed, p_period);
    const T t = place.m_fraction;
    const T rest = 1 - t;
    const T first = (a + b) * T(0.5);
    const T second = (b + c) * T(0.5);
    return second * (t * t) + first * (rest * rest) + 2 * t * rest * b;
}

// Without the instruction std::fma is a call that computes the same bits, many times slower. The program is built for
// machines that lack it, so there is a second form for those that have it.
#if defined(__x86_64__) && !defined(__FMA__)
const bool g_hasFusedInstruction = __builtin_cpu_supports("fma");

template <typename T> [[gnu::target("fma")]] T noiseFirstFused(T p_x, int32_t p_seed, int32_t p_period) {
    return noiseFirst(p_x, p_seed, p_period);
}

template <typename T> [[gnu::always_inline]] inline T noiseFirstHere(T p_x, int32_t p_seed, int32_t p_period) {
    return g_hasFusedInstruction ? noiseFirstFused(p_x, p_seed, p_period) : noiseFirst(p_x, p_seed, p_period);
}
#else
template <typename T> [[gnu::always_inline]] inline T noiseFirstHere(T p_x, int32_t p_seed, int32_t p_period) {
    return noiseFirst(p_x, p_seed, p_period);
}
#endif

} // namespace

float zyr_noiseFirst(float p_x, int p_seed, int p_period) {
    return noiseFirstHere(p_x, p_seed, p_period);
}

double zyr_noiseFirst(double p_x, int p_seed, int p_period) {
    return noiseFirstHere(p_x, p_seed, p_period);
}

float zyr_noiseSecond(float p_x, int p_seed, int p_period) {
    return noiseSecond(p_x, p_seed, p_period);
}

double zyr_noiseSecond(double p_x, int p_seed, int p_period) {
    return noiseSecond(p_x, p_seed, p_period);
}

uint32_t zyr_mandelbrotSolve(double p_real, double p_imaginary, int p_maxIterations) {
    if (p_maxIterations < 1) {
        return 0;
    }
    const uint32_t maximum = static_cast<uint32_t>(p_maxIterations);
    double real = 0;
    double imaginary = 0;
    double realSquare = 0;
    double imaginarySquare = 0;
    uint32_t count = 0;
    while (count != maximum) {
        imaginary = 2 * real * imaginary + p_imaginary;
        real = realSquare - imaginarySquare + p_real;
        realSquare = real * real;
        imaginarySquare = imaginary * imaginary;
        if (realSquare + imaginarySquare >= 4.0) {
            break;
        }
        count++;
    }
    return count;
}

} // namespace zyr
