#include "support/log_capture.h"
#include "zyr_common/colour/zyr_color.h"
#include "zyr_common/digest/zyr_guid.h"
#include "zyr_common/geometry/zyr_ext_box.h"
#include "zyr_common/geometry/zyr_ext_dimension.h"
#include "zyr_common/geometry/zyr_ext_position.h"
#include "zyr_common/geometry/zyr_ext_rect.h"
#include "zyr_common/geometry/zyr_matrix.h"
#include "zyr_common/text/zyr_string.h"
#include "zyr_common/variable/zyr_variable_reference.h"

#include <cstring>
#include <gtest/gtest.h>

namespace zyr {

namespace {

/// Refuses every type but its own, with one line, and leaves the field as it is; assigns to its own without a line.
template <typename T>
void expectOwnTypeOnly(VariableTypeEnum p_own, const char* p_name, bool_t (VariableReference::*p_change)(const T&)) {
    SCOPED_TRACE(p_name);
    T value;
    memset(static_cast<void*>(&value), 0x3C, sizeof(value));
    unsigned char field[160];
    for (uint32_t type = 0; type < 84; ++type) {
        memset(field, 0xA5, sizeof(field));
        VariableReference* reference = new VariableReference(VariableTypeEnum(type), field + 1);
        LogCapture capture;
        bool_t changed = (reference->*p_change)(value);
        reference->release();
        if (type == p_own) {
            EXPECT_EQ(changed, 1);
            EXPECT_TRUE(capture.getLines().empty());
            EXPECT_EQ(memcmp(field + 1, &value, sizeof(T)), 0);
            EXPECT_EQ(field[0], 0xA5);
            EXPECT_EQ(field[1 + sizeof(T)], 0xA5);
            continue;
        }
        EXPECT_EQ(changed, 0);
        ASSERT_EQ(capture.getLines().size(), 1u);
        EXPECT_EQ(capture.getLines()[0].message, std::string("Unable to convert ") + p_name +
                                                     " to type:" + zyr_getVariableTypeString(VariableTypeEnum(type)));
        EXPECT_EQ(capture.getLines()[0].module, "common");
        EXPECT_EQ(capture.getLines()[0].level, 2);
        for (unsigned char byte : field) {
            ASSERT_EQ(byte, 0xA5);
        }
    }
}

} // namespace

#define ZYR_EXPECT_OWN_TYPE_ONLY(number, type, suffix)                                                                 \
    expectOwnTypeOnly<type>(VariableTypeEnum(number), #type, &VariableReference::changeValue##suffix)

TEST(RecordConversions, VectorsTakeTheirOwnTypeOnly) {
    ZYR_EXPECT_OWN_TYPE_ONLY(14, Vector2<int32_t>, Vector2Int32);
    ZYR_EXPECT_OWN_TYPE_ONLY(16, Vector2<int64_t>, Vector2Int64);
    ZYR_EXPECT_OWN_TYPE_ONLY(17, Vector2<float>, Vector2Float);
    ZYR_EXPECT_OWN_TYPE_ONLY(18, Vector2<double>, Vector2Double);
    ZYR_EXPECT_OWN_TYPE_ONLY(23, Vector3<float>, Vector3Float);
    ZYR_EXPECT_OWN_TYPE_ONLY(24, Vector3<double>, Vector3Double);
    ZYR_EXPECT_OWN_TYPE_ONLY(29, Vector4<float>, Vector4Float);
    ZYR_EXPECT_OWN_TYPE_ONLY(30, Vector4<double>, Vector4Double);
}

TEST(RecordConversions, MatricesTakeTheirOwnTypeOnly) {
    ZYR_EXPECT_OWN_TYPE_ONLY(31, Matrix3x3<float>, Matrix3x3Float);
    ZYR_EXPECT_OWN_TYPE_ONLY(32, Matrix3x3<double>, Matrix3x3Double);
    ZYR_EXPECT_OWN_TYPE_ONLY(33, Matrix4x4<float>, Matrix4x4Float);
    ZYR_EXPECT_OWN_TYPE_ONLY(34, Matrix4x4<double>, Matrix4x4Double);
}

TEST(RecordConversions, ThePositionXOfFloatNamesItselfWithASecondBlank) {
    expectOwnTypeOnly<ExtPositionX<float>>(VariableTypeEnum(35), "ExtPositionX<float> ",
                                           &VariableReference::changeValueExtPositionXFloat);
}

TEST(RecordConversions, PositionsTakeTheirOwnTypeOnly) {
    ZYR_EXPECT_OWN_TYPE_ONLY(36, ExtPositionX<double>, ExtPositionXDouble);
    ZYR_EXPECT_OWN_TYPE_ONLY(37, ExtPositionY<float>, ExtPositionYFloat);
    ZYR_EXPECT_OWN_TYPE_ONLY(38, ExtPositionY<double>, ExtPositionYDouble);
    ZYR_EXPECT_OWN_TYPE_ONLY(39, ExtPositionZ<float>, ExtPositionZFloat);
    ZYR_EXPECT_OWN_TYPE_ONLY(40, ExtPositionZ<double>, ExtPositionZDouble);
}

TEST(RecordConversions, DimensionsTakeTheirOwnTypeOnly) {
    ZYR_EXPECT_OWN_TYPE_ONLY(41, ExtDimensionWidth<float>, ExtDimensionWidthFloat);
    ZYR_EXPECT_OWN_TYPE_ONLY(42, ExtDimensionWidth<double>, ExtDimensionWidthDouble);
    ZYR_EXPECT_OWN_TYPE_ONLY(43, ExtDimensionHeight<float>, ExtDimensionHeightFloat);
    ZYR_EXPECT_OWN_TYPE_ONLY(44, ExtDimensionHeight<double>, ExtDimensionHeightDouble);
    ZYR_EXPECT_OWN_TYPE_ONLY(45, ExtDimensionDepth<float>, ExtDimensionDepthFloat);
    ZYR_EXPECT_OWN_TYPE_ONLY(46, ExtDimensionDepth<double>, ExtDimensionDepthDouble);
}

TEST(RecordConversions, AnchoredPointsTakeTheirOwnTypeOnly) {
    ZYR_EXPECT_OWN_TYPE_ONLY(47, ExtVector2<int32_t>, ExtVector2Int32);
    ZYR_EXPECT_OWN_TYPE_ONLY(48, ExtVector2<int64_t>, ExtVector2Int64);
    ZYR_EXPECT_OWN_TYPE_ONLY(49, ExtVector2<float>, ExtVector2Float);
    ZYR_EXPECT_OWN_TYPE_ONLY(50, ExtVector2<double>, ExtVector2Double);
    ZYR_EXPECT_OWN_TYPE_ONLY(51, ExtVector3<float>, ExtVector3Float);
    ZYR_EXPECT_OWN_TYPE_ONLY(52, ExtVector3<double>, ExtVector3Double);
}

TEST(RecordConversions, RectanglesTakeTheirOwnTypeOnly) {
    ZYR_EXPECT_OWN_TYPE_ONLY(53, RectSize<int32_t>, RectSizeInt32);
    ZYR_EXPECT_OWN_TYPE_ONLY(54, RectSize<int64_t>, RectSizeInt64);
    ZYR_EXPECT_OWN_TYPE_ONLY(55, RectSize<float>, RectSizeFloat);
    ZYR_EXPECT_OWN_TYPE_ONLY(56, RectSize<double>, RectSizeDouble);
    ZYR_EXPECT_OWN_TYPE_ONLY(57, Rect<int32_t>, RectInt32);
    ZYR_EXPECT_OWN_TYPE_ONLY(58, Rect<int64_t>, RectInt64);
    ZYR_EXPECT_OWN_TYPE_ONLY(59, Rect<float>, RectFloat);
    ZYR_EXPECT_OWN_TYPE_ONLY(60, Rect<double>, RectDouble);
}

TEST(RecordConversions, BoxesTakeTheirOwnTypeOnly) {
    ZYR_EXPECT_OWN_TYPE_ONLY(61, BoxSize<float>, BoxSizeFloat);
    ZYR_EXPECT_OWN_TYPE_ONLY(62, BoxSize<double>, BoxSizeDouble);
    ZYR_EXPECT_OWN_TYPE_ONLY(63, Box<float>, BoxFloat);
    ZYR_EXPECT_OWN_TYPE_ONLY(64, Box<double>, BoxDouble);
}

TEST(RecordConversions, AnchoredRectanglesAndBoxesTakeTheirOwnTypeOnly) {
    ZYR_EXPECT_OWN_TYPE_ONLY(65, ExtRect<int32_t>, ExtRectInt32);
    ZYR_EXPECT_OWN_TYPE_ONLY(66, ExtRect<int64_t>, ExtRectInt64);
    ZYR_EXPECT_OWN_TYPE_ONLY(67, ExtRect<float>, ExtRectFloat);
    ZYR_EXPECT_OWN_TYPE_ONLY(68, ExtRect<double>, ExtRectDouble);
    ZYR_EXPECT_OWN_TYPE_ONLY(69, ExtBox<float>, ExtBoxFloat);
    ZYR_EXPECT_OWN_TYPE_ONLY(70, ExtBox<double>, ExtBoxDouble);
}

TEST(RecordConversions, AGuidTakesItsOwnTypeOnly) {
    ZYR_EXPECT_OWN_TYPE_ONLY(75, GUID_t, GUID);
}

TEST(RecordConversions, MessagesNameBothTypes) {
    Vector2<double> field;
    VariableReference* reference = new VariableReference(ZYR_VARIABLE_VECTOR2_DOUBLE, &field);
    LogCapture capture;
    EXPECT_EQ(reference->changeValueVector2Float(Vector2<float>(1, 2)), 0);
    ASSERT_EQ(capture.getLines().size(), 1u);
    EXPECT_EQ(capture.getLines()[0].message, "Unable to convert Vector2<float> to type:Vector2<double>");
    EXPECT_EQ(capture.getLines()[0].function,
              "virtual bool_t zyr::VariableReference::changeValueVector2Float(const zyr::Vector2<float>&)");
    reference->release();
}

} // namespace zyr
