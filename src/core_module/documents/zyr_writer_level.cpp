#include "core_module/documents/zyr_writer_level.h"

#include "core_module/zyr_core_class.h"

namespace zyr {

ZYR_DEFINE_CORE_CLASS(Writer)
ZYR_DEFINE_CORE_CLASS(TextWriter)

} // namespace zyr
