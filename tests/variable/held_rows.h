/// The types that values hold, one by one, for tests that hold for all of them.
///
///     forEachHeldRow([]<class Row>(Row) { VariableValue value(Row::c_row); ... });
#pragma once

#include "zyr_common/colour/zyr_color.h"
#include "zyr_common/geometry/zyr_ext_box.h"
#include "zyr_common/geometry/zyr_ext_dimension.h"
#include "zyr_common/geometry/zyr_ext_position.h"
#include "zyr_common/geometry/zyr_ext_rect.h"
#include "zyr_common/geometry/zyr_matrix.h"
#include "zyr_common/references/zyr_object_references.h"
#include "zyr_common/variable/zyr_variable_value.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>

namespace zyr::test {

// One class for each row: its C++ type, its number and how its accessors are called.
#define ZYR_VARIABLE_NUMBER(suffix, type, row)                                                                         \
    struct suffix##Row {                                                                                               \
        using Type = type;                                                                                             \
        static constexpr VariableTypeEnum c_row = row;                                                                 \
        static constexpr const char* c_suffix = #suffix;                                                               \
        static constexpr const char* c_typeText = #type;                                                               \
        static decltype(auto) get(const VariableValue& p_value) { return p_value.getValue##suffix(); }                 \
        static void set(VariableValue& p_value, type const& p_new) { p_value.setValue##suffix(p_new); }                \
        static auto getMutable(auto& p_value) requires requires { p_value.getMutableValue##suffix(); }                 \
        { return &p_value.getMutableValue##suffix(); }                                                                 \
    };
#define ZYR_VARIABLE_RECORD ZYR_VARIABLE_NUMBER
#define ZYR_VARIABLE_POINTER ZYR_VARIABLE_NUMBER
#include "zyr_common/variable/zyr_variable_accessors.inl"

template <typename F> void forEachHeldRow(F p_function) {
#define ZYR_VARIABLE_NUMBER(suffix, type, row)                                                                         \
    {                                                                                                                  \
        SCOPED_TRACE(#suffix);                                                                                         \
        p_function(suffix##Row());                                                                                     \
    }
#define ZYR_VARIABLE_RECORD ZYR_VARIABLE_NUMBER
#define ZYR_VARIABLE_POINTER ZYR_VARIABLE_NUMBER
#include "zyr_common/variable/zyr_variable_accessors.inl"
}

/// Whether the row's values are records, which have a getter of the record itself.
template <class Row> constexpr bool c_isRecord = requires(VariableValue& p_value) {
    Row::getMutable(p_value);
};

template <class Row> constexpr bool c_isPointer = std::is_pointer_v<typename Row::Type>;

/// What messages call the type.
template <class Row> std::string messageType() {
    return Row::c_row == ZYR_VARIABLE_STRING_REFERENCE   ? "String *"
           : Row::c_row == ZYR_VARIABLE_OBJECT_REFERENCE ? "Object *"
                                                         : Row::c_typeText;
}

/// Whether the accessors of the row work on a value of the type.
template <class Row> bool serves(uint32_t p_type) {
    return p_type == Row::c_row || (Row::c_row == ZYR_VARIABLE_BOOL && p_type == ZYR_VARIABLE_UINT8) ||
           (Row::c_row == ZYR_VARIABLE_INT32 && p_type == ZYR_VARIABLE_ENUM);
}

/// A value that differs from the default in each field. Pointers lead to something that belongs to this program. Made
/// in held_rows.cpp, once for each type.
template <typename T> T makeSample();

/// Gives a value its sample.
template <class Row> void setSample(VariableValue& p_value) {
    Row::set(p_value, makeSample<typename Row::Type>());
}

} // namespace zyr::test
