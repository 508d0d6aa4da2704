#include "zyr_common/digest/zyr_guid.h"

#include "zyr_common/digest/zyr_hex_digits.h"
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

/// Reads the form in which texts are written; false for any other. Nothing is read behind the end of a shorter text.
bool readWrittenForm(const char* p_text, uint8_t (&p_data)[16]) {
    if (strnlen(p_text, TEXT_LENGTH) != TEXT_LENGTH || !zyr_hasGUIDDashes(p_text)) {
        return false;
    }
    char digits[32];
    zyr_packGUIDText(digits, p_text);
    uint64_t wrong = 0;
    for (size_t i = 0; i < sizeof(p_data); i += 4) {
        uint64_t text;
        memcpy(&text, digits + 2 * i, sizeof(text));
        zyr_parseHexDigits(zyr_lowerHexDigits(text, wrong), p_data + i, wrong);
    }
    return wrong == 0;
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
    zyr_putGUIDText(text, p_guid.m_data);
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
