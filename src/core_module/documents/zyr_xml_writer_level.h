/// The class of the XML writer.
#pragma once

#include "core_module/documents/zyr_writer_level.h"
#include "zyr_common/documents/zyr_xml_writer.h"

namespace zyr {

class XmlWriterLevel : public UnstoredLevel<TextWriterLevel<IXmlWriter>, IXmlWriter> {
public:
    XmlWriterLevel() { XmlWriterLevel::init_This(); }

    void setOutputData(Array<unsigned char>* p_data) override;

    bool_t beginTag(const String& p_name, bool_t p_processingInstruction) override;
    bool_t addProperty(const String& p_name, const String& p_value) override;
    bool_t addNumberContent(const String& p_number, bool_t p_separate) override;
    bool_t addStringContent(const String& p_text, bool_t p_cdata, const char* p_lineEnd) override;
    bool_t addSpecialCharacters(const String& p_characters) override;
    bool_t endTag(bool_t p_processingInstruction) override;
    ILevelReserved* getXmlWriterReserved() const override { return &m_xmlWriterReserved; }

    void init_This();
    void release_This() {}
    void copy_This(const IXmlWriter*) {}

private:
    struct Level {
        String m_name;
        bool m_instruction = false;
        bool m_open = true; ///< the tag can still take attributes
        bool m_hasChildren = false;
        bool m_hasContent = false;
    };

    Level* getTop() { return m_levels.isEmpty() ? nullptr : &m_levels[m_levels.getSize() - 1]; }
    bool isContentPlace();
    bool finishContent();
    void addLineEnd();
    void addText(const String& p_text, bool p_attribute, const char* p_lineEnd);
    void addCharacterData(const String& p_text, const char* p_lineEnd);
    bool commit();

    Array<Level> m_levels;
    /// The attributes of the tag that is open.
    List<String> m_attributes;
    bool m_hasRoot;
    bool m_hasOutput;
    /// What one operation writes: all of it or nothing.
    String m_piece;
    mutable LevelReserved<XmlWriterLevel> m_xmlWriterReserved{this};
};

using XmlWriter = Implementation<XmlWriterLevel>;

} // namespace zyr
