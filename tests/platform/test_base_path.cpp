#include "zyr_common/platform/zyr_base_path.h"

#include "support/zyr_stdout_capture.h"
#include "support/zyr_temporary_directory.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace zyr;

namespace {

const char LINE[] = "WARN : Unable to get current working directory. getcwd returned with error\n";

/// Where a relative path leads in a child that goes to the directory; with the lines of its log in front.
template <typename Go> std::string resolvedAfter(Go p_go) {
    return captureStdout([&] {
        const pid_t child = fork();
        if (child == 0) {
            if (p_go()) {
                printf("%s", zyr_resolvePath("out.png", zyr_getBaseDirectoryOrCurrent("")).getData());
            }
            fflush(stdout);
            _exit(0);
        }
        waitpid(child, nullptr, 0);
    });
}

} // namespace

TEST(BasePath, JoinsARelativePathToTheWorkingDirectory) {
    TemporaryDirectory temporary;
    const std::string path = temporary.getPath();
    EXPECT_EQ(resolvedAfter([&] { return chdir(path.c_str()) == 0; }), path + "out.png");
}

TEST(BasePath, KeepsARelativePathWhereTheWorkingDirectoryIsGone) {
    TemporaryDirectory temporary;
    const std::string path = temporary.getPath();
    EXPECT_EQ(resolvedAfter([&] { return chdir(path.c_str()) == 0 && rmdir(path.c_str()) == 0; }),
              std::string(LINE) + "out.png");
}

TEST(BasePath, KeepsARelativePathWhereTheWorkingDirectoryIsTooLong) {
    TemporaryDirectory temporary;
    const std::string path = temporary.getPath();
    const std::string name(200, 'd');
    const auto goDeep = [&] {
        bool done = chdir(path.c_str()) == 0;
        for (int i = 0; i < 6 && done; i++) {
            done = mkdir(name.c_str(), 0700) == 0 && chdir(name.c_str()) == 0;
        }
        return done;
    };
    EXPECT_EQ(resolvedAfter(goDeep), std::string(LINE) + "out.png");
}

TEST(BasePath, JoinsToAGivenDirectoryAndLeavesAnAbsolutePath) {
    EXPECT_STREQ(zyr_resolvePath("a\\b.png", "/base").getData(), "/base/a/b.png");
    EXPECT_STREQ(zyr_resolvePath("a.png", "/base/").getData(), "/base/a.png");
    EXPECT_STREQ(zyr_resolvePath("/x\\a.png", "/base").getData(), "/x/a.png");
}
