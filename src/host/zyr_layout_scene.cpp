#include "host/zyr_layout_scene.h"

#include "host/zyr_layout_report.h"

#include <cmath>

namespace zyr::host {

namespace {

template <typename T> class SceneBuilder {
public:
    explicit SceneBuilder(const Layout<T>& p_layout)
        : m_view{p_layout.m_view.m_right, p_layout.m_view.m_down}, m_axisCount(p_layout.m_axisCount) {}

    Scene build(const Layout<T>& p_layout) {
        m_scene.m_title = p_layout.m_title;
        for (size_t i = 0; i < 2; ++i) {
            m_scene.m_axes[i] = LAYOUT_WORDS[m_view[i]].m_position;
        }
        add(p_layout.m_root, true);
        return std::move(m_scene);
    }

private:
    void add(const LayoutNode<T>& p_node, bool p_root) {
        SceneNode node;
        node.m_name = p_node.m_name;
        node.m_point = p_node.m_kind == LAYOUT_POINT;
        node.m_parent = p_root || !p_node.m_children.empty();
        if (p_node.m_solved) {
            node.m_drawn = placeNode(p_node, node);
            if (node.m_drawn) {
                addInside(p_node, node);
                addMarks(p_node, node);
            }
        }
        if (!p_root) {
            addLegend(p_node, node);
        }
        m_scene.m_nodes.push_back(std::move(node));
        for (const LayoutNode<T>& child : p_node.m_children) {
            add(child, false);
        }
    }

    bool placeNode(const LayoutNode<T>& p_node, SceneNode& p_drawn) const {
        for (size_t i = 0; i < 2; ++i) {
            p_drawn.m_start[i] = static_cast<double>(p_node.m_absolute.m_position[m_view[i]]);
            p_drawn.m_end[i] = p_drawn.m_start[i] + static_cast<double>(p_node.m_absolute.m_size[m_view[i]]);
            if (!std::isfinite(p_drawn.m_start[i]) || !std::isfinite(p_drawn.m_end[i])) {
                return false;
            }
            if (p_drawn.m_end[i] < p_drawn.m_start[i]) {
                std::swap(p_drawn.m_start[i], p_drawn.m_end[i]);
                p_drawn.m_inverted = true;
            }
        }
        return true;
    }

    void addInside(const LayoutNode<T>& p_node, SceneNode& p_drawn) const {
        p_drawn.m_border = static_cast<double>(p_node.m_border);
        for (size_t i = 0; i < 2; ++i) {
            for (const T line : p_node.m_separators[i]) {
                p_drawn.m_lines[i].push_back(static_cast<double>(p_node.m_absolute.m_position[i] + line));
            }
            if (p_node.m_content) {
                p_drawn.m_content[i] = static_cast<double>((*p_node.m_content)[i]);
            }
        }
    }

    void addMarks(const LayoutNode<T>& p_node, SceneNode& p_drawn) const {
        for (size_t i = 0; i < 2; ++i) {
            const size_t axis = m_view[i];
            const LayoutAxis<T>& own = p_node.m_axes[axis];
            const LayoutWords& words = LAYOUT_WORDS[axis];
            if (p_node.m_positionMarked[axis]) {
                addMark(p_node, p_drawn, SCENE_POSITION, i, p_node.m_positionMarks[axis],
                        getValueText(own.m_position, getAnchorText(words.m_positionTexts, own.m_positionAnchor)));
            }
            if (!p_node.m_sizeMarked[axis]) {
                continue;
            }
            if (p_node.m_edgeMarks[axis].m_known) {
                addMark(p_node, p_drawn, SCENE_EDGE, i, p_node.m_edgeMarks[axis],
                        getValueText(own.m_size, getAnchorText(words.m_sizeTexts, own.m_sizeAnchor)));
            } else {
                p_drawn.m_marks.push_back(
                    {SCENE_SIZE, i, p_drawn.m_start[i], p_drawn.m_end[i], getNumberText(p_node.m_place.m_size[axis])});
            }
        }
    }

    void addMark(const LayoutNode<T>& p_node, SceneNode& p_drawn, SceneMarkKind p_kind, size_t p_axis,
                 const LayoutMark& p_mark, const std::string& p_text) const {
        if (p_mark.m_known) {
            const size_t axis = m_view[p_axis];
            const double parent = static_cast<double>(p_node.m_absolute.m_position[axis]) -
                                  static_cast<double>(p_node.m_place.m_position[axis]);
            p_drawn.m_marks.push_back({p_kind, p_axis, parent + p_mark.m_from, parent + p_mark.m_to, p_text});
        }
    }

    static std::string getValueText(T p_value, const std::string& p_anchor) {
        return getNumberText(p_value) + (p_anchor.find("PERCENT") == std::string::npos ? "" : "%");
    }

    /// The marked numbers with their anchors, then what became of them.
    void addLegend(const LayoutNode<T>& p_node, SceneNode& p_drawn) const {
        std::vector<std::string> rules;
        std::vector<std::string> results;
        for (const bool size : {false, true}) {
            for (size_t axis = 0; axis < m_axisCount; ++axis) {
                if (!(size ? p_node.m_sizeMarked : p_node.m_positionMarked)[axis]) {
                    continue;
                }
                const LayoutWords& words = LAYOUT_WORDS[axis];
                const LayoutAxis<T>& own = p_node.m_axes[axis];
                const std::string anchor = size ? getAnchorText(words.m_sizeTexts, own.m_sizeAnchor)
                                                : getAnchorText(words.m_positionTexts, own.m_positionAnchor);
                const std::string name = size ? words.m_size : words.m_position;
                rules.push_back(name + " " + getValueText(size ? own.m_size : own.m_position, anchor) + " " + anchor);
                results.push_back(name + " " +
                                  getNumberText((size ? p_node.m_place.m_size : p_node.m_place.m_position)[axis]));
            }
        }
        if (!p_node.m_solved) {
            results = {"no solution: " + p_node.m_failure};
        } else if (rules.empty()) {
            return;
        }
        p_drawn.m_legend = {p_node.m_name + ":"};
        for (size_t i = 0; i < rules.size(); ++i) {
            p_drawn.m_legend.push_back(rules[i] + (i + 1 < rules.size() ? "," : ""));
        }
        for (size_t i = 0; i < results.size(); ++i) {
            p_drawn.m_legend.push_back((i == 0 ? "= " : "") + results[i] + (i + 1 < results.size() ? "," : ""));
        }
    }

    const std::array<size_t, 2> m_view;
    const size_t m_axisCount;
    Scene m_scene;
};

} // namespace

template <typename T> Scene makeScene(const Layout<T>& p_layout) {
    return SceneBuilder<T>(p_layout).build(p_layout);
}

template Scene makeScene<int32_t>(const Layout<int32_t>& p_layout);
template Scene makeScene<int64_t>(const Layout<int64_t>& p_layout);
template Scene makeScene<float>(const Layout<float>& p_layout);
template Scene makeScene<double>(const Layout<double>& p_layout);

} // namespace zyr::host
