#include "zyr_common/serialization/zyr_serializer_reserved.h"

#include "zyr_common/digest/zyr_guid.h"

namespace zyr {

// The question comes before the reserved object is touched: nothing is known of those that others made. The answer has
// to be the object itself, because what stands in front of one that answers wants to see each operation.

// As bytes, since each record asks for it: 3a2d5049-bdcf-4a17-ac0e-6da93e3060e4.
constexpr GUID_t FIELD_ROWS = {
    {0x3A, 0x2D, 0x50, 0x49, 0xBD, 0xCF, 0x4A, 0x17, 0xAC, 0x0E, 0x6D, 0xA9, 0x3E, 0x30, 0x60, 0xE4}};

const GUID_t& zyr_getFieldRowsGUID() {
    return FIELD_ROWS;
}

ISerializerReserved* zyr_findReserved(const ISerializer* p_serializer) {
    return p_serializer->findInterfaceObjectByClassGUID(FIELD_ROWS) == p_serializer
               ? static_cast<ISerializerReserved*>(p_serializer->getSerializerReserved())
               : nullptr;
}

IDeserializerReserved* zyr_findReserved(const IDeserializer* p_deserializer) {
    return p_deserializer->findInterfaceObjectByClassGUID(FIELD_ROWS) == p_deserializer
               ? static_cast<IDeserializerReserved*>(p_deserializer->getDeserializerReserved())
               : nullptr;
}

} // namespace zyr
