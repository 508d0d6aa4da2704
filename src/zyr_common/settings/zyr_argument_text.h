/// The arguments of a command line as one text.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

/// Joins arguments by blanks. One that is empty or holds blanks, quotes or backslashes stands between double quotes,
/// with a backslash in front of the double quotes and backslashes in it.
ZYR_API void zyr_joinArguments(const Array<String>& p_arguments, String& p_text);

/// Takes such a text apart. Single quotes hold blanks together too, and a backslash outside of them stands in front of
/// any character. False, with no arguments, when a quote is not closed.
ZYR_API bool_t zyr_splitArguments(const String& p_text, Array<String>& p_arguments);

} // namespace zyr
