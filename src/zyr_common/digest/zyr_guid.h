/// Identifiers of 16 bytes and their text form.
#pragma once

#include "zyr_common/zyr_types.h"

#include <cstring>

namespace zyr {

/// A plain record of 16 bytes, compared and hashed by its bytes. All zero is the null GUID.
///
/// The text form has 36 characters, lower-case hexadecimal in the pattern 8-4-4-4-12, in the order of the bytes: no
/// group is swapped. String::newFromGUID writes it.
struct GUID_t {
    /// Reads the text form; upper-case digits are accepted. Null gives the null GUID. A text that doesn't match stops
    /// part way, and the bytes that were not reached keep their value: there is no error result.
    void fromString(const char* p_text);

    /// Overwrites the six bits that make these bytes an identifier of version 4 with the RFC 4122 variant.
    void setVersion4();

    bool isNull() const { return *this == GUID_t(); }

    bool operator==(const GUID_t& p_other) const { return memcmp(m_data, p_other.m_data, sizeof(m_data)) == 0; }
    bool operator!=(const GUID_t& p_other) const { return !(*this == p_other); }
    bool operator<(const GUID_t& p_other) const { return memcmp(m_data, p_other.m_data, sizeof(m_data)) < 0; }

    uint8_t m_data[16] = {};
};

static_assert(sizeof(GUID_t) == 16 && alignof(GUID_t) == 1);

/// GUID_t::fromString on `p_guid`.
ZYR_API void GUID_t_fromString(GUID_t& p_guid, const char* p_text);

/// A new GUID from its text, for the identities of classes. Bytes that the text doesn't reach are 0.
ZYR_API GUID_t GUID_t_fromString(const char* p_text);

/// Makes a random GUID of version 4 and the RFC 4122 variant. Uses the C library's generator, which it seeds anew: two
/// threads may get the same one in the same instant.
ZYR_API void zyr_generateGUID(GUID_t& p_guid);

/// Makes the GUID of some content: the same bytes always give the same one, in the form of version 4.
ZYR_API void zyr_generateGUIDFromXXHash128(GUID_t& p_guid, const void* p_data, size_t p_size);

} // namespace zyr
