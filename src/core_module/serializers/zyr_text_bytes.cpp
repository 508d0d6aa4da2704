#include "core_module/serializers/zyr_text_bytes.h"

namespace zyr {

namespace {

constexpr size_t MARK_LENGTH = sizeof(c_bytesMark) - 1;

int getHexDigit(char p_character) {
    if (p_character >= '0' && p_character <= '9') {
        return p_character - '0';
    }
    return p_character >= 'a' && p_character <= 'f' ? p_character - 'a' + 10 : -1;
}

} // namespace

size_t getUTF8Size(const char* p_text, const char* p_end) {
    const size_t remaining = static_cast<size_t>(p_end - p_text);
    const auto byte = [&](size_t p_index) { return static_cast<uint8_t>(p_text[p_index]); };
    if (remaining == 0) {
        return 0;
    }
    if (byte(0) < 0x80) {
        return 1;
    }
    const size_t size = byte(0) < 0xC2 ? 0 : byte(0) < 0xE0 ? 2 : byte(0) < 0xF0 ? 3 : byte(0) < 0xF5 ? 4 : 0;
    if (size == 0 || size > remaining) {
        return 0;
    }
    for (size_t i = 1; i < size; i++) {
        if ((byte(i) & 0xC0) != 0x80) {
            return 0;
        }
    }
    const bool wrong = (byte(0) == 0xE0 && byte(1) < 0xA0) || (byte(0) == 0xED && byte(1) > 0x9F) ||
                       (byte(0) == 0xF0 && byte(1) < 0x90) || (byte(0) == 0xF4 && byte(1) > 0x8F);
    return wrong ? 0 : size;
}

bool isUTF8(const char* p_text, size_t p_length) {
    const char* end = p_text + p_length;
    while (p_text != end) {
        const size_t size = getUTF8Size(p_text, end);
        if (size == 0) {
            return false;
        }
        p_text += size;
    }
    return true;
}

bool hasBytesMark(const char* p_text, size_t p_length) {
    return p_length >= MARK_LENGTH && memcmp(p_text, c_bytesMark, MARK_LENGTH) == 0;
}

bool appendAsBytes(ByteBuffer& p_buffer, const char* p_text, size_t p_length) {
    static constexpr char DIGITS[] = "0123456789abcdef";
    uint8_t* target = p_buffer.reserve(2 * p_length);
    if (target == nullptr) {
        return false;
    }
    for (size_t i = 0; i < p_length; i++) {
        const uint8_t byte = static_cast<uint8_t>(p_text[i]);
        *target++ = static_cast<uint8_t>(DIGITS[byte >> 4]);
        *target++ = static_cast<uint8_t>(DIGITS[byte & 15]);
    }
    p_buffer.commit(target);
    return true;
}

bool decodeBytesMark(String& p_text) {
    const size_t length = p_text.getLengthInBytes() - MARK_LENGTH;
    const char* digits = p_text.getData() + MARK_LENGTH;
    char* target = p_text.getData();
    if (length % 2 != 0) {
        return false;
    }
    for (size_t i = 0; i < length; i += 2) {
        const int high = getHexDigit(digits[i]);
        const int low = getHexDigit(digits[i + 1]);
        if (high < 0 || low < 0) {
            return false;
        }
        target[i / 2] = static_cast<char>(high << 4 | low);
    }
    target[length / 2] = 0;
    p_text.resize(length / 2 + 1);
    return true;
}

void appendCharacter(String& p_text, uint32_t p_character) {
    p_text.pushBackUnicode32Character(static_cast<wchar_t>(p_character));
}

} // namespace zyr
