/// Vectors, matrices and quaternions as a textbook writes them, in long double: what the library's are compared with.
/// Nothing here calls the library, and nothing here is clever.
#pragma once

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace zyr::textbook {

typedef long double Real;

/// The library's own constant, so that only its formulas are compared.
inline constexpr Real c_degree = static_cast<Real>(3.14159265 / 180);

/// Square, of 3 or 4 rows.
struct Matrix {
    int m_size;
    Real m_at[4][4] = {}; ///< row, column

    explicit Matrix(int p_size) : m_size(p_size) {}

    static Matrix identity(int p_size) {
        Matrix matrix(p_size);
        for (int i = 0; i < p_size; ++i) {
            matrix.m_at[i][i] = 1;
        }
        return matrix;
    }
};

inline Matrix operator*(const Matrix& p_a, const Matrix& p_b) {
    Matrix product(p_a.m_size);
    for (int row = 0; row < p_a.m_size; ++row) {
        for (int column = 0; column < p_a.m_size; ++column) {
            for (int k = 0; k < p_a.m_size; ++k) {
                product.m_at[row][column] += p_a.m_at[row][k] * p_b.m_at[k][column];
            }
        }
    }
    return product;
}

inline Matrix transposed(const Matrix& p_matrix) {
    Matrix result(p_matrix.m_size);
    for (int row = 0; row < p_matrix.m_size; ++row) {
        for (int column = 0; column < p_matrix.m_size; ++column) {
            result.m_at[column][row] = p_matrix.m_at[row][column];
        }
    }
    return result;
}

/// By elimination with pivots; p_determinant takes the product of the pivots.
inline Matrix inverted(Matrix p_matrix, Real& p_determinant) {
    const int size = p_matrix.m_size;
    Matrix result = Matrix::identity(size);
    p_determinant = 1;
    for (int column = 0; column < size; ++column) {
        int pivot = column;
        for (int row = column; row < size; ++row) {
            if (std::fabs(p_matrix.m_at[row][column]) > std::fabs(p_matrix.m_at[pivot][column])) {
                pivot = row;
            }
        }
        if (pivot != column) {
            std::swap(p_matrix.m_at[pivot], p_matrix.m_at[column]);
            std::swap(result.m_at[pivot], result.m_at[column]);
            p_determinant = -p_determinant;
        }
        const Real divisor = p_matrix.m_at[column][column];
        p_determinant *= divisor;
        for (int k = 0; k < size; ++k) {
            p_matrix.m_at[column][k] /= divisor;
            result.m_at[column][k] /= divisor;
        }
        for (int row = 0; row < size; ++row) {
            const Real factor = p_matrix.m_at[row][column];
            for (int k = 0; row != column && k < size; ++k) {
                p_matrix.m_at[row][k] -= factor * p_matrix.m_at[column][k];
                result.m_at[row][k] -= factor * result.m_at[column][k];
            }
        }
    }
    return result;
}

struct Point {
    Real x;
    Real y;
    Real z;
};

inline Point operator+(const Point& p_a, const Point& p_b) {
    return {p_a.x + p_b.x, p_a.y + p_b.y, p_a.z + p_b.z};
}

inline Point operator*(Real p_factor, const Point& p_point) {
    return {p_factor * p_point.x, p_factor * p_point.y, p_factor * p_point.z};
}

inline Real dot(const Point& p_a, const Point& p_b) {
    return p_a.x * p_b.x + p_a.y * p_b.y + p_a.z * p_b.z;
}

inline Point cross(const Point& p_a, const Point& p_b) {
    return {p_a.y * p_b.z - p_a.z * p_b.y, p_a.z * p_b.x - p_a.x * p_b.z, p_a.x * p_b.y - p_a.y * p_b.x};
}

inline Real length(const Point& p_point) {
    return std::sqrt(dot(p_point, p_point));
}

/// Counter-clockwise for whoever looks against the axis, after Rodrigues.
inline Point rotated(const Point& p_point, Real p_degrees, const Point& p_axis) {
    const Real angle = p_degrees * c_degree;
    const Point axis = (1 / length(p_axis)) * p_axis;
    return std::cos(angle) * p_point + std::sin(angle) * cross(axis, p_point) +
           (dot(axis, p_point) * (1 - std::cos(angle))) * axis;
}

/// The columns are the images of the axes.
inline Matrix makeRotation(Real p_degrees, const Point& p_axis) {
    Matrix matrix = Matrix::identity(4);
    for (int column = 0; column < 3; ++column) {
        const Point image = rotated({Real(column == 0), Real(column == 1), Real(column == 2)}, p_degrees, p_axis);
        matrix.m_at[0][column] = image.x;
        matrix.m_at[1][column] = image.y;
        matrix.m_at[2][column] = image.z;
    }
    return matrix;
}

/// About x first, then about y, then about z.
inline Matrix makeEulerRotation(const Point& p_degrees) {
    return makeRotation(p_degrees.z, {0, 0, 1}) * makeRotation(p_degrees.y, {0, 1, 0}) *
           makeRotation(p_degrees.x, {1, 0, 0});
}

inline Matrix makeTranslation(const Point& p_point) {
    Matrix matrix = Matrix::identity(4);
    matrix.m_at[0][3] = p_point.x;
    matrix.m_at[1][3] = p_point.y;
    matrix.m_at[2][3] = p_point.z;
    return matrix;
}

inline Matrix makeScale(const Point& p_point) {
    Matrix matrix = Matrix::identity(4);
    matrix.m_at[0][0] = p_point.x;
    matrix.m_at[1][1] = p_point.y;
    matrix.m_at[2][2] = p_point.z;
    return matrix;
}

struct Quaternion {
    Real x;
    Real y;
    Real z;
    Real w;
};

/// Hamilton's product.
inline Quaternion operator*(const Quaternion& p_a, const Quaternion& p_b) {
    const Point a = {p_a.x, p_a.y, p_a.z};
    const Point b = {p_b.x, p_b.y, p_b.z};
    const Point part = p_a.w * b + p_b.w * a + cross(a, b);
    return {part.x, part.y, part.z, p_a.w * p_b.w - dot(a, b)};
}

inline Quaternion conjugated(const Quaternion& p_quaternion) {
    return {-p_quaternion.x, -p_quaternion.y, -p_quaternion.z, p_quaternion.w};
}

inline Quaternion makeQuaternion(Real p_degrees, const Point& p_axis) {
    const Real half = p_degrees * c_degree / 2;
    const Real factor = std::sin(half) / length(p_axis);
    return {factor * p_axis.x, factor * p_axis.y, factor * p_axis.z, std::cos(half)};
}

inline Real dot(const Quaternion& p_a, const Quaternion& p_b) {
    return p_a.x * p_b.x + p_a.y * p_b.y + p_a.z * p_b.z + p_a.w * p_b.w;
}

/// On the shorter arc; near quaternions (a dot product from 0.9 on) on a line.
inline Quaternion slerp(const Quaternion& p_a, const Quaternion& p_b, Real p_t) {
    const Real cosine = std::fabs(dot(p_a, p_b));
    Real weightA = 1 - p_t;
    Real weightB = p_t;
    if (cosine < Real(0.9)) {
        const Real angle = std::acos(cosine);
        weightA = std::sin((1 - p_t) * angle) / std::sin(angle);
        weightB = std::sin(p_t * angle) / std::sin(angle);
    }
    if (dot(p_a, p_b) < 0) {
        weightB = -weightB;
    }
    return {p_a.x * weightA + p_b.x * weightB, p_a.y * weightA + p_b.y * weightB, p_a.z * weightA + p_b.z * weightB,
            p_a.w * weightA + p_b.w * weightB};
}

/// What a matrix of the library holds; its array runs along the columns.
template <class M> Matrix read(const M& p_matrix, int p_size) {
    Matrix result(p_size);
    for (int row = 0; row < p_size; ++row) {
        for (int column = 0; column < p_size; ++column) {
            result.m_at[row][column] = p_matrix.getValue(static_cast<uint32_t>(column * p_size + row));
        }
    }
    return result;
}

/// How far a result of type T may be off when terms of the given magnitude were added up.
template <typename T> Real getTolerance(Real p_magnitude) {
    return 64 * std::numeric_limits<T>::epsilon() * p_magnitude;
}

/// Compares all values; p_magnitude is that of the largest term that takes part in one of them.
template <typename T, class M> void expectNear(const M& p_actual, const Matrix& p_expected, Real p_magnitude) {
    const Matrix actual = read(p_actual, p_expected.m_size);
    for (int row = 0; row < p_expected.m_size; ++row) {
        for (int column = 0; column < p_expected.m_size; ++column) {
            EXPECT_NEAR(actual.m_at[row][column], p_expected.m_at[row][column], getTolerance<T>(p_magnitude))
                << "row " << row << ", column " << column;
        }
    }
}

template <typename T, class V> void expectNear(const V& p_actual, const Point& p_expected, Real p_magnitude) {
    EXPECT_NEAR(p_actual.x, p_expected.x, getTolerance<T>(p_magnitude));
    EXPECT_NEAR(p_actual.y, p_expected.y, getTolerance<T>(p_magnitude));
    EXPECT_NEAR(p_actual.z, p_expected.z, getTolerance<T>(p_magnitude));
}

template <typename T, class V> void expectNear(const V& p_actual, const Quaternion& p_expected, Real p_magnitude) {
    EXPECT_NEAR(p_actual.x, p_expected.x, getTolerance<T>(p_magnitude));
    EXPECT_NEAR(p_actual.y, p_expected.y, getTolerance<T>(p_magnitude));
    EXPECT_NEAR(p_actual.z, p_expected.z, getTolerance<T>(p_magnitude));
    EXPECT_NEAR(p_actual.w, p_expected.w, getTolerance<T>(p_magnitude));
}

} // namespace zyr::textbook
