#include "host/doctor/zyr_trial_frames.h"

#include "host/zyr_plugin_guard.h"
#include "host/zyr_run_error.h"
#include "host/zyr_stream_coder.h"

#include <cstdlib>

namespace zyr::host {

namespace {

constexpr uint32_t WIDTH = 320;
constexpr uint32_t HEIGHT = 240;
constexpr unsigned NUM_OF_FRAMES = 3;
constexpr unsigned QUALITY = 60;
constexpr unsigned LOSSLESS_QUALITY = 100;
// A grey ramp comes back within 3 from all codecs here; a picture that is not drawn, or another one, is far off.
constexpr double MAX_MEAN_DIFFERENCE = 12;

/// Shades of grey, so that the order of the colours does not matter.
uint8_t shadeAt(uint32_t p_x, uint32_t p_y, unsigned p_frame) {
    return uint8_t(40 + (p_x + p_y) / 4 + p_frame * 8);
}

void draw(IImage& p_image, unsigned p_frame) {
    for (uint32_t y = 0; y < HEIGHT; y++) {
        uint8_t* row = static_cast<uint8_t*>(p_image.getData()) + size_t(y) * p_image.getPitch();
        for (uint32_t x = 0; x < WIDTH * 4; x++) {
            row[x] = x % 4 == 3 ? 255 : shadeAt(x / 4, y, p_frame);
        }
    }
}

double compare(const IUnpackedFrameData& p_frame, unsigned p_number) {
    const IImage* image = p_frame.getSystemMemory(0, 1);
    uint64_t sum = 0;
    for (uint32_t y = 0; y < HEIGHT; y++) {
        const uint8_t* row = static_cast<const uint8_t*>(image->getData()) + size_t(y) * image->getPitch();
        for (uint32_t x = 0; x < WIDTH; x++) {
            sum += uint64_t(std::abs(int(row[x * 4 + 1]) - int(shadeAt(x, y, p_number))));
        }
    }
    return double(sum) / (WIDTH * HEIGHT);
}

} // namespace

std::string sendTrialFrames(Match& p_match, const Market& p_market) {
    StreamCoder coder(p_match, p_market);
    coder.open(EncoderOptions(), p_match.m_info.lossless ? LOSSLESS_QUALITY : QUALITY);
    IImage* image = nullptr;
    const auto source = createSourceFrame(WIDTH, HEIGHT, image);
    uint64_t bytes = 0;
    for (unsigned number = 0; number < NUM_OF_FRAMES; number++) {
        const std::string frame = "frame " + std::to_string(number + 1);
        draw(*image, number);
        const EncodedFrame encoded = coder.encode(*source, nullptr);
        if (!encoded.m_packet) {
            throw RunError("encoding " + frame + " failed: " + encoded.m_reason);
        }
        bytes += encoded.m_packet->getPackedData()->getSize();
        const DecodedFrame decoded = coder.decode(*encoded.m_packet, nullptr);
        if (!decoded.m_picture) {
            throw RunError("decoding " + frame + " failed: " + decoded.m_reason);
        }
        if (compare(*decoded.m_picture, number) > MAX_MEAN_DIFFERENCE) {
            throw RunError("another picture than " + frame + " came back");
        }
    }
    return std::to_string(NUM_OF_FRAMES) + " frames in " + std::to_string(bytes) + " bytes";
}

} // namespace zyr::host
