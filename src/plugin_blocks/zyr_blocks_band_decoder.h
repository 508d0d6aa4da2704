/// Draws the changed blocks of one band.
#pragma once

#include "picture/zyr_codec_enums.h"
#include "plugin_blocks/zyr_blocks_bytes.h"
#include "plugin_blocks/zyr_blocks_prediction.h"

namespace zyr::blocks {

/// One band at a time, and one thread. Keeps its memory from frame to frame.
class BandDecoder {
public:
    BandDecoder();

    /// Finds the band's streams for so many blocks, without unpacking them. False when that can't be right.
    bool open(ByteReader& p_reader, const PacketHeader& p_header, uint32_t p_numOfBlocks);
    /// Draws the marked ones of the band's blocks, pixels being R, G, B, A. False when the streams don't fit them; the
    /// band's rows may then hold anything, but nothing outside of them was touched.
    bool draw(Surface& p_surface, uint32_t p_firstRow, const uint8_t* p_marks, uint8_t p_bound);

private:
    struct PackedStream {
        const uint8_t* bytes;
        size_t size;
        size_t packedSize; ///< 0 when the bytes are as they are.
    };
    /// The last palettes of a size; places behind a palette's colours are black.
    struct KeptPalettes {
        uint32_t capacity;
        uint32_t added;
        Array<uint32_t> colors;
    };

    bool unpackStreams();
    bool drawBlock(Surface& p_surface, const PixelRect& p_block, uint32_t p_bandTop, uint8_t p_bound);
    const uint32_t* findPalette(BlockKind p_kind, uint32_t p_age);
    void drawPalette(Surface& p_surface, const PixelRect& p_rect, BlockKind p_kind, const uint32_t* p_colors);
    bool drawPrediction(Surface& p_surface, const Place& p_place, uint32_t p_argument, uint8_t p_bound);
    bool readPacked(const PixelRect& p_rect);
    bool readPlain(const PixelRect& p_rect);
    bool drawCopy(Surface& p_surface, const Place& p_place);
    bool drawRaw(Surface& p_surface, const PixelRect& p_rect);
    bool areStreamsUsedUp() const;

    CompressionTypeEnum m_compression = ZYR_COMPRESSION_NONE;
    bool m_isOfFirstVersion = false;
    PackedStream m_packed[STREAM_COUNT] = {};
    Array<uint8_t> m_unpacked[STREAM_COUNT];
    ByteReader m_streams[STREAM_COUNT];
    KeptPalettes m_palettes[KIND_PALETTE_256 + 1];
    Differences m_differences = {};
};

} // namespace zyr::blocks
