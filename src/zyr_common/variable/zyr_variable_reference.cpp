#include "zyr_common/variable/zyr_variable_reference.h"

#include "zyr_common/colour/zyr_color.h"
#include "zyr_common/digest/zyr_guid.h"
#include "zyr_common/geometry/zyr_ext_box.h"
#include "zyr_common/geometry/zyr_ext_dimension.h"
#include "zyr_common/geometry/zyr_ext_position.h"
#include "zyr_common/geometry/zyr_ext_rect.h"
#include "zyr_common/geometry/zyr_matrix.h"
#include "zyr_common/memory/zyr_numeric.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/object/zyr_object.h"
#include "zyr_common/references/zyr_object_references.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

namespace {

/// Fields of packed records are not aligned, so numbers and pointers are written byte by byte.
template <typename T> void storeUnaligned(void* p_target, T p_value) {
    memcpy(p_target, &p_value, sizeof(T));
}

template <typename T> T loadUnaligned(const void* p_source) {
    T value;
    memcpy(&value, p_source, sizeof(T));
    return value;
}

/// The sizes that values report are those of the records as they stand in memory.
template <typename... T>
constexpr bool c_sizesAreThoseOfTheTable = ((sizeof(T) == c_variableTypeRows[zyr_getVariableTypeEnum<T>()].m_size) &&
                                            ...);
template <template <typename> class... Templates>
constexpr bool c_floatFormsHaveTableSize = c_sizesAreThoseOfTheTable<Templates<float>..., Templates<double>...>;
template <template <typename> class... Templates>
constexpr bool c_integerFormsHaveTableSize = c_sizesAreThoseOfTheTable<Templates<int32_t>..., Templates<int64_t>...>;

static_assert(c_sizesAreThoseOfTheTable<bool, int8_t, uint8_t, int16_t, uint16_t, int32_t, uint32_t, int64_t, uint64_t,
                                        float, double, GUID_t, ObjectGUIDReference, VariableCategoryEnum>);
static_assert(c_floatFormsHaveTableSize<Vector2, Vector3, Vector4, Matrix3x3, Matrix4x4, RectSize, Rect, BoxSize, Box>);
static_assert(
    c_floatFormsHaveTableSize<ExtPositionX, ExtPositionY, ExtPositionZ, ExtDimensionWidth, ExtDimensionHeight,
                              ExtDimensionDepth, ExtVector2, ExtVector3, ExtRect, ExtBox, ColorRGB, ColorRGBA>);
static_assert(c_integerFormsHaveTableSize<Vector2, RectSize, Rect, ExtVector2, ExtRect>);

template <typename T, typename From> ColorRGB<T> convertRGB(const From& p_color) {
    return {static_cast<T>(p_color.r), static_cast<T>(p_color.g), static_cast<T>(p_color.b)};
}

template <typename T, typename From> ColorRGBA<T> convertRGBA(const From& p_color) {
    T alpha = 1;
    if constexpr (requires { p_color.a; }) {
        alpha = static_cast<T>(p_color.a);
    }
    return {static_cast<T>(p_color.r), static_cast<T>(p_color.g), static_cast<T>(p_color.b), alpha};
}

} // namespace

template <typename From> bool_t VariableReference::storeNumber(From p_value) {
    switch (m_type) {
    case ZYR_VARIABLE_BOOL:
        storeUnaligned<bool_t>(m_pointer, p_value != 0);
        return 1;
    case ZYR_VARIABLE_INT8:
        storeUnaligned(m_pointer, zyr_convertNumber<int8_t>(p_value));
        return 1;
    case ZYR_VARIABLE_UINT8:
        storeUnaligned(m_pointer, zyr_convertNumber<uint8_t>(p_value));
        return 1;
    case ZYR_VARIABLE_INT16:
        storeUnaligned(m_pointer, zyr_convertNumber<int16_t>(p_value));
        return 1;
    case ZYR_VARIABLE_UINT16:
        storeUnaligned(m_pointer, zyr_convertNumber<uint16_t>(p_value));
        return 1;
    case ZYR_VARIABLE_INT32:
    case ZYR_VARIABLE_ENUM:
        storeUnaligned(m_pointer, zyr_convertNumber<int32_t>(p_value));
        return 1;
    case ZYR_VARIABLE_UINT32:
        storeUnaligned(m_pointer, zyr_convertNumber<uint32_t>(p_value));
        return 1;
    case ZYR_VARIABLE_INT64:
        storeUnaligned(m_pointer, zyr_convertNumber<int64_t>(p_value));
        return 1;
    case ZYR_VARIABLE_UINT64:
        storeUnaligned(m_pointer, zyr_convertNumber<uint64_t>(p_value));
        return 1;
    case ZYR_VARIABLE_FLOAT:
        storeUnaligned(m_pointer, zyr_convertNumber<float>(p_value));
        return 1;
    case ZYR_VARIABLE_DOUBLE:
        storeUnaligned(m_pointer, zyr_convertNumber<double>(p_value));
        return 1;
    default:
        return 0;
    }
}

template <typename T> bool_t VariableReference::storeRecord(VariableTypeEnum p_type, const T& p_value) {
    if (m_type != p_type) {
        return 0;
    }
    *static_cast<T*>(m_pointer) = p_value;
    return 1;
}

template <typename Color> bool_t VariableReference::storeColor(const Color& p_value) {
    switch (m_type) {
    case ZYR_VARIABLE_COLOR_RGB_FLOAT:
        return storeRecord(m_type, convertRGB<float>(p_value));
    case ZYR_VARIABLE_COLOR_RGB_DOUBLE:
        return storeRecord(m_type, convertRGB<double>(p_value));
    case ZYR_VARIABLE_COLOR_RGBA_FLOAT:
        return storeRecord(m_type, convertRGBA<float>(p_value));
    case ZYR_VARIABLE_COLOR_RGBA_DOUBLE:
        return storeRecord(m_type, convertRGBA<double>(p_value));
    default:
        return 0;
    }
}

// Each operation has its own body, since the message carries its signature.
#define ZYR_CHANGE_VALUE(suffix, parameter, store, sourceName)                                                         \
    bool_t VariableReference::changeValue##suffix(parameter p_value) {                                                 \
        if (store) {                                                                                                   \
            return 1;                                                                                                  \
        }                                                                                                              \
        ZYR_LOG_WARN("Unable to convert " sourceName " to type:%s", zyr_getVariableTypeString(m_type));                \
        return 0;                                                                                                      \
    }
#define ZYR_CHANGE_NUMBER(suffix, type) ZYR_CHANGE_VALUE(suffix, type, storeNumber(p_value), #type)
#define ZYR_CHANGE_COLOR(suffix, type) ZYR_CHANGE_VALUE(suffix, const type&, storeColor(p_value), #type)
#define ZYR_CHANGE_RECORD(suffix, type)                                                                                \
    ZYR_CHANGE_VALUE(suffix, const type&, storeRecord(zyr_getVariableTypeEnum<type>(), p_value), #type)

// Whatever byte a truth value holds, it is passed on as 0 or 1.
ZYR_CHANGE_VALUE(Bool, bool_t, storeNumber<bool_t>(p_value != 0), "bool_t")
ZYR_CHANGE_NUMBER(UInt8, uint8_t)
ZYR_CHANGE_NUMBER(Int8, int8_t)
ZYR_CHANGE_NUMBER(UInt16, uint16_t)
ZYR_CHANGE_NUMBER(Int16, int16_t)
ZYR_CHANGE_NUMBER(UInt32, uint32_t)
ZYR_CHANGE_NUMBER(Int32, int32_t)
ZYR_CHANGE_NUMBER(UInt64, uint64_t)
ZYR_CHANGE_NUMBER(Int64, int64_t)
ZYR_CHANGE_NUMBER(Float, float)
ZYR_CHANGE_NUMBER(Double, double)
ZYR_CHANGE_RECORD(String, String)
ZYR_CHANGE_RECORD(Vector2Int32, Vector2<int32_t>)
ZYR_CHANGE_RECORD(Vector2Int64, Vector2<int64_t>)
ZYR_CHANGE_RECORD(Vector2Float, Vector2<float>)
ZYR_CHANGE_RECORD(Vector3Float, Vector3<float>)
ZYR_CHANGE_RECORD(Vector4Float, Vector4<float>)
ZYR_CHANGE_RECORD(Vector2Double, Vector2<double>)
ZYR_CHANGE_RECORD(Vector3Double, Vector3<double>)
ZYR_CHANGE_RECORD(Vector4Double, Vector4<double>)
ZYR_CHANGE_RECORD(Matrix3x3Float, Matrix3x3<float>)
ZYR_CHANGE_RECORD(Matrix4x4Float, Matrix4x4<float>)
ZYR_CHANGE_RECORD(Matrix3x3Double, Matrix3x3<double>)
ZYR_CHANGE_RECORD(Matrix4x4Double, Matrix4x4<double>)
// The second blank in this one message is relied upon.
ZYR_CHANGE_VALUE(ExtPositionXFloat, const ExtPositionX<float>&, storeRecord(ZYR_VARIABLE_EXT_POSITION_X_FLOAT, p_value),
                 "ExtPositionX<float> ")
ZYR_CHANGE_RECORD(ExtPositionXDouble, ExtPositionX<double>)
ZYR_CHANGE_RECORD(ExtPositionYFloat, ExtPositionY<float>)
ZYR_CHANGE_RECORD(ExtPositionYDouble, ExtPositionY<double>)
ZYR_CHANGE_RECORD(ExtPositionZFloat, ExtPositionZ<float>)
ZYR_CHANGE_RECORD(ExtPositionZDouble, ExtPositionZ<double>)
ZYR_CHANGE_RECORD(ExtDimensionWidthFloat, ExtDimensionWidth<float>)
ZYR_CHANGE_RECORD(ExtDimensionWidthDouble, ExtDimensionWidth<double>)
ZYR_CHANGE_RECORD(ExtDimensionHeightFloat, ExtDimensionHeight<float>)
ZYR_CHANGE_RECORD(ExtDimensionHeightDouble, ExtDimensionHeight<double>)
ZYR_CHANGE_RECORD(ExtDimensionDepthFloat, ExtDimensionDepth<float>)
ZYR_CHANGE_RECORD(ExtDimensionDepthDouble, ExtDimensionDepth<double>)
ZYR_CHANGE_RECORD(ExtVector2Int32, ExtVector2<int32_t>)
ZYR_CHANGE_RECORD(ExtVector2Int64, ExtVector2<int64_t>)
ZYR_CHANGE_RECORD(ExtVector2Float, ExtVector2<float>)
ZYR_CHANGE_RECORD(ExtVector3Float, ExtVector3<float>)
ZYR_CHANGE_RECORD(ExtVector2Double, ExtVector2<double>)
ZYR_CHANGE_RECORD(ExtVector3Double, ExtVector3<double>)
ZYR_CHANGE_RECORD(RectSizeInt32, RectSize<int32_t>)
ZYR_CHANGE_RECORD(RectSizeInt64, RectSize<int64_t>)
ZYR_CHANGE_RECORD(RectSizeFloat, RectSize<float>)
ZYR_CHANGE_RECORD(RectSizeDouble, RectSize<double>)
ZYR_CHANGE_RECORD(RectInt32, Rect<int32_t>)
ZYR_CHANGE_RECORD(RectInt64, Rect<int64_t>)
ZYR_CHANGE_RECORD(RectFloat, Rect<float>)
ZYR_CHANGE_RECORD(RectDouble, Rect<double>)
ZYR_CHANGE_RECORD(BoxSizeFloat, BoxSize<float>)
ZYR_CHANGE_RECORD(BoxSizeDouble, BoxSize<double>)
ZYR_CHANGE_RECORD(BoxFloat, Box<float>)
ZYR_CHANGE_RECORD(BoxDouble, Box<double>)
ZYR_CHANGE_RECORD(ExtRectInt32, ExtRect<int32_t>)
ZYR_CHANGE_RECORD(ExtRectInt64, ExtRect<int64_t>)
ZYR_CHANGE_RECORD(ExtRectFloat, ExtRect<float>)
ZYR_CHANGE_RECORD(ExtRectDouble, ExtRect<double>)
ZYR_CHANGE_RECORD(ExtBoxFloat, ExtBox<float>)
ZYR_CHANGE_RECORD(ExtBoxDouble, ExtBox<double>)
ZYR_CHANGE_COLOR(ColorRGBFloat, ColorRGB<float>)
ZYR_CHANGE_COLOR(ColorRGBDouble, ColorRGB<double>)
ZYR_CHANGE_COLOR(ColorRGBAFloat, ColorRGBA<float>)
ZYR_CHANGE_COLOR(ColorRGBADouble, ColorRGBA<double>)
ZYR_CHANGE_RECORD(GUID, GUID_t)

bool_t VariableReference::changeValueStringReference(String* p_string) {
    if (m_type != ZYR_VARIABLE_STRING_REFERENCE) {
        ZYR_LOG_WARN("Unable to convert String * to type:%s", zyr_getVariableTypeString(m_type));
    }
    // The present one goes last: it may be the new one, or hold it.
    String* present = loadUnaligned<String*>(m_pointer);
    if (p_string) {
        p_string->addRef();
    }
    storeUnaligned(m_pointer, p_string);
    if (present) {
        present->release();
    }
    return 1;
}

bool_t VariableReference::changeValueObjectReference(IObject* p_object, bool_t p_clone) {
    if (m_type != ZYR_VARIABLE_OBJECT_REFERENCE) {
        ZYR_LOG_WARN("Unable to convert IObject * to type:%s", zyr_getVariableTypeString(m_type));
    }
    IObject* present = loadUnaligned<IObject*>(m_pointer);
    IObject* stored = nullptr;
    if (p_object) {
        stored = p_clone ? p_object->clone() : p_object->addRef();
    }
    storeUnaligned(m_pointer, stored);
    if (present) {
        present->release();
    }
    return 1;
}

VariableTypeEnum VariableReference::getType() const {
    return m_type;
}

void* VariableReference::getPointer() const {
    return m_pointer;
}

void VariableReference::release() {
    delete this;
}

} // namespace zyr
