/// The drawing commands of a path.
///
/// Each point has its anchors: one that was written relative to the point before is kept as such (anchor 5 on both
/// axes), and is solved with ExtVector2::solveVector when the path is drawn. Commands are counted, packed values with
/// virtual operations, for float and double; whoever holds one by its base tells the class by getID. One owner at a
/// time.
///
/// The current point is where the command before ended; the first command of a path should be a move. Path2D makes the
/// commands and owns them, so most code only reads them:
///
///     for (const Path2DCommand<float>* command : path.getCommands()) {
///         switch (command->getID()) {
///         case 1: move(static_cast<const MoveToPath2DCommand<float>*>(command)->position); break;
///         case 255: close(); break;
///         }
///     }
#pragma once

#include "zyr_common/geometry/zyr_ext_vector.h"
#include "zyr_common/serialization/zyr_numbered_record.h"

namespace zyr {

#pragma pack(push, 1)

/// What all commands have: nothing but their identity. One of this class itself draws nothing; it stands for a stored
/// command whose class was lost or isn't known here.
template <typename T> class Path2DCommand : public NumberedRecord<Path2DCommand<T>> {
public:
    /// A copy of the same class with a count of its own, which the caller owns.
    Path2DCommand* clone() const override { return new Path2DCommand(*this); }
    /// The numbers by which holders of this base switch: 1 to 7 in the order below, 255 for the closing
    /// one, 0 here.
    uint32_t getID() const override { return 0; }

    static constexpr const char* c_typeName = "Path2DCommand";
    static constexpr auto fields() { return zyr_fields(); }
};

/// Goes to a point without drawing.
template <typename T> class MoveToPath2DCommand : public Record<MoveToPath2DCommand<T>, Path2DCommand<T>> {
public:
    /// Where the pen goes, and where the next outline begins.
    ExtVector2<T> position;

    /// To (0, 0) of the path's rectangle; so do all commands below begin.
    MoveToPath2DCommand() { this->init_This(); }
    explicit MoveToPath2DCommand(const ExtVector2<T>& p_position) : position(p_position) {}

    /// A copy with a count of its own, which the caller owns; so with all commands below.
    MoveToPath2DCommand* clone() const override { return new MoveToPath2DCommand(*this); }
    uint32_t getID() const override { return 1; }

    static constexpr const char* c_typeName = "MoveToPath2DCommand";
    static constexpr auto fields() { return zyr_fields(zyr_field("position", &MoveToPath2DCommand::position)); }
};

/// Draws a straight line from the current point. Horizontal and vertical lines are these too: their other axis has
/// anchor 5 and the value 0.
template <typename T> class LineToPath2DCommand : public Record<LineToPath2DCommand<T>, Path2DCommand<T>> {
public:
    /// The end of the line, which becomes the current point.
    ExtVector2<T> position;

    /// To (0, 0).
    LineToPath2DCommand() { this->init_This(); }
    /// Both anchors are kept, so that a relative line stays one.
    explicit LineToPath2DCommand(const ExtVector2<T>& p_position) : position(p_position) {}

    LineToPath2DCommand* clone() const override { return new LineToPath2DCommand(*this); }
    uint32_t getID() const override { return 2; }

    static constexpr const char* c_typeName = "LineToPath2DCommand";
    static constexpr auto fields() { return zyr_fields(zyr_field("position", &LineToPath2DCommand::position)); }
};

/// Draws a cubic curve with two control points. All three points count from the same current point.
template <typename T> class CurveToPath2DCommand : public Record<CurveToPath2DCommand<T>, Path2DCommand<T>> {
public:
    /// the first control point, which the curve leaves toward
    ExtVector2<T> p1;
    /// the second control point, which the curve arrives from
    ExtVector2<T> p2;
    /// the end, which becomes the current point
    ExtVector2<T> p3;

    CurveToPath2DCommand() { this->init_This(); }
    CurveToPath2DCommand(const ExtVector2<T>& p_p1, const ExtVector2<T>& p_p2, const ExtVector2<T>& p_p3)
        : p1(p_p1), p2(p_p2), p3(p_p3) {}

    CurveToPath2DCommand* clone() const override { return new CurveToPath2DCommand(*this); }
    uint32_t getID() const override { return 3; }

    static constexpr const char* c_typeName = "CurveToPath2DCommand";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("p1", &CurveToPath2DCommand::p1), zyr_field("p2", &CurveToPath2DCommand::p2),
                          zyr_field("p3", &CurveToPath2DCommand::p3));
    }
};

/// The same; the first control point mirrors the second of the curve before.
template <typename T> class SmoothPath2DCommand : public Record<SmoothPath2DCommand<T>, Path2DCommand<T>> {
public:
    /// the second control point
    ExtVector2<T> p2;
    /// the end, which becomes the current point
    ExtVector2<T> p3;

    SmoothPath2DCommand() { this->init_This(); }
    SmoothPath2DCommand(const ExtVector2<T>& p_p2, const ExtVector2<T>& p_p3) : p2(p_p2), p3(p_p3) {}

    SmoothPath2DCommand* clone() const override { return new SmoothPath2DCommand(*this); }
    uint32_t getID() const override { return 4; }

    static constexpr const char* c_typeName = "SmoothPath2DCommand";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("p2", &SmoothPath2DCommand::p2), zyr_field("p3", &SmoothPath2DCommand::p3));
    }
};

/// Draws a quadratic curve with one control point.
template <typename T> class QuadCurveToPath2DCommand : public Record<QuadCurveToPath2DCommand<T>, Path2DCommand<T>> {
public:
    /// the control point
    ExtVector2<T> p1;
    /// the end, which becomes the current point
    ExtVector2<T> p2;

    QuadCurveToPath2DCommand() { this->init_This(); }
    QuadCurveToPath2DCommand(const ExtVector2<T>& p_p1, const ExtVector2<T>& p_p2) : p1(p_p1), p2(p_p2) {}

    QuadCurveToPath2DCommand* clone() const override { return new QuadCurveToPath2DCommand(*this); }
    uint32_t getID() const override { return 5; }

    static constexpr const char* c_typeName = "QuadCurveToPath2DCommand";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("p1", &QuadCurveToPath2DCommand::p1),
                          zyr_field("p2", &QuadCurveToPath2DCommand::p2));
    }
};

/// The same; the control point mirrors that of the curve before.
template <typename T> class QuadSmoothPath2DCommand : public Record<QuadSmoothPath2DCommand<T>, Path2DCommand<T>> {
public:
    /// the end, which becomes the current point
    ExtVector2<T> p2;

    QuadSmoothPath2DCommand() { this->init_This(); }
    explicit QuadSmoothPath2DCommand(const ExtVector2<T>& p_p2) : p2(p_p2) {}

    QuadSmoothPath2DCommand* clone() const override { return new QuadSmoothPath2DCommand(*this); }
    uint32_t getID() const override { return 6; }

    static constexpr const char* c_typeName = "QuadSmoothPath2DCommand";
    static constexpr auto fields() { return zyr_fields(zyr_field("p2", &QuadSmoothPath2DCommand::p2)); }
};

/// Draws a part of an ellipse, whose axes are turned by a rotation.
template <typename T> class ArcPath2DCommand : public Record<ArcPath2DCommand<T>, Path2DCommand<T>> {
public:
    /// The half axes of the ellipse, before it is turned.
    Vector2<T> radius;
    /// How far the axes are turned, as it was written; SVG texts have degrees.
    T rotation;
    /// Of the two arcs that meet both points, the longer one.
    bool_t largeArc;
    /// Of the two directions, the one in which angles grow.
    bool_t clockwise;
    /// the end, which becomes the current point
    ExtVector2<T> endArc;

    ArcPath2DCommand() { this->init_This(); }
    ArcPath2DCommand(const Vector2<T>& p_radius, const T& p_rotation, bool_t p_largeArc, bool_t p_clockwise,
                     const ExtVector2<T>& p_endArc)
        : radius(p_radius), rotation(p_rotation), largeArc(p_largeArc), clockwise(p_clockwise), endArc(p_endArc) {}

    ArcPath2DCommand* clone() const override { return new ArcPath2DCommand(*this); }
    uint32_t getID() const override { return 7; }

    static constexpr const char* c_typeName = "ArcPath2DCommand";
    static constexpr auto fields() {
        return zyr_fields(
            zyr_field("radius", &ArcPath2DCommand::radius), zyr_field("rotation", &ArcPath2DCommand::rotation),
            zyr_field("largeArc", &ArcPath2DCommand::largeArc), zyr_field("clockwise", &ArcPath2DCommand::clockwise),
            zyr_field("endArc", &ArcPath2DCommand::endArc));
    }
};

/// Draws a straight line back to where the outline began, which becomes the current point.
template <typename T> class ClosePath2DCommand : public Record<ClosePath2DCommand<T>, Path2DCommand<T>> {
public:
    ClosePath2DCommand() { this->init_This(); }

    ClosePath2DCommand* clone() const override { return new ClosePath2DCommand(*this); }
    uint32_t getID() const override { return 255; }

    static constexpr const char* c_typeName = "ClosePath2DCommand";
    static constexpr auto fields() { return zyr_fields(); }
};

#pragma pack(pop)

/// Whether two commands are of the same class and have the same fields. Numbers are compared exactly.
template <typename T> bool zyr_isSameCommand(const Path2DCommand<T>& p_left, const Path2DCommand<T>& p_right);

} // namespace zyr
