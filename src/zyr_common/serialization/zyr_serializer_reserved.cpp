#include "zyr_common/serialization/zyr_serializer_reserved.h"

#include <atomic>
#include <cstring>

namespace zyr {

namespace {

/// What a class of reserved objects was found to be, by the table of its operations, which tells classes apart. Asking
/// costs as much as writing several fields.
template <class Reserved> class ReservedClasses {
public:
    Reserved* find(ILevelReserved* p_reserved) {
        if (p_reserved == nullptr) {
            return nullptr;
        }
        uintptr_t table = 0;
        memcpy(&table, static_cast<const void*>(p_reserved), sizeof(table));
        std::atomic<uintptr_t>& place = m_found[(table >> 5) % c_count];
        uintptr_t found = place.load(std::memory_order_relaxed);
        if ((found & ~c_able) != table) {
            found = table | (dynamic_cast<Reserved*>(p_reserved) != nullptr ? c_able : 0);
            place.store(found, std::memory_order_relaxed);
        }
        return (found & c_able) != 0 ? static_cast<Reserved*>(p_reserved) : nullptr;
    }

private:
    static constexpr size_t c_count = 16;
    /// In the lowest bit, which no address of a table has.
    static constexpr uintptr_t c_able = 1;

    std::atomic<uintptr_t> m_found[c_count] = {};
};

constinit ReservedClasses<ISerializerReserved> serializerClasses;
constinit ReservedClasses<IDeserializerReserved> deserializerClasses;

} // namespace

ISerializerReserved* zyr_findReserved(const ISerializer* p_serializer) {
    return serializerClasses.find(p_serializer->getSerializerReserved());
}

IDeserializerReserved* zyr_findReserved(const IDeserializer* p_deserializer) {
    return deserializerClasses.find(p_deserializer->getDeserializerReserved());
}

} // namespace zyr
