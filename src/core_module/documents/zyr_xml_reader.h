/// The working half of the XML parser.
#pragma once

#include "core_module/documents/zyr_document_text.h"
#include "core_module/documents/zyr_text_storage.h"
#include "zyr_common/documents/zyr_xml_element.h"

namespace zyr {

/// Reads one document. See IXmlParser for what becomes of it.
class XmlReader {
public:
    static constexpr size_t MAX_DEPTH = 1000;

    XmlReader(DocumentText& p_text, TextStorage& p_storage);

    /// The element that stands for the document, which the caller owns. Null when the text has a fault.
    XmlElement* read();

private:
    bool checkCharacters();
    bool readDocument(XmlElement& p_document);
    bool readDeclaration(XmlElement& p_document);
    bool checkEncoding(const WrappedString& p_name);
    bool readElement(XmlElement& p_parent);
    bool readContent(XmlElement& p_element);
    bool readEndTag(const XmlElement& p_element);
    bool readAttributes(XmlElement& p_element);
    bool readAttribute(XmlElement& p_element);
    bool readProcessingInstruction(XmlElement& p_parent);
    bool skipComment();
    bool skipDocumentType();
    bool readName(WrappedString& p_name);
    bool readText();
    bool readCharacterData();
    /// Resolves references and line ends of a range into storage; in attributes blanks of all kinds become a blank.
    bool resolve(const char* p_begin, const char* p_end, bool p_attribute, WrappedString& p_text);
    bool resolveReference(const char*& p_place, const char* p_end, char*& p_out);
    void joinPieces(size_t p_first, XmlElement& p_element);
    bool failHere() { return m_text.fail(m_text.isAtEnd() ? "Unexpected end" : "Unexpected character"); }

    DocumentText& m_text;
    TextStorage& m_storage;
    size_t m_depth;
    /// The pieces of text of all open elements; one without data stands for a child.
    Array<WrappedString> m_pieces;
};

/// Whether the text is a name as XML has them.
bool isXmlName(const WrappedString& p_text);

/// Whether XML can hold the character.
bool isXmlCharacter(uint32_t p_code);

} // namespace zyr
