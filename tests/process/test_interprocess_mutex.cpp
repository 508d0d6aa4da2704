#include "zyr_common/process/zyr_interprocess_mutex.h"
#include "zyr_common/text/zyr_string.h"

#include "support/log_capture.h"
#include "support/zyr_private_mounts.h"
#include "zyr_process_test.h"
#include "zyr_system_calls.h"

#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace zyr {

namespace {

class NamedLock : public testing::Test {
protected:
    NamedLock() { unlink(m_path.c_str()); }
    ~NamedLock() override {
        unlink(m_path.c_str());
        rmdir(m_path.c_str());
    }

    /// Construction is refused with this reason at the lock's path, and nothing else.
    void expectRefused(int p_error) const {
        const LogCapture capture;
        InterprocessMutex mutex(m_name.c_str());
        EXPECT_FALSE(mutex.isValid());
        EXPECT_FALSE(mutex.lock());
        EXPECT_FALSE(mutex.tryLock());
        const std::vector<CapturedLine> lines = capture.getLines();
        ASSERT_EQ(lines.size(), p_error != 0 ? 1u : 0u);
        if (p_error != 0) {
            EXPECT_EQ(lines[0].level, ZYR_LOG_LEVEL_WARN);
            EXPECT_EQ(lines[0].module, "common");
            EXPECT_FALSE(lines[0].echo);
            EXPECT_EQ(lines[0].function, "zyr::InterprocessMutex::InterprocessMutex(const zyr::String&)");
            EXPECT_EQ(lines[0].message, "Unable to open interprocess mutex " + m_path + ": " + strerror(p_error));
        }
    }

    const std::string m_name = "zyr-test_Lock.1-" + std::to_string(getpid());
    const std::string m_path = "/tmp/" + m_name + ".lock";
};

/// A process that takes the lock, tells so by closing a pipe's end, and waits for its end.
class Holder {
public:
    explicit Holder(const std::string& p_name) {
        int ready[2];
        EXPECT_EQ(pipe(ready), 0);
        m_process = fork();
        if (m_process == 0) {
            close(ready[0]);
            InterprocessMutex mutex(p_name.c_str());
            const char result = mutex.lock() ? 'y' : 'n';
            [[maybe_unused]] const ssize_t written = write(ready[1], &result, 1);
            pause();
            _exit(0);
        }
        close(ready[1]);
        EXPECT_EQ(read(ready[0], &m_answer, 1), 1);
        close(ready[0]);
    }
    ~Holder() { end(); }

    void end() {
        if (m_process > 0) {
            kill(m_process, SIGKILL);
            waitForStatus(uint32_t(m_process));
            m_process = 0;
        }
    }

    char m_answer = 0;

private:
    pid_t m_process;
};

} // namespace

static_assert(sizeof(InterprocessMutex) == 8 && alignof(InterprocessMutex) == 4);

TEST_F(NamedLock, KeepsItsFileAfterItsEnd) {
    {
        InterprocessMutex mutex(m_name.c_str());
        EXPECT_TRUE(mutex.isValid());
        EXPECT_TRUE(mutex.lock());
    }
    struct stat status;
    ASSERT_EQ(stat(m_path.c_str(), &status), 0);
    EXPECT_TRUE(S_ISREG(status.st_mode));
    const mode_t mask = umask(0);
    umask(mask);
    EXPECT_EQ(status.st_mode & 0777, 0666u & ~mask);
}

TEST_F(NamedLock, HasItsFieldsInOrder) {
    InterprocessMutex mutex(m_name.c_str());
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(&mutex);
    EXPECT_EQ(bytes[0], 1);
    EXPECT_EQ(bytes[1], 0);
    EXPECT_TRUE(mutex.lock());
    EXPECT_EQ(bytes[1], 1);
    int32_t descriptor = -1;
    memcpy(&descriptor, bytes + 4, sizeof(descriptor));
    EXPECT_EQ(fcntl(descriptor, F_GETFD), FD_CLOEXEC);
    const InterprocessMutex invalid("");
    bytes = reinterpret_cast<const unsigned char*>(&invalid);
    memcpy(&descriptor, bytes + 4, sizeof(descriptor));
    EXPECT_EQ(bytes[0], 0);
    EXPECT_EQ(descriptor, -1);
}

TEST_F(NamedLock, IsNotRecursiveAndDoesNotWaitForItself) {
    InterprocessMutex mutex(m_name.c_str());
    EXPECT_TRUE(mutex.lock());
    EXPECT_FALSE(mutex.lock());
    EXPECT_FALSE(mutex.tryLock());
    mutex.unlock();
    EXPECT_TRUE(mutex.tryLock());
    EXPECT_FALSE(mutex.tryLock());
}

TEST_F(NamedLock, ExcludesTwoObjectsOfOneProcess) {
    InterprocessMutex first(m_name.c_str());
    InterprocessMutex second(m_name.c_str());
    EXPECT_TRUE(first.lock());
    EXPECT_FALSE(second.tryLock());
    second.unlock(); // not held: must not free the first one's lock
    EXPECT_FALSE(second.tryLock());
    first.unlock();
    EXPECT_TRUE(second.tryLock());
    EXPECT_FALSE(first.tryLock());
}

TEST_F(NamedLock, IsFreedByTheDestructor) {
    InterprocessMutex first(m_name.c_str());
    {
        InterprocessMutex second(m_name.c_str());
        EXPECT_TRUE(second.lock());
    }
    EXPECT_TRUE(first.tryLock());
}

TEST_F(NamedLock, LeavesNoDescriptor) {
    const std::vector<int> before = getOpenDescriptors();
    {
        InterprocessMutex mutex(m_name.c_str());
        EXPECT_EQ(getOpenDescriptors().size(), before.size() + 1);
    }
    { InterprocessMutex invalid("a/b"); }
    EXPECT_EQ(getOpenDescriptors(), before);
}

TEST_F(NamedLock, ExcludesAnotherProcessUntilThatIsKilled) {
    Holder holder(m_name);
    EXPECT_EQ(holder.m_answer, 'y');
    InterprocessMutex mutex(m_name.c_str());
    EXPECT_TRUE(mutex.isValid());
    EXPECT_FALSE(mutex.tryLock());
    holder.end();
    EXPECT_TRUE(mutex.tryLock());
}

TEST_F(NamedLock, WaitsForTheHolder) {
    Holder holder(m_name);
    int result[2];
    ASSERT_EQ(pipe(result), 0);
    const pid_t waiter = fork();
    if (waiter == 0) {
        InterprocessMutex mutex(m_name.c_str());
        const char answer = mutex.lock() ? 'y' : 'n';
        _exit(write(result[1], &answer, 1) == 1 ? 0 : 1);
    }
    close(result[1]);
    // It is asleep in the kernel, in flock, when it waits.
    const std::string path = "/proc/" + std::to_string(waiter) + "/wchan";
    for (int i = 0; i < 2000 && TemporaryDirectory::readFile(path).find("lock") == std::string::npos; i++) {
        usleep(1000);
    }
    EXPECT_TRUE(isRunning(uint32_t(waiter)));
    holder.end();
    char answer = 0;
    EXPECT_EQ(read(result[0], &answer, 1), 1);
    EXPECT_EQ(answer, 'y');
    close(result[0]);
    EXPECT_EQ(waitForExit(uint32_t(waiter)), 0);
}

TEST_F(NamedLock, RefusesOtherNamesInSilence) {
    for (const char* name :
         {"", "a/b", "/", "../x", "a b", "a\nb", "\xc3\xa4", "a:b", "~", "a\\b", "a%s", "a*", "-/-"}) {
        const LogCapture capture;
        SystemCalls calls;
        InterprocessMutex mutex(name);
        EXPECT_FALSE(mutex.isValid()) << name;
        EXPECT_FALSE(mutex.lock()) << name;
        EXPECT_FALSE(mutex.tryLock()) << name;
        mutex.unlock();
        EXPECT_TRUE(capture.getLines().empty()) << name;
        EXPECT_TRUE(calls.getCallsOfThisProcess().empty()) << name;
    }
    const LogCapture capture;
    InterprocessMutex hidden(String("zyr\0x", 5));
    EXPECT_FALSE(hidden.isValid());
    EXPECT_TRUE(capture.getLines().empty());
}

TEST_F(NamedLock, TakesNamesOfPeriods) {
    for (const char* name : {".", "..", "-", "_"}) {
        const std::string path = std::string("/tmp/") + name + ".lock";
        const bool present = access(path.c_str(), F_OK) == 0;
        EXPECT_TRUE(InterprocessMutex(name).isValid()) << name;
        if (!present) {
            unlink(path.c_str());
        }
    }
}

TEST_F(NamedLock, RefusesALinkAtItsPath) {
    const TemporaryDirectory directory;
    const std::string target = directory.writeFile("target", "kept");
    ASSERT_EQ(symlink(target.c_str(), m_path.c_str()), 0);
    expectRefused(ELOOP);
    EXPECT_EQ(TemporaryDirectory::readFile(target), "kept");
    unlink(m_path.c_str());
    ASSERT_EQ(symlink("/nowhere/at/all", m_path.c_str()), 0);
    expectRefused(ELOOP);
}

TEST_F(NamedLock, RefusesADirectoryAtItsPathInSilence) {
    ASSERT_EQ(mkdir(m_path.c_str(), 0755), 0);
    const std::vector<int> before = getOpenDescriptors();
    expectRefused(0);
    EXPECT_EQ(getOpenDescriptors(), before);
}

TEST_F(NamedLock, RefusesAFifoAtItsPathWithoutWaitingForAWriter) {
    ASSERT_EQ(mkfifo(m_path.c_str(), 0666), 0);
    expectRefused(0);
}

TEST_F(NamedLock, RefusesADeviceAtItsPath) {
    if (mknod(m_path.c_str(), S_IFCHR | 0666, makedev(1, 3)) != 0) {
        GTEST_SKIP() << "only root can make a device";
    }
    expectRefused(0);
}

TEST_F(NamedLock, TellsThatTheFileMayNotBeRead) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can become another user";
    }
    { InterprocessMutex mutex(m_name.c_str()); }
    ASSERT_EQ(chmod(m_path.c_str(), 0600), 0);
    runInChild([this] {
        ASSERT_EQ(setresuid(65534, 65534, 65534), 0);
        expectRefused(EACCES);
    });
}

TEST_F(NamedLock, OpensAnExistingFileWithoutCreatingIt) {
    { InterprocessMutex mutex(m_name.c_str()); }
    SystemCalls calls;
    InterprocessMutex mutex(m_name.c_str());
    EXPECT_EQ(calls.getCallsOfThisProcess(), (Texts{"open " + m_path, "fstat"}));
}

TEST_F(NamedLock, TriesEightTimesAgainstAFileThatComesAndGoes) {
    SystemCalls calls;
    calls.fail("open", ENOENT);
    calls.fail("create", EEXIST);
    expectRefused(EEXIST);
    Texts expected;
    for (int i = 0; i < 8; i++) {
        expected.push_back("open " + m_path);
        expected.push_back("create " + m_path);
    }
    EXPECT_EQ(calls.getCallsOfThisProcess(), expected);
}

TEST_F(NamedLock, SucceedsInTheEighthRound) {
    SystemCalls calls;
    calls.fail("open", ENOENT);
    calls.fail("create", EEXIST, 7);
    InterprocessMutex mutex(m_name.c_str());
    EXPECT_TRUE(mutex.isValid());
    EXPECT_EQ(calls.getCallsOfThisProcess().size(), 17u); // sixteen attempts and the look at the file
}

TEST_F(NamedLock, ReportsAtOnceWhatIsNotAMissingFile) {
    {
        SystemCalls calls;
        calls.fail("open", EMFILE);
        expectRefused(EMFILE);
        EXPECT_EQ(calls.getCallsOfThisProcess(), Texts{"open " + m_path});
    }
    SystemCalls calls;
    calls.fail("open", ENOENT);
    calls.fail("create", ENOSPC);
    expectRefused(ENOSPC);
    EXPECT_EQ(calls.getCallsOfThisProcess(), (Texts{"open " + m_path, "create " + m_path}));
}

TEST_F(NamedLock, IsInvalidInSilenceWhenTheFileCantBeExamined) {
    SystemCalls calls;
    calls.fail("fstat", EIO);
    expectRefused(0);
    EXPECT_EQ(calls.getCallsOfThisProcess().at(3).substr(0, 6), "close ");
}

TEST_F(NamedLock, GoesOnBehindAnInterruption) {
    InterprocessMutex mutex(m_name.c_str());
    SystemCalls calls;
    calls.fail("flock", EINTR, 3);
    EXPECT_TRUE(mutex.lock());
    EXPECT_EQ(calls.getCallsOfThisProcess().size(), 4u);
    EXPECT_EQ(calls.getCallsOfThisProcess().at(3), "flock " + std::to_string(LOCK_EX));
    mutex.unlock();
    mutex.unlock();
    EXPECT_EQ(calls.getCallsOfThisProcess().size(), 5u);
    EXPECT_EQ(calls.getCallsOfThisProcess().at(4), "flock " + std::to_string(LOCK_UN));
    EXPECT_TRUE(mutex.tryLock());
    EXPECT_EQ(calls.getCallsOfThisProcess().at(5), "flock " + std::to_string(LOCK_EX | LOCK_NB));
}

TEST_F(NamedLock, GivesFalseForAnyOtherFailure) {
    InterprocessMutex mutex(m_name.c_str());
    SystemCalls calls;
    calls.fail("flock", ENOLCK);
    EXPECT_FALSE(mutex.lock());
    EXPECT_FALSE(mutex.tryLock());
    EXPECT_EQ(calls.getCallsOfThisProcess().size(), 2u);
}

} // namespace zyr
