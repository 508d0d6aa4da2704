#include "zyr_common/implementation/zyr_object_state.h"

#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/object/zyr_object.h"
#include "zyr_common/variable/zyr_variable_value.h"

namespace zyr {

ObjectState::ObjectState() = default;
ObjectState::~ObjectState() = default;

bool_t ObjectState::copy(IObject* p_self, const IObject* p_src) {
    IObject* object = p_self->getTLIObject();
    // The instances of a template share their GUID.
    if (p_src == nullptr || !p_src->findClassGUID(object->getClassGUID()) ||
        p_src->getClassTemplateTypeName() != object->getClassTemplateTypeName()) {
        ZYR_LOG_WARN("Unable to copy object: the source is not of class %s", object->getClassName().getData());
        return 0;
    }
    if (p_src->getTLIObject() == object) {
        return 1; // It would be cleared before it is read.
    }
    // This object may be the only one that holds the source, and lets go of what it holds first.
    const Ref<IObject> source = Ref<IObject>::share(const_cast<IObject*>(p_src));
    object->copyUnsafe(source.get());
    return 1;
}

bool_t ObjectState::queryInterfaceObject(const IObject* p_self, const GUID_t& p_classGUID, IObject** p_object) {
    *p_object = p_self->getTLIObject()->findInterfaceObjectByClassGUID(p_classGUID);
    if (*p_object == nullptr) {
        return 0;
    }
    (*p_object)->addRef();
    return 1;
}

bool_t ObjectState::setVariableValue(IObject* p_self, const String& p_name, VariableValue* p_value) {
    return zyr_applyVariableValue(p_value, p_self->getTLIObject()->getVariableReference(p_name));
}

bool_t ObjectState::setVariableValueByPath(IObject* p_self, const String& p_path, VariableValue* p_value) {
    return zyr_applyVariableValue(p_value, p_self->getTLIObject()->getVariableReferenceByPath(p_path));
}

void ObjectState::collectGUIDs(List<GUID_t>& p_guids) const {
    if (!m_guid.isNull()) {
        p_guids.pushBack(m_guid);
    }
}

void ObjectState::replaceGUID(HashMap<GUID_t, GUID_t>& p_replacements) {
    auto it = p_replacements.find(m_guid);
    if (it != p_replacements.end()) {
        m_guid = it->m_second;
    }
}

void ObjectState::setFakeCounterGUID(const IObject* p_self) {
    static volatile uint64_t counter = 0;
    m_guid = p_self->getClassGUID();
    const uint64_t number = zyr_interlockedIncrementUInt64(&counter);
    for (size_t i = 0; i < 8; i++) {
        m_guid.m_data[15 - i] = static_cast<uint8_t>(number >> (8 * i));
    }
}

uint32_t ObjectState::getRefCount() const {
    return __atomic_load_n(&m_refCount, __ATOMIC_RELAXED);
}

void ObjectState::addRef() {
    zyr_interlockedIncrementUInt32(&m_refCount);
}

bool_t ObjectState::release() {
    return zyr_interlockedDecrementUInt32(&m_refCount) == 0xFFFFFFFF;
}

void ObjectState::setDeferredFile(const String& p_path) {
    // The path may be the present one.
    m_deferredFile = Ref<String>::adopt(p_path.isEmpty() ? nullptr : new String(p_path));
}

void ObjectState::setCompressionInfo(ICompressionInfo* p_compressionInfo) {
    m_compressionInfo = Ref<ICompressionInfo>::share(p_compressionInfo);
}

ICompressionInfo* ObjectState::getCompressionInfo(bool_t p_addReference) const {
    return m_compressionInfo.get(p_addReference);
}

void ObjectState::init() {
    m_guid = GUID_t();
    m_dirty = 0;
    m_deletePending = 0;
    m_deferredFileReadOnly = 0;
}

void ObjectState::releaseOwned() {
    m_deferredFile.clear();
    m_compressionInfo.clear();
}

void ObjectState::copyFrom(const IObject* p_src) {
    const String* deferredFile = p_src->getDeferredFile();
    m_guid = p_src->getGUID();
    m_dirty = p_src->isDirty();
    setDeferredFile(deferredFile != nullptr ? *deferredFile : String::getConstEmpty());
    m_deferredFileReadOnly = p_src->isDeferredFileReadOnly();
    setCompressionInfo(p_src->getCompressionInfo(0));
}

} // namespace zyr
