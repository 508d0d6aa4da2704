#include "zyr_common/serialization/zyr_record_table.h"

#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/serialization/zyr_serializer.h"
#include "zyr_common/variable/zyr_variable_reference.h"

namespace zyr {

/// The key of a field, and where deserializers found it last.
struct RecordTable::Site {
    /// Whether the key is the first word of a dotted path. Keys have no period, so that the path need not be cut first;
    /// most keys differ from it in their first byte or where it has its period.
    bool isRootOf(const char* p_path, size_t p_length) const {
        const char* key = m_key.getData();
        const size_t length = m_key.getLengthInBytes();
        return length <= p_length && *key == *p_path && (length == p_length || p_path[length] == '.') &&
               (length <= 1 || memcmp(key, p_path, length) == 0);
    }

    String m_key;
    uint32_t m_cache = 0;
};

// Made at the first use; of two threads that make them at once, one throws its own away.
RecordTable::Site* RecordTable::getSites() {
    Site* sites = m_sites.load(std::memory_order_acquire);
    if (sites != nullptr) {
        return sites;
    }
    const PermanentScope scope;
    Site* made = new Site[m_count];
    for (size_t i = 0; i < m_count; ++i) {
        made[i].m_key = m_rows[i].m_key;
    }
    if (m_sites.compare_exchange_strong(sites, made, std::memory_order_acq_rel)) {
        return made;
    }
    delete[] made;
    return sites;
}

bool_t RecordTable::read(void* p_record, IDeserializer* p_deserializer) {
    void* fields[c_maximum];
    m_locate(p_record, fields);
    Site* sites = getSites();
    for (size_t i = 0; i < m_count; ++i) {
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
    const bool_t binary = p_serializer->isBinaryFormat();
    for (size_t i = 0; i < m_count; ++i) {
        const RecordRow& row = m_rows[i];
        bool_t done = 1;
        if (p_headerPass) {
            bool_t result = 1;
            done = !row.m_declared || row.m_kind->m_declare(p_serializer, sites[i].m_key, fields[i], result);
        } else if (binary || row.m_element != (p_firstPass != 0)) {
            done = row.m_kind->m_write(p_serializer, sites[i].m_key, fields[i], row.m_attribute, row.m_converter);
        }
        if (!done) {
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
