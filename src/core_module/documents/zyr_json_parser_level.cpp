#include "core_module/documents/zyr_json_parser_level.h"

#include "core_module/documents/zyr_json_reader.h"
#include "core_module/zyr_core_class.h"

namespace zyr {

bool_t JsonParserLevel::initializeLexer() {
    if (!TextParserLevel::initializeLexer()) {
        return 0;
    }
    ILexer* lexer = getLexer(0);
    lexer->pushBackPunctuators("{ } [ ] : , -");
    lexer->pushBackKeywords("true false null");
    lexer->pushBackLiteralType(LiteralTypeDescriptor::makeString("\"", "\"", "\\"));
    return 1;
}

void JsonParserLevel::forget() {
    TextParserLevel::forget();
    m_tree.clear();
    m_storage.clear();
}

bool_t JsonParserLevel::readInput() {
    DocumentText text(getInputData());
    m_tree = Ref<JsonElement>::adopt(JsonReader(text, m_storage).read());
    if (!m_tree) {
        m_storage.clear();
        m_parser.report(text.makeMessage());
    }
    return static_cast<bool>(m_tree);
}

ZYR_DEFINE_CORE_CLASS(JsonParser)

} // namespace zyr
