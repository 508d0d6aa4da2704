#include "zyr_common/object/zyr_type_names.h"

#include "zyr_common/object/zyr_core_entries.h"

#include <cstring>

namespace zyr {

const String& makeTypeName(const char* p_name, const char* p_argumentWord) {
    String& name = makePermanent<String>(p_name);
    const PermanentScope scope;
    if (p_argumentWord != nullptr) {
        name += "{";
        name += p_argumentWord;
        name += "}";
    }
    return name;
}

String getCoreEntryWord(int32_t p_entry) {
    String word(coreEntryNames[p_entry]);
    const char* argument = strstr(word.getData(), "{guid}");
    return argument == nullptr ? word : String(word.getData(), argument - word.getData()) + "_guid_";
}

} // namespace zyr
