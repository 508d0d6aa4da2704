/// Turns packets into pictures.
#pragma once

#include "plugin_blocks/zyr_blocks_band_decoder.h"
#include "plugin_blocks/zyr_blocks_workers.h"

namespace zyr::blocks {

/// One stream, on pixels alone. Packets may be damaged in any way: what they make the decoder do is bounded by the size
/// of the picture and by their own. One thread at a time.
class PictureDecoder {
public:
    PictureDecoder() = default;
    ~PictureDecoder();
    PictureDecoder(const PictureDecoder&) = delete;
    PictureDecoder& operator=(const PictureDecoder&) = delete;

    /// Threads for large pictures; see BandWorkers.
    void setNumOfThreads(uint32_t p_count) { m_workers.setNumOfThreads(p_count); }
    /// The next packet has to be a key frame.
    void forget() { m_needsKey = true; }

    /// Null when the packet was decoded, else what is wrong with it; then only a key frame can be decoded next. A
    /// packet of another size than that is refused.
    const char* decode(const uint8_t* p_packet, size_t p_size, uint32_t p_width, uint32_t p_height);

    /// The picture after a successful decode: R, G, B and an alpha of 255.
    const Surface& getSurface() const { return m_surface; }

private:
    const char* decodeBody(ByteReader& p_reader, const PacketHeader& p_header);
    const char* decodeBands(ByteReader& p_reader, const PacketHeader& p_header);
    const char* openBands(ByteReader& p_reader, const PacketHeader& p_header, const uint8_t* p_marks,
                          uint32_t& p_numOfBlocks);
    static void drawBand(void* p_decoder, uint32_t p_band);

    struct Band {
        BandDecoder decoder;
        bool isUsed;
        bool isDrawn;
    };

    Surface m_surface;
    Array<uint8_t> m_marks;
    Array<uint32_t> m_copy;
    Array<Band*> m_bands;
    BandWorkers m_workers;
    uint8_t m_bound = 0; ///< while bands are drawn
    uint8_t m_sequence = 0;
    bool m_needsKey = true;
};

} // namespace zyr::blocks
