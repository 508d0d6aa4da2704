/// How one field of a record is declared, written and read, by its type. For zyr_record_walker.h, and for what stores
/// single values in the same way.
///
/// Each RecordFieldIO has three operations. `declare` describes the field in the header pass, by a sample of its value.
/// `write` puts the value under its key, as an attribute or as an element of its own. `read` takes it back: a key that
/// is missing in the stream leaves the value as it is and is no failure. All give 0 when the stream fails.
///
/// A type without a RecordFieldIO can't be a listed field; adding one here makes it possible for all records. Fields of
/// several values are in zyr_record_items.h.
#pragma once

#include "zyr_common/digest/zyr_guid.h"
#include "zyr_common/serialization/zyr_record.h"
#include "zyr_common/serialization/zyr_serializer.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

/// The operations for one type of field. c_element tells whether a text format gives it an element of its own. Values
/// pass through aligned locals, since the fields of packed records are not aligned.
///
///     template <> struct RecordFieldIO<Temperature> {
///         static constexpr bool c_element = false; // an attribute
///         static bool_t declare(ISerializer*, const String& p_key, Temperature p_value, bool_t& p_result);
///         static bool_t write(ISerializer*, const String& p_key, Temperature p_value, bool_t p_attribute,
///                             EnumerationConverter);
///         static bool_t read(IDeserializer*, const String& p_key, uint32_t& p_cache, Temperature& p_value,
///                            EnumerationConverter);
///     };
template <typename M> struct RecordFieldIO;

/// The operations of a serializer for one number type. Those with arrays can also be fields of fixed length.
template <typename T> struct NumberIO;

/// Integers without an array form: such arrays can't be fields.
template <> struct NumberIO<int32_t> {
    static constexpr auto c_declare = &ISerializer::declareInt32;
    static constexpr auto c_write = &ISerializer::writeInt32;
    static constexpr auto c_read = &IDeserializer::readInt32;
};
template <> struct NumberIO<uint32_t> {
    static constexpr auto c_declare = &ISerializer::declareUInt32;
    static constexpr auto c_write = &ISerializer::writeUInt32;
    static constexpr auto c_read = &IDeserializer::readUInt32;
    /// Serializers take count and first item for arrays.
    static constexpr auto c_declareArray = &ISerializer::declareUInt32Array;
    static constexpr auto c_writeArray = &ISerializer::writeUInt32Array;
    static constexpr auto c_readArray = &IDeserializer::readUInt32Array;
};
template <> struct NumberIO<int64_t> {
    static constexpr auto c_declare = &ISerializer::declareInt64;
    static constexpr auto c_write = &ISerializer::writeInt64;
    static constexpr auto c_read = &IDeserializer::readInt64;
};
template <> struct NumberIO<uint64_t> {
    static constexpr auto c_declare = &ISerializer::declareUInt64;
    static constexpr auto c_write = &ISerializer::writeUInt64;
    static constexpr auto c_read = &IDeserializer::readUInt64;
};
template <> struct NumberIO<float> {
    static constexpr auto c_declare = &ISerializer::declareFloat;
    static constexpr auto c_write = &ISerializer::writeFloat;
    static constexpr auto c_read = &IDeserializer::readFloat;
    static constexpr auto c_declareArray = &ISerializer::declareFloatArray;
    static constexpr auto c_writeArray = &ISerializer::writeFloatArray;
    static constexpr auto c_readArray = &IDeserializer::readFloatArray;
};
template <> struct NumberIO<double> {
    static constexpr auto c_declare = &ISerializer::declareDouble;
    static constexpr auto c_write = &ISerializer::writeDouble;
    static constexpr auto c_read = &IDeserializer::readDouble;
    static constexpr auto c_declareArray = &ISerializer::declareDoubleArray;
    static constexpr auto c_writeArray = &ISerializer::writeDoubleArray;
    static constexpr auto c_readArray = &IDeserializer::readDoubleArray;
};

/// Numbers are attributes in text formats. The converter serves integers alone, some of whose values may have a word
/// ("unlimited"); floating numbers never have one.
template <typename T>
requires std::is_arithmetic_v<T>
struct RecordFieldIO<T> {
    /// Attributes are written in the first pass over a text format, elements in the second.
    static constexpr bool c_element = false;
    static bool_t declare(ISerializer* p_serializer, const String& p_key, T p_value, bool_t& p_result) {
        return (p_serializer->*NumberIO<T>::c_declare)(p_key, p_value, p_result);
    }
    static bool_t write(ISerializer* p_serializer, const String& p_key, T p_value, bool_t p_attribute,
                        EnumerationConverter p_converter) {
        if constexpr (std::is_floating_point_v<T>) {
            return (p_serializer->*NumberIO<T>::c_write)(p_key, p_value, p_attribute, 0);
        } else {
            return (p_serializer->*NumberIO<T>::c_write)(p_key, p_value, 0, p_attribute, p_converter);
        }
    }
    static bool_t read(IDeserializer* p_deserializer, const String& p_key, uint32_t& p_cache, T& p_value,
                       EnumerationConverter p_converter) {
        T value = p_value;
        bool_t done = (p_deserializer->*NumberIO<T>::c_read)(p_key, p_cache, value, p_converter);
        p_value = value;
        return done;
    }
};

/// A truth value has its own operations, though it is a byte.
template <> struct RecordFieldIO<bool_t> {
    static constexpr bool c_element = false;
    static bool_t declare(ISerializer* p_serializer, const String& p_key, bool_t p_value, bool_t& p_result) {
        return p_serializer->declareBool(p_key, p_value, p_result);
    }
    static bool_t write(ISerializer* p_serializer, const String& p_key, bool_t p_value, bool_t p_attribute,
                        EnumerationConverter) {
        return p_serializer->writeBool(p_key, p_value, p_attribute, 0);
    }
    static bool_t read(IDeserializer* p_deserializer, const String& p_key, uint32_t& p_cache, bool_t& p_value,
                       EnumerationConverter) {
        return p_deserializer->readBool(p_key, p_cache, p_value, 0);
    }
};

template <typename E>
requires std::is_enum_v<E>
struct RecordFieldIO<E> {
    static constexpr bool c_element = false;
    static bool_t declare(ISerializer* p_serializer, const String& p_key, E p_value, bool_t& p_result) {
        return p_serializer->declareEnum(p_key, static_cast<uint32_t>(p_value), p_result);
    }
    static bool_t write(ISerializer* p_serializer, const String& p_key, E p_value, bool_t p_attribute,
                        EnumerationConverter p_converter) {
        return p_serializer->writeEnum(p_key, static_cast<uint32_t>(p_value), 0, p_attribute, p_converter);
    }
    static bool_t read(IDeserializer* p_deserializer, const String& p_key, uint32_t& p_cache, E& p_value,
                       EnumerationConverter p_converter) {
        uint32_t number = static_cast<uint32_t>(p_value);
        bool_t done = p_deserializer->readEnum(p_key, p_cache, number, p_converter);
        p_value = static_cast<E>(number);
        return done;
    }
};

/// A text; a long one can be made an element by the field's list.
template <> struct RecordFieldIO<String> {
    static constexpr bool c_element = false;
    static bool_t declare(ISerializer* p_serializer, const String& p_key, const String& p_value, bool_t& p_result) {
        return p_serializer->declareString(p_key, p_value, p_result);
    }
    static bool_t write(ISerializer* p_serializer, const String& p_key, const String& p_value, bool_t p_attribute,
                        EnumerationConverter) {
        return p_serializer->writeString(p_key, p_value, p_attribute, 0);
    }
    static bool_t read(IDeserializer* p_deserializer, const String& p_key, uint32_t& p_cache, String& p_value,
                       EnumerationConverter) {
        return p_deserializer->readString(p_key, p_cache, p_value, nullptr);
    }
};

/// A GUID travels as its text. An empty text leaves it as it is.
template <> struct RecordFieldIO<GUID_t> {
    static constexpr bool c_element = false;
    static bool_t declare(ISerializer* p_serializer, const String& p_key, const GUID_t& p_value, bool_t& p_result) {
        return p_serializer->declareString(p_key, String::newFromGUID(p_value), p_result);
    }
    static bool_t write(ISerializer* p_serializer, const String& p_key, const GUID_t& p_value, bool_t p_attribute,
                        EnumerationConverter) {
        return p_serializer->writeString(p_key, String::newFromGUID(p_value), p_attribute, 0);
    }
    static bool_t read(IDeserializer* p_deserializer, const String& p_key, uint32_t& p_cache, GUID_t& p_value,
                       EnumerationConverter) {
        String text;
        if (!p_deserializer->readString(p_key, p_cache, text, nullptr)) {
            return 0;
        }
        if (!text.isEmpty()) {
            GUID_t_fromString(p_value, text.getData());
        }
        return 1;
    }
};

/// Declares the structure of the record type R and then the field.
template <RecordLevel R>
bool_t zyr_declareRecordField(ISerializer* p_serializer, const String& p_key, R& p_sample, uint32_t p_marker,
                              uint32_t p_element) {
    bool_t result = 1;
    return p_serializer->beginHeaderStructure(R::getRecordName()) &&
           p_sample.writeSerialized(p_serializer, 1, result) && p_serializer->endHeaderStructure() &&
           p_serializer->writeHeaderField(p_key, p_marker, p_element, R::getRecordName());
}

/// A record inside a record: a structure under the field's key, with the fields of all its levels.
template <RecordLevel R> struct RecordFieldIO<R> {
    static constexpr bool c_element = true;
    static bool_t declare(ISerializer* p_serializer, const String& p_key, R& p_value, bool_t& p_result) {
        return p_result = zyr_declareRecordField(p_serializer, p_key, p_value, ZYR_HEADER_FIELD_RECORD, 0);
    }
    static bool_t write(ISerializer* p_serializer, const String& p_key, R& p_value, bool_t, EnumerationConverter) {
        bool_t result = 1;
        return p_serializer->beginStructure(p_key, 0) && p_value.writeSerialized(p_serializer, 0, result) &&
               p_serializer->endStructure();
    }
    static bool_t read(IDeserializer* p_deserializer, const String& p_key, uint32_t&, R& p_value,
                       EnumerationConverter) {
        bool_t found = 0;
        if (!p_deserializer->enterGroup(p_key, found)) {
            return 0;
        }
        if (!found) {
            return 1;
        }
        bool_t done = p_value.readSerialized(p_deserializer);
        return p_deserializer->leaveGroup() && done;
    }
};

} // namespace zyr
