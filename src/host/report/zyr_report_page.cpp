#include "host/report/zyr_report_page.h"

#include "host/report/zyr_page_plot.h"
#include "host/report/zyr_page_text.h"
#include "host/report/zyr_report_style.h"

#include <cmath>
#include <functional>

namespace zyr::host {

namespace {

std::string cell(const char* p_tag, const std::string& p_text) {
    return std::string("<") + p_tag + ">" + escapeForPage(p_text) + "</" + p_tag + ">";
}

std::string runCell(const std::vector<PagedRun>& p_runs, size_t p_run) {
    return "<th><i class=\"c" + std::to_string(p_run % NUM_OF_PLOT_COLORS) + "\"></i>" +
           escapeForPage(p_runs[p_run].m_name) + "</th>";
}

/// A table with a column for each run.
std::string makeTable(const std::vector<PagedRun>& p_runs, const std::string& p_corner, const std::string& p_rows) {
    std::string table = "<div class=\"wide\"><table><thead><tr>" + cell("th", p_corner);
    for (size_t i = 0; i < p_runs.size(); i++) {
        table += runCell(p_runs, i);
    }
    return table + "</tr></thead><tbody>\n" + p_rows + "</tbody></table></div>\n";
}

/// How far a figure is from the first run's.
std::string distanceText(double p_value, double p_first) {
    if (!std::isfinite(p_value) || !std::isfinite(p_first) || p_first == 0) {
        return {};
    }
    const double percent = (p_value / p_first - 1) * 100;
    return " (" + std::string(percent < 0 ? "" : "+") + fixedText(percent, 1) + " %)";
}

std::string makeFigures(const std::vector<PagedRun>& p_runs) {
    std::string rows;
    for (size_t i = 0; i < p_runs[0].m_figures.size(); i++) {
        const PageFigure& first = p_runs[0].m_figures[i];
        rows += "<tr><th>" + escapeForPage(first.m_name) + " <small>" + escapeForPage(first.m_unit) + "</small></th>";
        for (size_t k = 0; k < p_runs.size(); k++) {
            const PageFigure& figure = p_runs[k].m_figures[i];
            rows += cell("td", fixedText(figure.m_value, figure.m_digits) +
                                   (k == 0 ? "" : distanceText(figure.m_value, first.m_value)));
        }
        rows += "</tr>\n";
    }
    return makeTable(p_runs, "figure", rows);
}

std::string makeLatency(const std::vector<PagedRun>& p_runs) {
    static constexpr const char* NAMES[] = {" p50", " p95", " p99"};
    std::string rows;
    for (size_t i = 0; i < p_runs[0].m_stages.size(); i++) {
        for (size_t k = 0; k < std::size(NAMES); k++) {
            rows += "<tr>" + cell("th", p_runs[0].m_stages[i].m_name + NAMES[k]);
            for (const PagedRun& run : p_runs) {
                rows += cell("td", fixedText(run.m_stages[i].m_percentiles[k], 3));
            }
            rows += "</tr>\n";
        }
    }
    return makeTable(p_runs, "milliseconds", rows);
}

std::string makeFacts(const std::vector<PagedRun>& p_runs, const std::string& p_corner, PageFacts PagedRun::*p_facts) {
    const PagedRun* longest = &p_runs[0];
    for (const PagedRun& run : p_runs) {
        longest = (run.*p_facts).size() > (longest->*p_facts).size() ? &run : longest;
    }
    std::string rows;
    for (const auto& [name, text] : longest->*p_facts) {
        rows += "<tr>" + cell("th", name);
        for (const PagedRun& run : p_runs) {
            std::string value = "-";
            for (const auto& [other, its] : run.*p_facts) {
                value = other == name ? its : value;
            }
            rows += cell("td", value);
        }
        rows += "</tr>\n";
    }
    return rows.empty() ? rows : makeTable(p_runs, p_corner, rows);
}

/// Key frames and sizes of the first run: several runs' would cover each other.
std::vector<PlotMark> collectMarks(const PagedRun& p_run) {
    std::vector<PlotMark> marks;
    for (size_t i = 0; i < p_run.m_series.size(); i++) {
        const SeriesPoint& point = p_run.m_series[i];
        if (point.m_keys > 0) {
            marks.push_back({point.m_seconds, ""});
        }
        if (i > 0 &&
            (point.m_width != p_run.m_series[i - 1].m_width || point.m_height != p_run.m_series[i - 1].m_height)) {
            marks.push_back({point.m_seconds, std::to_string(point.m_width) + "x" + std::to_string(point.m_height)});
        }
    }
    return marks;
}

using Value = std::function<double(const SeriesPoint&)>;

struct Plotted {
    const char* m_title;
    const char* m_unit;
    Value m_value;
};

const std::vector<Plotted>& getPlots() {
    static const std::vector<Plotted> s_plots = {
        {"Bytes of a frame", "bytes", [](const SeriesPoint& p) { return double(p.m_bytes) / double(p.m_frames); }},
        {"Quality: PSNR", "dB", [](const SeriesPoint& p) { return p.m_psnr; }},
        {"Quality: SSIM", "", [](const SeriesPoint& p) { return p.m_similarity; }},
        {"Latency: encoding", "ms", [](const SeriesPoint& p) { return p.m_encode; }},
        {"Latency: decoding", "ms", [](const SeriesPoint& p) { return p.m_decode; }}};
    return s_plots;
}

std::string makePlots(const std::vector<PagedRun>& p_runs) {
    std::string text;
    const std::vector<PlotMark> marks = collectMarks(p_runs[0]);
    for (const Plotted& plot : getPlots()) {
        std::vector<PlotLine> lines;
        for (const PagedRun& run : p_runs) {
            PlotLine& line = lines.emplace_back();
            for (const SeriesPoint& point : run.m_series) {
                line.emplace_back(point.m_seconds, plot.m_value(point));
            }
        }
        text += drawLines({plot.m_title, plot.m_unit}, lines, marks);
    }
    return text;
}

std::string makeHistograms(const std::vector<PagedRun>& p_runs) {
    std::string text;
    for (const Plotted& plot : getPlots()) {
        std::vector<PlotLine> values;
        for (const PagedRun& run : p_runs) {
            PlotLine& line = values.emplace_back();
            for (const SeriesPoint& point : run.m_series) {
                line.emplace_back(plot.m_value(point), double(point.m_frames));
            }
        }
        text += drawHistogram({plot.m_title, plot.m_unit}, values);
    }
    return text;
}

std::string makeWorst(const PagedRun& p_run) {
    static constexpr const char* NAMES[] = {"source", "result", "difference, eight times as strong"};
    std::string text;
    for (const PageWorst& frame : p_run.m_worst) {
        text += "<h4>" + escapeForPage(p_run.m_name) + ": frame " + std::to_string(frame.m_frame) + ", " +
                escapeForPage(frame.m_size) + ", PSNR " + fixedText(frame.m_psnr, 2) + " dB, SSIM " +
                fixedText(frame.m_similarity, 4) + "</h4>\n<div class=\"beside\">";
        for (size_t i = 0; i < std::size(NAMES); i++) {
            if (!frame.m_pictures[i].empty()) {
                text += std::string("<figure><img alt=\"") + NAMES[i] + " of frame " + std::to_string(frame.m_frame) +
                        "\" src=\"" + frame.m_pictures[i] + "\"><figcaption>" + NAMES[i] + "</figcaption></figure>";
            }
        }
        text += "</div>\n";
    }
    return text;
}

std::string makeList(const PagedRun& p_run, const char* p_tag, const std::vector<std::string>& p_lines) {
    std::string text;
    for (const std::string& line : p_lines) {
        text += cell("li", line) + "\n";
    }
    return text.empty() ? text
                        : "<h4>" + escapeForPage(p_run.m_name) + "</h4><" + p_tag + ">\n" + text + "</" + p_tag + ">\n";
}

std::string section(const char* p_title, const char* p_hint, const std::string& p_text) {
    return p_text.empty() ? p_text
                          : std::string("<section><h2>") + p_title + "</h2>\n" +
                                (*p_hint == 0 ? "" : std::string("<p>") + p_hint + "</p>\n") + p_text + "</section>\n";
}

} // namespace

std::string makeReportPage(const std::vector<PagedRun>& p_runs) {
    std::string worst;
    std::string negotiation;
    std::string remarks;
    std::string title;
    for (const PagedRun& run : p_runs) {
        worst += makeWorst(run);
        negotiation += makeList(run, "ol", run.m_negotiation);
        remarks += makeList(run, "ul", run.m_remarks);
        title += (title.empty() ? "" : ", ") + escapeForPage(run.m_name);
    }
    return std::string("<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">"
                       "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">"
                       // An empty icon, which browsers would ask for otherwise.
                       "<link rel=\"icon\" href=\"data:,\"><title>") +
           title + "</title>\n<style>" + REPORT_STYLE + "</style></head>\n<body><h1>" + title + "</h1>\n" +
           section("Figures", "", makeFigures(p_runs)) +
           section("Over time",
                   "Key frames are short strokes below the axis, changes of size dashed lines, both of the first run. "
                   "Where a long run has several frames in a point, bytes are their mean, quality is the lowest and "
                   "latency the longest of them. Frames without any difference have no PSNR.",
                   makePlots(p_runs)) +
           section("How many frames", "", makeHistograms(p_runs)) + section("Latency", "", makeLatency(p_runs)) +
           section("Worst frames", "", worst) + section("Runs", "", makeFacts(p_runs, "run", &PagedRun::m_facts)) +
           section("Negotiation", "What encoders and decoders agreed on, as it went.", negotiation) +
           section("Remarks", "", remarks) +
           section("Machine", "", makeFacts(p_runs, "machine", &PagedRun::m_machine)) + "</body></html>\n";
}

} // namespace zyr::host
