/// Solid shapes of a few numbers: boxes and bodies of revolution, with caps, fillets and slices.
///
/// Every body stands centred on its own axes: it reaches from minus to plus half its size, a body of revolution turns
/// about its y axis, and `height` runs along y. `origin` says where its middle is placed, and takes part in nothing
/// that is computed here.
///
/// Lengths are in the units of the scene and are not checked: negative and zero sizes are stored and streamed as they
/// are. The constructors take the origin and then the fields in their order; the default constructor and `clear` give
/// the defaults noted with the fields (0 where none is noted). How an angle of a slice or a fillet is turned into a
/// mesh is up to who draws it.
///
///     Ref<Tube<float>> tube = Ref<Tube<float>>::adopt(new Tube<float>()); // 30 and 50 wide, 100 high
///     Box<float> box;
///     tube->extractBoundingBox(box); // (-50, -50, -50, 100, 100, 100)
#pragma once

#include "zyr_common/geometry/zyr_shape3d.h"

namespace zyr {

// Groups of fields that several solids have, in this order.

/// Only the part of the turn from one angle to the other is there: `slice` (off), `sliceFrom` (0) and `sliceTo` (180).
/// The two angles are kept while the slice is off.
template <class Solid> constexpr auto zyr_sliceFields() {
    return zyr_fields(zyr_field("slice", &Solid::slice), zyr_field("sliceFrom", &Solid::sliceFrom),
                      zyr_field("sliceTo", &Solid::sliceTo).withDefault(180));
}

/// The two faces of a slice are closed: `sliceStartCap` at `sliceFrom` and `sliceEndCap` at `sliceTo`, both on.
template <class Solid> constexpr auto zyr_plainSliceEndFields() {
    return zyr_fields(zyr_field("sliceStartCap", &Solid::sliceStartCap).withDefault(1),
                      zyr_field("sliceEndCap", &Solid::sliceEndCap).withDefault(1));
}

/// The two faces of a slice are closed, with or without a fillet: for each end whether it is closed (on), whether its
/// edge has a fillet (off), and the fillet's radius (10), which is kept while the fillet is off.
template <class Solid> constexpr auto zyr_filletedSliceEndFields() {
    return zyr_fields(zyr_field("sliceStartCap", &Solid::sliceStartCap).withDefault(1),
                      zyr_field("sliceStartFillet", &Solid::sliceStartFillet),
                      zyr_field("sliceStartFilletRadius", &Solid::sliceStartFilletRadius).withDefault(10),
                      zyr_field("sliceEndCap", &Solid::sliceEndCap).withDefault(1),
                      zyr_field("sliceEndFillet", &Solid::sliceEndFillet),
                      zyr_field("sliceEndFilletRadius", &Solid::sliceEndFilletRadius).withDefault(10));
}

/// The upper and lower face are closed, with or without a fillet: for each face whether it is closed (on), whether its
/// edge has a fillet (off), and the fillet's radius (10), which is kept while the fillet is off.
template <class Solid> constexpr auto zyr_capFields() {
    return zyr_fields(
        zyr_field("upperCap", &Solid::upperCap).withDefault(1), zyr_field("upperFillet", &Solid::upperFillet),
        zyr_field("upperFilletRadius", &Solid::upperFilletRadius).withDefault(10),
        zyr_field("lowerCap", &Solid::lowerCap).withDefault(1), zyr_field("lowerFillet", &Solid::lowerFillet),
        zyr_field("lowerFilletRadius", &Solid::lowerFilletRadius).withDefault(10));
}

#pragma pack(push, 1)

/// A box. A new one is empty: all three sizes are 0.
template <typename T> class Cuboid : public Record<Cuboid<T>, Shape3D<T>> {
public:
    /// along x
    T width;
    /// along y
    T height;
    /// along z
    T depth;

    /// Without extent, at the origin.
    Cuboid() { this->init_This(); }
    Cuboid(const ExtVector3<T>& p_origin, T p_width, T p_height, T p_depth)
        : Record<Cuboid<T>, Shape3D<T>>(Shape3D<T>(p_origin)), width(p_width), height(p_height), depth(p_depth) {}

    /// A copy with a count of its own, which the caller owns; so with all solids below.
    Cuboid* clone() const override { return new Cuboid(*this); }
    /// The number by which holders of the base tell the class; see Shape3D.
    uint32_t getID() const override { return 2; }

    /// The box of the whole body around its own axes; the origin takes no part. Gives 1.
    virtual bool_t extractBoundingBox(Box<T>& p_box) const;

    static constexpr const char* c_typeName = "Cuboid";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("width", &Cuboid::width), zyr_field("height", &Cuboid::height),
                          zyr_field("depth", &Cuboid::depth));
    }
};
/// A box whose edges may be rounded. Its number is 3, though it is a Cuboid too, and its bounding box is the Cuboid's:
/// rounding takes off and adds nothing.
template <typename T> class RoundedCuboid : public Record<RoundedCuboid<T>, Cuboid<T>> {
public:
    bool_t fillet; ///< The edges are rounded.
    /// How far a rounded edge reaches into its faces; kept while the edges are sharp.
    T filletRadius;

    RoundedCuboid() { this->init_This(); }
    RoundedCuboid(const ExtVector3<T>& p_origin, T p_width, T p_height, T p_depth, bool_t p_fillet, T p_filletRadius)
        : Record<RoundedCuboid<T>, Cuboid<T>>(Cuboid<T>(p_origin, p_width, p_height, p_depth)),
          fillet(p_fillet),
          filletRadius(p_filletRadius) {}

    RoundedCuboid* clone() const override { return new RoundedCuboid(*this); }
    uint32_t getID() const override { return 3; }

    static constexpr const char* c_typeName = "RoundedCuboid";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("fillet", &RoundedCuboid::fillet),
                          zyr_field("filletRadius", &RoundedCuboid::filletRadius));
    }
};
/// A sphere, whole or a slice of it.
///
///     Sphere<float> half(ExtVector3<float>(), 100, 1, 0, 180, 1, 1); // a slice, closed at both ends
template <typename T> class Sphere : public Record<Sphere<T>, Shape3D<T>> {
public:
    /// 100 at first
    T radius;
    /// Only the turn from `sliceFrom` to `sliceTo` (0 and 180 at first) is there.
    bool_t slice;
    /// Nothing in this library reads the two angles: their unit is that of who draws.
    T sliceFrom;
    T sliceTo;
    /// The flat face at `sliceFrom` is closed; without it one looks into the body. On at first, as at the other end.
    bool_t sliceStartCap;
    /// The same at `sliceTo`.
    bool_t sliceEndCap;

    Sphere() { this->init_This(); }
    /// The origin and a value for each field, in their order.
    template <typename... Values>
    Sphere(const ExtVector3<T>& p_origin, const Values&... p_values) requires(sizeof...(Values) > 0)
        : Record<Sphere<T>, Shape3D<T>>(Shape3D<T>(p_origin)) {
        zyr_setFields(*this, p_values...);
    }

    Sphere* clone() const override { return new Sphere(*this); }
    uint32_t getID() const override { return 4; }

    /// The box of the whole body around its own axes; the origin takes no part. Gives 1.
    virtual bool_t extractBoundingBox(Box<T>& p_box) const;

    static constexpr const char* c_typeName = "Sphere";
    static constexpr auto fields() {
        return std::tuple_cat(zyr_fields(zyr_field("radius", &Sphere::radius).withDefault(100)),
                              zyr_sliceFields<Sphere>(), zyr_plainSliceEndFields<Sphere>());
    }
};
/// A ring that lies in the plane of x and z, around the y axis.
template <typename T> class Torus : public Record<Torus<T>, Shape3D<T>> {
public:
    /// From the middle of the ring to the middle of the tube; 200 at first.
    T ringRadius;
    /// From the middle of the tube to its surface; 50 at first.
    /// A tube wider than the ring overlaps itself in the middle, which is not checked.
    T tubeRadius;
    /// Only the turn from `sliceFrom` to `sliceTo` (0 and 180 at first) is there.
    bool_t slice;
    T sliceFrom;
    T sliceTo;
    /// The cut through the tube at `sliceFrom` is closed, with a fillet at its edge if told so; likewise at the other
    /// end.
    bool_t sliceStartCap;
    /// The edge of that cut is rounded off; off at first.
    bool_t sliceStartFillet;
    /// 10 at first; kept while the fillet is off
    T sliceStartFilletRadius;
    bool_t sliceEndCap;
    bool_t sliceEndFillet;
    T sliceEndFilletRadius;

    Torus() { this->init_This(); }
    /// The origin and a value for each field, in their order.
    template <typename... Values>
    Torus(const ExtVector3<T>& p_origin, const Values&... p_values) requires(sizeof...(Values) > 0)
        : Record<Torus<T>, Shape3D<T>>(Shape3D<T>(p_origin)) {
        zyr_setFields(*this, p_values...);
    }

    Torus* clone() const override { return new Torus(*this); }
    uint32_t getID() const override { return 5; }

    /// See Cuboid. The vertical extent comes from the ring's radius and not from the tube's, which is relied upon.
    virtual bool_t extractBoundingBox(Box<T>& p_box) const;

    static constexpr const char* c_typeName = "Torus";
    static constexpr auto fields() {
        return std::tuple_cat(zyr_fields(zyr_field("ringRadius", &Torus::ringRadius).withDefault(200),
                                         zyr_field("tubeRadius", &Torus::tubeRadius).withDefault(50)),
                              zyr_sliceFields<Torus>(), zyr_filletedSliceEndFields<Torus>());
    }
};
/// A cylinder between two half spheres.
template <typename T> class Capsule : public Record<Capsule<T>, Shape3D<T>> {
public:
    /// Of the cylinder and of both half spheres; 50 at first.
    T radius;
    /// Of the cylinder alone, 100 at first: the whole is higher by twice the radius.
    T height;
    /// For each end whether it is closed (on) and whether it has a fillet (off), for which there is no radius here.
    bool_t upperCap;
    bool_t upperFillet;
    /// The lower end, by itself.
    bool_t lowerCap;
    bool_t lowerFillet;
    /// Only the turn from `sliceFrom` to `sliceTo` (0 and 180 at first) is there, its faces closed by the caps below.
    bool_t slice;
    T sliceFrom;
    T sliceTo;
    bool_t sliceStartCap;
    bool_t sliceEndCap;

    Capsule() { this->init_This(); }
    /// The origin and a value for each field, in their order.
    template <typename... Values>
    Capsule(const ExtVector3<T>& p_origin, const Values&... p_values) requires(sizeof...(Values) > 0)
        : Record<Capsule<T>, Shape3D<T>>(Shape3D<T>(p_origin)) {
        zyr_setFields(*this, p_values...);
    }

    Capsule* clone() const override { return new Capsule(*this); }
    uint32_t getID() const override { return 6; }

    /// See Cuboid. The half spheres count in, whether they are closed or not.
    virtual bool_t extractBoundingBox(Box<T>& p_box) const;

    static constexpr const char* c_typeName = "Capsule";
    static constexpr auto fields() {
        return std::tuple_cat(zyr_fields(zyr_field("radius", &Capsule::radius).withDefault(50),
                                         zyr_field("height", &Capsule::height).withDefault(100),
                                         zyr_field("upperCap", &Capsule::upperCap).withDefault(1),
                                         zyr_field("upperFillet", &Capsule::upperFillet),
                                         zyr_field("lowerCap", &Capsule::lowerCap).withDefault(1),
                                         zyr_field("lowerFillet", &Capsule::lowerFillet)),
                              zyr_sliceFields<Capsule>(), zyr_plainSliceEndFields<Capsule>());
    }
};
/// A cylinder about the y axis. With both caps off it is a pipe without thickness.
template <typename T> class Cylinder : public Record<Cylinder<T>, Shape3D<T>> {
public:
    /// 50 at first
    T radius;
    /// 100 at first
    T height;
    /// Upper and lower face: closed or not, with a fillet of some radius or not.
    bool_t upperCap;
    bool_t upperFillet;
    T upperFilletRadius;
    bool_t lowerCap;
    bool_t lowerFillet;
    T lowerFilletRadius;
    /// Only the turn from `sliceFrom` to `sliceTo` (0 and 180 at first) is there, its faces closed by the caps below.
    bool_t slice;
    T sliceFrom;
    T sliceTo;
    bool_t sliceStartCap;
    bool_t sliceEndCap;

    Cylinder() { this->init_This(); }
    /// The origin and a value for each field, in their order.
    template <typename... Values>
    Cylinder(const ExtVector3<T>& p_origin, const Values&... p_values) requires(sizeof...(Values) > 0)
        : Record<Cylinder<T>, Shape3D<T>>(Shape3D<T>(p_origin)) {
        zyr_setFields(*this, p_values...);
    }

    Cylinder* clone() const override { return new Cylinder(*this); }
    uint32_t getID() const override { return 7; }

    /// See Cuboid.
    virtual bool_t extractBoundingBox(Box<T>& p_box) const;

    static constexpr const char* c_typeName = "Cylinder";
    static constexpr auto fields() {
        return std::tuple_cat(zyr_fields(zyr_field("radius", &Cylinder::radius).withDefault(50),
                                         zyr_field("height", &Cylinder::height).withDefault(100)),
                              zyr_capFields<Cylinder>(), zyr_sliceFields<Cylinder>(),
                              zyr_plainSliceEndFields<Cylinder>());
    }
};
/// A cone, cut off when both radii are above 0. A new one ends in a point at the top, and its upper cap then has no
/// area.
///
///     Cone<float> cup;
///     cup.upperRadius = 60; // wider at the top
///     cup.upperCap = 0;     // and open there
template <typename T> class Cone : public Record<Cone<T>, Shape3D<T>> {
public:
    /// 0 at first
    T upperRadius;
    /// 50 at first
    T lowerRadius;
    /// 100 at first
    T height;
    /// Upper and lower face: closed or not, with a fillet of some radius or not.
    bool_t upperCap;
    bool_t upperFillet;
    T upperFilletRadius;
    bool_t lowerCap;
    bool_t lowerFillet;
    T lowerFilletRadius;
    /// Only the turn from `sliceFrom` to `sliceTo` (0 and 180 at first) is there, its faces closed by the caps below.
    bool_t slice;
    T sliceFrom;
    T sliceTo;
    bool_t sliceStartCap;
    bool_t sliceEndCap;

    Cone() { this->init_This(); }
    /// The origin and a value for each field, in their order.
    template <typename... Values>
    Cone(const ExtVector3<T>& p_origin, const Values&... p_values) requires(sizeof...(Values) > 0)
        : Record<Cone<T>, Shape3D<T>>(Shape3D<T>(p_origin)) {
        zyr_setFields(*this, p_values...);
    }

    Cone* clone() const override { return new Cone(*this); }
    uint32_t getID() const override { return 8; }

    /// See Cuboid. The wider end gives width and depth.
    virtual bool_t extractBoundingBox(Box<T>& p_box) const;

    static constexpr const char* c_typeName = "Cone";
    static constexpr auto fields() {
        return std::tuple_cat(zyr_fields(zyr_field("upperRadius", &Cone::upperRadius),
                                         zyr_field("lowerRadius", &Cone::lowerRadius).withDefault(50),
                                         zyr_field("height", &Cone::height).withDefault(100)),
                              zyr_capFields<Cone>(), zyr_sliceFields<Cone>(), zyr_plainSliceEndFields<Cone>());
    }
};
/// A cylinder with a hole along its axis. The inner radius is not held below the outer one.
///
///     Tube<float> tube;
///     tube.upperFillet = 1; // with the radius 10
template <typename T> class Tube : public Record<Tube<T>, Shape3D<T>> {
public:
    /// 30 at first
    T innerRadius;
    /// 50 at first
    T outerRadius;
    /// 100 at first
    T height;
    /// Upper and lower face, which are rings here: closed or not, with a fillet of some radius or not.
    bool_t upperCap;
    bool_t upperFillet;
    T upperFilletRadius;
    bool_t lowerCap;
    bool_t lowerFillet;
    T lowerFilletRadius;
    /// Only the turn from `sliceFrom` to `sliceTo` (0 and 180 at first) is there.
    bool_t slice;
    T sliceFrom;
    T sliceTo;
    /// The cut through the wall at `sliceFrom` is closed, with a fillet at its edge if told so; likewise at the other
    /// end.
    bool_t sliceStartCap;
    bool_t sliceStartFillet;
    T sliceStartFilletRadius;
    bool_t sliceEndCap;
    bool_t sliceEndFillet;
    T sliceEndFilletRadius;

    Tube() { this->init_This(); }
    /// The origin and a value for each field, in their order.
    template <typename... Values>
    Tube(const ExtVector3<T>& p_origin, const Values&... p_values) requires(sizeof...(Values) > 0)
        : Record<Tube<T>, Shape3D<T>>(Shape3D<T>(p_origin)) {
        zyr_setFields(*this, p_values...);
    }

    Tube* clone() const override { return new Tube(*this); }
    uint32_t getID() const override { return 9; }

    /// See Cuboid. The outer radius gives width and depth.
    virtual bool_t extractBoundingBox(Box<T>& p_box) const;

    static constexpr const char* c_typeName = "Tube";
    static constexpr auto fields() {
        return std::tuple_cat(zyr_fields(zyr_field("innerRadius", &Tube::innerRadius).withDefault(30),
                                         zyr_field("outerRadius", &Tube::outerRadius).withDefault(50),
                                         zyr_field("height", &Tube::height).withDefault(100)),
                              zyr_capFields<Tube>(), zyr_sliceFields<Tube>(), zyr_filletedSliceEndFields<Tube>());
    }
};

#pragma pack(pop)

} // namespace zyr
