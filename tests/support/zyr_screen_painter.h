/// Paints what screens show: text, windows, gradients, photographs and noise. In whole numbers only, so that the same
/// calls give the same pixels on every platform.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zyr_test {

/// A generator of numbers that gives the same ones everywhere.
class Dice {
public:
    explicit Dice(uint64_t p_seed) : m_state(p_seed * 2 + 1) {}
    uint32_t roll() {
        m_state = m_state * 6364136223846793005u + 1442695040888963407u;
        const uint64_t mixed = (m_state ^ (m_state >> 29)) * 0xBF58476D1CE4E5B9u;
        return static_cast<uint32_t>(mixed >> 32);
    }
    /// From 0 to one below the limit.
    uint32_t below(uint32_t p_limit) { return static_cast<uint32_t>(uint64_t{roll()} * p_limit >> 32); }

private:
    uint64_t m_state;
};

struct Area {
    int x;
    int y;
    int width;
    int height;
};

/// Pixels are 0xAARRGGBB, that is B, G, R, A in memory. Drawing is cut at the edges.
class ScreenPainter {
public:
    ScreenPainter(uint32_t p_width, uint32_t p_height, uint32_t p_color = 0xFF000000);

    uint32_t getWidth() const { return m_width; }
    uint32_t getHeight() const { return m_height; }
    const std::vector<uint32_t>& getPixels() const { return m_pixels; }
    const uint8_t* getBytes() const { return reinterpret_cast<const uint8_t*>(m_pixels.data()); }

    void set(int p_x, int p_y, uint32_t p_color);
    uint32_t get(int p_x, int p_y) const { return m_pixels[size_t(p_y) * m_width + size_t(p_x)]; }
    void fill(const Area& p_area, uint32_t p_color);
    /// Letters of 8x16 pixels with hard edges, as terminals have them.
    void writeTerminalText(int p_x, int p_y, const std::string& p_text, uint32_t p_color, uint32_t p_background);
    /// Letters with soft edges and widths of their own, as documents have them.
    void writeSmoothText(int p_x, int p_y, const std::string& p_text, uint32_t p_color);
    void drawGradient(const Area& p_area, uint32_t p_from, uint32_t p_to, bool p_isVertical);
    /// Something that varies as photographs do.
    void drawPhotograph(const Area& p_area, uint32_t p_seed);
    void drawNoise(const Area& p_area, uint32_t p_seed, uint32_t p_numOfColors);
    /// A frame with a title and a button or two.
    void drawWindow(const Area& p_area, const std::string& p_title, uint32_t p_color);
    /// Copies an area of this picture to another place in it.
    void move(const Area& p_area, int p_toX, int p_toY);
    void copy(const ScreenPainter& p_from, const Area& p_area, int p_toX, int p_toY);

private:
    uint32_t m_width;
    uint32_t m_height;
    std::vector<uint32_t> m_pixels;
};

/// A line of words, the same for the same number.
std::string makeLine(uint32_t p_number, uint32_t p_length);

/// A screen with windows, text and pictures; ever the same for a number.
ScreenPainter paintDesktop(uint32_t p_width, uint32_t p_height, uint32_t p_number);

/// Something that happens on a screen: typing, scrolling, a dragged window, a picture.
void changeScreen(ScreenPainter& p_screen, Dice& p_dice);

} // namespace zyr_test
