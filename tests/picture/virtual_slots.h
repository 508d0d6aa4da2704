/// An object whose every slot records its call, with up to eight arguments.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace virtual_slots {

template <typename R, typename C, typename... A> constexpr size_t argumentsOf(R (C::*)(A...)) {
    return sizeof...(A);
}
template <typename R, typename C, typename... A> constexpr size_t argumentsOf(R (C::*)(A...) const) {
    return sizeof...(A);
}

struct Call {
    const void* m_object;
    size_t m_slot;
    uint64_t m_arguments[8];
};

inline Call lastCall;
constexpr uint64_t answer = 0x5A;

template <size_t Slot>
uint64_t record(void* p_object, uint64_t p_1, uint64_t p_2, uint64_t p_3, uint64_t p_4, uint64_t p_5, uint64_t p_6,
                uint64_t p_7, uint64_t p_8) {
    lastCall = {p_object, Slot, {p_1, p_2, p_3, p_4, p_5, p_6, p_7, p_8}};
    return answer;
}

using SlotFunction = uint64_t (*)(void*, uint64_t, uint64_t, uint64_t, uint64_t, uint64_t, uint64_t, uint64_t,
                                  uint64_t);

template <size_t... Slot> SlotFunction const* recordingTable(std::index_sequence<Slot...>) {
    static const SlotFunction table[] = {&record<Slot>...};
    return table;
}

/// An object of no class, with a table that records calls.
struct RecordingObject {
    SlotFunction const* m_table = recordingTable(std::make_index_sequence<128>());
};

/// Calls a slot of any object with the numbers 1 to 8.
inline uint64_t callSlot(void* p_object, size_t p_slot) {
    SlotFunction const* table = *static_cast<SlotFunction const**>(p_object);
    return table[p_slot](p_object, 1, 2, 3, 4, 5, 6, 7, 8);
}

} // namespace virtual_slots
