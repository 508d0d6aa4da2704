/// Takes a page's run out of a report.
#pragma once

#include "host/report/zyr_paged_run.h"

#include <nlohmann/json_fwd.hpp>

namespace zyr::host {

/// Reads what --report writes, also where it was written without "series" and what came with it. The report may come
/// from anywhere: every text of it is taken as text. Throws JsonError that names the place of what is missing or of
/// another type.
PagedRun readReport(const std::string& p_name, const nlohmann::json& p_report);

} // namespace zyr::host
