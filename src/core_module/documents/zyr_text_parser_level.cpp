#include "core_module/documents/zyr_text_parser_level.h"

#include "core_module/zyr_core_class.h"

namespace zyr {

ZYR_DEFINE_CORE_CLASS(TextParser)

} // namespace zyr
