#include "core_module/documents/zyr_document_text.h"

#include "core_module/zyr_text_place.h"
#include "zyr_common/text/zyr_unicode.h"

namespace zyr {

namespace {

constexpr size_t MAX_SHOWN_BYTES = 24;
constexpr uint64_t HIGH_BITS = 0x8080808080808080;

const char* skipDigits(const char* p_text, const char* p_end) {
    while (p_text != p_end && isDocumentDigit(*p_text)) {
        ++p_text;
    }
    return p_text;
}

} // namespace

DocumentText::DocumentText(const Array<unsigned char>* p_data) {
    if (p_data != nullptr && p_data->getSize() != 0) {
        m_begin = reinterpret_cast<const char*>(p_data->getData());
        m_end = m_begin + p_data->getSize();
        m_current = m_begin;
    }
}

bool DocumentText::isAt(const char* p_word) const {
    const size_t length = strlen(p_word);
    return length <= getRest() && memcmp(m_current, p_word, length) == 0;
}

bool DocumentText::take(const char* p_word) {
    if (!isAt(p_word)) {
        return false;
    }
    m_current += strlen(p_word);
    return true;
}

void DocumentText::skipBlanks() {
    while (m_current != m_end && isDocumentBlank(*m_current)) {
        ++m_current;
    }
}

bool DocumentText::skipTo(const char* p_word) {
    const void* place = getRest() != 0 ? memmem(m_current, getRest(), p_word, strlen(p_word)) : nullptr;
    m_current = place != nullptr ? static_cast<const char*>(place) : m_end;
    return place != nullptr;
}

bool DocumentText::fail(const char* p_reason, const char* p_place) {
    if (m_reason == nullptr) {
        m_reason = p_reason;
        m_place = p_place;
    }
    return false;
}

ParserLogMessage* DocumentText::makeMessage() const {
    const TextPlace place(m_begin, m_place);
    const StringCursor cursor(place.m_line, place.m_column, m_begin, m_end, m_place);
    String text(m_reason);
    if (m_place != m_end) {
        text += ": \"";
        const char* byte = m_place;
        while (byte != m_end && byte - m_place < static_cast<ptrdiff_t>(MAX_SHOWN_BYTES)) {
            const size_t size = getValidUTF8Size(byte, m_end);
            if (*byte == '\n' || *byte == '\r') {
                break;
            }
            const bool shown = size != 0 && (static_cast<unsigned char>(*byte) >= ' ' && *byte != 0x7F);
            text.pushBackUTF8SubString(shown ? byte : "?", shown ? size : 1);
            byte += size != 0 ? size : 1;
        }
        text += byte != m_end && *byte != '\n' && *byte != '\r' ? "...\"" : "\"";
    }
    return new ParserLogMessage(ZYR_LOG_LEVEL_WARN, cursor, text);
}

bool DocumentText::checkUTF8() {
    take("\xEF\xBB\xBF");
    for (const char* byte = m_current; byte != m_end;) {
        uint64_t word;
        if (m_end - byte >= static_cast<ptrdiff_t>(sizeof(word))) {
            memcpy(&word, byte, sizeof(word));
            if ((word & HIGH_BITS) == 0) {
                byte += sizeof(word);
                continue;
            }
        }
        const size_t size = getValidUTF8Size(byte, m_end);
        if (size == 0) {
            return fail("Bytes that are no UTF-8", byte);
        }
        byte += size;
    }
    return true;
}

size_t getValidUTF8Size(const char* p_bytes, const char* p_end) {
    static const uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const size_t size = getUTF8SequenceSize(static_cast<unsigned char>(*p_bytes));
    if (size <= 1) {
        return size;
    }
    if (size > static_cast<size_t>(p_end - p_bytes)) {
        return 0;
    }
    for (size_t i = 1; i < size; ++i) {
        if ((p_bytes[i] & 0xC0) != 0x80) {
            return 0;
        }
    }
    const uint32_t code = decodeUTF8(p_bytes, size);
    return code < smallest[size] || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000) ? 0 : size;
}

const char* findNumberEnd(const char* p_text, const char* p_end) {
    const char* digits = p_text != p_end && *p_text == '-' ? p_text + 1 : p_text;
    const char* end = skipDigits(digits, p_end);
    if (end == digits || (*digits == '0' && end != digits + 1)) {
        return p_text;
    }
    if (end != p_end && *end == '.') {
        const char* fraction = end + 1;
        end = skipDigits(fraction, p_end);
        if (end == fraction) {
            return p_text;
        }
    }
    if (end != p_end && (*end == 'e' || *end == 'E')) {
        const char* exponent = end + 1;
        if (exponent != p_end && (*exponent == '+' || *exponent == '-')) {
            ++exponent;
        }
        end = skipDigits(exponent, p_end);
        if (end == exponent) {
            return p_text;
        }
    }
    return end;
}

} // namespace zyr
