#include "plugin_blocks/zyr_blocks_surface.h"

namespace zyr::blocks {

namespace {

// Vectors as the compiler makes them of what each processor has; all operations are exact, so the bits are equal.
typedef uint32_t Pixels __attribute__((vector_size(16), aligned(1), may_alias));
typedef uint8_t Channels __attribute__((vector_size(16), aligned(1), may_alias));
typedef uint64_t Halves __attribute__((vector_size(16), aligned(1), may_alias));

constexpr uint32_t VECTOR_PIXELS = 4;

Pixels load(const void* p_pixels) {
    return *static_cast<const Pixels*>(p_pixels);
}

bool isAnySet(Pixels p_vector) {
    const Halves halves = reinterpret_cast<Halves>(p_vector);
    return (halves[0] | halves[1]) != 0;
}

/// Not 0 in the pixels that differ by more than the bound.
template <bool EXACT> Pixels differ(Pixels p_new, Pixels p_old, Channels p_bound) {
    if constexpr (EXACT) {
        return (p_new ^ p_old) & COLOR_MASK;
    }
    const Channels a = reinterpret_cast<Channels>(p_new & COLOR_MASK);
    const Channels b = reinterpret_cast<Channels>(p_old & COLOR_MASK);
    const Channels distance = a > b ? a - b : b - a;
    return reinterpret_cast<Pixels>(distance > p_bound);
}

/// Bits of the four pixels, from `p_first` on, that are not 0.
uint32_t getBits(Pixels p_vector, uint32_t p_first) {
    const Pixels bits = (p_vector != 0) & Pixels{1, 2, 4, 8};
    return (bits[0] | bits[1] | bits[2] | bits[3]) << p_first;
}

template <bool EXACT> uint32_t findChangedColumns(const uint8_t* p_new, const uint32_t* p_old, Channels p_bound) {
    Pixels changed[BLOCK_SIZE / VECTOR_PIXELS];
    Pixels any = {};
    for (uint32_t i = 0; i < BLOCK_SIZE / VECTOR_PIXELS; ++i) {
        changed[i] = differ<EXACT>(load(p_new + i * 16), load(p_old + i * VECTOR_PIXELS), p_bound);
        any |= changed[i];
    }
    if (!isAnySet(any)) {
        return 0;
    }
    uint32_t columns = 0;
    for (uint32_t i = 0; i < BLOCK_SIZE / VECTOR_PIXELS; ++i) {
        columns |= getBits(changed[i], i * VECTOR_PIXELS);
    }
    return columns;
}

template <bool EXACT>
void findChangesOfRow(const uint8_t* p_new, const uint32_t* p_old, uint32_t p_width, Channels p_bound,
                      uint16_t p_rowBit, const uint8_t* p_wanted, BlockChange* p_changes) {
    for (uint32_t x = 0, block = 0; x < p_width; x += BLOCK_SIZE, ++block) {
        if (p_wanted != nullptr && p_wanted[block] == 0) {
            continue;
        }
        uint32_t columns = 0;
        if (p_width - x >= BLOCK_SIZE) {
            columns = findChangedColumns<EXACT>(p_new + x * 4, p_old + x, p_bound);
        } else {
            // Behind the last pixel of a row there may be nothing to read.
            uint32_t rest[BLOCK_SIZE] = {};
            uint32_t old[BLOCK_SIZE] = {};
            memcpy(rest, p_new + x * 4, size_t{p_width - x} * 4);
            memcpy(old, p_old + x, size_t{p_width - x} * 4);
            columns = findChangedColumns<EXACT>(reinterpret_cast<const uint8_t*>(rest), old, p_bound);
        }
        if (columns != 0) {
            p_changes[block].columns |= static_cast<uint16_t>(columns);
            p_changes[block].rows |= p_rowBit;
        }
    }
}

} // namespace

void findChanges(const uint8_t* p_new, const uint32_t* p_old, uint32_t p_width, uint8_t p_bound, uint16_t p_rowBit,
                 const uint8_t* p_wanted, BlockChange* p_changes) {
    Channels bound;
    memset(&bound, p_bound, sizeof(bound));
    if (p_bound == 0) {
        findChangesOfRow<true>(p_new, p_old, p_width, bound, p_rowBit, p_wanted, p_changes);
    } else {
        findChangesOfRow<false>(p_new, p_old, p_width, bound, p_rowBit, p_wanted, p_changes);
    }
}

bool areEqual(const uint8_t* p_new, const uint32_t* p_old, uint32_t p_count) {
    uint32_t i = 0;
    for (; i + VECTOR_PIXELS <= p_count; i += VECTOR_PIXELS) {
        if (isAnySet((load(p_new + size_t{i} * 4) ^ load(p_old + i)) & COLOR_MASK)) {
            return false;
        }
    }
    for (; i < p_count; ++i) {
        uint32_t pixel;
        memcpy(&pixel, p_new + size_t{i} * 4, 4);
        if (((pixel ^ p_old[i]) & COLOR_MASK) != 0) {
            return false;
        }
    }
    return true;
}

void takePixels(const uint8_t* p_source, uint32_t* p_target, uint32_t p_count) {
    uint32_t i = 0;
    for (; i + VECTOR_PIXELS <= p_count; i += VECTOR_PIXELS) {
        *reinterpret_cast<Pixels*>(p_target + i) = load(p_source + size_t{i} * 4) | ALPHA_MASK;
    }
    for (; i < p_count; ++i) {
        memcpy(p_target + i, p_source + size_t{i} * 4, 4);
        p_target[i] |= ALPHA_MASK;
    }
}

uint64_t hashBlock(const uint32_t* p_pixels, size_t p_pitch) {
    Pixels sums[BLOCK_SIZE / VECTOR_PIXELS] = {};
    for (uint32_t y = 0; y < BLOCK_SIZE; ++y) {
        for (uint32_t i = 0; i < BLOCK_SIZE / VECTOR_PIXELS; ++i) {
            sums[i] = (sums[i] << 5 | sums[i] >> 27) + (load(p_pixels + y * p_pitch + i * VECTOR_PIXELS) ^ 0x9E3779B1);
        }
    }
    uint64_t hash = 0;
    for (const Pixels& sum : sums) {
        for (uint32_t i = 0; i < VECTOR_PIXELS; ++i) {
            hash = (hash ^ sum[i]) * 0x9E3779B185EBCA87;
        }
    }
    return hash ^ (hash >> 29);
}

void Surface::move(const Move* p_moves, uint32_t p_count, Array<uint32_t>& p_copy) {
    if (p_count == 1) {
        moveInPlace(p_moves[0]);
        return;
    }
    size_t count = 0;
    for (uint32_t i = 0; i < p_count; ++i) {
        count += size_t{p_moves[i].target.width} * p_moves[i].target.height;
    }
    p_copy.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, 0);
    p_copy.resize(count);
    uint32_t* copy = p_copy.getData();
    for (uint32_t i = 0; i < p_count; ++i) {
        const PixelRect& rect = p_moves[i].target;
        for (uint32_t y = 0; y < rect.height; ++y, copy += rect.width) {
            memcpy(copy, getPixel(rect.x + p_moves[i].dx, rect.y + y + p_moves[i].dy), size_t{rect.width} * 4);
        }
    }
    copy = p_copy.getData();
    for (uint32_t i = 0; i < p_count; ++i) {
        const PixelRect& rect = p_moves[i].target;
        for (uint32_t y = 0; y < rect.height; ++y, copy += rect.width) {
            memcpy(getPixel(rect.x, rect.y + y), copy, size_t{rect.width} * 4);
        }
    }
}

void Surface::moveInPlace(const Move& p_move) {
    const PixelRect& rect = p_move.target;
    // Rows in the order in which none is overwritten before it was read.
    for (uint32_t i = 0; i < rect.height; ++i) {
        const uint32_t y = rect.y + (p_move.dy >= 0 ? i : rect.height - 1 - i);
        memmove(getPixel(rect.x, y), getPixel(rect.x + p_move.dx, y + p_move.dy), size_t{rect.width} * 4);
    }
}

} // namespace zyr::blocks
