/// Texts of settings: how a source's text becomes the value of a variable.
#pragma once

#include "zyr_common/settings/zyr_setting_value.h"

namespace zyr {

/// Sets the setting's variable to what the text says. Gives null, or what is wrong with the text; the variable then
/// stays as it is.
const char* applySettingText(const SettingValue& p_setting, const String& p_text);

/// Sets the setting's variable to its default, held inside the range.
void applySettingDefault(const SettingValue& p_setting);

/// The default and the range as a help text shows them: "50, 0 to 100"; empty where there is nothing to show.
String describeSettingValues(const SettingValue& p_setting);

} // namespace zyr
