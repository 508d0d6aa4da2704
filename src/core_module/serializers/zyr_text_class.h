/// The class of an object in a text document.
#pragma once

#include "core_module/serializers/zyr_text_tree.h"
#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

/// Reads it when it is asked for, and once for an object that is asked for again.
template <class Input> class TextClass {
public:
    static constexpr uint32_t c_noNode = UINT32_MAX;

    /// That of the group at the node, empty where it has none and for no node.
    void read(const TextTree& p_tree, uint32_t p_node) {
        static const String& classKey = makePermanent<String>(Input::c_classKey);
        static const String& guidKey = makePermanent<String>(Input::c_guidKey);
        if (p_node != m_node) {
            forget();
            if (p_node != c_noNode) {
                readText(p_tree, p_node, classKey, m_name);
                readText(p_tree, p_node, guidKey, m_guidText);
                m_node = p_node;
            }
        }
    }
    /// For another tree.
    void forget() {
        m_name.clear();
        m_guidText.clear();
        m_node = c_noNode;
    }

    String m_name;
    String m_guidText;

private:
    static void readText(const TextTree& p_tree, uint32_t p_group, const String& p_key, String& p_text) {
        const uint32_t end = p_tree[p_group].m_next;
        uint32_t i = p_group + 1;
        while (i < end && !Input::hasKey(p_tree, p_tree[i], p_key)) {
            i = p_tree[i].m_next;
        }
        if (i < end && Input::isScalar(p_tree, i)) {
            Input::decode(p_tree, p_tree[i], p_text);
        }
    }

    uint32_t m_node = c_noNode;
};

} // namespace zyr
