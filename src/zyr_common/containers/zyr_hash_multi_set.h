/// A key with a set of values: values without repetition under each of several keys.
#pragma once

#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/containers/zyr_hash_set.h"

namespace zyr {

#pragma pack(push, 1)

/// Keys, and the values of a key, stand in the order in which they were added. Not thread safe.
///
///     HashMultiSet<String, GUID_t> references;
///     references.add("images", guid);
///     for (const auto& entry : references) { use(entry.m_first, entry.m_second.getSize()); }
template <typename K, typename V> class HashMultiSet : public HashMap<K, HashSet<V>> {
public:
    HashMultiSet() = default;
    HashMultiSet(const HashMultiSet&) = default;
    HashMultiSet& operator=(const HashMultiSet&) = default;
    ~HashMultiSet() override {}

    /// False when the key has the value already.
    bool add(const K& p_key, const V& p_value) {
        auto entry = this->find(p_key);
        if (entry == this->end()) {
            this->pushBack(p_key, HashSet<V>(), nullptr);
            entry = this->find(p_key);
        }
        return entry->m_second.pushBack(p_value, nullptr);
    }
    /// Whether the key has the value; changes nothing.
    bool contains(const K& p_key, const V& p_value) const {
        const auto entry = this->findConst(p_key);
        return entry != this->endConst() && entry->m_second.check(p_value);
    }
};

#pragma pack(pop)

} // namespace zyr
