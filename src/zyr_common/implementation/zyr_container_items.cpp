#include "zyr_common/implementation/zyr_container_items.h"

#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/object/zyr_object.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

namespace {

// Not members: another unit would reach them through a symbol that modules share.
thread_local uint32_t s_depth = 0;
thread_local bool s_givenUp = false;

} // namespace

ContainerVisit::ContainerVisit(const String* p_className) {
    if (++s_depth > MAX_DEPTH && !s_givenUp) {
        s_givenUp = true;
        if (p_className != nullptr) {
            ZYR_LOG_WARN("Unable to enter %s: %u containers are inside each other, or it holds itself",
                         p_className->getData(), MAX_DEPTH);
        }
    }
}

ContainerVisit::~ContainerVisit() {
    if (--s_depth == 0) {
        s_givenUp = false;
    }
}

bool ContainerVisit::isGivenUp() {
    return s_givenUp;
}

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
