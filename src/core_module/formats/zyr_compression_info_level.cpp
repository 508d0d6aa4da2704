#include "core_module/formats/zyr_compression_info_level.h"

#include "core_module/zyr_core_class.h"
#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template class RecordWalker<CompressionInfoState>;

ZYR_DEFINE_CORE_CLASS(CompressionInfo)

} // namespace zyr
