#include "host/zyr_structural_similarity.h"

#include <cmath>
#include <cstring>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#elif defined(__ARM_NEON)
#include <arm_neon.h>
#endif

namespace zyr::host {

namespace {

constexpr uint32_t SIDE = 4;

// 64 samples a window; the means are sums, so the constants carry 64 once and, for variances, 63 of 64.
constexpr int32_t STABILIZER_OF_MEANS = int32_t(0.01 * 0.01 * 255 * 255 * 64 + 0.5);
constexpr int32_t STABILIZER_OF_VARIANCES = int32_t(0.03 * 0.03 * 255 * 255 * 64 * 63 + 0.5);

constexpr uint32_t LANES = 4;

template <typename Number> struct Lanes { typedef Number Type __attribute__((vector_size(LANES * sizeof(Number)))); };

Lanes<int32_t>::Type load(const int32_t* p_numbers) {
    Lanes<int32_t>::Type lanes;
    memcpy(&lanes, p_numbers, sizeof(lanes));
    return lanes;
}

/// The sums of the windows whose upper left blocks begin at `p_block`.
Lanes<int32_t>::Type addFour(const std::vector<int32_t>& p_upper, const std::vector<int32_t>& p_lower,
                             uint32_t p_block) {
    return load(&p_upper[p_block]) + load(&p_upper[p_block + 1]) + load(&p_lower[p_block]) +
           load(&p_lower[p_block + 1]);
}

/// Sums of one block or of four blocks side by side.
struct Sums {
    int32_t* m_first;
    int32_t* m_second;
    int32_t* m_squares;
    int32_t* m_products;
};

void addUpBlock(const uint8_t* p_first, size_t p_firstPitch, const uint8_t* p_second, size_t p_secondPitch,
                const Sums& p_sums) {
    int32_t first = 0;
    int32_t second = 0;
    int32_t squares = 0;
    int32_t products = 0;
    for (size_t y = 0; y < SIDE; y++) {
        const uint8_t* a = p_first + y * p_firstPitch;
        const uint8_t* b = p_second + y * p_secondPitch;
        for (size_t x = 0; x < SIDE; x++) {
            first += a[x];
            second += b[x];
            squares += a[x] * a[x] + b[x] * b[x];
            products += a[x] * b[x];
        }
    }
    *p_sums.m_first = first;
    *p_sums.m_second = second;
    *p_sums.m_squares = squares;
    *p_sums.m_products = products;
}

// Left to the compiler these sums take ten times as long, so the two instruction sets of the platforms are spelled out.
#if defined(__SSE2__)

/// Adds neighbours of eight numbers and stores the four sums.
void storePairs(int32_t* p_target, __m128i p_low, __m128i p_high) {
    const __m128 low = _mm_castsi128_ps(p_low);
    const __m128 high = _mm_castsi128_ps(p_high);
    const __m128i even = _mm_castps_si128(_mm_shuffle_ps(low, high, _MM_SHUFFLE(2, 0, 2, 0)));
    const __m128i odd = _mm_castps_si128(_mm_shuffle_ps(low, high, _MM_SHUFFLE(3, 1, 3, 1)));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(p_target), _mm_add_epi32(even, odd));
}

void addUpFourBlocks(const uint8_t* p_first, size_t p_firstPitch, const uint8_t* p_second, size_t p_secondPitch,
                     const Sums& p_sums) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i ones = _mm_set1_epi16(1);
    __m128i first[2] = {zero, zero};
    __m128i second[2] = {zero, zero};
    __m128i squares[2] = {zero, zero};
    __m128i products[2] = {zero, zero};
    for (size_t y = 0; y < SIDE; y++) {
        const __m128i rowOfFirst = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p_first + y * p_firstPitch));
        const __m128i rowOfSecond = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p_second + y * p_secondPitch));
        const __m128i a[2] = {_mm_unpacklo_epi8(rowOfFirst, zero), _mm_unpackhi_epi8(rowOfFirst, zero)};
        const __m128i b[2] = {_mm_unpacklo_epi8(rowOfSecond, zero), _mm_unpackhi_epi8(rowOfSecond, zero)};
        for (int i = 0; i < 2; i++) {
            first[i] = _mm_add_epi16(first[i], a[i]);
            second[i] = _mm_add_epi16(second[i], b[i]);
            squares[i] =
                _mm_add_epi32(squares[i], _mm_add_epi32(_mm_madd_epi16(a[i], a[i]), _mm_madd_epi16(b[i], b[i])));
            products[i] = _mm_add_epi32(products[i], _mm_madd_epi16(a[i], b[i]));
        }
    }
    storePairs(p_sums.m_first, _mm_madd_epi16(first[0], ones), _mm_madd_epi16(first[1], ones));
    storePairs(p_sums.m_second, _mm_madd_epi16(second[0], ones), _mm_madd_epi16(second[1], ones));
    storePairs(p_sums.m_squares, squares[0], squares[1]);
    storePairs(p_sums.m_products, products[0], products[1]);
}

#elif defined(__ARM_NEON)

void addUpFourBlocks(const uint8_t* p_first, size_t p_firstPitch, const uint8_t* p_second, size_t p_secondPitch,
                     const Sums& p_sums) {
    uint16x8_t first = vdupq_n_u16(0);
    uint16x8_t second = vdupq_n_u16(0);
    uint32x4_t squares[2] = {vdupq_n_u32(0), vdupq_n_u32(0)};
    uint32x4_t products[2] = {vdupq_n_u32(0), vdupq_n_u32(0)};
    for (size_t y = 0; y < SIDE; y++) {
        const uint8x16_t a = vld1q_u8(p_first + y * p_firstPitch);
        const uint8x16_t b = vld1q_u8(p_second + y * p_secondPitch);
        first = vpadalq_u8(first, a);
        second = vpadalq_u8(second, b);
        const uint8x8_t halvesOfFirst[2] = {vget_low_u8(a), vget_high_u8(a)};
        const uint8x8_t halvesOfSecond[2] = {vget_low_u8(b), vget_high_u8(b)};
        for (int i = 0; i < 2; i++) {
            squares[i] = vpadalq_u16(squares[i], vmull_u8(halvesOfFirst[i], halvesOfFirst[i]));
            squares[i] = vpadalq_u16(squares[i], vmull_u8(halvesOfSecond[i], halvesOfSecond[i]));
            products[i] = vpadalq_u16(products[i], vmull_u8(halvesOfFirst[i], halvesOfSecond[i]));
        }
    }
    vst1q_s32(p_sums.m_first, vreinterpretq_s32_u32(vpaddlq_u16(first)));
    vst1q_s32(p_sums.m_second, vreinterpretq_s32_u32(vpaddlq_u16(second)));
    vst1q_s32(p_sums.m_squares, vreinterpretq_s32_u32(vpaddq_u32(squares[0], squares[1])));
    vst1q_s32(p_sums.m_products, vreinterpretq_s32_u32(vpaddq_u32(products[0], products[1])));
}

#else

void addUpFourBlocks(const uint8_t* p_first, size_t p_firstPitch, const uint8_t* p_second, size_t p_secondPitch,
                     const Sums& p_sums) {
    for (size_t i = 0; i < 4; i++) {
        addUpBlock(p_first + i * SIDE, p_firstPitch, p_second + i * SIDE, p_secondPitch,
                   Sums{p_sums.m_first + i, p_sums.m_second + i, p_sums.m_squares + i, p_sums.m_products + i});
    }
}

#endif

} // namespace

void StructuralSimilarity::addUp(const uint8_t* p_first, uint32_t p_firstPitch, const uint8_t* p_second,
                                 uint32_t p_secondPitch, uint32_t p_blocks, BlockRow& p_row) {
    uint32_t block = 0;
    const auto sums = [&] {
        return Sums{&p_row.m_first[block], &p_row.m_second[block], &p_row.m_squares[block], &p_row.m_products[block]};
    };
    for (; block + 4 <= p_blocks; block += 4) {
        addUpFourBlocks(p_first + block * SIDE, p_firstPitch, p_second + block * SIDE, p_secondPitch, sums());
    }
    for (; block < p_blocks; block++) {
        addUpBlock(p_first + block * SIDE, p_firstPitch, p_second + block * SIDE, p_secondPitch, sums());
    }
}

double StructuralSimilarity::sumWindows(const BlockRow& p_upper, const BlockRow& p_lower, uint32_t p_windows) {
    // Four windows at a time, in a fixed order: the same bits on every platform. The rows have a place to spare.
    Lanes<double>::Type sum{};
    for (uint32_t i = 0; i < p_windows; i += LANES) {
        const auto a = addFour(p_upper.m_first, p_lower.m_first, i);
        const auto b = addFour(p_upper.m_second, p_lower.m_second, i);
        const auto variances = addFour(p_upper.m_squares, p_lower.m_squares, i) * 64 - a * a - b * b;
        const auto covariance = addFour(p_upper.m_products, p_lower.m_products, i) * 64 - a * b;
        const auto toFloat = [](Lanes<int32_t>::Type p_lanes) {
            return __builtin_convertvector(p_lanes, Lanes<float>::Type);
        };
        auto index = toFloat(2 * a * b + STABILIZER_OF_MEANS) * toFloat(2 * covariance + STABILIZER_OF_VARIANCES) /
                     (toFloat(a * a + b * b + STABILIZER_OF_MEANS) * toFloat(variances + STABILIZER_OF_VARIANCES));
        for (uint32_t lane = p_windows - i; lane < LANES; lane++) {
            index[lane] = 0;
        }
        sum += __builtin_convertvector(index, Lanes<double>::Type);
    }
    return (sum[0] + sum[1]) + (sum[2] + sum[3]);
}

double StructuralSimilarity::compare(const uint8_t* p_first, uint32_t p_firstPitch, const uint8_t* p_second,
                                     uint32_t p_secondPitch, uint32_t p_width, uint32_t p_height) {
    const uint32_t columns = p_width / SIDE;
    const uint32_t rows = p_height / SIDE;
    if (columns < 2 || rows < 2) {
        return std::nan("");
    }
    for (BlockRow& row : m_rows) {
        for (std::vector<int32_t>* sums : {&row.m_first, &row.m_second, &row.m_squares, &row.m_products}) {
            sums->resize(columns + LANES + 1);
        }
    }
    double sum = 0;
    for (uint32_t y = 0; y < rows; y++) {
        std::swap(m_rows[0], m_rows[1]);
        addUp(p_first + size_t(y) * SIDE * p_firstPitch, p_firstPitch, p_second + size_t(y) * SIDE * p_secondPitch,
              p_secondPitch, columns, m_rows[1]);
        if (y > 0) {
            sum += sumWindows(m_rows[0], m_rows[1], columns - 1);
        }
    }
    return sum / (double(columns - 1) * double(rows - 1));
}

} // namespace zyr::host
