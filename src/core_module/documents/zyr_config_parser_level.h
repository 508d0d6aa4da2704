/// The class of the configuration parser.
#pragma once

#include "core_module/documents/zyr_text_parser_level.h"
#include "zyr_common/documents/zyr_config_parser.h"

namespace zyr {

class ConfigParserLevel : public UnstoredLevel<TextParserLevel<IConfigParser>, IConfigParser> {
public:
    ~ConfigParserLevel() override { clearSections(); }

    bool_t initializeLexer() override;
    const List<ConfigSection*>& getSections() const override { return m_sections; }
    ILevelReserved* getConfigParserReserved() const override { return &m_configParserReserved; }

    void init_This() {}
    void release_This() { forget(); }
    void copy_This(const IConfigParser*) {}

protected:
    void forget() override;
    bool_t readInput() override;

private:
    void clearSections();

    List<ConfigSection*> m_sections;
    mutable LevelReserved<ConfigParserLevel> m_configParserReserved{this};
};

using ConfigParser = Implementation<ConfigParserLevel>;

} // namespace zyr
