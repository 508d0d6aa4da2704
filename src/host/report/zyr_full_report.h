/// The report of a run with what happened frame by frame, as files and pages take it.
#pragma once

#include "host/zyr_stream_report.h"

#include <nlohmann/json_fwd.hpp>

namespace zyr::host {

/// StreamReport::toJson() and, on top of it, "series", "worst_frames", "negotiation" and "machine".
nlohmann::json makeFullReport(const StreamReport& p_report);

} // namespace zyr::host
