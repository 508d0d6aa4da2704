/// What a lexer gives: tokens, and where they stand in the input.
///
/// Plain values, byte-packed, since they cross module boundaries. Their texts are views into the input and valid as
/// long as that is.
#pragma once

#include "zyr_common/text/zyr_string.h"
#include "zyr_common/text/zyr_wrapped_string.h"
#include "zyr_common/variable/zyr_variable_types.h"

#include <cstring>

namespace zyr {

/// The class of a token.
enum TokenTypeEnum : uint32_t {
    /// No token: the end of the input, or input that is none.
    ZYR_TOKEN_TYPE_NONE = 0,
    /// one of the lexer's words, also in front of a digit or letter
    ZYR_TOKEN_TYPE_KEYWORD = 1,
    /// one of the lexer's punctuators
    ZYR_TOKEN_TYPE_PUNCTUATOR = 2,
    /// The three kinds of literals look as LiteralTypeDescriptor tells.
    ZYR_TOKEN_TYPE_INTEGER_LITERAL = 3,
    ZYR_TOKEN_TYPE_REAL_LITERAL = 4,
    ZYR_TOKEN_TYPE_STRING_LITERAL = 5,
    /// any other word, from an ASCII letter or "_" on
    ZYR_TOKEN_TYPE_IDENTIFIER = 6
};

#pragma pack(push, 1)

/// A place in a text. Lines and columns count from 1, columns in characters; 0 stands for no place.
class StringCursor {
public:
    /// of the place, from 1 on
    size_t m_line;
    size_t m_column;
    const char* m_begin; ///< the first byte of the text
    const char* m_end;   ///< behind its last
    /// the place itself; null where there is none
    const char* m_current;

    /// No place in no text.
    StringCursor() : StringCursor(0, 0, nullptr, nullptr, nullptr) {}
    StringCursor(size_t p_line, size_t p_column, const char* p_begin, const char* p_end, const char* p_current)
        : m_line(p_line), m_column(p_column), m_begin(p_begin), m_end(p_end), m_current(p_current) {}

    /// No place any more, but in the same text: the text's bounds stay.
    void clear() {
        m_line = 0;
        m_column = 0;
        m_current = nullptr;
    }
};

/// The decoded value of a literal. All zero for other tokens.
struct TokenScalar {
    VariableTypeEnum m_valueType; ///< ZYR_VARIABLE_UINT64 for an integer, ZYR_VARIABLE_DOUBLE for a real number
    uint64_t m_bits;              ///< the value as it stands in memory
    uint32_t m_radix;             ///< of an integer
    uint32_t m_literalType;       ///< the place of its type among those of the lexer, from 0
    bool_t m_saturated;           ///< the integer doesn't fit, and the value is the largest that does
    bool_t m_escaped;             ///< the content of the string holds escapes, which are not decoded
};

/// One token. Copies share the text of the input.
class Token {
public:
    /// what the lexer took it for
    TokenTypeEnum m_type;
    TokenScalar m_scalar;
    WrappedString m_text;    ///< as it stands in the input
    WrappedString m_content; ///< of a string literal: what stands between its delimiters
    /// where its text begins
    StringCursor m_cursor;

    /// No token.
    Token() { init_This(); }
    Token(TokenTypeEnum p_type, const WrappedString& p_text, const WrappedString& p_content,
          const StringCursor& p_cursor)
        : m_type(p_type), m_scalar(), m_text(p_text), m_content(p_content), m_cursor(p_cursor) {}
    Token(const Token&) = default;
    Token& operator=(const Token&) = default;

    /// Of an integer literal.
    uint64_t getInteger() const { return m_scalar.m_bits; }
    /// Of a real literal.
    double getReal() const {
        const uint64_t bits = m_scalar.m_bits;
        double value;
        memcpy(&value, &bits, sizeof(value));
        return value;
    }

    void clear() {
        release_This();
        init_This();
    }
    void init_This() {
        m_type = ZYR_TOKEN_TYPE_NONE;
        m_scalar = TokenScalar();
        m_text = "";
        m_content = "";
        m_cursor = StringCursor();
    }
    void release_This() {}
    void copy_This(const Token& p_src) { *this = p_src; }
};

#pragma pack(pop)

static_assert(sizeof(StringCursor) == 40);
static_assert(sizeof(TokenScalar) == 22);
static_assert(sizeof(Token) == 98);

/// How a literal looks.
///
/// An integer is m_begin ("0x", or nothing) and digits of m_radix, 2 to 36, letters in either case. A real number is
/// decimal digits with a point or an exponent ("1.5", ".5", "5.", "1e-3"). A string stands between m_begin and m_end;
/// m_escape, where not empty and another text than m_end, takes the meaning from the byte behind it. A sign is never
/// part of a literal, but for that of an exponent: "-5" is two tokens, and what stands in front of the minus tells
/// whether it negates.
struct LiteralTypeDescriptor {
    TokenTypeEnum m_type = ZYR_TOKEN_TYPE_NONE; ///< one of the three literal types
    String m_begin;
    String m_end;
    String m_escape;
    uint32_t m_radix = 10;

    // The usual descriptors.
    static LiteralTypeDescriptor makeInteger(const String& p_begin = String(), uint32_t p_radix = 10) {
        return {ZYR_TOKEN_TYPE_INTEGER_LITERAL, p_begin, String(), String(), p_radix};
    }
    static LiteralTypeDescriptor makeReal() { return {ZYR_TOKEN_TYPE_REAL_LITERAL, String(), String(), String(), 10}; }
    static LiteralTypeDescriptor makeString(const String& p_begin, const String& p_end, const String& p_escape) {
        return {ZYR_TOKEN_TYPE_STRING_LITERAL, p_begin, p_end, p_escape, 10};
    }
};

} // namespace zyr
