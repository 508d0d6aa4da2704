/// The beginning of the buffer of a binary format.
#pragma once

#include "core_module/serializers/zyr_byte_buffer.h"
#include "zyr_common/storage/zyr_payload_wrapper.h"

namespace zyr {

/// Empties the buffer but for room for the wrapper in front of the payload: who takes the whole block over fills it in.
inline bool beginPayload(ByteBuffer& p_buffer) {
    const uint8_t room[c_payloadWrapperSize] = {};
    p_buffer.open();
    return p_buffer.append(room, sizeof(room));
}

} // namespace zyr
