/// A run as a page shows it.
#pragma once

#include "host/report/zyr_run_series.h"

#include <string>
#include <utility>
#include <vector>

namespace zyr::host {

/// Names and texts in the order of showing.
using PageFacts = std::vector<std::pair<std::string, std::string>>;

/// A number that runs are compared by.
struct PageFigure {
    std::string m_name;
    std::string m_unit;
    double m_value; ///< NaN: there is none. Infinite: "lossless".
    int m_digits;   ///< Behind the point.
};

struct PageStage {
    std::string m_name;
    double m_percentiles[3]; ///< 50, 95 and 99, in milliseconds.
};

struct PageWorst {
    uint64_t m_frame;
    double m_psnr;
    double m_similarity;
    std::string m_size;
    std::string m_pictures[3]; ///< Source, result, difference: each a "data:image/png;base64," text, or empty.
};

struct PagedRun {
    std::string m_name; ///< What the user calls it: the file of its report.
    PageFacts m_facts;
    std::vector<PageFigure> m_figures; ///< The same ones in every run.
    std::vector<PageStage> m_stages;   ///< The same ones in every run.
    std::vector<SeriesPoint> m_series; ///< Empty when the report has none.
    std::vector<PageWorst> m_worst;
    std::vector<std::string> m_negotiation;
    std::vector<std::string> m_remarks; ///< Complaints and notes.
    PageFacts m_machine;
};

} // namespace zyr::host
