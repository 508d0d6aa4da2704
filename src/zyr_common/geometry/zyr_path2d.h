/// A plane shape of drawing commands.
///
///     Path2D<float> path;
///     path.pushBackSVGPath("M 10 10 h 80 v 40 z");
///     for (const Path2DCommand<float>* command : path.getCommands()) { draw(command); }
#pragma once

#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/geometry/zyr_path2d_command.h"
#include "zyr_common/geometry/zyr_shape2d.h"

namespace zyr {

#pragma pack(push, 1)

/// The path owns its commands. It keeps the form in which it was written: whoever draws it solves the points one by
/// one, each with the point before it (ExtVector2::solveVector).
template <typename T> class Path2D : public Record<Path2D<T>, Shape2D<T>> {
    using Level = Record<Path2D<T>, Shape2D<T>>;

public:
    /// The rectangle that the path was drawn in. Nothing scales the commands to it.
    T width;
    T height;

    Path2D() { this->init_This(); }
    Path2D(const ExtVector2<T>& p_origin, const T& p_width, const T& p_height)
        : Level(Shape2D<T>(p_origin)), width(p_width), height(p_height) {}
    Path2D(const Path2D& p_src) : Level() { this->copy_Backwards(p_src); }
    Path2D& operator=(const Path2D& p_src) {
        this->copy_Backwards(p_src);
        return *this;
    }
    ~Path2D() override { release_This(); }

    Path2D* clone() const override { return new Path2D(*this); }
    uint32_t getID() const override { return 9; }

    // Slot order is a contract between separately built modules.

    /// In the order of drawing. They stay the path's: clone those that shall live longer.
    virtual const List<Path2DCommand<T>*>& getCommands() const { return m_commands; }
    /// Empties the list and releases the commands.
    virtual void eraseCommands();
    // Each appends one command.
    /// Lifts the pen; an outline begins here.
    virtual void moveTo(const ExtVector2<T>& p_position);
    /// A straight line to here.
    virtual void lineTo(const ExtVector2<T>& p_position);
    /// A cubic curve: two control points and the end.
    virtual void curveTo(const ExtVector2<T>& p_p1, const ExtVector2<T>& p_p2, const ExtVector2<T>& p_p3);
    /// A cubic curve that goes on smoothly: the first control point is mirrored from the curve before.
    virtual void smooth(const ExtVector2<T>& p_p2, const ExtVector2<T>& p_p3);
    /// A quadratic curve: the control point and the end.
    virtual void quadCurveTo(const ExtVector2<T>& p_p1, const ExtVector2<T>& p_p2);
    /// A quadratic curve that goes on smoothly.
    virtual void quadSmooth(const ExtVector2<T>& p_p2);
    /// A part of an ellipse with the given half axes, turned by the rotation. The flags choose one of the four possible
    /// arcs.
    virtual void arc(const Vector2<T>& p_radius, const T& p_rotation, bool_t p_largeArc, bool_t p_clockwise,
                     const ExtVector2<T>& p_endArc);
    /// Back to where the outline began.
    virtual void close();
    /// Appends the commands of an SVG path (the text of a `d` attribute), each through the operation above. A letter in
    /// lower case gives points relative to the one before (anchor 5). Several pairs behind an M are as many moves.
    ///
    /// A group of numbers that is cut short or broken is dropped. The text must have a command letter wherever one has
    /// to stand: a number or a punctuator there keeps the thread in this call for good. Check texts from outside with
    /// the lexer first. Needs the core module.
    virtual void pushBackSVGPath(const String& p_path);

    void release_This() { clearCommands(); }
    void copy_This(const Path2D& p_src);
    bool_t compare_This(const Path2D& p_other) const;
    bool_t readSerialized_This(IDeserializer* p_deserializer);
    bool_t writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass, bool_t& p_result);

    static constexpr const char* c_typeName = "Path2D";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("width", &Path2D::width), zyr_field("height", &Path2D::height));
    }
    /// The commands are no listed field: they are streamed by hand.
    static constexpr size_t c_unlistedSize = sizeof(List<Path2DCommand<T>*>);

private:
    void clearCommands();
    bool_t writeCommands(ISerializer* p_serializer);
    bool_t declareCommands(ISerializer* p_serializer);
    bool_t readCommands(IDeserializer* p_deserializer);

    List<Path2DCommand<T>*> m_commands;
};

#pragma pack(pop)

} // namespace zyr
