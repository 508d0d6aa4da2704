#include "zyr_common/geometry/zyr_ext_vector.h"

#include "zyr_common/geometry/zyr_layout_rules.h"
#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

namespace {

/// The simple rule with anchor 5, which counts from the previous point.
template <typename T>
bool solveAxis(T& p_out, uint8_t p_anchor, T p_value, T p_previous, T p_parentPosition, T p_parentSize) {
    if (p_anchor == 5) {
        p_out = p_previous + p_value;
        return true;
    }
    return zyr_solvePosition(p_out, p_anchor, p_value, p_parentPosition, p_parentSize);
}

} // namespace

template <typename T>
bool_t ExtVector2<T>::solveVector(Vector2<T>& p_out, const Vector2<T>& p_previous, const Rect<T>& p_parent) const {
    Vector2<T> out(p_out);
    bool solved = solveAxis<T>(out.x, xAnchor, this->x, p_previous.x, p_parent.x, p_parent.width) &&
                  solveAxis<T>(out.y, yAnchor, this->y, p_previous.y, p_parent.y, p_parent.height);
    p_out = out;
    return solved;
}

template <typename T>
bool_t ExtVector3<T>::solveVector(Vector3<T>& p_out, const Vector3<T>& p_previous, const Box<T>& p_parent) const {
    Vector3<T> out(p_out);
    bool solved = solveAxis<T>(out.x, xAnchor, this->x, p_previous.x, p_parent.x, p_parent.width) &&
                  solveAxis<T>(out.y, yAnchor, this->y, p_previous.y, p_parent.y, p_parent.height) &&
                  solveAxis<T>(out.z, zAnchor, this->z, p_previous.z, p_parent.z, p_parent.depth);
    p_out = out;
    return solved;
}

template class ExtVector2<int32_t>;
template class ExtVector2<int64_t>;
template class ExtVector2<float>;
template class ExtVector2<double>;
template class ExtVector3<float>;
template class ExtVector3<double>;

template class RecordWalker<ExtVector2<int32_t>>;
template class RecordWalker<ExtVector2<int64_t>>;
template class RecordWalker<ExtVector2<float>>;
template class RecordWalker<ExtVector2<double>>;
template class RecordWalker<ExtVector3<float>>;
template class RecordWalker<ExtVector3<double>>;

} // namespace zyr
