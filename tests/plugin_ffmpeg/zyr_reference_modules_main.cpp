// The plug-in as a host sees it, on the reference core and picture modules.

#include "plugin_ffmpeg/zyr_plugin_host.h"

#include <dlfcn.h>

namespace zyr_test {

namespace {

void* loadLibrary(const char* p_path) {
    void* library = dlopen(p_path, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        fprintf(stderr, "%s\n", dlerror());
        abort();
    }
    return library;
}

void prepareModule(const char* p_path, const char* p_function, zyr::ApplicationData& p_data) {
    void* function = dlsym(loadLibrary(p_path), p_function);
    reinterpret_cast<void (*)(zyr::ApplicationData*)>(function)(&p_data);
}

} // namespace

PluginEntries loadPlugin() {
    PluginEntries entries;
    entries.library = loadLibrary(ZYR_TEST_PLUGIN);
    entries.initialize = reinterpret_cast<uint8_t (*)(void*)>(dlsym(entries.library, "zyr_plugin_initialize"));
    entries.deinitialize = reinterpret_cast<void (*)()>(dlsym(entries.library, "zyr_plugin_deinitialize"));
    return entries;
}

void prepareModules(zyr::ApplicationData& p_data) {
    prepareModule(ZYR_TEST_CORE_MODULE, "zyr_core_prepare", p_data);
    prepareModule(ZYR_TEST_PICTURE_MODULE, "zyr_picture_prepare", p_data);
}

} // namespace zyr_test
