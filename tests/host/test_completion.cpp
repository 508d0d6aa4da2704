// "zyr-host completion": the scripts know every command and option.

#include "zyr_program_run.h"

#include "support/zyr_temporary_directory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zyr {

namespace {

using testing::HasSubstr;

std::string getScript(const char* p_shell) {
    const ProgramRun run = runProgram(ZYR_HOST_PROGRAM, {"completion", p_shell});
    EXPECT_EQ(run.m_exitCode, 0) << run.m_err;
    EXPECT_EQ(run.m_err, "");
    return run.m_out;
}

/// What bash offers for a command line whose last word is being written.
std::string complete(const std::string& p_words, unsigned p_position) {
    const TemporaryDirectory directory;
    const std::string script = directory.writeFile("script", getScript("bash"));
    const ProgramRun run = runProgram("/bin/bash", {"--norc", "-c",
                                                    "set -e; . " + script + "; COMP_WORDS=(" + p_words +
                                                        "); COMP_CWORD=" + std::to_string(p_position) +
                                                        "; _zyr_host || :; echo \"${COMPREPLY[@]}\""});
    EXPECT_EQ(run.m_exitCode, 0) << run.m_err;
    EXPECT_EQ(run.m_err, "");
    return run.m_out;
}

} // namespace

TEST(Completion, OffersCommandsInBash) {
    EXPECT_EQ(complete("zyr-host in", 1), "inspect\n");
    EXPECT_EQ(complete("zyr-host object co", 2), "convert\n");
}

TEST(Completion, OffersTheOptionsOfTheCommandInBash) {
    EXPECT_EQ(complete("zyr-host stream --req", 2), "--require\n");
    EXPECT_EQ(complete("zyr-host inspect --req", 2), "\n");
    EXPECT_EQ(complete("zyr-host stream video --pac", 3), "--packets --packets-format --packets-sdp\n");
}

TEST(Completion, OffersValuesInBashAndLeavesFilesToTheShell) {
    EXPECT_EQ(complete("zyr-host stream --require ''", 3), "hw sw\n");
    EXPECT_EQ(complete("zyr-host doctor --log-level t", 3), "trace\n");
    EXPECT_EQ(complete("zyr-host stream --packets ''", 3), "\n");
    EXPECT_EQ(complete("zyr-host stream ''", 2), "\n");
}

TEST(Completion, DescribesOptionsInZshAndFish) {
    const std::string zsh = getScript("zsh");
    EXPECT_THAT(zsh, testing::StartsWith("#compdef zyr-host\n"));
    EXPECT_THAT(zsh, HasSubstr("' stream --require') compadd -- hw sw; return ;;\n"));
    EXPECT_THAT(zsh, HasSubstr("'--json':'Print JSON on the standard output'"));
    const std::string fish = getScript("fish");
    EXPECT_THAT(fish, HasSubstr("complete -c zyr-host -n '__fish_seen_subcommand_from stream' -l require -r -f -a 'hw "
                                "sw' -d 'hw or sw: take only such implementations'\n"));
}

TEST(Completion, RefusesAnotherShell) {
    EXPECT_EQ(runProgram(ZYR_HOST_PROGRAM, {"completion", "csh"}).m_exitCode, 2);
}

} // namespace zyr
