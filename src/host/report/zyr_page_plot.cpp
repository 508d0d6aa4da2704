#include "host/report/zyr_page_plot.h"

#include "host/report/zyr_page_text.h"

#include <algorithm>
#include <cmath>

namespace zyr::host {

namespace {

constexpr double WIDTH = 900;
constexpr double HEIGHT = 230;
constexpr double LEFT = 64;
constexpr double RIGHT = 12;
constexpr double TOP = 16;
constexpr double BOTTOM = 34;
constexpr size_t NUM_OF_BARS = 24;
constexpr int MOST_TICKS = 8;

struct Range {
    double m_low = INFINITY;
    double m_high = -INFINITY;

    void add(double p_value) {
        m_low = std::min(m_low, p_value);
        m_high = std::max(m_high, p_value);
    }
    bool isEmpty() const { return m_low > m_high; }
    /// Something to divide by, also when all values are one.
    void widen() {
        if (m_low == m_high) {
            const double half = m_low == 0 ? 1 : std::fabs(m_low) / 10;
            m_low -= half;
            m_high += half;
        }
    }
    /// From 0 to 1; the middle for what has no place, as where the range is too wide or too narrow for its numbers.
    double part(double p_value) const {
        const double part = (p_value - m_low) / (m_high - m_low);
        return part >= 0 && part <= 1 ? part : 0.5;
    }
};

double placeX(const Range& p_range, double p_x) {
    return LEFT + p_range.part(p_x) * (WIDTH - LEFT - RIGHT);
}

double placeY(const Range& p_range, double p_y) {
    return HEIGHT - BOTTOM - p_range.part(p_y) * (HEIGHT - TOP - BOTTOM);
}

std::string at(double p_number) {
    return fixedText(p_number, 1);
}

/// 1, 2 or 5 times a power of ten, so that about five steps fit.
double stepOf(const Range& p_range) {
    const double rough = (p_range.m_high - p_range.m_low) / 5;
    const double power = std::pow(10, std::floor(std::log10(rough)));
    const double digit = rough / power;
    return power * (digit > 5 ? 10 : digit > 2 ? 5 : digit > 1 ? 2 : 1);
}

template <typename Draw> void drawTicks(const Range& p_range, Draw p_draw) {
    const double step = stepOf(p_range);
    const double first = std::ceil(p_range.m_low / step);
    // Large numbers that lie close together may have no place for a tick: one more is the same number there.
    for (int i = 0; i < MOST_TICKS && (first + i) * step <= p_range.m_high; i++) {
        p_draw((first + i) * step);
    }
}

std::string begin(const PlotText& p_text) {
    const std::string title = escapeForPage(p_text.m_title);
    return "<figure><figcaption>" + title +
           (p_text.m_unit.empty() ? "" : " <small>" + escapeForPage(p_text.m_unit) + "</small>") +
           "</figcaption><div class=\"wide\"><svg viewBox=\"0 0 " + at(WIDTH) + " " + at(HEIGHT) +
           "\" role=\"img\" aria-label=\"" + title + "\">\n";
}

std::string drawAxes(const Range& p_x, const Range& p_y, const std::string& p_unit) {
    std::string svg;
    drawTicks(p_y, [&](double p_value) {
        const std::string y = at(placeY(p_y, p_value));
        svg += "<path class=\"grid\" d=\"M" + at(LEFT) + " " + y + "H" + at(WIDTH - RIGHT) +
               "\"/><text class=\"left\" x=\"" + at(LEFT - 6) + "\" y=\"" + y + "\" dy=\"4\">" + shortText(p_value) +
               "</text>\n";
    });
    drawTicks(p_x, [&](double p_value) {
        svg += "<text class=\"below\" x=\"" + at(placeX(p_x, p_value)) + "\" y=\"" + at(HEIGHT - 14) + "\">" +
               shortText(p_value) + p_unit + "</text>\n";
    });
    return svg + "<path class=\"axis\" d=\"M" + at(LEFT) + " " + at(TOP) + "V" + at(HEIGHT - BOTTOM) + "H" +
           at(WIDTH - RIGHT) + "\"/>\n";
}

std::string colorOf(size_t p_run) {
    return "c" + std::to_string(p_run % NUM_OF_PLOT_COLORS);
}

std::string drawMarks(const Range& p_x, const std::vector<PlotMark>& p_marks) {
    std::string svg;
    for (const PlotMark& mark : p_marks) {
        const std::string x = at(placeX(p_x, mark.m_x));
        if (mark.m_text.empty()) {
            svg += "<path class=\"key\" d=\"M" + x + " " + at(HEIGHT - BOTTOM) + "v7\"/>\n";
        } else {
            svg += "<path class=\"change\" d=\"M" + x + " " + at(TOP) + "V" + at(HEIGHT - BOTTOM) + "\"/><text x=\"" +
                   x + "\" y=\"" + at(TOP - 4) + "\">" + escapeForPage(mark.m_text) + "</text>\n";
        }
    }
    return svg;
}

} // namespace

std::string drawLines(const PlotText& p_text, const std::vector<PlotLine>& p_runs,
                      const std::vector<PlotMark>& p_marks) {
    Range x;
    Range y;
    for (const PlotLine& run : p_runs) {
        for (const auto& [time, value] : run) {
            x.add(time);
            if (std::isfinite(value)) {
                y.add(value);
            }
        }
    }
    if (y.isEmpty()) {
        return {};
    }
    x.widen();
    y.widen();
    std::string svg = begin(p_text) + drawAxes(x, y, " s") + drawMarks(x, p_marks);
    for (size_t i = 0; i < p_runs.size(); i++) {
        std::string path;
        bool drawing = false;
        for (const auto& [time, value] : p_runs[i]) {
            if (std::isfinite(value)) {
                path += (drawing ? "L" : "M") + at(placeX(x, time)) + " " + at(placeY(y, value));
                // A point between two gaps is seen by its round ends.
                path += drawing ? "" : "h0";
            }
            drawing = std::isfinite(value);
        }
        svg += "<path class=\"line " + colorOf(i) + "\" d=\"" + path + "\"/>\n";
    }
    return svg + "</svg></div></figure>\n";
}

std::string drawHistogram(const PlotText& p_text, const std::vector<PlotLine>& p_runs) {
    Range x;
    for (const PlotLine& run : p_runs) {
        for (const auto& [value, frames] : run) {
            if (std::isfinite(value)) {
                x.add(value);
            }
        }
    }
    if (x.isEmpty()) {
        return {};
    }
    x.widen();
    Range y;
    y.add(0);
    std::vector<std::vector<double>> counts(p_runs.size(), std::vector<double>(NUM_OF_BARS));
    for (size_t i = 0; i < p_runs.size(); i++) {
        for (const auto& [value, frames] : p_runs[i]) {
            if (std::isfinite(value)) {
                double& count = counts[i][std::min(NUM_OF_BARS - 1, size_t(x.part(value) * NUM_OF_BARS))];
                count += frames;
                y.add(count);
            }
        }
    }
    std::string svg = begin(p_text) + drawAxes(x, y, "");
    const double step = (WIDTH - LEFT - RIGHT) / double(NUM_OF_BARS);
    const double width = step * 0.9 / double(p_runs.size());
    const double part = (x.m_high - x.m_low) / double(NUM_OF_BARS);
    for (size_t i = 0; i < p_runs.size(); i++) {
        for (size_t k = 0; k < NUM_OF_BARS; k++) {
            if (counts[i][k] > 0) {
                const double top = placeY(y, counts[i][k]);
                svg += "<rect class=\"bar " + colorOf(i) + "\" x=\"" + at(LEFT + step * double(k) + width * double(i)) +
                       "\" y=\"" + at(top) + "\" width=\"" + at(width) + "\" height=\"" + at(HEIGHT - BOTTOM - top) +
                       "\"><title>" + shortText(x.m_low + part * double(k)) + " to " +
                       shortText(x.m_low + part * double(k + 1)) + ": " + fixedText(counts[i][k], 0) +
                       " frames</title></rect>\n";
            }
        }
    }
    return svg + "</svg></div></figure>\n";
}

} // namespace zyr::host
