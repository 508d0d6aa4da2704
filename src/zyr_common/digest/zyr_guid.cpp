#include "zyr_common/digest/zyr_guid.h"

#include "zyr_common/digest/zyr_sha1.h"
#include "zyr_common/platform/zyr_time.h"
#include "zyr_common/text/zyr_string.h"

#include <cstdio>
#include <cstdlib>

namespace zyr {

#define ZYR_GUID_FORMAT                                                                                                \
    "%02hhx%02hhx%02hhx%02hhx-%02hhx%02hhx-%02hhx%02hhx-%02hhx%02hhx-%02hhx%02hhx%02hhx%02hhx%02hhx%02hhx"

void GUID_t::fromString(const char* p_text) {
    if (p_text == nullptr) {
        *this = GUID_t();
        return;
    }
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
    const uint8_t* data = p_guid.m_data;
    char text[37];
    snprintf(text, sizeof(text), ZYR_GUID_FORMAT, data[0], data[1], data[2], data[3], data[4], data[5], data[6],
             data[7], data[8], data[9], data[10], data[11], data[12], data[13], data[14], data[15]);
    return String(text, sizeof(text) - 1);
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
