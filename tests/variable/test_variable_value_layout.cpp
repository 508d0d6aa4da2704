#include "support/binary_layout.h"
#include "zyr_common/geometry/zyr_vector.h"
#include "zyr_common/variable/zyr_variable_value.h"

#include <gtest/gtest.h>

namespace zyr {

// The suffixes in their order, as other modules know it; the code has them from a list of its own.
#define ZYR_TEST_NUMBERS(check)                                                                                        \
    check(Bool) check(Int8) check(UInt8) check(Int16) check(UInt16) check(Int32) check(UInt32) check(Int64)            \
        check(UInt64) check(Float) check(Double)
#define ZYR_TEST_PLAIN_RECORDS(check)                                                                                  \
    check(String) check(Vector2Int32) check(Vector2Int64) check(Vector2Float) check(Vector3Float) check(Vector4Float)  \
        check(Vector2Double) check(Vector3Double) check(Vector4Double) check(Matrix3x3Float) check(Matrix3x3Double)    \
            check(Matrix4x4Float) check(Matrix4x4Double) check(RectSizeInt32) check(RectSizeInt64)                     \
                check(RectSizeFloat) check(RectSizeDouble) check(RectInt32) check(RectInt64) check(RectFloat)          \
                    check(RectDouble) check(BoxSizeFloat) check(BoxSizeDouble) check(BoxFloat) check(BoxDouble)
#define ZYR_TEST_ANCHORED_RECORDS(check)                                                                               \
    check(ExtPositionXFloat) check(ExtPositionXDouble) check(ExtPositionYFloat) check(ExtPositionYDouble)              \
        check(ExtPositionZFloat) check(ExtPositionZDouble) check(ExtDimensionWidthFloat)                               \
            check(ExtDimensionWidthDouble) check(ExtDimensionHeightFloat) check(ExtDimensionHeightDouble)              \
                check(ExtDimensionDepthFloat) check(ExtDimensionDepthDouble) check(ExtVector2Int32)                    \
                    check(ExtVector2Int64) check(ExtVector2Float) check(ExtVector3Float) check(ExtVector2Double)       \
                        check(ExtVector3Double) check(ExtRectInt32) check(ExtRectInt64) check(ExtRectFloat)            \
                            check(ExtRectDouble) check(ExtBoxFloat) check(ExtBoxDouble)
#define ZYR_TEST_LAST_RECORDS(check)                                                                                   \
    check(ColorRGBFloat) check(ColorRGBDouble) check(ColorRGBAFloat) check(ColorRGBADouble) check(GUID)                \
        check(ObjectGUIDReference)
#define ZYR_TEST_RECORDS(check)                                                                                        \
    ZYR_TEST_PLAIN_RECORDS(check) ZYR_TEST_ANCHORED_RECORDS(check) ZYR_TEST_LAST_RECORDS(check)
#define ZYR_TEST_POINTERS(check) check(StringRef) check(ObjectRef)

TEST(VariableValueLayout, KeepsTheOrderOfItsOperations) {
    size_t slot = 2;
    EXPECT_EQ(getSlot(&VariableValue::clone), slot++);
    EXPECT_EQ(getSlot(&VariableValue::addRef), slot++);
    EXPECT_EQ(getSlot(&VariableValue::release), slot++);
    EXPECT_EQ(getSlot(&VariableValue::clear), slot++);
    EXPECT_EQ(getSlot(&VariableValue::getVariableReferenceByPath), slot++);
    EXPECT_EQ(getSlot(&VariableValue::getVariableReference), slot++);
    EXPECT_EQ(getSlot(&VariableValue::readSerialized), slot++);
    EXPECT_EQ(getSlot(&VariableValue::writeSerialized), slot++);
    EXPECT_EQ(getSlot(&VariableValue::createVariableReference), slot++);
    EXPECT_EQ(getSlot(&VariableValue::copyValueToVariableReference), slot++);
    EXPECT_EQ(getSlot(&VariableValue::getValueSize), slot++);
    EXPECT_EQ(getSlot(&VariableValue::copyValueToData), slot++);
    EXPECT_EQ(getSlot(&VariableValue::getName), slot++);
    EXPECT_EQ(getSlot(&VariableValue::setName), slot++);
    EXPECT_EQ(getSlot(&VariableValue::getType), slot++);
    EXPECT_EQ(getSlot(&VariableValue::isBorrowedObject), slot++);
    EXPECT_EQ(getSlot(&VariableValue::setBorrowedObject), slot++);
    EXPECT_EQ(slot, 19u);
#define ZYR_TEST_SLOT(suffix) EXPECT_EQ(getSlot(&VariableValue::getValue##suffix), slot++);
    ZYR_TEST_NUMBERS(ZYR_TEST_SLOT)
    ZYR_TEST_RECORDS(ZYR_TEST_SLOT)
    ZYR_TEST_POINTERS(ZYR_TEST_SLOT)
#undef ZYR_TEST_SLOT
    EXPECT_EQ(slot, 19u + 68u);
#define ZYR_TEST_SLOT(suffix) EXPECT_EQ(getSlot(&VariableValue::getMutableValue##suffix), slot++);
    ZYR_TEST_RECORDS(ZYR_TEST_SLOT)
#undef ZYR_TEST_SLOT
    EXPECT_EQ(slot, 19u + 68u + 55u);
#define ZYR_TEST_SLOT(suffix) EXPECT_EQ(getSlot(&VariableValue::setValue##suffix), slot++);
    ZYR_TEST_NUMBERS(ZYR_TEST_SLOT)
    ZYR_TEST_RECORDS(ZYR_TEST_SLOT)
    ZYR_TEST_POINTERS(ZYR_TEST_SLOT)
#undef ZYR_TEST_SLOT
    EXPECT_EQ(slot, 19u + 68u + 55u + 68u);
}

TEST(VariableValueLayout, HasNameTypeMarkAndValueSideBySide) {
    VariableValue value(ZYR_VARIABLE_UINT64);
    value.setValueUInt64(0x0102030405060708);
    EXPECT_EQ(sizeof(VariableValue), 149u);
    EXPECT_EQ(static_cast<const void*>(&value.getName()), reinterpret_cast<const char*>(&value) + 24);
    EXPECT_EQ(readAt<uint32_t>(&value, 136), 9u);
    EXPECT_EQ(readAt<bool_t>(&value, 140), 1);
    EXPECT_EQ(readAt<uint64_t>(&value, 141), 0x0102030405060708u);
}

TEST(VariableValueLayout, HoldsARecordByItsAddress) {
    VariableValue value(ZYR_VARIABLE_VECTOR2_FLOAT);
    EXPECT_EQ(readAt<void*>(&value, 141), static_cast<void*>(&value.getMutableValueVector2Float()));
}

TEST(VariableValueLayout, HoldsNumbersInTheLowBytesWithTheOthersZero) {
    VariableValue value(ZYR_VARIABLE_BOOL);
    value.setValueBool(1);
    EXPECT_EQ(readAt<uint64_t>(&value, 141), 1u);
}

} // namespace zyr
