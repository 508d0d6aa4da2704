/// Serializers for tests: they write down every call, key by key, and keep the values in a tree from which the
/// deserializer reads them back.
///
///     RecordingSerializer serializer(RecordingSerializer::c_text);
///     bool_t result = 0;
///     record.writeSerialized(&serializer, 0, result);
///     EXPECT_EQ(serializer.m_calls, (Calls{"writeFloat x 1 attribute", ...}));
///
///     RecordingDeserializer deserializer(serializer.m_root);
///     copy.readSerialized(&deserializer);
#pragma once

#include "support/zyr_stub_object.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/serialization/zyr_serializer.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace zyr::test {

typedef std::vector<std::string> Calls;

/// What one group holds.
struct SerializedNode {
    typedef std::variant<bool_t, int32_t, uint32_t, int64_t, uint64_t, float, double, std::string, std::vector<float>,
                         std::vector<double>, std::vector<uint32_t>, std::vector<std::string>>
        Value;

    std::map<std::string, Value> m_values;
    std::map<std::string, std::shared_ptr<SerializedNode>> m_groups;
    std::map<std::string, std::vector<std::pair<std::string, std::shared_ptr<SerializedNode>>>> m_arrays;
    std::map<std::string, std::shared_ptr<SerializedNode>> m_objects;
    // Of an object.
    std::string m_className;
    std::string m_guidText;
};

/// Writes into m_root. A call fails when its text is in m_failures, or the text up to the first blank behind the key.
class RecordingSerializer : public StubObject<ISerializer> {
public:
    enum Kind { c_text, c_binary };

    explicit RecordingSerializer(Kind p_kind);

    Calls m_calls;
    std::set<std::string> m_failures;
    SerializedNode m_root;

    bool_t initialize() override { return 1; }
    bool_t deinitialize() override { return 1; }
    bool_t beginHeader() override { return record("beginHeader"); }
    bool_t endHeader() override { return record("endHeader"); }
    bool_t beginHeaderStructure(const String& p_typeName) override;
    bool_t endHeaderStructure() override { return record("endHeaderStructure"); }
    bool_t writeHeaderField(const String& p_name, uint32_t p_marker, uint32_t p_element,
                            const String& p_typeName) override;
    bool_t beginStructure(const String& p_name, bool_t p_formatHeader) override;
    bool_t endStructure() override;
    bool_t beginObject(const String& p_name, const String& p_className, const String& p_guidText) override;
    bool_t endObject() override;
    bool_t beginArray(const String& p_name, uint32_t p_count, uint32_t p_elementKind) override;
    bool_t endArray() override;
    bool_t beginArrayElement(uint32_t p_index, const String& p_typeName) override;
    bool_t endArrayElement() override;
    const void* getData() const override { return nullptr; }
    size_t getDataSize() const override { return 0; }
    bool_t isBinaryFormat() const override { return m_kind == c_binary; }
    bool_t hasHeaderSection() const override { return m_kind == c_binary; }
    const String& getBaseDirectory() const override { return m_baseDirectory; }
    bool_t setBaseDirectory(const String& p_directory) override;
    bool_t isWritingDeferredFiles() const override { return m_writeDeferred; }
    bool_t setWritingDeferredFiles(bool_t p_write) override;
    bool_t declareStringRef(const String& p_name, const String* p_value, bool_t& p_result) override;
    bool_t declareEnum(const String& p_name, uint32_t p_value, bool_t& p_result) override;
    bool_t declareInt32(const String& p_name, int32_t p_value, bool_t& p_result) override;
    bool_t declareUInt32(const String& p_name, uint32_t p_value, bool_t& p_result) override;
    bool_t declareInt64(const String& p_name, int64_t p_value, bool_t& p_result) override;
    bool_t declareUInt64(const String& p_name, uint64_t p_value, bool_t& p_result) override;
    bool_t declareFloat(const String& p_name, float p_value, bool_t& p_result) override;
    bool_t declareDouble(const String& p_name, double p_value, bool_t& p_result) override;
    bool_t declareString(const String& p_name, const String& p_value, bool_t& p_result) override;
    bool_t declareStringArray(const String& p_name, const Array<String>& p_value, bool_t& p_result) override;
    bool_t writeStringRef(const String& p_name, const String* p_value, bool_t p_attribute,
                          uint32_t p_reserved) override;
    bool_t writeBool(const String& p_name, bool_t p_value, bool_t p_attribute, uint32_t p_reserved) override;
    bool_t writeEnum(const String& p_name, uint32_t p_value, uint32_t p_reserved, bool_t p_attribute,
                     EnumerationConverter p_converter) override;
    bool_t writeInt32(const String& p_name, int32_t p_value, uint32_t p_reserved, bool_t p_attribute,
                      EnumerationConverter p_converter) override;
    bool_t writeUInt32(const String& p_name, uint32_t p_value, uint32_t p_reserved, bool_t p_attribute,
                       EnumerationConverter p_converter) override;
    bool_t writeInt64(const String& p_name, int64_t p_value, uint32_t p_reserved, bool_t p_attribute,
                      EnumerationConverter p_converter) override;
    bool_t writeUInt64(const String& p_name, uint64_t p_value, uint32_t p_reserved, bool_t p_attribute,
                       EnumerationConverter p_converter) override;
    bool_t writeFloat(const String& p_name, float p_value, bool_t p_attribute, uint32_t p_reserved) override;
    bool_t writeDouble(const String& p_name, double p_value, bool_t p_attribute, uint32_t p_reserved) override;
    bool_t writeString(const String& p_name, const String& p_value, bool_t p_attribute, uint32_t p_reserved) override;
    bool_t writeStringArray(const String& p_name, uint32_t p_count, const String* p_items, bool_t p_attribute,
                            uint32_t p_reserved) override;
    bool_t writeNullObject(const String& p_name) override;
    bool_t declareBool(const String& p_name, bool_t p_value, bool_t& p_result) override;
    bool_t declareFloatArray(const String& p_name, uint32_t p_count, const float* p_items, bool_t& p_result) override;
    bool_t declareDoubleArray(const String& p_name, uint32_t p_count, const double* p_items, bool_t& p_result) override;
    bool_t declareUInt32Array(const String& p_name, uint32_t p_count, const uint32_t* p_items,
                              bool_t& p_result) override;
    bool_t declareEnumArray(const String& p_name, uint32_t p_count, const uint32_t* p_items, bool_t& p_result) override;
    bool_t writeFloatArray(const String& p_name, uint32_t p_count, const float* p_items, bool_t p_attribute,
                           uint32_t p_rowLength) override;
    bool_t writeDoubleArray(const String& p_name, uint32_t p_count, const double* p_items, bool_t p_attribute,
                            uint32_t p_rowLength) override;
    bool_t writeUInt32Array(const String& p_name, uint32_t p_count, const uint32_t* p_items, bool_t p_attribute,
                            uint32_t p_rowLength) override;
    bool_t writeEnumArray(const String& p_name, uint32_t p_count, const uint32_t* p_items, bool_t p_attribute,
                          EnumerationConverter p_converter) override;
    ILevelReserved* getSerializerReserved() const override { return nullptr; }

private:
    bool_t record(const std::string& p_call);
    bool_t recordDeclaration(const char* p_operation, const String& p_name, bool_t& p_result);
    template <typename T>
    bool_t recordValue(const char* p_operation, const String& p_name, const T& p_value, bool_t p_attribute,
                       const std::string& p_shown);
    template <typename T>
    bool_t recordItems(const char* p_operation, const String& p_name, uint32_t p_count, const T* p_items,
                       bool_t p_attribute, uint32_t p_rowLength);

    Kind m_kind;
    bool_t m_writeDeferred = 0;
    String m_baseDirectory;
    std::vector<SerializedNode*> m_path;
    Calls m_arrays;
};

/// Reads from a tree. A read fails when its text ("readFloat x") is in m_failures. Remembers the cache word that each
/// site passed.
class RecordingDeserializer : public StubObject<IDeserializer> {
public:
    explicit RecordingDeserializer(const SerializedNode& p_root) : m_root(p_root), m_path{&m_root} {}

    Calls m_calls;
    std::set<std::string> m_failures;
    std::map<std::string, std::set<uint32_t*>> m_caches;

    bool_t initialize(const void*, size_t) override { return 1; }
    bool_t deinitialize() override { return 1; }
    bool_t enterGroup(const String& p_name, bool_t& p_found) override;
    bool_t leaveGroup() override;
    bool_t enterObject(const String& p_name, bool_t& p_found) override;
    bool_t leaveObject() override;
    bool_t enterArray(const String& p_name, bool_t& p_found, uint32_t p_reserved) override;
    bool_t leaveArray(uint32_t p_marker) override;
    bool_t enterArrayElement(uint32_t p_index, String& p_typeName) override;
    bool_t leaveArrayElement() override;
    const String& getCurrentObjectTypeName() const override { return m_className; }
    const String& getCurrentObjectGUIDText() const override { return m_guidText; }
    uint32_t getArraySize() const override;
    bool_t isBinaryFormat() const override { return 1; }
    const String& getBaseDirectory() const override { return m_baseDirectory; }
    bool_t setBaseDirectory(const String& p_directory) override;
    bool_t readStringRef(const String& p_name, uint32_t& p_cache, String*& p_value, uint32_t p_reserved) override;
    bool_t readBool(const String& p_name, uint32_t& p_cache, bool_t& p_value, uint32_t p_reserved) override;
    bool_t readStringArray(const String& p_name, uint32_t& p_cache, Array<String>& p_value,
                           uint32_t p_reserved) override;
    bool_t readEnum(const String& p_name, uint32_t& p_cache, uint32_t& p_value,
                    EnumerationConverter p_converter) override;
    bool_t readInt32(const String& p_name, uint32_t& p_cache, int32_t& p_value,
                     EnumerationConverter p_converter) override;
    bool_t readUInt32(const String& p_name, uint32_t& p_cache, uint32_t& p_value,
                      EnumerationConverter p_converter) override;
    bool_t readInt64(const String& p_name, uint32_t& p_cache, int64_t& p_value,
                     EnumerationConverter p_converter) override;
    bool_t readUInt64(const String& p_name, uint32_t& p_cache, uint64_t& p_value,
                      EnumerationConverter p_converter) override;
    bool_t readFloat(const String& p_name, uint32_t& p_cache, float& p_value,
                     EnumerationConverter p_converter) override;
    bool_t readDouble(const String& p_name, uint32_t& p_cache, double& p_value,
                      EnumerationConverter p_converter) override;
    bool_t readString(const String& p_name, uint32_t& p_cache, String& p_value,
                      EnumerationConverter p_converter) override;
    bool_t readFloatArray(const String& p_name, uint32_t& p_cache, Array<float>& p_value, uint32_t p_reserved) override;
    bool_t readDoubleArray(const String& p_name, uint32_t& p_cache, Array<double>& p_value,
                           uint32_t p_reserved) override;
    bool_t readUInt32Array(const String& p_name, uint32_t& p_cache, Array<uint32_t>& p_value,
                           uint32_t p_reserved) override;
    bool_t readEnumArray(const String& p_name, uint32_t& p_cache, Array<uint32_t>& p_value,
                         EnumerationConverter p_converter) override;
    ILevelReserved* getDeserializerReserved() const override { return nullptr; }

private:
    bool_t record(const std::string& p_call);
    /// Records the read and gives the value; null when it is missing or the read fails, which p_done tells.
    template <typename T>
    const T* find(const char* p_operation, const String& p_name, uint32_t& p_cache, bool_t& p_done);
    template <typename T>
    bool_t readValue(const char* p_operation, const String& p_name, uint32_t& p_cache, T& p_value);
    template <typename T>
    bool_t readItems(const char* p_operation, const String& p_name, uint32_t& p_cache, Array<T>& p_value);

    String m_baseDirectory;
    String m_className;
    String m_guidText;
    const SerializedNode m_root;
    std::vector<const SerializedNode*> m_path;
    std::vector<std::string> m_arrays;
};

} // namespace zyr::test
