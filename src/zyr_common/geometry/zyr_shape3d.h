/// Solid shapes by their parameters.
///
/// A shape carries data, identity, streaming and, where its extent follows from its numbers, a box around it; meshes
/// are made elsewhere. Every class exists for float and double. Shapes are counted, packed values with virtual
/// operations; whoever holds one by its base tells the class by getID. One owner at a time.
#pragma once

#include "zyr_common/geometry/zyr_box.h"
#include "zyr_common/geometry/zyr_ext_vector.h"
#include "zyr_common/memory/zyr_ref_counted_data.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

#pragma pack(push, 1)

/// What all solid shapes have.
template <typename T> class Shape3D : public Record<Shape3D<T>, RefCountedData> {
    using Level = Record<Shape3D<T>, RefCountedData>;

public:
    ExtVector3<T> origin;

    Shape3D() { this->init_This(); }
    explicit Shape3D(const ExtVector3<T>& p_origin) : origin(p_origin) {}

    // Slot order is a contract between separately built modules. Each class's list of fields brings the last five.

    /// A copy with a count of its own, which the caller owns.
    Shape3D* clone() const override { return new Shape3D(*this); }
    virtual void clear() { Level::clear(); }
    virtual const String& getClassName() const { return Level::getClassName(); }
    /// The number of the class.
    virtual uint32_t getID() const { return 0; }
    virtual VariableReference* getVariableReferenceByPath(const String& p_path) {
        return Level::getVariableReferenceByPath(p_path);
    }
    virtual bool_t readSerialized(IDeserializer* p_deserializer) { return Level::readSerialized(p_deserializer); }
    virtual bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) {
        return Level::writeSerialized(p_serializer, p_headerPass, p_result);
    }

    static constexpr const char* c_typeName = "Shape3D";
    static constexpr auto fields() { return zyr_fields(zyr_field("origin", &Shape3D::origin)); }
};

#pragma pack(pop)

} // namespace zyr
