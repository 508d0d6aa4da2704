/// Solid shapes that are made of points, or of a plane shape on its way through space.
///
/// A swept shape doesn't name the plane shape that it sweeps: whoever holds both knows that they belong together. It
/// tells where the plane shape starts and ends (a ShapeTransform3D each, between which ShapeTransform3D::interpolate
/// goes), and how the two ends are closed. These shapes have no bounding box, since their extent depends on the plane
/// shape.
///
/// Constructors take the origin and then the fields in their order. Array fields are copied, and a copy of a shape has
/// points of its own.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/geometry/zyr_shape3d.h"
#include "zyr_common/geometry/zyr_shape_enums.h"
#include "zyr_common/geometry/zyr_solid_shapes.h"
#include "zyr_common/geometry/zyr_transform.h"

namespace zyr {

#pragma pack(push, 1)

/// A curve through or along its points. A new one is an open cubic Bezier curve without points.
template <typename T> class Spline3D : public Record<Spline3D<T>, Shape3D<T>> {
public:
    /// How the points are read, see SplineTypeEnum; their count is not checked against it.
    SplineTypeEnum type;
    /// In the order of the curve, relative to the origin.
    Array<Vector3<T>> points;
    /// The last point is joined to the first.
    bool_t closed;

    Spline3D() { this->init_This(); }
    Spline3D(const ExtVector3<T>& p_origin, SplineTypeEnum p_type, const Array<Vector3<T>>& p_points, bool_t p_closed)
        : Record<Spline3D<T>, Shape3D<T>>(Shape3D<T>(p_origin)), type(p_type), points(p_points), closed(p_closed) {}

    /// A deep copy with a count of its own, which the caller owns.
    Spline3D* clone() const override { return new Spline3D(*this); }
    uint32_t getID() const override { return 1; }

    /// Runs each point through the matrix (Matrix4x4::transform: nothing is divided). The origin stays.
    void transform(const Matrix4x4<T>& p_matrix);

    static constexpr const char* c_typeName = "Spline3D";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("type", &Spline3D::type).withDefault(ZYR_SPLINE_TYPE_BEZIER_CUBIC),
                          zyr_field("points", &Spline3D::points), zyr_field("closed", &Spline3D::closed));
    }
};
/// A body that a plane shape leaves behind on its way from one placement to another.
///
///     Extrusion<float> bar; // of a plane shape that lies in the plane of x and y
///     bar.endTransform.position = {0, 0, 100};
///     bar.endTransform.eulerRotation = {0, 0, 90}; // twisted by a quarter of a turn
template <typename T> class Extrusion : public Record<Extrusion<T>, Shape3D<T>> {
public:
    /// The face at the start is closed; on at first.
    bool_t startCap;
    /// The edge of that face has a fillet, with the radius (10 at first) and the profile below; both are kept while it
    /// is off.
    bool_t startFillet;
    /// How far the fillet reaches from the edge, in the units of the scene.
    T startFilletRadius;
    /// What the fillet looks like from the side; linear at first.
    FilletTypeEnum startFilletType;
    /// The same for the face at the end.
    bool_t endCap;
    bool_t endFillet;
    /// 10 at first, as at the start.
    T endFilletRadius;
    /// Need not be that of the start; linear at first.
    FilletTypeEnum endFilletType;
    /// Where the plane shape begins. A new one begins and ends at the same place, and so has no volume.
    ShapeTransform3D<T> startTransform;
    /// Where it ends.
    ShapeTransform3D<T> endTransform;

    Extrusion() { this->init_This(); }
    Extrusion(const ExtVector3<T>& p_origin, bool_t p_startCap, bool_t p_startFillet, T p_startFilletRadius,
              FilletTypeEnum p_startFilletType, bool_t p_endCap, bool_t p_endFillet, T p_endFilletRadius,
              FilletTypeEnum p_endFilletType, const ShapeTransform3D<T>& p_startTransform,
              const ShapeTransform3D<T>& p_endTransform)
        : Record<Extrusion<T>, Shape3D<T>>(Shape3D<T>(p_origin)),
          startCap(p_startCap),
          startFillet(p_startFillet),
          startFilletRadius(p_startFilletRadius),
          startFilletType(p_startFilletType),
          endCap(p_endCap),
          endFillet(p_endFillet),
          endFilletRadius(p_endFilletRadius),
          endFilletType(p_endFilletType),
          startTransform(p_startTransform),
          endTransform(p_endTransform) {}

    /// A copy with a count of its own, which the caller owns.
    Extrusion* clone() const override { return new Extrusion(*this); }
    uint32_t getID() const override { return 10; }

    static constexpr const char* c_typeName = "Extrusion";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("startCap", &Extrusion::startCap).withDefault(1),
                          zyr_field("startFillet", &Extrusion::startFillet),
                          zyr_field("startFilletRadius", &Extrusion::startFilletRadius).withDefault(10),
                          zyr_field("startFilletType", &Extrusion::startFilletType),
                          zyr_field("endCap", &Extrusion::endCap).withDefault(1),
                          zyr_field("endFillet", &Extrusion::endFillet),
                          zyr_field("endFilletRadius", &Extrusion::endFilletRadius).withDefault(10),
                          zyr_field("endFilletType", &Extrusion::endFilletType),
                          zyr_field("startTransform", &Extrusion::startTransform),
                          zyr_field("endTransform", &Extrusion::endTransform));
    }
};
/// A body that a plane shape leaves behind when it turns.
///
///     Lathe<float> bowl;
///     bowl.slice = 1; // half of it
template <typename T> class Lathe : public Record<Lathe<T>, Shape3D<T>> {
public:
    /// Only the turn from `sliceFrom` to `sliceTo` (0 and 180 at first) is there; off means a whole turn.
    bool_t slice;
    /// Where the turn begins. The angles are kept while the slice is off, and nothing here reads them.
    T sliceFrom;
    /// Where the turn ends.
    T sliceTo;
    /// The face at `sliceFrom` is closed (on at first), its edge with a fillet of the radius (10 at first) and profile
    /// below.
    bool_t sliceStartCap;
    bool_t sliceStartFillet;
    T sliceStartFilletRadius;
    /// What that fillet looks like from the side; linear at first.
    FilletTypeEnum sliceStartFilletType;
    /// The same for the face at `sliceTo`.
    bool_t sliceEndCap;
    bool_t sliceEndFillet;
    T sliceEndFilletRadius;
    /// Need not be that of the start; linear at first.
    FilletTypeEnum sliceEndFilletType;
    /// How the plane shape is placed when the turn begins, and below it when it ends.
    ShapeTransform3D<T> startTransform;
    ShapeTransform3D<T> endTransform;

    Lathe() { this->init_This(); }
    Lathe(const ExtVector3<T>& p_origin, bool_t p_slice, T p_sliceFrom, T p_sliceTo, bool_t p_sliceStartCap,
          bool_t p_sliceStartFillet, T p_sliceStartFilletRadius, FilletTypeEnum p_sliceStartFilletType,
          bool_t p_sliceEndCap, bool_t p_sliceEndFillet, T p_sliceEndFilletRadius, FilletTypeEnum p_sliceEndFilletType,
          const ShapeTransform3D<T>& p_startTransform, const ShapeTransform3D<T>& p_endTransform)
        : Record<Lathe<T>, Shape3D<T>>(Shape3D<T>(p_origin)),
          slice(p_slice),
          sliceFrom(p_sliceFrom),
          sliceTo(p_sliceTo),
          sliceStartCap(p_sliceStartCap),
          sliceStartFillet(p_sliceStartFillet),
          sliceStartFilletRadius(p_sliceStartFilletRadius),
          sliceStartFilletType(p_sliceStartFilletType),
          sliceEndCap(p_sliceEndCap),
          sliceEndFillet(p_sliceEndFillet),
          sliceEndFilletRadius(p_sliceEndFilletRadius),
          sliceEndFilletType(p_sliceEndFilletType),
          startTransform(p_startTransform),
          endTransform(p_endTransform) {}

    /// A copy with a count of its own, which the caller owns.
    Lathe* clone() const override { return new Lathe(*this); }
    uint32_t getID() const override { return 11; }

    static constexpr const char* c_typeName = "Lathe";
    static constexpr auto fields() {
        return std::tuple_cat(
            zyr_sliceFields<Lathe>(),
            zyr_fields(zyr_field("sliceStartCap", &Lathe::sliceStartCap).withDefault(1),
                       zyr_field("sliceStartFillet", &Lathe::sliceStartFillet),
                       zyr_field("sliceStartFilletRadius", &Lathe::sliceStartFilletRadius).withDefault(10),
                       zyr_field("sliceStartFilletType", &Lathe::sliceStartFilletType),
                       zyr_field("sliceEndCap", &Lathe::sliceEndCap).withDefault(1),
                       zyr_field("sliceEndFillet", &Lathe::sliceEndFillet),
                       zyr_field("sliceEndFilletRadius", &Lathe::sliceEndFilletRadius).withDefault(10),
                       zyr_field("sliceEndFilletType", &Lathe::sliceEndFilletType),
                       zyr_field("startTransform", &Lathe::startTransform),
                       zyr_field("endTransform", &Lathe::endTransform)));
    }
};

#pragma pack(pop)

} // namespace zyr
