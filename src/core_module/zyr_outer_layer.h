/// The way from an implementation to the class that extends its facade.
#pragma once

#include "zyr_common/object/zyr_object.h"

namespace zyr {

/// The outermost layer of the object, whose overrides are used in what an operation builds on others; the object itself
/// where the outermost layer is of another kind.
template <class Interface> Interface* getOuterLayer(const Interface* p_object) {
    IObject* outer = p_object->getTLIObject();
    const bool isSame = outer->findClassGUID(zyr_getInterfaceGUID<Interface>());
    return isSame ? static_cast<Interface*>(outer) : const_cast<Interface*>(p_object);
}

} // namespace zyr
