// Made-up plug-ins with one fault each fail exactly the cases of that fault.

#include "support/zyr_temporary_directory.h"
#include "zyr_conform_report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace zyr {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const std::string FAKES = ZYR_FAKE_PLUGINS;

struct Fault {
    const char* m_module;
    std::vector<std::string> m_cases; ///< In the order of the alphabet.
    const char* m_reason;             ///< Part of the first one's.
};

} // namespace

TEST(ConformFakes, FailExactlyTheirCases) {
    const Fault faults[] = {
        {"lacks_export", {"exports"}, "zyr_plugin_getProcAddress"},
        {"nameless", {"metadata"}, "zyr_plugin_getName gives NULL"},
        {"other_minor", {"version"}, "it is of version 1.6.0, the framework of 1.5.0"},
        {"other_major", {"version"}, "it is of version 2.5.0, the framework of 1.5.0"},
        {"graphics", {"dependencies"}, "there is no component module 'graphics' here"},
        {"above_base", {"dependencies"}, "there is no plug-in 60000000-0000-4000-8000-000000000001 in"},
        {"failing", {"initialize"}, "zyr_plugin_initialize gives 0"},
        {"crashing_late", {"initialize"}, "plug-in crashing_late.so crashed in zyr_plugin_initialize (SIGSEGV)"},
        // What they do otherwise is fine, but for asking nobody before they start.
        {"no_guid", {"guid", "initialize-null", "initialize-version"}, "'none' is no GUID"},
        {"base", {"initialize-null", "initialize-version"}, "zyr_plugin_initialize(NULL) gives 1"},
        {"other_patch", {"initialize-null", "initialize-version"}, "zyr_plugin_initialize(NULL) gives 1"},
        {"fake_class", {"initialize-null", "initialize-version"}, "it ended the process with status "},
    };
    for (const Fault& fault : faults) {
        const ConformReport report = conform(FAKES + fault.m_module + ".so");
        EXPECT_EQ(report.m_exitCode, 1) << fault.m_module;
        ASSERT_EQ(report.list("failed"), fault.m_cases) << fault.m_module << ": " << report.describe();
        EXPECT_THAT(report.m_reasons.at(fault.m_cases[0]), HasSubstr(fault.m_reason)) << fault.m_module;
    }
}

TEST(ConformFakes, ThatEndOrHangTheirProcessFailToLoad) {
    const std::pair<const char*, const char*> faults[] = {
        {"crashing", "it crashed in the loader (SIGSEGV)"},
        {"exiting", "it ended the process with status 3 in the loader"},
        {"hanging", "it is not done within 2 s in the loader"},
    };
    for (const auto& [module, reason] : faults) {
        // Whoever ends by itself does so at once, but a machine may be busy.
        const char* seconds = std::string(module) == "hanging" ? "2" : "100";
        const ConformReport report = conform(FAKES + module + ".so", {"--timeout", seconds});
        EXPECT_EQ(report.m_exitCode, 1) << module;
        EXPECT_THAT(report.list("failed"), ElementsAre("load")) << module;
        // An emulator adds a line of its own to the end of a crash.
        EXPECT_THAT(report.m_reasons.at("load"), testing::StartsWith(reason)) << module;
        EXPECT_EQ(report.list("blocked").size(), report.m_results.size() - 1) << module;
    }
}

TEST(ConformFakes, FindWhatTheyBuildOnBesideThem) {
    const TemporaryDirectory directory;
    std::filesystem::copy_file(FAKES + "base.so", directory.getPath() + "base.so");
    const ConformReport report = conform(FAKES + "above_base.so", {"--plugins", directory.getPath()});
    EXPECT_THAT(report.list("failed"), ElementsAre("initialize-null", "initialize-version")) << report.describe();
    EXPECT_EQ(report.m_results.at("dependencies"), "passed");
}

TEST(ConformFakes, WithTheGUIDOfAnotherFailThatCase) {
    const TemporaryDirectory directory;
    std::filesystem::copy_file(FAKES + "base.so", directory.getPath() + "twin.so");
    const ConformReport report = conform(FAKES + "base.so", {"--plugins", directory.getPath(), "--only", "guid"});
    EXPECT_THAT(report.list("failed"), ElementsAre("guid"));
    EXPECT_EQ(report.m_reasons.at("guid"), "twin.so has the same GUID");
}

TEST(ConformFakes, WithoutCodecsAreSparedTheCasesOfCodecs) {
    const ConformReport report = conform(FAKES + "fake_class.so", {"--only", "storage", "--only", "packet-per-frame"});
    EXPECT_EQ(report.m_exitCode, 0) << report.describe();
    EXPECT_EQ(report.m_results.at("storage"), "passed");
    EXPECT_EQ(report.m_results.at("packet-per-frame"), "skipped");
    EXPECT_EQ(report.m_reasons.at("packet-per-frame"), "it has no encoder");
}

} // namespace zyr
