// A stream that another program encoded decodes through the decoder context as it does by hand.

#include "bench_hand_road.h"
#include "host/zyr_program_run.h"
#include "zyr_road_fixture.h"

#include "host/zyr_ffmpeg_handles.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace zyr {

namespace {

constexpr const char* FFMPEG = "/usr/bin/ffmpeg";
constexpr int WIDTH = 176;
constexpr int HEIGHT = 144;
constexpr int FRAMES = 40;

/// The packets of a video file, one picture each, made complete by the codec's parser.
std::vector<std::vector<uint8_t>> readPackets(const std::string& p_path) {
    AVFormatContext* format = nullptr;
    std::vector<std::vector<uint8_t>> packets;
    if (avformat_open_input(&format, p_path.c_str(), nullptr, nullptr) < 0) {
        return packets;
    }
    const host::FormatInputHandle owner(format);
    avformat_find_stream_info(format, nullptr);
    const host::PacketHandle packet(av_packet_alloc());
    while (av_read_frame(format, packet.get()) >= 0) {
        packets.emplace_back(packet->data, packet->data + packet->size);
        av_packet_unref(packet.get());
    }
    return packets;
}

struct Case {
    const char* m_codec;
    const char* m_decoder;
    const char* m_file;
    std::vector<std::string> m_arguments;
};

void PrintTo(const Case& p_case, std::ostream* p_stream) {
    *p_stream << p_case.m_codec << " through " << p_case.m_decoder;
}

class ForeignStream : public testing::TestWithParam<Case> {};

} // namespace

TEST_P(ForeignStream, DecodesToThePicturesMadeByHand) {
    if (access(FFMPEG, X_OK) != 0) {
        GTEST_SKIP() << "this machine has no ffmpeg program";
    }
    const TemporaryDirectory directory;
    const std::string path = directory.getPath() + GetParam().m_file;
    std::vector<std::string> arguments{"-hide_banner", "-nostdin",
                                       "-v",           "error",
                                       "-f",           "lavfi",
                                       "-i",           "testsrc2=size=176x144:rate=25",
                                       "-frames:v",    std::to_string(FRAMES),
                                       "-pix_fmt",     "yuv420p"};
    arguments.insert(arguments.end(), GetParam().m_arguments.begin(), GetParam().m_arguments.end());
    arguments.push_back(path);
    const ProgramRun made = runProgram(FFMPEG, arguments);
    ASSERT_EQ(made.m_exitCode, 0) << made.m_err;
    const std::vector<std::vector<uint8_t>> packets = readPackets(path);
    ASSERT_EQ(packets.size(), size_t(FRAMES));
    Road road = RoadSystem::get().open(GetParam().m_codec, GetParam().m_decoder);
    ASSERT_TRUE(road.m_decoder);
    bench::HandDecoder handDecoder(GetParam().m_decoder, WIDTH, HEIGHT);
    for (size_t i = 0; i < packets.size(); i++) {
        const auto packet = createPacket(packets[i].data(), packets[i].size(), WIDTH, HEIGHT);
        const auto picture = Ref<IUnpackedFrameData>::adopt(road.m_decoder->decode(packet.get()));
        ASSERT_TRUE(picture) << "packet " << i;
        ASSERT_TRUE(equalsPicture(*picture, handDecoder.decode(packets[i]), handDecoder.getPitch())) << "packet " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Codecs, ForeignStream,
    testing::Values(
        Case{"vp9", "vp9", "a.ivf", {"-c:v", "libvpx-vp9", "-deadline", "realtime", "-lag-in-frames", "0"}},
        Case{"vp9", "libvpx-vp9", "b.ivf", {"-c:v", "libvpx-vp9", "-deadline", "realtime", "-lag-in-frames", "0"}},
        Case{"mpeg1video", "mpeg1video", "a.m1v", {"-c:v", "mpeg1video", "-bf", "0", "-g", "12"}}),
    [](const auto& p_info) { return std::string(p_info.param.m_codec) + "_" + std::to_string(p_info.index); });

} // namespace zyr
