#include "host/live/zyr_region_choice.h"

#include <algorithm>
#include <cstring>

namespace zyr::host {

namespace {

/// A block gains for a frame that it moved in and loses for one that it did not: twelve frames make it hot, and half of
/// the frames keep it so.
constexpr uint8_t GAIN = 2;
constexpr uint8_t LOSS = 1;
constexpr uint8_t HOT = 24;
constexpr uint8_t LARGEST_SCORE = 36;
/// Of 64 pixels of a block; letters with their soft edges have fewer.
constexpr unsigned MANY_COLORS = 24;
/// Blocks take so many bytes for a pixel of a photograph. What was moved there takes next to none.
constexpr double EXPENSIVE_PIXEL = 0.35;
/// Below this, blocks are as cheap as a stream of its own.
constexpr uint32_t LEAST_HOT_BLOCKS = 64;
constexpr uint32_t LEAST_GROWTH = 16;
/// Hot blocks with so many others between them still belong together.
constexpr uint32_t REACH = 2;
/// Frames farther apart than this are no motion.
constexpr uint64_t LONGEST_GAP = 400'000;
constexpr uint64_t REST_AFTER = 120'000;
constexpr uint64_t CALM_AFTER = 1'000'000;
constexpr uint64_t BETWEEN_CHANGES = 1'000'000;

uint32_t countBlocks(uint32_t p_pixels) {
    return (p_pixels + RegionChoice::BLOCK - 1) / RegionChoice::BLOCK;
}

} // namespace

void PictureArea::include(const PictureArea& p_other) {
    if (isEmpty() || p_other.isEmpty()) {
        *this = isEmpty() ? p_other : *this;
        return;
    }
    const uint32_t right = std::max(m_x + m_width, p_other.m_x + p_other.m_width);
    const uint32_t bottom = std::max(m_y + m_height, p_other.m_y + p_other.m_height);
    m_x = std::min(m_x, p_other.m_x);
    m_y = std::min(m_y, p_other.m_y);
    m_width = right - m_x;
    m_height = bottom - m_y;
}

void RegionChoice::resize(uint32_t p_width, uint32_t p_height) {
    if (p_width != m_width || p_height != m_height) {
        m_width = p_width;
        m_height = p_height;
        m_columns = countBlocks(p_width);
        m_rows = countBlocks(p_height);
        clear();
    }
}

void RegionChoice::clear() {
    m_scores.assign(size_t(m_columns) * m_rows, 0);
    m_region = PictureArea();
    m_box = Box();
}

bool RegionChoice::isMoving(uint64_t p_time) const {
    return !m_region.isEmpty() && p_time - m_motionTime < REST_AFTER;
}

void RegionChoice::noteTime(uint64_t p_time) {
    if (p_time - m_lastTime > LONGEST_GAP) {
        std::fill(m_scores.begin(), m_scores.end(), uint8_t{0});
    }
    m_lastTime = p_time;
}

void RegionChoice::rate(size_t p_block, bool p_hot) {
    uint8_t& score = m_scores[p_block];
    score = p_hot ? uint8_t(std::min<unsigned>(LARGEST_SCORE, score + GAIN)) : uint8_t(score - std::min(score, LOSS));
}

bool RegionChoice::isColorful(const PictureView& p_picture, uint32_t p_column, uint32_t p_row) const {
    constexpr uint32_t STEP = 2;
    const uint32_t right = std::min(m_width, (p_column + 1) * BLOCK);
    const uint32_t bottom = std::min(m_height, (p_row + 1) * BLOCK);
    uint64_t seen[4] = {}; // A bit for each of 256 classes, in which few colours meet.
    unsigned colors = 0;
    for (uint32_t y = p_row * BLOCK; y < bottom; y += STEP) {
        const uint8_t* const line = p_picture.m_pixels + uint64_t{y} * p_picture.m_pitch;
        for (uint32_t x = p_column * BLOCK; x < right; x += STEP) {
            uint32_t pixel = 0;
            memcpy(&pixel, line + size_t{x} * 4, sizeof(pixel));
            const uint32_t place = (pixel & 0xFFFFFF) * 0x9E3779B1u >> 24;
            const uint64_t bit = uint64_t{1} << (place & 63);
            colors += (seen[place >> 6] & bit) == 0 ? 1 : 0;
            seen[place >> 6] |= bit;
        }
    }
    return colors >= MANY_COLORS;
}

void RegionChoice::noteBlocks(const PictureView& p_picture, const uint8_t* p_marks, uint64_t p_bytes, uint64_t p_time) {
    noteTime(p_time);
    m_seen.assign(m_scores.size(), 0);
    uint64_t colorful = 0;
    for (size_t i = 0; i < m_scores.size(); i++) {
        const auto column = uint32_t(i % m_columns);
        const auto row = uint32_t(i / m_columns);
        if (p_marks[i] != 0 && !m_box.has(column, row) && isColorful(p_picture, column, row)) {
            m_seen[i] = 1;
            colorful++;
        }
    }
    const bool isExpensive =
        colorful >= LEAST_GROWTH && double(p_bytes) > EXPENSIVE_PIXEL * double(colorful * BLOCK * BLOCK);
    for (size_t i = 0; i < m_scores.size(); i++) {
        if (!m_box.has(uint32_t(i % m_columns), uint32_t(i / m_columns))) {
            rate(i, isExpensive && m_seen[i] != 0);
        }
    }
}

void RegionChoice::noteRegion(const uint8_t* p_marks, uint64_t p_time) {
    noteTime(p_time);
    uint32_t changed = 0;
    for (uint32_t row = m_box.m_top; row < m_box.m_bottom; row++) {
        for (uint32_t column = m_box.m_left; column < m_box.m_right; column++, p_marks++) {
            rate(size_t{row} * m_columns + column, *p_marks != 0);
            changed += *p_marks != 0 ? 1 : 0;
        }
    }
    // A clock or a pointer over what stands still is no motion.
    if (changed * 16 >= m_box.getArea()) {
        m_motionTime = p_time;
    }
}

uint32_t RegionChoice::countHot(const Box& p_box) const {
    uint32_t count = 0;
    for (uint32_t row = p_box.m_top; row < p_box.m_bottom; row++) {
        const auto line = m_scores.begin() + std::ptrdiff_t(size_t{row} * m_columns);
        count += uint32_t(
            std::count_if(line + p_box.m_left, line + p_box.m_right, [](uint8_t p_score) { return p_score >= HOT; }));
    }
    return count;
}

/// Gathers the hot blocks around one of them.
void RegionChoice::spread(size_t p_first, Box& p_box, uint32_t& p_hot) {
    m_open.assign(1, p_first);
    m_seen[p_first] = 1;
    p_hot = 0;
    while (!m_open.empty()) {
        const auto column = uint32_t(m_open.back() % m_columns);
        const auto row = uint32_t(m_open.back() / m_columns);
        m_open.pop_back();
        p_hot++;
        p_box = Box{std::min(p_box.m_left, column), std::min(p_box.m_top, row), std::max(p_box.m_right, column + 1),
                    std::max(p_box.m_bottom, row + 1)};
        for (uint32_t y = row - std::min(row, REACH); y <= std::min(m_rows - 1, row + REACH); y++) {
            for (uint32_t x = column - std::min(column, REACH); x <= std::min(m_columns - 1, column + REACH); x++) {
                const size_t near = size_t{y} * m_columns + x;
                if (m_seen[near] == 0 && m_scores[near] >= HOT) {
                    m_seen[near] = 1;
                    m_open.push_back(near);
                }
            }
        }
    }
}

RegionChoice::Box RegionChoice::findLargest(uint32_t& p_hot) {
    Box largest;
    p_hot = 0;
    m_seen.assign(m_scores.size(), 0);
    for (size_t i = 0; i < m_scores.size(); i++) {
        if (m_seen[i] == 0 && m_scores[i] >= HOT) {
            Box box{m_columns, m_rows, 0, 0};
            uint32_t hot = 0;
            spread(i, box, hot);
            if (hot > p_hot) {
                largest = box;
                p_hot = hot;
            }
        }
    }
    return largest;
}

void RegionChoice::take(const Box& p_box, uint64_t p_time) {
    const bool isNearlyAll = p_box.getArea() * 4 >= m_columns * m_rows * 3;
    m_box = isNearlyAll ? Box{0, 0, m_columns, m_rows} : p_box;
    const uint32_t x = m_box.m_left * BLOCK;
    const uint32_t y = m_box.m_top * BLOCK;
    m_region =
        PictureArea{x, y, std::min(m_width, m_box.m_right * BLOCK) - x, std::min(m_height, m_box.m_bottom * BLOCK) - y};
    m_motionTime = p_time;
    m_changeTime = p_time;
    m_smallTime = 0;
}

void RegionChoice::update(uint64_t p_time) {
    if (!m_region.isEmpty() && p_time - m_motionTime >= CALM_AFTER) {
        clear();
    }
    uint32_t hot = 0;
    const Box box = findLargest(hot);
    if (hot < LEAST_HOT_BLOCKS || hot * 4 < box.getArea()) {
        return;
    }
    if (m_region.isEmpty()) {
        take(box, p_time);
        return;
    }
    if (m_box.has(box)) {
        const bool isSmall = box.getArea() * 2 <= m_box.getArea();
        m_smallTime = !isSmall ? 0 : m_smallTime == 0 ? p_time : m_smallTime;
        if (isSmall && p_time - m_smallTime >= CALM_AFTER) {
            take(box, p_time);
        }
        return;
    }
    // Of two videos the larger one has the region, and keeps it unless the other is larger by far.
    const uint32_t inside = countHot(m_box);
    const bool isNear = box.m_left <= m_box.m_right && box.m_right >= m_box.m_left && box.m_top <= m_box.m_bottom &&
                        box.m_bottom >= m_box.m_top;
    const bool isWorthIt = isNear ? hot >= inside + LEAST_GROWTH || inside < LEAST_HOT_BLOCKS : hot * 2 > inside * 3;
    if (isWorthIt && p_time - m_changeTime >= BETWEEN_CHANGES) {
        take(box, p_time);
    }
}

} // namespace zyr::host
