// What stands around the root, and what is left out.
#include "core_module/serializers/zyr_xml_input.h"
#include "core_module/serializers/zyr_xml_scanner.h"

namespace zyr {

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

bool XmlScanner::scan() {
    take("\xEF\xBB\xBF");
    if (startsWith("<?xml") && remaining() > 5 && isTextSpace(m_place[5])) {
        const char* name = m_place + 2;
        m_place += 5;
        if (!add(TextNodeKind::GROUP, name, 3, KEY_PLAIN) || !scanAttributes(true)) {
            return false;
        }
        // The text is read as UTF-8, and bytes of another encoding can look so.
        if (!isKnownXmlEncoding(m_tree)) {
            return fail("the encoding is not UTF-8");
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
    return scanRoot() && skipMiscellaneous(false) && (m_place == m_end || fail("something follows the root"));
}

bool scanXml(const char* p_text, size_t p_size, TextTree& p_tree, TextScanError& p_error) {
    if (!p_tree.begin(p_text, p_size)) {
        return p_error.set("it is too large", p_text);
    }
    return XmlScanner(p_text, p_size, p_tree, p_error).scan();
}

} // namespace zyr
