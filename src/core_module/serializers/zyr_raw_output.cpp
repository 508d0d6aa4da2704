#include "core_module/serializers/zyr_raw_output.h"

namespace zyr {

uint8_t* RawOutput::field(const String& p_name, FieldKind p_kind, size_t p_room) {
    const size_t length = p_name.getLengthInBytes();
    uint8_t* target = m_buffer.reserve(1 + c_numberSize + length + p_room);
    if (target == nullptr) {
        return nullptr;
    }
    *target++ = static_cast<uint8_t>(p_kind);
    return copyText(putBase128(target, length), p_name);
}

bool RawOutput::beginField(const String& p_name, FieldKind p_kind) {
    const uint8_t* value = field(p_name, p_kind, 0);
    if (value == nullptr) {
        return false;
    }
    m_buffer.commit(value);
    return true;
}

bool RawOutput::enter(size_t p_minimum) {
    if (!m_frames.reach(m_depth)) {
        return false;
    }
    Frame& frame = m_frames[m_depth++];
    frame.m_width = guessWidth(frame.m_width, p_minimum);
    frame.m_minimum = p_minimum;
    return m_buffer.beginLength(frame.m_width, frame.m_place);
}

bool RawOutput::leave() {
    if (m_depth == 0) {
        return false;
    }
    Frame& frame = m_frames[--m_depth];
    return m_buffer.endLength(frame.m_place, frame.m_width, frame.m_minimum);
}

} // namespace zyr
