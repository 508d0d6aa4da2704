#include "core_module/documents/zyr_config_parser_level.h"

#include "core_module/documents/zyr_config_reader.h"
#include "core_module/zyr_core_class.h"

namespace zyr {

bool_t ConfigParserLevel::initializeLexer() {
    if (!TextParserLevel::initializeLexer()) {
        return 0;
    }
    ILexer* lexer = getLexer(0);
    lexer->pushBackPunctuators("[ ] = -");
    lexer->pushBackLiteralType(LiteralTypeDescriptor::makeString("\"", "\"", "\\"));
    lexer->setInlineCommentWord("#");
    return 1;
}

void ConfigParserLevel::forget() {
    TextParserLevel::forget();
    clearSections();
}

bool_t ConfigParserLevel::readInput() {
    DocumentText text(getInputData());
    List<ParserLogMessage*> messages;
    const bool done = ConfigReader(text, m_sections, messages).read();
    for (ParserLogMessage* message : messages) {
        m_parser.report(message);
    }
    if (!done) {
        clearSections();
    }
    return done;
}

void ConfigParserLevel::clearSections() {
    for (ConfigSection* section : m_sections) {
        section->release();
    }
    m_sections.clear();
}

ZYR_DEFINE_CORE_CLASS(ConfigParser)

} // namespace zyr
