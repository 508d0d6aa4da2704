/// The head of an HTTP request or answer (versions 1.0 and 1.1), read strictly: what one reader would take for another
/// thing than the next one is refused. Not thread safe.
#pragma once

#include "zyr_common/text/zyr_string.h"

#include <cstring>

namespace zyr {

/// A part of a text that somebody else owns.
struct TextPart {
    const char* m_data = "";
    size_t m_size = 0;

    bool isEmpty() const { return m_size == 0; }
    bool equals(const char* p_text) const { return strlen(p_text) == m_size && memcmp(m_data, p_text, m_size) == 0; }
    /// Case of ASCII letters does not count.
    bool equalsName(const char* p_text) const;
    String getString() const { return m_size != 0 ? String(m_data, m_size) : String(); }
    /// With a question mark for each byte that is no printable ASCII character.
    String getPrintable() const;
};

/// Cuts the next item of a list with commas off, without the blanks around it. False at the end.
bool zyr_takeListItem(TextPart& p_list, TextPart& p_item);
/// Whether the list has the word; case does not count.
bool zyr_hasListItem(TextPart p_list, const char* p_word);

class HttpHead {
public:
    static constexpr size_t MAX_FIELDS = 100;

    /// The length of the head that begins the bytes, blank line included; 0 while it is not whole.
    static size_t findEnd(const unsigned char* p_bytes, size_t p_size);

    /// Reads a whole head; the bytes stay the caller's and in place. False with getFailure.
    bool readRequest(const unsigned char* p_bytes, size_t p_size);
    bool readAnswer(const unsigned char* p_bytes, size_t p_size);

    const char* getFailure() const { return m_failure; }
    /// Of a request.
    TextPart getMethod() const { return m_first; }
    /// Of a request: begins with "/", also where the request had the absolute form ("https://desk.example/path"); but
    /// OPTIONS can have "*", and CONNECT has a host.
    TextPart getTarget() const { return m_second; }
    /// Of a request: that of the absolute form, or else the field Host.
    TextPart getHost() const { return m_authority.isEmpty() ? getField("Host") : m_authority; }
    /// Of an answer.
    uint32_t getStatus() const { return m_status; }
    /// 1 for version 1.1, 0 for 1.0.
    uint32_t getMinorVersion() const { return m_minorVersion; }
    /// The field's value, an empty one where it is missing; p_index counts fields of the same name. Case of the name
    /// does not count.
    TextPart getField(const char* p_name, uint32_t p_index = 0) const;
    uint32_t countFields(const char* p_name) const;
    /// Whether one of the fields of this name lists the word.
    bool listsWord(const char* p_name, const char* p_word) const;
    /// Whether a body follows the request.
    bool hasBody() const;

private:
    struct Field {
        TextPart m_name;
        TextPart m_value;
    };

    bool refuse(const char* p_failure);
    bool readTarget();
    bool readFields(TextPart p_rest);
    bool readField(TextPart p_line);
    bool hasKnownLength() const;

    TextPart m_first;
    TextPart m_second;
    TextPart m_authority;
    uint32_t m_status = 0;
    uint32_t m_minorVersion = 0;
    Field m_fields[MAX_FIELDS];
    size_t m_fieldCount = 0;
    const char* m_failure = "";
};

} // namespace zyr
