#include "host/zyr_plugin_listing.h"

#include "zyr_common/object_containers/zyr_list_of_objects.h"
#include "zyr_common/plugins/zyr_plugin_modules.h"
#include "zyr_common/text/zyr_number_text.h"

#include <dlfcn.h>
#include <link.h>

namespace zyr::host {

namespace {

using nlohmann::json;

template <typename Fill> std::string filled(Fill&& p_fill) {
    String text;
    p_fill(text);
    return toText(text);
}

/// Where a plug-in was loaded from.
std::string fileOf(const IPluginModule& p_plugin) {
    const link_map* map = nullptr;
    void* handle = p_plugin.getLibraryHandle();
    return handle != nullptr && dlinfo(handle, RTLD_DI_LINKMAP, &map) == 0 ? map->l_name : "";
}

} // namespace

json listPlugins(Framework& p_framework) {
    json plugins = json::array();
    const IListOfObjects* modules = p_framework.getApplicationData().getPluginModules(0);
    if (modules == nullptr) {
        return plugins;
    }
    for (List<IObject*>::const_iterator it = modules->beginConst(); it != modules->endConst(); ++it) {
        const IPluginModule* plugin = static_cast<const IPluginModule*>(*it);
        GUID_t guid;
        plugin->getPluginGUID(guid);
        List<String> dependencies;
        plugin->getDependenciesComponentModules(dependencies);
        json names = json::array();
        for (List<String>::iterator name = dependencies.begin(); name != dependencies.end(); ++name) {
            names.push_back(toText(*name));
        }
        plugins.push_back(
            {{"name", filled([&](String& p_out) { plugin->getName(p_out); })},
             {"file", fileOf(*plugin)},
             {"long_name", filled([&](String& p_out) { plugin->getLongName(p_out); })},
             {"version", filled([&](String& p_out) { zyr_getVersionString(plugin->getVersion(), p_out); })},
             {"guid", toText(guid)},
             {"description", filled([&](String& p_out) { plugin->getDescription(p_out); })},
             {"namespace", filled([&](String& p_out) { plugin->getNamespace(p_out); })},
             {"component_modules", names}});
    }
    return plugins;
}

} // namespace zyr::host
