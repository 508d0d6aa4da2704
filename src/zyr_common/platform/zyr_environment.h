/// Environment variables as numbers and text.
///
/// Every getter gives false and leaves its output as it is when the variable isn't set. Every setter gives true when
/// the system took the value; with p_overwrite 0 a variable that is set keeps its value, which is a success too. The
/// environment belongs to the whole process: change it at start-up, before other threads run.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// The text is read as a decimal number and cut to 32 bits.
ZYR_API bool_t zyr_getEnvironmentVariableUInt32(const String& p_name, uint32_t& p_value);
ZYR_API bool_t zyr_setEnvironmentVariableUInt32(const String& p_name, uint32_t p_value, bool_t p_overwrite);

/// The text is cut to a signed 32-bit number and widened with its sign, so larger values don't survive: 4294967296
/// reads as 0 and 4294967295 as all ones. This is relied upon.
ZYR_API bool_t zyr_getEnvironmentVariableUInt64(const String& p_name, uint64_t& p_value);
ZYR_API bool_t zyr_setEnvironmentVariableUInt64(const String& p_name, uint64_t p_value, bool_t p_overwrite);

/// Numbers in the framework's own text form (see text/zyr_number_text.h).
ZYR_API bool_t zyr_getEnvironmentVariableFloat(const String& p_name, float& p_value);
ZYR_API bool_t zyr_setEnvironmentVariableFloat(const String& p_name, float p_value, bool_t p_overwrite);
ZYR_API bool_t zyr_getEnvironmentVariableDouble(const String& p_name, double& p_value);
ZYR_API bool_t zyr_setEnvironmentVariableDouble(const String& p_name, double p_value, bool_t p_overwrite);

ZYR_API bool_t zyr_getEnvironmentVariableString(const String& p_name, String& p_value);
ZYR_API bool_t zyr_setEnvironmentVariableString(const String& p_name, const String& p_value, bool_t p_overwrite);

} // namespace zyr
