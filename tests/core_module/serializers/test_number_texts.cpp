// Numbers as the text formats write them: the digits of integers, and of real numbers the shortest that read back.
#include "core_module/serializers/zyr_number_words.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

namespace zyr {
namespace {

template <typename T> std::string getText(T p_value) {
    uint8_t text[c_numberRoom];
    const uint8_t* end = putNumberText(text, p_value);
    EXPECT_LE(end, text + sizeof(text));
    return std::string(reinterpret_cast<const char*>(text), static_cast<size_t>(end - text));
}

/// What the standard library writes, which is the shortest form too.
template <typename T> std::string getStandardText(T p_value) {
    char text[64];
    return std::string(text, std::to_chars(text, text + sizeof(text), p_value).ptr);
}

template <typename T> void expectStandardText(T p_value) {
    const std::string text = getText(p_value);
    EXPECT_EQ(text, getStandardText(p_value));
    EXPECT_EQ(getText(-p_value), getStandardText(-p_value));
    T back = 0;
    EXPECT_TRUE(parseNumber(text.data(), text.size(), back));
    EXPECT_EQ(back, p_value) << text;
}

/// Numbers with more than four digits behind the point; those with fewer never have an exponent.
template <typename T> class RealTexts : public testing::Test {
protected:
    using Bits = std::conditional_t<sizeof(T) == 4, uint32_t, uint64_t>;
    static constexpr int c_fractionBits = std::numeric_limits<T>::digits - 1;

    static bool isShort(T p_value) {
        const T scaled = p_value * T(10000);
        return std::round(scaled) / T(10000) == p_value && scaled < std::ldexp(T(1), c_fractionBits + 1);
    }
    static void expectUnlessShort(T p_value) {
        if (!isShort(p_value)) {
            expectStandardText(p_value);
        }
    }
};

using RealTypes = testing::Types<float, double>;
TYPED_TEST_SUITE(RealTexts, RealTypes);

TYPED_TEST(RealTexts, AreTheShortestOnesAroundEachPowerOfTwo) {
    for (int exponent = -30; exponent <= 70; exponent++) {
        TypeParam above = std::ldexp(TypeParam(1), exponent);
        TypeParam below = above;
        for (int i = 0; i < 20; i++) {
            this->expectUnlessShort(above);
            this->expectUnlessShort(below);
            above = std::nextafter(above, std::numeric_limits<TypeParam>::max());
            below = std::nextafter(below, TypeParam(0));
        }
    }
}

TYPED_TEST(RealTexts, AreTheShortestOnesOfAnyBits) {
    using Integer = typename TestFixture::Bits;
    std::mt19937_64 numbers(4711);
    // All numbers from 2^-12 up to 2^56 are as likely.
    const Integer first = std::bit_cast<Integer>(std::ldexp(TypeParam(1), -12));
    const Integer range = std::bit_cast<Integer>(std::ldexp(TypeParam(1), 56)) - first;
    for (int i = 0; i < 30000; i++) {
        this->expectUnlessShort(std::bit_cast<TypeParam>(static_cast<Integer>(first + numbers() % range)));
    }
}

TYPED_TEST(RealTexts, AreTheShortestOnesOfFewDigits) {
    std::mt19937_64 numbers(4712);
    for (int scale = 5; scale <= 12; scale++) {
        for (int i = 0; i < 1000; i++) {
            const auto digits = static_cast<TypeParam>(numbers() % 10000000);
            this->expectUnlessShort(digits / static_cast<TypeParam>(std::pow(10.0, scale)));
        }
    }
}

TYPED_TEST(RealTexts, OfLargeIntegersAreTheShorterOfBothForms) {
    std::mt19937_64 numbers(4713);
    for (uint64_t unit = 1; unit < 1000000000; unit *= 10) {
        for (int i = 0; i < 200; i++) {
            const auto number = static_cast<TypeParam>((numbers() % 900000 + 100000) * unit * 1000000);
            this->expectUnlessShort(number);
        }
    }
}

TEST(NumberTexts, OfFewDigitsBehindThePointHaveNoExponent) {
    EXPECT_EQ(getText(0.0001), "0.0001");
    EXPECT_EQ(getText(-0.0005F), "-0.0005");
    EXPECT_EQ(getText(120000000000.0), "120000000000");
    EXPECT_EQ(getText(9.0625), "9.0625");
    EXPECT_EQ(getText(10.01), "10.01");
    EXPECT_EQ(getText(-2.5F), "-2.5");
    EXPECT_EQ(getText(0.0), "0");
    EXPECT_EQ(getText(-0.0), "-0");
}

TEST(NumberTexts, OfRealNumbersAtTheEndsOfTheirRange) {
    expectStandardText(std::numeric_limits<double>::max());
    expectStandardText(std::numeric_limits<double>::min());
    expectStandardText(std::numeric_limits<double>::denorm_min());
    expectStandardText(std::numeric_limits<float>::max());
    expectStandardText(std::numeric_limits<float>::denorm_min());
}

TEST(NumberTexts, OfIntegersHaveAllTheirDigits) {
    EXPECT_EQ(getText(uint64_t(0)), "0");
    uint64_t power = 1;
    for (int digits = 1; digits <= 20; digits++, power *= 10) {
        for (const uint64_t number : {power - 1, power, power + 1, power * 9, power + power / 2}) {
            EXPECT_EQ(getText(number), std::to_string(number));
            EXPECT_EQ(getText(static_cast<int64_t>(number)), std::to_string(static_cast<int64_t>(number)));
            EXPECT_EQ(getText(-static_cast<int64_t>(number)), std::to_string(-static_cast<int64_t>(number)));
        }
    }
    EXPECT_EQ(getText(UINT64_MAX), "18446744073709551615");
    EXPECT_EQ(getText(INT64_MAX), "9223372036854775807");
    EXPECT_EQ(getText(INT64_MIN), "-9223372036854775808");
}

TEST(NumberTexts, OfEachIntegerOfFourDigitsAreRight) {
    for (uint32_t number = 0; number < 10000; number++) {
        ASSERT_EQ(getText(number), std::to_string(number));
        ASSERT_EQ(getText(number * 10000 + 1), std::to_string(number * 10000 + 1));
    }
}

template <typename T> bool isNumber(const std::string& p_text) {
    T value = 77;
    const bool done = parseNumber(p_text.data(), p_text.size(), value);
    EXPECT_TRUE(done || value == 77) << p_text;
    return done;
}

TEST(NumberTexts, OfIntegersAreReadAtEachLength) {
    uint64_t expected = 0;
    std::string text;
    for (uint64_t digit = 1; digit <= 19; digit++) {
        expected = expected * 10 + digit % 10;
        text += static_cast<char>('0' + digit % 10);
        uint64_t value = 0;
        int64_t negative = 0;
        EXPECT_TRUE(parseNumber(text.data(), text.size(), value));
        EXPECT_EQ(value, expected);
        EXPECT_TRUE(parseNumber(("-" + text).data(), text.size() + 1, negative));
        EXPECT_EQ(negative, -static_cast<int64_t>(expected));
    }
    EXPECT_TRUE(isNumber<uint64_t>("00000000000000000000000000000012"));
}

TEST(NumberTexts, WithAByteThatIsNoDigitAreRefused) {
    for (size_t length = 1; length < 22; length++) {
        for (size_t place = 0; place < length; place++) {
            for (const char byte : {'/', ':', ' ', '+', '\x1A', '\x2A', '\x3A', '\xB1', '\xFA', '\0'}) {
                std::string text(length, '1');
                text[place] = byte;
                EXPECT_FALSE(isNumber<uint64_t>(text)) << text;
                EXPECT_FALSE(isNumber<int64_t>("-" + text)) << text;
            }
        }
    }
}

TEST(NumberTexts, BeyondTheRangeOfTheirTypeAreRefused) {
    EXPECT_TRUE(isNumber<uint32_t>("4294967295"));
    EXPECT_FALSE(isNumber<uint32_t>("4294967296"));
    EXPECT_FALSE(isNumber<uint32_t>("-1"));
    EXPECT_TRUE(isNumber<int32_t>("2147483647"));
    EXPECT_FALSE(isNumber<int32_t>("2147483648"));
    EXPECT_TRUE(isNumber<int32_t>("-2147483648"));
    EXPECT_FALSE(isNumber<int32_t>("-2147483649"));
    EXPECT_TRUE(isNumber<uint64_t>("18446744073709551615"));
    EXPECT_FALSE(isNumber<uint64_t>("18446744073709551616"));
    EXPECT_TRUE(isNumber<int64_t>("-9223372036854775808"));
    EXPECT_FALSE(isNumber<int64_t>("9223372036854775808"));
    EXPECT_FALSE(isNumber<int64_t>("-"));
    EXPECT_FALSE(isNumber<int64_t>(""));
    EXPECT_FALSE(isNumber<int64_t>("--1"));
}

} // namespace
} // namespace zyr
