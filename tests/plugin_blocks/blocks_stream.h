/// An encoder and a decoder behind each other, on pixels alone.
#pragma once

#include "plugin_blocks/zyr_blocks_picture_decoder.h"
#include "plugin_blocks/zyr_blocks_picture_encoder.h"
#include "support/zyr_screen_painter.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>

namespace zyr_test {

/// The largest difference of a channel between a picture and what was decoded; 256 for another size, or without alpha.
inline int findLargestDifference(const ScreenPainter& p_screen, const zyr::blocks::Surface& p_decoded) {
    if (p_screen.getWidth() != p_decoded.getWidth() || p_screen.getHeight() != p_decoded.getHeight()) {
        return 256;
    }
    int largest = 0;
    for (uint32_t y = 0; y < p_screen.getHeight(); y++) {
        for (uint32_t x = 0; x < p_screen.getWidth(); x++) {
            const uint32_t expected = p_screen.get(int(x), int(y));
            const uint32_t found = *p_decoded.getPixel(x, y);
            if (found >> 24 != 255) {
                return 256;
            }
            // B, G, R here, R, G, B there.
            largest = std::max(largest, std::abs(int(expected & 255) - int(found >> 16 & 255)));
            largest = std::max(largest, std::abs(int(expected >> 8 & 255) - int(found >> 8 & 255)));
            largest = std::max(largest, std::abs(int(expected >> 16 & 255) - int(found & 255)));
        }
    }
    return largest;
}

class BlocksStream {
public:
    explicit BlocksStream(zyr::CompressionTypeEnum p_compression, uint32_t p_numOfThreads = 1)
        : m_compression(p_compression), m_encoder(std::make_unique<zyr::blocks::PictureEncoder>()) {
        m_encoder->setNumOfThreads(p_numOfThreads);
        m_decoder.setNumOfThreads(p_numOfThreads);
    }

    const std::vector<uint8_t>& encode(const ScreenPainter& p_screen, const uint8_t* p_wanted = nullptr) {
        zyr::Array<uint8_t> packet;
        const bool isEncoded = m_encoder->encode(
            {p_screen.getBytes(), size_t(p_screen.getWidth()) * 4, p_screen.getWidth(), p_screen.getHeight()}, p_wanted,
            m_compression, m_bound, packet);
        EXPECT_TRUE(isEncoded);
        m_packet.assign(packet.getData(), packet.getData() + packet.getSize());
        return m_packet;
    }
    const char* decode(const std::vector<uint8_t>& p_packet, uint32_t p_width, uint32_t p_height) {
        return m_decoder.decode(p_packet.data(), p_packet.size(), p_width, p_height);
    }
    /// Sends a picture through both; the largest difference of a channel, or 256 when something failed.
    int send(const ScreenPainter& p_screen, const uint8_t* p_wanted = nullptr) {
        const char* error = decode(encode(p_screen, p_wanted), p_screen.getWidth(), p_screen.getHeight());
        EXPECT_STREQ(nullptr, error);
        return error == nullptr ? findLargestDifference(p_screen, m_decoder.getSurface()) : 256;
    }

    zyr::CompressionTypeEnum m_compression;
    uint8_t m_bound = 0;
    std::unique_ptr<zyr::blocks::PictureEncoder> m_encoder;
    zyr::blocks::PictureDecoder m_decoder;
    std::vector<uint8_t> m_packet; ///< the last one
};

} // namespace zyr_test
