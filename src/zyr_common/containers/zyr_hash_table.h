/// What HashMap, HashSet and HashMultiMap share: the ordered chain of entries, the buckets over it, and the operations
/// that are the same for all three.
///
/// A walk goes along the chain, in the order of insertion: it never depends on hashes or on the number of buckets.
/// Finding takes constant time on average. Entries keep their addresses until they are removed; the buckets double when
/// they are filled to 7 tenths, which touches no entry.
///
/// Not for use by itself, and not thread safe: whoever shares a container between threads guards it, also for finding
/// while another thread adds.
#pragma once

#include "zyr_common/containers/zyr_hash.h"
#include "zyr_common/containers/zyr_list.h"

namespace zyr {

/// A place in a hashed container: the container, an entry (null behind the end) and the entry before it. Two are equal
/// when all three are. Entries offer m_first, the key, and, in maps, m_second, the value.
template <typename Container, typename Entry> class HashIterator {
public:
    /// Of no container; only good for being assigned to.
    HashIterator() : m_map(nullptr), m_entry(nullptr), m_previous(nullptr) {}
    /// The entries must be neighbours in that container, which is not checked.
    HashIterator(Container* p_map, Entry* p_entry, Entry* p_previous)
        : m_map(p_map), m_entry(p_entry), m_previous(p_previous) {}
    /// A place that allows changes is also one that does not.
    template <typename OtherContainer, typename OtherEntry>
    HashIterator(const HashIterator<OtherContainer, OtherEntry>& p_other)
        : m_map(p_other.m_map), m_entry(p_other.m_entry), m_previous(p_other.m_previous) {}

    /// Not behind the end, where there is no entry.
    Entry& operator*() const { return *m_entry; }
    Entry* operator->() const { return m_entry; }
    /// Behind the end this does nothing.
    HashIterator& operator++() {
        if (m_entry != nullptr) {
            m_previous = m_entry;
            m_entry = m_entry->m_next;
        }
        return *this;
    }
    /// At the first entry this does nothing.
    HashIterator& operator--() {
        if (m_previous != nullptr) {
            m_entry = m_previous;
            m_previous = m_entry->m_prev;
        }
        return *this;
    }
    bool operator==(const HashIterator& p_other) const = default;

    /// the container that is walked
    Container* m_map;
    /// the entry here, null behind the end
    Entry* m_entry;
    /// the entry before it in the chain, null at the first one
    Entry* m_previous;
};

#pragma pack(push, 1)

/// The fields up to the functors, what is done with them, and the first of the virtual operations. Container is the
/// derived class. It holds the allocator, since one of the three has a field in front of it. An item is what front()
/// gives: the value, or the key of a set.
///
/// The number of buckets is 0 while there is no entry, and else 8 times a power of two. The order of the virtual
/// operations and of the fields is a contract between separately built modules.
///
/// What operations cost, for n entries:
///
/// | Operation | Time | Memory |
/// |---|---|---|
/// | find, count | constant on average, linear where all hashes are equal | none |
/// | add at either end or at a position | the same, and linear where the buckets double | an entry and a node |
/// | remove by key or position | as finding | gives back an entry and a node |
/// | walk | linear in n, without the buckets | none |
/// | copy | linear | as n additions |
/// | swap | constant | none |
template <class Container, typename Entry, typename H, typename E> class HashTable : public RefCountedData {
    typedef typename Entry::Key K;
    typedef typename Entry::Item Item;

public:
    /// Iterators stay valid while other entries come and go, except that each knows the entry before its own: it is
    /// stale when that one goes.
    typedef HashIterator<Container, Entry> iterator;
    typedef HashIterator<const Container, const Entry> const_iterator;

    /// Sets the source of entries and buckets and nothing else; present ones must be compatible with it. Null means the
    /// zyr_ functions.
    virtual void setAllocatorUnsafe(Allocator* p_allocator) { self().m_allocator = p_allocator; }

    /// The entry that was inserted first, or the place behind the end.
    virtual iterator begin() { return iterator(&self(), m_head, nullptr); }
    virtual const_iterator beginConst() const { return const_iterator(&self(), m_head, nullptr); }
    /// Behind the last entry; stepping back from here gives the last entry.
    virtual iterator end() { return iterator(&self(), nullptr, getLastEntry()); }
    virtual const_iterator endConst() const { return const_iterator(&self(), nullptr, getLastEntry()); }
    /// For loops over a container that must not be changed.
    const_iterator begin() const { return beginConst(); }
    const_iterator end() const { return endConst(); }

    /// Whether there is no entry.
    virtual bool isEmpty() const { return m_size == 0; }
    /// The number of keys.
    virtual size_t getSize() const { return m_size; }

    /// The first item; an item of no container when this one is empty.
    virtual Item& front() { return getItem(m_head); }
    virtual const Item& frontConst() const { return getItem(m_head); }
    /// The last item; an item of no container when this one is empty.
    virtual Item& back() { return getItem(getLastEntry()); }
    virtual const Item& backConst() const { return getItem(getLastEntry()); }

protected:
    /// Buckets hold addresses of entries, which belong to the chain.
    typedef List<Entry*> Bucket;
    typedef typename Bucket::Node BucketNode;

    /// No entries and no buckets: an empty container allocates nothing.
    HashTable() : m_head(nullptr), m_tail(nullptr), m_size(0), m_buckets(nullptr), m_numOfBuckets(0) {}

    /// The entry that was added last to the end of the chain; null when there is none.
    Entry* getLastEntry() const { return getChainEnd(m_head, m_tail); }

    /// The place of an entry of this container; behind the end for null.
    iterator getPosition(Entry* p_entry) {
        return iterator(&self(), p_entry, p_entry != nullptr ? p_entry->m_prev : getLastEntry());
    }
    const_iterator getPosition(const Entry* p_entry) const {
        return const_iterator(&self(), p_entry, p_entry != nullptr ? p_entry->m_prev : getLastEntry());
    }

    /// The entry of that hash whose key the predicate accepts, or null.
    template <typename Predicate> Entry* findEntryIf(uint32_t p_hash, const Predicate& p_isKey) const {
        if (m_size == 0) {
            return nullptr;
        }
        for (const BucketNode* node = getBucket(p_hash).m_head; node != nullptr; node = node->m_next) {
            Entry* entry = node->m_item;
            if (entry->m_hash == p_hash && p_isKey(entry->m_first)) {
                return entry;
            }
        }
        return nullptr;
    }

    /// The entry of a key, or null. The hash must be the one that the hash functor gives for the key.
    Entry* findEntry(const K& p_key, uint32_t p_hash) const {
        return findEntryIf(p_hash, [this, &p_key](const K& p_present) { return m_equalFunction(p_present, p_key); });
    }

    Entry* findEntry(const K& p_key) const { return m_size != 0 ? findEntry(p_key, m_hashFunction(p_key)) : nullptr; }

    /// Adds an entry for a key that is not there, in front of `p_before` or at the end of the chain. The rest of the
    /// arguments goes to the entry's constructor.
    template <typename... Arguments>
    Entry* addEntry(Entry* p_before, uint32_t p_hash, const Arguments&... p_arguments) {
        if (m_size == 0) {
            m_buckets = static_cast<Bucket*>(allocArray(getMemory(), 8 * sizeof(Bucket)));
            constructBuckets(8);
        }
        if (m_size + 1 > m_numOfBuckets * 7 / 10) {
            doubleBuckets();
        }
        Entry* entry = new (allocArray(getMemory(), sizeof(Entry))) Entry(p_hash, p_arguments...);
        linkIntoChain(m_head, m_tail, entry, p_before);
        getBucket(p_hash).addNode(entry, nullptr);
        m_size++;
        return entry;
    }

    /// Adds an entry unless its key is there; see the containers for the result and `p_existing`.
    template <typename... Values>
    bool addUnlessPresent(Item** p_existing, Entry* p_before, const K& p_key, const Values&... p_values) {
        const uint32_t hash = m_hashFunction(p_key);
        Entry* present = findEntry(p_key, hash);
        if (present == nullptr) {
            addEntry(p_before, hash, p_key, p_values...);
            return true;
        }
        if (p_existing != nullptr) {
            *p_existing = &present->getItem();
        }
        return false;
    }

    /// Takes the entry of a key out of chain and bucket, without destroying it. Null when there is none.
    Entry* takeEntry(const K& p_key) {
        Entry* entry = findEntry(p_key);
        if (entry != nullptr) {
            Bucket& bucket = getBucket(entry->m_hash);
            bucket.freeNode(takeNode(bucket, entry));
            unlinkFromChain(m_head, m_tail, entry);
            m_size--;
            if (m_size == 0) {
                destroyBuckets(m_buckets, m_numOfBuckets);
                m_buckets = nullptr;
                m_numOfBuckets = 0;
            }
        }
        return entry;
    }

    /// Destroys an entry that is in neither chain nor bucket.
    void destroyEntry(Entry* p_entry) {
        p_entry->~Entry();
        freeArray(getMemory(), p_entry);
    }

    /// Removes the entry of a key and gives whether there was one.
    bool removeKey(const K& p_key) {
        Entry* entry = takeEntry(p_key);
        if (entry != nullptr) {
            destroyEntry(entry);
        }
        return entry != nullptr;
    }

    /// Removes an entry, or nothing for null, through the operations that a subclass may have changed.
    void popEntry(Entry* p_entry) {
        iterator position(&self(), p_entry, nullptr);
        self().removeByPosition(position);
    }

    /// Removes the entry at a place, which moves on to the one behind it. Does nothing behind the end.
    void removeAt(iterator& p_position) {
        if (p_position.m_entry != nullptr) {
            const iterator following(&self(), p_position.m_entry->m_next, p_position.m_entry->m_prev);
            self().remove(p_position.m_entry->m_first);
            p_position = following;
        }
    }

    /// Removes from the first place up to but not including the last. Both then stand at the last one's entry.
    void removeBetween(iterator& p_first, iterator& p_last) {
        while (p_first.m_entry != nullptr && p_first.m_entry != p_last.m_entry) {
            iterator position = p_first;
            ++p_first;
            self().removeByPosition(position);
            p_first.m_previous = position.m_previous;
        }
        p_last.m_previous = p_first.m_previous;
    }

    /// Entries and nodes were made in the order of the chain, for the most part, and are freed in it.
    void clearEntries() {
        Bucket* buckets = m_buckets;
        const size_t numOfBuckets = m_numOfBuckets;
        Entry* entry = m_head;
        m_head = nullptr;
        m_tail = nullptr;
        m_size = 0;
        m_buckets = nullptr;
        m_numOfBuckets = 0;
        Entry* ahead = getAhead(entry);
        while (entry != nullptr) {
            Entry* next = entry->m_next;
            if (ahead != nullptr) {
                __builtin_prefetch(&buckets[ahead->m_hash & (numOfBuckets - 1)].m_head, 1);
                ahead = ahead->m_next;
            }
            Bucket& bucket = buckets[entry->m_hash & (numOfBuckets - 1)];
            bucket.freeNode(takeNode(bucket, entry));
            destroyEntry(entry);
            entry = next;
        }
        destroyBuckets(buckets, numOfBuckets);
    }

    /// Exchanges entries, buckets and allocators; the functors stay. No entry moves, but iterators go on naming their
    /// former container.
    void swapEntries(Container& p_other) {
        std::swap(m_head, p_other.m_head);
        std::swap(m_tail, p_other.m_tail);
        std::swap(m_size, p_other.m_size);
        std::swap(m_buckets, p_other.m_buckets);
        std::swap(m_numOfBuckets, p_other.m_numOfBuckets);
        std::swap(self().m_allocator, p_other.m_allocator);
    }

private:
    /// The container that derives from this class.
    Container& self() { return static_cast<Container&>(*this); }
    const Container& self() const { return static_cast<const Container&>(*this); }
    Allocator* getMemory() const { return self().m_allocator; }

    /// What front() and back() of an empty container give: one for all containers of a type, so it must not be written.
    static Item& getDummy() {
        static Item dummyT;
        return dummyT;
    }
    static Item& getItem(Entry* p_entry) { return p_entry != nullptr ? p_entry->getItem() : getDummy(); }

    Bucket& getBucket(uint32_t p_hash) const {
        // The number of buckets is a power of two, so this is the remainder.
        return m_buckets[p_hash & (m_numOfBuckets - 1)];
    }

    /// So far in front of an entry that its bucket is in the cache when the walk over the chain comes there.
    static Entry* getAhead(Entry* p_entry) {
        for (int i = 0; i < 12 && p_entry != nullptr; i++) {
            p_entry = p_entry->m_next;
        }
        return p_entry;
    }

    /// Unlinks the node of an entry from its bucket.
    static BucketNode* takeNode(Bucket& p_bucket, const Entry* p_entry) {
        BucketNode* node = p_bucket.m_head;
        while (node->m_item != p_entry) {
            node = node->m_next;
        }
        unlinkFromChain(p_bucket.m_head, p_bucket.m_tail, node);
        return node;
    }

    /// Constructs the buckets from the present number up to another one.
    void constructBuckets(size_t p_numOfBuckets) {
        for (; m_numOfBuckets < p_numOfBuckets; m_numOfBuckets++) {
            new (&m_buckets[m_numOfBuckets]) Bucket(getMemory());
        }
    }

    void destroyBuckets(Bucket* p_buckets, size_t p_numOfBuckets) {
        for (size_t i = 0; i < p_numOfBuckets; i++) {
            p_buckets[i].Bucket::~Bucket();
        }
        if (p_buckets != nullptr) {
            freeArray(getMemory(), p_buckets);
        }
    }

    /// Puts each entry into its bucket among twice as many, in the order of the chain. Nodes go on serving the entry
    /// that they were made for, which lies next to them.
    void doubleBuckets() {
        Bucket* const old = m_buckets;
        const size_t oldMask = m_numOfBuckets - 1;
        m_buckets = static_cast<Bucket*>(allocArray(getMemory(), 2 * m_numOfBuckets * sizeof(Bucket)));
        const size_t mask = 2 * m_numOfBuckets - 1;
        m_numOfBuckets = 0;
        constructBuckets(mask + 1);
        Entry* ahead = getAhead(m_head);
        for (Entry* entry = m_head; entry != nullptr; entry = entry->m_next) {
            if (ahead != nullptr) {
                __builtin_prefetch(&old[ahead->m_hash & oldMask].m_head, 1);
                __builtin_prefetch(&m_buckets[ahead->m_hash & mask].m_head, 1);
                ahead = ahead->m_next;
            }
            BucketNode* node = takeNode(old[entry->m_hash & oldMask], entry);
            Bucket& bucket = m_buckets[entry->m_hash & mask];
            linkIntoChain(bucket.m_head, bucket.m_tail, node, static_cast<BucketNode*>(nullptr));
        }
        destroyBuckets(old, oldMask + 1);
    }

protected:
    /// the chain, in the order of iteration; the tail is null while it holds one entry
    Entry* m_head;
    Entry* m_tail;
    /// entries in the chain
    size_t m_size;
    /// null while there is no entry
    Bucket* m_buckets;
    /// 8 times a power of two, or 0
    size_t m_numOfBuckets;
    // Not [[no_unique_address]]: each takes its byte, as all modules expect.
    H m_hashFunction;
    E m_equalFunction;
};

#pragma pack(pop)

} // namespace zyr
