/// What a drawing of a layout shows, in the layout's own units and apart from its number type.
///
/// Of each pair of numbers the first belongs to the axis that runs to the right, the second to the one that runs down.
#pragma once

#include "host/zyr_layout_tree.h"

#include <array>
#include <string>
#include <vector>

namespace zyr::host {

enum SceneMarkKind {
    SCENE_POSITION, ///< an arrow from what the anchor gives for 0 to where the edge is
    SCENE_EDGE,     ///< the same for the far edge of a size
    SCENE_SIZE      ///< a dimension line from edge to edge
};

struct SceneMark {
    SceneMarkKind m_kind;
    size_t m_axis; ///< 0 to the right, 1 down
    double m_from;
    double m_to;
    std::string m_text;
};

struct SceneNode {
    std::string m_name;
    bool m_drawn = false; ///< Not when it has no solution or a number that can't be drawn.
    bool m_point = false;
    bool m_parent = false;   ///< It has children.
    bool m_inverted = false; ///< A size is below 0; its corners are drawn the right way round.
    std::array<double, 2> m_start{};
    std::array<double, 2> m_end{};
    std::array<double, 2> m_content{}; ///< What it was given as content; (0, 0) for none.
    double m_border = 0;
    std::array<std::vector<double>, 2> m_lines; ///< separators: upright ones by their x, level ones by their y
    std::vector<SceneMark> m_marks;
    std::vector<std::string> m_legend; ///< Its line below the drawing, in pieces that stay whole. May be empty.
};

struct Scene {
    std::string m_title;
    std::array<std::string, 2> m_axes; ///< their letters
    std::vector<SceneNode> m_nodes;    ///< parents before their children
};

/// Needs a solved layout with its marks.
template <typename T> Scene makeScene(const Layout<T>& p_layout);

} // namespace zyr::host
