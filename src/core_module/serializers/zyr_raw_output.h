/// The structure of the raw format: each field carries its kind and its name.
#pragma once

#include "core_module/serializers/zyr_byte_buffer.h"
#include "core_module/serializers/zyr_field_kind.h"
#include "core_module/serializers/zyr_field_rows.h"
#include "core_module/serializers/zyr_frame_stack.h"
#include "core_module/serializers/zyr_payload_front.h"

namespace zyr {

/// Writes what stands around values.
class RawOutput {
public:
    RawOutput() { m_buffer.close(); }

    bool begin() {
        m_depth = 0;
        return beginPayload(m_buffer) && m_buffer.append(static_cast<char>(c_binaryFormatVersion));
    }
    void end() { m_buffer.close(); }
    /// The bytes are complete at all times.
    bool complete() { return true; }

    /// Begins a field and gives the place of its value with room for so many bytes, null where there is no memory. What
    /// is put there counts when the buffer is told where it ends.
    uint8_t* field(const String& p_name, FieldKind p_kind, size_t p_room);
    /// Fields are declared where they stand.
    bool declare(const String&, FieldKind, const String&) { return true; }
    /// Puts what stands in front of the value of a row, for which there must be so much room. Gives the place of the
    /// value, null for a row that must go through its operation.
    static constexpr size_t c_rowHeadRoom = 2 + String::INLINE_SIZE;
    static uint8_t* putRowHead(uint8_t* p_target, const FieldRow& p_row) {
        const FieldKind kind = getRowKind(p_row.m_kind);
        const size_t length = p_row.m_key.getLengthInBytes();
        if (kind == FieldKind::NONE || length > String::INLINE_SIZE) {
            return nullptr;
        }
        *p_target++ = static_cast<uint8_t>(kind);
        *p_target++ = static_cast<uint8_t>(length);
        return copyText(p_target, p_row.m_key);
    }
    bool beginStructure(const String&) { return true; }
    bool endStructure() { return true; }

    bool beginRecord(const String& p_name) { return beginField(p_name, FieldKind::RECORD) && enter(1); }
    bool beginObject(const String& p_name, const String& p_className, const String& p_guidText) {
        return beginField(p_name, FieldKind::OBJECT) && appendText(m_buffer, p_className) &&
               appendText(m_buffer, p_guidText) && enter(4);
    }
    bool nullObject(const String& p_name) {
        return beginField(p_name, FieldKind::OBJECT) && appendText(m_buffer, "", 0) && appendText(m_buffer, "", 0);
    }
    bool beginArray(const String& p_name) { return beginField(p_name, FieldKind::RECORD_ARRAY) && enter(4); }
    bool beginElement(const String& p_typeName) { return appendText(m_buffer, p_typeName) && enter(1); }
    bool nullElement() { return appendText(m_buffer, "", 0); }
    bool leave();

    ByteBuffer m_buffer;

private:
    bool beginField(const String& p_name, FieldKind p_kind);
    /// Leaves room for the length of what begins here, which takes that many bytes or more.
    bool enter(size_t p_minimum);

    struct Frame {
        size_t m_place;
        size_t m_width;
        size_t m_minimum;
    };
    FrameStack<Frame> m_frames;
    uint32_t m_depth = 0;
};

} // namespace zyr
