#include "zyr_common/object/zyr_type_names.h"

namespace zyr {

String joinTypeName(const char* p_name, const char* p_argumentWord) {
    String name(p_name);
    if (p_argumentWord != nullptr) {
        name += "{";
        name += p_argumentWord;
        name += "}";
    }
    return name;
}

} // namespace zyr
