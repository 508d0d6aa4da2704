#include "core_module/documents/zyr_xml_reader.h"

namespace zyr {

namespace {

/// Compares without regard to the case of ASCII letters; the word is in lower case.
bool isWord(const WrappedString& p_text, const char* p_word) {
    if (p_text.getSize() != strlen(p_word)) {
        return false;
    }
    for (size_t i = 0; i < p_text.getSize(); ++i) {
        const char byte = p_text.getData()[i];
        if ((byte >= 'A' && byte <= 'Z' ? byte + ('a' - 'A') : byte) != p_word[i]) {
            return false;
        }
    }
    return true;
}

/// "1." and digits.
bool isVersion(const WrappedString& p_text) {
    if (p_text.getSize() < 3 || memcmp(p_text.getData(), "1.", 2) != 0) {
        return false;
    }
    for (size_t i = 2; i < p_text.getSize(); ++i) {
        if (!isDocumentDigit(p_text.getData()[i])) {
            return false;
        }
    }
    return true;
}

} // namespace

XmlReader::XmlReader(DocumentText& p_text, TextStorage& p_storage) : m_text(p_text), m_storage(p_storage), m_depth(0) {
    m_pieces.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, ZYR_ALLOC_STEP_DOUBLE);
}

XmlElement* XmlReader::read() {
    if (!m_text.checkUTF8() || !checkCharacters()) {
        return nullptr;
    }
    XmlElement* document = new XmlElement;
    if (readDocument(*document)) {
        document->setEndTag(1);
        return document;
    }
    document->release();
    return nullptr;
}

/// What is left to refuse in UTF-8: control characters, and U+FFFE and U+FFFF.
bool XmlReader::checkCharacters() {
    for (const char* byte = m_text.m_current; byte != m_text.m_end; ++byte) {
        const bool isControl = static_cast<unsigned char>(*byte) < ' ' && !isDocumentBlank(*byte);
        if (isControl || (*byte == '\xEF' && byte[1] == '\xBF' && static_cast<unsigned char>(byte[2]) >= 0xBE)) {
            return m_text.fail("Character that XML can't hold", byte);
        }
    }
    return true;
}

bool XmlReader::readDocument(XmlElement& p_document) {
    if (m_text.isAt("<?xml") && m_text.getRest() > 5 && isDocumentBlank(m_text.m_current[5]) &&
        !readDeclaration(p_document)) {
        return false;
    }
    bool hasRoot = false;
    bool hasType = false;
    for (;;) {
        m_text.skipBlanks();
        if (m_text.isAtEnd()) {
            return hasRoot || m_text.fail("Document without an element");
        }
        if (m_text.isAt("<?")) {
            if (!readProcessingInstruction(p_document)) {
                return false;
            }
        } else if (m_text.isAt("<!--")) {
            if (!skipComment()) {
                return false;
            }
        } else if (m_text.isAt("<!DOCTYPE") && !hasRoot && !hasType) {
            hasType = true;
            if (!skipDocumentType()) {
                return false;
            }
        } else if (*m_text.m_current == '<' && !hasRoot) {
            hasRoot = true;
            if (!readElement(p_document)) {
                return false;
            }
        } else {
            return m_text.fail(hasRoot ? "Text behind the end of the document" : "Unexpected character");
        }
    }
}

bool XmlReader::readDeclaration(XmlElement& p_document) {
    static const char* const keys[] = {"version", "encoding", "standalone"};
    const char* begin = m_text.m_current;
    m_text.m_current += 2;
    WrappedString name;
    readName(name);
    XmlElement* declaration = new XmlElement;
    declaration->setName(name);
    declaration->setProcessingInstruction(1);
    declaration->setEndTag(1);
    p_document.pushBack(name, declaration);
    declaration->release();
    if (!readAttributes(*declaration)) {
        return false;
    }
    if (!m_text.take("?>")) {
        return failHere();
    }
    size_t next = 0;
    for (const auto& attribute : declaration->getAttributes()) {
        const WrappedString& value = attribute.m_second;
        while (next < 3 && attribute.m_first != keys[next]) {
            // Only the first one must be there.
            next = next == 0 ? 3 : next + 1;
        }
        // A value with references in it, which have no place here, is a copy and lies outside of the text.
        if (next == 3 || !m_text.contains(value.getData()) || (next == 0 && !isVersion(value)) ||
            (next == 2 && value != "yes" && value != "no")) {
            return m_text.fail("Faulty XML declaration", begin);
        }
        if (next == 1 && !checkEncoding(value)) {
            return false;
        }
        ++next;
    }
    return next != 0 || m_text.fail("Faulty XML declaration", begin);
}

/// All behind the declaration must be in the encoding that it names.
bool XmlReader::checkEncoding(const WrappedString& p_name) {
    if (isWord(p_name, "utf-8")) {
        return true;
    }
    if (!isWord(p_name, "us-ascii")) {
        return m_text.fail("Encoding that is not UTF-8", p_name.getData());
    }
    for (const char* byte = m_text.m_current; byte != m_text.m_end; ++byte) {
        if ((*byte & 0x80) != 0) {
            return m_text.fail("Byte that is no US-ASCII", byte);
        }
    }
    return true;
}

bool XmlReader::readElement(XmlElement& p_parent) {
    if (m_depth == MAX_DEPTH) {
        return m_text.fail("Too many levels in each other");
    }
    ++m_text.m_current;
    WrappedString name;
    if (!readName(name)) {
        return false;
    }
    XmlElement* element = new XmlElement;
    element->setName(name);
    p_parent.pushBack(name, element);
    element->release();
    if (!readAttributes(*element)) {
        return false;
    }
    if (!m_text.take("/>")) {
        if (!m_text.take(">")) {
            return failHere();
        }
        ++m_depth;
        const size_t firstPiece = m_pieces.getSize();
        if (!readContent(*element) || !readEndTag(*element)) {
            return false;
        }
        joinPieces(firstPiece, *element);
        --m_depth;
    }
    element->setEndTag(1);
    return true;
}

/// Up to the end tag, which is not read.
bool XmlReader::readContent(XmlElement& p_element) {
    for (;;) {
        bool done = false;
        if (m_text.isAtEnd()) {
            return m_text.fail("Element without end", p_element.getName().getData());
        }
        if (*m_text.m_current != '<') {
            done = readText();
        } else if (m_text.isAt("</")) {
            return true;
        } else if (m_text.isAt("<!--")) {
            done = skipComment();
        } else if (m_text.isAt("<![CDATA[")) {
            done = readCharacterData();
        } else {
            done = m_text.isAt("<?") ? readProcessingInstruction(p_element) : readElement(p_element);
            m_pieces.pushBack(WrappedString());
        }
        if (!done) {
            return false;
        }
    }
}

bool XmlReader::readEndTag(const XmlElement& p_element) {
    const char* begin = m_text.m_current;
    m_text.m_current += 2;
    WrappedString name;
    if (!readName(name)) {
        return false;
    }
    if (name != p_element.getName()) {
        return m_text.fail("End of another element", begin);
    }
    m_text.skipBlanks();
    return m_text.take(">") || failHere();
}

/// Up to what ends the tag, which is not read.
bool XmlReader::readAttributes(XmlElement& p_element) {
    for (;;) {
        const char* begin = m_text.m_current;
        m_text.skipBlanks();
        if (m_text.isAtEnd()) {
            return failHere();
        }
        if (strchr(">/?", *m_text.m_current) != nullptr) {
            return true;
        }
        if (m_text.m_current == begin) {
            return failHere();
        }
        if (!readAttribute(p_element)) {
            return false;
        }
    }
}

bool XmlReader::readAttribute(XmlElement& p_element) {
    const char* place = m_text.m_current;
    WrappedString name;
    WrappedString value;
    if (!readName(name)) {
        return false;
    }
    m_text.skipBlanks();
    if (!m_text.take("=")) {
        return failHere();
    }
    m_text.skipBlanks();
    if (m_text.isAtEnd() || (*m_text.m_current != '"' && *m_text.m_current != '\'')) {
        return failHere();
    }
    const char quote = *m_text.m_current;
    const char* begin = ++m_text.m_current;
    bool plain = true;
    for (; !m_text.isAtEnd() && *m_text.m_current != quote; ++m_text.m_current) {
        const char byte = *m_text.m_current;
        if (byte == '<') {
            return failHere();
        }
        plain = plain && byte != '&' && static_cast<unsigned char>(byte) >= ' ';
    }
    const char* end = m_text.m_current;
    if (m_text.isAtEnd()) {
        return m_text.fail("Text without end", begin - 1);
    }
    ++m_text.m_current;
    if (plain) {
        value.bindData(begin, static_cast<size_t>(end - begin));
    } else if (!resolve(begin, end, true, value)) {
        return false;
    }
    return p_element.getMutableAttributes().pushBack(name, value, nullptr) ||
           m_text.fail("Attribute that stands twice", place);
}

bool XmlReader::readProcessingInstruction(XmlElement& p_parent) {
    const char* place = m_text.m_current;
    m_text.m_current += 2;
    WrappedString target;
    if (!readName(target)) {
        return false;
    }
    if (isWord(target, "xml")) {
        return m_text.fail("Declaration that is not at the beginning", place);
    }
    const char* begin = m_text.m_current;
    m_text.skipBlanks();
    if (m_text.m_current == begin && !m_text.isAt("?>")) {
        return failHere();
    }
    begin = m_text.m_current;
    if (!m_text.skipTo("?>")) {
        return m_text.fail("Processing instruction without end", place);
    }
    WrappedString content;
    content.bindData(begin, static_cast<size_t>(m_text.m_current - begin));
    if (memchr(begin, '\r', content.getSize()) != nullptr) {
        const char* end = m_text.m_current;
        char* text = m_storage.take(content.getSize());
        char* out = text;
        for (; begin != end; ++begin) {
            if (*begin != '\r') {
                *out++ = *begin;
            } else if (begin + 1 == end || begin[1] != '\n') {
                *out++ = '\n';
            }
        }
        content.bindData(text, static_cast<size_t>(out - text));
    }
    m_text.m_current += 2;
    XmlElement* instruction = new XmlElement;
    instruction->setName(target);
    instruction->setContent(content);
    instruction->setProcessingInstruction(1);
    instruction->setEndTag(1);
    p_parent.pushBack(target, instruction);
    instruction->release();
    return true;
}

bool XmlReader::skipComment() {
    const char* begin = m_text.m_current;
    m_text.m_current += 4;
    if (!m_text.skipTo("--")) {
        return m_text.fail("Comment without end", begin);
    }
    return m_text.take("-->") || m_text.fail("Two hyphens in a comment");
}

/// Nothing of it is kept, so what it declares is unknown, and there is nothing to expand.
bool XmlReader::skipDocumentType() {
    const char* begin = m_text.m_current;
    m_text.m_current += 9;
    WrappedString name;
    if (m_text.isAtEnd() || !isDocumentBlank(*m_text.m_current)) {
        return failHere();
    }
    m_text.skipBlanks();
    if (!readName(name)) {
        return false;
    }
    size_t brackets = 0;
    while (!m_text.isAtEnd()) {
        const char byte = *m_text.m_current;
        if (m_text.isAt("<!--")) {
            if (!skipComment()) {
                return false;
            }
            continue;
        }
        if (m_text.isAt("<?")) {
            m_text.skipTo("?>");
            continue;
        }
        ++m_text.m_current;
        if (byte == '"' || byte == '\'') {
            const char quote[] = {byte, 0};
            m_text.skipTo(quote);
            m_text.take(quote);
        } else if (byte == '[') {
            ++brackets;
        } else if (byte == ']') {
            if (brackets == 0) {
                return m_text.fail("Unexpected character", m_text.m_current - 1);
            }
            --brackets;
        } else if (byte == '>' && brackets == 0) {
            return true;
        }
    }
    return m_text.fail("Document type without end", begin);
}

bool XmlReader::readText() {
    const char* begin = m_text.m_current;
    bool plain = true;
    for (; !m_text.isAtEnd() && *m_text.m_current != '<'; ++m_text.m_current) {
        const char byte = *m_text.m_current;
        if (byte == ']' && m_text.isAt("]]>")) {
            return failHere();
        }
        plain = plain && byte != '&' && byte != '\r';
    }
    WrappedString piece;
    piece.bindData(begin, static_cast<size_t>(m_text.m_current - begin));
    if (!plain && !resolve(begin, m_text.m_current, false, piece)) {
        return false;
    }
    m_pieces.pushBack(piece);
    return true;
}

bool XmlReader::readCharacterData() {
    const char* place = m_text.m_current;
    const char* begin = place + 9;
    m_text.m_current = begin;
    if (!m_text.skipTo("]]>")) {
        return m_text.fail("CDATA section without end", place);
    }
    const char* end = m_text.m_current;
    m_text.m_current += 3;
    WrappedString piece;
    for (const char* line = begin;;) {
        // A section has no references; its line ends are cut out.
        const char* lineEnd = line;
        while (lineEnd != end && *lineEnd != '\r') {
            ++lineEnd;
        }
        piece.bindData(line, static_cast<size_t>(lineEnd - line));
        m_pieces.pushBack(piece);
        if (lineEnd == end) {
            return true;
        }
        line = lineEnd + 1;
        if (line == end || *line != '\n') {
            m_pieces.pushBack(WrappedString("\n"));
        }
    }
}

} // namespace zyr
