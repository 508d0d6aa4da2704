/// Which part of a picture behaves like a video.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zyr::host {

/// A part of a picture, in its pixels.
struct PictureArea {
    uint32_t m_x = 0;
    uint32_t m_y = 0;
    uint32_t m_width = 0;
    uint32_t m_height = 0;

    bool isEmpty() const { return m_width == 0 || m_height == 0; }
    /// Grows so far that it holds the other one, too.
    void include(const PictureArea& p_other);
    bool operator==(const PictureArea&) const = default;
};

/// Pixels of four bytes, as they lie in memory.
struct PictureView {
    const uint8_t* m_pixels = nullptr;
    uint64_t m_pitch = 0;
};

/// Watches blocks of 16x16 pixels: one that changes with nearly every frame, in many colours and at the cost of many
/// bytes, is hot, and hot ones that lie together are a region. Text, windows and what scrolls never are: they have few
/// colours, or take few bytes. A region comes after a third of a second of motion, goes after a second of calm, and
/// changes its place at most once a second. Times are microseconds. One thread.
class RegionChoice {
public:
    static constexpr uint32_t BLOCK = 16;

    /// A picture of this size comes next. Another size than before forgets all.
    void resize(uint32_t p_width, uint32_t p_height);

    void clear();

    PictureArea getPicture() const { return {0, 0, m_width, m_height}; }

    /// Empty when nothing moves like a video.
    const PictureArea& getRegion() const { return m_region; }

    /// False once the region has stood still for so long that it is worth to be shown exactly.
    bool isMoving(uint64_t p_time) const;

    /// A frame of blocks took so many bytes. `p_marks`: a byte for each block of the picture, not 0 for those that
    /// changed. What lies in the region does not count.
    void noteBlocks(const PictureView& p_picture, const uint8_t* p_marks, uint64_t p_bytes, uint64_t p_time);

    /// What changed in the region since the last frame: a byte for each of its blocks.
    void noteRegion(const uint8_t* p_marks, uint64_t p_time);

    /// Looks for the region anew. To be called behind each frame's notes.
    void update(uint64_t p_time);

private:
    /// In blocks; the last column and row are outside.
    struct Box {
        uint32_t m_left = 0;
        uint32_t m_top = 0;
        uint32_t m_right = 0;
        uint32_t m_bottom = 0;

        bool has(uint32_t p_column, uint32_t p_row) const {
            return p_column >= m_left && p_column < m_right && p_row >= m_top && p_row < m_bottom;
        }
        bool has(const Box& p_other) const {
            return p_other.m_left >= m_left && p_other.m_right <= m_right && p_other.m_top >= m_top &&
                   p_other.m_bottom <= m_bottom;
        }
        uint32_t getArea() const { return (m_right - m_left) * (m_bottom - m_top); }
    };

    void noteTime(uint64_t p_time);
    void rate(size_t p_block, bool p_hot);
    bool isColorful(const PictureView& p_picture, uint32_t p_column, uint32_t p_row) const;
    Box findLargest(uint32_t& p_hot);
    void spread(size_t p_first, Box& p_box, uint32_t& p_hot);
    uint32_t countHot(const Box& p_box) const;
    void take(const Box& p_box, uint64_t p_time);

    uint32_t m_width = 0;
    uint32_t m_height = 0;
    uint32_t m_columns = 0;
    uint32_t m_rows = 0;
    std::vector<uint8_t> m_scores; ///< How much each block has moved of late.
    std::vector<uint8_t> m_seen;   ///< While blocks are gathered.
    std::vector<size_t> m_open;    ///< The same.
    PictureArea m_region;
    Box m_box; ///< The region's.
    uint64_t m_lastTime = 0;
    uint64_t m_motionTime = 0;
    uint64_t m_changeTime = 0;
    uint64_t m_smallTime = 0; ///< Since when only a part of the region moves; 0: more than that does.
};

} // namespace zyr::host
