#include "host/zyr_layout_drawing.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace zyr::host {

namespace {

typedef std::array<double, 2> Point;

constexpr double MARGIN = 32;
constexpr double LETTER_WIDTH = 6.6; // of the monospaced font at 11 pixels
constexpr double LINE_HEIGHT = 15;
constexpr size_t LEGEND_LETTERS = 96; // in one line, unless a single piece is longer

struct Colour {
    const char* m_fill;
    const char* m_line;
};
constexpr Colour COLOURS[] = {{"#cfe2f3", "#3d76b0"}, {"#fce0c0", "#b8701a"}, {"#d5ead0", "#4a8a3c"},
                              {"#e6d6ef", "#7d4fa0"}, {"#f7d3d6", "#b04a55"}, {"#d0ebea", "#2f8583"},
                              {"#f3ecc2", "#8f7d1c"}, {"#dedede", "#606060"}};
constexpr Colour PLAIN = {"#ececec", "#9a9a9a"}; // what stands there to be measured against
constexpr Colour PARENT = {"#fafafa", "#808080"};
constexpr const char* POSITION_COLOUR = "#c01818";
constexpr const char* SIZE_COLOUR = "#1450c8";

/// Two digits behind the point at most.
std::string number(double p_value) {
    char text[32];
    // Adding 0 turns -0 into 0.
    snprintf(text, sizeof(text), "%.2f", std::round(p_value * 100) / 100 + 0.0);
    std::string short_ = text;
    short_.erase(short_.find_last_not_of('0') + 1);
    if (short_.back() == '.') {
        short_.pop_back();
    }
    return short_;
}

std::string escape(const std::string& p_text) {
    std::string escaped;
    for (const char letter : p_text) {
        switch (letter) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        default:
            escaped += letter;
        }
    }
    return escaped;
}

/// The letters of a UTF-8 text.
size_t countLetters(const std::string& p_text) {
    return static_cast<size_t>(
        std::count_if(p_text.begin(), p_text.end(), [](char p_byte) { return (p_byte & 0xC0) != 0x80; }));
}

double getTextWidth(const std::string& p_text) {
    return static_cast<double>(countLetters(p_text)) * LETTER_WIDTH;
}

class Drawing {
public:
    Drawing(const Scene& p_scene, double p_scale) : m_scene(p_scene), m_scale(p_scale) {
        const SceneNode& root = p_scene.m_nodes.front();
        m_start = root.m_start;
        m_end = root.m_end;
        for (const SceneNode& node : p_scene.m_nodes) {
            if (node.m_drawn) {
                cover(0, node.m_start[0], node.m_end[0]);
                cover(1, node.m_start[1], node.m_end[1]);
                for (const SceneMark& mark : node.m_marks) {
                    cover(mark.m_axis, std::min(mark.m_from, mark.m_to), std::max(mark.m_from, mark.m_to));
                }
                for (size_t axis = 0; axis < 2; ++axis) {
                    for (const double line : node.m_lines[axis]) {
                        cover(axis, line, line);
                    }
                }
            }
        }
        m_top = MARGIN + (p_scene.m_title.empty() ? 0 : 20);
    }

    std::string draw() {
        const Point size = {(m_end[0] - m_start[0]) * m_scale, (m_end[1] - m_start[1]) * m_scale};
        if (!(size[0] <= MAX_DRAWING_SIZE && size[1] <= MAX_DRAWING_SIZE)) {
            return "";
        }
        size_t colours = 0;
        for (const SceneNode& node : m_scene.m_nodes) {
            const bool coloured = !node.m_legend.empty() && (node.m_drawn || !node.m_marks.empty());
            const Colour& colour = coloured ? COLOURS[colours++ % std::size(COLOURS)] : node.m_parent ? PARENT : PLAIN;
            drawNode(node, coloured && node.m_parent ? Colour{PARENT.m_fill, colour.m_line} : colour);
            addLegend(node, coloured ? colour.m_line : POSITION_COLOUR);
        }
        for (const SceneNode& node : m_scene.m_nodes) {
            for (const SceneMark& mark : node.m_marks) {
                drawMark(node, mark);
            }
        }
        const double legendTop = m_top + size[1] + MARGIN;
        const double width = std::ceil(std::max({size[0] + 2 * MARGIN, m_legendWidth + 2 * MARGIN,
                                                 getTextWidth(m_scene.m_title) * 1.2 + 2 * MARGIN, m_right + 6}));
        const double height = std::ceil(legendTop + static_cast<double>(m_legend.size()) * LINE_HEIGHT + 4);
        std::string text = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + number(width) + "\" height=\"" +
                           number(height) + "\" viewBox=\"0 0 " + number(width) + " " + number(height) +
                           "\" font-family=\"monospace\" font-size=\"11\">\n" + getDefinitions() +
                           "  <rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n";
        if (!m_scene.m_title.empty()) {
            text += "  <text x=\"" + number(MARGIN) + "\" y=\"18\" font-size=\"13\" font-weight=\"bold\">" +
                    escape(m_scene.m_title) + "</text>\n";
        }
        text += drawAxes() + m_shapes + m_marks;
        for (size_t i = 0; i < m_legend.size(); ++i) {
            text += "  <text x=\"" + number(MARGIN) + "\" y=\"" +
                    number(legendTop + static_cast<double>(i) * LINE_HEIGHT) + "\" xml:space=\"preserve\" fill=\"" +
                    m_legend[i].first + "\">" + escape(m_legend[i].second) + "</text>\n";
        }
        return text + "</svg>\n";
    }

private:
    void cover(size_t p_axis, double p_start, double p_end) {
        m_start[p_axis] = std::min(m_start[p_axis], p_start);
        m_end[p_axis] = std::max(m_end[p_axis], p_end);
    }

    double toPixel(size_t p_axis, double p_value) const {
        return (p_value - m_start[p_axis]) * m_scale + (p_axis == 0 ? MARGIN : m_top);
    }

    static std::string getDefinitions() {
        std::string text = "  <defs>\n";
        for (const auto& [name, colour] :
             {std::pair("p", POSITION_COLOUR), std::pair("s", SIZE_COLOUR), std::pair("k", PARENT.m_line)}) {
            text += std::string("    <marker id=\"") + name +
                    "\" viewBox=\"0 0 8 8\" refX=\"8\" refY=\"4\" markerWidth=\"7\" markerHeight=\"7\" "
                    "orient=\"auto-start-reverse\"><path d=\"M 0 1 L 8 4 L 0 7 Z\" fill=\"" +
                    colour + "\"/></marker>\n";
        }
        return text + "  </defs>\n";
    }

    std::string drawAxes() const {
        const std::string left = number(MARGIN - 22);
        const std::string top = number(m_top - 18);
        const std::string line =
            std::string(" fill=\"none\" stroke=\"") + PARENT.m_line + "\" marker-end=\"url(#k)\"/>\n";
        return "  <path d=\"M " + left + " " + top + " h 26\"" + line + "  <path d=\"M " + left + " " + top +
               " v 26\"" + line + "  <text x=\"" + number(MARGIN + 8) + "\" y=\"" + number(m_top - 14) + "\">" +
               m_scene.m_axes[0] + "</text>\n  <text x=\"" + number(MARGIN - 25) + "\" y=\"" + number(m_top + 20) +
               "\">" + m_scene.m_axes[1] + "</text>\n";
    }

    void drawNode(const SceneNode& p_node, const Colour& p_colour) {
        if (!p_node.m_drawn) {
            return;
        }
        const Point start = {toPixel(0, p_node.m_start[0]), toPixel(1, p_node.m_start[1])};
        const Point end = {toPixel(0, p_node.m_end[0]), toPixel(1, p_node.m_end[1])};
        if (p_node.m_point) {
            m_shapes += "  <circle cx=\"" + number(start[0]) + "\" cy=\"" + number(start[1]) + "\" r=\"3\" fill=\"" +
                        p_colour.m_line + "\"/>\n";
            drawLabel(p_node.m_name, start[0] + 5, start[1] - 5);
            return;
        }
        drawRectangle(start, end,
                      std::string("fill=\"") + p_colour.m_fill + "\" fill-opacity=\"0.75\" stroke=\"" +
                          p_colour.m_line + (p_node.m_inverted ? "\" stroke-dasharray=\"2 2\"" : "\""));
        if (p_node.m_border > 0) {
            const double border = p_node.m_border * m_scale;
            drawDashed({start[0] + border, start[1] + border}, {end[0] - border, end[1] - border}, "#b0b0b0");
        }
        const Point content = {p_node.m_content[0] * m_scale, p_node.m_content[1] * m_scale};
        if (std::max(content[0], content[1]) <= MAX_DRAWING_SIZE) {
            drawDashed(start, {start[0] + content[0], start[1] + content[1]}, p_colour.m_line);
        }
        drawSeparators(p_node, start, end);
        const double width = getTextWidth(p_node.m_name);
        if (&p_node == &m_scene.m_nodes.front()) {
            drawLabel(p_node.m_name, start[0], end[1] + 12);
        } else if (p_node.m_parent) {
            drawLabel(p_node.m_name, start[0] + 3, end[1] - 4); // Children rather begin at the top.
        } else if (end[1] - start[1] < 14) {
            drawLabel(p_node.m_name, end[0] + 3, (start[1] + end[1]) / 2 + 4);
        } else if (end[0] - start[0] < width + 4) {
            drawLabel(p_node.m_name, (start[0] + end[0] - width) / 2, start[1] - 4);
        } else {
            drawLabel(p_node.m_name, start[0] + 3, start[1] + 11);
        }
    }

    void drawRectangle(const Point& p_start, const Point& p_end, const std::string& p_style) {
        m_shapes += "  <rect x=\"" + number(p_start[0]) + "\" y=\"" + number(p_start[1]) + "\" width=\"" +
                    number(p_end[0] - p_start[0]) + "\" height=\"" + number(p_end[1] - p_start[1]) + "\" " + p_style +
                    "/>\n";
    }

    void drawDashed(const Point& p_start, const Point& p_end, const char* p_colour) {
        if (p_end[0] > p_start[0] && p_end[1] > p_start[1]) {
            drawRectangle(p_start, p_end,
                          std::string("fill=\"none\" stroke=\"") + p_colour + "\" stroke-dasharray=\"1 3\"");
        }
    }

    void drawSeparators(const SceneNode& p_node, const Point& p_start, const Point& p_end) {
        for (size_t axis = 0; axis < 2; ++axis) {
            for (size_t i = 0; i < p_node.m_lines[axis].size(); ++i) {
                const double place = toPixel(axis, p_node.m_lines[axis][i]);
                const std::string name = (axis == 0 ? "V" : "H") + std::to_string(i + 1);
                if (axis == 0) {
                    m_shapes += line({place, p_start[1] - 3}, {place, p_end[1]}, "#a07000", "6 2");
                    drawText(name, place, p_start[1] - 5, "middle", "#a07000");
                } else {
                    m_shapes += line({p_start[0] - 3, place}, {p_end[0], place}, "#a07000", "6 2");
                    drawText(name, p_start[0] - 5, place + 4, "end", "#a07000");
                }
            }
        }
    }

    static std::string line(const Point& p_start, const Point& p_end, const char* p_colour, const char* p_dashes,
                            const std::string& p_more = "") {
        return "  <path d=\"M " + number(p_start[0]) + " " + number(p_start[1]) + " L " + number(p_end[0]) + " " +
               number(p_end[1]) + "\" fill=\"none\" stroke=\"" + p_colour + "\"" +
               (p_dashes[0] != 0 ? " stroke-dasharray=\"" + std::string(p_dashes) + "\"" : "") + p_more + "/>\n";
    }

    void drawText(const std::string& p_text, double p_x, double p_y, const char* p_anchor, const char* p_colour) {
        m_shapes += text(p_text, p_x, p_y, p_anchor, p_colour);
    }

    void drawLabel(const std::string& p_text, double p_x, double p_y) {
        m_right = std::max(m_right, p_x + getTextWidth(p_text));
        m_marks += text(p_text, p_x, p_y, "start", "#202020");
    }

    /// A text with a light rim, legible upon lines.
    static std::string text(const std::string& p_text, double p_x, double p_y, const char* p_anchor,
                            const char* p_colour) {
        return "  <text x=\"" + number(p_x) + "\" y=\"" + number(p_y) + "\" text-anchor=\"" + p_anchor + "\" fill=\"" +
               p_colour + "\" stroke=\"white\" stroke-width=\"3\" paint-order=\"stroke\">" + escape(p_text) +
               "</text>\n";
    }

    void drawMark(const SceneNode& p_node, const SceneMark& p_mark) {
        const size_t other = 1 - p_mark.m_axis;
        const bool position = p_mark.m_kind == SCENE_POSITION;
        const char* const colour = position ? POSITION_COLOUR : SIZE_COLOUR;
        const double start = toPixel(other, p_node.m_start[other]);
        const double end = toPixel(other, p_node.m_end[other]);
        const double across = p_node.m_point ? start : start + (end - start) * (position ? 0.5 : 0.8);
        const double from = toPixel(p_mark.m_axis, p_mark.m_from);
        const double to = toPixel(p_mark.m_axis, p_mark.m_to);
        const auto at = [&](double p_along, double p_across) {
            return p_mark.m_axis == 0 ? Point{p_along, p_across} : Point{p_across, p_along};
        };
        if (p_mark.m_kind != SCENE_SIZE) {
            m_marks += line(at(from, start - 5), at(from, end + 5), colour, "3 2");
        }
        const double length = std::abs(to - from);
        if (length >= 1) {
            const std::string head = position ? "url(#p)" : "url(#s)";
            m_marks += line(at(from, across), at(to, across), colour, "",
                            (p_mark.m_kind == SCENE_SIZE ? " marker-start=\"" + head + "\"" : "") + " marker-end=\"" +
                                head + "\"");
        }
        const double middle = (from + to) / 2;
        const bool inside = length >= (p_mark.m_axis == 0 ? getTextWidth(p_mark.m_text) + 24 : 34);
        if (inside) {
            const Point place = at(middle, across);
            m_marks += text(p_mark.m_text, place[0], place[1] + 4, "middle", colour);
        } else if (p_mark.m_axis == 0) {
            const bool nothing = length < 1;
            m_marks += text(p_mark.m_text, nothing ? from + 4 : middle, across + (nothing ? 12 : -4),
                            nothing ? "start" : "middle", colour);
        } else {
            m_marks += text(p_mark.m_text, across + 4, middle + (length < 1 ? -3 : 4), "start", colour);
        }
    }

    void addLegend(const SceneNode& p_node, const char* p_colour) {
        std::string line;
        for (const std::string& piece : p_node.m_legend) {
            if (!line.empty() && countLetters(line) + 1 + countLetters(piece) > LEGEND_LETTERS) {
                addLegendLine(line, p_colour);
                line = "   ";
            }
            line += (line.empty() ? "" : " ") + piece;
        }
        if (!line.empty()) {
            addLegendLine(line, p_colour);
        }
    }

    void addLegendLine(const std::string& p_line, const char* p_colour) {
        m_legend.emplace_back(p_colour, p_line);
        m_legendWidth = std::max(m_legendWidth, getTextWidth(p_line));
    }

    const Scene& m_scene;
    const double m_scale;
    Point m_start{};
    Point m_end{};
    double m_top;
    double m_right = 0; ///< how far the labels reach
    double m_legendWidth = 0;
    std::string m_shapes;
    std::string m_marks; ///< above all shapes
    std::vector<std::pair<const char*, std::string>> m_legend;
};

} // namespace

std::string drawScene(const Scene& p_scene, double p_scale) {
    return Drawing(p_scene, p_scale).draw();
}

} // namespace zyr::host
