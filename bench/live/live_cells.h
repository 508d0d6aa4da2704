/// What painter and viewers of the live screen's benchmark agree on: a strip of black and white cells at the top left
/// of the screen, which survives any codec, tells when a picture was painted and which one it is.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <optional>
#include <string>

namespace zyr::bench {

constexpr int CELL = 16;
constexpr int TIME_BITS = 32;
constexpr int FRAME_BITS = 12;
constexpr int CHECK_BITS = 4;
constexpr int STAMP_CELLS = TIME_BITS + FRAME_BITS + CHECK_BITS;
constexpr int CLICK_CELLS = 8; ///< In the second row: how often the painter was clicked at.
constexpr int STRIP_HEIGHT = 2 * CELL;
constexpr int WIDTH = 1280;
constexpr int HEIGHT = 720;

/// Microseconds of the clock on the wall, which a browser's page knows too.
inline uint64_t getWallTime() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return uint64_t(now.tv_sec) * 1'000'000 + uint64_t(now.tv_nsec) / 1000;
}

struct Stamp {
    uint32_t m_time = 0; ///< In units of 100 microseconds.
    uint32_t m_frame = 0;

    uint64_t toBits() const {
        const uint64_t bits = uint64_t{m_time} << FRAME_BITS | m_frame;
        uint64_t check = 5;
        for (uint64_t rest = bits; rest != 0; rest >>= CHECK_BITS) {
            check = (check * 3 + rest) & 15;
        }
        return bits << CHECK_BITS | check;
    }

    static Stamp now(uint32_t p_frame) { return Stamp{uint32_t(getWallTime() / 100), p_frame % (1u << FRAME_BITS)}; }

    /// How long ago, in milliseconds.
    double getAge(uint64_t p_wallTime) const { return double(int32_t(uint32_t(p_wallTime / 100) - m_time)) / 10.0; }
};

/// Reads cells back, the highest bit first. `p_pixels` has four bytes a pixel.
inline uint64_t readCells(const uint8_t* p_pixels, size_t p_pitch, int p_row, int p_count) {
    uint64_t bits = 0;
    for (int i = 0; i < p_count; i++) {
        const uint8_t* const pixel =
            p_pixels + size_t(p_row * CELL + CELL / 2) * p_pitch + size_t(i * CELL + CELL / 2) * 4;
        bits = bits << 1 | (pixel[1] >= 128 ? 1 : 0);
    }
    return bits;
}

/// Nothing where no whole stamp is seen.
inline std::optional<Stamp> readStamp(const uint8_t* p_pixels, size_t p_pitch) {
    const uint64_t bits = readCells(p_pixels, p_pitch, 0, STAMP_CELLS);
    const uint64_t content = bits >> CHECK_BITS;
    const Stamp stamp{uint32_t(content >> FRAME_BITS), uint32_t(content & ((1u << FRAME_BITS) - 1))};
    return content != 0 && stamp.toBits() == bits ? std::optional(stamp) : std::nullopt;
}

/// Tells pictures apart, by their colours only. `p_redFirst`: red comes first in memory, not blue.
inline uint64_t hashPicture(const uint8_t* p_pixels, size_t p_pitch, bool p_redFirst) {
    uint64_t hash = 0x9E3779B97F4A7C15;
    for (int y = 0; y < HEIGHT; y++) {
        for (int x = 0; x < WIDTH; x++) {
            uint32_t pixel = 0;
            memcpy(&pixel, p_pixels + size_t(y) * p_pitch + size_t(x) * 4, 4);
            pixel = p_redFirst ? (pixel & 0xFF) << 16 | (pixel & 0xFF00) | (pixel >> 16 & 0xFF) : pixel & 0xFFFFFF;
            hash = (hash ^ pixel) * 0x100000001B3;
        }
        hash ^= hash >> 29;
    }
    return hash;
}

/// Keeps a picture for a later comparison, with blue first.
inline void keepPicture(const std::string& p_path, const uint8_t* p_pixels, size_t p_pitch, bool p_redFirst) {
    FILE* const file = fopen(p_path.c_str(), "wb");
    if (file == nullptr) {
        return;
    }
    for (int y = 0; y < HEIGHT; y++) {
        uint8_t row[WIDTH * 4];
        memcpy(row, p_pixels + size_t(y) * p_pitch, sizeof(row));
        for (int x = 0; p_redFirst && x < WIDTH; x++) {
            const uint8_t red = row[x * 4];
            row[x * 4] = row[x * 4 + 2];
            row[x * 4 + 2] = red;
        }
        fwrite(row, 1, sizeof(row), file);
    }
    fclose(file);
}

} // namespace zyr::bench
