#include "zyr_common/colour/zyr_pixel_format.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <cstring>

using namespace zyr;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

PixelFormatDescriptor describe(uint32_t p_format) {
    PixelFormatDescriptor descriptor;
    EXPECT_EQ(zyr_getPixelFormatDescriptor(static_cast<PixelFormatEnum>(p_format), descriptor), 1) << p_format;
    return descriptor;
}

struct Range {
    uint32_t m_first;
    uint32_t m_last;
};

constexpr Range families[] = {{1, 6},     {50, 64},   {100, 114}, {150, 155},  {200, 205}, {250, 265},
                              {300, 315}, {350, 351}, {400, 442}, {450, 451},  {500, 507}, {550, 557},
                              {600, 631}, {650, 653}, {700, 715}, {1250, 1257}};

bool isInFamily(uint32_t p_format) {
    for (const Range& range : families) {
        if (p_format >= range.m_first && p_format <= range.m_last) {
            return true;
        }
    }
    return false;
}

/// Bits per pixel of every row of a family.
void expectBits(uint32_t p_first, const std::vector<uint32_t>& p_bits) {
    for (uint32_t i = 0; i < p_bits.size(); ++i) {
        EXPECT_EQ(describe(p_first + i).m_bitsPerPixel, p_bits[i]) << p_first + i;
    }
}

} // namespace

TEST(PixelFormat, DescriptorHasItsFieldsInOrderWithoutGaps) {
    EXPECT_EQ(offsetof(PixelFormatDescriptor, m_channelMask), 16u);
    EXPECT_EQ(offsetof(PixelFormatDescriptor, m_channelBits), 32u);
    EXPECT_EQ(offsetof(PixelFormatDescriptor, m_isInteger), 48u);
    EXPECT_EQ(offsetof(PixelFormatDescriptor, m_numOfChannels), 49u);
    EXPECT_EQ(offsetof(PixelFormatDescriptor, m_numOfPlanes), 50u);
    EXPECT_EQ(offsetof(PixelFormatDescriptor, m_bitsPerPixel), 51u);
    EXPECT_EQ(offsetof(PixelFormatDescriptor, m_horizontalSubsampling), 55u);
    EXPECT_EQ(offsetof(PixelFormatDescriptor, m_verticalSubsampling), 71u);
    EXPECT_EQ(offsetof(PixelFormatDescriptor, m_hasNarrowChannels), 87u);
    EXPECT_EQ(offsetof(PixelFormatDescriptor, m_format), 88u);
    EXPECT_EQ(offsetof(PixelFormatDescriptor, m_componentType), 92u);
    EXPECT_EQ(offsetof(PixelFormatDescriptor, m_channelModel), 96u);
    EXPECT_EQ(offsetof(PixelFormatDescriptor, m_channelOrder), 100u);
    EXPECT_EQ(offsetof(PixelFormatDescriptor, m_byteOrder), 104u);
}

TEST(PixelFormat, NewDescriptorHasOneChannelAndOnePlane) {
    PixelFormatDescriptor descriptor;
    EXPECT_THAT(descriptor.m_channelShift, ElementsAre(0, 0, 0, 0));
    EXPECT_THAT(descriptor.m_channelMask, ElementsAre(0, 0, 0, 0));
    EXPECT_THAT(descriptor.m_channelBits, ElementsAre(0, 0, 0, 0));
    EXPECT_EQ(descriptor.m_isInteger, 0);
    EXPECT_EQ(descriptor.m_numOfChannels, 1);
    EXPECT_EQ(descriptor.m_numOfPlanes, 1);
    EXPECT_THAT(descriptor.m_horizontalSubsampling, ElementsAre(1, 0, 0, 0));
    EXPECT_THAT(descriptor.m_verticalSubsampling, ElementsAre(1, 0, 0, 0));
    EXPECT_EQ(descriptor.m_hasNarrowChannels, 0);
    EXPECT_EQ(descriptor.m_componentType, 2u);
    EXPECT_EQ(descriptor.m_channelModel, 2u);
    EXPECT_EQ(descriptor.m_channelOrder, 1u);
    EXPECT_EQ(descriptor.m_byteOrder, 0u);
}

TEST(PixelFormat, CodecFormatIsFourBytesInOrderRGBA) {
    PixelFormatDescriptor descriptor = describe(500);
    EXPECT_THAT(descriptor.m_channelShift, ElementsAre(0, 8, 16, 24));
    EXPECT_THAT(descriptor.m_channelMask, ElementsAre(255, 255, 255, 255));
    EXPECT_THAT(descriptor.m_channelBits, ElementsAre(8, 8, 8, 8));
    EXPECT_EQ(descriptor.m_isInteger, 1);
    EXPECT_EQ(descriptor.m_numOfChannels, 4);
    EXPECT_EQ(descriptor.m_numOfPlanes, 1);
    EXPECT_EQ(descriptor.m_bitsPerPixel, 32u);
    EXPECT_THAT(descriptor.m_horizontalSubsampling, ElementsAre(1, 0, 0, 0));
    EXPECT_THAT(descriptor.m_verticalSubsampling, ElementsAre(1, 0, 0, 0));
    EXPECT_EQ(descriptor.m_hasNarrowChannels, 0);
    EXPECT_EQ(descriptor.m_format, 500u);
    EXPECT_EQ(descriptor.m_componentType, 2u);
    EXPECT_EQ(descriptor.m_channelModel, 6u);
    EXPECT_EQ(descriptor.m_channelOrder, 9u);
    EXPECT_EQ(descriptor.m_byteOrder, 0u);
}

TEST(PixelFormat, FourByteFormatsFollowTheColorOrders) {
    const uint32_t shifts[4][4] = {{0, 8, 16, 24}, {8, 16, 24, 0}, {16, 8, 0, 24}, {24, 16, 8, 0}};
    for (uint32_t order = 0; order < 4; ++order) {
        PixelFormatDescriptor withAlpha = describe(500 + 2 * order);
        PixelFormatDescriptor withoutAlpha = describe(501 + 2 * order);
        EXPECT_EQ(0, memcmp(withAlpha.m_channelShift, shifts[order], sizeof(shifts[order]))) << order;
        EXPECT_EQ(0, memcmp(withoutAlpha.m_channelShift, shifts[order], 12)) << order;
        EXPECT_EQ(withAlpha.m_channelOrder, 9 + order);
        EXPECT_EQ(withoutAlpha.m_channelOrder, 9 + order);
        EXPECT_EQ(withAlpha.m_numOfChannels, 4);
        EXPECT_EQ(withoutAlpha.m_numOfChannels, 3);
        EXPECT_EQ(withoutAlpha.m_channelBits[3], 0u);
        EXPECT_EQ(withoutAlpha.m_bitsPerPixel, 32u);
    }
}

TEST(PixelFormat, ThreeByteFormatsAreRGBAndBGR) {
    PixelFormatDescriptor rgb = describe(450);
    PixelFormatDescriptor bgr = describe(451);
    EXPECT_THAT(rgb.m_channelShift, ElementsAre(0, 8, 16, 0));
    EXPECT_THAT(bgr.m_channelShift, ElementsAre(16, 8, 0, 0));
    EXPECT_EQ(rgb.m_channelOrder, 4u);
    EXPECT_EQ(bgr.m_channelOrder, 5u);
    EXPECT_EQ(rgb.m_bitsPerPixel, 24u);
    EXPECT_EQ(rgb.m_numOfChannels, 3);
}

TEST(PixelFormat, YuvFormatsHaveTheirPlanesAndSubsampling) {
    struct Row {
        uint32_t m_format;
        uint32_t m_planes;
        uint32_t m_horizontal[4];
        uint32_t m_vertical[4];
        uint32_t m_order;
    };
    const Row rows[] = {{1250, 3, {1, 2, 2, 0}, {1, 2, 2, 0}, 4}, {1251, 3, {1, 2, 2, 0}, {1, 2, 2, 0}, 8},
                        {1252, 2, {1, 1, 0, 0}, {1, 2, 0, 0}, 4}, {1253, 2, {1, 1, 0, 0}, {1, 2, 0, 0}, 8},
                        {1254, 3, {1, 4, 4, 0}, {1, 4, 4, 0}, 4}, {1255, 3, {1, 4, 4, 0}, {1, 1, 1, 0}, 4},
                        {1256, 3, {1, 2, 2, 0}, {1, 1, 1, 0}, 4}, {1257, 3, {1, 1, 1, 0}, {1, 1, 1, 0}, 4}};
    for (const Row& row : rows) {
        PixelFormatDescriptor descriptor = describe(row.m_format);
        EXPECT_EQ(descriptor.m_numOfPlanes, row.m_planes) << row.m_format;
        EXPECT_EQ(0, memcmp(descriptor.m_horizontalSubsampling, row.m_horizontal, 16)) << row.m_format;
        EXPECT_EQ(0, memcmp(descriptor.m_verticalSubsampling, row.m_vertical, 16)) << row.m_format;
        EXPECT_EQ(descriptor.m_channelOrder, row.m_order) << row.m_format;
        EXPECT_EQ(descriptor.m_bitsPerPixel, 8u) << row.m_format;
        EXPECT_EQ(descriptor.m_isInteger, 0) << row.m_format;
        EXPECT_EQ(descriptor.m_channelModel, 8u) << row.m_format;
        EXPECT_EQ(descriptor.m_format, row.m_format);
    }
}

TEST(PixelFormat, FamiliesHaveTheirBitsPerPixel) {
    const std::vector<uint32_t> single = {1, 2, 4, 8, 16, 16, 16, 16, 24, 32, 32, 32, 32, 64, 64};
    const std::vector<uint32_t> pairs = {2, 4, 8, 16, 32, 32};
    const std::vector<uint32_t> widePairs = {2, 4, 8, 16, 32, 32, 32, 32, 48, 48, 64, 64, 64, 64, 128, 128};
    expectBits(1, {1, 2, 4, 8, 16, 16});
    expectBits(50, single);
    expectBits(100, single);
    expectBits(150, pairs);
    expectBits(200, pairs);
    expectBits(250, widePairs);
    expectBits(300, widePairs);
    expectBits(350, {8, 8});
    expectBits(400, std::vector<uint32_t>(43, 16));
    expectBits(450, {24, 24});
    expectBits(500, std::vector<uint32_t>(8, 32));
    expectBits(550, std::vector<uint32_t>(8, 48));
    expectBits(600, std::vector<uint32_t>(32, 64));
    expectBits(650, std::vector<uint32_t>(4, 96));
    expectBits(700, std::vector<uint32_t>(16, 128));
    expectBits(1250, std::vector<uint32_t>(8, 8));
}

TEST(PixelFormat, ChannelsFillThePixelWithoutOverlap) {
    for (uint32_t format = 1; format < 1250; ++format) {
        if (!isInFamily(format)) {
            continue;
        }
        PixelFormatDescriptor descriptor = describe(format);
        std::vector<int> used(descriptor.m_bitsPerPixel);
        uint32_t channels = 0;
        for (uint32_t i = 0; i < 4; ++i) {
            channels += descriptor.m_channelBits[i] != 0;
            for (uint32_t bit = 0; bit < descriptor.m_channelBits[i]; ++bit) {
                ASSERT_LT(descriptor.m_channelShift[i] + bit, descriptor.m_bitsPerPixel) << format;
                EXPECT_EQ(used[descriptor.m_channelShift[i] + bit]++, 0) << format;
            }
        }
        EXPECT_EQ(channels, descriptor.m_numOfChannels) << format;
    }
}

TEST(PixelFormat, MasksCoverTheChannelBits) {
    PixelFormatDescriptor color = describe(400);
    EXPECT_THAT(color.m_channelBits, ElementsAre(5, 6, 5, 0));
    EXPECT_THAT(color.m_channelMask, ElementsAre(0x1F, 0x3F, 0x1F, 0));
    EXPECT_THAT(describe(700).m_channelMask, ElementsAre(0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF));
}

TEST(PixelFormat, PackedColorsOfSixteenBitsHaveTheirChannelWidths) {
    const uint32_t bits[3][3] = {{5, 6, 5}, {6, 5, 5}, {5, 5, 6}};
    for (uint32_t format = 400; format <= 411; ++format) {
        PixelFormatDescriptor descriptor = describe(format);
        EXPECT_EQ(0, memcmp(descriptor.m_channelBits, bits[(format - 400) / 4], 12)) << format;
        EXPECT_EQ(descriptor.m_channelOrder, (format - 400) / 2 % 2 == 0 ? 4u : 5u) << format;
        EXPECT_EQ(descriptor.m_byteOrder, 1 + format % 2) << format;
    }
    for (uint32_t format = 412; format <= 427; ++format) {
        PixelFormatDescriptor descriptor = describe(format);
        EXPECT_EQ(descriptor.m_channelBits[1], 5u) << format;
        EXPECT_EQ(descriptor.m_channelBits[3], (format - 412) / 2 % 2 == 0 ? 1u : 0u) << format;
        EXPECT_EQ(descriptor.m_hasNarrowChannels, 0) << format;
    }
    for (uint32_t format = 428; format <= 442; ++format) {
        EXPECT_EQ(describe(format).m_channelBits[1], 4u) << format;
        EXPECT_EQ(describe(format).m_hasNarrowChannels, 1) << format;
    }
}

TEST(PixelFormat, ValueAndAlphaStandInTheOrderOfTheFamily) {
    EXPECT_THAT(describe(153).m_channelShift, ElementsAre(8, 0, 0, 0));
    EXPECT_THAT(describe(203).m_channelShift, ElementsAre(0, 0, 0, 8));
    EXPECT_EQ(describe(153).m_channelOrder, 2u);
    EXPECT_EQ(describe(203).m_channelOrder, 3u);
    EXPECT_EQ(describe(153).m_channelModel, 4u);
    EXPECT_EQ(describe(253).m_channelModel, 5u);
    EXPECT_EQ(describe(303).m_channelOrder, 3u);
    EXPECT_THAT(describe(103).m_channelBits, ElementsAre(0, 0, 0, 8));
    EXPECT_EQ(describe(103).m_channelModel, 3u);
    EXPECT_THAT(describe(53).m_channelBits, ElementsAre(8, 0, 0, 0));
}

TEST(PixelFormat, ComponentTypesTellFloatingPoint) {
    EXPECT_EQ(describe(50).m_componentType, 1u);
    EXPECT_EQ(describe(53).m_componentType, 2u);
    EXPECT_EQ(describe(56).m_componentType, 4u);
    EXPECT_EQ(describe(61).m_componentType, 3u);
    EXPECT_EQ(describe(63).m_componentType, 5u);
    EXPECT_EQ(describe(56).m_isInteger, 0);
    EXPECT_EQ(describe(59).m_isInteger, 1);
    EXPECT_EQ(describe(554).m_componentType, 4u);
    EXPECT_EQ(describe(600).m_componentType, 2u);
    EXPECT_EQ(describe(616).m_componentType, 4u);
    EXPECT_EQ(describe(650).m_componentType, 3u);
    EXPECT_EQ(describe(715).m_componentType, 3u);
}

TEST(PixelFormat, NarrowFlagStandsForPalettesAndChannelsOfTwoOrFourBits) {
    for (uint32_t format : {1u, 4u, 6u, 51u, 52u, 101u, 151u, 152u, 350u, 428u}) {
        EXPECT_EQ(describe(format).m_hasNarrowChannels, 1) << format;
    }
    for (uint32_t format : {50u, 53u, 150u, 400u, 412u, 500u, 1250u}) {
        EXPECT_EQ(describe(format).m_hasNarrowChannels, 0) << format;
    }
}

TEST(PixelFormat, EveryNumberInsideAFamilyIsKnownAndNoOther) {
    testing::internal::CaptureStdout();
    for (uint32_t format = 0; format < 1400; ++format) {
        PixelFormatDescriptor descriptor;
        bool_t known = zyr_getPixelFormatDescriptor(static_cast<PixelFormatEnum>(format), descriptor);
        EXPECT_EQ(known != 0, isInFamily(format)) << format;
        if (known) {
            EXPECT_EQ(descriptor.m_format, format);
        }
    }
    testing::internal::GetCapturedStdout();
}

TEST(PixelFormat, UnknownNumberLogsItInHexadecimalAndLeavesTheDescriptor) {
    PixelFormatDescriptor descriptor = describe(500);
    testing::internal::CaptureStdout();
    EXPECT_EQ(zyr_getPixelFormatDescriptor(static_cast<PixelFormatEnum>(7), descriptor), 0);
    EXPECT_EQ(zyr_getPixelFormatDescriptor(static_cast<PixelFormatEnum>(1258), descriptor), 0);
    std::string output = testing::internal::GetCapturedStdout();
    EXPECT_EQ(output, "WARN : Unsupported pixel format 0x7\nWARN : Unsupported pixel format 0x4EA\n");
    EXPECT_EQ(descriptor.m_format, 500u);
    EXPECT_EQ(descriptor.m_bitsPerPixel, 32u);
}
