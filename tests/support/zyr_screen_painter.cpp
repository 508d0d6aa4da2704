#include "support/zyr_screen_painter.h"

#include <algorithm>
#include <cstring>

namespace zyr_test {

namespace {

constexpr int GLYPH_WIDTH = 5;
constexpr int GLYPH_HEIGHT = 7;

/// Seven rows of five dots, the first one in the highest bits.
struct Glyph {
    char letter;
    uint64_t dots;
};

constexpr Glyph GLYPHS[] = {
    {'a', 0x000E0BE2F}, {'b', 0x421E8C63E}, {'c', 0x000E8422E}, {'d', 0x042F8C62F}, {'e', 0x000E8FE0E},
    {'f', 0x1928E2108}, {'g', 0x01F18BC2E}, {'h', 0x421E8C631}, {'i', 0x100C2108E}, {'j', 0x080610A4C},
    {'k', 0x4212A6292}, {'l', 0x30842108E}, {'m', 0x001AAD631}, {'n', 0x0016CC631}, {'o', 0x000E8C62E},
    {'p', 0x03D18FA10}, {'q', 0x01F18BC21}, {'r', 0x0016CC210}, {'s', 0x000F8383E}, {'t', 0x211C42126},
    {'u', 0x00118C66D}, {'v', 0x00118C544}, {'w', 0x00118D6AA}, {'x', 0x001151151}, {'y', 0x02318BC2E},
    {'z', 0x001F1111F}, {'A', 0x3A31FC631}, {'B', 0x7A31F463E}, {'C', 0x3A308422E}, {'D', 0x7A318C63E},
    {'E', 0x7E10F421F}, {'F', 0x7E10F4210}, {'G', 0x3A30BC62F}, {'H', 0x4631FC631}, {'I', 0x38842108E},
    {'L', 0x42108421F}, {'M', 0x4775AC631}, {'N', 0x47359C631}, {'O', 0x3A318C62E}, {'P', 0x7A31F4210},
    {'R', 0x7A31F5251}, {'S', 0x3E107043E}, {'T', 0x7C8421084}, {'U', 0x46318C62E}, {'W', 0x4631AD771},
    {'0', 0x3A33AE62E}, {'1', 0x11842108E}, {'2', 0x3A213221F}, {'3', 0x3A213062E}, {'4', 0x08CA97C42},
    {'5', 0x7E1E0862E}, {'6', 0x3A10F462E}, {'7', 0x7C2222108}, {'8', 0x3A317462E}, {'9', 0x3A317842E},
    {'.', 0x00000018C}, {',', 0x000003188}, {'-', 0x0000F8000}, {'/', 0x044222110}, {'(', 0x088842082},
    {')', 0x208210888}, {':', 0x018C03180}, {'_', 0x00000001F}, {'=', 0x001F07C00}, {';', 0x018C03188},
    {'*', 0x009575480},
};

uint64_t findDots(char p_letter) {
    for (const Glyph& glyph : GLYPHS) {
        if (glyph.letter == p_letter) {
            return glyph.dots;
        }
    }
    return 0;
}

bool hasDot(uint64_t p_dots, int p_x, int p_y) {
    return p_x >= 0 && p_y >= 0 && p_x < GLYPH_WIDTH && p_y < GLYPH_HEIGHT &&
           (p_dots >> ((GLYPH_HEIGHT - 1 - p_y) * GLYPH_WIDTH + GLYPH_WIDTH - 1 - p_x) & 1) != 0;
}

/// Of both colours, in parts of 64.
uint32_t blend(uint32_t p_from, uint32_t p_to, uint32_t p_part) {
    uint32_t color = 0xFF000000;
    for (int shift = 0; shift < 24; shift += 8) {
        const uint32_t from = p_from >> shift & 255;
        const uint32_t to = p_to >> shift & 255;
        color |= (from * (64 - p_part) + to * p_part) / 64 << shift;
    }
    return color;
}

uint32_t scatter(uint32_t p_x, uint32_t p_y, uint32_t p_seed) {
    uint32_t value = p_x * 0x9E3779B1u ^ p_y * 0x85EBCA77u ^ p_seed * 0xC2B2AE3Du;
    value = (value ^ value >> 15) * 0x2C1B3C6Du;
    value = (value ^ value >> 12) * 0x297A2D39u;
    return value ^ value >> 15;
}

/// Values from 0 to 255 that change smoothly over `p_cell` pixels.
int wave(int p_x, int p_y, int p_cell, uint32_t p_seed) {
    const int column = p_x / p_cell;
    const int row = p_y / p_cell;
    const int right = p_x % p_cell;
    const int down = p_y % p_cell;
    const auto corner = [&](int p_dx, int p_dy) {
        return int(scatter(uint32_t(column + p_dx), uint32_t(row + p_dy), p_seed) & 255);
    };
    const int top = corner(0, 0) * (p_cell - right) + corner(1, 0) * right;
    const int bottom = corner(0, 1) * (p_cell - right) + corner(1, 1) * right;
    return (top * (p_cell - down) + bottom * down) / (p_cell * p_cell);
}

} // namespace

ScreenPainter::ScreenPainter(uint32_t p_width, uint32_t p_height, uint32_t p_color)
    : m_width(p_width), m_height(p_height), m_pixels(size_t(p_width) * p_height, p_color) {}

void ScreenPainter::set(int p_x, int p_y, uint32_t p_color) {
    if (p_x >= 0 && p_y >= 0 && p_x < int(m_width) && p_y < int(m_height)) {
        m_pixels[size_t(p_y) * m_width + size_t(p_x)] = p_color;
    }
}

void ScreenPainter::fill(const Area& p_area, uint32_t p_color) {
    for (int y = std::max(p_area.y, 0); y < std::min(p_area.y + p_area.height, int(m_height)); y++) {
        for (int x = std::max(p_area.x, 0); x < std::min(p_area.x + p_area.width, int(m_width)); x++) {
            m_pixels[size_t(y) * m_width + size_t(x)] = p_color;
        }
    }
}

void ScreenPainter::writeTerminalText(int p_x, int p_y, const std::string& p_text, uint32_t p_color,
                                      uint32_t p_background) {
    for (const char letter : p_text) {
        const uint64_t dots = findDots(letter);
        for (int y = 0; y < 16; y++) {
            for (int x = 0; x < 8; x++) {
                // Strokes are two rows high and one column wide, with a column added to those of bold look.
                const bool dot = y >= 1 && hasDot(dots, x - 1, (y - 1) / 2);
                set(p_x + x, p_y + y, dot ? p_color : p_background);
            }
        }
        p_x += 8;
    }
}

void ScreenPainter::writeSmoothText(int p_x, int p_y, const std::string& p_text, uint32_t p_color) {
    // In 64ths of a pixel; dots are 1.6 pixels apart.
    constexpr int DOT = 102;
    int left = p_x * 64;
    for (const char letter : p_text) {
        const uint64_t dots = findDots(letter);
        const int first = left / 64;
        for (int y = 0; y < 13 && dots != 0; y++) {
            for (int x = 0; x < 10; x++) {
                uint32_t covered = 0;
                for (int sample = 0; sample < 64; sample++) {
                    const int sampleX = (first + x) * 64 + sample % 8 * 8 + 4 - left;
                    const int sampleY = y * 64 + sample / 8 * 8 + 4;
                    covered += sampleX >= 0 && hasDot(dots, sampleX / DOT, sampleY / DOT);
                }
                const int targetX = first + x;
                const int targetY = p_y + y;
                if (covered != 0 && targetX >= 0 && targetY >= 0 && targetX < int(m_width) && targetY < int(m_height)) {
                    set(targetX, targetY, blend(get(targetX, targetY), p_color, covered));
                }
            }
        }
        left += (letter == 'i' || letter == 'l' || letter == ' ' || letter == '.' ? 4 : 6) * DOT;
    }
}

void ScreenPainter::drawGradient(const Area& p_area, uint32_t p_from, uint32_t p_to, bool p_isVertical) {
    for (int y = 0; y < p_area.height; y++) {
        for (int x = 0; x < p_area.width; x++) {
            const int part =
                p_isVertical ? y * 255 / std::max(p_area.height - 1, 1) : x * 255 / std::max(p_area.width - 1, 1);
            uint32_t color = 0xFF000000;
            for (int shift = 0; shift < 24; shift += 8) {
                const int from = int(p_from >> shift & 255);
                const int to = int(p_to >> shift & 255);
                color |= uint32_t((from * (255 - part) + to * part) / 255) << shift;
            }
            set(p_area.x + x, p_area.y + y, color);
        }
    }
}

void ScreenPainter::drawPhotograph(const Area& p_area, uint32_t p_seed) {
    for (int y = 0; y < p_area.height; y++) {
        for (int x = 0; x < p_area.width; x++) {
            // Light and dark with an edge here and there, slow changes of colour, and the noise of a sensor.
            int light = wave(x, y, 160, p_seed) * 5 + wave(x, y, 41, p_seed + 1) * 3 + wave(x, y, 11, p_seed + 2);
            light /= 9;
            if (wave(x, y, 97, p_seed + 3) > 140) {
                light = light / 2 + 20;
            }
            const int warm = wave(x, y, 211, p_seed + 4) - 128;
            const uint32_t grain = scatter(uint32_t(x), uint32_t(y), p_seed + 5);
            const auto noise = [&](int p_shift) {
                return int(grain >> p_shift & 3) + int(grain >> (p_shift + 2) & 3) - 3;
            };
            const auto cut = [](int p_value) { return uint32_t(std::clamp(p_value, 0, 255)); };
            set(p_area.x + x, p_area.y + y,
                0xFF000000 | cut(light + warm / 3 + noise(0)) << 16 | cut(light + noise(8)) << 8 |
                    cut(light - warm / 4 + noise(16)));
        }
    }
}

void ScreenPainter::drawNoise(const Area& p_area, uint32_t p_seed, uint32_t p_numOfColors) {
    for (int y = 0; y < p_area.height; y++) {
        for (int x = 0; x < p_area.width; x++) {
            const uint32_t number = scatter(uint32_t(x), uint32_t(y), p_seed) % p_numOfColors;
            set(p_area.x + x, p_area.y + y, 0xFF000000 | scatter(number, 7, p_seed));
        }
    }
}

void ScreenPainter::drawWindow(const Area& p_area, const std::string& p_title, uint32_t p_color) {
    fill(p_area, 0xFF303030);
    drawGradient({p_area.x + 1, p_area.y + 1, p_area.width - 2, 22}, 0xFF5080C0, 0xFF204070, true);
    writeSmoothText(p_area.x + 8, p_area.y + 6, p_title, 0xFFFFFFFF);
    fill({p_area.x + p_area.width - 20, p_area.y + 5, 14, 14}, 0xFFC04040);
    fill({p_area.x + 1, p_area.y + 23, p_area.width - 2, p_area.height - 24}, p_color);
}

void ScreenPainter::move(const Area& p_area, int p_toX, int p_toY) {
    const ScreenPainter old(*this);
    copy(old, p_area, p_toX, p_toY);
}

void ScreenPainter::copy(const ScreenPainter& p_from, const Area& p_area, int p_toX, int p_toY) {
    for (int y = 0; y < p_area.height; y++) {
        for (int x = 0; x < p_area.width; x++) {
            const int fromX = p_area.x + x;
            const int fromY = p_area.y + y;
            if (fromX >= 0 && fromY >= 0 && fromX < int(p_from.m_width) && fromY < int(p_from.m_height)) {
                set(p_toX + x, p_toY + y, p_from.get(fromX, fromY));
            }
        }
    }
}

std::string makeLine(uint32_t p_number, uint32_t p_length) {
    static const char* const WORDS[] = {"the",    "packet", "holds", "a",      "picture", "of",    "blocks", "and",
                                        "each",   "window", "moves", "when",   "text",    "is",    "typed",  "in",
                                        "return", "frame",  "size",  "(width", "height)", "=",     "0;",     "if",
                                        "const",  "Array",  "line",  "12",     "4096",    "Color", "/tmp/",  "error:"};
    Dice dice(p_number);
    std::string line(dice.below(4) * 4, ' ');
    while (line.size() < p_length) {
        line += WORDS[dice.below(32)];
        line += ' ';
    }
    line.resize(p_length);
    return line;
}

ScreenPainter paintDesktop(uint32_t p_width, uint32_t p_height, uint32_t p_number) {
    Dice dice(p_number);
    ScreenPainter screen(p_width, p_height);
    screen.drawGradient({0, 0, int(p_width), int(p_height)}, 0xFF204060, 0xFF80A0C0, dice.below(2) != 0);
    for (uint32_t i = 0; i < 4; i++) {
        const Area window = {int(dice.below(p_width)) - 20, int(dice.below(p_height)) - 20,
                             60 + int(dice.below(p_width / 2 + 1)), 50 + int(dice.below(p_height / 2 + 1))};
        screen.drawWindow(window, makeLine(p_number + i, 16), i % 2 != 0 ? 0xFFFFFFFF : 0xFF101018);
        const Area inside = {window.x + 4, window.y + 28, window.width - 8, window.height - 32};
        const uint32_t contents = dice.below(5);
        if (contents == 0) {
            screen.drawPhotograph(inside, dice.roll());
        } else if (contents == 1) {
            const uint32_t colors = 2 + dice.below(400);
            screen.drawNoise(inside, dice.roll(), colors);
        } else {
            const uint32_t letters = uint32_t(std::max(inside.width / 8, 1));
            for (int y = inside.y; y + 16 <= inside.y + inside.height; y += 16) {
                if (contents == 2) {
                    screen.writeSmoothText(inside.x, y, makeLine(dice.roll(), letters),
                                           i % 2 != 0 ? 0xFF000000 : 0xFFE0E0E0);
                } else {
                    screen.writeTerminalText(inside.x, y, makeLine(dice.roll(), letters), 0xFF40D040, 0xFF101018);
                }
            }
        }
    }
    return screen;
}

void changeScreen(ScreenPainter& p_screen, Dice& p_dice) {
    const int width = int(p_screen.getWidth());
    const int height = int(p_screen.getHeight());
    const int x = int(p_dice.below(uint32_t(width)));
    const int y = int(p_dice.below(uint32_t(height)));
    // Each roll is a statement of its own: the order of a call's arguments is the compiler's choice.
    switch (p_dice.below(6)) {
    case 0: {
        const uint32_t length = 1 + p_dice.below(6);
        p_screen.writeTerminalText(x, y, makeLine(p_dice.roll(), length), 0xFF40D040, 0xFF101018);
        break;
    }
    case 1:
        p_screen.move({0, 16, width, height - 16}, 0, 0);
        p_screen.writeTerminalText(0, height - 16, makeLine(p_dice.roll(), uint32_t(width) / 8), 0xFF40D040,
                                   0xFF101018);
        break;
    case 2: {
        const int targetY = int(p_dice.below(uint32_t(height)));
        const int targetX = int(p_dice.below(uint32_t(width)));
        p_screen.move({x, y, width / 2, height / 2}, targetX, targetY);
        break;
    }
    case 3:
        p_screen.drawPhotograph({x, y, width / 3, height / 3}, p_dice.roll());
        break;
    case 4:
        p_screen.fill({x, y, 1 + width / 5, 1 + height / 7}, 0xFF000000 | p_dice.roll());
        break;
    default: {
        const uint32_t colors = 1 + p_dice.below(300);
        p_screen.drawNoise({x, y, 1 + width / 4, 1 + height / 4}, p_dice.roll(), colors);
        break;
    }
    }
}

} // namespace zyr_test
