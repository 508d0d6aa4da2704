#include "support/zyr_invariant.h"
#include "support/zyr_recording_serializer.h"
#include "support/zyr_stub_object.h"
#include "variable/held_rows.h"

namespace zyr {
namespace {

using test::Calls;
using test::forEachHeldRow;
using test::makeSample;
using test::RecordingDeserializer;
using test::RecordingSerializer;
using test::SerializedNode;
using test::setSample;

Calls callsOfWriting(VariableValue& p_value, RecordingSerializer::Kind p_kind, bool_t p_headerPass = 0) {
    RecordingSerializer serializer(p_kind);
    bool_t result = 0;
    EXPECT_EQ(p_value.writeSerialized(&serializer, p_headerPass, result), 1);
    EXPECT_EQ(result, 1);
    return serializer.m_calls;
}

/// What a value of the type is stored as, name and type alone.
SerializedNode makeNode(uint32_t p_type) {
    SerializedNode node;
    node.m_values["name"] = std::string("stored");
    node.m_values["type"] = p_type;
    return node;
}

} // namespace

TEST(VariableValueStream, ReadsBackWhatItWrites) {
    forEachHeldRow([]<class Row>(Row) {
        if constexpr (!test::c_isPointer<Row>) {
            for (RecordingSerializer::Kind kind : {RecordingSerializer::c_text, RecordingSerializer::c_binary}) {
                VariableValue value(Row::c_row);
                value.setName("some name");
                setSample<Row>(value);
                RecordingSerializer serializer(kind);
                bool_t result = 0;
                EXPECT_EQ(value.writeSerialized(&serializer, 0, result), 1);
                EXPECT_EQ(result, 1);
                VariableValue read;
                RecordingDeserializer deserializer(serializer.m_root);
                EXPECT_EQ(read.readSerialized(&deserializer), 1);
                EXPECT_EQ(read.getType(), Row::c_row);
                EXPECT_EQ(read.getName(), "some name");
                EXPECT_TRUE(Row::get(read) == makeSample<typename Row::Type>());
            }
        }
    });
}

TEST(VariableValueStream, StoresEachTypeUnderItsKey) {
    forEachHeldRow([]<class Row>(Row) {
        VariableValue value(Row::c_row);
        const Calls calls = callsOfWriting(value, RecordingSerializer::c_binary);
        ASSERT_GE(calls.size(), 2u);
        EXPECT_EQ(calls[0], "writeString name '' attribute");
        EXPECT_EQ(calls[1], "writeEnum type " + std::to_string(Row::c_row) + "=" +
                                c_variableTypeRows[Row::c_row].m_word + " attribute");
        if (Row::c_row == ZYR_VARIABLE_OBJECT_REFERENCE) {
            EXPECT_EQ(calls.size(), 2u);
            return;
        }
        ASSERT_GE(calls.size(), 3u);
        const std::string key = c_variableTypeRows[Row::c_row].m_key;
        EXPECT_NE(calls[2].find(" " + key + " "), std::string::npos) << calls[2];
    });
}

TEST(VariableValueStream, WritesNameAndTypeFirstAndTheValueInTheSecondPass) {
    VariableValue value(ZYR_VARIABLE_VECTOR2_FLOAT);
    value.setName("position");
    value.setValueVector2Float(Vector2<float>(1, 2));
    const Calls expected = {"writeString name 'position' attribute",
                            "writeEnum type 17=VECTOR2_FLOAT attribute",
                            "beginStructure valueVector2Float 0",
                            "writeFloat x 1 attribute",
                            "writeFloat y 2 attribute",
                            "endStructure"};
    EXPECT_EQ(callsOfWriting(value, RecordingSerializer::c_text), expected);
    EXPECT_EQ(callsOfWriting(value, RecordingSerializer::c_binary), expected);
    bool_t result = 0;
    RecordingSerializer first(RecordingSerializer::c_text);
    EXPECT_EQ(value.writeSerialized_This(&first, 1, 0, result), 1);
    EXPECT_EQ(first.m_calls, Calls(expected.begin(), expected.begin() + 2));
    RecordingSerializer second(RecordingSerializer::c_text);
    EXPECT_EQ(value.writeSerialized_This(&second, 0, 0, result), 1);
    EXPECT_EQ(second.m_calls, Calls(expected.begin() + 2, expected.end()));
}

TEST(VariableValueStream, WritesANumberAsARecordOfOneField) {
    struct Number {
        VariableTypeEnum m_type;
        void (*m_set)(VariableValue&);
        const char* m_typeText;
        const char* m_key;
        const char* m_call;
    };
    const Number numbers[] = {
        {ZYR_VARIABLE_BOOL, [](VariableValue& p_v) { p_v.setValueBool(1); }, "1=BOOL", "valueBool", "writeUInt32 v 1"},
        {ZYR_VARIABLE_INT8, [](VariableValue& p_v) { p_v.setValueInt8(-5); }, "2=INT8", "valueInt8", "writeInt32 v -5"},
        {ZYR_VARIABLE_UINT8, [](VariableValue& p_v) { p_v.setValueUInt8(250); }, "3=UINT8", "valueUInt8",
         "writeUInt32 v 250"},
        {ZYR_VARIABLE_INT16, [](VariableValue& p_v) { p_v.setValueInt16(-300); }, "4=INT16", "valueInt16",
         "writeInt32 v -300"},
        {ZYR_VARIABLE_UINT16, [](VariableValue& p_v) { p_v.setValueUInt16(65000); }, "5=UINT16", "valueUInt16",
         "writeUInt32 v 65000"},
        {ZYR_VARIABLE_INT32, [](VariableValue& p_v) { p_v.setValueInt32(-7); }, "6=INT32", "valueInt32",
         "writeInt32 v -7"},
        {ZYR_VARIABLE_UINT32, [](VariableValue& p_v) { p_v.setValueUInt32(4000000000u); }, "7=UINT32", "valueUInt32",
         "writeUInt32 v 4000000000"},
        {ZYR_VARIABLE_INT64, [](VariableValue& p_v) { p_v.setValueInt64(-1L << 40); }, "8=INT64", "valueInt64",
         "writeInt64 v -1099511627776"},
        {ZYR_VARIABLE_UINT64, [](VariableValue& p_v) { p_v.setValueUInt64(1UL << 40); }, "9=UINT64", "valueUInt64",
         "writeUInt64 v 1099511627776"},
        {ZYR_VARIABLE_FLOAT, [](VariableValue& p_v) { p_v.setValueFloat(0.5f); }, "10=FLOAT", "valueFloat",
         "writeFloat v 0.5"},
        {ZYR_VARIABLE_DOUBLE, [](VariableValue& p_v) { p_v.setValueDouble(0.25); }, "11=DOUBLE", "valueDouble",
         "writeDouble v 0.25"},
        {ZYR_VARIABLE_ENUM, [](VariableValue& p_v) { p_v.setValueInt32(-7); }, "81=?", "valueEnum", "writeInt32 v -7"},
    };
    for (const Number& number : numbers) {
        VariableValue value(number.m_type);
        number.m_set(value);
        EXPECT_EQ(
            callsOfWriting(value, RecordingSerializer::c_text),
            (Calls{"writeString name '' attribute", std::string("writeEnum type ") + number.m_typeText + " attribute",
                   std::string("beginStructure ") + number.m_key + " 0", std::string(number.m_call) + " attribute",
                   "endStructure"}));
    }
}

TEST(VariableValueStream, WritesTextsAsElements) {
    VariableValue text(ZYR_VARIABLE_STRING);
    text.setValueString("some text");
    EXPECT_EQ(callsOfWriting(text, RecordingSerializer::c_text),
              (Calls{"writeString name '' attribute", "writeEnum type 12=STRING attribute",
                     "writeString valueString 'some text' element"}));
    VariableValue guid(ZYR_VARIABLE_GUID);
    guid.setValueGUID(GUID_t_fromString("10000000-0000-4000-8000-000000000001"));
    EXPECT_EQ(callsOfWriting(guid, RecordingSerializer::c_binary).back(),
              "writeString valueGUID '10000000-0000-4000-8000-000000000001' element");
    VariableValue reference(ZYR_VARIABLE_STRING_REFERENCE);
    String* string = new String("counted");
    reference.setValueStringRef(string);
    string->release();
    EXPECT_EQ(callsOfWriting(reference, RecordingSerializer::c_text),
              (Calls{"writeString name '' attribute", "writeEnum type 77=STRING_REFERENCE attribute",
                     "writeStringRef valueStringRef counted element"}));
}

TEST(VariableValueStream, WritesAGUIDReferenceAsAGroup) {
    VariableValue value(ZYR_VARIABLE_GUID_OBJECT_REFERENCE);
    EXPECT_EQ(callsOfWriting(value, RecordingSerializer::c_text),
              (Calls{"writeString name '' attribute", "writeEnum type 76=GUID_OBJECT_REFERENCE attribute",
                     "beginStructure valueObjectGUIDReference 0",
                     "writeString guidRef '00000000-0000-0000-0000-000000000000' attribute", "endStructure"}));
}

TEST(VariableValueStream, DeclaresNameTypeAndTheStructureOfTheValue) {
    VariableValue value(ZYR_VARIABLE_VECTOR2_FLOAT);
    EXPECT_EQ(callsOfWriting(value, RecordingSerializer::c_binary, 1),
              (Calls{"declareString name", "declareEnum type", "beginHeaderStructure Vector2{float}", "declareFloat x",
                     "declareFloat y", "endHeaderStructure",
                     "writeHeaderField valueVector2Float FFFFFFFE 0 Vector2{float}"}));
    VariableValue number(ZYR_VARIABLE_UINT8);
    EXPECT_EQ(callsOfWriting(number, RecordingSerializer::c_binary, 1),
              (Calls{"declareString name", "declareEnum type", "beginHeaderStructure Scalar{uint32}", "declareUInt32 v",
                     "endHeaderStructure", "writeHeaderField valueUInt8 FFFFFFFE 0 Scalar{uint32}"}));
    VariableValue text(ZYR_VARIABLE_STRING);
    EXPECT_EQ(callsOfWriting(text, RecordingSerializer::c_binary, 1),
              (Calls{"declareString name", "declareEnum type", "declareString valueString"}));
    VariableValue reference(ZYR_VARIABLE_STRING_REFERENCE);
    EXPECT_EQ(callsOfWriting(reference, RecordingSerializer::c_binary, 1),
              (Calls{"declareString name", "declareEnum type", "declareStringRef valueStringRef"}));
    VariableValue object(ZYR_VARIABLE_OBJECT_REFERENCE);
    EXPECT_EQ(callsOfWriting(object, RecordingSerializer::c_binary, 1),
              (Calls{"declareString name", "declareEnum type"}));
}

TEST(VariableValueStream, StopsAtTheFirstWriteThatFails) {
    VariableValue value(ZYR_VARIABLE_VECTOR2_FLOAT);
    const std::pair<const char*, size_t> failures[] = {
        {"writeString name", 1}, {"writeEnum type", 2}, {"beginStructure valueVector2Float", 3}, {"writeFloat x", 4}};
    for (auto [failure, calls] : failures) {
        for (RecordingSerializer::Kind kind : {RecordingSerializer::c_text, RecordingSerializer::c_binary}) {
            RecordingSerializer serializer(kind);
            serializer.m_failures = {failure};
            bool_t result = 1;
            EXPECT_EQ(value.writeSerialized(&serializer, 0, result), 0) << failure;
            EXPECT_EQ(result, 0);
            EXPECT_EQ(serializer.m_calls.size(), calls);
        }
    }
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    serializer.m_failures = {"declareEnum type"};
    bool_t result = 1;
    EXPECT_EQ(value.writeSerialized(&serializer, 1, result), 0);
    EXPECT_EQ(result, 0);
}

TEST(VariableValueStream, ReadsNameTypeAndThenTheGroup) {
    SerializedNode root = makeNode(ZYR_VARIABLE_INT16);
    root.m_groups["valueInt16"] = std::make_shared<SerializedNode>();
    root.m_groups["valueInt16"]->m_values["v"] = int32_t(-12);
    RecordingDeserializer deserializer(root);
    VariableValue value(ZYR_VARIABLE_STRING);
    EXPECT_EQ(value.readSerialized(&deserializer), 1);
    EXPECT_EQ(deserializer.m_calls,
              (Calls{"readString name", "readEnum type", "enterGroup valueInt16", "readInt32 v", "leaveGroup"}));
    EXPECT_EQ(value.getType(), ZYR_VARIABLE_INT16);
    EXPECT_EQ(value.getName(), "stored");
    EXPECT_EQ(value.getValueInt16(), -12);
}

TEST(VariableValueStream, NarrowsSmallNumbers) {
    SerializedNode root = makeNode(ZYR_VARIABLE_UINT8);
    root.m_groups["valueUInt8"] = std::make_shared<SerializedNode>();
    root.m_groups["valueUInt8"]->m_values["v"] = uint32_t(300);
    RecordingDeserializer deserializer(root);
    VariableValue value;
    EXPECT_EQ(value.readSerialized(&deserializer), 1);
    EXPECT_EQ(value.getValueUInt8(), 44);
}

TEST(VariableValueStream, StaysDefaultWithoutTheGroup) {
    forEachHeldRow([]<class Row>(Row) {
        RecordingDeserializer deserializer(makeNode(Row::c_row));
        VariableValue value(Row::c_row);
        setSample<Row>(value);
        EXPECT_EQ(value.readSerialized(&deserializer), 1);
        EXPECT_TRUE(Row::get(value) == typename Row::Type());
        EXPECT_EQ(value.getName(), "stored");
    });
}

TEST(VariableValueStream, ReadsAnEnumeration) {
    SerializedNode root = makeNode(ZYR_VARIABLE_ENUM);
    root.m_groups["valueEnum"] = std::make_shared<SerializedNode>();
    root.m_groups["valueEnum"]->m_values["v"] = int32_t(-12);
    RecordingDeserializer deserializer(root);
    VariableValue value;
    EXPECT_EQ(value.readSerialized(&deserializer), 1);
    EXPECT_EQ(value.getType(), ZYR_VARIABLE_ENUM);
    EXPECT_EQ(value.getValueInt32(), -12);
}

TEST(VariableValueStream, ReadsAStringReferenceAsItsOwn) {
    SerializedNode root = makeNode(ZYR_VARIABLE_STRING_REFERENCE);
    root.m_values["valueStringRef"] = std::string("read");
    RecordingDeserializer deserializer(root);
    VariableValue value;
    EXPECT_EQ(value.readSerialized(&deserializer), 1);
    ASSERT_NE(value.getValueStringRef(), nullptr);
    EXPECT_EQ(*value.getValueStringRef(), "read");
    EXPECT_EQ(deserializer.m_calls.back(), "readStringRef valueStringRef");
}

TEST(VariableValueStream, GivesBackThePointerThatItHeldBefore) {
    test::StubObject<IObject>* object = new test::StubObject<IObject>;
    VariableValue value(ZYR_VARIABLE_OBJECT_REFERENCE);
    value.setValueObjectRef(object);
    RecordingDeserializer deserializer(makeNode(ZYR_VARIABLE_OBJECT_REFERENCE));
    EXPECT_EQ(value.readSerialized(&deserializer), 1);
    EXPECT_EQ(value.getValueObjectRef(), nullptr);
    EXPECT_EQ(object->getRefCount(), 0u);
    EXPECT_EQ(deserializer.m_calls, (Calls{"readString name", "readEnum type"}));
    object->release();
}

TEST(VariableValueStream, AnEmptyTextGivesTheNullGUID) {
    SerializedNode root = makeNode(ZYR_VARIABLE_GUID);
    root.m_values["valueGUID"] = std::string();
    RecordingDeserializer deserializer(root);
    VariableValue value;
    EXPECT_EQ(value.readSerialized(&deserializer), 1);
    EXPECT_EQ(value.getValueGUID(), GUID_t());
}

TEST(VariableValueStream, ReadsTypesThatHoldNothing) {
    for (uint32_t type : {13u, 79u, 80u, 82u, 500u}) {
        RecordingDeserializer deserializer(makeNode(type));
        VariableValue value(ZYR_VARIABLE_RECT_FLOAT);
        EXPECT_EQ(value.readSerialized(&deserializer), 1);
        EXPECT_EQ(value.getType(), type);
        EXPECT_EQ(value.createVariableReference(), nullptr);
        EXPECT_EQ(deserializer.m_calls.size(), 2u);
    }
}

TEST(VariableValueStream, ReplacesEachTypeByEachOther) {
    for (uint32_t before = 1; before < 84; ++before) {
        for (uint32_t after = 1; after < 84; ++after) {
            VariableValue value(static_cast<VariableTypeEnum>(before));
            VariableValue fresh(static_cast<VariableTypeEnum>(after));
            RecordingDeserializer deserializer(makeNode(after));
            EXPECT_EQ(value.readSerialized(&deserializer), 1);
            EXPECT_EQ(value.getType(), after);
            fresh.setName("stored");
            EXPECT_EQ(callsOfWriting(value, RecordingSerializer::c_binary),
                      callsOfWriting(fresh, RecordingSerializer::c_binary));
        }
    }
}

TEST(VariableValueStream, KeepsItsTypeWithANewValueWhenTheTypeCannotBeRead) {
    for (const char* failure : {"readString name", "readEnum type"}) {
        RecordingDeserializer deserializer(makeNode(ZYR_VARIABLE_INT16));
        deserializer.m_failures = {failure};
        VariableValue value(ZYR_VARIABLE_RECT_FLOAT);
        setSample<test::RectFloatRow>(value);
        EXPECT_EQ(value.readSerialized(&deserializer), 0);
        EXPECT_EQ(value.getType(), ZYR_VARIABLE_RECT_FLOAT);
        EXPECT_EQ(value.getValueRectFloat(), Rect<float>());
    }
}

TEST(VariableValueStream, KeepsItsTypeWithoutTheKeyOfTheType) {
    RecordingDeserializer deserializer{SerializedNode()};
    VariableValue value(ZYR_VARIABLE_INT32);
    EXPECT_EQ(value.readSerialized(&deserializer), 1);
    EXPECT_EQ(value.getType(), ZYR_VARIABLE_INT32);
}

TEST(VariableValueStream, FailsWhenTheValueCannotBeRead) {
    SerializedNode root = makeNode(ZYR_VARIABLE_FLOAT);
    root.m_groups["valueFloat"] = std::make_shared<SerializedNode>();
    root.m_groups["valueFloat"]->m_values["v"] = 2.5f;
    for (const char* failure : {"enterGroup valueFloat", "readFloat v", "leaveGroup"}) {
        RecordingDeserializer deserializer(root);
        deserializer.m_failures = {failure};
        VariableValue value;
        EXPECT_EQ(value.readSerialized(&deserializer), 0) << failure;
        EXPECT_EQ(value.getType(), ZYR_VARIABLE_FLOAT);
    }
}

TEST(VariableValueStream, OfNoTypeEndsTheProcess) {
    RecordingDeserializer deserializer(makeNode(ZYR_VARIABLE_NONE));
    ZYR_EXPECT_INVARIANT(VariableValue(ZYR_VARIABLE_FLOAT).readSerialized(&deserializer),
                         "ERROR: assert.m_type != ZYR_VARIABLE_NONE.");
}

TEST(VariableValueStream, WorksOnTheOutermostLayer) {
    RecordingDeserializer inner{SerializedNode()};
    RecordingDeserializer outer(makeNode(ZYR_VARIABLE_FLOAT));
    inner.setTLIObject(&outer);
    VariableValue value;
    EXPECT_EQ(value.readSerialized(&inner), 1);
    EXPECT_EQ(value.getName(), "stored");
    RecordingSerializer innerSerializer(RecordingSerializer::c_text);
    RecordingSerializer outerSerializer(RecordingSerializer::c_binary);
    innerSerializer.setTLIObject(&outerSerializer);
    bool_t result = 0;
    EXPECT_EQ(value.writeSerialized(&innerSerializer, 0, result), 1);
    EXPECT_TRUE(innerSerializer.m_calls.empty());
    EXPECT_EQ(outerSerializer.m_calls.size(), 5u);
}

TEST(VariableValueStream, ReadSitesHaveCacheWordsOfTheirOwn) {
    RecordingDeserializer deserializer(makeNode(ZYR_VARIABLE_STRING));
    VariableValue value;
    value.readSerialized(&deserializer);
    value.readSerialized(&deserializer);
    std::set<uint32_t*> words;
    for (const char* call : {"readString name", "readEnum type", "readString valueString"}) {
        ASSERT_EQ(deserializer.m_caches[call].size(), 1u) << call;
        words.insert(*deserializer.m_caches[call].begin());
    }
    EXPECT_EQ(words.size(), 3u);
}

} // namespace zyr
