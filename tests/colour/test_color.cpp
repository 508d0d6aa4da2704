#include "support/zyr_recording_serializer.h"
#include "zyr_common/colour/zyr_color.h"
#include "zyr_common/text/zyr_string.h"
#include "zyr_common/variable/zyr_variable_reference.h"
#include "zyr_common/variable/zyr_variable_types.h"

#include <gtest/gtest.h>

using namespace zyr;

template <typename T> class ColorTest : public testing::Test {};
using Scalars = testing::Types<float, double>;
TYPED_TEST_SUITE(ColorTest, Scalars);

TYPED_TEST(ColorTest, DefaultIsAllZero) {
    ColorRGB<TypeParam> rgb;
    ColorRGBA<TypeParam> rgba;
    ColorRGBAStop<TypeParam> stop;
    EXPECT_EQ(rgb.r + rgb.g + rgb.b, 0);
    EXPECT_TRUE(rgba == ColorRGBA<TypeParam>(0, 0, 0, 0));
    EXPECT_TRUE(stop.color == rgba);
    EXPECT_EQ(stop.offset, 0);
}

TYPED_TEST(ColorTest, ArithmeticWorksFieldByField) {
    using Color = ColorRGBA<TypeParam>;
    const Color a(1, 2, 3, 4);
    const Color b(5, 8, 16, 32);
    EXPECT_TRUE(a + b == Color(6, 10, 19, 36));
    EXPECT_TRUE(b - a == Color(4, 6, 13, 28));
    EXPECT_TRUE(a * b == Color(5, 16, 48, 128));
    EXPECT_TRUE(b / Color(5, 4, 2, 8) == Color(1, 2, 8, 4));
    EXPECT_TRUE(a + TypeParam(1) == Color(2, 3, 4, 5));
    EXPECT_TRUE(a - TypeParam(1) == Color(0, 1, 2, 3));
    EXPECT_TRUE(a * TypeParam(2) == Color(2, 4, 6, 8));
    EXPECT_TRUE(a / TypeParam(2) == Color(0.5, 1, 1.5, 2));
    EXPECT_TRUE(+a == a);
    EXPECT_TRUE(-a == Color(-1, -2, -3, -4));
}

TYPED_TEST(ColorTest, CompoundFormsChangeTheColor) {
    using Color = ColorRGB<TypeParam>;
    Color color(1, 2, 3);
    EXPECT_TRUE((color += Color(1, 1, 1)) == Color(2, 3, 4));
    EXPECT_TRUE((color -= Color(1, 0, 0)) == Color(1, 3, 4));
    EXPECT_TRUE((color *= Color(2, 2, 2)) == Color(2, 6, 8));
    EXPECT_TRUE((color /= Color(2, 3, 4)) == Color(1, 2, 2));
    EXPECT_TRUE((color += TypeParam(1)) == Color(2, 3, 3));
    EXPECT_TRUE((color -= TypeParam(1)) == Color(1, 2, 2));
    EXPECT_TRUE((color *= TypeParam(4)) == Color(4, 8, 8));
    EXPECT_TRUE((color /= TypeParam(2)) == Color(2, 4, 4));
    EXPECT_TRUE(color == Color(2, 4, 4));
}

TYPED_TEST(ColorTest, EqualityLooksAtEveryField) {
    using Color = ColorRGBA<TypeParam>;
    const Color color(1, 2, 3, 4);
    EXPECT_FALSE(color != Color(1, 2, 3, 4));
    EXPECT_TRUE(color != Color(0, 2, 3, 4));
    EXPECT_TRUE(color != Color(1, 0, 3, 4));
    EXPECT_TRUE(color != Color(1, 2, 0, 4));
    EXPECT_TRUE(color != Color(1, 2, 3, 0));
}

TEST(Color, NegationOfUnsignedFormsWraps) {
    const ColorRGB<unsigned int> rgb = -ColorRGB<unsigned int>(1, 0, 0xFFFFFFFF);
    EXPECT_EQ(rgb.r, 0xFFFFFFFFu);
    EXPECT_EQ(rgb.g, 0u);
    EXPECT_EQ(rgb.b, 1u);
    const ColorRGBA<unsigned long> rgba = -ColorRGBA<unsigned long>(1, 2, 0, 3);
    EXPECT_EQ(rgba.r, ~0ul);
    EXPECT_EQ(rgba.a, ~0ul - 2);
}

TEST(Color, ClassNamesCarryTheScalar) {
    EXPECT_STREQ(ColorRGB<float>().getClassName().getData(), "ColorRGB{float}");
    EXPECT_STREQ(ColorRGB<double>().getClassName().getData(), "ColorRGB{double}");
    EXPECT_STREQ(ColorRGBA<float>().getClassName().getData(), "ColorRGBA{float}");
    EXPECT_STREQ(ColorRGBA<double>().getClassName().getData(), "ColorRGBA{double}");
    EXPECT_STREQ(ColorRGBAStop<float>().getClassName().getData(), "ColorRGBAStop{float}");
    EXPECT_STREQ(ColorRGBAStop<double>().getClassName().getData(), "ColorRGBAStop{double}");
}

TYPED_TEST(ColorTest, PathsReachTheFields) {
    const VariableTypeEnum scalar = sizeof(TypeParam) == 4 ? ZYR_VARIABLE_FLOAT : ZYR_VARIABLE_DOUBLE;
    const VariableTypeEnum rgba =
        sizeof(TypeParam) == 4 ? ZYR_VARIABLE_COLOR_RGBA_FLOAT : ZYR_VARIABLE_COLOR_RGBA_DOUBLE;
    ColorRGBAStop<TypeParam> stop;
    struct Row {
        const char* m_path;
        void* m_address;
        VariableTypeEnum m_type;
    };
    const Row rows[] = {{"offset", &stop.offset, scalar},   {"color", &stop.color, rgba},
                        {"color.r", &stop.color.r, scalar}, {"color.g", &stop.color.g, scalar},
                        {"color.b", &stop.color.b, scalar}, {"color.a", &stop.color.a, scalar}};
    for (const Row& row : rows) {
        VariableReference* reference = stop.getVariableReferenceByPath(row.m_path);
        ASSERT_NE(reference, nullptr) << row.m_path;
        EXPECT_EQ(reference->getPointer(), row.m_address) << row.m_path;
        EXPECT_EQ(reference->getType(), row.m_type) << row.m_path;
        reference->release();
    }
    for (const char* path : {"", "r", "color.x", "offset.r", "Color"}) {
        EXPECT_EQ(stop.getVariableReferenceByPath(path), nullptr) << path;
    }
    ColorRGB<TypeParam> rgb;
    EXPECT_EQ(rgb.getVariableReferenceByPath("a"), nullptr);
}

TYPED_TEST(ColorTest, StreamsHaveTheFieldsUnderTheirKeys) {
    ColorRGBAStop<TypeParam> stop(ColorRGBA<TypeParam>(0.25, 0.5, 0.75, 1), 0.125);
    test::RecordingSerializer serializer(test::RecordingSerializer::c_binary);
    bool_t result = 0;
    ASSERT_TRUE(stop.writeSerialized(&serializer, 0, result));
    const std::string operation = sizeof(TypeParam) == 4 ? "writeFloat " : "writeDouble ";
    EXPECT_EQ(serializer.m_calls,
              (test::Calls{"beginStructure color 0", operation + "r 0.25 attribute", operation + "g 0.5 attribute",
                           operation + "b 0.75 attribute", operation + "a 1 attribute", "endStructure",
                           operation + "offset 0.125 attribute"}));
    test::RecordingDeserializer deserializer(serializer.m_root);
    ColorRGBAStop<TypeParam> back;
    ASSERT_TRUE(back.readSerialized(&deserializer));
    EXPECT_TRUE(back.color == stop.color);
    EXPECT_EQ(back.offset, stop.offset);
    ColorRGB<TypeParam> rgb(1, 2, 3);
    test::RecordingSerializer text(test::RecordingSerializer::c_text);
    ASSERT_TRUE(rgb.writeSerialized(&text, 0, result));
    EXPECT_EQ(text.m_calls,
              (test::Calls{operation + "r 1 attribute", operation + "g 2 attribute", operation + "b 3 attribute"}));
}
