/// JSON documents (RFC 8259) read as trees.
#pragma once

#include "core_module/serializers/zyr_text_scan_error.h"
#include "core_module/serializers/zyr_text_tree.h"

namespace zyr {

/// Checks the whole document and makes its tree: the members of the outermost object follow each other from node 0 on.
bool scanJson(const char* p_text, size_t p_size, TextTree& p_tree, TextScanError& p_error);

/// The text between the quotes, which scanJson has checked, with its escapes resolved.
void decodeJsonText(const char* p_text, size_t p_size, String& p_result);

/// What a text deserializer asks of its format.
class JsonInput {
public:
    static constexpr const char* c_classKey = "_class";
    static constexpr const char* c_guidKey = "_guid";
    static constexpr const char* c_typeKey = "_type";

    static bool scan(const char* p_text, size_t p_size, TextTree& p_tree, TextScanError& p_error) {
        return scanJson(p_text, p_size, p_tree, p_error);
    }
    /// The text of a scalar.
    static void decode(const TextTree& p_tree, const TextNode& p_node, String& p_result);
    /// The key under which the format stores a field of that name, which may be made in p_scratch.
    static const String& getKey(const String& p_name, String& p_scratch);
    static bool hasKey(const TextTree& p_tree, const TextNode& p_node, const String& p_key) {
        return p_node.has(KEY_ESCAPED) ? hasEscapedKey(p_tree, p_node, p_key) : p_tree.hasKey(p_node, p_key);
    }
    static bool isNull(const TextTree& p_tree, uint32_t p_index) {
        return p_tree[p_index].m_kind == TextNodeKind::NULL_VALUE;
    }
    static bool isGroup(const TextTree& p_tree, uint32_t p_index) {
        return p_tree[p_index].m_kind == TextNodeKind::GROUP;
    }
    /// An array without items is kept as one of numbers.
    static bool isArray(const TextTree& p_tree, uint32_t p_index) {
        const TextNode& node = p_tree[p_index];
        return node.m_kind == TextNodeKind::ITEMS || (node.m_kind == TextNodeKind::NUMBERS && node.m_valueSize == 0);
    }
    static bool isItem(const TextTree&, const TextNode&) { return true; }
    static bool isScalar(const TextTree& p_tree, uint32_t p_index) {
        const TextNodeKind kind = p_tree[p_index].m_kind;
        return kind == TextNodeKind::TEXT || kind == TextNodeKind::WORD;
    }
    /// Whether a scalar can be a text, and whether it can be a number.
    static bool isText(const TextNode& p_node) { return p_node.m_kind == TextNodeKind::TEXT; }
    static bool isWord(const TextNode& p_node) { return p_node.m_kind == TextNodeKind::WORD; }
    /// Whether it is an array of numbers that is kept as its text, and what separates these.
    static bool isNumbers(const TextTree&, uint32_t, const TextNode& p_node) {
        return p_node.m_kind == TextNodeKind::NUMBERS;
    }
    static constexpr char c_separator = ',';

private:
    static bool hasEscapedKey(const TextTree& p_tree, const TextNode& p_node, const String& p_key);
};

} // namespace zyr
