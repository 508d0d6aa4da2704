// "stream --html", "stream --report" and "report": the pages that come of runs.
#include "support/zyr_private_mounts.h"
#include "support/zyr_temporary_directory.h"
#include "zyr_program_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sys/mount.h>

namespace zyr {

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

constexpr const char* PYTHON = "/usr/bin/python3";

class ReportCommand : public testing::Test {
protected:
    void SetUp() override { setenv("XDG_STATE_HOME", path("state").c_str(), 1); }

    std::string path(const std::string& p_name) const { return m_directory.getPath() + p_name; }
    std::string read(const std::string& p_name) const { return TemporaryDirectory::readFile(path(p_name)); }

    void write(const std::string& p_name, const std::string& p_text) const {
        std::ofstream(path(p_name), std::ios::binary) << p_text;
    }

    static void run(const std::vector<std::string>& p_arguments) {
        const ProgramRun run = runProgram(ZYR_HOST_PROGRAM, p_arguments);
        EXPECT_EQ(run.m_exitCode, 0) << run.m_err;
    }

    /// A short report, made once for all tests of a process.
    json makeReport() const {
        run({"stream", "generate:64x48@10:6", "--codec", "mpeg1video", "--report", path("made.json")});
        return json::parse(read("made.json"), nullptr, false);
    }

    /// What "report" says of a file that it does not take.
    std::string refusalOf(const json& p_report) const {
        write("bad.json", p_report.dump());
        const ProgramRun run = runProgram(ZYR_HOST_PROGRAM, {"report", path("bad.json"), "-o", path("bad.html")});
        EXPECT_EQ(run.m_exitCode, 1);
        EXPECT_EQ(run.m_out, "");
        EXPECT_FALSE(std::filesystem::exists(path("bad.html")));
        const std::string beginning = "zyr-host: " + path("bad.json") + ": ";
        EXPECT_EQ(run.m_err.substr(0, beginning.size()), beginning);
        return run.m_err.substr(std::min(beginning.size(), run.m_err.size()));
    }

    TemporaryDirectory m_directory;
};

} // namespace

TEST_F(ReportCommand, TheReportHasARowForEachFrame) {
    run({"stream", "generate:64x48@10:6", "--resize-at", "3:32x32", "--report", path("a.json")});
    const json report = json::parse(read("a.json"), nullptr, false);
    const json& rows = report["series"]["rows"];
    ASSERT_EQ(rows.size(), 6u);
    for (size_t i = 0; i < rows.size(); i++) {
        EXPECT_EQ(rows[i][0], i);
        EXPECT_EQ(rows[i][1], 1);
        EXPECT_NEAR(rows[i][2].get<double>(), double(i) / 10, 1e-6);
        EXPECT_EQ(rows[i][3], i < 3 ? 64 : 32);
        EXPECT_EQ(rows[i][4], i < 3 ? 48 : 32);
        EXPECT_EQ(rows[i][5], i == 0 || i == 3 ? 1 : 0) << i;
        EXPECT_GT(rows[i][9].get<double>(), 20);
    }
    EXPECT_EQ(report["worst_frames"], json::array());
    EXPECT_EQ(report["negotiation"].back(), "chosen: libvpx-vp9 with vp9");
    EXPECT_EQ(report["machine"][0]["name"], "processor");
}

TEST_F(ReportCommand, KeepsTheReportThatIsPrintedShort) {
    const ProgramRun run = runProgram(ZYR_HOST_PROGRAM, {"stream", "generate:64x48:2", "--json"});
    const json report = json::parse(run.m_out, nullptr, false);
    for (const char* const key : {"series", "worst_frames", "negotiation", "machine"}) {
        EXPECT_FALSE(report.contains(key)) << key;
    }
}

TEST_F(ReportCommand, WorstFramesAreKeptAsPictures) {
    run({"stream", "generate:64x48:30", "--worst", "2", "--report", path("a.json")});
    const json worst = json::parse(read("a.json"), nullptr, false)["worst_frames"];
    ASSERT_EQ(worst.size(), 2u);
    EXPECT_LE(worst[0]["psnr_db"].get<double>(), worst[1]["psnr_db"].get<double>());
    for (const char* const key : {"source", "result", "difference"}) {
        EXPECT_THAT(worst[0][key].get<std::string>(), testing::StartsWith("data:image/png;base64,iVBORw0KGgo")) << key;
    }
}

TEST_F(ReportCommand, APageOfARunHasAllOfIt) {
    run({"stream", "generate:64x48@10:20", "--resize-at", "7:32x32", "--html", path("page.html")});
    const std::string page = read("page.html");
    for (const char* const part :
         {"<h2>Figures</h2>", "<h2>Over time</h2>", "<h2>How many frames</h2>", "<h2>Latency</h2>",
          "<h2>Worst frames</h2>", "<h2>Runs</h2>", "<h2>Negotiation</h2>", "<h2>Machine</h2>", "<td>libvpx-vp9</td>",
          ">32x32</text>", "<li>chosen: libvpx-vp9 with vp9</li>",
          "<img alt=\"difference, eight times as strong of frame", "<path class=\"key\""}) {
        EXPECT_THAT(page, HasSubstr(part));
    }
    EXPECT_THAT(page, Not(HasSubstr("<script")));
    EXPECT_THAT(page, Not(HasSubstr("http")));
}

TEST_F(ReportCommand, APageGoesToTheStandardOutput) {
    const ProgramRun run = runProgram(ZYR_HOST_PROGRAM, {"stream", "generate:64x48:2", "--html", "-"});
    EXPECT_EQ(run.m_exitCode, 0);
    EXPECT_THAT(run.m_out, testing::StartsWith("<!DOCTYPE html>"));
    EXPECT_THAT(run.m_out, testing::EndsWith("</html>\n"));
}

TEST_F(ReportCommand, RunsAreComparedWithTheFirst) {
    json first = makeReport();
    json second = first;
    second["bytes"] = first["bytes"].get<int>() * 3;
    write("a.json", first.dump());
    write("b.json", second.dump());
    run({"report", path("a.json"), path("b.json"), "-o", path("page.html")});
    const std::string page = read("page.html");
    EXPECT_THAT(page, HasSubstr("<td>" + second["bytes"].dump() + " (+200.0 %)</td>"));
    EXPECT_THAT(page, HasSubstr("class=\"line c1\""));
    EXPECT_THAT(page, HasSubstr("class=\"bar c1\""));
}

TEST_F(ReportCommand, ReportsOfOlderProgramsHaveFiguresAlone) {
    json old = makeReport();
    for (const char* const key : {"series", "worst_frames", "negotiation", "machine"}) {
        old.erase(key);
    }
    write("old.json", old.dump());
    run({"report", path("old.json"), "-o", path("page.html")});
    EXPECT_THAT(read("page.html"), HasSubstr("<h2>Figures</h2>"));
    EXPECT_THAT(read("page.html"), Not(HasSubstr("<h2>Over time</h2>")));
}

TEST_F(ReportCommand, TextsOfAReportStayTexts) {
    json report = makeReport();
    report["source"] = "<script>alert(1)</script>";
    report["notes"] = {"<img src=x onerror=alert(1)>"};
    write("a.json", report.dump());
    run({"report", path("a.json"), "-o", path("page.html")});
    EXPECT_THAT(read("page.html"), HasSubstr("&lt;script&gt;alert(1)&lt;/script&gt;"));
    EXPECT_THAT(read("page.html"), Not(HasSubstr("<script")));
    EXPECT_THAT(read("page.html"), Not(HasSubstr("<img")));
}

TEST_F(ReportCommand, TellsWhatIsWrongWithAReport) {
    const json report = makeReport();
    const auto with = [&](const char* p_pointer, const json& p_value) {
        json changed = report;
        changed[json::json_pointer(p_pointer)] = p_value;
        return changed;
    };
    EXPECT_EQ(refusalOf(with("/schema_version", 9)), "/schema_version: only version 1 is known to this program\n");
    EXPECT_EQ(refusalOf(with("/source", 7)), "/source: a text is expected\n");
    EXPECT_EQ(refusalOf(with("/frames", -1)), "/frames: a whole number is expected\n");
    EXPECT_EQ(refusalOf(with("/fps", "fast")), "/fps: a number is expected\n");
    EXPECT_EQ(refusalOf(with("/series/rows/2", json::array())),
              "/series/rows/2: a value for each column is expected\n");
    EXPECT_EQ(refusalOf(with("/series/rows/2/1", 0)), "/series/rows/2: a point of no frames\n");
    EXPECT_EQ(refusalOf(with("/series/columns/0", "number")),
              "/series/columns: these are other columns than this program knows\n");
    json without = report;
    without.erase("codec");
    EXPECT_EQ(refusalOf(without), "/codec: it is missing\n");
    EXPECT_EQ(refusalOf(json::array()), "the whole: an object is expected\n");
}

TEST_F(ReportCommand, TakesNoPictureFromElsewhere) {
    json report = makeReport();
    report["worst_frames"] = {{{"frame", 1},
                               {"psnr_db", 20},
                               {"ssim", 0.5},
                               {"width", 64},
                               {"height", 48},
                               {"source", "https://example.org/a.png"},
                               {"result", ""},
                               {"difference", ""}}};
    EXPECT_EQ(refusalOf(report), "/worst_frames/0/source: a PNG picture in base64 is expected\n");
}

TEST_F(ReportCommand, OverwritesNoReport) {
    write("a.json", "{}");
    const ProgramRun run = runProgram(ZYR_HOST_PROGRAM, {"report", path("a.json"), "-o", path("a.json")});
    EXPECT_EQ(run.m_exitCode, 2);
    EXPECT_EQ(run.m_err, "zyr-host: --output would overwrite the report '" + path("a.json") + "'\n");
    EXPECT_EQ(read("a.json"), "{}");
}

TEST_F(ReportCommand, AFullDiskLeavesThePageThatWasThere) {
    ZYR_NEEDS_PRIVATE_SYSTEM();
    const json report = makeReport();
    runInChild([&] {
        enterPrivateMounts();
        ASSERT_TRUE(std::filesystem::create_directory(path("small")));
        ASSERT_EQ(mount("tmpfs", path("small").c_str(), "tmpfs", 0, "size=8k"), 0);
        write("small/page.html", "old");
        for (const char* name : {"small/page.html", "small/other.html"}) {
            const ProgramRun run = runProgram(ZYR_HOST_PROGRAM, {"report", path("made.json"), "-o", path(name)});
            EXPECT_EQ(run.m_exitCode, 1);
            EXPECT_EQ(run.m_err, "zyr-host: cannot write '" + path(name) + "': No space left on device\n");
        }
        EXPECT_EQ(read("small/page.html"), "old");
        EXPECT_EQ(
            std::distance(std::filesystem::directory_iterator(path("small")), std::filesystem::directory_iterator()), 1)
            << "nothing is left beside it";
        EXPECT_EQ(umount(path("small").c_str()), 0);
    });
}

TEST_F(ReportCommand, APageTakesThePlaceOfAnOldOneBehindALinkWithItsPermissions) {
    makeReport();
    write("real.html", "old");
    std::filesystem::permissions(path("real.html"),
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    std::filesystem::create_symlink("real.html", path("page.html"));
    run({"report", path("made.json"), "-o", path("page.html")});
    EXPECT_TRUE(std::filesystem::is_symlink(path("page.html")));
    EXPECT_THAT(read("real.html"), testing::StartsWith("<!DOCTYPE html>"));
    EXPECT_EQ(std::filesystem::status(path("real.html")).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(ReportCommand, AFullDeviceIsNamed) {
    makeReport();
    const ProgramRun run = runProgram(ZYR_HOST_PROGRAM, {"report", path("made.json"), "-o", "/dev/full"});
    EXPECT_EQ(run.m_exitCode, 1);
    EXPECT_EQ(run.m_err, "zyr-host: cannot write '/dev/full': No space left on device\n");
}

TEST_F(ReportCommand, TakesNoFileThatIsTooLarge) {
    write("large.json", "{");
    std::filesystem::resize_file(path("large.json"), uint64_t(20) << 30);
    for (const std::string& file : {path("large.json"), std::string("/dev/zero")}) {
        for (const std::vector<std::string>& arguments :
             {std::vector<std::string>{"report", file, "-o", path("page.html")}, {"layout", file}}) {
            const ProgramRun run = runProgram(ZYR_HOST_PROGRAM, arguments);
            EXPECT_EQ(run.m_exitCode, 1);
            EXPECT_EQ(run.m_err, "zyr-host: cannot read '" + file + "': it has more than 256 MiB\n");
            EXPECT_EQ(run.m_out, "");
        }
    }
    EXPECT_FALSE(std::filesystem::exists(path("page.html")));
}

TEST_F(ReportCommand, ABrowserShowsThePageAndComplainsOfNothing) {
    ASSERT_EQ(runProgram(PYTHON, {"-c", "import websockets"}).m_exitCode, 0) << "python3-websockets steers the browser";
    run({"stream", "generate:320x180:40", "--resize-at", "20:160x90", "--html", path("page.html")});
    const ProgramRun run = runProgram(PYTHON, {std::string(ZYR_REPORT_CHECKS) + "/check_page.py", path("page.html")});
    EXPECT_EQ(run.m_exitCode, 0) << run.m_err;
    EXPECT_EQ(run.m_out, "9 pictures\n");
}

} // namespace zyr
