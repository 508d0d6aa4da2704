/// The operations of a serializer of a text format. Output writes structure and texts (JsonOutput, XmlOutput).
#pragma once

#include "core_module/serializers/zyr_enumeration_words.h"
#include "core_module/serializers/zyr_number_words.h"
#include "core_module/serializers/zyr_serializer_level.h"

namespace zyr {

template <class Interface, class Output> class TextSerializerLevel : public SerializerLevel<Interface> {
public:
    bool_t initialize() override {
        m_elementType.clear();
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
    bool_t isBinaryFormat() const override { return 0; }
    bool_t hasHeaderSection() const override { return 0; }
    const void* getData() const override {
        complete();
        return m_output.m_buffer.getData();
    }
    size_t getDataSize() const override {
        complete();
        return m_output.m_buffer.getSize();
    }

    // Nothing is declared in a text format.
    bool_t beginHeader() override { return 1; }
    bool_t endHeader() override { return 1; }
    bool_t beginHeaderStructure(const String&) override { return 1; }
    bool_t endHeaderStructure() override { return 1; }
    bool_t writeHeaderField(const String&, uint32_t, uint32_t, const String&) override { return 1; }
    bool_t declareStringRef(const String&, const String*, bool_t& p_result) override { return p_result = 1; }
    bool_t declareEnum(const String&, uint32_t, bool_t& p_result) override { return p_result = 1; }
    bool_t declareInt32(const String&, int32_t, bool_t& p_result) override { return p_result = 1; }
    bool_t declareUInt32(const String&, uint32_t, bool_t& p_result) override { return p_result = 1; }
    bool_t declareInt64(const String&, int64_t, bool_t& p_result) override { return p_result = 1; }
    bool_t declareUInt64(const String&, uint64_t, bool_t& p_result) override { return p_result = 1; }
    bool_t declareFloat(const String&, float, bool_t& p_result) override { return p_result = 1; }
    bool_t declareDouble(const String&, double, bool_t& p_result) override { return p_result = 1; }
    bool_t declareString(const String&, const String&, bool_t& p_result) override { return p_result = 1; }
    bool_t declareStringArray(const String&, const Array<String>&, bool_t& p_result) override { return p_result = 1; }
    bool_t declareBool(const String&, bool_t, bool_t& p_result) override { return p_result = 1; }
    bool_t declareFloatArray(const String&, uint32_t, const float*, bool_t& p_result) override { return p_result = 1; }
    bool_t declareDoubleArray(const String&, uint32_t, const double*, bool_t& p_result) override {
        return p_result = 1;
    }
    bool_t declareUInt32Array(const String&, uint32_t, const uint32_t*, bool_t& p_result) override {
        return p_result = 1;
    }
    bool_t declareEnumArray(const String&, uint32_t, const uint32_t*, bool_t& p_result) override {
        return p_result = 1;
    }

    bool_t beginStructure(const String& p_name, bool_t p_formatHeader) override {
        return m_output.beginRecord(p_name, p_formatHeader);
    }
    bool_t endStructure() override { return m_output.leave(); }
    bool_t beginObject(const String& p_name, const String& p_className, const String& p_guidText) override {
        return m_output.beginObject(p_name, p_className, p_guidText);
    }
    bool_t endObject() override { return m_output.leave(); }
    bool_t writeNullObject(const String& p_name) override { return m_output.nullObject(p_name); }
    bool_t beginArray(const String& p_name, uint32_t, uint32_t) override {
        m_firstElement = 1;
        return m_output.beginArray(p_name);
    }
    bool_t endArray() override {
        m_firstElement = 1; // The next element may be one of an outer array, whose last type is not known any more.
        return m_output.leave();
    }
    bool_t beginArrayElement(uint32_t, const String& p_typeName) override {
        m_nullElement = p_typeName.isEmpty();
        if (m_nullElement) {
            return m_output.nullElement();
        }
        const bool sameType = !m_firstElement && equalNames(m_elementType, p_typeName);
        if (!sameType) {
            m_elementType = p_typeName;
        }
        m_firstElement = 0;
        return m_output.beginElement(p_typeName, sameType);
    }
    bool_t endArrayElement() override {
        const bool nullElement = m_nullElement;
        m_nullElement = 0;
        return nullElement || m_output.leave();
    }

    bool_t writeStringRef(const String& p_name, const String* p_value, bool_t p_attribute, uint32_t) override {
        return p_value != nullptr ? m_output.text(p_name, *p_value, p_attribute)
                                  : m_output.nullText(p_name, p_attribute);
    }
    bool_t writeBool(const String& p_name, bool_t p_value, bool_t p_attribute, uint32_t) override {
        static constexpr char WORDS[2][6] = {"false", "true"};
        uint8_t* target = m_output.beginValue(p_name, p_attribute, false, sizeof(WORDS[0]));
        if (target == nullptr) {
            return 0;
        }
        memcpy(target, WORDS[p_value != 0], sizeof(WORDS[0]));
        return m_output.endValue(target + (p_value != 0 ? 4 : 5));
    }
    bool_t writeEnum(const String& p_name, uint32_t p_value, uint32_t, bool_t p_attribute,
                     EnumerationConverter p_converter) override {
        return writeInteger(p_name, static_cast<uint64_t>(p_value), p_attribute, p_converter);
    }
    bool_t writeInt32(const String& p_name, int32_t p_value, uint32_t, bool_t p_attribute,
                      EnumerationConverter p_converter) override {
        return writeInteger(p_name, static_cast<int64_t>(p_value), p_attribute, p_converter);
    }
    bool_t writeUInt32(const String& p_name, uint32_t p_value, uint32_t, bool_t p_attribute,
                       EnumerationConverter p_converter) override {
        return writeInteger(p_name, static_cast<uint64_t>(p_value), p_attribute, p_converter);
    }
    bool_t writeInt64(const String& p_name, int64_t p_value, uint32_t, bool_t p_attribute,
                      EnumerationConverter p_converter) override {
        return writeInteger(p_name, p_value, p_attribute,
                            p_value == static_cast<int32_t>(p_value) ? p_converter : nullptr);
    }
    bool_t writeUInt64(const String& p_name, uint64_t p_value, uint32_t, bool_t p_attribute,
                       EnumerationConverter p_converter) override {
        return writeInteger(p_name, p_value, p_attribute, p_value <= UINT32_MAX ? p_converter : nullptr);
    }
    bool_t writeFloat(const String& p_name, float p_value, bool_t p_attribute, uint32_t) override {
        return writeNumber(p_name, p_value, p_attribute);
    }
    bool_t writeDouble(const String& p_name, double p_value, bool_t p_attribute, uint32_t) override {
        return writeNumber(p_name, p_value, p_attribute);
    }
    bool_t writeString(const String& p_name, const String& p_value, bool_t p_attribute, uint32_t) override {
        return m_output.text(p_name, p_value, p_attribute);
    }
    bool_t writeStringArray(const String& p_name, uint32_t p_count, const String* p_items, bool_t, uint32_t) override {
        bool done = m_output.beginTexts(p_name);
        for (uint32_t i = 0; i < p_count && done; i++) {
            done = m_output.textItem(p_items[i]);
        }
        return done && m_output.endTexts();
    }
    bool_t writeFloatArray(const String& p_name, uint32_t p_count, const float* p_items, bool_t,
                           uint32_t p_rowLength) override {
        return writeNumbers(p_name, p_count, p_items, p_rowLength);
    }
    bool_t writeDoubleArray(const String& p_name, uint32_t p_count, const double* p_items, bool_t,
                            uint32_t p_rowLength) override {
        return writeNumbers(p_name, p_count, p_items, p_rowLength);
    }
    bool_t writeUInt32Array(const String& p_name, uint32_t p_count, const uint32_t* p_items, bool_t,
                            uint32_t p_rowLength) override {
        return writeNumbers(p_name, p_count, p_items, p_rowLength);
    }
    bool_t writeEnumArray(const String& p_name, uint32_t p_count, const uint32_t* p_items, bool_t,
                          EnumerationConverter p_converter) override {
        bool done = m_output.beginTexts(p_name);
        for (uint32_t i = 0; i < p_count && done; i++) {
            const String* word = p_converter != nullptr ? m_words.getWord(p_converter, p_items[i]) : nullptr;
            done = m_output.textItem(word != nullptr ? *word : String::newFormatted("%u", p_items[i]));
        }
        return done && m_output.endTexts();
    }

    void release_This() {
        SerializerLevel<Interface>::release_This();
        m_output.end();
    }

private:
    void* giveBuffer(const void* p_data, size_t p_front, size_t p_capacity) override {
        const bool fits =
            p_data == getData() && p_data != nullptr && p_front == 0 && p_capacity <= m_output.m_buffer.getCapacity();
        return fits ? m_output.m_buffer.give(p_capacity) : nullptr;
    }
    void complete() const { completeOutput(m_output); }
    template <typename T>
    bool_t writeInteger(const String& p_name, T p_value, bool_t p_attribute, EnumerationConverter p_converter) {
        if (p_converter != nullptr) {
            const String* word = m_words.getWord(p_converter, static_cast<uint32_t>(p_value));
            if (word != nullptr) {
                return m_output.text(p_name, *word, p_attribute);
            }
        }
        return writeNumber(p_name, p_value, p_attribute);
    }
    /// Whether the number has a word for its text.
    template <typename T> static bool isWord(T p_value) {
        if constexpr (std::is_floating_point_v<T>) {
            return !isFinite(p_value);
        } else {
            return false;
        }
    }
    template <typename T> bool_t writeNumber(const String& p_name, T p_value, bool_t p_attribute) {
        uint8_t* target = m_output.beginValue(p_name, p_attribute, isWord(p_value), c_numberRoom);
        return target != nullptr && m_output.endValue(putNumberText(target, p_value));
    }
    template <typename T>
    bool_t writeNumbers(const String& p_name, uint32_t p_count, const T* p_items, uint32_t p_rowLength) {
        if (!m_output.beginNumbers(p_name)) {
            return 0;
        }
        ByteBuffer& buffer = m_output.m_buffer;
        for (uint32_t i = 0; i < p_count; i++) {
            uint8_t* target = buffer.reserve(Output::c_separatorRoom + c_numberRoom + 2);
            if (target == nullptr) {
                return 0;
            }
            const bool quoted = Output::c_quotesWords && isWord(p_items[i]);
            target = i != 0 ? m_output.putSeparator(target, i, p_rowLength) : target;
            *target = '"';
            target = putNumberText(target + quoted, p_items[i]);
            *target = '"';
            buffer.commit(target + quoted);
        }
        return m_output.endNumbers();
    }

    mutable Output m_output;
    bool_t m_nullElement = 0;
    bool_t m_firstElement = 0;
    /// Type name of the element written last, as long as none is the first one.
    String m_elementType;
    EnumerationWords m_words;
};

} // namespace zyr
