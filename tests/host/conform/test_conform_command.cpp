// The conformance kit on modules that keep the rules, and what it says.

#include "host/zyr_program_run.h"
#include "support/zyr_temporary_directory.h"
#include "zyr_conform_report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zyr {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

const std::string FAKES = ZYR_FAKE_PLUGINS;

ProgramRun run(std::vector<std::string> p_arguments) {
    p_arguments.insert(p_arguments.begin(), "conform");
    return runProgram(ZYR_HOST_PROGRAM, p_arguments);
}

void expectAllToPass(const ConformReport& p_report) {
    EXPECT_EQ(p_report.m_exitCode, 0);
    EXPECT_FALSE(p_report.m_results.empty());
    EXPECT_EQ(p_report.list("passed").size(), p_report.m_results.size()) << p_report.describe();
}

} // namespace

TEST(ConformCommand, PassesTheFFmpegPlugin) {
    const ConformReport report = conform(ZYR_FFMPEG_PLUGIN, listQuickCases());
    expectAllToPass(report);
    EXPECT_EQ(report.m_results.size(), 34u);
}

TEST(ConformCommand, PassesTheBlocksPlugin) {
    expectAllToPass(conform(ZYR_BLOCKS_PLUGIN, listQuickCases()));
}

TEST(ConformCommand, PassesTheFFmpegPluginInAllSizes) {
    expectAllToPass(conform(ZYR_FFMPEG_PLUGIN, {"--only", "sizes", "--timeout", "280"}));
}

TEST(ConformCommand, PassesTheBlocksPluginInAllSizes) {
    expectAllToPass(conform(ZYR_BLOCKS_PLUGIN, {"--only", "sizes", "--timeout", "280"}));
}

TEST(ConformCommand, OpensTheFFmpegPluginAThousandTimes) {
    expectAllToPass(conform(ZYR_FFMPEG_PLUGIN, {"--only", "thousand-openings", "--timeout", "280"}));
}

TEST(ConformCommand, OpensTheBlocksPluginAThousandTimes) {
    expectAllToPass(conform(ZYR_BLOCKS_PLUGIN, {"--only", "thousand-openings", "--timeout", "280"}));
}

TEST(ConformCommand, PrintsTestsThatAnyHarnessReads) {
    const ProgramRun result = run({FAKES + "lacks_export.so", "--only", "load", "--only", "exports", "--only", "guid"});
    EXPECT_EQ(result.m_exitCode, 1);
    EXPECT_THAT(result.m_out, StartsWith("TAP version 14\n1..3\nok 1 - load\n  ---\n  rule: \"A host opens the file"));
    EXPECT_THAT(result.m_out, HasSubstr("  result: passed\n  ...\nnot ok 2 - exports\n  ---\n  rule: \"Twelve"));
    EXPECT_THAT(result.m_out, HasSubstr("undefined symbol: zyr_plugin_getProcAddress\"\n  result: failed\n  ...\n"));
    EXPECT_THAT(result.m_out, HasSubstr("ok 3 - guid # SKIP the case metadata did not pass\n"));
    EXPECT_THAT(result.m_out, HasSubstr("  result: blocked\n"));
}

TEST(ConformCommand, ListsTheCasesOfEachKindWithoutAModule) {
    const ProgramRun plugin = run({"--list"});
    EXPECT_EQ(plugin.m_exitCode, 0);
    EXPECT_THAT(plugin.m_out, StartsWith("load\n    A host opens the file"));
    EXPECT_THAT(run({"--list", "--kind", "core"}).m_out, HasSubstr("\ntable-containers\n    Each entry"));
    EXPECT_THAT(run({"--list", "--kind", "picture"}).m_out, HasSubstr("\nimages\n    A picture of any size"));
}

TEST(ConformCommand, RunsOneCaseWithThoseThatItNeeds) {
    const ConformReport report = conform(FAKES + "base.so", {"--only", "initialize"});
    EXPECT_EQ(report.m_exitCode, 0);
    EXPECT_THAT(report.list("passed"), ElementsAre("initialize"));
    const ConformReport blocked = conform(FAKES + "other_minor.so", {"--only", "initialize"});
    EXPECT_EQ(blocked.m_exitCode, 1);
    EXPECT_THAT(blocked.list("blocked"), ElementsAre("initialize"));
    EXPECT_EQ(blocked.m_reasons.at("initialize"), "the case version did not pass");
}

TEST(ConformCommand, RefusesWhatCannotBeMeant) {
    EXPECT_EQ(run({}).m_exitCode, 2);
    EXPECT_EQ(run({FAKES + "base.so", "--kind", "gui"}).m_exitCode, 2);
    const ProgramRun unknown = run({FAKES + "base.so", "--only", "nothing"});
    EXPECT_EQ(unknown.m_exitCode, 2);
    EXPECT_EQ(unknown.m_err, "zyr-host: there is no case 'nothing'; --list shows all\n");
    const ProgramRun missing = run({"/nowhere/codec.so"});
    EXPECT_EQ(missing.m_exitCode, 4);
    EXPECT_EQ(missing.m_err, "zyr-host: the file '/nowhere/codec.so' cannot be read\n");
}

TEST(ConformCommand, NamesAModuleForAnotherMachine) {
    const TemporaryDirectory directory;
    std::string bytes = TemporaryDirectory::readFile(FAKES + "base.so");
    constexpr size_t MACHINE = 18;
    ASSERT_GT(bytes.size(), MACHINE);
    bytes[MACHINE] = 8; // MIPS
    const ConformReport report = conform(directory.writeFile("other.so", bytes), {"--only", "load"});
    EXPECT_EQ(report.m_exitCode, 1);
    EXPECT_EQ(report.m_reasons.at("load"), "it is built for another kind of processor");
}

TEST(ConformCommand, LeavesNothingOnTheStandardErrorAndNoLog) {
    const ConformReport report = conform(FAKES + "base.so");
    EXPECT_THAT(report.m_err, IsEmpty());
}

} // namespace zyr
