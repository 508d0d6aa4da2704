/// The working half of the lexer.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/documents/zyr_token.h"

namespace zyr {

/// The words of a language and a place in a text. See ILexer for what is read.
class TokenReader {
public:
    using Words = HashMap<String, unsigned char>;

    TokenReader() { clear(); }

    /// Back to a new reader.
    void clear();
    void setInput(Array<unsigned char>* p_data);
    Array<unsigned char>* getInput() const { return m_data; }
    /// p_reason takes what is wrong where it fails before the end of the input, null at the end.
    bool_t read(Token& p_token, const char*& p_reason);

    /// Adds the words of a text, which are separated by blanks.
    static void addWords(Words& p_words, const String& p_text);

    Words m_keywords;
    Words m_punctuators;
    Words m_fillers;
    String m_inlineCommentWord;
    String m_beginCommentWord;
    String m_endCommentWord;
    Array<LiteralTypeDescriptor> m_literalTypes;

private:
    /// What one of the literal types makes of the bytes at a place. A size of 0 means that it doesn't match.
    struct Literal {
        size_t m_size = 0;
        size_t m_contentBegin = 0;
        size_t m_contentSize = 0;
        bool m_open = false; ///< begins like a string, and the input ends before the string does
        TokenScalar m_scalar = {};
    };

    const unsigned char* at(size_t p_position) const { return m_data->getData() + p_position; }
    size_t size() const { return m_data != nullptr ? m_data->getSize() : 0; }
    bool isAt(size_t p_position, const String& p_word) const;
    size_t findLongest(const Words& p_words) const;
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

    Array<unsigned char>* m_data;
    size_t m_position;
    size_t m_line;
    size_t m_column;
};

} // namespace zyr
