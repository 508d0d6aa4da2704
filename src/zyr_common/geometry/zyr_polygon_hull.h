/// Shapes after their tessellation.
///
/// A hull is an array of points and, by index into it, the triangles and quads that cover the shape. The constructors
/// copy what a tessellator made; the outlines of a plane hull are filled in afterwards. Indices are not checked when
/// they are handed in: each operation leaves out what points beyond the array.
///
/// A hull can be large: copying one copies all its arrays. One owner at a time, and no operation here locks anything.
#pragma once

#include "zyr_common/geometry/zyr_contour.h"
#include "zyr_common/geometry/zyr_matrix3x3.h"
#include "zyr_common/geometry/zyr_matrix4x4.h"
#include "zyr_common/geometry/zyr_shape2d.h"
#include "zyr_common/geometry/zyr_shape3d.h"

namespace zyr {

#pragma pack(push, 1)

/// A plane shape as triangles and quads, with its outlines.
template <typename T> class PolygonHull2D : public Record<PolygonHull2D<T>, Shape2D<T>> {
public:
    /// All points, of faces and outlines alike.
    Array<Vector2<T>> points;
    /// The faces, which together cover the shape once.
    Array<PolyTriangle2D<T>> triangles;
    Array<PolyQuad2D<T>> quads;
    /// Outlines and holes; each tells by `containerIndex` which one it lies in.
    Array<Contour2D<T>> contours;

    /// Without points and faces.
    PolygonHull2D() { this->init_This(); }
    PolygonHull2D(const ExtVector2<T>& p_origin, const Array<Vector2<T>>& p_points,
                  Array<PolyTriangle2D<T>>& p_triangles, Array<PolyQuad2D<T>>& p_quads)
        : Record<PolygonHull2D<T>, Shape2D<T>>(Shape2D<T>(p_origin)),
          points(p_points),
          triangles(p_triangles),
          quads(p_quads) {}

    /// A deep copy with a count of its own, which the caller owns.
    PolygonHull2D* clone() const override { return new PolygonHull2D(*this); }
    uint32_t getID() const override { return 11; }

    /// Runs each point through the matrix. Normals and areas of the outlines stay as they were: calculate them again.
    void transform(const Matrix3x3<T>& p_matrix);

    static constexpr const char* c_typeName = "PolygonHull2D";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("points", &PolygonHull2D::points),
                          zyr_field("triangles", &PolygonHull2D::triangles), zyr_field("quads", &PolygonHull2D::quads),
                          zyr_field("contours", &PolygonHull2D::contours));
    }
};

/// A solid shape as triangles and quads.
///
///     hull.transform(matrix);
///     hull.calculateNormals(); // they don't follow by themselves
template <typename T> class PolygonHull3D : public Record<PolygonHull3D<T>, Shape3D<T>> {
public:
    /// All corners; corners may share a point.
    Array<Vector3<T>> points;
    /// The faces, each with a normal for its whole area.
    Array<PolyTriangle3D<T>> triangles;
    Array<PolyQuad3D<T>> quads;

    /// Without points and faces.
    PolygonHull3D() { this->init_This(); }
    PolygonHull3D(const ExtVector3<T>& p_origin, const Array<Vector3<T>>& p_points,
                  Array<PolyTriangle3D<T>>& p_triangles, Array<PolyQuad3D<T>>& p_quads)
        : Record<PolygonHull3D<T>, Shape3D<T>>(Shape3D<T>(p_origin)),
          points(p_points),
          triangles(p_triangles),
          quads(p_quads) {}

    /// A deep copy with a count of its own, which the caller owns.
    PolygonHull3D* clone() const override { return new PolygonHull3D(*this); }
    uint32_t getID() const override { return 12; }

    /// The smallest box around all points, used or not; the origin takes no part. False without points, and p_box
    /// stays.
    virtual bool_t extractBoundingBox(Box<T>& p_box) const;

    /// Runs each point through the matrix; the normals stay, so call calculateNormals afterwards.
    void transform(const Matrix4x4<T>& p_matrix);
    /// Sets the normal of each triangle and quad, of length 1, from its first three corners: the cross product of the
    /// edges from the first to the second and to the third. Seen from where it points, the corners run
    /// counter-clockwise. A face with an index beyond the points keeps its normal, one without area gets zero. False
    /// without points.
    bool_t calculateNormals();

    static constexpr const char* c_typeName = "PolygonHull3D";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("points", &PolygonHull3D::points),
                          zyr_field("triangles", &PolygonHull3D::triangles), zyr_field("quads", &PolygonHull3D::quads));
    }
};

#pragma pack(pop)

} // namespace zyr
