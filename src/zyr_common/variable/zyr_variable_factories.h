/// Values and descriptors in one call, for each type that values hold:
///
///     VariableValue* value = zyr_createVariableValue<float>("opacity", 0.5f);
///     VariableDescriptor* descriptor =
///         zyr_createVariableDescriptor<float>("opacity", ZYR_VARIABLE_CATEGORY_SCALAR, false);
///
/// The caller releases what it gets. bool_t is the type of an unsigned byte, so truth values have functions of their
/// own. The instances are compiled into the library; another type doesn't compile or link.
#pragma once

#include "zyr_common/variable/zyr_variable_descriptor.h"
#include "zyr_common/variable/zyr_variable_value.h"

namespace zyr {

/// A value of T. A String or an object by pointer gets a reference of the value's own.
template <typename T> ZYR_API VariableValue* zyr_createVariableValue(const String& p_name, const T& p_value);

/// A value of type ZYR_VARIABLE_BOOL.
ZYR_API VariableValue* zyr_createBooleanVariableValue(const String& p_name, const bool_t& p_value);

/// The descriptor of a variable of type T.
template <typename T>
ZYR_API VariableDescriptor* zyr_createVariableDescriptor(const String& p_name, VariableCategoryEnum p_category,
                                                         bool_t p_temporary);

/// The descriptor of a variable of type ZYR_VARIABLE_BOOL.
ZYR_API VariableDescriptor* zyr_createBooleanVariableDescriptor(const String& p_name, VariableCategoryEnum p_category,
                                                                bool_t p_temporary);

} // namespace zyr
