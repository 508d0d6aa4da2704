/// How tests pin what separately built modules rely on: offsets of fields and slots of virtual operations.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zyr {

/// The bytes at an offset of an object, as a value.
template <typename T> T readAt(const void* p_object, size_t p_offset) {
    T value;
    memcpy(&value, static_cast<const char*>(p_object) + p_offset, sizeof(value));
    return value;
}

/// The slot of a virtual member function in the table of its class; both destructors come first, in 0 and 1.
template <typename MemberFunction> size_t getSlot(MemberFunction p_function) {
    static_assert(sizeof(p_function) == 2 * sizeof(uintptr_t));
    uintptr_t words[2];
    memcpy(words, &p_function, sizeof(words));
#if defined(__aarch64__)
    return words[0] / sizeof(void*);
#else
    return (words[0] - 1) / sizeof(void*);
#endif
}

} // namespace zyr
