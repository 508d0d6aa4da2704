/// The lexer: cuts a text into tokens for a parser.
///
/// It knows nothing of a language but the words that it is given:
///
///     ILexer* lexer = zyr_createObject<ILexer>();
///     lexer->pushBackFiller(" ");
///     lexer->pushBackPunctuators("( ) ,");
///     lexer->pushBackKeywords("move turn");
///     lexer->setInputData(&bytes);
///     for (Token token; lexer->readToken(token);) { ... }
///     lexer->release();
///
/// Made by the core module. One thread at a time.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/documents/zyr_token.h"
#include "zyr_common/object/zyr_object.h"

namespace zyr {

/// A new lexer has no words and no comments, and two types of literals: decimal integers and real numbers.
///
/// Reading skips fillers and comments first. Then the longest of what matches is the token: a keyword, a punctuator or
/// a literal, in this order among equals. A keyword matches as a prefix too, so "M10" is the keyword M and the number
/// 10. What is none of these and begins with an ASCII letter or "_" is an identifier, up to the first byte that is no
/// letter, digit or "_".
///
/// The maps hold words as keys; their values are not looked at, and an added word has 1.
class ILexer : public IObject {
public:
    /// The words added so far, owned by the lexer.
    virtual const HashMap<String, unsigned char>* getKeywords() const = 0;
    /// Adds the words of a text, which are separated by blanks.
    virtual void pushBackKeywords(const String& p_words) = 0;
    virtual void setKeywords(const HashMap<String, unsigned char>& p_words) = 0;
    virtual void clearKeywords() = 0;

    /// The punctuators added so far, owned by the lexer.
    virtual const HashMap<String, unsigned char>* getPunctuators() const = 0;
    /// Adds the words of a text, which are separated by blanks.
    virtual void pushBackPunctuators(const String& p_words) = 0;
    virtual void setPunctuators(const HashMap<String, unsigned char>& p_words) = 0;
    virtual void clearPunctuators() = 0;

    /// What separates tokens and is dropped. Nothing is, unless told.
    virtual const HashMap<String, unsigned char>* getFillers() const = 0;
    /// Adds the whole text as one filler.
    virtual void pushBackFiller(const String& p_filler) = 0;
    virtual void setFillers(const HashMap<String, unsigned char>& p_fillers) = 0;
    virtual void clearFillers() = 0;

    // Comments: from the inline word to the end of the line, and from the begin word to the next end word. An empty
    // word stands for no such comments.
    virtual const String& getInlineCommentWord() const = 0;
    virtual void setInlineCommentWord(const String& p_word) = 0;
    virtual const String& getBeginCommentWord() const = 0;
    virtual void setBeginCommentWord(const String& p_word) = 0;
    virtual const String& getEndCommentWord() const = 0;
    virtual void setEndCommentWord(const String& p_word) = 0;

    virtual Array<unsigned char>* getInputData() const = 0;
    /// Begins with the first byte of the text, which need not end in a zero. The array stays the caller's and must
    /// outlive the reading and the tokens. Null means no input.
    virtual void setInputData(Array<unsigned char>* p_data) = 0;

    virtual void pushBackLiteralType(const LiteralTypeDescriptor& p_type) = 0;
    /// Takes the two first types away as well.
    virtual void clearLiteralTypes() = 0;

    /// Reads the next token. False at the end of the input, where the token has no type and no text, and at input that
    /// is no token, which is logged: the token then has no type, the text that is wrong and its place. The lexer stays
    /// there, so every further call gives the same.
    virtual bool_t readToken(Token& p_token) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getLexerReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(Lexer, IObject, "2216972f-2164-400d-832a-bce7fdb7f030")

/// Forwards each operation to the Lexer of its module; what extends that class derives from this.
template <class Interface> class LexerFacade : public ObjectFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;
    using Words = HashMap<String, unsigned char>;

    const Words* getKeywords() const override { return m_interfaceObject->getKeywords(); }
    void pushBackKeywords(const String& p_words) override { m_interfaceObject->pushBackKeywords(p_words); }
    void setKeywords(const Words& p_words) override { m_interfaceObject->setKeywords(p_words); }
    void clearKeywords() override { m_interfaceObject->clearKeywords(); }
    const Words* getPunctuators() const override { return m_interfaceObject->getPunctuators(); }
    void pushBackPunctuators(const String& p_words) override { m_interfaceObject->pushBackPunctuators(p_words); }
    void setPunctuators(const Words& p_words) override { m_interfaceObject->setPunctuators(p_words); }
    void clearPunctuators() override { m_interfaceObject->clearPunctuators(); }
    const Words* getFillers() const override { return m_interfaceObject->getFillers(); }
    void pushBackFiller(const String& p_filler) override { m_interfaceObject->pushBackFiller(p_filler); }
    void setFillers(const Words& p_fillers) override { m_interfaceObject->setFillers(p_fillers); }
    void clearFillers() override { m_interfaceObject->clearFillers(); }
    const String& getInlineCommentWord() const override { return m_interfaceObject->getInlineCommentWord(); }
    void setInlineCommentWord(const String& p_word) override { m_interfaceObject->setInlineCommentWord(p_word); }
    const String& getBeginCommentWord() const override { return m_interfaceObject->getBeginCommentWord(); }
    void setBeginCommentWord(const String& p_word) override { m_interfaceObject->setBeginCommentWord(p_word); }
    const String& getEndCommentWord() const override { return m_interfaceObject->getEndCommentWord(); }
    void setEndCommentWord(const String& p_word) override { m_interfaceObject->setEndCommentWord(p_word); }
    Array<unsigned char>* getInputData() const override { return m_interfaceObject->getInputData(); }
    void setInputData(Array<unsigned char>* p_data) override { m_interfaceObject->setInputData(p_data); }
    void pushBackLiteralType(const LiteralTypeDescriptor& p_type) override {
        m_interfaceObject->pushBackLiteralType(p_type);
    }
    void clearLiteralTypes() override { m_interfaceObject->clearLiteralTypes(); }
    bool_t readToken(Token& p_token) override { return m_interfaceObject->readToken(p_token); }
    ILevelReserved* getLexerReserved() const override { return m_interfaceObject->getLexerReserved(); }
};

using WLexer = LexerFacade<ILexer>;

} // namespace zyr
