/// The check of an XML document, which makes its tree.
#pragma once

#include "core_module/serializers/zyr_field_kind.h"
#include "core_module/serializers/zyr_text_scanner.h"

namespace zyr {

/// See scanXml.
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
    __attribute__((always_inline)) bool scanElementName(Frame& p_frame);
    bool scanCharacter(bool& p_escaped);
    bool scanEquals();
    void scanExpectedAttributes();
    bool scanAttributes(bool p_kept);
    bool skipUntil(const char* p_mark, const char* p_reason);
    bool skipDocumentType();
    bool skipMiscellaneous(bool p_documentType);
    bool scanStartTag();
    __attribute__((always_inline)) bool scanEndTag();
    bool scanEndName(const Frame& p_frame);
    /// Its value ends an element.
    void close(const Frame& p_frame, const char* p_begin, const char* p_end) {
        m_tree.setValue(p_frame.m_node, p_begin, p_end, p_frame.m_escaped);
        m_tree.close(p_frame.m_node);
        m_expected = p_frame.m_expectedBehind;
    }
    bool scanNoElement();
    __attribute__((always_inline)) bool scanContent();
    bool scanRoot();

    Frame m_frames[c_maxDepth];
};

} // namespace zyr
