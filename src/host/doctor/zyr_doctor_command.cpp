#include "host/doctor/zyr_checked_codecs.h"
#include "host/doctor/zyr_checked_graphics.h"
#include "host/doctor/zyr_checked_libraries.h"
#include "host/doctor/zyr_checked_system.h"
#include "host/zyr_command_line.h"
#include "host/zyr_standard_output.h"

#include "zyr_common/platform/zyr_version.h"

#include <cstdlib>

namespace zyr::host {

namespace {

using nlohmann::json;

std::string nameWanted(const DoctorOptions& p_options) {
    return (p_options.m_codec.empty() ? std::string("video") : p_options.m_codec) +
           (p_options.m_require == "hw"   ? " in hardware"
            : p_options.m_require == "sw" ? " in software"
                                          : "");
}

} // namespace

int runDoctor(const DoctorOptions& p_options) {
    claimStandardOutput();
    // What libva says on its own belongs to no finding.
    setenv("LIBVA_MESSAGING_LEVEL", "0", 0);
    FindingList graphics;
    checkGraphics({}, graphics);
    FindingList findings;
    const WantedRoad wanted =
        checkCodecs(p_options.m_framework, {p_options.m_codec, "", "", p_options.m_require}, findings);
    checkLibraries(findings);
    findings.insert(findings.end(), graphics.begin(), graphics.end());
    checkScreen(findings);
    checkPamServices({"/etc/pam.d", "/usr/lib/pam.d"}, findings);
    checkConsole(p_options.m_framework, findings);
    checkDirectories(p_options.m_framework, findings);
    checkLimits(findings);
    checkProcessor(findings);
    const std::string verdict =
        nameWanted(p_options) + (wanted.m_works ? " works: " : " does not work: ") + wanted.m_text;
    std::string text;
    if (p_options.m_json) {
        const json all = {
            {"framework_version", std::string(zyr_getFrameworkVersionString())},
            {"wanted", {{"name", nameWanted(p_options)}, {"works", wanted.m_works}, {"text", wanted.m_text}}},
            {"findings", toJson(findings)}};
        text = all.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
    } else {
        text = toText(findings) + "\n" + maskControls(verdict) + "\n";
    }
    if (!printText(text)) {
        return EXIT_RUN_FAILED;
    }
    return wanted.m_works ? EXIT_DONE : (wanted.m_modulesFailed ? EXIT_MODULE_FAILED : EXIT_CODEC_NOT_USABLE);
}

} // namespace zyr::host
