#include "core_module/documents/zyr_xml_writer_level.h"

#include "core_module/documents/zyr_xml_reader.h"
#include "core_module/zyr_core_class.h"
#include "zyr_common/text/zyr_unicode.h"

#include <strings.h>

namespace zyr {

namespace {

constexpr size_t INDENTATION = 2;
constexpr const char* REPLACEMENT = "\xEF\xBF\xBD";

/// Steps over one character. Gives false for one that XML can't hold.
bool takeCharacter(const char*& p_text, const char* p_end) {
    const size_t size = getValidUTF8Size(p_text, p_end);
    const bool isGood = size != 0 && isXmlCharacter(decodeUTF8(p_text, size));
    p_text += size != 0 ? size : 1;
    return isGood;
}

/// Steps over the line end at the place, if one is there.
bool takeLineEnd(const char*& p_text, const char* p_end) {
    if (*p_text != '\n' && *p_text != '\r') {
        return false;
    }
    p_text += *p_text == '\r' && p_text + 1 != p_end && p_text[1] == '\n' ? 2 : 1;
    return true;
}

/// What stands for a character in a text or, with the flag set, in an attribute; null for the character itself.
const char* getReference(char p_byte, bool p_attribute) {
    switch (p_byte) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '\r':
        return "&#13;";
    case '"':
        return p_attribute ? "&quot;" : nullptr;
    case '\n':
        return p_attribute ? "&#10;" : nullptr;
    case '\t':
        return p_attribute ? "&#9;" : nullptr;
    default:
        return nullptr;
    }
}

} // namespace

void XmlWriterLevel::setOutputData(Array<unsigned char>* p_data) {
    WriterLevel::setOutputData(p_data);
    init_This();
}

void XmlWriterLevel::init_This() {
    m_levels.clear();
    m_attributes.clear();
    m_hasRoot = false;
    m_hasOutput = false;
}

bool_t XmlWriterLevel::beginTag(const String& p_name, bool_t p_processingInstruction) {
    Level* top = getTop();
    // In other cases of letters the target of the declaration is nobody's.
    const bool isReserved = p_processingInstruction && strcasecmp(p_name.getData(), "xml") == 0;
    const bool isSecondRoot = top == nullptr && m_hasRoot && !p_processingInstruction;
    if (!isXmlName(p_name.getWrapped()) || isSecondRoot || (top != nullptr && top->m_instruction) ||
        (isReserved && (m_hasOutput || p_name != "xml"))) {
        ZYR_LOG_WARN("Unable to begin %s", p_name.getData());
        return 0;
    }
    m_piece.clear();
    if (top != nullptr) {
        m_piece += top->m_open ? ">" : "";
        if (!top->m_hasContent) {
            addLineEnd();
        }
    }
    m_piece += p_processingInstruction ? "<?" : "<";
    m_piece += p_name;
    if (!commit()) {
        return 0;
    }
    if (top != nullptr) {
        top->m_open = false;
        top->m_hasChildren = true;
    } else if (!p_processingInstruction) {
        m_hasRoot = true;
    }
    Level level;
    level.m_name = p_name;
    level.m_instruction = p_processingInstruction != 0;
    m_levels.pushBack(level);
    m_attributes.clear();
    return 1;
}

bool_t XmlWriterLevel::addProperty(const String& p_name, const String& p_value) {
    bool isGood = getTop() != nullptr && getTop()->m_open && isXmlName(p_name.getWrapped());
    for (const String& name : m_attributes) {
        isGood = isGood && name != p_name;
    }
    if (!isGood) {
        ZYR_LOG_WARN("Unable to write attribute %s with value %s", p_name.getData(), p_value.getData());
        return 0;
    }
    m_piece = " ";
    m_piece += p_name;
    m_piece += "=\"";
    addText(p_value, true, nullptr);
    m_piece += "\"";
    if (!commit()) {
        return 0;
    }
    m_attributes.pushBack(p_name);
    return 1;
}

bool_t XmlWriterLevel::addNumberContent(const String& p_number, bool_t p_separate) {
    if (!isContentPlace()) {
        ZYR_LOG_WARN("Unable to write number %s", p_number.getData());
        return 0;
    }
    m_piece = getTop()->m_open ? ">" : "";
    m_piece += p_separate && getTop()->m_hasContent ? " " : "";
    addText(p_number, false, nullptr);
    return finishContent();
}

bool_t XmlWriterLevel::addStringContent(const String& p_text, bool_t p_cdata, const char* p_lineEnd) {
    if (!isContentPlace()) {
        ZYR_LOG_WARN("Unable to write text %s", p_text.getData());
        return 0;
    }
    m_piece = getTop()->m_open ? ">" : "";
    if (p_cdata) {
        addCharacterData(p_text, p_lineEnd);
    } else {
        addText(p_text, false, p_lineEnd);
    }
    return finishContent();
}

bool_t XmlWriterLevel::addSpecialCharacters(const String& p_characters) {
    m_piece = getTop() != nullptr && getTop()->m_open && !getTop()->m_instruction ? ">" : "";
    m_piece += p_characters;
    if (isContentPlace()) {
        return finishContent();
    }
    return commit();
}

bool_t XmlWriterLevel::endTag(bool_t p_processingInstruction) {
    const Level* top = getTop();
    if (top == nullptr || top->m_instruction != (p_processingInstruction != 0)) {
        ZYR_LOG_WARN("Unable to end %s: it was not begun last",
                     p_processingInstruction ? "a processing instruction" : "an element");
        return 0;
    }
    const Level level = m_levels.popBack();
    m_piece.clear();
    if (level.m_instruction) {
        m_piece += "?>";
    } else if (level.m_open) {
        m_piece += "/>";
    } else {
        if (level.m_hasChildren && !level.m_hasContent) {
            addLineEnd();
        }
        m_piece += "</";
        m_piece += level.m_name;
        m_piece += ">";
    }
    if (m_levels.isEmpty()) {
        m_piece += "\n";
    }
    if (!commit()) {
        m_levels.pushBack(level);
        return 0;
    }
    return 1;
}

bool XmlWriterLevel::isContentPlace() {
    return getTop() != nullptr && !getTop()->m_instruction;
}

bool XmlWriterLevel::finishContent() {
    if (!commit()) {
        return false;
    }
    getTop()->m_open = false;
    getTop()->m_hasContent = true;
    return true;
}

void XmlWriterLevel::addLineEnd() {
    m_piece.pushBackAsciiCharacter('\n');
    for (size_t i = 0; i < m_levels.getSize() * INDENTATION; ++i) {
        m_piece.pushBackAsciiCharacter(' ');
    }
}

void XmlWriterLevel::addText(const String& p_text, bool p_attribute, const char* p_lineEnd) {
    const char* end = p_text.getData() + p_text.getLengthInBytes();
    for (const char* place = p_text.getData(); place != end;) {
        const char* begin = place;
        const char* reference = getReference(*place, p_attribute);
        if (p_lineEnd != nullptr && takeLineEnd(place, end)) {
            m_piece += p_lineEnd;
        } else if (reference != nullptr) {
            m_piece += reference;
            ++place;
        } else if (takeCharacter(place, end)) {
            m_piece.pushBackUTF8SubString(begin, static_cast<size_t>(place - begin));
        } else {
            m_piece += REPLACEMENT;
        }
    }
}

/// A section can hold neither its own end nor a carriage return: both stand between two sections.
void XmlWriterLevel::addCharacterData(const String& p_text, const char* p_lineEnd) {
    const char* end = p_text.getData() + p_text.getLengthInBytes();
    m_piece += "<![CDATA[";
    for (const char* place = p_text.getData(); place != end;) {
        const char* begin = place;
        if (p_lineEnd != nullptr && takeLineEnd(place, end)) {
            m_piece += p_lineEnd;
        } else if (*place == '\r') {
            m_piece += "]]>&#13;<![CDATA[";
            ++place;
        } else if (end - place >= 3 && memcmp(place, "]]>", 3) == 0) {
            m_piece += "]]]]><![CDATA[>";
            place += 3;
        } else if (takeCharacter(place, end)) {
            m_piece.pushBackUTF8SubString(begin, static_cast<size_t>(place - begin));
        } else {
            m_piece += REPLACEMENT;
        }
    }
    m_piece += "]]>";
}

bool XmlWriterLevel::commit() {
    if (!append(m_piece.getData(), m_piece.getLengthInBytes())) {
        return false;
    }
    m_hasOutput = true;
    return true;
}

ZYR_DEFINE_CORE_CLASS(XmlWriter)

} // namespace zyr
