/// The operations of a deserializer of a binary format. Heads reads what stands in front of values (RawHeads,
/// ZbfHeads).
///
/// Fields are looked for where the last one ended, since they are read in the order in which they were written; one
/// that isn't there is looked for in the whole group. The cache words of the callers are not used.
#pragma once

#include "core_module/serializers/zyr_binary_heads.h"
#include "core_module/serializers/zyr_frame_stack.h"
#include "core_module/serializers/zyr_row_values.h"
#include "core_module/serializers/zyr_serializer_level.h"
#include "core_module/serializers/zyr_stored_number.h"

namespace zyr {

template <class Interface, class Heads> class BinaryDeserializerLevel : public DeserializerLevel<Interface> {
public:
    bool_t initialize(const void* p_data, uint64_t p_size) override {
        m_depth = 0;
        m_frame = &m_frames[0];
        m_frames[0] = Frame();
        m_type.m_number = 0;
        forgetClass();
        if (p_data == nullptr || !m_heads.begin(p_data, p_size, m_frames[0].m_fields)) {
            return 0;
        }
        m_frames[0].m_reader = m_frames[0].m_fields;
        m_frames[0].m_heads = m_heads.getFields(0);
        return 1;
    }
    bool_t deinitialize() override {
        m_heads.end();
        forgetClass();
        m_depth = 0;
        m_frame = &m_frames[0];
        m_frames[0] = Frame();
        return 1;
    }
    bool_t isBinaryFormat() const override { return 1; }
    const String& getCurrentObjectTypeName() const override { return getClass().m_name; }
    const String& getCurrentObjectGUIDText() const override { return getClass().m_guidText; }
    uint32_t getArraySize() const override { return m_frame->m_count; }

    bool_t enterGroup(const String& p_name, bool_t& p_found) override {
        BinaryReader part;
        if (!open(p_name, FieldKind::RECORD, p_found) || !p_found) {
            return !m_broken;
        }
        return readPart(part) && enter(part, m_head->m_structure);
    }
    bool_t leaveGroup() override { return leave(); }

    bool_t enterObject(const String& p_name, bool_t& p_found) override {
        BinaryReader part;
        if (!open(p_name, FieldKind::OBJECT, p_found) || !p_found) {
            return !m_broken;
        }
        const uint8_t* place = m_frame->m_reader.m_place;
        m_classPlace = place;
        if (!m_heads.readClass(m_frame->m_reader, m_class)) {
            return 0;
        }
        if (m_class.m_name.isEmpty()) {
            p_found = 0;
            return 1;
        }
        if (!readPart(part) || !enter(part, m_class.m_structure)) {
            return 0;
        }
        m_frame->m_class = place;
        return 1;
    }
    bool_t leaveObject() override { return leave(); }

    bool_t enterArray(const String& p_name, bool_t& p_found, uint32_t) override {
        BinaryReader part;
        if (!open(p_name, FieldKind::RECORD_ARRAY, p_found) || !p_found) {
            return !m_broken;
        }
        uint64_t count = 0;
        if (!readPart(part) || !part.readCount(count, 1) || !enter(part, 0)) {
            return 0;
        }
        m_frame->m_count = static_cast<uint32_t>(count);
        return 1;
    }
    bool_t leaveArray(uint32_t) override { return leave(); }

    bool_t enterArrayElement(uint32_t p_index, String& p_typeName) override {
        Frame& frame = *m_frame;
        if (p_index >= frame.m_count) {
            return 0;
        }
        if (p_index < frame.m_next) {
            frame.m_reader = frame.m_fields;
            frame.m_next = 0;
        }
        BinaryReader part;
        for (; frame.m_next < p_index; frame.m_next++) {
            if (!m_heads.readType(frame.m_reader, m_type) ||
                (!m_type.m_name.isEmpty() && !frame.m_reader.readPart(part))) {
                return 0;
            }
        }
        if (!m_heads.readType(frame.m_reader, m_type)) {
            return 0;
        }
        frame.m_next++;
        p_typeName = m_type.m_name;
        part = BinaryReader();
        return (p_typeName.isEmpty() || frame.m_reader.readPart(part)) &&
               enter(part, p_typeName.isEmpty() ? 0 : m_type.m_structure);
    }
    bool_t leaveArrayElement() override { return leave(); }

    bool_t readStringRef(const String& p_name, uint32_t&, String*& p_value, uint32_t) override {
        if (!find(p_name)) {
            return !m_broken;
        }
        BinaryReader& reader = m_frame->m_reader;
        uint64_t present = 1;
        if (m_head->m_kind != FieldKind::STRING && m_head->m_kind != FieldKind::STRING_REF) {
            return refuse(p_name);
        }
        if (m_head->m_kind == FieldKind::STRING_REF && !reader.readNumber(present)) {
            return 0;
        }
        String text;
        if (present != 0 && !reader.readText(text)) {
            return 0;
        }
        p_value = present != 0 ? new String(text) : nullptr;
        return 1;
    }
    bool_t readBool(const String& p_name, uint32_t&, bool_t& p_value, uint32_t) override {
        return readNumber(p_name, p_value);
    }
    bool_t readEnum(const String& p_name, uint32_t&, uint32_t& p_value, EnumerationConverter) override {
        return readNumber(p_name, p_value);
    }
    bool_t readInt32(const String& p_name, uint32_t&, int32_t& p_value, EnumerationConverter) override {
        return readNumber(p_name, p_value);
    }
    bool_t readUInt32(const String& p_name, uint32_t&, uint32_t& p_value, EnumerationConverter) override {
        return readNumber(p_name, p_value);
    }
    bool_t readInt64(const String& p_name, uint32_t&, int64_t& p_value, EnumerationConverter) override {
        return readNumber(p_name, p_value);
    }
    bool_t readUInt64(const String& p_name, uint32_t&, uint64_t& p_value, EnumerationConverter) override {
        return readNumber(p_name, p_value);
    }
    bool_t readFloat(const String& p_name, uint32_t&, float& p_value, EnumerationConverter) override {
        return readNumber(p_name, p_value);
    }
    bool_t readDouble(const String& p_name, uint32_t&, double& p_value, EnumerationConverter) override {
        return readNumber(p_name, p_value);
    }
    bool_t readString(const String& p_name, uint32_t&, String& p_value, EnumerationConverter) override {
        if (!find(p_name)) {
            return !m_broken;
        }
        return m_head->m_kind == FieldKind::STRING ? m_frame->m_reader.readText(p_value) : refuse(p_name);
    }

    bool_t readStringArray(const String& p_name, uint32_t&, Array<String>& p_value, uint32_t) override {
        uint64_t count = 0;
        if (!openItems(p_name, FieldKind::STRING_ARRAY, 1, count)) {
            return !m_broken;
        }
        if (!resizeExactly(p_value, count)) {
            return 0;
        }
        for (uint64_t i = 0; i < count; i++) {
            if (!m_frame->m_reader.readText(p_value[i])) {
                return 0;
            }
        }
        return 1;
    }
    bool_t readFloatArray(const String& p_name, uint32_t&, Array<float>& p_value, uint32_t) override {
        return readItems(p_name, FieldKind::FLOAT_ARRAY, p_value);
    }
    bool_t readDoubleArray(const String& p_name, uint32_t&, Array<double>& p_value, uint32_t) override {
        return readItems(p_name, FieldKind::DOUBLE_ARRAY, p_value);
    }
    bool_t readUInt32Array(const String& p_name, uint32_t&, Array<uint32_t>& p_value, uint32_t) override {
        return readItems(p_name, FieldKind::UINT32_ARRAY, p_value);
    }
    bool_t readEnumArray(const String& p_name, uint32_t&, Array<uint32_t>& p_value, EnumerationConverter) override {
        uint64_t count = 0;
        if (!openItems(p_name, FieldKind::ENUM_ARRAY, 1, count)) {
            return !m_broken;
        }
        if (!resizeExactly(p_value, count)) {
            return 0;
        }
        for (uint64_t i = 0; i < count; i++) {
            uint64_t item = 0;
            if (!m_frame->m_reader.readNumber(item) || item > UINT32_MAX) {
                return 0;
            }
            p_value[i] = static_cast<uint32_t>(item);
        }
        return 1;
    }

    void release_This() {
        DeserializerLevel<Interface>::release_This();
        deinitialize();
    }

private:
    struct Frame {
        /// All fields or elements of what was entered.
        BinaryReader m_fields;
        /// What has not been read yet.
        BinaryReader m_reader;
        /// What its fields are.
        typename Heads::Fields m_heads = {};
        /// Of an array: number of elements, and the next one.
        uint32_t m_count = 0;
        uint32_t m_next = 0;
        /// Where the class of an object stands; null for anything else.
        const uint8_t* m_class = nullptr;
    };

    /// Of the innermost object, empty outside of any. Mostly it is the one that was read last.
    const ClassHead& getClass() const {
        uint32_t depth = m_depth;
        while (depth != 0 && m_frames[depth].m_class == nullptr) {
            depth--;
        }
        const uint8_t* place = m_frames[depth].m_class;
        if (place != m_classPlace) {
            forgetClass();
            if (place != nullptr) {
                BinaryReader reader(place, m_frames[0].m_fields.m_end);
                m_heads.readClass(reader, m_class);
                m_classPlace = place;
            }
        }
        return m_class;
    }
    void forgetClass() const {
        m_class.m_name.clear();
        m_class.m_guidText.clear();
        m_classPlace = nullptr;
    }
    size_t readRows(const FieldRow* p_rows, void* const* p_values, size_t p_count) override {
        Frame& frame = *m_frame;
        BinaryReader reader = frame.m_reader;
        size_t done = 0;
        for (; done < p_count && !reader.isAtEnd(); done++) {
            const typename Heads::Head* head = m_heads.readField(reader, frame.m_heads);
            if (head == nullptr || !head->isRow(p_rows[done]) ||
                !readRowValue(reader, p_rows[done].m_kind, p_values[done])) {
                break;
            }
            frame.m_reader.m_place = reader.m_place;
        }
        return done;
    }

    /// Looks for the field; m_head is its head then, and the frame's reader stands at its value. False without such a
    /// field, and with m_broken set where the bytes are wrong.
    bool find(const String& p_name) {
        Frame& frame = *m_frame;
        BinaryReader& reader = frame.m_reader;
        m_broken = 0;
        if (!reader.isAtEnd()) {
            const uint8_t* start = reader.m_place;
            m_head = m_heads.readField(reader, frame.m_heads);
            if (m_head == nullptr) {
                m_broken = 1;
                return false;
            }
            if (m_head->is(p_name)) {
                return true;
            }
            reader.m_place = start;
        }
        return search(p_name);
    }
    bool search(const String& p_name) {
        Frame& frame = *m_frame;
        const BinaryReader start = frame.m_reader;
        if (findBefore(p_name, frame.m_reader.m_end)) {
            return true;
        }
        if (!m_broken) {
            frame.m_reader = frame.m_fields;
            if (findBefore(p_name, start.m_place)) {
                return true;
            }
            frame.m_reader = start;
        }
        return false;
    }
    bool findBefore(const String& p_name, const uint8_t* p_end) {
        Frame& frame = *m_frame;
        while (frame.m_reader.m_place < p_end) {
            m_head = m_heads.readField(frame.m_reader, frame.m_heads);
            if (m_head == nullptr) {
                m_broken = 1;
                return false;
            }
            if (m_head->is(p_name)) {
                return true;
            }
            if (!skipValue(frame.m_reader)) {
                m_broken = 1;
                return false;
            }
        }
        return false;
    }
    bool skipValue(BinaryReader& p_reader) {
        if (m_head->m_kind != FieldKind::OBJECT) {
            return p_reader.skipPlainValue(m_head->m_kind);
        }
        bool null = false;
        return m_heads.skipClass(p_reader, null) && (null || p_reader.skipPlainValue(FieldKind::RECORD));
    }

    /// Finds a field that can be entered.
    bool open(const String& p_name, FieldKind p_kind, bool_t& p_found) {
        p_found = find(p_name);
        if (p_found && m_head->m_kind != p_kind) {
            p_found = 0;
            m_broken = !refuse(p_name);
        }
        return !m_broken;
    }
    bool openItems(const String& p_name, FieldKind p_kind, size_t p_itemSize, uint64_t& p_count) {
        bool_t found = 0;
        if (!open(p_name, p_kind, found) || !found) {
            return false;
        }
        m_broken = !m_frame->m_reader.readCount(p_count, p_itemSize);
        return !m_broken;
    }
    bool readPart(BinaryReader& p_part) { return m_frame->m_reader.readPart(p_part); }
    bool enter(const BinaryReader& p_part, uint32_t p_structure) {
        if (!m_frames.reach(m_depth + 1)) {
            return false;
        }
        m_frame = &m_frames[++m_depth];
        Frame& frame = *m_frame;
        frame.m_fields = p_part;
        frame.m_reader = p_part;
        frame.m_heads = m_heads.getFields(p_structure);
        frame.m_count = 0;
        frame.m_next = 0;
        frame.m_class = nullptr;
        return true;
    }
    bool leave() {
        if (m_depth == 0) {
            return false;
        }
        m_frame = &m_frames[--m_depth];
        return true;
    }
    bool_t refuse(const String& p_name) const {
        reportOtherKind(p_name, m_head->m_kind);
        return 0;
    }
    template <typename T> bool_t readNumber(const String& p_name, T& p_value) {
        if (!find(p_name)) {
            return !m_broken;
        }
        return readStoredNumber(m_frame->m_reader, p_name, m_head->m_kind, p_value);
    }
    template <typename T> bool_t readItems(const String& p_name, FieldKind p_kind, Array<T>& p_value) {
        uint64_t count = 0;
        if (!openItems(p_name, p_kind, sizeof(T), count)) {
            return !m_broken;
        }
        return resizeExactly(p_value, count) && m_frame->m_reader.readBytes(p_value.getData(), count * sizeof(T));
    }

    Heads m_heads;
    FrameStack<Frame> m_frames;
    uint32_t m_depth = 0;
    /// The innermost one.
    Frame* m_frame = &m_frames[0];
    bool_t m_broken = 0;
    /// Of the field that was found last.
    const typename Heads::Head* m_head = nullptr;
    /// The class that was read last, and where it stands.
    mutable ClassHead m_class;
    mutable const uint8_t* m_classPlace = nullptr;
    ClassHead m_type;
};

} // namespace zyr
