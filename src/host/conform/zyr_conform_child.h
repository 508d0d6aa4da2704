/// A process for each case, with limits.
#pragma once

#include "host/conform/zyr_conform_case.h"

#include <string>

namespace zyr::host {

enum class ConformResult : int {
    PASSED,
    FAILED,
    SKIPPED, ///< The rule does not apply.
    BLOCKED  ///< A case that this one needs did not pass.
};

struct ConformVerdict {
    ConformResult m_result = ConformResult::FAILED;
    std::string m_reason; ///< Empty when it passed.
    double m_seconds = 0;
};

/// Runs the case in a child of this process, which must have one thread only. A child that crashes, ends by itself,
/// takes longer than `p_seconds` or more than four gigabytes has failed; the call that was under way is named.
ConformVerdict runConformCase(const ConformCase& p_case, const ConformSubject& p_subject, unsigned p_seconds);

/// In the child: notes the call that is under way.
void noteConformStep(const std::string& p_step);

} // namespace zyr::host
