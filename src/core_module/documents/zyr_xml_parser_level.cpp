#include "core_module/documents/zyr_xml_parser_level.h"

#include "core_module/documents/zyr_xml_reader.h"
#include "core_module/zyr_core_class.h"

namespace zyr {

bool_t XmlParserLevel::initializeLexer() {
    if (!TextParserLevel::initializeLexer()) {
        return 0;
    }
    ILexer* lexer = getLexer(0);
    lexer->pushBackPunctuators("< > </ /> <? ?> = & ; :");
    lexer->pushBackLiteralType(LiteralTypeDescriptor::makeString("\"", "\"", ""));
    lexer->pushBackLiteralType(LiteralTypeDescriptor::makeString("'", "'", ""));
    lexer->setBeginCommentWord("<!--");
    lexer->setEndCommentWord("-->");
    return 1;
}

void XmlParserLevel::forget() {
    TextParserLevel::forget();
    m_tree.clear();
    m_storage.clear();
}

bool_t XmlParserLevel::readInput() {
    DocumentText text(getInputData());
    m_tree = Ref<XmlElement>::adopt(XmlReader(text, m_storage).read());
    if (!m_tree) {
        m_storage.clear();
        m_parser.report(text.makeMessage());
    }
    return static_cast<bool>(m_tree);
}

ZYR_DEFINE_CORE_CLASS(XmlParser)

} // namespace zyr
