#include "host/zyr_command_line.h"
#include "host/zyr_path_check.h"
#include "host/zyr_path_outline.h"
#include "host/zyr_standard_output.h"
#include "host/zyr_text_files.h"

#include <nlohmann/json.hpp>

#include <cstdio>
#include <string>

namespace zyr::host {

namespace {

using json = nlohmann::ordered_json;

template <RecordLevel R> json showRecord(const R& p_record);

template <typename M> json showValue(const M& p_value) {
    if constexpr (EnumerationWithTexts<M>) {
        return zyr_getEnumerationText(p_value, "Unknown");
    } else if constexpr (std::is_same_v<M, bool_t>) {
        return p_value != 0;
    } else if constexpr (std::is_arithmetic_v<M>) {
        return p_value;
    } else {
        return showRecord(p_value);
    }
}

/// Every field by its key, the base's first.
template <RecordLevel R> json showRecord(const R& p_record) {
    json shown = json::object();
    if constexpr (RecordLevel<typename R::RecordBase>) {
        shown = showRecord<typename R::RecordBase>(p_record);
    }
    zyr_forEachField<R>([&](const auto& p_field) { shown[p_field.m_key] = showValue(p_record.*p_field.m_member); });
    return shown;
}

template <class Command> json showAs(const char* p_name, const Path2DCommand<double>& p_command) {
    json shown = {{"command", p_name}, {"id", p_command.getID()}};
    shown.update(showRecord(static_cast<const Command&>(p_command)));
    return shown;
}

json showCommand(const Path2DCommand<double>& p_command) {
    switch (p_command.getID()) {
    case 1:
        return showAs<MoveToPath2DCommand<double>>("moveTo", p_command);
    case 2:
        return showAs<LineToPath2DCommand<double>>("lineTo", p_command);
    case 3:
        return showAs<CurveToPath2DCommand<double>>("curveTo", p_command);
    case 4:
        return showAs<SmoothPath2DCommand<double>>("smooth", p_command);
    case 5:
        return showAs<QuadCurveToPath2DCommand<double>>("quadCurveTo", p_command);
    case 6:
        return showAs<QuadSmoothPath2DCommand<double>>("quadSmooth", p_command);
    case 7:
        return showAs<ArcPath2DCommand<double>>("arc", p_command);
    default:
        return showAs<ClosePath2DCommand<double>>("close", p_command);
    }
}

/// Appends a text whose lines but the first are moved to the right.
void appendIndented(std::string& p_text, const std::string& p_lines) {
    size_t begin = 0;
    for (size_t end = p_lines.find('\n'); end != std::string::npos; end = p_lines.find('\n', begin)) {
        p_text.append(p_lines, begin, end + 1 - begin).append("    ");
        begin = end + 1;
    }
    p_text.append(p_lines, begin);
}

/// Prints the commands and the outline as one JSON value, a part at a time: a tree of a long path's commands takes a
/// hundred times the memory of the path.
bool printAll(const Path2D<double>& p_path, const PathOutline& p_outline) {
    constexpr size_t PART = 1 << 16;
    std::string text = "{\n  \"commands\": [";
    const char* separator = "\n    ";
    for (const Path2DCommand<double>* command : p_path.getCommands()) {
        text += separator;
        separator = ",\n    ";
        appendIndented(text, showCommand(*command).dump(2));
        if (text.size() > PART) {
            if (!printText(text)) {
                return false;
            }
            text.clear();
        }
    }
    text += p_path.getCommands().isEmpty() ? "]" : "\n  ]";
    return printText(text + ",\n  \"outline\": " + json(p_outline.m_text).dump() + "\n}\n");
}

} // namespace

int runPath(const PathOptions& p_options) {
    claimStandardOutput();
    FrameworkOptions options = p_options.m_framework;
    options.m_coreOnly = true;
    Framework framework(options);
    std::string text = p_options.m_text;
    if (text == "-") {
        text.clear();
        if (!readText("-", text)) {
            return EXIT_RUN_FAILED;
        }
    }
    try {
        for (const std::string& warning : checkPath(text)) {
            fprintf(stderr, "zyr-host: path, %s\n", warning.c_str());
        }
    } catch (const PathError& error) {
        fprintf(stderr, "zyr-host: path, %s\n", error.what());
        return EXIT_RUN_FAILED;
    }
    Path2D<double> path;
    path.pushBackSVGPath(String(text.c_str()));
    PathOutline outline;
    try {
        outline = resolveOutline(path);
    } catch (const std::range_error& error) {
        fprintf(stderr, "zyr-host: %s\n", error.what());
        return EXIT_RUN_FAILED;
    }
    if (p_options.m_svgPath == "-") {
        return printText(makeSVG(outline)) ? EXIT_DONE : EXIT_RUN_FAILED;
    }
    if (!p_options.m_svgPath.empty() && !writeText(p_options.m_svgPath, makeSVG(outline))) {
        return EXIT_RUN_FAILED;
    }
    return printAll(path, outline) ? EXIT_DONE : EXIT_RUN_FAILED;
}

} // namespace zyr::host
