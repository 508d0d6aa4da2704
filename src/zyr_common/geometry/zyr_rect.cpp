#include "zyr_common/geometry/zyr_rect.h"

#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

namespace {

template <typename T> T lesser(T p_a, T p_b) {
    return p_b < p_a ? p_b : p_a;
}

template <typename T> T greater(T p_a, T p_b) {
    return p_b > p_a ? p_b : p_a;
}

} // namespace

template <typename T> void Rect<T>::expand(T p_amount) {
    x -= p_amount;
    y += p_amount * 2;
    width -= p_amount;
    height += p_amount * 2;
}

template <typename T> bool_t Rect<T>::checkIntersection(const Rect& p_other) const {
    return !(x > p_other.x + p_other.width || p_other.x > x + width || y > p_other.y + p_other.height ||
             p_other.y > y + height);
}

template <typename T> T Rect<T>::getIntersectionArea(const Rect& p_other) const {
    if (!checkIntersection(p_other)) {
        return 0;
    }
    T overlapX = lesser<T>(x + width, p_other.x + p_other.width) - greater<T>(x, p_other.x);
    T overlapY = lesser<T>(y + height, p_other.y + p_other.height) - greater<T>(y, p_other.y);
    return overlapX * overlapY;
}

template <typename T> bool_t Rect<T>::pointInRect(const Vector2<T>& p_point) const {
    return p_point.x >= x && p_point.x <= x + width && p_point.y >= y && p_point.y <= y + height;
}

template <typename T> void Rect<T>::intersect(const Rect& p_other) {
    T right = p_other.x + p_other.width;
    T bottom = p_other.y + p_other.height;
    if (right < x + width) {
        width = right - x;
    }
    if (bottom < y + height) {
        height = bottom - y;
    }
    if (p_other.x > x) {
        width -= p_other.x - x;
        x = p_other.x;
    }
    if (p_other.y > y) {
        height -= p_other.y - y;
        y = p_other.y;
    }
}

template <typename T> void Rect<T>::boundingRect(const Rect& p_other) {
    T right = p_other.x + p_other.width;
    T bottom = p_other.y + p_other.height;
    if (right > x + width) {
        width = right - x;
    }
    if (bottom > y + height) {
        height = bottom - y;
    }
    if (p_other.x < x) {
        width += x - p_other.x;
        x = p_other.x;
    }
    if (p_other.y < y) {
        height += y - p_other.y;
        y = p_other.y;
    }
}

template <typename T>
void Rect<T>::transformIntoBoundingRect(const Matrix3x3<T>& p_matrix,
                                        Rect& p_out) const requires std::is_floating_point_v<T> {
    // Clang 14 instantiates this for integers in spite of the constraint.
    if constexpr (std::is_floating_point_v<T>) {
        const Vector3<T> corners[4] = {
            p_matrix * Vector3<T>(x, y, 1),
            p_matrix * Vector3<T>(x + width, y, 1),
            p_matrix * Vector3<T>(x, y + height, 1),
            p_matrix * Vector3<T>(x + width, y + height, 1),
        };
        T left = corners[0].x / corners[0].z;
        T top = corners[0].y / corners[0].z;
        T right = left;
        T bottom = top;
        for (int i = 1; i < 4; ++i) {
            T cornerX = corners[i].x / corners[i].z;
            T cornerY = corners[i].y / corners[i].z;
            left = lesser(left, cornerX);
            top = lesser(top, cornerY);
            right = greater(right, cornerX);
            bottom = greater(bottom, cornerY);
        }
        p_out = {left, top, right - left, bottom - top};
    }
}

#define ZYR_INSTANTIATE_RECTS(type)                                                                                    \
    template class Rect<type>;                                                                                         \
    template class RecordWalker<RectSize<type>>;                                                                       \
    template class RecordWalker<Rect<type>>;

ZYR_INSTANTIATE_RECTS(int32_t)
ZYR_INSTANTIATE_RECTS(int64_t)
ZYR_INSTANTIATE_RECTS(float)
ZYR_INSTANTIATE_RECTS(double)

} // namespace zyr
