#include "zyr_common/process/zyr_protected_executable.h"
#include "zyr_common/text/zyr_string.h"

#include "zyr_process_test.h"

#include "support/zyr_private_mounts.h"

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zyr {

namespace {

/// Makes /opt of the child's own an empty directory of root's.
void makePrivateOpt() {
    enterPrivateMounts();
    ASSERT_EQ(mount("tmpfs", "/opt", "tmpfs", 0, "mode=0755"), 0);
}

void makeFile(const char* p_path, mode_t p_mode, uid_t p_owner = 0) {
    std::ofstream(p_path) << "text";
    ASSERT_EQ(chown(p_path, p_owner, 0), 0);
    ASSERT_EQ(chmod(p_path, p_mode), 0);
}

void makeDirectory(const char* p_path, mode_t p_mode, uid_t p_owner = 0) {
    ASSERT_EQ(mkdir(p_path, 0755), 0);
    ASSERT_EQ(chown(p_path, p_owner, 0), 0);
    ASSERT_EQ(chmod(p_path, p_mode), 0);
}

} // namespace

TEST(ProtectedRootExecutable, IsAProgramOfTheSystem) {
    const std::string path = std::filesystem::canonical("/bin/true").string();
    EXPECT_TRUE(zyr_isProtectedRootExecutable(path.c_str()));
}

TEST(ProtectedRootExecutable, IsNotWhatIsMissingRelativeOrEmpty) {
    for (const char* path : {"", "/", "/nowhere/at-all", "usr/bin/true", "true", "."}) {
        EXPECT_FALSE(zyr_isProtectedRootExecutable(path)) << path;
    }
}

TEST(ProtectedRootExecutable, IsNotAPathThatIsNotCanonical) {
    const std::string name = std::filesystem::canonical("/bin/true").filename().string();
    for (const char* directory : {"/usr/bin/../bin/", "/usr/./bin/", "/usr//bin/", "//usr/bin/"}) {
        ASSERT_EQ(access((directory + name).c_str(), X_OK), 0);
        EXPECT_FALSE(zyr_isProtectedRootExecutable((directory + name).c_str())) << directory;
    }
    EXPECT_FALSE(zyr_isProtectedRootExecutable(("/usr/bin/" + name + "/").c_str()));
}

TEST(ProtectedRootExecutable, LooksAtTheFilesOwnerKindAndMode) {
    ZYR_NEEDS_PRIVATE_SYSTEM();
    runInChild([] {
        makePrivateOpt();
        makeFile("/opt/good", 0755);
        EXPECT_TRUE(zyr_isProtectedRootExecutable("/opt/good"));
        for (mode_t mode : {0100, 0010, 0001, 0700, 04755, 0555}) {
            ASSERT_EQ(chmod("/opt/good", mode), 0);
            EXPECT_TRUE(zyr_isProtectedRootExecutable("/opt/good")) << std::oct << mode;
        }
        for (mode_t mode : {0644, 0000, 0775, 0757, 0720, 0702, 0777}) {
            ASSERT_EQ(chmod("/opt/good", mode), 0);
            EXPECT_FALSE(zyr_isProtectedRootExecutable("/opt/good")) << std::oct << mode;
        }
        makeFile("/opt/foreign", 0755, 65534);
        EXPECT_FALSE(zyr_isProtectedRootExecutable("/opt/foreign"));
        makeDirectory("/opt/directory", 0755);
        EXPECT_FALSE(zyr_isProtectedRootExecutable("/opt/directory"));
        ASSERT_EQ(mkfifo("/opt/fifo", 0755), 0);
        EXPECT_FALSE(zyr_isProtectedRootExecutable("/opt/fifo"));
        ASSERT_EQ(chmod("/opt/good", 0755), 0);
        ASSERT_EQ(symlink("/opt/good", "/opt/link"), 0);
        EXPECT_FALSE(zyr_isProtectedRootExecutable("/opt/link"));
    });
}

TEST(ProtectedRootExecutable, LooksAtEachDirectoryAbove) {
    ZYR_NEEDS_PRIVATE_SYSTEM();
    runInChild([] {
        makePrivateOpt();
        makeDirectory("/opt/a", 0755);
        makeDirectory("/opt/a/b", 0755);
        makeFile("/opt/a/b/good", 0755);
        EXPECT_TRUE(zyr_isProtectedRootExecutable("/opt/a/b/good"));
        for (const char* directory : {"/opt", "/opt/a", "/opt/a/b"}) {
            for (mode_t mode : {0775, 0757, 01777}) {
                ASSERT_EQ(chmod(directory, mode), 0);
                EXPECT_FALSE(zyr_isProtectedRootExecutable("/opt/a/b/good")) << directory << std::oct << mode;
            }
            ASSERT_EQ(chmod(directory, 0755), 0);
            ASSERT_EQ(chown(directory, 65534, 0), 0);
            EXPECT_FALSE(zyr_isProtectedRootExecutable("/opt/a/b/good")) << directory;
            ASSERT_EQ(chown(directory, 0, 65534), 0);
            EXPECT_TRUE(zyr_isProtectedRootExecutable("/opt/a/b/good")) << directory;
        }
        ASSERT_EQ(symlink("/opt/a", "/opt/link"), 0);
        EXPECT_FALSE(zyr_isProtectedRootExecutable("/opt/link/b/good"));
    });
}

TEST(ProtectedRootExecutable, DoesNotLookAtTheRootDirectory) {
    ZYR_NEEDS_PRIVATE_SYSTEM();
    runInChild([] {
        makePrivateOpt();
        makeFile("/opt/good", 0755);
        ASSERT_EQ(chmod("/opt", 0777), 0);
        // What was a bad directory above is now the root itself.
        ASSERT_EQ(chroot("/opt"), 0);
        EXPECT_TRUE(zyr_isProtectedRootExecutable("/good"));
    });
}

} // namespace zyr
