#include "zyr_common/text/zyr_c_locale.h"

namespace zyr {

locale_t getCLocale() {
    // This one is part of the C library and can always be had.
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

} // namespace zyr
