#include "zyr_common/serialization/zyr_serializer_reserved.h"

#include "zyr_common/digest/zyr_guid.h"

namespace zyr {

// The question comes before the reserved object is touched: nothing is known of those that others made. The answer has
// to be the object itself, because what stands in front of one that answers wants to see each operation.

const GUID_t& zyr_getFieldRowsGUID() {
    static const GUID_t guid = GUID_t_fromString("3a2d5049-bdcf-4a17-ac0e-6da93e3060e4");
    return guid;
}

ISerializerReserved* zyr_findReserved(const ISerializer* p_serializer) {
    return p_serializer->findInterfaceObjectByClassGUID(zyr_getFieldRowsGUID()) == p_serializer
               ? static_cast<ISerializerReserved*>(p_serializer->getSerializerReserved())
               : nullptr;
}

IDeserializerReserved* zyr_findReserved(const IDeserializer* p_deserializer) {
    return p_deserializer->findInterfaceObjectByClassGUID(zyr_getFieldRowsGUID()) == p_deserializer
               ? static_cast<IDeserializerReserved*>(p_deserializer->getDeserializerReserved())
               : nullptr;
}

} // namespace zyr
