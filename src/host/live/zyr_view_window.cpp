#include "host/live/zyr_view_window.h"

#include "host/zyr_run_error.h"

#include <libyuv.h>

#include <cstdlib>
#include <cstring>
#include <sys/mman.h>
#include <unistd.h>

namespace zyr::host {

namespace {

constexpr unsigned FIRST_KEY = 8;
constexpr uint32_t EVENTS = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE |
                            XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
                            XCB_EVENT_MASK_POINTER_MOTION | XCB_EVENT_MASK_FOCUS_CHANGE;

/// The bit of an X button in a pointer message; 0 for the wheel.
unsigned bitOf(unsigned p_button) {
    return p_button >= 1 && p_button <= 3 ? 1u << (p_button - 1) : p_button == 8 ? 8u : p_button == 9 ? 16u : 0u;
}

} // namespace

ViewWindow::ViewWindow(const std::string& p_title)
    : m_connection(""),
      m_window(xcb_generate_id(m_connection.get())),
      m_context(xcb_generate_id(m_connection.get())),
      m_deleteWindow(m_connection.getAtom("WM_DELETE_WINDOW")) {
    m_connection.findExtension(&xcb_shm_id, "MIT-SHM");
    const xcb_screen_t& screen = m_connection.getScreen();
    if (!m_connection.hasWordPixels(screen.root_depth)) {
        throw RunError("windows here are not of 32 bits for a pixel");
    }
    xcb_connection_t* c = m_connection.get();
    const uint32_t values[] = {screen.black_pixel, EVENTS};
    xcb_create_window(c, XCB_COPY_FROM_PARENT, m_window, screen.root, 0, 0, 640, 480, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      screen.root_visual, XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
    xcb_create_gc(c, m_context, m_window, 0, nullptr);
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, m_window, m_connection.getAtom("WM_PROTOCOLS"), XCB_ATOM_ATOM, 32, 1,
                        &m_deleteWindow);
    setTitle(p_title);
    xcb_map_window(c, m_window);
    readKeys();
    m_connection.flush();
}

ViewWindow::~ViewWindow() {
    release();
}

void ViewWindow::setTitle(const std::string& p_title) {
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
                        uint32_t(p_title.size()), p_title.data());
    m_connection.flush();
}

void ViewWindow::readKeys() {
    xcb_connection_t* c = m_connection.get();
    const xcb_setup_t* setup = xcb_get_setup(c);
    const ReplyHandle<xcb_get_keyboard_mapping_reply_t> map(xcb_get_keyboard_mapping_reply(
        c, xcb_get_keyboard_mapping(c, FIRST_KEY, uint8_t(setup->max_keycode - FIRST_KEY + 1)), nullptr));
    if (map) {
        m_perKey = map->keysyms_per_keycode;
        const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(map.get());
        m_symbols.assign(symbols, symbols + xcb_get_keyboard_mapping_keysyms_length(map.get()));
    }
}

void ViewWindow::release() {
    if (m_segment != XCB_NONE) {
        xcb_shm_detach(m_connection.get(), m_segment);
        munmap(m_pixels, size_t(m_width) * m_height * 4);
        m_segment = XCB_NONE;
    }
}

void ViewWindow::fit(uint32_t p_width, uint32_t p_height) {
    release();
    xcb_connection_t* c = m_connection.get();
    const size_t size = size_t(p_width) * p_height * 4;
    const xcb_shm_seg_t segment = xcb_generate_id(c);
    const ReplyHandle<xcb_shm_create_segment_reply_t> made(
        xcb_shm_create_segment_reply(c, xcb_shm_create_segment(c, segment, uint32_t(size), 1), nullptr));
    if (!made || made->nfd != 1) {
        throw RunError("the X server shares no memory with us");
    }
    const int descriptor = xcb_shm_create_segment_reply_fds(c, made.get())[0];
    void* const memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    close(descriptor);
    if (memory == MAP_FAILED) {
        throw RunError("no memory for the window");
    }
    m_segment = segment;
    m_pixels = static_cast<uint8_t*>(memory);
    m_width = p_width;
    m_height = p_height;
    const uint32_t values[] = {p_width, p_height};
    xcb_configure_window(c, m_window, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values);
}

void ViewWindow::show(const LiveStream& p_stream, const CanvasView& p_canvas) {
    if (m_segment == XCB_NONE || p_stream.m_width != m_width || p_stream.m_height != m_height) {
        fit(p_stream.m_width, p_stream.m_height);
    }
    const int pitch = int(p_canvas.m_pitch);
    if (p_canvas.m_width == m_width && p_canvas.m_height == m_height) {
        libyuv::ABGRToARGB(p_canvas.m_pixels, pitch, m_pixels, int(m_width) * 4, int(m_width), int(m_height));
    } else {
        libyuv::ARGBScale(p_canvas.m_pixels, pitch, int(p_canvas.m_width), int(p_canvas.m_height), m_pixels,
                          int(m_width) * 4, int(m_width), int(m_height), libyuv::kFilterBilinear);
        libyuv::ABGRToARGB(m_pixels, int(m_width) * 4, m_pixels, int(m_width) * 4, int(m_width), int(m_height));
    }
    draw();
}

void ViewWindow::draw() {
    if (m_segment != XCB_NONE) {
        xcb_shm_put_image(m_connection.get(), m_window, m_context, uint16_t(m_width), uint16_t(m_height), 0, 0,
                          uint16_t(m_width), uint16_t(m_height), 0, 0, m_connection.getScreen().root_depth,
                          XCB_IMAGE_FORMAT_Z_PIXMAP, 0, m_segment, 0);
        // The server reads the memory when it comes to it: the next picture must not overwrite it before.
        free(xcb_get_input_focus_reply(m_connection.get(), xcb_get_input_focus(m_connection.get()), nullptr));
    }
}

void ViewWindow::sendPointer(LiveClient& p_client, int p_x, int p_y, unsigned p_changed, bool p_down) {
    m_buttons = uint16_t(p_down ? m_buttons | p_changed : m_buttons & ~p_changed);
    const LivePointer pointer{p_x, p_y, m_buttons};
    p_client.send(LiveMessage::POINTER, pointer.write());
}

void ViewWindow::sendKey(LiveClient& p_client, xcb_keycode_t p_code, uint16_t p_state, bool p_down) {
    LiveKey key;
    const size_t place = size_t(p_code - FIRST_KEY) * m_perKey;
    const size_t level = (p_state & XCB_MOD_MASK_SHIFT) != 0 && m_perKey > 1 ? 1 : 0;
    if (m_perKey > 0 && place + level < m_symbols.size()) {
        key.m_symbol = m_symbols[place + level] != 0 ? m_symbols[place + level] : m_symbols[place];
    }
    key.m_code = uint16_t(p_code - FIRST_KEY);
    key.m_down = p_down;
    p_client.send(LiveMessage::KEY, key.write());
}

bool ViewWindow::update(LiveClient& p_client) {
    while (const ReplyHandle<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
        const uint8_t type = event->response_type & 0x7F;
        if (type == XCB_EXPOSE) {
            draw();
        } else if (type == XCB_MOTION_NOTIFY) {
            const auto& motion = *reinterpret_cast<const xcb_motion_notify_event_t*>(event.get());
            sendPointer(p_client, motion.event_x, motion.event_y, 0, false);
        } else if (type == XCB_BUTTON_PRESS || type == XCB_BUTTON_RELEASE) {
            const auto& button = *reinterpret_cast<const xcb_button_press_event_t*>(event.get());
            const bool isWheel = button.detail >= 4 && button.detail <= 7;
            if (!isWheel) {
                sendPointer(p_client, button.event_x, button.event_y, bitOf(button.detail), type == XCB_BUTTON_PRESS);
            } else if (type == XCB_BUTTON_PRESS) {
                const auto step = int8_t(button.detail % 2 == 0 ? -1 : 1);
                const LiveWheel wheel{button.detail >= 6 ? step : int8_t(0), button.detail < 6 ? step : int8_t(0)};
                p_client.send(LiveMessage::WHEEL, wheel.write());
            }
        } else if (type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE) {
            const auto& key = *reinterpret_cast<const xcb_key_press_event_t*>(event.get());
            sendKey(p_client, key.detail, key.state, type == XCB_KEY_PRESS);
        } else if (type == XCB_FOCUS_OUT) {
            m_buttons = 0;
            p_client.send(LiveMessage::RELEASE_ALL, {});
        } else if (type == XCB_CLIENT_MESSAGE) {
            const auto& message = *reinterpret_cast<const xcb_client_message_event_t*>(event.get());
            if (message.data.data32[0] == m_deleteWindow) {
                return false;
            }
        }
    }
    return m_connection.isAlive();
}

} // namespace zyr::host
