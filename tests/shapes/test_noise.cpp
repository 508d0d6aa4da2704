// The expected values and digests come from noise_reference.py, which computes them with exact fractions.
#include "zyr_common/geometry/zyr_noise.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>

namespace zyr {

/// FNV-1a over the bytes of results.
class Digest {
public:
    template <typename T> void add(T p_value) {
        unsigned char bytes[sizeof(T)];
        memcpy(bytes, &p_value, sizeof(T));
        for (unsigned char byte : bytes) {
            m_value = (m_value ^ byte) * 0x100000001B3;
        }
    }

    uint64_t m_value = 0xCBF29CE484222325;
};

struct NoiseCase {
    double m_x;
    int m_seed;
    int m_period;
    double m_first;
    float m_firstFloat;
    double m_second;
    float m_secondFloat;
};

static const NoiseCase c_cases[] = {
    {0.5, 1, 8, 0x1.eec80f5000000p-2, 0x1.eec8100000000p-2f, 0x1.ae3154dc00000p-2, 0x1.ae31560000000p-2f},
    {0.25, 1, 8, 0x1.18abce9e00000p-1, 0x1.18abd00000000p-1f, 0x1.bd5a99bd00000p-2, 0x1.bd5a9a0000000p-2f},
    {8.25, 1, 8, 0x1.18abce9e00000p-1, 0x1.18abd00000000p-1f, 0x1.bd5a99bd00000p-2, 0x1.bd5a9a0000000p-2f},
    {0.0, 1, 8, 0x1.69a8f37800000p-2, 0x1.69a8f40000000p-2f, 0x1.f6ab5d3000000p-2, 0x1.f6ab5e0000000p-2f},
    {0.0001, 1, 8, 0x1.39f02d27271dep-1, 0x1.39f02e0000000p-1f, 0x1.eec13ea44c116p-2, 0x1.eec13e0000000p-2f},
    {-0.25, 1, 8, 0x1.5f7fca6400000p-1, 0x1.5f7fca0000000p-1f, 0x1.19345c5940000p-1, 0x1.19345c0000000p-1f},
    {-8.75, 1, 8, 0x1.aa98340400000p-1, 0x1.aa98340000000p-1f, 0x1.6008581f40000p-1, 0x1.6008580000000p-1f},
    {-1.0, 3, 8, 0x1.2124cdc000000p-5, 0x1.2124d00000000p-5f, 0x1.53e9305000000p-2, 0x1.53e9300000000p-2f},
    {7.5, 3, 8, 0x1.53e9305000000p-2, 0x1.53e9320000000p-2f, 0x1.00e4e6e300000p-1, 0x1.00e4e80000000p-1f},
    {2.5, 3, 0, 0x1.41d6e37400000p-1, 0x1.41d6e40000000p-1f, 0x1.41d6e37400000p-1, 0x1.41d6e40000000p-1f},
    {-2.5, 3, 0, 0x1.69a8f37800000p-2, 0x1.69a8f40000000p-2f, 0x1.69a8f37800000p-2, 0x1.69a8f40000000p-2f},
    {5.5, 3, -1, 0x1.41d6e37400000p-1, 0x1.41d6e40000000p-1f, 0x1.41d6e37400000p-1, 0x1.41d6e40000000p-1f},
    {-5.5, 3, -1, 0x1.39f3959400000p-1, 0x1.39f3960000000p-1f, 0x1.39f3959400000p-1, 0x1.39f3960000000p-1f},
    {-3.5, 3, -8, 0x1.61b4c70800000p-2, 0x1.61b4c80000000p-2f, 0x1.208b343400000p-1, 0x1.208b340000000p-1f},
    {1.5, -2147483648, 8, 0x1.eec80f5000000p-2, 0x1.eec8100000000p-2f, 0x1.ae3154dc00000p-2, 0x1.ae31560000000p-2f},
    {1.5, 2147483647, 8, 0x1.410b84e400000p-1, 0x1.410b840000000p-1f, 0x1.2b15aded00000p-1, 0x1.2b15ae0000000p-1f},
    {100000.75, 42, 1000, 0x1.ca3a25fe00000p-1, 0x1.ca3a260000000p-1f, 0x1.71d4720cc0000p-1, 0x1.71d4720000000p-1f},
};

TEST(Noise, GivesTheValuesOfTheTable) {
    for (const NoiseCase& row : c_cases) {
        SCOPED_TRACE(testing::Message() << row.m_x << ", seed " << row.m_seed << ", period " << row.m_period);
        EXPECT_EQ(zyr_noiseFirst(row.m_x, row.m_seed, row.m_period), row.m_first);
        EXPECT_EQ(zyr_noiseFirst(static_cast<float>(row.m_x), row.m_seed, row.m_period), row.m_firstFloat);
        EXPECT_EQ(zyr_noiseSecond(row.m_x, row.m_seed, row.m_period), row.m_second);
        EXPECT_EQ(zyr_noiseSecond(static_cast<float>(row.m_x), row.m_seed, row.m_period), row.m_secondFloat);
    }
}

TEST(Noise, GivesTheSameBitsOnEveryMachine) {
    Digest digest;
    for (int index = 0; index < 2048; ++index) {
        const double x = (index - 1024) / 37.0;
        for (int seed : {-7, 0, 12345}) {
            for (int period : {0, 1, 8, -3, 1000}) {
                digest.add(zyr_noiseFirst(x, seed, period));
                digest.add(zyr_noiseFirst(static_cast<float>(x), seed, period));
                digest.add(zyr_noiseSecond(x, seed, period));
                digest.add(zyr_noiseSecond(static_cast<float>(x), seed, period));
            }
        }
    }
    printf("noise digest 0x%016lX\n", digest.m_value);
    EXPECT_EQ(digest.m_value, 0xABF23B67CC3E3916);
}

TEST(Noise, LiesHalfwayBetweenTheLatticeValuesInTheMiddleOfACell) {
    // At whole numbers the linear form gives the lattice value itself: 0 + 1 through its fraction of 1, the others as
    // the lower end of their cells.
    const double next = zyr_noiseFirst(0.0, 5, 8);
    const double atZero = zyr_noiseFirst(8.0, 5, 8);
    EXPECT_EQ(zyr_noiseFirst(0.5, 5, 8), atZero + (next - atZero) * 0.5);
}

TEST(Noise, RepeatsAfterItsPeriod) {
    EXPECT_EQ(zyr_noiseFirst(8.25, 5, 8), zyr_noiseFirst(0.25, 5, 8));
    EXPECT_EQ(zyr_noiseSecond(8.25f, 5, 8), zyr_noiseSecond(0.25f, 5, 8));
    EXPECT_EQ(zyr_noiseFirst(-7.75, 5, 8), zyr_noiseFirst(0.25, 5, 8));
}

TEST(Noise, GivesTheNextLatticeValueAtExactlyZero) {
    EXPECT_EQ(zyr_noiseFirst(0.0, 5, 8), zyr_noiseFirst(1.0, 5, 8));
    EXPECT_EQ(zyr_noiseFirst(-0.0, 5, 8), zyr_noiseFirst(1.0, 5, 8));
    EXPECT_NEAR(zyr_noiseFirst(0.0001, 5, 8), zyr_noiseFirst(8.0, 5, 8), 0.001);
    EXPECT_NE(zyr_noiseFirst(0.0, 5, 8), zyr_noiseFirst(8.0, 5, 8));
}

TEST(Noise, CollapsesToTwoValuesWithoutAPeriod) {
    for (double x : {0.5, 1.5, 7.25, 1e9}) {
        EXPECT_EQ(zyr_noiseFirst(x, 5, 0), zyr_noiseFirst(0.5, 5, 0));
    }
    for (double x : {-1.5, -7.25, -1e9}) {
        EXPECT_EQ(zyr_noiseFirst(x, 5, 0), zyr_noiseFirst(-1.5, 5, 0));
    }
    EXPECT_NE(zyr_noiseFirst(0.5, 5, 0), zyr_noiseFirst(-1.5, 5, 0));
}

TEST(Noise, StandsNumbersOutsideTheCells) {
    const double infinity = INFINITY;
    for (int period : {INT32_MIN, -1, 0, 1, 8, INT32_MAX}) {
        zyr_noiseFirst(1e300, 1, period);
        zyr_noiseFirst(-1e300, 1, period);
        zyr_noiseSecond(infinity, 1, period);
        zyr_noiseSecond(-infinity, 1, period);
        EXPECT_TRUE(std::isnan(zyr_noiseFirst(NAN, 1, period)));
    }
}

TEST(Noise, StaysWithinZeroAndOne) {
    for (int index = -20000; index < 20000; ++index) {
        const float x = static_cast<float>(index) * 0.013f;
        for (float value : {zyr_noiseFirst(x, 77, 16), zyr_noiseSecond(x, 77, 16)}) {
            ASSERT_GE(value, 0);
            ASSERT_LE(value, 1);
        }
    }
}

TEST(Mandelbrot, CountsUntilThePointEscapes) {
    EXPECT_EQ(zyr_mandelbrotSolve(0, 0, 100), 100u);
    EXPECT_EQ(zyr_mandelbrotSolve(3, 0, 100), 0u);
    // 1, 2: escapes in the second step, at exactly 4.
    EXPECT_EQ(zyr_mandelbrotSolve(1, 0, 100), 1u);
    // 0.5, 0.75, 1.0625, 1.62890625, 3.15...: the fifth.
    EXPECT_EQ(zyr_mandelbrotSolve(0.5, 0, 100), 4u);
    EXPECT_EQ(zyr_mandelbrotSolve(-1, 0, 100), 100u);
    // i, -1 + i, -i, -1 + i, ...
    EXPECT_EQ(zyr_mandelbrotSolve(0, 1, 1000), 1000u);
}

TEST(Mandelbrot, GivesZeroWithoutIterations) {
    EXPECT_EQ(zyr_mandelbrotSolve(0, 0, 0), 0u);
    EXPECT_EQ(zyr_mandelbrotSolve(0, 0, -1), 0u);
    EXPECT_EQ(zyr_mandelbrotSolve(0, 0, INT32_MIN), 0u);
    EXPECT_EQ(zyr_mandelbrotSolve(0, 0, 1), 1u);
}

TEST(Mandelbrot, GivesTheSameCountsOnEveryMachine) {
    Digest digest;
    for (int row = 0; row < 64; ++row) {
        for (int column = 0; column < 64; ++column) {
            digest.add(zyr_mandelbrotSolve(column / 21.0 - 2.25, row / 24.0 - 1.3, 200));
        }
    }
    printf("escape digest 0x%016lX\n", digest.m_value);
    EXPECT_EQ(digest.m_value, 0xEBD0A97B4CCE619C);
}

} // namespace zyr
