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
    /// Where the middle of the shape is placed; solved by who draws it.
    ExtVector3<T> origin;

    Shape3D() { this->init_This(); }
    explicit Shape3D(const ExtVector3<T>& p_origin) : origin(p_origin) {}

    // Slot order is a contract between separately built modules. Each class's list of fields brings the last five.

    /// A copy with a count of its own, which the caller owns.
    Shape3D* clone() const override { return new Shape3D(*this); }
    /// Back to the defaults of the class; the count stays.
    virtual void clear() { Level::clear(); }
    /// With the type of number, as in "Shape3D{float}". Lives as long as the process.
    virtual const String& getClassName() const { return Level::getClassName(); }
    /// The number of the class, by which holders of the base switch: 1 Spline3D, 2 Cuboid, 3 RoundedCuboid, 4 Sphere, 5
    /// Torus, 6 Capsule, 7 Cylinder, 8 Cone, 9 Tube, 10 Extrusion, 11 Lathe, 12 PolygonHull3D, 0 here. A class that
    /// extends another one has a number of its own, and is still an object of the other.
    virtual uint32_t getID() const { return 0; }
    /// A reference to the field of this path, which the caller owns ("origin.x"); null for paths that the class doesn't
    /// have.
    virtual VariableReference* getVariableReferenceByPath(const String& p_path) {
        return Level::getVariableReferenceByPath(p_path);
    }
    /// Read and write the fields, those of the base first. 0 when the stream fails; what was read until then stays.
    virtual bool_t readSerialized(IDeserializer* p_deserializer) { return Level::readSerialized(p_deserializer); }
    virtual bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) {
        return Level::writeSerialized(p_serializer, p_headerPass, p_result);
    }

    static constexpr const char* c_typeName = "Shape3D";
    static constexpr auto fields() { return zyr_fields(zyr_field("origin", &Shape3D::origin)); }
};

#pragma pack(pop)

} // namespace zyr
