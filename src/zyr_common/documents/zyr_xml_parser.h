/// The parser of XML texts (XML 1.0 without external entities).
///
///     IXmlParser* parser = zyr_createObject<IXmlParser>();
///     parser->setInputData(bytes);
///     if (parser->parse()) { use(parser->getElementTree()->findNode("scene", 0)); }
///     parser->release();
///
/// Made by the core module. One thread at a time.
#pragma once

#include "zyr_common/documents/zyr_text_parser.h"
#include "zyr_common/documents/zyr_xml_element.h"

namespace zyr {

/// The tree's root is an element without a name, which stands for the document; its children are the declaration, the
/// processing instructions and the root element. An element's text is its content: the pieces between its children are
/// joined, CDATA sections included, and text that is nothing but blanks is left out beside children. Line ends become
/// "\n", and in values of attributes a blank. A processing instruction is an element with that mark, and its text is
/// the content; that of the declaration stands in attributes.
///
/// Known entities are the five of XML and numeric references. A document type declaration is skipped: nothing is
/// fetched, and what it declares is unknown. Texts must be UTF-8; a byte order mark in front is skipped. Elements may
/// stand in each other 1000 deep.
///
/// Views point into the input, or, for texts that differ from it, into storage of the parser: both live until the next
/// parse(), setInputData(), deinitialize() or the last release of the parser.
class IXmlParser : public ITextParser {
public:
    /// The element that stands for the document, which the parser holds; null before a successful parse(). Whoever adds
    /// a reference must hold the parser too.
    virtual XmlElement* getElementTree() const = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getXmlParserReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(XmlParser, ITextParser, "ffcd5f96-40ec-4a3f-be9c-16d1cd5b089b")

/// Forwards each operation to the XmlParser of its module; what extends that class derives from this.
template <class Interface> class XmlParserFacade : public TextParserFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    XmlElement* getElementTree() const override { return m_interfaceObject->getElementTree(); }
    ILevelReserved* getXmlParserReserved() const override { return m_interfaceObject->getXmlParserReserved(); }
};

using WXmlParser = XmlParserFacade<IXmlParser>;

} // namespace zyr
