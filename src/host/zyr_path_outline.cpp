#include "host/zyr_path_outline.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <stdexcept>

namespace zyr::host {

namespace {

typedef Vector2<double> Point;

std::string number(double p_value) {
    char text[32];
    // Adding 0 turns -0 into 0.
    const auto end = std::to_chars(text, text + sizeof(text), p_value + 0.0, std::chars_format::general, 9).ptr;
    return std::string(text, end);
}

void append(std::string& p_text, const Point& p_point) {
    p_text += ' ';
    p_text += number(p_point.x);
    p_text += ' ';
    p_text += number(p_point.y);
}

class OutlineBuilder {
public:
    void add(const Path2DCommand<double>& p_command) {
        switch (p_command.getID()) {
        case 1:
            draw('M', {solved(as<MoveToPath2DCommand<double>>(p_command).position)});
            m_start = m_current;
            break;
        case 2:
            draw('L', {solved(as<LineToPath2DCommand<double>>(p_command).position)});
            break;
        case 3: {
            const auto& curve = as<CurveToPath2DCommand<double>>(p_command);
            drawCurve('C', {solved(curve.p1), solved(curve.p2), solved(curve.p3)});
            break;
        }
        case 4: {
            const auto& curve = as<SmoothPath2DCommand<double>>(p_command);
            cover(mirrored('C', 'S'));
            drawCurve('S', {solved(curve.p2), solved(curve.p3)});
            break;
        }
        case 5: {
            const auto& curve = as<QuadCurveToPath2DCommand<double>>(p_command);
            drawCurve('Q', {solved(curve.p1), solved(curve.p2)});
            break;
        }
        case 6: {
            const Point control = mirrored('Q', 'T');
            const Point end = solved(as<QuadSmoothPath2DCommand<double>>(p_command).p2);
            cover(control);
            drawCurve('T', {end});
            m_control = control;
            break;
        }
        case 7:
            drawArc(as<ArcPath2DCommand<double>>(p_command));
            break;
        case 255:
            m_outline.m_text += m_outline.m_text.empty() ? "Z" : " Z";
            m_current = m_start;
            m_letter = 'Z';
            break;
        default:
            break;
        }
    }

    PathOutline take() {
        if (!std::isfinite((m_outline.m_right - m_outline.m_left) * 2) ||
            !std::isfinite((m_outline.m_bottom - m_outline.m_top) * 2)) {
            throw std::range_error("the path is larger than the range of numbers");
        }
        return std::move(m_outline);
    }

private:
    template <class Command> static const Command& as(const Path2DCommand<double>& p_command) {
        return static_cast<const Command&>(p_command);
    }

    /// All points of a command count from the point before the command.
    Point solved(const ExtVector2<double>& p_point) const {
        Point point(p_point.x, p_point.y);
        p_point.solveVector(point, m_current, Rect<double>());
        return point;
    }

    /// The control point of the curve before, on the other side of its end; the end itself behind other commands.
    Point mirrored(char p_letter, char p_smoothLetter) const {
        return m_letter == p_letter || m_letter == p_smoothLetter ? m_current * 2 - m_control : m_current;
    }

    void cover(const Point& p_point) {
        if (!std::isfinite(p_point.x) || !std::isfinite(p_point.y)) {
            throw std::range_error("the path leads beyond the range of numbers");
        }
        m_outline.m_left = m_empty ? p_point.x : std::min<double>(m_outline.m_left, p_point.x);
        m_outline.m_top = m_empty ? p_point.y : std::min<double>(m_outline.m_top, p_point.y);
        m_outline.m_right = m_empty ? p_point.x : std::max<double>(m_outline.m_right, p_point.x);
        m_outline.m_bottom = m_empty ? p_point.y : std::max<double>(m_outline.m_bottom, p_point.y);
        m_empty = false;
    }

    void write(char p_letter) {
        m_outline.m_text += m_outline.m_text.empty() ? "" : " ";
        m_outline.m_text += p_letter;
    }

    void draw(char p_letter, std::initializer_list<Point> p_points) {
        if (p_letter != 'M') {
            cover(m_current);
        }
        write(p_letter);
        for (const Point& point : p_points) {
            append(m_outline.m_text, point);
            cover(point);
        }
        m_current = *(p_points.end() - 1);
        m_letter = p_letter;
    }

    void drawCurve(char p_letter, std::initializer_list<Point> p_points) {
        draw(p_letter, p_points);
        m_control = p_points.size() > 1 ? *(p_points.end() - 2) : m_current;
    }

    void drawArc(const ArcPath2DCommand<double>& p_arc) {
        const Point end = solved(p_arc.endArc);
        coverArc(p_arc, end);
        write('A');
        m_outline.m_text += " " + number(p_arc.radius.x) + " " + number(p_arc.radius.y) + " " + number(p_arc.rotation) +
                            (p_arc.largeArc ? " 1" : " 0") + (p_arc.clockwise ? " 1" : " 0") + " " + number(end.x) +
                            " " + number(end.y);
        cover(m_current);
        cover(end);
        m_current = end;
        m_letter = 'A';
    }

    /// Finds the ellipse that goes through both ends and covers points along the arc. Radii that are too small for the
    /// distance grow, as they do when it is drawn.
    void coverArc(const ArcPath2DCommand<double>& p_arc, const Point& p_end) {
        const double pi = std::acos(-1.0);
        const double turn = p_arc.rotation * pi / 180;
        Point radius(std::abs(p_arc.radius.x), std::abs(p_arc.radius.y));
        if (radius.x == 0 || radius.y == 0 || m_current == p_end) {
            return;
        }
        // In the frame of the ellipse, the middle of the chord at the origin.
        Point half = (m_current - p_end) * 0.5;
        half =
            Point(half.x * std::cos(turn) + half.y * std::sin(turn), half.y * std::cos(turn) - half.x * std::sin(turn));
        const double reach = std::hypot(half.x / radius.x, half.y / radius.y);
        if (reach > 1) {
            radius = radius * reach;
        }
        const Point unit = half / radius;
        const double square = unit.x * unit.x + unit.y * unit.y;
        const double offset = std::sqrt(std::max(0.0, 1 / square - 1)) * (p_arc.largeArc == p_arc.clockwise ? -1 : 1);
        const Point centre = Point(unit.y, -unit.x) * offset;
        const double from = std::atan2(unit.y - centre.y, unit.x - centre.x);
        double sweep = std::atan2(-unit.y - centre.y, -unit.x - centre.x) - from;
        if (p_arc.clockwise && sweep < 0) {
            sweep += 2 * pi;
        } else if (!p_arc.clockwise && sweep > 0) {
            sweep -= 2 * pi;
        }
        constexpr int STEPS = 64;
        const Point middle = (m_current + p_end) * 0.5;
        for (int i = 1; i < STEPS; ++i) {
            const double angle = from + sweep * i / STEPS;
            const Point place = (centre + Point(std::cos(angle), std::sin(angle))) * radius;
            cover(middle + Point(place.x * std::cos(turn) - place.y * std::sin(turn),
                                 place.x * std::sin(turn) + place.y * std::cos(turn)));
        }
    }

    PathOutline m_outline;
    Point m_start;
    Point m_current;
    Point m_control;
    char m_letter = 0;
    bool m_empty = true;
};

} // namespace

PathOutline resolveOutline(const Path2D<double>& p_path) {
    OutlineBuilder builder;
    for (const Path2DCommand<double>* command : p_path.getCommands()) {
        builder.add(*command);
    }
    return builder.take();
}

std::string makeSVG(const PathOutline& p_outline) {
    const double width = p_outline.m_right - p_outline.m_left;
    const double height = p_outline.m_bottom - p_outline.m_top;
    const double extent = std::max(width, height) > 0 ? std::max(width, height) : 1;
    const double margin = extent / 20;
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"" + number(p_outline.m_left - margin) + " " +
           number(p_outline.m_top - margin) + " " + number(width + 2 * margin) + " " + number(height + 2 * margin) +
           "\">\n  <path d=\"" + p_outline.m_text + "\" fill=\"none\" stroke=\"black\" stroke-width=\"" +
           number(extent / 200) + "\"/>\n</svg>\n";
}

} // namespace zyr::host
