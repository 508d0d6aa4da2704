#include "zyr_common/implementation/zyr_container_items.h"

#include "zyr_common/object/zyr_object.h"

namespace zyr {

IObject* takeElement(IObject* p_element, bool_t p_share) {
    if (p_element == nullptr) {
        return nullptr;
    }
    return p_share ? p_element->addRef() : p_element->clone();
}

void releaseElement(IObject* p_element) {
    if (p_element != nullptr) {
        p_element->release();
    }
}

} // namespace zyr
