#include "core_module/serializers/zyr_binary_reader.h"

#include "zyr_common/digest/zyr_hex_digits.h"

namespace zyr {

namespace {

constexpr size_t GUID_SIZE = 16;

} // namespace

bool BinaryReader::readLongNumber(uint64_t& p_number) {
    if (getRemaining() >= sizeof(uint64_t)) {
        uint64_t word;
        memcpy(&word, m_place, sizeof(word));
        const uint64_t ends = ~word & 0x8080808080808080;
        if (ends != 0) {
            // The seven bits of each byte up to the first that ends the number move together in three steps.
            word &= ends ^ (ends - 1);
            word = (word & 0x007F007F007F007F) | (word & 0x7F007F007F007F00) >> 1;
            word = (word & 0x00003FFF00003FFF) | (word & 0x3FFF00003FFF0000) >> 2;
            p_number = (word & 0x000000000FFFFFFF) | (word & 0x0FFFFFFF00000000) >> 4;
            m_place += __builtin_ctzll(ends) / 8 + 1;
            return true;
        }
    }
    uint64_t number = 0;
    for (uint32_t shift = 0; shift < 70; shift += 7) {
        if (m_place == m_end) {
            return false;
        }
        const uint8_t byte = *m_place++;
        number |= static_cast<uint64_t>(byte & 0x7F) << shift;
        if (byte < 0x80) {
            p_number = number;
            return shift < 63 || byte <= 1;
        }
    }
    return false;
}

bool BinaryReader::readTextView(const char*& p_text, size_t& p_length, char (&p_guidText)[36]) {
    uint64_t code = 0;
    if (!readNumber(code)) {
        return false;
    }
    if (code == 0) {
        p_text = p_guidText;
        p_length = sizeof(p_guidText);
        return readGUID(p_guidText);
    }
    if (code - 1 > getRemaining()) {
        return false;
    }
    p_text = reinterpret_cast<const char*>(m_place);
    p_length = code - 1;
    m_place += p_length;
    return true;
}

bool BinaryReader::readGUID(char (&p_text)[36]) {
    if (getRemaining() < GUID_SIZE) {
        return false;
    }
    zyr_putGUIDText(p_text, m_place);
    m_place += GUID_SIZE;
    return true;
}

bool BinaryReader::skipText() {
    uint64_t code = 0;
    return readNumber(code) && skip(code == 0 ? GUID_SIZE : code - 1);
}

bool BinaryReader::skipPlainValue(FieldKind p_kind) {
    uint64_t number = 0;
    switch (p_kind) {
    case FieldKind::BOOL:
    case FieldKind::INT32:
    case FieldKind::UINT32:
    case FieldKind::INT64:
    case FieldKind::UINT64:
    case FieldKind::ENUM:
        return readNumber(number);
    case FieldKind::FLOAT:
        return skip(sizeof(float));
    case FieldKind::DOUBLE:
        return skip(sizeof(double));
    case FieldKind::STRING:
        return skipText();
    case FieldKind::STRING_REF:
        return readNumber(number) && (number == 0 || skipText());
    case FieldKind::RECORD:
    case FieldKind::RECORD_ARRAY:
        return readNumber(number) && skip(number);
    case FieldKind::STRING_ARRAY:
        if (!readCount(number, 1)) {
            return false;
        }
        while (number != 0 && skipText()) {
            number--;
        }
        return number == 0;
    case FieldKind::FLOAT_ARRAY:
    case FieldKind::UINT32_ARRAY:
        return readCount(number, sizeof(float)) && skip(number * sizeof(float));
    case FieldKind::DOUBLE_ARRAY:
        return readCount(number, sizeof(double)) && skip(number * sizeof(double));
    case FieldKind::ENUM_ARRAY:
        if (!readCount(number, 1)) {
            return false;
        }
        for (uint64_t item = 0; number != 0 && readNumber(item);) {
            number--;
        }
        return number == 0;
    case FieldKind::NONE:
    case FieldKind::OBJECT:
        break;
    }
    return false;
}

} // namespace zyr
