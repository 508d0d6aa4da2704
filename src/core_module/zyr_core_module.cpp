#include "core_module/zyr_core_module.h"

#include "core_module/zyr_core_table.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/platform/zyr_version.h"
#include "zyr_common/text/zyr_number_text.h"

namespace zyr {

static bool_t initializeCoreModule(ApplicationData* p_applicationData, uint32_t) {
    const uint64_t hostVersion = p_applicationData->m_frameworkVersion;
    const uint64_t moduleVersion = zyr_getFrameworkVersion();
    if (zyr_getMajorVersion64(hostVersion) != zyr_getMajorVersion64(moduleVersion) ||
        zyr_getMinorVersion64(hostVersion) != zyr_getMinorVersion64(moduleVersion)) {
        String hostText;
        String moduleText;
        zyr_getVersionString(hostVersion, hostText);
        zyr_getVersionString(moduleVersion, moduleText);
        ZYR_LOG_WARN("Application framework version:%s is incompatible with module framework version:%s. Cannot "
                     "initialize component module: core",
                     hostText.getData(), moduleText.getData());
        return 0;
    }
    zyr_setApplicationData(p_applicationData);
    fillCoreTable(*p_applicationData->m_core);
    registerCoreClasses();
    return 1;
}

} // namespace zyr

void zyr_core_prepare(zyr::ApplicationData* p_applicationData) {
    using namespace zyr;
    if (p_applicationData == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot prepare component module: core");
        return;
    }
    p_applicationData->m_coreInitializer = &initializeCoreModule;
}
