#include "storage/tree_dump.h"

#include "support/zyr_recording_serializer.h"
#include "zyr_common/serialization/zyr_single_objects.h"

#include <cstring>

namespace zyr::test {

namespace {

template <typename T> std::string showBits(T p_value) {
    static constexpr char DIGITS[] = "0123456789abcdef";
    unsigned char bytes[sizeof(T)];
    std::string text = "\"";
    memcpy(bytes, &p_value, sizeof(T));
    for (size_t i = sizeof(T); i-- > 0;) {
        text += {DIGITS[bytes[i] >> 4], DIGITS[bytes[i] & 15]};
    }
    return text + "\"";
}

/// Whether the bytes from the place on are one character of UTF-8; gives its size.
size_t getCharacterSize(const std::string& p_text, size_t p_place) {
    const auto byte = [&](size_t p_index) { return static_cast<unsigned char>(p_text[p_place + p_index]); };
    const size_t size = byte(0) < 0x80 ? 1 : byte(0) < 0xC2 ? 0 : byte(0) < 0xE0 ? 2 : byte(0) < 0xF0 ? 3 : 4;
    for (size_t i = 1; i < size; i++) {
        if (p_place + i >= p_text.size() || (byte(i) & 0xC0) != 0x80) {
            return 0;
        }
    }
    return size;
}

std::string showText(const String& p_text) {
    const std::string text(p_text.getData(), p_text.getLengthInBytes());
    std::string shown;
    std::string digits;
    bool isUTF8 = true;
    for (size_t i = 0; i < text.size(); i++) {
        char escape[8];
        snprintf(escape, sizeof(escape), "%02x", static_cast<unsigned char>(text[i]));
        digits += escape;
    }
    for (size_t i = 0; i < text.size() && isUTF8;) {
        const size_t size = getCharacterSize(text, i);
        isUTF8 = size != 0;
        if (size == 1 && (text[i] == '"' || text[i] == '\\' || static_cast<unsigned char>(text[i]) < 0x20)) {
            char escape[8];
            snprintf(escape, sizeof(escape), "\\u%04x", static_cast<unsigned char>(text[i]));
            shown += escape;
        } else {
            shown += text.substr(i, size);
        }
        i += size;
    }
    return isUTF8 ? "\"" + shown + "\"" : "{\"bytes\":\"" + digits + "\"}";
}

/// [number, word], or the number where it has no word.
std::string showWord(uint32_t p_value, EnumerationConverter p_converter) {
    String word;
    if (p_converter == nullptr || !p_converter(word, p_value, 0) || word.isEmpty()) {
        return std::to_string(p_value);
    }
    return "[" + std::to_string(p_value) + "," + showText(word) + "]";
}

template <typename T, typename Show> std::string showItems(uint32_t p_count, const T* p_items, Show p_show) {
    std::string text = "[";
    for (uint32_t i = 0; i < p_count; i++) {
        text += (i != 0 ? "," : "") + p_show(p_items[i]);
    }
    return text + "]";
}

/// Sees an object once, as a binary serializer does.
class TreeSerializer : public RecordingSerializer {
public:
    TreeSerializer() : RecordingSerializer(c_binary) {}

    std::string m_text;

    bool_t beginStructure(const String& p_name, bool_t) override { return open(p_name, "record", "["); }
    bool_t endStructure() override { return close("]"); }
    bool_t beginObject(const String& p_name, const String& p_className, const String& p_guidText) override {
        return open(p_name, "object",
                    "{\"class\":" + showText(p_className) + ",\"guid\":" + showText(p_guidText) + ",\"fields\":[");
    }
    bool_t endObject() override { return close("]}"); }
    bool_t beginArray(const String& p_name, uint32_t, uint32_t) override { return open(p_name, "records", "["); }
    bool_t endArray() override { return close("]"); }
    bool_t beginArrayElement(uint32_t, const String& p_typeName) override {
        separate();
        m_isNull = p_typeName.isEmpty();
        m_text += m_isNull ? "null" : "{\"type\":" + showText(p_typeName) + ",\"fields\":[";
        m_first = true;
        return 1;
    }
    bool_t endArrayElement() override {
        m_text += m_isNull ? "" : "]}";
        m_isNull = false;
        m_first = false;
        return 1;
    }
    bool_t writeNullObject(const String& p_name) override { return field(p_name, "object", "null"); }
    bool_t writeStringRef(const String& p_name, const String* p_value, bool_t, uint32_t) override {
        return field(p_name, "sharedtext", p_value != nullptr ? showText(*p_value) : "null");
    }
    bool_t writeBool(const String& p_name, bool_t p_value, bool_t, uint32_t) override {
        return field(p_name, "bool", p_value ? "true" : "false");
    }
    bool_t writeEnum(const String& p_name, uint32_t p_value, uint32_t, bool_t,
                     EnumerationConverter p_converter) override {
        return field(p_name, "enum", showWord(p_value, p_converter));
    }
    bool_t writeInt32(const String& p_name, int32_t p_value, uint32_t, bool_t, EnumerationConverter) override {
        return field(p_name, "int32", std::to_string(p_value));
    }
    bool_t writeUInt32(const String& p_name, uint32_t p_value, uint32_t, bool_t,
                       EnumerationConverter p_converter) override {
        return field(p_name, "uint32", showWord(p_value, p_converter));
    }
    bool_t writeInt64(const String& p_name, int64_t p_value, uint32_t, bool_t, EnumerationConverter) override {
        return field(p_name, "int64", std::to_string(p_value));
    }
    bool_t writeUInt64(const String& p_name, uint64_t p_value, uint32_t, bool_t, EnumerationConverter) override {
        return field(p_name, "uint64", std::to_string(p_value));
    }
    bool_t writeFloat(const String& p_name, float p_value, bool_t, uint32_t) override {
        return field(p_name, "float", showBits(p_value));
    }
    bool_t writeDouble(const String& p_name, double p_value, bool_t, uint32_t) override {
        return field(p_name, "double", showBits(p_value));
    }
    bool_t writeString(const String& p_name, const String& p_value, bool_t, uint32_t) override {
        return field(p_name, "text", showText(p_value));
    }
    bool_t writeStringArray(const String& p_name, uint32_t p_count, const String* p_items, bool_t, uint32_t) override {
        return field(p_name, "texts", showItems(p_count, p_items, &showText));
    }
    bool_t writeFloatArray(const String& p_name, uint32_t p_count, const float* p_items, bool_t, uint32_t) override {
        return field(p_name, "floats", showItems(p_count, p_items, &showBits<float>));
    }
    bool_t writeDoubleArray(const String& p_name, uint32_t p_count, const double* p_items, bool_t, uint32_t) override {
        return field(p_name, "doubles", showItems(p_count, p_items, &showBits<double>));
    }
    bool_t writeUInt32Array(const String& p_name, uint32_t p_count, const uint32_t* p_items, bool_t,
                            uint32_t) override {
        return field(p_name, "uint32s",
                     showItems(p_count, p_items, [](uint32_t p_item) { return std::to_string(p_item); }));
    }
    bool_t writeEnumArray(const String& p_name, uint32_t p_count, const uint32_t* p_items, bool_t,
                          EnumerationConverter p_converter) override {
        return field(p_name, "enums",
                     showItems(p_count, p_items, [&](uint32_t p_item) { return showWord(p_item, p_converter); }));
    }

private:
    void separate() {
        m_text += m_first ? "" : ",";
        m_first = false;
    }
    bool_t field(const String& p_name, const char* p_kind, const std::string& p_value) {
        separate();
        m_text += "[" + showText(p_name) + ",\"" + p_kind + "\"," + p_value + "]";
        return 1;
    }
    /// A field whose value follows.
    bool_t open(const String& p_name, const char* p_kind, const std::string& p_start) {
        separate();
        m_text += "[" + showText(p_name) + ",\"" + p_kind + "\"," + p_start;
        m_first = true;
        return 1;
    }
    bool_t close(const char* p_end) {
        m_text += p_end;
        m_text += "]";
        m_first = false;
        return 1;
    }

    bool m_first = true;
    bool m_isNull = false;
};

} // namespace

std::string dumpTree(IObject* p_object) {
    TreeSerializer serializer;
    serializer.writeSingleObject("fileObject", p_object);
    return serializer.m_text;
}

} // namespace zyr::test
