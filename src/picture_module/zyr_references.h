/// Members that hold a counted reference to an object, or null.
#pragma once

#include "zyr_common/object/zyr_object.h"

namespace zyr {

/// Gives the reference back and forgets the object.
template <class Interface> void releaseReference(Interface*& p_member) {
    if (p_member != nullptr) {
        p_member->release();
        p_member = nullptr;
    }
}

/// Takes a reference to the new object, which may be null or the present one, and gives the old one back.
template <class Interface> void setReference(Interface*& p_member, Interface* p_object) {
    if (p_object != nullptr) {
        p_object->addRef();
    }
    releaseReference(p_member);
    p_member = p_object;
}

/// The object, with a reference for the caller when asked for.
template <class Interface> Interface* getReference(Interface* p_member, bool_t p_addReference) {
    if (p_addReference && p_member != nullptr) {
        p_member->addRef();
    }
    return p_member;
}

} // namespace zyr
