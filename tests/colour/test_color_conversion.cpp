#include "zyr_common/colour/zyr_color.h"
#include "zyr_common/colour/zyr_pixel_format.h"

#include <gtest/gtest.h>

using namespace zyr;

TEST(ColorConversion, PacksTheBytesInTheGivenOrder) {
    const ColorRGBA<float> red(1, 0, 0, 1);
    EXPECT_EQ(zyr_convertColorRGBAToUInt32(ZYR_COLOR_ORDER_RGBA, red), 0xFF0000FFu);
    EXPECT_EQ(zyr_convertColorRGBAToUInt32(ZYR_COLOR_ORDER_ARGB, red), 0x0000FFFFu);
    EXPECT_EQ(zyr_convertColorRGBAToUInt32(ZYR_COLOR_ORDER_BGRA, red), 0xFFFF0000u);
    EXPECT_EQ(zyr_convertColorRGBAToUInt32(ZYR_COLOR_ORDER_ABGR, red), 0xFF0000FFu);
}

TEST(ColorConversion, UnknownOrderPacksToZero) {
    const ColorRGBA<float> white(1, 1, 1, 1);
    for (uint32_t order : {0u, 3u, 8u, 13u, 0xFFFFFFFFu}) {
        EXPECT_EQ(zyr_convertColorRGBAToUInt32(static_cast<ColorOrderEnum>(order), white), 0u) << order;
    }
}

TEST(ColorConversion, UnpacksTheBytesByTheGivenOrder) {
    const uint32_t value = 0x04030201;
    const float b1 = 1 / 255.0f, b2 = 2 / 255.0f, b3 = 3 / 255.0f, b4 = 4 / 255.0f;
    EXPECT_TRUE(zyr_convertUInt32ToColorRGBA(ZYR_COLOR_ORDER_RGBA, value) == ColorRGBA<float>(b1, b2, b3, b4));
    EXPECT_TRUE(zyr_convertUInt32ToColorRGBA(ZYR_COLOR_ORDER_ARGB, value) == ColorRGBA<float>(b2, b3, b4, b1));
    EXPECT_TRUE(zyr_convertUInt32ToColorRGBA(ZYR_COLOR_ORDER_BGRA, value) == ColorRGBA<float>(b3, b2, b1, b4));
    EXPECT_TRUE(zyr_convertUInt32ToColorRGBA(ZYR_COLOR_ORDER_ABGR, value) == ColorRGBA<float>(b4, b3, b2, b1));
}

TEST(ColorConversion, LowByteIsAlphaInOrderARGB) {
    EXPECT_TRUE(zyr_convertUInt32ToColorRGBA(ZYR_COLOR_ORDER_ARGB, 255) == ColorRGBA<float>(0, 0, 0, 1));
}

TEST(ColorConversion, UnknownOrderUnpacksToTheDefault) {
    EXPECT_TRUE(zyr_convertUInt32ToColorRGBA(static_cast<ColorOrderEnum>(13), 0xFFFFFFFF) == ColorRGBA<float>());
}

TEST(ColorConversion, EveryByteSurvivesTheRoundTrip) {
    for (uint32_t order = 9; order <= 12; ++order) {
        for (uint32_t byte = 0; byte < 256; ++byte) {
            const uint32_t value = byte | (255 - byte) << 8 | (byte ^ 0x55) << 16 | (byte ^ 0xAA) << 24;
            const ColorRGBA<float> color = zyr_convertUInt32ToColorRGBA(static_cast<ColorOrderEnum>(order), value);
            EXPECT_EQ(zyr_convertColorRGBAToUInt32(static_cast<ColorOrderEnum>(order), color), value);
        }
    }
}
