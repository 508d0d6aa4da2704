/// What the two binary formats have in front of values.
#pragma once

#include "core_module/serializers/zyr_binary_reader.h"
#include "core_module/serializers/zyr_field_rows.h"
#include "core_module/serializers/zyr_name_pattern.h"
#include "zyr_common/containers/zyr_array.h"

namespace zyr {

/// What stands in front of a field's value.
struct FieldHead {
    const char* m_name;
    size_t m_nameLength;
    FieldKind m_kind;
    /// Number of the structure of a record.
    uint32_t m_structure;
};

/// An object's class, or an element's type: empty names for none.
struct ClassHead {
    String m_name;
    String m_guidText;
    uint32_t m_structure = 0;
    /// What m_name was read from, so that it need not be read again; 0 for nothing.
    uint64_t m_number = 0;
};

inline bool isFieldKind(uint64_t p_kind) {
    return p_kind != 0 && p_kind < NUM_OF_FIELD_KINDS;
}

/// The heads of the raw format: names where they stand.
class RawHeads {
public:
    struct Head : FieldHead {
        bool isRow(const FieldRow& p_row) const { return m_kind == getRowKind(p_row.m_kind) && is(p_row.m_key); }
        bool is(const String& p_name) const {
            return m_nameLength == p_name.getLengthInBytes() && equalNames(m_name, p_name.getData(), m_nameLength);
        }
    };

    /// Gives the fields of the payload.
    bool begin(const void* p_data, size_t p_size, BinaryReader& p_fields);
    void end() {}
    /// The fields of a structure.
    struct Fields {};
    static Fields getFields(uint32_t) { return {}; }
    /// The head is there until the next one is read; null where there is none.
    const Head* readField(BinaryReader& p_reader, const Fields&) {
        BinaryReader name;
        if (p_reader.isAtEnd() || !isFieldKind(*p_reader.m_place)) {
            return nullptr;
        }
        m_head.m_kind = static_cast<FieldKind>(*p_reader.m_place++);
        if (!p_reader.readPart(name)) {
            return nullptr;
        }
        m_head.m_name = reinterpret_cast<const char*>(name.m_place);
        m_head.m_nameLength = name.getRemaining();
        return &m_head;
    }
    bool readClass(BinaryReader& p_reader, ClassHead& p_head) const;
    bool readType(BinaryReader& p_reader, ClassHead& p_head);
    /// Steps over the class of an object; p_null tells that there is none.
    bool skipClass(BinaryReader& p_reader, bool& p_null);

private:
    Head m_head = {};
};

/// The heads of the zbf format: numbers into a table.
class ZbfHeads {
public:
    struct Head : FieldHead {
        bool is(const String& p_name) const { return m_pattern.is(p_name); }
        bool isRow(const FieldRow& p_row) const {
            if (m_row == &p_row) {
                return true;
            }
            const bool same = m_kind == getRowKind(p_row.m_kind) && is(p_row.m_key);
            m_row = same ? &p_row : m_row;
            return same;
        }

        NamePattern m_pattern;
        /// The row that was found to be this field, so that names need not be compared again; null for none.
        mutable const FieldRow* m_row = nullptr;
    };

    bool begin(const void* p_data, size_t p_size, BinaryReader& p_fields);
    void end();
    /// The fields of a structure, which are there until end is called.
    struct Fields {
        const Head* m_first;
        uint64_t m_count;
    };
    Fields getFields(uint32_t p_structure) const {
        const Structure& structure = m_structures[p_structure];
        return {m_fields.begin() + structure.m_firstField, structure.m_numOfFields};
    }
    /// The head is there as long as its structure; null where there is none.
    static const Head* readField(BinaryReader& p_reader, const Fields& p_fields) {
        uint64_t number = 0;
        return p_reader.readNumber(number) && number < p_fields.m_count ? p_fields.m_first + number : nullptr;
    }
    bool readClass(BinaryReader& p_reader, ClassHead& p_head) const;
    bool readType(BinaryReader& p_reader, ClassHead& p_head);
    bool skipClass(BinaryReader& p_reader, bool& p_null);

private:
    /// Texts of the table stay where they are in the payload.
    struct Text {
        const uint8_t* m_place;
        size_t m_length;
    };
    struct Structure {
        Text m_name;
        uint32_t m_firstField;
        uint32_t m_numOfFields;
    };
    struct Class {
        uint32_t m_structure;
        Text m_guid;
    };

    bool readTable(BinaryReader p_table);
    bool readStructure(BinaryReader& p_table);
    bool setText(const Text& p_source, String& p_text) const;

    Array<Structure> m_structures;
    Array<Head> m_fields;
    Array<Class> m_classes;
    const uint8_t* m_end = nullptr;
};

} // namespace zyr
