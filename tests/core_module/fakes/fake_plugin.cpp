// A plug-in module of one function each, made many times over with other definitions (see CMakeLists.txt). It uses
// nothing of the framework.
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <unistd.h>

#ifndef FAKE_VERSION
#define FAKE_VERSION 0x10000050000
#endif
#ifndef FAKE_GUID
#define FAKE_GUID "60000000-0000-4000-8000-0000000000ff"
#endif
#ifndef FAKE_COMPONENTS
#define FAKE_COMPONENTS "common, core"
#endif
#ifndef FAKE_PLUGINS
#define FAKE_PLUGINS ""
#endif
#ifndef FAKE_INITIALIZED
#define FAKE_INITIALIZED 1
#endif

#define FAKE_EXPORT extern "C" __attribute__((visibility("default")))

#if defined(FAKE_CRASHES)
__attribute__((constructor)) static void crash() {
    raise(SIGSEGV);
}
#elif defined(FAKE_EXITS)
__attribute__((constructor)) static void leave() {
    _exit(3);
}
#elif defined(FAKE_HANGS)
__attribute__((constructor)) static void hang() {
    for (;;) {
        pause();
    }
}
#endif

FAKE_EXPORT const char* zyr_plugin_getName() {
#ifdef FAKE_NAMELESS
    return nullptr;
#else
    return FAKE_NAME;
#endif
}
FAKE_EXPORT uint64_t zyr_plugin_getVersion() {
    return FAKE_VERSION;
}
FAKE_EXPORT const char* zyr_plugin_getLongName() {
    return FAKE_NAME " long";
}
FAKE_EXPORT const char* zyr_plugin_getGUID() {
    return FAKE_GUID;
}
FAKE_EXPORT const char* zyr_plugin_getDescription() {
    return FAKE_NAME " description";
}
FAKE_EXPORT const char* zyr_plugin_getNamespace() {
    return "FAKE";
}
FAKE_EXPORT const char* zyr_plugin_getDependenciesComponentModules() {
    return FAKE_COMPONENTS;
}
FAKE_EXPORT const char* zyr_plugin_getDependenciesPluginModules() {
    return FAKE_PLUGINS;
}
FAKE_EXPORT uint8_t zyr_plugin_initialize(void*) {
#ifdef FAKE_CRASHES_LATE
    raise(SIGSEGV);
#endif
    const char* before = getenv("ZYR_FAKE_ORDER");
    setenv("ZYR_FAKE_ORDER", (std::string(before != nullptr ? before : "") + FAKE_NAME " ").c_str(), 1);
    return FAKE_INITIALIZED;
}
FAKE_EXPORT void zyr_plugin_deinitialize() {
    setenv("ZYR_FAKE_ORDER", "deinitialized", 1);
}
FAKE_EXPORT uint8_t zyr_plugin_isExtensionSupported(const char* p_extension, int* p_version) {
    *p_version = 5;
    return std::string(p_extension) == "extension";
}
#ifndef FAKE_LACKS_EXPORT
FAKE_EXPORT void* zyr_plugin_getProcAddress(const char* p_name) {
    return std::string(p_name) == "name" ? const_cast<char*>("address") : nullptr;
}
#endif
