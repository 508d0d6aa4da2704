#include "core_module/documents/zyr_lexer_level.h"

#include "core_module/zyr_core_class.h"

namespace zyr {

bool_t LexerLevel::readToken(Token& p_token) {
    const char* reason = nullptr;
    const bool_t done = m_reader.read(p_token, reason);
    if (reason != nullptr) {
        ZYR_LOG_WARN("%s at line %zu, column %zu, byte 0x%02X", reason, p_token.m_cursor.m_line,
                     p_token.m_cursor.m_column, static_cast<unsigned char>(*p_token.m_cursor.m_current));
    }
    return done;
}

void LexerLevel::copy_This(const ILexer* p_src) {
    setKeywords(*p_src->getKeywords());
    setPunctuators(*p_src->getPunctuators());
    setFillers(*p_src->getFillers());
    setInlineCommentWord(p_src->getInlineCommentWord());
    setBeginCommentWord(p_src->getBeginCommentWord());
    setEndCommentWord(p_src->getEndCommentWord());
    setInputData(p_src->getInputData());
}

ZYR_DEFINE_CORE_CLASS(Lexer)

} // namespace zyr
