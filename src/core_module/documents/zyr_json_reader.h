/// The working half of the JSON parser.
#pragma once

#include "core_module/documents/zyr_document_text.h"
#include "core_module/documents/zyr_text_storage.h"
#include "zyr_common/documents/zyr_json_element.h"

namespace zyr {

/// Reads one document. See IJsonParser for what becomes of it.
class JsonReader {
public:
    static constexpr size_t MAX_DEPTH = 1000;

    JsonReader(DocumentText& p_text, TextStorage& p_storage) : m_text(p_text), m_storage(p_storage), m_depth(0) {}

    /// The root, which the caller owns. Null when the text has a fault.
    JsonElement* read();

private:
    bool readValue(JsonElement& p_element);
    bool readObject(JsonElement& p_element);
    bool readMember(JsonElement& p_element);
    bool readArray(JsonElement& p_element);
    bool readScalar(WrappedString& p_scalar);
    bool readString(WrappedString& p_text);
    bool decodeString(const char* p_begin, WrappedString& p_text);
    bool decodeEscape(char*& p_out);
    bool readCodeUnit(uint32_t& p_unit);
    bool isAtContainer() const { return !m_text.isAtEnd() && (*m_text.m_current == '{' || *m_text.m_current == '['); }
    /// What is wrong where something else should stand.
    bool failHere() { return m_text.fail(m_text.isAtEnd() ? "Unexpected end" : "Unexpected character"); }

    DocumentText& m_text;
    TextStorage& m_storage;
    size_t m_depth;
};

} // namespace zyr
