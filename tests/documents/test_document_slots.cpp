#include "support/zyr_slot_spy.h"
#include "zyr_common/documents/zyr_lexer.h"

#include <gtest/gtest.h>

namespace zyr {

TEST(LexerFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WLexer* facade = spy.makeFacade<WLexer>();
    ILexer* lexer = facade;
    spy.expectForwarded(lexer, &ILexer::getKeywords, 43);
    spy.expectForwarded(lexer, &ILexer::pushBackKeywords, 44);
    spy.expectForwarded(lexer, &ILexer::setKeywords, 45);
    spy.expectForwarded(lexer, &ILexer::clearKeywords, 46);
    spy.expectForwarded(lexer, &ILexer::getPunctuators, 47);
    spy.expectForwarded(lexer, &ILexer::pushBackPunctuators, 48);
    spy.expectForwarded(lexer, &ILexer::setPunctuators, 49);
    spy.expectForwarded(lexer, &ILexer::clearPunctuators, 50);
    spy.expectForwarded(lexer, &ILexer::getFillers, 51);
    spy.expectForwarded(lexer, &ILexer::pushBackFiller, 52);
    spy.expectForwarded(lexer, &ILexer::setFillers, 53);
    spy.expectForwarded(lexer, &ILexer::clearFillers, 54);
    spy.expectForwarded(lexer, &ILexer::getInlineCommentWord, 55);
    spy.expectForwarded(lexer, &ILexer::setInlineCommentWord, 56);
    spy.expectForwarded(lexer, &ILexer::getBeginCommentWord, 57);
    spy.expectForwarded(lexer, &ILexer::setBeginCommentWord, 58);
    spy.expectForwarded(lexer, &ILexer::getEndCommentWord, 59);
    spy.expectForwarded(lexer, &ILexer::setEndCommentWord, 60);
    spy.expectForwarded(lexer, &ILexer::getInputData, 61);
    spy.expectForwarded(lexer, &ILexer::setInputData, 62);
    spy.expectForwarded(lexer, &ILexer::pushBackLiteralType, 63);
    spy.expectForwarded(lexer, &ILexer::clearLiteralTypes, 64);
    spy.expectForwarded(lexer, &ILexer::readToken, 65);
    spy.expectForwarded(lexer, &ILexer::getLexerReserved, 66);
    facade->release();
}

} // namespace zyr
