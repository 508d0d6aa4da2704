// The entry points by which a host loads the plug-in.

#include "lossless_codec.h"

#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/platform/zyr_version.h"

using namespace zyr;

extern "C" {

ZYR_API const char* zyr_plugin_getName() {
    return "Lossless";
}

/// Hosts take modules of the framework's own major and minor version only; the patch number is free.
ZYR_API uint64_t zyr_plugin_getVersion() {
    return zyr_getFrameworkVersion();
}

ZYR_API const char* zyr_plugin_getLongName() {
    return "Lossless example plug-in";
}

ZYR_API const char* zyr_plugin_getGUID() {
    return "de01bf87-c4b2-454e-98c3-a796b2f47a31";
}

ZYR_API const char* zyr_plugin_getDescription() {
    return "Packs each picture as one LZ4 block";
}

ZYR_API const char* zyr_plugin_getNamespace() {
    return "LOSSLESS";
}

ZYR_API const char* zyr_plugin_getDependenciesComponentModules() {
    return "common, core, picture";
}

ZYR_API const char* zyr_plugin_getDependenciesPluginModules() {
    return "";
}

ZYR_API uint8_t zyr_plugin_initialize(void* p_applicationData) {
    ApplicationData* appData = static_cast<ApplicationData*>(p_applicationData);
    if (appData == nullptr) {
        return 0;
    }
    // The layout of everything that crosses the border belongs to the minor version.
    const uint64_t version = appData->m_frameworkVersion;
    if (zyr_getMajorVersion64(version) != zyr_getMajorVersion64(zyr_getFrameworkVersion()) ||
        zyr_getMinorVersion64(version) != zyr_getMinorVersion64(zyr_getFrameworkVersion())) {
        ZYR_LOG_WARN("The host was built with another version of the framework");
        return 0;
    }
    // This module has a common library of its own, which learns here what the host shares.
    zyr_setApplicationData(appData);
    if (!appData->commonInitialize() || !appData->coreInitialize() || !appData->pictureInitialize()) {
        ZYR_LOG_WARN("Unable to initialize the modules that this one depends on");
        return 0;
    }
    zyr_addObjectAllocator<LosslessFrameEncoder>();
    zyr_addObjectAllocator<LosslessFrameEncoderContext>();
    zyr_addObjectAllocator<LosslessFrameDecoder>();
    zyr_addObjectAllocator<LosslessFrameDecoderContext>();
    return 1;
}

ZYR_API void zyr_plugin_deinitialize() {}

ZYR_API uint8_t zyr_plugin_isExtensionSupported(...) {
    return 0;
}

ZYR_API void* zyr_plugin_getProcAddress(...) {
    return nullptr;
}

} // extern "C"
