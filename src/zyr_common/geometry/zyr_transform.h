/// Placements by their parts, not as a finished matrix: what an editor shows and an animation blends.
///
/// Packed values without a virtual table, for float and double. Angles are degrees. A new placement changes nothing:
/// its matrix is the identity.
#pragma once

#include "zyr_common/geometry/zyr_matrix3x3.h"
#include "zyr_common/geometry/zyr_matrix4x4.h"

namespace zyr {

#pragma pack(push, 1)

/// A placement in the plane. Held and exchanged; consumers multiply it out.
template <typename T> class Transform2D : public Record<Transform2D<T>> {
public:
    /// What the parts below are applied on top of; the identity at first.
    Matrix3x3<T> baseMatrix;
    /// Where the origin of the shape goes, in the units of the scene.
    Vector2<T> position;
    /// About the origin of the shape.
    T rotation;
    Vector2<T> scale; ///< 1 on both axes at first
    /// 0 on both axes at first
    Vector2<T> skew;

    /// Changes nothing: the identity at (0, 0) with the scale 1.
    Transform2D() { init_This(); }

    void init_This() {
        Record<Transform2D<T>>::init_This();
        scale = Vector2<T>(1, 1);
    }

    static constexpr const char* c_typeName = "Transform2D";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("baseMatrix", &Transform2D::baseMatrix),
                          zyr_field("position", &Transform2D::position), zyr_field("rotation", &Transform2D::rotation),
                          zyr_field("scale", &Transform2D::scale), zyr_field("skew", &Transform2D::skew));
    }
};

/// A placement in space. Held and exchanged; consumers multiply it out.
template <typename T> class Transform3D : public Record<Transform3D<T>> {
public:
    /// What the parts below are applied on top of; the identity at first.
    Matrix4x4<T> baseMatrix;
    /// Where the origin of the shape goes, in the units of the scene.
    Vector3<T> position;
    /// About the three axes, as Matrix4x4::rotateEuler takes them.
    Vector3<T> rotation;
    Vector3<T> scale; ///< 1 on all axes at first
    /// 0 on all axes at first
    Vector3<T> skew;

    /// Changes nothing: the identity at (0, 0, 0) with the scale 1.
    Transform3D() { init_This(); }

    void init_This() {
        Record<Transform3D<T>>::init_This();
        scale = Vector3<T>(1, 1, 1);
    }

    static constexpr const char* c_typeName = "Transform3D";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("baseMatrix", &Transform3D::baseMatrix),
                          zyr_field("position", &Transform3D::position), zyr_field("rotation", &Transform3D::rotation),
                          zyr_field("scale", &Transform3D::scale), zyr_field("skew", &Transform3D::skew));
    }
};

/// A placement along the way of a swept shape.
///
/// It has two rotations because the two are interpolated differently: `eulerRotation` angle by angle, so that it may
/// make several turns, and `slerpRotation` on the shortest arc. A single placement applies both in the same way.
///
///     ShapeTransform3D<float> from;
///     ShapeTransform3D<float> to;
///     to.eulerRotation = {0, 720, 0}; // two turns about y on the way
///     Matrix4x4<float> middle = from.interpolate(to, 0.5f);
template <typename T> class ShapeTransform3D : public Record<ShapeTransform3D<T>> {
public:
    /// Moves the shape at the end, in the coordinates of the scene.
    Vector3<T> position;
    Vector3<T> offset; ///< moves the shape before anything else
    /// About x, y and z; acts on the shape before `slerpRotation` does.
    Vector3<T> eulerRotation;
    /// About x, y and z, too; two placements are blended on the shortest arc between theirs.
    Vector3<T> slerpRotation;
    Vector3<T> scale;     ///< before the rotations; 1 on all axes at first
    Vector3<T> postScale; ///< behind the rotations; 1 on all axes at first
    Vector3<T> skew;      ///< stored, takes no part in the matrices
    Vector3<T> postSkew;  ///< stored, takes no part in the matrices

    /// Changes nothing: both scales are 1, all else is 0.
    ShapeTransform3D() { init_This(); }

    /// What a point goes through, the last first: position, postScale, slerpRotation, eulerRotation, scale, offset. Two
    /// placements that differ in their skews alone have the same matrix.
    Matrix4x4<T> getTransformMatrix() const;
    /// The matrix at p_t on the way from this placement (0) to the other (1). All parts go evenly but `slerpRotation`,
    /// which goes through quaternions; so the ends equal getTransformMatrix only up to rounding. p_t outside of 0 to 1
    /// goes on beyond the ends.
    Matrix4x4<T> interpolate(const ShapeTransform3D& p_other, T p_t) const;

    void init_This() {
        Record<ShapeTransform3D<T>>::init_This();
        scale = Vector3<T>(1, 1, 1);
        postScale = Vector3<T>(1, 1, 1);
    }

    static constexpr const char* c_typeName = "ShapeTransform3D";
    static constexpr auto fields() {
        return zyr_fields(
            zyr_field("position", &ShapeTransform3D::position), zyr_field("offset", &ShapeTransform3D::offset),
            zyr_field("eulerRotation", &ShapeTransform3D::eulerRotation),
            zyr_field("slerpRotation", &ShapeTransform3D::slerpRotation), zyr_field("scale", &ShapeTransform3D::scale),
            zyr_field("postScale", &ShapeTransform3D::postScale), zyr_field("skew", &ShapeTransform3D::skew),
            zyr_field("postSkew", &ShapeTransform3D::postSkew));
    }
};

/// Where somebody looks, and which way is up. A new one looks along negative z with y up. The two are directions and
/// need not have length 1.
template <typename T> class Orientation3D : public Record<Orientation3D<T>> {
public:
    /// The direction of the look.
    Vector3<T> at;
    /// The direction that stands upright in the picture; must not lie on the line of `at` for who makes a view of both.
    Vector3<T> up;

    Orientation3D() { init_This(); }

    void init_This() {
        at = Vector3<T>(0, 0, -1);
        up = Vector3<T>(0, 1, 0);
    }

    static constexpr const char* c_typeName = "Orientation3D";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("at", &Orientation3D::at), zyr_field("up", &Orientation3D::up));
    }
};

#pragma pack(pop)

} // namespace zyr
