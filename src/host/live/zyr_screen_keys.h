/// Which key of an X server gives which symbol.
#pragma once

#include "host/live/zyr_screen_connection.h"

#include <cstdint>
#include <vector>

namespace zyr::host {

/// The server's keyboard map as it was when the object was made. One thread.
class ScreenKeys {
public:
    explicit ScreenKeys(const ScreenConnection& p_connection);

    struct Key {
        xcb_keycode_t m_code = 0; ///< 0: there is none.
        bool m_shift = false;     ///< The symbol stands on the upper level of the key.
    };

    /// The key of a symbol: the one at the given place of the keyboard if it has the symbol, otherwise any that has
    /// it. `p_place` is the kernel's number of the key, 0 when it is not known; where no symbol is known it decides.
    /// A symbol that no key has is put on a key that has none.
    Key find(uint32_t p_symbol, uint16_t p_place);

private:
    bool holds(xcb_keycode_t p_code, uint32_t p_symbol, bool& p_shift) const;
    Key borrow(uint32_t p_symbol);

    const ScreenConnection& m_connection;
    xcb_keycode_t m_first;
    unsigned m_perKey = 0;
    std::vector<xcb_keysym_t> m_symbols;
    std::vector<xcb_keycode_t> m_spares; ///< Keys without a symbol, in the order of their last use.
};

} // namespace zyr::host
