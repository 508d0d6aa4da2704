#include "core_module/plugins/zyr_plugin_module_level.h"

#include "core_module/object_containers/zyr_list_of_objects_level.h"
#include "core_module/zyr_core_class.h"

#include <cstring>

namespace zyr {

// Replaces the text by that of the function and gives true; without a library clears it and gives false.
static bool_t readPluginText(const char* (*p_function)(), String& p_text) {
    p_text = p_function != nullptr ? p_function() : nullptr;
    return p_function != nullptr;
}

// Appends the items of a list that is separated by commas, without blanks around them.
static void appendListItems(const char* p_text, List<String>& p_items) {
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

bool_t PluginModuleLevel::getName(String& p_name) const {
    return readPluginText(exports().m_getName, p_name);
}

uint64_t PluginModuleLevel::getVersion() const {
    return exports().m_getVersion != nullptr ? exports().m_getVersion() : 0;
}

bool_t PluginModuleLevel::getLongName(String& p_longName) const {
    return readPluginText(exports().m_getLongName, p_longName);
}

bool_t PluginModuleLevel::getPluginGUID(GUID_t& p_guid) const {
    String text;
    const bool_t present = readPluginText(exports().m_getGUID, text);
    p_guid = present ? GUID_t_fromString(text.getData()) : GUID_t();
    return present;
}

bool_t PluginModuleLevel::getDescription(String& p_description) const {
    return readPluginText(exports().m_getDescription, p_description);
}

bool_t PluginModuleLevel::getNamespace(String& p_namespace) const {
    return readPluginText(exports().m_getNamespace, p_namespace);
}

bool_t PluginModuleLevel::getDependenciesComponentModules(List<String>& p_modules) const {
    String text;
    const bool_t present = readPluginText(exports().m_getDependenciesComponentModules, text);
    appendListItems(text.getData(), p_modules);
    return present;
}

bool_t PluginModuleLevel::getDependenciesPluginModules(List<GUID_t>& p_modules) const {
    String text;
    List<String> guids;
    const bool_t present = readPluginText(exports().m_getDependenciesPluginModules, text);
    appendListItems(text.getData(), guids);
    for (const String& guid : guids) {
        p_modules.pushBack(GUID_t_fromString(guid.getData()));
    }
    return present;
}

void PluginModuleLevel::deinitialize() {
    if (exports().m_deinitialize != nullptr) {
        exports().m_deinitialize();
    }
}

bool_t PluginModuleLevel::isPluginExtensionSupported(const String& p_extension, int* p_version) {
    return exports().m_isExtensionSupported != nullptr &&
           exports().m_isExtensionSupported(p_extension.getData(), p_version);
}

void* PluginModuleLevel::getProcAddress(const String& p_name) {
    return exports().m_getProcAddress != nullptr ? exports().m_getProcAddress(p_name.getData()) : nullptr;
}

IListOfObjects* PluginModuleLevel::enumPublicObjects(const GUID_t& p_parent) {
    IListOfObjects* objects = new ListOfObjects;
    m_library.enumPublicObjects(p_parent, objects);
    return objects;
}

ZYR_DEFINE_CORE_CLASS(PluginModule)

} // namespace zyr
