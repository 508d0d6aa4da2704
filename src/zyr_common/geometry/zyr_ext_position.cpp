#include "zyr_common/geometry/zyr_ext_position.h"

#include "zyr_common/geometry/zyr_ext_dimension.h"
#include "zyr_common/geometry/zyr_layout_rules.h"
#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template <typename T> bool_t ExtPositionX<T>::solvePosition(T& p_out, const Rect<T>& p_parent) const {
    return zyr_solvePosition<T>(p_out, xAnchor, x, p_parent.x, p_parent.width);
}

template <typename T> bool_t ExtPositionY<T>::solvePosition(T& p_out, const Rect<T>& p_parent) const {
    return zyr_solvePosition<T>(p_out, yAnchor, y, p_parent.y, p_parent.height);
}

#define ZYR_INSTANTIATE_EXT_POSITIONS(type)                                                                            \
    template class ExtPositionX<type>;                                                                                 \
    template class ExtPositionY<type>;                                                                                 \
    template class RecordWalker<ExtPositionX<type>>;                                                                   \
    template class RecordWalker<ExtPositionY<type>>;                                                                   \
    template class RecordWalker<ExtPositionZ<type>>;                                                                   \
    template class RecordWalker<ExtDimensionWidth<type>>;                                                              \
    template class RecordWalker<ExtDimensionHeight<type>>;                                                             \
    template class RecordWalker<ExtDimensionDepth<type>>;

ZYR_INSTANTIATE_EXT_POSITIONS(float)
ZYR_INSTANTIATE_EXT_POSITIONS(double)

} // namespace zyr
