#include "zyr_conform_report.h"

#include "host/zyr_program_run.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace zyr {

std::vector<std::string> ConformReport::list(const std::string& p_result) const {
    std::vector<std::string> names;
    for (const auto& [name, result] : m_results) {
        if (result == p_result) {
            names.push_back(name);
        }
    }
    return names;
}

std::string ConformReport::describe() const {
    std::string text = m_err;
    for (const auto& [name, reason] : m_reasons) {
        text += name + ": " + m_results.at(name) + ", " + reason + "\n";
    }
    return text;
}

ConformReport conform(const std::string& p_module, const std::vector<std::string>& p_arguments) {
    std::vector<std::string> arguments = {"conform", p_module, "--json"};
    arguments.insert(arguments.end(), p_arguments.begin(), p_arguments.end());
    const ProgramRun run = runProgram(ZYR_HOST_PROGRAM, arguments);
    ConformReport report;
    report.m_exitCode = run.m_exitCode;
    report.m_err = run.m_err;
    const nlohmann::json all = nlohmann::json::parse(run.m_out, nullptr, false);
    EXPECT_TRUE(all.is_object()) << run.m_out << run.m_err;
    if (all.is_object()) {
        for (const nlohmann::json& entry : all["cases"]) {
            const std::string name = entry["name"];
            EXPECT_FALSE(entry["rule"].get<std::string>().empty());
            report.m_results[name] = entry["result"];
            if (entry.contains("reason")) {
                report.m_reasons[name] = entry["reason"];
            }
        }
        for (const char* word : {"passed", "failed", "skipped", "blocked"}) {
            EXPECT_EQ(all[word].get<size_t>(), report.list(word).size()) << word;
        }
    }
    return report;
}

std::vector<std::string> listQuickCases() {
    // How busy the machine is does not matter here.
    std::vector<std::string> arguments = {"--timeout", "250"};
    const nlohmann::json list =
        nlohmann::json::parse(runProgram(ZYR_HOST_PROGRAM, {"conform", "--list", "--json"}).m_out, nullptr, false);
    EXPECT_TRUE(list.is_array());
    for (const nlohmann::json& entry : list) {
        const std::string name = entry["name"];
        if (name != "sizes" && name != "thousand-openings") {
            arguments.insert(arguments.end(), {"--only", name});
        }
    }
    return arguments;
}

} // namespace zyr
