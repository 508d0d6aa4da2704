#include "support/va_driver/zyr_h264_pcm.h"

#include <cstring>

namespace zyr_test {

namespace {

constexpr uint32_t MACROBLOCK_TYPE_PCM = 25;
constexpr uint32_t SAMPLES_PER_MACROBLOCK = 256 + 64 + 64;

class BitWriter {
public:
    void bits(uint32_t p_value, uint32_t p_count) {
        while (p_count-- > 0) {
            if (m_free == 0) {
                m_bytes.push_back(0);
                m_free = 8;
            }
            m_free--;
            m_bytes.back() = static_cast<uint8_t>(m_bytes.back() | ((p_value >> p_count) & 1) << m_free);
        }
    }

    /// Unsigned Exp-Golomb code.
    void golomb(uint32_t p_value) {
        uint32_t length = 0;
        while ((p_value + 1) >> (length + 1) != 0) {
            length++;
        }
        bits(0, length);
        bits(p_value + 1, length + 1);
    }

    void alignWithZeros() { m_free = 0; }

    void endUnit() {
        bits(1, 1);
        alignWithZeros();
    }

    std::vector<uint8_t> m_bytes;

private:
    uint32_t m_free = 0;
};

class BitReader {
public:
    BitReader(const std::vector<uint8_t>& p_bytes, size_t p_position) : m_bytes(p_bytes), m_position(p_position) {}

    uint32_t bit() {
        uint32_t value = 0;
        if (m_position / 8 < m_bytes.size()) {
            value = (m_bytes[m_position / 8] >> (7 - m_position % 8)) & 1;
        }
        m_position++;
        return value;
    }

    uint32_t golomb() {
        uint32_t zeros = 0;
        while (zeros < 31 && bit() == 0) {
            zeros++;
        }
        uint32_t value = 1;
        for (uint32_t i = 0; i < zeros; i++) {
            value = value << 1 | bit();
        }
        return value - 1;
    }

    /// The next `p_count` whole bytes, or null when there are fewer.
    const uint8_t* alignedBytes(size_t p_count) {
        size_t start = (m_position + 7) / 8;
        if (start > m_bytes.size() || m_bytes.size() - start < p_count) {
            return nullptr;
        }
        m_position = (start + p_count) * 8;
        return m_bytes.data() + start;
    }

private:
    const std::vector<uint8_t>& m_bytes;
    size_t m_position;
};

void appendUnit(std::vector<uint8_t>& p_stream, uint8_t p_header, const std::vector<uint8_t>& p_payload) {
    p_stream.insert(p_stream.end(), {0, 0, 0, 1, p_header});
    uint32_t zeros = 0;
    for (uint8_t byte : p_payload) {
        if (zeros == 2 && byte <= 3) {
            p_stream.push_back(3);
            zeros = 0;
        }
        p_stream.push_back(byte);
        zeros = byte == 0 ? zeros + 1 : 0;
    }
}

std::vector<uint8_t> sequenceParameterSet(uint32_t p_width, uint32_t p_height) {
    uint32_t blocksX = (p_width + 15) / 16;
    uint32_t blocksY = (p_height + 15) / 16;
    BitWriter writer;
    writer.bits(77, 8); // main profile
    writer.bits(0, 8);
    writer.bits(52, 8); // level 5.2
    writer.golomb(0);
    writer.golomb(0); // four bits of frame number
    writer.golomb(2); // output order is decoding order
    writer.golomb(1);
    writer.bits(0, 1);
    writer.golomb(blocksX - 1);
    writer.golomb(blocksY - 1);
    writer.bits(1, 1); // frames only
    writer.bits(1, 1);
    writer.bits(1, 1); // cropping, in units of two samples
    writer.golomb(0);
    writer.golomb((blocksX * 16 - p_width) / 2);
    writer.golomb(0);
    writer.golomb((blocksY * 16 - p_height) / 2);
    writer.bits(0, 1);
    writer.endUnit();
    return writer.m_bytes;
}

std::vector<uint8_t> pictureParameterSet() {
    BitWriter writer;
    writer.golomb(0);
    writer.golomb(0);
    writer.bits(0, 2); // variable length codes
    writer.golomb(0);
    writer.golomb(0);
    writer.golomb(0);
    writer.bits(0, 3); // no weighting
    writer.golomb(0);
    writer.golomb(0);
    writer.golomb(0);
    writer.bits(1, 1); // the slice says whether it is filtered
    writer.bits(0, 2);
    writer.endUnit();
    return writer.m_bytes;
}

void copyBlock(Nv12Picture& p_picture, uint32_t p_blockX, uint32_t p_blockY, uint8_t* p_samples, bool p_intoPicture) {
    auto exchange = [p_intoPicture](uint8_t& picture, uint8_t& sample) {
        if (p_intoPicture) {
            picture = sample;
        } else {
            sample = picture;
        }
    };
    for (uint32_t y = 0; y < 16; y++) {
        uint8_t* row = p_picture.luma(p_blockY * 16 + y) + p_blockX * 16;
        for (uint32_t x = 0; x < 16; x++) {
            exchange(row[x], p_samples[y * 16 + x]);
        }
    }
    for (uint32_t y = 0; y < 8; y++) {
        uint8_t* row = p_picture.chroma(p_blockY * 8 + y) + p_blockX * 16;
        for (uint32_t x = 0; x < 8; x++) {
            exchange(row[x * 2], p_samples[256 + y * 8 + x]);
            exchange(row[x * 2 + 1], p_samples[320 + y * 8 + x]);
        }
    }
}

} // namespace

std::vector<uint8_t> writeH264Pcm(Nv12Picture& p_source, uint32_t p_width, uint32_t p_height,
                                  uint32_t p_pictureNumber) {
    std::vector<uint8_t> stream;
    appendUnit(stream, 0x67, sequenceParameterSet(p_width, p_height));
    appendUnit(stream, 0x68, pictureParameterSet());

    BitWriter slice;
    slice.golomb(0);
    slice.golomb(7); // every slice of the picture is intra coded
    slice.golomb(0);
    slice.bits(0, 4);
    slice.golomb(p_pictureNumber & 1); // neighbouring IDR pictures differ in this number
    slice.bits(0, 2);
    slice.golomb(0);
    slice.golomb(1); // no deblocking
    uint8_t samples[SAMPLES_PER_MACROBLOCK];
    for (uint32_t y = 0; y < (p_height + 15) / 16; y++) {
        for (uint32_t x = 0; x < (p_width + 15) / 16; x++) {
            slice.golomb(MACROBLOCK_TYPE_PCM);
            slice.alignWithZeros();
            copyBlock(p_source, x, y, samples, false);
            slice.m_bytes.insert(slice.m_bytes.end(), samples, samples + SAMPLES_PER_MACROBLOCK);
        }
    }
    slice.endUnit();
    appendUnit(stream, 0x65, slice.m_bytes);
    return stream;
}

bool readH264Pcm(const uint8_t* p_unit, size_t p_size, uint32_t p_bitOffset, uint32_t p_macroblocksX,
                 uint32_t p_macroblocksY, Nv12Picture& p_target) {
    std::vector<uint8_t> plain;
    plain.reserve(p_size);
    uint32_t zeros = 0;
    for (size_t i = 0; i < p_size; i++) {
        if (zeros >= 2 && p_unit[i] == 3) {
            zeros = 0;
            continue;
        }
        plain.push_back(p_unit[i]);
        zeros = p_unit[i] == 0 ? zeros + 1 : 0;
    }
    if (p_macroblocksX * 16 > p_target.m_pitch || p_macroblocksY * 16 > p_target.m_rows) {
        return false;
    }
    BitReader reader(plain, p_bitOffset);
    for (uint32_t y = 0; y < p_macroblocksY; y++) {
        for (uint32_t x = 0; x < p_macroblocksX; x++) {
            const uint8_t* samples =
                reader.golomb() == MACROBLOCK_TYPE_PCM ? reader.alignedBytes(SAMPLES_PER_MACROBLOCK) : nullptr;
            if (samples == nullptr) {
                return false;
            }
            copyBlock(p_target, x, y, const_cast<uint8_t*>(samples), true);
        }
    }
    return true;
}

} // namespace zyr_test
