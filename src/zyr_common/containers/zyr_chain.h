/// Linking and unlinking of the doubly linked chains that List and the hashed containers keep.
///
/// Nodes have m_prev and m_next, null at the ends. Nothing is allocated or freed here. The head is the first node. The
/// tail is the last node, but null while the chain holds one node: code of other modules relies on that.
#pragma once

namespace zyr {

/// The last node of a chain, null when it is empty.
/// Takes no walk.
template <typename Node> Node* getChainEnd(Node* p_head, Node* p_tail) {
    return p_tail != nullptr ? p_tail : p_head;
}

/// Links a node in front of `p_before`, at the end when that is null.
/// The node must be in no chain; what its links held before does not matter. `p_before` must be of this chain. Takes
/// constant time, and
/// head and tail are right afterwards also for a chain that was empty.
template <typename Node> void linkIntoChain(Node*& p_head, Node*& p_tail, Node* p_node, Node* p_before) {
    Node* previous = p_before != nullptr ? p_before->m_prev : getChainEnd(p_head, p_tail);
    p_node->m_prev = previous;
    p_node->m_next = p_before;
    if (p_before == nullptr) {
        if (p_head != nullptr) {
            p_tail = p_node;
        }
    } else {
        p_before->m_prev = p_node;
        if (p_tail == nullptr) {
            p_tail = p_before;
        }
    }
    if (previous != nullptr) {
        previous->m_next = p_node;
    } else {
        p_head = p_node;
    }
}

/// Takes a node out of its chain; the node itself stays as it is.
/// Its own links still lead to its former neighbours, so that a walk which stands at it can go on. It must be in this
/// chain, which is not checked.
template <typename Node> void unlinkFromChain(Node*& p_head, Node*& p_tail, Node* p_node) {
    if (p_node == p_head) {
        p_head = p_node->m_next;
    }
    if (p_node == p_tail) {
        p_tail = p_node->m_prev;
    }
    if (p_head == p_tail) {
        p_tail = nullptr;
    }
    if (p_node->m_prev != nullptr) {
        p_node->m_prev->m_next = p_node->m_next;
    }
    if (p_node->m_next != nullptr) {
        p_node->m_next->m_prev = p_node->m_prev;
    }
}

} // namespace zyr
