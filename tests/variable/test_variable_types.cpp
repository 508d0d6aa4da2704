#include "zyr_common/colour/zyr_color.h"
#include "zyr_common/geometry/zyr_anchors.h"
#include "zyr_common/text/zyr_string.h"
#include "zyr_common/variable/zyr_variable_types.h"

#include <gtest/gtest.h>

namespace zyr {

namespace {

struct ExpectedRow {
    const char* m_word;
    const char* m_displayName;
    const char* m_key;
    uint32_t m_size;
};

const ExpectedRow c_expectedRows[] = {
    {"NONE", nullptr, nullptr, 0},                                                                     // 0
    {"BOOL", "bool_t", "valueBool", 1},                                                                // 1
    {"INT8", "int8_t", "valueInt8", 1},                                                                // 2
    {"UINT8", "uint8_t", "valueUInt8", 1},                                                             // 3
    {"INT16", "int16_t", "valueInt16", 2},                                                             // 4
    {"UINT16", "uint16_t", "valueUInt16", 2},                                                          // 5
    {"INT32", "int32_t", "valueInt32", 4},                                                             // 6
    {"UINT32", "uint32_t", "valueUInt32", 4},                                                          // 7
    {"INT64", "int64_t", "valueInt64", 8},                                                             // 8
    {"UINT64", "uint64_t", "valueUInt64", 8},                                                          // 9
    {"FLOAT", "float", "valueFloat", 4},                                                               // 10
    {"DOUBLE", "double", "valueDouble", 8},                                                            // 11
    {"STRING", "String", "valueString", 0},                                                            // 12
    {"VECTOR2_UINT32", nullptr, nullptr, 0},                                                           // 13
    {"VECTOR2_INT32", "Vector2<int32_t>", "valueVector2Int32", 8},                                     // 14
    {"VECTOR2_UINT64", nullptr, nullptr, 0},                                                           // 15
    {"VECTOR2_INT64", "Vector2<int64_t>", "valueVector2Int64", 16},                                    // 16
    {"VECTOR2_FLOAT", "Vector2<float>", "valueVector2Float", 8},                                       // 17
    {"VECTOR2_DOUBLE", "Vector2<double>", "valueVector2Double", 16},                                   // 18
    {"VECTOR3_UINT32", nullptr, nullptr, 0},                                                           // 19
    {"VECTOR3_INT32", nullptr, nullptr, 0},                                                            // 20
    {"VECTOR3_UINT64", nullptr, nullptr, 0},                                                           // 21
    {"VECTOR3_INT64", nullptr, nullptr, 0},                                                            // 22
    {"VECTOR3_FLOAT", "Vector3<float>", "valueVector3Float", 12},                                      // 23
    {"VECTOR3_DOUBLE", "Vector3<double>", "valueVector3Double", 24},                                   // 24
    {"VECTOR4_UINT32", nullptr, nullptr, 0},                                                           // 25
    {"VECTOR4_INT32", nullptr, nullptr, 0},                                                            // 26
    {"VECTOR4_UINT64", nullptr, nullptr, 0},                                                           // 27
    {"VECTOR4_INT64", nullptr, nullptr, 0},                                                            // 28
    {"VECTOR4_FLOAT", "Vector4<float>", "valueVector4Float", 16},                                      // 29
    {"VECTOR4_DOUBLE", "Vector4<double>", "valueVector4Double", 32},                                   // 30
    {"MATRIX3x3_FLOAT", "Matrix3x3<float>", "valueMatrix3x3Float", 36},                                // 31
    {"MATRIX3x3_DOUBLE", "Matrix3x3<double>", "valueMatrix3x3Double", 72},                             // 32
    {"MATRIX4x4_FLOAT", "Matrix4x4<float>", "valueMatrix4x4Float", 64},                                // 33
    {"MATRIX4x4_DOUBLE", "Matrix4x4<double>", "valueMatrix4x4Double", 128},                            // 34
    {"EXT_POSITION_X_FLOAT", "ExtPositionX<float>", "valueExtPositionXFloat", 5},                      // 35
    {"EXT_POSITION_X_DOUBLE", "ExtPositionX<double>", "valueExtPositionXDouble", 9},                   // 36
    {"EXT_POSITION_Y_FLOAT", "ExtPositionY<float>", "valueExtPositionYFloat", 5},                      // 37
    {"EXT_POSITION_Y_DOUBLE", "ExtPositionY<double>", "valueExtPositionYDouble", 9},                   // 38
    {"EXT_POSITION_Z_FLOAT", "ExtPositionZ<float>", "valueExtPositionZFloat", 5},                      // 39
    {"EXT_POSITION_Z_DOUBLE", "ExtPositionZ<double>", "valueExtPositionZDouble", 9},                   // 40
    {"EXT_DIMENSION_WIDTH_FLOAT", "ExtDimensionWidth<float>", "valueExtDimensionWidthFloat", 5},       // 41
    {"EXT_DIMENSION_WIDTH_DOUBLE", "ExtDimensionWidth<double>", "valueExtDimensionWidthDouble", 9},    // 42
    {"EXT_DIMENSION_HEIGHT_FLOAT", "ExtDimensionHeight<float>", "valueExtDimensionHeightFloat", 5},    // 43
    {"EXT_DIMENSION_HEIGHT_DOUBLE", "ExtDimensionHeight<double>", "valueExtDimensionHeightDouble", 9}, // 44
    {"EXT_DIMENSION_DEPTH_FLOAT", "ExtDimensionDepth<float>", "valueExtDimensionDepthFloat", 5},       // 45
    {"EXT_DIMENSION_DEPTH_DOUBLE", "ExtDimensionDepth<double>", "valueExtDimensionDepthDouble", 9},    // 46
    {"EXT_VECTOR2_INT32", "ExtVector2<int32_t>", "valueExtVector2Int32", 10},                          // 47
    {"EXT_VECTOR2_INT64", "ExtVector2<int64_t>", "valueExtVector2Int64", 18},                          // 48
    {"EXT_VECTOR2_FLOAT", "ExtVector2<float>", "valueExtVector2Float", 10},                            // 49
    {"EXT_VECTOR2_DOUBLE", "ExtVector2<double>", "valueExtVector2Double", 18},                         // 50
    {"EXT_VECTOR3_FLOAT", "ExtVector3<float>", "valueExtVector3Float", 15},                            // 51
    {"EXT_VECTOR3_DOUBLE", "ExtVector3<double>", "valueExtVector3Double", 27},                         // 52
    {"RECT_SIZE_INT32", "RectSize<int32_t>", "valueRectSizeInt32", 8},                                 // 53
    {"RECT_SIZE_INT64", "RectSize<int64_t>", "valueRectSizeInt64", 16},                                // 54
    {"RECT_SIZE_FLOAT", "RectSize<float>", "valueRectSizeFloat", 8},                                   // 55
    {"RECT_SIZE_DOUBLE", "RectSize<double>", "valueRectSizeDouble", 16},                               // 56
    {"RECT_INT32", "Rect<int32_t>", "valueRectInt32", 16},                                             // 57
    {"RECT_INT64", "Rect<int64_t>", "valueRectInt64", 32},                                             // 58
    {"RECT_FLOAT", "Rect<float>", "valueRectFloat", 16},                                               // 59
    {"RECT_DOUBLE", "Rect<double>", "valueRectDouble", 32},                                            // 60
    {"BOX_SIZE_FLOAT", "BoxSize<float>", "valueBoxSizeFloat", 12},                                     // 61
    {"BOX_SIZE_DOUBLE", "BoxSize<double>", "valueBoxSizeDouble", 24},                                  // 62
    {"BOX_FLOAT", "Box<float>", "valueBoxFloat", 24},                                                  // 63
    {"BOX_DOUBLE", "Box<double>", "valueBoxDouble", 48},                                               // 64
    {"EXT_RECT_INT32", "ExtRect<int32_t>", "valueExtRectInt32", 46},                                   // 65
    {"EXT_RECT_INT64", "ExtRect<int64_t>", "valueExtRectInt64", 86},                                   // 66
    {"EXT_RECT_FLOAT", "ExtRect<float>", "valueExtRectFloat", 46},                                     // 67
    {"EXT_RECT_DOUBLE", "ExtRect<double>", "valueExtRectDouble", 86},                                  // 68
    {"EXT_BOX_FLOAT", "ExtBox<float>", "valueExtBoxFloat", 69},                                        // 69
    {"EXT_BOX_DOUBLE", "ExtBox<double>", "valueExtBoxDouble", 129},                                    // 70
    {"COLOR_RGB_FLOAT", "ColorRGB<float>", "valueColorRGBFloat", 12},                                  // 71
    {"COLOR_RGB_DOUBLE", "ColorRGB<double>", "valueColorRGBDouble", 24},                               // 72
    {"COLOR_RGBA_FLOAT", "ColorRGBA<float>", "valueColorRGBAFloat", 16},                               // 73
    {"COLOR_RGBA_DOUBLE", "ColorRGBA<double>", "valueColorRGBADouble", 32},                            // 74
    {"GUID", "GUID_t", "valueGUID", 16},                                                               // 75
    {"GUID_OBJECT_REFERENCE", "ObjectGUIDReference", "valueObjectGUIDReference", 33},                  // 76
    {"STRING_REFERENCE", nullptr, "valueStringRef", 0},                                                // 77
    {"OBJECT_REFERENCE", nullptr, nullptr, 0},                                                         // 78
    {nullptr, nullptr, nullptr, 0},                                                                    // 79
    {nullptr, nullptr, nullptr, 0},                                                                    // 80
    {nullptr, nullptr, "valueEnum", 4},                                                                // 81
};

} // namespace

TEST(VariableTypes, HoldEveryRowOfTheTable) {
    ASSERT_EQ(std::size(c_expectedRows), 82u);
    for (uint32_t i = 0; i < 82; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(c_variableTypeRows[i].m_type, VariableTypeEnum(i));
        EXPECT_STREQ(c_variableTypeRows[i].m_word, c_expectedRows[i].m_word);
        EXPECT_STREQ(c_variableTypeRows[i].m_displayName, c_expectedRows[i].m_displayName);
        EXPECT_STREQ(c_variableTypeRows[i].m_key, c_expectedRows[i].m_key);
        EXPECT_EQ(c_variableTypeRows[i].m_size, c_expectedRows[i].m_size);
    }
}

TEST(VariableTypes, AreNamedInMessagesByTheirDisplayNameOrAsUnknown) {
    for (uint32_t i = 0; i < 82; ++i) {
        const char* expected = c_expectedRows[i].m_displayName ? c_expectedRows[i].m_displayName : "Unknown";
        EXPECT_STREQ(zyr_getVariableTypeString(VariableTypeEnum(i)), expected) << i;
    }
    EXPECT_STREQ(zyr_getVariableTypeString(VariableTypeEnum(82)), "Unknown");
    EXPECT_STREQ(zyr_getVariableTypeString(VariableTypeEnum(0xFFFFFFFF)), "Unknown");
}

TEST(VariableTypes, ConvertTheirWordsInBothDirections) {
    for (uint32_t i = 0; i < 82; ++i) {
        String word;
        uint32_t number = i;
        if (!c_expectedRows[i].m_word) {
            EXPECT_EQ(zyr_convertVariableType(word, number, 0), 0);
            EXPECT_TRUE(word.isEmpty());
            continue;
        }
        EXPECT_EQ(zyr_convertVariableType(word, number, 0), 1);
        EXPECT_EQ(word, c_expectedRows[i].m_word);
        number = 999;
        EXPECT_EQ(zyr_convertVariableType(word, number, 1), 1);
        EXPECT_EQ(number, i);
    }
}

TEST(VariableTypes, RefuseUnknownWordsAndNumbers) {
    String word("MATRIX3X3_FLOAT");
    uint32_t number = 5;
    EXPECT_EQ(zyr_convertVariableType(word, number, 1), 0);
    EXPECT_EQ(number, 5u);
    number = 82;
    EXPECT_EQ(zyr_convertVariableType(word, number, 0), 0);
    EXPECT_EQ(word, "MATRIX3X3_FLOAT");
}

TEST(VariableCategories, ConvertTheirWordsInBothDirections) {
    const char* const words[] = {"UNKNOWN", "BOOL",        "SCALAR",       "VECTOR",      "MATRIX",
                                 "RECT",    "BOX",         "EXT_RECT",     "EXT_BOX",     "STRING",
                                 "COLOR",   "OBJECT_GUID", "TEXTURE_GUID", "SUB_IMAGE_ID"};
    for (uint32_t i = 0; i < 14; ++i) {
        String word;
        uint32_t number = i;
        EXPECT_EQ(zyr_convertVariableCategory(word, number, 0), 1);
        EXPECT_EQ(word, words[i]);
        number = 99;
        EXPECT_EQ(zyr_convertVariableCategory(word, number, 1), 1);
        EXPECT_EQ(number, i);
    }
    String word;
    uint32_t number = 14;
    EXPECT_EQ(zyr_convertVariableCategory(word, number, 0), 0);
}

TEST(VariableTypes, FollowFromPlainTypes) {
#ifndef ZYR_VARIABLE_NONE
    FAIL() << "the name is a macro too";
#endif
    EXPECT_EQ(ZYR_VARIABLE_NONE, 0);
    EXPECT_EQ(zyr_getVariableTypeEnum<bool>(), 1);
    EXPECT_EQ(zyr_getVariableTypeEnum<int8_t>(), 2);
    EXPECT_EQ(zyr_getVariableTypeEnum<uint8_t>(), 3);
    EXPECT_EQ(zyr_getVariableTypeEnum<bool_t>(), 3);
    EXPECT_EQ(zyr_getVariableTypeEnum<int16_t>(), 4);
    EXPECT_EQ(zyr_getVariableTypeEnum<uint16_t>(), 5);
    EXPECT_EQ(zyr_getVariableTypeEnum<int32_t>(), 6);
    EXPECT_EQ(zyr_getVariableTypeEnum<uint32_t>(), 7);
    EXPECT_EQ(zyr_getVariableTypeEnum<int64_t>(), 8);
    EXPECT_EQ(zyr_getVariableTypeEnum<uint64_t>(), 9);
    EXPECT_EQ(zyr_getVariableTypeEnum<float>(), 10);
    EXPECT_EQ(zyr_getVariableTypeEnum<double>(), 11);
    EXPECT_EQ(zyr_getVariableTypeEnum<String>(), 12);
    EXPECT_EQ(zyr_getVariableTypeEnum<GUID_t>(), 75);
    EXPECT_EQ(zyr_getVariableTypeEnum<ObjectGUIDReference>(), 76);
    EXPECT_EQ(zyr_getVariableTypeEnum<String*>(), 77);
    EXPECT_EQ(zyr_getVariableTypeEnum<IObject*>(), 78);
    EXPECT_EQ(zyr_getVariableTypeEnum<WrappedString>(), 79);
    EXPECT_EQ(zyr_getVariableTypeEnum<unsigned char*>(), 80);
    const Vector2<float>* vector = nullptr;
    EXPECT_EQ(zyr_getVariableTypeEnum(vector), 17);
}

TEST(VariableTypes, FollowFromEnumerationsBySize) {
    EXPECT_EQ(zyr_getVariableTypeEnum<VariableCategoryEnum>(), ZYR_VARIABLE_ENUM);
    EXPECT_EQ(zyr_getVariableTypeEnum<PositionXAnchorEnum>(), ZYR_VARIABLE_UINT8);
}

TEST(VariableTypes, FollowFromTemplates) {
    EXPECT_EQ((zyr_getVariableTypeEnum<Vector2<unsigned int>>()), 13);
    EXPECT_EQ((zyr_getVariableTypeEnum<Vector2<int32_t>>()), 14);
    EXPECT_EQ((zyr_getVariableTypeEnum<Vector2<unsigned long>>()), 15);
    EXPECT_EQ((zyr_getVariableTypeEnum<Vector2<int64_t>>()), 16);
    EXPECT_EQ((zyr_getVariableTypeEnum<Vector2<float>>()), 17);
    EXPECT_EQ((zyr_getVariableTypeEnum<Vector2<double>>()), 18);
    EXPECT_EQ((zyr_getVariableTypeEnum<Vector3<unsigned int>>()), 19);
    EXPECT_EQ((zyr_getVariableTypeEnum<Vector3<int>>()), 20);
    EXPECT_EQ((zyr_getVariableTypeEnum<Vector3<unsigned long>>()), 21);
    EXPECT_EQ((zyr_getVariableTypeEnum<Vector3<long>>()), 22);
    EXPECT_EQ((zyr_getVariableTypeEnum<Vector3<float>>()), 23);
    EXPECT_EQ((zyr_getVariableTypeEnum<Vector3<double>>()), 24);
    EXPECT_EQ((zyr_getVariableTypeEnum<Vector4<unsigned int>>()), 25);
    EXPECT_EQ((zyr_getVariableTypeEnum<Vector4<int>>()), 26);
    EXPECT_EQ((zyr_getVariableTypeEnum<Vector4<unsigned long>>()), 27);
    EXPECT_EQ((zyr_getVariableTypeEnum<Vector4<long>>()), 28);
    EXPECT_EQ((zyr_getVariableTypeEnum<Vector4<float>>()), 29);
    EXPECT_EQ((zyr_getVariableTypeEnum<Vector4<double>>()), 30);
    EXPECT_EQ((zyr_getVariableTypeEnum<Matrix3x3<float>>()), 31);
    EXPECT_EQ((zyr_getVariableTypeEnum<Matrix3x3<double>>()), 32);
    EXPECT_EQ((zyr_getVariableTypeEnum<Matrix4x4<float>>()), 33);
    EXPECT_EQ((zyr_getVariableTypeEnum<Matrix4x4<double>>()), 34);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtPositionX<float>>()), 35);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtPositionX<double>>()), 36);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtPositionY<float>>()), 37);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtPositionY<double>>()), 38);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtPositionZ<float>>()), 39);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtPositionZ<double>>()), 40);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtDimensionWidth<float>>()), 41);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtDimensionWidth<double>>()), 42);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtDimensionHeight<float>>()), 43);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtDimensionHeight<double>>()), 44);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtDimensionDepth<float>>()), 45);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtDimensionDepth<double>>()), 46);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtVector2<int32_t>>()), 47);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtVector2<int64_t>>()), 48);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtVector2<float>>()), 49);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtVector2<double>>()), 50);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtVector3<float>>()), 51);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtVector3<double>>()), 52);
    EXPECT_EQ((zyr_getVariableTypeEnum<RectSize<int32_t>>()), 53);
    EXPECT_EQ((zyr_getVariableTypeEnum<RectSize<int64_t>>()), 54);
    EXPECT_EQ((zyr_getVariableTypeEnum<RectSize<float>>()), 55);
    EXPECT_EQ((zyr_getVariableTypeEnum<RectSize<double>>()), 56);
    EXPECT_EQ((zyr_getVariableTypeEnum<Rect<int32_t>>()), 57);
    EXPECT_EQ((zyr_getVariableTypeEnum<Rect<int64_t>>()), 58);
    EXPECT_EQ((zyr_getVariableTypeEnum<Rect<float>>()), 59);
    EXPECT_EQ((zyr_getVariableTypeEnum<Rect<double>>()), 60);
    EXPECT_EQ((zyr_getVariableTypeEnum<BoxSize<float>>()), 61);
    EXPECT_EQ((zyr_getVariableTypeEnum<BoxSize<double>>()), 62);
    EXPECT_EQ((zyr_getVariableTypeEnum<Box<float>>()), 63);
    EXPECT_EQ((zyr_getVariableTypeEnum<Box<double>>()), 64);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtRect<int32_t>>()), 65);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtRect<int64_t>>()), 66);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtRect<float>>()), 67);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtRect<double>>()), 68);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtBox<float>>()), 69);
    EXPECT_EQ((zyr_getVariableTypeEnum<ExtBox<double>>()), 70);
    EXPECT_EQ((zyr_getVariableTypeEnum<ColorRGB<float>>()), 71);
    EXPECT_EQ((zyr_getVariableTypeEnum<ColorRGB<double>>()), 72);
    EXPECT_EQ((zyr_getVariableTypeEnum<ColorRGBA<float>>()), 73);
    EXPECT_EQ((zyr_getVariableTypeEnum<ColorRGBA<double>>()), 74);
}

TEST(VariableTypes, AreNoneForOtherTypes) {
    EXPECT_EQ(zyr_getVariableTypeEnum<Array<float>>(), ZYR_VARIABLE_NONE);
    EXPECT_EQ(zyr_getVariableTypeEnum<ColorRGBAStop<float>>(), ZYR_VARIABLE_NONE);
    EXPECT_EQ(zyr_getVariableTypeEnum<float[9]>(), ZYR_VARIABLE_NONE);
}

} // namespace zyr
