/// The digest of what a resource consists of.
#pragma once

#include "zyr_common/resources/zyr_resource.h"

namespace zyr {

/// Whether the object, which may be null, is of the class of the interface or one that extends it: it is one then.
template <class Interface> Interface* asInterface(IObject* p_object) {
    const bool is = p_object != nullptr && p_object->findClassGUID(zyr_getInterfaceGUID<Interface>());
    return is ? static_cast<Interface*>(p_object) : nullptr;
}

/// See IResourcesPack::updateResourceContentDigest. The resource itself stays as it is, but for packed data that were
/// out of date. 0 and p_digest as it was where the content cannot be saved, which is in the log then.
bool_t computeContentDigest(IResource* p_resource, GUID_t& p_digest);

} // namespace zyr
