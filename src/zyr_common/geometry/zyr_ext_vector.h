/// Points with an anchor on each axis.
///
/// Packed values without a virtual table: ExtVector2 for int32_t, int64_t, float and double, ExtVector3 for float and
/// double. A new one is (0, 0) from the parent's first corner.
#pragma once

#include "zyr_common/geometry/zyr_anchors.h"
#include "zyr_common/geometry/zyr_box.h"
#include "zyr_common/geometry/zyr_rect.h"

namespace zyr {

#pragma pack(push, 1)

/// A point of the plane, and what its two numbers count from.
///
///     ExtVector2<float> corner({-10, 10}, ZYR_POSITION_X_RIGHT, ZYR_POSITION_Y_TOP);
///     Vector2<float> place;
///     corner.solveVector(place, Vector2<float>(), Rect<float>(0, 0, 640, 480)); // (630, 10)
template <typename T> class ExtVector2 : public Record<ExtVector2<T>, Vector2<T>> {
public:
    /// what x and y count from
    PositionXAnchorEnum xAnchor;
    PositionYAnchorEnum yAnchor;

    /// (0, 0) from the left and the top edge.
    ExtVector2() { this->init_This(); }
    /// The anchors are taken as they are, also those that no point can be solved with.
    ExtVector2(const Vector2<T>& p_value, PositionXAnchorEnum p_xAnchor, PositionYAnchorEnum p_yAnchor)
        : Record<ExtVector2<T>, Vector2<T>>(p_value), xAnchor(p_xAnchor), yAnchor(p_yAnchor) {}

    /// The point inside p_parent, axis by axis, for the anchors 0 to 5; 5 counts from p_previous. Any other anchor
    /// gives false, and p_out keeps its value on that axis and the next.
    bool_t solveVector(Vector2<T>& p_out, const Vector2<T>& p_previous, const Rect<T>& p_parent) const;

    static constexpr const char* c_typeName = "ExtVector2";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("xAnchor", &ExtVector2::xAnchor), zyr_field("yAnchor", &ExtVector2::yAnchor));
    }
};

/// A point of space, and what its three numbers count from.
template <typename T> class ExtVector3 : public Record<ExtVector3<T>, Vector3<T>> {
public:
    /// what x, y and z count from
    PositionXAnchorEnum xAnchor;
    PositionYAnchorEnum yAnchor;
    PositionZAnchorEnum zAnchor;

    /// (0, 0, 0) from the left, the top and the near edge.
    ExtVector3() { this->init_This(); }
    ExtVector3(const Vector3<T>& p_value, PositionXAnchorEnum p_xAnchor, PositionYAnchorEnum p_yAnchor,
               PositionZAnchorEnum p_zAnchor)
        : Record<ExtVector3<T>, Vector3<T>>(p_value), xAnchor(p_xAnchor), yAnchor(p_yAnchor), zAnchor(p_zAnchor) {}

    /// See ExtVector2.
    bool_t solveVector(Vector3<T>& p_out, const Vector3<T>& p_previous, const Box<T>& p_parent) const;

    static constexpr const char* c_typeName = "ExtVector3";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("xAnchor", &ExtVector3::xAnchor), zyr_field("yAnchor", &ExtVector3::yAnchor),
                          zyr_field("zAnchor", &ExtVector3::zAnchor));
    }
};

#pragma pack(pop)

} // namespace zyr
