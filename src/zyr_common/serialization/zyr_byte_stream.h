/// Bytes in a stream: an array of 32-bit numbers of which the first is the number of bytes.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/serialization/zyr_serializer.h"

namespace zyr {

/// Replaces the contents of `p_bytes`. False when the stored count does not fit what is stored. A missing key leaves
/// the array empty. `p_cache` is a static of the caller.
bool_t readBytes(IDeserializer* p_deserializer, const String& p_key, uint32_t& p_cache, Array<uint8_t>& p_bytes);

/// Declares or writes the bytes, as the passes of a serializer ask. False when there are more than 32 bits can count.
bool_t writeBytes(ISerializer* p_serializer, const String& p_key, bool_t p_firstPass, bool_t p_headerPass,
                  const void* p_data, size_t p_size);

} // namespace zyr
