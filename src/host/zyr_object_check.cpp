#include "host/zyr_codec_state.h"
#include "host/zyr_command_line.h"
#include "host/zyr_object_command.h"
#include "host/zyr_object_examiner.h"
#include "host/zyr_run_error.h"
#include "host/zyr_standard_output.h"

#include <nlohmann/json.hpp>

namespace zyr::host {

namespace {

constexpr const char* KINDS[] = {"damage", "unknown class", "place", "deferred file"};

/// What is wrong with a file; loads it when nothing else is.
std::vector<ObjectProblem> checkFile(Framework& p_framework, const std::string& p_file) {
    std::vector<ObjectProblem> problems;
    std::vector<std::string> reasons;
    try {
        ObjectView view = openObjectView(p_file, "");
        ObjectExaminer(p_framework).examine(view, problems);
        if (problems.empty()) {
            loadObjectView(p_framework, view, reasons);
            for (const std::string& field : view.m_strangers) {
                reasons.push_back(field + ": its class has no such field");
            }
        }
    } catch (const RunError& error) {
        reasons.push_back(error.what());
    }
    for (const std::string& reason : reasons) {
        problems.push_back({ObjectProblem::DAMAGE, p_file, reason});
    }
    return problems;
}

} // namespace

int runObjectCheck(const ObjectCheckOptions& p_options) {
    claimStandardOutput();
    Framework framework(p_options.m_framework);
    registerCodecState();
    nlohmann::ordered_json files = nlohmann::ordered_json::array();
    std::string text;
    bool good = true;
    for (const std::string& file : p_options.m_files) {
        nlohmann::ordered_json list = nlohmann::ordered_json::array();
        for (const ObjectProblem& problem : checkFile(framework, file)) {
            good = false;
            text += maskControls(problem.m_file) + ": " + maskControls(problem.m_text) + "\n";
            list.push_back({{"file", problem.m_file}, {"kind", KINDS[problem.m_kind]}, {"problem", problem.m_text}});
        }
        files.push_back({{"file", file}, {"good", list.empty()}, {"problems", list}});
    }
    if (p_options.m_json) {
        text = files.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
    }
    return printText(text) && good ? EXIT_DONE : EXIT_RUN_FAILED;
}

} // namespace zyr::host
