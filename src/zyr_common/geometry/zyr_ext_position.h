/// One coordinate with an anchor that tells what it counts from.
///
/// Packed values without a virtual table, for float and double. A new one is 0 from the near edge. Points with all
/// their coordinates are ExtVector2 and ExtVector3, which know one anchor more.
#pragma once

#include "zyr_common/geometry/zyr_anchors.h"
#include "zyr_common/geometry/zyr_rect.h"
#include "zyr_common/serialization/zyr_record.h"

namespace zyr {

#pragma pack(push, 1)

/// A horizontal place: pixels or percent from the edge that the anchor names.
///
///     float x;
///     ExtPositionX<float>(50, ZYR_POSITION_X_PARENT_WIDTH_PERCENT).solvePosition(x, Rect<float>(0, 0, 640, 480)); //
///     320
template <typename T> class ExtPositionX : public Record<ExtPositionX<T>> {
public:
    /// in pixels, or in percent of the parent's width, as the anchor tells
    T x;
    /// `LEFT` at first
    PositionXAnchorEnum xAnchor;

    /// At the left edge.
    ExtPositionX() { this->init_This(); }
    ExtPositionX(T p_x, PositionXAnchorEnum p_xAnchor) : x(p_x), xAnchor(p_xAnchor) {}

    /// The coordinate inside p_parent, for the anchors 0 to 4 (left or top edge, right or bottom, centre, percent,
    /// absolute). Any other anchor gives false and leaves p_out as it is.
    bool_t solvePosition(T& p_out, const Rect<T>& p_parent) const;

    static constexpr const char* c_typeName = "ExtPositionX";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("x", &ExtPositionX::x), zyr_field("xAnchor", &ExtPositionX::xAnchor));
    }
};

/// A vertical place: pixels or percent from the edge that the anchor names.
template <typename T> class ExtPositionY : public Record<ExtPositionY<T>> {
public:
    /// in pixels, or in percent of the parent's height, as the anchor tells
    T y;
    /// `TOP` at first
    PositionYAnchorEnum yAnchor;

    /// At the top edge.
    ExtPositionY() { this->init_This(); }
    ExtPositionY(T p_y, PositionYAnchorEnum p_yAnchor) : y(p_y), yAnchor(p_yAnchor) {}

    /// The coordinate inside p_parent, for the anchors 0 to 4 (left or top edge, right or bottom, centre, percent,
    /// absolute). Any other anchor gives false and leaves p_out as it is.
    bool_t solvePosition(T& p_out, const Rect<T>& p_parent) const;

    static constexpr const char* c_typeName = "ExtPositionY";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("y", &ExtPositionY::y), zyr_field("yAnchor", &ExtPositionY::yAnchor));
    }
};

/// A place in depth. Has no solver: it is held and streamed for others.
template <typename T> class ExtPositionZ : public Record<ExtPositionZ<T>> {
public:
    /// in the units of the scene, or in percent of the parent's depth, as the anchor tells
    T z;
    /// `NEAR` at first
    PositionZAnchorEnum zAnchor;

    /// At the near edge.
    ExtPositionZ() { this->init_This(); }
    ExtPositionZ(T p_z, PositionZAnchorEnum p_zAnchor) : z(p_z), zAnchor(p_zAnchor) {}

    static constexpr const char* c_typeName = "ExtPositionZ";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("z", &ExtPositionZ::z), zyr_field("zAnchor", &ExtPositionZ::zAnchor));
    }
};

#pragma pack(pop)

} // namespace zyr
