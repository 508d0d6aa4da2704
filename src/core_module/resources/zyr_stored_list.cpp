#include "core_module/resources/zyr_stored_list.h"

#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/serialization/zyr_single_objects.h"

#include <utility>

namespace zyr {

bool_t writeList(ISerializer* p_serializer, const String& p_key, bool_t p_firstPass, bool_t p_headerPass,
                 IListOfObjects* p_list) {
    bool_t result = 1;
    if (p_headerPass) {
        p_serializer->writeHeaderSingleObject<IObject>(p_key, p_list, result);
    } else if (!p_firstPass || p_serializer->isBinaryFormat()) {
        result = p_serializer->writeSingleObject<IObject>(p_key, p_list);
    }
    return result;
}

static bool hasOnlyElementsOf(const IListOfObjects* p_list, const GUID_t& p_elementGUID) {
    for (auto it = p_list->beginConst(); it != p_list->endConst(); ++it) {
        if (!(*it)->findClassGUID(p_elementGUID)) {
            return false;
        }
    }
    return true;
}

bool_t readList(IDeserializer* p_deserializer, const String& p_key, const GUID_t& p_elementGUID,
                Ref<IListOfObjects>& p_list) {
    bool_t found = 0;
    IObject* read = nullptr;
    const bool_t done = p_deserializer->readSingleObject(p_key, found, &read, String::getConstEmpty());
    const Ref<IObject> object = Ref<IObject>::adopt(read);
    if (!done || !object) {
        return done;
    }
    IListOfObjects* list = zyr_findLayer<IListOfObjects>(object.get());
    if (list == nullptr || !hasOnlyElementsOf(list, p_elementGUID)) {
        ZYR_LOG_WARN("Unable to read %s: it has objects of another class", p_key.getData());
        return 0;
    }
    p_list = Ref<IListOfObjects>::share(list);
    return 1;
}

} // namespace zyr
