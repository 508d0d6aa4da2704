#include "core_module/core_module_test.h"
#include "support/zyr_invariant.h"
#include "zyr_common/geometry/zyr_path2d.h"

#include <csignal>
#include <gmock/gmock.h>
#include <sstream>
#include <unistd.h>

namespace zyr {
namespace {

using testing::ElementsAre;

template <typename T> std::string show(const ExtVector2<T>& p_point) {
    std::ostringstream text;
    text << " (" << p_point.x << "," << p_point.y << " " << int(p_point.xAnchor) << int(p_point.yAnchor) << ")";
    return text.str();
}

/// Writes down what is called.
template <typename T> class CalledPath : public Path2D<T> {
public:
    typedef ExtVector2<T> Point;

    void moveTo(const Point& p_position) override { m_calls.push_back("move" + show(p_position)); }
    void lineTo(const Point& p_position) override { m_calls.push_back("line" + show(p_position)); }
    void curveTo(const Point& p_1, const Point& p_2, const Point& p_3) override {
        m_calls.push_back("curve" + show(p_1) + show(p_2) + show(p_3));
    }
    void smooth(const Point& p_2, const Point& p_3) override { m_calls.push_back("smooth" + show(p_2) + show(p_3)); }
    void quadCurveTo(const Point& p_1, const Point& p_2) override { m_calls.push_back("quad" + show(p_1) + show(p_2)); }
    void quadSmooth(const Point& p_2) override { m_calls.push_back("quadSmooth" + show(p_2)); }
    void arc(const Vector2<T>& p_radius, const T& p_rotation, bool_t p_largeArc, bool_t p_clockwise,
             const Point& p_end) override {
        std::ostringstream text;
        text << "arc " << p_radius.x << "," << p_radius.y << " " << p_rotation << (p_largeArc ? " large" : "")
             << (p_clockwise ? " clockwise" : "") << show(p_end);
        m_calls.push_back(text.str());
    }
    void close() override { m_calls.push_back("close"); }

    std::vector<std::string> m_calls;
};

class SVGPath : public CoreModuleUpTest {
protected:
    static std::vector<std::string> read(const char* p_text) {
        CalledPath<double> path;
        path.pushBackSVGPath(p_text);
        return path.m_calls;
    }
};

TEST_F(SVGPath, ReadsEachLetterInItsAbsoluteForm) {
    EXPECT_THAT(read("M 1 2"), ElementsAre("move (1,2 00)"));
    EXPECT_THAT(read("L 1 2"), ElementsAre("line (1,2 00)"));
    EXPECT_THAT(read("H 5"), ElementsAre("line (5,0 05)"));
    EXPECT_THAT(read("V 5"), ElementsAre("line (0,5 50)"));
    EXPECT_THAT(read("C 1 2 3 4 5 6"), ElementsAre("curve (1,2 00) (3,4 00) (5,6 00)"));
    EXPECT_THAT(read("S 1 2 3 4"), ElementsAre("smooth (1,2 00) (3,4 00)"));
    EXPECT_THAT(read("Q 1 2 3 4"), ElementsAre("quad (1,2 00) (3,4 00)"));
    EXPECT_THAT(read("T 1 2"), ElementsAre("quadSmooth (1,2 00)"));
    EXPECT_THAT(read("A 5 6 7 0 1 8 9"), ElementsAre("arc 5,6 7 clockwise (8,9 00)"));
    EXPECT_THAT(read("Z"), ElementsAre("close"));
}

TEST_F(SVGPath, ReadsEachLetterInItsRelativeForm) {
    EXPECT_THAT(read("m 1 2"), ElementsAre("move (1,2 55)"));
    EXPECT_THAT(read("l 1 2"), ElementsAre("line (1,2 55)"));
    EXPECT_THAT(read("h 5"), ElementsAre("line (5,0 55)"));
    EXPECT_THAT(read("v 5"), ElementsAre("line (0,5 55)"));
    EXPECT_THAT(read("c 1 2 3 4 5 6"), ElementsAre("curve (1,2 55) (3,4 55) (5,6 55)"));
    EXPECT_THAT(read("s 1 2 3 4"), ElementsAre("smooth (1,2 55) (3,4 55)"));
    EXPECT_THAT(read("q 1 2 3 4"), ElementsAre("quad (1,2 55) (3,4 55)"));
    EXPECT_THAT(read("t 1 2"), ElementsAre("quadSmooth (1,2 55)"));
    EXPECT_THAT(read("a 5 6 7 1 0 8 9"), ElementsAre("arc 5,6 7 large (8,9 55)"));
    EXPECT_THAT(read("z"), ElementsAre("close"));
}

TEST_F(SVGPath, ReadsLettersThatTouchNumbers) {
    EXPECT_THAT(read("M10,20L30-40z"), ElementsAre("move (10,20 00)", "line (30,-40 00)", "close"));
    EXPECT_THAT(read("M.5.25zl1e1-2E-1Z"), ElementsAre("move (0.5,0.25 00)", "close", "line (10,-0.2 55)", "close"));
}

TEST_F(SVGPath, RepeatsACommandForFurtherGroups) {
    EXPECT_THAT(read("m 1 2 3 4"), ElementsAre("move (1,2 55)", "move (3,4 55)"));
    EXPECT_THAT(read("H 1 2 3"), ElementsAre("line (1,0 05)", "line (2,0 05)", "line (3,0 05)"));
    EXPECT_THAT(read("Q 1 2 3 4 5 6 7 8"), ElementsAre("quad (1,2 00) (3,4 00)", "quad (5,6 00) (7,8 00)"));
}

TEST_F(SVGPath, GoesOnBehindEachCommand) {
    EXPECT_THAT(read("L 1 2 Z"), ElementsAre("line (1,2 00)", "close"));
    EXPECT_THAT(read("zZ z"), ElementsAre("close", "close", "close"));
    EXPECT_THAT(read("M 1 2\nL\r\n3 4\rz"), ElementsAre("move (1,2 00)", "line (3,4 00)", "close"));
}

TEST_F(SVGPath, DropsAGroupThatIsCutShort) {
    EXPECT_THAT(read("M 10"), ElementsAre());
    EXPECT_THAT(read("M"), ElementsAre());
    EXPECT_THAT(read("M 1 2 3"), ElementsAre("move (1,2 00)"));
    EXPECT_THAT(read("M 1 2 -"), ElementsAre("move (1,2 00)"));
    EXPECT_THAT(read("M 1 2,"), ElementsAre("move (1,2 00)"));
    EXPECT_THAT(read("C 1 2 3 4 5 L 6 7"), ElementsAre("line (6,7 00)"));
    EXPECT_THAT(read("M L 1 2"), ElementsAre("line (1,2 00)"));
}

TEST_F(SVGPath, AppendsNothingForAnEmptyText) {
    EXPECT_THAT(read(""), ElementsAre());
    EXPECT_THAT(read("  \n"), ElementsAre());
}

TEST_F(SVGPath, TakesOneCommaOrMinusBeforeANumber) {
    EXPECT_THAT(read("M,1,2,3,4"), ElementsAre("move (1,2 00)", "move (3,4 00)"));
    EXPECT_THAT(read("M-1-2 -3 - 4"), ElementsAre("move (-1,-2 00)", "move (-3,-4 00)"));
}

TEST_F(SVGPath, ComparesTheFlagsOfAnArcWithOne) {
    EXPECT_THAT(read("A 5 5 0 1 0 9 9"), ElementsAre("arc 5,5 0 large (9,9 00)"));
    EXPECT_THAT(read("A 5 5 0 2 1.0 9 9"), ElementsAre("arc 5,5 0 clockwise (9,9 00)"));
    EXPECT_THAT(read("A 5 5 -30 -1 -1 9 9"), ElementsAre("arc 5,5 -30 (9,9 00)"));
    // Flags that touch are one number, and the group falls short by it.
    EXPECT_THAT(read("A 5 5 0 10 9 9"), ElementsAre());
}

TEST_F(SVGPath, EndsAtTextThatIsNoToken) {
    EXPECT_THAT(read("M 1 2 # L 3 4"), ElementsAre("move (1,2 00)"));
    EXPECT_THAT(read("M 1 2 L\t3 4"), ElementsAre("move (1,2 00)"));
    EXPECT_THAT(read("M +1 2"), ElementsAre());
}

TEST_F(SVGPath, AppendsToThePath) {
    Path2D<float> path;
    path.close();
    path.pushBackSVGPath("M 0.1 2 z");
    ASSERT_EQ(path.getCommands().getSize(), 3u);
    auto it = path.getCommands().beginConst();
    ++it;
    const auto& move = static_cast<const MoveToPath2DCommand<float>&>(**it);
    EXPECT_EQ(move.position.x, 0.1f);
    path.pushBackSVGPath("z");
    EXPECT_EQ(path.getCommands().getSize(), 4u);
}

/// The alarm ends the child: the call never comes back.
void readUntilAlarm(const char* p_text) {
    Path2D<double> path;
    alarm(1);
    path.pushBackSVGPath(p_text);
}

typedef SVGPath SVGPathDeathTest;

TEST_F(SVGPathDeathTest, StandsStillWhereACommandIsMissing) {
    EXPECT_EXIT(readUntilAlarm("10"), testing::KilledBySignal(SIGALRM), "");
    EXPECT_EXIT(readUntilAlarm("z 10 20"), testing::KilledBySignal(SIGALRM), "");
    EXPECT_EXIT(readUntilAlarm("x"), testing::KilledBySignal(SIGALRM), "");
    // A comma and a minus are one too many: the minus ends the group and is no command.
    EXPECT_EXIT(readUntilAlarm("M 1 ,- 2"), testing::KilledBySignal(SIGALRM), "");
}

TEST(SVGPathWithoutModulesDeathTest, AMissingLexerIsABrokenInvariant) {
    zyr_setApplicationData(nullptr);
    Path2D<double> path;
    ZYR_EXPECT_INVARIANT(path.pushBackSVGPath("M 1 2"), "assert\\(lexer != NULL\\)");
}

} // namespace
} // namespace zyr
