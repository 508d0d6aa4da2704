#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/memory/zyr_report.h"

namespace zyr {

bool_t ApplicationData::initializeModule(moduleInitializer_FUNC p_initializer, uint32_t ApplicationData::*p_state) {
    if (this->*p_state == ZYR_MODULE_STATE_FAILED) {
        return 0;
    }
    if (this->*p_state == ZYR_MODULE_STATE_INITIALIZED) {
        return 1;
    }
    bool_t result = p_initializer(this, 1);
    this->*p_state = result ? ZYR_MODULE_STATE_INITIALIZED : ZYR_MODULE_STATE_FAILED;
    return result;
}

bool_t ApplicationData::commonInitialize() {
    if (m_commonState == ZYR_MODULE_STATE_FAILED) {
        return 0;
    }
    if (m_commonState == ZYR_MODULE_STATE_INITIALIZED) {
        return 1;
    }
    bool_t result = zyr::commonInitialize(this);
    m_commonState = result ? ZYR_MODULE_STATE_INITIALIZED : ZYR_MODULE_STATE_FAILED;
    return result;
}

// One initialize function: the line about a missing prepare call carries its own signature.
#define ZYR_DEFINE_MODULE_INITIALIZE(function, member, label)                                                          \
    bool_t ApplicationData::function() {                                                                               \
        if (member##Initializer == nullptr) {                                                                          \
            ZYR_LOG_WARN("Cannot initialize " label " before prepare call");                                           \
            return 0;                                                                                                  \
        }                                                                                                              \
        return initializeModule(member##Initializer, &ApplicationData::member##State);                                 \
    }

ZYR_DEFINE_MODULE_INITIALIZE(coreInitialize, m_core, "module:core")
ZYR_DEFINE_MODULE_INITIALIZE(geometryInitialize, m_geometry, "module:geometry")
ZYR_DEFINE_MODULE_INITIALIZE(pictureInitialize, m_picture, "module:picture")
ZYR_DEFINE_MODULE_INITIALIZE(sampleInitialize, m_sample, "module:sample")
ZYR_DEFINE_MODULE_INITIALIZE(systemInitialize, m_system, "module:system")
ZYR_DEFINE_MODULE_INITIALIZE(projectInitialize, m_project, "module:project")
ZYR_DEFINE_MODULE_INITIALIZE(engineInitialize, m_engine, "module:engine")
ZYR_DEFINE_MODULE_INITIALIZE(audioInitialize, m_audio, "module:audio")
ZYR_DEFINE_MODULE_INITIALIZE(graphicsInitialize, m_graphics, "module:graphics")
ZYR_DEFINE_MODULE_INITIALIZE(physicsInitialize, m_physics, "module:physics")
ZYR_DEFINE_MODULE_INITIALIZE(libCairoInitialize, m_cairo, "lib module:cairo")
ZYR_DEFINE_MODULE_INITIALIZE(libVulkanInitialize, m_vulkan, "lib module:vulkan")
ZYR_DEFINE_MODULE_INITIALIZE(libOpenGLInitialize, m_openGL, "lib module:OpenGL")
ZYR_DEFINE_MODULE_INITIALIZE(libShadercInitialize, m_shaderc, "lib module:Shaderc")
ZYR_DEFINE_MODULE_INITIALIZE(libOpenALInitialize, m_openAL, "lib module:OpenAL")
ZYR_DEFINE_MODULE_INITIALIZE(libOggVorbisInitialize, m_oggVorbis, "lib module:OggVorbis")
ZYR_DEFINE_MODULE_INITIALIZE(libOpenSSLInitialize, m_openSSL, "lib module:OpenSSL")
ZYR_DEFINE_MODULE_INITIALIZE(guiInitialize, m_gui, "module:gui")
ZYR_DEFINE_MODULE_INITIALIZE(languageInitialize, m_language, "module:language")
ZYR_DEFINE_MODULE_INITIALIZE(remoteInitialize, m_remote, "module:remote")

#undef ZYR_DEFINE_MODULE_INITIALIZE

bool_t ApplicationData::libD3D11Initialize() {
    if (m_d3d11Initializer == nullptr) {
        ZYR_LOG_WARN("Cannot initialize lib module:D3D11 before prepare call");
        return 0;
    }
    if (m_d3d11State == ZYR_MODULE_STATE_FAILED) {
        return 0;
    }
    if (m_d3d11State == ZYR_MODULE_STATE_INITIALIZED) {
        return 1;
    }
    // Unlike its twins it hands over the state and may be retried, which is relied upon.
    bool_t result = m_d3d11Initializer(this, m_d3d11State);
    if (result) {
        m_d3d11State = ZYR_MODULE_STATE_INITIALIZED;
    }
    return result;
}

void ApplicationData::resetModules() {
    // Audio, language and remote keep their initializers and states, which is relied upon.
    m_coreInitializer = nullptr;
    m_geometryInitializer = nullptr;
    m_pictureInitializer = nullptr;
    m_sampleInitializer = nullptr;
    m_systemInitializer = nullptr;
    m_projectInitializer = nullptr;
    m_engineInitializer = nullptr;
    m_graphicsInitializer = nullptr;
    m_physicsInitializer = nullptr;
    m_cairoInitializer = nullptr;
    m_d3d11Initializer = nullptr;
    m_vulkanInitializer = nullptr;
    m_openGLInitializer = nullptr;
    m_shadercInitializer = nullptr;
    m_openALInitializer = nullptr;
    m_oggVorbisInitializer = nullptr;
    m_openSSLInitializer = nullptr;
    m_guiInitializer = nullptr;

    m_commonState = ZYR_MODULE_STATE_NOT_INITIALIZED;
    m_coreState = ZYR_MODULE_STATE_NOT_INITIALIZED;
    m_geometryState = ZYR_MODULE_STATE_NOT_INITIALIZED;
    m_pictureState = ZYR_MODULE_STATE_NOT_INITIALIZED;
    m_sampleState = ZYR_MODULE_STATE_NOT_INITIALIZED;
    m_systemState = ZYR_MODULE_STATE_NOT_INITIALIZED;
    m_projectState = ZYR_MODULE_STATE_NOT_INITIALIZED;
    m_engineState = ZYR_MODULE_STATE_NOT_INITIALIZED;
    m_graphicsState = ZYR_MODULE_STATE_NOT_INITIALIZED;
    m_physicsState = ZYR_MODULE_STATE_NOT_INITIALIZED;
    m_cairoState = ZYR_MODULE_STATE_NOT_INITIALIZED;
    m_d3d11State = ZYR_MODULE_STATE_NOT_INITIALIZED;
    m_vulkanState = ZYR_MODULE_STATE_NOT_INITIALIZED;
    m_openGLState = ZYR_MODULE_STATE_NOT_INITIALIZED;
    m_shadercState = ZYR_MODULE_STATE_NOT_INITIALIZED;
    m_openALState = ZYR_MODULE_STATE_NOT_INITIALIZED;
    m_oggVorbisState = ZYR_MODULE_STATE_NOT_INITIALIZED;
    m_openSSLState = ZYR_MODULE_STATE_NOT_INITIALIZED;
    m_guiState = ZYR_MODULE_STATE_NOT_INITIALIZED;
}

} // namespace zyr
