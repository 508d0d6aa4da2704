/// A hashed set that keeps the order of insertion.
///
///     HashSet<String> names;
///     names.pushBack("frames", nullptr);
///     for (const auto& entry : names) { use(entry.m_first); }
///
/// The set owns its keys. Keys that are pointers are not deleted. It is not thread safe: whoever shares a set between
/// threads guards it.
#pragma once

#include "zyr_common/containers/zyr_hash_table.h"

namespace zyr {

#pragma pack(push, 1)

/// One key. It must not be changed while the entry is in a set.
template <typename K> struct HashSetEntry {
    typedef K Key;
    typedef K Item;

    /// In no chain yet; the hash is that of the key.
    HashSetEntry(uint32_t p_hash, const K& p_key) : m_first(p_key), m_hash(p_hash), m_prev(nullptr), m_next(nullptr) {}
    /// What front() and back() of a set give.
    K& getItem() { return m_first; }

    /// The key, which must not be changed.
    K m_first;
    /// of the key, kept so that the buckets can double without asking for it again
    uint32_t m_hash;
    /// The chain, in the order of iteration.
    HashSetEntry* m_prev;
    HashSetEntry* m_next;
};

/// Iteration follows the chain of entries: the order of insertion for pushBack. Stored data relies on that order.
///
/// The operations that add give true for a new key. When the key is present they change nothing, give false and, if
/// `p_existing` is not null, store the address of the present key there. A key handed in may lie in the set itself. The
/// order of the virtual operations and of the fields is a contract between separately built modules.
template <typename K, typename H, typename E>
class HashSetBase : public HashTable<HashSetBase<K, H, E>, HashSetEntry<K>, H, E> {
public:
    /// What iterators give: m_first is the key.
    typedef HashSetEntry<K> Entry;
    /// The part that is shared with maps and multimaps.
    typedef HashTable<HashSetBase, Entry, H, E> Table;
    typedef typename Table::iterator iterator;
    typedef typename Table::const_iterator const_iterator;

    /// Empty; allocates nothing.
    HashSetBase() : m_allocator(getAllocator()) {}
    /// A deep copy with the default allocator.
    HashSetBase(const HashSetBase& p_other) : HashSetBase() { HashSetBase::copy(p_other); }
    /// See copy(): the allocator stays.
    HashSetBase& operator=(const HashSetBase& p_other) {
        copy(p_other);
        return *this;
    }
    ~HashSetBase() override { this->clearEntries(); }

    /// Adds an entry in front of the others.
    virtual bool pushFront(const K& p_key, K** p_existing) {
        return this->addUnlessPresent(p_existing, this->m_head, p_key);
    }
    /// Removes the first entry; nothing happens on an empty set.
    virtual void popFront() { this->popEntry(this->m_head); }
    /// Adds an entry behind the others.
    virtual bool pushBack(const K& p_key, K** p_existing) { return this->addUnlessPresent(p_existing, nullptr, p_key); }
    /// Removes the last entry; nothing happens on an empty set.
    virtual void popBack() { this->popEntry(this->getLastEntry()); }

    /// Removes the entry at the position, which moves on to the entry behind it. Behind the end nothing happens.
    virtual void removeByPosition(iterator& p_position) { this->removeAt(p_position); }
    /// True when an entry was removed. The last removal gives the buckets back; there is no other shrinking.
    virtual bool remove(const K& p_key) { return this->removeKey(p_key); }
    /// Removes from the first position up to but not including the last. Both then stand at the last one's entry.
    virtual void removeRange(iterator& p_first, iterator& p_last) { this->removeBetween(p_first, p_last); }

    /// Exchanges entries, buckets and allocator.
    virtual void swap(HashSetBase& p_other) { this->swapEntries(p_other); }
    /// Becomes a deep copy in the same order, with a bucket count of its own; the allocator stays.
    virtual void copy(const HashSetBase& p_source) {
        if (&p_source == this) {
            return;
        }
        clear();
        for (const Entry* entry = p_source.m_head; entry != nullptr; entry = entry->m_next) {
            pushBack(entry->m_first, nullptr);
        }
    }
    /// Removes all entries; the allocator stays.
    virtual void clear() { this->clearEntries(); }

    /// The place of a key; end() when it is absent.
    virtual iterator find(const K& p_key) { return this->getPosition(this->findEntry(p_key)); }
    /// Whether the key is present.
    virtual bool check(const K& p_key) const { return this->findEntry(p_key) != nullptr; }
    virtual const_iterator findConst(const K& p_key) const {
        return this->getPosition(static_cast<const Entry*>(this->findEntry(p_key)));
    }
    /// 1 when the key is present, else 0.
    virtual size_t count(const K& p_key) const { return this->findEntry(p_key) != nullptr ? 1 : 0; }

private:
    friend Table;

    /// where entries, nodes and buckets come from; never freed here
    Allocator* m_allocator;
};

/// The set with the usual hash and equality.
///
///     if (seen.pushBack(guid, nullptr)) { visit(guid); } // once for each
template <typename K> class HashSet : public HashSetBase<K, Hash<K>, EqualTo<K>> {
public:
    HashSet() = default;
    HashSet(const HashSet&) = default;
    HashSet& operator=(const HashSet&) = default;
    ~HashSet() override {}
};

#pragma pack(pop)

static_assert(sizeof(HashSet<int>) == 74 && alignof(HashSet<int>) == 1);

} // namespace zyr
