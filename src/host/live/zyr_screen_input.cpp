#include "host/live/zyr_screen_input.h"

#include <algorithm>
#include <cstdlib>
#include <xcb/xtest.h>

namespace zyr::host {

namespace {

constexpr uint32_t SHIFT_SYMBOL = 0xFFE1;
constexpr uint32_t RIGHT_SHIFT_SYMBOL = 0xFFE2;
/// More keys than fingers: a viewer that claims more is not held to it.
constexpr size_t MOST_HELD = 32;
constexpr int MOST_STEPS = 20;
constexpr unsigned NUM_OF_BUTTONS = 5;
/// X's numbers of the buttons; 4 to 7 are the wheel.
constexpr uint8_t BUTTONS[NUM_OF_BUTTONS] = {1, 2, 3, 8, 9};
constexpr uint8_t WHEEL_UP = 4;
constexpr uint8_t WHEEL_DOWN = 5;
constexpr uint8_t WHEEL_LEFT = 6;
constexpr uint8_t WHEEL_RIGHT = 7;

uint64_t nameOf(const LiveKey& p_key) {
    // By its place where that is known: the symbol changes when a modifier is let go first.
    return p_key.m_code != 0 ? uint64_t{p_key.m_code} << 32 : p_key.m_symbol;
}

} // namespace

ScreenInput::ScreenInput(const std::string& p_display) : m_connection(p_display), m_keys(m_connection) {
    m_connection.findExtension(&xcb_test_id, "XTEST");
    m_shift = m_keys.find(SHIFT_SYMBOL, 0).m_code;
}

void ScreenInput::fake(uint8_t p_type, uint8_t p_detail, int16_t p_x, int16_t p_y) {
    xcb_test_fake_input(m_connection.get(), p_type, p_detail, XCB_CURRENT_TIME,
                        p_type == XCB_MOTION_NOTIFY ? m_connection.getRoot() : xcb_window_t(XCB_NONE), p_x, p_y, 0);
}

void ScreenInput::point(int32_t p_x, int32_t p_y, uint16_t p_buttons) {
    const auto limit = [](int32_t p_value) { return int16_t(std::clamp<int32_t>(p_value, 0, INT16_MAX)); };
    fake(XCB_MOTION_NOTIFY, 0, limit(p_x), limit(p_y));
    for (unsigned i = 0; i < NUM_OF_BUTTONS; i++) {
        const bool isDown = (p_buttons >> i & 1) != 0;
        if (isDown != ((m_buttons >> i & 1) != 0)) {
            fake(isDown ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, BUTTONS[i]);
        }
    }
    m_buttons = p_buttons & ((1u << NUM_OF_BUTTONS) - 1);
    m_connection.flush();
}

void ScreenInput::click(uint8_t p_button) {
    fake(XCB_BUTTON_PRESS, p_button);
    fake(XCB_BUTTON_RELEASE, p_button);
}

void ScreenInput::turnWheel(int p_x, int p_y) {
    for (int i = std::min(std::abs(p_y), MOST_STEPS); i > 0; i--) {
        click(p_y > 0 ? WHEEL_DOWN : WHEEL_UP);
    }
    for (int i = std::min(std::abs(p_x), MOST_STEPS); i > 0; i--) {
        click(p_x > 0 ? WHEEL_RIGHT : WHEEL_LEFT);
    }
    m_connection.flush();
}

void ScreenInput::press(const LiveKey& p_key) {
    const uint64_t name = nameOf(p_key);
    const auto held = m_held.find(name);
    if (!p_key.m_down) {
        if (held != m_held.end()) {
            fake(XCB_KEY_RELEASE, held->second);
            m_held.erase(held);
        }
        m_connection.flush();
        return;
    }
    if (held != m_held.end()) {
        return; // The X server repeats keys itself.
    }
    const ScreenKeys::Key key = m_keys.find(p_key.m_symbol, p_key.m_code);
    if (key.m_code == 0 || m_held.size() >= MOST_HELD) {
        return;
    }
    const bool isShiftHeld =
        std::any_of(m_held.begin(), m_held.end(), [&](const auto& p_held) { return p_held.second == m_shift; });
    const bool isShift = p_key.m_symbol == SHIFT_SYMBOL || p_key.m_symbol == RIGHT_SHIFT_SYMBOL;
    // A symbol told without its place comes from a keyboard on a glass, which has no shift key to send along.
    const bool needsShift = key.m_shift && !isShiftHeld && p_key.m_code == 0 && !isShift;
    if (needsShift) {
        fake(XCB_KEY_PRESS, m_shift);
    }
    fake(XCB_KEY_PRESS, key.m_code);
    if (needsShift) {
        fake(XCB_KEY_RELEASE, m_shift);
    }
    m_held[name] = key.m_code;
    m_connection.flush();
}

void ScreenInput::releaseAll() {
    for (const auto& [name, code] : m_held) {
        fake(XCB_KEY_RELEASE, code);
    }
    m_held.clear();
    for (unsigned i = 0; i < NUM_OF_BUTTONS; i++) {
        if ((m_buttons >> i & 1) != 0) {
            fake(XCB_BUTTON_RELEASE, BUTTONS[i]);
        }
    }
    m_buttons = 0;
    m_connection.flush();
}

} // namespace zyr::host
