#include "zyr_common/variable/zyr_variable_value.h"

#include "zyr_common/colour/zyr_color.h"
#include "zyr_common/digest/zyr_guid.h"
#include "zyr_common/geometry/zyr_ext_box.h"
#include "zyr_common/geometry/zyr_ext_dimension.h"
#include "zyr_common/geometry/zyr_ext_position.h"
#include "zyr_common/geometry/zyr_ext_rect.h"
#include "zyr_common/geometry/zyr_matrix.h"
#include "zyr_common/geometry/zyr_scalar.h"
#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/object/zyr_object.h"
#include "zyr_common/object/zyr_type_names.h"
#include "zyr_common/references/zyr_object_references.h"
#include "zyr_common/serialization/zyr_record_fields.h"
#include "zyr_common/variable/zyr_variable_reference.h"

namespace zyr {

namespace {

/// Whether the accessors of a row serve a value of the type.
constexpr bool servesType(VariableTypeEnum p_row, VariableTypeEnum p_type) {
    if (p_row == ZYR_VARIABLE_BOOL) {
        return (p_type & ~2u) == ZYR_VARIABLE_BOOL; // Bit 1 is what UINT8 has on top.
    }
    return p_type == p_row || (p_row == ZYR_VARIABLE_INT32 && p_type == ZYR_VARIABLE_ENUM);
}

/// What a message calls the type of a row. The pointers have no name in the table.
constexpr const char* accessorTypeName(VariableTypeEnum p_row) {
    return p_row == ZYR_VARIABLE_STRING_REFERENCE   ? "String *"
           : p_row == ZYR_VARIABLE_OBJECT_REFERENCE ? "Object *"
                                                    : c_variableTypeRows[p_row].m_displayName;
}

template <typename T> void clearRecord(T& p_record) {
    if constexpr (requires { p_record.clear(); }) {
        p_record.clear();
    } else {
        p_record = T();
    }
}

/// Whether a value of the type has content of its own.
constexpr bool isHeld(VariableTypeEnum p_type) {
    return (p_type < ZYR_VARIABLE_TYPE_COUNT && c_variableTypeRows[p_type].m_key != nullptr) ||
           p_type == ZYR_VARIABLE_OBJECT_REFERENCE;
}

template <typename T> void addReference(T* p_counted) {
    if (p_counted != nullptr) {
        p_counted->addRef();
    }
}

template <typename T> void releaseReference(T* p_counted) {
    if (p_counted != nullptr) {
        p_counted->release();
    }
}

/// What is done with a record that is held by pointer; the members are null for all other types.
struct RecordRow {
    void* (*m_create)();
    void (*m_destroy)(void* p_record);
    void (*m_clear)(void* p_record);
};

template <typename T>
constexpr RecordRow c_recordRow = {
    []() -> void* { return new T; },
    [](void* p_record) { delete static_cast<T*>(p_record); },
    [](void* p_record) { clearRecord(*static_cast<T*>(p_record)); },
};

const RecordRow& recordRow(VariableTypeEnum p_type) {
    static constexpr RecordRow none = {};
    switch (p_type) {
#define ZYR_VARIABLE_RECORD(suffix, type, row)                                                                         \
    case row:                                                                                                          \
        return c_recordRow<type>;
#include "zyr_common/variable/zyr_variable_accessors.inl"
    default:
        return none;
    }
}

/// Small numbers are stored as 32-bit ones of the same signedness.
template <typename T>
using StoredNumber =
    Scalar<std::conditional_t<sizeof(T) >= 4, T, std::conditional_t<std::is_signed_v<T>, int32_t, uint32_t>>>;

const String& nameKey() {
    static const String& key = makePermanent<String>("name");
    return key;
}

const String& typeKey() {
    static const String& key = makePermanent<String>("type");
    return key;
}

template <VariableTypeEnum row> const String& valueKey() {
    static const String& key = makePermanent<String>(c_variableTypeRows[row].m_key);
    return key;
}

/// Reads the value under the key of its row; without the key it stays as it is.
template <VariableTypeEnum row, typename M> bool_t readStored(IDeserializer* p_deserializer, M& p_value) {
    static uint32_t cache = 0;
    return RecordFieldIO<M>::read(p_deserializer, valueKey<row>(), cache, p_value, nullptr);
}

/// Writes the value as an element under the key of its row, or declares it.
template <VariableTypeEnum row, typename M>
bool_t writeStored(ISerializer* p_serializer, bool_t p_headerPass, M& p_value) {
    bool_t result = 1;
    return p_headerPass ? RecordFieldIO<M>::declare(p_serializer, valueKey<row>(), p_value, result)
                        : RecordFieldIO<M>::write(p_serializer, valueKey<row>(), p_value, 0, nullptr);
}

} // namespace

VariableValue::VariableValue() : m_type(ZYR_VARIABLE_NONE) {
    allocateValueType();
    init_This();
}

VariableValue::VariableValue(VariableTypeEnum p_type) : m_type(p_type) {
    ZYR_ASSERT(p_type != ZYR_VARIABLE_NONE);
    allocateValueType();
    init_This();
}

VariableValue::~VariableValue() {
    release_This();
    freeValueType();
}

VariableValue* VariableValue::clone() const {
    VariableValue* value = m_type != ZYR_VARIABLE_NONE ? new VariableValue(m_type) : new VariableValue;
    value->copy_This(*this);
    return value;
}

VariableValue* VariableValue::addRef() {
    RefCountedData::addRef();
    return this;
}

void VariableValue::release() {
    RefCountedData::release();
}

void VariableValue::clear() {
    release_This();
    init_This();
}

template <typename T> T VariableValue::load() const {
    T value;
    memcpy(&value, m_value, sizeof(T));
    return value;
}

template <typename T> void VariableValue::store(T p_value) {
    memcpy(m_value, &p_value, sizeof(T));
}

void* VariableValue::getTarget() {
    return recordRow(m_type).m_create ? load<void*>() : m_value;
}

// Each accessor has its own body, since the message carries its signature.
#define ZYR_VARIABLE_NUMBER(suffix, type, row)                                                                         \
    type VariableValue::getValue##suffix() const {                                                                     \
        if (servesType(row, m_type)) {                                                                                 \
            return load<type>();                                                                                       \
        }                                                                                                              \
        ZYR_LOG_WARN("Value is not a %s", accessorTypeName(row));                                                      \
        return 0;                                                                                                      \
    }
#define ZYR_VARIABLE_POINTER ZYR_VARIABLE_NUMBER
#define ZYR_VARIABLE_RECORD(suffix, type, row)                                                                         \
    const type& VariableValue::getValue##suffix() const {                                                              \
        if (servesType(row, m_type)) {                                                                                 \
            return *load<const type*>();                                                                               \
        }                                                                                                              \
        ZYR_LOG_WARN("Value is not a %s", accessorTypeName(row));                                                      \
        static const type& other = makePermanent<type>();                                                              \
        return other;                                                                                                  \
    }
#include "zyr_common/variable/zyr_variable_accessors.inl"

#define ZYR_VARIABLE_RECORD(suffix, type, row)                                                                         \
    type& VariableValue::getMutableValue##suffix() {                                                                   \
        if (servesType(row, m_type)) {                                                                                 \
            return *load<type*>();                                                                                     \
        }                                                                                                              \
        ZYR_LOG_WARN("Value is not a %s", accessorTypeName(row));                                                      \
        static type& other = makePermanent<type>();                                                                    \
        return other;                                                                                                  \
    }
#include "zyr_common/variable/zyr_variable_accessors.inl"

#define ZYR_VARIABLE_NUMBER(suffix, type, row)                                                                         \
    void VariableValue::setValue##suffix(type p_value) {                                                               \
        if (servesType(row, m_type)) {                                                                                 \
            return store(p_value);                                                                                     \
        }                                                                                                              \
        ZYR_LOG_WARN("Value is not a %s", accessorTypeName(row));                                                      \
    }
#define ZYR_VARIABLE_RECORD(suffix, type, row)                                                                         \
    void VariableValue::setValue##suffix(const type& p_value) {                                                        \
        if (servesType(row, m_type)) {                                                                                 \
            *load<type*>() = p_value;                                                                                  \
            return;                                                                                                    \
        }                                                                                                              \
        ZYR_LOG_WARN("Value is not a %s", accessorTypeName(row));                                                      \
    }
// That the reference on the pointer before stays is relied upon.
#define ZYR_VARIABLE_POINTER(suffix, type, row)                                                                        \
    void VariableValue::setValue##suffix(type p_value) {                                                               \
        if (servesType(row, m_type)) {                                                                                 \
            addReference(p_value);                                                                                     \
            return store(p_value);                                                                                     \
        }                                                                                                              \
        ZYR_LOG_WARN("Value is not a %s", accessorTypeName(row));                                                      \
    }
#include "zyr_common/variable/zyr_variable_accessors.inl"

VariableReference* VariableValue::getVariableReferenceByPath(const String&) {
    return nullptr;
}

VariableReference* VariableValue::getVariableReference() {
    return createVariableReference();
}

VariableReference* VariableValue::createVariableReference() {
    return isHeld(m_type) ? new VariableReference(m_type, getTarget()) : nullptr;
}

bool_t VariableValue::copyValueToVariableReference(VariableReference* p_target) {
    if (p_target == nullptr) {
        return 0;
    }
    return [this](auto* p_reference) -> bool_t {
        switch (m_type) {
        case ZYR_VARIABLE_ENUM:
            return p_reference->changeValueInt32(getValueInt32());
        case ZYR_VARIABLE_STRING_REFERENCE:
            return p_reference->changeValueStringReference(getValueStringRef());
        case ZYR_VARIABLE_OBJECT_REFERENCE:
            return p_reference->changeValueObjectReference(getValueObjectRef(), 0);
            // ObjectGUIDReference has no such operation.
#define ZYR_VARIABLE_NUMBER(suffix, type, row)                                                                         \
    case row:                                                                                                          \
        if constexpr (requires { p_reference->changeValue##suffix(getValue##suffix()); }) {                            \
            return p_reference->changeValue##suffix(getValue##suffix());                                               \
        }                                                                                                              \
        return 0;
#define ZYR_VARIABLE_RECORD ZYR_VARIABLE_NUMBER
#include "zyr_common/variable/zyr_variable_accessors.inl"
        default:
            return 0;
        }
    }(p_target);
}

size_t VariableValue::getValueSize() {
    return zyr_getVariableTypeSize(m_type);
}

size_t VariableValue::copyValueToData(void* p_destination) {
    size_t size = zyr_getVariableTypeSize(m_type);
    if (size != 0) {
        memcpy(p_destination, getTarget(), size);
    }
    return size;
}

void VariableValue::allocateValueType() {
    if (const RecordRow& row = recordRow(m_type); row.m_create) {
        store(row.m_create());
    }
}

void VariableValue::freeValueType() {
    if (const RecordRow& row = recordRow(m_type); row.m_destroy) {
        row.m_destroy(load<void*>());
    }
}

const String& VariableValue::getClassName() const {
    return zyr_getNameAssociatedToType<VariableValue>(nullptr);
}

void VariableValue::init_This() {
    m_borrowedObject = 1;
    if (!recordRow(m_type).m_create) {
        store<uint64_t>(0);
    }
}

void VariableValue::release_This() {
    m_name.clear();
    releaseValue();
}

void VariableValue::releaseValue() {
    if (m_type == ZYR_VARIABLE_STRING_REFERENCE) {
        releaseReference(load<String*>());
    } else if (m_type == ZYR_VARIABLE_OBJECT_REFERENCE) {
        releaseReference(load<IObject*>());
    } else if (const RecordRow& row = recordRow(m_type); row.m_clear) {
        row.m_clear(load<void*>());
    }
}

void VariableValue::copy_This(const VariableValue& p_src) {
    m_name = p_src.getName();
    switch (p_src.getType()) {
    case ZYR_VARIABLE_ENUM:
        setValueInt32(p_src.getValueInt32());
        break;
#define ZYR_VARIABLE_NUMBER(suffix, type, row)                                                                         \
    case row:                                                                                                          \
        setValue##suffix(p_src.getValue##suffix());                                                                    \
        break;
#define ZYR_VARIABLE_RECORD ZYR_VARIABLE_NUMBER
#define ZYR_VARIABLE_POINTER ZYR_VARIABLE_NUMBER
#include "zyr_common/variable/zyr_variable_accessors.inl"
    default:
        break;
    }
}

bool_t VariableValue::readSerialized(IDeserializer* p_deserializer) {
    return readSerialized_This(zyr_getTopDeserializer(p_deserializer));
}

bool_t VariableValue::readSerialized_This(IDeserializer* p_deserializer) {
    static uint32_t nameCache = 0;
    static uint32_t typeCache = 0;
    releaseValue();
    freeValueType();
    store<uint64_t>(0);
    uint32_t type = m_type;
    bool_t done = p_deserializer->readString(nameKey(), nameCache, m_name, nullptr) &&
                  p_deserializer->readEnum(typeKey(), typeCache, type, &zyr_convertVariableType);
    if (done) {
        m_type = static_cast<VariableTypeEnum>(type);
        ZYR_ASSERT(m_type != ZYR_VARIABLE_NONE);
    }
    allocateValueType();
    return done && readValue(p_deserializer);
}

template <VariableTypeEnum row, typename T> bool_t VariableValue::readNumber(IDeserializer* p_deserializer) {
    StoredNumber<T> number(load<T>());
    bool_t done = readStored<row>(p_deserializer, number);
    store(static_cast<T>(number.v));
    return done;
}

bool_t VariableValue::readValue(IDeserializer* p_deserializer) {
    switch (m_type) {
#define ZYR_VARIABLE_NUMBER(suffix, type, row)                                                                         \
    case row:                                                                                                          \
        return readNumber<row, type>(p_deserializer);
#define ZYR_VARIABLE_RECORD(suffix, type, row)                                                                         \
    case row:                                                                                                          \
        return readStored<row>(p_deserializer, *load<type*>());
        ZYR_VARIABLE_NUMBER(Enum, int32_t, ZYR_VARIABLE_ENUM)
#include "zyr_common/variable/zyr_variable_accessors.inl"
    case ZYR_VARIABLE_STRING_REFERENCE: {
        static uint32_t cache = 0;
        String* string = nullptr;
        bool_t done = p_deserializer->readStringRef(valueKey<ZYR_VARIABLE_STRING_REFERENCE>(), cache, string, 0);
        store(string);
        return done;
    }
    default:
        return 1;
    }
}

bool_t VariableValue::writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) {
    ISerializer* serializer = zyr_getTopSerializer(p_serializer);
    bool_t firstPass = !serializer->isBinaryFormat();
    if (!writeSerialized_This(serializer, firstPass, p_headerPass, p_result)) {
        return 0;
    }
    return !firstPass || writeSerialized_This(serializer, 0, p_headerPass, p_result);
}

bool_t VariableValue::writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                                           bool_t& p_result) {
    bool_t result = 1;
    if (p_headerPass) {
        return p_result = p_serializer->declareString(nameKey(), m_name, result) &&
                          p_serializer->declareEnum(typeKey(), m_type, result) && writeValue(p_serializer, 1);
    }
    if (p_serializer->isBinaryFormat() || p_firstPass) {
        result = p_serializer->writeString(nameKey(), m_name, 1, 0) &&
                 p_serializer->writeEnum(typeKey(), m_type, 0, 1, &zyr_convertVariableType);
    }
    if (p_serializer->isBinaryFormat() || !p_firstPass) {
        result = result && writeValue(p_serializer, 0);
    }
    return p_result = result;
}

bool_t VariableValue::writeValue(ISerializer* p_serializer, bool_t p_headerPass) {
    switch (m_type) {
#define ZYR_VARIABLE_NUMBER(suffix, type, row)                                                                         \
    case row: {                                                                                                        \
        StoredNumber<type> number(load<type>());                                                                       \
        return writeStored<row>(p_serializer, p_headerPass, number);                                                   \
    }
#define ZYR_VARIABLE_RECORD(suffix, type, row)                                                                         \
    case row:                                                                                                          \
        return writeStored<row>(p_serializer, p_headerPass, *load<type*>());
        ZYR_VARIABLE_NUMBER(Enum, int32_t, ZYR_VARIABLE_ENUM)
#include "zyr_common/variable/zyr_variable_accessors.inl"
    case ZYR_VARIABLE_STRING_REFERENCE: {
        bool_t result = 1;
        const String& key = valueKey<ZYR_VARIABLE_STRING_REFERENCE>();
        return p_headerPass ? p_serializer->declareStringRef(key, load<String*>(), result)
                            : p_serializer->writeStringRef(key, load<String*>(), 0, 0);
    }
    default:
        return 1;
    }
}

bool_t zyr_applyVariableValue(VariableValue* p_value, VariableReference* p_target) {
    if (p_target == nullptr) {
        return 0;
    }
    bool_t done = p_value != nullptr && p_value->copyValueToVariableReference(p_target);
    p_target->release();
    return done;
}

} // namespace zyr
