// One runner for the cases of tests/data/layout; make_cases.py there tells what a case holds.
#include "support/log_capture.h"
#include "zyr_common/geometry/zyr_ext_rect.h"

#include <cmath>
#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace zyr {

namespace {

using nlohmann::json;

template <typename T> T toNumber(const json& p_value) {
    if (p_value.is_string()) {
        return static_cast<T>(strtod(p_value.get<std::string>().c_str(), nullptr));
    }
    return p_value.get<T>();
}

template <typename E> E toAnchor(const json& p_value) {
    if (p_value.is_string()) {
        String text(p_value.get<std::string>());
        uint32_t number = 0xFFFF;
        EXPECT_EQ(zyr_convertEnumeration<E>(text, number, 1), 1) << p_value;
        return static_cast<E>(number);
    }
    return static_cast<E>(p_value.get<uint8_t>());
}

template <typename T> Rect<T> toRect(const json& p_value) {
    return {toNumber<T>(p_value[0]), toNumber<T>(p_value[1]), toNumber<T>(p_value[2]), toNumber<T>(p_value[3])};
}

template <typename T> const Array<T>* toSeparators(const json& p_value, Array<T>& p_storage) {
    if (p_value.is_null()) {
        return nullptr;
    }
    for (const json& item : p_value) {
        p_storage.pushBack(toNumber<T>(item));
    }
    return &p_storage;
}

template <typename T> void expectNumber(T p_actual, T p_expected, const char* p_name) {
    if (p_expected != p_expected) {
        EXPECT_TRUE(p_actual != p_actual) << p_name << " is " << p_actual;
    } else {
        EXPECT_EQ(p_actual, p_expected) << p_name;
    }
}

template <typename T> void runCase(const json& p_case) {
    SCOPED_TRACE(p_case.dump());
    const json& anchors = p_case["anchors"];
    const json& limits = p_case["limits"];
    ExtRect<T> record(toRect<T>(p_case["rect"]), toAnchor<PositionXAnchorEnum>(anchors[0]),
                      toAnchor<PositionYAnchorEnum>(anchors[1]), toAnchor<SizeWidthAnchorEnum>(anchors[2]),
                      toAnchor<SizeHeightAnchorEnum>(anchors[3]), toNumber<T>(limits[0]), toNumber<T>(limits[1]),
                      toNumber<T>(limits[2]), toNumber<T>(limits[3]), ExtVector2<T>());
    Array<T> hStorage;
    Array<T> vStorage;
    RectSize<T> content(toNumber<T>(p_case["content"][0]), toNumber<T>(p_case["content"][1]));
    Rect<T> out(-7, -8, -9, -10);
    LogCapture capture;
    bool_t solved =
        record.solveRect(out, toRect<T>(p_case["parent"]), toRect<T>(p_case["previous"]), toRect<T>(p_case["next"]),
                         content, p_case["scale"].get<double>(), toSeparators(p_case["hSeparators"], hStorage),
                         toSeparators(p_case["vSeparators"], vStorage), toNumber<T>(p_case["border"]));
    Rect<T> expected = toRect<T>(p_case["out"]);
    expectNumber<T>(out.x, expected.x, "x");
    expectNumber<T>(out.y, expected.y, "y");
    expectNumber<T>(out.width, expected.width, "width");
    expectNumber<T>(out.height, expected.height, "height");
    std::vector<CapturedLine> lines = capture.getLines();
    if (!p_case.contains("message")) {
        EXPECT_EQ(solved, 1);
        EXPECT_TRUE(lines.empty());
        return;
    }
    EXPECT_EQ(solved, 0);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].message, p_case["message"].get<std::string>());
    EXPECT_EQ(lines[0].module, "common");
    EXPECT_EQ(lines[0].level, 2);
    EXPECT_FALSE(lines[0].echo);
}

size_t runFile(const char* p_name) {
    std::ifstream file(std::string(ZYR_TEST_DATA "/layout/") + p_name);
    json content = json::parse(file);
    for (const json& difference : content["cases"]) {
        json one = content["context"];
        one.update(difference);
        std::string type = one["type"];
        if (type == "int32") {
            runCase<int32_t>(one);
        } else if (type == "int64") {
            runCase<int64_t>(one);
        } else if (type == "float") {
            runCase<float>(one);
        } else {
            EXPECT_EQ(type, "double");
            runCase<double>(one);
        }
    }
    return content["cases"].size();
}

} // namespace

TEST(LayoutCases, SolveSizes) {
    EXPECT_GE(runFile("sizes.json"), 300u);
}

TEST(LayoutCases, SolvePositions) {
    EXPECT_GE(runFile("positions.json"), 150u);
}

TEST(LayoutCases, ApplyBordersLimitsLatePositionsAndWraps) {
    EXPECT_GE(runFile("steps.json"), 200u);
}

TEST(LayoutCases, FailWithWhatHadBeenComputed) {
    EXPECT_GE(runFile("failures.json"), 80u);
}

} // namespace zyr
