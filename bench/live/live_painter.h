/// Paints the scenes of the live screen's benchmark with requests of the X protocol, as programs do.
#pragma once

#include "live_cells.h"

#include <xcb/xcb.h>

#include <array>
#include <string>
#include <vector>

namespace zyr::bench {

/// Scenes go by the number of their picture alone, so that they can be painted again. One thread.
class LivePainter {
public:
    /// Opens the display of the environment and covers it with a desktop. `p_scene`: typing, window, scroll-copy,
    /// scroll-redraw, redraw, or video. Ends the program when that cannot be.
    explicit LivePainter(const std::string& p_scene);

    /// Paints one picture; the first is 0. Its stamp comes last.
    void paint(uint32_t p_frame);

    /// Waits until all is on the screen.
    void finish();

    /// Shows how often the button was pressed.
    void paintClicks(uint32_t p_count);

    /// True when the button was pressed since the last call.
    bool takeClick();

    /// The screen's pixels, blue first.
    std::vector<uint8_t> grab();

    int getDescriptor() const { return xcb_get_file_descriptor(m_connection); }

private:
    void makeDesktop();
    xcb_gcontext_t makePen(uint32_t p_colour, uint32_t p_background);
    void fill(xcb_drawable_t p_where, uint32_t p_colour, int p_x, int p_y, int p_width, int p_height);
    void write(xcb_drawable_t p_where, xcb_gcontext_t p_pen, int p_x, int p_y, const std::string& p_text);
    void paintCells(uint64_t p_bits, int p_count, int p_row);
    void type(uint32_t p_frame);
    void moveWindow(uint32_t p_frame);
    void scroll(uint32_t p_frame, bool p_copies);
    void redraw(uint32_t p_frame);
    void playVideo(uint32_t p_frame);

    std::string m_scene;
    xcb_connection_t* m_connection;
    xcb_window_t m_window = XCB_NONE;
    xcb_window_t m_child = XCB_NONE;
    xcb_font_t m_font = XCB_NONE;
    xcb_gcontext_t m_pen = XCB_NONE;  ///< Black on white.
    xcb_gcontext_t m_grey = XCB_NONE; ///< Light grey on dark blue.
    xcb_gcontext_t m_filler = XCB_NONE;
    std::vector<uint8_t> m_texture;
    std::vector<uint8_t> m_video;
};

} // namespace zyr::bench
