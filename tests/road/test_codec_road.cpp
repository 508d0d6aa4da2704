// The road through the plug-in gives what the same FFmpeg calls give when they are made by hand.

#include "bench_hand_road.h"
#include "zyr_road_fixture.h"

#include "host/zyr_video_source.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace zyr {

namespace {

constexpr uint32_t WIDTH = 320;
constexpr uint32_t HEIGHT = 180;

class CodecRoad : public testing::TestWithParam<std::string> {};

} // namespace

TEST_P(CodecRoad, PacketsAndPicturesEqualThoseMadeByHand) {
    Road road = RoadSystem::get().open(GetParam());
    ASSERT_TRUE(road.m_encoder);
    bench::HandEncoder handEncoder(road.m_encoderName, road.m_encoderOptions, WIDTH, HEIGHT);
    bench::HandDecoder handDecoder(road.m_decoderName, WIDTH, HEIGHT);
    const auto source =
        host::openVideoSource("generate:" + std::to_string(WIDTH) + "x" + std::to_string(HEIGHT) + "@30:30");
    IImage* image = nullptr;
    const auto frame = host::createSourceFrame(WIDTH, HEIGHT, image);
    host::Picture picture;
    for (uint64_t number = 1; source->read(picture); number++) {
        for (uint32_t y = 0; y < HEIGHT; y++) {
            memcpy(static_cast<uint8_t*>(image->getData()) + size_t(y) * image->getPitch(),
                   picture.m_pixels.data() + size_t(y) * picture.m_pitch, size_t(WIDTH) * 4);
        }
        const auto packet = Ref<IPackedFrameData>::adopt(road.m_encoder->encode(frame.get()));
        ASSERT_TRUE(packet) << "frame " << number;
        EXPECT_EQ(packet->getVideoFrameID(), number);
        const std::vector<uint8_t> byHand = handEncoder.encode(picture.m_pixels.data(), int(picture.m_pitch));
        const Array<uint8_t>* bytes = packet->getPackedData();
        ASSERT_EQ(std::vector<uint8_t>(bytes->getData(), bytes->getData() + bytes->getSize()), byHand)
            << "frame " << number;
        const auto result = Ref<IUnpackedFrameData>::adopt(road.m_decoder->decode(packet.get()));
        ASSERT_TRUE(result) << "frame " << number;
        EXPECT_EQ(result->getVideoFrameID(), number);
        ASSERT_TRUE(equalsPicture(*result, handDecoder.decode(byHand), handDecoder.getPitch())) << "frame " << number;
    }
}

INSTANTIATE_TEST_SUITE_P(SoftwareCodecs, CodecRoad, testing::Values("vp9", "mpeg1video"),
                         [](const auto& p_info) { return p_info.param; });

} // namespace zyr
