/// Fields of several values: how arrays, lists and sets are declared, written and read, beside zyr_record_fields.h.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/containers/zyr_hash_set.h"
#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/serialization/zyr_record_fields.h"

namespace zyr {

/// The number types that serializers know as arrays.
template <typename T>
concept ArrayNumber = requires {
    NumberIO<T>::c_writeArray;
};

/// A fixed number of numbers: a matrix, whose rows a text format puts on lines. Another count than N fails.
template <ArrayNumber T, size_t N> struct RecordFieldIO<T[N]> {
    static constexpr bool c_element = true;
    /// Matrices are known by their number of values; everything else stands on one line.
    static constexpr uint32_t c_rowLength = N == 9 ? 3 : N == 16 ? 4 : 0;
    static bool_t declare(ISerializer* p_serializer, const String& p_key, const T (&p_value)[N], bool_t& p_result) {
        T items[N];
        copy(items, p_value);
        return (p_serializer->*NumberIO<T>::c_declareArray)(p_key, N, items, p_result);
    }
    static bool_t write(ISerializer* p_serializer, const String& p_key, const T (&p_value)[N], bool_t p_attribute,
                        EnumerationConverter) {
        T items[N];
        copy(items, p_value);
        return (p_serializer->*NumberIO<T>::c_writeArray)(p_key, N, items, p_attribute, c_rowLength);
    }
    static bool_t read(IDeserializer* p_deserializer, const String& p_key, uint32_t& p_cache, T (&p_value)[N],
                       EnumerationConverter) {
        Array<T> items;
        items.pushBackRange(p_value, N);
        if (!(p_deserializer->*NumberIO<T>::c_readArray)(p_key, p_cache, items, 0) || items.getSize() != N) {
            return 0;
        }
        copy(p_value, items.getData());
        return 1;
    }

private:
    /// Byte by byte, since the field may stand at any address.
    static void copy(T* p_target, const T* p_source) { memcpy(p_target, p_source, N * sizeof(T)); }
};

/// An array of numbers of any length; what is read replaces the items.
template <ArrayNumber T> struct RecordFieldIO<Array<T>> {
    static constexpr bool c_element = true;
    static bool_t declare(ISerializer* p_serializer, const String& p_key, const Array<T>& p_value, bool_t& p_result) {
        return (p_serializer->*NumberIO<T>::c_declareArray)(p_key, static_cast<uint32_t>(p_value.getSize()),
                                                            p_value.getData(), p_result);
    }
    static bool_t write(ISerializer* p_serializer, const String& p_key, const Array<T>& p_value, bool_t p_attribute,
                        EnumerationConverter) {
        return (p_serializer->*NumberIO<T>::c_writeArray)(p_key, static_cast<uint32_t>(p_value.getSize()),
                                                          p_value.getData(), p_attribute, 0);
    }
    static bool_t read(IDeserializer* p_deserializer, const String& p_key, uint32_t& p_cache, Array<T>& p_value,
                       EnumerationConverter) {
        return (p_deserializer->*NumberIO<T>::c_readArray)(p_key, p_cache, p_value, 0);
    }
};

template <> struct RecordFieldIO<Array<String>> {
    static constexpr bool c_element = true;
    static bool_t declare(ISerializer* p_serializer, const String& p_key, const Array<String>& p_value,
                          bool_t& p_result) {
        return p_serializer->declareStringArray(p_key, p_value, p_result);
    }
    static bool_t write(ISerializer* p_serializer, const String& p_key, const Array<String>& p_value,
                        bool_t p_attribute, EnumerationConverter) {
        return p_serializer->writeStringArray(p_key, static_cast<uint32_t>(p_value.getSize()), p_value.getData(),
                                              p_attribute, 0);
    }
    static bool_t read(IDeserializer* p_deserializer, const String& p_key, uint32_t& p_cache, Array<String>& p_value,
                       EnumerationConverter) {
        return p_deserializer->readStringArray(p_key, p_cache, p_value, 0);
    }
};

/// A list of texts travels as an array; what is read replaces the list.
/// Reading gives the list new nodes: what pointed to the old ones is stale.
template <> struct RecordFieldIO<List<String>> {
    static constexpr bool c_element = true;
    static bool_t declare(ISerializer* p_serializer, const String& p_key, const List<String>& p_value,
                          bool_t& p_result) {
        return p_serializer->declareStringArray(p_key, collect(p_value), p_result);
    }
    static bool_t write(ISerializer* p_serializer, const String& p_key, const List<String>& p_value, bool_t p_attribute,
                        EnumerationConverter p_converter) {
        return RecordFieldIO<Array<String>>::write(p_serializer, p_key, collect(p_value), p_attribute, p_converter);
    }
    static bool_t read(IDeserializer* p_deserializer, const String& p_key, uint32_t& p_cache, List<String>& p_value,
                       EnumerationConverter p_converter) {
        Array<String> items = collect(p_value);
        if (!RecordFieldIO<Array<String>>::read(p_deserializer, p_key, p_cache, items, p_converter)) {
            return 0;
        }
        p_value.clear();
        for (size_t i = 0; i < items.getSize(); ++i) {
            p_value.pushBack(items[i]);
        }
        return 1;
    }

private:
    /// The same texts, which the serializer wants side by side.
    static Array<String> collect(const List<String>& p_list) {
        Array<String> items;
        for (const String& item : p_list) {
            items.pushBack(item);
        }
        return items;
    }
};

/// Arrays and sets of enumerations travel as arrays of numbers with the converter of the enumeration.
/// In a text format an item is its word, or its digits where it has none.
template <typename Container, EnumerationWithTexts E> struct EnumerationItemsIO {
    static constexpr bool c_element = true;
    static bool_t declare(ISerializer* p_serializer, const String& p_key, const Container& p_value, bool_t& p_result) {
        Array<uint32_t> numbers;
        collect(p_value, numbers);
        return p_serializer->declareEnumArray(p_key, static_cast<uint32_t>(numbers.getSize()), numbers.getData(),
                                              p_result);
    }
    static bool_t write(ISerializer* p_serializer, const String& p_key, const Container& p_value, bool_t p_attribute,
                        EnumerationConverter) {
        Array<uint32_t> numbers;
        collect(p_value, numbers);
        return p_serializer->writeEnumArray(p_key, static_cast<uint32_t>(numbers.getSize()), numbers.getData(),
                                            p_attribute, &zyr_convertEnumeration<E>);
    }
    static bool_t read(IDeserializer* p_deserializer, const String& p_key, uint32_t& p_cache, Container& p_value,
                       EnumerationConverter) {
        Array<uint32_t> numbers;
        if (!p_deserializer->readEnumArray(p_key, p_cache, numbers, &zyr_convertEnumeration<E>)) {
            return 0;
        }
        add(p_value, numbers);
        return 1;
    }

private:
    /// The numbers of the items in their order, each as 32 bits.
    static void collect(const Array<E>& p_items, Array<uint32_t>& p_numbers) {
        for (size_t i = 0; i < p_items.getSize(); ++i) {
            p_numbers.pushBack(static_cast<uint32_t>(p_items[i]));
        }
    }
    static void collect(const HashSet<E>& p_items, Array<uint32_t>& p_numbers) {
        for (auto i = p_items.beginConst(); i != p_items.endConst(); ++i) {
            p_numbers.pushBack(static_cast<uint32_t>(i->m_first));
        }
    }
    /// What was read replaces the items of an array, and joins those of a set: a set that has a number already keeps
    /// its place.
    static void add(Array<E>& p_items, const Array<uint32_t>& p_numbers) {
        p_items.clear();
        for (size_t i = 0; i < p_numbers.getSize(); ++i) {
            p_items.pushBack(static_cast<E>(p_numbers[i]));
        }
    }
    static void add(HashSet<E>& p_items, const Array<uint32_t>& p_numbers) {
        for (size_t i = 0; i < p_numbers.getSize(); ++i) {
            p_items.pushBack(static_cast<E>(p_numbers[i]), nullptr);
        }
    }
};

template <EnumerationWithTexts E> struct RecordFieldIO<Array<E>> : EnumerationItemsIO<Array<E>, E> {};
template <EnumerationWithTexts E> struct RecordFieldIO<HashSet<E>> : EnumerationItemsIO<HashSet<E>, E> {};

/// Records of an array that is being read, in a block of which only the first items live yet: each is made when it is
/// filled, while it is in the processor's cache.
template <RecordLevel R> class RecordBlock {
public:
    RecordBlock() = default;
    ~RecordBlock() { release(); }
    RecordBlock(const RecordBlock&) = delete;
    RecordBlock& operator=(const RecordBlock&) = delete;

    /// Makes one more item of so many that are said to come; null where there is no memory. A wrong number costs no
    /// more than what was read before.
    R* add(size_t p_expected) {
        if (m_count == m_capacity) {
            const size_t step = m_count != 0 ? m_count * c_stepFactor : c_firstStep;
            if (!grow(step < p_expected ? step : p_expected)) {
                return nullptr;
            }
        }
        return new (static_cast<void*>(m_items + m_count++)) R();
    }
    /// Hands the items to an array, in place of what it holds; without the last one if that is not complete.
    void give(Array<R>& p_array, bool p_complete) {
        if (!p_complete && m_count != 0) {
            m_items[--m_count].~R();
        }
        p_array.clear();
        if (m_count != 0) {
            p_array.bindInitialData(m_items, m_count);
            m_items = nullptr;
            m_count = 0;
        }
    }

private:
    static constexpr size_t c_firstStep = 1024;
    static constexpr size_t c_stepFactor = 128;

    bool grow(size_t p_capacity) {
        R* items = static_cast<R*>(allocArray(getAllocator(), getArrayByteSize<R>(p_capacity)));
        if (items == nullptr) {
            return false;
        }
        for (size_t i = 0; i < m_count; ++i) {
            *new (static_cast<void*>(items + i)) R() = std::move(m_items[i]);
        }
        const size_t count = m_count;
        release();
        m_items = items;
        m_count = count;
        m_capacity = p_capacity;
        return true;
    }
    void release() { freeNewArray(getAllocator(), m_items, m_count); }

    R* m_items = nullptr;
    size_t m_count = 0;
    size_t m_capacity = 0;
};

/// An array of records; the items replace what the array holds and are read where they stay.
template <RecordLevel R> struct RecordFieldIO<Array<R>> {
    static constexpr bool c_element = true;
    static bool_t declare(ISerializer* p_serializer, const String& p_key, const Array<R>&, bool_t& p_result) {
        R sample;
        return p_result =
                   zyr_declareRecordField(p_serializer, p_key, sample, ZYR_HEADER_FIELD_ARRAY, ZYR_HEADER_FIELD_RECORD);
    }
    static bool_t write(ISerializer* p_serializer, const String& p_key, Array<R>& p_value, bool_t,
                        EnumerationConverter) {
        uint32_t count = static_cast<uint32_t>(p_value.getSize());
        if (!p_serializer->beginArray(p_key, count, ZYR_ARRAY_OF_RECORDS)) {
            return 0;
        }
        for (uint32_t i = 0; i < count; ++i) {
            bool_t result = 1;
            if (!p_serializer->beginArrayElement(i, R::getRecordName()) ||
                !p_value[i].writeSerialized(p_serializer, 0, result) || !p_serializer->endArrayElement()) {
                return 0;
            }
        }
        return p_serializer->endArray();
    }
    static bool_t read(IDeserializer* p_deserializer, const String& p_key, uint32_t&, Array<R>& p_value,
                       EnumerationConverter) {
        bool_t found = 0;
        if (!p_deserializer->enterArray(p_key, found, 0)) {
            return 0;
        }
        if (!found) {
            return 1;
        }
        RecordBlock<R> items;
        String typeName;
        bool_t done = 1;
        const uint32_t count = p_deserializer->getArraySize();
        for (uint32_t i = 0; i < count && done; ++i) {
            R* item = items.add(count);
            done = item != nullptr && readElement(p_deserializer, i, typeName, *item);
        }
        items.give(p_value, done);
        return p_deserializer->leaveArray(ZYR_HEADER_FIELD_RECORD) && done;
    }

private:
    /// A null element leaves its place in the array with a default record.
    static bool_t readElement(IDeserializer* p_deserializer, uint32_t p_index, String& p_typeName, R& p_item) {
        if (!p_deserializer->enterArrayElement(p_index, p_typeName)) {
            return 0;
        }
        const bool_t done = p_typeName.isEmpty() || p_item.readSerialized(p_deserializer);
        return p_deserializer->leaveArrayElement() && done;
    }
};

} // namespace zyr
