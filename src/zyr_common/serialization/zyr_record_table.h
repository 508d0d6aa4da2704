/// One level of a record as data: a row for each field, and the loops that walk the rows. zyr_record_walker.h makes the
/// rows from the field list, so that a record costs data and hardly any code.
///
/// Thread safe but for the records that are walked, which have one owner at a time.
#pragma once

#include "zyr_common/serialization/zyr_enumeration.h"
#include "zyr_common/variable/zyr_variable_types.h"
#include "zyr_common/zyr_types.h"

#include <atomic>

namespace zyr {

/// What can be done with the fields of one type: RecordFieldIO without its type. p_value is the field itself, wherever
/// it lies in its packed record.
struct RecordFieldKind {
    bool_t (*m_declare)(ISerializer* p_serializer, const String& p_key, void* p_value, bool_t& p_result);
    bool_t (*m_write)(ISerializer* p_serializer, const String& p_key, void* p_value, bool_t p_attribute,
                      EnumerationConverter p_converter);
    bool_t (*m_read)(IDeserializer* p_deserializer, const String& p_key, uint32_t& p_cache, void* p_value,
                     EnumerationConverter p_converter);
    /// Follows the rest of a path into the field; null for all but records.
    VariableReference* (*m_find)(void* p_value, const String& p_path);
    /// The type of a reference to the field, ZYR_VARIABLE_NONE where there can't be one.
    VariableTypeEnum m_type;
};

/// One field. The flags are those of RecordField, where an element is never marked as an attribute.
struct RecordRow {
    const char* m_key;
    const RecordFieldKind* m_kind;
    EnumerationConverter m_converter;
    bool m_element;
    bool m_attribute;
    bool m_declared;
};

/// The rows of one level. One static object for each record, which is never destroyed.
class RecordTable {
public:
    /// The most fields of a level.
    static constexpr size_t c_maximum = 64;
    /// Stores the address of each field of the record, in the order of the rows.
    using Locator = void (*)(void* p_record, void** p_fields);

    /// The rows must outlive the table. Builds nothing yet.
    constexpr RecordTable(const RecordRow* p_rows, size_t p_count, Locator p_locate)
        : m_rows(p_rows), m_count(p_count), m_locate(p_locate), m_sites(nullptr) {}

    /// Reads the fields in order, up to the first failure.
    bool_t read(void* p_record, IDeserializer* p_deserializer);
    /// Writes the fields in order, or declares them in the header pass, up to the first failure.
    bool_t write(void* p_record, ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass);
    /// A reference to what the path reaches, which the caller releases, or null. p_known tells whether the first word
    /// is a key of this level.
    VariableReference* find(void* p_record, const String& p_path, bool_t& p_known);

private:
    /// What is made at the first use and stays: the key as a text, and where deserializers found it last.
    struct Site;
    /// One for each row. Safe on any thread.
    Site* getSites();

    const RecordRow* m_rows;
    size_t m_count;
    Locator m_locate;
    std::atomic<Site*> m_sites;
};

} // namespace zyr
