/// The class of the XML parser.
#pragma once

#include "core_module/documents/zyr_text_parser_level.h"
#include "core_module/documents/zyr_text_storage.h"
#include "zyr_common/documents/zyr_xml_parser.h"

namespace zyr {

class XmlParserLevel : public UnstoredLevel<TextParserLevel<IXmlParser>, IXmlParser> {
public:
    bool_t initializeLexer() override;
    XmlElement* getElementTree() const override { return m_tree.get(); }
    ILevelReserved* getXmlParserReserved() const override { return &m_xmlParserReserved; }

    void init_This() {}
    void release_This() { forget(); }
    void copy_This(const IXmlParser*) {}

protected:
    void forget() override;
    bool_t readInput() override;

private:
    /// In front of the tree, which looks at it.
    TextStorage m_storage;
    Ref<XmlElement> m_tree;
    mutable LevelReserved<XmlParserLevel> m_xmlParserReserved{this};
};

using XmlParser = Implementation<XmlParserLevel>;

} // namespace zyr
