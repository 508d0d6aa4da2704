/// What all parsers of texts hold: lexer, tokens, messages and line terminators.
#pragma once

#include "zyr_common/documents/zyr_text_parser.h"
#include "zyr_common/memory/zyr_ref.h"

namespace zyr {

/// Behind TextParserLevel, so that it is compiled once.
class TextParserState {
public:
    TextParserState() { reset(); }
    TextParserState(const TextParserState&) = delete;
    TextParserState& operator=(const TextParserState&) = delete;
    ~TextParserState() { clearMessages(); }

    /// The terminators of a new parser, and nothing else.
    void reset();
    /// Lets go of what was read and said.
    void forget();
    /// Makes a lexer where there is none. False when that fails.
    bool makeLexer();
    /// Takes a reference. Without a lexer the parser has to be initialized again.
    void setLexer(ILexer* p_lexer);
    /// Gives the lexer the fillers of all texts and the input. False without a lexer.
    bool prepareLexer(Array<unsigned char>* p_input);
    /// Fills the tokens with those of the whole input. False, with a message and without tokens, at input that is no
    /// token.
    bool readTokens(Array<unsigned char>* p_input);
    /// What ends a line says the parser.
    void skipLine(const ITextParser& p_parser, const String* p_additional);
    bool isLineTerminator(const String& p_text, const String* p_additional) const;
    const Token* getToken(size_t p_position) const {
        return p_position < m_tokens.getSize() ? &m_tokens[p_position] : nullptr;
    }
    /// Takes a reference; null is ignored.
    void addMessage(ParserLogMessage* p_message);
    /// Takes the message over and logs it.
    void report(ParserLogMessage* p_message);
    void clearMessages();

    Ref<ILexer> m_lexer;
    List<String> m_lineTerminators;
    List<ParserLogMessage*> m_messages;
    Array<Token> m_tokens;
    size_t m_position;
    bool_t m_initialized;
};

} // namespace zyr
