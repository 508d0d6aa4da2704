#include "core_module/documents/zyr_text_parser_state.h"

#include "core_module/documents/zyr_document_text.h"
#include "zyr_common/memory/zyr_report.h"

namespace zyr {

void TextParserState::reset() {
    forget();
    m_lexer.clear();
    m_initialized = 0;
    m_lineTerminators.clear();
    m_lineTerminators.pushBack("\n");
    m_lineTerminators.pushBack("\r");
    m_lineTerminators.pushBack("\r\n");
}

void TextParserState::forget() {
    m_tokens.clear();
    m_position = 0;
    clearMessages();
}

bool TextParserState::makeLexer() {
    if (!m_lexer) {
        m_lexer = Ref<ILexer>::adopt(zyr_createObject<ILexer>());
    }
    return static_cast<bool>(m_lexer);
}

void TextParserState::setLexer(ILexer* p_lexer) {
    m_lexer = Ref<ILexer>::share(p_lexer);
    if (p_lexer == nullptr) {
        m_initialized = 0;
    }
}

bool TextParserState::prepareLexer(Array<unsigned char>* p_input) {
    if (!m_lexer) {
        return false;
    }
    m_lexer->pushBackFiller(" ");
    m_lexer->pushBackFiller("\t");
    for (const String& terminator : m_lineTerminators) {
        m_lexer->pushBackFiller(terminator);
    }
    m_lexer->setInputData(p_input);
    return true;
}

bool TextParserState::readTokens(Array<unsigned char>* p_input) {
    // The lexer stands where the last reading ended, and may have come without an input.
    m_lexer->setInputData(p_input);
    m_tokens.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, ZYR_ALLOC_STEP_DOUBLE);
    Token token;
    while (m_lexer->readToken(token)) {
        m_tokens.pushBack(token);
    }
    if (token.m_text.getSize() == 0) {
        return true;
    }
    // The lexer has logged the line.
    DocumentText text;
    text.m_begin = token.m_cursor.m_begin;
    text.m_end = token.m_cursor.m_end;
    text.fail("Text that is no token", token.m_cursor.m_current);
    const Ref<ParserLogMessage> message = Ref<ParserLogMessage>::adopt(text.makeMessage());
    addMessage(message.get());
    m_tokens.clear();
    return false;
}

void TextParserState::skipLine(const ITextParser& p_parser, const String* p_additional) {
    if (m_position >= m_tokens.getSize()) {
        return;
    }
    const size_t line = m_tokens[m_position].m_cursor.m_line;
    for (; m_position < m_tokens.getSize(); ++m_position) {
        const Token& token = m_tokens[m_position];
        if (token.m_cursor.m_line != line) {
            return;
        }
        if (p_parser.isLineTerminator(String(token.m_text), p_additional)) {
            ++m_position;
            return;
        }
    }
}

bool TextParserState::isLineTerminator(const String& p_text, const String* p_additional) const {
    if (p_additional != nullptr && p_text == *p_additional) {
        return true;
    }
    for (const String& terminator : m_lineTerminators) {
        if (p_text == terminator) {
            return true;
        }
    }
    return false;
}

void TextParserState::addMessage(ParserLogMessage* p_message) {
    if (p_message != nullptr) {
        p_message->addRef();
        m_messages.pushBack(p_message);
    }
}

void TextParserState::report(ParserLogMessage* p_message) {
    const Ref<ParserLogMessage> message = Ref<ParserLogMessage>::adopt(p_message);
    ZYR_LOG_WARN("Line %zu, column %zu: %s", message->m_cursor.m_line, message->m_cursor.m_column,
                 message->m_text.getData());
    addMessage(message.get());
}

void TextParserState::clearMessages() {
    for (ParserLogMessage* message : m_messages) {
        message->release();
    }
    m_messages.clear();
}

} // namespace zyr
