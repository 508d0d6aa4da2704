#include "zyr_common/colour/zyr_color.h"
#include "zyr_common/colour/zyr_pixel_format.h"

#include <gmock/gmock.h>

#include <cmath>
#include <vector>

using namespace zyr;
using testing::Each;
using testing::ElementsAre;

namespace {

constexpr uint8_t untouched = 0xEE;

std::vector<uint8_t> clearPixel(uint32_t p_format, const ColorRGBA<float>& p_color) {
    PixelFormatDescriptor descriptor;
    zyr_getPixelFormatDescriptor(static_cast<PixelFormatEnum>(p_format), descriptor);
    std::vector<uint8_t> data((descriptor.m_bitsPerPixel + 7) / 8, untouched);
    zyr_clearImageDataWithColorRGBA(1, 1, static_cast<uint32_t>(data.size()), static_cast<PixelFormatEnum>(p_format),
                                    data.data(), p_color);
    return data;
}

} // namespace

TEST(ClearImage, ScalesAndTruncatesEachChannel) {
    // 0.5 * 65535 = 32767.5, whose upper byte is 0x7F.
    EXPECT_THAT(clearPixel(500, ColorRGBA<float>(1.0f, 0.5f, 0.25f, 0.0f)), ElementsAre(0xFF, 0x7F, 0x3F, 0x00));
}

TEST(ClearImage, PutsChannelsInTheOrderOfTheFormat) {
    const ColorRGBA<float> color(0x11 / 255.0f, 0x22 / 255.0f, 0x33 / 255.0f, 0x44 / 255.0f);
    EXPECT_THAT(clearPixel(500, color), ElementsAre(0x11, 0x22, 0x33, 0x44));
    EXPECT_THAT(clearPixel(502, color), ElementsAre(0x44, 0x11, 0x22, 0x33));
    EXPECT_THAT(clearPixel(504, color), ElementsAre(0x33, 0x22, 0x11, 0x44));
    EXPECT_THAT(clearPixel(506, color), ElementsAre(0x44, 0x33, 0x22, 0x11));
    EXPECT_THAT(clearPixel(501, color), ElementsAre(0x11, 0x22, 0x33, 0x00));
    EXPECT_THAT(clearPixel(450, color), ElementsAre(0x11, 0x22, 0x33));
    EXPECT_THAT(clearPixel(451, color), ElementsAre(0x33, 0x22, 0x11));
}

TEST(ClearImage, WritesSixteenBitWordsInBothByteOrders) {
    const ColorRGBA<float> red(1, 0, 0, 0);
    EXPECT_THAT(clearPixel(400, red), ElementsAre(0x1F, 0x00)); // R in the low five bits
    EXPECT_THAT(clearPixel(401, red), ElementsAre(0x00, 0x1F));
    EXPECT_THAT(clearPixel(402, red), ElementsAre(0x00, 0xF8)); // B, G, R
    const ColorRGBA<float> half(0.5f, 0, 0, 1);
    EXPECT_THAT(clearPixel(600, half), ElementsAre(0xFF, 0x7F, 0, 0, 0, 0, 0xFF, 0xFF));
    EXPECT_THAT(clearPixel(601, half), ElementsAre(0x7F, 0xFF, 0, 0, 0, 0, 0xFF, 0xFF));
    EXPECT_THAT(clearPixel(54, half), ElementsAre(0xFF, 0x7F));
    EXPECT_THAT(clearPixel(55, half), ElementsAre(0x7F, 0xFF));
}

TEST(ClearImage, WideChannelsGetOnesBelowWhenTheSourceHasLowBits) {
    // 0.5 scales to 0x7FFF: low bits set.
    EXPECT_THAT(clearPixel(59, ColorRGBA<float>(0.5f, 0, 0, 0)), ElementsAre(0xFF, 0xFF, 0xFF, 0x7F));
    EXPECT_THAT(clearPixel(60, ColorRGBA<float>(0.5f, 0, 0, 0)), ElementsAre(0x7F, 0xFF, 0xFF, 0xFF));
    // 0x0100 / 65535 in 24 bits: its lowest eight bits are clear, so nothing is added.
    const float value = 256.5f / 65535.0f;
    EXPECT_THAT(clearPixel(58, ColorRGBA<float>(value, 0, 0, 0)), ElementsAre(0x00, 0x00, 0x01));
    const float withLowBits = 257.5f / 65535.0f;
    EXPECT_THAT(clearPixel(58, ColorRGBA<float>(withLowBits, 0, 0, 0)), ElementsAre(0xFF, 0x01, 0x01));
}

TEST(ClearImage, FillsFloatingPointFormatsWithIntegers) {
    EXPECT_THAT(clearPixel(61, ColorRGBA<float>(1, 0, 0, 0)), Each(0xFF));
    EXPECT_THAT(clearPixel(63, ColorRGBA<float>(1, 0, 0, 0)), Each(0xFF));
}

TEST(ClearImage, FitsValuesOutsideTheRange) {
    EXPECT_THAT(clearPixel(500, ColorRGBA<float>(2.0f, -1.0f, NAN, INFINITY)), ElementsAre(0xFF, 0, 0, 0xFF));
}

TEST(ClearImage, FillsEveryPixelAndNothingElse) {
    for (uint32_t format : {4u, 53u, 54u, 58u, 153u, 400u, 450u, 500u, 505u, 550u, 600u, 650u, 700u}) {
        PixelFormatDescriptor descriptor;
        ASSERT_TRUE(zyr_getPixelFormatDescriptor(static_cast<PixelFormatEnum>(format), descriptor));
        const uint32_t pixelSize = descriptor.m_bitsPerPixel / 8;
        const ColorRGBA<float> color(0.1f, 0.4f, 0.7f, 0.9f);
        const std::vector<uint8_t> pixel = clearPixel(format, color);
        for (uint32_t width : {1u, 2u, 3u, 5u, 16u, 17u, 31u, 100u}) {
            for (uint32_t gap : {0u, 1u, 7u}) {
                const uint32_t height = 3;
                const uint32_t pitch = width * pixelSize + gap;
                std::vector<uint8_t> data(pitch * height + 8, untouched);
                zyr_clearImageDataWithColorRGBA(width, height, pitch, static_cast<PixelFormatEnum>(format), data.data(),
                                                color);
                std::vector<uint8_t> expected(data.size(), untouched);
                for (uint32_t y = 0; y < height; ++y) {
                    for (uint32_t i = 0; i < width * pixelSize; ++i) {
                        expected[y * pitch + i] = pixel[i % pixelSize];
                    }
                }
                EXPECT_EQ(data, expected) << format << " " << width << " " << gap;
            }
        }
    }
}

TEST(ClearImage, NarrowFormatsKeepTheBitsBehindTheRow) {
    std::vector<uint8_t> data(4, 0x0F);
    zyr_clearImageDataWithColorRGBA(3, 2, 2, static_cast<PixelFormatEnum>(50), data.data(),
                                    ColorRGBA<float>(1, 0, 0, 0));
    EXPECT_THAT(data, ElementsAre(0xEF, 0x0F, 0xEF, 0x0F));
    data.assign(2, 0x00);
    zyr_clearImageDataWithColorRGBA(3, 1, 2, static_cast<PixelFormatEnum>(52), data.data(),
                                    ColorRGBA<float>(0.7f, 0, 0, 0));
    EXPECT_THAT(data, ElementsAre(0xBB, 0xB0));
}

TEST(ClearImage, HeightZeroWritesNothing) {
    uint32_t value = 0x12345678;
    zyr_clearImageDataWithColorRGBA(1, 0, 4, ZYR_PIXEL_FORMAT_RGBA_8, &value, ColorRGBA<float>(1, 1, 1, 1));
    EXPECT_EQ(value, 0x12345678u);
    zyr_clearImageDataWithColorRGBA(0, 1, 4, ZYR_PIXEL_FORMAT_RGBA_8, &value, ColorRGBA<float>(1, 1, 1, 1));
    EXPECT_EQ(value, 0x12345678u);
}

TEST(ClearImage, UnknownFormatWritesNothingAndLogsOnce) {
    uint32_t value = 0x12345678;
    testing::internal::CaptureStdout();
    zyr_clearImageDataWithColorRGBA(1, 1, 4, static_cast<PixelFormatEnum>(7), &value, ColorRGBA<float>(1, 1, 1, 1));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "WARN : Unsupported pixel format 0x7\n");
    EXPECT_EQ(value, 0x12345678u);
}
