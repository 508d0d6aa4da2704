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
#define ZYR_COMPONENT_MODULE(member, function, label, word, isReset)                                                   \
    bool_t ApplicationData::function() {                                                                               \
        if (m_##member##Initializer == nullptr) {                                                                      \
            ZYR_LOG_WARN("Cannot initialize " label " before prepare call");                                           \
            return 0;                                                                                                  \
        }                                                                                                              \
        return initializeModule(m_##member##Initializer, &ApplicationData::m_##member##State);                         \
    }
#define ZYR_RETRIED_COMPONENT_MODULE(member, function, label, word, isReset)
#include "zyr_common/application/zyr_component_modules.inl"

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
    m_commonState = ZYR_MODULE_STATE_NOT_INITIALIZED;
#define ZYR_COMPONENT_MODULE(member, function, label, word, isReset)                                                   \
    if (isReset) {                                                                                                     \
        m_##member##Initializer = nullptr;                                                                             \
        m_##member##State = ZYR_MODULE_STATE_NOT_INITIALIZED;                                                          \
    }
#include "zyr_common/application/zyr_component_modules.inl"
}

} // namespace zyr
