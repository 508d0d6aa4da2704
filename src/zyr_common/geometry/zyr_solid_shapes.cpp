#include "zyr_common/geometry/zyr_solid_shapes.h"

#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

/// The box around a body that reaches equally far to both sides of its axes.
template <typename T> static bool_t setCentredBox(Box<T>& p_box, T p_halfWidth, T p_halfHeight, T p_halfDepth) {
    p_box = Box<T>(-p_halfWidth, -p_halfHeight, -p_halfDepth, 2 * p_halfWidth, 2 * p_halfHeight, 2 * p_halfDepth);
    return 1;
}

/// The same around an upright body of revolution, whose height is kept as it is.
template <typename T> static bool_t setUprightBox(Box<T>& p_box, T p_radius, T p_height) {
    p_box = Box<T>(-p_radius, -p_height / 2, -p_radius, 2 * p_radius, p_height, 2 * p_radius);
    return 1;
}

template <typename T> bool_t Cuboid<T>::extractBoundingBox(Box<T>& p_box) const {
    p_box = Box<T>(-width / 2, -height / 2, -depth / 2, width, height, depth);
    return 1;
}

template <typename T> bool_t Sphere<T>::extractBoundingBox(Box<T>& p_box) const {
    return setCentredBox<T>(p_box, radius, radius, radius);
}

template <typename T> bool_t Torus<T>::extractBoundingBox(Box<T>& p_box) const {
    return setCentredBox<T>(p_box, ringRadius + tubeRadius, ringRadius, ringRadius + tubeRadius);
}

template <typename T> bool_t Capsule<T>::extractBoundingBox(Box<T>& p_box) const {
    p_box = Box<T>(-radius, -(height / 2 + radius), -radius, 2 * radius, height + 2 * radius, 2 * radius);
    return 1;
}

template <typename T> bool_t Cylinder<T>::extractBoundingBox(Box<T>& p_box) const {
    return setUprightBox<T>(p_box, radius, height);
}

template <typename T> bool_t Cone<T>::extractBoundingBox(Box<T>& p_box) const {
    return setUprightBox<T>(p_box, upperRadius > lowerRadius ? upperRadius : lowerRadius, height);
}

template <typename T> bool_t Tube<T>::extractBoundingBox(Box<T>& p_box) const {
    return setUprightBox<T>(p_box, outerRadius, height);
}

#define ZYR_INSTANTIATE_SOLID(solid)                                                                                   \
    template class solid<float>;                                                                                       \
    template class solid<double>;                                                                                      \
    template class RecordWalker<solid<float>>;                                                                         \
    template class RecordWalker<solid<double>>;

ZYR_INSTANTIATE_SOLID(Shape3D)
ZYR_INSTANTIATE_SOLID(Cuboid)
ZYR_INSTANTIATE_SOLID(RoundedCuboid)
ZYR_INSTANTIATE_SOLID(Sphere)
ZYR_INSTANTIATE_SOLID(Torus)
ZYR_INSTANTIATE_SOLID(Capsule)
ZYR_INSTANTIATE_SOLID(Cylinder)
ZYR_INSTANTIATE_SOLID(Cone)
ZYR_INSTANTIATE_SOLID(Tube)

} // namespace zyr
