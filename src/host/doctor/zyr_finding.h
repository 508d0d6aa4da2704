/// What "zyr-host doctor" says about a part of the machine.
#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace zyr::host {

enum class FindingState : uint8_t {
    OK,      ///< It works.
    NO,      ///< It does not, or not as it should.
    UNKNOWN, ///< It was not looked at, and why stands in the text.
};

struct Finding {
    std::string m_section; ///< Groups findings; those of one section stand together.
    std::string m_name;
    FindingState m_state = FindingState::OK;
    std::string m_text; ///< What was found; of what does not work, why not.
    std::string m_cure; ///< A command, or what to get. Empty where there is none.
};

using FindingList = std::vector<Finding>;

/// The array of all findings, with the keys section, name, state ("ok", "no", "unknown"), text and cure.
nlohmann::json toJson(const FindingList& p_findings);

/// Adds what toJson() made.
void addFromJson(FindingList& p_findings, const nlohmann::json& p_array);

/// One line for each finding below the names of the sections, and a line for each cure.
std::string toText(const FindingList& p_findings);

} // namespace zyr::host
