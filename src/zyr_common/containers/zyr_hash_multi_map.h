/// A hashed map with an array of values per key that keeps the order in which keys were inserted.
///
///     HashMultiMap<String, uint32_t> lines;
///     lines.pushBack("frames", 1);
///     lines.pushBack("frames", 7);
///     for (const auto& entry : lines) { use(entry.m_first, entry.m_second.getSize()); }
///
/// The map owns keys and values. Values that are pointers are not deleted. It is not thread safe: whoever shares a map
/// between threads guards it.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/containers/zyr_hash_table.h"

namespace zyr {

#pragma pack(push, 1)

/// One key with its values in the order of insertion. The key must not be changed while the entry is in a map.
template <typename K, typename V> struct HashMultiMapEntry {
    typedef K Key;
    typedef Array<V> Item;

    /// In no chain yet, without values; the hash is that of the key.
    HashMultiMapEntry(uint32_t p_hash, const K& p_key)
        : m_first(p_key), m_hash(p_hash), m_prev(nullptr), m_next(nullptr) {}
    /// What front() and back() of a multimap give.
    Array<V>& getItem() { return m_second; }

    /// The key, which must not be changed.
    K m_first;
    /// Its values, in the order in which they were added; never empty.
    Array<V> m_second;
    /// of the key, kept so that the buckets can double without asking for it again
    uint32_t m_hash;
    /// The chain, in the order of iteration.
    HashMultiMapEntry* m_prev;
    HashMultiMapEntry* m_next;
};

/// Iteration follows the chain of entries: the order of insertion for pushBack. Stored data relies on that order.
///
/// The operations that add append a value to the array of its key, which they give. The array belongs to the map and
/// stays where it is until its key is removed. A run of values for one key is hashed once. Keys and values handed in
/// may lie in the map itself. The order of the virtual operations and of the fields is a contract between separately
/// built modules.
template <typename K, typename V, typename H, typename E>
class HashMultiMapBase : public HashTable<HashMultiMapBase<K, V, H, E>, HashMultiMapEntry<K, V>, H, E> {
public:
    /// What iterators give: m_first is the key, m_second the array of its values.
    typedef HashMultiMapEntry<K, V> Entry;
    /// The part that is shared with maps and sets.
    typedef HashTable<HashMultiMapBase, Entry, H, E> Table;
    typedef typename Table::iterator iterator;
    typedef typename Table::const_iterator const_iterator;

    /// Empty; allocates nothing.
    HashMultiMapBase() : m_lastEntry(nullptr), m_allocator(getAllocator()) {}
    /// A deep copy with the default allocator.
    HashMultiMapBase(const HashMultiMapBase& p_other) : HashMultiMapBase() { HashMultiMapBase::copy(p_other); }
    /// See copy(): the allocator stays.
    HashMultiMapBase& operator=(const HashMultiMapBase& p_other) {
        copy(p_other);
        return *this;
    }
    ~HashMultiMapBase() override { this->clearEntries(); }

    /// Adds a value; a new key goes in front of the others.
    virtual Array<V>* pushFront(const K& p_key, const V& p_value) { return add(p_key, p_value, this->m_head); }
    /// Removes the first key with all its values; nothing happens on an empty map.
    virtual void popFront() { this->popEntry(this->m_head); }
    /// Adds a value; a new key goes behind the others.
    virtual Array<V>* pushBack(const K& p_key, const V& p_value) { return add(p_key, p_value, nullptr); }
    /// Adds a value; a new key goes before the position, at the end when that is behind the end. With `p_after` the
    /// position is stepped first.
    virtual Array<V>* insert(const K& p_key, iterator& p_position, bool p_after, const V& p_value) {
        if (p_after) {
            ++p_position;
        }
        Array<V>* values = add(p_key, p_value, p_position.m_entry);
        p_position.m_previous = this->getPosition(p_position.m_entry).m_previous;
        return values;
    }
    /// Removes the last key with all its values; nothing happens on an empty map.
    virtual void popBack() { this->popEntry(this->getLastEntry()); }

    /// Removes the entry at the position, which moves on to the entry behind it. Behind the end nothing happens.
    virtual void removeByPosition(iterator& p_position) { this->removeAt(p_position); }
    /// True when an entry was removed. The last removal gives the buckets back; there is no other shrinking.
    virtual bool remove(const K& p_key) {
        Entry* entry = this->takeEntry(p_key);
        if (entry == nullptr) {
            return false;
        }
        if (entry == m_lastEntry) {
            m_lastEntry = nullptr;
        }
        this->destroyEntry(entry);
        return true;
    }
    /// Removes from the first position up to but not including the last. Both then stand at the last one's entry.
    virtual void removeRange(iterator& p_first, iterator& p_last) { this->removeBetween(p_first, p_last); }

    /// Exchanges entries, buckets and allocator.
    virtual void swap(HashMultiMapBase& p_other) {
        this->swapEntries(p_other);
        std::swap(m_lastEntry, p_other.m_lastEntry);
    }
    /// Becomes a deep copy in the same order, with a bucket count of its own; the allocator stays.
    virtual void copy(const HashMultiMapBase& p_source) {
        if (&p_source == this) {
            return;
        }
        clear();
        for (const Entry* entry = p_source.m_head; entry != nullptr; entry = entry->m_next) {
            m_lastEntry = this->addEntry(nullptr, entry->m_hash, entry->m_first);
            m_lastEntry->m_second = entry->m_second;
        }
    }
    /// Removes all entries; the allocator stays.
    virtual void clear() {
        m_lastEntry = nullptr;
        this->clearEntries();
    }

    /// The place of a key; end() when it is absent.
    virtual iterator find(const K& p_key) { return this->getPosition(this->findEntry(p_key)); }
    virtual const_iterator findConst(const K& p_key) const {
        return this->getPosition(static_cast<const Entry*>(this->findEntry(p_key)));
    }
    /// The number of values of the key, 0 when it is absent.
    virtual size_t count(const K& p_key) const {
        const Entry* entry = this->findEntry(p_key);
        return entry != nullptr ? entry->m_second.getSize() : 0;
    }

private:
    friend Table;

    /// Appends a value to the array of its key. A new key goes in front of `p_before`, at the end for null.
    Array<V>* add(const K& p_key, const V& p_value, Entry* p_before) {
        if (m_lastEntry == nullptr || !this->m_equalFunction(m_lastEntry->m_first, p_key)) {
            const uint32_t hash = this->m_hashFunction(p_key);
            Entry* entry = this->findEntry(p_key, hash);
            m_lastEntry = entry != nullptr ? entry : this->addEntry(p_before, hash, p_key);
        }
        m_lastEntry->m_second.pushBack(p_value);
        return &m_lastEntry->m_second;
    }

    /// The entry that took the last value.
    Entry* m_lastEntry;
    /// Where entries, nodes and buckets come from; never freed here. The values come from the default allocator.
    Allocator* m_allocator;
};

/// The multimap with the usual hash and equality.
template <typename K, typename V> class HashMultiMap : public HashMultiMapBase<K, V, Hash<K>, EqualTo<K>> {
public:
    HashMultiMap() = default;
    HashMultiMap(const HashMultiMap&) = default;
    HashMultiMap& operator=(const HashMultiMap&) = default;
    ~HashMultiMap() override {}
};

#pragma pack(pop)

static_assert(sizeof(HashMultiMap<int, int>) == 82 && alignof(HashMultiMap<int, int>) == 1);

} // namespace zyr
