#include "host/zyr_layout_solver.h"

#include "zyr_common/geometry/zyr_ext_box.h"
#include "zyr_common/geometry/zyr_ext_rect.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace zyr::host {

namespace {

/// What a node is solved against.
template <typename T> struct Surroundings {
    LayoutPlace<T> m_parent;
    LayoutPlace<T> m_previous;
    LayoutPlace<T> m_next;
    T m_border = 0;
    Array<T> m_separators[2];
};

template <typename T> Rect<T> toRect(const LayoutPlace<T>& p_place) {
    return {p_place.m_position[0], p_place.m_position[1], p_place.m_size[0], p_place.m_size[1]};
}

template <typename T> Box<T> toBox(const LayoutPlace<T>& p_place) {
    return {p_place.m_position[0], p_place.m_position[1], p_place.m_position[2],
            p_place.m_size[0],     p_place.m_size[1],     p_place.m_size[2]};
}

template <typename T>
bool solveRectangle(const LayoutAxes<T>& p_axes, const Surroundings<T>& p_around, const RectSize<T>& p_content,
                    double p_contentScale, LayoutPlace<T>& p_place) {
    const LayoutAxis<T>& x = p_axes[0];
    const LayoutAxis<T>& y = p_axes[1];
    const ExtRect<T> record(
        Rect<T>(x.m_position, y.m_position, x.m_size, y.m_size), static_cast<PositionXAnchorEnum>(x.m_positionAnchor),
        static_cast<PositionYAnchorEnum>(y.m_positionAnchor), static_cast<SizeWidthAnchorEnum>(x.m_sizeAnchor),
        static_cast<SizeHeightAnchorEnum>(y.m_sizeAnchor), x.m_min, x.m_max, y.m_min, y.m_max, ExtVector2<T>());
    Rect<T> out;
    const bool solved = record.solveRect(out, toRect(p_around.m_parent), toRect(p_around.m_previous),
                                         toRect(p_around.m_next), p_content, p_contentScale, &p_around.m_separators[1],
                                         &p_around.m_separators[0], p_around.m_border) != 0;
    p_place.m_position = {out.x, out.y, 0};
    p_place.m_size = {out.width, out.height, 0};
    return solved;
}

template <typename T>
bool solveABox(const LayoutAxes<T>& p_axes, const Surroundings<T>& p_around, LayoutPlace<T>& p_place) {
    const LayoutAxis<T>& x = p_axes[0];
    const LayoutAxis<T>& y = p_axes[1];
    const LayoutAxis<T>& z = p_axes[2];
    const ExtBox<T> record(
        Box<T>(x.m_position, y.m_position, z.m_position, x.m_size, y.m_size, z.m_size),
        static_cast<PositionXAnchorEnum>(x.m_positionAnchor), static_cast<PositionYAnchorEnum>(y.m_positionAnchor),
        static_cast<PositionZAnchorEnum>(z.m_positionAnchor), static_cast<SizeWidthAnchorEnum>(x.m_sizeAnchor),
        static_cast<SizeHeightAnchorEnum>(y.m_sizeAnchor), static_cast<SizeDepthAnchorEnum>(z.m_sizeAnchor), x.m_min,
        x.m_max, y.m_min, y.m_max, z.m_min, z.m_max, ExtVector3<T>());
    Box<T> out;
    const bool solved = record.solveBox(out, toBox(p_around.m_parent)) != 0;
    p_place.m_position = {out.x, out.y, out.z};
    p_place.m_size = {out.width, out.height, out.depth};
    return solved;
}

template <typename T>
bool solvePlanePoint(const LayoutAxes<T>& p_axes, const Surroundings<T>& p_around, LayoutPlace<T>& p_place) {
    const ExtVector2<T> record(Vector2<T>(p_axes[0].m_position, p_axes[1].m_position),
                               static_cast<PositionXAnchorEnum>(p_axes[0].m_positionAnchor),
                               static_cast<PositionYAnchorEnum>(p_axes[1].m_positionAnchor));
    const Vector2<T> previous(p_around.m_previous.m_position[0], p_around.m_previous.m_position[1]);
    Vector2<T> out;
    const bool solved = record.solveVector(out, previous, toRect(p_around.m_parent)) != 0;
    p_place.m_position = {out.x, out.y, 0};
    return solved;
}

template <typename T>
bool solveSpacePoint(const LayoutAxes<T>& p_axes, const Surroundings<T>& p_around, LayoutPlace<T>& p_place) {
    const ExtVector3<T> record(Vector3<T>(p_axes[0].m_position, p_axes[1].m_position, p_axes[2].m_position),
                               static_cast<PositionXAnchorEnum>(p_axes[0].m_positionAnchor),
                               static_cast<PositionYAnchorEnum>(p_axes[1].m_positionAnchor),
                               static_cast<PositionZAnchorEnum>(p_axes[2].m_positionAnchor));
    const std::array<T, LAYOUT_AXES>& before = p_around.m_previous.m_position;
    Vector3<T> out;
    const bool solved =
        record.solveVector(out, Vector3<T>(before[0], before[1], before[2]), toBox(p_around.m_parent)) != 0;
    p_place.m_position = {out.x, out.y, out.z};
    return solved;
}

/// Solves the numbers of a node, which may differ from its own.
template <typename T>
bool solveAxes(const LayoutNode<T>& p_node, size_t p_axisCount, const LayoutAxes<T>& p_axes,
               const Surroundings<T>& p_around, const std::array<T, 2>& p_content, LayoutPlace<T>& p_place) {
    p_place = {};
    // Boxes and points of space have no integer form; the reader lets none through.
    if constexpr (std::is_floating_point_v<T>) {
        if (p_axisCount == LAYOUT_AXES) {
            return p_node.m_kind == LAYOUT_POINT ? solveSpacePoint(p_axes, p_around, p_place)
                                                 : solveABox(p_axes, p_around, p_place);
        }
    }
    if (p_node.m_kind == LAYOUT_POINT) {
        return solvePlanePoint(p_axes, p_around, p_place);
    }
    return solveRectangle(p_axes, p_around, RectSize<T>(p_content[0], p_content[1]), p_node.m_contentScale, p_place);
}

/// Whether an anchor's name begins so.
bool startsWith(std::span<const EnumerationEntry> p_texts, uint8_t p_anchor, const char* p_start) {
    return getAnchorText(p_texts, p_anchor).starts_with(p_start);
}

/// Whether one of the node's anchors names a sibling: p_start is "PREV_" or "NEXT_". Boxes have no such anchors.
template <typename T> bool namesSibling(const LayoutNode<T>& p_node, size_t p_axisCount, const char* p_start) {
    if (p_node.m_kind == LAYOUT_BOX) {
        return false;
    }
    for (size_t axis = 0; axis < p_axisCount; ++axis) {
        const LayoutWords& words = LAYOUT_WORDS[axis];
        if (startsWith(words.m_positionTexts, p_node.m_axes[axis].m_positionAnchor, p_start) ||
            (p_node.m_kind != LAYOUT_POINT &&
             startsWith(words.m_sizeTexts, p_node.m_axes[axis].m_sizeAnchor, p_start))) {
            return true;
        }
    }
    return false;
}

/// Whether the size of a rectangle asks for its content.
template <typename T> bool asksForContent(const LayoutNode<T>& p_node) {
    for (size_t axis = 0; axis < 2; ++axis) {
        const uint8_t anchor = p_node.m_axes[axis].m_sizeAnchor;
        if (startsWith(LAYOUT_WORDS[axis].m_sizeTexts, anchor, "CONTENT_") ||
            startsWith(LAYOUT_WORDS[axis].m_sizeTexts, anchor, "RATIO_ASPECT")) {
            return p_node.m_kind == LAYOUT_RECT;
        }
    }
    return false;
}

/// What a child is solved against. Before the first child stands a rectangle of no size at the parent's left and top
/// edge, behind the last one such a rectangle at the right and bottom edge.
template <typename T> Surroundings<T> lookAround(const LayoutNode<T>& p_parent, size_t p_index) {
    Surroundings<T> around;
    const std::vector<LayoutNode<T>>& children = p_parent.m_children;
    const LayoutNode<T>& child = children[p_index];
    around.m_parent = p_parent.m_place;
    around.m_next.m_position = p_parent.m_place.m_size;
    if (child.m_previous) {
        around.m_previous = *child.m_previous;
    } else if (p_index > 0) {
        around.m_previous = children[p_index - 1].m_place;
    }
    if (child.m_next) {
        around.m_next = *child.m_next;
    } else if (p_index + 1 < children.size()) {
        around.m_next = children[p_index + 1].m_place;
    }
    around.m_border = p_parent.m_border;
    for (size_t i = 0; i < 2; ++i) {
        for (const T line : p_parent.m_separators[i]) {
            around.m_separators[i].pushBack(line);
        }
    }
    return around;
}

template <typename T> class Solver {
public:
    Solver(size_t p_axisCount, bool p_keepGoing) : m_axisCount(p_axisCount), m_keepGoing(p_keepGoing) {}

    void solveChildren(LayoutNode<T>& p_parent) {
        std::vector<LayoutNode<T>>& children = p_parent.m_children;
        for (LayoutNode<T>& child : children) {
            child.m_solved = false;
            child.m_failure.clear();
        }
        // A chain of siblings that wait runs in one direction, or its members wait for each other: two turns do.
        for (size_t i = 0; i < children.size(); ++i) {
            solveWhenReady(p_parent, i);
        }
        for (size_t i = children.size(); i-- > 0;) {
            solveWhenReady(p_parent, i);
        }
        for (size_t i = 0; i < children.size(); ++i) {
            if (!children[i].m_solved && children[i].m_failure.empty()) {
                failForSibling(p_parent, i);
            }
        }
    }

private:
    void solveWhenReady(LayoutNode<T>& p_parent, size_t p_index) {
        std::vector<LayoutNode<T>>& children = p_parent.m_children;
        LayoutNode<T>& child = children[p_index];
        if (child.m_solved || !child.m_failure.empty() ||
            (waitsForPrevious(child, p_index) && !children[p_index - 1].m_solved) ||
            (waitsForNext(child, p_index, children.size()) && !children[p_index + 1].m_solved)) {
            return;
        }
        solveNode(p_parent, p_index);
    }

    bool waitsForPrevious(const LayoutNode<T>& p_node, size_t p_index) const {
        return p_index > 0 && !p_node.m_previous && namesSibling(p_node, m_axisCount, "PREV_");
    }

    bool waitsForNext(const LayoutNode<T>& p_node, size_t p_index, size_t p_count) const {
        return p_index + 1 < p_count && !p_node.m_next && namesSibling(p_node, m_axisCount, "NEXT_");
    }

    void solveNode(LayoutNode<T>& p_parent, size_t p_index) {
        LayoutNode<T>& node = p_parent.m_children[p_index];
        const Surroundings<T> around = lookAround(p_parent, p_index);
        std::array<T, 2> content = node.m_content.value_or(std::array<T, 2>{});
        node.m_usedContent = node.m_content;
        if (!node.m_content && !node.m_children.empty() && asksForContent(node)) {
            if (!solve(node, around, content)) {
                return;
            }
            for (size_t axis = 0; axis < m_axisCount; ++axis) {
                clearIfNotFinite(node.m_place.m_position[axis]);
                clearIfNotFinite(node.m_place.m_size[axis]);
            }
            solveChildren(node);
            content = cover(node);
            node.m_usedContent = content;
        }
        if (solve(node, around, content)) {
            node.m_solved = true;
            solveChildren(node);
        }
    }

    static void clearIfNotFinite(T& p_number) {
        if constexpr (std::is_floating_point_v<T>) {
            if (!std::isfinite(p_number)) {
                p_number = 0;
            }
        }
    }

    /// From the node's corner to the furthest ends of its children.
    static std::array<T, 2> cover(const LayoutNode<T>& p_node) {
        std::array<T, 2> size{};
        for (const LayoutNode<T>& child : p_node.m_children) {
            for (size_t axis = 0; axis < 2 && child.m_solved; ++axis) {
                size[axis] = std::max<T>(size[axis], child.m_place.m_position[axis] + child.m_place.m_size[axis]);
            }
        }
        return size;
    }

    bool solve(LayoutNode<T>& p_node, const Surroundings<T>& p_around, const std::array<T, 2>& p_content) {
        if (++m_solves > LAYOUT_MAX_SOLVES) {
            throw LayoutError(p_node.m_pointer + ": sizes that ask for their content are nested too deep: more than " +
                              std::to_string(LAYOUT_MAX_SOLVES) + " solves");
        }
        if (solveAxes(p_node, m_axisCount, p_node.m_axes, p_around, p_content, p_node.m_place)) {
            return true;
        }
        failForAnchor(p_node, p_around, p_content);
        return false;
    }

    /// Finds the anchor that stopped the solver: sizes come before positions.
    void failForAnchor(LayoutNode<T>& p_node, const Surroundings<T>& p_around, const std::array<T, 2>& p_content) {
        for (const bool size : {true, false}) {
            for (size_t axis = 0; axis < m_axisCount; ++axis) {
                LayoutAxes<T> axes{};
                LayoutPlace<T> ignored;
                const LayoutAxis<T>& own = p_node.m_axes[axis];
                (size ? axes[axis].m_sizeAnchor : axes[axis].m_positionAnchor) =
                    size ? own.m_sizeAnchor : own.m_positionAnchor;
                if (!solveAxes(p_node, m_axisCount, axes, p_around, p_content, ignored)) {
                    const LayoutWords& words = LAYOUT_WORDS[axis];
                    const std::string key = size ? words.m_sizeAnchor : words.m_positionAnchor;
                    fail(p_node, "/" + key,
                         std::string("a ") + p_node.getKindText() + " has no " + key + " " +
                             (size ? getAnchorText(words.m_sizeTexts, own.m_sizeAnchor)
                                   : getAnchorText(words.m_positionTexts, own.m_positionAnchor)));
                    return;
                }
            }
        }
        fail(p_node, "", "has no solution");
    }

    void failForSibling(LayoutNode<T>& p_parent, size_t p_index) {
        std::vector<LayoutNode<T>>& children = p_parent.m_children;
        LayoutNode<T>& child = children[p_index];
        const bool waitsForThePrevious = waitsForPrevious(child, p_index) && !children[p_index - 1].m_solved;
        const LayoutNode<T>& other = children[waitsForThePrevious ? p_index - 1 : p_index + 1];
        fail(child, "",
             "waits for its sibling \"" + other.m_name + "\", which " +
                 (other.m_failure.empty() ? "waits itself" : "has no solution"));
    }

    void fail(LayoutNode<T>& p_node, const std::string& p_key, const std::string& p_reason) {
        if (!m_keepGoing) {
            throw LayoutError(p_node.m_pointer + p_key + ": \"" + p_node.m_path + "\" cannot be solved: " + p_reason);
        }
        p_node.m_failure = p_reason;
        failBelow(p_node);
    }

    static void failBelow(LayoutNode<T>& p_node) {
        for (LayoutNode<T>& child : p_node.m_children) {
            child.m_solved = false;
            child.m_failure = "its parent has no solution";
            failBelow(child);
        }
    }

    size_t m_axisCount;
    size_t m_solves = 0;
    bool m_keepGoing;
};

/// Adds up where everything stands. Gives whether all of it has been solved.
template <typename T> bool placeChildren(LayoutNode<T>& p_parent) {
    bool solved = true;
    for (LayoutNode<T>& child : p_parent.m_children) {
        child.m_absolute = child.m_place;
        for (size_t axis = 0; axis < LAYOUT_AXES; ++axis) {
            child.m_absolute.m_position[axis] += p_parent.m_absolute.m_position[axis];
        }
        solved = placeChildren(child) && child.m_solved && solved;
    }
    return solved;
}

/// The sizes that give a far edge; boxes know one of them.
bool isEdge(uint8_t p_anchor) {
    return (p_anchor >= ZYR_SIZE_WIDTH_LEFT && p_anchor <= ZYR_SIZE_WIDTH_PREV_CENTER) ||
           (p_anchor >= ZYR_SIZE_WIDTH_NEXT_LEFT && p_anchor <= ZYR_SIZE_WIDTH_NEXT_CENTER) ||
           p_anchor >= ZYR_SIZE_WIDTH_V_SEPARATOR_1;
}

bool isLate(uint8_t p_anchor) {
    return p_anchor == ZYR_POSITION_X_PARENT_WIDTH_PERCENT_MINUS_WIDTH ||
           p_anchor == ZYR_POSITION_X_PARENT_WIDTH_PERCENT_WITHOUT_WIDTH;
}

template <typename T> class Marker {
public:
    explicit Marker(size_t p_axisCount) : m_axisCount(p_axisCount) {}

    void markChildren(LayoutNode<T>& p_parent) {
        for (size_t i = 0; i < p_parent.m_children.size(); ++i) {
            LayoutNode<T>& child = p_parent.m_children[i];
            if (child.m_solved) {
                Surroundings<T> around = lookAround(p_parent, i);
                around.m_border = 0;
                mark(child, around);
                markChildren(child);
            }
        }
    }

private:
    void mark(LayoutNode<T>& p_node, const Surroundings<T>& p_around) {
        LayoutAxes<T> axes = p_node.m_axes;
        const bool wraps = p_node.m_kind == LAYOUT_RECT && axes[0].m_sizeAnchor == ZYR_SIZE_WIDTH_WIDTH_NEWLINE;
        if (wraps) {
            axes[0].m_sizeAnchor = ZYR_SIZE_WIDTH_WIDTH;
        }
        const LayoutPlace<T> full = solve(p_node, axes, p_around);
        const bool wrapped = wraps && full.m_position[0] + full.m_size[0] > p_around.m_parent.m_size[0];
        for (size_t axis = 0; axis < m_axisCount; ++axis) {
            const uint8_t anchor = axes[axis].m_positionAnchor;
            const bool edge = p_node.m_kind != LAYOUT_POINT && isEdge(axes[axis].m_sizeAnchor);
            if (!wrapped) {
                LayoutAxes<T> zero = axes;
                zero[axis].m_position = 0;
                const bool farEdge = !edge && (anchor == ZYR_POSITION_X_RIGHT_MINUS_WIDTH ||
                                               anchor == ZYR_POSITION_X_PARENT_WIDTH_PERCENT_MINUS_WIDTH);
                setMark(p_node.m_positionMarks[axis], farEdge, axis, solve(p_node, zero, p_around), full);
            }
            if (edge && !isLate(anchor)) {
                LayoutAxes<T> free = axes;
                free[axis].m_min = std::numeric_limits<T>::lowest();
                free[axis].m_max = std::numeric_limits<T>::max();
                const LayoutPlace<T> to = solve(p_node, free, p_around);
                free[axis].m_size = 0;
                setMark(p_node.m_edgeMarks[axis], true, axis, solve(p_node, free, p_around), to);
            }
        }
    }

    LayoutPlace<T> solve(const LayoutNode<T>& p_node, const LayoutAxes<T>& p_axes,
                         const Surroundings<T>& p_around) const {
        LayoutPlace<T> place;
        solveAxes(p_node, m_axisCount, p_axes, p_around, p_node.m_usedContent.value_or(std::array<T, 2>{}), place);
        return place;
    }

    static void setMark(LayoutMark& p_mark, bool p_farEdge, size_t p_axis, const LayoutPlace<T>& p_from,
                        const LayoutPlace<T>& p_to) {
        p_mark.m_farEdge = p_farEdge;
        p_mark.m_from = static_cast<double>(p_from.m_position[p_axis]);
        p_mark.m_to = static_cast<double>(p_to.m_position[p_axis]);
        if (p_farEdge) {
            p_mark.m_from += static_cast<double>(p_from.m_size[p_axis]);
            p_mark.m_to += static_cast<double>(p_to.m_size[p_axis]);
        }
        p_mark.m_known = std::isfinite(p_mark.m_from) && std::isfinite(p_mark.m_to);
    }

    size_t m_axisCount;
};

} // namespace

template <typename T> bool solveLayout(Layout<T>& p_layout, bool p_keepGoing) {
    Solver<T>(p_layout.m_axisCount, p_keepGoing).solveChildren(p_layout.m_root);
    p_layout.m_root.m_absolute = p_layout.m_root.m_place;
    return placeChildren(p_layout.m_root);
}

template <typename T> void findLayoutMarks(Layout<T>& p_layout) {
    Marker<T>(p_layout.m_axisCount).markChildren(p_layout.m_root);
}

#define ZYR_INSTANTIATE_LAYOUT_SOLVER(type)                                                                            \
    template bool solveLayout<type>(Layout<type> & p_layout, bool p_keepGoing);                                        \
    template void findLayoutMarks<type>(Layout<type> & p_layout);

ZYR_INSTANTIATE_LAYOUT_SOLVER(int32_t)
ZYR_INSTANTIATE_LAYOUT_SOLVER(int64_t)
ZYR_INSTANTIATE_LAYOUT_SOLVER(float)
ZYR_INSTANTIATE_LAYOUT_SOLVER(double)

} // namespace zyr::host
