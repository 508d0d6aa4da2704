#include "zyr_common/colour/zyr_color.h"

#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template class RecordWalker<ColorRGB<float>>;
template class RecordWalker<ColorRGB<double>>;
template class RecordWalker<ColorRGBA<float>>;
template class RecordWalker<ColorRGBA<double>>;
template class RecordWalker<ColorRGBAStop<float>>;
template class RecordWalker<ColorRGBAStop<double>>;

} // namespace zyr
