/// What the conformance kit is made of: cases, each with the rule that it checks.
#pragma once

#include "host/zyr_framework.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace zyr::host {

/// What a file is taken for.
enum class ConformKind { PLUGIN, CORE, PICTURE };

/// What is under test, and where the rest of the framework is.
struct ConformSubject {
    ConformKind m_kind = ConformKind::PLUGIN;
    std::string m_path;           ///< The module, absolute.
    std::string m_name;           ///< Its file name.
    FrameworkOptions m_framework; ///< The plug-in directories hold what the plug-in builds on.
};

/// The rule is broken, in the way that the text tells.
class ConformFailure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The rule says nothing about this module, for the reason that the text tells.
class ConformSkip : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One case. It runs in a process of its own, which ends behind it: nothing has to be given back.
struct ConformCase {
    const char* m_name;
    const char* m_rule;               ///< A sentence or two.
    std::vector<const char*> m_needs; ///< Cases, further up in the list, without which this one tells nothing.
    void (*m_run)(const ConformSubject&);
    unsigned m_seconds = 30; ///< Limit of time.
};

/// Fails unless the condition holds.
inline void require(bool p_condition, const std::string& p_reason) {
    if (!p_condition) {
        throw ConformFailure(p_reason);
    }
}

// The parts of the lists.
std::vector<ConformCase> listModuleCases();    ///< Exports, identity and start of a plug-in.
std::vector<ConformCase> listClassCases();     ///< What it registers.
std::vector<ConformCase> listOfferCases();     ///< What its codecs offer and agree on.
std::vector<ConformCase> listStreamCases();    ///< Frames and packets.
std::vector<ConformCase> listEnduranceCases(); ///< Side by side, over and over, and behind the end.
std::vector<ConformCase> listCoreCases();
std::vector<ConformCase> listPictureCases();

/// All cases of a kind, in the order in which they run.
std::vector<ConformCase> listConformCases(ConformKind p_kind);

} // namespace zyr::host
