// Plain and anchored rectangles, boxes and positions.
#include "bits/bit_table.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/geometry/zyr_ext_box.h"
#include "zyr_common/geometry/zyr_ext_position.h"
#include "zyr_common/geometry/zyr_ext_rect.h"

#include <limits>

namespace zyr {

namespace {

template <typename T> Rect<T> makeRect(NumberSource& p_source) {
    return Rect<T>{p_source.number<T>(), p_source.number<T>(), p_source.number<T>(), p_source.number<T>()};
}

template <typename T> Rect<T> makeWildRect(NumberSource& p_source) {
    return Rect<T>{p_source.wildNumber<T>(), p_source.wildNumber<T>(), p_source.wildNumber<T>(),
                   p_source.wildNumber<T>()};
}

template <typename T> Box<T> makeBox(NumberSource& p_source) {
    return Box<T>{p_source.wildNumber<T>(), p_source.wildNumber<T>(), p_source.wildNumber<T>(),
                  p_source.wildNumber<T>(), p_source.wildNumber<T>(), p_source.wildNumber<T>()};
}

template <typename T> void fillRectanglesOf(BitTable& p_table, NumberSource& p_source) {
    for (uint32_t round = 0; round < 400; ++round) {
        const Rect<T> a = round % 2 == 0 ? makeRect<T>(p_source) : makeWildRect<T>(p_source);
        const Rect<T> b = makeRect<T>(p_source);
        Rect<T> changed(a);
        changed.expand(p_source.number<T>());
        p_table.addRecord(changed);
        changed = a;
        changed.intersect(b);
        p_table.addRecord(changed);
        changed = a;
        changed.boundingRect(b);
        p_table.addRecord(changed);
        p_table.add(a.checkIntersection(b));
        p_table.add(a.getIntersectionArea(b));
        p_table.add(a.pointInRect(p_source.vector2<T>()));
        if constexpr (std::is_floating_point_v<T>) {
            Matrix3x3<T> matrix;
            for (uint32_t i = 0; i < 9; ++i) {
                matrix.setValue(i, p_source.number<T>());
            }
            a.transformIntoBoundingRect(matrix, changed);
            p_table.addRecord(changed);
        }
    }
}

template <typename T> class RectSolver {
public:
    RectSolver(BitTable& p_table, NumberSource& p_source) : m_table(p_table), m_source(p_source) {}

    /// Solves with the four anchors in surroundings of their own. What a failure leaves behind counts as well.
    void solve(uint32_t p_x, uint32_t p_y, uint32_t p_width, uint32_t p_height) {
        const bool wild = m_source.below(4) == 0;
        auto number = [&] { return wild ? m_source.wildNumber<T>() : m_source.number<T>(); };
        ExtRect<T> rect;
        rect.x = number();
        rect.y = number();
        rect.width = number();
        rect.height = number();
        rect.xAnchor = static_cast<PositionXAnchorEnum>(p_x);
        rect.yAnchor = static_cast<PositionYAnchorEnum>(p_y);
        rect.widthAnchor = static_cast<SizeWidthAnchorEnum>(p_width);
        rect.heightAnchor = static_cast<SizeHeightAnchorEnum>(p_height);
        if (m_source.below(2) == 0) {
            rect.minWidth = number();
            rect.maxWidth = number();
            rect.minHeight = number();
            rect.maxHeight = number();
        } else {
            // No limit that matters, so that the formulas show.
            rect.minWidth = rect.minHeight = static_cast<T>(std::numeric_limits<int32_t>::min());
        }
        const Rect<T> parent{number(), number(), number(), number()};
        const Rect<T> previous{number(), number(), number(), number()};
        const Rect<T> next{number(), number(), number(), number()};
        const RectSize<T> content{number(), number()};
        const double scales[] = {1, 1.5, 0.3, -2, 0, 7};
        const double scale = scales[m_source.below(6)];
        Array<T> horizontal;
        Array<T> vertical;
        fill(horizontal);
        fill(vertical);
        const T border = m_source.below(3) == 0 ? static_cast<T>(m_source.below(40)) : T(0);
        Rect<T> out(1, 2, 3, 4);
        const Array<T>* givenHorizontal = m_source.below(8) == 0 ? nullptr : &horizontal;
        const Array<T>* givenVertical = m_source.below(8) == 0 ? nullptr : &vertical;
        m_table.add(
            rect.solveRect(out, parent, previous, next, content, scale, givenHorizontal, givenVertical, border));
        m_table.addRecord(out);
    }

private:
    void fill(Array<T>& p_separators) {
        for (uint32_t left = m_source.below(20); left > 0; --left) {
            p_separators.pushBack(m_source.number<T>());
        }
    }

    BitTable& m_table;
    NumberSource& m_source;
};

template <typename T> void fillAnchoredRectanglesOf(BitTable& p_table, NumberSource& p_source) {
    RectSolver<T> solver(p_table, p_source);
    // Every number that an anchor byte can have, on each of the four, then all kinds of combinations.
    for (uint32_t code = 0; code < 256; ++code) {
        for (uint32_t round = 0; round < 3; ++round) {
            solver.solve(code, 0, 0, 0);
            solver.solve(0, code, 0, 0);
            solver.solve(0, 0, code, 0);
            solver.solve(0, 0, 0, code);
        }
    }
    auto position = [&] { return p_source.below(8) == 0 ? 128 + p_source.below(16) : p_source.below(16); };
    auto size = [&] { return p_source.below(8) == 0 ? 128 + p_source.below(16) : p_source.below(23); };
    for (uint32_t round = 0; round < 4000; ++round) {
        const uint32_t anchors[] = {position(), position(), size(), size()};
        solver.solve(anchors[0], anchors[1], anchors[2], anchors[3]);
    }
}

template <typename T> void fillAnchoredBoxesOf(BitTable& p_table, NumberSource& p_source) {
    // 9 and 5 don't exist for a box.
    constexpr SizeWidthAnchorEnum sizes[] = {
        ZYR_SIZE_WIDTH_WIDTH, ZYR_SIZE_WIDTH_PARENT_WIDTH, ZYR_SIZE_WIDTH_PARENT_WIDTH_PERCENT,
        ZYR_SIZE_WIDTH_RATIO, ZYR_SIZE_WIDTH_RATIO_ASPECT, ZYR_SIZE_WIDTH_RIGHT,
        ZYR_SIZE_WIDTH_CENTER};
    for (uint32_t round = 0; round < 4000; ++round) {
        ExtBox<T> box;
        static_cast<Box<T>&>(box) = makeBox<T>(p_source);
        box.widthAnchor = sizes[p_source.below(round % 8 == 0 ? 7 : 6)];
        box.heightAnchor = static_cast<SizeHeightAnchorEnum>(sizes[p_source.below(round % 8 == 1 ? 7 : 6)]);
        box.depthAnchor = static_cast<SizeDepthAnchorEnum>(sizes[p_source.below(round % 8 == 2 ? 7 : 6)]);
        box.xAnchor = static_cast<PositionXAnchorEnum>(p_source.below(round % 8 == 3 ? 6 : 5));
        box.yAnchor = static_cast<PositionYAnchorEnum>(p_source.below(round % 8 == 4 ? 6 : 5));
        box.zAnchor = static_cast<PositionZAnchorEnum>(p_source.below(round % 8 == 5 ? 6 : 5));
        if (round % 2 == 0) {
            box.minWidth = box.minHeight = box.minDepth = -1000000;
        }
        Box<T> out(1, 2, 3, 4, 5, 6);
        p_table.add(box.solveBox(out, makeBox<T>(p_source)));
        p_table.addRecord(out);
    }
    for (uint32_t code = 0; code < 256; ++code) {
        const Rect<T> parent = makeRect<T>(p_source);
        T out = 7;
        p_table.add(
            ExtPositionX<T>{p_source.number<T>(), static_cast<PositionXAnchorEnum>(code)}.solvePosition(out, parent));
        p_table.add(out);
        p_table.add(
            ExtPositionY<T>{p_source.number<T>(), static_cast<PositionYAnchorEnum>(code)}.solvePosition(out, parent));
        p_table.add(out);
    }
    for (uint32_t round = 0; round < 1000; ++round) {
        const ExtVector3<T> point{p_source.vector3<T>(), static_cast<PositionXAnchorEnum>(p_source.below(7)),
                                  static_cast<PositionYAnchorEnum>(p_source.below(7)),
                                  static_cast<PositionZAnchorEnum>(p_source.below(7))};
        Vector3<T> out(1, 2, 3);
        const Vector3<T> previous = p_source.vector3<T>();
        p_table.add(point.solveVector(out, previous, makeBox<T>(p_source)));
        p_table.addRecord(out);
    }
}

template <typename T> void fillAnchoredPoints(BitTable& p_table, NumberSource& p_source) {
    for (uint32_t round = 0; round < 1000; ++round) {
        const ExtVector2<T> point{Vector2<T>{p_source.wildNumber<T>(), p_source.wildNumber<T>()},
                                  static_cast<PositionXAnchorEnum>(p_source.below(7)),
                                  static_cast<PositionYAnchorEnum>(p_source.below(7))};
        Vector2<T> out(1, 2);
        const Vector2<T> previous = p_source.vector2<T>();
        p_table.add(point.solveVector(out, previous, makeWildRect<T>(p_source)));
        p_table.addRecord(out);
    }
}

} // namespace

void zyr_fillRectangles(BitTable& p_table) {
    NumberSource source(11);
    fillRectanglesOf<int32_t>(p_table, source);
    fillRectanglesOf<int64_t>(p_table, source);
    fillRectanglesOf<float>(p_table, source);
    fillRectanglesOf<double>(p_table, source);
}

void zyr_fillAnchoredRectangles(BitTable& p_table) {
    NumberSource source(12);
    fillAnchoredRectanglesOf<int32_t>(p_table, source);
    fillAnchoredRectanglesOf<int64_t>(p_table, source);
    fillAnchoredRectanglesOf<float>(p_table, source);
    fillAnchoredRectanglesOf<double>(p_table, source);
}

void zyr_fillAnchoredBoxes(BitTable& p_table) {
    NumberSource source(13);
    fillAnchoredBoxesOf<float>(p_table, source);
    fillAnchoredBoxesOf<double>(p_table, source);
    fillAnchoredPoints<int32_t>(p_table, source);
    fillAnchoredPoints<int64_t>(p_table, source);
    fillAnchoredPoints<float>(p_table, source);
    fillAnchoredPoints<double>(p_table, source);
}

} // namespace zyr
