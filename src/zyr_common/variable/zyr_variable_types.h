/// The closed table of variable types: every kind of value that the variable system holds, streams and points to.
///
/// Main entities: `VariableTypeEnum` and its table (word in files, name in messages, key, size),
/// `VariableCategoryEnum`, and `zyr_getVariableTypeEnum<T>()`, the row of a C++ type. Thread safe: constant data.
///
///     VariableTypeEnum type = zyr_getVariableTypeEnum<Vector2<float>>(); // ZYR_VARIABLE_VECTOR2_FLOAT
#pragma once

#include "zyr_common/serialization/zyr_enumeration.h"
#include "zyr_common/zyr_types.h"

#include <type_traits>

namespace zyr {

/// What values hold by pointer: their headers include this one.
template <typename T> class Vector2;
template <typename T> class Vector3;
template <typename T> class Vector4;
template <typename T> class Matrix3x3;
template <typename T> class Matrix4x4;
template <typename T> class RectSize;
template <typename T> class Rect;
template <typename T> class BoxSize;
template <typename T> class Box;
template <typename T> class ExtPositionX;
template <typename T> class ExtPositionY;
template <typename T> class ExtPositionZ;
template <typename T> class ExtDimensionWidth;
template <typename T> class ExtDimensionHeight;
template <typename T> class ExtDimensionDepth;
template <typename T> class ExtVector2;
template <typename T> class ExtVector3;
template <typename T> class ExtRect;
template <typename T> class ExtBox;
template <typename T> class ColorRGB;
template <typename T> class ColorRGBA;
class ObjectGUIDReference;

/// The type of a variable. The numbers are stored in memory that modules share, the words in files: both are permanent.
enum VariableTypeEnum : uint32_t {
    /// no variable, or a type outside the table
    ZYR_VARIABLE_NONE = 0,
    /// one byte, 0 or 1
    ZYR_VARIABLE_BOOL = 1,
    /// Integers of 8 and 16 bits travel through files as ones of 32 bits.
    ZYR_VARIABLE_INT8 = 2,
    ZYR_VARIABLE_UINT8 = 3,
    ZYR_VARIABLE_INT16 = 4,
    ZYR_VARIABLE_UINT16 = 5,
    ZYR_VARIABLE_INT32 = 6,
    ZYR_VARIABLE_UINT32 = 7,
    ZYR_VARIABLE_INT64 = 8,
    ZYR_VARIABLE_UINT64 = 9,
    /// 32 and 64 bits, of which files keep every one
    ZYR_VARIABLE_FLOAT = 10,
    ZYR_VARIABLE_DOUBLE = 11,
    /// a text of its own, copied in and out
    ZYR_VARIABLE_STRING = 12,
    /// Vectors. Those of unsigned integers, and those of three and four integers, are only pointed to: no value holds
    /// them.
    ZYR_VARIABLE_VECTOR2_UINT32 = 13,
    ZYR_VARIABLE_VECTOR2_INT32 = 14,
    ZYR_VARIABLE_VECTOR2_UINT64 = 15,
    ZYR_VARIABLE_VECTOR2_INT64 = 16,
    ZYR_VARIABLE_VECTOR2_FLOAT = 17,
    ZYR_VARIABLE_VECTOR2_DOUBLE = 18,
    ZYR_VARIABLE_VECTOR3_UINT32 = 19,
    ZYR_VARIABLE_VECTOR3_INT32 = 20,
    ZYR_VARIABLE_VECTOR3_UINT64 = 21,
    ZYR_VARIABLE_VECTOR3_INT64 = 22,
    ZYR_VARIABLE_VECTOR3_FLOAT = 23,
    ZYR_VARIABLE_VECTOR3_DOUBLE = 24,
    ZYR_VARIABLE_VECTOR4_UINT32 = 25,
    ZYR_VARIABLE_VECTOR4_INT32 = 26,
    ZYR_VARIABLE_VECTOR4_UINT64 = 27,
    ZYR_VARIABLE_VECTOR4_INT64 = 28,
    ZYR_VARIABLE_VECTOR4_FLOAT = 29,
    ZYR_VARIABLE_VECTOR4_DOUBLE = 30,
    /// Matrices, as their flat arrays of 9 and 16 numbers.
    ZYR_VARIABLE_MATRIX3X3_FLOAT = 31,
    ZYR_VARIABLE_MATRIX3X3_DOUBLE = 32,
    ZYR_VARIABLE_MATRIX4X4_FLOAT = 33,
    ZYR_VARIABLE_MATRIX4X4_DOUBLE = 34,
    /// One coordinate with its anchor.
    ZYR_VARIABLE_EXT_POSITION_X_FLOAT = 35,
    ZYR_VARIABLE_EXT_POSITION_X_DOUBLE = 36,
    ZYR_VARIABLE_EXT_POSITION_Y_FLOAT = 37,
    ZYR_VARIABLE_EXT_POSITION_Y_DOUBLE = 38,
    ZYR_VARIABLE_EXT_POSITION_Z_FLOAT = 39,
    ZYR_VARIABLE_EXT_POSITION_Z_DOUBLE = 40,
    /// One size with its anchor.
    ZYR_VARIABLE_EXT_DIMENSION_WIDTH_FLOAT = 41,
    ZYR_VARIABLE_EXT_DIMENSION_WIDTH_DOUBLE = 42,
    ZYR_VARIABLE_EXT_DIMENSION_HEIGHT_FLOAT = 43,
    ZYR_VARIABLE_EXT_DIMENSION_HEIGHT_DOUBLE = 44,
    ZYR_VARIABLE_EXT_DIMENSION_DEPTH_FLOAT = 45,
    ZYR_VARIABLE_EXT_DIMENSION_DEPTH_DOUBLE = 46,
    /// A point with an anchor on each axis.
    ZYR_VARIABLE_EXT_VECTOR2_INT32 = 47,
    ZYR_VARIABLE_EXT_VECTOR2_INT64 = 48,
    ZYR_VARIABLE_EXT_VECTOR2_FLOAT = 49,
    ZYR_VARIABLE_EXT_VECTOR2_DOUBLE = 50,
    ZYR_VARIABLE_EXT_VECTOR3_FLOAT = 51,
    ZYR_VARIABLE_EXT_VECTOR3_DOUBLE = 52,
    /// Sizes and rectangles of the plane.
    ZYR_VARIABLE_RECT_SIZE_INT32 = 53,
    ZYR_VARIABLE_RECT_SIZE_INT64 = 54,
    ZYR_VARIABLE_RECT_SIZE_FLOAT = 55,
    ZYR_VARIABLE_RECT_SIZE_DOUBLE = 56,
    ZYR_VARIABLE_RECT_INT32 = 57,
    ZYR_VARIABLE_RECT_INT64 = 58,
    ZYR_VARIABLE_RECT_FLOAT = 59,
    ZYR_VARIABLE_RECT_DOUBLE = 60,
    /// Sizes and boxes of space.
    ZYR_VARIABLE_BOX_SIZE_FLOAT = 61,
    ZYR_VARIABLE_BOX_SIZE_DOUBLE = 62,
    ZYR_VARIABLE_BOX_FLOAT = 63,
    ZYR_VARIABLE_BOX_DOUBLE = 64,
    /// Rectangles and boxes whose numbers are anchored, before they are solved.
    ZYR_VARIABLE_EXT_RECT_INT32 = 65,
    ZYR_VARIABLE_EXT_RECT_INT64 = 66,
    ZYR_VARIABLE_EXT_RECT_FLOAT = 67,
    ZYR_VARIABLE_EXT_RECT_DOUBLE = 68,
    ZYR_VARIABLE_EXT_BOX_FLOAT = 69,
    ZYR_VARIABLE_EXT_BOX_DOUBLE = 70,
    /// Colours, from 0 to 1 in each number; those without alpha count as opaque.
    ZYR_VARIABLE_COLOR_RGB_FLOAT = 71,
    ZYR_VARIABLE_COLOR_RGB_DOUBLE = 72,
    ZYR_VARIABLE_COLOR_RGBA_FLOAT = 73,
    ZYR_VARIABLE_COLOR_RGBA_DOUBLE = 74,
    /// a GUID for its own sake
    ZYR_VARIABLE_GUID = 75,
    /// a GUID that stands for an object, and the object itself once it is known
    ZYR_VARIABLE_GUID_OBJECT_REFERENCE = 76,
    /// a counted text that others hold too, or null
    ZYR_VARIABLE_STRING_REFERENCE = 77,
    /// a counted object, or null; held by values, and never written to files
    ZYR_VARIABLE_OBJECT_REFERENCE = 78,
    /// bytes of somebody else's; only pointed to, like the row below
    ZYR_VARIABLE_WRAPPED_STRING = 79,
    ZYR_VARIABLE_BYTES = 80,
    /// any enumeration of 32 bits, by its number
    ZYR_VARIABLE_ENUM = 81,
};

/// Also a macro, so that code may test for the name; it is the enumerator.
#define ZYR_VARIABLE_NONE ZYR_VARIABLE_NONE

/// The number of rows of the type table.
#define ZYR_VARIABLE_TYPE_COUNT 82

/// One row of the type table. Missing texts are null. The texts live forever and stand in stored files, so a row never
/// changes.
struct VariableTypeRow {
    /// the index of the row
    VariableTypeEnum m_type;
    const char* m_word;        ///< text in serialized files
    const char* m_displayName; ///< text in messages; without one the type is "Unknown" there
    const char* m_key;         ///< key under which a value of the type stores itself; null: no value form
    uint32_t m_size;           ///< bytes that a value reports; 0 where it can't be copied as plain bytes
};

/// The table itself; a row's index is its type.
inline constexpr VariableTypeRow c_variableTypeRows[ZYR_VARIABLE_TYPE_COUNT] = {
    {ZYR_VARIABLE_NONE, "NONE", nullptr, nullptr, 0},
    {ZYR_VARIABLE_BOOL, "BOOL", "bool_t", "valueBool", 1},
    {ZYR_VARIABLE_INT8, "INT8", "int8_t", "valueInt8", 1},
    {ZYR_VARIABLE_UINT8, "UINT8", "uint8_t", "valueUInt8", 1},
    {ZYR_VARIABLE_INT16, "INT16", "int16_t", "valueInt16", 2},
    {ZYR_VARIABLE_UINT16, "UINT16", "uint16_t", "valueUInt16", 2},
    {ZYR_VARIABLE_INT32, "INT32", "int32_t", "valueInt32", 4},
    {ZYR_VARIABLE_UINT32, "UINT32", "uint32_t", "valueUInt32", 4},
    {ZYR_VARIABLE_INT64, "INT64", "int64_t", "valueInt64", 8},
    {ZYR_VARIABLE_UINT64, "UINT64", "uint64_t", "valueUInt64", 8},
    {ZYR_VARIABLE_FLOAT, "FLOAT", "float", "valueFloat", 4},
    {ZYR_VARIABLE_DOUBLE, "DOUBLE", "double", "valueDouble", 8},
    {ZYR_VARIABLE_STRING, "STRING", "String", "valueString", 0},
    {ZYR_VARIABLE_VECTOR2_UINT32, "VECTOR2_UINT32", nullptr, nullptr, 0},
    {ZYR_VARIABLE_VECTOR2_INT32, "VECTOR2_INT32", "Vector2<int32_t>", "valueVector2Int32", 8},
    {ZYR_VARIABLE_VECTOR2_UINT64, "VECTOR2_UINT64", nullptr, nullptr, 0},
    {ZYR_VARIABLE_VECTOR2_INT64, "VECTOR2_INT64", "Vector2<int64_t>", "valueVector2Int64", 16},
    {ZYR_VARIABLE_VECTOR2_FLOAT, "VECTOR2_FLOAT", "Vector2<float>", "valueVector2Float", 8},
    {ZYR_VARIABLE_VECTOR2_DOUBLE, "VECTOR2_DOUBLE", "Vector2<double>", "valueVector2Double", 16},
    {ZYR_VARIABLE_VECTOR3_UINT32, "VECTOR3_UINT32", nullptr, nullptr, 0},
    {ZYR_VARIABLE_VECTOR3_INT32, "VECTOR3_INT32", nullptr, nullptr, 0},
    {ZYR_VARIABLE_VECTOR3_UINT64, "VECTOR3_UINT64", nullptr, nullptr, 0},
    {ZYR_VARIABLE_VECTOR3_INT64, "VECTOR3_INT64", nullptr, nullptr, 0},
    {ZYR_VARIABLE_VECTOR3_FLOAT, "VECTOR3_FLOAT", "Vector3<float>", "valueVector3Float", 12},
    {ZYR_VARIABLE_VECTOR3_DOUBLE, "VECTOR3_DOUBLE", "Vector3<double>", "valueVector3Double", 24},
    {ZYR_VARIABLE_VECTOR4_UINT32, "VECTOR4_UINT32", nullptr, nullptr, 0},
    {ZYR_VARIABLE_VECTOR4_INT32, "VECTOR4_INT32", nullptr, nullptr, 0},
    {ZYR_VARIABLE_VECTOR4_UINT64, "VECTOR4_UINT64", nullptr, nullptr, 0},
    {ZYR_VARIABLE_VECTOR4_INT64, "VECTOR4_INT64", nullptr, nullptr, 0},
    {ZYR_VARIABLE_VECTOR4_FLOAT, "VECTOR4_FLOAT", "Vector4<float>", "valueVector4Float", 16},
    {ZYR_VARIABLE_VECTOR4_DOUBLE, "VECTOR4_DOUBLE", "Vector4<double>", "valueVector4Double", 32},
    {ZYR_VARIABLE_MATRIX3X3_FLOAT, "MATRIX3x3_FLOAT", "Matrix3x3<float>", "valueMatrix3x3Float", 36},
    {ZYR_VARIABLE_MATRIX3X3_DOUBLE, "MATRIX3x3_DOUBLE", "Matrix3x3<double>", "valueMatrix3x3Double", 72},
    {ZYR_VARIABLE_MATRIX4X4_FLOAT, "MATRIX4x4_FLOAT", "Matrix4x4<float>", "valueMatrix4x4Float", 64},
    {ZYR_VARIABLE_MATRIX4X4_DOUBLE, "MATRIX4x4_DOUBLE", "Matrix4x4<double>", "valueMatrix4x4Double", 128},
    {ZYR_VARIABLE_EXT_POSITION_X_FLOAT, "EXT_POSITION_X_FLOAT", "ExtPositionX<float>", "valueExtPositionXFloat", 5},
    {ZYR_VARIABLE_EXT_POSITION_X_DOUBLE, "EXT_POSITION_X_DOUBLE", "ExtPositionX<double>", "valueExtPositionXDouble", 9},
    {ZYR_VARIABLE_EXT_POSITION_Y_FLOAT, "EXT_POSITION_Y_FLOAT", "ExtPositionY<float>", "valueExtPositionYFloat", 5},
    {ZYR_VARIABLE_EXT_POSITION_Y_DOUBLE, "EXT_POSITION_Y_DOUBLE", "ExtPositionY<double>", "valueExtPositionYDouble", 9},
    {ZYR_VARIABLE_EXT_POSITION_Z_FLOAT, "EXT_POSITION_Z_FLOAT", "ExtPositionZ<float>", "valueExtPositionZFloat", 5},
    {ZYR_VARIABLE_EXT_POSITION_Z_DOUBLE, "EXT_POSITION_Z_DOUBLE", "ExtPositionZ<double>", "valueExtPositionZDouble", 9},
    {ZYR_VARIABLE_EXT_DIMENSION_WIDTH_FLOAT, "EXT_DIMENSION_WIDTH_FLOAT", "ExtDimensionWidth<float>",
     "valueExtDimensionWidthFloat", 5},
    {ZYR_VARIABLE_EXT_DIMENSION_WIDTH_DOUBLE, "EXT_DIMENSION_WIDTH_DOUBLE", "ExtDimensionWidth<double>",
     "valueExtDimensionWidthDouble", 9},
    {ZYR_VARIABLE_EXT_DIMENSION_HEIGHT_FLOAT, "EXT_DIMENSION_HEIGHT_FLOAT", "ExtDimensionHeight<float>",
     "valueExtDimensionHeightFloat", 5},
    {ZYR_VARIABLE_EXT_DIMENSION_HEIGHT_DOUBLE, "EXT_DIMENSION_HEIGHT_DOUBLE", "ExtDimensionHeight<double>",
     "valueExtDimensionHeightDouble", 9},
    {ZYR_VARIABLE_EXT_DIMENSION_DEPTH_FLOAT, "EXT_DIMENSION_DEPTH_FLOAT", "ExtDimensionDepth<float>",
     "valueExtDimensionDepthFloat", 5},
    {ZYR_VARIABLE_EXT_DIMENSION_DEPTH_DOUBLE, "EXT_DIMENSION_DEPTH_DOUBLE", "ExtDimensionDepth<double>",
     "valueExtDimensionDepthDouble", 9},
    {ZYR_VARIABLE_EXT_VECTOR2_INT32, "EXT_VECTOR2_INT32", "ExtVector2<int32_t>", "valueExtVector2Int32", 10},
    {ZYR_VARIABLE_EXT_VECTOR2_INT64, "EXT_VECTOR2_INT64", "ExtVector2<int64_t>", "valueExtVector2Int64", 18},
    {ZYR_VARIABLE_EXT_VECTOR2_FLOAT, "EXT_VECTOR2_FLOAT", "ExtVector2<float>", "valueExtVector2Float", 10},
    {ZYR_VARIABLE_EXT_VECTOR2_DOUBLE, "EXT_VECTOR2_DOUBLE", "ExtVector2<double>", "valueExtVector2Double", 18},
    {ZYR_VARIABLE_EXT_VECTOR3_FLOAT, "EXT_VECTOR3_FLOAT", "ExtVector3<float>", "valueExtVector3Float", 15},
    {ZYR_VARIABLE_EXT_VECTOR3_DOUBLE, "EXT_VECTOR3_DOUBLE", "ExtVector3<double>", "valueExtVector3Double", 27},
    {ZYR_VARIABLE_RECT_SIZE_INT32, "RECT_SIZE_INT32", "RectSize<int32_t>", "valueRectSizeInt32", 8},
    {ZYR_VARIABLE_RECT_SIZE_INT64, "RECT_SIZE_INT64", "RectSize<int64_t>", "valueRectSizeInt64", 16},
    {ZYR_VARIABLE_RECT_SIZE_FLOAT, "RECT_SIZE_FLOAT", "RectSize<float>", "valueRectSizeFloat", 8},
    {ZYR_VARIABLE_RECT_SIZE_DOUBLE, "RECT_SIZE_DOUBLE", "RectSize<double>", "valueRectSizeDouble", 16},
    {ZYR_VARIABLE_RECT_INT32, "RECT_INT32", "Rect<int32_t>", "valueRectInt32", 16},
    {ZYR_VARIABLE_RECT_INT64, "RECT_INT64", "Rect<int64_t>", "valueRectInt64", 32},
    {ZYR_VARIABLE_RECT_FLOAT, "RECT_FLOAT", "Rect<float>", "valueRectFloat", 16},
    {ZYR_VARIABLE_RECT_DOUBLE, "RECT_DOUBLE", "Rect<double>", "valueRectDouble", 32},
    {ZYR_VARIABLE_BOX_SIZE_FLOAT, "BOX_SIZE_FLOAT", "BoxSize<float>", "valueBoxSizeFloat", 12},
    {ZYR_VARIABLE_BOX_SIZE_DOUBLE, "BOX_SIZE_DOUBLE", "BoxSize<double>", "valueBoxSizeDouble", 24},
    {ZYR_VARIABLE_BOX_FLOAT, "BOX_FLOAT", "Box<float>", "valueBoxFloat", 24},
    {ZYR_VARIABLE_BOX_DOUBLE, "BOX_DOUBLE", "Box<double>", "valueBoxDouble", 48},
    {ZYR_VARIABLE_EXT_RECT_INT32, "EXT_RECT_INT32", "ExtRect<int32_t>", "valueExtRectInt32", 46},
    {ZYR_VARIABLE_EXT_RECT_INT64, "EXT_RECT_INT64", "ExtRect<int64_t>", "valueExtRectInt64", 86},
    {ZYR_VARIABLE_EXT_RECT_FLOAT, "EXT_RECT_FLOAT", "ExtRect<float>", "valueExtRectFloat", 46},
    {ZYR_VARIABLE_EXT_RECT_DOUBLE, "EXT_RECT_DOUBLE", "ExtRect<double>", "valueExtRectDouble", 86},
    {ZYR_VARIABLE_EXT_BOX_FLOAT, "EXT_BOX_FLOAT", "ExtBox<float>", "valueExtBoxFloat", 69},
    {ZYR_VARIABLE_EXT_BOX_DOUBLE, "EXT_BOX_DOUBLE", "ExtBox<double>", "valueExtBoxDouble", 129},
    {ZYR_VARIABLE_COLOR_RGB_FLOAT, "COLOR_RGB_FLOAT", "ColorRGB<float>", "valueColorRGBFloat", 12},
    {ZYR_VARIABLE_COLOR_RGB_DOUBLE, "COLOR_RGB_DOUBLE", "ColorRGB<double>", "valueColorRGBDouble", 24},
    {ZYR_VARIABLE_COLOR_RGBA_FLOAT, "COLOR_RGBA_FLOAT", "ColorRGBA<float>", "valueColorRGBAFloat", 16},
    {ZYR_VARIABLE_COLOR_RGBA_DOUBLE, "COLOR_RGBA_DOUBLE", "ColorRGBA<double>", "valueColorRGBADouble", 32},
    {ZYR_VARIABLE_GUID, "GUID", "GUID_t", "valueGUID", 16},
    {ZYR_VARIABLE_GUID_OBJECT_REFERENCE, "GUID_OBJECT_REFERENCE", "ObjectGUIDReference", "valueObjectGUIDReference",
     33},
    {ZYR_VARIABLE_STRING_REFERENCE, "STRING_REFERENCE", nullptr, "valueStringRef", 0},
    {ZYR_VARIABLE_OBJECT_REFERENCE, "OBJECT_REFERENCE", nullptr, nullptr, 0},
    {ZYR_VARIABLE_WRAPPED_STRING, nullptr, nullptr, nullptr, 0},
    {ZYR_VARIABLE_BYTES, nullptr, nullptr, nullptr, 0},
    {ZYR_VARIABLE_ENUM, nullptr, nullptr, "valueEnum", 4},
};

/// The category under which a property is shown: which editor it gets, not how it is stored.
enum VariableCategoryEnum : uint32_t {
    /// none that fits: the type itself decides
    ZYR_VARIABLE_CATEGORY_UNKNOWN = 0,
    ZYR_VARIABLE_CATEGORY_BOOL = 1,
    /// one number of any type
    ZYR_VARIABLE_CATEGORY_SCALAR = 2,
    /// points, directions and sizes
    ZYR_VARIABLE_CATEGORY_VECTOR = 3,
    ZYR_VARIABLE_CATEGORY_MATRIX = 4,
    ZYR_VARIABLE_CATEGORY_RECT = 5,
    ZYR_VARIABLE_CATEGORY_BOX = 6,
    /// anchored ones, with their anchors beside the numbers
    ZYR_VARIABLE_CATEGORY_EXT_RECT = 7,
    ZYR_VARIABLE_CATEGORY_EXT_BOX = 8,
    ZYR_VARIABLE_CATEGORY_STRING = 9,
    /// with or without alpha
    ZYR_VARIABLE_CATEGORY_COLOR = 10,
    /// a GUID that names an object
    ZYR_VARIABLE_CATEGORY_OBJECT_GUID = 11,
    /// a GUID that names a picture
    ZYR_VARIABLE_CATEGORY_TEXTURE_GUID = 12,
    /// a part of a picture, by its number
    ZYR_VARIABLE_CATEGORY_SUB_IMAGE_ID = 13
};

/// The words of the type table as an enumeration's table; the last three rows have none.
struct VariableTypeWords {
    /// one for each row that has a word, in the order of the rows
    EnumerationEntry m_entries[ZYR_VARIABLE_OBJECT_REFERENCE + 1];
    /// Made by the compiler.
    constexpr VariableTypeWords() : m_entries() {
        for (uint32_t i = 0; i <= ZYR_VARIABLE_OBJECT_REFERENCE; ++i) {
            m_entries[i] = {i, c_variableTypeRows[i].m_word};
        }
    }
};
inline constexpr VariableTypeWords c_variableTypeWords;

template <> struct EnumerationTable<VariableTypeEnum> {
    static constexpr auto& c_entries = c_variableTypeWords.m_entries;
};

template <> struct EnumerationTable<VariableCategoryEnum> {
    static constexpr EnumerationEntry c_entries[] = {
        {0, "UNKNOWN"}, {1, "BOOL"},         {2, "SCALAR"},        {3, "VECTOR"},        {4, "MATRIX"},
        {5, "RECT"},    {6, "BOX"},          {7, "EXT_RECT"},      {8, "EXT_BOX"},       {9, "STRING"},
        {10, "COLOR"},  {11, "OBJECT_GUID"}, {12, "TEXTURE_GUID"}, {13, "SUB_IMAGE_ID"},
    };
};

/// The bytes of a value of a type, as the table has it; 0 for types outside the table.
constexpr size_t zyr_getVariableTypeSize(VariableTypeEnum p_type) {
    return p_type < ZYR_VARIABLE_TYPE_COUNT ? c_variableTypeRows[p_type].m_size : 0;
}

/// The name of a type in messages: the display name for rows that have one, otherwise "Unknown". Never null.
ZYR_API const char* zyr_getVariableTypeString(VariableTypeEnum p_type);

/// Between a type's word and its number, in the form that serializers call (see EnumerationConverter). 0, with the
/// output as it was, for what is not in the table.
ZYR_API bool_t zyr_convertVariableType(String& p_word, uint32_t& p_number, bool_t p_wordToNumber);

/// The same for categories.
ZYR_API bool_t zyr_convertVariableCategory(String& p_word, uint32_t& p_number, bool_t p_wordToNumber);

/// The row of an enumeration by its size, and of no other type.
template <typename T> constexpr VariableTypeEnum zyr_getEnumerationVariableType() {
    if constexpr (std::is_enum_v<T>) {
        return sizeof(T) == 4 ? ZYR_VARIABLE_ENUM : sizeof(T) == 1 ? ZYR_VARIABLE_UINT8 : ZYR_VARIABLE_NONE;
    } else {
        return ZYR_VARIABLE_NONE;
    }
}

/// The row of a type. Types outside the table give ZYR_VARIABLE_NONE, 32-bit enumerations ZYR_VARIABLE_ENUM, and
/// enumerations of one byte are plain bytes. The types that values hold are those of the list of accessors; the ones
/// that stand here by name are only pointed to.
template <typename T> inline constexpr VariableTypeEnum c_variableTypeOf = zyr_getEnumerationVariableType<T>();
template <> inline constexpr VariableTypeEnum c_variableTypeOf<bool> = ZYR_VARIABLE_BOOL;
template <> inline constexpr VariableTypeEnum c_variableTypeOf<Vector2<uint32_t>> = ZYR_VARIABLE_VECTOR2_UINT32;
template <> inline constexpr VariableTypeEnum c_variableTypeOf<Vector2<uint64_t>> = ZYR_VARIABLE_VECTOR2_UINT64;
template <> inline constexpr VariableTypeEnum c_variableTypeOf<Vector3<uint32_t>> = ZYR_VARIABLE_VECTOR3_UINT32;
template <> inline constexpr VariableTypeEnum c_variableTypeOf<Vector3<int32_t>> = ZYR_VARIABLE_VECTOR3_INT32;
template <> inline constexpr VariableTypeEnum c_variableTypeOf<Vector3<uint64_t>> = ZYR_VARIABLE_VECTOR3_UINT64;
template <> inline constexpr VariableTypeEnum c_variableTypeOf<Vector3<int64_t>> = ZYR_VARIABLE_VECTOR3_INT64;
template <> inline constexpr VariableTypeEnum c_variableTypeOf<Vector4<uint32_t>> = ZYR_VARIABLE_VECTOR4_UINT32;
template <> inline constexpr VariableTypeEnum c_variableTypeOf<Vector4<int32_t>> = ZYR_VARIABLE_VECTOR4_INT32;
template <> inline constexpr VariableTypeEnum c_variableTypeOf<Vector4<uint64_t>> = ZYR_VARIABLE_VECTOR4_UINT64;
template <> inline constexpr VariableTypeEnum c_variableTypeOf<Vector4<int64_t>> = ZYR_VARIABLE_VECTOR4_INT64;
template <> inline constexpr VariableTypeEnum c_variableTypeOf<WrappedString> = ZYR_VARIABLE_WRAPPED_STRING;
template <> inline constexpr VariableTypeEnum c_variableTypeOf<unsigned char*> = ZYR_VARIABLE_BYTES;
#define ZYR_VARIABLE_TYPE_OF(suffix, type, row)                                                                        \
    template <> inline constexpr VariableTypeEnum c_variableTypeOf<type> = row;
#define ZYR_VARIABLE_BOOLEAN(suffix, type, row)
#define ZYR_VARIABLE_NUMBER ZYR_VARIABLE_TYPE_OF
#define ZYR_VARIABLE_RECORD ZYR_VARIABLE_TYPE_OF
#define ZYR_VARIABLE_POINTER ZYR_VARIABLE_TYPE_OF
#include "zyr_common/variable/zyr_variable_accessors.inl"
#undef ZYR_VARIABLE_TYPE_OF

/// See c_variableTypeOf. The pointer only carries the type.
template <typename T> constexpr VariableTypeEnum zyr_getVariableTypeEnum(const T* = nullptr) {
    return c_variableTypeOf<T>;
}

} // namespace zyr
