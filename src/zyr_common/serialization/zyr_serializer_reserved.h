/// What the reserved objects of serializers and deserializers can do besides serving facades: many fields in one call,
/// and an output that need not be copied.
///
/// Modules that were built before these were there have plain reserved objects, and so may have other serializers:
/// whoever asks finds out by zyr_findReserved and does without. Nothing here changes what is stored.
#pragma once

#include "zyr_common/serialization/zyr_serializer.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

/// What a field is that can be written or read beside others. The numbers are a contract between separately built
/// modules.
enum FieldRowKindEnum : uint32_t {
    ZYR_FIELD_ROW_OTHER = 0, ///< none of these: only by the operations
    ZYR_FIELD_ROW_BOOL = 1,
    ZYR_FIELD_ROW_INT32 = 2,
    ZYR_FIELD_ROW_UINT32 = 3,
    ZYR_FIELD_ROW_INT64 = 4,
    ZYR_FIELD_ROW_UINT64 = 5,
    ZYR_FIELD_ROW_FLOAT = 6,
    ZYR_FIELD_ROW_DOUBLE = 7,
    ZYR_FIELD_ROW_STRING = 8,
    ZYR_FIELD_ROW_GUID = 9,  ///< 16 bytes that are stored as their text
    ZYR_FIELD_ROW_ENUM = 10, ///< an enumeration of 32 bits
    ZYR_FIELD_ROW_ENUM8 = 11 ///< an enumeration of 8 bits
};

#pragma pack(push, 1)

/// A field of a record: what its operation takes beside the value. Its layout is a contract.
struct FieldRow {
    String m_key;
    /// for the deserializers
    uint32_t m_cache = 0;
    FieldRowKindEnum m_kind = ZYR_FIELD_ROW_OTHER;
};

#pragma pack(pop)

/// Both take the rows of fields that stand side by side in a record and the places of the values, which need not be
/// aligned, and give the number of fields that are done: those from the first one on up to one that has to go through
/// its operation, such as one of another kind, one that fails, or any where an outer layer may have other operations.
/// The rows have to stay as they are until the serializer or deserializer ends.
class ISerializerReserved : public ILevelReserved {
public:
    virtual size_t writeFields(const FieldRow* p_rows, const void* const* p_values, size_t p_count) = 0;

    /// Hands the output over instead of letting the caller copy it, if p_data is where it lies, if it has just
    /// p_front bytes of room in front of it, and if its block, which begins there, has p_capacity bytes. Gives that
    /// block, which may have moved and which the caller frees by zyr_free, or null with everything as it was. Behind it
    /// the serializer has no output any more and is to be initialized again.
    virtual void* giveOutput(const void* p_data, size_t p_front, size_t p_capacity) = 0;
};

class IDeserializerReserved : public ILevelReserved {
public:
    virtual size_t readFields(const FieldRow* p_rows, void* const* p_values, size_t p_count) = 0;
};

/// To which those answer with themselves (findInterfaceObjectByClassGUID) whose reserved object can do these things. A
/// permanent identifier, as those of classes.
const GUID_t& zyr_getFieldRowsGUID();

/// The reserved object if it can do these things, otherwise null. Fast enough for each record. Safe on any thread.
ISerializerReserved* zyr_findReserved(const ISerializer* p_serializer);
IDeserializerReserved* zyr_findReserved(const IDeserializer* p_deserializer);

} // namespace zyr
