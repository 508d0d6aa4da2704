/// The class of the JSON parser.
#pragma once

#include "core_module/documents/zyr_text_parser_level.h"
#include "core_module/documents/zyr_text_storage.h"
#include "zyr_common/documents/zyr_json_parser.h"

namespace zyr {

class JsonParserLevel : public UnstoredLevel<TextParserLevel<IJsonParser>, IJsonParser> {
public:
    bool_t initializeLexer() override;
    JsonElement* getElementTree() const override { return m_tree.get(); }
    ILevelReserved* getJsonParserReserved() const override { return &m_jsonParserReserved; }

    void init_This() {}
    void release_This() { forget(); }
    void copy_This(const IJsonParser*) {}

protected:
    void forget() override;
    bool_t readInput() override;

private:
    /// In front of the tree, which looks at it.
    TextStorage m_storage;
    Ref<JsonElement> m_tree;
    mutable LevelReserved<JsonParserLevel> m_jsonParserReserved{this};
};

using JsonParser = Implementation<JsonParserLevel>;

} // namespace zyr
