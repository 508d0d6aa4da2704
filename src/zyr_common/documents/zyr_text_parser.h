/// The level that the parsers of texts share: a lexer, the tokens that it gave, and what there is to say about the
/// text.
///
///     ITextParser* parser = zyr_createObject<ITextParser>();
///     parser->setInputData(&bytes);
///     if (parser->parse()) {
///         while (const Token* token = parser->getCurrentToken()) { ...; ++*parser->getMutableCurrentTokenPos(); }
///     }
///     parser->release();
///
/// Made by the core module. One thread at a time.
#pragma once

#include "zyr_common/documents/zyr_lexer.h"
#include "zyr_common/documents/zyr_parser_log_message.h"
#include "zyr_common/documents/zyr_reader.h"

namespace zyr {

/// A plain text parser cuts its input into tokens. The parsers of a language make their own tree of it and no tokens.
///
/// Each fault is a message in the list and a line in the log. The messages belong to the parser, which holds a
/// reference on each. A failed parse() leaves no tokens and no tree.
class ITextParser : public IReader {
public:
    /// Reads the whole input, after initialize() where that was not called yet. Messages, tokens and trees of an
    /// earlier call are gone. False without input and for a faulty one.
    virtual bool_t parse() = 0;
    /// Null before initialize() unless one was set. With the flag set the caller gets a reference.
    virtual ILexer* getLexer(bool_t p_addReference) const = 0;
    /// Takes a reference. The lexer keeps the words that it has: initializeLexer() adds those of the language.
    virtual void setLexer(ILexer* p_lexer) = 0;
    /// Gives the lexer the words of the language and the input. False without a lexer.
    virtual bool_t initializeLexer() = 0;
    /// The texts that end a line: "\\n", "\\r" and "\\r\\n" in a new parser.
    virtual const List<String>& getLineTerminators() const = 0;
    /// True for a text of the list and for the additional one, which may be null.
    virtual bool_t isLineTerminator(const String& p_text, const String* p_additional) const = 0;
    virtual void pushBackLineTerminator(const String& p_terminator) = 0;
    virtual void clearLineTerminators() = 0;
    virtual const List<ParserLogMessage*>& getLogMessages() const = 0;
    /// Takes a reference; null is ignored.
    virtual void pushBackLogMessage(ParserLogMessage* p_message) = 0;
    virtual void clearLogMessages() = 0;
    /// The position among the tokens, from 0.
    virtual size_t getCurrentTokenPos() const = 0;
    virtual size_t* getMutableCurrentTokenPos() = 0;
    virtual void setCurrentTokenPos(size_t p_position) = 0;
    /// Moves on to the first token of the next line: behind a token that is a line terminator, or else to one whose
    /// place is on a later line. The additional terminator may be null.
    virtual void skipLine(const String* p_additional) = 0;
    virtual const Array<Token>& getTokens() const = 0;
    /// Null behind the last token. Valid until the next parse().
    virtual const Token* getTokenByPosition(size_t p_position) const = 0;
    virtual const Token* getCurrentToken() const = 0;
    /// Makes a lexer where there is none and gives it the words of the language. Gives true.
    virtual bool_t initialize() = 0;
    virtual bool_t isInitialized() const = 0;
    /// Lets go of lexer, tokens, messages and tree. The input stays.
    virtual void deinitialize() = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getTextParserReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(TextParser, IReader, "07a567a5-6cc0-4366-8501-3011134c99c8")

/// Forwards each operation to the TextParser of its module; what extends that class derives from this.
template <class Interface> class TextParserFacade : public ReaderFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    bool_t parse() override { return m_interfaceObject->parse(); }
    ILexer* getLexer(bool_t p_addReference) const override { return m_interfaceObject->getLexer(p_addReference); }
    void setLexer(ILexer* p_lexer) override { m_interfaceObject->setLexer(p_lexer); }
    bool_t initializeLexer() override { return m_interfaceObject->initializeLexer(); }
    const List<String>& getLineTerminators() const override { return m_interfaceObject->getLineTerminators(); }
    bool_t isLineTerminator(const String& p_text, const String* p_additional) const override {
        return m_interfaceObject->isLineTerminator(p_text, p_additional);
    }
    void pushBackLineTerminator(const String& p_terminator) override {
        m_interfaceObject->pushBackLineTerminator(p_terminator);
    }
    void clearLineTerminators() override { m_interfaceObject->clearLineTerminators(); }
    const List<ParserLogMessage*>& getLogMessages() const override { return m_interfaceObject->getLogMessages(); }
    void pushBackLogMessage(ParserLogMessage* p_message) override { m_interfaceObject->pushBackLogMessage(p_message); }
    void clearLogMessages() override { m_interfaceObject->clearLogMessages(); }
    size_t getCurrentTokenPos() const override { return m_interfaceObject->getCurrentTokenPos(); }
    size_t* getMutableCurrentTokenPos() override { return m_interfaceObject->getMutableCurrentTokenPos(); }
    void setCurrentTokenPos(size_t p_position) override { m_interfaceObject->setCurrentTokenPos(p_position); }
    void skipLine(const String* p_additional) override { m_interfaceObject->skipLine(p_additional); }
    const Array<Token>& getTokens() const override { return m_interfaceObject->getTokens(); }
    const Token* getTokenByPosition(size_t p_position) const override {
        return m_interfaceObject->getTokenByPosition(p_position);
    }
    const Token* getCurrentToken() const override { return m_interfaceObject->getCurrentToken(); }
    bool_t initialize() override { return m_interfaceObject->initialize(); }
    bool_t isInitialized() const override { return m_interfaceObject->isInitialized(); }
    void deinitialize() override { m_interfaceObject->deinitialize(); }
    ILevelReserved* getTextParserReserved() const override { return m_interfaceObject->getTextParserReserved(); }
};

using WTextParser = TextParserFacade<ITextParser>;

} // namespace zyr
