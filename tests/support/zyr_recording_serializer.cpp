#include "support/zyr_recording_serializer.h"

#include <sstream>
#include <type_traits>

namespace zyr::test {

namespace {

std::string toText(const String& p_text) {
    return p_text.getData();
}

template <typename T> std::string show(const T& p_value) {
    std::ostringstream text;
    text.precision(17);
    text << +p_value;
    return text.str();
}

/// The number with the word that the converter gives for it.
std::string showConverted(uint32_t p_value, EnumerationConverter p_converter) {
    String word;
    if (p_converter && p_converter(word, p_value, 0)) {
        return show(p_value) + "=" + toText(word);
    }
    return show(p_value) + (p_converter ? "=?" : "");
}

template <typename T> std::string showItems(uint32_t p_count, const T* p_items) {
    std::string text = "[";
    for (uint32_t i = 0; i < p_count; ++i) {
        text += (i ? "," : "") + show(p_items[i]);
    }
    return text + "]";
}

} // namespace

RecordingSerializer::RecordingSerializer(Kind p_kind) : m_kind(p_kind), m_path{&m_root} {
    m_className = p_kind == c_binary ? "RawSerializer" : "XmlSerializer";
}

bool_t RecordingSerializer::record(const std::string& p_call) {
    m_calls.push_back(p_call);
    size_t keyEnd = p_call.find(' ', p_call.find(' ') + 1);
    return !m_failures.count(p_call) && !m_failures.count(p_call.substr(0, keyEnd));
}

bool_t RecordingSerializer::recordDeclaration(const char* p_operation, const String& p_name, bool_t& p_result) {
    return p_result = record(std::string(p_operation) + " " + toText(p_name));
}

template <typename T>
bool_t RecordingSerializer::recordValue(const char* p_operation, const String& p_name, const T& p_value,
                                        bool_t p_attribute, const std::string& p_shown) {
    if (!record(std::string(p_operation) + " " + toText(p_name) + " " + p_shown +
                (p_attribute ? " attribute" : " element"))) {
        return 0;
    }
    m_path.back()->m_values[toText(p_name)] = p_value;
    return 1;
}

template <typename T>
bool_t RecordingSerializer::recordItems(const char* p_operation, const String& p_name, uint32_t p_count,
                                        const T* p_items, bool_t p_attribute, uint32_t p_rowLength) {
    return recordValue(p_operation, p_name, std::vector<T>(p_items, p_items + p_count), p_attribute,
                       showItems(p_count, p_items) + (p_rowLength ? " rows of " + show(p_rowLength) : ""));
}

bool_t RecordingSerializer::beginHeaderStructure(const String& p_typeName) {
    return record("beginHeaderStructure " + toText(p_typeName));
}

bool_t RecordingSerializer::writeHeaderField(const String& p_name, uint32_t p_marker, uint32_t p_element,
                                             const String& p_typeName) {
    std::ostringstream text;
    text << "writeHeaderField " << toText(p_name) << std::hex << std::uppercase << " " << p_marker << " " << p_element
         << " " << toText(p_typeName);
    return record(text.str());
}

bool_t RecordingSerializer::beginStructure(const String& p_name, bool_t p_formatHeader) {
    auto& group = m_path.back()->m_groups[toText(p_name)];
    if (!group) {
        group = std::make_shared<SerializedNode>();
    }
    m_path.push_back(group.get());
    return record("beginStructure " + toText(p_name) + " " + show(p_formatHeader));
}

bool_t RecordingSerializer::endStructure() {
    m_path.pop_back();
    return record("endStructure");
}

bool_t RecordingSerializer::beginObject(const String& p_name, const String& p_className, const String& p_guidText) {
    auto& object = m_path.back()->m_objects[toText(p_name)];
    object = std::make_shared<SerializedNode>();
    object->m_className = toText(p_className);
    object->m_guidText = toText(p_guidText);
    m_path.push_back(object.get());
    return record("beginObject " + toText(p_name) + " " + toText(p_className) + " " + toText(p_guidText));
}

bool_t RecordingSerializer::endObject() {
    m_path.pop_back();
    return record("endObject");
}

bool_t RecordingSerializer::beginArray(const String& p_name, uint32_t p_count, uint32_t p_elementKind) {
    m_arrays.push_back(toText(p_name));
    m_path.back()->m_arrays[m_arrays.back()].clear();
    return record("beginArray " + m_arrays.back() + " " + show(p_count) + " " + show(p_elementKind));
}

bool_t RecordingSerializer::endArray() {
    m_arrays.pop_back();
    return record("endArray");
}

bool_t RecordingSerializer::beginArrayElement(uint32_t p_index, const String& p_typeName) {
    auto element = std::make_shared<SerializedNode>();
    m_path.back()->m_arrays[m_arrays.back()].emplace_back(toText(p_typeName), element);
    m_path.push_back(element.get());
    return record("beginArrayElement " + show(p_index) + " " + toText(p_typeName));
}

bool_t RecordingSerializer::endArrayElement() {
    m_path.pop_back();
    return record("endArrayElement");
}

bool_t RecordingSerializer::setBaseDirectory(const String& p_directory) {
    m_baseDirectory = p_directory;
    return 1;
}

bool_t RecordingSerializer::setWritingDeferredFiles(bool_t p_write) {
    m_writeDeferred = p_write;
    return 1;
}

bool_t RecordingSerializer::declareStringRef(const String& p_name, const String*, bool_t& p_result) {
    return recordDeclaration("declareStringRef", p_name, p_result);
}

bool_t RecordingSerializer::declareEnum(const String& p_name, uint32_t, bool_t& p_result) {
    return recordDeclaration("declareEnum", p_name, p_result);
}

bool_t RecordingSerializer::declareInt32(const String& p_name, int32_t, bool_t& p_result) {
    return recordDeclaration("declareInt32", p_name, p_result);
}

bool_t RecordingSerializer::declareUInt32(const String& p_name, uint32_t, bool_t& p_result) {
    return recordDeclaration("declareUInt32", p_name, p_result);
}

bool_t RecordingSerializer::declareInt64(const String& p_name, int64_t, bool_t& p_result) {
    return recordDeclaration("declareInt64", p_name, p_result);
}

bool_t RecordingSerializer::declareUInt64(const String& p_name, uint64_t, bool_t& p_result) {
    return recordDeclaration("declareUInt64", p_name, p_result);
}

bool_t RecordingSerializer::declareFloat(const String& p_name, float, bool_t& p_result) {
    return recordDeclaration("declareFloat", p_name, p_result);
}

bool_t RecordingSerializer::declareDouble(const String& p_name, double, bool_t& p_result) {
    return recordDeclaration("declareDouble", p_name, p_result);
}

bool_t RecordingSerializer::declareString(const String& p_name, const String&, bool_t& p_result) {
    return recordDeclaration("declareString", p_name, p_result);
}

bool_t RecordingSerializer::declareStringArray(const String& p_name, const Array<String>&, bool_t& p_result) {
    return recordDeclaration("declareStringArray", p_name, p_result);
}

bool_t RecordingSerializer::declareBool(const String& p_name, bool_t, bool_t& p_result) {
    return recordDeclaration("declareBool", p_name, p_result);
}

bool_t RecordingSerializer::declareFloatArray(const String& p_name, uint32_t, const float*, bool_t& p_result) {
    return recordDeclaration("declareFloatArray", p_name, p_result);
}

bool_t RecordingSerializer::declareDoubleArray(const String& p_name, uint32_t, const double*, bool_t& p_result) {
    return recordDeclaration("declareDoubleArray", p_name, p_result);
}

bool_t RecordingSerializer::declareUInt32Array(const String& p_name, uint32_t, const uint32_t*, bool_t& p_result) {
    return recordDeclaration("declareUInt32Array", p_name, p_result);
}

bool_t RecordingSerializer::declareEnumArray(const String& p_name, uint32_t, const uint32_t*, bool_t& p_result) {
    return recordDeclaration("declareEnumArray", p_name, p_result);
}

bool_t RecordingSerializer::writeStringRef(const String& p_name, const String* p_value, bool_t p_attribute, uint32_t) {
    std::string text = p_value ? toText(*p_value) : std::string();
    return recordValue("writeStringRef", p_name, text, p_attribute, text);
}

bool_t RecordingSerializer::writeBool(const String& p_name, bool_t p_value, bool_t p_attribute, uint32_t) {
    return recordValue("writeBool", p_name, p_value, p_attribute, show(p_value));
}

bool_t RecordingSerializer::writeEnum(const String& p_name, uint32_t p_value, uint32_t, bool_t p_attribute,
                                      EnumerationConverter p_converter) {
    return recordValue("writeEnum", p_name, p_value, p_attribute, showConverted(p_value, p_converter));
}

bool_t RecordingSerializer::writeInt32(const String& p_name, int32_t p_value, uint32_t, bool_t p_attribute,
                                       EnumerationConverter) {
    return recordValue("writeInt32", p_name, p_value, p_attribute, show(p_value));
}

bool_t RecordingSerializer::writeUInt32(const String& p_name, uint32_t p_value, uint32_t, bool_t p_attribute,
                                        EnumerationConverter p_converter) {
    return recordValue("writeUInt32", p_name, p_value, p_attribute, showConverted(p_value, p_converter));
}

bool_t RecordingSerializer::writeInt64(const String& p_name, int64_t p_value, uint32_t, bool_t p_attribute,
                                       EnumerationConverter) {
    return recordValue("writeInt64", p_name, p_value, p_attribute, show(p_value));
}

bool_t RecordingSerializer::writeUInt64(const String& p_name, uint64_t p_value, uint32_t, bool_t p_attribute,
                                        EnumerationConverter) {
    return recordValue("writeUInt64", p_name, p_value, p_attribute, show(p_value));
}

bool_t RecordingSerializer::writeFloat(const String& p_name, float p_value, bool_t p_attribute, uint32_t) {
    return recordValue("writeFloat", p_name, p_value, p_attribute, show(p_value));
}

bool_t RecordingSerializer::writeDouble(const String& p_name, double p_value, bool_t p_attribute, uint32_t) {
    return recordValue("writeDouble", p_name, p_value, p_attribute, show(p_value));
}

bool_t RecordingSerializer::writeString(const String& p_name, const String& p_value, bool_t p_attribute, uint32_t) {
    return recordValue("writeString", p_name, toText(p_value), p_attribute, "'" + toText(p_value) + "'");
}

bool_t RecordingSerializer::writeStringArray(const String& p_name, uint32_t p_count, const String* p_items,
                                             bool_t p_attribute, uint32_t) {
    std::vector<std::string> items;
    std::string shown = "[";
    for (uint32_t i = 0; i < p_count; ++i) {
        items.push_back(toText(p_items[i]));
        shown += (i ? "," : "") + items.back();
    }
    return recordValue("writeStringArray", p_name, items, p_attribute, shown + "]");
}

bool_t RecordingSerializer::writeNullObject(const String& p_name) {
    return record("writeNullObject " + toText(p_name));
}

bool_t RecordingSerializer::writeFloatArray(const String& p_name, uint32_t p_count, const float* p_items,
                                            bool_t p_attribute, uint32_t p_rowLength) {
    return recordItems("writeFloatArray", p_name, p_count, p_items, p_attribute, p_rowLength);
}

bool_t RecordingSerializer::writeDoubleArray(const String& p_name, uint32_t p_count, const double* p_items,
                                             bool_t p_attribute, uint32_t p_rowLength) {
    return recordItems("writeDoubleArray", p_name, p_count, p_items, p_attribute, p_rowLength);
}

bool_t RecordingSerializer::writeUInt32Array(const String& p_name, uint32_t p_count, const uint32_t* p_items,
                                             bool_t p_attribute, uint32_t p_rowLength) {
    return recordItems("writeUInt32Array", p_name, p_count, p_items, p_attribute, p_rowLength);
}

bool_t RecordingSerializer::writeEnumArray(const String& p_name, uint32_t p_count, const uint32_t* p_items,
                                           bool_t p_attribute, EnumerationConverter p_converter) {
    std::string shown = "[";
    for (uint32_t i = 0; i < p_count; ++i) {
        shown += (i ? "," : "") + showConverted(p_items[i], p_converter);
    }
    return recordValue("writeEnumArray", p_name, std::vector<uint32_t>(p_items, p_items + p_count), p_attribute,
                       shown + "]");
}

bool_t RecordingDeserializer::record(const std::string& p_call) {
    m_calls.push_back(p_call);
    return !m_failures.count(p_call);
}

template <typename T>
const T* RecordingDeserializer::find(const char* p_operation, const String& p_name, uint32_t& p_cache, bool_t& p_done) {
    std::string call = std::string(p_operation) + " " + toText(p_name);
    m_caches[call].insert(&p_cache);
    p_done = record(call);
    auto found = m_path.back()->m_values.find(toText(p_name));
    if (!p_done || found == m_path.back()->m_values.end()) {
        return nullptr;
    }
    const T* value = std::get_if<T>(&found->second);
    p_done = value != nullptr;
    return value;
}

template <typename T>
bool_t RecordingDeserializer::readValue(const char* p_operation, const String& p_name, uint32_t& p_cache, T& p_value) {
    bool_t done = 0;
    if (const T* value = find<T>(p_operation, p_name, p_cache, done)) {
        p_value = *value;
    }
    return done;
}

template <typename T>
bool_t RecordingDeserializer::readItems(const char* p_operation, const String& p_name, uint32_t& p_cache,
                                        Array<T>& p_value) {
    bool_t done = 0;
    if (const std::vector<T>* items = find<std::vector<T>>(p_operation, p_name, p_cache, done)) {
        p_value.clear();
        for (const T& item : *items) {
            p_value.pushBack(item);
        }
    }
    return done;
}

bool_t RecordingDeserializer::enterGroup(const String& p_name, bool_t& p_found) {
    if (!record("enterGroup " + toText(p_name))) {
        return 0;
    }
    auto found = m_path.back()->m_groups.find(toText(p_name));
    p_found = found != m_path.back()->m_groups.end();
    if (p_found) {
        m_path.push_back(found->second.get());
    }
    return 1;
}

bool_t RecordingDeserializer::leaveGroup() {
    m_path.pop_back();
    return record("leaveGroup");
}

bool_t RecordingDeserializer::enterObject(const String& p_name, bool_t& p_found) {
    const auto object = m_path.back()->m_objects.find(toText(p_name));
    p_found = object != m_path.back()->m_objects.end();
    if (p_found) {
        m_path.push_back(object->second.get());
        m_className = object->second->m_className.c_str();
        m_guidText = object->second->m_guidText.c_str();
    }
    return record("enterObject " + toText(p_name));
}

bool_t RecordingDeserializer::leaveObject() {
    m_path.pop_back();
    return record("leaveObject");
}

bool_t RecordingDeserializer::enterArray(const String& p_name, bool_t& p_found, uint32_t) {
    if (!record("enterArray " + toText(p_name))) {
        return 0;
    }
    p_found = m_path.back()->m_arrays.count(toText(p_name)) != 0;
    if (p_found) {
        m_arrays.push_back(toText(p_name));
    }
    return 1;
}

bool_t RecordingDeserializer::leaveArray(uint32_t p_marker) {
    m_arrays.pop_back();
    return record(p_marker == ZYR_HEADER_FIELD_RECORD ? "leaveArray" : "leaveArray with a wrong marker");
}

bool_t RecordingDeserializer::enterArrayElement(uint32_t p_index, String& p_typeName) {
    if (!record("enterArrayElement " + show(p_index))) {
        return 0;
    }
    const auto& elements = m_path.back()->m_arrays.at(m_arrays.back());
    if (p_index >= elements.size()) {
        return 0;
    }
    p_typeName = elements[p_index].first.c_str();
    m_path.push_back(elements[p_index].second.get());
    return 1;
}

bool_t RecordingDeserializer::leaveArrayElement() {
    m_path.pop_back();
    return record("leaveArrayElement");
}

uint32_t RecordingDeserializer::getArraySize() const {
    return static_cast<uint32_t>(m_path.back()->m_arrays.at(m_arrays.back()).size());
}

bool_t RecordingDeserializer::setBaseDirectory(const String& p_directory) {
    m_baseDirectory = p_directory;
    return 1;
}

bool_t RecordingDeserializer::readStringRef(const String& p_name, uint32_t& p_cache, String*& p_value, uint32_t) {
    bool_t done = 0;
    if (const std::string* value = find<std::string>("readStringRef", p_name, p_cache, done)) {
        p_value = new String(*value);
    }
    return done;
}

bool_t RecordingDeserializer::readBool(const String& p_name, uint32_t& p_cache, bool_t& p_value, uint32_t) {
    return readValue("readBool", p_name, p_cache, p_value);
}

bool_t RecordingDeserializer::readStringArray(const String& p_name, uint32_t& p_cache, Array<String>& p_value,
                                              uint32_t) {
    bool_t done = 0;
    if (const auto* items = find<std::vector<std::string>>("readStringArray", p_name, p_cache, done)) {
        p_value.clear();
        for (const std::string& item : *items) {
            p_value.pushBack(String(item));
        }
    }
    return done;
}

bool_t RecordingDeserializer::readEnum(const String& p_name, uint32_t& p_cache, uint32_t& p_value,
                                       EnumerationConverter p_converter) {
    return readValue("readEnum", p_name, p_cache, p_value) && p_converter != nullptr;
}

bool_t RecordingDeserializer::readInt32(const String& p_name, uint32_t& p_cache, int32_t& p_value,
                                        EnumerationConverter) {
    return readValue("readInt32", p_name, p_cache, p_value);
}

bool_t RecordingDeserializer::readUInt32(const String& p_name, uint32_t& p_cache, uint32_t& p_value,
                                         EnumerationConverter) {
    return readValue("readUInt32", p_name, p_cache, p_value);
}

bool_t RecordingDeserializer::readInt64(const String& p_name, uint32_t& p_cache, int64_t& p_value,
                                        EnumerationConverter) {
    return readValue("readInt64", p_name, p_cache, p_value);
}

bool_t RecordingDeserializer::readUInt64(const String& p_name, uint32_t& p_cache, uint64_t& p_value,
                                         EnumerationConverter) {
    return readValue("readUInt64", p_name, p_cache, p_value);
}

bool_t RecordingDeserializer::readFloat(const String& p_name, uint32_t& p_cache, float& p_value, EnumerationConverter) {
    return readValue("readFloat", p_name, p_cache, p_value);
}

bool_t RecordingDeserializer::readDouble(const String& p_name, uint32_t& p_cache, double& p_value,
                                         EnumerationConverter) {
    return readValue("readDouble", p_name, p_cache, p_value);
}

bool_t RecordingDeserializer::readString(const String& p_name, uint32_t& p_cache, String& p_value,
                                         EnumerationConverter) {
    bool_t done = 0;
    if (const std::string* value = find<std::string>("readString", p_name, p_cache, done)) {
        p_value = value->c_str();
    }
    return done;
}

bool_t RecordingDeserializer::readFloatArray(const String& p_name, uint32_t& p_cache, Array<float>& p_value, uint32_t) {
    return readItems("readFloatArray", p_name, p_cache, p_value);
}

bool_t RecordingDeserializer::readDoubleArray(const String& p_name, uint32_t& p_cache, Array<double>& p_value,
                                              uint32_t) {
    return readItems("readDoubleArray", p_name, p_cache, p_value);
}

bool_t RecordingDeserializer::readUInt32Array(const String& p_name, uint32_t& p_cache, Array<uint32_t>& p_value,
                                              uint32_t) {
    return readItems("readUInt32Array", p_name, p_cache, p_value);
}

bool_t RecordingDeserializer::readEnumArray(const String& p_name, uint32_t& p_cache, Array<uint32_t>& p_value,
                                            EnumerationConverter p_converter) {
    return readItems("readEnumArray", p_name, p_cache, p_value) && p_converter != nullptr;
}

} // namespace zyr::test
