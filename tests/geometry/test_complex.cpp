#include "zyr_common/geometry/zyr_complex.h"

#include <cmath>
#include <complex>
#include <gtest/gtest.h>

namespace zyr {

TEST(Complex, MultipliesAndDividesMemberByMember) {
    EXPECT_EQ(Complex<float>(2, 3) * Complex<float>(4, 5), Complex<float>(8, 15));
    EXPECT_EQ(Complex<double>(8, 15) / Complex<double>(4, 5), Complex<double>(2, 3));
}

TEST(Complex, TakesItsModuleFromTheProductOfItsMembers) {
    EXPECT_EQ(Complex<double>(3, 4).getModule(), std::sqrt(24.0));
    EXPECT_EQ(Complex<double>(2, 1).getModule(), 2);
    EXPECT_TRUE(std::isnan(Complex<double>(-1, 2).getModule()));
    EXPECT_TRUE(std::isnan(Complex<float>(1, -2).getModule()));
    EXPECT_EQ(Complex<float>(-1, -2).getModule(), 2.0f);
}

TEST(Complex, GivesAQuarterOfPiAsPhaseOfAnImaginaryNumber) {
    EXPECT_EQ(Complex<double>(0, 1).getPhase(), 0.7853982);
    EXPECT_EQ(Complex<double>(0, -1).getPhase(), -0.7853982);
    EXPECT_EQ(Complex<double>(0, 0).getPhase(), -0.7853982);
    EXPECT_EQ(Complex<float>(0, 5).getPhase(), 0.7853982f);
}

TEST(Complex, GivesThePhaseOfOtherNumbers) {
    EXPECT_NEAR(Complex<double>(1, 1).getPhase(), 0.78539816339744831, 1e-15);
    EXPECT_NEAR(Complex<double>(-1, 1).getPhase(), 2.3561944901923448, 1e-15);
    EXPECT_NEAR(Complex<double>(-1, -1).getPhase(), 3.9269908169872414, 1e-15);
    EXPECT_NEAR(Complex<double>(1, -1).getPhase(), -0.78539816339744831, 1e-15);
    EXPECT_EQ(Complex<double>(5, 0).getPhase(), 0);
}

TEST(Complex, NormalizesByItsOwnModule) {
    Complex<double> number(2, 4);
    number.normalize();
    EXPECT_EQ(number, Complex<double>(0.5, 1));
    Complex<double> zero(0, 4);
    zero.normalize();
    EXPECT_EQ(zero, Complex<double>(0, 4));
    Complex<double> one(0.5, 1);
    one.normalize();
    EXPECT_EQ(one, Complex<double>(0.5, 1));
}

TEST(Complex, RephasesByRadians) {
    Complex<float> number(3, 4);
    number.rephase(0);
    EXPECT_EQ(number, Complex<float>(3, 4));
    number.rephase(1.5707963267948966f);
    EXPECT_NEAR(number.r, -4, 1e-6);
    EXPECT_NEAR(number.i, 3, 1e-6);
    for (double angle : {0.5, -2.0, 4.0}) {
        Complex<double> turned(3, 4);
        turned.rephase(angle);
        const std::complex<double> expected = std::complex<double>(3, 4) * std::polar(1.0, angle);
        EXPECT_NEAR(turned.r, expected.real(), 1e-14);
        EXPECT_NEAR(turned.i, expected.imag(), 1e-14);
    }
}

TEST(Complex, ConjugatesAndMultipliesByDots) {
    Complex<float> number(3, 4);
    number.conjugate();
    EXPECT_EQ(number, Complex<float>(3, -4));
    EXPECT_EQ(Complex<float>(1, 2).dotProduct(Complex<float>(3, 4)), 11);
}

TEST(Complex, MeasuresDistanceByTheModuleOfTheDifference) {
    EXPECT_EQ(Complex<double>(5, 3).distance(Complex<double>(3, 2)), 2);
}

TEST(Complex, ComparesByBoxes) {
    EXPECT_EQ(Complex<float>(1, 1).boxCompare(Complex<float>(2, 2), 0.6f), 1);
    EXPECT_EQ(Complex<float>(1, 1).boxCompare(Complex<float>(2, 2), 0.5f), 0);
    EXPECT_EQ(Complex<float>(1, 1).boxCompare(Complex<float>(1, 3), 0.6f), 0);
}

} // namespace zyr
