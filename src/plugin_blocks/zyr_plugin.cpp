// The plug-in's entry points. A host looks them up by their plain names.

#include "plugin_blocks/zyr_blocks_frame_decoder.h"
#include "plugin_blocks/zyr_blocks_frame_decoder_context.h"
#include "plugin_blocks/zyr_blocks_frame_encoder.h"
#include "plugin_blocks/zyr_blocks_frame_encoder_context.h"
#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/platform/zyr_version.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

extern "C" {

ZYR_API const char* zyr_plugin_getName() {
    return "Blocks";
}

ZYR_API uint64_t zyr_plugin_getVersion() {
    return zyr_encodeVersion64(1, 5, 0);
}

ZYR_API const char* zyr_plugin_getLongName() {
    return "Blocks Plugin Module v1.5.0 (Zyrmont Framework)";
}

ZYR_API const char* zyr_plugin_getGUID() {
    return "6b74ba83-e64a-404c-8f5f-9321413ec855";
}

ZYR_API const char* zyr_plugin_getDescription() {
    return "Plugin Module which codes screens without loss, as blocks of few colors";
}

ZYR_API const char* zyr_plugin_getNamespace() {
    return "ZYR";
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
        ZYR_LOG_WARN("Application data is NULL, cannot initialize plugin module: blocks");
        return 0;
    }

    String reason;
    if (!checkHostFrameworkVersion(appData->m_frameworkVersion, reason)) {
        ZYR_LOG_WARN("%s. Cannot initialize plugin module: blocks", reason.getData());
        return 0;
    }

    zyr_setApplicationData(appData);
    if (!appData->commonInitialize()) {
        ZYR_LOG_WARN("Unable to initialize component module dependency: common");
        return 0;
    }
    if (!appData->coreInitialize()) {
        ZYR_LOG_WARN("Unable to initialize component module dependency: core");
        return 0;
    }
    if (!appData->pictureInitialize()) {
        ZYR_LOG_WARN("Unable to initialize component module dependency: picture");
        return 0;
    }

    // Registration builds an instance of each class, and those need the picture module.
    zyr_addObjectAllocator<BlocksFrameDecoder>();
    zyr_addObjectAllocator<BlocksFrameDecoderContext>();
    zyr_addObjectAllocator<BlocksFrameEncoder>();
    zyr_addObjectAllocator<BlocksFrameEncoderContext>();
    return 1;
}

/// The classes stay registered and the dependencies up, which is relied upon: the application data takes them down.
ZYR_API void zyr_plugin_deinitialize() {
    if (zyr_getApplicationData() == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot deinitialize plugin module: blocks");
    }
}

ZYR_API uint8_t zyr_plugin_isExtensionSupported(...) {
    return 0;
}

ZYR_API void* zyr_plugin_getProcAddress(...) {
    return nullptr;
}

} // extern "C"

} // namespace zyr
