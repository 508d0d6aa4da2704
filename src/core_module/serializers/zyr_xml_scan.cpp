// The check of an XML document, which makes its tree.
#include "core_module/serializers/zyr_field_kind.h"
#include "core_module/serializers/zyr_text_bytes.h"
#include "core_module/serializers/zyr_text_scanner.h"
#include "core_module/serializers/zyr_xml_input.h"
#include "core_module/serializers/zyr_xml_name_roles.h"
#include "core_module/serializers/zyr_xml_output.h"
#include "zyr_common/text/zyr_c_locale.h"

#include <strings.h>

namespace zyr {

namespace {

class XmlScanner : TextScanner {
public:
    using TextScanner::TextScanner;

    bool scan();

private:
    /// An element that is open.
    struct Frame {
        uint32_t m_node;
        const char* m_name;
        size_t m_nameSize;
        const char* m_content;
        bool m_escaped;
        /// The node that is expected behind this element.
        uint32_t m_expectedBehind;
        /// The last element inside.
        uint32_t m_lastChild;
    };

    // Inline, so that the lengths of literals are constants.
    __attribute__((always_inline)) bool startsWith(const char* p_text) const {
        const size_t length = strlen(p_text);
        return remaining() >= length && memcmp(m_place, p_text, length) == 0;
    }
    __attribute__((always_inline)) bool take(const char* p_text) {
        if (!startsWith(p_text)) {
            return false;
        }
        m_place += strlen(p_text);
        return true;
    }

    bool scanName(const char*& p_name, size_t& p_size, bool& p_plain);
    __attribute__((always_inline)) bool scanKey(TextNodeKind p_kind);
    bool scanNewKey(TextNodeKind p_kind);
    bool scanElementName(Frame& p_frame);
    bool scanCharacter(bool& p_escaped);
    bool scanEquals();
    bool scanAttributes(bool p_kept);
    bool checkEncoding();
    bool skipUntil(const char* p_mark, const char* p_reason);
    bool skipDocumentType();
    bool skipMiscellaneous(bool p_documentType);
    bool scanStartTag();
    bool scanEndTag();
    bool scanEndName(const Frame& p_frame);
    /// Its value ends an element.
    void close(const Frame& p_frame, const char* p_begin, const char* p_end) {
        m_tree.setValue(p_frame.m_node, p_begin, p_end, p_frame.m_escaped);
        m_tree.close(p_frame.m_node);
        m_expected = p_frame.m_expectedBehind;
    }
    bool scanNoElement();
    bool scanContent();

    Frame m_frames[c_maxDepth];
};

bool XmlScanner::scanName(const char*& p_name, size_t& p_size, bool& p_plain) {
    p_name = m_place;
    if (m_place == m_end || (getNameRole(*m_place) & NAME_START) == 0) {
        return fail("a name is missing");
    }
    uint8_t roles = NAME_PLAIN;
    while (m_place != m_end && getNameRole(*m_place) != NAME_NONE) {
        roles &= getNameRole(*m_place);
        if (static_cast<uint8_t>(*m_place) < 0x80) {
            m_place++;
            continue;
        }
        const size_t size = getUTF8Size(m_place, m_end);
        if (size == 0) {
            return fail("the text is not UTF-8");
        }
        m_place += size;
    }
    p_size = static_cast<size_t>(m_place - p_name);
    p_plain = roles != 0;
    return true;
}

/// Adds the node whose name stands here.
inline bool XmlScanner::scanKey(TextNodeKind p_kind) {
    if (isExpected()) {
        const TextNode& twin = m_tree[m_expected];
        const size_t size = twin.m_keySize;
        if (twin.m_kind == p_kind && getNameRole(m_place[size]) == NAME_NONE) {
            const char* name = m_place;
            m_place += size;
            m_expected++;
            return add(p_kind, name, size, twin.m_flags & (KEY_PLAIN | KEY_ITEM));
        }
    }
    return scanNewKey(p_kind);
}

bool XmlScanner::scanNewKey(TextNodeKind p_kind) {
    const char* name = nullptr;
    size_t size = 0;
    bool plain = false;
    if (!scanName(name, size, plain)) {
        return false;
    }
    const bool item = p_kind == TextNodeKind::GROUP && size == strlen(c_xmlItem) && memcmp(name, c_xmlItem, size) == 0;
    return add(p_kind, name, size, static_cast<uint8_t>((plain ? KEY_PLAIN : 0) | (item ? KEY_ITEM : 0)));
}

bool XmlScanner::scanElementName(Frame& p_frame) {
    p_frame.m_name = m_place;
    p_frame.m_lastChild = UINT32_MAX;
    p_frame.m_node = m_tree.getSize();
    if (m_depth == 0) { // The root is no group.
        bool plain = false;
        return scanName(p_frame.m_name, p_frame.m_nameSize, plain);
    }
    const uint32_t expected = m_expected;
    if (!scanKey(TextNodeKind::GROUP)) {
        return false;
    }
    p_frame.m_nameSize = static_cast<size_t>(m_place - p_frame.m_name);
    Frame& parent = m_frames[m_depth - 1];
    if (m_expected != expected) {
        p_frame.m_expectedBehind = m_tree[expected].m_next;
    } else if (parent.m_lastChild != UINT32_MAX && m_tree.haveSameKey(parent.m_lastChild, p_frame.m_node)) {
        m_expected = parent.m_lastChild + 1;
        p_frame.m_expectedBehind = p_frame.m_node;
    } else {
        p_frame.m_expectedBehind = expected;
    }
    parent.m_lastChild = p_frame.m_node;
    return true;
}

/// Steps over one character or reference; p_escaped is set where it doesn't stand for itself.
bool XmlScanner::scanCharacter(bool& p_escaped) {
    const uint8_t byte = static_cast<uint8_t>(*m_place);
    if (byte == '&') {
        uint32_t character = 0;
        const char* behind = readXmlReference(m_place + 1, m_end, character);
        if (behind == nullptr) {
            return fail("there is no such reference");
        }
        m_place = behind;
        p_escaped = true;
        return true;
    }
    const size_t size = getUTF8Size(m_place, m_end);
    const bool noCharacter = size == 3 && byte == 0xEF && static_cast<uint8_t>(m_place[1]) == 0xBF &&
                             static_cast<uint8_t>(m_place[2]) >= 0xBE;
    if (size == 0 || noCharacter || (byte < 0x20 && !isTextSpace(*m_place))) {
        return fail("there is a character that XML doesn't have");
    }
    p_escaped = p_escaped || byte == '\r';
    m_place += size;
    return true;
}

/// Goes on to the quotation mark of an attribute.
bool XmlScanner::scanEquals() {
    skipSpace();
    if (!take("=")) {
        return fail("an equals sign is missing");
    }
    skipSpace();
    return (m_place != m_end && (*m_place == '"' || *m_place == '\'')) || fail("a quotation mark is missing");
}

bool XmlScanner::scanAttributes(bool p_kept) {
    for (;;) {
        const char* before = m_place;
        skipSpace();
        if (m_place == m_end) {
            return fail("a tag has no end");
        }
        if (getNameRole(*m_place) == NAME_NONE && (*m_place == '>' || *m_place == '/' || *m_place == '?')) {
            return true;
        }
        if (before == m_place) {
            return fail("a space is missing");
        }
        const uint32_t index = m_tree.getSize();
        const char* name = nullptr;
        size_t nameSize = 0;
        bool plain = false;
        if (!(p_kept ? scanKey(TextNodeKind::TEXT) : scanName(name, nameSize, plain))) {
            return false;
        }
        if (startsWith("=\"")) {
            m_place++;
        } else if (!scanEquals()) {
            return false;
        }
        const char quote = *m_place++;
        const char* value = m_place;
        bool escaped = false;
        for (;;) {
            m_place = findSpecialByte(m_place, m_end, quote, '<', '&');
            if (m_place == m_end || *m_place == quote) {
                break;
            }
            if (*m_place == '<') {
                return fail("an attribute holds a tag");
            }
            escaped = escaped || *m_place == '\n' || *m_place == '\t';
            if (!scanCharacter(escaped)) {
                return false;
            }
        }
        if (m_place == m_end) {
            return fail("an attribute has no end");
        }
        if (p_kept) {
            m_tree.setValue(index, value, m_place, escaped);
        }
        m_place++;
    }
}

/// The text is read as UTF-8, and bytes of another encoding can look so.
bool XmlScanner::checkEncoding() {
    for (uint32_t i = 1; i < m_tree.getSize(); i++) {
        const TextNode& attribute = m_tree[i];
        const char* value = m_tree.getText() + attribute.m_value;
        const bool isKnown = (attribute.m_valueSize == 5 && strncasecmp_l(value, "utf-8", 5, getCLocale()) == 0) ||
                             (attribute.m_valueSize == 8 && strncasecmp_l(value, "us-ascii", 8, getCLocale()) == 0);
        if (m_tree.hasKey(attribute, "encoding") && !isKnown) {
            return fail("the encoding is not UTF-8");
        }
    }
    return true;
}

bool XmlScanner::skipUntil(const char* p_mark, const char* p_reason) {
    while (m_place != m_end && !startsWith(p_mark)) {
        bool escaped = false;
        // A reference inside stands for itself.
        if (*m_place == '&') {
            m_place++;
        } else if (!scanCharacter(escaped)) {
            return false;
        }
    }
    return take(p_mark) || fail(p_reason);
}

bool XmlScanner::skipDocumentType() {
    uint32_t depth = 0;
    while (m_place != m_end) {
        const char character = *m_place;
        if (character == '"' || character == '\'') {
            const char mark[2] = {character, 0};
            m_place++;
            if (!skipUntil(mark, "the document type has no end")) {
                return false;
            }
            continue;
        }
        if (take("<!--")) {
            if (!skipUntil("-->", "a comment has no end")) {
                return false;
            }
            continue;
        }
        if (take("<?")) {
            if (!skipUntil("?>", "an instruction has no end")) {
                return false;
            }
            continue;
        }
        m_place++;
        depth += character == '[';
        if (character == ']' && depth != 0) {
            depth--;
        }
        if (character == '>' && depth == 0) {
            return true;
        }
    }
    return fail("the document type has no end");
}

/// Steps over what may stand outside of the root.
bool XmlScanner::skipMiscellaneous(bool p_documentType) {
    for (;;) {
        skipSpace();
        bool done = true;
        if (take("<!--")) {
            done = skipUntil("-->", "a comment has no end");
        } else if (take("<?")) {
            done = skipUntil("?>", "an instruction has no end");
        } else if (p_documentType && take("<!DOCTYPE")) {
            done = skipDocumentType();
            p_documentType = false;
        } else {
            return true;
        }
        if (!done) {
            return false;
        }
    }
}

bool XmlScanner::scanStartTag() {
    if (m_depth == c_maxDepth) {
        return fail("it is nested too deeply");
    }
    Frame& frame = m_frames[m_depth];
    frame.m_escaped = false;
    const bool kept = m_depth != 0;
    if (!scanElementName(frame) || !scanAttributes(kept)) {
        return false;
    }
    if (take("/>")) {
        if (kept) {
            close(frame, m_place, m_place);
        }
        return true;
    }
    m_depth++;
    frame.m_content = m_place + 1;
    return take(">") || fail("a tag has no end");
}

bool XmlScanner::scanEndTag() {
    const Frame& frame = m_frames[m_depth - 1];
    const char* contentEnd = m_place - 2;
    if (remaining() > frame.m_nameSize && m_place[frame.m_nameSize] == '>' &&
        equalNames(m_place, frame.m_name, frame.m_nameSize)) {
        m_place += frame.m_nameSize + 1;
    } else if (!scanEndName(frame)) {
        return false;
    }
    m_depth--;
    if (m_depth != 0) {
        close(frame, frame.m_content, contentEnd);
    }
    return true;
}

/// With blanks, or wrong.
bool XmlScanner::scanEndName(const Frame& p_frame) {
    const char* name = nullptr;
    size_t size = 0;
    bool plain = false;
    if (!scanName(name, size, plain)) {
        return false;
    }
    if (size != p_frame.m_nameSize || memcmp(name, p_frame.m_name, size) != 0) {
        return fail("another element is open");
    }
    skipSpace();
    return take(">") || fail("a tag has no end");
}

/// What begins like a tag; where it is none, the name of one is missing.
bool XmlScanner::scanNoElement() {
    if (take("<!--")) {
        return skipUntil("-->", "a comment has no end");
    }
    if (take("<![CDATA[")) {
        return skipUntil("]]>", "a section has no end");
    }
    if (take("<?")) {
        return skipUntil("?>", "an instruction has no end");
    }
    m_place++;
    return scanStartTag();
}

bool XmlScanner::scanContent() {
    Frame& frame = m_frames[m_depth - 1];
    while (m_place != m_end) {
        if (*m_place != '<') {
            m_place = findSpecialByte(m_place, m_end, '<', '&', ']');
        }
        if (m_place == m_end) {
            break;
        }
        if (*m_place == '\n') {
            m_place = skipBlanks(m_place + 1);
            continue;
        }
        if (*m_place != '<') {
            if (startsWith("]]>")) {
                return fail("a section ends that never began");
            }
            if (!scanCharacter(frame.m_escaped)) {
                return false;
            }
            continue;
        }
        if (take("</")) {
            return scanEndTag();
        }
        frame.m_escaped = true;
        if (startsWith("<!") || startsWith("<?")) {
            return scanNoElement();
        }
        m_place++;
        return scanStartTag();
    }
    return fail("an element has no end");
}

bool XmlScanner::scan() {
    take("\xEF\xBB\xBF");
    if (startsWith("<?xml") && remaining() > 5 && isTextSpace(m_place[5])) {
        const char* name = m_place + 2;
        m_place += 5;
        if (!add(TextNodeKind::GROUP, name, 3, KEY_PLAIN) || !scanAttributes(true) || !checkEncoding()) {
            return false;
        }
        m_tree.close(0);
        if (!take("?>")) {
            return fail("the declaration has no end");
        }
    }
    if (!skipMiscellaneous(true)) {
        return false;
    }
    if (!take("<")) {
        return fail("the root is missing");
    }
    if (!scanStartTag()) {
        return false;
    }
    while (m_depth != 0) {
        if (!scanContent()) {
            return false;
        }
    }
    return skipMiscellaneous(false) && (m_place == m_end || fail("something follows the root"));
}

} // namespace

bool scanXml(const char* p_text, size_t p_size, TextTree& p_tree, TextScanError& p_error) {
    if (!p_tree.begin(p_text, p_size)) {
        return p_error.set("it is too large", p_text);
    }
    return XmlScanner(p_text, p_size, p_tree, p_error).scan();
}

} // namespace zyr
