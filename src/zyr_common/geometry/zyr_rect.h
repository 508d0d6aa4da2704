/// Rectangles of the plane and their sizes.
///
/// x grows to the right and y downward, so (x, y) is the upper left corner. The far edges belong to a rectangle as the
/// near ones do: two that touch intersect. Sizes are not checked; one below 0 comes from an overlap that isn't there
/// and makes most answers meaningless.
///
///     Rect<int32_t> view(0, 0, 640, 480);
///     Rect<int32_t> window(600, 400, 100, 100);
///     view.getIntersectionArea(window); // 40 * 80
///     window.intersect(view);           // (600, 400, 40, 80)
#pragma once

#include "zyr_common/geometry/zyr_matrix3x3.h"
#include "zyr_common/geometry/zyr_vector.h"
#include "zyr_common/serialization/zyr_record.h"

namespace zyr {

#pragma pack(push, 1)

/// Width and height. A new one is empty.
template <typename T> class RectSize : public Record<RectSize<T>> {
public:
    T width;
    T height;

    RectSize() { this->init_This(); }
    RectSize(T p_width, T p_height) : width(p_width), height(p_height) {}

    static constexpr const char* c_typeName = "RectSize";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("width", &RectSize::width), zyr_field("height", &RectSize::height));
    }
};

/// A rectangle by its left and top edge and its size. Edges belong to it.
template <typename T> class Rect : public Record<Rect<T>> {
public:
    T x;
    T y;
    T width;
    T height;

    Rect() { this->init_This(); }
    Rect(T p_x, T p_y, T p_width, T p_height) : x(p_x), y(p_y), width(p_width), height(p_height) {}

    /// x loses p_amount and y gains twice of it; so do width and height. Callers rely on this as it stands.
    void expand(T p_amount);
    /// Rectangles that only touch intersect.
    bool_t checkIntersection(const Rect& p_other) const;
    /// The area of the overlap; 0 without one.
    T getIntersectionArea(const Rect& p_other) const;
    /// Whether the point lies inside or on an edge.
    bool_t pointInRect(const Vector2<T>& p_point) const;
    /// Shrinks this rectangle to the overlap. Without one, width or height becomes negative.
    void intersect(const Rect& p_other);
    /// Grows this rectangle to hold the other one.
    void boundingRect(const Rect& p_other);
    /// The bounding rectangle of the four corners after the transform, each divided by its third coordinate.
    void transformIntoBoundingRect(const Matrix3x3<T>& p_matrix,
                                   Rect& p_out) const requires std::is_floating_point_v<T>;

    static constexpr const char* c_typeName = "Rect";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("x", &Rect::x), zyr_field("y", &Rect::y), zyr_field("width", &Rect::width),
                          zyr_field("height", &Rect::height));
    }
};

#pragma pack(pop)

} // namespace zyr
