/// Plane shapes by their parameters.
///
/// A shape carries data, identity and streaming; it is drawn and tessellated elsewhere. Every class exists for float
/// and double. Shapes are counted, packed values with virtual operations; whoever holds one by its base tells the class
/// by getID. One owner at a time.
///
///     Shape2D<float>* shape = new Circle<float>(ExtVector2<float>(), 12);
///     if (shape->getID() == 3) { use(static_cast<Circle<float>*>(shape)->radius); }
///     shape->release();
#pragma once

#include "zyr_common/geometry/zyr_ext_vector.h"
#include "zyr_common/serialization/zyr_numbered_record.h"

namespace zyr {

#pragma pack(push, 1)

/// What all plane shapes have.
template <typename T> class Shape2D : public NumberedRecord<Shape2D<T>> {
public:
    /// Where the shape is placed; solved by who draws it.
    ExtVector2<T> origin;

    /// At (0, 0).
    Shape2D() { this->init_This(); }
    explicit Shape2D(const ExtVector2<T>& p_origin) : origin(p_origin) {}

    /// A copy with a count of its own, which the caller owns.
    Shape2D* clone() const override { return new Shape2D(*this); }
    /// The numbers by which holders of this base switch: 1 Rectangle, 2 RoundedRectangle, 3 Circle, 4
    /// Ellipse, 5 Arc, 6 Polygon2D, 7 Spline2D, 8 ExtSpline2D, 9 Path2D, 10 Graph2D, 11 PolygonHull2D, 0 here.
    uint32_t getID() const override { return 0; }

    static constexpr const char* c_typeName = "Shape2D";
    static constexpr auto fields() { return zyr_fields(zyr_field("origin", &Shape2D::origin)); }
};

/// A rectangle with square corners. A new one is empty.
template <typename T> class Rectangle : public Record<Rectangle<T>, Shape2D<T>> {
public:
    /// Along x; negative sizes are stored as they are.
    T width;
    /// Along y, downward.
    T height;

    Rectangle() { this->init_This(); }
    Rectangle(const ExtVector2<T>& p_origin, T p_width, T p_height)
        : Record<Rectangle<T>, Shape2D<T>>(Shape2D<T>(p_origin)), width(p_width), height(p_height) {}

    /// A copy with a count of its own, which the caller owns; so with all shapes below.
    Rectangle* clone() const override { return new Rectangle(*this); }
    uint32_t getID() const override { return 1; }

    static constexpr const char* c_typeName = "Rectangle";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("width", &Rectangle::width), zyr_field("height", &Rectangle::height));
    }
};
/// A rectangle whose corners may be rounded. Its number is 2, though it is a Rectangle too.
///
///     RoundedRectangle<float> card(ExtVector2<float>(), 300, 200, 1, 12); // rounded by 12
template <typename T> class RoundedRectangle : public Record<RoundedRectangle<T>, Rectangle<T>> {
public:
    bool_t fillet; ///< The corners are rounded.
    /// How far a rounded corner reaches along the edges; kept while the corners are square.
    T filletRadius;

    RoundedRectangle() { this->init_This(); }
    RoundedRectangle(const ExtVector2<T>& p_origin, T p_width, T p_height, bool_t p_fillet, T p_filletRadius)
        : Record<RoundedRectangle<T>, Rectangle<T>>(Rectangle<T>(p_origin, p_width, p_height)),
          fillet(p_fillet),
          filletRadius(p_filletRadius) {}

    RoundedRectangle* clone() const override { return new RoundedRectangle(*this); }
    uint32_t getID() const override { return 2; }

    static constexpr const char* c_typeName = "RoundedRectangle";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("fillet", &RoundedRectangle::fillet),
                          zyr_field("filletRadius", &RoundedRectangle::filletRadius));
    }
};
/// A circle.
template <typename T> class Circle : public Record<Circle<T>, Shape2D<T>> {
public:
    /// In the units of the layout; 0 at first, and not checked.
    T radius;

    Circle() { this->init_This(); }
    Circle(const ExtVector2<T>& p_origin, T p_radius)
        : Record<Circle<T>, Shape2D<T>>(Shape2D<T>(p_origin)), radius(p_radius) {}

    Circle* clone() const override { return new Circle(*this); }
    uint32_t getID() const override { return 3; }

    static constexpr const char* c_typeName = "Circle";
    static constexpr auto fields() { return zyr_fields(zyr_field("radius", &Circle::radius)); }
};
/// An ellipse along the axes.
template <typename T> class Ellipse : public Record<Ellipse<T>, Shape2D<T>> {
public:
    /// Along x and y.
    Vector2<T> axis;

    Ellipse() { this->init_This(); }
    Ellipse(const ExtVector2<T>& p_origin, const Vector2<T>& p_axis)
        : Record<Ellipse<T>, Shape2D<T>>(Shape2D<T>(p_origin)), axis(p_axis) {}

    Ellipse* clone() const override { return new Ellipse(*this); }
    uint32_t getID() const override { return 4; }

    static constexpr const char* c_typeName = "Ellipse";
    static constexpr auto fields() { return zyr_fields(zyr_field("axis", &Ellipse::axis)); }
};
/// A part of an ellipse, closed unless told otherwise.
///
///     Arc<float> pie(ExtVector2<float>(), {50, 50}, 0, 90, 1);
template <typename T> class Arc : public Record<Arc<T>, Shape2D<T>> {
public:
    /// Those of the whole ellipse, along x and y.
    Vector2<T> axis;
    /// From here to `endAngle`. Nothing in this library reads the angles: their unit is that of who draws.
    T startAngle;
    T endAngle;
    /// The two ends are joined; on at first.
    bool_t closed;

    Arc() { this->init_This(); }
    Arc(const ExtVector2<T>& p_origin, const Vector2<T>& p_axis, T p_startAngle, T p_endAngle, bool_t p_closed)
        : Record<Arc<T>, Shape2D<T>>(Shape2D<T>(p_origin)),
          axis(p_axis),
          startAngle(p_startAngle),
          endAngle(p_endAngle),
          closed(p_closed) {}

    Arc* clone() const override { return new Arc(*this); }
    uint32_t getID() const override { return 5; }

    static constexpr const char* c_typeName = "Arc";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("axis", &Arc::axis), zyr_field("startAngle", &Arc::startAngle),
                          zyr_field("endAngle", &Arc::endAngle), zyr_field("closed", &Arc::closed).withDefault(1));
    }
};

#pragma pack(pop)

} // namespace zyr
