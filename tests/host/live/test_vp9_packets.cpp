#include "host/live/zyr_vp9_packets.h"

#include <gtest/gtest.h>

namespace zyr::host {

namespace {

const std::vector<uint8_t> KEY{0x82, 0x49, 0x83, 0x42, 0x11};

Array<uint8_t> packetOf(const std::vector<uint8_t>& p_bytes) {
    Array<uint8_t> packet;
    packet.pushBackRange(p_bytes.data(), p_bytes.size());
    return packet;
}

std::vector<uint8_t> bytesOf(const Array<uint8_t>& p_packet) {
    return {p_packet.getData(), p_packet.getData() + p_packet.getSize()};
}

} // namespace

TEST(Vp9Packets, KnowKeyFramesByTheirFirstByte) {
    for (const uint8_t key : {0x80, 0x82, 0x83, 0xB2}) {
        EXPECT_TRUE(isVp9Key(&key, 1)) << unsigned{key};
    }
    for (const uint8_t other : {0x84, 0x86, 0x88, 0x8A, 0x42, 0xC2, 0x00}) {
        EXPECT_FALSE(isVp9Key(&other, 1)) << unsigned{other};
    }
    EXPECT_FALSE(isVp9Key(nullptr, 0));
}

TEST(Vp9Packets, HideAKeyFrameInFrontOfItsFollower) {
    Array<uint8_t> packet = packetOf({0x86, 0x00, 0x40});
    ASSERT_TRUE(putBehindHiddenKey(KEY, packet));
    EXPECT_EQ(bytesOf(packet), (std::vector<uint8_t>{0x80, 0x49, 0x83, 0x42, 0x11, 0x86, 0x00, 0x40, 0xD9, 5, 0, 0, 0,
                                                     3, 0, 0, 0, 0xD9}));
    EXPECT_TRUE(isVp9Key(packet.getData(), packet.getSize()));
}

TEST(Vp9Packets, StayAsTheyAreWhenTheyCannotBeJoined) {
    const std::vector<uint8_t> single{0x86, 0x00, 0x40};
    const std::pair<std::vector<uint8_t>, std::vector<uint8_t>> cases[] = {
        {{}, single},                 // no key frame
        {{0x86, 0x11}, single},       // the same
        {{0x80, 0x11}, single},       // hidden already
        {{0x92, 0x11}, single},       // another profile
        {{0x82, 0x11, 0xC1}, single}, // several frames
        {KEY, {}},                    // no frame
        {KEY, {0x86, 0xC1}},          // several frames
    };
    for (const auto& [key, bytes] : cases) {
        Array<uint8_t> packet = packetOf(bytes);
        EXPECT_FALSE(putBehindHiddenKey(key, packet));
        EXPECT_EQ(bytesOf(packet), bytes);
    }
}

} // namespace zyr::host
