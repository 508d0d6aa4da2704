/// The road of a frame through the plug-in beside the same road written by hand.
///
/// Both sides call the same libavcodec with the same options on the same pictures, in turns within one process, so that
/// the ratio of the two counts: wall times of one side alone vary by a factor of three from run to run.
#include "bench_allocations.h"
#include "bench_hand_road.h"

#include "host/zyr_negotiation.h"
#include "host/zyr_video_source.h"
#include "zyr_common/platform/zyr_time.h"

#include <libyuv.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

namespace zyr::bench {

namespace {

struct Sample {
    double m_wall; ///< Milliseconds.
    double m_cpu;  ///< Milliseconds of all threads.
};

double cpuNow() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

template <typename Work> Sample measure(Work&& p_work) {
    const double cpu = cpuNow();
    const uint64_t wall = zyr_getCurrentTime();
    p_work();
    const uint64_t end = zyr_getCurrentTime();
    return Sample{double(end - wall) / 1e6, cpuNow() - cpu};
}

struct Series {
    std::vector<double> m_wall;
    double m_wallSum = 0;
    double m_cpuSum = 0;

    void add(const Sample& p_sample) {
        m_wall.push_back(p_sample.m_wall);
        m_wallSum += p_sample.m_wall;
        m_cpuSum += p_sample.m_cpu;
    }
    double percentile(double p_percent) const {
        std::vector<double> sorted = m_wall;
        std::sort(sorted.begin(), sorted.end());
        return sorted[std::min(sorted.size() - 1, size_t(double(sorted.size()) * p_percent / 100.0))];
    }
};

void printSide(const char* p_side, const Series& p_ours, const Series& p_hand) {
    const double count = double(p_ours.m_wall.size());
    printf("  %-7s median %8.3f / %8.3f ms  p99 %8.3f / %8.3f ms  CPU %8.3f / %8.3f ms  throughput ratio %.3f  "
           "median ratio %.3f  CPU ratio %.3f\n",
           p_side, p_ours.percentile(50), p_hand.percentile(50), p_ours.percentile(99), p_hand.percentile(99),
           p_ours.m_cpuSum / count, p_hand.m_cpuSum / count, p_hand.m_wallSum / p_ours.m_wallSum,
           p_hand.percentile(50) / p_ours.percentile(50), p_ours.m_cpuSum / p_hand.m_cpuSum);
}

/// The pictures of a run, scaled once and kept, so that both sides read the same memory.
std::vector<host::Picture> loadPictures(const std::string& p_input, uint32_t p_width, uint32_t p_height,
                                        size_t p_count) {
    const std::unique_ptr<host::VideoSource> source = host::openVideoSource(p_input);
    std::vector<host::Picture> pictures;
    host::Picture picture;
    while (pictures.size() < p_count && source->read(picture)) {
        host::Picture scaled;
        scaled.resize(p_width, p_height);
        libyuv::ARGBScale(picture.m_pixels.data(), int(picture.m_pitch), int(picture.m_width), int(picture.m_height),
                          scaled.m_pixels.data(), int(scaled.m_pitch), int(p_width), int(p_height), libyuv::kFilterBox);
        pictures.push_back(std::move(scaled));
    }
    return pictures;
}

bool picturesDiffer(const IImage& p_image, const uint8_t* p_other, size_t p_pitch) {
    for (uint32_t y = 0; y < p_image.getHeight(); y++) {
        if (memcmp(static_cast<const uint8_t*>(p_image.getData()) + size_t(y) * p_image.getPitch(),
                   p_other + size_t(y) * p_pitch, size_t(p_image.getWidth()) * 4) != 0) {
            return true;
        }
    }
    return false;
}

/// The pixels as the hand-written road takes them: those of the image itself, or, where the even size has more, a copy
/// with the last column and row once more.
class HandPixels {
public:
    explicit HandPixels(const IImage& p_image)
        : m_image(p_image),
          m_isOdd((p_image.getWidth() | p_image.getHeight()) % 2 != 0),
          m_pitch(int(p_image.getWidth() + 1) / 2 * 8) {}

    void take() {
        if (!m_isOdd) {
            return;
        }
        const uint32_t width = m_image.getWidth();
        m_pixels.resize(size_t(m_pitch) * (m_image.getHeight() + 1));
        for (uint32_t y = 0; y <= m_image.getHeight(); y++) {
            const uint8_t* source = static_cast<const uint8_t*>(m_image.getData()) +
                                    size_t(std::min(y, m_image.getHeight() - 1)) * m_image.getPitch();
            uint8_t* row = m_pixels.data() + size_t(y) * size_t(m_pitch);
            memcpy(row, source, size_t(width) * 4);
            memcpy(row + size_t(m_pitch) - 4, source + size_t(width) * 4 - 4, 4);
        }
    }
    const uint8_t* getData() const {
        return m_isOdd ? m_pixels.data() : static_cast<const uint8_t*>(m_image.getData());
    }
    int getPitch() const { return m_isOdd ? m_pitch : int(m_image.getPitch()); }

private:
    const IImage& m_image;
    const bool m_isOdd;
    const int m_pitch;
    std::vector<uint8_t> m_pixels;
};

/// What a frame takes to hand its picture out after each change of the picture, in milliseconds: for odd sizes, filling
/// what lies behind the edge.
void printPadding(const IUnpackedFrameData& p_frame, const Series& p_encoding) {
    constexpr int ROUNDS = 200;
    const IImage& image = *p_frame.getSystemMemory(0, 1);
    double sum = 0;
    for (int round = 0; round < ROUNDS; round++) {
        for (uint32_t y = 0; y < image.getHeight(); y++) {
            memset(static_cast<uint8_t*>(image.getData()) + size_t(y) * image.getPitch(), round,
                   size_t(image.getWidth()) * 4);
        }
        const uint64_t start = zyr_getCurrentTime();
        p_frame.getSystemMemory(0, 1);
        sum += double(zyr_getCurrentTime() - start) / 1e6;
    }
    printf("  handing out an odd picture: %.4f ms, %.2f %% of an encoded frame\n", sum / ROUNDS,
           sum / ROUNDS / p_encoding.percentile(50) * 100);
}

/// Runs both in an order that changes from frame to frame, so that neither always finds the caches warm.
template <typename First, typename Second>
void inTurns(bool p_swapped, Sample& p_first, Sample& p_second, First&& p_ours, Second&& p_hand) {
    if (p_swapped) {
        p_second = measure(p_hand);
        p_first = measure(p_ours);
    } else {
        p_first = measure(p_ours);
        p_second = measure(p_hand);
    }
}

int run(const char* p_codec, uint32_t p_width, uint32_t p_height, const host::Market& p_market,
        const std::string& p_input, size_t p_count) {
    constexpr size_t WARM_UP = 5;
    std::vector<std::string> log;
    std::vector<std::string> notes;
    host::Choice choice;
    choice.m_codec = p_codec;
    choice.m_require = "sw";
    const auto matches = host::judge(p_market, choice, log, notes);
    const host::Match* match = host::chooseMatch(matches);
    if (match == nullptr) {
        fprintf(stderr, "%s is not usable here\n", p_codec);
        return 1;
    }
    const std::vector<host::Picture> pictures = loadPictures(p_input, p_width, p_height, p_count);
    if (pictures.size() <= WARM_UP) {
        fprintf(stderr, "%s holds too few pictures\n", p_input.c_str());
        return 1;
    }
    IFrameEncoder& encoder = *p_market.m_encoders[match->m_offer->m_encoder];
    IFrameDecoder& decoder = *p_market.m_decoders[match->m_wish->m_decoder];
    if (!encoder.initialize(match->m_info) || !decoder.initialize(match->m_decoderInfo)) {
        fprintf(stderr, "%s was refused\n", p_codec);
        return 1;
    }
    const auto encoderContext = Ref<IFrameEncoderContext>::adopt(encoder.createFrameEncoderContext());
    const auto decoderContext = Ref<IFrameDecoderContext>::adopt(decoder.createFrameDecoderContext());
    HandEncoder handEncoder(host::toText(match->m_info.codecImplementation), host::toText(match->m_info.codecOptions),
                            (p_width + 1) & ~1u, (p_height + 1) & ~1u);
    HandDecoder handDecoder(host::toText(match->m_decoderInfo.codecImplementation), (p_width + 1) & ~1u,
                            (p_height + 1) & ~1u);
    IImage* image = nullptr;
    const Ref<IUnpackedFrameData> frame = host::createSourceFrame(p_width, p_height, image);
    HandPixels handPixels(*image);
    Series series[4];
    std::vector<size_t> blocks[3]; // Before the encoding, after it, after the decoding of the last frame.
    size_t bytesOurs = 0;
    size_t bytesHand = 0;
    size_t differingPackets = 0;
    size_t differingPictures = 0;
    for (size_t i = 0; i < pictures.size(); i++) {
        const host::Picture& picture = pictures[i];
        uint8_t* pixels = static_cast<uint8_t*>(image->getData());
        const int pitch = int(image->getPitch());
        libyuv::ARGBCopy(picture.m_pixels.data(), int(picture.m_pitch), pixels, pitch, int(p_width), int(p_height));
        handPixels.take();
        Ref<IPackedFrameData> packed;
        Ref<IUnpackedFrameData> unpacked;
        std::vector<uint8_t> handPacket;
        const uint8_t* handPicture = nullptr;
        Sample samples[4];
        blocks[0] = countAllocations();
        inTurns(
            i % 2 != 0, samples[0], samples[1],
            [&] { packed = Ref<IPackedFrameData>::adopt(encoderContext->encode(frame.get())); },
            [&] { handPacket = handEncoder.encode(handPixels.getData(), handPixels.getPitch()); });
        if (!packed) {
            fprintf(stderr, "frame %zu could not be encoded\n", i);
            return 1;
        }
        blocks[1] = countAllocations();
        inTurns(
            i % 2 != 0, samples[2], samples[3],
            [&] { unpacked = Ref<IUnpackedFrameData>::adopt(decoderContext->decode(packed.get())); },
            [&] { handPicture = handDecoder.decode(handPacket); });
        if (!unpacked) {
            fprintf(stderr, "frame %zu could not be decoded\n", i);
            return 1;
        }
        blocks[2] = countAllocations();
        const Array<uint8_t>* bytes = packed->getPackedData();
        bytesOurs += bytes->getSize();
        bytesHand += handPacket.size();
        differingPackets += bytes->getSize() != handPacket.size() ||
                            memcmp(bytes->getData(), handPacket.data(), handPacket.size()) != 0;
        differingPictures += picturesDiffer(*unpacked->getSystemMemory(0, 1), handPicture, handDecoder.getPitch());
        for (size_t side = 0; i >= WARM_UP && side < 4; side++) {
            series[side].add(samples[side]);
        }
    }
    printf("%s %ux%u: %zu frames, bytes per frame %zu / %zu, %zu packets and %zu pictures differ\n", p_codec, p_width,
           p_height, pictures.size() - WARM_UP, bytesOurs / pictures.size(), bytesHand / pictures.size(),
           differingPackets, differingPictures);
    printSide("encode", series[0], series[1]);
    printSide("decode", series[2], series[3]);
    if ((p_width | p_height) % 2 != 0) {
        printPadding(*frame, series[0]);
    }
    // FFmpeg's own blocks are not counted. The picture module's are the frame objects and, once, its pictures.
    printf("  blocks taken for the last frame: encode %zu by the plug-in and %zu by the picture module, decode %zu and "
           "%zu\n",
           blocks[1][0] - blocks[0][0], blocks[1][1] - blocks[0][1], blocks[2][0] - blocks[1][0],
           blocks[2][1] - blocks[1][1]);
    return 0;
}

} // namespace

} // namespace zyr::bench

int main(int argc, char** argv) {
    const std::string input = argc > 1 ? argv[1] : "generate:640x360@30:125";
    const size_t count = argc > 2 ? size_t(atoi(argv[2])) : 125;
    if (input == "--help") {
        printf("usage: bench_codec_road [VIDEO] [FRAMES]\nEach pair of figures is the plug-in's and the hand-written "
               "road's; ratios of throughput above 1 mean that the plug-in is faster.\n");
        return 0;
    }
    try {
        zyr::host::FrameworkOptions options;
        options.m_logLevel = zyr::ZYR_LOG_LEVEL_WARN;
        zyr::host::Framework framework(options);
        const zyr::host::Market market = zyr::host::openMarket(framework);
        zyr::bench::watchModules({"zyr_ffmpeg.so", "zyr_picture.so"});
        int result = 0;
        for (const char* codec : {"vp9", "mpeg1video"}) {
            for (const auto& [width, height] :
                 {std::pair(640u, 360u), std::pair(1280u, 720u), std::pair(1920u, 1080u), std::pair(1081u, 1921u)}) {
                result |= zyr::bench::run(codec, width, height, market, input, count);
            }
        }
        return result;
    } catch (const std::exception& error) {
        fprintf(stderr, "bench_codec_road: %s\n", error.what());
        return 1;
    }
}
