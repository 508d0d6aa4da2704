/// What HashMap, HashSet and HashMultiMap share: the ordered chain of entries and the buckets over it.
#pragma once

#include "zyr_common/containers/zyr_hash.h"
#include "zyr_common/containers/zyr_list.h"

namespace zyr {

/// A place in a hashed container: the container, an entry (null behind the end) and the entry before it. Two are equal
/// when all three are. Entries offer m_first, the key, and, in maps, m_second, the value.
template <typename Container, typename Entry> class HashIterator {
public:
    HashIterator() : m_map(nullptr), m_entry(nullptr), m_previous(nullptr) {}
    HashIterator(Container* p_map, Entry* p_entry, Entry* p_previous)
        : m_map(p_map), m_entry(p_entry), m_previous(p_previous) {}
    /// A place that allows changes is also one that does not.
    template <typename OtherContainer, typename OtherEntry>
    HashIterator(const HashIterator<OtherContainer, OtherEntry>& p_other)
        : m_map(p_other.m_map), m_entry(p_other.m_entry), m_previous(p_other.m_previous) {}

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

    Container* m_map;
    Entry* m_entry;
    Entry* m_previous;
};

#pragma pack(push, 1)

/// The fields up to the functors, and what is done with them. The number of buckets is 0 while there is no entry, and
/// else 8 times a power of two. Derived classes hold the allocator, since one of them has a field in front of it.
template <typename Entry, typename K, typename H, typename E> class HashTable : public RefCountedData {
protected:
    typedef List<Entry*> Bucket;
    typedef typename Bucket::Node BucketNode;

    HashTable() : m_head(nullptr), m_tail(nullptr), m_size(0), m_buckets(nullptr), m_numOfBuckets(0) {}

    Entry* getLastEntry() const { return getChainEnd(m_head, m_tail); }

    Bucket& getBucket(uint32_t p_hash) const {
        // The number of buckets is a power of two, so this is the remainder.
        return m_buckets[p_hash & (m_numOfBuckets - 1)];
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

    Entry* findEntry(const K& p_key, uint32_t p_hash) const {
        return findEntryIf(p_hash, [this, &p_key](const K& p_present) { return m_equalFunction(p_present, p_key); });
    }

    Entry* findEntry(const K& p_key) const { return m_size != 0 ? findEntry(p_key, m_hashFunction(p_key)) : nullptr; }

    /// Adds an entry for a key that is not there, in front of `p_before` or at the end of the chain. The rest of the
    /// arguments goes to the entry's constructor.
    template <typename... Arguments>
    Entry* addEntry(Allocator* p_allocator, Entry* p_before, uint32_t p_hash, const Arguments&... p_arguments) {
        if (m_size == 0) {
            createBuckets(8, p_allocator);
        }
        if (m_size + 1 > m_numOfBuckets * 7 / 10) {
            doubleBuckets(p_allocator);
        }
        Entry* entry = new (allocArray(p_allocator, sizeof(Entry))) Entry(p_hash, p_arguments...);
        linkIntoChain(m_head, m_tail, entry, p_before);
        getBucket(p_hash).addNode(entry, nullptr);
        m_size++;
        return entry;
    }

    /// Takes the entry of a key out of chain and bucket, without destroying it. Null when there is none.
    Entry* takeEntry(const K& p_key, Allocator* p_allocator) {
        if (m_size == 0) {
            return nullptr;
        }
        const uint32_t hash = m_hashFunction(p_key);
        Bucket& bucket = getBucket(hash);
        for (BucketNode* node = bucket.m_head; node != nullptr; node = node->m_next) {
            Entry* entry = node->m_item;
            if (entry->m_hash == hash && m_equalFunction(entry->m_first, p_key)) {
                typename Bucket::iterator position(&bucket, node, node->m_prev);
                bucket.Bucket::remove(position);
                unlinkFromChain(m_head, m_tail, entry);
                m_size--;
                if (m_size == 0) {
                    destroyBuckets(p_allocator);
                }
                return entry;
            }
        }
        return nullptr;
    }

    static void destroyEntry(Entry* p_entry, Allocator* p_allocator) {
        p_entry->~Entry();
        freeArray(p_allocator, p_entry);
    }

    void clearEntries(Allocator* p_allocator) {
        Entry* entry = m_head;
        m_head = nullptr;
        m_tail = nullptr;
        m_size = 0;
        destroyBuckets(p_allocator);
        while (entry != nullptr) {
            Entry* next = entry->m_next;
            destroyEntry(entry, p_allocator);
            entry = next;
        }
    }

    void swapEntries(HashTable& p_other) {
        std::swap(m_head, p_other.m_head);
        std::swap(m_tail, p_other.m_tail);
        std::swap(m_size, p_other.m_size);
        std::swap(m_buckets, p_other.m_buckets);
        std::swap(m_numOfBuckets, p_other.m_numOfBuckets);
    }

private:
    void createBuckets(size_t p_numOfBuckets, Allocator* p_allocator) {
        m_buckets = static_cast<Bucket*>(allocArray(p_allocator, p_numOfBuckets * sizeof(Bucket)));
        constructBuckets(p_numOfBuckets, p_allocator);
    }

    /// Constructs the buckets from the present number up to another one.
    void constructBuckets(size_t p_numOfBuckets, Allocator* p_allocator) {
        for (; m_numOfBuckets < p_numOfBuckets; m_numOfBuckets++) {
            Bucket* bucket = new (&m_buckets[m_numOfBuckets]) Bucket();
            bucket->m_allocator = p_allocator;
        }
    }

    void destroyBuckets(Allocator* p_allocator) {
        for (size_t i = 0; i < m_numOfBuckets; i++) {
            m_buckets[i].Bucket::~Bucket();
        }
        if (m_buckets != nullptr) {
            freeArray(p_allocator, m_buckets);
        }
        m_buckets = nullptr;
        m_numOfBuckets = 0;
    }

    /// Keeps the present buckets and the nodes in them, so that growth allocates nothing for what is there.
    void doubleBuckets(Allocator* p_allocator) {
        BucketNode* spareNodes = nullptr;
        for (size_t i = 0; i < m_numOfBuckets; i++) {
            Bucket& bucket = m_buckets[i];
            if (bucket.m_head != nullptr) {
                getChainEnd(bucket.m_head, bucket.m_tail)->m_next = spareNodes;
                spareNodes = bucket.m_head;
                bucket.m_head = nullptr;
                bucket.m_tail = nullptr;
            }
        }
        // Nothing points at a bucket, so it may move as bytes.
        m_buckets = static_cast<Bucket*>(reallocArray(p_allocator, m_buckets, m_numOfBuckets * 2 * sizeof(Bucket)));
        constructBuckets(m_numOfBuckets * 2, p_allocator);
        reorderBuckets(spareNodes);
    }

    /// Puts each entry into the bucket of its stored hash, in the order of the chain. There is one node for each.
    void reorderBuckets(BucketNode* p_spareNodes) {
        for (Entry* entry = m_head; entry != nullptr; entry = entry->m_next) {
            BucketNode* node = p_spareNodes;
            p_spareNodes = node->m_next;
            node->m_item = entry;
            Bucket& bucket = getBucket(entry->m_hash);
            linkIntoChain(bucket.m_head, bucket.m_tail, node, static_cast<BucketNode*>(nullptr));
        }
    }

protected:
    Entry* m_head;
    Entry* m_tail;
    size_t m_size;
    Bucket* m_buckets;
    size_t m_numOfBuckets;
    // Not [[no_unique_address]]: each takes its byte, as all modules expect.
    H m_hashFunction;
    E m_equalFunction;
};

#pragma pack(pop)

} // namespace zyr
