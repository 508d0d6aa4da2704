/// A hashed map that keeps the order of insertion.
///
///     HashMap<String, uint32_t> counts;
///     counts.pushBack("frames", 1, nullptr);
///     for (const auto& entry : counts) { use(entry.m_first, entry.m_second); }
///
/// The map owns keys and values. Values that are pointers are not deleted. It is not thread safe: whoever shares a map
/// between threads guards it.
#pragma once

#include "zyr_common/containers/zyr_hash_table.h"

namespace zyr {

#pragma pack(push, 1)

/// One key with its value. The key must not be changed while the entry is in a map.
template <typename K, typename V> struct HashMapEntry {
    typedef K Key;
    typedef V Item;

    /// In no chain yet; the hash is that of the key.
    HashMapEntry(uint32_t p_hash, const K& p_key, const V& p_value)
        : m_first(p_key), m_second(p_value), m_hash(p_hash), m_prev(nullptr), m_next(nullptr) {}
    /// What front() and back() of a map give.
    V& getItem() { return m_second; }

    /// The key, which must not be changed.
    K m_first;
    /// The value.
    V m_second;
    /// of the key, kept so that the buckets can double without asking for it again
    uint32_t m_hash;
    /// The chain, in the order of iteration.
    HashMapEntry* m_prev;
    HashMapEntry* m_next;
};

/// Iteration follows the chain of entries: the order of insertion for pushBack. Stored data relies on that order.
///
/// The operations that add give true for a new entry. When the key is present they change nothing, give false and, if
/// `p_existing` is not null, store the address of the present value there. Keys and values handed in may lie in the
/// map itself. The order of the virtual operations and of the fields is a contract between separately built modules.
template <typename K, typename V, typename H, typename E>
class HashMapBase : public HashTable<HashMapBase<K, V, H, E>, HashMapEntry<K, V>, H, E> {
public:
    /// What iterators give: m_first is the key, m_second the value.
    typedef HashMapEntry<K, V> Entry;
    /// The part that is shared with sets and multimaps.
    typedef HashTable<HashMapBase, Entry, H, E> Table;
    typedef typename Table::iterator iterator;
    typedef typename Table::const_iterator const_iterator;

    /// Empty; allocates nothing.
    HashMapBase() : m_allocator(getAllocator()) {}
    /// A deep copy with the default allocator.
    HashMapBase(const HashMapBase& p_other) : HashMapBase() { HashMapBase::copy(p_other); }
    /// See copy(): the allocator stays.
    HashMapBase& operator=(const HashMapBase& p_other) {
        copy(p_other);
        return *this;
    }
    ~HashMapBase() override { this->clearEntries(); }

    /// Adds an entry in front of the others.
    virtual bool pushFront(const K& p_key, const V& p_value, V** p_existing) {
        return this->addUnlessPresent(p_existing, this->m_head, p_key, p_value);
    }
    /// Removes the first entry; nothing happens on an empty map.
    virtual void popFront() { this->popEntry(this->m_head); }
    /// Adds an entry behind the others.
    virtual bool pushBack(const K& p_key, const V& p_value, V** p_existing) {
        return this->addUnlessPresent(p_existing, nullptr, p_key, p_value);
    }
    /// Adds an entry before the position, at the end when that is behind the end. With `p_after` the position is
    /// stepped first.
    virtual bool insert(const K& p_key, iterator& p_position, bool p_after, const V& p_value, V** p_existing) {
        if (p_after) {
            ++p_position;
        }
        if (!this->addUnlessPresent(p_existing, p_position.m_entry, p_key, p_value)) {
            return false;
        }
        p_position.m_previous = this->getPosition(p_position.m_entry).m_previous;
        return true;
    }
    /// Removes the last entry; nothing happens on an empty map.
    virtual void popBack() { this->popEntry(this->getLastEntry()); }

    /// Removes the entry at the position, which moves on to the entry behind it. Behind the end nothing happens.
    virtual void removeByPosition(iterator& p_position) { this->removeAt(p_position); }
    /// True when an entry was removed. The last removal gives the buckets back; there is no other shrinking.
    virtual bool remove(const K& p_key) { return this->removeKey(p_key); }
    /// Removes from the first position up to but not including the last. Both then stand at the last one's entry.
    virtual void removeRange(iterator& p_first, iterator& p_last) { this->removeBetween(p_first, p_last); }

    /// Exchanges entries, buckets and allocator.
    virtual void swap(HashMapBase& p_other) { this->swapEntries(p_other); }
    /// Becomes a deep copy in the same order, with a bucket count of its own; the allocator stays.
    virtual void copy(const HashMapBase& p_source) {
        if (&p_source == this) {
            return;
        }
        clear();
        for (const Entry* entry = p_source.m_head; entry != nullptr; entry = entry->m_next) {
            pushBack(entry->m_first, entry->m_second, nullptr);
        }
    }
    /// Removes all entries; the allocator stays.
    virtual void clear() { this->clearEntries(); }

    /// The place of a key; end() when it is absent.
    virtual iterator find(const K& p_key) { return this->getPosition(this->findEntry(p_key)); }
    virtual const_iterator findConst(const K& p_key) const {
        return this->getPosition(static_cast<const Entry*>(this->findEntry(p_key)));
    }
    /// 1 when the key is present, else 0.
    virtual size_t count(const K& p_key) const { return this->findEntry(p_key) != nullptr ? 1 : 0; }

    /// Looks a key up by its parts, for callers who have these and not the key: the key's hash, and a predicate that
    /// tells the key. Null when it is not there.
    template <typename Predicate> const Entry* findByHash(uint32_t p_hash, const Predicate& p_isKey) const {
        return this->findEntryIf(p_hash, p_isKey);
    }

private:
    friend Table;

    /// where entries, nodes and buckets come from; never freed here
    Allocator* m_allocator;
};

/// The map with the usual hash and equality.
///
///     if (const auto it = counts.find("frames"); it != counts.end()) { it->m_second++; }
///     uint32_t* present = nullptr;
///     if (!counts.pushBack("frames", 1, &present)) { ++*present; } // one look-up for both
template <typename K, typename V> class HashMap : public HashMapBase<K, V, Hash<K>, EqualTo<K>> {
public:
    HashMap() = default;
    HashMap(const HashMap&) = default;
    HashMap& operator=(const HashMap&) = default;
    ~HashMap() override {}
};

#pragma pack(pop)

static_assert(sizeof(HashMap<int, int>) == 74 && alignof(HashMap<int, int>) == 1);

} // namespace zyr
