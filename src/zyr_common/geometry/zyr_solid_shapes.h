/// Solid shapes of a few numbers: boxes and bodies of revolution, with caps, fillets and slices.
#pragma once

#include "zyr_common/geometry/zyr_shape3d.h"

namespace zyr {

// Groups of fields that several solids have, in this order.

/// Only the part of the turn from one angle to the other is there.
template <class Solid> constexpr auto zyr_sliceFields() {
    return zyr_fields(zyr_field("slice", &Solid::slice), zyr_field("sliceFrom", &Solid::sliceFrom),
                      zyr_field("sliceTo", &Solid::sliceTo).withDefault(180));
}

/// The two faces of a slice are closed.
template <class Solid> constexpr auto zyr_plainSliceEndFields() {
    return zyr_fields(zyr_field("sliceStartCap", &Solid::sliceStartCap).withDefault(1),
                      zyr_field("sliceEndCap", &Solid::sliceEndCap).withDefault(1));
}

/// The two faces of a slice are closed, with or without a fillet.
template <class Solid> constexpr auto zyr_filletedSliceEndFields() {
    return zyr_fields(zyr_field("sliceStartCap", &Solid::sliceStartCap).withDefault(1),
                      zyr_field("sliceStartFillet", &Solid::sliceStartFillet),
                      zyr_field("sliceStartFilletRadius", &Solid::sliceStartFilletRadius).withDefault(10),
                      zyr_field("sliceEndCap", &Solid::sliceEndCap).withDefault(1),
                      zyr_field("sliceEndFillet", &Solid::sliceEndFillet),
                      zyr_field("sliceEndFilletRadius", &Solid::sliceEndFilletRadius).withDefault(10));
}

/// The upper and lower face are closed, with or without a fillet.
template <class Solid> constexpr auto zyr_capFields() {
    return zyr_fields(
        zyr_field("upperCap", &Solid::upperCap).withDefault(1), zyr_field("upperFillet", &Solid::upperFillet),
        zyr_field("upperFilletRadius", &Solid::upperFilletRadius).withDefault(10),
        zyr_field("lowerCap", &Solid::lowerCap).withDefault(1), zyr_field("lowerFillet", &Solid::lowerFillet),
        zyr_field("lowerFilletRadius", &Solid::lowerFilletRadius).withDefault(10));
}

#pragma pack(push, 1)

/// A box.
template <typename T> class Cuboid : public Record<Cuboid<T>, Shape3D<T>> {
public:
    T width;
    T height;
    T depth;

    Cuboid() { this->init_This(); }
    Cuboid(const ExtVector3<T>& p_origin, T p_width, T p_height, T p_depth)
        : Record<Cuboid<T>, Shape3D<T>>(Shape3D<T>(p_origin)), width(p_width), height(p_height), depth(p_depth) {}

    Cuboid* clone() const override { return new Cuboid(*this); }
    uint32_t getID() const override { return 2; }

    /// The box of the whole body around its own axes; the origin takes no part. Gives 1.
    virtual bool_t extractBoundingBox(Box<T>& p_box) const;

    static constexpr const char* c_typeName = "Cuboid";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("width", &Cuboid::width), zyr_field("height", &Cuboid::height),
                          zyr_field("depth", &Cuboid::depth));
    }
};
/// A box whose edges may be rounded.
template <typename T> class RoundedCuboid : public Record<RoundedCuboid<T>, Cuboid<T>> {
public:
    bool_t fillet; ///< The edges are rounded.
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
/// A sphere.
template <typename T> class Sphere : public Record<Sphere<T>, Shape3D<T>> {
public:
    T radius;
    bool_t slice;
    T sliceFrom;
    T sliceTo;
    bool_t sliceStartCap;
    bool_t sliceEndCap;

    Sphere() { this->init_This(); }
    Sphere(const ExtVector3<T>& p_origin, T p_radius, bool_t p_slice, T p_sliceFrom, T p_sliceTo,
           bool_t p_sliceStartCap, bool_t p_sliceEndCap)
        : Record<Sphere<T>, Shape3D<T>>(Shape3D<T>(p_origin)),
          radius(p_radius),
          slice(p_slice),
          sliceFrom(p_sliceFrom),
          sliceTo(p_sliceTo),
          sliceStartCap(p_sliceStartCap),
          sliceEndCap(p_sliceEndCap) {}

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
/// A ring.
template <typename T> class Torus : public Record<Torus<T>, Shape3D<T>> {
public:
    T ringRadius;
    T tubeRadius;
    bool_t slice;
    T sliceFrom;
    T sliceTo;
    bool_t sliceStartCap;
    bool_t sliceStartFillet;
    T sliceStartFilletRadius;
    bool_t sliceEndCap;
    bool_t sliceEndFillet;
    T sliceEndFilletRadius;

    Torus() { this->init_This(); }
    Torus(const ExtVector3<T>& p_origin, T p_ringRadius, T p_tubeRadius, bool_t p_slice, T p_sliceFrom, T p_sliceTo,
          bool_t p_sliceStartCap, bool_t p_sliceStartFillet, T p_sliceStartFilletRadius, bool_t p_sliceEndCap,
          bool_t p_sliceEndFillet, T p_sliceEndFilletRadius)
        : Record<Torus<T>, Shape3D<T>>(Shape3D<T>(p_origin)),
          ringRadius(p_ringRadius),
          tubeRadius(p_tubeRadius),
          slice(p_slice),
          sliceFrom(p_sliceFrom),
          sliceTo(p_sliceTo),
          sliceStartCap(p_sliceStartCap),
          sliceStartFillet(p_sliceStartFillet),
          sliceStartFilletRadius(p_sliceStartFilletRadius),
          sliceEndCap(p_sliceEndCap),
          sliceEndFillet(p_sliceEndFillet),
          sliceEndFilletRadius(p_sliceEndFilletRadius) {}

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
    T radius;
    T height;
    bool_t upperCap;
    bool_t upperFillet;
    bool_t lowerCap;
    bool_t lowerFillet;
    bool_t slice;
    T sliceFrom;
    T sliceTo;
    bool_t sliceStartCap;
    bool_t sliceEndCap;

    Capsule() { this->init_This(); }
    Capsule(const ExtVector3<T>& p_origin, T p_radius, T p_height, bool_t p_upperCap, bool_t p_upperFillet,
            bool_t p_lowerCap, bool_t p_lowerFillet, bool_t p_slice, T p_sliceFrom, T p_sliceTo, bool_t p_sliceStartCap,
            bool_t p_sliceEndCap)
        : Record<Capsule<T>, Shape3D<T>>(Shape3D<T>(p_origin)),
          radius(p_radius),
          height(p_height),
          upperCap(p_upperCap),
          upperFillet(p_upperFillet),
          lowerCap(p_lowerCap),
          lowerFillet(p_lowerFillet),
          slice(p_slice),
          sliceFrom(p_sliceFrom),
          sliceTo(p_sliceTo),
          sliceStartCap(p_sliceStartCap),
          sliceEndCap(p_sliceEndCap) {}

    Capsule* clone() const override { return new Capsule(*this); }
    uint32_t getID() const override { return 6; }

    /// See Cuboid.
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
/// A cylinder.
template <typename T> class Cylinder : public Record<Cylinder<T>, Shape3D<T>> {
public:
    T radius;
    T height;
    bool_t upperCap;
    bool_t upperFillet;
    T upperFilletRadius;
    bool_t lowerCap;
    bool_t lowerFillet;
    T lowerFilletRadius;
    bool_t slice;
    T sliceFrom;
    T sliceTo;
    bool_t sliceStartCap;
    bool_t sliceEndCap;

    Cylinder() { this->init_This(); }
    Cylinder(const ExtVector3<T>& p_origin, T p_radius, T p_height, bool_t p_upperCap, bool_t p_upperFillet,
             T p_upperFilletRadius, bool_t p_lowerCap, bool_t p_lowerFillet, T p_lowerFilletRadius, bool_t p_slice,
             T p_sliceFrom, T p_sliceTo, bool_t p_sliceStartCap, bool_t p_sliceEndCap)
        : Record<Cylinder<T>, Shape3D<T>>(Shape3D<T>(p_origin)),
          radius(p_radius),
          height(p_height),
          upperCap(p_upperCap),
          upperFillet(p_upperFillet),
          upperFilletRadius(p_upperFilletRadius),
          lowerCap(p_lowerCap),
          lowerFillet(p_lowerFillet),
          lowerFilletRadius(p_lowerFilletRadius),
          slice(p_slice),
          sliceFrom(p_sliceFrom),
          sliceTo(p_sliceTo),
          sliceStartCap(p_sliceStartCap),
          sliceEndCap(p_sliceEndCap) {}

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
/// A cone, cut off when both radii are above 0. A new one ends in a point at the top.
template <typename T> class Cone : public Record<Cone<T>, Shape3D<T>> {
public:
    T upperRadius;
    T lowerRadius;
    T height;
    bool_t upperCap;
    bool_t upperFillet;
    T upperFilletRadius;
    bool_t lowerCap;
    bool_t lowerFillet;
    T lowerFilletRadius;
    bool_t slice;
    T sliceFrom;
    T sliceTo;
    bool_t sliceStartCap;
    bool_t sliceEndCap;

    Cone() { this->init_This(); }
    Cone(const ExtVector3<T>& p_origin, T p_upperRadius, T p_lowerRadius, T p_height, bool_t p_upperCap,
         bool_t p_upperFillet, T p_upperFilletRadius, bool_t p_lowerCap, bool_t p_lowerFillet, T p_lowerFilletRadius,
         bool_t p_slice, T p_sliceFrom, T p_sliceTo, bool_t p_sliceStartCap, bool_t p_sliceEndCap)
        : Record<Cone<T>, Shape3D<T>>(Shape3D<T>(p_origin)),
          upperRadius(p_upperRadius),
          lowerRadius(p_lowerRadius),
          height(p_height),
          upperCap(p_upperCap),
          upperFillet(p_upperFillet),
          upperFilletRadius(p_upperFilletRadius),
          lowerCap(p_lowerCap),
          lowerFillet(p_lowerFillet),
          lowerFilletRadius(p_lowerFilletRadius),
          slice(p_slice),
          sliceFrom(p_sliceFrom),
          sliceTo(p_sliceTo),
          sliceStartCap(p_sliceStartCap),
          sliceEndCap(p_sliceEndCap) {}

    Cone* clone() const override { return new Cone(*this); }
    uint32_t getID() const override { return 8; }

    /// See Cuboid.
    virtual bool_t extractBoundingBox(Box<T>& p_box) const;

    static constexpr const char* c_typeName = "Cone";
    static constexpr auto fields() {
        return std::tuple_cat(zyr_fields(zyr_field("upperRadius", &Cone::upperRadius),
                                         zyr_field("lowerRadius", &Cone::lowerRadius).withDefault(50),
                                         zyr_field("height", &Cone::height).withDefault(100)),
                              zyr_capFields<Cone>(), zyr_sliceFields<Cone>(), zyr_plainSliceEndFields<Cone>());
    }
};
/// A cylinder with a hole along its axis.
template <typename T> class Tube : public Record<Tube<T>, Shape3D<T>> {
public:
    T innerRadius;
    T outerRadius;
    T height;
    bool_t upperCap;
    bool_t upperFillet;
    T upperFilletRadius;
    bool_t lowerCap;
    bool_t lowerFillet;
    T lowerFilletRadius;
    bool_t slice;
    T sliceFrom;
    T sliceTo;
    bool_t sliceStartCap;
    bool_t sliceStartFillet;
    T sliceStartFilletRadius;
    bool_t sliceEndCap;
    bool_t sliceEndFillet;
    T sliceEndFilletRadius;

    Tube() { this->init_This(); }
    Tube(const ExtVector3<T>& p_origin, T p_innerRadius, T p_outerRadius, T p_height, bool_t p_upperCap,
         bool_t p_upperFillet, T p_upperFilletRadius, bool_t p_lowerCap, bool_t p_lowerFillet, T p_lowerFilletRadius,
         bool_t p_slice, T p_sliceFrom, T p_sliceTo, bool_t p_sliceStartCap, bool_t p_sliceStartFillet,
         T p_sliceStartFilletRadius, bool_t p_sliceEndCap, bool_t p_sliceEndFillet, T p_sliceEndFilletRadius)
        : Record<Tube<T>, Shape3D<T>>(Shape3D<T>(p_origin)),
          innerRadius(p_innerRadius),
          outerRadius(p_outerRadius),
          height(p_height),
          upperCap(p_upperCap),
          upperFillet(p_upperFillet),
          upperFilletRadius(p_upperFilletRadius),
          lowerCap(p_lowerCap),
          lowerFillet(p_lowerFillet),
          lowerFilletRadius(p_lowerFilletRadius),
          slice(p_slice),
          sliceFrom(p_sliceFrom),
          sliceTo(p_sliceTo),
          sliceStartCap(p_sliceStartCap),
          sliceStartFillet(p_sliceStartFillet),
          sliceStartFilletRadius(p_sliceStartFilletRadius),
          sliceEndCap(p_sliceEndCap),
          sliceEndFillet(p_sliceEndFillet),
          sliceEndFilletRadius(p_sliceEndFilletRadius) {}

    Tube* clone() const override { return new Tube(*this); }
    uint32_t getID() const override { return 9; }

    /// See Cuboid.
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
