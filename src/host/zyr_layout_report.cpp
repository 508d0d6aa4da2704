#include "host/zyr_layout_report.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <cmath>
#include <cstdlib>

namespace zyr::host {

namespace {

using json = nlohmann::ordered_json;

template <typename T> json showNumber(T p_number) {
    if constexpr (std::is_integral_v<T>) {
        return p_number;
    } else {
        if (!std::isfinite(p_number)) {
            return getNumberText(p_number);
        }
        // Through the text, so that a float shows no digits that it doesn't hold.
        return strtod(getNumberText(p_number).c_str(), nullptr);
    }
}

template <typename T> json showPlace(const LayoutPlace<T>& p_place, LayoutKind p_kind, size_t p_axisCount) {
    json shown = json::object();
    for (size_t axis = 0; axis < p_axisCount; ++axis) {
        shown[LAYOUT_WORDS[axis].m_position] = showNumber(p_place.m_position[axis]);
    }
    for (size_t axis = 0; axis < p_axisCount && p_kind != LAYOUT_POINT; ++axis) {
        shown[LAYOUT_WORDS[axis].m_size] = showNumber(p_place.m_size[axis]);
    }
    return shown;
}

template <typename T> void showNode(const LayoutNode<T>& p_node, size_t p_axisCount, json& p_nodes) {
    json shown = {{"path", p_node.m_path}, {"name", p_node.m_name}, {"kind", p_node.getKindText()}};
    if (p_node.m_solved) {
        shown["solved"] = showPlace(p_node.m_place, p_node.m_kind, p_axisCount);
        shown["absolute"] = showPlace(p_node.m_absolute, p_node.m_kind, p_axisCount);
        if (p_node.m_usedContent) {
            shown["content"] = {{"width", showNumber((*p_node.m_usedContent)[0])},
                                {"height", showNumber((*p_node.m_usedContent)[1])}};
        }
    } else {
        shown["failure"] = p_node.m_failure;
    }
    p_nodes.push_back(std::move(shown));
    for (const LayoutNode<T>& child : p_node.m_children) {
        showNode(child, p_axisCount, p_nodes);
    }
}

} // namespace

template <typename T> std::string getNumberText(T p_number) {
    char text[64];
    if constexpr (std::is_floating_point_v<T>) {
        if (!std::isfinite(p_number)) {
            return std::isnan(p_number) ? "nan" : p_number > 0 ? "inf" : "-inf";
        }
    }
    return std::string(text, std::to_chars(text, text + sizeof(text), p_number).ptr);
}

template <typename T> std::string makeLayoutReport(const Layout<T>& p_layout) {
    json nodes = json::array();
    showNode(p_layout.m_root, p_layout.m_axisCount, nodes);
    const json all = {{"type", p_layout.m_type},
                      {"space", p_layout.m_axisCount == LAYOUT_AXES ? "box" : "rect"},
                      {"nodes", std::move(nodes)}};
    return all.dump(2) + "\n";
}

#define ZYR_INSTANTIATE_LAYOUT_REPORT(type)                                                                            \
    template std::string getNumberText<type>(type p_number);                                                           \
    template std::string makeLayoutReport<type>(const Layout<type>& p_layout);

ZYR_INSTANTIATE_LAYOUT_REPORT(int32_t)
ZYR_INSTANTIATE_LAYOUT_REPORT(int64_t)
ZYR_INSTANTIATE_LAYOUT_REPORT(float)
ZYR_INSTANTIATE_LAYOUT_REPORT(double)

} // namespace zyr::host
