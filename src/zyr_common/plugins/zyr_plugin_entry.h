/// The entry points of a plug-in module, out of one description.
///
///     static constexpr zyr::PluginDescription DESCRIPTION = {
///         .m_name = "Mine",
///         .m_longName = "My plug-in",
///         .m_guid = "...",                 // fresh and random
///         .m_description = "What it is for",
///         .m_namespace = "MINE",
///         .m_word = "mine",
///         .m_register = &zyr::registerPluginClasses<MyEncoder, MyEncoderContext>,
///     };
///     ZYR_PLUGIN_EXPORTS(DESCRIPTION)
///
/// stands at the end of one source, outside of every namespace.
#pragma once

#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/object/zyr_factories.h"

namespace zyr {

/// What a module tells of itself. All texts are static.
struct PluginDescription {
    /// One short word for lists; unique among the plug-ins of a host.
    const char* m_name;
    /// What people read.
    const char* m_longName;
    const char* m_guid; ///< Of the module: not that of a class.
    /// One sentence for people.
    const char* m_description;
    const char* m_namespace;
    const char* m_word; ///< What its lines of the log call it.
    /// Registers the classes, once what the module builds on is up.
    void (*m_register)();
    /// Of the module. Hosts take the framework's own major and minor number only. 0: the framework's.
    uint64_t m_version = 0;
    const char* m_components = "common, core, picture"; ///< Component modules that it needs; common always.
    const char* m_plugins = "";                         ///< GUIDs of plug-ins that it needs, joined by ", ".
};

/// Registers all classes, in this order.
template <class... Classes> void registerPluginClasses() {
    (zyr_addObjectAllocator<Classes>(), ...);
}

/// What zyr_plugin_initialize does: compares the versions, takes the application data over, brings up the component
/// modules and registers the classes. 0 after a line of `p_module` and `p_function`.
bool_t startPlugin(const PluginDescription& p_description, void* p_applicationData, const char* p_module,
                   const char* p_function);

/// What zyr_plugin_deinitialize does: nothing but a line where the module was never started. The classes stay
/// registered and the component modules up, which is relied upon: the application data takes them down.
void stopPlugin(const PluginDescription& p_description, const char* p_module, const char* p_function);

/// The version that the module tells.
uint64_t getPluginVersion(const PluginDescription& p_description);

} // namespace zyr

/// Defines the twelve exports. The module has no extensions.
#define ZYR_PLUGIN_EXPORTS(description)                                                                                \
    namespace zyr {                                                                                                    \
    extern "C" {                                                                                                       \
    ZYR_API const char* zyr_plugin_getName() {                                                                         \
        return (description).m_name;                                                                                   \
    }                                                                                                                  \
    ZYR_API uint64_t zyr_plugin_getVersion() {                                                                         \
        return getPluginVersion(description);                                                                          \
    }                                                                                                                  \
    ZYR_API const char* zyr_plugin_getLongName() {                                                                     \
        return (description).m_longName;                                                                               \
    }                                                                                                                  \
    ZYR_API const char* zyr_plugin_getGUID() {                                                                         \
        return (description).m_guid;                                                                                   \
    }                                                                                                                  \
    ZYR_API const char* zyr_plugin_getDescription() {                                                                  \
        return (description).m_description;                                                                            \
    }                                                                                                                  \
    ZYR_API const char* zyr_plugin_getNamespace() {                                                                    \
        return (description).m_namespace;                                                                              \
    }                                                                                                                  \
    ZYR_API const char* zyr_plugin_getDependenciesComponentModules() {                                                 \
        return (description).m_components;                                                                             \
    }                                                                                                                  \
    ZYR_API const char* zyr_plugin_getDependenciesPluginModules() {                                                    \
        return (description).m_plugins;                                                                                \
    }                                                                                                                  \
    ZYR_API uint8_t zyr_plugin_initialize(void* p_applicationData) {                                                   \
        return startPlugin(description, p_applicationData, ZYR_MODULE_WORD, __PRETTY_FUNCTION__);                      \
    }                                                                                                                  \
    ZYR_API void zyr_plugin_deinitialize() {                                                                           \
        stopPlugin(description, ZYR_MODULE_WORD, __PRETTY_FUNCTION__);                                                 \
    }                                                                                                                  \
    ZYR_API uint8_t zyr_plugin_isExtensionSupported(...) {                                                             \
        return 0;                                                                                                      \
    }                                                                                                                  \
    ZYR_API void* zyr_plugin_getProcAddress(...) {                                                                     \
        return nullptr;                                                                                                \
    }                                                                                                                  \
    }                                                                                                                  \
    }
