/// What a plane or solid shape is after its tessellation: indices into a list of points.
///
/// Tessellators elsewhere fill these records; here they are held, streamed and given areas and normals. Packed values
/// for float and double. An index beyond the points is no error: what has one is left out.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/geometry/zyr_vector.h"
#include "zyr_common/memory/zyr_ref_counted_data.h"

namespace zyr {

#pragma pack(push, 1)

/// A point of an outline.
template <typename T> class PolyPoint2D : public Record<PolyPoint2D<T>> {
public:
    /// of the point among the hull's points
    uint32_t index;
    /// The mean of the normals of the two edges that meet here; shorter than 1 at corners. Zero until calculated.
    Vector2<T> normal;

    /// The first point, without a normal.
    PolyPoint2D() { this->init_This(); }
    PolyPoint2D(uint32_t p_index, const Vector2<T>& p_normal) : index(p_index), normal(p_normal) {}

    static constexpr const char* c_typeName = "PolyPoint2D";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("index", &PolyPoint2D::index), zyr_field("normal", &PolyPoint2D::normal));
    }
};

/// An edge of an outline, from its first point to its second.
///
///     contour.edges.pushBack(PolyEdge2D<float>(0, 1, Vector2<float>())); // the normal is calculated later
template <typename T> class PolyEdge2D : public Record<PolyEdge2D<T>> {
public:
    /// from and to
    uint32_t indices[2];
    /// Of length 1, or zero for an edge without length and until calculated.
    Vector2<T> normal;

    /// From the first point to itself, without a normal.
    PolyEdge2D() { this->init_This(); }
    PolyEdge2D(uint32_t p_first, uint32_t p_second, const Vector2<T>& p_normal)
        : indices{p_first, p_second}, normal(p_normal) {}

    static constexpr const char* c_typeName = "PolyEdge2D";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("indices", &PolyEdge2D::indices), zyr_field("normal", &PolyEdge2D::normal));
    }
};

/// A triangle of the plane, by the indices of its corners.
template <typename T> class PolyTriangle2D : public Record<PolyTriangle2D<T>> {
public:
    /// The corners among the hull's points, either way round.
    uint32_t indices[3];

    PolyTriangle2D() { this->init_This(); }
    PolyTriangle2D(uint32_t p_0, uint32_t p_1, uint32_t p_2) : indices{p_0, p_1, p_2} {}

    static constexpr const char* c_typeName = "PolyTriangle2D";
    static constexpr auto fields() { return zyr_fields(zyr_field("indices", &PolyTriangle2D::indices)); }
};

/// A quadrangle of the plane, by the indices of its corners.
template <typename T> class PolyQuad2D : public Record<PolyQuad2D<T>> {
public:
    /// in the order around the face
    uint32_t indices[4];

    PolyQuad2D() { this->init_This(); }
    PolyQuad2D(uint32_t p_0, uint32_t p_1, uint32_t p_2, uint32_t p_3) : indices{p_0, p_1, p_2, p_3} {}

    static constexpr const char* c_typeName = "PolyQuad2D";
    static constexpr auto fields() { return zyr_fields(zyr_field("indices", &PolyQuad2D::indices)); }
};

/// A triangle in space with the normal of its face.
template <typename T> class PolyTriangle3D : public Record<PolyTriangle3D<T>> {
public:
    /// Counter-clockwise when seen from outside.
    uint32_t indices[3];
    /// Of length 1. It is stored as given until PolygonHull3D::calculateNormals sets it.
    Vector3<T> normal;

    PolyTriangle3D() { this->init_This(); }
    PolyTriangle3D(uint32_t p_0, uint32_t p_1, uint32_t p_2, const Vector3<T>& p_normal)
        : indices{p_0, p_1, p_2}, normal(p_normal) {}

    static constexpr const char* c_typeName = "PolyTriangle3D";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("indices", &PolyTriangle3D::indices), zyr_field("normal", &PolyTriangle3D::normal));
    }
};

/// A quadrangle in space with the normal of its face.
template <typename T> class PolyQuad3D : public Record<PolyQuad3D<T>> {
public:
    /// Counter-clockwise when seen from outside; the first three give the normal.
    uint32_t indices[4];
    /// Of length 1; stored as given until PolygonHull3D::calculateNormals sets it.
    Vector3<T> normal;

    PolyQuad3D() { this->init_This(); }
    PolyQuad3D(uint32_t p_0, uint32_t p_1, uint32_t p_2, uint32_t p_3, const Vector3<T>& p_normal)
        : indices{p_0, p_1, p_2, p_3}, normal(p_normal) {}

    static constexpr const char* c_typeName = "PolyQuad3D";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("indices", &PolyQuad3D::indices), zyr_field("normal", &PolyQuad3D::normal));
    }
};

/// An outline, or a hole in one. The points themselves belong to the hull and are handed in.
///
///     contour.calculateArea(hull.points); // first: the normals go by `clockwise`
///     contour.calculateNormals(hull.points);
template <typename T> class Contour2D : public Record<Contour2D<T>, RefCountedData> {
public:
    /// Which of the hull's points lie on this outline. They need not be in order: the edges tell that.
    Array<PolyPoint2D<T>> points;
    /// One behind the other; the last ends where the first begins.
    Array<PolyEdge2D<T>> edges;
    T area; ///< never negative
    /// Set by calculateArea, as are the area above; both are 0 at first.
    bool_t clockwise;
    /// Told by the tessellator: what this outline holds is not part of the shape.
    bool_t hole;
    uint32_t containerIndex; ///< the contour that holds this one

    /// Without points and edges; its area is 0.
    Contour2D() { this->init_This(); }

    /// A deep copy with a count of its own, which the caller owns.
    Contour2D* clone() const override { return new Contour2D(*this); }

    /// Gives the area that the edges enclose, above 0 when they run counter-clockwise, and sets `area` and `clockwise`;
    /// an area of exactly 0 counts as clockwise. With fewer than three edges it gives 0 and sets nothing.
    T calculateArea(const Array<Vector2<T>>& p_points);
    /// Sets the normal of each edge, of length 1, and of each point, the mean of its two edges' normals, which is
    /// shorter. They face outward as `clockwise` and `hole` tell. A point with one edge gets that edge's normal, one
    /// without stays. False without points or edges; nothing is changed then. Takes a map of all edges from the heap.
    bool_t calculateNormals(const Array<Vector2<T>>& p_points);

    static constexpr const char* c_typeName = "Contour2D";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("points", &Contour2D::points), zyr_field("edges", &Contour2D::edges),
                          zyr_field("area", &Contour2D::area), zyr_field("clockwise", &Contour2D::clockwise),
                          zyr_field("hole", &Contour2D::hole), zyr_field("containerIndex", &Contour2D::containerIndex));
    }
};

#pragma pack(pop)

} // namespace zyr
