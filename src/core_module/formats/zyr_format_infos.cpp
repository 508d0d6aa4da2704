// The classes of the format infos whose levels stand in the common library.
#include "core_module/zyr_core_class.h"
#include "zyr_common/implementation/zyr_native_format_info_level.h"

namespace zyr {

ZYR_DEFINE_CORE_CLASS(DataFormatInfo)
ZYR_DEFINE_CORE_CLASS(NativeFormatInfo)

} // namespace zyr
