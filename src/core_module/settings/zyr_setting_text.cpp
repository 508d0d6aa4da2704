#include "core_module/settings/zyr_setting_text.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace zyr {

namespace {

constexpr const char* NOT_IN_RANGE = "the number is out of range";

bool isWord(const String& p_text, const char* p_word) {
    if (p_text.getLengthInBytes() != strlen(p_word)) {
        return false;
    }
    for (const char* byte = p_text.getData(); *p_word != 0; ++byte, ++p_word) {
        if ((*byte >= 'A' && *byte <= 'Z' ? *byte + ('a' - 'A') : *byte) != *p_word) {
            return false;
        }
    }
    return true;
}

bool isAmong(const String& p_text, std::initializer_list<const char*> p_words) {
    for (const char* word : p_words) {
        if (isWord(p_text, word)) {
            return true;
        }
    }
    return false;
}

/// Decimal, or hexadecimal behind 0x, with or without a sign. Null, or what is wrong.
template <typename T> const char* parseNumber(const String& p_text, T& p_number) {
    constexpr const char* NO_NUMBER = std::is_floating_point_v<T> ? "it is no number" : "it is no whole number";
    const char* begin = p_text.getData();
    const char* end = begin + p_text.getLengthInBytes();
    std::from_chars_result result{};
    if constexpr (std::is_floating_point_v<T>) {
        begin += *begin == '+' && begin[1] != '-' ? 1 : 0;
        result = std::from_chars(begin, end, p_number);
        if (!std::isfinite(p_number)) {
            return NO_NUMBER; // The words for infinity and for what is no number.
        }
    } else {
        const bool isNegative = *begin == '-';
        begin += isNegative || *begin == '+' ? 1 : 0;
        const bool isHexadecimal = begin[0] == '0' && (begin[1] | 0x20) == 'x';
        begin += isHexadecimal ? 2 : 0;
        uint64_t magnitude = 0;
        result = std::from_chars(begin, end, magnitude, isHexadecimal ? 16 : 10);
        const uint64_t largest = static_cast<uint64_t>(std::numeric_limits<T>::max());
        const uint64_t lowest = std::numeric_limits<T>::is_signed ? largest + 1 : 0;
        if (result.ec == std::errc() && result.ptr == end && magnitude > (isNegative ? lowest : largest)) {
            return NOT_IN_RANGE;
        }
        p_number = static_cast<T>(isNegative ? 0 - magnitude : magnitude);
    }
    if (result.ec == std::errc::result_out_of_range) {
        return NOT_IN_RANGE;
    }
    return result.ec == std::errc() && result.ptr == end ? nullptr : NO_NUMBER;
}

template <typename T> const char* applyNumber(void* p_variable, const String& p_text, T p_minimum, T p_maximum) {
    T number{};
    const char* reason = parseNumber(p_text, number);
    if (reason == nullptr && (number < p_minimum || number > p_maximum)) {
        reason = NOT_IN_RANGE;
    }
    if (reason == nullptr) {
        memcpy(p_variable, &number, sizeof(number));
    }
    return reason;
}

template <typename T> void applyDefault(void* p_variable, T p_default, T p_minimum, T p_maximum) {
    const T number = p_default < p_minimum ? p_minimum : p_default > p_maximum ? p_maximum : p_default;
    memcpy(p_variable, &number, sizeof(number));
}

template <typename T> void addNumber(String& p_text, T p_number) {
    char digits[64];
    const std::to_chars_result result = std::to_chars(digits, digits + sizeof(digits), p_number);
    p_text.pushBackUTF8SubString(digits, static_cast<size_t>(result.ptr - digits));
}

template <typename T> void describeRange(String& p_text, T p_default, T p_minimum, T p_maximum) {
    addNumber(p_text, p_default);
    p_text += ", ";
    addNumber(p_text, p_minimum);
    p_text += " to ";
    addNumber(p_text, p_maximum);
}

const char* applyBoolean(void* p_variable, const String& p_text) {
    const bool isTrue = isAmong(p_text, {"1", "true", "yes", "on"});
    if (!isTrue && !isAmong(p_text, {"0", "false", "no", "off"})) {
        return "it is neither true nor false";
    }
    *static_cast<bool_t*>(p_variable) = isTrue;
    return nullptr;
}

const char* applyWord(void* p_variable, String p_text, settingEnum_FUNC p_callback) {
    int number = 0;
    if (p_callback == nullptr || !p_callback(p_text, number, 1)) {
        return "it is none of the known words";
    }
    memcpy(p_variable, &number, sizeof(number));
    return nullptr;
}

} // namespace

const char* applySettingText(const SettingValue& p_setting, const String& p_text) {
    switch (p_setting.getType()) {
    // A bool_t is an 8-bit number to the compiler, and has a type of its own here.
    case ZYR_VARIABLE_BOOL: {
        bool_t initial = 0;
        return applyBoolean(p_setting.getReferenceBool(initial), p_text);
    }
#define ZYR_RAW_BOOLEAN(suffix, many, type)
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    case zyr_getVariableTypeEnum<type>(): {                                                                            \
        type initial{};                                                                                                \
        type minimum{};                                                                                                \
        type maximum{};                                                                                                \
        void* variable = p_setting.getReference##suffix(initial, minimum, maximum);                                    \
        return applyNumber<type>(variable, p_text, minimum, maximum);                                                  \
    }
#include "zyr_common/documents/zyr_raw_numbers.inl"
    case ZYR_VARIABLE_STRING: {
        String initial;
        *static_cast<String*>(p_setting.getReferenceString(initial)) = p_text;
        return nullptr;
    }
    case ZYR_VARIABLE_ENUM: {
        String initial;
        settingEnum_FUNC callback = nullptr;
        void* variable = p_setting.getReferenceEnum(initial, callback);
        return applyWord(variable, p_text, callback);
    }
    default:
        return "the setting has no variable";
    }
}

void applySettingDefault(const SettingValue& p_setting) {
    switch (p_setting.getType()) {
    case ZYR_VARIABLE_BOOL: {
        bool_t initial = 0;
        void* variable = p_setting.getReferenceBool(initial);
        *static_cast<bool_t*>(variable) = initial != 0;
        break;
    }
#define ZYR_RAW_BOOLEAN(suffix, many, type)
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    case zyr_getVariableTypeEnum<type>(): {                                                                            \
        type initial{};                                                                                                \
        type minimum{};                                                                                                \
        type maximum{};                                                                                                \
        void* variable = p_setting.getReference##suffix(initial, minimum, maximum);                                    \
        applyDefault<type>(variable, initial, minimum, maximum);                                                       \
        break;                                                                                                         \
    }
#include "zyr_common/documents/zyr_raw_numbers.inl"
    case ZYR_VARIABLE_STRING: {
        String initial;
        void* variable = p_setting.getReferenceString(initial);
        *static_cast<String*>(variable) = initial;
        break;
    }
    case ZYR_VARIABLE_ENUM: {
        String initial;
        settingEnum_FUNC callback = nullptr;
        void* variable = p_setting.getReferenceEnum(initial, callback);
        if (applyWord(variable, initial, callback) != nullptr) {
            memset(variable, 0, sizeof(int));
        }
        break;
    }
    default:
        break;
    }
}

String describeSettingValues(const SettingValue& p_setting) {
    String text;
    switch (p_setting.getType()) {
    case ZYR_VARIABLE_BOOL: {
        bool_t initial = 0;
        p_setting.getReferenceBool(initial);
        text = initial ? "on" : "off";
        break;
    }
#define ZYR_RAW_BOOLEAN(suffix, many, type)
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    case zyr_getVariableTypeEnum<type>(): {                                                                            \
        type initial{};                                                                                                \
        type minimum{};                                                                                                \
        type maximum{};                                                                                                \
        p_setting.getReference##suffix(initial, minimum, maximum);                                                     \
        describeRange<type>(text, initial, minimum, maximum);                                                          \
        break;                                                                                                         \
    }
#include "zyr_common/documents/zyr_raw_numbers.inl"
    case ZYR_VARIABLE_STRING:
        p_setting.getReferenceString(text);
        break;
    case ZYR_VARIABLE_ENUM: {
        settingEnum_FUNC callback = nullptr;
        p_setting.getReferenceEnum(text, callback);
        break;
    }
    default:
        break;
    }
    return text;
}

} // namespace zyr
