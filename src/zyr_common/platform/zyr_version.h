/// Packed version numbers and facts about the build. Safe on any thread.
///
/// A version travels as one 64-bit integer: major in bits 40 to 63, minor in bits 16 to 39, patch in bits 0 to 15. The
/// 32-bit form has 12, 10 and 10 bits. Encoding doesn't mask the parts: a part that is too large spills into the next.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

ZYR_API uint32_t zyr_encodeVersion32(uint32_t p_major, uint32_t p_minor, uint32_t p_patch);
ZYR_API uint32_t zyr_getMajorVersion32(uint32_t p_version);
ZYR_API uint32_t zyr_getMinorVersion32(uint32_t p_version);
ZYR_API uint32_t zyr_getPatchVersion32(uint32_t p_version);

ZYR_API uint64_t zyr_encodeVersion64(uint32_t p_major, uint32_t p_minor, uint32_t p_patch);
ZYR_API uint32_t zyr_getMajorVersion64(uint64_t p_version);
ZYR_API uint32_t zyr_getMinorVersion64(uint64_t p_version);
ZYR_API uint32_t zyr_getPatchVersion64(uint64_t p_version);

/// Gives the version of the framework that this copy of the library was built from, in the 64-bit form.
ZYR_API uint64_t zyr_getFrameworkVersion();

/// Gives the same version as text ("1.5.0"). The text is static.
ZYR_API const char* zyr_getFrameworkVersionString();

/// Tells whether modules of the two framework versions work together: major and minor have to be equal, the patch is
/// free.
bool_t areFrameworkVersionsCompatible(uint64_t p_first, uint64_t p_second);

/// Tells whether this module works under a host of that framework version; if not, sets the reason, in words that begin
/// a line.
bool_t checkHostFrameworkVersion(uint64_t p_hostVersion, String& p_reason);

/// Gives the compiler's name and version ("GCC 12.2.0"). The text is one buffer of the process, rewritten with the same
/// bytes at each call.
ZYR_API const char* zyr_getCompilerInfo();

/// Gives 1 for the little-endian byte order, the only one that the framework runs on.
ZYR_API uint32_t zyr_getEndianness();

/// Tells whether the system is a 64-bit one, which it always is.
ZYR_API bool_t zyr_isSystem64();

} // namespace zyr
