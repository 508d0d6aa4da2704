#include "zyr_common/platform/zyr_version.h"

#include "zyr_common/text/zyr_number_text.h"
#include "zyr_common/text/zyr_string.h"

#include <cstdio>

namespace zyr {

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "Records and file formats are little-endian");

uint32_t zyr_encodeVersion32(uint32_t p_major, uint32_t p_minor, uint32_t p_patch) {
    return p_major << 20 | p_minor << 10 | p_patch;
}

uint32_t zyr_getMajorVersion32(uint32_t p_version) {
    return p_version >> 20;
}

uint32_t zyr_getMinorVersion32(uint32_t p_version) {
    return p_version >> 10 & 0x3FF;
}

uint32_t zyr_getPatchVersion32(uint32_t p_version) {
    return p_version & 0x3FF;
}

uint64_t zyr_encodeVersion64(uint32_t p_major, uint32_t p_minor, uint32_t p_patch) {
    return uint64_t(p_major) << 40 | uint64_t(p_minor) << 16 | p_patch;
}

uint32_t zyr_getMajorVersion64(uint64_t p_version) {
    return static_cast<uint32_t>(p_version >> 40);
}

uint32_t zyr_getMinorVersion64(uint64_t p_version) {
    return static_cast<uint32_t>(p_version >> 16 & 0xFFFFFF);
}

uint32_t zyr_getPatchVersion64(uint64_t p_version) {
    return static_cast<uint32_t>(p_version & 0xFFFF);
}

uint64_t zyr_getFrameworkVersion() {
    return zyr_encodeVersion64(1, 5, 0);
}

const char* zyr_getFrameworkVersionString() {
    return "1.5.0";
}

bool_t areFrameworkVersionsCompatible(uint64_t p_first, uint64_t p_second) {
    return zyr_getMajorVersion64(p_first) == zyr_getMajorVersion64(p_second) &&
           zyr_getMinorVersion64(p_first) == zyr_getMinorVersion64(p_second);
}

bool_t checkHostFrameworkVersion(uint64_t p_hostVersion, String& p_reason) {
    const uint64_t moduleVersion = zyr_getFrameworkVersion();
    if (areFrameworkVersionsCompatible(p_hostVersion, moduleVersion)) {
        return 1;
    }
    p_reason = "Application framework version:";
    zyr_getVersionString(p_hostVersion, p_reason);
    p_reason += " is incompatible with module framework version:";
    zyr_getVersionString(moduleVersion, p_reason);
    return 0;
}

const char* zyr_getCompilerInfo() {
    static char text[256];
#if defined(__clang__)
    snprintf(text, sizeof(text), "%s %d.%d.%d", "Clang", __clang_major__, __clang_minor__, __clang_patchlevel__);
#else
    snprintf(text, sizeof(text), "%s %d.%d.%d", "GCC", __GNUC__, __GNUC_MINOR__, __GNUC_PATCHLEVEL__);
#endif
    return text;
}

uint32_t zyr_getEndianness() {
    static const uint32_t endianness = [] {
        const uint16_t probe = 1;
        return static_cast<uint32_t>(*reinterpret_cast<const uint8_t*>(&probe));
    }();
    return endianness;
}

bool_t zyr_isSystem64() {
    return sizeof(void*) == 8;
}

} // namespace zyr
