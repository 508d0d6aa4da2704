#include "zyr_common/geometry/zyr_matrix.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace zyr {

typedef Matrix4x4<double> Matrix;
typedef Vector3<double> Point;
typedef std::vector<double> Values;

static const double c_degree = 3.14159265 / 180;
static const Values c_identity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
static const Values c_counting = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};

static Matrix make(const Values& p_values) {
    Matrix matrix;
    for (uint32_t i = 0; i < 16; ++i) {
        matrix.setValue(i, p_values[i]);
    }
    return matrix;
}

template <typename T> static Values get(const Matrix4x4<T>& p_matrix) {
    Values values;
    for (uint32_t i = 0; i < 16; ++i) {
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

static void expectNear(const Point& p_actual, const Point& p_expected, double p_tolerance = 1e-6) {
    EXPECT_NEAR(p_actual.x, p_expected.x, p_tolerance);
    EXPECT_NEAR(p_actual.y, p_expected.y, p_tolerance);
    EXPECT_NEAR(p_actual.z, p_expected.z, p_tolerance);
}

TEST(Matrix4x4, StartsAsTheIdentity) {
    EXPECT_EQ(get(Matrix()), c_identity);
    Matrix matrix = make(c_counting);
    matrix.clear();
    EXPECT_EQ(matrix, Matrix());
    matrix.setZero();
    EXPECT_EQ(get(matrix), Values(16, 0));
}

TEST(Matrix4x4, GivesRowsAcrossAndColumnsAlongItsStorage) {
    Matrix matrix = make(c_counting);
    EXPECT_EQ(matrix.getRow(1), Vector4<double>(2, 6, 10, 14));
    EXPECT_EQ(matrix.getColumn(1), Vector4<double>(5, 6, 7, 8));
}

TEST(Matrix4x4, CalculatesValueByValue) {
    Matrix a = make(c_counting);
    EXPECT_EQ(get(a + a), get(a * 2.0));
    EXPECT_EQ(get(a - a), Values(16, 0));
    EXPECT_EQ((a * 2.0).getValue(15), 32);
    EXPECT_EQ((a / 4.0).getValue(2), 0.75);
}

TEST(Matrix4x4, MultipliesRowsByColumns) {
    Matrix a = make(c_counting);
    Matrix product = a * a;
    EXPECT_EQ(get(product), (Values{90, 100, 110, 120, 202, 228, 254, 280, 314, 356, 398, 440, 426, 484, 542, 600}));
    EXPECT_EQ(a * Matrix(), a);
}

TEST(Matrix4x4, MultipliesVectorsAndTransformsPoints) {
    Matrix a = make(c_counting);
    EXPECT_EQ(a * Vector4<double>(1, 10, 100, 1000), Vector4<double>(13951, 15062, 16173, 17284));
    EXPECT_EQ(a.transform({1, 10, 100}), Point(1 + 50 + 900 + 13, 2 + 60 + 1000 + 14, 3 + 70 + 1100 + 15));
}

TEST(Matrix4x4Parts, WriteOnlyTheirValues) {
    Matrix matrix = make(c_counting);
    matrix.setTranslationPart({20, 30, 40});
    EXPECT_EQ(get(matrix), (Values{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 20, 30, 40, 16}));
    matrix = make(c_counting);
    matrix.setScalePart({20, 30, 40});
    EXPECT_EQ(get(matrix), (Values{20, 2, 3, 4, 5, 30, 7, 8, 9, 10, 40, 12, 13, 14, 15, 16}));
    matrix = make(c_counting);
    matrix.setUniformScalePart(5);
    EXPECT_EQ(get(matrix), (Values{5, 2, 3, 4, 5, 5, 7, 8, 9, 10, 5, 12, 13, 14, 15, 16}));
}

TEST(Matrix4x4Parts, EulerWritesNineValues) {
    Matrix matrix = make(c_counting);
    matrix.setRotationEulerPart(20, 30, 40);
    double sx = std::sin(20 * c_degree), cx = std::cos(20 * c_degree);
    double sy = std::sin(30 * c_degree), cy = std::cos(30 * c_degree);
    double sz = std::sin(40 * c_degree), cz = std::cos(40 * c_degree);
    EXPECT_EQ(get(matrix), (Values{cy * cz, cy * sz, -sy, 4, cz * sx * sy - cx * sz, sz * sx * sy + cx * cz, sx * cy, 8,
                                   cz * cx * sy + sx * sz, sz * cx * sy - sx * cz, cx * cy, 12, 13, 14, 15, 16}));
}

TEST(Matrix4x4Parts, SingleAxesTurnLikeTheVectors) {
    for (double degrees : {0.0, 33.0, 90.0, -120.0}) {
        Point point(1, 2, 3);
        Matrix matrix;
        matrix.setRotationX(degrees);
        Point turned(point);
        turned.rotateX(degrees);
        expectNear(matrix.transform(point), turned, 1e-12);
        matrix.setRotationY(degrees);
        turned = point;
        turned.rotateY(degrees);
        expectNear(matrix.transform(point), turned, 1e-12);
        matrix.setRotationZ(degrees);
        turned = point;
        turned.rotateZ(degrees);
        expectNear(matrix.transform(point), turned, 1e-12);
        matrix.setRotationAxis(degrees, {1, 2, -1});
        turned = point;
        turned.rotateAxis(degrees, {1, 2, -1});
        expectNear(matrix.transform(point), turned, 1e-12);
    }
}

TEST(Matrix4x4Parts, AxisWritesOnlyTheBlock) {
    Matrix matrix = make(c_counting);
    matrix.setRotationAxisPart(90, {0, 0, 7});
    expectNear(get(matrix), {0, 1, 0, 4, -1, 0, 0, 8, 0, 0, 1, 12, 13, 14, 15, 16});
    matrix = make(c_counting);
    matrix.setRotationXPart(90);
    expectNear(get(matrix), {1, 0, 0, 4, 0, 0, 1, 8, 0, -1, 0, 12, 13, 14, 15, 16});
}

TEST(Matrix4x4Parts, BeginWithTheIdentityInTheFullForms) {
    Matrix matrix = make(c_counting);
    matrix.setTranslation({2, 3, 4});
    EXPECT_EQ(get(matrix), (Values{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 2, 3, 4, 1}));
    matrix = make(c_counting);
    matrix.setScale({2, 3, 4});
    EXPECT_EQ(get(matrix), (Values{2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 0, 0, 0, 1}));
    matrix = make(c_counting);
    matrix.setUniformScale(2);
    EXPECT_EQ(get(matrix), (Values{2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1}));
    matrix = make(c_counting);
    matrix.setRotationEuler(0, 0, 90);
    expectNear(get(matrix), {0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
}

TEST(Matrix4x4Parts, MultiplyOnTheRight) {
    Matrix matrix;
    matrix.translate({10, 20, 30});
    matrix.scale({2, 3, 4});
    EXPECT_EQ(matrix.transform({1, 1, 1}), Point(12, 23, 34));
    matrix.uniformScale(2);
    EXPECT_EQ(matrix.transform({1, 1, 1}), Point(14, 26, 38));
    Matrix turned;
    turned.translate({5, 0, 0});
    turned.rotateZ(90);
    expectNear(turned.transform({2, 0, 0}), {5, 2, 0});
    turned.rotateX(90);
    expectNear(turned.transform({0, 0, 2}), {7, 0, 0});
    turned.rotateY(90);
    expectNear(turned.transform({0, 0, 2}), {5, 2, 0});
    turned.rotateAxis(-90, {0, 1, 0});
    expectNear(turned.transform({0, 0, 2}), {7, 0, 0});
}

TEST(Matrix4x4Parts, EulerTurnsAboutXFirst) {
    Matrix byEuler;
    byEuler.rotateEuler(20, 30, 40);
    Matrix byAxes;
    byAxes.rotateZ(40);
    byAxes.rotateY(30);
    byAxes.rotateX(20);
    expectNear(get(byEuler), get(byAxes), 1e-14);
    Matrix byVector;
    byVector.rotateEuler(Point(20, 30, 40));
    EXPECT_EQ(byVector, byEuler);
}

TEST(Matrix4x4Quaternion, WritesTheWholeMatrix) {
    Matrix matrix = make(c_counting);
    matrix.setRotationQuaternion({1, 2, 3, 4});
    EXPECT_EQ(get(matrix), (Values{1 - 2 * (4 + 9), 2 * (2 - 12), 2 * (3 + 8), 0, 2 * (2 + 12), 1 - 2 * (9 + 1),
                                   2 * (6 - 4), 0, 2 * (3 - 8), 2 * (6 + 4), 1 - 2 * (4 + 1), 0, 0, 0, 0, 1}));
}

TEST(Matrix4x4Quaternion, ComesBackOutOfTheMatrix) {
    const Vector4<double> quaternions[] = {{0.5, 0.5, 0.5, 0.5}, {1, 0, 0, 0},     {0, 1, 0, 0},
                                           {0, 0, 1, 0},         {0, 0, 0, 1},     {0.6, 0, 0.8, 0},
                                           {0, 0.8, 0.6, 0},     {0.8, 0.6, 0, 0}, {0.1, 0.7, 0.1, 0.7}};
    for (const Vector4<double>& quaternion : quaternions) {
        Matrix matrix;
        matrix.setRotationQuaternion(quaternion);
        Vector4<double> found = matrix.getRotationQuaternion();
        EXPECT_NEAR(std::fabs(found.dotProduct(quaternion)), 1, 1e-12) << quaternion.x << " " << quaternion.y;
    }
}

TEST(Matrix4x4Quaternion, TakesItsBranchByTheDiagonal) {
    Matrix matrix;
    EXPECT_EQ(matrix.getRotationQuaternion(), Vector4<double>(0, 0, 0, 1));
    matrix.setScale({1, -1, -1});
    EXPECT_EQ(matrix.getRotationQuaternion(), Vector4<double>(1, 0, 0, 0));
    matrix.setScale({-1, 1, -1});
    EXPECT_EQ(matrix.getRotationQuaternion(), Vector4<double>(0, 1, 0, 0));
    matrix.setScale({-1, -1, 1});
    EXPECT_EQ(matrix.getRotationQuaternion(), Vector4<double>(0, 0, 1, 0));
}

TEST(Matrix4x4Quaternion, RotatesOnTheRight) {
    Matrix matrix;
    matrix.translate({1, 2, 3});
    matrix.rotateQuaternion({0, 0, 1, 0});
    EXPECT_EQ(matrix.transform({1, 1, 1}), Point(0, 1, 4));
}

TEST(Matrix4x4Perspective, FollowsTheFrustum) {
    Matrix matrix = make(c_counting);
    matrix.setPerspective(-1, 3, -2, 6, 1, 5);
    EXPECT_EQ(get(matrix), (Values{0.5, 0, 0, 0, 0, 0.25, 0, 0, 0.5, 0.5, -1.5, -1, 0, 0, -2.5, 0}));
}

TEST(Matrix4x4Perspective, WithoutAFarPlaneIsInfinite) {
    Matrix matrix;
    matrix.setPerspective(-1, 1, -1, 1, 1, -1);
    EXPECT_EQ(matrix.getValue(10), -0.999);
    EXPECT_EQ(matrix.getValue(14), -1.998);
    Matrix4x4<float> narrow;
    narrow.setPerspective(-1, 1, -1, 1, 3, -1);
    EXPECT_EQ(narrow.getValue(10), -0.999f);
    EXPECT_EQ(narrow.getValue(14), -6.0f * 0.999f);
}

TEST(Matrix4x4Perspective, OfAnEmptyRangeIsZero) {
    Matrix matrix;
    matrix.setPerspective(1, 1, -1, 1, 1, 5);
    EXPECT_EQ(get(matrix), Values(16, 0));
    matrix.setPerspective(-1, 1, 2, 2, 1, 5);
    EXPECT_EQ(get(matrix), Values(16, 0));
    matrix.setPerspective(-1, 1, -1, 1, 5, 5);
    EXPECT_EQ(get(matrix), Values(16, 0));
}

TEST(Matrix4x4Perspective, TakesAnAngleOfView) {
    Matrix byAngle;
    byAngle.setPerspective(60, 2, 1, 10);
    double height = std::tan(60 * 0.017453292 * 0.5);
    Matrix byFrustum;
    byFrustum.setPerspective(-height * 2, height * 2, -height, height, 1, 10);
    EXPECT_EQ(byAngle, byFrustum);
}

TEST(Matrix4x4Ortho, FollowsTheBox) {
    Matrix matrix;
    matrix.setOrtho(-1, 3, -2, 6, 1, 5);
    EXPECT_EQ(get(matrix), (Values{0.5, 0, 0, 0, 0, 0.25, 0, 0, 0, 0, -0.5, 0, -0.5, -0.5, -1.5, 1}));
}

TEST(Matrix4x4, DecomposesByWhereTheAxesGo) {
    for (const Point& angles : {Point(0, 0, 0), Point(0, 0, 40), Point(0, 0, 100), Point(25, 0, 0)}) {
        Matrix matrix;
        matrix.translate({7, 8, 9});
        matrix.rotateEuler(angles);
        matrix.scale({2, 3, 4});
        Point translation;
        Point rotation;
        Point scale;
        matrix.decompose(translation, rotation, scale);
        EXPECT_EQ(translation, Point(7, 8, 9));
        expectNear(scale, {2, 3, 4}, 1e-9);
        // The x axis lies flat here, so its own angle is that about z, and the other two are read from the z axis.
        EXPECT_NEAR(rotation.z, angles.z, 1e-5);
    }
}

TEST(Matrix4x4, DecomposesTheIdentityIntoFixedAngles) {
    Point translation;
    Point rotation;
    Point scale;
    Matrix().decompose(translation, rotation, scale);
    EXPECT_EQ(translation, Point(0, 0, 0));
    EXPECT_EQ(scale, Point(1, 1, 1));
    // The z axis at (0, 0, 1): its y is 0, so the last angle is 90, and 90 - 90 is 0.
    EXPECT_EQ(rotation, Point(0, 0, 0));
    Point euler(5, 5, 5);
    Matrix().toEuler(euler);
    EXPECT_EQ(euler, Point(0, 0, 0));
}

TEST(Matrix4x4, ReadsEulerAnglesWithoutTakingTheOriginAway) {
    Matrix matrix;
    matrix.setTranslation({0, 1, 0});
    Point euler;
    matrix.toEuler(euler);
    EXPECT_NEAR(euler.z, 45, 1e-5);
    Point translation;
    Point rotation;
    Point scale;
    matrix.decompose(translation, rotation, scale);
    EXPECT_EQ(rotation.z, 0);
}

TEST(Matrix4x4, ComposesScaleTimesTheRotationAboutX) {
    Matrix matrix = make(c_counting);
    matrix.compose({1, 2, 3}, {0, 0, 0}, {2, 2, 2});
    EXPECT_EQ(get(matrix), (Values{2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1}));
    matrix.compose({1, 2, 3}, {90, 20, 30}, {2, 3, 4});
    expectNear(get(matrix), {2, 0, 0, 0, 0, 0, 4, 0, 0, -3, 0, 0, 0, 0, 0, 1});
}

TEST(Matrix4x4, Transposes) {
    Matrix matrix = make(c_counting);
    matrix.transpose();
    EXPECT_EQ(get(matrix), (Values{1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15, 4, 8, 12, 16}));
}

TEST(Matrix4x4Inverse, TimesTheMatrixIsTheIdentity) {
    Matrix matrix = make({2, 1, 3, 0, -1, 4, 2, 1, 5, 7, 1, 2, 3, -2, 6, 1});
    Matrix inverse(matrix);
    inverse.inverse();
    expectNear(get(matrix * inverse), c_identity, 1e-13);
    Matrix transposed(matrix);
    transposed.transposedInverse();
    transposed.transpose();
    EXPECT_EQ(transposed, inverse);
}

TEST(Matrix4x4Inverse, PutsEachCofactorInItsPlace) {
    Matrix matrix = make({2, 0, 0, 0, 0, 4, 0, 0, 0, 0, 1, 0, 6, 8, 0, 1});
    matrix.transposedInverse();
    EXPECT_EQ(get(matrix), (Values{0.5, 0, 0, -3, 0, 0.25, 0, -2, 0, 0, 1, 0, 0, 0, 0, 1}));
}

TEST(Matrix4x4Inverse, LeavesASingularMatrixAlone) {
    Matrix matrix = make(c_counting);
    matrix.transposedInverse();
    EXPECT_EQ(get(matrix), c_counting);
    matrix.inverse();
    EXPECT_EQ(get(matrix), (Values{1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15, 4, 8, 12, 16}));
}

TEST(Matrix4x4Inverse, OfRotationAndTranslationIsAffine) {
    Matrix matrix;
    matrix.translate({3, 4, 5});
    matrix.rotateEuler(20, 30, 40);
    Matrix inverse(matrix);
    inverse.affineInverse();
    expectNear(get(matrix * inverse), c_identity, 1e-12);
    Matrix transposed(matrix);
    transposed.affineTransposedInverse();
    inverse.transpose();
    EXPECT_EQ(transposed, inverse);
}

} // namespace zyr
