#include "zyr_common/geometry/zyr_rational.h"
#include "zyr_common/geometry/zyr_scalar.h"
#include "zyr_common/geometry/zyr_vector.h"

#include <cmath>
#include <gtest/gtest.h>

namespace zyr {

template <class V> static void expectNear(const V& p_actual, const V& p_expected, double p_tolerance) {
    zyr_forEachField<V>([&](const auto& p_field) {
        EXPECT_NEAR(static_cast<double>(p_actual.*p_field.m_member), static_cast<double>(p_expected.*p_field.m_member),
                    p_tolerance)
            << p_field.m_key;
    });
}

TEST(Vector, StartsAtZero) {
    EXPECT_EQ(Vector2<int32_t>(), Vector2<int32_t>(0, 0));
    EXPECT_EQ(Vector3<double>(), Vector3<double>(0, 0, 0));
    EXPECT_EQ(Vector4<uint64_t>(), Vector4<uint64_t>(0, 0, 0, 0));
}

TEST(VectorArithmetic, WorksFieldByField) {
    Vector3<float> a(1, 2, 3);
    Vector3<float> b(4, 8, 16);
    EXPECT_EQ(a + b, Vector3<float>(5, 10, 19));
    EXPECT_EQ(b - a, Vector3<float>(3, 6, 13));
    EXPECT_EQ(a * b, Vector3<float>(4, 16, 48));
    EXPECT_EQ(b / a, Vector3<float>(4, 4, 16.0f / 3.0f));
    EXPECT_EQ(+a, a);
    EXPECT_EQ(-a, Vector3<float>(-1, -2, -3));
}

TEST(VectorArithmetic, TakesANumber) {
    Vector2<double> a(1, 2);
    EXPECT_EQ(a + 10.0, Vector2<double>(11, 12));
    EXPECT_EQ(a - 10.0, Vector2<double>(-9, -8));
    EXPECT_EQ(a * 3.0, Vector2<double>(3, 6));
    EXPECT_EQ(a / 4.0, Vector2<double>(0.25, 0.5));
}

TEST(VectorArithmetic, AssignsInPlace) {
    Vector2<double> a(1, 2);
    a += Vector2<double>(1, 1);
    EXPECT_EQ(a, Vector2<double>(2, 3));
    a -= Vector2<double>(1, 2);
    EXPECT_EQ(a, Vector2<double>(1, 1));
    a *= Vector2<double>(6, 8);
    EXPECT_EQ(a, Vector2<double>(6, 8));
    a /= Vector2<double>(3, 2);
    EXPECT_EQ(a, Vector2<double>(2, 4));
    a += 1.0;
    EXPECT_EQ(a, Vector2<double>(3, 5));
    a -= 2.0;
    EXPECT_EQ(a, Vector2<double>(1, 3));
    EXPECT_EQ(&(a *= 2.0), &a);
    EXPECT_EQ(a, Vector2<double>(2, 6));
    a /= 2.0;
    EXPECT_EQ(a, Vector2<double>(1, 3));
}

TEST(VectorArithmetic, DividesInPlaceByTheReciprocal) {
    // 5 * (1 / 49.0) and 5 / 49.0 differ in the last bit.
    Vector2<double> a(5, 0);
    EXPECT_NE(5 * (1 / 49.0), 5 / 49.0);
    EXPECT_EQ((a / 49.0).x, 5 / 49.0);
    a /= 49.0;
    EXPECT_EQ(a.x, 5 * (1 / 49.0));
    Vector2<double> b(5, 0);
    b /= Vector2<double>(49, 1);
    EXPECT_EQ(b.x, 5 / 49.0);
}

TEST(VectorArithmetic, WrapsIntegers) {
    EXPECT_EQ(Vector2<int32_t>(INT32_MAX, 0) + 1, Vector2<int32_t>(INT32_MIN, 1));
    EXPECT_EQ(Vector2<uint32_t>(0, 5) - 1u, Vector2<uint32_t>(UINT32_MAX, 4));
    EXPECT_EQ(-Vector2<uint64_t>(1, 0), Vector2<uint64_t>(UINT64_MAX, 0));
    EXPECT_EQ(-Vector2<int64_t>(INT64_MIN, 3), Vector2<int64_t>(INT64_MIN, -3));
}

TEST(VectorArithmetic, DividesIntegersAsTheTargetDoes) {
    EXPECT_EQ(Vector2<int32_t>(7, -7) / 2, Vector2<int32_t>(3, -3));
    EXPECT_EQ(Vector2<int32_t>(7, -7) / 0, Vector2<int32_t>(0, 0));
    EXPECT_EQ(Vector2<int32_t>(INT32_MIN, 4) / -1, Vector2<int32_t>(INT32_MIN, -4));
    Vector2<int32_t> a(9, 10);
    a /= 4;
    EXPECT_EQ(a, Vector2<int32_t>(2, 2));
}

TEST(ScalarRecord, CalculatesLikeAVector) {
    EXPECT_EQ(Scalar<int32_t>(7) / Scalar<int32_t>(2), Scalar<int32_t>(3));
    EXPECT_EQ(Scalar<double>(1) + 2.5, Scalar<double>(3.5));
    EXPECT_NE(Scalar<uint64_t>(1), Scalar<uint64_t>(2));
}

TEST(RationalRecord, ComparesBothNumbersAsTheyStand) {
    EXPECT_EQ(Rational<int32_t>(1, 2), Rational<int32_t>(1, 2));
    EXPECT_NE(Rational<int32_t>(1, 2), Rational<int32_t>(2, 4));
    EXPECT_EQ(Rational<int64_t>(), Rational<int64_t>(0, 0));
}

TEST(Vector, MeasuresItself) {
    EXPECT_EQ(Vector2<float>(3, 4).getModule(), 5);
    EXPECT_EQ(Vector2<float>(3, 4).getModuleSquare(), 25);
    EXPECT_EQ(Vector3<double>(2, 3, 6).getModule(), 7);
    EXPECT_EQ(Vector4<double>(1, 1, 1, 1).getModule(), 2);
    EXPECT_EQ(Vector4<float>(2, 4, 5, 6).getModuleSquare(), 81);
    EXPECT_EQ(Vector2<float>(1, 1).distance(Vector2<float>(4, 5)), 5);
    EXPECT_EQ(Vector3<float>(1, 1, 1).distance(Vector3<float>(3, 4, 7)), 7);
    EXPECT_EQ(Vector4<float>(0, 0, 0, 0).distance(Vector4<float>(1, 1, 1, 1)), 2);
}

TEST(Vector, MeasuresIntegersInTheirType) {
    EXPECT_EQ(Vector2<int32_t>(1, 1).getModule(), 1);
    EXPECT_EQ(Vector2<int32_t>(3, 4).distance(Vector2<int32_t>(0, 0)), 5);
    EXPECT_EQ(Vector2<int32_t>(65536, 0).getModuleSquare(), 0);
    EXPECT_EQ(Vector2<uint32_t>(3, 0).distance(Vector2<uint32_t>(4, 0)), 1u);
}

TEST(Vector, MultipliesByDotsAndCrosses) {
    EXPECT_EQ(Vector2<int32_t>(1, 2).dotProduct(Vector2<int32_t>(3, 4)), 11);
    EXPECT_EQ(Vector3<float>(1, 2, 3).dotProduct(Vector3<float>(4, 5, 6)), 32);
    EXPECT_EQ(Vector4<double>(1, 2, 3, 4).dotProduct(Vector4<double>(5, 6, 7, 8)), 70);
    EXPECT_EQ(Vector3<float>(1, 2, 3).crossProduct(Vector3<float>(4, 5, 6)), Vector3<float>(-3, 6, -3));
    EXPECT_EQ(Vector3<int32_t>(1, 0, 0).crossProduct(Vector3<int32_t>(0, 1, 0)), Vector3<int32_t>(0, 0, 1));
}

TEST(VectorNormalize, BringsTheModuleToOne) {
    Vector2<double> a(3, 4);
    a.normalize();
    EXPECT_EQ(a, Vector2<double>(3 * (1 / 5.0), 4 * (1 / 5.0)));
    Vector4<float> b(2, 2, 2, 2);
    b.normalize();
    EXPECT_EQ(b, Vector4<float>(0.5f, 0.5f, 0.5f, 0.5f));
}

TEST(VectorNormalize, LeavesZeroAndUnitVectorsAlone) {
    Vector3<float> zero;
    zero.normalize();
    EXPECT_EQ(zero, Vector3<float>(0, 0, 0));
    Vector3<float> unit(0, -1, 0);
    unit.normalize();
    EXPECT_EQ(unit, Vector3<float>(0, -1, 0));
}

TEST(VectorNormalize, WorksInTheTypeItself) {
    Vector2<int32_t> a(30, 40);
    a.normalize();
    EXPECT_EQ(a, Vector2<int32_t>(0, 0));
    Vector2<int32_t> unit(1, 0);
    unit.normalize();
    EXPECT_EQ(unit, Vector2<int32_t>(1, 0));
}

TEST(VectorBoxCompare, IsStrictOnEveryAxis) {
    EXPECT_EQ(Vector2<float>(1, 1).boxCompare(Vector2<float>(2, 2), 0.6f), 1);
    EXPECT_EQ(Vector2<float>(1, 1).boxCompare(Vector2<float>(2, 2), 0.5f), 0);
    EXPECT_EQ(Vector2<float>(2, 2).boxCompare(Vector2<float>(1, 1), 0.6f), 1);
    EXPECT_EQ(Vector2<float>(2, 2).boxCompare(Vector2<float>(1, 1), 0.5f), 0);
    EXPECT_EQ(Vector2<float>(1, 1).boxCompare(Vector2<float>(1, 1), 0), 0);
    EXPECT_EQ(Vector2<float>(1, 1).boxCompare(Vector2<float>(1, 3), 0.6f), 0);
    EXPECT_EQ(Vector3<double>(1, 1, 1).boxCompare(Vector3<double>(1, 1, 2.1), 0.6), 1);
    EXPECT_EQ(Vector3<double>(1, 1, 1).boxCompare(Vector3<double>(1, 1, 2.3), 0.6), 0);
    EXPECT_EQ(Vector4<double>(1, 1, 1, 1).boxCompare(Vector4<double>(1, 1, 1, -0.1), 0.6), 1);
    EXPECT_EQ(Vector4<double>(1, 1, 1, 1).boxCompare(Vector4<double>(1, 1, 1, -0.3), 0.6), 0);
    EXPECT_EQ(Vector2<int32_t>(1, 1).boxCompare(Vector2<int32_t>(2, 2), 1), 1);
    EXPECT_EQ(Vector2<int32_t>(1, 1).boxCompare(Vector2<int32_t>(3, 2), 1), 0);
}

TEST(Vector2Angle, GoesFromZeroUpTo360) {
    EXPECT_EQ(Vector2<double>(1, 0).getAngle(), 0);
    EXPECT_NEAR(Vector2<double>(1, 1).getAngle(), 45, 1e-6);
    EXPECT_EQ(Vector2<double>(0, 2).getAngle(), 90);
    EXPECT_NEAR(Vector2<double>(-1, 1).getAngle(), 135, 1e-6);
    EXPECT_EQ(Vector2<double>(-3, 0).getAngle(), 180);
    EXPECT_NEAR(Vector2<double>(-1, -1).getAngle(), 225, 1e-6);
    EXPECT_EQ(Vector2<double>(0, -1).getAngle(), 270);
    EXPECT_NEAR(Vector2<double>(1, -1).getAngle(), 315, 1e-6);
}

TEST(Vector2Angle, OfTheZeroVectorIs270) {
    EXPECT_EQ(Vector2<float>(0, 0).getAngle(), 270);
    EXPECT_EQ(Vector2<int32_t>(0, 0).getAngle(), 270);
}

TEST(Vector2Angle, UsesTheShortConstant) {
    EXPECT_EQ(Vector2<double>(1, 1).getAngle(), std::atan(1.0) * 180 / 3.1415927);
    EXPECT_NE(Vector2<double>(1, 1).getAngle(), 45);
}

TEST(Vector2Rotate, TurnsFromXTowardY) {
    Vector2<float> a(1, 0);
    a.rotate(90);
    expectNear(a, Vector2<float>(0, 1), 1e-6);
    Vector2<double> b(2, 1);
    b.rotate(180);
    expectNear(b, Vector2<double>(-2, -1), 1e-7);
    Vector2<double> c(3, 4);
    c.rotate(0);
    EXPECT_EQ(c, Vector2<double>(3, 4));
}

TEST(Vector2Rotate, ComputesTheFloatFormInDouble) {
    Vector2<float> a(1, 0);
    a.rotate(30);
    double radians = 30 * (3.14159265 / 180);
    EXPECT_EQ(a.x, static_cast<float>(std::cos(radians)));
    EXPECT_EQ(a.y, static_cast<float>(std::sin(radians)));
}

TEST(Vector2Rotate, CutsSinesAndCosinesOfIntegers) {
    Vector2<int32_t> a(3, 4);
    a.rotate(90);
    EXPECT_EQ(a, Vector2<int32_t>(-4, 3));
    a.rotate(45);
    EXPECT_EQ(a, Vector2<int32_t>(0, 0));
}

TEST(Vector3Angle, LiesBetweenTwoVectors) {
    EXPECT_NEAR(Vector3<double>(1, 0, 0).getAngle(Vector3<double>(0, 2, 0)), 90, 1e-5);
    EXPECT_NEAR(Vector3<double>(1, 0, 0).getAngle(Vector3<double>(-5, 0, 0)), 180, 1e-5);
    EXPECT_NEAR(Vector3<double>(1, 0, 0).getAngle(Vector3<double>(1, 1, 0)), 45, 1e-5);
    EXPECT_NEAR(Vector4<double>(0, 0, 0, 1).getAngle(Vector4<double>(0, 0, 1, 0)), 90, 1e-5);
}

TEST(Vector3Angle, IsZeroForNearVectors) {
    EXPECT_EQ(Vector3<double>(1, 0, 0).getAngle(Vector3<double>(1, 0.0009, 0)), 0);
    EXPECT_GT(Vector3<double>(1, 0, 0).getAngle(Vector3<double>(1, 0.0011, 0)), 0);
    EXPECT_EQ(Vector3<float>().getAngle(Vector3<float>()), 0);
    EXPECT_EQ(Vector4<float>(1, 2, 3, 4).getAngle(Vector4<float>(1, 2, 3, 4)), 0);
}

TEST(Vector3Rotate, TurnsAboutEachAxis) {
    Vector3<double> a(1, 2, 3);
    a.rotateX(90);
    expectNear(a, Vector3<double>(1, -3, 2), 1e-7);
    a = {1, 2, 3};
    a.rotateY(90);
    expectNear(a, Vector3<double>(3, 2, -1), 1e-7);
    a = {1, 2, 3};
    a.rotateZ(90);
    expectNear(a, Vector3<double>(-2, 1, 3), 1e-7);
}

TEST(Vector3Rotate, TurnsAboutAnyAxisOfAnyLength) {
    for (double degrees : {30.0, 90.0, 211.0}) {
        Vector3<double> byAxis(1, 2, 3);
        Vector3<double> byName(1, 2, 3);
        byAxis.rotateAxis(degrees, Vector3<double>(5, 0, 0));
        byName.rotateX(degrees);
        expectNear(byAxis, byName, 1e-12);
        byAxis.rotateAxis(degrees, Vector3<double>(0, 0.5, 0));
        byName.rotateY(degrees);
        expectNear(byAxis, byName, 1e-12);
        byAxis.rotateAxis(degrees, Vector3<double>(0, 0, 1));
        byName.rotateZ(degrees);
        expectNear(byAxis, byName, 1e-12);
    }
    Vector3<double> turned(1, 0, 0);
    const Vector3<double> diagonal(1, 1, 1);
    turned.rotateAxis(120, diagonal);
    expectNear(turned, Vector3<double>(0, 1, 0), 1e-7);
    EXPECT_EQ(diagonal, Vector3<double>(1, 1, 1));
}

TEST(Vector4Rotate, LeavesWAlone) {
    Vector4<double> a(1, 2, 3, 4);
    a.rotateX(90);
    expectNear(a, Vector4<double>(1, -3, 2, 4), 1e-7);
    a = {1, 2, 3, 4};
    a.rotateY(90);
    expectNear(a, Vector4<double>(3, 2, -1, 4), 1e-7);
    a = {1, 2, 3, 4};
    a.rotateZ(90);
    expectNear(a, Vector4<double>(-2, 1, 3, 4), 1e-7);
    a = {1, 0, 0, 4};
    a.rotateAxis(120, Vector3<double>(1, 1, 1));
    expectNear(a, Vector4<double>(0, 1, 0, 4), 1e-7);
}

TEST(Vector4Slerp, GivesEqualQuaternionsBack) {
    Vector4<float> a(0.5f, 0.5f, 0.5f, 0.5f);
    EXPECT_EQ(Vector4<float>::slerp(a, a, 0.3f), a);
}

TEST(Vector4Slerp, FollowsTheArcForDistantQuaternions) {
    Vector4<double> middle = Vector4<double>::slerp({1, 0, 0, 0}, {0, 1, 0, 0}, 0.5);
    expectNear(middle, Vector4<double>(std::sqrt(0.5), std::sqrt(0.5), 0, 0), 1e-15);
    Vector4<double> third = Vector4<double>::slerp({1, 0, 0, 0}, {0, 1, 0, 0}, 1.0 / 3);
    expectNear(third, Vector4<double>(std::sqrt(3) / 2, 0.5, 0, 0), 1e-15);
}

TEST(Vector4Slerp, BlendsNearQuaternionsOnALine) {
    Vector4<double> a(1, 0, 0, 0);
    Vector4<double> b(0.95, 0.3122498999199199, 0, 0);
    Vector4<double> middle = Vector4<double>::slerp(a, b, 0.5);
    EXPECT_EQ(middle, Vector4<double>(1 * 0.5 + 0.95 * 0.5, 0.3122498999199199 * 0.5, 0, 0));
    EXPECT_LT(middle.getModule(), 0.99);
}

TEST(Vector4Slerp, SwitchesAtADifferenceOfATenth) {
    Vector4<double> a(1, 0, 0, 0);
    Vector4<double> arc = Vector4<double>::slerp(a, {0.89, std::sqrt(1 - 0.89 * 0.89), 0, 0}, 0.5);
    EXPECT_NEAR(arc.getModule(), 1, 1e-12);
    Vector4<double> line = Vector4<double>::slerp(a, {0.91, std::sqrt(1 - 0.91 * 0.91), 0, 0}, 0.5);
    EXPECT_LT(line.getModule(), 0.98);
}

TEST(Vector4Slerp, TakesTheShorterArc) {
    Vector4<double> middle = Vector4<double>::slerp({1, 0, 0, 0}, {-0.95, -0.3122498999199199, 0, 0}, 0.5);
    EXPECT_EQ(middle, Vector4<double>(1 * 0.5 + 0.95 * 0.5, 0.3122498999199199 * 0.5, 0, 0));
    Vector4<double> opposite = Vector4<double>::slerp({1, 0, 0, 0}, {-0.5, std::sqrt(0.75), 0, 0}, 1);
    expectNear(opposite, Vector4<double>(0.5, -std::sqrt(0.75), 0, 0), 1e-12);
}

} // namespace zyr
