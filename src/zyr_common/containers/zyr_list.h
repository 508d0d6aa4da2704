/// A doubly linked list.
///
///     List<String> names;
///     names.pushBack("first");
///     for (const String& name : names) { ... }
///
/// Items keep their addresses as long as they are in the list, and iterators stay valid while others are added and
/// removed, except that an iterator knows the node before its own: it is stale when that one goes. Counting is linear:
/// ask isEmpty() instead of comparing the size with 0.
///
/// The list owns its items. Items that are pointers are not deleted. It is not thread safe: whoever shares a list
/// between threads guards it.
#pragma once

#include "zyr_common/containers/zyr_chain.h"
#include "zyr_common/memory/zyr_allocator.h"
#include "zyr_common/memory/zyr_ref_counted_data.h"
#include "zyr_common/memory/zyr_report.h"

namespace zyr {

#pragma pack(push, 1)

/// The order of the virtual operations and of the fields is a contract between separately built modules. There is no
/// stored count, and the tail is null while the list holds one node.
///
/// What it costs, for n items:
///
/// | Operation | Time | Memory |
/// |---|---|---|
/// | push, pop and look at either end | constant | one node |
/// | insert and remove at a position | constant | one node |
/// | getSize | linear | none |
/// | copy, clear | linear | n nodes |
/// | swap | constant | none |
template <typename T> class List : public RefCountedData {
public:
    /// One item and its neighbours. Nodes belong to the list; a pushed item's node serves to find it again.
    struct Node {
        explicit Node(const T& p_item) : m_item(p_item), m_prev(nullptr), m_next(nullptr) {}

        /// the item
        T m_item;
        /// null at the first node
        Node* m_prev;
        /// null at the last node
        Node* m_next;
    };

    /// A place in a list: the list, a node (null behind the end) and the node before it. Two iterators are equal when
    /// all three are.
    class iterator {
    public:
        /// Of no list; only good for being assigned to.
        iterator() : m_list(nullptr), m_current(nullptr), m_previous(nullptr) {}
        iterator(List* p_list, Node* p_current, Node* p_previous)
            : m_list(p_list), m_current(p_current), m_previous(p_previous) {}

        /// Not behind the end, where there is no item.
        T& operator*() const { return m_current->m_item; }
        T* operator->() const { return &m_current->m_item; }
        /// Behind the end this does nothing.
        iterator& operator++() {
            if (m_current != nullptr) {
                m_previous = m_current;
                m_current = m_current->m_next;
            }
            return *this;
        }
        /// At the first node this does nothing.
        iterator& operator--() {
            if (m_previous != nullptr) {
                m_current = m_previous;
                m_previous = m_current->m_prev;
            }
            return *this;
        }
        bool operator==(const iterator& p_other) const = default;

        /// the list that is walked
        List* m_list;
        /// the node here, null behind the end
        Node* m_current;
        /// the node before it, null at the first one
        Node* m_previous;
    };

    /// The same over a list that must not be changed.
    class const_iterator {
    public:
        const_iterator() : m_list(nullptr), m_current(nullptr), m_previous(nullptr) {}
        const_iterator(const List* p_list, const Node* p_current, const Node* p_previous)
            : m_list(p_list), m_current(p_current), m_previous(p_previous) {}
        /// A place that allows changes is also one that does not.
        const_iterator(const iterator& p_other)
            : m_list(p_other.m_list), m_current(p_other.m_current), m_previous(p_other.m_previous) {}

        const T& operator*() const { return m_current->m_item; }
        const T* operator->() const { return &m_current->m_item; }
        const_iterator& operator++() {
            if (m_current != nullptr) {
                m_previous = m_current;
                m_current = m_current->m_next;
            }
            return *this;
        }
        const_iterator& operator--() {
            if (m_previous != nullptr) {
                m_current = m_previous;
                m_previous = m_current->m_prev;
            }
            return *this;
        }
        bool operator==(const const_iterator& p_other) const = default;

        const List* m_list;
        const Node* m_current;
        const Node* m_previous;
    };

    /// Empty; allocates nothing.
    List() : m_head(nullptr), m_tail(nullptr), m_allocator(getAllocator()) {}
    /// A deep copy with the default allocator.
    List(const List& p_other) : List() { List::copy(p_other); }
    /// See copy(): the allocator stays.
    List& operator=(const List& p_other) {
        copy(p_other);
        return *this;
    }
    ~List() override { removeAll(); }

    /// Sets the source of nodes and nothing else; present nodes must be compatible with it. Null means the zyr_
    /// functions.
    virtual void setAllocatorUnsafe(Allocator* p_allocator) { m_allocator = p_allocator; }

    /// The first node, or the place behind the end of an empty list.
    virtual iterator begin() { return iterator(this, m_head, nullptr); }
    virtual const_iterator beginConst() const { return const_iterator(this, m_head, nullptr); }
    /// Behind the last node; stepping back from here gives the last node.
    virtual iterator end() { return iterator(this, nullptr, getChainEnd(m_head, m_tail)); }
    virtual const_iterator endConst() const { return const_iterator(this, nullptr, getChainEnd(m_head, m_tail)); }
    /// For loops over a list that must not be changed.
    const_iterator begin() const { return beginConst(); }
    const_iterator end() const { return endConst(); }

    /// Whether there is no item; takes no walk.
    virtual bool isEmpty() const { return m_head == nullptr; }
    /// Walks the list: linear.
    virtual size_t getSize() const {
        size_t size = 0;
        for (const Node* node = m_head; node != nullptr; node = node->m_next) {
            size++;
        }
        return size;
    }

    /// The first item; an item of no list when the list is empty.
    virtual T& front() { return m_head != nullptr ? m_head->m_item : getDummy(); }
    virtual const T& frontConst() const { return m_head != nullptr ? m_head->m_item : getDummy(); }
    /// The last item; an item of no list when the list is empty.
    virtual T& back() { return m_head != nullptr ? getChainEnd(m_head, m_tail)->m_item : getDummy(); }
    virtual const T& backConst() const { return m_head != nullptr ? getChainEnd(m_head, m_tail)->m_item : getDummy(); }

    /// Adds a copy of the item in front; gives the new node, which the list owns.
    virtual Node* pushFront(const T& p_item) { return addNode(p_item, m_head); }
    /// Removes the first item. An empty list logs and stays as it is.
    virtual void popFront() {
        if (m_head == nullptr) {
            ZYR_LOG_WARN("Cannot pop further, the list is empty");
            return;
        }
        iterator position(this, m_head, nullptr);
        remove(position);
    }
    /// Adds a copy of the item at the end; gives the new node, which the list owns.
    virtual Node* pushBack(const T& p_item) { return addNode(p_item, nullptr); }
    /// Removes the last item. An empty list logs and stays as it is.
    virtual void popBack() {
        if (m_head == nullptr) {
            ZYR_LOG_WARN("Cannot pop further, the list is empty");
            return;
        }
        Node* last = getChainEnd(m_head, m_tail);
        iterator position(this, last, last->m_prev);
        remove(position);
    }

    /// Adds a copy of the item before the position, at the end when the position is behind the end. With `p_after` the
    /// position is stepped first. The position keeps its node; gives the new node.
    ///
    ///     auto place = names.begin();
    ///     names.insert(place, true, "second"); // behind the first one
    virtual Node* insert(iterator& p_position, bool p_after, const T& p_item) {
        if (p_after) {
            ++p_position;
        }
        Node* node = addNode(p_item, p_position.m_current);
        p_position.m_previous = node;
        return node;
    }

    /// Removes the item at the position, which moves on to the item behind it. Behind the end it logs; on an empty list
    /// it does nothing.
    virtual void remove(iterator& p_position) {
        if (m_head == nullptr) {
            return;
        }
        Node* node = p_position.m_current;
        if (node == nullptr) {
            ZYR_LOG_WARN("Unable to remove NULL entry from the list");
            return;
        }
        p_position.m_current = node->m_next;
        p_position.m_previous = node->m_prev;
        unlinkFromChain(m_head, m_tail, node);
        freeNode(node);
    }

    /// Removes from the first position up to but not including the last. Both then stand at the last one's node.
    virtual void removeRange(iterator& p_first, iterator& p_last) {
        while (p_first.m_current != p_last.m_current) {
            if (p_first.m_current == nullptr) {
                remove(p_first);
                return;
            }
            iterator position = p_first;
            ++p_first;
            remove(position);
            p_first.m_previous = position.m_previous;
        }
        p_last.m_previous = p_first.m_previous;
    }

    /// Exchanges nodes and allocator.
    virtual void swap(List& p_other) {
        std::swap(m_head, p_other.m_head);
        std::swap(m_tail, p_other.m_tail);
        std::swap(m_allocator, p_other.m_allocator);
    }
    /// Becomes a deep copy; the allocator stays.
    virtual void copy(const List& p_source) {
        if (&p_source == this) {
            return;
        }
        clear();
        for (const Node* node = p_source.m_head; node != nullptr; node = node->m_next) {
            pushBack(node->m_item);
        }
    }
    /// Removes all items; the allocator stays.
    virtual void clear() { removeAll(); }

private:
    // Its buckets are lists, whose nodes it moves.
    template <class Container, typename Entry, typename H, typename E> friend class HashTable;

    /// A bucket, which takes its nodes from the allocator of its container.
    explicit List(Allocator* p_allocator) : m_head(nullptr), m_tail(nullptr), m_allocator(p_allocator) {}

    /// What front() and back() of an empty list give: one for all lists of a type, so it must not be written.
    static T& getDummy() {
        static T dummyT;
        return dummyT;
    }

    /// Adds a copy of the item in front of a node of this list, at the end for null.
    Node* addNode(const T& p_item, Node* p_before) {
        Node* node = new (allocArray(m_allocator, sizeof(Node))) Node(p_item);
        linkIntoChain(m_head, m_tail, node, p_before);
        return node;
    }

    /// Destroys a node that is no longer in the chain.
    void freeNode(Node* p_node) {
        p_node->~Node();
        freeArray(m_allocator, p_node);
    }

    /// Frees the nodes from the first to the last, the order in which they were made for the most part.
    void removeAll() {
        while (m_head != nullptr) {
            Node* node = m_head;
            m_head = node->m_next;
            freeNode(node);
        }
        m_tail = nullptr;
    }

    /// null when the list is empty
    Node* m_head;
    /// null while the list holds one node or none
    Node* m_tail;
    /// where nodes come from; never freed here
    Allocator* m_allocator;
};

#pragma pack(pop)

static_assert(sizeof(List<int>) == 48 && alignof(List<int>) == 1);

} // namespace zyr
