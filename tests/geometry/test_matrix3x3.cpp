#include "zyr_common/geometry/zyr_matrix.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace zyr {

typedef Matrix3x3<double> Matrix;
typedef std::vector<double> Values;

static Matrix make(const Values& p_values) {
    Matrix matrix;
    for (uint32_t i = 0; i < 9; ++i) {
        matrix.setValue(i, p_values[i]);
    }
    return matrix;
}

static Values get(const Matrix& p_matrix) {
    Values values;
    for (uint32_t i = 0; i < 9; ++i) {
        values.push_back(p_matrix.getValue(i));
    }
    return values;
}

static void expectNear(const Values& p_actual, const Values& p_expected, double p_tolerance = 1e-8) {
    ASSERT_EQ(p_actual.size(), p_expected.size());
    for (size_t i = 0; i < p_actual.size(); ++i) {
        EXPECT_NEAR(p_actual[i], p_expected[i], p_tolerance) << "value " << i;
    }
}

static const Values c_counting = {1, 2, 3, 4, 5, 6, 7, 8, 9};

TEST(Matrix3x3, StartsAsTheIdentity) {
    EXPECT_EQ(get(Matrix()), (Values{1, 0, 0, 0, 1, 0, 0, 0, 1}));
    Matrix matrix = make(c_counting);
    matrix.clear();
    EXPECT_EQ(matrix, Matrix());
    matrix.setZero();
    EXPECT_EQ(get(matrix), Values(9, 0));
}

TEST(Matrix3x3, GivesRowsAcrossAndColumnsAlongItsStorage) {
    Matrix matrix = make(c_counting);
    EXPECT_EQ(matrix.getRow(0), Vector3<double>(1, 4, 7));
    EXPECT_EQ(matrix.getRow(2), Vector3<double>(3, 6, 9));
    EXPECT_EQ(matrix.getColumn(0), Vector3<double>(1, 2, 3));
    EXPECT_EQ(matrix.getColumn(2), Vector3<double>(7, 8, 9));
}

TEST(Matrix3x3, CalculatesValueByValue) {
    Matrix a = make(c_counting);
    Matrix b = make({9, 8, 7, 6, 5, 4, 3, 2, 1});
    EXPECT_EQ(get(a + b), Values(9, 10));
    EXPECT_EQ(get(a - b), (Values{-8, -6, -4, -2, 0, 2, 4, 6, 8}));
    EXPECT_EQ(get(a * 2.0), (Values{2, 4, 6, 8, 10, 12, 14, 16, 18}));
    EXPECT_EQ(get(a / 2.0), (Values{0.5, 1, 1.5, 2, 2.5, 3, 3.5, 4, 4.5}));
}

TEST(Matrix3x3, MultipliesRowsByColumns) {
    Matrix a = make(c_counting);
    Matrix b = make({2, 0, 1, 0, 3, 0, 1, 1, 1});
    EXPECT_EQ(get(a * b), (Values{2 * 1 + 7, 2 * 2 + 8, 2 * 3 + 9, 12, 15, 18, 1 + 4 + 7, 2 + 5 + 8, 3 + 6 + 9}));
    EXPECT_EQ(a * Matrix(), a);
    EXPECT_EQ(Matrix() * a, a);
}

TEST(Matrix3x3, MultipliesAVector) {
    Matrix matrix = make(c_counting);
    EXPECT_EQ(matrix * Vector3<double>(1, 10, 100), Vector3<double>(741, 852, 963));
}

TEST(Matrix3x3, HandsTheThirdComponentThroughWhenAffine) {
    Matrix matrix = make({2, 0, 0, 0, 2, 0, 5, 6, 1});
    EXPECT_EQ(matrix * Vector3<double>(1, 1, 3), Vector3<double>(17, 20, 3));
    // An infinite first component would make 0 * inf otherwise.
    EXPECT_EQ((matrix * Vector3<double>(INFINITY, 1, 3)).z, 3);
    matrix.setValue(8, 2);
    EXPECT_EQ((matrix * Vector3<double>(1, 1, 3)).z, 6);
}

TEST(Matrix3x3, TransformsAPointWithoutDividing) {
    Matrix matrix = make(c_counting);
    EXPECT_EQ(matrix.transform({1, 10}), Vector2<double>(1 + 40 + 7, 2 + 50 + 8));
}

TEST(Matrix3x3Parts, WriteOnlyTheirValues) {
    Matrix matrix = make(c_counting);
    matrix.setTranslationPart({20, 30});
    EXPECT_EQ(get(matrix), (Values{1, 2, 3, 4, 5, 6, 20, 30, 9}));
    matrix = make(c_counting);
    matrix.setScalePart({20, 30});
    EXPECT_EQ(get(matrix), (Values{20, 2, 3, 4, 30, 6, 7, 8, 9}));
    matrix = make(c_counting);
    matrix.setUniformScalePart(20);
    EXPECT_EQ(get(matrix), (Values{20, 2, 3, 4, 20, 6, 7, 8, 9}));
    matrix = make(c_counting);
    matrix.setRotationPart(30);
    double c = std::cos(30 * (3.14159265 / 180));
    double s = std::sin(30 * (3.14159265 / 180));
    EXPECT_EQ(get(matrix), (Values{c, -s, 3, s, c, 6, 7, 8, 9}));
}

TEST(Matrix3x3Parts, BeginWithTheIdentityInTheFullForms) {
    Matrix matrix = make(c_counting);
    matrix.setTranslation({20, 30});
    EXPECT_EQ(get(matrix), (Values{1, 0, 0, 0, 1, 0, 20, 30, 1}));
    matrix = make(c_counting);
    matrix.setScale({20, 30});
    EXPECT_EQ(get(matrix), (Values{20, 0, 0, 0, 30, 0, 0, 0, 1}));
    matrix = make(c_counting);
    matrix.setUniformScale(20);
    EXPECT_EQ(get(matrix), (Values{20, 0, 0, 0, 20, 0, 0, 0, 1}));
    matrix = make(c_counting);
    matrix.setRotation(90);
    expectNear(get(matrix), {0, -1, 0, 1, 0, 0, 0, 0, 1});
}

TEST(Matrix3x3Parts, MultiplyOnTheRight) {
    Matrix matrix;
    matrix.translate({10, 20});
    matrix.scale({2, 3});
    EXPECT_EQ(matrix.transform({1, 1}), Vector2<double>(12, 23));
    Matrix other;
    other.scale({2, 3});
    other.translate({10, 20});
    EXPECT_EQ(other.transform({1, 1}), Vector2<double>(22, 63));
    other.uniformScale(2);
    EXPECT_EQ(other.transform({1, 1}), Vector2<double>(24, 66));
    Matrix turned;
    turned.translate({5, 0});
    turned.rotate(90);
    Vector2<double> point = turned.transform({0, 2});
    EXPECT_NEAR(point.x, 7, 1e-7);
    EXPECT_NEAR(point.y, 0, 1e-7);
}

TEST(Matrix3x3, Transposes) {
    Matrix matrix = make(c_counting);
    matrix.transpose();
    EXPECT_EQ(get(matrix), (Values{1, 4, 7, 2, 5, 8, 3, 6, 9}));
}

TEST(Matrix3x3Inverse, IsTheTransposeOfTheTransposedInverse) {
    // Rows (2 0 4), (0 1 6), (0 0 1): determinant 2.
    Matrix matrix = make({2, 0, 0, 0, 1, 0, 4, 6, 1});
    Matrix transposed(matrix);
    transposed.transposedInverse();
    EXPECT_EQ(get(transposed), (Values{0.5, 0, -2, 0, 1, -6, 0, 0, 1}));
    matrix.inverse();
    EXPECT_EQ(get(matrix), (Values{0.5, 0, 0, 0, 1, 0, -2, -6, 1}));
}

TEST(Matrix3x3Inverse, TimesTheMatrixIsTheIdentity) {
    Matrix matrix = make({2, 1, 3, -1, 4, 2, 5, 7, 1});
    Matrix inverse(matrix);
    inverse.inverse();
    expectNear(get(matrix * inverse), get(Matrix()), 1e-14);
    expectNear(get(inverse * matrix), get(Matrix()), 1e-14);
}

TEST(Matrix3x3Inverse, LeavesASingularMatrixAlone) {
    Matrix matrix = make(c_counting);
    matrix.transposedInverse();
    EXPECT_EQ(get(matrix), c_counting);
    matrix.inverse();
    EXPECT_EQ(get(matrix), (Values{1, 4, 7, 2, 5, 8, 3, 6, 9}));
}

TEST(Matrix3x3Inverse, OfRotationAndTranslationIsAffine) {
    Matrix matrix;
    matrix.translate({3, 4});
    matrix.rotate(37);
    Matrix inverse(matrix);
    inverse.affineInverse();
    expectNear(get(matrix * inverse), get(Matrix()), 1e-8);
    Matrix transposed(matrix);
    transposed.affineTransposedInverse();
    inverse.transpose();
    EXPECT_EQ(transposed, inverse);
}

TEST(Matrix3x3Inverse, AffineTakesTheRotationBlockAsItIs) {
    Matrix matrix = make({1, 2, 0, 3, 4, 0, 5, 6, 1});
    matrix.affineInverse();
    EXPECT_EQ(get(matrix), (Values{1, 3, 0, 2, 4, 0, -(1 * 5 + 2 * 6), -(3 * 5 + 4 * 6), 1}));
}

TEST(Matrix3x3, DecomposesByWhereTheAxesGo) {
    Matrix matrix = make({0, 2, 0, -3, 0, 0, 7, 8, 1});
    Vector2<double> translation;
    double rotation = 0;
    Vector2<double> scale;
    matrix.decompose(translation, rotation, scale);
    EXPECT_EQ(translation, Vector2<double>(7, 8));
    EXPECT_EQ(scale, Vector2<double>(2, 3));
    EXPECT_EQ(rotation, 90);
}

TEST(Matrix3x3, FloatFormComputesSinesInDouble) {
    Matrix3x3<float> matrix;
    matrix.setRotation(30);
    EXPECT_EQ(matrix.getValue(3), static_cast<float>(std::sin(30 * (3.14159265 / 180))));
    EXPECT_EQ(matrix.getValue(0), static_cast<float>(std::cos(30 * (3.14159265 / 180))));
}

} // namespace zyr
