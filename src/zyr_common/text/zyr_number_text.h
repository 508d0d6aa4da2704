/// Numbers from and to text, independent of the locale.
#pragma once

#include "zyr_common/text/zyr_string.h"

namespace zyr {

/// Reads blanks, a sign, digits, a fraction and an exponent, and stops at the first byte that doesn't fit. A text
/// without digits gives 0; an exponent counts up to 308. The text must not be null.
ZYR_API double zyr_convertStringToDouble(const char* p_text);

/// Writes a number with up to `p_precision` digits behind the point, 9 at most. The buffer must have room for 64 bytes:
/// `p_size` isn't looked at. The digits of the fraction are not padded, which saved texts rely upon: 1.05 at precision
/// 2 is "1.5". Magnitudes above 2147483647 take the exponent form.
ZYR_API void zyr_convertDoubleToCharacters(char* p_buffer, size_t p_size, double p_value, uint32_t p_precision);
ZYR_API void zyr_convertDoubleToString(double p_value, String& p_text);
ZYR_API void zyr_convertDoubleToStringPrec(double p_value, String& p_text, uint32_t p_precision);

/// Appends "major.minor.patch".
ZYR_API void zyr_getVersionString(uint64_t p_version, String& p_text);

/// Appends one string for each argument.
ZYR_API void zyr_getArrayOfStrings(int p_count, char** p_arguments, Array<String>& p_strings);
ZYR_API void zyr_getArrayOfStrings(int p_count, wchar_t** p_arguments, Array<String>& p_strings);

} // namespace zyr
