/// The hand-written road that the plug-in is measured against: the same libavcodec calls and options, libyuv in and
/// out, and nothing else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

struct AVCodecContext;
struct AVFrame;

namespace zyr::bench {

/// B,G,R,A pictures of one size in, packets out. Ends the program when FFmpeg fails.
class HandEncoder {
public:
    HandEncoder(const std::string& p_implementation, const std::string& p_options, uint32_t p_width, uint32_t p_height);
    ~HandEncoder();
    HandEncoder(const HandEncoder&) = delete;
    HandEncoder& operator=(const HandEncoder&) = delete;

    std::vector<uint8_t> encode(const uint8_t* p_pixels, int p_pitch);

private:
    AVCodecContext* m_context;
    AVFrame* m_frame;
    bool m_quantizer;
    int64_t m_count = 0;
};

/// Packets in, R,G,B,A pictures out. Ends the program when FFmpeg fails.
class HandDecoder {
public:
    HandDecoder(const std::string& p_implementation, uint32_t p_width, uint32_t p_height);
    ~HandDecoder();
    HandDecoder(const HandDecoder&) = delete;
    HandDecoder& operator=(const HandDecoder&) = delete;

    /// The picture is valid until the next call.
    const uint8_t* decode(const std::vector<uint8_t>& p_packet);
    size_t getPitch() const { return m_pitch; }

private:
    AVCodecContext* m_context;
    AVFrame* m_frame;
    std::vector<uint8_t> m_pixels;
    size_t m_pitch;
    uint32_t m_width;
    uint32_t m_height;
};

} // namespace zyr::bench
