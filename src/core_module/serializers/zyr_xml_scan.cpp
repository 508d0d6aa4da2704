// The check of an XML document, which makes its tree.
#include "core_module/serializers/zyr_field_kind.h"
#include "core_module/serializers/zyr_text_bytes.h"
#include "core_module/serializers/zyr_text_scanner.h"
#include "core_module/serializers/zyr_xml_input.h"

namespace zyr {

namespace {

enum NameRole : uint8_t { NAME_NONE, NAME_INSIDE, NAME_START };

struct NameRoles {
    NameRole m_roles[256];
};

constexpr NameRoles makeNameRoles() {
    NameRoles table = {};
    for (int i = 0; i < 256; i++) {
        const char lower = static_cast<char>(i | 0x20);
        const bool letter = i < 0x80 && lower >= 'a' && lower <= 'z';
        const bool inside = (i >= '0' && i <= '9') || i == '-' || i == '.';
        table.m_roles[i] = letter || i == '_' || i == ':' || i >= 0x80 ? NAME_START : inside ? NAME_INSIDE : NAME_NONE;
    }
    return table;
}
constexpr NameRoles NAME_ROLES = makeNameRoles();

NameRole getNameRole(char p_character) {
    return NAME_ROLES.m_roles[static_cast<uint8_t>(p_character)];
}

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

    bool scanName(const char*& p_name, size_t& p_size);
    bool scanCharacter(bool& p_escaped);
    bool scanAttributes(bool p_kept);
    bool skipUntil(const char* p_mark, const char* p_reason);
    bool skipDocumentType();
    bool skipMiscellaneous(bool p_documentType);
    bool scanStartTag();
    bool scanEndTag();
    bool scanContent();

    Frame m_frames[c_maxDepth];
};

bool XmlScanner::scanName(const char*& p_name, size_t& p_size) {
    p_name = m_place;
    if (m_place == m_end || getNameRole(*m_place) != NAME_START) {
        return fail("a name is missing");
    }
    while (m_place != m_end && getNameRole(*m_place) != NAME_NONE) {
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

bool XmlScanner::scanAttributes(bool p_kept) {
    for (;;) {
        const char* before = m_place;
        skipSpace();
        if (m_place == m_end) {
            return fail("a tag has no end");
        }
        if (*m_place == '>' || *m_place == '/' || *m_place == '?') {
            return true;
        }
        const char* name = nullptr;
        size_t nameSize = 0;
        if (before == m_place) {
            return fail("a space is missing");
        }
        if (!scanName(name, nameSize)) {
            return false;
        }
        skipSpace();
        if (!take("=")) {
            return fail("an equals sign is missing");
        }
        skipSpace();
        if (m_place == m_end || (*m_place != '"' && *m_place != '\'')) {
            return fail("a quotation mark is missing");
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
        const uint32_t index = m_tree.getSize();
        if (p_kept && !add(TextNodeKind::TEXT, name, nameSize)) {
            return false;
        }
        if (p_kept) {
            m_tree.setValue(index, value, m_place, escaped);
        }
        m_place++;
    }
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
    frame.m_node = m_tree.getSize();
    frame.m_escaped = false;
    const bool kept = m_depth != 0; // The root is no group.
    if (!scanName(frame.m_name, frame.m_nameSize) ||
        (kept && !add(TextNodeKind::GROUP, frame.m_name, frame.m_nameSize)) || !scanAttributes(kept)) {
        return false;
    }
    m_depth++;
    if (take("/>")) {
        m_depth--;
        if (kept) {
            m_tree.setValue(frame.m_node, m_place, m_place, false);
            m_tree.close(frame.m_node);
        }
        return true;
    }
    frame.m_content = m_place + 1;
    return take(">") || fail("a tag has no end");
}

bool XmlScanner::scanEndTag() {
    const Frame& frame = m_frames[m_depth - 1];
    const char* contentEnd = m_place - 2;
    const char* name = nullptr;
    size_t size = 0;
    if (!scanName(name, size)) {
        return false;
    }
    if (size != frame.m_nameSize || memcmp(name, frame.m_name, size) != 0) {
        return fail("another element is open");
    }
    skipSpace();
    if (!take(">")) {
        return fail("a tag has no end");
    }
    m_depth--;
    if (m_depth != 0) {
        m_tree.setValue(frame.m_node, frame.m_content, contentEnd, frame.m_escaped);
        m_tree.close(frame.m_node);
    }
    return true;
}

bool XmlScanner::scanContent() {
    Frame& frame = m_frames[m_depth - 1];
    while (m_place != m_end) {
        m_place = findSpecialByte(m_place, m_end, '<', '&', ']');
        if (m_place == m_end) {
            break;
        }
        if (*m_place == '\n') {
            m_place++;
            skipBlanks();
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
    return fail("an element has no end");
}

bool XmlScanner::scan() {
    take("\xEF\xBB\xBF");
    if (startsWith("<?xml") && remaining() > 5 && isTextSpace(m_place[5])) {
        const char* name = m_place + 2;
        m_place += 5;
        if (!add(TextNodeKind::GROUP, name, 3) || !scanAttributes(true)) {
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
