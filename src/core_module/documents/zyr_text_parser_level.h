/// The level that all parsers of texts share.
#pragma once

#include "core_module/documents/zyr_reader_level.h"
#include "core_module/documents/zyr_text_parser_state.h"
#include "core_module/zyr_outer_layer.h"

namespace zyr {

/// The parser of a language overrides forget(), which lets go of its tree, and readInput(). A copy has the input and
/// the line terminators of its source, and nothing that was read.
template <class Interface> class TextParserLevel : public UnstoredLevel<ReaderLevel<Interface>, ITextParser> {
public:
    void setInputData(Array<unsigned char>* p_data) override {
        forget();
        ReaderLevel<Interface>::setInputData(p_data);
        if (m_parser.m_lexer) {
            m_parser.m_lexer->setInputData(p_data);
        }
    }

    bool_t parse() override {
        forget();
        if (this->getInputData() == nullptr) {
            ZYR_LOG_WARN("Unable to parse: there is no input");
            return 0;
        }
        return readInput();
    }
    ILexer* getLexer(bool_t p_addReference) const override { return m_parser.m_lexer.get(p_addReference); }
    void setLexer(ILexer* p_lexer) override { m_parser.setLexer(p_lexer); }
    bool_t initializeLexer() override { return m_parser.prepareLexer(this->getInputData()); }
    const List<String>& getLineTerminators() const override { return m_parser.m_lineTerminators; }
    bool_t isLineTerminator(const String& p_text, const String* p_additional) const override {
        return m_parser.isLineTerminator(p_text, p_additional);
    }
    void pushBackLineTerminator(const String& p_terminator) override {
        m_parser.m_lineTerminators.pushBack(p_terminator);
    }
    void clearLineTerminators() override { m_parser.m_lineTerminators.clear(); }
    const List<ParserLogMessage*>& getLogMessages() const override { return m_parser.m_messages; }
    void pushBackLogMessage(ParserLogMessage* p_message) override { m_parser.addMessage(p_message); }
    void clearLogMessages() override { m_parser.clearMessages(); }
    size_t getCurrentTokenPos() const override { return m_parser.m_position; }
    size_t* getMutableCurrentTokenPos() override { return &m_parser.m_position; }
    void setCurrentTokenPos(size_t p_position) override { m_parser.m_position = p_position; }
    void skipLine(const String* p_additional) override {
        m_parser.skipLine(*getOuterLayer<ITextParser>(this), p_additional);
    }
    const Array<Token>& getTokens() const override { return m_parser.m_tokens; }
    const Token* getTokenByPosition(size_t p_position) const override { return m_parser.getToken(p_position); }
    const Token* getCurrentToken() const override { return m_parser.getToken(m_parser.m_position); }
    bool_t initialize() override {
        m_parser.m_initialized = m_parser.makeLexer() && getOuterLayer<ITextParser>(this)->initializeLexer();
        return m_parser.m_initialized;
    }
    bool_t isInitialized() const override { return m_parser.m_initialized; }
    void deinitialize() override {
        forget();
        m_parser.m_lexer.clear();
        m_parser.m_initialized = 0;
    }
    ILevelReserved* getTextParserReserved() const override { return &m_textParserReserved; }

    void init_This() { m_parser.reset(); }
    void release_This() { forget(); }
    void copy_This(const ITextParser* p_src) { m_parser.m_lineTerminators = p_src->getLineTerminators(); }

protected:
    virtual void forget() { m_parser.forget(); }
    /// Reads the input, which is there.
    virtual bool_t readInput() {
        // A class that extends the parser may answer without this level's part of the start.
        return (m_parser.m_initialized || getOuterLayer<ITextParser>(this)->initialize()) && m_parser.makeLexer() &&
               m_parser.readTokens(this->getInputData());
    }

    TextParserState m_parser;

private:
    mutable LevelReserved<TextParserLevel> m_textParserReserved{this};
};

using TextParser = Implementation<TextParserLevel<ITextParser>>;

} // namespace zyr
