// The path command: what it prints, what it refuses and where it says the text is wrong.
#include "host/zyr_framework.h"
#include "host/zyr_path_check.h"
#include "host/zyr_path_outline.h"

#include "support/zyr_temporary_directory.h"
#include "zyr_program_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <random>
#include <unistd.h>

namespace zyr {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class PathCommand : public testing::Test {
protected:
    void SetUp() override { setenv("XDG_STATE_HOME", (m_directory.getPath() + "state").c_str(), 1); }

    static ProgramRun run(const std::vector<std::string>& p_arguments) {
        std::vector<std::string> arguments = {"path"};
        arguments.insert(arguments.end(), p_arguments.begin(), p_arguments.end());
        return runProgram(ZYR_HOST_PROGRAM, arguments);
    }

    static json commandsOf(const std::string& p_text) {
        const ProgramRun result = run({p_text});
        EXPECT_EQ(result.m_exitCode, 0) << result.m_err;
        EXPECT_EQ(result.m_err, "");
        return json::parse(result.m_out, nullptr, false)["commands"];
    }

    static std::string outlineOf(const std::string& p_text) {
        return json::parse(run({p_text}).m_out, nullptr, false)["outline"];
    }

    static void expectRefused(const std::string& p_text, const std::string& p_message) {
        SCOPED_TRACE(p_text);
        const ProgramRun result = run({p_text});
        EXPECT_EQ(result.m_exitCode, 1);
        EXPECT_EQ(result.m_out, "");
        EXPECT_EQ(result.m_err.substr(0, result.m_err.find('\n')), "zyr-host: path, " + p_message);
    }

    TemporaryDirectory m_directory;
};

TEST_F(PathCommand, PrintsTheCommandsWithTheirAnchors) {
    const json commands = commandsOf("M10,20h-5z");
    ASSERT_EQ(commands.size(), 3u);
    EXPECT_EQ(commands[0]["command"], "moveTo");
    EXPECT_EQ(commands[0]["id"], 1);
    EXPECT_EQ(commands[0]["position"], json({{"x", 10}, {"y", 20}, {"xAnchor", "LEFT"}, {"yAnchor", "TOP"}}));
    EXPECT_EQ(commands[1]["command"], "lineTo");
    EXPECT_EQ(commands[1]["position"], json({{"x", -5}, {"y", 0}, {"xAnchor", "PREV_LEFT"}, {"yAnchor", "PREV_TOP"}}));
    EXPECT_EQ(commands[2], json({{"command", "close"}, {"id", 255}}));
}

TEST_F(PathCommand, PrintsTheFieldsOfEachCommand) {
    const json commands = commandsOf("C 1 2 3 4 5 6 S 1 2 3 4 Q 1 2 3 4 T 1 2 A 5 6 30 1 0 7 8");
    ASSERT_EQ(commands.size(), 5u);
    EXPECT_EQ(commands[0]["p2"]["x"], 3);
    EXPECT_EQ(commands[1]["p3"]["y"], 4);
    EXPECT_EQ(commands[2]["p1"]["x"], 1);
    EXPECT_EQ(commands[3]["p2"]["y"], 2);
    EXPECT_EQ(commands[4]["radius"], json({{"x", 5}, {"y", 6}}));
    EXPECT_EQ(commands[4]["rotation"], 30);
    EXPECT_EQ(commands[4]["largeArc"], true);
    EXPECT_EQ(commands[4]["clockwise"], false);
    EXPECT_EQ(commands[4]["endArc"]["x"], 7);
}

TEST_F(PathCommand, RefusesNumbersThatAreTooLarge) {
    expectRefused("M10 3e1530", "line 1, column 5: '3e1530' is too large a number");
    expectRefused("M-9e308 0", "line 1, column 3: '9e308' is too large a number");
}

TEST_F(PathCommand, RefusesNumbersBeyondTheRangeInEverySpelling) {
    for (const std::string& number :
         {std::string("1e400"), std::string("1E400"), std::string("1e+400"), std::string(".1e400"),
          std::string("1e99999999999"), "1" + std::string(400, '0'), "1" + std::string(400, '0') + ".5"}) {
        const ProgramRun result = run({"M " + number + " 0"});
        EXPECT_EQ(result.m_exitCode, 1) << number;
        EXPECT_THAT(result.m_err, HasSubstr(" is too large a number\n")) << number;
        EXPECT_EQ(result.m_out, "") << number;
    }
    EXPECT_EQ(run({"M 1e-400 1e308"}).m_exitCode, 0);
}

TEST_F(PathCommand, CutsLongTexts) {
    const ProgramRun result = run({"M 0 0 L " + std::string(5000, '1') + "e400 1 " + std::string(3000, '2')});
    EXPECT_THAT(result.m_err, HasSubstr("'" + std::string(40, '1') + "...' is too large a number"));
    EXPECT_LT(result.m_err.size(), 400u);
}

TEST_F(PathCommand, MasksWhatATerminalWouldActOn) {
    const ProgramRun result = run({"M 0 0 \xc2\x9b\xff 1"});
    EXPECT_EQ(result.m_exitCode, 1);
    EXPECT_EQ(result.m_err.find('\x9b'), std::string::npos);
    EXPECT_EQ(result.m_err.find('\xff'), std::string::npos);
    EXPECT_THAT(result.m_err, HasSubstr("M 0 0 ?"));
}

TEST_F(PathCommand, WarnsOfPairsBehindAMoveThatAreNoLines) {
    const ProgramRun result = run({"M 0 0 5 5 m 1 1 2 2"});
    EXPECT_EQ(result.m_exitCode, 0);
    EXPECT_EQ(result.m_err, "zyr-host: path, line 1, column 7: further pairs behind M are moves here, not lines\n");
    EXPECT_EQ(run({"M 0 0 L 5 5 6 6"}).m_err, "");
}

TEST_F(PathCommand, TellsThatPointsLeaveTheRangeOfNumbers) {
    for (const auto& [text, message] :
         {std::pair("m1e308 0m1e308 0", "the path leads beyond the range of numbers"),
          std::pair("M-1e308 0L1e308 0", "the path is larger than the range of numbers")}) {
        const ProgramRun result = run({text});
        EXPECT_EQ(result.m_exitCode, 1);
        EXPECT_EQ(result.m_out, "");
        EXPECT_EQ(result.m_err, std::string("zyr-host: ") + message + "\n");
    }
}

TEST_F(PathCommand, ResolvesTheOutline) {
    EXPECT_EQ(outlineOf("m 10 10 h 80 V 50 l -20 5 z l 1 1"), "M 10 10 L 90 10 L 90 50 L 70 55 Z L 11 11");
    EXPECT_EQ(outlineOf("M 1 1 c 1 0 2 0 3 0 s 1 1 2 2 q 1 1 2 0 t 1 1 a 4 5 6 0 1 7 8"),
              "M 1 1 C 2 1 3 1 4 1 S 5 2 6 3 Q 7 4 8 3 T 9 4 A 4 5 6 0 1 16 12");
    EXPECT_EQ(outlineOf("m 1 2 3 4"), "M 1 2 M 4 6");
    EXPECT_EQ(outlineOf(""), "");
}

TEST_F(PathCommand, WritesTheOutlineAsSVG) {
    const std::string file = m_directory.getPath() + "outline.svg";
    const ProgramRun result = run({"M 0 0 h 20 v 10 z", "--svg", file});
    EXPECT_EQ(result.m_exitCode, 0) << result.m_err;
    EXPECT_FALSE(json::parse(result.m_out, nullptr, false).is_discarded());
    const std::string expected = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"-1 -1 22 12\">\n"
                                 "  <path d=\"M 0 0 L 20 0 L 20 10 Z\" fill=\"none\" stroke=\"black\" "
                                 "stroke-width=\"0.1\"/>\n</svg>\n";
    EXPECT_EQ(TemporaryDirectory::readFile(file), expected);
    EXPECT_EQ(run({"M 0 0 h 20 v 10 z", "--svg", "-"}).m_out, expected);
}

TEST_F(PathCommand, TellsThatAFileCannotBeWritten) {
    const ProgramRun result = run({"z", "--svg", m_directory.getPath() + "none/outline.svg"});
    EXPECT_EQ(result.m_exitCode, 1);
    EXPECT_THAT(result.m_err, HasSubstr("none/outline.svg': No such file or directory"));
}

TEST_F(PathCommand, TellsWhereACommandIsMissing) {
    expectRefused("10", "line 1, column 1: a command letter must stand here, not '10'");
    expectRefused("M 1 2 z 5 6", "line 1, column 9: a command letter must stand here, not '5'");
    expectRefused("M 1 2 x", "line 1, column 7: a command letter must stand here, not 'x'");
    expectRefused("z -1", "line 1, column 3: a command letter must stand here, not '-'");
    expectRefused("z,", "line 1, column 2: a command letter must stand here, not ','");
}

TEST_F(PathCommand, TellsWhereNumbersAreMissing) {
    expectRefused("M", "line 1, column 2: M takes 2 numbers at a time, and here are 0");
    expectRefused("M 1 2 3", "line 1, column 8: M takes 2 numbers at a time, and here are 1");
    expectRefused("M 1 L 2 3", "line 1, column 5: M takes 2 numbers at a time, and here are 1");
    expectRefused("h z", "line 1, column 3: h takes 1 number, and here are 0");
    expectRefused("M 1 ,- 2", "line 1, column 6: a number must follow on ','");
    expectRefused("M 1 2,", "line 1, column 7: a number must follow on ','");
    expectRefused("M 1 2 - z", "line 1, column 9: a number must follow on '-'");
}

TEST_F(PathCommand, TellsWhereAFlagIsNone) {
    expectRefused("A 5 5 0 10 9 9", "line 1, column 9: an arc's flag is 0 or 1, set apart from what follows, not '10'");
    expectRefused("a 5 5 0 1 -1 9 9",
                  "line 1, column 12: an arc's flag is 0 or 1, set apart from what follows, not '1'");
}

TEST_F(PathCommand, TellsWhatHasNoPlaceInAPath) {
    expectRefused("M 1 2\tL 3 4", "line 1, column 6: a tab has no place in a path");
    expectRefused("M 1 2 #", "line 1, column 7: '#' has no place in a path");
    expectRefused("M +1 2", "line 1, column 3: '+' has no place in a path");
    expectRefused("M 1 2\x01", "line 1, column 6: byte 0x01 has no place in a path");
}

TEST_F(PathCommand, ShowsTheLineWithAMark) {
    EXPECT_EQ(run({"M 1 2\n  L 3 x\nz"}).m_err,
              "zyr-host: path, line 2, column 7: L takes 2 numbers at a time, and here are 1\n"
              "    L 3 x\n"
              "        ^\n");
}

TEST_F(PathCommand, NeedsAText) {
    EXPECT_EQ(run({}).m_exitCode, 2);
}

TEST_F(PathCommand, NeedsTheCoreModule) {
    EXPECT_EQ(run({"z", "--modules", m_directory.getPath()}).m_exitCode, 4);
}

TEST(PathCheck, LetsNoTextThroughThatTheReaderStandsStillAt) {
    TemporaryDirectory directory;
    host::FrameworkOptions options;
    options.m_moduleDirectory = ZYR_MODULE_DIRECTORY;
    options.m_logDirectory = directory.getPath();
    options.m_logLevel = ZYR_LOG_LEVEL_ERROR;
    options.m_coreOnly = true;
    host::Framework framework(options);
    const unsigned seed = 21;
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const std::string alphabet = "MmLhVzZA01.-, 25e\n\tx#";
    uint32_t accepted = 0;
    alarm(60); // Ends the program if the reader never comes back.
    for (int round = 0; round < 60000; ++round) {
        std::string text(1 + random() % 10, ' ');
        for (char& byte : text) {
            byte = alphabet[random() % alphabet.size()];
        }
        try {
            host::checkPath(text);
        } catch (const host::PathError&) {
            continue;
        }
        ++accepted;
        Path2D<double> path;
        path.pushBackSVGPath(String(text.c_str()));
        const bool blank = text.find_first_not_of(" \n") == std::string::npos;
        EXPECT_EQ(path.getCommands().isEmpty(), blank) << text;
    }
    alarm(0);
    EXPECT_GT(accepted, 500u);
}

// ---- what a drawing covers ------------------------------------------------------------------------------------------

typedef ExtVector2<double> Point;

Point at(double p_x, double p_y) {
    return {{p_x, p_y}, ZYR_POSITION_X_LEFT, ZYR_POSITION_Y_TOP};
}

void expectCovers(const host::PathOutline& p_outline, double p_left, double p_top, double p_right, double p_bottom) {
    EXPECT_NEAR(p_outline.m_left, p_left, 0.02);
    EXPECT_NEAR(p_outline.m_top, p_top, 0.02);
    EXPECT_NEAR(p_outline.m_right, p_right, 0.02);
    EXPECT_NEAR(p_outline.m_bottom, p_bottom, 0.02);
}

TEST(PathOutline, CoversTheBulgeOfAnArc) {
    // Half a circle of radius 10 between (0, 0) and (20, 0), over either side.
    for (bool_t clockwise : {0, 1}) {
        Path2D<double> path;
        path.moveTo(at(0, 0));
        path.arc({10, 10}, 0, 0, clockwise, at(20, 0));
        expectCovers(host::resolveOutline(path), 0, clockwise ? -10 : 0, 20, clockwise ? 0 : 10);
    }
}

TEST(PathOutline, CoversTheLargerPartOfAnArc) {
    // A quarter and three quarters of a circle of radius 10 around (10, 0).
    Path2D<double> small;
    small.moveTo(at(0, 0));
    small.arc({10, 10}, 0, 0, 1, at(10, -10));
    expectCovers(host::resolveOutline(small), 0, -10, 10, 0);
    Path2D<double> large;
    large.moveTo(at(0, 0));
    large.arc({10, 10}, 0, 1, 0, at(10, -10));
    expectCovers(host::resolveOutline(large), 0, -10, 20, 10);
}

TEST(PathOutline, TurnsTheAxesOfAnArc) {
    // An ellipse of 20 by 10 upright: half of it, from its top to its bottom, reaches 10 aside.
    Path2D<double> path;
    path.moveTo(at(0, -20));
    path.arc({20, 10}, 90, 0, 1, at(0, 20));
    expectCovers(host::resolveOutline(path), 0, -20, 10, 20);
}

TEST(PathOutline, LetsRadiiGrowThatAreTooSmall) {
    Path2D<double> path;
    path.moveTo(at(0, 0));
    path.arc({1, 1}, 0, 0, 1, at(20, 0));
    expectCovers(host::resolveOutline(path), 0, -10, 20, 0);
    path.arc({0, 5}, 0, 0, 1, at(40, 0));
    path.arc({5, 5}, 0, 0, 1, at(40, 0));
    expectCovers(host::resolveOutline(path), 0, -10, 40, 0);
}

TEST(PathOutline, CoversMirroredControlPoints) {
    Path2D<double> path;
    path.moveTo(at(0, 0));
    path.quadCurveTo(at(5, 10), at(10, 0));
    path.quadSmooth(at(20, 0));
    expectCovers(host::resolveOutline(path), 0, -10, 20, 10);
    path.quadSmooth(at(30, 0));
    expectCovers(host::resolveOutline(path), 0, -10, 30, 10);
}

} // namespace
} // namespace zyr
