/// A list of objects of one class as a field of an object.
#pragma once

#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"
#include "zyr_common/serialization/zyr_serializer.h"

namespace zyr {

/// Declares or writes the list, as the passes of a serializer ask.
bool_t writeList(ISerializer* p_serializer, const String& p_key, bool_t p_firstPass, bool_t p_headerPass,
                 IListOfObjects* p_list);

/// Gives the list that was read, or nothing where there is none. False, with a line in the log, where another object
/// stands under the key or the list has an element of another class than that of the interface with the GUID.
bool_t readList(IDeserializer* p_deserializer, const String& p_key, const GUID_t& p_elementGUID,
                Ref<IListOfObjects>& p_list);

} // namespace zyr
