// The trees of the two text formats.
#include "host/zyr_saved_reader.h"

#include "core_module/serializers/zyr_json_input.h"
#include "core_module/serializers/zyr_text_bytes.h"
#include "core_module/serializers/zyr_xml_input.h"
#include "core_module/serializers/zyr_xml_output.h"
#include "core_module/zyr_text_place.h"

namespace zyr::host {

namespace {

int getHexDigit(char p_character) {
    return p_character >= '0' && p_character <= '9'   ? p_character - '0'
           : p_character >= 'a' && p_character <= 'f' ? p_character - 'a' + 10
                                                      : -1;
}

/// What differs between the formats beyond what their deserializers ask.
struct JsonForm {
    using Input = JsonInput;

    static std::string getName(const TextTree& p_tree, const TextNode& p_node) {
        String key;
        const char* text = p_tree.getText() + p_node.m_key;
        if (p_node.has(KEY_ESCAPED)) {
            decodeJsonText(text, p_node.m_keySize, key);
        } else {
            key.assignUTF8SubString(text, p_node.m_keySize);
        }
        const std::string name(key.getData(), key.getLengthInBytes());
        return name.compare(0, 2, "__") == 0 ? name.substr(1) : name;
    }
    static bool isList(const TextTree&, const TextNode& p_node) { return p_node.m_kind == TextNodeKind::ITEMS; }
    static bool isText(const TextTree&, uint32_t, const TextNode& p_node) {
        return p_node.m_kind == TextNodeKind::TEXT;
    }
};

struct XmlForm {
    using Input = XmlInput;

    static std::string getName(const TextTree& p_tree, const TextNode& p_node) {
        const std::string_view key(p_tree.getText() + p_node.m_key, p_node.m_keySize);
        std::string name;
        for (size_t i = 0; i < key.size(); i++) {
            const int high = key[i] == '_' && i + 2 < key.size() ? getHexDigit(key[i + 1]) : -1;
            const int low = high >= 0 ? getHexDigit(key[i + 2]) : -1;
            name += low >= 0 ? static_cast<char>(high << 4 | low) : key[i];
            i += low >= 0 ? 2 : 0;
        }
        return name == "_" ? "" : name;
    }
    /// An element of nothing but items, and at least one of them.
    static bool isList(const TextTree& p_tree, const TextNode& p_node) {
        const uint32_t index = static_cast<uint32_t>(&p_node - &p_tree[0]);
        for (uint32_t i = index + 1; i < p_node.m_next; i = p_tree[i].m_next) {
            if (!XmlInput::isItem(p_tree, p_tree[i])) {
                return false;
            }
        }
        return p_node.m_next > index + 1;
    }
    static bool isText(const TextTree&, uint32_t p_index, const TextNode& p_node) {
        return p_node.m_kind == TextNodeKind::TEXT || p_node.m_next == p_index + 1;
    }
};

template <class Form> class TextTreeReader {
public:
    using Input = typename Form::Input;

    explicit TextTreeReader(SavedReading& p_reading) : m_reading(p_reading), m_saved(p_reading.getTree()) {}

    void read(std::string_view p_document) {
        TextScanError error;
        if (!Input::scan(p_document.data(), p_document.size(), m_tree, error)) {
            const TextPlace place(p_document.data(), error.m_place != nullptr ? error.m_place : p_document.data());
            m_reading.report("line " + std::to_string(place.m_line) + ", column " + std::to_string(place.m_column) +
                             ": " + (error.m_reason != nullptr ? error.m_reason : "there is no memory for it"));
            return;
        }
        readMembers(0, m_tree.getSize());
    }

private:
    void readMembers(uint32_t p_begin, uint32_t p_end) {
        for (uint32_t i = p_begin; i < p_end; i = m_tree[i].m_next) {
            if (!isMark(i)) {
                readNode(i, Form::getName(m_tree, m_tree[i]), UINT64_MAX, "");
            }
        }
    }

    /// Whether it is a member of the format itself, in front of the fields.
    bool isMark(uint32_t p_index) const {
        static const String& classKey = *new String(Input::c_classKey);
        static const String& guidKey = *new String(Input::c_guidKey);
        static const String& typeKey = *new String(Input::c_typeKey);
        const TextNode& node = m_tree[p_index];
        return Input::hasKey(m_tree, node, classKey) || Input::hasKey(m_tree, node, guidKey) ||
               Input::hasKey(m_tree, node, typeKey);
    }
    /// The text of such a member; false without it. It may stand anywhere in its group.
    bool readMark(uint32_t p_group, const char* p_key, std::string& p_text) const {
        const String key(p_key);
        for (uint32_t i = p_group + 1; i < m_tree[p_group].m_next; i = m_tree[i].m_next) {
            if (Input::hasKey(m_tree, m_tree[i], key) && Input::isScalar(m_tree, i)) {
                String text;
                Input::decode(m_tree, m_tree[i], text);
                p_text.assign(text.getData(), text.getLengthInBytes());
                return true;
            }
        }
        return false;
    }

    void readNode(uint32_t p_index, const std::string& p_name, uint64_t p_place, const std::string& p_type) {
        const TextNode& node = m_tree[p_index];
        const uint32_t saved = m_saved.add(SavedKind::RECORD, p_name);
        if (saved == c_noSavedNode) {
            return;
        }
        if (Input::isNull(m_tree, p_index)) {
            m_saved.setKind(saved, SavedKind::NULL_VALUE);
        } else if (Form::isText(m_tree, p_index, node) && (p_type.empty() || node.m_kind == TextNodeKind::TEXT)) {
            readText(node, saved);
        } else if (node.m_kind == TextNodeKind::WORD || node.m_kind == TextNodeKind::NUMBERS) {
            readWord(node, saved);
        } else {
            readGroup(p_index, saved, p_place, p_type);
        }
    }

    void readText(const TextNode& p_node, uint32_t p_saved) {
        const char* text = m_tree.getText() + p_node.m_value;
        m_saved.setKind(p_saved, SavedKind::TEXT);
        if (!p_node.has(VALUE_ESCAPED) && !hasBytesMark(text, p_node.m_valueSize)) {
            m_saved.setBytes(p_saved, text, p_node.m_valueSize);
            return;
        }
        String decoded;
        Input::decode(m_tree, p_node, decoded);
        const std::string& kept = m_saved.keep(std::string(decoded.getData(), decoded.getLengthInBytes()));
        m_saved.setBytes(p_saved, kept.data(), kept.size());
    }

    void readWord(const TextNode& p_node, uint32_t p_saved) {
        const char* text = m_tree.getText() + p_node.m_value;
        if (p_node.m_kind == TextNodeKind::WORD && (*text == 't' || *text == 'f')) {
            m_saved.setKind(p_saved, SavedKind::BOOL);
            m_saved.setNumber(p_saved, *text == 't');
            return;
        }
        m_saved.setKind(p_saved, p_node.m_kind == TextNodeKind::WORD ? SavedKind::NUMBER : SavedKind::NUMBERS);
        m_saved.setBytes(p_saved, text, p_node.m_valueSize);
    }

    void readGroup(uint32_t p_index, uint32_t p_saved, uint64_t p_place, const std::string& p_type) {
        const TextNode& node = m_tree[p_index];
        const bool list = Form::isList(m_tree, node);
        std::string name = p_type;
        std::string guid;
        readMark(p_index, Input::c_guidKey, guid);
        if (list) {
            m_saved.setKind(p_saved, SavedKind::LIST);
        } else if (readMark(p_index, Input::c_classKey, name) || !guid.empty()) {
            m_saved.setKind(p_saved, SavedKind::OBJECT);
        }
        m_saved.setClass(p_saved, name, guid);
        if (!m_reading.enter(p_saved, p_place)) {
            return;
        }
        if (list) {
            readItems(p_index);
        } else {
            readMembers(p_index + 1, node.m_next);
        }
        m_reading.leave(p_saved);
    }

    void readItems(uint32_t p_index) {
        std::string type;
        uint64_t count = 0;
        for (uint32_t i = p_index + 1; i < m_tree[p_index].m_next; i = m_tree[i].m_next) {
            readMark(i, Input::c_typeKey, type);
            readNode(i, "", count++, type);
        }
    }

    SavedReading& m_reading;
    SavedTree& m_saved;
    TextTree m_tree;
};

} // namespace

void readSavedXml(SavedReading& p_reading, std::string_view p_document) {
    TextTreeReader<XmlForm>(p_reading).read(p_document);
}

void readSavedJson(SavedReading& p_reading, std::string_view p_document) {
    TextTreeReader<JsonForm>(p_reading).read(p_document);
}

} // namespace zyr::host
