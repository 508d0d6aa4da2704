/// A screen of a test's own.
#pragma once

#include "host/live/zyr_demo_screen.h"
#include "host/live/zyr_screen_connection.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <poll.h>

namespace zyr::host {

/// Xvfb with nothing on it, and a connection to paint and to watch through.
class ScreenTest : public testing::Test {
protected:
    /// Waits for an event of the kind that fits; null when the server has gone.
    template <typename Event, typename Fits> ReplyHandle<xcb_generic_event_t> await(uint8_t p_type, Fits&& p_fits) {
        m_own.flush();
        for (;;) {
            ReplyHandle<xcb_generic_event_t> event(xcb_wait_for_event(m_own.get()));
            if (!event ||
                ((event->response_type & 0x7F) == p_type && p_fits(*reinterpret_cast<const Event*>(event.get())))) {
                return event;
            }
        }
    }

    void fill(int16_t p_x, int16_t p_y, uint16_t p_width, uint16_t p_height, uint32_t p_color) {
        xcb_connection_t* c = m_own.get();
        const xcb_gcontext_t context = xcb_generate_id(c);
        xcb_create_gc(c, context, m_own.getRoot(), XCB_GC_FOREGROUND, &p_color);
        const xcb_rectangle_t area{p_x, p_y, p_width, p_height};
        xcb_poly_fill_rectangle(c, m_own.getRoot(), context, 1, &area);
        xcb_free_gc(c, context);
        sync();
    }

    /// Returns when the server has done what was asked of it.
    void sync() { free(xcb_get_input_focus_reply(m_own.get(), xcb_get_input_focus(m_own.get()), nullptr)); }

    /// A window that gets all input.
    xcb_window_t showWindow(uint32_t p_events) {
        xcb_connection_t* c = m_own.get();
        const xcb_window_t window = xcb_generate_id(c);
        const uint32_t values[] = {1, p_events};
        xcb_create_window(c, XCB_COPY_FROM_PARENT, window, m_own.getRoot(), 0, 0, 320, 240, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        xcb_map_window(c, window);
        xcb_set_input_focus(c, XCB_INPUT_FOCUS_NONE, window, XCB_CURRENT_TIME);
        sync();
        return window;
    }

    DemoScreen m_screen{320, 240, false};
    ScreenConnection m_own{m_screen.getDisplay()};
};

} // namespace zyr::host
