#include "zyr_common/memory/zyr_power_of_two.h"
#include "zyr_common/platform/zyr_version.h"

#include "zyr_common/text/zyr_string.h"

#include <gtest/gtest.h>

using namespace zyr;

TEST(Version64, PacksMajorMinorAndPatch) {
    EXPECT_EQ(zyr_encodeVersion64(1, 5, 0), 0x10000050000u);
    EXPECT_EQ(zyr_encodeVersion64(0xFFFFFF, 0xFFFFFF, 0xFFFF), 0xFFFFFFFFFFFFFFFFu);
}

TEST(Version64, TakesThePartsOut) {
    EXPECT_EQ(zyr_getMajorVersion64(0x10000050000), 1u);
    EXPECT_EQ(zyr_getMinorVersion64(0x10000050000), 5u);
    EXPECT_EQ(zyr_getPatchVersion64(0x10000050000), 0u);
    uint64_t version = zyr_encodeVersion64(0x123456, 0x789ABC, 0xDEF0);
    EXPECT_EQ(zyr_getMajorVersion64(version), 0x123456u);
    EXPECT_EQ(zyr_getMinorVersion64(version), 0x789ABCu);
    EXPECT_EQ(zyr_getPatchVersion64(version), 0xDEF0u);
}

TEST(Version64, DoesNotMaskThePartsThatItEncodes) {
    EXPECT_EQ(zyr_encodeVersion64(0, 0, 0x10000), 0x10000u);
    EXPECT_EQ(zyr_encodeVersion64(0, 0x1000000, 0), 0x10000000000u);
}

TEST(Version32, PacksTwelveTenAndTenBits) {
    EXPECT_EQ(zyr_encodeVersion32(1, 5, 7), 1u << 20 | 5u << 10 | 7u);
    EXPECT_EQ(zyr_encodeVersion32(0xFFF, 0x3FF, 0x3FF), 0xFFFFFFFFu);
}

TEST(Version32, TakesThePartsOut) {
    uint32_t version = zyr_encodeVersion32(0xABC, 0x2DE, 0x1F0);
    EXPECT_EQ(zyr_getMajorVersion32(version), 0xABCu);
    EXPECT_EQ(zyr_getMinorVersion32(version), 0x2DEu);
    EXPECT_EQ(zyr_getPatchVersion32(version), 0x1F0u);
}

TEST(Version32, DoesNotMaskThePartsThatItEncodes) {
    EXPECT_EQ(zyr_encodeVersion32(0, 0, 0x400), 1u << 10);
}

TEST(FrameworkVersion, IsOneFiveZero) {
    EXPECT_EQ(zyr_getFrameworkVersion(), 0x10000050000u);
    EXPECT_STREQ(zyr_getFrameworkVersionString(), "1.5.0");
}

TEST(CompilerInfo, NamesTheCompilerAndItsVersionInOneBuffer) {
    const char* text = zyr_getCompilerInfo();
    char name[32] = {};
    int major = 0;
    int minor = 0;
    int patch = 0;
    EXPECT_EQ(sscanf(text, "%31s %d.%d.%d", name, &major, &minor, &patch), 4);
#ifdef __clang__
    EXPECT_EQ(major, __clang_major__);
#else
    EXPECT_EQ(major, __GNUC__);
    EXPECT_EQ(patch, __GNUC_PATCHLEVEL__);
#endif
    EXPECT_EQ(zyr_getCompilerInfo(), text);
}

TEST(SystemFacts, TellLittleEndianAndSixtyFourBits) {
    EXPECT_EQ(zyr_getEndianness(), 1u);
    EXPECT_EQ(zyr_isSystem64(), 1);
}

TEST(FrameworkVersions, AreCompatibleWhenMajorAndMinorAreEqual) {
    EXPECT_TRUE(areFrameworkVersionsCompatible(0x10000050000, 0x10000050007));
    EXPECT_FALSE(areFrameworkVersionsCompatible(0x10000050000, 0x10000060000));
    EXPECT_FALSE(areFrameworkVersionsCompatible(0x10000050000, 0x20000050000));
}

TEST(FrameworkVersions, CompatibleHostLeavesTheReasonAsItIs) {
    String reason("as before");
    EXPECT_TRUE(checkHostFrameworkVersion(0x10000050009, reason));
    EXPECT_EQ(reason, "as before");
}

TEST(FrameworkVersions, OtherHostIsNamedFirstInTheReason) {
    String reason("as before");
    EXPECT_FALSE(checkHostFrameworkVersion(0x10000060002, reason));
    EXPECT_EQ(reason, "Application framework version:1.6.2 is incompatible with module framework version:1.5.0");
}

struct PowerOfTwoCase {
    size_t value;
    size_t result;
    size_t exponent;
};

static void PrintTo(const PowerOfTwoCase& p_case, std::ostream* p_stream) {
    *p_stream << p_case.value;
}

class NearestPowerOfTwo : public testing::TestWithParam<PowerOfTwoCase> {};

TEST_P(NearestPowerOfTwo, IsStrictlyGreaterThanTheValue) {
    size_t exponent = 99;
    EXPECT_EQ(zyr_getNearestPowerOfTwo(GetParam().value, &exponent), GetParam().result);
    EXPECT_EQ(exponent, GetParam().exponent);
    EXPECT_EQ(zyr_getNearestPowerOfTwo(GetParam().value), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(Values, NearestPowerOfTwo,
                         testing::Values(PowerOfTwoCase{0, 1, 0}, PowerOfTwoCase{1, 2, 1}, PowerOfTwoCase{2, 4, 2},
                                         PowerOfTwoCase{3, 4, 2}, PowerOfTwoCase{4, 8, 3}, PowerOfTwoCase{7, 8, 3},
                                         PowerOfTwoCase{8, 16, 4}, PowerOfTwoCase{1000, 1024, 10},
                                         PowerOfTwoCase{(size_t(1) << 63) - 1, size_t(1) << 63, 63},
                                         PowerOfTwoCase{size_t(1) << 63, 0, 64}));
