#include "zyr_common/variable/zyr_variable_factories.h"

namespace zyr {

namespace {

// The setter of a type. Of the two for an unsigned byte this is that of the number.
#define ZYR_VARIABLE_BOOLEAN(suffix, type, row)
#define ZYR_VARIABLE_NUMBER(suffix, type, row)                                                                         \
    void setValue(VariableValue& p_target, type const& p_value) {                                                      \
        p_target.setValue##suffix(p_value);                                                                            \
    }
#define ZYR_VARIABLE_RECORD ZYR_VARIABLE_NUMBER
#define ZYR_VARIABLE_POINTER ZYR_VARIABLE_NUMBER
#include "zyr_common/variable/zyr_variable_accessors.inl"

VariableDescriptor* createDescriptor(VariableTypeEnum p_type, const String& p_name, VariableCategoryEnum p_category,
                                     bool_t p_temporary) {
    VariableDescriptor* descriptor = new VariableDescriptor(p_type, p_category, p_temporary);
    descriptor->setName(p_name);
    return descriptor;
}

} // namespace

template <typename T> VariableValue* zyr_createVariableValue(const String& p_name, const T& p_value) {
    VariableValue* value = new VariableValue(zyr_getVariableTypeEnum<T>());
    value->setName(p_name);
    setValue(*value, p_value);
    return value;
}

VariableValue* zyr_createBooleanVariableValue(const String& p_name, const bool_t& p_value) {
    VariableValue* value = new VariableValue(ZYR_VARIABLE_BOOL);
    value->setName(p_name);
    value->setValueBool(p_value);
    return value;
}

template <typename T>
VariableDescriptor* zyr_createVariableDescriptor(const String& p_name, VariableCategoryEnum p_category,
                                                 bool_t p_temporary) {
    return createDescriptor(zyr_getVariableTypeEnum<T>(), p_name, p_category, p_temporary);
}

VariableDescriptor* zyr_createBooleanVariableDescriptor(const String& p_name, VariableCategoryEnum p_category,
                                                        bool_t p_temporary) {
    return createDescriptor(ZYR_VARIABLE_BOOL, p_name, p_category, p_temporary);
}

// The types are hidden, which would hide the instances too.
#define ZYR_VARIABLE_BOOLEAN(suffix, type, row)
#define ZYR_VARIABLE_NUMBER(suffix, type, row)                                                                         \
    template ZYR_API VariableValue* zyr_createVariableValue<type>(const String&, type const&);                         \
    template ZYR_API VariableDescriptor* zyr_createVariableDescriptor<type>(const String&, VariableCategoryEnum,       \
                                                                            bool_t);
#define ZYR_VARIABLE_RECORD ZYR_VARIABLE_NUMBER
#define ZYR_VARIABLE_POINTER ZYR_VARIABLE_NUMBER
#include "zyr_common/variable/zyr_variable_accessors.inl"

} // namespace zyr
