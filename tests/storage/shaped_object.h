/// An object whose class has changed over time: what older and newer versions wrote, for the reader of today.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/object/zyr_object_class.h"
#include "zyr_common/serialization/zyr_serializer.h"

namespace zyr::test {

enum class Shape {
    TODAY,
    FIELD_LESS,       ///< without "name" and "place"
    FIELD_MORE,       ///< with fields of every kind behind and between
    OTHER_ORDER,      ///< the fields from the last to the first
    OTHER_NUMBER,     ///< the count as a 64-bit number, the width as an integer
    NUMBER_TOO_LARGE, ///< a count that its type can't hold
    NUMBER_AS_TEXT,   ///< a count in letters
    TEXT_AS_GROUP     ///< a name that is a group
};

/// Today's fields: "count", "width", "name", the group "place" with "x", and the texts "parts".
class ShapedObject : public ObjectClass<ShapedObject, WObject> {
public:
    static constexpr const char* c_className = "ShapedObject";
    static constexpr const char* c_classGUIDText = "70000000-0000-4000-8000-0000000000a2";

    explicit ShapedObject(Shape p_shape = Shape::TODAY) : m_shape(p_shape) { initObjectInterface(); }
    ~ShapedObject() override { release_This(); }

    bool_t readSerialized(IDeserializer* p_deserializer) override;
    bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) override;

    void init_This() {}
    void release_This() {}
    void copy_This(const ShapedObject*) {}

    int32_t m_count = -1;
    float m_width = -1;
    String m_name = "no name";
    int32_t m_x = -1;
    Array<String> m_parts;

private:
    bool_t writeField(ISerializer* p_serializer, int p_field) const;
    bool_t writeMore(ISerializer* p_serializer) const;

    Shape m_shape;
};

} // namespace zyr::test
