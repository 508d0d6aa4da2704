// The class of objects that are nothing but objects.
#include "core_module/zyr_core_class.h"
#include "zyr_common/implementation/zyr_implementation.h"

namespace zyr {

using Object = Implementation<ObjectLevel<IObject>>;

ZYR_DEFINE_CORE_CLASS(Object)

} // namespace zyr
