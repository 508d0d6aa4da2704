/// The working half of the lexer.
#pragma once

#include "core_module/documents/zyr_word_table.h"
#include "zyr_common/documents/zyr_token.h"

namespace zyr {

/// The words of a language and a place in a text. See ILexer for what is read.
class TokenReader {
public:
    TokenReader() { clear(); }

    /// Back to a new reader.
    void clear();
    void setInput(Array<unsigned char>* p_data);
    Array<unsigned char>* getInput() const { return m_data; }
    /// p_reason takes what is wrong where it fails before the end of the input, null at the end.
    bool_t read(Token& p_token, const char*& p_reason);

    WordTable m_keywords;
    WordTable m_punctuators;
    WordTable m_fillers;
    String m_inlineCommentWord;
    String m_beginCommentWord;
    String m_endCommentWord;

    void addLiteralType(const LiteralTypeDescriptor& p_type);
    void clearLiteralTypes();

private:
    /// What one of the literal types makes of the bytes at a place. A size of 0 means that it doesn't match.
    struct Literal {
        size_t m_size = 0;
        size_t m_contentBegin = 0;
        size_t m_contentSize = 0;
        bool m_open = false; ///< begins like a string, and the input ends before the string does
        TokenScalar m_scalar = {};
    };

    const unsigned char* at(size_t p_position) const { return m_bytes + p_position; }
    size_t size() const { return m_size; }
    bool isAt(size_t p_position, const String& p_word) const;
    size_t findLongest(WordTable& p_words) const { return p_words.findLongest(at(m_position), size() - m_position); }
    bool find(const String& p_word, size_t p_from, size_t& p_position) const;
    size_t countDigits(size_t p_position, uint32_t p_radix) const;

    bool skip(const char*& p_reason);
    void advance(size_t p_size);
    Literal findLiteral(bool& p_open) const;
    Literal matchInteger(const LiteralTypeDescriptor& p_type) const;
    Literal matchReal() const;
    Literal matchString(const LiteralTypeDescriptor& p_type) const;
    size_t countIdentifier() const;
    void place(Token& p_token, TokenTypeEnum p_type, size_t p_size) const;

    Array<LiteralTypeDescriptor> m_literalTypes;
    /// For each first byte of a literal a bit for each of the first types that it can be.
    uint32_t m_literalStarts[256];
    Array<unsigned char>* m_data;
    // What the array held when the present token was begun.
    const unsigned char* m_bytes;
    size_t m_size;
    size_t m_position;
    size_t m_line;
    size_t m_column;
};

} // namespace zyr
