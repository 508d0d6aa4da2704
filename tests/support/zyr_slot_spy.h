/// An object without a class: each slot of its table records that it was called. It stands behind a facade to show that
/// an operation of the facade calls the slot that separately built modules expect, with the same arguments, and gives
/// its result back. Operations have any number of arguments, of any kind.
///
///     SlotSpy spy;
///     WImage* facade = spy.makeFacade<WImage>();
///     spy.expectForwarded(facade, &IImage::getWidth, 67);
///     spy.expectForwardedInOrder(facade, 67, &IImage::getWidth, &IImage::getHeight);
///     facade->release();
///
/// Link zyr_test_slot_spy: the check that an object is of the class that it is used as has to be off.
#pragma once

#include "support/binary_layout.h"
#include "zyr_common/object/zyr_object.h"

#include <array>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace zyr {

class SlotSpy {
public:
    static constexpr size_t NUM_OF_SLOTS = 120;

    struct Call {
        const void* m_object;
        size_t m_slot;
        bool m_hasItsArguments; // as expectForwarded() gave them
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
    template <class Interface, class Owner, typename Result, typename... Arguments>
    void expectForwarded(Interface* p_facade, Result (Owner::*p_operation)(Arguments...), size_t p_slot) {
        check<Result, Arguments...>(p_facade, p_operation, p_slot);
    }
    template <class Interface, class Owner, typename Result, typename... Arguments>
    void expectForwarded(Interface* p_facade, Result (Owner::*p_operation)(Arguments...) const, size_t p_slot) {
        check<Result, Arguments...>(p_facade, p_operation, p_slot);
    }

    /// The same for operations whose slots follow each other.
    template <class Interface, typename... Operations>
    void expectForwardedInOrder(Interface* p_facade, size_t p_firstSlot, Operations... p_operations) {
        (expectForwarded(p_facade, p_operations, p_firstSlot++), ...);
    }

private:
    // What any slot does: it says that it was called.
    template <size_t Slot> static const void* record(const void* p_object) {
        s_calls.push_back({p_object, Slot, false});
        return getPlace(0);
    }

    // What the slot under test does. It is called as the operation is, so that each argument is where the compiler puts
    // it.
    template <typename Result, typename... Arguments>
    static Result recordArguments(const void* p_object, Arguments... p_arguments) {
        size_t index = 0;
        bool areTheSame = true;
        ((areTheSame = isArgument<Arguments>(p_arguments, ++index) && areTheSame), ...);
        s_calls.push_back({p_object, s_slot, areTheSame});
        if constexpr (!std::is_void_v<Result>) {
            return argument<Result>(0);
        }
    }

    // In front of the slots stand the offset to the top of the object and the type information.
    template <size_t... Slots> static std::array<void*, NUM_OF_SLOTS + 2>& getTable(std::index_sequence<Slots...>) {
        static std::array<void*, NUM_OF_SLOTS + 2> table = {nullptr, nullptr,
                                                            reinterpret_cast<void*>(&record<Slots>)...};
        return table;
    }

    // Made-up values, all different: the result is number 0, the arguments follow. What is pointed at has its own
    // place.
    template <typename Value> static Value argument(size_t p_index) {
        if constexpr (std::is_reference_v<Value>) {
            return *reinterpret_cast<std::remove_reference_t<Value>*>(getPlace(p_index));
        } else if constexpr (std::is_pointer_v<Value>) {
            return reinterpret_cast<Value>(getPlace(p_index));
        } else {
            return static_cast<Value>(p_index + 3);
        }
    }
    template <typename Value> static bool isArgument(const std::remove_reference_t<Value>& p_value, size_t p_index) {
        if constexpr (std::is_reference_v<Value>) {
            return &p_value == static_cast<const void*>(getPlace(p_index));
        } else {
            return p_value == argument<Value>(p_index);
        }
    }
    static unsigned char* getPlace(size_t p_index) { return s_places + p_index * PLACE_SIZE; }

    template <typename Result, typename... Arguments, class Interface, typename Operation>
    void check(Interface* p_facade, Operation p_operation, size_t p_slot) {
        SCOPED_TRACE("slot " + std::to_string(p_slot));
        static_assert(sizeof...(Arguments) < NUM_OF_PLACES);
        ASSERT_LT(p_slot, NUM_OF_SLOTS);
        ASSERT_EQ(getSlot(p_operation), p_slot);
        takeCalls();
        s_slot = p_slot;
        void* const usual =
            std::exchange(m_table[p_slot], reinterpret_cast<void*>(&recordArguments<Result, Arguments...>));
        [&]<size_t... Indexes>(std::index_sequence<Indexes...>) {
            if constexpr (std::is_void_v<Result>) {
                (p_facade->*p_operation)(argument<Arguments>(Indexes + 1)...);
            } else {
                EXPECT_TRUE(isArgument<Result>((p_facade->*p_operation)(argument<Arguments>(Indexes + 1)...), 0));
            }
        }
        (std::make_index_sequence<sizeof...(Arguments)>());
        m_table[p_slot] = usual;
        const std::vector<Call> calls = takeCalls();
        ASSERT_EQ(calls.size(), 1u);
        EXPECT_EQ(calls[0].m_object, this);
        EXPECT_EQ(calls[0].m_slot, p_slot);
        EXPECT_TRUE(calls[0].m_hasItsArguments);
    }

    static constexpr size_t PLACE_SIZE = 512;
    static constexpr size_t NUM_OF_PLACES = 32;

    inline static std::vector<Call> s_calls;
    inline static size_t s_slot = 0;
    alignas(16) inline static unsigned char s_places[NUM_OF_PLACES * PLACE_SIZE];

    // The only member stands where an object has the pointer to its table.
    void** m_table;
};

} // namespace zyr
