#include "lossless_codec.h"

#include "zyr_common/digest/zyr_compression.h"

using namespace zyr;

constexpr uint32_t BYTES_PER_PIXEL = 4;

bool_t LosslessFrameEncoderContext::encodePicture(const IImage& p_image, Array<uint8_t>& p_bytes) {
    const size_t rowSize = size_t{p_image.getWidth()} * BYTES_PER_PIXEL;
    const unsigned char* row = static_cast<const unsigned char*>(p_image.getData());
    m_rows.clear();
    for (uint32_t y = 0; y < p_image.getHeight(); y++, row += p_image.getPitch()) {
        m_rows.pushBackRange(row, rowSize);
    }
    return zyr_compressLZ4(m_rows.getData(), m_rows.getSize(), p_bytes, 1) != 0;
}

bool_t LosslessFrameDecoderContext::decodePicture(const Array<uint8_t>& p_bytes, IImage& p_image) {
    m_rows.resize(size_t{p_image.getWidth()} * p_image.getHeight() * BYTES_PER_PIXEL);
    if (zyr_decompressLZ4(p_bytes.getData(), p_bytes.getSize(), m_rows.getData(), m_rows.getSize()) !=
        m_rows.getSize()) {
        return 0;
    }
    // Encoders get B, G, R, A, and decoders give R, G, B, A.
    const unsigned char* from = m_rows.getData();
    unsigned char* row = static_cast<unsigned char*>(p_image.getData());
    for (uint32_t y = 0; y < p_image.getHeight(); y++, row += p_image.getPitch()) {
        unsigned char* to = row;
        for (uint32_t x = 0; x < p_image.getWidth(); x++, from += BYTES_PER_PIXEL, to += BYTES_PER_PIXEL) {
            to[0] = from[2];
            to[1] = from[1];
            to[2] = from[0];
            to[3] = from[3];
        }
    }
    return 1;
}
