/// The operations of a serializer of a binary format. Output writes what stands around values (RawOutput, ZbfOutput).
#pragma once

#include "core_module/serializers/zyr_byte_buffer.h"
#include "core_module/serializers/zyr_field_kind.h"
#include "core_module/serializers/zyr_field_rows.h"
#include "core_module/serializers/zyr_serializer_level.h"
#include "zyr_common/storage/zyr_payload_wrapper.h"

namespace zyr {

template <class Interface, class Output> class BinarySerializerLevel : public SerializerLevel<Interface> {
public:
    bool_t initialize() override {
        if (!m_output.begin()) {
            m_output.end();
            return 0;
        }
        return 1;
    }
    bool_t deinitialize() override {
        m_output.end();
        return 1;
    }
    bool_t isBinaryFormat() const override { return 1; }
    const void* getData() const override {
        complete();
        return getSize() != 0 ? m_output.m_buffer.getData() + c_payloadWrapperSize : nullptr;
    }
    size_t getDataSize() const override {
        complete();
        return getSize();
    }

    bool_t beginHeader() override { return 1; }
    bool_t endHeader() override { return 1; }
    bool_t beginHeaderStructure(const String& p_typeName) override { return m_output.beginStructure(p_typeName); }
    bool_t endHeaderStructure() override { return m_output.endStructure(); }
    bool_t writeHeaderField(const String& p_name, uint32_t p_marker, uint32_t, const String& p_typeName) override {
        const FieldKind kind = p_marker == ZYR_HEADER_FIELD_RECORD   ? FieldKind::RECORD
                               : p_marker == ZYR_HEADER_FIELD_OBJECT ? FieldKind::OBJECT
                                                                     : FieldKind::RECORD_ARRAY;
        return m_output.declare(p_name, kind, p_typeName);
    }

    bool_t beginStructure(const String& p_name, bool_t) override { return m_output.beginRecord(p_name); }
    bool_t endStructure() override { return m_output.leave(); }
    bool_t beginObject(const String& p_name, const String& p_className, const String& p_guidText) override {
        return m_output.beginObject(p_name, p_className, p_guidText);
    }
    bool_t endObject() override { return m_output.leave(); }
    bool_t writeNullObject(const String& p_name) override { return m_output.nullObject(p_name); }
    bool_t beginArray(const String& p_name, uint32_t p_count, uint32_t) override {
        return m_output.beginArray(p_name) && putNumber(p_count);
    }
    bool_t endArray() override { return m_output.leave(); }
    bool_t beginArrayElement(uint32_t, const String& p_typeName) override {
        m_nullElement = p_typeName.isEmpty();
        return m_nullElement ? m_output.nullElement() : m_output.beginElement(p_typeName);
    }
    bool_t endArrayElement() override {
        const bool_t nullElement = m_nullElement;
        m_nullElement = 0;
        return nullElement || m_output.leave();
    }

    bool_t declareStringRef(const String& p_name, const String*, bool_t& p_result) override {
        return declare(p_name, FieldKind::STRING_REF, p_result);
    }
    bool_t declareEnum(const String& p_name, uint32_t, bool_t& p_result) override {
        return declare(p_name, FieldKind::ENUM, p_result);
    }
    bool_t declareInt32(const String& p_name, int32_t, bool_t& p_result) override {
        return declare(p_name, FieldKind::INT32, p_result);
    }
    bool_t declareUInt32(const String& p_name, uint32_t, bool_t& p_result) override {
        return declare(p_name, FieldKind::UINT32, p_result);
    }
    bool_t declareInt64(const String& p_name, int64_t, bool_t& p_result) override {
        return declare(p_name, FieldKind::INT64, p_result);
    }
    bool_t declareUInt64(const String& p_name, uint64_t, bool_t& p_result) override {
        return declare(p_name, FieldKind::UINT64, p_result);
    }
    bool_t declareFloat(const String& p_name, float, bool_t& p_result) override {
        return declare(p_name, FieldKind::FLOAT, p_result);
    }
    bool_t declareDouble(const String& p_name, double, bool_t& p_result) override {
        return declare(p_name, FieldKind::DOUBLE, p_result);
    }
    bool_t declareString(const String& p_name, const String&, bool_t& p_result) override {
        return declare(p_name, FieldKind::STRING, p_result);
    }
    bool_t declareStringArray(const String& p_name, const Array<String>&, bool_t& p_result) override {
        return declare(p_name, FieldKind::STRING_ARRAY, p_result);
    }
    bool_t declareBool(const String& p_name, bool_t, bool_t& p_result) override {
        return declare(p_name, FieldKind::BOOL, p_result);
    }
    bool_t declareFloatArray(const String& p_name, uint32_t, const float*, bool_t& p_result) override {
        return declare(p_name, FieldKind::FLOAT_ARRAY, p_result);
    }
    bool_t declareDoubleArray(const String& p_name, uint32_t, const double*, bool_t& p_result) override {
        return declare(p_name, FieldKind::DOUBLE_ARRAY, p_result);
    }
    bool_t declareUInt32Array(const String& p_name, uint32_t, const uint32_t*, bool_t& p_result) override {
        return declare(p_name, FieldKind::UINT32_ARRAY, p_result);
    }
    bool_t declareEnumArray(const String& p_name, uint32_t, const uint32_t*, bool_t& p_result) override {
        return declare(p_name, FieldKind::ENUM_ARRAY, p_result);
    }

    bool_t writeStringRef(const String& p_name, const String* p_value, bool_t, uint32_t) override {
        const size_t length = p_value != nullptr ? p_value->getLengthInBytes() : 0;
        uint8_t* target = m_output.field(p_name, FieldKind::STRING_REF, 1 + c_numberSize + length);
        if (target == nullptr) {
            return 0;
        }
        *target++ = p_value != nullptr;
        return end(p_value != nullptr ? putText(target, *p_value) : target);
    }
    bool_t writeBool(const String& p_name, bool_t p_value, bool_t, uint32_t) override {
        return writeNumber(p_name, FieldKind::BOOL, p_value != 0);
    }
    bool_t writeEnum(const String& p_name, uint32_t p_value, uint32_t, bool_t, EnumerationConverter) override {
        return writeNumber(p_name, FieldKind::ENUM, p_value);
    }
    bool_t writeInt32(const String& p_name, int32_t p_value, uint32_t, bool_t, EnumerationConverter) override {
        return writeNumber(p_name, FieldKind::INT32, toZigzag(p_value));
    }
    bool_t writeUInt32(const String& p_name, uint32_t p_value, uint32_t, bool_t, EnumerationConverter) override {
        return writeNumber(p_name, FieldKind::UINT32, p_value);
    }
    bool_t writeInt64(const String& p_name, int64_t p_value, uint32_t, bool_t, EnumerationConverter) override {
        return writeNumber(p_name, FieldKind::INT64, toZigzag(p_value));
    }
    bool_t writeUInt64(const String& p_name, uint64_t p_value, uint32_t, bool_t, EnumerationConverter) override {
        return writeNumber(p_name, FieldKind::UINT64, p_value);
    }
    bool_t writeFloat(const String& p_name, float p_value, bool_t, uint32_t) override {
        return writeReal(p_name, FieldKind::FLOAT, p_value);
    }
    bool_t writeDouble(const String& p_name, double p_value, bool_t, uint32_t) override {
        return writeReal(p_name, FieldKind::DOUBLE, p_value);
    }
    bool_t writeString(const String& p_name, const String& p_value, bool_t, uint32_t) override {
        const size_t length = p_value.getLengthInBytes();
        uint8_t* target = m_output.field(p_name, FieldKind::STRING, c_numberSize + length);
        return target != nullptr && end(putText(target, p_value));
    }
    bool_t writeStringArray(const String& p_name, uint32_t p_count, const String* p_items, bool_t, uint32_t) override {
        bool done = writeNumber(p_name, FieldKind::STRING_ARRAY, p_count);
        for (uint32_t i = 0; i < p_count && done; i++) {
            done = appendText(m_output.m_buffer, p_items[i]);
        }
        return done;
    }
    bool_t writeFloatArray(const String& p_name, uint32_t p_count, const float* p_items, bool_t, uint32_t) override {
        return writeItems(p_name, FieldKind::FLOAT_ARRAY, p_count, p_items);
    }
    bool_t writeDoubleArray(const String& p_name, uint32_t p_count, const double* p_items, bool_t, uint32_t) override {
        return writeItems(p_name, FieldKind::DOUBLE_ARRAY, p_count, p_items);
    }
    bool_t writeUInt32Array(const String& p_name, uint32_t p_count, const uint32_t* p_items, bool_t,
                            uint32_t) override {
        return writeItems(p_name, FieldKind::UINT32_ARRAY, p_count, p_items);
    }
    bool_t writeEnumArray(const String& p_name, uint32_t p_count, const uint32_t* p_items, bool_t,
                          EnumerationConverter) override {
        bool done = writeNumber(p_name, FieldKind::ENUM_ARRAY, p_count);
        for (uint32_t i = 0; i < p_count && done; i++) {
            done = putNumber(p_items[i]);
        }
        return done;
    }

    void release_This() {
        SerializerLevel<Interface>::release_This();
        m_output.end();
    }

private:
    size_t writeRows(const FieldRow* p_rows, const void* const* p_values, size_t p_count) override {
        constexpr size_t ROOM = Output::c_rowHeadRoom + c_rowValueRoom;
        ByteBuffer& buffer = m_output.m_buffer;
        uint8_t* target = buffer.reserve(p_count * ROOM);
        size_t done = 0;
        for (; target != nullptr && done < p_count; done++) {
            const FieldRow& row = p_rows[done];
            if (row.m_kind == ZYR_FIELD_ROW_STRING) {
                const size_t length = static_cast<const String*>(p_values[done])->getLengthInBytes();
                if (length > c_rowTextLength) {
                    buffer.commit(target);
                    target = buffer.reserve((p_count - done) * ROOM + length);
                    if (target == nullptr) {
                        break;
                    }
                }
            }
            uint8_t* place = m_output.putRowHead(target, row);
            if (place == nullptr) {
                break;
            }
            target = putRowValue(place, row.m_kind, p_values[done]);
        }
        if (target != nullptr) {
            buffer.commit(target);
        }
        return done;
    }
    void* giveBuffer(const void* p_data, size_t p_front, size_t p_capacity) override {
        const bool fits = p_data == getData() && p_data != nullptr && p_front == c_payloadWrapperSize &&
                          p_capacity <= m_output.m_buffer.getCapacity();
        return fits ? m_output.m_buffer.give(p_capacity) : nullptr;
    }
    /// Of the payload, without the room in front of it.
    size_t getSize() const {
        const size_t size = m_output.m_buffer.getSize();
        return size > c_payloadWrapperSize ? size - c_payloadWrapperSize : 0;
    }
    /// The getters are constant for the caller; the table of the last format belongs to what they give.
    void complete() const { completeOutput(m_output); }
    bool putNumber(uint64_t p_number) {
        uint8_t* target = m_output.m_buffer.reserve(c_numberSize);
        if (target == nullptr) {
            return false;
        }
        m_output.m_buffer.commit(putBase128(target, p_number));
        return true;
    }
    bool_t declare(const String& p_name, FieldKind p_kind, bool_t& p_result) {
        return p_result = m_output.declare(p_name, p_kind, String::getConstEmpty());
    }
    bool end(const uint8_t* p_end) {
        m_output.m_buffer.commit(p_end);
        return true;
    }
    bool writeNumber(const String& p_name, FieldKind p_kind, uint64_t p_number) {
        uint8_t* target = m_output.field(p_name, p_kind, c_numberSize);
        return target != nullptr && end(putBase128(target, p_number));
    }
    template <typename T> bool writeReal(const String& p_name, FieldKind p_kind, T p_value) {
        uint8_t* target = m_output.field(p_name, p_kind, sizeof(T));
        if (target == nullptr) {
            return false;
        }
        memcpy(target, &p_value, sizeof(T));
        return end(target + sizeof(T));
    }
    template <typename T> bool writeItems(const String& p_name, FieldKind p_kind, uint32_t p_count, const T* p_items) {
        const size_t size = p_count * sizeof(T);
        uint8_t* target = m_output.field(p_name, p_kind, c_numberSize + size);
        if (target == nullptr) {
            return false;
        }
        target = putBase128(target, p_count);
        copyBytes(target, p_items, size);
        return end(target + size);
    }

    mutable Output m_output;
    bool_t m_nullElement = 0;
};

} // namespace zyr
