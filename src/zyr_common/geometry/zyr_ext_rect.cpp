#include "zyr_common/geometry/zyr_ext_rect.h"

#include "zyr_common/geometry/zyr_layout_rules.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

namespace {

/// Anchors mean the same on both axes, so the solver works on numbers and names them after the first axis.
constexpr uint8_t c_firstSeparator = ZYR_SIZE_WIDTH_V_SEPARATOR_1;
constexpr uint8_t c_lastSeparator = ZYR_SIZE_WIDTH_V_SEPARATOR_16;

/// What one axis sees of the surroundings.
template <typename T> struct AxisContext {
    T m_parentPosition;
    T m_parentSize;
    T m_previousPosition;
    T m_previousSize;
    T m_nextPosition;
    T m_nextSize;
    T m_contentSize;
    double m_contentScale;
    const Array<T>* m_separators;

    /// The coordinate of a separator anchor; a line that isn't there counts as 0.
    T getSeparator(uint8_t p_anchor) const {
        size_t index = p_anchor - c_firstSeparator;
        return m_separators && index < m_separators->getSize() ? m_separators->getData()[index] : T(0);
    }
};

/// The largest width with the aspect p_width : p_height inside the parent.
template <typename T> T fitWidth(T p_width, T p_height, const Rect<T>& p_parent) {
    if (p_parent.width * p_height > p_width * p_parent.height) {
        return zyr_divide<T>(p_width * p_parent.height, p_height);
    }
    if constexpr (std::is_integral_v<T>) {
        return p_parent.width;
    } else {
        // Not shortened: a zero width gives not-a-number.
        return p_width * p_parent.width / p_width;
    }
}

/// The height that goes with fitWidth.
template <typename T> T fitHeight(T p_width, T p_height, const Rect<T>& p_parent) {
    if (p_parent.width * p_height > p_width * p_parent.height) {
        if constexpr (std::is_integral_v<T>) {
            return p_parent.height;
        } else {
            return p_height * p_parent.height / p_height;
        }
    }
    return zyr_divide<T>(p_parent.width * p_height, p_width);
}

template <typename T> bool contentFits(const RectSize<T>& p_content, const Rect<T>& p_parent) {
    return p_content.width <= p_parent.width && p_content.height <= p_parent.height;
}

template <typename T> bool contentIsSmaller(const RectSize<T>& p_content, const Rect<T>& p_parent) {
    return p_content.width < p_parent.width && p_content.height < p_parent.height;
}

/// The size anchors that fit an aspect into the parent: that of the record itself or that of the content. p_fit is
/// fitWidth or fitHeight, p_contentSize the content's size on that axis. Gives false for other anchors.
template <typename T>
bool solveRatio(T& p_size, uint8_t p_anchor, T (*p_fit)(T, T, const Rect<T>&), const Rect<T>& p_own,
                const RectSize<T>& p_content, T p_contentSize, const Rect<T>& p_parent) {
    switch (p_anchor) {
    case ZYR_SIZE_WIDTH_RATIO:
        p_size = p_fit(p_own.width, p_own.height, p_parent);
        return true;
    case ZYR_SIZE_WIDTH_RATIO_ASPECT:
        p_size = p_fit(p_content.width, p_content.height, p_parent);
        return true;
    case ZYR_SIZE_WIDTH_RATIO_ASPECT_UPPER_LIMIT:
        p_size = contentFits(p_content, p_parent) ? p_contentSize : p_fit(p_content.width, p_content.height, p_parent);
        return true;
    case ZYR_SIZE_WIDTH_RATIO_ASPECT_LOWER_LIMIT:
        p_size =
            contentIsSmaller(p_content, p_parent) ? p_fit(p_content.width, p_content.height, p_parent) : p_contentSize;
        return true;
    default:
        return false;
    }
}

/// The size anchors that look at one axis only. p_edge tells that p_size is the coordinate of the far edge.
template <typename T>
bool solveSize(T& p_size, bool& p_edge, uint8_t p_anchor, T p_value, const AxisContext<T>& p_axis) {
    p_edge = false;
    switch (p_anchor) {
    case ZYR_SIZE_WIDTH_WIDTH:
    case ZYR_SIZE_WIDTH_WIDTH_NEWLINE:
        p_size = p_value;
        return true;
    case ZYR_SIZE_WIDTH_PARENT_WIDTH:
        p_size = p_axis.m_parentSize + p_value;
        return true;
    case ZYR_SIZE_WIDTH_PARENT_WIDTH_PERCENT:
        p_size = zyr_getPercent(p_axis.m_parentSize, p_value);
        return true;
    case ZYR_SIZE_WIDTH_PREV_WIDTH:
        p_size = p_axis.m_previousSize + p_value;
        return true;
    case ZYR_SIZE_WIDTH_PREV_WIDTH_PERCENT:
        p_size = zyr_getPercent(p_axis.m_previousSize, p_value);
        return true;
    case ZYR_SIZE_WIDTH_NEXT_WIDTH:
        p_size = p_axis.m_nextSize + p_value;
        return true;
    case ZYR_SIZE_WIDTH_NEXT_WIDTH_PERCENT:
        p_size = zyr_getPercent(p_axis.m_nextSize, p_value);
        return true;
    case ZYR_SIZE_WIDTH_CONTENT_WIDTH:
        p_size = p_axis.m_contentSize + p_value;
        return true;
    case ZYR_SIZE_WIDTH_CONTENT_WIDTH_NO_DS:
        p_size = zyr_convertNumber<T>(static_cast<double>(p_axis.m_contentSize) / p_axis.m_contentScale) + p_value;
        return true;
    }
    p_edge = true;
    switch (p_anchor) {
    case ZYR_SIZE_WIDTH_LEFT:
        p_size = p_value;
        return true;
    case ZYR_SIZE_WIDTH_RIGHT:
        p_size = p_axis.m_parentSize + p_value;
        return true;
    case ZYR_SIZE_WIDTH_CENTER:
        p_size = p_value + zyr_getHalf(p_axis.m_parentSize);
        return true;
    case ZYR_SIZE_WIDTH_PREV_LEFT:
        p_size = p_axis.m_previousPosition + p_value;
        return true;
    case ZYR_SIZE_WIDTH_PREV_RIGHT:
        p_size = p_axis.m_previousPosition + p_axis.m_previousSize + p_value;
        return true;
    case ZYR_SIZE_WIDTH_PREV_CENTER:
        p_size = p_value + p_axis.m_previousPosition + zyr_getHalf(p_axis.m_previousSize);
        return true;
    case ZYR_SIZE_WIDTH_NEXT_LEFT:
        p_size = p_axis.m_nextPosition + p_value;
        return true;
    case ZYR_SIZE_WIDTH_NEXT_RIGHT:
        p_size = p_axis.m_nextPosition + p_axis.m_nextSize + p_value;
        return true;
    case ZYR_SIZE_WIDTH_NEXT_CENTER:
        p_size = p_value + p_axis.m_nextPosition + zyr_getHalf(p_axis.m_nextSize);
        return true;
    }
    if (p_anchor >= c_firstSeparator && p_anchor <= c_lastSeparator) {
        p_size = p_value + p_axis.getSeparator(p_anchor);
        return true;
    }
    return false;
}

/// p_size is what solveSize gave, still an edge where it is one. The two late positions give 0 for now.
template <typename T>
bool solvePosition(T& p_position, uint8_t p_anchor, T p_value, T p_size, const AxisContext<T>& p_axis) {
    switch (p_anchor) {
    case ZYR_POSITION_X_LEFT:
        p_position = p_value;
        return true;
    case ZYR_POSITION_X_RIGHT:
        p_position = p_axis.m_parentSize + p_value;
        return true;
    case ZYR_POSITION_X_CENTER:
        p_position = zyr_getHalf(p_axis.m_parentSize) + p_value;
        return true;
    case ZYR_POSITION_X_PARENT_WIDTH_PERCENT:
        p_position = zyr_getPercent(p_axis.m_parentSize, p_value);
        return true;
    case ZYR_POSITION_X_ABSOLUTE:
        p_position = p_axis.m_parentPosition + p_value;
        return true;
    case ZYR_POSITION_X_PREV_LEFT:
        p_position = p_axis.m_previousPosition + p_value;
        return true;
    case ZYR_POSITION_X_PREV_RIGHT:
        p_position = p_axis.m_previousPosition + p_axis.m_previousSize + p_value;
        return true;
    case ZYR_POSITION_X_PREV_CENTER:
        p_position = p_value + p_axis.m_previousPosition + zyr_getHalf(p_axis.m_previousSize);
        return true;
    case ZYR_POSITION_X_PREV_LEFT_PLUS_WIDTH_PERCENT:
        p_position = zyr_getPercent(p_axis.m_previousSize, p_value) + p_axis.m_previousPosition;
        return true;
    case ZYR_POSITION_X_NEXT_LEFT:
        p_position = p_axis.m_nextPosition + p_value;
        return true;
    case ZYR_POSITION_X_NEXT_RIGHT:
        p_position = p_axis.m_nextPosition + p_axis.m_nextSize + p_value;
        return true;
    case ZYR_POSITION_X_NEXT_CENTER:
        p_position = p_value + p_axis.m_nextPosition + zyr_getHalf(p_axis.m_nextSize);
        return true;
    case ZYR_POSITION_X_NEXT_LEFT_PLUS_WIDTH_PERCENT:
        p_position = zyr_getPercent(p_axis.m_nextSize, p_value) + p_axis.m_nextPosition;
        return true;
    case ZYR_POSITION_X_RIGHT_MINUS_WIDTH:
        p_position = p_axis.m_parentSize - p_size + p_value;
        return true;
    case ZYR_POSITION_X_PARENT_WIDTH_PERCENT_MINUS_WIDTH:
    case ZYR_POSITION_X_PARENT_WIDTH_PERCENT_WITHOUT_WIDTH:
        p_position = 0;
        return true;
    }
    if (p_anchor >= c_firstSeparator && p_anchor <= c_lastSeparator) {
        p_position = p_value + p_axis.getSeparator(p_anchor);
        return true;
    }
    return false;
}

/// Pulls one axis in by half a border, but holds it inside the parent by a whole one.
template <typename T> void applyBorder(T& p_position, T& p_size, T p_parentSize, T p_border) {
    T half;
    if constexpr (std::is_integral_v<T>) {
        half = p_border >> 1;
    } else {
        half = p_border * T(0.5);
    }
    T end = p_position + p_size;
    T start = p_position - half < 0 ? p_border : p_position + half;
    end = end + half > p_parentSize ? p_parentSize - p_border : end - half;
    p_position = start;
    p_size = end - start;
}

/// The positions that need the limited size.
template <typename T> void solveLatePosition(T& p_position, uint8_t p_anchor, T p_value, T p_size, T p_parentSize) {
    if (p_anchor == ZYR_POSITION_X_PARENT_WIDTH_PERCENT_MINUS_WIDTH) {
        p_position = zyr_getPercent(p_parentSize, p_value) - p_size;
    } else if (p_anchor == ZYR_POSITION_X_PARENT_WIDTH_PERCENT_WITHOUT_WIDTH) {
        // The extra 1 is relied upon in all forms.
        p_position = zyr_getPercent<T>(p_parentSize - p_size + 1, p_value);
    }
}

} // namespace

template <typename T>
bool_t ExtRect<T>::solveRect(Rect<T>& p_out, const Rect<T>& p_parent, const Rect<T>& p_previous, const Rect<T>& p_next,
                             const RectSize<T>& p_content, double p_contentScale, const Array<T>* p_hSeparators,
                             const Array<T>* p_vSeparators, T p_border) const {
    // The result may be one of the surroundings.
    const Rect<T> parent(p_parent);
    const AxisContext<T> horizontal = {parent.x,     parent.width,    p_previous.x,   p_previous.width, p_next.x,
                                       p_next.width, p_content.width, p_contentScale, p_vSeparators};
    const AxisContext<T> vertical = {parent.y,      parent.height,    p_previous.y,   p_previous.height, p_next.y,
                                     p_next.height, p_content.height, p_contentScale, p_hSeparators};
    Rect<T> out(p_out);

    bool widthIsEdge = false;
    if (!solveRatio<T>(out.width, widthAnchor, &fitWidth<T>, *this, p_content, p_content.width, parent) &&
        !solveSize<T>(out.width, widthIsEdge, widthAnchor, this->width, horizontal)) {
        ZYR_LOG_WARN("Unknown width anchor type:%d", widthAnchor);
        return 0;
    }
    p_out.width = out.width;

    bool heightIsEdge = false;
    if (!solveRatio<T>(out.height, heightAnchor, &fitHeight<T>, *this, p_content, p_content.height, parent) &&
        !solveSize<T>(out.height, heightIsEdge, heightAnchor, this->height, vertical)) {
        ZYR_LOG_WARN("Unknown height anchor type:%d", heightAnchor);
        return 0;
    }
    p_out.height = out.height;

    if (!solvePosition<T>(out.x, xAnchor, this->x, out.width, horizontal)) {
        ZYR_LOG_WARN("Unknown x anchor type:%d", xAnchor);
        return 0;
    }
    p_out.x = out.x;
    if (!solvePosition<T>(out.y, yAnchor, this->y, out.height, vertical)) {
        ZYR_LOG_WARN("Unknown y anchor type:%d", yAnchor);
        return 0;
    }

    if (widthIsEdge) {
        out.width -= out.x;
    }
    if (heightIsEdge) {
        out.height -= out.y;
    }
    if (p_border > 0) {
        applyBorder<T>(out.x, out.width, parent.width, p_border);
        applyBorder<T>(out.y, out.height, parent.height, p_border);
    }
    zyr_applyLimits<T>(out.width, minWidth, maxWidth);
    zyr_applyLimits<T>(out.height, minHeight, maxHeight);
    solveLatePosition<T>(out.x, xAnchor, this->x, out.width, parent.width);
    solveLatePosition<T>(out.y, yAnchor, this->y, out.height, parent.height);

    if (widthAnchor == ZYR_SIZE_WIDTH_WIDTH_NEWLINE && out.x + out.width > parent.width) {
        out.x = 0;
        // The sign of the stored y tells the direction, the stored height the distance; both are relied upon.
        if (this->y > 0) {
            out.y += this->height;
        } else {
            out.y -= this->height;
        }
    }
    p_out = out;
    return 1;
}

#define ZYR_INSTANTIATE_EXT_RECT(type)                                                                                 \
    template class ExtRect<type>;                                                                                      \
    template class RecordWalker<ExtRect<type>>;

ZYR_INSTANTIATE_EXT_RECT(int32_t)
ZYR_INSTANTIATE_EXT_RECT(int64_t)
ZYR_INSTANTIATE_EXT_RECT(float)
ZYR_INSTANTIATE_EXT_RECT(double)

} // namespace zyr
