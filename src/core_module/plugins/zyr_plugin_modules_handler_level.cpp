#include "core_module/plugins/zyr_plugin_modules_handler_level.h"

#include "core_module/zyr_core_class.h"

namespace zyr {

ZYR_DEFINE_CORE_CLASS(PluginModulesHandler)

} // namespace zyr
