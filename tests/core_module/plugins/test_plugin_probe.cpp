#include "core_module/plugins/zyr_plugin_probe.h"

#include "core_module/plugins/plugin_directory.h"
#include "support/zyr_failing_import.h"
#include "support/zyr_logged_application.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <tuple>

namespace zyr {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

std::string reasonOf(const std::string& p_path, uint32_t p_milliseconds = 30000) {
    String reason;
    EXPECT_FALSE(probePlugin(p_path.c_str(), reason, p_milliseconds));
    return reason.getData();
}

std::string fake(const char* p_name) {
    return std::string(ZYR_FAKE_PLUGINS) + p_name + ".so";
}

TEST(PluginProbe, AcceptsAModuleThatAnswers) {
    String reason;
    EXPECT_TRUE(probePlugin(fake("base").c_str(), reason));
    EXPECT_EQ(reason, "");
}

TEST(PluginProbe, LeavesTheModuleUnloadedHere) {
    String reason;
    EXPECT_TRUE(probePlugin(fake("base").c_str(), reason));
    EXPECT_EQ(dlopen(fake("base").c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr);
}

TEST(PluginProbe, GivesTheLoadersReason) {
    PluginDirectory directory;
    EXPECT_THAT(reasonOf(directory.writeFile("text.so", "some text\n")), HasSubstr("text.so: file too short"));
    EXPECT_THAT(reasonOf(directory.writeFile("long.so", std::string(200, 'x'))), HasSubstr("invalid ELF header"));
    EXPECT_THAT(reasonOf(directory.getPath() + "none.so"),
                HasSubstr("cannot open shared object file: No such file or directory"));
}

TEST(PluginProbe, NamesTheExportThatIsMissing) {
    const std::string reason = reasonOf(fake("lacks_export"));
    EXPECT_THAT(reason, StartsWith("it lacks an export: "));
    EXPECT_THAT(reason, HasSubstr("undefined symbol: zyr_plugin_getProcAddress"));
}

TEST(PluginProbe, RefusesAModuleWithoutIdentity) {
    EXPECT_EQ(reasonOf(fake("nameless")), "it doesn't tell its identity");
}

TEST(PluginProbe, ReportsAModuleThatCrashes) {
    EXPECT_THAT(reasonOf(fake("crashing")),
                StartsWith("loading it ends the process with signal " + std::to_string(SIGSEGV) + " ("));
}

TEST(PluginProbe, NamesTheCallInWhichAModuleCrashes) {
    const LoggedApplication application;
    EXPECT_EQ(reasonOf(fake("crashing_late")), "it crashed in initialize (SIGSEGV)");
}

TEST(PluginProbe, InitializesModulesInTheChildAlone) {
    const LoggedApplication application;
    unsetenv("ZYR_FAKE_ORDER");
    String reason;
    EXPECT_TRUE(probePlugin(fake("base").c_str(), reason));
    EXPECT_TRUE(probePlugin(fake("failing").c_str(), reason));
    EXPECT_EQ(getenv("ZYR_FAKE_ORDER"), nullptr);
}

TEST(PluginProbe, ReportsAModuleThatExits) {
    EXPECT_EQ(reasonOf(fake("exiting")), "loading it ends the process with status 3");
}

TEST(PluginProbe, ReportsAModuleThatHangsAndEndsItsProcess) {
    EXPECT_EQ(reasonOf(fake("hanging"), 200), "it doesn't answer within 200 ms");
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST(PluginProbe, WorksWhereChildrenAreReapedByAHandler) {
    struct sigaction before;
    struct sigaction reaping = {};
    reaping.sa_handler = [](int) {
        const int error = errno;
        while (waitpid(-1, nullptr, WNOHANG) > 0) {
        }
        errno = error;
    };
    sigaction(SIGCHLD, &reaping, &before);
    String reason;
    EXPECT_TRUE(probePlugin(fake("base").c_str(), reason));
    EXPECT_THAT(reasonOf(fake("crashing")), StartsWith("loading it ends the process"));
    sigaction(SIGCHLD, &before, nullptr);
}

TEST(PluginProbe, TellsWhatItLacksToTryAModule) {
    const size_t descriptors = test::countDescriptors();
    for (const auto& [function, result, error, text] :
         {std::tuple{"pipe2", -1, EMFILE, "no pipe to try it: Too many open files"},
          std::tuple{"mmap", -1, ENOMEM, "no memory to try it: Cannot allocate memory"},
          std::tuple{"fork", -1, EAGAIN, "no process to try it: Resource temporarily unavailable"}}) {
        {
            const test::FailingImport failing("", function, result, error);
            EXPECT_EQ(reasonOf(fake("base")), text);
            EXPECT_TRUE(failing.hasFailed()) << function;
        }
        String reason;
        EXPECT_TRUE(probePlugin(fake("base").c_str(), reason)) << function;
        EXPECT_EQ(test::countDescriptors(), descriptors) << function;
    }
}

TEST(PluginProbe, NeedsNoNullDevice) {
    // The child has the entry as it is here; its failure is not seen in this process.
    const test::FailingImport failing("", "open", -1, EMFILE);
    String reason;
    EXPECT_TRUE(probePlugin(fake("base").c_str(), reason));
    EXPECT_EQ(reason, "");
}

} // namespace
} // namespace zyr
