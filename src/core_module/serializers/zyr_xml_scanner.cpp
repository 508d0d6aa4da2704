#include "core_module/serializers/zyr_xml_scanner.h"

#include "core_module/serializers/zyr_text_bytes.h"
#include "core_module/serializers/zyr_xml_input.h"
#include "core_module/serializers/zyr_xml_name_roles.h"
#include "core_module/serializers/zyr_xml_output.h"

namespace zyr {

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

inline bool XmlScanner::scanElementName(Frame& p_frame) {
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

/// Takes attributes with the names that are expected and values in which nothing is special, as most are. What is left
/// stands as it was.
void XmlScanner::scanExpectedAttributes() {
    constexpr size_t MARKS = 4; // A blank, the equals sign and the quotation marks.
    const char* place = m_place;
    const char* end = m_end;
    const char* text = m_tree.getText();
    uint32_t expected = m_expected;
    for (; expected < m_tree.getSize(); expected++) {
        const TextNode twin = m_tree[expected];
        const size_t size = twin.m_keySize;
        if (twin.m_kind != TextNodeKind::TEXT || size == c_longKey || size + MARKS > static_cast<size_t>(end - place) ||
            *place != ' ' || place[size + 1] != '=' || place[size + 2] != '"' ||
            !equalNames(place + 1, text + twin.m_key, size)) {
            break;
        }
        const char* value = place + size + 3;
        const char* behind = findSpecialByte(value, end, '"', '<', '&');
        if (behind == end || *behind != '"' || !m_tree.addTwin(twin, place + 1, value, behind)) {
            break;
        }
        place = behind + 1;
    }
    m_place = place;
    m_expected = expected;
}

bool XmlScanner::scanAttributes(bool p_kept) {
    if (p_kept) {
        scanExpectedAttributes();
    }
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

inline bool XmlScanner::scanEndTag() {
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

inline bool XmlScanner::scanContent() {
    Frame& frame = m_frames[m_depth - 1];
    while (m_place != m_end) {
        if (*m_place == '\n') {
            m_place = skipBlanks(m_place + 1);
            continue;
        }
        if (*m_place != '<') {
            m_place = findSpecialByte(m_place, m_end, '<', '&', ']');
            if (m_place == m_end) {
                break;
            }
        }
        if (*m_place == '\n') {
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

bool XmlScanner::scanRoot() {
    bool done = scanStartTag();
    while (done && m_depth != 0) {
        done = scanContent();
    }
    return done;
}

} // namespace zyr
