/// The bytes of names in XML.
#pragma once

#include <cstdint>

namespace zyr {

/// What a byte can be in a name: any of it, its beginning, and what is stored under its own name whatever surrounds it.
enum NameRole : uint8_t { NAME_NONE = 0, NAME_INSIDE = 1, NAME_START = 2, NAME_PLAIN = 4 };

struct NameRoles {
    uint8_t m_roles[256];
};

constexpr NameRoles makeNameRoles() {
    NameRoles table = {};
    for (int i = 0; i < 256; i++) {
        const char lower = static_cast<char>(i | 0x20);
        const bool letter = i < 0x80 && lower >= 'a' && lower <= 'z';
        const bool inside = (i >= '0' && i <= '9') || i == '-' || i == '.';
        table.m_roles[i] = letter                              ? NAME_INSIDE | NAME_START | NAME_PLAIN
                           : inside                            ? NAME_INSIDE | NAME_PLAIN
                           : i == '_' || i == ':' || i >= 0x80 ? NAME_INSIDE | NAME_START
                                                               : NAME_NONE;
    }
    return table;
}
inline constexpr NameRoles c_nameRoles = makeNameRoles();

inline uint8_t getNameRole(char p_character) {
    return c_nameRoles.m_roles[static_cast<uint8_t>(p_character)];
}

} // namespace zyr
