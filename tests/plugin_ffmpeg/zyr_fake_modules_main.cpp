// The plug-in as a host sees it, on made-up core and picture modules.

#include "plugin_ffmpeg/zyr_fake_picture.h"
#include "plugin_ffmpeg/zyr_plugin_host.h"

#include <dlfcn.h>

namespace zyr_test {

PluginEntries loadPlugin() {
    PluginEntries entries;
    entries.library = dlopen(ZYR_TEST_PLUGIN, RTLD_NOW | RTLD_LOCAL);
    if (entries.library == nullptr) {
        fprintf(stderr, "%s\n", dlerror());
        abort();
    }
    entries.initialize = reinterpret_cast<uint8_t (*)(void*)>(dlsym(entries.library, "zyr_plugin_initialize"));
    entries.deinitialize = reinterpret_cast<void (*)()>(dlsym(entries.library, "zyr_plugin_deinitialize"));
    return entries;
}

void prepareModules(zyr::ApplicationData& p_data) {
    prepareFakeModules(p_data);
}

} // namespace zyr_test
