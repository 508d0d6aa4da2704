#include "host/zyr_command_line.h"
#include "host/zyr_layout_drawing.h"
#include "host/zyr_layout_reader.h"
#include "host/zyr_layout_report.h"
#include "host/zyr_layout_solver.h"
#include "host/zyr_run_error.h"
#include "host/zyr_standard_output.h"
#include "host/zyr_text_files.h"

#include <cstdio>
#include <filesystem>

namespace zyr::host {

namespace {

/// The reason may quote the file, so what a terminal would act on is left out.
int fail(const LayoutOptions& p_options, const std::string& p_reason) {
    const std::string file = p_options.m_file == "-" ? "standard input" : p_options.m_file;
    fprintf(stderr, "zyr-host: %s: %s\n", maskControls(file).c_str(), maskControls(p_reason).c_str());
    return EXIT_RUN_FAILED;
}

template <typename T> int solveFile(const LayoutOptions& p_options, const nlohmann::json& p_file) {
    Layout<T> layout = readLayout<T>(p_file);
    if (!p_options.m_view.empty()) {
        if (p_options.m_view != "xy" && layout.m_axisCount < LAYOUT_AXES) {
            return fail(p_options, "only boxes can be seen from another side");
        }
        layout.m_view = findLayoutView(p_options.m_view).value_or(LayoutView());
    }
    const bool solved = solveLayout(layout, p_options.m_keepGoing);
    std::string drawing;
    if (!p_options.m_svgPath.empty()) {
        findLayoutMarks(layout);
        drawing = drawScene(makeScene(layout), p_options.m_scale);
        if (drawing.empty()) {
            return fail(p_options, "a side of the drawing would be longer than " + getNumberText(MAX_DRAWING_SIZE) +
                                       " pixels: --scale makes it smaller");
        }
    }
    bool written = true;
    if (p_options.m_svgPath == "-") {
        written = printText(drawing);
    } else {
        written = p_options.m_svgPath.empty() || writeText(p_options.m_svgPath, drawing);
        written = written && printText(makeLayoutReport(layout));
    }
    return written && solved ? EXIT_DONE : EXIT_RUN_FAILED;
}

} // namespace

int runLayout(const LayoutOptions& p_options) {
    std::error_code unknown;
    if (p_options.m_file != "-" && std::filesystem::equivalent(p_options.m_file, p_options.m_svgPath, unknown)) {
        throw UsageError("--svg would overwrite the layout '" + p_options.m_svgPath + "'");
    }
    claimStandardOutput();
    CommonLibrary library(p_options.m_framework);
    std::string text;
    if (!readText(p_options.m_file, text)) {
        return EXIT_RUN_FAILED;
    }
    try {
        const nlohmann::json file = parseStrictJson(text);
        const std::string type = readLayoutType(file);
        if (type == "int32") {
            return solveFile<int32_t>(p_options, file);
        }
        if (type == "int64") {
            return solveFile<int64_t>(p_options, file);
        }
        if (type == "double") {
            return solveFile<double>(p_options, file);
        }
        return solveFile<float>(p_options, file);
    } catch (const JsonError& error) {
        return fail(p_options, error.what());
    } catch (const LayoutError& error) {
        return fail(p_options, error.what());
    }
}

} // namespace zyr::host
