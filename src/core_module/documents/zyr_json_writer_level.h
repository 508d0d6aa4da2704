/// The class of the JSON writer.
#pragma once

#include "core_module/documents/zyr_writer_level.h"
#include "zyr_common/documents/zyr_json_writer.h"

namespace zyr {

class JsonWriterLevel : public UnstoredLevel<TextWriterLevel<IJsonWriter>, IJsonWriter> {
public:
    JsonWriterLevel() { JsonWriterLevel::init_This(); }

    void setOutputData(Array<unsigned char>* p_data) override;

    bool_t beginTag(const String& p_name, bool_t p_array) override;
    bool_t endTag(bool_t p_array) override;
    bool_t addProperty(const String& p_name, const String& p_value, bool_t p_text, bool_t p_escape) override;
    bool_t addContent(const String& p_value, bool_t p_text) override;
    bool_t addSpecialCharacters(const String& p_characters) override;
    ILevelReserved* getJsonWriterReserved() const override { return &m_jsonWriterReserved; }

    void init_This();
    void release_This() {}
    void copy_This(const IJsonWriter*) {}

private:
    struct Level {
        bool m_array;
        bool m_empty;
    };

    Level* getTop() { return m_levels.isEmpty() ? nullptr : &m_levels[m_levels.getSize() - 1]; }
    void beginPiece(const String& p_name, bool p_escape);
    void addLineEnd();
    void addText(const String& p_text, bool p_escape);
    bool finishPiece();
    static bool isScalar(const String& p_text);

    Array<Level> m_levels;
    bool m_hasRoot;
    /// What one operation writes: all of it or nothing.
    String m_piece;
    mutable LevelReserved<JsonWriterLevel> m_jsonWriterReserved{this};
};

using JsonWriter = Implementation<JsonWriterLevel>;

} // namespace zyr
