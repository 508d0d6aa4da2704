/// XML 1.0 documents read as trees. Nothing is fetched and no entity but the five of XML itself is known, so a document
/// never grows; a document type declaration is skipped.
#pragma once

#include "core_module/serializers/zyr_text_scan_error.h"
#include "core_module/serializers/zyr_text_tree.h"

namespace zyr {

/// Checks the whole document and makes its tree: a group "xml" for the declaration, where there is one, and the
/// elements inside the root. An element is a group of its attributes (texts) and its elements (groups); its value is
/// everything between its tags.
bool scanXml(const char* p_text, size_t p_size, TextTree& p_tree, TextScanError& p_error);

/// Whether the declaration, with which the tree begins, names no other encoding than one that is read as UTF-8.
bool isKnownXmlEncoding(const TextTree& p_tree);

/// Reads what stands between "&" and ";"; gives the place behind the ";", null for what is no reference.
const char* readXmlReference(const char* p_place, const char* p_end, uint32_t& p_character);

/// A piece of text as it was meant: references and sections resolved, comments left out, line ends as XML wants them.
void decodeXmlText(const char* p_text, size_t p_size, bool p_attribute, String& p_result);

/// What a text deserializer asks of its format; see JsonInput.
class XmlInput {
public:
    static constexpr const char* c_classKey = "_class";
    static constexpr const char* c_guidKey = "_guid";
    static constexpr const char* c_typeKey = "_type";

    static bool scan(const char* p_text, size_t p_size, TextTree& p_tree, TextScanError& p_error) {
        return scanXml(p_text, p_size, p_tree, p_error);
    }
    static void decode(const TextTree& p_tree, const TextNode& p_node, String& p_result);
    static const String& getKey(const String& p_name, String& p_scratch);
    static bool hasKey(const TextTree& p_tree, const TextNode& p_node, const String& p_key) {
        return p_tree.hasKey(p_node, p_key);
    }
    static bool isNull(const TextTree& p_tree, uint32_t p_index);
    /// An element that doesn't hold a text, so that a field of another type isn't taken for an empty group.
    static bool isGroup(const TextTree& p_tree, uint32_t p_index);
    /// One with items, or with nothing at all.
    static bool isArray(const TextTree& p_tree, uint32_t p_index);
    static bool isItem(const TextTree&, const TextNode& p_node) { return p_node.has(KEY_ITEM); }
    /// An attribute, or an element with neither elements nor attributes but those of XML itself.
    static bool isScalar(const TextTree& p_tree, uint32_t p_index) {
        return p_tree[p_index].m_next == p_index + 1 || hasOwnAttributes(p_tree, p_index);
    }
    // Words and texts look alike.
    static bool isText(const TextNode&) { return true; }
    static bool isWord(const TextNode&) { return true; }
    static bool isNumbers(const TextTree& p_tree, uint32_t p_index, const TextNode& p_node) {
        return p_node.m_kind == TextNodeKind::GROUP && !p_node.has(VALUE_ESCAPED) && isScalar(p_tree, p_index);
    }
    static constexpr char c_separator = ' ';

private:
    /// Whether what an element has are attributes of XML itself.
    static bool hasOwnAttributes(const TextTree& p_tree, uint32_t p_index);
};

} // namespace zyr
