/// What the readers of documents share: the bytes with the place that is being read, and what is wrong with them.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/documents/zyr_parser_log_message.h"

namespace zyr {

/// Plain members: the readers move m_current themselves.
class DocumentText {
public:
    DocumentText() = default;
    /// The array must outlive this; null stands for no bytes.
    explicit DocumentText(const Array<unsigned char>* p_data);

    size_t getRest() const { return static_cast<size_t>(m_end - m_current); }
    bool isAtEnd() const { return m_current == m_end; }
    /// Whether the place is one of this text, its end included.
    bool contains(const char* p_place) const {
        return reinterpret_cast<uintptr_t>(p_place) >= reinterpret_cast<uintptr_t>(m_begin) &&
               reinterpret_cast<uintptr_t>(p_place) <= reinterpret_cast<uintptr_t>(m_end);
    }
    /// Whether the word stands at the place.
    bool isAt(const char* p_word) const;
    /// Steps over the word if it stands at the place.
    bool take(const char* p_word);
    /// Steps over blanks, tabs, line feeds and carriage returns.
    void skipBlanks();
    /// Moves to the first place of the word, or to the end without one.
    bool skipTo(const char* p_word);

    /// Notes what is wrong at a place, unless something was noted before. Gives false.
    bool fail(const char* p_reason, const char* p_place);
    bool fail(const char* p_reason) { return fail(p_reason, m_current); }
    void clearFault() { m_reason = nullptr; }
    /// The fault with line, column and the text from there, cut short. The caller owns the message.
    ParserLogMessage* makeMessage() const;

    /// Steps over a byte order mark and checks that the whole text is UTF-8.
    bool checkUTF8();

    const char* m_begin = nullptr;
    const char* m_end = nullptr;
    const char* m_current = nullptr;

private:
    const char* m_reason = nullptr;
    const char* m_place = nullptr;
};

/// The size of the character at a place, 1 to 4; 0 for bytes that are no UTF-8.
size_t getValidUTF8Size(const char* p_bytes, const char* p_end);

/// Blank, tab, line feed and carriage return.
inline bool isDocumentBlank(char p_byte) {
    return p_byte == ' ' || p_byte == '\n' || p_byte == '\t' || p_byte == '\r';
}

inline bool isDocumentDigit(char p_byte) {
    return p_byte >= '0' && p_byte <= '9';
}

/// The end of the number that JSON would see at a place, which is the place itself where none is.
const char* findNumberEnd(const char* p_text, const char* p_end);

} // namespace zyr
