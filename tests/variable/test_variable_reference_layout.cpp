#include "support/binary_layout.h"
#include "zyr_common/variable/zyr_variable_reference.h"

#include <gtest/gtest.h>

namespace zyr {

TEST(VariableReference, KeepsTheOrderOfItsOperations) {
    size_t slot = 0;
    EXPECT_EQ(getSlot(&VariableReference::changeValueBool), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueUInt8), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueInt8), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueUInt16), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueInt16), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueUInt32), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueInt32), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueUInt64), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueInt64), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueFloat), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueDouble), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueString), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueVector2Int32), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueVector2Int64), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueVector2Float), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueVector3Float), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueVector4Float), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueVector2Double), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueVector3Double), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueVector4Double), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueMatrix3x3Float), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueMatrix4x4Float), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueMatrix3x3Double), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueMatrix4x4Double), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtPositionXFloat), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtPositionXDouble), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtPositionYFloat), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtPositionYDouble), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtPositionZFloat), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtPositionZDouble), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtDimensionWidthFloat), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtDimensionWidthDouble), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtDimensionHeightFloat), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtDimensionHeightDouble), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtDimensionDepthFloat), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtDimensionDepthDouble), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtVector2Int32), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtVector2Int64), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtVector2Float), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtVector3Float), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtVector2Double), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtVector3Double), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueRectSizeInt32), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueRectSizeInt64), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueRectSizeFloat), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueRectSizeDouble), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueRectInt32), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueRectInt64), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueRectFloat), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueRectDouble), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueBoxSizeFloat), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueBoxSizeDouble), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueBoxFloat), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueBoxDouble), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtRectInt32), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtRectInt64), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtRectFloat), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtRectDouble), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtBoxFloat), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueExtBoxDouble), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueColorRGBFloat), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueColorRGBDouble), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueColorRGBAFloat), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueColorRGBADouble), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueGUID), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueStringReference), slot++);
    EXPECT_EQ(getSlot(&VariableReference::changeValueObjectReference), slot++);
    EXPECT_EQ(getSlot(&VariableReference::getType), slot++);
    EXPECT_EQ(getSlot(&VariableReference::getPointer), slot++);
    EXPECT_EQ(getSlot(&VariableReference::release), slot++);
}

TEST(VariableReference, HoldsTypeAndPointerBehindItsTable) {
    int32_t field = 0;
    VariableReference* reference = new VariableReference(ZYR_VARIABLE_INT32, &field);
    EXPECT_EQ(sizeof(VariableReference), 20u);
    EXPECT_EQ(readAt<uint32_t>(reference, 8), 6u);
    EXPECT_EQ(readAt<void*>(reference, 12), &field);
    EXPECT_EQ(reference->getType(), ZYR_VARIABLE_INT32);
    EXPECT_EQ(reference->getPointer(), &field);
    reference->release();
    EXPECT_EQ(field, 0);
}

} // namespace zyr
