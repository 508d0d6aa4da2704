// What the layout command refuses, and how it tells where the mistake is.
#include "zyr_layout_runs.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace zyr {
namespace {

using testing::HasSubstr;

class LayoutRefusals : public LayoutRuns {};

TEST_F(LayoutRefusals, NamesTheNodeAndTheAnchorWithoutASolution) {
    expectChildRefused({{"name", "a"}, {"xAnchor", 16}},
                       "/root/children/0/xAnchor: \"root/a\" cannot be solved: a rectangle has no xAnchor 16");
    expectChildRefused({{"yAnchor", 16}, {"heightAnchor", 200}},
                       "/root/children/0/heightAnchor: \"root/#1\" cannot be solved: a rectangle has no heightAnchor "
                       "200");
    expectChildRefused({{"point", true}, {"yAnchor", "PREV_BOTTOM"}},
                       "/root/children/0/yAnchor: \"root/#1\" cannot be solved: a point has no yAnchor PREV_BOTTOM");
    expectRefused(R"({"space": "box", "root": {"width": 1, "height": 1, "depth": 1, "children": [
                      {"zAnchor": "PREV_FAR"}]}})",
                  "/root/children/0/zAnchor: \"root/#1\" cannot be solved: a box has no zAnchor PREV_FAR");
    expectRefused(R"({"space": "box", "root": {"width": 1, "height": 1, "depth": 1, "children": [
                      {"depthAnchor": "PREV_NEA"}]}})",
                  "/root/children/0/depthAnchor: \"root/#1\" cannot be solved: a box has no depthAnchor PREV_NEA");
}

TEST_F(LayoutRefusals, KeepsGoingWhenItIsTold) {
    const json layout = {{"root",
                          {{"width", 1},
                           {"height", 1},
                           {"children",
                            {{{"name", "a"}, {"xAnchor", 16}, {"children", {{{"name", "in"}}}}},
                             {{"name", "b"}, {"xAnchor", "PREV_LEFT"}},
                             {{"name", "c"}, {"x", 4}}}}}}};
    const ProgramRun result = run(layout, {"--keep-going"});
    EXPECT_EQ(result.m_exitCode, 1);
    EXPECT_EQ(result.m_err, "");
    const json nodes = json::parse(result.m_out, nullptr, false)["nodes"];
    EXPECT_EQ(
        nodes[1],
        json({{"path", "root/a"}, {"name", "a"}, {"kind", "rectangle"}, {"failure", "a rectangle has no xAnchor 16"}}));
    EXPECT_EQ(nodes[2]["failure"], "its parent has no solution");
    EXPECT_EQ(nodes[3]["failure"], "waits for its sibling \"a\", which has no solution");
    EXPECT_EQ(nodes[4]["solved"]["x"], 4.0);
    const ProgramRun drawn = run(layout, {"--keep-going", "--svg", "-"});
    EXPECT_EQ(drawn.m_exitCode, 1);
    EXPECT_THAT(drawn.m_out, HasSubstr("= no solution: a rectangle has no xAnchor 16</text>"));
}

TEST_F(LayoutRefusals, RefusesWhatIsNoJson) {
    expectRefused("", "line 1, column 1: there is nothing here");
    expectRefused(" \n", "line 1, column 1: there is nothing here");
    expectRefused("{\n  \"root\": {,}\n}",
                  "line 2, column 12: syntax error while parsing object key - unexpected ','; expected string literal");
    expectRefused("{} // no comments", "line 1, column 4: syntax error while parsing value - invalid literal; last "
                                       "read: '{} /'; expected end of input");
}

TEST_F(LayoutRefusals, RefusesKeysThatStandTwice) {
    expectRefused(R"({"root": {"width": 1, "height": 1, "children": [{}, {"x": 1, "x": 2}]}})",
                  "/root/children/1/x: stands twice");
}

TEST_F(LayoutRefusals, RefusesKeysThatItDoesNotKnow) {
    expectRefused(R"({"rot": {}})", "/rot: unknown key; here may stand type, space, view, title, marks, root");
    expectRefused(R"({"root": {"width": 1, "height": 1, "x/y~": 1}})",
                  "/root/x~1y~0: unknown key; here may stand name, x, width, y, height, border, vSeparators, "
                  "hSeparators, children");
    expectChildRefused({{"depth", 1}}, "/root/children/0/depth: unknown key; here may stand name, point, marks, x, "
                                       "xAnchor, width, widthAnchor, minWidth, maxWidth, y, yAnchor, height, "
                                       "heightAnchor, minHeight, maxHeight, border, vSeparators, hSeparators, "
                                       "children, content, contentScale, previous, next");
    expectChildRefused({{"point", true}, {"width", 1}}, "/root/children/0/width: unknown key; here may stand name, "
                                                        "point, marks, x, xAnchor, y, yAnchor, previous");
    expectRefused(R"({"space": "box", "root": {"width": 1, "height": 1, "depth": 1, "border": 1}})",
                  "/root/border: unknown key; here may stand name, x, width, y, height, z, depth, children");
}

TEST_F(LayoutRefusals, SendsNoControlCharactersToTheTerminal) {
    expectRefused("{\"\\u001b[2J\\u007f\": 1}",
                  "/?[2J?: unknown key; here may stand type, space, view, title, marks, root");
}

TEST_F(LayoutRefusals, RefusesWhatIsMissing) {
    expectRefused("{}", "the whole: \"root\" is missing");
    expectRefused(R"({"root": {"width": 1}})", "/root: \"height\" is missing");
    expectRefused(R"({"space": "box", "root": {"width": 1, "height": 1}})", "/root: \"depth\" is missing");
    expectChildRefused({{"content", {{"width", 1}}}}, "/root/children/0/content: \"height\" is missing");
    expectChildRefused({{"previous", {{"x", 1}, {"y", 1}, {"width", 1}}}},
                       "/root/children/0/previous: \"height\" is missing");
}

TEST_F(LayoutRefusals, RefusesOtherTypes) {
    expectRefused("[]", "the whole: must be an object, not array");
    expectRefused(R"({"root": 1})", "/root: must be an object, not number");
    expectRefused(R"({"type": 1})", "/type: must be a text, not number");
    expectRefused(R"({"root": {"width": "1", "height": 1}})", "/root/width: must be a number, not string");
    expectRefused(R"({"root": {"width": 1, "height": 1, "children": {}}})",
                  "/root/children: must be a list, not object");
    expectRefused(R"({"root": {"width": 1, "height": 1, "children": [5]}})",
                  "/root/children/0: must be an object, not number");
    expectRefused(R"({"root": {"width": 1, "height": 1, "vSeparators": [true]}})",
                  "/root/vSeparators/0: must be a number, not boolean");
    expectChildRefused({{"point", 1}}, "/root/children/0/point: must be true or false, not number");
    expectChildRefused({{"xAnchor", nullptr}},
                       "/root/children/0/xAnchor: must be an anchor's name, or its number from 0 to 255, not null");
    expectChildRefused({{"xAnchor", 256}},
                       "/root/children/0/xAnchor: must be an anchor's name, or its number from 0 to 255, not number");
}

TEST_F(LayoutRefusals, RefusesUnknownWords) {
    expectRefused(R"({"type": "int16"})", "/type: must be \"int32\", \"int64\", \"float\" or \"double\"");
    expectRefused(R"({"space": "cube"})", "/space: must be \"rect\" or \"box\"");
    expectRefused(R"({"view": "yx"})", "/view: must be \"xy\", \"xz\" or \"zy\"");
    expectRefused(R"({"view": "xz"})", "/view: only boxes can be seen from another side");
    expectRefused(R"({"type": "int32", "space": "box"})", "/type: boxes have no integer form: float or double");
    expectChildRefused({{"marks", {"x", "z"}}}, "/root/children/0/marks/1: must be the name of a position or a size");
    expectChildRefused({{"point", true}, {"marks", {"width"}}},
                       "/root/children/0/marks/0: must be the name of a position or a size");
}

TEST_F(LayoutRefusals, ListsTheAnchorsInPlaceOfAnUnknownOne) {
    expectChildRefused({{"yAnchor", "LEFT"}},
                       "/root/children/0/yAnchor: unknown anchor \"LEFT\"; the anchors are TOP, BOTTOM, CENTER, "
                       "PARENT_HEIGHT_PERCENT, ABSOLUTE, PREV_TOP, PREV_BOTTOM, PREV_CENTER, "
                       "PREV_TOP_PLUS_HEIGHT_PERCENT, NEXT_TOP, NEXT_BOTTOM, NEXT_CENTER, "
                       "NEXT_TOP_PLUS_HEIGHT_PERCENT, BOTTOM_MINUS_HEIGHT, PARENT_HEIGHT_PERCENT_MINUS_HEIGHT, "
                       "PARENT_HEIGHT_PERCENT_WITHOUT_HEIGHT, H_SEPARATOR_1 to H_SEPARATOR_16");
}

TEST_F(LayoutRefusals, RefusesNamesThatTellNothing) {
    expectChildRefused({{"name", ""}}, "/root/children/0/name: a name has at least one character, and no \"/\"");
    expectChildRefused({{"name", "a/b"}}, "/root/children/0/name: a name has at least one character, and no \"/\"");
    expectChildRefused({{"name", "a\n"}}, "/root/children/0/name: must not hold control characters");
    expectRefused(R"({"root": {"width": 1, "height": 1, "children": [{"name": "#2"}, {}]}})",
                  "/root/children/1: two children are called \"#2\"");
}

TEST_F(LayoutRefusals, RefusesWhatIsTooLarge) {
    std::string place = "/root";
    json root = {{"width", 1}, {"height", 1}};
    json* parent = &root;
    for (int level = 1; level < 33; ++level) {
        (*parent)["children"] = json::array({json::object()});
        parent = &(*parent)["children"][0];
        place += level < 32 ? "/children/0" : "/children";
    }
    expectRefused(json{{"root", root}}.dump(), place + ": nested more than 32 levels deep");

    root["children"] = json(9999, json::object()); // With the root, 10000.
    EXPECT_EQ(run(json{{"root", root}}).m_exitCode, 0);
    root["children"].push_back(json::object());
    expectRefused(json{{"root", root}}.dump(), "/root/children: more than 10000 nodes");

    root["children"] = nullptr;
    root.erase("children");
    root["hSeparators"] = json(17, 1);
    expectRefused(json{{"root", root}}.dump(),
                  "/root/hSeparators: holds more than 16 lines, and no anchor names the others");

    const ProgramRun result = runText("{\"root\": " + std::string(200, '[') + std::string(200, ']') + "}");
    EXPECT_EQ(result.m_exitCode, 1);
    EXPECT_THAT(result.m_err, HasSubstr("...: nested more than 128 levels deep"));
}

TEST_F(LayoutRefusals, TellsThatAFileCannotBeRead) {
    const ProgramRun missing = runProgram(ZYR_HOST_PROGRAM, {"layout", m_directory.getPath() + "none.json"});
    EXPECT_EQ(missing.m_exitCode, 1);
    EXPECT_EQ(missing.m_out, "");
    EXPECT_THAT(missing.m_err, HasSubstr("none.json': No such file or directory"));
    EXPECT_THAT(runProgram(ZYR_HOST_PROGRAM, {"layout", m_directory.getPath()}).m_err, HasSubstr("': Is a directory"));
}

TEST_F(LayoutRefusals, TellsThatTheOutputCannotBeWritten) {
    const std::string file = m_directory.writeFile("in.json", R"({"root": {"width": 1, "height": 2}})");
    for (const std::string option : {"--keep-going", "--svg=-"}) {
        const ProgramRun result =
            runProgram("/bin/sh", {"-c", "\"$0\" layout \"$1\" \"$2\" > /dev/full", ZYR_HOST_PROGRAM, file, option});
        EXPECT_EQ(result.m_exitCode, 1);
        EXPECT_EQ(result.m_err, "zyr-host: cannot write to the standard output: No space left on device\n");
    }
}

TEST_F(LayoutRefusals, ADrawingDoesNotTakeThePlaceOfItsLayout) {
    const std::string text = R"({"root": {"width": 10, "height": 10}})";
    const std::string file = m_directory.getPath() + "layout.json";
    const std::string link = m_directory.getPath() + "link.svg";
    std::filesystem::create_symlink("layout.json", link);
    for (const std::string& drawing : {file, link}) {
        const ProgramRun result = runText(text, {"--svg", drawing});
        EXPECT_EQ(result.m_exitCode, 2);
        EXPECT_EQ(result.m_out, "");
        EXPECT_EQ(result.m_err, "zyr-host: --svg would overwrite the layout '" + drawing + "'\n");
        EXPECT_EQ(TemporaryDirectory::readFile(file), text);
    }
}

TEST_F(LayoutRefusals, RefusesWrongUsage) {
    const json layout = {{"root", {{"width", 1}, {"height", 1}}}};
    EXPECT_EQ(runProgram(ZYR_HOST_PROGRAM, {"layout"}).m_exitCode, 2);
    for (const char* scale : {"0", "-1", "1001", "nan", "inf", "1x", ""}) {
        EXPECT_EQ(run(layout, {"--scale", scale}).m_exitCode, 2) << scale;
    }
    EXPECT_EQ(run(layout, {"--view", "yz"}).m_exitCode, 2);
    EXPECT_EQ(run(layout, {"--svg"}).m_exitCode, 2);
    const ProgramRun flat = run(layout, {"--view", "xz"});
    EXPECT_EQ(flat.m_exitCode, 1);
    EXPECT_THAT(flat.m_err, HasSubstr("only boxes can be seen from another side"));
}

} // namespace
} // namespace zyr
