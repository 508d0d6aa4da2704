/// Codes the changed blocks of one band.
#pragma once

#include "picture/zyr_codec_enums.h"
#include "plugin_blocks/zyr_blocks_palette.h"
#include "plugin_blocks/zyr_blocks_prediction.h"

namespace zyr::blocks {

/// What the encoder did with a frame, for those who tune it.
struct BlockCounts {
    uint32_t kinds[KIND_COUNT];
    uint32_t parts;
    uint32_t moved; ///< pixels
};

/// Entropy coding wants the differences as they are, and sorted; others make more of packed ones.
constexpr bool sortsDifferences(CompressionTypeEnum p_compression) {
    return p_compression == ZYR_COMPRESSION_ZIP;
}

/// The same for all bands of a frame.
struct BandSettings {
    CompressionTypeEnum compression; ///< That blocks are coded for.
    uint8_t bound;
    CompressionTypeEnum packing; ///< Of the streams: the same, or ZIP for blocks that are coded for another one.
};

/// One band at a time, and one thread. Keeps its memory from frame to frame.
class BandEncoder {
public:
    BandEncoder();

    /// Codes the blocks of `p_changes` (those of the band's rows of blocks, from `p_firstRow` on) that have a change.
    /// The surface, which holds the last picture, gets the pixels that a decoder will have.
    void encode(const SourcePicture& p_source, Surface& p_surface, uint32_t p_firstRow, const BlockChange* p_changes,
                const BandSettings& p_settings);

    /// Empty when no block had a change.
    const Array<uint8_t>& getBytes() const { return m_bytes; }
    const BlockCounts& getCounts() const { return m_counts; }
    /// Bytes of the streams before their compression.
    size_t getStreamBytes() const { return m_streamBytes; }
    /// Nanoseconds that the last compression of streams took.
    uint64_t getCompressionTime() const { return m_compressionTime; }

private:
    /// Blocks that were coded, by their hash.
    struct KnownBlock {
        uint64_t hash;
        uint32_t x;
        uint32_t y;
    };
    static constexpr uint32_t KNOWN_BLOCKS = 1024;

    void encodeBlock(Surface& p_surface, const Place& p_place, bool p_isPart);
    bool encodeCopy(const Surface& p_surface, const PixelRect& p_rect);
    uint32_t choosePrediction(const Surface& p_surface, const Place& p_place);
    void tryPrediction(const Surface& p_surface, const Place& p_place, Foretelling p_how, uint32_t& p_cost);
    void encodePrediction(Surface& p_surface, const Place& p_place);
    void encodePalette(BlockKind p_kind, uint32_t p_age, const uint8_t* p_places, const PixelRect& p_rect);
    void encodeRaw(const uint32_t* p_pixels, uint32_t p_numOfPixels);
    void appendColors(const Palette& p_palette);
    void addKind(BlockKind p_kind, uint32_t p_argument);
    size_t packStream(StreamId p_id);
    void finish();

    BandSettings m_settings = {};
    Array<uint8_t> m_streams[STREAM_COUNT];
    size_t m_streamBytes = 0;
    Array<uint8_t> m_packed;
    Array<uint8_t> m_bytes;
    ColorCounter m_counter;
    PaletteKeeper m_keepers[KIND_PALETTE_256 + 1];
    KnownBlock m_known[KNOWN_BLOCKS];
    Differences m_differences[2]; ///< the best and the one that is tried
    uint32_t m_best = 0;
    Foretelling m_foretelling = {};
    uint8_t m_partFlag = 0;
    BlockCounts m_counts = {};
    uint64_t m_compressionTime = 0;
};

} // namespace zyr::blocks
