#include "zyr_common/process/zyr_process_cleanup.h"
#include "zyr_common/text/zyr_string.h"

#include "support/zyr_private_mounts.h"
#include "zyr_process_test.h"
#include "zyr_system_calls.h"

#include <algorithm>
#include <atomic>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace zyr {

namespace {

constexpr uid_t OTHER_UID = 65534;

void makeFile(const std::string& p_path) {
    std::ofstream(p_path) << "text";
}

bool exists(const std::string& p_path) {
    struct stat status;
    return lstat(p_path.c_str(), &status) == 0;
}

/// A session directory, and one outside whose contents must survive everything.
class SessionDirectory : public testing::Test {
protected:
    SessionDirectory() {
        char pattern[] = "/tmp/zvd-vsession-XXXXXX";
        m_path = mkdtemp(pattern);
        makeFile(outside("file"));
        EXPECT_EQ(mkdir(outside("directory").c_str(), 0755), 0);
        makeFile(outside("directory/file"));
    }
    ~SessionDirectory() override {
        EXPECT_TRUE(isOutsideWhole());
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    std::string inside(const std::string& p_name) const { return m_path + "/" + p_name; }
    std::string outside(const std::string& p_name) const { return m_outside.getPath() + p_name; }
    bool_t remove() const { return removeUserSessionDirectory(m_path.c_str()); }

    bool isOutsideWhole() const {
        return TemporaryDirectory::readFile(outside("file")) == "text" &&
               TemporaryDirectory::readFile(outside("directory/file")) == "text";
    }

    /// Removal succeeds, and leaves no descriptor.
    void expectRemoved() const {
        const std::vector<int> before = getOpenDescriptors();
        EXPECT_TRUE(remove());
        EXPECT_FALSE(exists(m_path));
        EXPECT_EQ(getOpenDescriptors(), before);
    }

    /// Removal fails, all but the named entries is gone, and no descriptor is left.
    void expectLeft(const std::vector<std::string>& p_names) const {
        const std::vector<int> before = getOpenDescriptors();
        EXPECT_FALSE(remove());
        EXPECT_EQ(getOpenDescriptors(), before);
        std::vector<std::string> left;
        for (const auto& entry : std::filesystem::directory_iterator(m_path)) {
            left.push_back(entry.path().filename().string());
        }
        std::sort(left.begin(), left.end());
        EXPECT_EQ(left, p_names);
    }

    TemporaryDirectory m_outside;
    std::string m_path;
};

} // namespace

TEST_F(SessionDirectory, IsRemovedWithEverythingInIt) {
    makeFile(inside("file"));
    makeFile(inside(".hidden"));
    ASSERT_EQ(mkdir(inside("a").c_str(), 0700), 0);
    ASSERT_EQ(mkdir(inside("a/empty").c_str(), 0700), 0);
    ASSERT_EQ(mkdir(inside("a/b").c_str(), 0700), 0);
    for (int i = 0; i < 500; i++) {
        makeFile(inside("a/b/" + std::to_string(i)));
    }
    expectRemoved();
}

TEST_F(SessionDirectory, IsRemovedWhenEmptyAndGoneWhenMissing) {
    expectRemoved();
    EXPECT_TRUE(remove()) << "one that is gone already is no failure";
}

TEST_F(SessionDirectory, IsRefusedUnderAnyOtherName) {
    const std::string prefix = "/tmp/zvd-vsession-";
    for (const std::string& name : {std::string(),
                                    std::string("/"),
                                    std::string("/tmp"),
                                    prefix,
                                    prefix + "abcde",
                                    prefix + "abcdefg",
                                    prefix + "abc-ef",
                                    prefix + "abc_ef",
                                    prefix + "abc.ef",
                                    prefix + "abc/ef",
                                    prefix + "abc ef",
                                    prefix + "../abc",
                                    prefix + "......",
                                    prefix + "abcde/",
                                    prefix + "ab\xc3\xa4"
                                             "de",
                                    prefix + "abcde@",
                                    prefix + "abcde[",
                                    prefix + "abcde`",
                                    prefix + "abcde{",
                                    prefix + "abcde:",
                                    std::string("/tmp/zvd-vsession_abcdef"),
                                    std::string("/tmp/zvd-Vsession-abcdef"),
                                    std::string("/var/zvd-vsession-abcdef"),
                                    std::string("tmp/zvd-vsession-abcdefg"),
                                    std::string("//tmp/zvd-vsession-abcde"),
                                    m_path + "/",
                                    m_path + "/.",
                                    m_path.substr(0, 23)}) {
        EXPECT_FALSE(removeUserSessionDirectory(name)) << name;
    }
    const std::string cut = prefix + std::string("abc\0ef", 6);
    EXPECT_FALSE(removeUserSessionDirectory(String(cut.data(), cut.size())));
    EXPECT_TRUE(exists(m_path));
}

TEST_F(SessionDirectory, HasAllLettersAndDigitsInItsName) {
    for (const char* suffix : {"azAZ09", "zzzzzz", "000000", "ZZZZZZ", "AAAAAA", "999999", "aaaaaa"}) {
        const std::string path = std::string("/tmp/zvd-vsession-") + suffix;
        ASSERT_EQ(mkdir(path.c_str(), 0700), 0) << path;
        EXPECT_TRUE(removeUserSessionDirectory(path)) << path;
        EXPECT_FALSE(exists(path));
    }
}

TEST_F(SessionDirectory, IsRefusedWhenItIsALinkOrAFile) {
    ASSERT_EQ(rmdir(m_path.c_str()), 0);
    ASSERT_EQ(symlink(m_outside.getPath().c_str(), m_path.c_str()), 0);
    EXPECT_FALSE(remove());
    EXPECT_TRUE(exists(m_path));
    ASSERT_EQ(unlink(m_path.c_str()), 0);
    makeFile(m_path);
    EXPECT_FALSE(remove());
    EXPECT_TRUE(exists(m_path));
}

TEST_F(SessionDirectory, LosesItsLinksAndKeepsTheirTargets) {
    const std::string relative = "../" + std::filesystem::path(outside("")).parent_path().filename().string();
    ASSERT_EQ(mkdir(inside("sub").c_str(), 0700), 0);
    for (const char* directory : {"", "sub/"}) {
        const std::string up = *directory != 0 ? "../" : "";
        ASSERT_EQ(symlink(outside("file").c_str(), inside(std::string(directory) + "file").c_str()), 0);
        ASSERT_EQ(symlink(outside("directory").c_str(), inside(std::string(directory) + "dir").c_str()), 0);
        ASSERT_EQ(symlink((up + relative + "/file").c_str(), inside(std::string(directory) + "rfile").c_str()), 0);
        ASSERT_EQ(symlink((up + relative + "/directory").c_str(), inside(std::string(directory) + "rdir").c_str()), 0);
        ASSERT_TRUE(exists(inside(std::string(directory) + "rfile")));
        ASSERT_EQ(TemporaryDirectory::readFile(inside(std::string(directory) + "rfile")), "text");
        ASSERT_EQ(symlink("/", inside(std::string(directory) + "root").c_str()), 0);
        ASSERT_EQ(symlink("..", inside(std::string(directory) + "up").c_str()), 0);
        ASSERT_EQ(symlink("loop", inside(std::string(directory) + "loop").c_str()), 0);
    }
    expectRemoved();
}

TEST_F(SessionDirectory, LosesHardLinksOnly) {
    ASSERT_EQ(link(outside("file").c_str(), inside("hard").c_str()), 0);
    expectRemoved();
}

TEST_F(SessionDirectory, MayHoldFilesOfAllKinds) {
    ASSERT_EQ(mkfifo(inside("fifo").c_str(), 0600), 0);
    const int socketDescriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    snprintf(address.sun_path, sizeof(address.sun_path), "%s", inside("socket").c_str());
    ASSERT_EQ(bind(socketDescriptor, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
    close(socketDescriptor);
    if (geteuid() == 0) {
        ASSERT_EQ(mknod(inside("device").c_str(), S_IFCHR | 0600, makedev(1, 3)), 0);
    }
    expectRemoved();
}

TEST_F(SessionDirectory, MayHoldAnyName) {
    for (int byte = 1; byte < 256; byte++) {
        if (byte != '/' && byte != '.') {
            makeFile(inside(std::string(1, char(byte))));
            ASSERT_EQ(mkdir(inside(std::string(2, char(byte))).c_str(), 0700), 0);
        }
    }
    for (const std::string& name : {std::string("..."), std::string(".. "), std::string("-rf"), std::string("%s%n"),
                                    std::string("a\nb"), std::string(255, 'x'), std::string("\xff\xfe")}) {
        ASSERT_EQ(mkdir(inside(name).c_str(), 0700), 0);
        makeFile(inside(name) + "/" + name);
    }
    expectRemoved();
}

TEST_F(SessionDirectory, MayBeThousandsOfLevelsDeep) {
    constexpr int DEPTH = 3000;
    int directory = open(m_path.c_str(), O_RDONLY | O_DIRECTORY);
    for (int i = 0; i < DEPTH; i++) {
        ASSERT_EQ(mkdirat(directory, "d", 0700), 0);
        ASSERT_EQ(symlinkat(outside("directory").c_str(), directory, "link"), 0);
        const int next = openat(directory, "d", O_RDONLY | O_DIRECTORY);
        close(directory);
        directory = next;
    }
    close(directory);
    // With too few descriptors it says so, and all is well with more.
    runInChild([this] {
        rlimit limit;
        getrlimit(RLIMIT_NOFILE, &limit);
        limit.rlim_cur = 100;
        ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
        EXPECT_FALSE(remove());
    });
    EXPECT_TRUE(exists(inside("d/d")));
    expectRemoved();
}

TEST_F(SessionDirectory, KeepsWhatItsOwnerCantEnter) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can give the directory to another user";
    }
    ASSERT_EQ(mkdir(inside("locked").c_str(), 0700), 0);
    makeFile(inside("locked/file"));
    makeFile(inside("file"));
    ASSERT_EQ(mkdir(inside("open").c_str(), 0700), 0);
    makeFile(inside("open/file"));
    for (const char* name : {"", "locked", "locked/file", "file", "open", "open/file"}) {
        ASSERT_EQ(lchown(inside(name).c_str(), OTHER_UID, OTHER_UID), 0);
    }
    ASSERT_EQ(chmod(inside("locked").c_str(), 0), 0);
    runInChild([this] {
        ASSERT_EQ(setresuid(OTHER_UID, OTHER_UID, OTHER_UID), 0);
        expectLeft({"locked"});
    });
    EXPECT_TRUE(exists(inside("locked/file")));
    expectRemoved(); // root enters everything
}

TEST_F(SessionDirectory, KeepsWhatCantBeRemovedAndGoesOnWithTheRest) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can give files to another user";
    }
    ASSERT_EQ(chmod(m_path.c_str(), 0777), 0);
    ASSERT_EQ(mkdir(inside("foreign").c_str(), 0755), 0);
    makeFile(inside("foreign/file"));
    makeFile(inside("x"));
    ASSERT_EQ(mkdir(inside("y").c_str(), 0777), 0);
    ASSERT_EQ(chmod(inside("y").c_str(), 0777), 0);
    makeFile(inside("y/file"));
    runInChild([this] {
        ASSERT_EQ(setresuid(OTHER_UID, OTHER_UID, OTHER_UID), 0);
        expectLeft({"foreign"});
    });
    EXPECT_TRUE(exists(inside("foreign/file")));
}

TEST_F(SessionDirectory, IsNotEmptiedBeyondMountPoints) {
    ZYR_NEEDS_PRIVATE_SYSTEM();
    runInChild([this] {
        enterPrivateMounts();
        for (const char* name : {"bound", "memory", "sub", "sub/bound", "plain"}) {
            ASSERT_EQ(mkdir(inside(name).c_str(), 0755), 0);
        }
        makeFile(inside("boundfile"));
        makeFile(inside("plain/file"));
        // A bind mount shows the same device as what is around it.
        ASSERT_EQ(mount(outside("").c_str(), inside("bound").c_str(), nullptr, MS_BIND, nullptr), 0);
        ASSERT_EQ(mount(outside("directory").c_str(), inside("sub/bound").c_str(), nullptr, MS_BIND, nullptr), 0);
        ASSERT_EQ(mount(outside("file").c_str(), inside("boundfile").c_str(), nullptr, MS_BIND, nullptr), 0);
        ASSERT_EQ(mount("tmpfs", inside("memory").c_str(), "tmpfs", 0, nullptr), 0);
        makeFile(inside("memory/file"));
        expectLeft({"bound", "boundfile", "memory", "sub"});
        EXPECT_TRUE(isOutsideWhole());
        EXPECT_EQ(TemporaryDirectory::readFile(inside("memory/file")), "text");
        for (const char* name : {"bound", "memory", "sub/bound", "boundfile"}) {
            ASSERT_EQ(umount(inside(name).c_str()), 0);
        }
        expectRemoved();
    });
}

TEST_F(SessionDirectory, IsNotEmptiedBeyondMountPointsWithoutTheKernelsNumbersEither) {
    ZYR_NEEDS_PRIVATE_SYSTEM();
    runInChild([this] {
        enterPrivateMounts();
        ASSERT_EQ(mkdir(inside("memory").c_str(), 0755), 0);
        ASSERT_EQ(mkdir(inside("plain").c_str(), 0755), 0);
        ASSERT_EQ(mount("tmpfs", inside("memory").c_str(), "tmpfs", 0, nullptr), 0);
        makeFile(inside("memory/file"));
        ASSERT_EQ(mount("tmpfs", "/proc", "tmpfs", 0, nullptr), 0);
        EXPECT_FALSE(remove());
        EXPECT_FALSE(exists(inside("plain")));
        EXPECT_EQ(TemporaryDirectory::readFile(inside("memory/file")), "text");
    });
}

TEST_F(SessionDirectory, TakesNoLinkForADirectoryThatWasThereBefore) {
    // The exchange comes at the worst moments: behind the look at the entry, and in front of its removal.
    for (const char* moment : {"openat", "rmdirat", "unlinkat"}) {
        mkdir(m_path.c_str(), 0700);
        ASSERT_EQ(mkdir(inside("directory").c_str(), 0700), 0);
        makeFile(inside("directory/file"));
        SystemCalls calls;
        calls.interpose(moment, [this] {
            const std::string aside = m_outside.getPath() + "aside";
            ASSERT_EQ(rename(inside("directory").c_str(), aside.c_str()), 0);
            ASSERT_EQ(symlink(outside("directory").c_str(), inside("directory").c_str()), 0);
        });
        EXPECT_FALSE(remove()) << moment;
        EXPECT_TRUE(isOutsideWhole()) << moment;
        EXPECT_TRUE(exists(inside("directory"))) << moment;
        std::filesystem::remove_all(outside("aside"));
        expectRemoved();
    }
}

TEST_F(SessionDirectory, TellsOfAFileThatVanishesBeforeItIsLookedAt) {
    mkdir(m_path.c_str(), 0700);
    makeFile(inside("file"));
    SystemCalls calls;
    calls.interpose("fstatat", [this] { ASSERT_EQ(unlink(inside("file").c_str()), 0); });
    EXPECT_FALSE(remove());
    expectRemoved();
}

TEST_F(SessionDirectory, SurvivesARaceOfADirectoryAndALink) {
    // While the directory is removed, a thread does nothing but exchange one in it with a link to the outside.
    constexpr int TRIES = 2000;
    const std::string directory = inside("directory");
    const std::string linked = inside("link");
    std::atomic<bool> stop{false};
    std::atomic<long> swaps{0};
    std::thread racer([&] {
        while (!stop) {
            swaps += renameat2(AT_FDCWD, directory.c_str(), AT_FDCWD, linked.c_str(), RENAME_EXCHANGE) == 0;
        }
    });
    int disturbed = 0;
    for (int i = 0; i < TRIES && isOutsideWhole(); i++) {
        mkdir(m_path.c_str(), 0700);
        mkdir(directory.c_str(), 0700);
        makeFile(directory + "/file");
        ASSERT_EQ(symlink(outside("directory").c_str(), linked.c_str()), 0);
        while (!remove()) {
            disturbed++;
        }
    }
    stop = true;
    racer.join();
    EXPECT_TRUE(isOutsideWhole());
    EXPECT_FALSE(exists(m_path));
    RecordProperty("swaps", std::to_string(swaps));
    RecordProperty("disturbed", disturbed);
}

} // namespace zyr
