/// One page about one run or several.
#pragma once

#include "host/report/zyr_paged_run.h"

#include <string>
#include <vector>

namespace zyr::host {

/// The page as HTML with all that it shows inside of it: no script, and nothing to fetch. With several runs the figures
/// of all but the first tell how far they are from the first's.
std::string makeReportPage(const std::vector<PagedRun>& p_runs);

} // namespace zyr::host
