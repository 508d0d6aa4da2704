/// What an XML text is parsed into, see zyr_xml_parser.h for the mapping.
///
///     if (const auto* points = element->findVectorOfNodes("point")) { use((*points)[0]); }
///
/// Names, keys, values and contents are views: an element is valid only as long as the parser that made it and the
/// parser's input. Not thread safe.
#pragma once

#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/tree/zyr_tree_node_hash_multi_map.h"

namespace zyr {

#pragma pack(push, 1)

/// Elements are counted: a parent holds one reference on each child. The order of the virtual operations and of the
/// fields is a contract between separately built modules.
class XmlElement : public TreeNodeHashMultiMap<WrappedString> {
public:
    using Base = TreeNodeHashMultiMap<WrappedString>;
    using Attributes = HashMap<WrappedString, WrappedString>;

    /// Without a name, attributes and children.
    XmlElement() { init_This(); }
    /// Children are copied as plain nodes.
    XmlElement(const XmlElement& p_src);
    XmlElement& operator=(const XmlElement& p_src);
    ~XmlElement() override { release_This(); }

    /// Back to the state of a new element; gives the children back.
    void clear() override;
    /// Gives the children back and forgets what getItems found.
    void clearNodes() override;

    /// As it stands in the tag, with its prefix.
    virtual const WrappedString& getName() const { return m_name; }
    virtual void setName(const WrappedString& p_name) { m_name = p_name; }
    /// In the order of the tag, with their entities resolved.
    virtual const Attributes& getAttributes() const { return m_attributes; }
    /// Copies the views, not the texts.
    virtual void setAttributes(const Attributes& p_attributes);
    virtual Attributes& getMutableAttributes() { return m_attributes; }
    /// What stands between the tags, as the parser takes it.
    virtual const WrappedString& getContent() const { return m_content; }
    virtual void setContent(const WrappedString& p_content) { m_content = p_content; }
    /// True for what stands between "<?" and "?>".
    virtual bool_t isProcessingInstruction() const { return m_processingInstruction; }
    virtual void setProcessingInstruction(bool_t p_processingInstruction) {
        m_processingInstruction = p_processingInstruction;
    }
    /// Set when the end of the element has been seen.
    virtual bool_t getEndTag() const { return m_endTag; }
    virtual void setEndTag(bool_t p_endTag) { m_endTag = p_endTag; }
    /// The children under the key "item", which is how a list is written; null without any. What was found is kept
    /// until the children are cleared: later items join the same array.
    virtual Array<Base*>* getItems();

    void init_This();
    void release_This() {}
    void copy_This(const XmlElement& p_src);

protected:
    WrappedString m_name;
    Attributes m_attributes;
    WrappedString m_content;
    uint8_t m_processingInstruction;
    uint8_t m_endTag;
    Array<Base*>* m_cachedItems;
};

#pragma pack(pop)

static_assert(sizeof(XmlElement) == 156 && alignof(XmlElement) == 1);

} // namespace zyr
