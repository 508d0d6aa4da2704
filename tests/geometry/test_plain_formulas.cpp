// Products and inverses are calculated several numbers at a time. Each result must have the bits of the plain formula,
// the signs of zeros too.
#include "zyr_common/geometry/zyr_matrix.h"

#include <cstring>
#include <gtest/gtest.h>
#include <random>

namespace zyr {

namespace {

/// Dense matrices first, then ones with many zeros of both signs, as transforms have.
template <class M, typename T, uint32_t N> M makeMatrix(std::mt19937& p_random, bool p_sparse) {
    std::uniform_real_distribution<T> number(-3, 3);
    M matrix;
    for (uint32_t i = 0; i < N * N; ++i) {
        const uint32_t dice = p_random() % 4;
        matrix.setValue(i, p_sparse && dice < 2 ? T(0) : p_sparse && dice == 2 ? T(-0.0) : number(p_random));
    }
    return matrix;
}

template <class M, typename T, uint32_t N> M multiplyPlainly(const M& p_a, const M& p_b) {
    M result;
    for (uint32_t column = 0; column < N; ++column) {
        for (uint32_t row = 0; row < N; ++row) {
            T sum = p_a.getValue(row) * p_b.getValue(column * N);
            for (uint32_t k = 1; k < N; ++k) {
                sum = sum + p_a.getValue(k * N + row) * p_b.getValue(column * N + k);
            }
            result.setValue(column * N + row, sum);
        }
    }
    return result;
}

template <typename T> T getDeterminant(const T (&p_v)[9]) {
    return p_v[0] * (p_v[4] * p_v[8] - p_v[7] * p_v[5]) + p_v[3] * (p_v[7] * p_v[2] - p_v[1] * p_v[8]) +
           p_v[6] * (p_v[1] * p_v[5] - p_v[4] * p_v[2]);
}

template <typename T> T getCofactor(const Matrix3x3<T>& p_m, uint32_t p_row, uint32_t p_column) {
    const uint32_t row1 = (p_row + 1) % 3;
    const uint32_t row2 = (p_row + 2) % 3;
    const uint32_t column1 = (p_column + 1) % 3;
    const uint32_t column2 = (p_column + 2) % 3;
    return p_m.getValue(column1 * 3 + row1) * p_m.getValue(column2 * 3 + row2) -
           p_m.getValue(column2 * 3 + row1) * p_m.getValue(column1 * 3 + row2);
}

template <typename T> T getCofactor(const Matrix4x4<T>& p_m, uint32_t p_row, uint32_t p_column) {
    T minor[9];
    uint32_t count = 0;
    for (uint32_t i = 0; i < 16; ++i) {
        if (i % 4 != p_row && i / 4 != p_column) {
            minor[count++] = p_m.getValue(i);
        }
    }
    return (p_row + p_column) % 2 == 0 ? getDeterminant(minor) : -getDeterminant(minor);
}

template <class M, typename T, uint32_t N> M invertPlainly(const M& p_matrix, bool p_transposed) {
    T determinant = 0;
    for (uint32_t column = 0; column < N; ++column) {
        const T product = p_matrix.getValue(column * N) * getCofactor(p_matrix, 0, column);
        determinant = column == 0 ? product : determinant + product;
    }
    M result;
    for (uint32_t column = 0; column < N; ++column) {
        for (uint32_t row = 0; row < N; ++row) {
            const T value = determinant == 0 ? p_matrix.getValue(column * N + row)
                                             : getCofactor(p_matrix, row, column) * (1 / determinant);
            result.setValue(p_transposed ? column * N + row : row * N + column, value);
        }
    }
    return result;
}

template <class M> void expectSameBits(const M& p_actual, const M& p_expected, uint32_t p_count) {
    for (uint32_t i = 0; i < p_count; ++i) {
        const auto actual = p_actual.getValue(i);
        const auto expected = p_expected.getValue(i);
        if (expected == expected) {
            EXPECT_EQ(memcmp(&actual, &expected, sizeof(actual)), 0) << i << ": " << actual << ", not " << expected;
        } else {
            EXPECT_TRUE(actual != actual) << i << ": " << actual << ", not a number that isn't one";
        }
    }
}

template <class M, typename T, uint32_t N> void compareWithPlainFormulas() {
    std::mt19937 random(11);
    for (int i = 0; i < 2000 && !testing::Test::HasFailure(); ++i) {
        SCOPED_TRACE(i);
        const M a = makeMatrix<M, T, N>(random, i >= 500);
        const M b = makeMatrix<M, T, N>(random, i >= 500);
        expectSameBits(a * b, multiplyPlainly<M, T, N>(a, b), N * N);
        M inverse(a);
        inverse.inverse();
        expectSameBits(inverse, invertPlainly<M, T, N>(a, false), N * N);
        M transposed(a);
        transposed.transposedInverse();
        expectSameBits(transposed, invertPlainly<M, T, N>(a, true), N * N);
    }
}

} // namespace

TEST(PlainFormulas, GiveTheBitsOfMatrix3x3OfFloat) {
    compareWithPlainFormulas<Matrix3x3<float>, float, 3>();
}

TEST(PlainFormulas, GiveTheBitsOfMatrix3x3OfDouble) {
    compareWithPlainFormulas<Matrix3x3<double>, double, 3>();
}

TEST(PlainFormulas, GiveTheBitsOfMatrix4x4OfFloat) {
    compareWithPlainFormulas<Matrix4x4<float>, float, 4>();
}

TEST(PlainFormulas, GiveTheBitsOfMatrix4x4OfDouble) {
    compareWithPlainFormulas<Matrix4x4<double>, double, 4>();
}

} // namespace zyr
