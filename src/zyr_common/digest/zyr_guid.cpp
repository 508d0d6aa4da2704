#include "zyr_common/digest/zyr_guid.h"

#include "zyr_common/digest/zyr_sha1.h"
#include "zyr_common/platform/zyr_time.h"
#include "zyr_common/text/zyr_string.h"

#include <cstdio>
#include <cstdlib>

namespace zyr {

#define ZYR_GUID_FORMAT                                                                                                \
    "%02hhx%02hhx%02hhx%02hhx-%02hhx%02hhx-%02hhx%02hhx-%02hhx%02hhx-%02hhx%02hhx%02hhx%02hhx%02hhx%02hhx"

namespace {

constexpr size_t TEXT_LENGTH = 36;
constexpr char DIGITS[] = "0123456789abcdef";
constexpr uint8_t NO_DIGIT = 0xFF;

struct DigitValues {
    uint8_t m_values[256];
};

constexpr DigitValues makeDigitValues() {
    DigitValues table = {};
    for (uint8_t& value : table.m_values) {
        value = NO_DIGIT;
    }
    for (uint8_t i = 0; i < 16; i++) {
        table.m_values[static_cast<uint8_t>(DIGITS[i])] = i;
        if (i >= 10) {
            table.m_values['A' + i - 10] = i;
        }
    }
    return table;
}
constexpr DigitValues DIGIT_VALUES = makeDigitValues();

struct DigitPairs {
    char m_pairs[256][2];
};

constexpr DigitPairs makeDigitPairs() {
    DigitPairs table = {};
    for (size_t i = 0; i < 256; i++) {
        table.m_pairs[i][0] = DIGITS[i >> 4];
        table.m_pairs[i][1] = DIGITS[i & 15];
    }
    return table;
}
constexpr DigitPairs DIGIT_PAIRS = makeDigitPairs();

/// Whether a dash stands in front of the byte of that number.
constexpr bool hasDash(size_t p_byte) {
    return p_byte == 4 || p_byte == 6 || p_byte == 8 || p_byte == 10;
}

/// Reads the form in which texts are written; false for any other.
bool readWrittenForm(const char* p_text, uint8_t (&p_data)[16]) {
    for (size_t i = 0; i < 16; i++) {
        if (hasDash(i) && *p_text++ != '-') {
            return false;
        }
        const uint8_t high = DIGIT_VALUES.m_values[static_cast<uint8_t>(p_text[0])];
        const uint8_t low = high != NO_DIGIT ? DIGIT_VALUES.m_values[static_cast<uint8_t>(p_text[1])] : NO_DIGIT;
        if (low == NO_DIGIT) {
            return false;
        }
        p_data[i] = static_cast<uint8_t>(high << 4 | low);
        p_text += 2;
    }
    return true;
}

} // namespace

void GUID_t::fromString(const char* p_text) {
    if (p_text == nullptr) {
        *this = GUID_t();
        return;
    }
    uint8_t data[16];
    if (readWrittenForm(p_text, data)) {
        memcpy(m_data, data, sizeof(m_data));
        return;
    }
    // What sscanf makes of other texts is relied upon: it stops part way, takes single digits and skips blanks.
    sscanf(p_text, ZYR_GUID_FORMAT, &m_data[0], &m_data[1], &m_data[2], &m_data[3], &m_data[4], &m_data[5], &m_data[6],
           &m_data[7], &m_data[8], &m_data[9], &m_data[10], &m_data[11], &m_data[12], &m_data[13], &m_data[14],
           &m_data[15]);
}

void GUID_t_fromString(GUID_t& p_guid, const char* p_text) {
    p_guid.fromString(p_text);
}

GUID_t GUID_t_fromString(const char* p_text) {
    GUID_t guid;
    guid.fromString(p_text);
    return guid;
}

String String::newFromGUID(const GUID_t& p_guid) {
    char text[TEXT_LENGTH];
    char* out = text;
    for (size_t i = 0; i < 16; i++) {
        if (hasDash(i)) {
            *out++ = '-';
        }
        memcpy(out, DIGIT_PAIRS.m_pairs[p_guid.m_data[i]], 2);
        out += 2;
    }
    return String(text, sizeof(text));
}

void GUID_t::setVersion4() {
    m_data[6] = (m_data[6] & 0x0F) | 0x40;
    m_data[8] = (m_data[8] & 0x3F) | 0x80;
}

void zyr_generateGUID(GUID_t& p_guid) {
    unsigned char noise[128];
    for (unsigned char& byte : noise) {
        // The entropy is the clock's reading at each step, so the seed is set anew for each byte.
        srand(static_cast<unsigned int>(zyr_getCurrentTime()));
        byte = static_cast<unsigned char>(rand());
    }
    unsigned char digest[SHA1_DIGEST_SIZE];
    zyr_sha1(noise, sizeof(noise), digest);
    memcpy(p_guid.m_data, digest, sizeof(p_guid.m_data));
    p_guid.setVersion4();
}

} // namespace zyr
