/// The structure of the zbf format: structures and their fields are declared once, in a table behind the values, and a
/// value carries only the number of its field.
#pragma once

#include "core_module/serializers/zyr_byte_buffer.h"
#include "core_module/serializers/zyr_field_kind.h"
#include "core_module/serializers/zyr_field_rows.h"
#include "core_module/serializers/zyr_frame_stack.h"
#include "core_module/serializers/zyr_name_pattern.h"
#include "core_module/serializers/zyr_payload_front.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/containers/zyr_hash_map.h"

namespace zyr {

/// Writes what stands around values.
class ZbfOutput {
public:
    ZbfOutput() { m_buffer.close(); }
    ~ZbfOutput() { clear(); }

    bool begin();
    void end();
    /// Appends the table where nothing is open any more.
    bool complete();

    /// Begins a field and gives the place of its value with room for so many bytes, null where there is no memory. What
    /// is put there counts when the buffer is told where it ends. A field that was not declared is declared now.
    uint8_t* field(const String& p_name, FieldKind p_kind, size_t p_room) {
        const uint32_t number = findField(p_name, p_kind);
        uint8_t* target = m_buffer.reserve(c_numberSize + p_room);
        return target != nullptr ? putBase128(target, number) : nullptr;
    }
    bool declare(const String& p_name, FieldKind p_kind, const String& p_typeName);
    /// Puts what stands in front of the value of a row, for which there must be so much room. Gives the place of the
    /// value, null for a row that must go through its operation.
    static constexpr size_t c_rowHeadRoom = c_numberSize;
    uint8_t* putRowHead(uint8_t* p_target, const FieldRow& p_row) {
        if (m_expected == m_expectedEnd) {
            return nullptr;
        }
        if (m_expected->m_row != &p_row) {
            // No field is of the kind NONE.
            if (!m_expected->is(p_row.m_key, getRowKind(p_row.m_kind))) {
                return nullptr;
            }
            m_expected->m_row = &p_row;
        }
        return putBase128(p_target, m_expected++->m_number);
    }
    bool beginStructure(const String& p_typeName);
    bool endStructure();

    bool beginRecord(const String& p_name);
    bool beginObject(const String& p_name, const String& p_className, const String& p_guidText);
    bool nullObject(const String& p_name) { return putNumber(findField(p_name, FieldKind::OBJECT)) && putNumber(0); }
    bool beginArray(const String& p_name);
    bool beginElement(const String& p_typeName);
    bool nullElement() { return putNumber(0); }
    bool leave();

    ByteBuffer m_buffer;

private:
    struct Field {
        bool is(const String& p_name, FieldKind p_kind) const { return m_kind == p_kind && m_name.is(p_name); }

        NamePattern m_name;
        FieldKind m_kind;
        uint32_t m_number;
        /// Number of the structure of a record.
        uint32_t m_structure;
        /// The row that was found to be this field, so that names need not be compared again; null for none.
        const FieldRow* m_row;
    };
    struct Structure {
        String m_name;
        Array<Field> m_fields;
    };
    struct Class {
        uint32_t m_structure;
        String m_guidText;
    };
    struct Frame {
        size_t m_place;
        size_t m_width;
        size_t m_minimum;
        uint32_t m_structure;
        /// The field that is expected next, while another frame is the innermost one.
        uint32_t m_next;
    };

    /// Until begin is called there is not even the outermost structure.
    bool isBegun() const { return !m_structures.isEmpty(); }
    void clear();
    bool putNumber(uint64_t p_number);
    /// Leaves room for the length of what begins here, which takes that many bytes or more.
    bool enter(size_t p_minimum, uint32_t p_structure);
    /// The structure of the innermost frame.
    Structure& getStructure() { return *m_structures[m_frames[m_depth].m_structure]; }
    /// Sets the field of that structure that is expected next.
    void expect(uint32_t p_number) {
        Array<Field>& fields = getStructure().m_fields;
        m_expected = fields.begin() + p_number;
        m_expectedEnd = fields.end();
    }
    /// Gives the number of the field in the structure of the innermost frame, which is added if it is not there.
    uint32_t findField(const String& p_name, FieldKind p_kind) {
        // Values are mostly written in the order of the declaration.
        if (m_expected != m_expectedEnd && m_expected->is(p_name, p_kind)) {
            return m_expected++->m_number;
        }
        return searchField(p_name, p_kind);
    }
    uint32_t searchField(const String& p_name, FieldKind p_kind);
    uint32_t addField(const String& p_name, FieldKind p_kind);
    uint32_t findStructure(const String& p_typeName);
    uint32_t addStructure(const String& p_typeName);
    const char* keepText(const String& p_text);

    FrameStack<Frame> m_frames;
    uint32_t m_depth = 0;
    /// In the fields of the innermost frame, which move when one is added.
    Field* m_expected = nullptr;
    const Field* m_expectedEnd = nullptr;
    Array<Structure*> m_structures;
    HashMap<String, uint32_t> m_structureNumbers;
    Array<Class*> m_classes;
    Array<char*> m_texts;
    /// The structure and class found last, which is mostly the one asked for next.
    uint32_t m_lastStructure = 0;
    uint32_t m_lastClass = 0;
};

} // namespace zyr
