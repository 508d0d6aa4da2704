#include "zyr_common/geometry/zyr_ext_box.h"

#include "zyr_common/geometry/zyr_layout_rules.h"
#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

namespace {

enum LimitingAxis { c_limitedByHeight, c_limitedByDepth, c_limitedByWidth };

/// Which axis of the parent limits a box with the aspect of p_box.
template <typename T> LimitingAxis getLimitingAxis(const Box<T>& p_box, const Box<T>& p_parent) {
    if (p_parent.width * p_box.height > p_box.width * p_parent.height &&
        p_box.height * p_parent.depth > p_parent.height * p_box.depth) {
        return c_limitedByHeight;
    }
    if (p_parent.width * p_box.depth > p_box.width * p_parent.depth &&
        p_parent.height * p_box.depth > p_box.height * p_parent.depth) {
        return c_limitedByDepth;
    }
    return c_limitedByWidth;
}

/// The size anchors of a box, by number; the two ratios give what p_fit holds. p_edge tells that p_size is a far edge.
template <typename T> bool solveSize(T& p_size, bool& p_edge, uint8_t p_anchor, T p_value, T p_parentSize, T p_fit) {
    p_edge = p_anchor == ZYR_SIZE_WIDTH_RIGHT;
    switch (p_anchor) {
    case ZYR_SIZE_WIDTH_WIDTH:
        p_size = p_value;
        return true;
    case ZYR_SIZE_WIDTH_PARENT_WIDTH:
    case ZYR_SIZE_WIDTH_RIGHT:
        p_size = p_parentSize + p_value;
        return true;
    case ZYR_SIZE_WIDTH_PARENT_WIDTH_PERCENT:
        p_size = zyr_getPercent(p_parentSize, p_value);
        return true;
    case ZYR_SIZE_WIDTH_RATIO:
    case ZYR_SIZE_WIDTH_RATIO_ASPECT:
        p_size = p_fit;
        return true;
    default:
        return false;
    }
}

/// The size of p_box fitted into p_parent with its aspect.
template <typename T> BoxSize<T> fitBox(const Box<T>& p_box, const Box<T>& p_parent) {
    switch (getLimitingAxis(p_box, p_parent)) {
    case c_limitedByHeight:
        return {p_box.width * p_parent.height / p_box.height, p_parent.height,
                p_parent.height * p_box.depth / p_box.height};
    case c_limitedByDepth:
        return {p_box.width * p_parent.depth / p_box.depth, p_box.height * p_parent.depth / p_box.depth,
                p_parent.depth};
    default:
        return {p_parent.width, p_parent.width * p_box.height / p_box.width,
                p_parent.width * p_box.depth / p_box.width};
    }
}

} // namespace

template <typename T> bool_t ExtBox<T>::solveBox(Box<T>& p_out, const Box<T>& p_parent) const {
    const BoxSize<T> fit = fitBox<T>(*this, p_parent);
    Box<T> out(p_out);
    bool widthIsEdge = false;
    bool heightIsEdge = false;
    bool depthIsEdge = false;
    bool solved = solveSize<T>(out.width, widthIsEdge, widthAnchor, this->width, p_parent.width, fit.width) &&
                  solveSize<T>(out.height, heightIsEdge, heightAnchor, this->height, p_parent.height, fit.height) &&
                  solveSize<T>(out.depth, depthIsEdge, depthAnchor, this->depth, p_parent.depth, fit.depth) &&
                  zyr_solvePosition<T>(out.x, xAnchor, this->x, p_parent.x, p_parent.width) &&
                  zyr_solvePosition<T>(out.y, yAnchor, this->y, p_parent.y, p_parent.height) &&
                  zyr_solvePosition<T>(out.z, zAnchor, this->z, p_parent.z, p_parent.depth);
    if (solved) {
        if (widthIsEdge) {
            out.width -= out.x;
        }
        if (heightIsEdge) {
            out.height -= out.y;
        }
        if (depthIsEdge) {
            out.depth -= out.z;
        }
        zyr_applyLimits<T>(out.width, minWidth, maxWidth);
        zyr_applyLimits<T>(out.height, minHeight, maxHeight);
        zyr_applyLimits<T>(out.depth, minDepth, maxDepth);
    }
    p_out = out;
    return solved;
}

template class ExtBox<float>;
template class ExtBox<double>;
template class RecordWalker<ExtBox<float>>;
template class RecordWalker<ExtBox<double>>;

} // namespace zyr
