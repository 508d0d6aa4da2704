#include "host/zyr_framework_arguments.h"

namespace zyr::host {

void addLogOptions(CLI::App& p_command, FrameworkOptions& p_options) {
    p_command.add_option("--log-dir", p_options.m_logDirectory,
                         "Directory of the log file (default: zyr-host/log/ in the user's state directory)");
    p_command
        .add_option_function<LogLevelEnum>(
            "--log-level",
            [&p_options](const LogLevelEnum& p_level) {
                p_options.m_logLevel = p_level;
                p_options.m_logLevelGiven = true;
            },
            "1 errors, 2 warnings, 3 information, 4 debugging, 5 every step")
        ->transform(CLI::CheckedTransformer(std::map<std::string, LogLevelEnum>{{"error", ZYR_LOG_LEVEL_ERROR},
                                                                                {"warn", ZYR_LOG_LEVEL_WARN},
                                                                                {"info", ZYR_LOG_LEVEL_INFO},
                                                                                {"debug", ZYR_LOG_LEVEL_DEBUG},
                                                                                {"trace", ZYR_LOG_LEVEL_TRACE}},
                                            CLI::ignore_case));
}

void addFrameworkOptions(CLI::App& p_command, FrameworkOptions& p_options) {
    p_command.add_option("--modules", p_options.m_moduleDirectory,
                         "Directory of zyr_core.so and zyr_picture.so (default: found beside the program)");
    // One directory each time: what stands behind it is the command's own.
    p_command
        .add_option("--plugins", p_options.m_pluginDirectories,
                    "Directory of plug-ins besides plugins/ in the module directory, may be given more than once")
        ->allow_extra_args(false);
    p_command.add_flag("!--no-default-plugins", p_options.m_defaultPlugins,
                       "Leave plugins/ in the module directory out");
    addLogOptions(p_command, p_options);
}

} // namespace zyr::host
