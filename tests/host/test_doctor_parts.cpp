// What "zyr-host doctor" makes of machines that lack something: each lack is made here.

#include "host/doctor/zyr_checked_graphics.h"
#include "host/doctor/zyr_checked_libraries.h"
#include "host/doctor/zyr_checked_system.h"
#include "host/doctor/zyr_child_question.h"
#include "host/zyr_codec_roads.h"

#include "support/render_node/zyr_render_node.h"
#include "support/zyr_private_mounts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace zyr::host {

namespace {

namespace fs = std::filesystem;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

/// A machine with one render node of a made-up processor.
class DoctorGraphics : public testing::Test {
protected:
    void SetUp() override {
        chmod(m_directory.getPath().c_str(), 0755);
        fs::create_directories(m_root + "dri");
        fs::create_directories(m_root + "drm/renderD128/device");
        fs::create_symlink("../../../drivers/i915", m_root + "drm/renderD128/device/driver");
        m_directory.writeFile("drm/renderD128/device/vendor", "0x8086\n");
        m_directory.writeFile("drm/renderD128/device/device", "0x00aa\n");
        m_directory.writeFile("pci.ids", "# a list\n1002  Another\n\t00aa  Wrong\n8086  Maker\n\t00ab  Other\n"
                                         "\t00aa  Painter\n\t\t8086 1234  Part\nffff  Last\n");
        m_places = {m_root + "dri", m_root + "drm", m_root + "pci.ids"};
        m_node = m_root + "dri/renderD128";
        useDriver(ZYR_TEST_VA_DRIVER_DIR, "zyrtest");
    }
    ~DoctorGraphics() override {
        for (const char* name : {"LIBVA_DRIVERS_PATH", "LIBVA_DRIVER_NAME", "LIBVA_MESSAGING_LEVEL"}) {
            unsetenv(name);
        }
    }

    static void useDriver(const char* p_directory, const char* p_name) {
        setenv("LIBVA_DRIVERS_PATH", p_directory, 1);
        setenv("LIBVA_DRIVER_NAME", p_name, 1);
        setenv("LIBVA_MESSAGING_LEVEL", "0", 1);
    }

    /// What the driver's libraries take for a render node is open on /dev/null.
    void plugIn() const { fs::create_symlink("/dev/null", m_node); }

    Finding check() const {
        FindingList findings;
        m_working = checkGraphics(m_places, findings);
        EXPECT_EQ(findings.size(), 1u);
        return findings.at(0);
    }

    TemporaryDirectory m_directory;
    const std::string m_root = m_directory.getPath();
    GraphicsPlaces m_places;
    std::string m_node;
    mutable unsigned m_working = 99;
};

} // namespace

TEST_F(DoctorGraphics, WorkWithANodeAndItsDriver) {
    plugIn();
    const Finding finding = check();
    EXPECT_EQ(finding.m_state, FindingState::OK);
    EXPECT_EQ(finding.m_name, m_node);
    EXPECT_EQ(finding.m_text,
              "Maker Painter, kernel driver i915; its VA driver works (LIBVA_DRIVER_NAME names zyrtest)");
    EXPECT_EQ(finding.m_cure, "");
    EXPECT_EQ(m_working, 1u);
}

TEST_F(DoctorGraphics, HaveNoNode) {
    const Finding finding = check();
    EXPECT_EQ(finding.m_state, FindingState::NO);
    EXPECT_EQ(finding.m_text, "there is no render node in " + m_places.m_devices);
    EXPECT_EQ(finding.m_cure, "a graphics processor with its kernel driver; for a container: --device /dev/dri");
    EXPECT_EQ(m_working, 0u);
}

TEST_F(DoctorGraphics, LackAPermissionAndNameTheCommand) {
    m_directory.writeFile("dri/renderD128", "");
    chmod(m_node.c_str(), 0060);
    if (geteuid() != 0) {
        GTEST_SKIP() << "takes root, to be another user afterwards";
    }
    ASSERT_EQ(chown(m_node.c_str(), 0, 12345), 0);
    runInChild([&] {
        ASSERT_EQ(setresuid(54321, 54321, 54321), 0);
        const Finding finding = check();
        EXPECT_EQ(finding.m_state, FindingState::NO);
        EXPECT_THAT(finding.m_text, EndsWith("it cannot be opened: Permission denied (group 12345, mode 060)"));
        EXPECT_EQ(finding.m_cure, "usermod -aG 12345 54321, and a new login");
    });
    ASSERT_EQ(chmod(m_node.c_str(), 0), 0);
    runInChild([&] {
        ASSERT_EQ(setresuid(54321, 54321, 54321), 0);
        EXPECT_EQ(check().m_cure,
                  "chgrp render " + m_node + " && chmod 660 " + m_node + ", and usermod -aG render 54321");
    });
}

TEST_F(DoctorGraphics, HaveADriverThatDoesNotWorkWithTheNode) {
    plugIn();
    useDriver(ZYR_TEST_VA_DRIVER_DIR, "nosuchdriver");
    const Finding finding = check();
    EXPECT_EQ(finding.m_state, FindingState::NO);
    EXPECT_THAT(finding.m_text, HasSubstr("libva finds no driver that works with it (LIBVA_DRIVER_NAME names "
                                          "nosuchdriver): "));
    EXPECT_EQ(finding.m_cure, "unset LIBVA_DRIVER_NAME, so that libva finds the driver itself");
    setenv("LIBVA_DRIVERS_PATH", m_root.c_str(), 1);
    unsetenv("LIBVA_DRIVER_NAME");
    const Finding unnamed = check();
    EXPECT_EQ(unnamed.m_state, FindingState::NO);
    EXPECT_EQ(unnamed.m_cure, "apt-get install intel-media-va-driver");
}

TEST_F(DoctorGraphics, LetRoadsBlameTheDriverThatTheEnvironmentNames) {
    plugIn();
    // As the program does: what the driver's libraries leave behind is not this process's.
    runInChild([&] {
        useDriver(ZYR_TEST_VA_DRIVER_DIR, "nosuchdriver");
        const CodecRoad named = explainRoads({}, m_places.m_devices).at(1);
        EXPECT_EQ(named.m_implementation, "vp9_vaapi");
        EXPECT_THAT(named.m_failed, StartsWith("libva finds no driver that works with " + m_node +
                                               " (LIBVA_DRIVER_NAME names nosuchdriver): "));
        EXPECT_EQ(named.m_cure, "unset LIBVA_DRIVER_NAME, so that libva finds the driver itself");
        setenv("LIBVA_DRIVERS_PATH", m_root.c_str(), 1);
        unsetenv("LIBVA_DRIVER_NAME");
        const CodecRoad unnamed = explainRoads({}, m_places.m_devices).at(1);
        EXPECT_THAT(unnamed.m_failed, StartsWith("libva finds no driver that works with " + m_node + " ("));
        EXPECT_THAT(unnamed.m_cure, StartsWith("the package with the VA driver of this graphics processor"));
    });
}

TEST_F(DoctorGraphics, HaveADriverThatCrashes) {
    plugIn();
    useDriver(ZYR_CRASHING_VA_DRIVER_DIR, "zyrcrash");
    const Finding finding = check();
    EXPECT_EQ(finding.m_state, FindingState::NO);
    EXPECT_THAT(finding.m_text,
                HasSubstr("opening its VA driver (LIBVA_DRIVER_NAME names zyrcrash): it crashed (SIGABRT)"));
}

TEST_F(DoctorGraphics, AreNamedByNumbersWhereTheListHasNoName) {
    EXPECT_EQ(findPciName(m_places.m_pciNames, "8086", "00aa"), "Maker Painter");
    EXPECT_EQ(findPciName(m_places.m_pciNames, "8086", "1234"), "Maker PCI 8086:1234");
    EXPECT_EQ(findPciName(m_root + "missing", "8086", "1234"), "PCI 8086:1234");
}

TEST(DoctorLibraries, AreJudgedByMajorAndMinorNumbers) {
    constexpr unsigned built = 61 << 16 | 19 << 8 | 101;
    const Finding same = judgeLibrary("libavcodec", built, built, "/lib/libavcodec.so.61");
    EXPECT_EQ(same.m_state, FindingState::OK);
    EXPECT_EQ(same.m_text, "61.19.101, /lib/libavcodec.so.61");
    EXPECT_EQ(judgeLibrary("libavcodec", built, 61 << 16 | 20 << 8 | 100, "").m_state, FindingState::OK);
    const Finding older = judgeLibrary("libavcodec", built, 61 << 16 | 3 << 8 | 100, "/lib/a");
    EXPECT_EQ(older.m_state, FindingState::NO);
    EXPECT_EQ(older.m_text, "61.3.100, /lib/a, but this program was built for 61.19.101");
    EXPECT_EQ(older.m_cure, "apt-get install libavcodec61, and no other libavcodec in LD_LIBRARY_PATH");
    EXPECT_EQ(judgeLibrary("libavcodec", built, 62 << 16 | 40 << 8 | 100, "").m_state, FindingState::NO);
}

TEST(DoctorLibraries, ThatTheLoaderMissesAreNamedByTheirPackage) {
    EXPECT_EQ(cureOfRefusal("libavcodec.so.59: cannot open shared object file: No such file or directory"),
              "apt-get install libavcodec59, or a build of the plug-in for the libraries that are here");
    EXPECT_EQ(cureOfRefusal("in x.so: libfoo2.so.1: cannot open shared object file: No such file"),
              "apt-get install libfoo2-1, or a build of the plug-in for the libraries that are here");
    EXPECT_EQ(cureOfRefusal("/usr/lib/x.so: cannot open shared object file"), "");
    EXPECT_EQ(cureOfRefusal("x.so: invalid ELF header"), "");
}

TEST(DoctorDirectories, TakeAFileAndKeepNone) {
    const TemporaryDirectory directory;
    const Finding there = checkDirectory("log", directory.getPath());
    EXPECT_EQ(there.m_state, FindingState::OK);
    EXPECT_THAT(there.m_text, StartsWith(directory.getPath() + ", "));
    EXPECT_TRUE(fs::is_empty(directory.getPath()));
    const Finding missing = checkDirectory("log", directory.getPath() + "a/b");
    EXPECT_EQ(missing.m_state, FindingState::OK);
    const std::string parent = fs::path(directory.getPath()).parent_path();
    EXPECT_THAT(missing.m_text, StartsWith(parent + "/a/b (to be made in " + parent + "), "));
    EXPECT_TRUE(fs::is_empty(directory.getPath()));
}

TEST(DoctorChild, IsGivenNoMoreTimeWhenItClosesItsDescriptors) {
    const ChildAnswer answer = askChild(1, []() -> std::string {
        for (int i = 3; i < 1024; i++) {
            close(i);
        }
        for (;;) {
            pause();
        }
    });
    EXPECT_FALSE(answer.m_isGiven);
    EXPECT_EQ(answer.m_reason, "no answer within 1 s");
}

TEST(DoctorChild, IsDoneBeforeWhatItHasStarted) {
    const ChildAnswer answer = askChild(3600, [] {
        const pid_t started = fork();
        while (started == 0) {
            pause();
        }
        return std::to_string(started);
    });
    ASSERT_TRUE(answer.m_isGiven) << answer.m_reason;
    EXPECT_EQ(kill(atoi(answer.m_text.c_str()), SIGKILL), 0);
}

TEST(DoctorDirectories, AreFullOrReadOnly) {
    ZYR_NEEDS_PRIVATE_SYSTEM();
    runInChild([] {
        enterPrivateMounts();
        const TemporaryDirectory directory;
        const std::string path = directory.getPath();
        ASSERT_EQ(mount("tmpfs", path.c_str(), "tmpfs", 0, "size=32k"), 0);
        const Finding full = checkDirectory("log", path);
        EXPECT_EQ(full.m_state, FindingState::NO);
        EXPECT_EQ(full.m_text, path + ": no file can be written: No space left on device");
        EXPECT_EQ(full.m_cure, "df -h " + path + "; df -i " + path + ", and make room there");
        EXPECT_TRUE(fs::is_empty(path));
        ASSERT_EQ(mount("tmpfs", path.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, "size=32k"), 0);
        const Finding readOnly = checkDirectory("log", path);
        EXPECT_EQ(readOnly.m_text, path + ": no file can be written: Read-only file system");
        EXPECT_EQ(readOnly.m_cure, "mount -o remount,rw $(findmnt -no TARGET -T " + path + ")");
        ASSERT_EQ(umount(path.c_str()), 0);
    });
}

TEST(DoctorLimits, AreTooLow) {
    runInChild([] {
        const rlimit few{100, 100};
        ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
        FindingList findings;
        checkLimits(findings);
        EXPECT_EQ(findings.at(0).m_state, FindingState::NO);
        EXPECT_EQ(findings.at(0).m_text, "100, less than 256");
        EXPECT_EQ(findings.at(0).m_cure, "ulimit -n 1024");
        EXPECT_EQ(findings.at(3).m_name, "size of a file");
    });
}

TEST(DoctorPamServices, AreListedOrMissed) {
    const TemporaryDirectory directory;
    FindingList findings;
    checkPamServices({directory.getPath() + "a", directory.getPath() + "b"}, findings);
    EXPECT_EQ(findings[0].m_state, FindingState::NO);
    EXPECT_EQ(findings[0].m_text,
              "there is no service file in " + directory.getPath() + "a or " + directory.getPath() + "b");
    for (const char* file : {"a/login", "b/other", "b/login", "a/common-auth"}) {
        fs::create_directories(fs::path(directory.getPath() + file).parent_path());
        directory.writeFile(file, "");
    }
    checkPamServices({directory.getPath() + "a", directory.getPath() + "b"}, findings);
    EXPECT_EQ(findings[1].m_state, FindingState::OK);
    EXPECT_EQ(findings[1].m_text, "login other");
}

namespace {

/// A made-up xdpyinfo, or none, in place of all programs.
class DoctorScreen : public testing::Test {
protected:
    DoctorScreen() {
        setenv("DISPLAY", ":77", 1);
        setenv("PATH", m_directory.getPath().c_str(), 1);
    }
    ~DoctorScreen() override {
        unsetenv("DISPLAY");
        setenv("PATH", m_path.c_str(), 1);
    }

    void say(const std::string& p_text, int p_status) const {
        const std::string file = m_directory.writeFile("xdpyinfo", "#!/bin/sh\necho '" + p_text + "'\nexit " +
                                                                       std::to_string(p_status) + "\n");
        chmod(file.c_str(), 0755);
    }
    static Finding check() {
        FindingList findings;
        checkScreen(findings);
        return findings.at(0);
    }

    const std::string m_path = getenv("PATH");
    TemporaryDirectory m_directory;
};

} // namespace

TEST_F(DoctorScreen, HasWhatCapturingNeeds) {
    say("  dimensions:    1280x720 pixels (1x1 millimeters)\n    DAMAGE\n    MIT-SHM\n    RANDR\n    XFIXES\n    XTEST",
        0);
    const Finding finding = check();
    EXPECT_EQ(finding.m_state, FindingState::OK);
    EXPECT_EQ(finding.m_name, "X screen :77");
    EXPECT_EQ(finding.m_text, "1280x720, with DAMAGE, MIT-SHM, RANDR, XFIXES and XTEST");
}

TEST_F(DoctorScreen, LacksAnExtension) {
    say("  dimensions:    640x480 pixels\n    DAMAGE\n    MIT-SHM\n    XFIXES", 0);
    const Finding finding = check();
    EXPECT_EQ(finding.m_state, FindingState::NO);
    EXPECT_EQ(finding.m_text, "640x480, without RANDR, XTEST");
}

TEST_F(DoctorScreen, CannotBeOpened) {
    say("xdpyinfo:  unable to open display", 1);
    const Finding finding = check();
    EXPECT_EQ(finding.m_state, FindingState::NO);
    EXPECT_EQ(finding.m_text, "xdpyinfo:  unable to open display");
    EXPECT_EQ(finding.m_cure, "xhost +si:localuser:" + accountOf(geteuid()) + ", as the user of the screen");
}

TEST_F(DoctorScreen, IsNotLookedAtWithoutTheProgramOrADisplay) {
    EXPECT_EQ(check().m_cure, "apt-get install x11-utils");
    EXPECT_EQ(check().m_state, FindingState::UNKNOWN);
    unsetenv("DISPLAY");
    EXPECT_EQ(check().m_text, "DISPLAY is not set: there is no X screen to look at");
    EXPECT_EQ(check().m_state, FindingState::UNKNOWN);
}

TEST(ChildQuestion, GivesTheAnswerOfAnyLength) {
    const std::string text(300000, 'x');
    const ChildAnswer answer = askChild(60, [&] { return text; });
    EXPECT_TRUE(answer.m_isGiven);
    EXPECT_EQ(answer.m_text, text);
    EXPECT_TRUE(askChild(60, [] { return std::string(); }).m_isGiven);
}

TEST(ChildQuestion, TellsWhyThereIsNoAnswer) {
    const ChildAnswer thrown = askChild(60, []() -> std::string { throw std::runtime_error("no luck"); });
    EXPECT_FALSE(thrown.m_isGiven);
    EXPECT_EQ(thrown.m_reason, "no luck");
    EXPECT_FALSE(thrown.m_crashed);
    const ChildAnswer crashed = askChild(60, []() -> std::string {
        fputs("first\nlast words\n", stderr);
        raise(SIGKILL);
        return "";
    });
    EXPECT_TRUE(crashed.m_crashed);
    EXPECT_EQ(crashed.m_reason, "it crashed (SIGKILL): last words");
    EXPECT_EQ(askChild(60, []() -> std::string { _exit(7); }).m_reason, "it ended the process with status 7");
    const ChildAnswer hung = askChild(1, []() -> std::string {
        for (;;) {
            pause();
        }
    });
    EXPECT_EQ(hung.m_reason, "no answer within 1 s");
}

} // namespace zyr::host
