/// What a JSON text is parsed into, see zyr_json_parser.h for the mapping.
///
///     for (const auto& entry : element->getAttributes()) { use(entry.m_first, entry.m_second); }
///     const JsonElement* size = element->findElement("size");
///
/// Names, keys, values and contents are views: an element is valid only as long as the parser that made it and the
/// parser's input. Not thread safe.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/tree/zyr_tree_node_hash_map.h"

namespace zyr {

#pragma pack(push, 1)

/// Elements are counted: a parent holds one reference on each child and each item. The order of the virtual operations
/// and of the fields is a contract between separately built modules.
class JsonElement : public TreeNodeHashMap<WrappedString> {
public:
    using Base = TreeNodeHashMap<WrappedString>;
    using Attributes = HashMap<WrappedString, WrappedString>;

    JsonElement() { init_This(); }
    /// Children are copied as plain nodes and items are shared, by further references.
    JsonElement(const JsonElement& p_src);
    JsonElement& operator=(const JsonElement& p_src);
    ~JsonElement() override { release_This(); }

    void clear() override;

    /// The key under which the element stands in its parent; empty for the root and for items.
    virtual const WrappedString& getName() const { return m_name; }
    virtual const Attributes& getAttributes() const { return m_attributes; }
    virtual Attributes& getMutableAttributes() { return m_attributes; }
    /// The text of a scalar.
    virtual const WrappedString& getContent() const { return m_content; }
    /// Set when the end of the element has been seen.
    virtual bool_t getEndTag() const { return m_endTag; }
    virtual uint32_t getNumOfItems() const { return static_cast<uint32_t>(m_items.getSize()); }
    /// Without a reference. The index is not checked.
    virtual JsonElement* getItem(uint32_t p_index) const { return m_items[p_index]; }
    virtual void setName(const WrappedString& p_name) { m_name = p_name; }
    /// Copies the views, not the texts.
    virtual void setAttributes(const Attributes& p_attributes);
    virtual void setContent(const WrappedString& p_content) { m_content = p_content; }
    virtual void setEndTag(bool_t p_endTag) { m_endTag = p_endTag; }
    /// Adds the item behind the others, takes a reference and becomes its parent. A null item ends the process.
    virtual void insertItem(JsonElement* p_item);

    /// The child of the key, without a reference, or null. All children of an element must be elements, as a parser
    /// makes them.
    JsonElement* findElement(const WrappedString& p_key) const { return static_cast<JsonElement*>(findNode(p_key)); }

    void init_This();
    void release_This();
    void copy_This(const JsonElement& p_src);

protected:
    WrappedString m_name;
    Attributes m_attributes;
    WrappedString m_content;
    uint8_t m_endTag;
    Array<JsonElement*> m_items;
};

#pragma pack(pop)

static_assert(sizeof(JsonElement) == 211 && alignof(JsonElement) == 1);

} // namespace zyr
