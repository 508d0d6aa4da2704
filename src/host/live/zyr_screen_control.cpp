#include "host/live/zyr_screen_control.h"

#include "host/live/zyr_screen_clipboard.h"
#include "host/live/zyr_screen_input.h"

#include <algorithm>

namespace zyr::host {

namespace {

/// A viewer's page says something at least every second while a key is held.
constexpr uint64_t LONGEST_SILENCE = 5'000'000;

int32_t limit(int32_t p_place, uint32_t p_size) {
    return std::clamp<int32_t>(p_place, 0, std::max(int32_t(p_size), 1) - 1);
}

} // namespace

ScreenControl::ScreenControl() = default;
ScreenControl::~ScreenControl() = default;

ScreenControl::ScreenControl(const std::string& p_display)
    : m_input(std::make_unique<ScreenInput>(p_display)),
      m_clipboard(std::make_unique<ScreenClipboard>(p_display, LARGEST_CLIPBOARD)) {}

void ScreenControl::give(uint32_t p_viewer) {
    if (p_viewer != m_controller && m_input) {
        m_input->releaseAll();
    }
    m_controller = p_viewer;
}

bool ScreenControl::take(LiveMessage p_type, const LiveReader& p_reader, const LiveArea& p_shown, uint64_t p_now) {
    m_lastInput = p_now;
    LivePointer pointer;
    LiveWheel wheel;
    LiveKey key;
    switch (p_type) {
    case LiveMessage::POINTER:
        if (!pointer.read(p_reader)) {
            return false;
        }
        if (p_shown.m_width == 0 || p_shown.m_height == 0) {
            return true; // Nothing has been shown yet that a place could lie in.
        }
        m_input->point(p_shown.m_x + limit(pointer.m_x, p_shown.m_width),
                       p_shown.m_y + limit(pointer.m_y, p_shown.m_height), pointer.m_buttons);
        return true;
    case LiveMessage::WHEEL:
        if (!wheel.read(p_reader)) {
            return false;
        }
        m_input->turnWheel(wheel.m_x, wheel.m_y);
        return true;
    case LiveMessage::KEY:
        if (!key.read(p_reader)) {
            return false;
        }
        m_input->press(key);
        return true;
    default:
        m_input->releaseAll();
        return p_type == LiveMessage::RELEASE_ALL;
    }
}

void ScreenControl::watch(uint64_t p_now) {
    if (m_input && m_input->isHolding() && p_now - m_lastInput > LONGEST_SILENCE) {
        m_input->releaseAll();
    }
}

int ScreenControl::getDescriptor() const {
    return m_clipboard ? m_clipboard->getDescriptor() : -1;
}

void ScreenControl::requestClipboard() {
    if (m_clipboard) {
        m_clipboard->request();
    }
}

bool ScreenControl::offerClipboard(const std::string& p_text) {
    return m_clipboard && m_clipboard->offer(p_text);
}

bool ScreenControl::updateClipboard(std::string& p_text) {
    return m_clipboard && m_clipboard->update(p_text);
}

} // namespace zyr::host
