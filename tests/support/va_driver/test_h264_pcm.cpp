#include "support/va_driver/zyr_h264_pcm.h"

#include <cstring>
#include <gtest/gtest.h>

using namespace zyr_test;

namespace {

/// Zeros and small numbers in long runs, so that the stream needs much emulation prevention.
Nv12Picture makePicture(uint32_t p_width, uint32_t p_height) {
    Nv12Picture picture(p_width, p_height);
    for (size_t i = 0; i < picture.m_bytes.size(); i++) {
        picture.m_bytes[i] = static_cast<uint8_t>(i % 7 < 4 ? 0 : i % 5);
    }
    return picture;
}

/// The last unit of a stream, from its header byte on.
const uint8_t* lastUnit(const std::vector<uint8_t>& p_stream, size_t& p_size) {
    for (size_t i = p_stream.size() - 4; i > 0; i--) {
        if (memcmp(&p_stream[i], "\0\0\0\1", 4) == 0) {
            p_size = p_stream.size() - i - 4;
            return &p_stream[i + 4];
        }
    }
    return nullptr;
}

/// Header byte, then: first macroblock 1, type 7 (7 bits), parameter set 1, frame number 4, picture number 1, two
/// flags, delta 1, filter 3.
constexpr uint32_t FIRST_MACROBLOCK_BIT = 8 + 1 + 7 + 1 + 4 + 1 + 2 + 1 + 3;

} // namespace

TEST(H264Pcm, ReadsBackWhatItWrote) {
    Nv12Picture source = makePicture(32, 32);
    std::vector<uint8_t> stream = writeH264Pcm(source, 32, 32, 0);
    size_t size = 0;
    const uint8_t* unit = lastUnit(stream, size);
    ASSERT_EQ(0x65, unit[0]);
    Nv12Picture target(32, 32);
    ASSERT_TRUE(readH264Pcm(unit, size, FIRST_MACROBLOCK_BIT, 2, 2, target));
    for (uint32_t y = 0; y < 32; y++) {
        EXPECT_EQ(0, memcmp(source.luma(y), target.luma(y), 32)) << "luma row " << y;
    }
    for (uint32_t y = 0; y < 16; y++) {
        EXPECT_EQ(0, memcmp(source.chroma(y), target.chroma(y), 32)) << "chroma row " << y;
    }
}

TEST(H264Pcm, NeverWritesAStartCodeInsideAUnit) {
    Nv12Picture source(64, 64);
    std::vector<uint8_t> stream = writeH264Pcm(source, 64, 64, 0);
    size_t starts = 0;
    for (size_t i = 0; i + 3 <= stream.size(); i++) {
        starts += memcmp(&stream[i], "\0\0\1", 3) == 0 ? 1 : 0;
    }
    EXPECT_EQ(3u, starts);
}

TEST(H264Pcm, RefusesATruncatedSlice) {
    Nv12Picture source = makePicture(32, 32);
    std::vector<uint8_t> stream = writeH264Pcm(source, 32, 32, 0);
    size_t size = 0;
    const uint8_t* unit = lastUnit(stream, size);
    Nv12Picture target(32, 32);
    EXPECT_FALSE(readH264Pcm(unit, size - 200, FIRST_MACROBLOCK_BIT, 2, 2, target));
}

TEST(H264Pcm, RefusesAPictureLargerThanItsTarget) {
    Nv12Picture source = makePicture(32, 32);
    std::vector<uint8_t> stream = writeH264Pcm(source, 32, 32, 0);
    size_t size = 0;
    const uint8_t* unit = lastUnit(stream, size);
    Nv12Picture target(32, 16);
    EXPECT_FALSE(readH264Pcm(unit, size, FIRST_MACROBLOCK_BIT, 2, 2, target));
}
