/// Drawings of a page: lines over time and histograms, as SVG without scripts.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace zyr::host {

/// The points of one run; one whose value is not finite breaks its line. The place in the list of runs gives the color.
using PlotLine = std::vector<std::pair<double, double>>;

/// An upright line through a plot.
struct PlotMark {
    double m_x;
    std::string m_text; ///< Stands beside it; empty for the short strokes of key frames.
};

struct PlotText {
    std::string m_title;
    std::string m_unit; ///< Of the values.
};

/// Lines over seconds. Empty when no run has a point.
std::string drawLines(const PlotText& p_text, const std::vector<PlotLine>& p_runs,
                      const std::vector<PlotMark>& p_marks);

/// How many frames have which value: for each run its values and the number of frames of each. Values that are not
/// finite are left out. Empty when there are none.
std::string drawHistogram(const PlotText& p_text, const std::vector<PlotLine>& p_runs);

/// The number of colors that the page's style knows: "c0", "c1"...
constexpr size_t NUM_OF_PLOT_COLORS = 8;

} // namespace zyr::host
