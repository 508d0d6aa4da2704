#include "host/zyr_host_settings.h"

#include "zyr_common/settings/zyr_argument_text.h"

#include <algorithm>
#include <cstdlib>

namespace zyr::host {

namespace {

constexpr const char* SYSTEM_FILE = "/etc/zyr-host.conf";
/// What no source can give: tells whether one gave anything.
constexpr int NO_LEVEL = -1;
constexpr const char* NO_TEXT = "\x01";

constexpr const char* LEVELS[] = {"error", "warn", "info", "debug", "trace"};

bool_t convertLevel(String& p_word, int& p_number, bool_t p_toNumber) {
    if (!p_toNumber) {
        const bool isKnown = p_number >= ZYR_LOG_LEVEL_ERROR && p_number <= ZYR_LOG_LEVEL_TRACE;
        p_word = isKnown ? LEVELS[p_number - ZYR_LOG_LEVEL_ERROR] : "";
        return isKnown;
    }
    for (int i = 0; i < 5; i++) {
        if (p_word == LEVELS[i]) {
            p_number = ZYR_LOG_LEVEL_ERROR + i;
            return 1;
        }
    }
    return 0;
}

/// Empty when the user has no configuration directory.
std::string getUserFile() {
    const char* directory = getenv("XDG_CONFIG_HOME");
    if (directory != nullptr && *directory == '/') {
        return std::string(directory) + "/zyr-host.conf";
    }
    const char* home = getenv("HOME");
    return home != nullptr && *home != 0 ? std::string(home) + "/.config/zyr-host.conf" : std::string();
}

} // namespace

HostSettings::HostSettings(const std::vector<std::string>& p_arguments)
    : m_handler(Ref<ISettingsHandler>::adopt(zyr_createObject<ISettingsHandler>())) {
    if (!m_handler) {
        return;
    }
    insertSettings();
    take(SYSTEM_FILE, false, String(), SYSTEM_FILE);
    const std::string userFile = getUserFile();
    take(userFile, false, String(), userFile);
    take("environment", true, String(), "");
    Array<String> arguments;
    for (const std::string& argument : p_arguments) {
        arguments.pushBack(String(argument));
    }
    String commandLine;
    zyr_joinArguments(arguments, commandLine);
    take("command line", false, commandLine, "");
}

void HostSettings::insertSettings() {
    m_handler->insertEnum(&m_logLevel, "debug", "", "", "ZYR_HOST_LOG_LEVEL", "level", "log", "", "log-level",
                          "What is logged: error, warn, info, debug or trace", &convertLevel);
    m_handler->insertString(&m_plugins, "", "", "", "ZYR_HOST_PLUGINS", "directories", "plugins", "", "plugins",
                            "Directories of plug-ins, separated by colons");
}

void HostSettings::take(const std::string& p_source, bool p_environment, const String& p_commandLine,
                        const std::string& p_file) {
    const int logLevel = m_logLevel;
    const String plugins = m_plugins;
    m_logLevel = NO_LEVEL;
    m_plugins = NO_TEXT;
    m_good = m_handler->transfer(p_environment, p_commandLine, 0, String(p_file)) && m_good;
    if (m_logLevel == NO_LEVEL) {
        m_logLevel = logLevel;
    } else {
        m_logLevelSource = p_source;
    }
    if (m_plugins == NO_TEXT) {
        m_plugins = plugins;
    } else {
        m_pluginsSource = p_source;
    }
}

std::vector<std::string> HostSettings::getPluginDirectories() const {
    std::vector<std::string> directories;
    const std::string text(m_plugins.getData(), m_plugins.getLengthInBytes());
    for (size_t start = 0; start < text.size();) {
        const size_t end = std::min(text.find(':', start), text.size());
        if (end != start) {
            directories.push_back(text.substr(start, end - start));
        }
        start = end + 1;
    }
    return directories;
}

std::vector<HostSettings::Shown> HostSettings::show() const {
    return {{"log-level", LEVELS[m_logLevel - ZYR_LOG_LEVEL_ERROR], m_logLevelSource},
            {"plugins", std::string(m_plugins.getData(), m_plugins.getLengthInBytes()), m_pluginsSource}};
}

} // namespace zyr::host
