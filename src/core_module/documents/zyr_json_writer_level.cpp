#include "core_module/documents/zyr_json_writer_level.h"

#include "core_module/documents/zyr_document_text.h"
#include "core_module/zyr_core_class.h"

namespace zyr {

namespace {

constexpr size_t INDENTATION = 2;

/// Appends an escape where JSON asks for one. False for a byte that stands for itself.
bool appendEscape(String& p_out, unsigned char p_byte) {
    static const char bytes[] = "\"\\\b\f\n\r\t";
    static const char letters[] = "\"\\bfnrt";
    static const char digits[] = "0123456789abcdef";
    const char* place = p_byte != 0 ? strchr(bytes, p_byte) : nullptr;
    if (place != nullptr) {
        p_out.pushBackAsciiCharacter('\\');
        p_out.pushBackAsciiCharacter(letters[place - bytes]);
        return true;
    }
    if (p_byte >= ' ') {
        return false;
    }
    p_out += "\\u00";
    p_out.pushBackAsciiCharacter(digits[p_byte >> 4]);
    p_out.pushBackAsciiCharacter(digits[p_byte & 15]);
    return true;
}

} // namespace

void JsonWriterLevel::setOutputData(Array<unsigned char>* p_data) {
    WriterLevel::setOutputData(p_data);
    init_This();
}

void JsonWriterLevel::init_This() {
    m_levels.clear();
    m_hasRoot = false;
}

bool_t JsonWriterLevel::beginTag(const String& p_name, bool_t p_array) {
    if (getTop() == nullptr && m_hasRoot) {
        ZYR_LOG_WARN("Unable to begin %s: the document has its root already", p_name.getData());
        return 0;
    }
    beginPiece(p_name, true);
    m_piece.pushBackAsciiCharacter(p_array ? '[' : '{');
    if (!finishPiece()) {
        return 0;
    }
    m_levels.pushBack({p_array != 0, true});
    return 1;
}

bool_t JsonWriterLevel::endTag(bool_t p_array) {
    const Level* top = getTop();
    if (top == nullptr || top->m_array != (p_array != 0)) {
        ZYR_LOG_WARN("Unable to end %s: it was not begun last", p_array ? "an array" : "an object");
        return 0;
    }
    const Level level = m_levels.popBack();
    m_piece.clear();
    if (!level.m_empty) {
        addLineEnd();
    }
    m_piece.pushBackAsciiCharacter(p_array ? ']' : '}');
    if (m_levels.isEmpty()) {
        m_piece.pushBackAsciiCharacter('\n');
    }
    if (append(m_piece.getData(), m_piece.getLengthInBytes())) {
        return 1;
    }
    m_levels.pushBack(level);
    return 0;
}

bool_t JsonWriterLevel::addProperty(const String& p_name, const String& p_value, bool_t p_text, bool_t p_escape) {
    const Level* top = getTop();
    if (top == nullptr || top->m_array || (!p_text && !isScalar(p_value))) {
        ZYR_LOG_WARN("Unable to write property %s with value %s", p_name.getData(), p_value.getData());
        return 0;
    }
    beginPiece(p_name, p_escape);
    if (p_text) {
        addText(p_value, p_escape);
    } else {
        m_piece += p_value;
    }
    return finishPiece();
}

bool_t JsonWriterLevel::addContent(const String& p_value, bool_t p_text) {
    const Level* top = getTop();
    if ((top == nullptr ? m_hasRoot : !top->m_array) || (!p_text && !isScalar(p_value))) {
        ZYR_LOG_WARN("Unable to write value %s", p_value.getData());
        return 0;
    }
    beginPiece(String::getConstEmpty(), true);
    if (p_text) {
        addText(p_value, true);
    } else {
        m_piece += p_value;
    }
    if (top == nullptr) {
        m_piece.pushBackAsciiCharacter('\n');
    }
    return finishPiece();
}

bool_t JsonWriterLevel::addSpecialCharacters(const String& p_characters) {
    return append(p_characters.getData(), p_characters.getLengthInBytes());
}

/// What stands in front of a value.
void JsonWriterLevel::beginPiece(const String& p_name, bool p_escape) {
    m_piece.clear();
    const Level* top = getTop();
    if (top == nullptr) {
        return;
    }
    if (!top->m_empty) {
        m_piece.pushBackAsciiCharacter(',');
    }
    addLineEnd();
    if (!top->m_array) {
        addText(p_name, p_escape);
        m_piece += ": ";
    }
}

void JsonWriterLevel::addLineEnd() {
    m_piece.pushBackAsciiCharacter('\n');
    for (size_t i = 0; i < m_levels.getSize() * INDENTATION; ++i) {
        m_piece.pushBackAsciiCharacter(' ');
    }
}

void JsonWriterLevel::addText(const String& p_text, bool p_escape) {
    m_piece.pushBackAsciiCharacter('"');
    if (!p_escape) {
        m_piece += p_text;
    } else {
        const char* end = p_text.getData() + p_text.getLengthInBytes();
        for (const char* byte = p_text.getData(); byte != end;) {
            const size_t size = getValidUTF8Size(byte, end);
            if (size == 0) {
                m_piece += "\xEF\xBF\xBD";
            } else if (!appendEscape(m_piece, static_cast<unsigned char>(*byte))) {
                m_piece.pushBackUTF8SubString(byte, size);
            }
            byte += size != 0 ? size : 1;
        }
    }
    m_piece.pushBackAsciiCharacter('"');
}

bool JsonWriterLevel::finishPiece() {
    if (!append(m_piece.getData(), m_piece.getLengthInBytes())) {
        return false;
    }
    if (Level* top = getTop()) {
        top->m_empty = false;
    }
    m_hasRoot = true;
    return true;
}

bool JsonWriterLevel::isScalar(const String& p_text) {
    const char* end = p_text.getData() + p_text.getLengthInBytes();
    return p_text == "true" || p_text == "false" || p_text == "null" ||
           (!p_text.isEmpty() && findNumberEnd(p_text.getData(), end) == end);
}

ZYR_DEFINE_CORE_CLASS(JsonWriter)

} // namespace zyr
