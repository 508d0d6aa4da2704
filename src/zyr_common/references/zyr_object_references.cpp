#include "zyr_common/references/zyr_object_references.h"

#include "zyr_common/object/zyr_object.h"
#include "zyr_common/references/zyr_resource_id.h"
#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template class RecordWalker<ObjectNameReference>;
template class RecordWalker<ObjectGUIDReference>;
template class RecordWalker<ObjectInputGUIDReference>;
template class RecordWalker<RankGUIDPair>;
template class RecordWalker<GUIDDigestPair>;
template class RecordWalker<ResourceID>;
template class RecordWalker<NamedResourceID>;

void ObjectNameReference::init_This() {
    m_object = nullptr;
    m_name.clear();
    m_dirty = 1;
}

void ObjectNameReference::release_This() {
    if (m_object != nullptr) {
        m_object->release();
    }
    m_name.clear();
}

void ObjectNameReference::copy_This(const ObjectNameReference& p_src) {
    ObjectNameReference::refObject(nullptr, p_src.m_name);
}

// The old object goes last in both forms: it may be the new one, or own the key that is handed in.
bool_t ObjectNameReference::refObject(IObject* p_object, const String& p_name) {
    IObject* old = m_object;
    m_object = p_object != nullptr ? p_object->addRef() : nullptr;
    if (p_object == nullptr || !p_name.isEmpty()) {
        m_name = p_name;
    }
    if (old != nullptr) {
        old->release();
    }
    setDirty(1);
    return 1;
}

void ObjectGUIDReference::init_This() {
    m_object = nullptr;
    m_guid = GUID_t();
    m_dirty = 1;
}

void ObjectGUIDReference::release_This() {
    if (m_object != nullptr) {
        m_object->release();
    }
    m_guid = GUID_t();
}

void ObjectGUIDReference::copy_This(const ObjectGUIDReference& p_src) {
    ObjectGUIDReference::refObject(nullptr, p_src.m_guid);
}

bool_t ObjectGUIDReference::refObject(IObject* p_object, const GUID_t& p_guid) {
    IObject* old = m_object;
    m_object = p_object != nullptr ? p_object->addRef() : nullptr;
    if (p_object == nullptr || !p_guid.isNull()) {
        m_guid = p_guid;
    }
    if (old != nullptr) {
        old->release();
    }
    setDirty(1);
    return 1;
}

void ObjectGUIDReference::setGUID(const GUID_t& p_guid) {
    m_guid = p_guid;
    m_dirty = 1;
}

bool_t ObjectInputGUIDReference::refObjectInputIndex(IObject* p_object, const GUID_t& p_guid, uint32_t p_inputIndex) {
    bool_t done = refObject(p_object, p_guid);
    m_inputIndex = p_inputIndex;
    return done;
}

} // namespace zyr
