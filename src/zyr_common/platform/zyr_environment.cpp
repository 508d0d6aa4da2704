#include "zyr_common/platform/zyr_environment.h"

#include "zyr_common/text/zyr_c_locale.h"
#include "zyr_common/text/zyr_number_text.h"
#include "zyr_common/text/zyr_string.h"

#include <cstdio>
#include <cstdlib>

namespace zyr {

static bool_t setVariable(const String& p_name, const char* p_text, bool_t p_overwrite) {
    return setenv(p_name.getData(), p_text, p_overwrite) == 0;
}

bool_t zyr_getEnvironmentVariableUInt32(const String& p_name, uint32_t& p_value) {
    const char* text = getenv(p_name.getData());
    if (text == nullptr) {
        return 0;
    }
    p_value = static_cast<uint32_t>(strtol_l(text, nullptr, 10, getCLocale()));
    return 1;
}

bool_t zyr_setEnvironmentVariableUInt32(const String& p_name, uint32_t p_value, bool_t p_overwrite) {
    char text[16];
    snprintf(text, sizeof(text), "%u", p_value);
    return setVariable(p_name, text, p_overwrite);
}

bool_t zyr_getEnvironmentVariableUInt64(const String& p_name, uint64_t& p_value) {
    const char* text = getenv(p_name.getData());
    if (text == nullptr) {
        return 0;
    }
    int32_t narrow = static_cast<int32_t>(strtol_l(text, nullptr, 10, getCLocale()));
    p_value = static_cast<uint64_t>(static_cast<int64_t>(narrow));
    return 1;
}

bool_t zyr_setEnvironmentVariableUInt64(const String& p_name, uint64_t p_value, bool_t p_overwrite) {
    char text[24];
    snprintf(text, sizeof(text), "%llu", static_cast<unsigned long long>(p_value));
    return setVariable(p_name, text, p_overwrite);
}

bool_t zyr_getEnvironmentVariableFloat(const String& p_name, float& p_value) {
    double value = 0;
    if (!zyr_getEnvironmentVariableDouble(p_name, value)) {
        return 0;
    }
    p_value = static_cast<float>(value);
    return 1;
}

bool_t zyr_setEnvironmentVariableFloat(const String& p_name, float p_value, bool_t p_overwrite) {
    return zyr_setEnvironmentVariableDouble(p_name, p_value, p_overwrite);
}

bool_t zyr_getEnvironmentVariableDouble(const String& p_name, double& p_value) {
    const char* text = getenv(p_name.getData());
    if (text == nullptr) {
        return 0;
    }
    p_value = zyr_convertStringToDouble(text);
    return 1;
}

bool_t zyr_setEnvironmentVariableDouble(const String& p_name, double p_value, bool_t p_overwrite) {
    String text;
    zyr_convertDoubleToString(p_value, text);
    return setVariable(p_name, text.getData(), p_overwrite);
}

bool_t zyr_getEnvironmentVariableString(const String& p_name, String& p_value) {
    const char* text = getenv(p_name.getData());
    if (text == nullptr) {
        return 0;
    }
    p_value = text;
    return 1;
}

bool_t zyr_setEnvironmentVariableString(const String& p_name, const String& p_value, bool_t p_overwrite) {
    return setVariable(p_name, p_value.getData(), p_overwrite);
}

} // namespace zyr
