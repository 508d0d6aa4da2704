/// An object without a class: each slot of its table records that it was called. It stands behind a facade to show that
/// an operation of the facade calls the slot that separately built modules expect, with the same arguments, and gives
/// its result back.
///
///     SlotSpy spy;
///     WImage* facade = spy.makeFacade<WImage>();
///     spy.expectForwarded(facade, &IImage::getWidth, 67);
///
/// Link zyr_test_slot_spy: the check that an object is of the class that it is used as has to be off.
#pragma once

#include "support/binary_layout.h"
#include "zyr_common/object/zyr_object.h"

#include <array>
#include <cstring>
#include <gtest/gtest.h>
#include <tuple>
#include <utility>
#include <vector>

namespace zyr {

class SlotSpy {
public:
    static constexpr size_t NUM_OF_SLOTS = 120;
    static constexpr size_t MAX_ARGUMENTS = 5;

    struct Call {
        const void* m_object;
        size_t m_slot;
        uint64_t m_arguments[MAX_ARGUMENTS];
    };

    SlotSpy() : m_table(getTable(std::make_index_sequence<NUM_OF_SLOTS>()).data() + 2) { s_calls.clear(); }

    /// The spy as an interface object. Only its slots may be used.
    template <class Interface> Interface* as() { return reinterpret_cast<Interface*>(this); }

    /// What was called since the last time.
    static std::vector<Call> takeCalls() { return std::exchange(s_calls, {}); }

    /// A facade over a spy. The test releases it.
    template <class Facade> Facade* makeFacade() {
        struct SpiedFacade : Facade {
            explicit SpiedFacade(SlotSpy& p_spy) {
                this->m_interfaceObject = p_spy.as<std::remove_reference_t<decltype(*this->m_interfaceObject)>>();
            }
        };
        return new SpiedFacade(*this);
    }

    /// Calls the operation of the facade with small made-up arguments.
    template <class Interface, typename Result, typename... Arguments>
    void expectForwarded(Interface* p_facade, Result (Interface::*p_operation)(Arguments...), size_t p_slot) {
        check<Result>(p_facade, p_operation, p_slot, arguments<Arguments...>());
    }
    template <class Interface, typename Result, typename... Arguments>
    void expectForwarded(Interface* p_facade, Result (Interface::*p_operation)(Arguments...) const, size_t p_slot) {
        check<Result>(p_facade, p_operation, p_slot, arguments<Arguments...>());
    }

    /// What the slot gives: a number that is an address too.
    static uint64_t getResult(size_t p_slot) { return reinterpret_cast<uint64_t>(&s_results[p_slot]); }

private:
    template <size_t Slot>
    static uint64_t record(const void* p_object, uint64_t p_1, uint64_t p_2, uint64_t p_3, uint64_t p_4, uint64_t p_5) {
        s_calls.push_back({p_object, Slot, {p_1, p_2, p_3, p_4, p_5}});
        return getResult(Slot);
    }

    // In front of the slots stand the offset to the top of the object and the type information.
    template <size_t... Slots> static std::array<void*, NUM_OF_SLOTS + 2>& getTable(std::index_sequence<Slots...>) {
        static std::array<void*, NUM_OF_SLOTS + 2> table = {nullptr, nullptr,
                                                            reinterpret_cast<void*>(&record<Slots>)...};
        return table;
    }

    // The i-th argument: the number i + 3, or something at a known place.
    template <typename Argument> static Argument argument(size_t p_index) {
        if constexpr (std::is_reference_v<Argument>) {
            return *reinterpret_cast<std::remove_reference_t<Argument>*>(s_places + p_index * PLACE_SIZE);
        } else if constexpr (std::is_pointer_v<Argument>) {
            return reinterpret_cast<Argument>(s_places + p_index * PLACE_SIZE);
        } else {
            return static_cast<Argument>(p_index + 3);
        }
    }
    template <typename Argument> static bool isArgument(uint64_t p_value, size_t p_index) {
        if constexpr (std::is_reference_v<Argument> || std::is_pointer_v<Argument>) {
            return p_value == reinterpret_cast<uint64_t>(s_places + p_index * PLACE_SIZE);
        } else {
            Argument value;
            memcpy(&value, &p_value, sizeof(value)); // The rest of the register isn't defined.
            return value == static_cast<Argument>(p_index + 3);
        }
    }

    template <typename... Arguments> static std::tuple<Arguments...>* arguments() { return nullptr; }

    template <typename Result, class Interface, typename Operation, typename... Arguments>
    void check(Interface* p_facade, Operation p_operation, size_t p_slot, std::tuple<Arguments...>*) {
        SCOPED_TRACE("slot " + std::to_string(p_slot));
        EXPECT_EQ(getSlot(p_operation), p_slot);
        takeCalls();
        [&]<size_t... Indexes>(std::index_sequence<Indexes...>) {
            if constexpr (std::is_void_v<Result>) {
                (p_facade->*p_operation)(argument<Arguments>(Indexes)...);
            } else if constexpr (std::is_reference_v<Result>) {
                EXPECT_EQ(reinterpret_cast<uint64_t>(&(p_facade->*p_operation)(argument<Arguments>(Indexes)...)),
                          getResult(p_slot));
            } else {
                EXPECT_EQ((p_facade->*p_operation)(argument<Arguments>(Indexes)...), (Result)getResult(p_slot));
            }
            const std::vector<Call> calls = takeCalls();
            ASSERT_EQ(calls.size(), 1u);
            EXPECT_EQ(calls[0].m_object, this);
            EXPECT_EQ(calls[0].m_slot, p_slot);
            EXPECT_TRUE((isArgument<Arguments>(calls[0].m_arguments[Indexes], Indexes) && ...));
        }
        (std::make_index_sequence<sizeof...(Arguments)>());
    }

    static constexpr size_t PLACE_SIZE = 512;

    inline static std::vector<Call> s_calls;
    inline static unsigned char s_results[NUM_OF_SLOTS];
    alignas(16) inline static unsigned char s_places[MAX_ARGUMENTS * PLACE_SIZE];

    // The only member stands where an object has the pointer to its table.
    void** m_table;
};

} // namespace zyr
