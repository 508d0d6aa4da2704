#include "zyr_common/variable/zyr_variable_types.h"

namespace zyr {

const char* zyr_getVariableTypeString(VariableTypeEnum p_type) {
    const char* name = p_type < ZYR_VARIABLE_TYPE_COUNT ? c_variableTypeRows[p_type].m_displayName : nullptr;
    return name ? name : "Unknown";
}

bool_t zyr_convertVariableType(String& p_word, uint32_t& p_number, bool_t p_wordToNumber) {
    return zyr_convertEnumeration<VariableTypeEnum>(p_word, p_number, p_wordToNumber);
}

bool_t zyr_convertVariableCategory(String& p_word, uint32_t& p_number, bool_t p_wordToNumber) {
    return zyr_convertEnumeration<VariableCategoryEnum>(p_word, p_number, p_wordToNumber);
}

} // namespace zyr
