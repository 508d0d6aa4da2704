#include "core_module/serializers/zyr_zbf_output.h"

#include "zyr_common/memory/zyr_memory.h"

namespace zyr {

namespace {

/// Behind the version: where the table begins, 8 bytes.
constexpr size_t TABLE_PLACE = c_payloadWrapperSize + 1;

template <typename T> void useDoubling(Array<T>& p_array) {
    p_array.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, ZYR_ALLOC_STEP_DOUBLE);
}

} // namespace

void ZbfOutput::clear() {
    for (size_t i = 0; i < m_structures.getSize(); i++) {
        delete m_structures[i];
    }
    for (size_t i = 0; i < m_classes.getSize(); i++) {
        delete m_classes[i];
    }
    for (size_t i = 0; i < m_texts.getSize(); i++) {
        zyr_free(m_texts[i]);
    }
    m_structures.clear();
    m_structureNumbers.clear();
    m_classes.clear();
    m_texts.clear();
    m_depth = 0;
    m_expected = nullptr;
    m_expectedEnd = nullptr;
    m_lastStructure = 0;
    m_lastClass = 0;
}

bool ZbfOutput::begin() {
    clear();
    useDoubling(m_structures);
    useDoubling(m_classes);
    useDoubling(m_texts);
    const uint8_t head[1 + sizeof(uint64_t)] = {c_binaryFormatVersion};
    m_frames[0] = {0, 0, 0, addStructure(String::getConstEmpty()), 0};
    expect(0);
    return beginPayload(m_buffer) && m_buffer.append(head, sizeof(head));
}

void ZbfOutput::end() {
    clear();
    m_buffer.close();
}

bool ZbfOutput::complete() {
    if (m_depth != 0 || !isBegun()) {
        return true;
    }
    const uint64_t place = m_buffer.getSize() - c_payloadWrapperSize;
    bool done = putNumber(m_structures.getSize());
    for (size_t i = 0; i < m_structures.getSize() && done; i++) {
        const Structure& structure = *m_structures[i];
        done = appendText(m_buffer, structure.m_name) && putNumber(structure.m_fields.getSize());
        for (size_t j = 0; j < structure.m_fields.getSize() && done; j++) {
            const Field& field = structure.m_fields[j];
            done = putNumber(field.m_name.getLength() + 1) &&
                   m_buffer.append(field.m_name.getName(), field.m_name.getLength()) &&
                   putNumber(static_cast<uint64_t>(field.m_kind)) &&
                   (field.m_kind != FieldKind::RECORD || putNumber(field.m_structure));
        }
    }
    done = done && putNumber(m_classes.getSize());
    for (size_t i = 0; i < m_classes.getSize() && done; i++) {
        done = putNumber(m_classes[i]->m_structure) && appendText(m_buffer, m_classes[i]->m_guidText);
    }
    if (done) {
        memcpy(const_cast<uint8_t*>(m_buffer.getData()) + TABLE_PLACE, &place, sizeof(place));
    }
    return done;
}

bool ZbfOutput::putNumber(uint64_t p_number) {
    uint8_t* target = m_buffer.reserve(10);
    if (target == nullptr) {
        return false;
    }
    m_buffer.commit(putBase128(target, p_number));
    return true;
}

const char* ZbfOutput::keepText(const String& p_text) {
    char* text = static_cast<char*>(zyr_malloc(p_text.getLengthInBytes() + 1));
    memcpy(text, p_text.getData(), p_text.getLengthInBytes());
    m_texts.pushBack(text);
    return text;
}

uint32_t ZbfOutput::addStructure(const String& p_typeName) {
    Structure* structure = new Structure;
    structure->m_name = p_typeName;
    useDoubling(structure->m_fields);
    m_structures.pushBack(structure);
    return static_cast<uint32_t>(m_structures.getSize() - 1);
}

uint32_t ZbfOutput::findStructure(const String& p_typeName) {
    if (!isBegun()) {
        return 0; // The buffer refuses what follows.
    }
    if (equalNames(m_structures[m_lastStructure]->m_name, p_typeName)) {
        return m_lastStructure;
    }
    const auto found = m_structureNumbers.find(p_typeName);
    if (found != m_structureNumbers.end()) {
        m_lastStructure = found->m_second;
    } else {
        m_lastStructure = addStructure(p_typeName);
        m_structureNumbers.pushBack(p_typeName, m_lastStructure, nullptr);
    }
    return m_lastStructure;
}

/// Adds a field to the structure of the innermost frame, and expects the one behind it.
uint32_t ZbfOutput::addField(const String& p_name, FieldKind p_kind) {
    Array<Field>& fields = getStructure().m_fields;
    const uint32_t number = static_cast<uint32_t>(fields.getSize());
    fields.pushBack({NamePattern(keepText(p_name), p_name.getLengthInBytes()), p_kind, number, 0, nullptr});
    expect(number + 1);
    return number;
}

uint32_t ZbfOutput::searchField(const String& p_name, FieldKind p_kind) {
    if (!isBegun()) {
        return 0; // The buffer refuses what follows.
    }
    Structure& structure = getStructure();
    const Field* fields = structure.m_fields.getData();
    const uint32_t count = static_cast<uint32_t>(structure.m_fields.getSize());
    uint32_t number = m_expected != m_expectedEnd ? m_expected->m_number : 0;
    for (uint32_t i = 0; i < count; i++) {
        if (fields[number].is(p_name, p_kind)) {
            expect(number + 1);
            return number;
        }
        number = number + 1 < count ? number + 1 : 0;
    }
    number = addField(p_name, p_kind);
    // A record without a declared type gets a structure of its own.
    if (p_kind == FieldKind::RECORD) {
        structure.m_fields[number].m_structure = addStructure(String::getConstEmpty());
    }
    return number;
}

bool ZbfOutput::beginStructure(const String& p_typeName) {
    return isBegun() && enter(0, findStructure(p_typeName));
}

bool ZbfOutput::endStructure() {
    if (m_depth == 0) {
        return false;
    }
    m_depth--;
    expect(m_frames[m_depth].m_next);
    return true;
}

bool ZbfOutput::declare(const String& p_name, FieldKind p_kind, const String& p_typeName) {
    if (!isBegun()) {
        return false;
    }
    if (p_kind != FieldKind::RECORD) {
        findField(p_name, p_kind);
        return true;
    }
    // The structure of a record is that of its type, not the one that findField would give an undeclared record.
    Structure& structure = getStructure();
    for (const Field& field : structure.m_fields) {
        if (field.is(p_name, p_kind)) {
            expect(field.m_number + 1);
            return true;
        }
    }
    const uint32_t number = addField(p_name, p_kind);
    structure.m_fields[number].m_structure = findStructure(p_typeName);
    return true;
}

bool ZbfOutput::enter(size_t p_minimum, uint32_t p_structure) {
    if (!m_frames.reach(m_depth + 1)) {
        return false;
    }
    m_frames[m_depth].m_next = static_cast<uint32_t>(m_expected - getStructure().m_fields.begin());
    Frame& frame = m_frames[++m_depth];
    frame.m_width = guessWidth(frame.m_width, p_minimum);
    frame.m_minimum = p_minimum;
    frame.m_structure = p_structure;
    expect(0);
    return m_buffer.beginLength(frame.m_width, frame.m_place);
}

bool ZbfOutput::leave() {
    if (m_depth == 0) {
        return false;
    }
    Frame& frame = m_frames[m_depth--];
    expect(m_frames[m_depth].m_next);
    return m_buffer.endLength(frame.m_place, frame.m_width, frame.m_minimum);
}

bool ZbfOutput::beginRecord(const String& p_name) {
    const uint32_t number = findField(p_name, FieldKind::RECORD);
    return putNumber(number) && enter(1, getStructure().m_fields[number].m_structure);
}

bool ZbfOutput::beginObject(const String& p_name, const String& p_className, const String& p_guidText) {
    if (!putNumber(findField(p_name, FieldKind::OBJECT))) {
        return false;
    }
    const uint32_t structure = findStructure(p_className);
    const auto isClass = [&](uint32_t p_number) {
        return m_classes[p_number]->m_structure == structure && m_classes[p_number]->m_guidText == p_guidText;
    };
    const uint32_t count = static_cast<uint32_t>(m_classes.getSize());
    uint32_t number = m_lastClass;
    if (number >= count || !isClass(number)) {
        for (number = 0; number < count && !isClass(number); number++) {
        }
    }
    if (number == count) {
        m_classes.pushBack(new Class{structure, p_guidText});
    }
    m_lastClass = number;
    return putNumber(number + 1) && enter(4, structure);
}

bool ZbfOutput::beginArray(const String& p_name) {
    return putNumber(findField(p_name, FieldKind::RECORD_ARRAY)) && enter(4, 0);
}

bool ZbfOutput::beginElement(const String& p_typeName) {
    const uint32_t structure = findStructure(p_typeName);
    return putNumber(structure + 1) && enter(1, structure);
}

} // namespace zyr
