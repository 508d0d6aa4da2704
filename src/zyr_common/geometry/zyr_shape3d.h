/// Solid shapes by their parameters.
///
/// A shape carries data, identity, streaming and, where its extent follows from its numbers, a box around it; meshes
/// are made elsewhere. Every class exists for float and double. Shapes are counted, packed values with virtual
/// operations; whoever holds one by its base tells the class by getID. One owner at a time.
#pragma once

#include "zyr_common/geometry/zyr_box.h"
#include "zyr_common/geometry/zyr_ext_vector.h"
#include "zyr_common/serialization/zyr_numbered_record.h"

namespace zyr {

/// Gives the fields of a record's own level their values, in order and converted to the fields' types.
template <RecordLevel R, typename... Values> void zyr_setFields(R& p_record, const Values&... p_values) {
    static_assert(sizeof...(Values) == c_recordFieldCount<R>, "one value for each field");
    [&]<size_t... I>(std::index_sequence<I...>) {
        ((p_record.*std::get<I>(c_recordFields<R>).m_member =
              static_cast<typename std::tuple_element_t<I, decltype(R::fields())>::Member>(p_values)),
         ...);
    }
    (std::index_sequence_for<Values...>());
}

#pragma pack(push, 1)

/// What all solid shapes have.
template <typename T> class Shape3D : public NumberedRecord<Shape3D<T>> {
public:
    /// Where the middle of the shape is placed; solved by who draws it.
    ExtVector3<T> origin;

    /// At (0, 0, 0).
    Shape3D() { this->init_This(); }
    /// The origin is copied; nothing is solved.
    explicit Shape3D(const ExtVector3<T>& p_origin) : origin(p_origin) {}

    /// A copy with a count of its own, which the caller owns.
    Shape3D* clone() const override { return new Shape3D(*this); }
    /// The numbers by which holders of this base switch: 1 Spline3D, 2 Cuboid, 3 RoundedCuboid, 4 Sphere, 5
    /// Torus, 6 Capsule, 7 Cylinder, 8 Cone, 9 Tube, 10 Extrusion, 11 Lathe, 12 PolygonHull3D, 0 here. A class that
    /// extends another one has a number of its own, and is still an object of the other.
    uint32_t getID() const override { return 0; }

    static constexpr const char* c_typeName = "Shape3D";
    static constexpr auto fields() { return zyr_fields(zyr_field("origin", &Shape3D::origin)); }
};

#pragma pack(pop)

} // namespace zyr
