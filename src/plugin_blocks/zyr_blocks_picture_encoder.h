/// Turns pictures into packets.
#pragma once

#include "plugin_blocks/zyr_blocks_band_encoder.h"
#include "plugin_blocks/zyr_blocks_moves.h"
#include "plugin_blocks/zyr_blocks_workers.h"

namespace zyr::blocks {

/// Where the time of the last frame went, in nanoseconds.
struct EncodeTimes {
    uint64_t compare;
    uint64_t moves;
    uint64_t code;     ///< with the compression of the streams
    uint64_t compress; ///< of all bands, summed up over the threads
};

/// One stream, on pixels alone. The first packet is a key frame, and so is each of another size than the one before.
/// The bytes depend on nothing but the pictures and the settings. One thread at a time.
class PictureEncoder {
public:
    PictureEncoder() { keepMemory(); }
    ~PictureEncoder();
    PictureEncoder(const PictureEncoder&) = delete;
    PictureEncoder& operator=(const PictureEncoder&) = delete;

    /// Threads for large pictures; see BandWorkers.
    void setNumOfThreads(uint32_t p_count) { m_workers.setNumOfThreads(p_count); }
    /// Packets behind one that has much text are compressed by ZIP though blocks are coded for another compression.
    void setDense(bool p_isDense) { m_mayBeDense = p_isDense; }
    /// The next packet is a key frame.
    void forget() {
        m_surface.clear();
        m_isDense = false;
    }

    /// Replaces the contents of `p_packet`. `p_wanted`, when given, has a byte for each block of 16x16 pixels, 0 for
    /// those that are known to be as in the last picture; behind a packet with a wider bound all are looked at. False
    /// for a size that is not possible.
    bool encode(const SourcePicture& p_source, const uint8_t* p_wanted, CompressionTypeEnum p_compression,
                uint8_t p_bound, Array<uint8_t>& p_packet);

    /// A byte for each block of the last picture, 1 for those that changed.
    const Array<uint8_t>& getMarks() const { return m_marks; }
    uint32_t getHBlocks() const { return m_surface.getHBlocks(); }
    uint32_t getVBlocks() const { return m_surface.getVBlocks(); }
    const EncodeTimes& getTimes() const { return m_times; }
    BlockCounts getCounts() const;

private:
    void keepMemory();
    void compare(const SourcePicture& p_source, const uint8_t* p_wanted, uint8_t p_bound);
    void applyMoves(const SourcePicture& p_source, const Move* p_moves, uint32_t p_count, uint8_t p_bound);
    bool findDense(size_t p_size) const;
    uint32_t codeBands(const SourcePicture& p_source, const BandSettings& p_settings);
    static void codeBand(void* p_encoder, uint32_t p_band);

    Surface m_surface; ///< the picture as decoders have it
    Array<BlockChange> m_changes;
    Array<uint8_t> m_marks;
    Array<uint8_t> m_touched;
    Array<uint32_t> m_copy;
    Array<BandEncoder*> m_bands;
    MoveFinder m_moveFinder;
    BandWorkers m_workers;
    const SourcePicture* m_source = nullptr; ///< while bands are coded
    BandSettings m_settings = {};
    bool m_mayBeDense = false;
    bool m_isDense = false;
    uint32_t m_moved = 0;
    uint8_t m_sequence = 0;
    uint8_t m_bound = 0; ///< that of the last packet
    EncodeTimes m_times = {};
};

} // namespace zyr::blocks
