/// A tree of anchored rectangles, boxes and points, as the layout command holds it for each of the four number types.
///
/// The axes are numbered 0 to 2 for x, y and z; a plane layout uses the first two.
#pragma once

#include "zyr_common/geometry/zyr_anchors.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zyr::host {

/// How one axis is called in files, and the texts of its anchors.
struct LayoutWords {
    const char* m_position;
    const char* m_positionAnchor;
    const char* m_size;
    const char* m_sizeAnchor;
    const char* m_min;
    const char* m_max;
    std::span<const EnumerationEntry> m_positionTexts;
    std::span<const EnumerationEntry> m_sizeTexts;
};

inline constexpr size_t LAYOUT_AXES = 3;
inline constexpr LayoutWords LAYOUT_WORDS[LAYOUT_AXES] = {
    {"x", "xAnchor", "width", "widthAnchor", "minWidth", "maxWidth", EnumerationTable<PositionXAnchorEnum>::c_entries,
     EnumerationTable<SizeWidthAnchorEnum>::c_entries},
    {"y", "yAnchor", "height", "heightAnchor", "minHeight", "maxHeight",
     EnumerationTable<PositionYAnchorEnum>::c_entries, EnumerationTable<SizeHeightAnchorEnum>::c_entries},
    {"z", "zAnchor", "depth", "depthAnchor", "minDepth", "maxDepth", EnumerationTable<PositionZAnchorEnum>::c_entries,
     EnumerationTable<SizeDepthAnchorEnum>::c_entries}};

/// The text of an anchor, or its number where it has none.
inline std::string getAnchorText(std::span<const EnumerationEntry> p_texts, uint8_t p_anchor) {
    for (const EnumerationEntry& entry : p_texts) {
        if (entry.m_number == p_anchor) {
            return entry.m_text;
        }
    }
    return std::to_string(p_anchor);
}

/// Which two axes a drawing shows: the one to the right, the one downward.
struct LayoutView {
    size_t m_right = 0;
    size_t m_down = 1;
};

/// "xy", "xz" or "zy"; nothing for other texts.
inline std::optional<LayoutView> findLayoutView(const std::string& p_text) {
    if (p_text == "xy") {
        return LayoutView{0, 1};
    }
    if (p_text == "xz") {
        return LayoutView{0, 2};
    }
    if (p_text == "zy") {
        return LayoutView{2, 1};
    }
    return std::nullopt;
}

enum LayoutKind { LAYOUT_RECT, LAYOUT_BOX, LAYOUT_POINT };

/// A solved rectangle, box or point; what it doesn't have is 0.
template <typename T> struct LayoutPlace {
    std::array<T, LAYOUT_AXES> m_position{};
    std::array<T, LAYOUT_AXES> m_size{};
};

/// The numbers of a record on one axis.
template <typename T> struct LayoutAxis {
    T m_position = 0;
    T m_size = 0;
    T m_min = 0;
    T m_max = 0;
    uint8_t m_positionAnchor = 0;
    uint8_t m_sizeAnchor = 0;
};
template <typename T> using LayoutAxes = std::array<LayoutAxis<T>, LAYOUT_AXES>;

/// What a number does: it moves an edge from one coordinate to another, in the parent's coordinates.
struct LayoutMark {
    bool m_known = false;
    bool m_farEdge = false; ///< The right, bottom or far edge, not the left, top or near one.
    double m_from = 0;
    double m_to = 0;
};

template <typename T> struct LayoutNode {
    // As it was read.
    std::string m_name;
    std::string m_path;    ///< The names from the root on, with "/" between them.
    std::string m_pointer; ///< Where it stands in the file.
    LayoutKind m_kind = LAYOUT_RECT;
    LayoutAxes<T> m_axes;
    std::optional<std::array<T, 2>> m_content;
    double m_contentScale = 1;
    std::optional<LayoutPlace<T>> m_previous; ///< In place of the sibling before.
    std::optional<LayoutPlace<T>> m_next;     ///< In place of the sibling behind.
    T m_border = 0;                           ///< Around the children.
    std::vector<T> m_separators[2];           ///< The x of vertical lines and the y of horizontal ones, for children.
    std::array<bool, LAYOUT_AXES> m_positionMarked{};
    std::array<bool, LAYOUT_AXES> m_sizeMarked{};
    std::vector<LayoutNode> m_children;

    // As it was solved.
    bool m_solved = false;
    std::string m_failure;  ///< Why not.
    LayoutPlace<T> m_place; ///< As the solver gave it: inside the parent.
    LayoutPlace<T> m_absolute;
    std::optional<std::array<T, 2>> m_usedContent;
    std::array<LayoutMark, LAYOUT_AXES> m_positionMarks;
    std::array<LayoutMark, LAYOUT_AXES> m_edgeMarks; ///< Only of sizes that are given as a far edge.

    const char* getKindText() const {
        return m_kind == LAYOUT_POINT ? "point" : m_kind == LAYOUT_BOX ? "box" : "rectangle";
    }
};

template <typename T> struct Layout {
    std::string m_type; ///< of the numbers
    std::string m_title;
    LayoutView m_view;
    size_t m_axisCount = 2;
    LayoutNode<T> m_root; ///< Its place is given.
};

} // namespace zyr::host
