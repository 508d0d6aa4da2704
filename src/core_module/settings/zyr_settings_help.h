/// The help text of settings.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/settings/zyr_setting_value.h"

namespace zyr {

/// The options in their order, a line each, with their descriptions in a column of their own. Settings without options
/// are left out. p_width is the width of a line in columns, 0 for 80.
String makeSettingsHelp(const Array<SettingValue*>& p_settings, uint32_t p_width);

} // namespace zyr
