#include "zyr_common/storage/zyr_stored_path.h"

#include <cstring>

namespace zyr {

String zyr_getFormatFromPath(const String& p_path) {
    const char* period = strrchr(p_path.getData(), '.');
    return period != nullptr ? String(period + 1) : String();
}

} // namespace zyr
