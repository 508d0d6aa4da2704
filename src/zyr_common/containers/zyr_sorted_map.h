/// A map in the order of its keys, with an exchangeable comparator.
///
///     SortedMap<unsigned long, String> byTime;
///     byTime.insert(17, "log");
///     for (auto it = byTime.begin(); it != byTime.end(); ++it) { use(it->m_key, it->m_value); }
///
/// Finding, inserting and removing take as many comparisons as the tree is high, about the binary logarithm of the
/// size. Two keys are the same when neither is less than the other; only lessThan() is ever asked.
///
/// The map owns keys, values and comparator. Values that are pointers are not deleted. It is not thread safe: whoever
/// shares a map between threads guards it.
#pragma once

#include "zyr_common/containers/zyr_list.h"

namespace zyr {

#pragma pack(push, 1)

/// An AVL tree: the heights of the two sides of every node differ by one at most.
///
/// Keys and values handed in may lie in the map itself. Changing the map ends the validity of its iterators. The order
/// of the virtual operations and of the fields is a contract between separately built modules.
///
/// What it costs, for n entries:
///
/// | Operation | Time | Memory |
/// |---|---|---|
/// | find, containsKey | logarithmic | none |
/// | insert, remove | logarithmic, with at most one rotation a level | one node |
/// | step of an iterator | constant on average | one place of its path |
/// | copy, clear, mapAll | linear | n nodes |
template <typename K, typename V> class SortedMap : public RefCountedData {
public:
    /// The order of the keys: strict and the same for the life of the map. One that gives another answer later loses
    /// entries.
    class Comparator {
    public:
        /// True when p_a comes before p_b; false for equal keys.
        virtual bool lessThan(const K& p_a, const K& p_b) const = 0;
        /// A new comparator of the same order, which the caller owns.
        virtual Comparator* clone() const = 0;
        // Behind the two operations, whose slots are fixed.
        virtual ~Comparator() {}
    };

    /// The order of the key type's own operator<.
    ///
    ///     class Backward : public SortedMap<int, String>::Comparator {
    ///     public:
    ///         bool lessThan(const int& p_a, const int& p_b) const override { return p_b < p_a; }
    ///         Comparator* clone() const override { return new Backward(); }
    ///     };
    ///     SortedMap<int, String> map{Backward()}; // the greatest key first
    class ClassVariableTypeComparator : public Comparator {
    public:
        bool lessThan(const K& p_a, const K& p_b) const override { return p_a < p_b; }
        Comparator* clone() const override { return new ClassVariableTypeComparator(); }
    };

    /// One entry. Its key must not be changed; its value may.
    struct Node {
        explicit Node(const K& p_key) : m_key(p_key), m_value(), m_left(nullptr), m_right(nullptr), m_balance(0) {}

        /// fixed while the entry is in the map
        K m_key;
        /// may be changed at any time
        V m_value;
        /// lesser keys
        Node* m_left;
        /// greater keys
        Node* m_right;
        /// Height of the right side minus height of the left side: -1, 0 or 1.
        int32_t m_balance;
    };

    /// A place in the map: the map, the node (null behind the end) and the path from the root to it, since nodes do
    /// not know their parents. Two are equal when they stand at the same node of the same map.
    template <typename Map, typename Item> class Position {
    public:
        /// A node of the path and the side of it on which the path goes on: -1 left, 1 right, 0 at the end of the path.
        struct NodeMarker {
            Item* m_node;
            int8_t m_state;
        };

        /// Of no map; only good for being assigned to.
        Position() : m_map(nullptr), m_current(nullptr) {}
        /// The first node, or the place behind the end.
        Position(Map* p_map, Item* p_root) : m_map(p_map), m_current(nullptr) { descend(p_root, -1); }

        /// Not behind the end, where there is no node.
        Item& operator*() const { return *m_current; }
        Item* operator->() const { return m_current; }
        /// Behind the end this does nothing.
        Position& operator++() {
            if (m_current != nullptr) {
                step(1);
            }
            return *this;
        }
        /// At the first node this does nothing; from behind the end it gives the last node.
        Position& operator--() {
            if (m_current == nullptr) {
                descend(m_map != nullptr ? m_map->m_root : nullptr, 1);
            } else {
                Position position(*this);
                position.step(-1);
                if (position.m_current != nullptr) {
                    swap(position);
                }
            }
            return *this;
        }
        bool operator==(const Position& p_other) const {
            return m_map == p_other.m_map && m_current == p_other.m_current;
        }

        /// the map that is walked
        Map* m_map;
        /// the node here, null behind the end
        Item* m_current;
        /// from the root to the node here; empty behind the end
        List<NodeMarker> m_stack;

    private:
        /// The node's child on one side, or null.
        static Item* getChild(Item* p_node, int8_t p_side) { return p_side < 0 ? p_node->m_left : p_node->m_right; }

        /// Exchanges two places without copying their paths.
        void swap(Position& p_other) {
            std::swap(m_map, p_other.m_map);
            std::swap(m_current, p_other.m_current);
            m_stack.swap(p_other.m_stack);
        }

        /// Pushes the nodes from `p_node` down one side; the last of them is the current one.
        void descend(Item* p_node, int8_t p_side) {
            while (p_node != nullptr) {
                Item* child = getChild(p_node, p_side);
                m_stack.pushBack(NodeMarker{p_node, child != nullptr ? p_side : int8_t(0)});
                m_current = p_node;
                p_node = child;
            }
        }

        /// To the neighbour on one side, behind the end when there is none.
        void step(int8_t p_side) {
            Item* child = getChild(m_current, p_side);
            if (child != nullptr) {
                m_stack.back().m_state = p_side;
                descend(child, int8_t(-p_side));
                return;
            }
            do {
                m_stack.popBack();
            } while (!m_stack.isEmpty() && m_stack.back().m_state == p_side);
            m_current = nullptr;
            if (!m_stack.isEmpty()) {
                m_stack.back().m_state = 0;
                m_current = m_stack.back().m_node;
            }
        }
    };

    /// In the order of the keys. Copying one copies its path, so a loop should step a single iterator.
    class iterator : public Position<SortedMap, Node> {
    public:
        using Position<SortedMap, Node>::Position;
    };
    /// The same over a map that must not be changed.
    class const_iterator : public Position<const SortedMap, const Node> {
    public:
        using Position<const SortedMap, const Node>::Position;
    };

    /// Empty, in the order of the key type's own operator<.
    SortedMap() : SortedMap(ClassVariableTypeComparator()) {}
    /// A map with another order; the comparator is cloned.
    explicit SortedMap(const Comparator& p_comparator)
        : m_root(nullptr), m_size(0), m_comparator(p_comparator.clone()), m_allocator(getAllocator()) {}
    /// A deep copy with the default allocator and a comparator of the same order.
    SortedMap(const SortedMap& p_other) : SortedMap(*p_other.m_comparator) { copyNodes(p_other); }
    /// A deep copy, with a comparator of the source's order; the allocator stays.
    SortedMap& operator=(const SortedMap& p_other) {
        if (&p_other != this) {
            clear();
            Comparator* comparator = p_other.m_comparator->clone();
            delete m_comparator;
            m_comparator = comparator;
            copyNodes(p_other);
        }
        return *this;
    }
    ~SortedMap() override {
        freeNodes(m_root);
        delete m_comparator;
    }

    /// The number of entries.
    virtual uint32_t getSize() const { return m_size; }
    /// Whether there is no entry.
    virtual bool isEmpty() const { return m_root == nullptr; }

    /// Adds a value, or replaces the one that is there for the key.
    virtual void insert(const K& p_key, const V& p_value) {
        bool grew = false;
        *addNode(m_root, p_key, grew) = p_value;
    }
    /// A copy of the value of a key; a default value when the key is absent, which only containsKey() can tell.
    virtual V find(const K& p_key) const {
        const Node* node = findNode(p_key);
        return node != nullptr ? node->m_value : V();
    }
    /// Whether the key has a value, a default one included.
    virtual bool containsKey(const K& p_key) const { return findNode(p_key) != nullptr; }
    /// True when the key was there.
    virtual bool remove(const K& p_key) {
        const uint32_t size = m_size;
        removeNode(m_root, p_key);
        return m_size != size;
    }
    /// Removes all entries; comparator and allocator stay.
    virtual void clear() {
        freeNodes(m_root);
        m_root = nullptr;
        m_size = 0;
    }
    /// Calls the function for each node in the order of keys, with copies.
    virtual void mapAll(void (*p_function)(K, V)) const { mapNodes(m_root, p_function); }
    /// -1 when the first key is the smaller one, 1 when the second is, else 0. A subclass may define the order here.
    virtual int compareKeys(const K& p_a, const K& p_b) const {
        return m_comparator->lessThan(p_a, p_b) ? -1 : m_comparator->lessThan(p_b, p_a) ? 1 : 0;
    }

    /// Sets the source of nodes and nothing else; present nodes must be compatible with it. Null means the zyr_
    /// functions.
    virtual void setAllocatorUnsafe(Allocator* p_allocator) { m_allocator = p_allocator; }

    /// The entry with the least key, or the place behind the end.
    virtual iterator begin() { return iterator(this, m_root); }
    /// Behind the last node; stepping back from here gives the last node.
    virtual iterator end() { return iterator(this, nullptr); }
    virtual const_iterator beginConst() const { return const_iterator(this, m_root); }
    virtual const_iterator endConst() const { return const_iterator(this, nullptr); }
    /// For loops over a map that must not be changed.
    const_iterator begin() const { return beginConst(); }
    const_iterator end() const { return endConst(); }

private:
    /// The node of a key, or null.
    const Node* findNode(const K& p_key) const {
        const Node* node = m_root;
        while (node != nullptr) {
            const int order = compareKeys(p_key, node->m_key);
            if (order == 0) {
                break;
            }
            node = order < 0 ? node->m_left : node->m_right;
        }
        return node;
    }

    /// Gives the value of the key in the tree under the link; `p_grew` tells whether that tree became higher.
    /// A new node has a default value. Recursion is as deep as the tree is high: 45 levels hold a thousand million
    /// keys.
    V* addNode(Node*& p_slot, const K& p_key, bool& p_grew) {
        Node* node = p_slot;
        if (node == nullptr) {
            p_slot = new (allocArray(m_allocator, sizeof(Node))) Node(p_key);
            p_grew = true;
            m_size++;
            return &p_slot->m_value;
        }
        const int order = compareKeys(p_key, node->m_key);
        if (order == 0) {
            p_grew = false;
            return &node->m_value;
        }
        V* value = addNode(order < 0 ? node->m_left : node->m_right, p_key, p_grew);
        if (p_grew) {
            node->m_balance += order < 0 ? -1 : 1;
            rebalance(p_slot);
            p_grew = p_slot->m_balance != 0;
        }
        return value;
    }

    /// Removes the key from the tree under the link; gives whether that tree became lower.
    bool removeNode(Node*& p_slot, const K& p_key) {
        Node* node = p_slot;
        if (node == nullptr) {
            return false;
        }
        const int order = compareKeys(p_key, node->m_key);
        if (order < 0) {
            return removeNode(node->m_left, p_key) && changeHeight(p_slot, 1);
        }
        if (order > 0) {
            return removeNode(node->m_right, p_key) && changeHeight(p_slot, -1);
        }
        m_size--;
        if (node->m_left != nullptr && node->m_right != nullptr) {
            Node* predecessor = nullptr;
            const bool fell = takeLastNode(node->m_left, predecessor);
            node->m_key = predecessor->m_key;
            node->m_value = predecessor->m_value;
            freeNode(predecessor);
            return fell && changeHeight(p_slot, 1);
        }
        p_slot = node->m_left != nullptr ? node->m_left : node->m_right;
        freeNode(node);
        return true;
    }

    /// Takes the last node out of the tree under the link; gives whether that tree became lower.
    bool takeLastNode(Node*& p_slot, Node*& p_last) {
        if (p_slot->m_right != nullptr) {
            return takeLastNode(p_slot->m_right, p_last) && changeHeight(p_slot, -1);
        }
        p_last = p_slot;
        p_slot = p_slot->m_left;
        return true;
    }

    /// One side under the link became lower; gives whether the whole did.
    static bool changeHeight(Node*& p_slot, int32_t p_change) {
        p_slot->m_balance += p_change;
        rebalance(p_slot);
        return p_slot->m_balance == 0;
    }

    /// Rotates when the balance under the link is 2 or -2.
    static void rebalance(Node*& p_slot) {
        if (p_slot->m_balance == -2) {
            rotate(p_slot, &Node::m_left, &Node::m_right, -1);
        } else if (p_slot->m_balance == 2) {
            rotate(p_slot, &Node::m_right, &Node::m_left, 1);
        }
    }

    /// `p_high` is the link to the side that is too high, `p_sign` its sign in the balance.
    static void rotate(Node*& p_slot, Node* Node::*p_high, Node* Node::*p_low, int32_t p_sign) {
        Node* node = p_slot;
        Node* child = node->*p_high;
        if (child->m_balance != -p_sign) {
            // A child in balance occurs on removal only; the height then stays.
            node->m_balance = child->m_balance == 0 ? p_sign : 0;
            child->m_balance = child->m_balance == 0 ? -p_sign : 0;
            node->*p_high = child->*p_low;
            child->*p_low = node;
            p_slot = child;
            return;
        }
        Node* pivot = child->*p_low;
        child->*p_low = pivot->*p_high;
        node->*p_high = pivot->*p_low;
        pivot->*p_high = child;
        pivot->*p_low = node;
        node->m_balance = pivot->m_balance == p_sign ? -p_sign : 0;
        child->m_balance = pivot->m_balance == -p_sign ? p_sign : 0;
        pivot->m_balance = 0;
        p_slot = pivot;
    }

    /// Takes over the shape of the tree as it is: the order may be that of a subclass, which does not exist yet while
    /// this copy is made.
    void copyNodes(const SortedMap& p_source) {
        m_root = copyTree(p_source.m_root);
        m_size = p_source.m_size;
    }

    /// A copy of the tree below a node, from this map's allocator; null for null. Recursion is as deep as the tree is
    /// high.
    Node* copyTree(const Node* p_source) {
        if (p_source == nullptr) {
            return nullptr;
        }
        Node* node = new (allocArray(m_allocator, sizeof(Node))) Node(p_source->m_key);
        node->m_value = p_source->m_value;
        node->m_balance = p_source->m_balance;
        node->m_left = copyTree(p_source->m_left);
        node->m_right = copyTree(p_source->m_right);
        return node;
    }

    /// Calls the function for the tree below a node, in the order of keys.
    static void mapNodes(const Node* p_node, void (*p_function)(K, V)) {
        if (p_node != nullptr) {
            mapNodes(p_node->m_left, p_function);
            p_function(p_node->m_key, p_node->m_value);
            mapNodes(p_node->m_right, p_function);
        }
    }

    /// Destroys a node that nothing in the tree names any more.
    void freeNode(Node* p_node) {
        p_node->~Node();
        freeArray(m_allocator, p_node);
    }

    /// Destroys the tree below a node, the node included.
    void freeNodes(Node* p_node) {
        if (p_node != nullptr) {
            freeNodes(p_node->m_left);
            freeNodes(p_node->m_right);
            freeNode(p_node);
        }
    }

    /// null when the map is empty
    Node* m_root;
    /// nodes in the tree
    uint32_t m_size;
    /// owned, never null
    Comparator* m_comparator;
    /// where nodes come from; never freed here
    Allocator* m_allocator;
};

#pragma pack(pop)

static_assert(sizeof(SortedMap<int, int>) == 52 && alignof(SortedMap<int, int>) == 1);

} // namespace zyr
