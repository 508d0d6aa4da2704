// The lexer on any text: it ends, every token lies inside the text, and tokens come in the order of the text.
// The first byte chooses the words: bit 0 keywords, bit 1 punctuators, bit 2 fillers, bits 3 and 4 comments.
#include "zyr_fuzz.h"

#include "zyr_common/documents/zyr_lexer.h"
#include "zyr_common/object/zyr_factories.h"

using namespace zyr;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* p_data, size_t p_size) {
    if (p_size == 0) {
        return 0;
    }
    zyr_fuzz::getFramework(true);
    const auto lexer = Ref<ILexer>::adopt(zyr_createObject<ILexer>());
    const uint8_t words = p_data[0];
    if (words & 1) {
        lexer->pushBackKeywords("M m let letter");
    }
    if (words & 2) {
        lexer->pushBackPunctuators("- -> , ( ) /");
    }
    if (words & 4) {
        lexer->pushBackFiller(" ");
        lexer->pushBackFiller("\r\n");
        lexer->pushBackFiller("\n");
    }
    if (words & 8) {
        lexer->setInlineCommentWord("//");
    }
    if (words & 16) {
        lexer->setBeginCommentWord("/*");
        lexer->setEndCommentWord("*/");
    }
    Array<unsigned char> text;
    text.pushBackRange(p_data + 1, p_size - 1);
    lexer->setInputData(&text);
    Token token;
    const char* end = reinterpret_cast<const char*>(text.getData());
    while (lexer->readToken(token)) {
        const char* begin = token.m_text.getData();
        zyr_fuzz::require(token.m_text.getSize() != 0, "a token has a text");
        zyr_fuzz::require(begin >= end, "a token begins behind the one before");
        end = begin + token.m_text.getSize();
        zyr_fuzz::require(end <= reinterpret_cast<const char*>(text.getData()) + text.getSize(),
                          "a token ends inside the text");
    }
    return 0;
}
