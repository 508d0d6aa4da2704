#include "core_module/plugins/zyr_plugin_module.h"

#include "core_module/object_containers/zyr_list_of_objects_implementation.h"

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
    p_applicationData->m_objectAllocatorLock.readLock();
    size_t index = 0;
    auto end = p_applicationData->m_objectAllocatorsByGUID.end();
    for (auto it = p_applicationData->m_objectAllocatorsByGUID.begin(); it != end; ++it, ++index) {
        if (index >= size) {
            m_classes.pushBack(it->m_first);
        }
    }
    p_applicationData->m_objectAllocatorLock.unlock();
    return result;
}

void PluginLibrary::enumPublicObjects(const GUID_t& p_parent, IListOfObjects* p_objects) const {
    for (const Pair<GUID_t, String>& key : m_classes) {
        IObject* object = zyr_createObjectFromGUIDAndTypeName(key.m_first, key.m_second);
        if (object == nullptr) {
            continue;
        }
        if (object->findClassGUID(p_parent)) {
            p_objects->pushBack(object);
        }
        object->release();
    }
}

bool_t readPluginText(const char* (*p_function)(), String& p_text) {
    p_text = p_function != nullptr ? p_function() : nullptr;
    return p_function != nullptr;
}

void appendListItems(const char* p_text, List<String>& p_items) {
    while (*p_text != 0) {
        const size_t size = strcspn(p_text, ",");
        size_t first = strspn(p_text, " ");
        size_t last = size;
        while (last > first && p_text[last - 1] == ' ') {
            last--;
        }
        if (last > first) {
            p_items.pushBack(String(p_text + first, last - first));
        }
        p_text += size + (p_text[size] != 0);
    }
}

IListOfObjects* createListOfObjects() {
    return new ListOfObjects;
}

} // namespace zyr
