#include "storage/record_holder.h"

namespace zyr::test {

const HeldKind* findHeldKind(const std::string& p_name) {
    for (const HeldKind& kind : getHeldKinds()) {
        if (kind.m_name == p_name) {
            return &kind;
        }
    }
    return nullptr;
}

void RecordHolder::hold(const HeldKind* p_kind) {
    if (m_record != nullptr) {
        m_kind->m_destroy(m_record);
    }
    m_kind = p_kind;
    m_record = p_kind != nullptr ? p_kind->m_create(*p_kind) : nullptr;
}

bool_t RecordHolder::readSerialized(IDeserializer* p_deserializer) {
    static uint32_t cache = 0;
    String name;
    bool_t found = 0;
    if (!p_deserializer->readString("kind", cache, name, nullptr)) {
        return 0;
    }
    hold(findHeldKind(name.getData()));
    if (m_kind == nullptr || !p_deserializer->enterGroup("record", found) || !found) {
        return 0;
    }
    const bool_t done = m_kind->m_read(m_record, p_deserializer);
    return p_deserializer->leaveGroup() && done;
}

bool_t RecordHolder::writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) {
    const String name = m_kind->m_name.c_str();
    bool_t done = 0;
    bool_t written = 1;
    if (p_headerPass) {
        done = p_serializer->declareString("kind", name, written) && p_serializer->beginHeaderStructure(name) &&
               m_kind->m_write(m_record, p_serializer, 1, written) && p_serializer->endHeaderStructure() &&
               p_serializer->writeHeaderField("record", ZYR_HEADER_FIELD_RECORD, 0, name);
    } else {
        done = p_serializer->writeString("kind", name, 1, 0) && p_serializer->beginStructure("record", 0) &&
               m_kind->m_write(m_record, p_serializer, 0, written) && p_serializer->endStructure();
    }
    p_result = done && written;
    return p_result;
}

} // namespace zyr::test
