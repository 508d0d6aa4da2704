#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/platform/zyr_process_identity.h"

namespace zyr {

static void appendDirectory(String& p_path, const String& p_name) {
    p_path += p_name;
    p_path.pushBackAsciiCharacter('/');
}

// What both prepare functions make of their arguments: the directory that exists, and what is made below it.
static void getRootAndRelative(bool_t p_localDataDirectories, const String& p_base, const String& p_first,
                               const String& p_second, String& p_root, String& p_relative) {
    if (!p_localDataDirectories && p_base.isEmpty()) {
        zyr_getUserConfigDirectory(p_root);
    } else {
        p_root = p_base;
        p_root.setCoherentPathSlashes();
    }
    if (!p_first.isEmpty()) {
        appendDirectory(p_relative, p_first);
    }
    if (!p_second.isEmpty()) {
        appendDirectory(p_relative, p_second);
    } else {
        String name;
        zyr_getCurrentProcessName(name);
        appendDirectory(p_relative, name);
    }
}

void ApplicationData::prepareAndSetEssentialDirectories() {
    zyr_getCurrentProcessDirectory(m_executableDirectory);
    m_applicationDirectory = m_executableDirectory;
    m_librariesDirectory = m_executableDirectory;
    m_resourcesDirectory = m_executableDirectory;
    m_pluginsDirectory = m_executableDirectory;
}

void ApplicationData::prepareAndSetUserDataDirectory(const String& p_base, const String& p_first,
                                                     const String& p_second, DirectoryPermissionTypeEnum p_permission) {
    if (m_localDataDirectories && p_base.isEmpty()) {
        m_userDataDirectory = m_applicationDirectory;
        return;
    }
    String root;
    String relative;
    getRootAndRelative(m_localDataDirectories, p_base, p_first, p_second, root, relative);
    zyr_createDirectoryIfMissing(root, relative, p_permission);
    m_userDataDirectory = root + relative;
}

void ApplicationData::prepareAndSetLogDirectory(const String& p_base, const String& p_first, const String& p_second,
                                                DirectoryPermissionTypeEnum p_permission) {
    String root;
    String relative;
    if (m_localDataDirectories && p_base.isEmpty()) {
        root = m_applicationDirectory;
    } else {
        getRootAndRelative(m_localDataDirectories, p_base, p_first, p_second, root, relative);
    }
    appendDirectory(relative, "log");
    zyr_createDirectoryIfMissing(root, relative, p_permission);
    setLogDirectory(root + relative);
}

bool_t zyr_getExecutableDirectory(String& p_directory) {
    ApplicationData* data = zyr_getApplicationData();
    if (data == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot get executable directory");
        return 0;
    }
    p_directory = data->m_executableDirectory;
    return 1;
}

bool_t zyr_getApplicationDirectory(String& p_directory) {
    ApplicationData* data = zyr_getApplicationData();
    if (data == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot get application directory");
        return 0;
    }
    p_directory = data->m_applicationDirectory;
    return 1;
}

bool_t zyr_getLibrariesDirectory(String& p_directory) {
    ApplicationData* data = zyr_getApplicationData();
    if (data == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot get libraries directory");
        return 0;
    }
    p_directory = data->m_librariesDirectory;
    return 1;
}

bool_t zyr_getPluginsDirectory(String& p_directory) {
    ApplicationData* data = zyr_getApplicationData();
    if (data == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot get plugins directory");
        return 0;
    }
    p_directory = data->m_pluginsDirectory;
    return 1;
}

bool_t zyr_getResourcesDirectory(String& p_directory) {
    ApplicationData* data = zyr_getApplicationData();
    if (data == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot get resources directory");
        return 0;
    }
    p_directory = data->m_resourcesDirectory;
    return 1;
}

bool_t zyr_getUserDataDirectory(String& p_directory) {
    ApplicationData* data = zyr_getApplicationData();
    if (data == nullptr) {
        ZYR_LOG_WARN("Application data is NULL, cannot get user data directory");
        return 0;
    }
    p_directory = data->m_userDataDirectory;
    return 1;
}

} // namespace zyr
