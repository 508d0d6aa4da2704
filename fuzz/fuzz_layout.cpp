// Layouts as JSON: whatever the reader lets pass is solved, reported and drawn, and the report can be read again.
#include "zyr_fuzz.h"

#include "host/zyr_layout_drawing.h"
#include "host/zyr_layout_reader.h"
#include "host/zyr_layout_report.h"
#include "host/zyr_layout_solver.h"

using namespace zyr;

namespace {

template <typename T> size_t countNodes(const host::LayoutNode<T>& p_node) {
    size_t count = 1;
    for (const host::LayoutNode<T>& child : p_node.m_children) {
        count += countNodes(child);
    }
    return count;
}

template <typename T> void solve(const nlohmann::json& p_file) {
    host::Layout<T> layout = host::readLayout<T>(p_file);
    host::solveLayout(layout, true);
    host::findLayoutMarks(layout);
    const std::string drawing = host::drawScene(host::makeScene(layout), 1);
    zyr_fuzz::require(drawing.empty() || drawing.ends_with("</svg>\n"), "a drawing is whole");
    const nlohmann::json report = host::parseStrictJson(host::makeLayoutReport(layout));
    zyr_fuzz::require(report["nodes"].size() == countNodes(layout.m_root), "the report holds every node");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* p_data, size_t p_size) {
    zyr_fuzz::getFramework(true);
    try {
        const nlohmann::json file = host::parseStrictJson(std::string(reinterpret_cast<const char*>(p_data), p_size));
        const std::string type = host::readLayoutType(file);
        if (type == "int32") {
            solve<int32_t>(file);
        } else if (type == "int64") {
            solve<int64_t>(file);
        } else if (type == "double") {
            solve<double>(file);
        } else {
            solve<float>(file);
        }
    } catch (const host::JsonError&) {
        return 0;
    } catch (const host::LayoutError&) {
        return 0;
    }
    return 0;
}
