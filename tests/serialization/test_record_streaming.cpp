#include "serialization/sample_records.h"
#include "support/zyr_recording_serializer.h"
#include "zyr_common/serialization/zyr_record_walker.h"

#include <gtest/gtest.h>

namespace zyr {

template class RecordWalker<SamplePoint<float>>;
template class RecordWalker<SamplePoint<uint64_t>>;
template class RecordWalker<SampleMark>;
template class RecordWalker<SampleRecord>;
template class RecordWalker<SampleCounted>;
template class RecordWalker<SampleNamed>;

bool_t convertSampleId(String& p_text, uint32_t& p_number, bool_t p_textToNumber) {
    if (p_textToNumber && p_text == "NONE") {
        p_number = 0xFFFFFFFE;
        return 1;
    }
    if (!p_textToNumber && p_number == 0xFFFFFFFE) {
        p_text = "NONE";
        return 1;
    }
    return 0;
}

bool_t SampleCounted::readSerialized(IDeserializer* p_deserializer) {
    return Record::readSerialized(p_deserializer);
}

bool_t SampleCounted::writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) {
    return Record::writeSerialized(p_serializer, p_headerPass, p_result);
}

namespace {

using test::Calls;
using test::RecordingDeserializer;
using test::RecordingSerializer;

void fill(SampleRecord& p_record) {
    p_record.flag = 0;
    p_record.small = -5;
    p_record.large = -6'000'000'000;
    p_record.huge = 18'000'000'000'000'000'000u;
    p_record.ratio = 2.5f;
    p_record.exact = 0.25;
    p_record.colour = ZYR_SAMPLE_RED;
    p_record.side = ZYR_SAMPLE_RIGHT;
    p_record.name = "name";
    p_record.text = "long";
    GUID_t_fromString(p_record.guid, "00112233-4455-6677-8899-aabbccddeeff");
    p_record.mark.x = 8;
    for (int i = 0; i < 9; ++i) {
        p_record.matrix[i] = i;
    }
    p_record.doubles.pushBack(1.5);
    p_record.doubles.pushBack(-2);
    p_record.numbers.pushBack(77);
    p_record.words.pushBack("one");
    p_record.words.pushBack("two");
    p_record.colours.pushBack(ZYR_SAMPLE_RED);
    p_record.colours.pushBack(ZYR_SAMPLE_RED);
    p_record.order.pushBack(ZYR_SAMPLE_BLUE, nullptr);
    p_record.order.pushBack(ZYR_SAMPLE_NONE, nullptr);
    p_record.order.pushBack(ZYR_SAMPLE_RED, nullptr);
    SampleMark mark;
    mark.y = 1;
    p_record.marks.pushBack(mark);
}

const Calls c_attributes = {
    "writeBool flag 0 attribute",
    "writeInt32 small -5 attribute",
    "writeUInt32 id 4294967294=NONE attribute",
    "writeInt64 large -6000000000 attribute",
    "writeUInt64 huge 18000000000000000000 attribute",
    "writeFloat ratio 2.5 attribute",
    "writeDouble exact 0.25 attribute",
    "writeEnum colour 1=RED attribute",
    "writeEnum side 200=RIGHT attribute",
    "writeString name 'name' attribute",
};

} // namespace

TEST(RecordWriting, SeesATextFormatTwiceAttributesFirst) {
    SampleRecord record;
    fill(record);
    RecordingSerializer serializer(RecordingSerializer::c_text);
    bool_t result = 0;
    EXPECT_EQ(record.writeSerialized(&serializer, 0, result), 1);
    EXPECT_EQ(result, 1);
    Calls expected = c_attributes;
    for (const char* call : {
             "writeString guid '00112233-4455-6677-8899-aabbccddeeff' attribute",
             "writeString text 'long' element",
             "beginStructure mark 0",
             "writeFloat x 8 attribute",
             "writeFloat y 3 attribute",
             "writeEnum side 200=RIGHT attribute",
             "endStructure",
             "writeFloatArray matrix [0,1,2,3,4,5,6,7,8] rows of 3 element",
             "writeDoubleArray doubles [1.5,-2] element",
             "writeUInt32Array numbers [77] element",
             "writeStringArray words [one,two] element",
             "writeEnumArray colours [1=RED,1=RED] element",
             "writeEnumArray order [7=BLUE,0=NONE,1=RED] element",
             "beginArray marks 1 254",
             "beginArrayElement 0 SampleMark",
             "writeFloat x 0 attribute",
             "writeFloat y 1 attribute",
             "writeEnum side 200=RIGHT attribute",
             "endArrayElement",
             "endArray",
         }) {
        expected.push_back(call);
    }
    EXPECT_EQ(serializer.m_calls, expected);
}

TEST(RecordWriting, SeesABinaryFormatOnceInTheOrderOfTheList) {
    SampleRecord record;
    fill(record);
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    bool_t result = 0;
    EXPECT_EQ(record.writeSerialized(&serializer, 0, result), 1);
    Calls expected = c_attributes;
    expected.push_back("writeString text 'long' element");
    expected.push_back("writeString guid '00112233-4455-6677-8899-aabbccddeeff' attribute");
    expected.push_back("beginStructure mark 0");
    EXPECT_EQ(Calls(serializer.m_calls.begin(), serializer.m_calls.begin() + 13), expected);
    EXPECT_EQ(serializer.m_calls.size(), 30u);
}

TEST(RecordWriting, DeclaresEachFieldInTheHeaderPass) {
    SampleRecord record;
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    bool_t result = 0;
    EXPECT_EQ(record.writeSerialized(&serializer, 1, result), 1);
    EXPECT_EQ(result, 1);
    EXPECT_EQ(serializer.m_calls, (Calls{
                                      "declareBool flag",
                                      "declareInt32 small",
                                      "declareUInt32 id",
                                      "declareInt64 large",
                                      "declareUInt64 huge",
                                      "declareFloat ratio",
                                      "declareDouble exact",
                                      "declareEnum colour",
                                      "declareEnum side",
                                      "declareString name",
                                      "declareString text",
                                      "declareString guid",
                                      "beginHeaderStructure SampleMark",
                                      "declareFloat x",
                                      "declareFloat y",
                                      "declareEnum side",
                                      "endHeaderStructure",
                                      "writeHeaderField mark FFFFFFFE 0 SampleMark",
                                      "declareFloatArray matrix",
                                      "declareDoubleArray doubles",
                                      "declareUInt32Array numbers",
                                      "declareStringArray words",
                                      "declareEnumArray colours",
                                      "declareEnumArray order",
                                      "beginHeaderStructure SampleMark",
                                      "declareFloat x",
                                      "declareFloat y",
                                      "declareEnum side",
                                      "endHeaderStructure",
                                      "writeHeaderField marks FFFFFFFD FFFFFFFE SampleMark",
                                  }));
}

TEST(RecordWriting, StopsAtTheFirstFailure) {
    SampleRecord record;
    RecordingSerializer serializer(RecordingSerializer::c_text);
    serializer.m_failures.insert("writeUInt32 id");
    bool_t result = 1;
    EXPECT_EQ(record.writeSerialized(&serializer, 0, result), 0);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(serializer.m_calls.size(), 3u);
}

TEST(RecordWriting, FailsWithAFailingDeclarationOfAnInnerRecord) {
    SampleRecord record;
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    serializer.m_failures.insert("endHeaderStructure");
    bool_t result = 1;
    EXPECT_EQ(record.writeSerialized(&serializer, 1, result), 0);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(serializer.m_calls.back(), "endHeaderStructure");
}

TEST(RecordWriting, FailsInTheSecondPassToo) {
    SampleRecord record;
    RecordingSerializer serializer(RecordingSerializer::c_text);
    serializer.m_failures.insert("endStructure");
    bool_t result = 1;
    EXPECT_EQ(record.writeSerialized(&serializer, 0, result), 0);
    EXPECT_EQ(result, 0);
}

TEST(RecordWriting, GoesThroughTheOutermostLayer) {
    SamplePoint<float> point;
    RecordingSerializer inner(RecordingSerializer::c_text);
    RecordingSerializer outer(RecordingSerializer::c_binary);
    inner.setTLIObject(static_cast<ISerializer*>(&outer));
    bool_t result = 0;
    EXPECT_EQ(point.writeSerialized(&inner, 0, result), 1);
    EXPECT_TRUE(inner.m_calls.empty());
    EXPECT_EQ(outer.m_calls, (Calls{"writeFloat x 0 attribute", "writeFloat y 3 attribute"}));
}

TEST(RecordWriting, RunsTheBaseLevelFirst) {
    SampleNamed record;
    record.name = "n";
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    bool_t result = 0;
    SampleCounted& base = record;
    EXPECT_EQ(base.writeSerialized(&serializer, 0, result), 1);
    EXPECT_EQ(serializer.m_calls, (Calls{"writeString name 'n' attribute", "writeUInt64 adapter 0 attribute",
                                         "writeInt32 rank 0 attribute"}));
}

TEST(RecordReading, ReadsBackWhatWasWritten) {
    SampleRecord record;
    fill(record);
    RecordingSerializer serializer(RecordingSerializer::c_text);
    bool_t result = 0;
    ASSERT_EQ(record.writeSerialized(&serializer, 0, result), 1);
    SampleRecord read;
    RecordingDeserializer deserializer(serializer.m_root);
    EXPECT_EQ(read.readSerialized(&deserializer), 1);
    EXPECT_EQ(read.flag, 0);
    EXPECT_EQ(read.small, -5);
    EXPECT_EQ(read.large, -6'000'000'000);
    EXPECT_EQ(read.huge, 18'000'000'000'000'000'000u);
    EXPECT_EQ(read.ratio, 2.5f);
    EXPECT_EQ(read.colour, ZYR_SAMPLE_RED);
    EXPECT_EQ(read.side, ZYR_SAMPLE_RIGHT);
    EXPECT_EQ(read.text, "long");
    EXPECT_EQ(read.guid, record.guid);
    EXPECT_EQ(read.mark, record.mark);
    EXPECT_EQ(read.matrix[8], 8);
    EXPECT_EQ(read.doubles[1], -2);
    EXPECT_EQ(read.words[1], "two");
    EXPECT_EQ(read.colours.getSize(), 2u);
    EXPECT_EQ(read.order.front(), ZYR_SAMPLE_BLUE);
    EXPECT_EQ(read.order.back(), ZYR_SAMPLE_RED);
    ASSERT_EQ(read.marks.getSize(), 1u);
    EXPECT_EQ(read.marks[0].y, 1);
}

TEST(RecordReading, ReadsInTheOrderOfTheList) {
    RecordingDeserializer deserializer((test::SerializedNode()));
    SampleNamed record;
    EXPECT_EQ(record.readSerialized(&deserializer), 1);
    EXPECT_EQ(deserializer.m_calls, (Calls{"readString name", "readUInt64 adapter", "readInt32 rank"}));
}

TEST(RecordReading, KeepsWhatIsMissing) {
    SampleRecord record;
    fill(record);
    RecordingDeserializer deserializer((test::SerializedNode()));
    EXPECT_EQ(record.readSerialized(&deserializer), 1);
    EXPECT_EQ(record.small, -5);
    EXPECT_EQ(record.mark.x, 8);
    EXPECT_EQ(record.matrix[3], 3);
    EXPECT_EQ(record.guid.m_data[15], 0xFF);
    EXPECT_EQ(record.marks.getSize(), 1u);
}

TEST(RecordReading, StopsAtTheFirstFailureAndKeepsWhatWasRead) {
    SampleRecord source;
    fill(source);
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    bool_t result = 0;
    ASSERT_EQ(source.writeSerialized(&serializer, 0, result), 1);
    RecordingDeserializer deserializer(serializer.m_root);
    deserializer.m_failures.insert("readInt64 large");
    SampleRecord record;
    EXPECT_EQ(record.readSerialized(&deserializer), 0);
    EXPECT_EQ(record.small, -5);
    EXPECT_EQ(record.large, 0);
    EXPECT_EQ(record.huge, 0u);
    EXPECT_EQ(deserializer.m_calls.back(), "readInt64 large");
}

TEST(RecordReading, LeavesTheGroupOfAFailedInnerRecord) {
    SampleRecord source;
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    bool_t result = 0;
    ASSERT_EQ(source.writeSerialized(&serializer, 0, result), 1);
    RecordingDeserializer deserializer(serializer.m_root);
    deserializer.m_failures.insert("readFloat x");
    SampleRecord record;
    EXPECT_EQ(record.readSerialized(&deserializer), 0);
    EXPECT_EQ(deserializer.m_calls.back(), "leaveGroup");
}

TEST(RecordReading, AddsToASetBehindWhatItHolds) {
    SampleRecord source;
    source.order.pushBack(ZYR_SAMPLE_NONE, nullptr);
    source.order.pushBack(ZYR_SAMPLE_BLUE, nullptr);
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    bool_t result = 0;
    ASSERT_EQ(source.writeSerialized(&serializer, 0, result), 1);
    SampleRecord record;
    record.order.pushBack(ZYR_SAMPLE_BLUE, nullptr);
    RecordingDeserializer deserializer(serializer.m_root);
    EXPECT_EQ(record.readSerialized(&deserializer), 1);
    EXPECT_EQ(record.order.getSize(), 2u);
    EXPECT_EQ(record.order.front(), ZYR_SAMPLE_BLUE);
    EXPECT_EQ(record.order.back(), ZYR_SAMPLE_NONE);
}

TEST(RecordReading, ReplacesTheItemsOfAnArray) {
    SampleRecord source;
    source.marks.pushBack(SampleMark());
    source.numbers.pushBack(1);
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    bool_t result = 0;
    ASSERT_EQ(source.writeSerialized(&serializer, 0, result), 1);
    SampleRecord record;
    fill(record);
    RecordingDeserializer deserializer(serializer.m_root);
    EXPECT_EQ(record.readSerialized(&deserializer), 1);
    ASSERT_EQ(record.marks.getSize(), 1u);
    EXPECT_EQ(record.marks[0], SampleMark());
    EXPECT_EQ(record.numbers[0], 1u);
    EXPECT_TRUE(record.words.isEmpty());
}

TEST(RecordReading, GivesADefaultRecordForANullElement) {
    test::SerializedNode root;
    root.m_arrays["marks"].emplace_back("", std::make_shared<test::SerializedNode>());
    RecordingDeserializer deserializer(root);
    SampleRecord record;
    EXPECT_EQ(record.readSerialized(&deserializer), 1);
    ASSERT_EQ(record.marks.getSize(), 1u);
    EXPECT_EQ(record.marks[0], SampleMark());
}

TEST(RecordReading, ReadsArraysOfManyRecordsInSteps) {
    constexpr size_t COUNT = 5000;
    SampleRecord source;
    source.marks.resize(COUNT);
    for (size_t i = 0; i < COUNT; i++) {
        source.marks[i] = SampleMark();
        source.marks[i].x = static_cast<float>(i);
    }
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    bool_t result = 0;
    ASSERT_EQ(source.writeSerialized(&serializer, 0, result), 1);
    SampleRecord record;
    RecordingDeserializer deserializer(serializer.m_root);
    EXPECT_EQ(record.readSerialized(&deserializer), 1);
    ASSERT_EQ(record.marks.getSize(), COUNT);
    EXPECT_EQ(record.marks.getAllocatedSize(), COUNT);
    EXPECT_EQ(record.marks.getAllocCondition(), static_cast<uint32_t>(ZYR_ALLOC_CONDITION_ON_RESIZE));
    for (size_t i = 0; i < COUNT; i++) {
        ASSERT_EQ(record.marks[i], source.marks[i]) << i;
    }
}

TEST(RecordReading, KeepsTheRecordsInFrontOfOneThatFails) {
    test::SerializedNode root;
    root.m_arrays["marks"].emplace_back("", std::make_shared<test::SerializedNode>());
    root.m_arrays["marks"].emplace_back("SampleMark", std::make_shared<test::SerializedNode>());
    RecordingDeserializer deserializer(root);
    deserializer.m_failures.insert("readFloat x");
    SampleRecord record;
    EXPECT_EQ(record.readSerialized(&deserializer), 0);
    EXPECT_EQ(record.marks.getSize(), 1u);
}

TEST(RecordReading, RefusesAMatrixOfAnotherSize) {
    test::SerializedNode root;
    root.m_values["matrix"] = std::vector<float>{1, 2, 3};
    RecordingDeserializer deserializer(root);
    SampleRecord record;
    EXPECT_EQ(record.readSerialized(&deserializer), 0);
    EXPECT_EQ(record.matrix[0], 0);
}

TEST(RecordReading, LeavesTheGuidForAnEmptyText) {
    test::SerializedNode root;
    root.m_values["guid"] = std::string();
    RecordingDeserializer deserializer(root);
    SampleRecord record;
    record.guid.m_data[0] = 5;
    EXPECT_EQ(record.readSerialized(&deserializer), 1);
    EXPECT_EQ(record.guid.m_data[0], 5);
}

TEST(RecordReading, PassesOneCacheWordForEachSite) {
    RecordingDeserializer deserializer((test::SerializedNode()));
    SamplePoint<float> first;
    SamplePoint<float> second;
    SampleMark extended;
    first.readSerialized(&deserializer);
    second.readSerialized(&deserializer);
    extended.readSerialized(&deserializer);
    EXPECT_EQ(deserializer.m_caches["readFloat x"].size(), 1u);
    EXPECT_NE(*deserializer.m_caches["readFloat x"].begin(), *deserializer.m_caches["readFloat y"].begin());
}

TEST(RecordReading, GoesThroughTheOutermostLayer) {
    test::SerializedNode root;
    root.m_values["x"] = 5.0f;
    RecordingDeserializer inner((test::SerializedNode()));
    RecordingDeserializer outer(root);
    inner.setTLIObject(static_cast<IDeserializer*>(&outer));
    SamplePoint<float> point;
    EXPECT_EQ(point.readSerialized(&inner), 1);
    EXPECT_EQ(point.x, 5);
    EXPECT_TRUE(inner.m_calls.empty());
}

} // namespace zyr
