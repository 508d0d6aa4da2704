/// The lexer's class.
#pragma once

#include "core_module/documents/zyr_token_reader.h"
#include "zyr_common/documents/zyr_lexer.h"
#include "zyr_common/implementation/zyr_implementation.h"

namespace zyr {

/// A copy takes over the words and the input, which it reads from the beginning. The types of literals can't be asked
/// for, so it has the two first ones. A lexer has no fields in a stream.
class LexerLevel : public UnstoredLevel<ObjectLevel<ILexer>, ILexer> {
public:
    using Words = WordTable::Words;

    const Words* getKeywords() const override { return &m_reader.m_keywords.get(); }
    void pushBackKeywords(const String& p_words) override { m_reader.m_keywords.addAll(p_words); }
    void setKeywords(const Words& p_words) override { m_reader.m_keywords.set(p_words); }
    void clearKeywords() override { m_reader.m_keywords.clear(); }
    const Words* getPunctuators() const override { return &m_reader.m_punctuators.get(); }
    void pushBackPunctuators(const String& p_words) override { m_reader.m_punctuators.addAll(p_words); }
    void setPunctuators(const Words& p_words) override { m_reader.m_punctuators.set(p_words); }
    void clearPunctuators() override { m_reader.m_punctuators.clear(); }
    const Words* getFillers() const override { return &m_reader.m_fillers.get(); }
    void pushBackFiller(const String& p_filler) override { m_reader.m_fillers.add(p_filler); }
    void setFillers(const Words& p_fillers) override { m_reader.m_fillers.set(p_fillers); }
    void clearFillers() override { m_reader.m_fillers.clear(); }
    const String& getInlineCommentWord() const override { return m_reader.m_inlineCommentWord; }
    void setInlineCommentWord(const String& p_word) override { m_reader.m_inlineCommentWord = p_word; }
    const String& getBeginCommentWord() const override { return m_reader.m_beginCommentWord; }
    void setBeginCommentWord(const String& p_word) override { m_reader.m_beginCommentWord = p_word; }
    const String& getEndCommentWord() const override { return m_reader.m_endCommentWord; }
    void setEndCommentWord(const String& p_word) override { m_reader.m_endCommentWord = p_word; }
    Array<unsigned char>* getInputData() const override { return m_reader.getInput(); }
    void setInputData(Array<unsigned char>* p_data) override { m_reader.setInput(p_data); }
    void pushBackLiteralType(const LiteralTypeDescriptor& p_type) override { m_reader.addLiteralType(p_type); }
    void clearLiteralTypes() override { m_reader.clearLiteralTypes(); }
    bool_t readToken(Token& p_token) override;
    ILevelReserved* getLexerReserved() const override { return &m_lexerReserved; }

    void init_This() { m_reader.clear(); }
    void release_This() {}
    void copy_This(const ILexer* p_src);

private:
    TokenReader m_reader;
    mutable LevelReserved<LexerLevel> m_lexerReserved{this};
};

using Lexer = Implementation<LexerLevel>;

} // namespace zyr
