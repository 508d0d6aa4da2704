#include "zyr_common/serialization/zyr_record_table.h"

#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/serialization/zyr_record_walker.h"
#include "zyr_common/serialization/zyr_serializer_reserved.h"
#include "zyr_common/variable/zyr_variable_reference.h"

namespace zyr {

/// The key of a field, and where deserializers found it last.
namespace {

/// The types whose fields can be written and read beside others.
FieldRowKindEnum getFieldRowKind(const RecordFieldKind* p_kind) {
    const struct {
        const RecordFieldKind* m_kind;
        FieldRowKindEnum m_row;
    } KINDS[] = {{zyr_getRecordFieldKind<bool_t>(), ZYR_FIELD_ROW_BOOL},
                 {zyr_getRecordFieldKind<int32_t>(), ZYR_FIELD_ROW_INT32},
                 {zyr_getRecordFieldKind<uint32_t>(), ZYR_FIELD_ROW_UINT32},
                 {zyr_getRecordFieldKind<int64_t>(), ZYR_FIELD_ROW_INT64},
                 {zyr_getRecordFieldKind<uint64_t>(), ZYR_FIELD_ROW_UINT64},
                 {zyr_getRecordFieldKind<float>(), ZYR_FIELD_ROW_FLOAT},
                 {zyr_getRecordFieldKind<double>(), ZYR_FIELD_ROW_DOUBLE},
                 {zyr_getRecordFieldKind<String>(), ZYR_FIELD_ROW_STRING},
                 {zyr_getRecordFieldKind<GUID_t>(), ZYR_FIELD_ROW_GUID},
                 {zyr_getRecordFieldKind<WordEnumeration>(), ZYR_FIELD_ROW_ENUM},
                 {zyr_getRecordFieldKind<ByteEnumeration>(), ZYR_FIELD_ROW_ENUM8}};
    for (const auto& kind : KINDS) {
        if (kind.m_kind == p_kind) {
            return kind.m_row;
        }
    }
    return ZYR_FIELD_ROW_OTHER;
}

} // namespace

/// No more than a row, so that an array of sites is one of rows.
struct RecordTable::Site : FieldRow {
    /// Whether the key is the first word of a dotted path. Keys have no period, so that the path need not be cut first;
    /// most keys differ from it in their first byte or where it has its period.
    bool isRootOf(const char* p_path, size_t p_length) const {
        const char* key = m_key.getData();
        const size_t length = m_key.getLengthInBytes();
        return length <= p_length && *key == *p_path && (length == p_length || p_path[length] == '.') &&
               (length <= 1 || memcmp(key, p_path, length) == 0);
    }
};

// Made at the first use; of two threads that make them at once, one throws its own away. Each record asks for them, so
// that the making stands apart.
inline RecordTable::Site* RecordTable::getSites() {
    const auto makeSites = [this]() __attribute__((noinline)) {
        const PermanentScope scope;
        Site* made = new Site[m_count];
        for (size_t i = 0; i < m_count; ++i) {
            made[i].m_key = m_rows[i].m_key;
            made[i].m_kind = getFieldRowKind(m_rows[i].m_kind);
        }
        Site* sites = nullptr;
        if (m_sites.compare_exchange_strong(sites, made, std::memory_order_acq_rel)) {
            return made;
        }
        delete[] made;
        return sites;
    };
    Site* sites = m_sites.load(std::memory_order_acquire);
    return sites != nullptr ? sites : makeSites();
}

bool_t RecordTable::read(void* p_record, IDeserializer* p_deserializer) {
    void* fields[c_maximum];
    m_locate(p_record, fields);
    Site* sites = getSites();
    static_assert(sizeof(Site) == sizeof(FieldRow));
    IDeserializerReserved* reserved = p_deserializer->isBinaryFormat() ? zyr_findReserved(p_deserializer) : nullptr;
    for (size_t i = 0; i < m_count; ++i) {
        if (reserved != nullptr && sites[i].m_kind != ZYR_FIELD_ROW_OTHER) {
            i += reserved->readFields(&sites[i], &fields[i], m_count - i);
            if (i == m_count) {
                break;
            }
        }
        const RecordRow& row = m_rows[i];
        if (!row.m_kind->m_read(p_deserializer, sites[i].m_key, sites[i].m_cache, fields[i], row.m_converter)) {
            return 0;
        }
    }
    return 1;
}

bool_t RecordTable::write(void* p_record, ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass) {
    void* fields[c_maximum];
    m_locate(p_record, fields);
    const Site* sites = getSites();
    if (p_headerPass) {
        bool_t done = 1;
        for (size_t i = 0; i < m_count && done; ++i) {
            bool_t result = 1;
            done =
                !m_rows[i].m_declared || m_rows[i].m_kind->m_declare(p_serializer, sites[i].m_key, fields[i], result);
        }
        return done;
    }
    const bool binary = p_serializer->isBinaryFormat() != 0;
    const bool elements = p_firstPass == 0;
    ISerializerReserved* reserved = binary ? zyr_findReserved(p_serializer) : nullptr;
    for (size_t i = 0; i < m_count; ++i) {
        if (reserved != nullptr && sites[i].m_kind != ZYR_FIELD_ROW_OTHER) {
            i += reserved->writeFields(&sites[i], &fields[i], m_count - i);
            if (i == m_count) {
                break;
            }
        }
        const RecordRow& row = m_rows[i];
        if ((binary || row.m_element == elements) &&
            !row.m_kind->m_write(p_serializer, sites[i].m_key, fields[i], row.m_attribute, row.m_converter)) {
            return 0;
        }
    }
    return 1;
}

VariableReference* RecordTable::find(void* p_record, const String& p_path, bool_t& p_known) {
    const char* path = p_path.getData();
    const size_t length = p_path.getLengthInBytes();
    const Site* sites = getSites();
    size_t i = 0;
    while (i < m_count && !sites[i].isRootOf(path, length)) {
        ++i;
    }
    p_known = i < m_count;
    if (!p_known) {
        return nullptr;
    }
    void* fields[c_maximum];
    m_locate(p_record, fields);
    const RecordFieldKind& kind = *m_rows[i].m_kind;
    const size_t root = sites[i].m_key.getLengthInBytes();
    if (root + 1 < length) {
        WrappedString rest;
        rest.bindData(path + root + 1, length - root - 1);
        return kind.m_find(fields[i], rest);
    }
    return kind.m_type != ZYR_VARIABLE_NONE ? new VariableReference(kind.m_type, fields[i]) : nullptr;
}

} // namespace zyr
