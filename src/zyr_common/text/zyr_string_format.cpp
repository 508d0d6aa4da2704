/// Formatted text and wide output.
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/text/zyr_c_locale.h"
#include "zyr_common/text/zyr_string.h"
#include "zyr_common/text/zyr_unicode.h"

#include <cstdio>
#include <cwchar>

namespace zyr {

void String::newArgList(String& p_target, const char* p_format, va_list p_arguments) {
    // Most texts are short: the measuring call already holds the result then.
    char buffer[256];
    const ScopedCLocale locale;
    va_list arguments;
    va_copy(arguments, p_arguments);
    const int length = vsnprintf(buffer, sizeof(buffer), p_format, arguments);
    va_end(arguments);
    if (length < 0) {
        return;
    }
    if (static_cast<size_t>(length) < sizeof(buffer)) {
        p_target.assignUTF8String(buffer);
        return;
    }
    const size_t size = static_cast<size_t>(length) + 1;
    char* const text = static_cast<char*>(zyr_malloc0(size));
    va_copy(arguments, p_arguments);
    vsnprintf(text, size, p_format, arguments);
    va_end(arguments);
    p_target.assignUTF8String(text);
    zyr_free(text);
}

void String::newArgList(String& p_target, const wchar_t* p_format, va_list p_arguments) {
    // A wide printf does not tell the need, so the buffer grows until the text fits.
    constexpr size_t FIRST_CAPACITY = 1024;
    constexpr int ATTEMPTS = 10;
    wchar_t buffer[FIRST_CAPACITY];
    size_t capacity = FIRST_CAPACITY;
    const ScopedCLocale locale;
    for (int attempt = 0; attempt < ATTEMPTS; attempt++, capacity *= 2) {
        wchar_t* const text = attempt == 0 ? buffer : static_cast<wchar_t*>(zyr_malloc(capacity * sizeof(wchar_t)));
        va_list arguments;
        va_copy(arguments, p_arguments);
        const int length = vswprintf(text, capacity, p_format, arguments);
        va_end(arguments);
        if (length >= 0) {
            p_target.assignUnicode32String(text);
        }
        if (text != buffer) {
            zyr_free(text);
        }
        if (length >= 0) {
            return;
        }
    }
}

String String::newArgList(const char* p_format, va_list p_arguments) {
    String text;
    newArgList(text, p_format, p_arguments);
    return text;
}

String String::newArgList(const wchar_t* p_format, va_list p_arguments) {
    String text;
    newArgList(text, p_format, p_arguments);
    return text;
}

String String::newFormatted(const char* p_format, ...) {
    String text;
    va_list arguments;
    va_start(arguments, p_format);
    newArgList(text, p_format, arguments);
    va_end(arguments);
    return text;
}

String String::newFormatted(const wchar_t* p_format, ...) {
    String text;
    va_list arguments;
    va_start(arguments, p_format);
    newArgList(text, p_format, arguments);
    va_end(arguments);
    return text;
}

void String::newFormatted(String& p_target, const char* p_format, ...) {
    va_list arguments;
    va_start(arguments, p_format);
    newArgList(p_target, p_format, arguments);
    va_end(arguments);
}

void String::newFormatted(String& p_target, const wchar_t* p_format, ...) {
    va_list arguments;
    va_start(arguments, p_format);
    newArgList(p_target, p_format, arguments);
    va_end(arguments);
}

void String::print(const String& p_text) {
    Array<wchar_t> units;
    p_text.convertToUnicode32(units);
    wprintf(units.getData());
}

namespace {

/// Decodes up to the first zero byte, or up to the first byte that can't lead a sequence. A sequence that the end cuts
/// off reads zeros.
template <typename Unit> void convertToUnits(const char* p_text, size_t p_length, Array<Unit>& p_units) {
    size_t count = 0;
    size_t end = 0;
    while (end < p_length && p_text[end] != 0) {
        const size_t size = getUTF8SequenceSize(static_cast<unsigned char>(p_text[end]));
        if (size == 0) {
            break;
        }
        end += size;
        count++;
    }
    // An array that is bound to foreign memory can't be resized; it takes the text where it has the room.
    if (!p_units.resize(count + 1, 0, 0) && p_units.getSize() < count + 1) {
        return;
    }
    Unit* const units = p_units.getData();
    size_t position = 0;
    for (size_t i = 0; i < count; i++) {
        const size_t size = getUTF8SequenceSize(static_cast<unsigned char>(p_text[position]));
        char sequence[4] = {};
        memcpy(sequence, p_text + position, size < p_length - position ? size : p_length - position);
        units[i] = static_cast<Unit>(decodeUTF8(sequence, size));
        position += size;
    }
    units[count] = 0;
}

} // namespace

void String::convertToUnicode16(Array<short>& p_units) const {
    convertToUnits(m_data, getLengthInBytes(), p_units);
}
void String::convertToUnicode32(Array<wchar_t>& p_units) const {
    convertToUnits(m_data, getLengthInBytes(), p_units);
}

void WrappedString::convertToUnicode16(Array<short>& p_units) const {
    convertToUnits(m_data, m_size, p_units);
}
void WrappedString::convertToUnicode32(Array<wchar_t>& p_units) const {
    convertToUnits(m_data, m_size, p_units);
}

} // namespace zyr
