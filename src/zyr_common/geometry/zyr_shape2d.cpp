#include "zyr_common/geometry/zyr_shape2d.h"

#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

#define ZYR_INSTANTIATE_SHAPES(type)                                                                                   \
    template class RecordWalker<Shape2D<type>>;                                                                        \
    template class RecordWalker<Rectangle<type>>;                                                                      \
    template class RecordWalker<RoundedRectangle<type>>;                                                               \
    template class RecordWalker<Circle<type>>;                                                                         \
    template class RecordWalker<Ellipse<type>>;                                                                        \
    template class RecordWalker<Arc<type>>;

ZYR_INSTANTIATE_SHAPES(float)
ZYR_INSTANTIATE_SHAPES(double)

} // namespace zyr
