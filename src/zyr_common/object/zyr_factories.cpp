#include "zyr_common/object/zyr_factories.h"

#include "zyr_common/object/zyr_object.h"

namespace zyr {

const String& zyr_getClassName(const IObject* p_object) {
    return p_object->getClassName();
}

const GUID_t& zyr_getClassGUID(const IObject* p_object) {
    return p_object->getClassGUID();
}

const String& zyr_getClassTemplateTypeName(const IObject* p_object) {
    return p_object->getClassTemplateTypeName();
}

void zyr_releaseObject(IObject* p_object) {
    p_object->release();
}

void addObjectAllocator(ApplicationData& p_applicationData, const IObject* p_object, objectAllocator_FUNC p_allocator) {
    const Pair<GUID_t, String> key(zyr_getClassGUID(p_object), zyr_getClassTemplateTypeName(p_object));
    const ScopedWriteLock lock(p_applicationData.m_objectAllocatorLock);
    p_applicationData.m_objectAllocatorsByName.pushBack(zyr_getClassName(p_object), p_allocator, nullptr);
    p_applicationData.m_objectAllocatorsByGUID.pushBack(key, p_allocator, nullptr);
}

IObject* zyr_createObjectFromName(const String& p_name) {
    ApplicationData* appData = zyr_getApplicationData();
    if (appData == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot create object from name %s. Return NULL", p_name.getData());
        return nullptr;
    }
    const ScopedReadLock lock(appData->m_objectAllocatorLock);
    auto it = appData->m_objectAllocatorsByName.find(p_name);
    if (it == appData->m_objectAllocatorsByName.end()) {
        return nullptr;
    }
    ZYR_ASSERT(it->m_second != NULL);
    IObject* rtnObject = it->m_second();
    ZYR_ASSERT(rtnObject != NULL);
    return rtnObject;
}

IObject* zyr_createObjectFromGUIDAndTypeName(const GUID_t& p_guid, const String& p_typeName) {
    ApplicationData* appData = zyr_getApplicationData();
    if (appData == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot create object from GUID %s. Return NULL",
                     String::newFromGUID(p_guid).getData());
        return nullptr;
    }
    const ScopedReadLock lock(appData->m_objectAllocatorLock);
    // Frames are created this way all the time, and a key would need a copy of the name.
    const uint32_t hash = Hash<GUID_t>()(p_guid) + Hash<String>()(p_typeName);
    const auto* it = appData->m_objectAllocatorsByGUID.findByHash(hash, [&](const Pair<GUID_t, String>& p_key) {
        return p_key.m_first == p_guid && p_key.m_second == p_typeName;
    });
    if (it == nullptr) {
        return nullptr;
    }
    ZYR_ASSERT(it->m_second != NULL);
    IObject* rtnObject = it->m_second();
    ZYR_ASSERT(rtnObject != NULL);
    return rtnObject;
}

void* zyr_createUnknownVariableFromName(const String& p_name) {
    ApplicationData* appData = zyr_getApplicationData();
    if (appData == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot create variable from name %s. Return NULL", p_name.getData());
        return nullptr;
    }
    const ScopedReadLock lock(appData->m_unknownVariableLock);
    auto it = appData->m_unknownVariableAllocators.find(p_name);
    if (it == appData->m_unknownVariableAllocators.end()) {
        return nullptr;
    }
    ZYR_ASSERT(it->m_second != NULL);
    void* rtnVar = it->m_second();
    ZYR_ASSERT(rtnVar != NULL);
    return rtnVar;
}

} // namespace zyr
