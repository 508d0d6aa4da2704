/// Moves the pointer and presses the keys of an X screen.
#pragma once

#include "host/live/zyr_live_messages.h"
#include "host/live/zyr_screen_keys.h"

#include <map>

namespace zyr::host {

/// Remembers what it holds down, so that nothing stays pressed when a viewer goes. One thread.
class ScreenInput {
public:
    /// Throws RunError when the server cannot be reached or takes no input from programs.
    explicit ScreenInput(const std::string& p_display);
    ~ScreenInput() { releaseAll(); }

    /// Puts the pointer to a place of the screen and its buttons into the given state.
    void point(int32_t p_x, int32_t p_y, uint16_t p_buttons);

    /// Turns the wheel by so many steps, right and down.
    void turnWheel(int p_x, int p_y);

    void press(const LiveKey& p_key);

    /// Lets go of all keys and buttons.
    void releaseAll();

    bool isHolding() const { return m_buttons != 0 || !m_held.empty(); }
    bool isAlive() const { return m_connection.isAlive(); }

private:
    void fake(uint8_t p_type, uint8_t p_detail, int16_t p_x = 0, int16_t p_y = 0);
    void click(uint8_t p_button);

    ScreenConnection m_connection;
    ScreenKeys m_keys;
    xcb_keycode_t m_shift;
    uint16_t m_buttons = 0;
    std::map<uint64_t, xcb_keycode_t> m_held; ///< By what the viewer calls the key.
};

} // namespace zyr::host
