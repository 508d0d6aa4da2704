/// The host's own defaults, from configuration files, the environment and the command line.
#pragma once

#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/settings/zyr_settings_handler.h"
#include "zyr_common/text/zyr_string.h"

#include <string>
#include <vector>

namespace zyr::host {

/// What the sources say, and which of them said it. The core module must be up. Later sources are the stronger ones:
/// /etc/zyr-host.conf, zyr-host.conf in the user's configuration directory, the environment (ZYR_HOST_...), arguments.
class HostSettings {
public:
    /// A setting as it is shown.
    struct Shown {
        std::string m_name;
        std::string m_value;
        std::string m_source; ///< "default", the path of a file, the name of a variable, or "command line"
    };

    /// p_arguments may be empty. What was wrong is in the log.
    explicit HostSettings(const std::vector<std::string>& p_arguments);
    HostSettings(const HostSettings&) = delete;
    HostSettings& operator=(const HostSettings&) = delete;

    /// False when the core module, an older one, has no such class. Then the defaults stand and no source was read.
    bool isAvailable() const { return m_handler.get() != nullptr; }
    /// False when one of the sources has a fault.
    bool isGood() const { return m_good; }
    LogLevelEnum getLogLevel() const { return static_cast<LogLevelEnum>(m_logLevel); }
    /// Empty when no source names any.
    std::vector<std::string> getPluginDirectories() const;

    std::vector<Shown> show() const;
    /// Prints the options of the settings to the standard output. Only where they are available.
    void printOptions() const { m_handler->printCommandLineArguments(0); }

private:
    void insertSettings();
    /// Takes what one source says, and notes the source of what it said.
    void take(const std::string& p_source, bool p_environment, const String& p_commandLine, const std::string& p_file);

    Ref<ISettingsHandler> m_handler;
    bool m_good = true;
    int m_logLevel = ZYR_LOG_LEVEL_DEBUG;
    String m_plugins;
    std::string m_logLevelSource = "default";
    std::string m_pluginsSource = "default";
};

} // namespace zyr::host
