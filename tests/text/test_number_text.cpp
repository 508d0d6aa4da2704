#include "support/zyr_print_text.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/text/zyr_number_text.h"

#include <cmath>
#include <gmock/gmock.h>
#include <limits>

using namespace zyr;

namespace {

String format(double p_value, uint32_t p_precision) {
    String text("old");
    zyr_convertDoubleToStringPrec(p_value, text, p_precision);
    return text;
}

} // namespace

TEST(NumberToText, ZeroAndNotANumber) {
    EXPECT_EQ(format(0.0, 3), "0");
    EXPECT_EQ(format(-0.0, 3), "0");
    EXPECT_EQ(format(std::numeric_limits<double>::quiet_NaN(), 3), "nan");
    EXPECT_EQ(format(-std::numeric_limits<double>::quiet_NaN(), 3), "nan");
}

TEST(NumberToText, WholeNumbersHaveNoPoint) {
    EXPECT_EQ(format(7, 0), "7");
    EXPECT_EQ(format(-1200, 9), "-1200");
    EXPECT_EQ(format(2147483647.0, 5), "2147483647");
}

TEST(NumberToText, DigitsOfTheFractionAreNotPadded) {
    EXPECT_EQ(format(1.05, 2), "1.5");
    EXPECT_EQ(format(-0.25, 2), "-0.25");
    EXPECT_EQ(format(0.001, 3), "0.1");
    EXPECT_EQ(format(1.5, 3), "1.500");
    EXPECT_EQ(format(12.34, 2), "12.34");
}

TEST(NumberToText, RoundsTheFraction) {
    EXPECT_EQ(format(1.26, 1), "1.3");
    EXPECT_EQ(format(1.24, 1), "1.2");
    EXPECT_EQ(format(1.001, 2), "1.0");
}

TEST(NumberToText, RoundsUpIntoTheWholePart) {
    EXPECT_EQ(format(1.999, 2), "2.0");
    EXPECT_EQ(format(9.99, 1), "10.0");
    EXPECT_EQ(format(-9.99, 1), "-10.0");
}

// The remainder of exactly one half rounds a fraction of 0 or an odd one up, and does not carry.
TEST(NumberToText, HalfRoundsZeroAndOddFractionsUp) {
    EXPECT_EQ(format(0.25, 1), "0.2");
    EXPECT_EQ(format(0.75, 1), "0.8");
    EXPECT_EQ(format(3.03125, 4), "3.312");
    EXPECT_EQ(format(1.0 / 32, 4), "0.312");
    EXPECT_EQ(format(0.05, 1), "0.1");
    EXPECT_EQ(format(0.125, 2), "0.12");
    EXPECT_EQ(format(0.375, 2), "0.38");
    EXPECT_EQ(format(0.995, 2), "0.100");
}

TEST(NumberToText, PrecisionZeroRoundsHalvesToEven) {
    EXPECT_EQ(format(2.5, 0), "2");
    EXPECT_EQ(format(3.5, 0), "4");
    EXPECT_EQ(format(2.7, 0), "3");
    EXPECT_EQ(format(2.2, 0), "2");
    EXPECT_EQ(format(-2.7, 0), "-3");
    EXPECT_EQ(format(0.5, 0), "0");
    EXPECT_EQ(format(-0.25, 0), "-0");
}

TEST(NumberToText, LargeMagnitudesTakeTheExponentForm) {
    EXPECT_EQ(format(1e10, 2), "1.000000e+10");
    EXPECT_EQ(format(-1e10, 2), "-1.000000e+10");
    EXPECT_EQ(format(2147483647.5, 0), "2.147484e+09");
    EXPECT_EQ(format(std::numeric_limits<double>::infinity(), 2), "inf");
    EXPECT_EQ(format(-std::numeric_limits<double>::infinity(), 2), "-inf");
    EXPECT_EQ(format(-std::numeric_limits<double>::max(), 2), "-1.797693e+308");
}

TEST(NumberToText, PrecisionEndsAtNine) {
    EXPECT_EQ(format(0.123456789123, 9), "0.123456789");
    EXPECT_EQ(format(0.123456789123, 4000000000u), "0.123456789");
    String text;
    zyr_convertDoubleToString(0.5, text);
    EXPECT_EQ(text, "0.500000000");
    zyr_convertDoubleToString(1e-10, text);
    EXPECT_EQ(text, "0.0");
}

TEST(NumberToText, BufferSizeIsNotLookedAt) {
    char buffer[64];
    zyr_convertDoubleToCharacters(buffer, 0, -12.5, 1);
    EXPECT_STREQ(buffer, "-12.5");
}

TEST(TextToNumber, ReadsSignDigitsFractionAndExponent) {
    EXPECT_EQ(zyr_convertStringToDouble("  -1.5e2x"), -150.0);
    EXPECT_EQ(zyr_convertStringToDouble("\t +42"), 42.0);
    EXPECT_EQ(zyr_convertStringToDouble("1.25"), 1.25);
    EXPECT_EQ(zyr_convertStringToDouble(".5"), 0.5);
    EXPECT_EQ(zyr_convertStringToDouble("5."), 5.0);
    EXPECT_EQ(zyr_convertStringToDouble("1E3"), 1000.0);
    EXPECT_EQ(zyr_convertStringToDouble("15e-1"), 1.5);
    EXPECT_EQ(zyr_convertStringToDouble("1e+2"), 100.0);
}

TEST(TextToNumber, StopsAtWhatDoesNotFit) {
    EXPECT_EQ(zyr_convertStringToDouble("abc"), 0.0);
    EXPECT_EQ(zyr_convertStringToDouble(""), 0.0);
    EXPECT_EQ(zyr_convertStringToDouble("--1"), 0.0);
    EXPECT_EQ(zyr_convertStringToDouble("\n1"), 0.0);
    EXPECT_EQ(zyr_convertStringToDouble("1,5"), 1.0);
    EXPECT_EQ(zyr_convertStringToDouble("1.2.3"), 1.2);
    EXPECT_EQ(zyr_convertStringToDouble("inf"), 0.0);
    EXPECT_TRUE(std::signbit(zyr_convertStringToDouble("-0")));
}

TEST(TextToNumber, ExponentWithoutDigitsIsIgnored) {
    EXPECT_EQ(zyr_convertStringToDouble("2e"), 2.0);
    EXPECT_EQ(zyr_convertStringToDouble("2e+"), 2.0);
    EXPECT_EQ(zyr_convertStringToDouble("2e-x"), 2.0);
}

TEST(TextToNumber, ExponentIsCapped) {
    EXPECT_EQ(zyr_convertStringToDouble("1e308"), zyr_convertStringToDouble("1e99999999999999999999"));
    EXPECT_DOUBLE_EQ(zyr_convertStringToDouble("1e400"), 1e308);
    EXPECT_DOUBLE_EQ(zyr_convertStringToDouble("1e-400"), 1e-308);
    EXPECT_EQ(zyr_convertStringToDouble("10e308"), std::numeric_limits<double>::infinity());
}

TEST(TextToNumber, ScalesInFixedSteps) {
    // 1e23 by one 1e8 after the other and the rest by tens is not the nearest number to 1e23.
    double scale = 1;
    scale *= 1e8;
    scale *= 1e8;
    for (int i = 0; i < 7; i++) {
        scale *= 10;
    }
    EXPECT_EQ(zyr_convertStringToDouble("3e23"), 3 * scale);
    EXPECT_EQ(zyr_convertStringToDouble("3e-23"), 3 / scale);
}

TEST(TextToNumber, FractionAddsDigitByDigit) {
    EXPECT_EQ(zyr_convertStringToDouble("0.123"), 0 + 1 / 10.0 + 2 / 100.0 + 3 / 1000.0);
}

TEST(VersionText, IsAppended) {
    String text("v");
    zyr_getVersionString((1ull << 40) | (5ull << 16) | 7, text);
    EXPECT_EQ(text, "v1.5.7");
    text.clear();
    zyr_getVersionString(UINT64_MAX, text);
    EXPECT_EQ(text, "16777215.16777215.65535");
}

TEST(ArrayOfStrings, AppendsEachArgument) {
    char first[] = "one";
    char second[] = "two";
    char* arguments[] = {first, second};
    Array<String> strings;
    strings.pushBack("zero");
    zyr_getArrayOfStrings(2, arguments, strings);
    ASSERT_EQ(strings.getSize(), 3u);
    EXPECT_EQ(strings.getData()[1], "one");
    EXPECT_EQ(strings.getData()[2], "two");
}

TEST(ArrayOfStrings, ConvertsWideArguments) {
    wchar_t first[] = L"\u20AC";
    wchar_t* arguments[] = {first};
    Array<String> strings;
    zyr_getArrayOfStrings(1, arguments, strings);
    ASSERT_EQ(strings.getSize(), 1u);
    EXPECT_EQ(strings.getData()[0], "\xE2\x82\xAC");
}

TEST(ArrayOfStrings, CountBelowOneDoesNothing) {
    Array<String> strings;
    zyr_getArrayOfStrings(0, static_cast<char**>(nullptr), strings);
    zyr_getArrayOfStrings(-1, static_cast<wchar_t**>(nullptr), strings);
    EXPECT_TRUE(strings.isEmpty());
}
