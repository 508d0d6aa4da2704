#include "host/zyr_command_line.h"
#include "host/zyr_host_settings.h"
#include "host/zyr_standard_output.h"

#include <nlohmann/json.hpp>

#include <cstdio>

namespace zyr::host {

namespace {

std::string pad(const std::string& p_text, size_t p_width) {
    return p_text + std::string(p_text.size() < p_width ? p_width - p_text.size() : 0, ' ');
}

std::string describe(const HostSettings& p_settings, bool p_json) {
    nlohmann::ordered_json json = nlohmann::ordered_json::object();
    std::string text;
    for (const HostSettings::Shown& shown : p_settings.show()) {
        json[shown.m_name] = {{"value", shown.m_value}, {"source", shown.m_source}};
        text += pad(shown.m_name, 10) + " " + pad(maskControls(shown.m_value), 30) + " (" +
                maskControls(shown.m_source) + ")\n";
    }
    return p_json ? json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n" : text;
}

} // namespace

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
        // The core module prints them itself.
        if (fflush(stdout) != 0 || ferror(stdout) != 0) {
            fprintf(stderr, "zyr-host: cannot write to the standard output\n");
            return EXIT_RUN_FAILED;
        }
    } else if (!printText(describe(settings, p_options.m_json))) {
        return EXIT_RUN_FAILED;
    }
    return settings.isGood() ? EXIT_DONE : EXIT_RUN_FAILED;
}

} // namespace zyr::host
