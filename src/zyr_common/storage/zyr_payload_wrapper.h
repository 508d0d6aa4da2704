/// The 32 bytes in front of an object that is saved in a binary format: 16 bytes that name the format, the XXH64 of the
/// payload and the payload's size, both little-endian.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

inline constexpr size_t c_payloadWrapperSize = 32;
inline constexpr size_t c_payloadIdentifierSize = 16;

/// The two binary formats. Their identifiers are stored in files and never change.
enum class PayloadFormat { RAW, ZBF, UNKNOWN };

/// The wrapper of a payload as it stands in front of it. The class name is that of the serializer.
void zyr_makePayloadWrapper(uint8_t (&p_wrapper)[c_payloadWrapperSize], const String& p_serializerClassName,
                            const void* p_payload, size_t p_size);

/// The format of the 16 bytes.
PayloadFormat zyr_getPayloadFormat(const uint8_t* p_identifier);

/// What is wrong with an identifier for a deserializer of that class: null, or the text of the line to be logged. An
/// unknown identifier is not this function's matter.
const char* zyr_getPayloadMismatch(PayloadFormat p_format, const String& p_deserializerClassName);

/// Whether the payload has the stored hash.
bool_t zyr_isPayloadIntact(PayloadFormat p_format, const void* p_payload, size_t p_size, uint64_t p_hash);

} // namespace zyr
