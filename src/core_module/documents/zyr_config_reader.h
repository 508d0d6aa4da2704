/// The working half of the configuration parser.
#pragma once

#include "core_module/documents/zyr_document_text.h"
#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/documents/zyr_config_section.h"

namespace zyr {

/// Reads one document line by line. See IConfigParser for the language.
class ConfigReader {
public:
    static constexpr size_t MAX_MESSAGES = 10;

    /// The section, pairs and messages that are made go behind what the lists hold; each is owned by the caller.
    ConfigReader(DocumentText& p_text, List<ConfigSection*>& p_sections, List<ParserLogMessage*>& p_messages)
        : m_text(p_text), m_sections(p_sections), m_messages(p_messages), m_section(nullptr) {}

    /// False when a line has a fault.
    bool read();

private:
    bool readLine();
    bool readHeader();
    bool readPair();
    bool readQuotedValue(String& p_value);
    void readPlainValue(String& p_value);
    bool readLineEnd();
    void skipLineBlanks();
    ConfigSection* findSection(const String& p_name);

    DocumentText& m_text;
    List<ConfigSection*>& m_sections;
    List<ParserLogMessage*>& m_messages;
    HashMap<String, ConfigSection*> m_sectionsByName;
    ConfigSection* m_section;
};

} // namespace zyr
