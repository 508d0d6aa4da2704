/// The items of the plain containers that containers of objects stand on: what differs between them.
///
/// ContainerLevel is written once over these functions. A further plain container over `IObject*` joins by a
/// ContainerKey, where it has keys, and by an overload each of visitItem and addItem; swapItems only where it has no
/// swap of its own.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/containers/zyr_hash_multi_map.h"
#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/containers/zyr_sorted_map.h"

namespace zyr {

/// A further reference on the element, or a clone of it. Both of these take null as well.
IObject* takeElement(IObject* p_element, bool_t p_share);
/// Gives the reference back; null is no element.
void releaseElement(IObject* p_element);

/// Lives for the time in which a walk over objects is inside a container. A container may hold itself, by way of others
/// too: a walk that gets deeper than MAX_DEPTH gives up, and goes into nothing more until it has come back to where it
/// began.
class ContainerVisit {
public:
    static constexpr uint32_t MAX_DEPTH = 1024;

    /// The name is that of the container's class. Null for a walk whose caller tells that it failed; else giving up is
    /// one line in the log.
    explicit ContainerVisit(const String* p_className);
    /// Comes back out; the outermost one forgets that the walk had given up.
    ~ContainerVisit();
    ContainerVisit(const ContainerVisit&) = delete;
    ContainerVisit& operator=(const ContainerVisit&) = delete;

    /// Whether this thread's walk has given up, here or deeper inside.
    static bool isGivenUp();
};

/// Stands for the key in a container without keys.
struct NoKey {};

/// The key type of a plain container over `IObject*`.
template <class Container> struct ContainerKey { using Type = NoKey; };
/// The three kinds with keys.
template <typename K> struct ContainerKey<HashMap<K, IObject*>> { using Type = K; };
template <typename K> struct ContainerKey<HashMultiMap<K, IObject*>> { using Type = K; };
template <typename K> struct ContainerKey<SortedMap<K, IObject*>> { using Type = K; };

/// Call the function with the key of an item and each of its elements, which may be null.
template <typename Function> void visitItem(IObject* p_item, Function p_function) {
    p_function(NoKey(), p_item);
}
template <typename K, typename Function> void visitItem(const HashMapEntry<K, IObject*>& p_entry, Function p_function) {
    p_function(p_entry.m_first, p_entry.m_second);
}
template <typename K, typename Function>
void visitItem(const HashMultiMapEntry<K, IObject*>& p_entry, Function p_function) {
    for (size_t i = 0; i < p_entry.m_second.getSize(); i++) {
        p_function(p_entry.m_first, p_entry.m_second[i]);
    }
}
template <class Node, typename Function> void visitItem(const Node& p_node, Function p_function) requires requires {
    p_node.m_key;
}
{ p_function(p_node.m_key, p_node.m_value); }

/// Add an element, whose reference becomes the container's, behind the others. They give what it displaced, whose
/// reference becomes the caller's.
inline IObject* addItem(Array<IObject*>& p_items, NoKey, IObject* p_element) {
    p_items.pushBack(p_element);
    return nullptr;
}
/// Lists and arrays displace nothing.
inline IObject* addItem(List<IObject*>& p_items, NoKey, IObject* p_element) {
    p_items.pushBack(p_element);
    return nullptr;
}
template <typename K> IObject* addItem(HashMap<K, IObject*>& p_items, const K& p_key, IObject* p_element) {
    IObject** existing = nullptr;
    return p_items.pushBack(p_key, p_element, &existing) ? nullptr : std::exchange(*existing, p_element);
}
/// Joins the elements of its key.
template <typename K> IObject* addItem(HashMultiMap<K, IObject*>& p_items, const K& p_key, IObject* p_element) {
    p_items.pushBack(p_key, p_element);
    return nullptr;
}
/// An element under a present key takes the place of the one there.
template <typename K> IObject* addItem(SortedMap<K, IObject*>& p_items, const K& p_key, IObject* p_element) {
    IObject* displaced = p_items.find(p_key);
    p_items.insert(p_key, p_element);
    return displaced;
}

/// Exchange the contents.
template <class Container> void swapItems(Container& p_a, Container& p_b) {
    p_a.swap(p_b);
}
/// By copies, since the map has no swap: linear.
template <typename K> void swapItems(SortedMap<K, IObject*>& p_a, SortedMap<K, IObject*>& p_b) {
    const SortedMap<K, IObject*> items(p_a);
    p_a = p_b;
    p_b = items;
}

} // namespace zyr
