// The anchored rectangle solver by solves a second, beside the same rules written with plain numbers, which is the
// floor. The solver must take no block from the heap: the program fails if one is taken.
//
// Two loads: a window as users lay it out, each box beside the places of its neighbours, and the cases of the tests,
// which go through all anchors.
#include "bench_allocations.h"
#include "bench_versus.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/geometry/zyr_ext_rect.h"

#include <cmath>
#include <cstdio>
#include <fstream>
#include <nlohmann/json.hpp>

using namespace zyr;
using nlohmann::json;

namespace {

bool g_failed = false;

/// One call of the solver.
template <typename T> struct Solve {
    ExtRect<T> m_box;
    Rect<T> m_parent;
    RectSize<T> m_content;
    double m_scale = 1;
    std::vector<T> m_hSeparators;
    std::vector<T> m_vSeparators;
    T m_border = 0;
};

template <typename T> struct PlainRect { T x, y, width, height; };

/// The floor: the same rules on aligned numbers, without messages.
template <typename T> class PlainBox {
public:
    PlainBox(const Solve<T>& p_solve)
        : m_own{p_solve.m_box.x, p_solve.m_box.y, p_solve.m_box.width, p_solve.m_box.height},
          m_anchors{p_solve.m_box.xAnchor, p_solve.m_box.yAnchor, p_solve.m_box.widthAnchor,
                    p_solve.m_box.heightAnchor},
          m_limits{p_solve.m_box.minWidth, p_solve.m_box.maxWidth, p_solve.m_box.minHeight, p_solve.m_box.maxHeight},
          m_parent{p_solve.m_parent.x, p_solve.m_parent.y, p_solve.m_parent.width, p_solve.m_parent.height},
          m_contentWidth(p_solve.m_content.width),
          m_contentHeight(p_solve.m_content.height),
          m_scale(p_solve.m_scale),
          m_hSeparators(p_solve.m_hSeparators.data()),
          m_vSeparators(p_solve.m_vSeparators.data()),
          m_hCount(p_solve.m_hSeparators.size()),
          m_vCount(p_solve.m_vSeparators.size()),
          m_border(p_solve.m_border) {}

    bool solve(PlainRect<T>& p_out, const PlainRect<T>& p_previous, const PlainRect<T>& p_next) const {
        const Axis horizontal{m_parent.x,   m_parent.width, p_previous.x,  p_previous.width, p_next.x,
                              p_next.width, m_contentWidth, m_vSeparators, m_vCount};
        const Axis vertical{m_parent.y,    m_parent.height, p_previous.y,  p_previous.height, p_next.y,
                            p_next.height, m_contentHeight, m_hSeparators, m_hCount};
        bool rightEdge = false;
        bool bottomEdge = false;
        PlainRect<T> out;
        if (!getSize(m_anchors[2], m_own.width, horizontal, false, out.width, rightEdge) ||
            !getSize(m_anchors[3], m_own.height, vertical, true, out.height, bottomEdge) ||
            !getPosition(m_anchors[0], m_own.x, horizontal, out.width, out.x) ||
            !getPosition(m_anchors[1], m_own.y, vertical, out.height, out.y)) {
            return false;
        }
        out.width -= rightEdge ? out.x : 0;
        out.height -= bottomEdge ? out.y : 0;
        if (m_border > 0) {
            pullIn(out.x, out.width, m_parent.width);
            pullIn(out.y, out.height, m_parent.height);
        }
        out.width = m_limits[0] > out.width ? m_limits[0] : m_limits[1] < out.width ? m_limits[1] : out.width;
        out.height = m_limits[2] > out.height ? m_limits[2] : m_limits[3] < out.height ? m_limits[3] : out.height;
        setLate(m_anchors[0], m_own.x, m_parent.width, out.width, out.x);
        setLate(m_anchors[1], m_own.y, m_parent.height, out.height, out.y);
        if (m_anchors[2] == 20 && out.x + out.width > m_parent.width) {
            out.x = 0;
            out.y = m_own.y > 0 ? out.y + m_own.height : out.y - m_own.height;
        }
        p_out = out;
        return true;
    }

private:
    struct Axis {
        T m_parent, m_parentSize, m_previous, m_previousSize, m_next, m_nextSize, m_content;
        const T* m_separators;
        size_t m_count;
    };

    static T half(T p_value) {
        if constexpr (std::is_integral_v<T>) {
            return p_value / 2;
        } else {
            return p_value * T(0.5);
        }
    }
    static T percent(T p_value, T p_percent) { return p_value * p_percent / 100; }
    static T separator(const Axis& p_axis, size_t p_index) {
        return p_index < p_axis.m_count ? p_axis.m_separators[p_index] : T(0);
    }

    T fit(T p_width, T p_height, bool p_vertical) const {
        const bool heightLimits = m_parent.width * p_height > p_width * m_parent.height;
        const T size = p_vertical ? (heightLimits ? p_height * m_parent.height : m_parent.width * p_height)
                                  : (heightLimits ? p_width * m_parent.height : p_width * m_parent.width);
        const T divisor = heightLimits ? p_height : p_width;
        if (std::is_integral_v<T> && divisor == 0) {
            return p_vertical == heightLimits ? (p_vertical ? m_parent.height : m_parent.width) : T(0);
        }
        return size / divisor;
    }

    bool getSize(uint8_t p_anchor, T p_v, const Axis& p_axis, bool p_vertical, T& p_size, bool& p_edge) const {
        switch (p_anchor) {
        case 0:
        case 20:
            p_size = p_v;
            return true;
        case 1:
            p_size = p_axis.m_parentSize + p_v;
            return true;
        case 2:
            p_size = percent(p_axis.m_parentSize, p_v);
            return true;
        case 3:
            p_size = fit(m_own.width, m_own.height, p_vertical);
            return true;
        case 4:
            p_size = fit(m_contentWidth, m_contentHeight, p_vertical);
            return true;
        case 5:
            p_size = m_contentWidth <= m_parent.width && m_contentHeight <= m_parent.height
                         ? p_axis.m_content
                         : fit(m_contentWidth, m_contentHeight, p_vertical);
            return true;
        case 6:
            p_size = m_contentWidth < m_parent.width && m_contentHeight < m_parent.height
                         ? fit(m_contentWidth, m_contentHeight, p_vertical)
                         : p_axis.m_content;
            return true;
        case 13:
            p_size = p_axis.m_previousSize + p_v;
            return true;
        case 14:
            p_size = percent(p_axis.m_previousSize, p_v);
            return true;
        case 18:
            p_size = p_axis.m_nextSize + p_v;
            return true;
        case 19:
            p_size = percent(p_axis.m_nextSize, p_v);
            return true;
        case 21:
            p_size = p_axis.m_content + p_v;
            return true;
        case 22:
            p_size = T(double(p_axis.m_content) / m_scale) + p_v;
            return true;
        default:
            p_edge = true;
            return getEdge(p_anchor, p_v, p_axis, p_size);
        }
    }

    static bool getEdge(uint8_t p_anchor, T p_v, const Axis& p_axis, T& p_edge) {
        switch (p_anchor) {
        case 7:
            p_edge = p_v;
            return true;
        case 8:
            p_edge = p_axis.m_parentSize + p_v;
            return true;
        case 9:
            p_edge = p_v + half(p_axis.m_parentSize);
            return true;
        case 10:
            p_edge = p_axis.m_previous + p_v;
            return true;
        case 11:
            p_edge = p_axis.m_previous + p_axis.m_previousSize + p_v;
            return true;
        case 12:
            p_edge = p_v + p_axis.m_previous + half(p_axis.m_previousSize);
            return true;
        case 15:
            p_edge = p_axis.m_next + p_v;
            return true;
        case 16:
            p_edge = p_axis.m_next + p_axis.m_nextSize + p_v;
            return true;
        case 17:
            p_edge = p_v + p_axis.m_next + half(p_axis.m_nextSize);
            return true;
        default:
            p_edge = p_v + separator(p_axis, size_t(p_anchor) - 128);
            return p_anchor >= 128 && p_anchor <= 143;
        }
    }

    static bool getPosition(uint8_t p_anchor, T p_v, const Axis& p_axis, T p_size, T& p_position) {
        switch (p_anchor) {
        case 0:
            p_position = p_v;
            return true;
        case 1:
            p_position = p_axis.m_parentSize + p_v;
            return true;
        case 2:
            p_position = half(p_axis.m_parentSize) + p_v;
            return true;
        case 3:
            p_position = percent(p_axis.m_parentSize, p_v);
            return true;
        case 4:
            p_position = p_axis.m_parent + p_v;
            return true;
        case 5:
            p_position = p_axis.m_previous + p_v;
            return true;
        case 6:
            p_position = p_axis.m_previous + p_axis.m_previousSize + p_v;
            return true;
        case 7:
            p_position = p_v + p_axis.m_previous + half(p_axis.m_previousSize);
            return true;
        case 8:
            p_position = percent(p_axis.m_previousSize, p_v) + p_axis.m_previous;
            return true;
        case 9:
            p_position = p_axis.m_next + p_v;
            return true;
        case 10:
            p_position = p_axis.m_next + p_axis.m_nextSize + p_v;
            return true;
        case 11:
            p_position = p_v + p_axis.m_next + half(p_axis.m_nextSize);
            return true;
        case 12:
            p_position = percent(p_axis.m_nextSize, p_v) + p_axis.m_next;
            return true;
        case 13:
            p_position = p_axis.m_parentSize - p_size + p_v;
            return true;
        case 14:
        case 15:
            p_position = 0;
            return true;
        default:
            p_position = p_v + separator(p_axis, size_t(p_anchor) - 128);
            return p_anchor >= 128 && p_anchor <= 143;
        }
    }

    void pullIn(T& p_position, T& p_size, T p_parentSize) const {
        T h = m_border / 2;
        const T end = p_position + p_size;
        const T start = p_position - h < 0 ? m_border : p_position + h;
        p_position = start;
        p_size = (end + h > p_parentSize ? p_parentSize - m_border : end - h) - start;
    }

    static void setLate(uint8_t p_anchor, T p_v, T p_parentSize, T p_size, T& p_position) {
        if (p_anchor == 14) {
            p_position = percent(p_parentSize, p_v) - p_size;
        } else if (p_anchor == 15) {
            p_position = percent(p_parentSize - p_size + 1, p_v);
        }
    }

    PlainRect<T> m_own;
    uint8_t m_anchors[4];
    T m_limits[4];
    PlainRect<T> m_parent;
    T m_contentWidth;
    T m_contentHeight;
    double m_scale;
    const T* m_hSeparators;
    const T* m_vSeparators;
    size_t m_hCount;
    size_t m_vCount;
    T m_border;
};

/// A window with a title bar, a tool bar, a side panel, a picture with its caption, a form and a status line.
template <typename T> std::vector<Solve<T>> makeWindow() {
    struct Row {
        double m_x, m_y, m_width, m_height;
        PositionXAnchorEnum m_xAnchor;
        PositionYAnchorEnum m_yAnchor;
        SizeWidthAnchorEnum m_widthAnchor;
        SizeHeightAnchorEnum m_heightAnchor;
        double m_border;
    };
    static const Row rows[] = {
        {0, 0, 0, 28, ZYR_POSITION_X_LEFT, ZYR_POSITION_Y_TOP, ZYR_SIZE_WIDTH_RIGHT, ZYR_SIZE_HEIGHT_HEIGHT, 0},
        {8, 4, 8, 0, ZYR_POSITION_X_LEFT, ZYR_POSITION_Y_TOP, ZYR_SIZE_WIDTH_CONTENT_WIDTH,
         ZYR_SIZE_HEIGHT_CONTENT_HEIGHT, 0},
        {-4, 4, 20, 20, ZYR_POSITION_X_RIGHT_MINUS_WIDTH, ZYR_POSITION_Y_TOP, ZYR_SIZE_WIDTH_WIDTH,
         ZYR_SIZE_HEIGHT_HEIGHT, 0},
        {-24, 0, 20, 20, ZYR_POSITION_X_PREV_LEFT, ZYR_POSITION_Y_PREV_TOP, ZYR_SIZE_WIDTH_WIDTH,
         ZYR_SIZE_HEIGHT_HEIGHT, 0},
        {-24, 0, 0, 0, ZYR_POSITION_X_PREV_LEFT, ZYR_POSITION_Y_PREV_TOP, ZYR_SIZE_WIDTH_PREV_WIDTH,
         ZYR_SIZE_HEIGHT_PREV_HEIGHT, 0},
        {4, 32, 64, 24, ZYR_POSITION_X_LEFT, ZYR_POSITION_Y_TOP, ZYR_SIZE_WIDTH_WIDTH_NEWLINE, ZYR_SIZE_HEIGHT_HEIGHT,
         0},
        {4, 32, 64, 24, ZYR_POSITION_X_PREV_RIGHT, ZYR_POSITION_Y_TOP, ZYR_SIZE_WIDTH_WIDTH_NEWLINE,
         ZYR_SIZE_HEIGHT_HEIGHT, 0},
        {4, 32, 96, 24, ZYR_POSITION_X_PREV_RIGHT, ZYR_POSITION_Y_TOP, ZYR_SIZE_WIDTH_WIDTH_NEWLINE,
         ZYR_SIZE_HEIGHT_HEIGHT, 0},
        {0, 60, 0, -24, ZYR_POSITION_X_LEFT, ZYR_POSITION_Y_TOP, ZYR_SIZE_WIDTH_V_SEPARATOR_1, ZYR_SIZE_HEIGHT_BOTTOM,
         4},
        {8, 68, -8, 22, ZYR_POSITION_X_LEFT, ZYR_POSITION_Y_TOP, ZYR_SIZE_WIDTH_V_SEPARATOR_1, ZYR_SIZE_HEIGHT_HEIGHT,
         0},
        {0, 2, 0, 22, ZYR_POSITION_X_PREV_LEFT, ZYR_POSITION_Y_PREV_BOTTOM, ZYR_SIZE_WIDTH_PREV_WIDTH,
         ZYR_SIZE_HEIGHT_HEIGHT, 0},
        {0, 2, 0, 22, ZYR_POSITION_X_PREV_LEFT, ZYR_POSITION_Y_PREV_BOTTOM, ZYR_SIZE_WIDTH_PREV_WIDTH,
         ZYR_SIZE_HEIGHT_HEIGHT, 0},
        {16, 2, 80, 22, ZYR_POSITION_X_PREV_LEFT, ZYR_POSITION_Y_PREV_BOTTOM, ZYR_SIZE_WIDTH_PREV_WIDTH_PERCENT,
         ZYR_SIZE_HEIGHT_HEIGHT, 0},
        {0, 60, 0, 0, ZYR_POSITION_X_V_SEPARATOR_1, ZYR_POSITION_Y_TOP, ZYR_SIZE_WIDTH_RIGHT,
         ZYR_SIZE_HEIGHT_H_SEPARATOR_1, 4},
        {50, 50, 0, 0, ZYR_POSITION_X_PARENT_WIDTH_PERCENT_WITHOUT_WIDTH,
         ZYR_POSITION_Y_PARENT_HEIGHT_PERCENT_WITHOUT_HEIGHT, ZYR_SIZE_WIDTH_RATIO_ASPECT, ZYR_SIZE_HEIGHT_RATIO_ASPECT,
         0},
        {0, 4, 0, 18, ZYR_POSITION_X_PREV_LEFT, ZYR_POSITION_Y_PREV_BOTTOM, ZYR_SIZE_WIDTH_PREV_RIGHT,
         ZYR_SIZE_HEIGHT_HEIGHT, 0},
        {0, 0, 0, 0, ZYR_POSITION_X_V_SEPARATOR_1, ZYR_POSITION_Y_H_SEPARATOR_1, ZYR_SIZE_WIDTH_RIGHT,
         ZYR_SIZE_HEIGHT_BOTTOM, 4},
        {0, 8, 120, 20, ZYR_POSITION_X_V_SEPARATOR_1, ZYR_POSITION_Y_H_SEPARATOR_1, ZYR_SIZE_WIDTH_WIDTH,
         ZYR_SIZE_HEIGHT_HEIGHT, 0},
        {8, 0, -16, 0, ZYR_POSITION_X_PREV_RIGHT, ZYR_POSITION_Y_PREV_TOP, ZYR_SIZE_WIDTH_RIGHT,
         ZYR_SIZE_HEIGHT_PREV_HEIGHT, 0},
        {0, 8, 120, 20, ZYR_POSITION_X_V_SEPARATOR_1, ZYR_POSITION_Y_PREV_BOTTOM, ZYR_SIZE_WIDTH_WIDTH,
         ZYR_SIZE_HEIGHT_HEIGHT, 0},
        {8, 0, 40, 0, ZYR_POSITION_X_PREV_RIGHT, ZYR_POSITION_Y_PREV_TOP, ZYR_SIZE_WIDTH_PARENT_WIDTH_PERCENT,
         ZYR_SIZE_HEIGHT_PREV_HEIGHT, 0},
        {-40, -32, 80, 24, ZYR_POSITION_X_CENTER, ZYR_POSITION_Y_BOTTOM, ZYR_SIZE_WIDTH_WIDTH, ZYR_SIZE_HEIGHT_HEIGHT,
         0},
        {0, -22, 0, 0, ZYR_POSITION_X_LEFT, ZYR_POSITION_Y_BOTTOM, ZYR_SIZE_WIDTH_RIGHT, ZYR_SIZE_HEIGHT_BOTTOM, 0},
        {100, -20, 0, 18, ZYR_POSITION_X_PARENT_WIDTH_PERCENT_MINUS_WIDTH, ZYR_POSITION_Y_BOTTOM,
         ZYR_SIZE_WIDTH_CONTENT_WIDTH_NO_DS, ZYR_SIZE_HEIGHT_HEIGHT, 0},
    };
    std::vector<Solve<T>> solves;
    for (const Row& row : rows) {
        Solve<T> solve;
        solve.m_box =
            ExtRect<T>(Rect<T>(T(row.m_x), T(row.m_y), T(row.m_width), T(row.m_height)), row.m_xAnchor, row.m_yAnchor,
                       row.m_widthAnchor, row.m_heightAnchor, 0, 65536, 0, 65536, ExtVector2<T>());
        solve.m_parent = Rect<T>(0, 0, 1280, 720);
        solve.m_content = RectSize<T>(160, 90);
        solve.m_scale = 2;
        solve.m_hSeparators = {480};
        solve.m_vSeparators = {240, 900};
        solve.m_border = T(row.m_border);
        solves.push_back(solve);
    }
    return solves;
}

template <typename T> T toNumber(const json& p_value) {
    return p_value.is_string() ? T(strtod(p_value.get<std::string>().c_str(), nullptr)) : p_value.get<T>();
}

template <typename E> E toAnchor(const json& p_value) {
    uint32_t number = 0;
    if (p_value.is_string()) {
        String text(p_value.get<std::string>());
        zyr_convertEnumeration<E>(text, number, 1);
        return E(number);
    }
    return E(p_value.get<uint8_t>());
}

template <typename T> Rect<T> toRect(const json& p_value) {
    return {toNumber<T>(p_value[0]), toNumber<T>(p_value[1]), toNumber<T>(p_value[2]), toNumber<T>(p_value[3])};
}

/// The solver's own test cases of the type, without those that fail. One neighbour serves as both.
template <typename T> std::vector<Solve<T>> readCases(const char* p_type) {
    std::vector<Solve<T>> solves;
    for (const char* name : {"sizes", "positions", "steps"}) {
        std::ifstream file(std::string(ZYR_TEST_DATA "/layout/") + name + ".json");
        const json content = json::parse(file);
        for (const json& difference : content["cases"]) {
            json one = content["context"];
            one.update(difference);
            if (one["type"] != p_type || one.contains("message")) {
                continue;
            }
            const json& anchors = one["anchors"];
            const json& limits = one["limits"];
            Solve<T> solve;
            solve.m_box =
                ExtRect<T>(toRect<T>(one["rect"]), toAnchor<PositionXAnchorEnum>(anchors[0]),
                           toAnchor<PositionYAnchorEnum>(anchors[1]), toAnchor<SizeWidthAnchorEnum>(anchors[2]),
                           toAnchor<SizeHeightAnchorEnum>(anchors[3]), toNumber<T>(limits[0]), toNumber<T>(limits[1]),
                           toNumber<T>(limits[2]), toNumber<T>(limits[3]), ExtVector2<T>());
            solve.m_parent = toRect<T>(one["parent"]);
            solve.m_content = RectSize<T>(toNumber<T>(one["content"][0]), toNumber<T>(one["content"][1]));
            solve.m_scale = one["scale"].get<double>();
            for (const json& item : one["hSeparators"]) {
                solve.m_hSeparators.push_back(toNumber<T>(item));
            }
            for (const json& item : one["vSeparators"]) {
                solve.m_vSeparators.push_back(toNumber<T>(item));
            }
            solve.m_border = toNumber<T>(one["border"]);
            // Plain conversions have no result where these saturate.
            if (std::abs(solve.m_scale) > 1e-3) {
                solves.push_back(solve);
            }
        }
    }
    return solves;
}

/// The blocks that the program takes from the heap while the work is done. Reading the counts takes some as well.
template <class Work> size_t countBlocks(const Work& p_work) {
    const auto measure = [](const auto& p_measured) {
        const size_t before = zyr::bench::countAllocations()[0];
        p_measured();
        return zyr::bench::countAllocations()[0] - before;
    };
    return measure(p_work) - measure([] {});
}

template <typename T> bool isEqual(T p_a, T p_b) {
    return p_a == p_b || (p_a != p_a && p_b != p_b);
}

/// p_chained gives each box the places of its neighbours in the order of the load.
template <typename T>
void compareSolvers(benchmark::State& p_state, const std::vector<Solve<T>>& p_solves, bool p_chained) {
    const size_t count = p_solves.size();
    std::vector<PlainBox<T>> plainBoxes(p_solves.begin(), p_solves.end());
    std::vector<Array<T>> hSeparators(count);
    std::vector<Array<T>> vSeparators(count);
    for (size_t i = 0; i < count; i++) {
        hSeparators[i].pushBackRange(p_solves[i].m_hSeparators.data(), p_solves[i].m_hSeparators.size());
        vSeparators[i].pushBackRange(p_solves[i].m_vSeparators.data(), p_solves[i].m_vSeparators.size());
    }
    // A place before the first box and one behind the last.
    std::vector<Rect<T>> places(count + 2, Rect<T>(11, 13, 51, 63));
    std::vector<PlainRect<T>> plainPlaces(count + 2, PlainRect<T>{11, 13, 51, 63});
    const size_t step = p_chained ? 1 : 0;
    const auto solveAll = [&] {
        size_t solved = 0;
        for (size_t i = 0; i < count; i++) {
            const Solve<T>& solve = p_solves[i];
            solved += solve.m_box.solveRect(places[i + 1], solve.m_parent, places[i * step],
                                            places[step != 0 ? i + 2 : count + 1], solve.m_content, solve.m_scale,
                                            &hSeparators[i], &vSeparators[i], solve.m_border);
        }
        benchmark::ClobberMemory();
        g_failed |= solved != count;
    };
    const auto solvePlainly = [&] {
        size_t solved = 0;
        for (size_t i = 0; i < count; i++) {
            solved += plainBoxes[i].solve(plainPlaces[i + 1], plainPlaces[i * step],
                                          plainPlaces[step != 0 ? i + 2 : count + 1]);
        }
        benchmark::ClobberMemory();
        g_failed |= solved != count;
    };
    for (int pass = 0; pass < 3; pass++) {
        const size_t blocks = countBlocks(solveAll);
        solvePlainly();
        if (blocks != 0) {
            fprintf(stderr, "bench_layout: the solver took %zu blocks from the heap\n", blocks);
            g_failed = true;
        }
    }
    for (size_t i = 1; i <= count; i++) {
        const Rect<T>& own = places[i];
        const PlainRect<T>& plain = plainPlaces[i];
        if (!isEqual(own.x, plain.x) || !isEqual(own.y, plain.y) || !isEqual(own.width, plain.width) ||
            !isEqual(own.height, plain.height)) {
            fprintf(stderr, "bench_layout: box %zu differs: %g %g %g %g and %g %g %g %g\n", i - 1, double(own.x),
                    double(own.y), double(own.width), double(own.height), double(plain.x), double(plain.y),
                    double(plain.width), double(plain.height));
            g_failed = true;
        }
    }
    const double time = zyr::bench::compareSides(p_state, count, {{"zyr", solveAll}, {"plain", solvePlainly}});
    p_state.counters["Msolves/s"] = 1e3 / time;
    p_state.counters["boxes"] = double(count);
}

} // namespace

template <typename T> static void window(benchmark::State& p_state) {
    compareSolvers(p_state, makeWindow<T>(), true);
}
BENCHMARK_TEMPLATE(window, float);
BENCHMARK_TEMPLATE(window, double);
BENCHMARK_TEMPLATE(window, int32_t);
BENCHMARK_TEMPLATE(window, int64_t);

template <typename T> static void cases(benchmark::State& p_state) {
    const char* type = std::is_same_v<T, float> ? "float" : std::is_same_v<T, double> ? "double" : "int32";
    compareSolvers(p_state, readCases<T>(type), false);
}
BENCHMARK_TEMPLATE(cases, float);
BENCHMARK_TEMPLATE(cases, double);
BENCHMARK_TEMPLATE(cases, int32_t);

int main(int p_count, char** p_arguments) {
    benchmark::Initialize(&p_count, p_arguments);
    // The empty name is the program itself, whose part the library is.
    zyr::bench::watchModules({""});
    const auto takeBlock = [] {
        void* block = zyr_malloc(100);
        benchmark::DoNotOptimize(block);
        zyr_free(block);
    };
    if (countBlocks(takeBlock) != 1) {
        fprintf(stderr, "bench_layout: blocks are not counted\n");
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    if (g_failed) {
        fprintf(stderr, "bench_layout: FAILED\n");
    }
    return g_failed ? 1 : 0;
}
