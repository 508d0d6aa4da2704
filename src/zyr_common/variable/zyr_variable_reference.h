/// A typed pointer to a field inside a living object or record: what makes a field writable from outside.
///
/// The writer hands in a value of any accepted source type and the reference converts it to the type of the field:
///
/// | Source | Accepted targets |
/// |---|---|
/// | bool_t, integers, float, double | each of those, and 32-bit enumerations |
/// | a float or double colour, with or without alpha | each of those four |
/// | String* and IObject* | their reference rows, see there |
/// | anything else | its own type only |
///
/// Numbers: to bool_t, non-zero gives 1. Integers keep their low bits. A floating value is truncated, held inside 32
/// bits of the target's signedness (64 for the 64-bit targets) and then narrowed; not-a-number gives 0.
///
/// A successful change gives 1. Any other target logs "Unable to convert <source> to type:<target>", gives 0 and leaves
/// the field as it is. Writes go straight into the field without a lock: the owner of the field sees to that.
#pragma once

#include "zyr_common/variable/zyr_variable_types.h"
#include "zyr_common/zyr_types.h"

namespace zyr {

#pragma pack(push, 1)

/// Made with new, freed by its own release(), not counted. Valid as long as the field. The order of the virtual
/// operations is a contract between separately built modules.
///
///     VariableReference* reference = object->getVariableReferenceByPath("origin.x");
///     if (reference != nullptr) {
///         reference->changeValueDouble(2.5); // 2 where the field is an integer
///         reference->release();
///     }
class VariableReference final {
public:
    /// p_pointer is the field itself, also for types that values hold by pointer; it stays with its owner.
    VariableReference(VariableTypeEnum p_type, void* p_pointer) : m_type(p_type), m_pointer(p_pointer) {}
    VariableReference(const VariableReference&) = delete;
    VariableReference& operator=(const VariableReference&) = delete;

    /// One operation for each source type. Records are copied whole.
    virtual bool_t changeValueBool(bool_t p_value);
    /// Numbers: see the table above for what a target of another type makes of them.
    virtual bool_t changeValueUInt8(uint8_t p_value);
    virtual bool_t changeValueInt8(int8_t p_value);
    virtual bool_t changeValueUInt16(uint16_t p_value);
    virtual bool_t changeValueInt16(int16_t p_value);
    virtual bool_t changeValueUInt32(uint32_t p_value);
    virtual bool_t changeValueInt32(int32_t p_value);
    virtual bool_t changeValueUInt64(uint64_t p_value);
    virtual bool_t changeValueInt64(int64_t p_value);
    virtual bool_t changeValueFloat(float p_value);
    virtual bool_t changeValueDouble(double p_value);
    /// The text is copied; a text takes no number.
    virtual bool_t changeValueString(const String& p_value);
    /// Vectors and matrices go into a field of exactly their type.
    virtual bool_t changeValueVector2Int32(const Vector2<int32_t>& p_value);
    virtual bool_t changeValueVector2Int64(const Vector2<int64_t>& p_value);
    virtual bool_t changeValueVector2Float(const Vector2<float>& p_value);
    virtual bool_t changeValueVector3Float(const Vector3<float>& p_value);
    virtual bool_t changeValueVector4Float(const Vector4<float>& p_value);
    virtual bool_t changeValueVector2Double(const Vector2<double>& p_value);
    virtual bool_t changeValueVector3Double(const Vector3<double>& p_value);
    virtual bool_t changeValueVector4Double(const Vector4<double>& p_value);
    virtual bool_t changeValueMatrix3x3Float(const Matrix3x3<float>& p_value);
    virtual bool_t changeValueMatrix4x4Float(const Matrix4x4<float>& p_value);
    virtual bool_t changeValueMatrix3x3Double(const Matrix3x3<double>& p_value);
    virtual bool_t changeValueMatrix4x4Double(const Matrix4x4<double>& p_value);
    /// Coordinates and sizes with their anchors.
    virtual bool_t changeValueExtPositionXFloat(const ExtPositionX<float>& p_value);
    virtual bool_t changeValueExtPositionXDouble(const ExtPositionX<double>& p_value);
    virtual bool_t changeValueExtPositionYFloat(const ExtPositionY<float>& p_value);
    virtual bool_t changeValueExtPositionYDouble(const ExtPositionY<double>& p_value);
    virtual bool_t changeValueExtPositionZFloat(const ExtPositionZ<float>& p_value);
    virtual bool_t changeValueExtPositionZDouble(const ExtPositionZ<double>& p_value);
    virtual bool_t changeValueExtDimensionWidthFloat(const ExtDimensionWidth<float>& p_value);
    virtual bool_t changeValueExtDimensionWidthDouble(const ExtDimensionWidth<double>& p_value);
    virtual bool_t changeValueExtDimensionHeightFloat(const ExtDimensionHeight<float>& p_value);
    virtual bool_t changeValueExtDimensionHeightDouble(const ExtDimensionHeight<double>& p_value);
    virtual bool_t changeValueExtDimensionDepthFloat(const ExtDimensionDepth<float>& p_value);
    virtual bool_t changeValueExtDimensionDepthDouble(const ExtDimensionDepth<double>& p_value);
    /// Points, sizes and rectangles, plain and anchored.
    virtual bool_t changeValueExtVector2Int32(const ExtVector2<int32_t>& p_value);
    virtual bool_t changeValueExtVector2Int64(const ExtVector2<int64_t>& p_value);
    virtual bool_t changeValueExtVector2Float(const ExtVector2<float>& p_value);
    virtual bool_t changeValueExtVector3Float(const ExtVector3<float>& p_value);
    virtual bool_t changeValueExtVector2Double(const ExtVector2<double>& p_value);
    virtual bool_t changeValueExtVector3Double(const ExtVector3<double>& p_value);
    virtual bool_t changeValueRectSizeInt32(const RectSize<int32_t>& p_value);
    virtual bool_t changeValueRectSizeInt64(const RectSize<int64_t>& p_value);
    virtual bool_t changeValueRectSizeFloat(const RectSize<float>& p_value);
    virtual bool_t changeValueRectSizeDouble(const RectSize<double>& p_value);
    virtual bool_t changeValueRectInt32(const Rect<int32_t>& p_value);
    virtual bool_t changeValueRectInt64(const Rect<int64_t>& p_value);
    virtual bool_t changeValueRectFloat(const Rect<float>& p_value);
    virtual bool_t changeValueRectDouble(const Rect<double>& p_value);
    virtual bool_t changeValueBoxSizeFloat(const BoxSize<float>& p_value);
    virtual bool_t changeValueBoxSizeDouble(const BoxSize<double>& p_value);
    virtual bool_t changeValueBoxFloat(const Box<float>& p_value);
    virtual bool_t changeValueBoxDouble(const Box<double>& p_value);
    virtual bool_t changeValueExtRectInt32(const ExtRect<int32_t>& p_value);
    virtual bool_t changeValueExtRectInt64(const ExtRect<int64_t>& p_value);
    virtual bool_t changeValueExtRectFloat(const ExtRect<float>& p_value);
    virtual bool_t changeValueExtRectDouble(const ExtRect<double>& p_value);
    virtual bool_t changeValueExtBoxFloat(const ExtBox<float>& p_value);
    virtual bool_t changeValueExtBoxDouble(const ExtBox<double>& p_value);
    /// Colours: a target without alpha leaves it out, one with alpha becomes opaque where the source has none.
    virtual bool_t changeValueColorRGBFloat(const ColorRGB<float>& p_value);
    virtual bool_t changeValueColorRGBDouble(const ColorRGB<double>& p_value);
    virtual bool_t changeValueColorRGBAFloat(const ColorRGBA<float>& p_value);
    virtual bool_t changeValueColorRGBADouble(const ColorRGBA<double>& p_value);
    /// The sixteen bytes.
    virtual bool_t changeValueGUID(const GUID_t& p_value);
    /// Releases the string that the field holds and stores p_string with a reference of the field's own; null stores
    /// null. A field of another type is logged and written all the same, which callers rely on: its eight bytes are
    /// taken for the pointer.
    virtual bool_t changeValueStringReference(String* p_string);
    /// The same for an object; with p_clone the field gets a clone of its own instead of a reference.
    virtual bool_t changeValueObjectReference(IObject* p_object, bool_t p_clone);
    /// The type of the field.
    virtual VariableTypeEnum getType() const;
    /// The field itself, which stays with its owner.
    virtual void* getPointer() const;
    /// Frees the reference; the field stays.
    virtual void release();

private:
    /// By release() alone.
    ~VariableReference() = default;

    /// Converts to the type of the field; false for one that takes no number.
    template <typename From> bool_t storeNumber(From p_value);
    /// Copies the record; false for a field of another type.
    template <typename T> bool_t storeRecord(VariableTypeEnum p_type, const T& p_value);
    template <typename Color> bool_t storeColor(const Color& p_value);

    VariableTypeEnum m_type;
    void* m_pointer;
};

#pragma pack(pop)

static_assert(sizeof(VariableReference) == 20 && alignof(VariableReference) == 1);

} // namespace zyr
