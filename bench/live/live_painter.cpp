#include "live_painter.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace zyr::bench {

namespace {

constexpr int TOP = 48; ///< Scenes lie below the strips.
constexpr int LINE = 15;
constexpr int ASCENT = 11;
constexpr int LETTER = 6;
constexpr int LETTERS_A_LINE = (WIDTH - 16) / LETTER;
constexpr int VIDEO_WIDTH = 640;
constexpr int VIDEO_HEIGHT = 360;
constexpr int TEXTURE = 1024;

uint32_t mix(uint32_t p_value) {
    p_value = (p_value ^ p_value >> 16) * 0x7FEB352Du;
    p_value = (p_value ^ p_value >> 15) * 0x846CA68Bu;
    return p_value ^ p_value >> 16;
}

/// A line of words, as a log or a source has it: indented, and not full.
std::string makeLine(uint32_t p_number) {
    static constexpr const char* WORDS[] = {"const",  "window", "return", "picture", "the", "buffer",
                                            "0x7f3a", "size",   "update", "=",       "+",   "if",
                                            "frame",  "value",  "screen", "for"};
    std::string line(size_t(mix(p_number) % 5 * 4), ' ');
    const size_t length = 20 + mix(p_number + 7) % (LETTERS_A_LINE - 60);
    for (uint32_t i = 0; line.size() < length; i++) {
        line += std::string(WORDS[mix(p_number * 31 + i) % 16]) + " ";
    }
    return line;
}

std::string padLine(std::string p_line) {
    p_line.resize(size_t(LETTERS_A_LINE), ' ');
    return p_line;
}

/// Clouds in three colours that repeat at the edges.
std::vector<uint8_t> makeTexture() {
    std::vector<float> sum(size_t(TEXTURE) * TEXTURE * 3);
    for (int octave = 0; octave < 6; octave++) {
        const int step = 128 >> octave;
        const auto corner = [&](int p_x, int p_y, int p_plane) {
            const int count = TEXTURE / step;
            return float(mix(uint32_t(((p_y % count) * count + p_x % count) * 3 + p_plane + octave * 7919)) & 1023) /
                   1023.0F;
        };
        for (int y = 0; y < TEXTURE; y++) {
            for (int x = 0; x < TEXTURE; x++) {
                const float across = float(x % step) / float(step);
                const float down = float(y % step) / float(step);
                for (int plane = 0; plane < 3; plane++) {
                    const float upper =
                        std::lerp(corner(x / step, y / step, plane), corner(x / step + 1, y / step, plane), across);
                    const float lower = std::lerp(corner(x / step, y / step + 1, plane),
                                                  corner(x / step + 1, y / step + 1, plane), across);
                    sum[size_t(y * TEXTURE + x) * 3 + size_t(plane)] +=
                        std::lerp(upper, lower, down) / float(1 << octave);
                }
            }
        }
    }
    std::vector<uint8_t> texture(sum.size());
    std::transform(sum.begin(), sum.end(), texture.begin(),
                   [](float p_value) { return uint8_t(std::min(255.0F, p_value * 128)); });
    return texture;
}

} // namespace

LivePainter::LivePainter(const std::string& p_scene) : m_scene(p_scene), m_connection(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(m_connection) != 0) {
        fputs("live_painter: no display\n", stderr);
        exit(EXIT_FAILURE);
    }
    xcb_prefetch_maximum_request_length(m_connection);
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    m_window = xcb_generate_id(m_connection);
    // The pointer would lie over the picture, where servers draw it into it.
    const xcb_pixmap_t nothing = xcb_generate_id(m_connection);
    xcb_create_pixmap(m_connection, 1, nothing, screen->root, 1, 1);
    const xcb_gcontext_t eraser = xcb_generate_id(m_connection);
    const uint32_t zero = 0;
    xcb_create_gc(m_connection, eraser, nothing, XCB_GC_FOREGROUND, &zero);
    const xcb_rectangle_t dot{0, 0, 1, 1};
    xcb_poly_fill_rectangle(m_connection, nothing, eraser, 1, &dot);
    const xcb_cursor_t cursor = xcb_generate_id(m_connection);
    xcb_create_cursor(m_connection, cursor, nothing, nothing, 0, 0, 0, 0, 0, 0, 0, 0);
    const uint32_t values[] = {1, XCB_EVENT_MASK_BUTTON_PRESS, cursor};
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, screen->root, 0, 0, WIDTH, HEIGHT, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                      XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK | XCB_CW_CURSOR, values);
    m_font = xcb_generate_id(m_connection);
    xcb_open_font(m_connection, m_font, 5, "fixed");
    m_pen = makePen(0x101010, 0xFFFFFF);
    m_grey = makePen(0xC8D0D8, 0x203040);
    m_filler = makePen(0, 0);
    makeDesktop();
    xcb_map_window(m_connection, m_window);
    if (m_scene == "video") {
        m_texture = makeTexture();
        m_video.resize(size_t(VIDEO_WIDTH) * VIDEO_HEIGHT * 4);
    }
    finish();
}

xcb_gcontext_t LivePainter::makePen(uint32_t p_colour, uint32_t p_background) {
    const xcb_gcontext_t pen = xcb_generate_id(m_connection);
    const uint32_t values[] = {p_colour, p_background, m_font, 0};
    xcb_create_gc(m_connection, pen, m_window,
                  XCB_GC_FOREGROUND | XCB_GC_BACKGROUND | XCB_GC_FONT | XCB_GC_GRAPHICS_EXPOSURES, values);
    return pen;
}

void LivePainter::makeDesktop() {
    // As the window's background it is painted by the server itself, where another window has moved away.
    const xcb_pixmap_t desktop = xcb_generate_id(m_connection);
    xcb_create_pixmap(m_connection, 24, desktop, m_window, WIDTH, HEIGHT);
    const bool isPaper = m_scene != "window" && m_scene != "video";
    fill(desktop, isPaper ? 0xFFFFFF : 0x203040, 0, 0, WIDTH, HEIGHT);
    if (!isPaper) {
        for (int y = TOP; y < HEIGHT; y += 4) {
            fill(desktop, 0x203040 + uint32_t(y / 8 << 8 | y / 16), 0, y, WIDTH, 4);
        }
        for (int line = 0; TOP + line * LINE * 2 < HEIGHT - LINE; line++) {
            write(desktop, m_grey, 16, TOP + line * LINE * 2, makeLine(uint32_t(line)));
        }
    }
    fill(desktop, 0, 0, 0, WIDTH, STRIP_HEIGHT);
    xcb_change_window_attributes(m_connection, m_window, XCB_CW_BACK_PIXMAP, &desktop);
    if (m_scene != "window") {
        return;
    }
    m_child = xcb_generate_id(m_connection);
    const uint32_t values[] = {0xF4F4F0};
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_child, m_window, 40, 100, 480, 360, 1,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL, values);
    xcb_map_window(m_connection, m_child);
}

void LivePainter::fill(xcb_drawable_t p_where, uint32_t p_colour, int p_x, int p_y, int p_width, int p_height) {
    xcb_change_gc(m_connection, m_filler, XCB_GC_FOREGROUND, &p_colour);
    const xcb_rectangle_t area{int16_t(p_x), int16_t(p_y), uint16_t(p_width), uint16_t(p_height)};
    xcb_poly_fill_rectangle(m_connection, p_where, m_filler, 1, &area);
}

void LivePainter::write(xcb_drawable_t p_where, xcb_gcontext_t p_pen, int p_x, int p_y, const std::string& p_text) {
    const auto count = uint8_t(std::min<size_t>(p_text.size(), 255));
    xcb_image_text_8(m_connection, count, p_where, p_pen, int16_t(p_x), int16_t(p_y + ASCENT), p_text.c_str());
}

void LivePainter::paintCells(uint64_t p_bits, int p_count, int p_row) {
    std::array<std::vector<xcb_rectangle_t>, 2> cells;
    for (int i = 0; i < p_count; i++) {
        cells[p_bits >> (p_count - 1 - i) & 1].push_back({int16_t(i * CELL), int16_t(p_row * CELL), CELL, CELL});
    }
    for (const uint32_t white : {0u, 1u}) {
        const uint32_t colour = white * 0xFFFFFF;
        xcb_change_gc(m_connection, m_filler, XCB_GC_FOREGROUND, &colour);
        xcb_poly_fill_rectangle(m_connection, m_window, m_filler, uint32_t(cells[white].size()), cells[white].data());
    }
}

void LivePainter::paintClicks(uint32_t p_count) {
    paintCells(p_count, CLICK_CELLS, 1);
    xcb_flush(m_connection);
}

void LivePainter::paint(uint32_t p_frame) {
    if (m_scene == "typing") {
        type(p_frame);
    } else if (m_scene == "window") {
        moveWindow(p_frame);
    } else if (m_scene == "redraw") {
        redraw(p_frame);
    } else if (m_scene == "video") {
        playVideo(p_frame);
    } else {
        scroll(p_frame, m_scene == "scroll-copy");
    }
    paintCells(Stamp::now(p_frame).toBits(), STAMP_CELLS, 0);
    xcb_flush(m_connection);
}

void LivePainter::type(uint32_t p_frame) {
    const int line = int(p_frame) / LETTERS_A_LINE % ((HEIGHT - TOP) / LINE);
    const int column = int(p_frame) % LETTERS_A_LINE;
    const std::string letter(1, mix(p_frame) % 6 == 0 ? ' ' : char('a' + mix(p_frame) % 26));
    write(m_window, m_pen, 8 + column * LETTER, TOP + line * LINE, letter);
    // The next letter wipes the caret away.
    fill(m_window, 0x101010, 8 + (column + 1) * LETTER, TOP + line * LINE, 2, LINE - 2);
}

void LivePainter::moveWindow(uint32_t p_frame) {
    if (p_frame == 0) {
        fill(m_child, 0x3060C0, 0, 0, 480, 20);
        for (int line = 0; line < 22; line++) {
            write(m_child, m_pen, 8, 24 + line * LINE, makeLine(uint32_t(line + 100)).substr(0, 76));
        }
    }
    const int turn = int(p_frame) % 180;
    const int step = turn < 90 ? turn : 180 - turn;
    const uint32_t place[] = {uint32_t(40 + step * 8), uint32_t(60 + step * 3)};
    xcb_configure_window(m_connection, m_child, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, place);
}

void LivePainter::scroll(uint32_t p_frame, bool p_copies) {
    const int lines = (HEIGHT - TOP) / LINE;
    if (p_copies && p_frame > 0) {
        xcb_copy_area(m_connection, m_window, m_window, m_pen, 0, TOP + LINE, 0, TOP, WIDTH,
                      uint16_t((lines - 1) * LINE));
        write(m_window, m_pen, 8, TOP + (lines - 1) * LINE, padLine(makeLine(p_frame + uint32_t(lines) - 1)));
        return;
    }
    for (int line = 0; line < lines; line++) {
        write(m_window, m_pen, 8, TOP + line * LINE, padLine(makeLine(p_frame + uint32_t(line))));
    }
}

void LivePainter::redraw(uint32_t p_frame) {
    const int lines = (HEIGHT - TOP) / LINE;
    for (int line = 0; line < lines; line++) {
        write(m_window, m_pen, 8, TOP + line * LINE, padLine(makeLine(p_frame * 977 + uint32_t(line))));
    }
    for (uint32_t i = 0; i < 12; i++) {
        const uint32_t place = mix(p_frame * 12 + i);
        fill(m_window, mix(place) & 0xFFFFFF, int(place % 1100), TOP + int(place >> 12) % 560,
             40 + int(place >> 20) % 120, 20 + int(place >> 24) % 80);
    }
}

void LivePainter::playVideo(uint32_t p_frame) {
    // Two layers that pass each other.
    const int across = int(p_frame) * 3;
    const int sway = int(std::lround(60 * std::sin(double(p_frame) / 25)));
    for (int y = 0; y < VIDEO_HEIGHT; y++) {
        const uint8_t* const behind = m_texture.data() + size_t((y + sway + TEXTURE) % TEXTURE) * TEXTURE * 3;
        const uint8_t* const before = m_texture.data() + size_t((y * 2 + int(p_frame)) % TEXTURE) * TEXTURE * 3;
        uint8_t* pixel = m_video.data() + size_t(y) * VIDEO_WIDTH * 4;
        for (int x = 0; x < VIDEO_WIDTH; x++, pixel += 4) {
            const uint8_t* const one = behind + size_t((x + across) % TEXTURE) * 3;
            const uint8_t* const two = before + size_t((x + TEXTURE * 8 - across) % TEXTURE) * 3;
            for (int plane = 0; plane < 3; plane++) {
                pixel[plane] = uint8_t((one[plane] * 3 + two[plane]) / 4);
            }
        }
    }
    xcb_put_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_window, m_pen, VIDEO_WIDTH, VIDEO_HEIGHT, 320, 200, 0, 24,
                  uint32_t(m_video.size()), m_video.data());
}

void LivePainter::finish() {
    free(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
}

bool LivePainter::takeClick() {
    bool isClicked = false;
    while (xcb_generic_event_t* const event = xcb_poll_for_event(m_connection)) {
        isClicked = isClicked || (event->response_type & 0x7F) == XCB_BUTTON_PRESS;
        free(event);
    }
    return isClicked;
}

std::vector<uint8_t> LivePainter::grab() {
    xcb_get_image_reply_t* const image = xcb_get_image_reply(
        m_connection, xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_window, 0, 0, WIDTH, HEIGHT, ~0u),
        nullptr);
    std::vector<uint8_t> pixels(size_t(WIDTH) * HEIGHT * 4);
    if (image != nullptr) {
        memcpy(pixels.data(), xcb_get_image_data(image),
               std::min(pixels.size(), size_t(xcb_get_image_data_length(image))));
        free(image);
    }
    return pixels;
}

} // namespace zyr::bench
