/// Sizes and boxes of space.
///
/// Plain packed values without a virtual table, for float and double. z grows away from the viewer. Sizes are not
/// checked: a negative one is kept.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/geometry/zyr_vector.h"
#include "zyr_common/serialization/zyr_record.h"

namespace zyr {

#pragma pack(push, 1)

/// Width, height and depth. A new one is empty.
template <typename T> class BoxSize : public Record<BoxSize<T>> {
public:
    /// along x, y and z, in the units of the layout
    T width;
    T height;
    T depth;

    /// All three are 0.
    BoxSize() { this->init_This(); }
    BoxSize(T p_width, T p_height, T p_depth) : width(p_width), height(p_height), depth(p_depth) {}

    static constexpr const char* c_typeName = "BoxSize";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("width", &BoxSize::width), zyr_field("height", &BoxSize::height),
                          zyr_field("depth", &BoxSize::depth));
    }
};

/// A box by its near corner and its size along the axes.
///
///     Array<Vector3<float>> corners;
///     Box<float>(0, 0, 0, 4, 3, 2).extractPoints3D(corners); // eight points
template <typename T> class Box : public Record<Box<T>> {
public:
    /// The near corner: left, top, front.
    T x;
    T y;
    T z;
    /// The size, which the other corner is away.
    T width;
    T height;
    T depth;

    /// An empty box at (0, 0, 0).
    Box() { this->init_This(); }
    /// The near corner and then the size. Nothing is put in order: a negative size stays negative.
    Box(T p_x, T p_y, T p_z, T p_width, T p_height, T p_depth)
        : x(p_x), y(p_y), z(p_z), width(p_width), height(p_height), depth(p_depth) {}

    /// Replaces the contents of p_points by the eight corners: around the face at z from (x, y) over (x + width, y),
    /// then the same four at z + depth.
    void extractPoints3D(Array<Vector3<T>>& p_points) const;
    /// The same with w = 1.
    void extractPoints4D(Array<Vector4<T>>& p_points) const;

    static constexpr const char* c_typeName = "Box";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("x", &Box::x), zyr_field("y", &Box::y), zyr_field("z", &Box::z),
                          zyr_field("width", &Box::width), zyr_field("height", &Box::height),
                          zyr_field("depth", &Box::depth));
    }
};

#pragma pack(pop)

} // namespace zyr
