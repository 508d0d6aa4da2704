/// Modules, plug-ins and codecs.
#pragma once

#include "host/doctor/zyr_finding.h"
#include "host/zyr_framework.h"
#include "host/zyr_negotiation.h"

namespace zyr::host {

/// What the caller wants to work.
struct WantedRoad {
    bool m_works = false;
    std::string m_text;           ///< "vp9 by libvpx-vp9 and vp9", or why it does not work.
    bool m_modulesFailed = false; ///< The framework itself did not start.
};

/// Starts the framework in a child process, and there, each in a child of its own, sends frames through each encoder
/// and decoder. The wanted road is the pair that "stream" takes for `p_choice`.
WantedRoad checkCodecs(const FrameworkOptions& p_options, const Choice& p_choice, FindingList& p_findings);

} // namespace zyr::host
