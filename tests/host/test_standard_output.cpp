// What goes to the standard output, and where the log goes.

#include "host/zyr_log_place.h"
#include "host/zyr_standard_output.h"

#include "support/zyr_temporary_directory.h"
#include "zyr_program_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/file.h>
#include <unistd.h>

namespace zyr {

namespace {

using nlohmann::json;
using testing::HasSubstr;
namespace fs = std::filesystem;

class StandardOutput : public testing::Test {
protected:
    void SetUp() override { setenv("XDG_STATE_HOME", m_directory.getPath().c_str(), 1); }

    std::string getStatePlace() const { return m_directory.getPath() + "zyr-host/log/"; }

    /// The names of log files, in their order.
    static std::vector<std::string> listLogs(const std::string& p_directory) {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(p_directory)) {
            names.push_back(entry.path().filename());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    /// So many log files, the first one the oldest.
    static void makeLogs(const std::string& p_directory, int p_count) {
        fs::create_directories(p_directory);
        for (int i = 0; i < p_count; i++) {
            const std::string path = p_directory + "zyr-host_" + std::to_string(100 + i) + ".log";
            std::ofstream(path) << i;
            fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(1000 - i));
        }
    }

    TemporaryDirectory m_directory;
};

} // namespace

TEST_F(StandardOutput, HoldsDataAloneWhereTheLogCannotBeWritten) {
    for (const char* place : {"/proc/nowhere", "/dev/null/log", "/proc/self"}) {
        const ProgramRun run = runProgram(ZYR_HOST_PROGRAM, {"inspect", "--json", "--log-dir", place});
        EXPECT_TRUE(json::accept(run.m_out)) << run.m_out;
        EXPECT_THAT(run.m_err, HasSubstr("zyr-host: the log cannot be written in '" + std::string(place) + "/' ("));
        EXPECT_THAT(run.m_err, HasSubstr("); it goes to " + getStatePlace() + "\n"));
        EXPECT_EQ(std::count(run.m_err.begin(), run.m_err.end(), '\n'), 1);
    }
    EXPECT_FALSE(listLogs(getStatePlace()).empty());
}

TEST_F(StandardOutput, TakesARelativeLogDirectoryFromTheCurrentOne) {
    const fs::path before = fs::current_path();
    fs::current_path(m_directory.getPath());
    const ProgramRun run = runProgram(ZYR_HOST_PROGRAM, {"inspect", "--json", "--log-dir", "logs/of/mine"});
    fs::current_path(before);
    EXPECT_TRUE(json::accept(run.m_out)) << run.m_out;
    EXPECT_EQ(run.m_err, "");
    EXPECT_FALSE(listLogs(m_directory.getPath() + "logs/of/mine").empty());
}

TEST_F(StandardOutput, IsNotLostWithoutAWord) {
    std::ofstream(m_directory.getPath() + "layout.json") << R"({"root": {"width": 10, "height": 10}})";
    for (const std::string& command :
         {std::string("--help"), std::string("--version"), std::string("stream --help"), std::string("inspect"),
          std::string("inspect --json"), std::string("session"), std::string("path 'M 0 0'"),
          "layout " + m_directory.getPath() + "layout.json"}) {
        const ProgramRun run = runProgram("/bin/sh", {"-c", ZYR_HOST_PROGRAM " " + command + " > /dev/full"});
        EXPECT_EQ(run.m_exitCode, 1) << command;
        EXPECT_THAT(run.m_err, HasSubstr("zyr-host: cannot write to the standard output: No space left on device\n"))
            << command;
        EXPECT_EQ(runProgram("/bin/sh", {"-c", ZYR_HOST_PROGRAM " " + command + " >&-"}).m_exitCode, 1) << command;
    }
}

TEST_F(StandardOutput, LogsOfManyRunsArePruned) {
    makeLogs(getStatePlace(), 50);
    EXPECT_EQ(runProgram(ZYR_HOST_PROGRAM, {"inspect"}).m_exitCode, 0);
    const std::vector<std::string> names = listLogs(getStatePlace());
    EXPECT_EQ(names.size(), 32u);
    EXPECT_EQ(names.front(), "zyr-host_119.log") << "the newest 31 stay";
}

TEST_F(StandardOutput, LogsThatAProcessHoldsStay) {
    makeLogs(getStatePlace(), 4);
    std::ofstream(getStatePlace() + "notes.txt") << "mine";
    std::ofstream(getStatePlace() + "other_100.log") << "mine";
    const int held = open((getStatePlace() + "zyr-host_100.log").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(held, LOCK_SH | LOCK_NB), 0);
    host::pruneLogFiles(getStatePlace(), 2);
    close(held);
    EXPECT_THAT(listLogs(getStatePlace()), testing::ElementsAre("notes.txt", "other_100.log", "zyr-host_100.log",
                                                                "zyr-host_102.log", "zyr-host_103.log"));
    host::pruneLogFiles(getStatePlace() + "nowhere/", 2);
}

TEST(MaskControls, LeavesNothingThatATerminalActsOn) {
    EXPECT_EQ(host::maskControls("plain \u00e4\u20ac\U0001f600"), "plain \u00e4\u20ac\U0001f600");
    EXPECT_EQ(host::maskControls("a\x1b[2Jb\n\t\x7f"), "a?[2Jb???");
    EXPECT_EQ(host::maskControls("\xc2\x9b|\xc2\x80|\xc2\xa0"), "?|?|\xc2\xa0");
    EXPECT_EQ(host::maskControls("\xff|\xc0\xaf|\xed\xa0\x80|\xe2\x82|\xf5\x80\x80\x80"), "?|??|???|??|????");
    EXPECT_EQ(host::maskControls("\xe2\x80\xae\xe2\x80\xa8"), "??") << "writing from right to left, line ends";
}

} // namespace zyr
