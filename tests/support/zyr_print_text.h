/// Lets failing expectations show a String as text.
#pragma once

#include "zyr_common/text/zyr_string.h"

#include <ostream>

namespace zyr {

inline void PrintTo(const String& p_text, std::ostream* p_stream) {
    *p_stream << '"' << p_text.getData() << "\" (size " << p_text.getSize() << ")";
}

} // namespace zyr
