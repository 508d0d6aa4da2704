#include "core_module/serializers/zyr_binary_heads.h"

namespace zyr {

namespace {

bool isVersion(const void* p_data, size_t p_size) {
    return p_size != 0 && *static_cast<const uint8_t*>(p_data) == c_binaryFormatVersion;
}

template <typename T> void restart(Array<T>& p_array) {
    p_array.clear();
    p_array.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, ZYR_ALLOC_STEP_DOUBLE);
}

} // namespace

bool RawHeads::begin(const void* p_data, size_t p_size, BinaryReader& p_fields) {
    const uint8_t* bytes = static_cast<const uint8_t*>(p_data);
    if (!isVersion(p_data, p_size)) {
        return false;
    }
    p_fields = BinaryReader(bytes + 1, bytes + p_size);
    return true;
}

bool RawHeads::readClass(BinaryReader& p_reader, ClassHead& p_head) const {
    return p_reader.readText(p_head.m_name) && p_reader.readText(p_head.m_guidText);
}

bool RawHeads::readType(BinaryReader& p_reader, ClassHead& p_head) {
    return p_reader.readText(p_head.m_name);
}

bool RawHeads::skipClass(BinaryReader& p_reader, bool& p_null) {
    const uint8_t* place = p_reader.m_place;
    if (!p_reader.skipText()) {
        return false;
    }
    p_null = *place == 1;
    return p_reader.skipText();
}

bool ZbfHeads::begin(const void* p_data, size_t p_size, BinaryReader& p_fields) {
    const uint8_t* bytes = static_cast<const uint8_t*>(p_data);
    uint64_t table = 0;
    constexpr size_t HEAD_SIZE = 1 + sizeof(table);
    if (!isVersion(p_data, p_size) || p_size < HEAD_SIZE) {
        return false;
    }
    memcpy(&table, bytes + 1, sizeof(table));
    if (table < HEAD_SIZE || table > p_size) {
        return false;
    }
    m_end = bytes + p_size;
    p_fields = BinaryReader(bytes + HEAD_SIZE, bytes + table);
    return readTable(BinaryReader(bytes + table, m_end));
}

void ZbfHeads::end() {
    m_structures.clear();
    m_fields.clear();
    m_classes.clear();
}

bool ZbfHeads::readTable(BinaryReader p_table) {
    restart(m_structures);
    restart(m_fields);
    restart(m_classes);
    uint64_t count = 0;
    if (!p_table.readCount(count, 2)) {
        return false;
    }
    for (uint64_t i = 0; i < count; i++) {
        if (!readStructure(p_table)) {
            return false;
        }
    }
    for (size_t i = 0; i < m_fields.getSize(); i++) {
        if (m_fields[i].m_structure >= count) {
            return false;
        }
    }
    uint64_t numOfClasses = 0;
    if (count == 0 || !p_table.readCount(numOfClasses, 2)) {
        return false;
    }
    for (uint64_t i = 0; i < numOfClasses; i++) {
        uint64_t structure = 0;
        if (!p_table.readNumber(structure) || structure >= count) {
            return false;
        }
        const uint8_t* guid = p_table.m_place;
        if (!p_table.skipText()) {
            return false;
        }
        const Class entry = {static_cast<uint32_t>(structure), {guid, static_cast<size_t>(p_table.m_place - guid)}};
        m_classes.pushBack(entry);
    }
    return p_table.isAtEnd();
}

bool ZbfHeads::readStructure(BinaryReader& p_table) {
    const uint8_t* name = p_table.m_place;
    uint64_t count = 0;
    if (!p_table.skipText()) {
        return false;
    }
    const Structure structure = {
        {name, static_cast<size_t>(p_table.m_place - name)}, static_cast<uint32_t>(m_fields.getSize()), 0};
    if (!p_table.readCount(count, 2)) {
        return false;
    }
    m_structures.pushBack(structure);
    m_structures[m_structures.getSize() - 1].m_numOfFields = static_cast<uint32_t>(count);
    for (uint64_t i = 0; i < count; i++) {
        uint64_t code = 0;
        uint64_t kind = 0;
        uint64_t record = 0;
        // Field names are written as they are, also one that looks like a GUID; see appendText for the code.
        if (!p_table.readNumber(code) || code == 0 || code - 1 > p_table.getRemaining()) {
            return false;
        }
        Head field;
        field.m_name = reinterpret_cast<const char*>(p_table.m_place);
        field.m_nameLength = code - 1;
        field.m_pattern = NamePattern(field.m_name, field.m_nameLength);
        if (!p_table.skip(code - 1) || !p_table.readNumber(kind) || !isFieldKind(kind)) {
            return false;
        }
        field.m_kind = static_cast<FieldKind>(kind);
        if (field.m_kind == FieldKind::RECORD && (!p_table.readNumber(record) || record > UINT32_MAX)) {
            return false;
        }
        field.m_structure = static_cast<uint32_t>(record);
        m_fields.pushBack(field);
    }
    return true;
}

bool ZbfHeads::setText(const Text& p_source, String& p_text) const {
    BinaryReader reader(p_source.m_place, p_source.m_place + p_source.m_length);
    return reader.readText(p_text);
}

bool ZbfHeads::readClass(BinaryReader& p_reader, ClassHead& p_head) const {
    uint64_t number = 0;
    if (!p_reader.readNumber(number) || number > m_classes.getSize()) {
        return false;
    }
    if (number == 0) {
        p_head.m_name.clear();
        p_head.m_guidText.clear();
        return true;
    }
    const Class& entry = m_classes[number - 1];
    p_head.m_structure = entry.m_structure;
    return setText(m_structures[entry.m_structure].m_name, p_head.m_name) && setText(entry.m_guid, p_head.m_guidText);
}

bool ZbfHeads::readType(BinaryReader& p_reader, ClassHead& p_head) {
    uint64_t number = 0;
    if (!p_reader.readNumber(number) || number > m_structures.getSize()) {
        return false;
    }
    if (number == p_head.m_number && number != 0) {
        return true;
    }
    p_head.m_number = number;
    if (number == 0) {
        p_head.m_name.clear();
        return true;
    }
    p_head.m_structure = static_cast<uint32_t>(number - 1);
    return setText(m_structures[p_head.m_structure].m_name, p_head.m_name);
}

bool ZbfHeads::skipClass(BinaryReader& p_reader, bool& p_null) {
    uint64_t number = 0;
    if (!p_reader.readNumber(number)) {
        return false;
    }
    p_null = number == 0;
    return true;
}

} // namespace zyr
