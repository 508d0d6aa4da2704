/// How the elements of a container of objects travel: an array "items" of structures, each with the key, where there is
/// one, and the object. A null element of a container without keys is an element without a type name.
#pragma once

#include "zyr_common/implementation/zyr_container_items.h"
#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/serialization/zyr_record_fields.h"
#include "zyr_common/serialization/zyr_serializer.h"

namespace zyr {

/// Whether a key can be stored: what a view or a pointer points to belongs to somebody else.
template <typename K> inline constexpr bool isStoredKey = !std::is_pointer_v<K> && !std::is_same_v<K, WrappedString>;

/// A key inside a structure of an item.
template <typename K> struct StoredKey {
    /// In the header pass: the key's type, by a sample.
    static bool_t declare(ISerializer* p_serializer, const K& p_key) {
        bool_t result = 1;
        return RecordFieldIO<K>::declare(p_serializer, getName(), p_key, result) && result;
    }
    /// As an attribute of the item.
    static bool_t write(ISerializer* p_serializer, const K& p_key) {
        return RecordFieldIO<K>::write(p_serializer, getName(), p_key, 1, nullptr);
    }
    /// A missing key leaves the default of its type.
    static bool_t read(IDeserializer* p_deserializer, K& p_key) {
        static uint32_t cache = 0;
        return RecordFieldIO<K>::read(p_deserializer, getName(), cache, p_key, nullptr);
    }

private:
    /// Lives as long as the process.
    static const String& getName() {
        static const String& name = makePermanent<String>("key");
        return name;
    }
};
/// Containers without keys store none.
template <> struct StoredKey<NoKey> {
    static bool_t declare(ISerializer*, NoKey) { return 1; }
    static bool_t write(ISerializer*, NoKey) { return 1; }
    static bool_t read(IDeserializer*, NoKey&) { return 1; }
};

/// The parts around the keys, which are the same for all containers. They give false on failure.
class ContainerStream {
public:
    // Header pass: the structure of an item, with the key and every element's class in between.
    static bool_t beginDeclaration(ISerializer* p_serializer);
    /// Null declares nothing.
    static bool_t declareElement(ISerializer* p_serializer, IObject* p_element);
    static bool_t endDeclaration(ISerializer* p_serializer);

    // Value pass.
    /// False for more than 32 bits can count.
    static bool_t beginItems(ISerializer* p_serializer, uint64_t p_count);
    static bool_t beginItem(ISerializer* p_serializer, uint32_t p_index);
    static bool_t writeElement(ISerializer* p_serializer, IObject* p_element);
    static bool_t endItem(ISerializer* p_serializer);
    /// An item without a type name, which has neither key nor element.
    static bool_t writeNullItem(ISerializer* p_serializer, uint32_t p_index);
    static bool_t endItems(ISerializer* p_serializer);

    /// Takes the number of stored items, which is only a bound: what is not there ends the reading.
    static bool_t enterItems(IDeserializer* p_deserializer, bool_t& p_found, uint32_t& p_count);
    /// p_isNull tells whether it is one that writeNullItem has written.
    static bool_t enterItem(IDeserializer* p_deserializer, uint32_t p_index, bool_t& p_isNull);
    /// The element comes with a reference; null for a null element and for one of an unknown class.
    static bool_t readElement(IDeserializer* p_deserializer, IObject*& p_element);
    static bool_t leaveItem(IDeserializer* p_deserializer);
    static bool_t leaveItems(IDeserializer* p_deserializer);
};

} // namespace zyr
