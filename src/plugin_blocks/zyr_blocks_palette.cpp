#include "plugin_blocks/zyr_blocks_palette.h"

#include <cstring>

namespace zyr::blocks {

namespace {

uint32_t spread(uint32_t p_color) {
    return p_color * 0x9E3779B1u;
}

uint64_t getSignature(const Palette& p_palette) {
    uint64_t signature = 0;
    for (uint32_t i = 0; i < p_palette.count; ++i) {
        signature |= uint64_t{1} << (spread(p_palette.colors[i]) >> 26);
    }
    return signature;
}

} // namespace

bool ColorCounter::countTwo(const uint32_t* p_pixels, uint32_t p_numOfPixels) {
    const uint32_t first = p_pixels[0];
    uint32_t i = 1;
    while (i < p_numOfPixels && p_pixels[i] == first) {
        ++i;
    }
    if (i == p_numOfPixels) {
        m_palette.count = 1;
        m_palette.colors[0] = first;
        return true;
    }
    const uint32_t second = p_pixels[i];
    const uint8_t firstPlace = first > second;
    uint32_t strangers = 0;
    for (uint32_t j = 0; j < p_numOfPixels; ++j) {
        const uint32_t isSecond = p_pixels[j] == second;
        strangers |= static_cast<uint32_t>(p_pixels[j] != first) & (isSecond ^ 1);
        m_indices[j] = static_cast<uint8_t>(firstPlace ^ isSecond);
    }
    if (strangers != 0) {
        return false;
    }
    m_palette.count = 2;
    m_palette.colors[firstPlace] = first;
    m_palette.colors[firstPlace ^ 1] = second;
    return true;
}

bool ColorCounter::collect(const uint32_t* p_pixels, uint32_t p_numOfPixels, uint32_t p_most) {
    m_round += 1u << 24;
    if (m_round == 0) {
        memset(m_keys, 0, sizeof(m_keys));
        m_round = 1u << 24;
    }
    uint32_t count = 0;
    uint32_t last = ~p_pixels[0];
    uint8_t place = 0;
    for (uint32_t i = 0; i < p_numOfPixels; ++i) {
        const uint32_t color = p_pixels[i];
        if (color != last) {
            last = color;
            const uint32_t key = color | m_round;
            uint32_t slot = spread(color) >> 22;
            while (m_keys[slot] != key && m_keys[slot] >= m_round) {
                slot = (slot + 1) % SLOTS;
            }
            if (m_keys[slot] != key) {
                if (count == p_most) {
                    return false;
                }
                m_keys[slot] = key;
                m_places[slot] = static_cast<uint8_t>(count);
                m_palette.colors[count++] = color;
            }
            place = m_places[slot];
        }
        m_indices[i] = place;
    }
    m_palette.count = count;
    return true;
}

void ColorCounter::sort() {
    // The place of each colour travels below it.
    uint64_t order[256];
    for (uint32_t i = 0; i < m_palette.count; ++i) {
        const uint64_t item = uint64_t{m_palette.colors[i]} << 8 | i;
        uint32_t j = i;
        for (; j > 0 && order[j - 1] > item; --j) {
            order[j] = order[j - 1];
        }
        order[j] = item;
    }
    uint8_t places[256];
    for (uint32_t i = 0; i < m_palette.count; ++i) {
        places[order[i] & 0xFF] = static_cast<uint8_t>(i);
        m_palette.colors[i] = static_cast<uint32_t>(order[i] >> 8);
    }
    for (uint8_t& index : m_indices) {
        index = places[index];
    }
}

bool ColorCounter::count(const uint32_t* p_pixels, uint32_t p_numOfPixels, uint32_t p_most) {
    if (countTwo(p_pixels, p_numOfPixels)) {
        return true;
    }
    if (!collect(p_pixels, p_numOfPixels, p_most)) {
        return false;
    }
    memset(m_indices + p_numOfPixels, 0, BLOCK_PIXELS - p_numOfPixels);
    sort();
    return true;
}

void PaletteKeeper::init(BlockKind p_kind) {
    m_capacity = getPaletteCapacity(p_kind);
    m_added = 0;
    m_colors.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, 0);
    m_colors.resize(size_t{m_capacity} * KEPT_PALETTES);
}

void PaletteKeeper::add(const Palette& p_palette) {
    const uint32_t place = m_added++ % KEPT_PALETTES;
    m_signatures[place] = getSignature(p_palette);
    m_counts[place] = p_palette.count;
    memcpy(m_colors.getData() + size_t{place} * m_capacity, p_palette.colors, p_palette.count * sizeof(uint32_t));
}

uint32_t PaletteKeeper::find(const Palette& p_palette, uint8_t* p_places) const {
    const uint64_t signature = getSignature(p_palette);
    for (uint32_t age = 1; age <= KEPT_PALETTES && age <= m_added; ++age) {
        const uint32_t place = (m_added - age) % KEPT_PALETTES;
        if ((signature & ~m_signatures[place]) != 0 || m_counts[place] < p_palette.count) {
            continue;
        }
        const uint32_t* colors = m_colors.getData() + size_t{place} * m_capacity;
        uint32_t found = 0;
        for (uint32_t i = 0; i < m_counts[place] && found < p_palette.count; ++i) {
            if (colors[i] == p_palette.colors[found]) {
                p_places[found++] = static_cast<uint8_t>(i);
            }
        }
        if (found == p_palette.count) {
            return age;
        }
    }
    return 0;
}

uint8_t* packIndices(const uint8_t* p_indices, uint32_t p_count, uint32_t p_bits, uint8_t* p_target) {
    const uint32_t perByte = 8 / p_bits;
    uint32_t i = 0;
    for (; i + perByte <= p_count; i += perByte) {
        uint32_t value = 0;
        for (uint32_t j = perByte; j > 0; --j) {
            value = value << p_bits | p_indices[i + j - 1];
        }
        *p_target++ = static_cast<uint8_t>(value);
    }
    if (i < p_count) {
        uint32_t value = 0;
        for (uint32_t j = p_count - i; j > 0; --j) {
            value = value << p_bits | p_indices[i + j - 1];
        }
        *p_target++ = static_cast<uint8_t>(value);
    }
    return p_target;
}

} // namespace zyr::blocks
