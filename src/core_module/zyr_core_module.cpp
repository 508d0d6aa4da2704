#include "core_module/zyr_core_module.h"

#include "core_module/zyr_core_table.h"
#include "zyr_common/application/zyr_format_registries.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/platform/zyr_version.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

static bool_t initializeCoreModule(ApplicationData* p_applicationData, uint32_t) {
    String reason;
    if (!checkHostFrameworkVersion(p_applicationData->m_frameworkVersion, reason)) {
        ZYR_LOG_WARN("%s. Cannot initialize component module: core", reason.getData());
        return 0;
    }
    zyr_setApplicationData(p_applicationData);
    fillCoreTable(*p_applicationData->m_core);
    registerCoreClasses(*p_applicationData);
    for (const char* word : {"raw", "zbf", "xml", "json"}) {
        zyr_addSerializerFileFormat(word, word);
    }
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
