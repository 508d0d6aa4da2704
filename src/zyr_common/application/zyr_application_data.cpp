#include "zyr_common/application/zyr_application_data.h"

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/platform/zyr_version.h"

#include <cstddef>

namespace zyr {

static_assert(sizeof(ApplicationData) == 2469 && alignof(ApplicationData) == 1);

static ApplicationData* s_applicationData = nullptr;

ApplicationData::ApplicationData(bool_t p_hostFlag, bool_t p_localDataDirectories)
    : m_hostFlag(p_hostFlag),
      m_localDataDirectories(p_localDataDirectories),
      m_frameworkVersion(zyr_getFrameworkVersion()),
      m_logLevel(ZYR_LOG_LEVEL_DEBUG),
      m_logDirectory("log/"),
      m_logRotation(0),
      m_logMaxNumOfFiles(64),
      m_logRepeatCount(0),
      m_logFileOpened(0),
      m_lastLogSyncTime(0),
      m_logFileLocked(0),
      m_core(new CoreModuleTable()),
      m_secondTable(new ModuleTable<4>()),
      m_thirdTable(new ModuleTable<71>()),
      m_fourthTable(new ModuleTable<70>()),
      m_fifthTable(new ModuleTable<116>()),
      m_picture(new PictureModuleTable()),
      m_seventhTable(new ModuleTable<14>()),
      m_logFile(nullptr),
      m_pluginModulesHandler(nullptr) {}

template <typename Map> static void freeCallbackLists(Map& p_map) {
    for (auto it = p_map.begin(); it != p_map.end(); ++it) {
        delete it->m_second;
    }
}

ApplicationData::~ApplicationData() {
    delete m_core;
    delete m_secondTable;
    delete m_thirdTable;
    delete m_fourthTable;
    delete m_fifthTable;
    delete m_picture;
    delete m_seventhTable;
    freeCallbackLists(m_compressDataCallbacks);
    freeCallbackLists(m_decompressDataCallbacks);
    freeCallbackLists(m_importFromDataCallbacks);
    freeCallbackLists(m_exportToDataCallbacks);
    freeCallbackLists(m_importFromFileCallbacks);
    freeCallbackLists(m_exportToFileCallbacks);
}

void ApplicationData::deinitialize() {
    for (auto it = m_deinitializeFunctions.begin(); it != m_deinitializeFunctions.end(); ++it) {
        ZYR_ASSERT(*it != NULL);
        (*it)();
    }

    m_unknownVariableAllocators.clear();
    m_objectAllocatorsByName.clear();
    m_objectAllocatorsByGUID.clear();

    for (auto it1 = m_importFromDataCallbacks.begin(); it1 != m_importFromDataCallbacks.end(); ++it1) {
        ZYR_ASSERT(it1->m_second != NULL);
        delete it1->m_second;
    }
    m_importFromDataCallbacks.clear();
    for (auto it1 = m_exportToDataCallbacks.begin(); it1 != m_exportToDataCallbacks.end(); ++it1) {
        ZYR_ASSERT(it1->m_second != NULL);
        delete it1->m_second;
    }
    m_exportToDataCallbacks.clear();
    for (auto it1 = m_importFromFileCallbacks.begin(); it1 != m_importFromFileCallbacks.end(); ++it1) {
        ZYR_ASSERT(it1->m_second != NULL);
        delete it1->m_second;
    }
    m_importFromFileCallbacks.clear();
    for (auto it1 = m_exportToFileCallbacks.begin(); it1 != m_exportToFileCallbacks.end(); ++it1) {
        ZYR_ASSERT(it1->m_second != NULL);
        delete it1->m_second;
    }
    m_exportToFileCallbacks.clear();

    m_deinitializeFunctions.clear();
    resetModules();
    releasePluginModules();
    closeLogStream();
}

ApplicationData* zyr_getApplicationData() {
    return s_applicationData;
}

void zyr_setApplicationData(ApplicationData* p_applicationData) {
    ApplicationData* previous = s_applicationData;
    if (p_applicationData == previous) {
        return;
    }
    delete previous;
    s_applicationData = p_applicationData;
}

} // namespace zyr
