#include "host/doctor/zyr_finding.h"

#include "host/zyr_standard_output.h"

#include <algorithm>
#include <array>

namespace zyr::host {

namespace {

using nlohmann::json;

constexpr std::array<const char*, 3> STATE_NAMES = {"ok", "no", "unknown"};

FindingState stateOf(const std::string& p_name) {
    const auto* name = std::find(STATE_NAMES.begin(), STATE_NAMES.end(), p_name);
    return name == STATE_NAMES.end() ? FindingState::UNKNOWN : FindingState(name - STATE_NAMES.begin());
}

std::string padded(std::string p_text, size_t p_width) {
    p_text.resize(std::max(p_text.size(), p_width), ' ');
    return p_text;
}

} // namespace

json toJson(const FindingList& p_findings) {
    json array = json::array();
    for (const Finding& finding : p_findings) {
        array.push_back({{"section", finding.m_section},
                         {"name", finding.m_name},
                         {"state", STATE_NAMES.at(size_t(finding.m_state))},
                         {"text", finding.m_text},
                         {"cure", finding.m_cure}});
    }
    return array;
}

void addFromJson(FindingList& p_findings, const json& p_array) {
    for (const json& entry : p_array) {
        p_findings.push_back(
            {entry.at("section"), entry.at("name"), stateOf(entry.at("state")), entry.at("text"), entry.at("cure")});
    }
}

std::string toText(const FindingList& p_findings) {
    std::string text;
    std::string section;
    for (const Finding& finding : p_findings) {
        if (finding.m_section != section) {
            section = finding.m_section;
            text += (text.empty() ? "" : "\n") + section + "\n";
        }
        const bool isUnknown = finding.m_state == FindingState::UNKNOWN;
        text += "  " + padded(isUnknown ? "?" : STATE_NAMES.at(size_t(finding.m_state)), 4) +
                padded(maskControls(finding.m_name), 34) + " " + maskControls(finding.m_text) + "\n";
        if (!finding.m_cure.empty()) {
            text += "      cure: " + maskControls(finding.m_cure) + "\n";
        }
    }
    return text;
}

} // namespace zyr::host
