#include "zyr_common/implementation/zyr_container_level.h"

namespace zyr {

IObject* takeElement(IObject* p_element, bool_t p_share) {
    if (p_element == nullptr) {
        return nullptr;
    }
    return p_share ? p_element->addRef() : p_element->clone();
}

IObject* addElementReference(IObject* p_element) {
    return takeElement(p_element, 1);
}

void releaseElement(IObject* p_element) {
    if (p_element != nullptr) {
        p_element->release();
    }
}

} // namespace zyr
