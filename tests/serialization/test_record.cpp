#include "serialization/sample_records.h"
#include "support/binary_layout.h"
#include "zyr_common/variable/zyr_variable_reference.h"

#include <gtest/gtest.h>

namespace zyr {

namespace {

SampleRecord makeFilled() {
    SampleRecord record;
    record.flag = 0;
    record.small = -5;
    record.id = 12;
    record.large = -6'000'000'000;
    record.huge = 0xFFFFFFFFFFFFFFFF;
    record.ratio = 2.5f;
    record.exact = 0.1;
    record.colour = ZYR_SAMPLE_RED;
    record.side = ZYR_SAMPLE_RIGHT;
    record.name = "name";
    record.text = "a longer text";
    record.guid.m_data[3] = 9;
    record.mark.x = 8;
    record.matrix[4] = 4;
    record.doubles.pushBack(1.5);
    record.numbers.pushBack(77);
    record.words.pushBack("word");
    record.colours.pushBack(ZYR_SAMPLE_RED);
    record.order.pushBack(ZYR_SAMPLE_BLUE, nullptr);
    record.marks.pushBack(SampleMark());
    return record;
}

VariableTypeEnum takeType(VariableReference* p_reference) {
    VariableTypeEnum type = p_reference ? p_reference->getType() : ZYR_VARIABLE_NONE;
    if (p_reference) {
        p_reference->release();
    }
    return type;
}

} // namespace

TEST(Record, StartsWithTheDefaultsOfItsList) {
    SampleRecord record;
    EXPECT_EQ(record.flag, 1);
    EXPECT_EQ(record.small, 0);
    EXPECT_EQ(record.id, 0xFFFFFFFEu);
    EXPECT_EQ(record.ratio, 0.5f);
    EXPECT_EQ(record.colour, ZYR_SAMPLE_BLUE);
    EXPECT_EQ(record.side, ZYR_SAMPLE_LEFT);
    EXPECT_TRUE(record.name.isEmpty());
    EXPECT_TRUE(record.guid.isNull());
    EXPECT_EQ(record.mark.y, 3);
    EXPECT_EQ(record.mark.side, ZYR_SAMPLE_RIGHT);
    EXPECT_EQ(record.matrix[8], 0);
    EXPECT_TRUE(record.marks.isEmpty());
}

TEST(Record, ClearBringsBackTheDefaults) {
    SampleRecord record = makeFilled();
    record.clear();
    EXPECT_EQ(record, SampleRecord());
    EXPECT_TRUE(record.order.isEmpty());
    EXPECT_EQ(record.flag, 1);
    EXPECT_EQ(record.id, 0xFFFFFFFEu);
    EXPECT_EQ(record.mark.x, 0);
    EXPECT_EQ(record.mark.y, 3);
    EXPECT_EQ(record.matrix[4], 0);
    EXPECT_TRUE(record.text.isEmpty());
    EXPECT_TRUE(record.guid.isNull());
    EXPECT_TRUE(record.doubles.isEmpty());
    EXPECT_TRUE(record.marks.isEmpty());
}

TEST(Record, ClearRunsTheBaseLevelToo) {
    SampleMark mark;
    mark.x = 5;
    mark.y = 6;
    mark.side = ZYR_SAMPLE_LEFT;
    mark.clear();
    EXPECT_EQ(mark, SampleMark());
    EXPECT_EQ(mark.y, 3);
}

TEST(Record, CopyThisLeavesTheBaseAlone) {
    SampleMark source;
    source.x = 5;
    source.side = ZYR_SAMPLE_LEFT;
    SampleMark target;
    target.copy_This(source);
    EXPECT_EQ(target.x, 0);
    EXPECT_EQ(target.side, ZYR_SAMPLE_LEFT);
}

TEST(Record, CopyBackwardsTakesAllLevels) {
    SampleMark source;
    source.x = 5;
    source.side = ZYR_SAMPLE_LEFT;
    SampleMark target;
    target.copy_Backwards(source);
    EXPECT_EQ(target, source);
}

TEST(Record, CopyTakesEveryKindOfField) {
    SampleRecord source = makeFilled();
    SampleRecord target;
    target.order.pushBack(ZYR_SAMPLE_RED, nullptr);
    target.copy_Backwards(source);
    EXPECT_EQ(target, source);
    EXPECT_EQ(target.large, -6'000'000'000);
    EXPECT_EQ(target.name, "name");
    EXPECT_EQ(target.mark, source.mark);
    EXPECT_EQ(target.matrix[4], 4);
    EXPECT_EQ(target.words[0], "word");
    EXPECT_EQ(target.order.getSize(), 1u);
    EXPECT_EQ(target.order.front(), ZYR_SAMPLE_BLUE);
    EXPECT_EQ(target.marks[0], SampleMark());
}

TEST(Record, CompareThisLooksAtItsOwnLevelOnly) {
    SampleMark a;
    SampleMark b;
    b.x = 1;
    EXPECT_EQ(a.compare_This(b), 1);
    EXPECT_EQ(a.compare_Backwards(b), 0);
    EXPECT_NE(a, b);
    b.x = 0;
    b.side = ZYR_SAMPLE_LEFT;
    EXPECT_EQ(a.compare_This(b), 0);
    EXPECT_NE(a, b);
}

TEST(Record, EqualityLooksAtTheOrderOfASet) {
    SampleRecord a;
    SampleRecord b;
    a.order.pushBack(ZYR_SAMPLE_RED, nullptr);
    EXPECT_NE(a, b);
    EXPECT_NE(b, a);
    b.order.pushBack(ZYR_SAMPLE_RED, nullptr);
    EXPECT_EQ(a, b);
    a.order.pushBack(ZYR_SAMPLE_BLUE, nullptr);
    b.order.pushFront(ZYR_SAMPLE_BLUE, nullptr);
    EXPECT_NE(a, b);
}

TEST(Record, EqualityLooksAtEachItemOfAnArray) {
    SampleRecord a;
    SampleRecord b;
    a.words.pushBack("x");
    EXPECT_NE(a, b);
    b.words.pushBack("y");
    EXPECT_NE(a, b);
    b.words[0] = "x";
    EXPECT_EQ(a, b);
    b.matrix[8] = 1;
    EXPECT_NE(a, b);
}

TEST(Record, PlainOnesAreTriviallyCopyableAndPacked) {
    EXPECT_TRUE(std::is_trivially_copyable_v<SampleMark>);
    EXPECT_EQ(sizeof(SampleMark), 9u);
    EXPECT_EQ(alignof(SampleMark), 1u);
    EXPECT_FALSE(std::is_polymorphic_v<SampleMark>);
}

TEST(Record, NamesItselfWithTheWordOfItsArgument) {
    EXPECT_EQ(SamplePoint<float>().getClassName(), "SamplePoint{float}");
    EXPECT_EQ(SamplePoint<uint64_t>::getRecordName(), "SamplePoint{uint64}");
    EXPECT_EQ(SampleMark().getClassName(), "SampleMark");
}

TEST(Record, CopyOfACountedOneStartsItsOwnCount) {
    SampleCounted* source = new SampleCounted;
    source->adapter = 4;
    source->addRef();
    SampleCounted* copy = new SampleCounted(*source);
    EXPECT_EQ(copy->adapter, 4u);
    copy->release();
    source->release();
    source->release();
}

TEST(Record, CountedOneKeepsTheLayoutOfItsList) {
    EXPECT_EQ(sizeof(SampleCounted), 24u + 112u + 8u);
    EXPECT_EQ(sizeof(SampleNamed), sizeof(SampleCounted) + 4 + 8);
}

TEST(RecordPath, GivesTheTypeAndTheAddressOfAField) {
    SampleRecord record;
    VariableReference* reference = record.getVariableReferenceByPath("small");
    ASSERT_NE(reference, nullptr);
    EXPECT_EQ(reference->getType(), ZYR_VARIABLE_INT32);
    EXPECT_EQ(reference->getPointer(), &record.small);
    reference->release();
}

TEST(RecordPath, FollowsTheTypeOfEachField) {
    SampleRecord record;
    EXPECT_EQ(takeType(record.getVariableReferenceByPath("flag")), ZYR_VARIABLE_UINT8);
    EXPECT_EQ(takeType(record.getVariableReferenceByPath("id")), ZYR_VARIABLE_UINT32);
    EXPECT_EQ(takeType(record.getVariableReferenceByPath("huge")), ZYR_VARIABLE_UINT64);
    EXPECT_EQ(takeType(record.getVariableReferenceByPath("ratio")), ZYR_VARIABLE_FLOAT);
    EXPECT_EQ(takeType(record.getVariableReferenceByPath("exact")), ZYR_VARIABLE_DOUBLE);
    EXPECT_EQ(takeType(record.getVariableReferenceByPath("colour")), ZYR_VARIABLE_ENUM);
    EXPECT_EQ(takeType(record.getVariableReferenceByPath("side")), ZYR_VARIABLE_UINT8);
    EXPECT_EQ(takeType(record.getVariableReferenceByPath("name")), ZYR_VARIABLE_STRING);
    EXPECT_EQ(takeType(record.getVariableReferenceByPath("guid")), ZYR_VARIABLE_GUID);
}

TEST(RecordPath, GoesIntoARecordAndOnToItsBase) {
    SampleRecord record;
    VariableReference* reference = record.getVariableReferenceByPath("mark.x");
    ASSERT_NE(reference, nullptr);
    EXPECT_EQ(reference->getPointer(), &record.mark.x);
    reference->release();
    EXPECT_EQ(takeType(record.getVariableReferenceByPath("mark.side")), ZYR_VARIABLE_UINT8);
}

TEST(RecordPath, GivesNullForRecordsOutsideTheTypeTableAndForArrays) {
    SampleRecord record;
    EXPECT_EQ(record.getVariableReferenceByPath("mark"), nullptr);
    EXPECT_EQ(record.getVariableReferenceByPath("matrix"), nullptr);
    EXPECT_EQ(record.getVariableReferenceByPath("words"), nullptr);
    EXPECT_EQ(record.getVariableReferenceByPath("order"), nullptr);
}

TEST(RecordPath, GivesNullForUnknownWordsAndBelowALeaf) {
    SampleRecord record;
    for (const char* path :
         {"", ".", "nothing", "Small", "small.x", "mark.", "mark..x", "mark.z", ".small", "small[0]"}) {
        EXPECT_EQ(takeType(record.getVariableReferenceByPath(path)), ZYR_VARIABLE_NONE) << path;
    }
}

TEST(RecordPath, ReachesAllLevelsOfACountedOne) {
    SampleNamed record;
    EXPECT_EQ(takeType(record.getVariableReferenceByPath("rank")), ZYR_VARIABLE_INT32);
    EXPECT_EQ(takeType(record.getVariableReferenceByPath("adapter")), ZYR_VARIABLE_UINT64);
    EXPECT_EQ(record.getVariableReferenceByPath("held"), nullptr);
}

} // namespace zyr
