#include "zyr_common/platform/zyr_environment.h"
#include "zyr_common/text/zyr_string.h"

#include <cstdlib>
#include <gtest/gtest.h>

using namespace zyr;

static const char* const NAME = "ZYR_TEST_VARIABLE";

class Environment : public testing::Test {
protected:
    void SetUp() override { unsetenv(NAME); }
    void TearDown() override { unsetenv(NAME); }
};

TEST_F(Environment, GettersLeaveTheirOutputWhenTheVariableIsNotSet) {
    uint32_t number32 = 7;
    uint64_t number64 = 8;
    float single = 1.5f;
    double real = 2.5;
    String text = "kept";
    EXPECT_FALSE(zyr_getEnvironmentVariableUInt32(NAME, number32));
    EXPECT_FALSE(zyr_getEnvironmentVariableUInt64(NAME, number64));
    EXPECT_FALSE(zyr_getEnvironmentVariableFloat(NAME, single));
    EXPECT_FALSE(zyr_getEnvironmentVariableDouble(NAME, real));
    EXPECT_FALSE(zyr_getEnvironmentVariableString(NAME, text));
    EXPECT_EQ(number32, 7u);
    EXPECT_EQ(number64, 8u);
    EXPECT_EQ(single, 1.5f);
    EXPECT_EQ(real, 2.5);
    EXPECT_STREQ(text.getData(), "kept");
}

TEST_F(Environment, UInt32IsReadAsDecimalAndCutTo32Bits) {
    uint32_t number = 0;
    setenv(NAME, "4294967297", 1);
    EXPECT_TRUE(zyr_getEnvironmentVariableUInt32(NAME, number));
    EXPECT_EQ(number, 1u);
    setenv(NAME, "12x", 1);
    EXPECT_TRUE(zyr_getEnvironmentVariableUInt32(NAME, number));
    EXPECT_EQ(number, 12u);
    setenv(NAME, "words", 1);
    EXPECT_TRUE(zyr_getEnvironmentVariableUInt32(NAME, number));
    EXPECT_EQ(number, 0u);
}

TEST_F(Environment, UInt64IsCutToASignedNumberOf32BitsAndWidened) {
    uint64_t number = 1;
    setenv(NAME, "4294967296", 1);
    EXPECT_TRUE(zyr_getEnvironmentVariableUInt64(NAME, number));
    EXPECT_EQ(number, 0u);
    setenv(NAME, "4294967295", 1);
    EXPECT_TRUE(zyr_getEnvironmentVariableUInt64(NAME, number));
    EXPECT_EQ(number, 0xFFFFFFFFFFFFFFFF);
    setenv(NAME, "2147483647", 1);
    EXPECT_TRUE(zyr_getEnvironmentVariableUInt64(NAME, number));
    EXPECT_EQ(number, 2147483647u);
}

TEST_F(Environment, SettersWriteDecimalText) {
    EXPECT_TRUE(zyr_setEnvironmentVariableUInt32(NAME, 4294967295u, 1));
    EXPECT_STREQ(getenv(NAME), "4294967295");
    EXPECT_TRUE(zyr_setEnvironmentVariableUInt64(NAME, 18446744073709551615u, 1));
    EXPECT_STREQ(getenv(NAME), "18446744073709551615");
    EXPECT_TRUE(zyr_setEnvironmentVariableDouble(NAME, -0.25, 1));
    EXPECT_STREQ(getenv(NAME), "-0.250000000");
    EXPECT_TRUE(zyr_setEnvironmentVariableFloat(NAME, 3.5f, 1));
    EXPECT_STREQ(getenv(NAME), "3.500000000");
}

TEST_F(Environment, RealNumbersUseTheFrameworksParser) {
    double real = 0;
    float single = 0;
    setenv(NAME, "  -1.5e2x", 1);
    EXPECT_TRUE(zyr_getEnvironmentVariableDouble(NAME, real));
    EXPECT_EQ(real, -150.0);
    EXPECT_TRUE(zyr_getEnvironmentVariableFloat(NAME, single));
    EXPECT_EQ(single, -150.0f);
}

TEST_F(Environment, TextStandsAsItIs) {
    String text;
    EXPECT_TRUE(zyr_setEnvironmentVariableString(NAME, " a=b ", 1));
    EXPECT_STREQ(getenv(NAME), " a=b ");
    EXPECT_TRUE(zyr_getEnvironmentVariableString(NAME, text));
    EXPECT_STREQ(text.getData(), " a=b ");
}

TEST_F(Environment, EmptyTextIsSet) {
    String text = "old";
    setenv(NAME, "", 1);
    EXPECT_TRUE(zyr_getEnvironmentVariableString(NAME, text));
    EXPECT_TRUE(text.isEmpty());
}

TEST_F(Environment, WithoutOverwriteTheOldValueStaysAndTheResultIsTrue) {
    setenv(NAME, "old", 1);
    EXPECT_TRUE(zyr_setEnvironmentVariableString(NAME, "new", 0));
    EXPECT_TRUE(zyr_setEnvironmentVariableUInt32(NAME, 1, 0));
    EXPECT_STREQ(getenv(NAME), "old");
}

TEST_F(Environment, SettersFailForNamesThatTheSystemRefuses) {
    EXPECT_FALSE(zyr_setEnvironmentVariableString("A=B", "x", 1));
    EXPECT_FALSE(zyr_setEnvironmentVariableUInt32("", 1, 1));
    EXPECT_FALSE(zyr_setEnvironmentVariableUInt64("", 1, 1));
    EXPECT_FALSE(zyr_setEnvironmentVariableFloat("", 1, 1));
    EXPECT_FALSE(zyr_setEnvironmentVariableDouble("", 1, 1));
}
