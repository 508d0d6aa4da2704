/// Finds what moved from one picture to the next: scrolled text, dragged windows.
#pragma once

#include "plugin_blocks/zyr_blocks_surface.h"

namespace zyr::blocks {

/// Not shared between threads. Keeps its memory from frame to frame.
///
/// Short rows of pixels are taken from changed blocks of the old picture and looked for at every place of every
/// sixteenth row of changed blocks in the new one. The distances that come up most often are then tried: blocks that
/// are equal at that distance, pixel by pixel, are joined to rectangles, and those are grown to the pixel.
class MoveFinder {
public:
    /// Gives the number of moves. `p_changes` has an item for each block of the surface, which holds the old picture.
    uint32_t find(const SourcePicture& p_source, const Surface& p_surface, const BlockChange* p_changes,
                  Move (&p_moves)[MOST_MOVES]);

private:
    struct Feature {
        uint32_t hash;
        uint32_t x;
        uint32_t y; ///< NO_PLACE when it occurs more than once.
    };
    struct Vote {
        int32_t dx;
        int32_t dy;
        uint32_t count;
    };
    static constexpr uint32_t NO_PLACE = UINT32_MAX;
    static constexpr uint32_t FEATURE_SLOTS = 4096;
    static constexpr uint32_t FILTER_BITS = 32768;
    static constexpr uint32_t VOTE_SLOTS = 1024;

    uint32_t countChanges(const Surface& p_surface, const BlockChange* p_changes);
    void collectFeatures(const Surface& p_surface, const BlockChange* p_changes, uint32_t p_numOfChanges);
    void addFeature(uint32_t p_hash, uint32_t p_x, uint32_t p_y);
    const Feature* findFeature(uint32_t p_hash) const;
    void vote(const SourcePicture& p_source, const Surface& p_surface, const BlockChange* p_changes);
    void voteForRow(const SourcePicture& p_source, const Surface& p_surface, const BlockChange* p_changes,
                    uint32_t p_y);
    void voteFor(const SourcePicture& p_source, const Surface& p_surface, uint32_t p_x, uint32_t p_y,
                 const Feature& p_feature);
    bool matches(const SourcePicture& p_source, const Surface& p_surface, const PixelRect& p_target,
                 const Vote& p_vote) const;
    void matchBlocks(const SourcePicture& p_source, const Surface& p_surface, const Vote& p_vote);
    PixelRect joinBlocks(const Surface& p_surface, uint32_t p_column, uint32_t p_row, const BlockChange* p_changes,
                         uint32_t& p_numOfChanges);
    void grow(const SourcePicture& p_source, const Surface& p_surface, const Vote& p_vote, PixelRect& p_rect) const;

    Feature m_features[FEATURE_SLOTS];
    uint64_t m_filter[FILTER_BITS / 64];
    Vote m_votes[VOTE_SLOTS];
    Array<uint8_t> m_marks; ///< for each block: whether it matches and is not covered yet
    uint32_t m_firstColumn = 0;
    uint32_t m_lastColumn = 0;
    uint32_t m_firstRow = 0;
    uint32_t m_lastRow = 0;
};

} // namespace zyr::blocks
