#include "host/live/zyr_screen_keys.h"

#include <algorithm>

namespace zyr::host {

namespace {

/// X numbers keys so much higher than the kernel does.
constexpr unsigned FIRST_KEY = 8;
/// More spare keys than a person presses at once.
constexpr size_t MOST_SPARES = 8;

} // namespace

ScreenKeys::ScreenKeys(const ScreenConnection& p_connection) : m_connection(p_connection) {
    xcb_connection_t* c = p_connection.get();
    const xcb_setup_t* setup = xcb_get_setup(c);
    m_first = setup->min_keycode;
    const auto count = uint8_t(setup->max_keycode - setup->min_keycode + 1);
    const ReplyHandle<xcb_get_keyboard_mapping_reply_t> map(
        xcb_get_keyboard_mapping_reply(c, xcb_get_keyboard_mapping(c, m_first, count), nullptr));
    if (!map) {
        return;
    }
    m_perKey = map->keysyms_per_keycode;
    const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(map.get());
    m_symbols.assign(symbols, symbols + xcb_get_keyboard_mapping_keysyms_length(map.get()));
    for (unsigned i = count; i-- > 0 && m_spares.size() < MOST_SPARES;) {
        const auto begin = m_symbols.begin() + i * m_perKey;
        if (std::all_of(begin, begin + m_perKey, [](xcb_keysym_t p_symbol) { return p_symbol == 0; })) {
            m_spares.push_back(xcb_keycode_t(m_first + i));
        }
    }
}

bool ScreenKeys::holds(xcb_keycode_t p_code, uint32_t p_symbol, bool& p_shift) const {
    const size_t place = size_t(p_code - m_first) * m_perKey;
    if (p_code < m_first || place + m_perKey > m_symbols.size()) {
        return false;
    }
    // Further levels need modifiers of their own, which the viewer's keys bring.
    for (unsigned level = 0; level < std::min(2u, m_perKey); level++) {
        if (m_symbols[place + level] == p_symbol) {
            p_shift = level == 1;
            return true;
        }
    }
    return false;
}

ScreenKeys::Key ScreenKeys::find(uint32_t p_symbol, uint16_t p_place) {
    const bool isPlaceKnown = p_place > 0 && p_place + FIRST_KEY <= UINT8_MAX;
    const auto atPlace = xcb_keycode_t(isPlaceKnown ? p_place + FIRST_KEY : 0);
    Key key{atPlace, false};
    if (p_symbol == 0 || (isPlaceKnown && holds(atPlace, p_symbol, key.m_shift))) {
        return key;
    }
    for (size_t code = m_first; m_perKey > 0 && (code - m_first + 1) * m_perKey <= m_symbols.size(); code++) {
        if (holds(xcb_keycode_t(code), p_symbol, key.m_shift)) {
            key.m_code = xcb_keycode_t(code);
            return key;
        }
    }
    return borrow(p_symbol);
}

ScreenKeys::Key ScreenKeys::borrow(uint32_t p_symbol) {
    if (m_spares.empty()) {
        return {};
    }
    const xcb_keycode_t code = m_spares.front();
    std::rotate(m_spares.begin(), m_spares.begin() + 1, m_spares.end());
    const std::vector<xcb_keysym_t> symbols(m_perKey, p_symbol);
    std::copy(symbols.begin(), symbols.end(), m_symbols.begin() + size_t(code - m_first) * m_perKey);
    xcb_change_keyboard_mapping(m_connection.get(), 1, code, uint8_t(m_perKey), symbols.data());
    return Key{code, false};
}

} // namespace zyr::host
