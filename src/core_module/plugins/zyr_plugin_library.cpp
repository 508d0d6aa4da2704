#include "core_module/plugins/zyr_plugin_library.h"

#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"

#include <dlfcn.h>

namespace zyr {

bool_t PluginLibrary::open(void* p_handle) {
    if (p_handle == nullptr) {
        ZYR_LOG_WARN("Library handle is NULL, cannot take over plugin module");
        return 0;
    }
    if (m_handle != nullptr) {
        ZYR_LOG_WARN("Plugin module has a library already");
        return 0;
    }
    String reason;
    PluginExports exports;
    if (!exports.lookUp(p_handle, reason)) {
        ZYR_LOG_WARN("Unable to take over plugin module: %s", reason.getData());
        return 0;
    }
    m_handle = p_handle;
    m_exports = exports;
    return 1;
}

void PluginLibrary::close() {
    if (m_handle != nullptr && !m_initialized) {
        dlclose(m_handle);
    }
    m_handle = nullptr;
    m_exports = PluginExports();
    m_initialized = 0;
    m_classes.clear();
}

bool_t PluginLibrary::initialize(ApplicationData* p_applicationData) {
    if (m_handle == nullptr || p_applicationData == nullptr) {
        ZYR_LOG_WARN("%s is NULL, cannot initialize plugin module",
                     m_handle == nullptr ? "Library handle" : "Application data");
        return 0;
    }
    // The registry keeps the order of registration: what stands behind the present entries afterwards is the module's.
    const size_t size = p_applicationData->m_objectAllocatorsByGUID.getSize();
    m_initialized = 1;
    const bool_t result = m_exports.m_initialize(p_applicationData);
    const ScopedReadLock lock(p_applicationData->m_objectAllocatorLock);
    size_t index = 0;
    auto end = p_applicationData->m_objectAllocatorsByGUID.end();
    for (auto it = p_applicationData->m_objectAllocatorsByGUID.begin(); it != end; ++it, ++index) {
        if (index >= size) {
            m_classes.pushBack(it->m_first);
        }
    }
    return result;
}

void PluginLibrary::enumPublicObjects(const GUID_t& p_parent, IListOfObjects* p_objects) const {
    for (const Pair<GUID_t, String>& key : m_classes) {
        const Ref<IObject> object = Ref<IObject>::adopt(zyr_createObjectFromGUIDAndTypeName(key.m_first, key.m_second));
        if (object && object->findClassGUID(p_parent)) {
            p_objects->pushBack(object.get());
        }
    }
}

} // namespace zyr
