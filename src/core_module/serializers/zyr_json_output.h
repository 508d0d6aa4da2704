/// The structure of the JSON format: one object with a member for each field.
#pragma once

#include "core_module/serializers/zyr_byte_buffer.h"
#include "core_module/serializers/zyr_field_kind.h"
#include "core_module/serializers/zyr_frame_stack.h"

namespace zyr {

/// Members of the format itself begin with one underscore; a field whose name begins with one gets another.
inline constexpr char c_jsonClassKey[] = "_class";
inline constexpr char c_jsonGUIDKey[] = "_guid";
inline constexpr char c_jsonTypeKey[] = "_type";

/// Appends a text in quotes, escaped. One that is not UTF-8 stands as its bytes.
bool appendJsonText(ByteBuffer& p_buffer, const char* p_text, size_t p_length);
bool appendJsonText(ByteBuffer& p_buffer, const String& p_text);

class JsonOutput {
public:
    JsonOutput() { m_buffer.close(); }

    bool begin();
    void end() { m_buffer.close(); }
    /// Appends the end where nothing is open any more.
    bool complete();

    bool beginRecord(const String& p_name, bool_t p_formatHeader);
    bool beginObject(const String& p_name, const String& p_className, const String& p_guidText);
    bool nullObject(const String& p_name) { return member(p_name) && m_buffer.appendLiteral("null"); }
    bool beginArray(const String& p_name);
    /// The type stands where it differs from that of the element before.
    bool beginElement(const String& p_typeName, bool p_sameType);
    bool nullElement() { return item() && m_buffer.appendLiteral("null"); }
    bool leave();

    /// Begins a value, a number or a word that stands in quotes, and gives its place with so much room; null where
    /// there is none. endValue is told where the value ends.
    uint8_t* beginValue(const String& p_name, bool_t, bool p_word, size_t p_room);
    bool endValue(uint8_t* p_end) {
        if (m_word) {
            *p_end++ = '"';
        }
        m_buffer.commit(p_end);
        return true;
    }
    bool text(const String& p_name, const String& p_value, bool_t) {
        return member(p_name) && appendJsonText(m_buffer, p_value);
    }
    bool nullText(const String& p_name, bool_t) { return nullObject(p_name); }

    /// Enclose the items of an array of numbers. What putSeparator puts stands between them, for which there must be
    /// room.
    bool beginNumbers(const String& p_name) { return member(p_name) && m_buffer.append('['); }
    static constexpr bool c_quotesWords = true;
    static constexpr size_t c_separatorRoom = 1 + c_lineRoom;
    uint8_t* putSeparator(uint8_t* p_target, uint32_t p_index, uint32_t p_rowLength) const;
    bool endNumbers() { return m_buffer.append(']'); }

    /// The same for texts.
    bool beginTexts(const String& p_name) { return member(p_name) && enter('['); }
    bool textItem(const String& p_text) { return item() && appendJsonText(m_buffer, p_text); }
    bool endTexts() { return leave(); }

    ByteBuffer m_buffer;

private:
    bool member(const String& p_name);
    uint8_t* beginMember(const String& p_name, size_t p_room);
    /// One whose name has an escape.
    bool oddMember(const String& p_name);
    /// Begins a member of the format itself.
    bool formatMember(const char* p_key, const String& p_text);
    bool item();
    bool newLine();
    size_t getBlanks() const;
    bool enter(char p_bracket);

    struct Frame {
        char m_bracket;
        bool m_hasItems;
    };
    FrameStack<Frame> m_frames;
    uint32_t m_depth = 0;
    bool m_word = false;
};

} // namespace zyr
