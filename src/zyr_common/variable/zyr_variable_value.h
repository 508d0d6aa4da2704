/// A named value of one of the types of the type table: what tools, scripts and files hand to an object's field.
///
///     VariableValue* value = zyr_createVariableValue<Vector2<float>>("position", Vector2<float>(3, 4));
///     object->setVariableValueByPath("origin", value); // converts to the type of the field, or logs and gives 0
///     value->release();
///
/// Numbers, pointers and enumerations stand inside the value, records in an allocation of its own. One owner at a time;
/// only the count is safe on any thread. zyr_variable_factories.h makes values in one call.
#pragma once

#include "zyr_common/text/zyr_string.h"
#include "zyr_common/variable/zyr_variable_types.h"

namespace zyr {

#pragma pack(push, 1)

/// The type is chosen at construction and only changed by reading. Of the types in the table, those with a key can be
/// held; a value of any other type holds nothing.
///
/// Each type has a getter and a setter, each record a getter of the record itself. Used on a value of another type,
/// they log "Value is not a <type>" and do nothing: a getter then gives 0, null or a default record. The record that a
/// failing getMutableValue... gives is one for all such calls and keeps what is written to it. Two exceptions: the
/// accessors of Bool take UINT8 as well, those of Int32 enumerations.
///
/// The order of the virtual operations and of the members is a contract between separately built modules.
class VariableValue : public RefCountedData {
public:
    /// A value without a type, for reading.
    VariableValue();
    /// p_type must not be ZYR_VARIABLE_NONE: that ends the process. Numbers are 0, pointers null, records as new.
    explicit VariableValue(VariableTypeEnum p_type);
    VariableValue(const VariableValue&) = delete;
    VariableValue& operator=(const VariableValue&) = delete;
    ~VariableValue() override;

    /// A new value with the same type, name and content; the caller owns it.
    VariableValue* clone() const override;
    VariableValue* addRef() override;
    void release() override;
    /// Empties name and value; the type stays.
    virtual void clear();
    /// Always null: the fields of a value are those of the record that it holds (see getVariableReference).
    virtual VariableReference* getVariableReferenceByPath(const String& p_path);
    /// A reference to the value, which the caller releases and which is good as long as the value lives and is not read
    /// anew. Null when nothing is held.
    virtual VariableReference* getVariableReference();
    /// Replaces type, name and value. When name or type can't be read the type stays, with a new value. A stored type
    /// of ZYR_VARIABLE_NONE ends the process.
    virtual bool_t readSerialized(IDeserializer* p_deserializer);
    /// Stores "name" and "type" as attributes and the value as an element under the key of its type.
    virtual bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result);
    /// The same as getVariableReference.
    virtual VariableReference* createVariableReference();
    /// Writes the value into the target of the reference, converted where both types are numbers or colours. Gives 0
    /// for a null reference, for a type that holds nothing and for ObjectGUIDReference, without a line in the log.
    virtual bool_t copyValueToVariableReference(VariableReference* p_target);
    /// Bytes that copyValueToData writes; 0 for texts and pointers.
    virtual size_t getValueSize();
    /// Copies the bytes of the value and gives their number. p_destination must have room for getValueSize().
    virtual size_t copyValueToData(void* p_destination);
    /// The word of the field that the value is meant for; empty at first.
    virtual const String& getName() const { return m_name; }
    virtual void setName(const String& p_name) { m_name = p_name; }
    /// ZYR_VARIABLE_NONE only for a value that waits to be read.
    virtual VariableTypeEnum getType() const { return m_type; }
    /// A mark for the host, which nothing here looks at. Set at first.
    virtual bool_t isBorrowedObject() const { return m_borrowedObject; }
    virtual void setBorrowedObject(bool_t p_borrowed) { m_borrowedObject = p_borrowed; }

    // getValueBool, getValueInt8, ... Records are given by reference, valid as long as the value; pointers are not
    // counted for the caller.
#define ZYR_VARIABLE_NUMBER(suffix, type, row) virtual type getValue##suffix() const;
#define ZYR_VARIABLE_RECORD(suffix, type, row) virtual const type& getValue##suffix() const;
#define ZYR_VARIABLE_POINTER(suffix, type, row) virtual type getValue##suffix() const;
#include "zyr_common/variable/zyr_variable_accessors.inl"

    // getMutableValueString, ...: the records.
#define ZYR_VARIABLE_RECORD(suffix, type, row) virtual type& getMutableValue##suffix();
#include "zyr_common/variable/zyr_variable_accessors.inl"

    // setValueBool, setValueInt8, ... The pointers take a reference of their own and don't give back the one on the
    // pointer before, which is relied upon: clear() first to replace a pointer.
#define ZYR_VARIABLE_NUMBER(suffix, type, row) virtual void setValue##suffix(type p_value);
#define ZYR_VARIABLE_RECORD(suffix, type, row) virtual void setValue##suffix(const type& p_value);
#define ZYR_VARIABLE_POINTER(suffix, type, row) virtual void setValue##suffix(type p_value);
#include "zyr_common/variable/zyr_variable_accessors.inl"

    /// Makes the record of the present type, where it has one, and forgets what was held before.
    /// For constructors and for reading.
    void allocateValueType();
    /// Frees the record of the present type. The pointer stays as it is: allocateValueType has to follow.
    void freeValueType();
    /// "VariableValue"; lives as long as the process.
    const String& getClassName() const;
    /// Numbers and pointers become 0, the borrowed mark 1. Records stay as they are.
    void init_This();
    /// Takes over name and value. A source of another type is logged, by the setter of its type, and changes the name
    /// alone.
    void copy_This(const VariableValue& p_src);
    /// Empties the name and clears the record or gives back the pointer's reference. The pointer stays as it is:
    /// init_This has to follow.
    void release_This();
    /// The work of the two operations, on the layer that is given.
    bool_t readSerialized_This(IDeserializer* p_deserializer);
    bool_t writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass, bool_t& p_result);

    static constexpr const char* c_typeName = "VariableValue";

private:
    /// The number or pointer, from the eight bytes.
    template <typename T> T load() const;
    /// The way back; bytes that the type leaves over stay as they are.
    template <typename T> void store(T p_value);
    /// Clears the record, or gives back the reference on the pointer and leaves the pointer.
    void releaseValue();
    template <VariableTypeEnum row, typename T> bool_t readNumber(IDeserializer* p_deserializer);
    bool_t readValue(IDeserializer* p_deserializer);
    bool_t writeValue(ISerializer* p_serializer, bool_t p_headerPass);
    /// Where the value stands: the record, or the eight bytes.
    void* getTarget();

    String m_name;
    VariableTypeEnum m_type;
    bool_t m_borrowedObject;
    /// The number or pointer itself, or the address of the record.
    unsigned char m_value[8];
};

#pragma pack(pop)

static_assert(sizeof(VariableValue) == 149 && alignof(VariableValue) == 1);

/// Writes the value into the target of the reference and releases the reference. Gives 0 when either is null.
ZYR_API bool_t zyr_applyVariableValue(VariableValue* p_value, VariableReference* p_target);

} // namespace zyr
