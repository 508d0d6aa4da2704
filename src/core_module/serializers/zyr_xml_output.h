/// The structure of the XML format: an element for each group, an attribute for each scalar of it.
#pragma once

#include "core_module/serializers/zyr_byte_buffer.h"
#include "core_module/serializers/zyr_field_kind.h"
#include "core_module/serializers/zyr_frame_stack.h"

namespace zyr {

/// Names of the format itself. A field's name never becomes one of them; see appendXmlName.
inline constexpr char c_xmlRoot[] = "zyr";
inline constexpr char c_xmlItem[] = "item";
inline constexpr char c_xmlClass[] = "_class";
inline constexpr char c_xmlGUID[] = "_guid";
inline constexpr char c_xmlType[] = "_type";
inline constexpr char c_xmlNull[] = "_null";

/// Appends a field's name as one of XML: letters, digits, "-", "." and "_" stand for themselves, all other bytes as "_"
/// and two hexadecimal digits; so do a first character that is no letter and an "_" in front of two such digits.
bool appendXmlName(ByteBuffer& p_buffer, const String& p_name);
/// Whether the name stands for itself.
bool isPlainXmlName(const String& p_name);

/// Appends a text with references for what can't stand in an attribute, and for line ends in one. A text with
/// characters that XML doesn't have stands as its bytes.
bool appendXmlText(ByteBuffer& p_buffer, const String& p_text, bool p_attribute);

class XmlOutput {
public:
    XmlOutput() { m_buffer.close(); }

    bool begin();
    void end();
    /// Appends the end where nothing is open any more.
    bool complete();

    bool beginRecord(const String& p_name, bool_t p_formatHeader);
    bool beginObject(const String& p_name, const String& p_className, const String& p_guidText);
    bool nullObject(const String& p_name);
    bool beginArray(const String& p_name) { return open(p_name); }
    bool beginElement(const String& p_typeName, bool p_sameType);
    bool nullElement();
    bool leave();

    /// Begins a value and gives its place with so much room, null where there is none. It is an attribute as long as
    /// the group's tag is open. endValue is told where the value ends.
    uint8_t* beginValue(const String& p_name, bool_t p_attribute, bool p_word, size_t p_room);
    bool endValue(uint8_t* p_end);
    bool text(const String& p_name, const String& p_value, bool_t p_attribute);
    /// There is no attribute without a value, so one of null is left out.
    bool nullText(const String& p_name, bool_t p_attribute) { return p_attribute || nullObject(p_name); }

    bool beginNumbers(const String& p_name) { return open(p_name) && closeTag(); }
    static constexpr bool c_quotesWords = false;
    static constexpr size_t c_separatorRoom = c_lineRoom;
    uint8_t* putSeparator(uint8_t* p_target, uint32_t p_index, uint32_t p_rowLength) const;
    bool endNumbers() { return leave(); }

    bool beginTexts(const String& p_name) { return open(p_name); }
    bool textItem(const String& p_text);
    bool endTexts() { return leave(); }

    ByteBuffer m_buffer;

private:
    enum FrameKind : uint8_t { ELEMENT, DECLARATION };
    struct Frame {
        /// Where the name stands among the names.
        size_t m_name;
        FrameKind m_kind;
        bool m_tagOpen;
        bool m_hasElements;
    };

    bool open(const String& p_name);
    bool textElement(const String& p_name, const String& p_text);
    uint8_t* beginTag(size_t p_name, size_t p_room);
    uint8_t* putName(uint8_t* p_target, size_t p_name);
    size_t getEndRoom(size_t p_name) const { return m_names.getSize() - p_name + 3; }
    uint8_t* putEndTag(uint8_t* p_target, size_t p_name);
    uint8_t* beginAttribute(const String& p_name, size_t p_room);
    size_t getBlanks() const;
    bool closeTag();
    bool attribute(const char* p_name, const String& p_value);

    /// Names of the elements that are open, one behind the other.
    ByteBuffer m_names;
    FrameStack<Frame> m_frames;
    uint32_t m_depth = 0;
    bool m_inAttribute = false;
    bool m_rootOpen = false;
};

} // namespace zyr
