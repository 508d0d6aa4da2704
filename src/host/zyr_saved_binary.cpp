// The trees of the two binary formats.
#include "host/zyr_saved_reader.h"

#include "core_module/serializers/zyr_binary_heads.h"

namespace zyr::host {

namespace {

std::string_view toView(const String& p_text) {
    return {p_text.getData(), p_text.getLengthInBytes()};
}

template <class Heads> class BinaryTreeReader {
public:
    explicit BinaryTreeReader(SavedReading& p_reading) : m_reading(p_reading), m_tree(p_reading.getTree()) {}

    void read(std::string_view p_payload) {
        BinaryReader fields;
        if (!m_heads.begin(p_payload.data(), p_payload.size(), fields)) {
            m_reading.report(p_payload[0] != c_binaryFormatVersion ? "its version is not known here"
                                                                   : "the table of structures cannot be read");
            return;
        }
        readFields(fields, 0);
    }

private:
    void readFields(BinaryReader p_reader, uint32_t p_structure) {
        const auto fields = m_heads.getFields(p_structure);
        while (!p_reader.isAtEnd()) {
            const uint8_t* place = p_reader.m_place;
            const FieldHead* found = m_heads.readField(p_reader, fields);
            if (found == nullptr) {
                m_reading.reportAt(place, "there is no field that can be read");
                return;
            }
            const FieldHead head = *found;
            const uint32_t node = m_tree.add(static_cast<SavedKind>(head.m_kind), {head.m_name, head.m_nameLength});
            if (node == c_noSavedNode || !readValue(p_reader, head, node)) {
                const std::string name(head.m_name, head.m_nameLength);
                m_reading.reportAt(place, SavedPath::makeName(name) + " cannot be read");
                m_tree.cut(node);
                return;
            }
        }
    }

    bool readValue(BinaryReader& p_reader, const FieldHead& p_head, uint32_t p_node) {
        BinaryReader part;
        ClassHead entry;
        switch (p_head.m_kind) {
        case FieldKind::RECORD:
            return p_reader.readPart(part) && readGroup(part, p_head.m_structure, p_node, UINT64_MAX);
        case FieldKind::OBJECT:
            if (!m_heads.readClass(p_reader, entry)) {
                return false;
            }
            if (entry.m_name.isEmpty()) {
                m_tree.setKind(p_node, SavedKind::NULL_VALUE);
                return true;
            }
            m_tree.setClass(p_node, std::string(toView(entry.m_name)), std::string(toView(entry.m_guidText)));
            return p_reader.readPart(part) && readGroup(part, entry.m_structure, p_node, UINT64_MAX);
        case FieldKind::RECORD_ARRAY:
            return p_reader.readPart(part) && readElements(part, p_node);
        case FieldKind::STRING:
            return readText(p_reader, p_node);
        case FieldKind::STRING_REF:
            return readSharedText(p_reader, p_node);
        default:
            return readPlain(p_reader, p_head.m_kind, p_node);
        }
    }

    bool readGroup(const BinaryReader& p_part, uint32_t p_structure, uint32_t p_node, uint64_t p_index) {
        if (m_reading.enter(p_node, p_index)) {
            readFields(p_part, p_structure);
            m_reading.leave(p_node);
        }
        return true;
    }

    bool readElements(BinaryReader p_part, uint32_t p_node) {
        uint64_t count = 0;
        if (!p_part.readCount(count, 1) || !m_reading.enter(p_node, UINT64_MAX)) {
            return false;
        }
        for (uint64_t i = 0; i < count; i++) {
            const uint8_t* place = p_part.m_place;
            BinaryReader part;
            ClassHead type;
            const uint32_t node = m_tree.add(SavedKind::RECORD, "");
            if (node == c_noSavedNode || !m_heads.readType(p_part, type) ||
                (!type.m_name.isEmpty() && !p_part.readPart(part))) {
                m_reading.reportAt(place, "element " + std::to_string(i) + " cannot be read");
                m_tree.cut(node);
                break;
            }
            if (type.m_name.isEmpty()) {
                m_tree.setKind(node, SavedKind::NULL_VALUE);
                continue;
            }
            m_tree.setClass(node, std::string(toView(type.m_name)), "");
            readGroup(part, type.m_structure, node, i);
        }
        m_reading.leave(p_node);
        return true;
    }

    bool readText(BinaryReader& p_reader, uint32_t p_node) {
        const char* text = nullptr;
        size_t length = 0;
        char guid[36];
        if (!p_reader.readTextView(text, length, guid)) {
            return false;
        }
        if (text == guid) {
            text = m_tree.keep(std::string(guid, length)).data();
        }
        m_tree.setBytes(p_node, text, length);
        return true;
    }

    bool readSharedText(BinaryReader& p_reader, uint32_t p_node) {
        uint64_t present = 0;
        if (!p_reader.readNumber(present)) {
            return false;
        }
        if (present == 0) {
            m_tree.setKind(p_node, SavedKind::NULL_VALUE);
        }
        return present == 0 || readText(p_reader, p_node);
    }

    /// Numbers, and arrays that are kept as their bytes.
    bool readPlain(BinaryReader& p_reader, FieldKind p_kind, uint32_t p_node) {
        const uint8_t* begin = p_reader.m_place;
        uint64_t number = 0;
        switch (p_kind) {
        case FieldKind::FLOAT:
        case FieldKind::DOUBLE:
            if (!p_reader.readBytes(&number, p_kind == FieldKind::FLOAT ? sizeof(float) : sizeof(double))) {
                return false;
            }
            m_tree.setNumber(p_node, number);
            return true;
        case FieldKind::FLOAT_ARRAY:
        case FieldKind::DOUBLE_ARRAY:
        case FieldKind::UINT32_ARRAY: {
            BinaryReader count = p_reader;
            if (!p_reader.skipPlainValue(p_kind) || !count.readNumber(number)) {
                return false;
            }
            begin = count.m_place;
            break;
        }
        case FieldKind::STRING_ARRAY:
        case FieldKind::ENUM_ARRAY:
            if (!p_reader.skipPlainValue(p_kind)) {
                return false;
            }
            break;
        default:
            if (!p_reader.readNumber(number)) {
                return false;
            }
            m_tree.setNumber(p_node, number);
            return true;
        }
        m_tree.setBytes(p_node, begin, static_cast<size_t>(p_reader.m_place - begin));
        return true;
    }

    SavedReading& m_reading;
    SavedTree& m_tree;
    Heads m_heads;
};

} // namespace

void readSavedRaw(SavedReading& p_reading, std::string_view p_payload) {
    BinaryTreeReader<RawHeads>(p_reading).read(p_payload);
}

void readSavedZbf(SavedReading& p_reading, std::string_view p_payload) {
    BinaryTreeReader<ZbfHeads>(p_reading).read(p_payload);
}

} // namespace zyr::host
