// The factories that give a list of objects.
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"

namespace zyr {

IListOfObjects* zyr_createObjectsFromParentGUID(const GUID_t& p_parent) {
    IListOfObjects* rtnList = zyr_createObject<IListOfObjects>();
    ZYR_ASSERT(rtnList != NULL);
    ApplicationData* appData = zyr_getApplicationData();
    const ScopedReadLock lock(appData->m_objectAllocatorLock);
    auto end = appData->m_objectAllocatorsByGUID.end();
    for (auto it = appData->m_objectAllocatorsByGUID.begin(); it != end; ++it) {
        ZYR_ASSERT(it->m_second != NULL);
        IObject* rtnObject = it->m_second();
        ZYR_ASSERT(rtnObject != NULL);
        if (rtnObject->findClassGUID(p_parent) && rtnObject->getClassGUID() != p_parent) {
            rtnList->pushBack(rtnObject);
        }
        rtnObject->release();
    }
    return rtnList;
}

IListOfObjects* zyr_createObjectsFromParentName(const String& p_name) {
    if (zyr_getApplicationData() == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot create objects from name %s. Return NULL", p_name.getData());
        return nullptr;
    }
    // The object is never released: callers rely on its class staying in use.
    IObject* object = zyr_createObjectFromName(p_name);
    return object != nullptr ? zyr_createObjectsFromParentGUID(object->getClassGUID()) : nullptr;
}

} // namespace zyr
