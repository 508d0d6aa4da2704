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
    HashSetEntry(uint32_t p_hash, const K& p_key) : m_first(p_key), m_hash(p_hash), m_prev(nullptr), m_next(nullptr) {}

    K m_first;
    uint32_t m_hash;
    HashSetEntry* m_prev;
    HashSetEntry* m_next;
};

/// Iteration follows the chain of entries: the order of insertion for pushBack. Stored data relies on that order.
///
/// The operations that add give true for a new key. When the key is present they change nothing, give false and, if
/// `p_existing` is not null, store the address of the present key there. A key handed in may lie in the set itself. The
/// order of the virtual operations and of the fields is a contract between separately built modules.
template <typename K, typename H, typename E> class HashSetBase : public HashTable<HashSetEntry<K>, K, H, E> {
public:
    typedef HashSetEntry<K> Entry;
    typedef HashIterator<HashSetBase, Entry> iterator;
    typedef HashIterator<const HashSetBase, const Entry> const_iterator;

    HashSetBase() : m_allocator(getAllocator()) {}
    /// A deep copy with the default allocator.
    HashSetBase(const HashSetBase& p_other) : HashSetBase() { HashSetBase::copy(p_other); }
    HashSetBase& operator=(const HashSetBase& p_other) {
        copy(p_other);
        return *this;
    }
    ~HashSetBase() override { this->clearEntries(m_allocator); }

    /// Sets the source of entries and buckets and nothing else; present ones must be compatible with it. Null means the
    /// zyr_ functions.
    virtual void setAllocatorUnsafe(Allocator* p_allocator) { m_allocator = p_allocator; }

    virtual iterator begin() { return iterator(this, this->m_head, nullptr); }
    virtual const_iterator beginConst() const { return const_iterator(this, this->m_head, nullptr); }
    /// Behind the last entry; stepping back from here gives the last entry.
    virtual iterator end() { return iterator(this, nullptr, this->getLastEntry()); }
    virtual const_iterator endConst() const { return const_iterator(this, nullptr, this->getLastEntry()); }
    const_iterator begin() const { return beginConst(); }
    const_iterator end() const { return endConst(); }

    virtual bool isEmpty() const { return this->m_size == 0; }
    virtual size_t getSize() const { return this->m_size; }

    /// The first key; a key of no set when the set is empty.
    virtual K& front() { return this->m_head != nullptr ? this->m_head->m_first : getDummy(); }
    virtual const K& frontConst() const { return this->m_head != nullptr ? this->m_head->m_first : getDummy(); }
    /// The last key; a key of no set when the set is empty.
    virtual K& back() { return this->m_head != nullptr ? this->getLastEntry()->m_first : getDummy(); }
    virtual const K& backConst() const { return this->m_head != nullptr ? this->getLastEntry()->m_first : getDummy(); }

    /// Adds an entry in front of the others.
    virtual bool pushFront(const K& p_key, K** p_existing) { return add(p_key, p_existing, this->m_head); }
    /// Removes the first entry; nothing happens on an empty set.
    virtual void popFront() {
        iterator position(this, this->m_head, nullptr);
        removeByPosition(position);
    }
    /// Adds an entry behind the others.
    virtual bool pushBack(const K& p_key, K** p_existing) { return add(p_key, p_existing, nullptr); }
    /// Removes the last entry; nothing happens on an empty set.
    virtual void popBack() {
        iterator position(this, this->getLastEntry(), nullptr);
        removeByPosition(position);
    }

    /// Removes the entry at the position, which moves on to the entry behind it. Behind the end nothing happens.
    virtual void removeByPosition(iterator& p_position) {
        if (p_position.m_entry != nullptr) {
            const iterator following(this, p_position.m_entry->m_next, p_position.m_entry->m_prev);
            remove(p_position.m_entry->m_first);
            p_position = following;
        }
    }
    /// True when an entry was removed. The last removal gives the buckets back; there is no other shrinking.
    virtual bool remove(const K& p_key) {
        Entry* entry = this->takeEntry(p_key, m_allocator);
        if (entry == nullptr) {
            return false;
        }
        this->destroyEntry(entry, m_allocator);
        return true;
    }
    /// Removes from the first position up to but not including the last. Both then stand at the last one's entry.
    virtual void removeRange(iterator& p_first, iterator& p_last) {
        while (p_first.m_entry != nullptr && p_first.m_entry != p_last.m_entry) {
            iterator position = p_first;
            ++p_first;
            removeByPosition(position);
            p_first.m_previous = position.m_previous;
        }
        p_last.m_previous = p_first.m_previous;
    }

    /// Exchanges entries, buckets and allocator.
    virtual void swap(HashSetBase& p_other) {
        this->swapEntries(p_other);
        std::swap(m_allocator, p_other.m_allocator);
    }
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
    virtual void clear() { this->clearEntries(m_allocator); }

    /// The place of a key; end() when it is absent.
    virtual iterator find(const K& p_key) {
        Entry* entry = this->findEntry(p_key);
        return entry != nullptr ? iterator(this, entry, entry->m_prev) : iterator(this, nullptr, this->getLastEntry());
    }
    /// Whether the key is present.
    virtual bool check(const K& p_key) const { return this->findEntry(p_key) != nullptr; }
    virtual const_iterator findConst(const K& p_key) const {
        const Entry* entry = this->findEntry(p_key);
        return entry != nullptr ? const_iterator(this, entry, entry->m_prev)
                                : const_iterator(this, nullptr, this->getLastEntry());
    }
    /// 1 when the key is present, else 0.
    virtual size_t count(const K& p_key) const { return this->findEntry(p_key) != nullptr ? 1 : 0; }

private:
    static K& getDummy() {
        static K dummyT;
        return dummyT;
    }

    bool add(const K& p_key, K** p_existing, Entry* p_before) {
        const uint32_t hash = this->m_hashFunction(p_key);
        Entry* present = this->findEntry(p_key, hash);
        if (present == nullptr) {
            this->addEntry(m_allocator, p_before, hash, p_key);
            return true;
        }
        if (p_existing != nullptr) {
            *p_existing = &present->m_first;
        }
        return false;
    }

    Allocator* m_allocator;
};

/// The set with the usual hash and equality.
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
