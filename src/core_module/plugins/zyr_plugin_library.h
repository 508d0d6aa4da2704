/// The library of a loaded plug-in module.
#pragma once

#include "core_module/plugins/zyr_plugin_exports.h"
#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/containers/zyr_pair.h"
#include "zyr_common/digest/zyr_guid.h"
#include "zyr_common/zyr_types.h"

namespace zyr {

/// The state of a plug-in module. It closes its library at its end, unless the module has been initialized: what an
/// initialized module has handed out (classes, callbacks of other libraries) outlives every object here, so its library
/// stays until the process ends.
class PluginLibrary {
public:
    PluginLibrary() = default;
    PluginLibrary(const PluginLibrary&) = delete;
    PluginLibrary& operator=(const PluginLibrary&) = delete;
    ~PluginLibrary() { close(); }

    bool_t open(void* p_handle);
    void close();
    bool_t initialize(ApplicationData* p_applicationData);
    /// Appends new objects of the classes that the module registered and that derive from the parent, or are it.
    void enumPublicObjects(const GUID_t& p_parent, IListOfObjects* p_objects) const;

    void* m_handle = nullptr;
    PluginExports m_exports;

private:
    bool_t m_initialized = 0;
    List<Pair<GUID_t, String>> m_classes;
};

} // namespace zyr
