// The layout command: what it solves and in which order, what it prints and draws.
#include "zyr_layout_runs.h"

#include <gmock/gmock.h>

#include <cstdint>

namespace zyr {
namespace {

using testing::HasSubstr;
using testing::Not;

class LayoutCommand : public LayoutRuns {};

// ---- results --------------------------------------------------------------------------------------------------------

TEST_F(LayoutCommand, PrintsEachNodeInsideItsParentAndAbsolutely) {
    const ProgramRun result =
        runText(R"({"root": {"name": "window", "x": 10, "y": 20, "width": 400, "height": 300, "children": [
                {"name": "panel", "x": 5.5, "y": 6, "width": 100, "height": 50, "children": [
                  {"x": 1, "y": 2, "width": -10, "widthAnchor": "RIGHT", "height": 0.1}]}]}})");
    EXPECT_EQ(result.m_exitCode, 0);
    EXPECT_EQ(result.m_err, "");
    EXPECT_EQ(result.m_out, R"({
  "type": "float",
  "space": "rect",
  "nodes": [
    {
      "path": "window",
      "name": "window",
      "kind": "rectangle",
      "solved": {
        "x": 10.0,
        "y": 20.0,
        "width": 400.0,
        "height": 300.0
      },
      "absolute": {
        "x": 10.0,
        "y": 20.0,
        "width": 400.0,
        "height": 300.0
      }
    },
    {
      "path": "window/panel",
      "name": "panel",
      "kind": "rectangle",
      "solved": {
        "x": 5.5,
        "y": 6.0,
        "width": 100.0,
        "height": 50.0
      },
      "absolute": {
        "x": 15.5,
        "y": 26.0,
        "width": 100.0,
        "height": 50.0
      }
    },
    {
      "path": "window/panel/#1",
      "name": "#1",
      "kind": "rectangle",
      "solved": {
        "x": 1.0,
        "y": 2.0,
        "width": 89.0,
        "height": 0.1
      },
      "absolute": {
        "x": 16.5,
        "y": 28.0,
        "width": 89.0,
        "height": 0.1
      }
    }
  ]
}
)");
}

TEST_F(LayoutCommand, ReadsTheStandardInput) {
    const std::string file = m_directory.writeFile("in.json", R"({"root": {"width": 1, "height": 2}})");
    const ProgramRun result = runProgram("/bin/sh", {"-c", "\"$0\" layout - < \"$1\"", ZYR_HOST_PROGRAM, file});
    EXPECT_EQ(result.m_exitCode, 0) << result.m_err;
    EXPECT_EQ(json::parse(result.m_out, nullptr, false)["nodes"][0]["solved"]["height"], 2.0);
}

TEST_F(LayoutCommand, CountsAbsoluteAnchorsFromTheParentsOwnPosition) {
    EXPECT_EQ(solveOne({{"x", 3}, {"y", 4}, {"xAnchor", "ABSOLUTE"}, {"yAnchor", "ABSOLUTE"}}, {{"x", 10}, {"y", 20}}),
              json({13, 24, 0, 0}));
}

TEST_F(LayoutCommand, TakesAnchorsByNumber) {
    EXPECT_EQ(solveOne({{"x", -30}, {"xAnchor", 1}, {"width", 20}, {"widthAnchor", 2}}), json({370, 0, 80, 0}));
}

TEST_F(LayoutCommand, HoldsSizesInsideTheirLimits) {
    EXPECT_EQ(solveOne({{"width", 5}, {"minWidth", 10}, {"height", 500}, {"maxHeight", 200}}), json({0, 0, 10, 200}));
    EXPECT_EQ(solveOne({{"width", 100000}, {"height", 5}, {"minHeight", 9}, {"maxHeight", 7}}), json({0, 0, 65536, 9}));
}

TEST_F(LayoutCommand, SolvesLatePositionsWithTheLimitedSize) {
    EXPECT_EQ(solveOne({{"x", 50},
                        {"xAnchor", "PARENT_WIDTH_PERCENT_MINUS_WIDTH"},
                        {"width", 10},
                        {"minWidth", 30},
                        {"y", 50},
                        {"yAnchor", "PARENT_HEIGHT_PERCENT_WITHOUT_HEIGHT"},
                        {"height", 101}}),
              json({170, 100, 30, 101}));
}

TEST_F(LayoutCommand, KeepsTheBorderOfTheParentFree) {
    EXPECT_EQ(solveOne({{"widthAnchor", "RIGHT"}, {"heightAnchor", "BOTTOM"}}, {{"border", 4}}),
              json({4, 4, 392, 292}));
    // Half a border on either side of what touches no edge.
    EXPECT_EQ(solveOne({{"x", 100}, {"y", 100}, {"width", 50}, {"height", 50}}, {{"border", 4}}),
              json({102, 102, 46, 46}));
}

TEST_F(LayoutCommand, CountsFromTheSeparatorsOfTheParent) {
    const json lines = {{"vSeparators", {100, 250}}, {"hSeparators", {40}}};
    EXPECT_EQ(solveOne({{"x", 5},
                        {"xAnchor", "V_SEPARATOR_1"},
                        {"width", -5},
                        {"widthAnchor", "V_SEPARATOR_2"},
                        {"y", 2},
                        {"yAnchor", "H_SEPARATOR_1"},
                        {"height", 300},
                        {"heightAnchor", "H_SEPARATOR_2"}},
                       lines),
              json({105, 42, 140, 258}));
}

TEST_F(LayoutCommand, MovesARectangleThatIsTooWideToANewLine) {
    const json down = {{"x", 0},       {"xAnchor", "PREV_RIGHT"},        {"y", 1},      {"yAnchor", "PREV_TOP"},
                       {"width", 150}, {"widthAnchor", "WIDTH_NEWLINE"}, {"height", 40}};
    EXPECT_EQ(solve({down, down, down}), (std::vector<json>{{0, 1, 150, 40}, {150, 2, 150, 40}, {0, 43, 150, 40}}));
    json up = down;
    up["y"] = 0;
    EXPECT_EQ(solve({up, up, up}), (std::vector<json>{{0, 0, 150, 40}, {150, 0, 150, 40}, {0, -40, 150, 40}}));
}

TEST_F(LayoutCommand, GivesNumbersThatAreNoneAsTexts) {
    const json place = solveOne({{"widthAnchor", "RATIO"}, {"x", 1}}, {}, "double");
    EXPECT_EQ(place, json({1.0, 0.0, "nan", 0.0}));
    const json scaled = solveOne({{"widthAnchor", "CONTENT_WIDTH_NO_DS"},
                                  {"content", {{"width", 8}, {"height", 1}}},
                                  {"contentScale", 0},
                                  {"maxWidth", 1e300}},
                                 {}, "double");
    EXPECT_EQ(scaled[2], 1e300);
}

// ---- number types ---------------------------------------------------------------------------------------------------

TEST_F(LayoutCommand, CutsIntegersOnceAndKeepsFractionsOfTheOthers) {
    const json child = {
        {"x", 33}, {"xAnchor", "PARENT_WIDTH_PERCENT"}, {"width", 33}, {"widthAnchor", "PARENT_WIDTH_PERCENT"}};
    const json root = {{"width", 101}};
    EXPECT_EQ(solveOne(child, root, "int32"), json({33, 0, 33, 0}));
    EXPECT_EQ(solveOne(child, root, "int64"), json({33, 0, 33, 0}));
    EXPECT_EQ(solveOne(child, root, "float"), json({33.33, 0.0, 33.33, 0.0}));
    EXPECT_EQ(solveOne(child, root, "double"), json({33.33, 0.0, 33.33, 0.0}));
}

TEST_F(LayoutCommand, SaturatesIntegersWhereAScaleLeavesTheirRange) {
    const auto widthOf = [&](const std::string& p_type, int64_t p_maxWidth) {
        return solveOne({{"widthAnchor", "CONTENT_WIDTH_NO_DS"},
                         {"content", {{"width", 5}, {"height", 1}}},
                         {"contentScale", 0},
                         {"maxWidth", p_maxWidth}},
                        {}, p_type)[2];
    };
    EXPECT_EQ(widthOf("int32", INT32_MAX), INT32_MAX);
    EXPECT_EQ(widthOf("int64", INT64_MAX), INT64_MAX);
}

TEST_F(LayoutCommand, HoldsEachTypeToItsDigits) {
    const auto xOf = [&](const std::string& p_type, const json& p_x) {
        return solveOne({{"x", p_x}}, {}, p_type)[0].dump();
    };
    EXPECT_EQ(xOf("int64", 9007199254740993), "9007199254740993");
    EXPECT_EQ(xOf("double", 0.1234567890123), "0.1234567890123");
    EXPECT_EQ(xOf("float", 0.1234567890123), "0.12345679");
    EXPECT_EQ(xOf("float", 16777217), "16777216.0");
}

TEST_F(LayoutCommand, WrapsIntegersThatOverflow) {
    EXPECT_EQ(solveOne({{"x", INT32_MAX}, {"xAnchor", "RIGHT"}})[0], INT32_MIN + 399);
}

TEST_F(LayoutCommand, RefusesNumbersOutsideTheirType) {
    const auto refuse = [&](const std::string& p_type, const std::string& p_number, const std::string& p_message) {
        expectRefused(R"({"type": ")" + p_type + R"(", "root": {"width": )" + p_number + R"(, "height": 1}})",
                      p_message);
    };
    refuse("int32", "2147483648", "/root/width: 2147483648 is outside the range of int32");
    refuse("int32", "-2147483649", "/root/width: -2147483649 is outside the range of int32");
    refuse("int64", "9223372036854775808", "/root/width: 9223372036854775808 is outside the range of int64");
    refuse("int32", "1.5", "/root/width: 1.5 must be a whole number, since the layout's type is int32");
    refuse("int64", "1000.25", "/root/width: 1000.25 must be a whole number, since the layout's type is int64");
    refuse("float", "1e39", "/root/width: 1e+39 is outside the range of float");
    refuse("double", "1e309", "line 1, column 42: number overflow parsing '1e309'");
}

TEST_F(LayoutCommand, TakesWholeNumbersInEverySpelling) {
    for (const char* type : {"int32", "int64"}) {
        for (const char* number : {"100", "100.0", "1e2", "10000e-2"}) {
            const json child = {{"width", json::parse(number)}, {"height", 1}};
            EXPECT_EQ(solveOne(child, {}, type), json({0, 0, 100, 1})) << number;
        }
    }
    expectRefused(R"({"type": "int32", "root": {"width": 3e9, "height": 1}})",
                  "/root/width: 3000000000.0 is outside the range of int32");
}

// ---- order ----------------------------------------------------------------------------------------------------------

TEST_F(LayoutCommand, SolvesASiblingFirstThatAnotherNames) {
    EXPECT_EQ(solve({{{"widthAnchor", "NEXT_LEFT"}, {"width", -10}},
                     {{"xAnchor", "NEXT_LEFT"}, {"x", -60}, {"width", 50}},
                     {{"x", -100}, {"xAnchor", "RIGHT"}, {"width", 100}},
                     {{"xAnchor", "PREV_LEFT"}, {"width", 7}}}),
              (std::vector<json>{{0, 0, 230, 0}, {240, 0, 50, 0}, {300, 0, 100, 0}, {300, 0, 7, 0}}));
}

TEST_F(LayoutCommand, PutsTheParentsEdgesWhereASiblingIsMissing) {
    EXPECT_EQ(solveOne({{"x", 5},
                        {"xAnchor", "PREV_RIGHT"},
                        {"width", -5},
                        {"widthAnchor", "NEXT_LEFT"},
                        {"y", -9},
                        {"yAnchor", "NEXT_BOTTOM"},
                        {"height", 3},
                        {"heightAnchor", "NEXT_HEIGHT"}}),
              json({5, 291, 390, 3}));
}

TEST_F(LayoutCommand, TakesSiblingsThatAreGiven) {
    EXPECT_EQ(solveOne({{"xAnchor", "PREV_RIGHT"},
                        {"previous", {{"x", 10}, {"y", 0}, {"width", 20}, {"height", 0}}},
                        {"widthAnchor", "NEXT_LEFT"},
                        {"next", {{"x", 90}, {"y", 0}, {"width", 20}, {"height", 0}}}}),
              json({30, 0, 60, 0}));
}

TEST_F(LayoutCommand, MeasuresTheChildrenOfWhatAsksForItsContent) {
    const json nodes = nodesOf(
        {{"root",
          {{"width", 400},
           {"height", 300},
           {"children",
            {{{"name", "list"},
              {"width", 10},
              {"widthAnchor", "CONTENT_WIDTH"},
              {"height", 0},
              {"heightAnchor", "CONTENT_HEIGHT"},
              {"children",
               {{{"x", 4}, {"y", 4}, {"width", 60}, {"height", 20}},
                {{"x", 4}, {"y", 4}, {"yAnchor", "PREV_BOTTOM"}, {"widthAnchor", "RIGHT"}, {"height", 20}}}}}}}}}});
    EXPECT_EQ(nodes[1]["content"], json({{"width", 64.0}, {"height", 48.0}}));
    EXPECT_EQ(nodes[1]["solved"], json({{"x", 0.0}, {"y", 0.0}, {"width", 74.0}, {"height", 48.0}}));
    // The second child fills the width that came out of the first.
    EXPECT_EQ(nodes[3]["solved"], json({{"x", 4.0}, {"y", 28.0}, {"width", 70.0}, {"height", 20.0}}));
}

TEST_F(LayoutCommand, MeasuresContentsInsideContents) {
    const json grow = {{"widthAnchor", "CONTENT_WIDTH"}, {"width", 2}, {"heightAnchor", "CONTENT_HEIGHT"}};
    json inner = grow;
    inner["children"] = {{{"x", 3}, {"width", 30}, {"height", 12}}};
    json outer = grow;
    outer["children"] = json::array({inner});
    const json nodes = nodesOf({{"root", {{"width", 400}, {"height", 300}, {"children", json::array({outer})}}}});
    EXPECT_EQ(nodes[2]["solved"], json({{"x", 0.0}, {"y", 0.0}, {"width", 35.0}, {"height", 12.0}}));
    EXPECT_EQ(nodes[1]["solved"], json({{"x", 0.0}, {"y", 0.0}, {"width", 37.0}, {"height", 12.0}}));
}

TEST_F(LayoutCommand, MeasuresChildrenInARectangleOfNoSizeWhereThereIsNone) {
    // An aspect of nothing is not a number; the child counts from a width of 0 instead.
    EXPECT_EQ(solveOne({{"widthAnchor", "RATIO_ASPECT"},
                        {"heightAnchor", "RATIO_ASPECT"},
                        {"children", {{{"x", 10}, {"xAnchor", "RIGHT"}, {"width", 30}, {"height", 20}}}}},
                       {}, "float"),
              json({0.0, 0.0, 400.0, 200.0}));
}

TEST_F(LayoutCommand, PrefersAGivenContent) {
    const json nodes = nodesOf({{"root",
                                 {{"width", 400},
                                  {"height", 400},
                                  {"children",
                                   {{{"widthAnchor", "RATIO_ASPECT"},
                                     {"heightAnchor", "RATIO_ASPECT"},
                                     {"content", {{"width", 16}, {"height", 9}}},
                                     {"children", {{{"width", 7}, {"height", 7}}}}}}}}}});
    EXPECT_EQ(nodes[1]["solved"], json({{"x", 0.0}, {"y", 0.0}, {"width", 400.0}, {"height", 225.0}}));
    EXPECT_EQ(nodes[1]["content"], json({{"width", 16.0}, {"height", 9.0}}));
}

TEST_F(LayoutCommand, RefusesContentsThatAreNestedTooDeep) {
    json root = {{"width", 1}, {"height", 1}};
    json* parent = &root;
    for (int level = 0; level < 25; ++level) {
        (*parent)["children"] = {{{"widthAnchor", "CONTENT_WIDTH"}}};
        parent = &(*parent)["children"][0];
    }
    const ProgramRun result = run(json{{"root", root}});
    EXPECT_EQ(result.m_exitCode, 1);
    EXPECT_EQ(result.m_out, "");
    EXPECT_THAT(result.m_err, HasSubstr("sizes that ask for their content are nested too deep: more than 1000000"));
}

TEST_F(LayoutCommand, RefusesSiblingsThatWaitForEachOther) {
    const std::string text = R"({"root": {"width": 1, "height": 1, "children": [
        {"name": "a", "xAnchor": "NEXT_LEFT"}, {"name": "b", "yAnchor": "PREV_TOP"}]}})";
    expectRefused(text,
                  "/root/children/0: \"root/a\" cannot be solved: waits for its sibling \"b\", which waits itself");
}

// ---- boxes and points -----------------------------------------------------------------------------------------------

TEST_F(LayoutCommand, SolvesBoxes) {
    const json nodes = nodesOf({{"space", "box"},
                                {"type", "double"},
                                {"root",
                                 {{"width", 100},
                                  {"height", 80},
                                  {"depth", 60},
                                  {"z", 5},
                                  {"children",
                                   {{{"z", 2},
                                     {"zAnchor", "ABSOLUTE"},
                                     {"depth", -1},
                                     {"depthAnchor", "FAR"},
                                     {"width", 50},
                                     {"widthAnchor", "PARENT_WIDTH_PERCENT"},
                                     {"heightAnchor", "BOTTOM"},
                                     {"maxHeight", 30}}}}}}});
    EXPECT_EQ(nodes[1]["kind"], "box");
    EXPECT_EQ(nodes[1]["solved"],
              json({{"x", 0.0}, {"y", 0.0}, {"z", 7.0}, {"width", 50.0}, {"height", 30.0}, {"depth", 52.0}}));
    EXPECT_EQ(nodes[1]["absolute"]["z"], 12.0);
}

TEST_F(LayoutCommand, LimitsBoxesByTheirOwnDefault) {
    const json root = {{"width", 1}, {"height", 1}, {"depth", 1}, {"children", {{{"width", 1e6}}}}};
    EXPECT_EQ(nodesOf({{"space", "box"}, {"root", root}})[1]["solved"]["width"], 65535.0);
}

TEST_F(LayoutCommand, SolvesPointsFromThePointBefore) {
    const json nodes =
        nodesOf({{"type", "int64"},
                 {"root",
                  {{"width", 100},
                   {"height", 80},
                   {"children",
                    {{{"point", true}, {"x", -10}, {"xAnchor", "RIGHT"}, {"y", 5}},
                     {{"point", true}, {"x", -4}, {"xAnchor", "PREV_LEFT"}, {"y", 7}, {"yAnchor", "PREV_TOP"}}}}}}});
    EXPECT_EQ(nodes[1]["solved"], json({{"x", 90}, {"y", 5}}));
    EXPECT_EQ(nodes[2]["kind"], "point");
    EXPECT_EQ(nodes[2]["solved"], json({{"x", 86}, {"y", 12}}));
    const json deep = nodesOf({{"space", "box"},
                               {"root",
                                {{"width", 1},
                                 {"height", 1},
                                 {"depth", 9},
                                 {"children",
                                  {{{"point", true}, {"z", 1}, {"zAnchor", "FAR"}},
                                   {{"point", true}, {"z", -3}, {"zAnchor", "PREV_NEAR"}}}}}}});
    EXPECT_EQ(deep[2]["solved"], json({{"x", 0.0}, {"y", 0.0}, {"z", 7.0}}));
}

// ---- drawings -------------------------------------------------------------------------------------------------------

TEST_F(LayoutCommand, DrawsIntoAFileOrInPlaceOfTheJson) {
    const json layout = {{"root", {{"width", 30}, {"height", 20}, {"children", {{{"name", "a<&>"}, {"x", 5}}}}}}};
    const std::string file = m_directory.getPath() + "drawing.svg";
    const ProgramRun both = run(layout, {"--svg", file});
    EXPECT_EQ(both.m_exitCode, 0) << both.m_err;
    EXPECT_FALSE(json::parse(both.m_out, nullptr, false).is_discarded());
    const std::string drawing = TemporaryDirectory::readFile(file);
    EXPECT_TRUE(drawing.starts_with("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\""));
    EXPECT_THAT(drawing, HasSubstr(">a&lt;&amp;&gt;</text>"));
    EXPECT_EQ(run(layout, {"--svg", "-"}).m_out, drawing);
    const ProgramRun failed = run(layout, {"--svg", m_directory.getPath() + "none/drawing.svg"});
    EXPECT_EQ(failed.m_exitCode, 1);
    EXPECT_EQ(failed.m_out, "");
    EXPECT_THAT(failed.m_err, HasSubstr("none/drawing.svg': No such file or directory"));
}

TEST_F(LayoutCommand, DrawsToScale) {
    const json layout = {{"root", {{"width", 30}, {"height", 20}}}};
    EXPECT_THAT(run(layout, {"--svg", "-", "--scale", "2.5"}).m_out, HasSubstr("width=\"75\" height=\"50\" fill="));
    const ProgramRun large = run(layout, {"--svg", "-", "--scale", "1000"});
    EXPECT_EQ(large.m_exitCode, 1);
    EXPECT_EQ(large.m_out, "");
    EXPECT_THAT(large.m_err, HasSubstr("a side of the drawing would be longer than 20000 pixels"));
}

TEST_F(LayoutCommand, DrawsTheChosenSideOfBoxes) {
    const json layout = {{"space", "box"}, {"view", "xz"}, {"root", {{"width", 30}, {"height", 20}, {"depth", 10}}}};
    EXPECT_THAT(run(layout, {"--svg", "-"}).m_out, HasSubstr("width=\"30\" height=\"10\" fill="));
    EXPECT_THAT(run(layout, {"--svg", "-", "--view", "zy"}).m_out, HasSubstr("width=\"10\" height=\"20\" fill="));
}

TEST_F(LayoutCommand, DrawsAMarkFromWhereANumberCounts) {
    json child = {{"name", "a"}, {"x", -20},     {"xAnchor", "RIGHT_MINUS_WIDTH"},
                  {"width", 50}, {"height", 40}, {"marks", {"x"}}};
    json layout = {{"root", {{"width", 200}, {"height", 100}, {"children", json::array({child})}}}};
    const std::string drawing = run(layout, {"--svg", "-"}).m_out;
    // From the right edge of the root, which is drawn at 232, to that of the rectangle.
    EXPECT_THAT(drawing, HasSubstr("<path d=\"M 232 52 L 212 52\" fill=\"none\" stroke=\"#c01818\""));
    EXPECT_THAT(drawing, HasSubstr(">a: x -20 RIGHT_MINUS_WIDTH = x 130</text>"));
    EXPECT_THAT(drawing, Not(HasSubstr("#1450c8\" marker")));
    layout["root"]["children"][0]["marks"] = json::array();
    EXPECT_THAT(run(layout, {"--svg", "-"}).m_out, Not(HasSubstr("RIGHT_MINUS_WIDTH")));
}

TEST_F(LayoutCommand, DrawsNothingThatHasNoPlace) {
    const json layout = {
        {"root", {{"width", 200}, {"height", 100}, {"children", {{{"name", "lost"}, {"widthAnchor", "RATIO"}}}}}}};
    const std::string drawing = run(layout, {"--svg", "-"}).m_out;
    EXPECT_THAT(drawing, HasSubstr(">lost: x 0 LEFT, y 0 TOP, width 0 RATIO, height 0 HEIGHT = x 0, y 0, width nan, "));
    EXPECT_THAT(drawing, Not(HasSubstr(">lost</text>")));
}

} // namespace
} // namespace zyr
