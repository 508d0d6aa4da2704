#include "plugin_blocks/zyr_blocks_moves.h"

namespace zyr::blocks {

namespace {

/// Fewer changed blocks are coded sooner than looked for.
constexpr uint32_t LEAST_CHANGES = 8;
constexpr uint32_t FEATURE_BLOCKS = 64;
/// A row of pixels says little about its place with fewer changes of colour.
constexpr uint32_t LEAST_EDGES = 3;
constexpr uint32_t LEAST_VOTES = 3;
/// Distances that are tried.
constexpr uint32_t MOST_TRIED = 4;
constexpr uint32_t LEAST_MOVED_BLOCKS = 2;

/// Pixels of the two rows that are looked for. They stand some rows apart, as letters are often drawn with equal rows.
constexpr uint32_t FEATURE_WIDTH = 32;
constexpr uint32_t SECOND_ROW = 5;
/// Rows above and below that have to fit too.
constexpr int64_t ROWS_AROUND[] = {-6, -3, 3, 6};

constexpr uint32_t FACTOR = 0x9E3779B1;

constexpr uint32_t power(uint32_t p_base, uint32_t p_exponent) {
    return p_exponent == 0 ? 1 : p_base * power(p_base, p_exponent - 1);
}

/// The factor of the pixel that leaves a window.
constexpr uint32_t LEAVING = power(FACTOR, FEATURE_WIDTH);

uint32_t readPixel(const uint8_t* p_pixels, uint32_t p_x) {
    uint32_t pixel;
    memcpy(&pixel, p_pixels + size_t{p_x} * 4, sizeof(pixel));
    return pixel & COLOR_MASK;
}

/// Two pixels as one number.
uint32_t join(uint32_t p_first, uint32_t p_second) {
    return p_first + (p_second << 8 | p_second >> 24);
}

/// The low bits of a sum of products say little.
uint32_t finish(uint32_t p_hash) {
    return p_hash ^ p_hash >> 15;
}

} // namespace

uint32_t MoveFinder::find(const SourcePicture& p_source, const Surface& p_surface, const BlockChange* p_changes,
                          Move (&p_moves)[MOST_MOVES]) {
    const uint32_t numOfChanges = countChanges(p_surface, p_changes);
    if (numOfChanges < LEAST_CHANGES) {
        return 0;
    }
    collectFeatures(p_surface, p_changes, numOfChanges);
    vote(p_source, p_surface, p_changes);

    const uint32_t columns = p_surface.getHBlocks();
    m_marks.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, 0);
    m_marks.resize(size_t{columns} * p_surface.getVBlocks());
    memset(m_marks.getData(), 0, m_marks.getSize());
    uint64_t free = uint64_t{p_surface.getWidth()} * p_surface.getHeight();
    uint32_t count = 0;
    for (uint32_t tried = 0; tried < MOST_TRIED; ++tried) {
        Vote* best = nullptr;
        for (Vote& candidate : m_votes) {
            if (candidate.count >= LEAST_VOTES && (best == nullptr || candidate.count > best->count)) {
                best = &candidate;
            }
        }
        if (best == nullptr) {
            break;
        }
        matchBlocks(p_source, p_surface, *best);
        for (uint32_t row = m_firstRow; row <= m_lastRow; ++row) {
            for (uint32_t column = m_firstColumn; column <= m_lastColumn && count < MOST_MOVES; ++column) {
                const size_t block = size_t{row} * columns + column;
                if (m_marks.getData()[block] != 1 || p_changes[block].columns == 0) {
                    continue;
                }
                uint32_t numOfMoved = 0;
                PixelRect rect = joinBlocks(p_surface, column, row, p_changes, numOfMoved);
                if (numOfMoved < LEAST_MOVED_BLOCKS) {
                    continue;
                }
                grow(p_source, p_surface, *best, rect);
                const uint64_t area = uint64_t{rect.width} * rect.height;
                if (area <= free) {
                    free -= area;
                    p_moves[count++] = {rect, best->dx, best->dy};
                }
            }
        }
        best->count = 0;
    }
    return count;
}

uint32_t MoveFinder::countChanges(const Surface& p_surface, const BlockChange* p_changes) {
    uint32_t count = 0;
    m_firstColumn = UINT32_MAX;
    m_lastColumn = 0;
    m_firstRow = UINT32_MAX;
    for (uint32_t row = 0; row < p_surface.getVBlocks(); ++row) {
        for (uint32_t column = 0; column < p_surface.getHBlocks(); ++column, ++p_changes) {
            if (p_changes->columns != 0) {
                ++count;
                m_firstColumn = column < m_firstColumn ? column : m_firstColumn;
                m_lastColumn = column > m_lastColumn ? column : m_lastColumn;
                m_firstRow = row < m_firstRow ? row : m_firstRow;
                m_lastRow = row;
            }
        }
    }
    return count;
}

void MoveFinder::collectFeatures(const Surface& p_surface, const BlockChange* p_changes, uint32_t p_numOfChanges) {
    memset(m_filter, 0, sizeof(m_filter));
    for (Feature& feature : m_features) {
        feature.x = NO_PLACE;
    }
    const uint32_t columns = p_surface.getHBlocks();
    const uint32_t count = columns * p_surface.getVBlocks();
    uint32_t owed = 0;
    for (uint32_t i = 0; i < count; ++i) {
        const PixelRect block = p_surface.getBlock(i % columns, i / columns);
        // It reaches into the next block.
        if (p_changes[i].columns == 0 || block.x + FEATURE_WIDTH > p_surface.getWidth()) {
            continue;
        }
        // Of many blocks some, evenly. A block without anything to find leaves its turn to the next.
        owed += FEATURE_BLOCKS;
        if (owed < p_numOfChanges && p_numOfChanges > FEATURE_BLOCKS) {
            continue;
        }
        bool wasUseful = false;
        for (uint32_t y = block.y; y < block.y + block.height && y + SECOND_ROW < p_surface.getHeight(); ++y) {
            const uint32_t* pixels = p_surface.getPixel(block.x, y);
            const uint32_t* second = p_surface.getPixel(block.x, y + SECOND_ROW);
            uint32_t hash = 0;
            uint32_t edges = 0;
            for (uint32_t x = 0; x < FEATURE_WIDTH; ++x) {
                edges += x > 0 && (pixels[x] != pixels[x - 1] || second[x] != second[x - 1]);
                hash = hash * FACTOR + join(pixels[x] & COLOR_MASK, second[x] & COLOR_MASK);
            }
            if (edges >= LEAST_EDGES) {
                addFeature(finish(hash), block.x, y);
                wasUseful = true;
            }
        }
        if (wasUseful) {
            owed = owed > p_numOfChanges ? owed - p_numOfChanges : 0;
        }
    }
}

void MoveFinder::addFeature(uint32_t p_hash, uint32_t p_x, uint32_t p_y) {
    for (uint32_t i = 0; i < FEATURE_SLOTS / 2; ++i) {
        Feature& feature = m_features[(p_hash + i) % FEATURE_SLOTS];
        if (feature.x == NO_PLACE) {
            feature = {p_hash, p_x, p_y};
            m_filter[p_hash % FILTER_BITS / 64] |= uint64_t{1} << p_hash % 64;
            return;
        }
        if (feature.hash == p_hash) {
            feature.y = NO_PLACE;
            return;
        }
    }
}

const MoveFinder::Feature* MoveFinder::findFeature(uint32_t p_hash) const {
    if ((m_filter[p_hash % FILTER_BITS / 64] >> p_hash % 64 & 1) == 0) {
        return nullptr;
    }
    for (uint32_t i = 0; i < FEATURE_SLOTS / 2; ++i) {
        const Feature& feature = m_features[(p_hash + i) % FEATURE_SLOTS];
        if (feature.x == NO_PLACE) {
            return nullptr;
        }
        if (feature.hash == p_hash) {
            return feature.y == NO_PLACE ? nullptr : &feature;
        }
    }
    return nullptr;
}

void MoveFinder::vote(const SourcePicture& p_source, const Surface& p_surface, const BlockChange* p_changes) {
    memset(m_votes, 0, sizeof(m_votes));
    for (uint32_t row = m_firstRow; row <= m_lastRow; ++row) {
        const PixelRect block = p_surface.getBlock(0, row);
        voteForRow(p_source, p_surface, p_changes + size_t{row} * p_surface.getHBlocks(), block.y + block.height / 2);
    }
}

void MoveFinder::voteForRow(const SourcePicture& p_source, const Surface& p_surface, const BlockChange* p_changes,
                            uint32_t p_y) {
    if (p_y + SECOND_ROW >= p_surface.getHeight()) {
        return;
    }
    const uint8_t* pixels = p_source.pixels + p_y * p_source.pitch;
    const uint8_t* second = pixels + SECOND_ROW * p_source.pitch;
    const uint32_t width = p_surface.getWidth();
    for (uint32_t column = m_firstColumn; column <= m_lastColumn;) {
        if (p_changes[column].columns == 0) {
            ++column;
            continue;
        }
        uint32_t last = column;
        while (last < m_lastColumn && p_changes[last + 1].columns != 0) {
            ++last;
        }
        // The windows that lie in these blocks, at least in part.
        uint32_t x = column * BLOCK_SIZE >= FEATURE_WIDTH ? column * BLOCK_SIZE - FEATURE_WIDTH + 1 : 0;
        const uint32_t end =
            (last + 1) * BLOCK_SIZE + FEATURE_WIDTH < width ? (last + 1) * BLOCK_SIZE + FEATURE_WIDTH : width;
        uint32_t hash = 0;
        for (uint32_t start = x; x < end; ++x) {
            hash = hash * FACTOR + join(readPixel(pixels, x), readPixel(second, x));
            if (x - start >= FEATURE_WIDTH) {
                const uint32_t leaving = x - FEATURE_WIDTH;
                hash -= join(readPixel(pixels, leaving), readPixel(second, leaving)) * LEAVING;
            }
            if (x - start < FEATURE_WIDTH - 1) {
                continue;
            }
            const Feature* feature = findFeature(finish(hash));
            if (feature != nullptr) {
                voteFor(p_source, p_surface, x - (FEATURE_WIDTH - 1), p_y, *feature);
            }
        }
        column = last + 1;
    }
}

void MoveFinder::voteFor(const SourcePicture& p_source, const Surface& p_surface, uint32_t p_x, uint32_t p_y,
                         const Feature& p_feature) {
    const int32_t dx = static_cast<int32_t>(p_feature.x - p_x);
    const int32_t dy = static_cast<int32_t>(p_feature.y - p_y);
    if (dx == 0 && dy == 0) {
        return;
    }
    for (const int64_t row : ROWS_AROUND) {
        const int64_t y = p_y + row;
        const int64_t featureY = p_feature.y + row;
        if (y >= 0 && featureY >= 0 && y < p_surface.getHeight() && featureY < p_surface.getHeight() &&
            !areEqual(p_source.pixels + static_cast<size_t>(y) * p_source.pitch + size_t{p_x} * 4,
                      p_surface.getPixel(p_feature.x, static_cast<uint32_t>(featureY)), FEATURE_WIDTH)) {
            return;
        }
    }
    Vote& vote = m_votes[(static_cast<uint32_t>(dx) * FACTOR ^ static_cast<uint32_t>(dy) * LEAVING) % VOTE_SLOTS];
    if (vote.count == 0) {
        vote = {dx, dy, 0};
    }
    // Chance hits wear each other down.
    vote.count += vote.dx == dx && vote.dy == dy ? 1 : -1;
}

bool MoveFinder::matches(const SourcePicture& p_source, const Surface& p_surface, const PixelRect& p_target,
                         const Vote& p_vote) const {
    const int64_t x = int64_t{p_target.x} + p_vote.dx;
    const int64_t y = int64_t{p_target.y} + p_vote.dy;
    if (x < 0 || y < 0 || x + p_target.width > p_surface.getWidth() || y + p_target.height > p_surface.getHeight()) {
        return false;
    }
    for (uint32_t row = 0; row < p_target.height; ++row) {
        if (!areEqual(p_source.pixels + (p_target.y + row) * p_source.pitch + size_t{p_target.x} * 4,
                      p_surface.getPixel(static_cast<uint32_t>(x), static_cast<uint32_t>(y) + row), p_target.width)) {
            return false;
        }
    }
    return true;
}

void MoveFinder::matchBlocks(const SourcePicture& p_source, const Surface& p_surface, const Vote& p_vote) {
    for (uint32_t row = m_firstRow; row <= m_lastRow; ++row) {
        for (uint32_t column = m_firstColumn; column <= m_lastColumn; ++column) {
            uint8_t& mark = m_marks.getData()[size_t{row} * p_surface.getHBlocks() + column];
            if (mark != 2) {
                mark = matches(p_source, p_surface, p_surface.getBlock(column, row), p_vote);
            }
        }
    }
}

PixelRect MoveFinder::joinBlocks(const Surface& p_surface, uint32_t p_column, uint32_t p_row,
                                 const BlockChange* p_changes, uint32_t& p_numOfChanges) {
    const uint32_t columns = p_surface.getHBlocks();
    uint8_t* marks = m_marks.getData() + size_t{p_row} * columns + p_column;
    uint32_t width = 1;
    while (p_column + width <= m_lastColumn && marks[width] == 1) {
        ++width;
    }
    uint32_t height = 1;
    bool fits = true;
    while (fits && p_row + height <= m_lastRow) {
        for (uint32_t i = 0; i < width && fits; ++i) {
            fits = marks[size_t{height} * columns + i] == 1;
        }
        height += fits;
    }
    p_numOfChanges = 0;
    for (uint32_t y = 0; y < height; ++y) {
        for (uint32_t x = 0; x < width; ++x) {
            marks[size_t{y} * columns + x] = 2;
            p_numOfChanges += p_changes[(size_t{p_row} + y) * columns + p_column + x].columns != 0;
        }
    }
    const PixelRect first = p_surface.getBlock(p_column, p_row);
    const PixelRect last = p_surface.getBlock(p_column + width - 1, p_row + height - 1);
    return {first.x, first.y, last.x + last.width - first.x, last.y + last.height - first.y};
}

void MoveFinder::grow(const SourcePicture& p_source, const Surface& p_surface, const Vote& p_vote,
                      PixelRect& p_rect) const {
    for (uint32_t i = 1; i < BLOCK_SIZE && p_rect.y > 0; ++i) {
        if (!matches(p_source, p_surface, {p_rect.x, p_rect.y - 1, p_rect.width, 1}, p_vote)) {
            break;
        }
        --p_rect.y;
        ++p_rect.height;
    }
    for (uint32_t i = 1; i < BLOCK_SIZE && p_rect.y + p_rect.height < p_surface.getHeight(); ++i) {
        if (!matches(p_source, p_surface, {p_rect.x, p_rect.y + p_rect.height, p_rect.width, 1}, p_vote)) {
            break;
        }
        ++p_rect.height;
    }
    for (uint32_t i = 1; i < BLOCK_SIZE && p_rect.x > 0; ++i) {
        if (!matches(p_source, p_surface, {p_rect.x - 1, p_rect.y, 1, p_rect.height}, p_vote)) {
            break;
        }
        --p_rect.x;
        ++p_rect.width;
    }
    for (uint32_t i = 1; i < BLOCK_SIZE && p_rect.x + p_rect.width < p_surface.getWidth(); ++i) {
        if (!matches(p_source, p_surface, {p_rect.x + p_rect.width, p_rect.y, 1, p_rect.height}, p_vote)) {
            break;
        }
        ++p_rect.width;
    }
}

} // namespace zyr::blocks
