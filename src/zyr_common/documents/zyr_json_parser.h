/// The parser of JSON texts (RFC 8259).
///
///     IJsonParser* parser = zyr_createObject<IJsonParser>();
///     parser->setInputData(bytes);
///     if (parser->parse()) { use(parser->getElementTree()->getAttributes()); }
///     parser->release();
///
/// Made by the core module. One thread at a time.
#pragma once

#include "zyr_common/documents/zyr_json_element.h"
#include "zyr_common/documents/zyr_text_parser.h"

namespace zyr {

/// An object becomes an element: its members that are scalars (texts, numbers, true, false, null) are the attributes,
/// and its members that are objects or arrays are the children, under their keys. The values of an array are the items
/// of its element, and a scalar among them, or at the root, is an element with that content. Numbers are kept as they
/// are written. The element does not tell a text from a number or word of the same letters, nor an empty object from an
/// empty array.
///
/// Of equal keys the first one stays, among the attributes and among the children each for itself. Texts must be UTF-8;
/// a byte order mark in front is skipped. Arrays and objects may stand in each other 1000 deep.
///
/// Views point into the input, or, for texts with escapes, into storage of the parser: both live until the next
/// parse(), setInputData(), deinitialize() or the last release of the parser.
class IJsonParser : public ITextParser {
public:
    /// The root, which the parser holds; null before a successful parse(). Whoever adds a reference must hold the
    /// parser too.
    virtual JsonElement* getElementTree() const = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getJsonParserReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(JsonParser, ITextParser, "94475686-518e-4af2-954a-0fe864f14a1b")

/// Forwards each operation to the JsonParser of its module; what extends that class derives from this.
template <class Interface> class JsonParserFacade : public TextParserFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    JsonElement* getElementTree() const override { return m_interfaceObject->getElementTree(); }
    ILevelReserved* getJsonParserReserved() const override { return m_interfaceObject->getJsonParserReserved(); }
};

using WJsonParser = JsonParserFacade<IJsonParser>;

} // namespace zyr
