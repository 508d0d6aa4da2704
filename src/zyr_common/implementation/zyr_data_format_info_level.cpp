#include "zyr_common/implementation/zyr_data_format_info_level.h"

#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template class RecordWalker<DataFormatInfoState>;

} // namespace zyr
