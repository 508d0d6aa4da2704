#include "core_module/documents/zyr_reader_level.h"

#include "core_module/zyr_core_class.h"

namespace zyr {

ZYR_DEFINE_CORE_CLASS(Reader)

} // namespace zyr
