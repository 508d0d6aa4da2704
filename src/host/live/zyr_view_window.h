/// A window that shows a live screen and takes what a person does in it.
#pragma once

#include "host/live/zyr_live_client.h"
#include "host/live/zyr_screen_connection.h"

#include <vector>
#include <xcb/shm.h>

namespace zyr::host {

/// One thread.
class ViewWindow {
public:
    /// Throws RunError when there is no X server.
    explicit ViewWindow(const std::string& p_title);
    ~ViewWindow();
    ViewWindow(const ViewWindow&) = delete;
    ViewWindow& operator=(const ViewWindow&) = delete;

    int getDescriptor() const { return m_connection.getDescriptor(); }

    /// Shows a picture, in the screen's true size.
    void show(const LiveStream& p_stream, const CanvasView& p_canvas);

    /// Hands what was done in the window on to the server. False once the window was closed.
    bool update(LiveClient& p_client);

    void setTitle(const std::string& p_title);

private:
    void fit(uint32_t p_width, uint32_t p_height);
    void release();
    void draw();
    void sendPointer(LiveClient& p_client, int p_x, int p_y, unsigned p_changed, bool p_down);
    void sendKey(LiveClient& p_client, xcb_keycode_t p_code, uint16_t p_state, bool p_down);
    void readKeys();

    ScreenConnection m_connection;
    xcb_window_t m_window;
    xcb_gcontext_t m_context;
    xcb_atom_t m_deleteWindow;
    xcb_shm_seg_t m_segment = XCB_NONE;
    uint8_t* m_pixels = nullptr;
    uint32_t m_width = 0;
    uint32_t m_height = 0;
    uint16_t m_buttons = 0;
    std::vector<xcb_keysym_t> m_symbols;
    unsigned m_perKey = 0;
};

} // namespace zyr::host
