#include "host/zyr_command_line.h"
#include "host/zyr_host_settings.h"

#include <nlohmann/json.hpp>

#include <cstdio>

namespace zyr::host {

int runSettings(const SettingsOptions& p_options) {
    FrameworkOptions framework = p_options.m_framework;
    framework.m_coreOnly = true;
    framework.m_withoutSettings = true;
    Framework host(framework);
    HostApplicationData& data = host.getApplicationData();
    data.startListening();
    const HostSettings settings(p_options.m_arguments);
    if (!settings.isAvailable()) {
        throw ModuleError("the core module has no settings handler");
    }
    for (const std::string& line : data.stopListening()) {
        LogLine parts;
        if (parseLogLine(line, parts)) {
            fprintf(stderr, "zyr-host: %s\n", parts.m_message.c_str());
        }
    }
    if (p_options.m_listOptions) {
        settings.printOptions();
    } else if (p_options.m_json) {
        nlohmann::ordered_json json = nlohmann::ordered_json::object();
        for (const HostSettings::Shown& shown : settings.show()) {
            json[shown.m_name] = {{"value", shown.m_value}, {"source", shown.m_source}};
        }
        printf("%s\n", json.dump(2).c_str());
    } else {
        for (const HostSettings::Shown& shown : settings.show()) {
            printf("%-10s %-30s (%s)\n", shown.m_name.c_str(), shown.m_value.c_str(), shown.m_source.c_str());
        }
    }
    return settings.isGood() ? EXIT_DONE : EXIT_RUN_FAILED;
}

} // namespace zyr::host
