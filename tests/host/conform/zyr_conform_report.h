/// What "zyr-host conform" says about a module.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace zyr {

struct ConformReport {
    int m_exitCode = -1;
    std::string m_err;
    /// Results and reasons by the names of the cases.
    std::map<std::string, std::string> m_results;
    std::map<std::string, std::string> m_reasons;

    /// Names of the cases with a result, in the order of the alphabet.
    std::vector<std::string> list(const std::string& p_result) const;
    /// The reasons of the failed cases, for messages.
    std::string describe() const;
};

/// Runs the program with --json and further arguments.
ConformReport conform(const std::string& p_module, const std::vector<std::string>& p_arguments = {});

/// Arguments that name all cases of a plug-in but the two that take seconds, or minutes where machines are emulated.
std::vector<std::string> listQuickCases();

} // namespace zyr
