// Loads and saves in which one system call or one block of memory is not given: false or null with a line, nothing
// lost, nothing left behind, and the old files whole.
#include "storage/failing_calls.h"
#include "storage/storage_test.h"
#include "support/zyr_heap_watch.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"
#include "zyr_common/serialization/zyr_serializer.h"

#include <csignal>
#include <functional>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace zyr {
namespace {

using test::failCall;
using test::failHeapBlock;
using test::getFailedCall;

constexpr size_t LARGE = 120000;
/// Smaller blocks belong to objects and texts, for which there is no going on without memory.
constexpr size_t LARGE_BLOCK = 70000;

class FailingStorage : public CoreModuleUpTest, public testing::WithParamInterface<const char*> {
protected:
    void SetUp() override {
        CoreModuleUpTest::SetUp();
        getData()->setLogLevel(ZYR_LOG_LEVEL_ERROR);
    }

    static std::string getFormat() { return GetParam(); }
    std::string path(const char* p_name) const { return m_directory.getPath() + p_name + "." + getFormat(); }
    std::string read(const char* p_name) const { return TemporaryDirectory::readFile(path(p_name)); }
    size_t countFiles() const {
        return static_cast<size_t>(std::distance(std::filesystem::directory_iterator(m_directory.getPath()), {}));
    }

    static Ref<INativeFormatInfo> makeInfo(const char* p_name, size_t p_size) {
        auto info = Ref<INativeFormatInfo>::adopt(zyr_createObject<INativeFormatInfo>());
        info->setFormatName(p_name);
        if (p_size != 0) {
            std::string bytes(p_size, 0);
            for (size_t i = 0; i < p_size; i++) {
                bytes[i] = static_cast<char>(i * i >> 3);
            }
            info->getMutableOriginalFile()->pushBackRange(bytes.data(), p_size);
        }
        return info;
    }
    /// An object, one in a file of its own, and one that is compressed.
    static Ref<IObject> makeFamily(const char* p_name, size_t p_size) {
        auto list = Ref<IListOfObjects>::adopt(zyr_createObject<IListOfObjects>());
        const auto part = makeInfo(p_name, 10);
        const auto packed = makeInfo(p_name, 10);
        const auto zip = Ref<IZipCompressionInfo>::adopt(zyr_createObject<IZipCompressionInfo>());
        part->setDeferredFile(("part." + getFormat()).c_str());
        packed->setCompressionInfo(zip.get());
        list->pushBack(makeInfo(p_name, p_size).get());
        list->pushBack(part.get());
        list->pushBack(packed.get());
        return Ref<IObject>::share(list.get());
    }
    bool saveFamily(IObject* p_family) const {
        return zyr_saveToFile(p_family, path("whole").c_str(), "", 1, m_directory.getPath().c_str()) != 0;
    }
    Ref<IObject> loadFamily() const {
        return Ref<IObject>::adopt(zyr_loadFromFile(path("whole").c_str(), "", m_directory.getPath().c_str()));
    }

    static size_t countWarnings(const LogCapture& p_capture) {
        size_t count = 0;
        for (const CapturedLine& line : p_capture.getLines()) {
            count += line.level == ZYR_LOG_LEVEL_WARN;
        }
        return count;
    }
    /// The second object has its file, and the third its compression, as before the save.
    static void expectStandIns(IObject* p_family) {
        const auto* list = static_cast<const IListOfObjects*>(p_family);
        int place = 0;
        for (auto it = list->beginConst(); it != list->endConst(); ++it, ++place) {
            EXPECT_EQ((*it)->getDeferredFile() != nullptr, place == 1);
            EXPECT_EQ((*it)->getCompressionInfo(0) != nullptr, place == 2);
        }
        EXPECT_EQ(place, 3);
    }
    static size_t countDescriptors() {
        return static_cast<size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
    }

    TemporaryDirectory m_directory;
};

TEST_P(FailingStorage, SavesLeaveTheOldFilesWholeWhereverACallFails) {
    const Ref<IObject> before = makeFamily("before", LARGE);
    const Ref<IObject> after = makeFamily("after", LARGE + 1);
    ASSERT_TRUE(saveFamily(after.get()));
    const std::string newFiles[] = {read("whole"), read("part")};
    std::map<std::string, int> failures;
    for (int number = 1;; number++) {
        ASSERT_TRUE(saveFamily(before.get()));
        const std::string oldFiles[] = {read("whole"), read("part")};
        const size_t descriptors = countDescriptors();
        size_t warnings = 0;
        bool saved = false;
        {
            const LogCapture capture;
            failCall(number);
            saved = saveFamily(after.get());
            failCall(0);
            warnings = countWarnings(capture);
        }
        if (getFailedCall().empty()) {
            EXPECT_TRUE(saved);
            break;
        }
        SCOPED_TRACE(getFailedCall() + ", call " + std::to_string(number));
        failures[getFailedCall()]++;
        EXPECT_EQ(countDescriptors(), descriptors);
        EXPECT_EQ(countFiles(), 2u);
        EXPECT_TRUE(read("whole") == (saved ? newFiles[0] : oldFiles[0]));
        EXPECT_TRUE(read("part") == newFiles[1] || (!saved && read("part") == oldFiles[1]));
        EXPECT_EQ(saved, warnings == 0);
        // What a descriptor gives at its end comes after everything was written and synchronized.
        EXPECT_EQ(saved, getFailedCall() == "close");
        expectStandIns(after.get());
    }
    for (const char* call : {"open", "fstat", "write", "fsync", "rename", "close"}) {
        EXPECT_GE(failures[call], 2) << call;
    }
}

TEST_P(FailingStorage, LoadsGiveNullWhereverACallFails) {
    ASSERT_TRUE(saveFamily(makeFamily("name", LARGE).get()));
    const std::string files[] = {read("whole"), read("part")};
    std::map<std::string, int> failures;
    for (int number = 1;; number++) {
        const size_t descriptors = countDescriptors();
        const LogCapture capture;
        failCall(number);
        const Ref<IObject> loaded = loadFamily();
        failCall(0);
        if (getFailedCall().empty()) {
            EXPECT_TRUE(loaded);
            break;
        }
        SCOPED_TRACE(getFailedCall() + ", call " + std::to_string(number));
        failures[getFailedCall()]++;
        EXPECT_EQ(countDescriptors(), descriptors);
        EXPECT_EQ(static_cast<bool>(loaded), getFailedCall() == "close");
        EXPECT_EQ(static_cast<bool>(loaded), countWarnings(capture) == 0);
        EXPECT_TRUE(read("whole") == files[0] && read("part") == files[1]);
    }
    for (const char* call : {"open", "fstat", "read", "close"}) {
        EXPECT_GE(failures[call], 2) << call;
    }
}

TEST_P(FailingStorage, NothingIsLostWhereverACallFails) {
    const Ref<IObject> family = makeFamily("name", LARGE);
    ASSERT_TRUE(saveFamily(family.get()) && loadFamily());
    for (int number = 1;; number++) {
        const auto run = [&] {
            const LogCapture capture;
            failCall(number);
            saveFamily(family.get());
            const std::string failed = getFailedCall();
            failCall(number);
            loadFamily();
            failCall(0);
            return !failed.empty();
        };
        run();
        const size_t blocks = test::getNumOfHeapBlocks();
        const bool failed = run();
        EXPECT_EQ(test::getNumOfHeapBlocks(), blocks) << number;
        if (!failed) {
            EXPECT_GE(number, 15);
            break;
        }
        ASSERT_TRUE(saveFamily(family.get()));
    }
}

#ifdef ZYR_TEST_HEAP_WATCHED

/// How often a run in which one large block isn't given ends with false or null and nothing lost, and how often the
/// process ends with it, as it does where an array can't grow. In processes of their own.
struct Outcomes {
    int m_failed = 0;
    int m_aborted = 0;
};

template <typename Run> Outcomes runWithoutBlocks(Run p_run) {
    Outcomes outcomes;
    p_run();
    for (size_t number = 1;; number++) {
        const pid_t child = fork();
        if (child == 0) {
            const rlimit noCore = {0, 0};
            setrlimit(RLIMIT_CORE, &noCore);
            const LogCapture capture;
            const size_t blocks = test::getNumOfHeapBlocks();
            failHeapBlock(number, LARGE_BLOCK);
            const bool done = p_run();
            failHeapBlock(0, 0);
            if (!test::hasHeapFailed()) {
                _exit(done ? 2 : 1);
            }
            size_t inLines = 0;
            for (const CapturedLine& line : capture.getLines()) {
                inLines += line.message.size() + line.function.size(); // Their blocks are the capture's own.
            }
            _exit(!done && inLines != 0 && test::getNumOfHeapBlocks() < blocks + 12 ? 0 : 1);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        if (WIFSIGNALED(status)) {
            EXPECT_EQ(WTERMSIG(status), SIGABRT) << number;
            outcomes.m_aborted++;
            continue;
        }
        EXPECT_NE(WEXITSTATUS(status), 1) << number;
        if (WEXITSTATUS(status) != 0) {
            return outcomes;
        }
        outcomes.m_failed++;
    }
}

TEST_P(FailingStorage, EndsWithFalseOrNullWhereABufferIsNotGiven) {
    const Ref<IObject> family = makeFamily("name", LARGE);
    ASSERT_TRUE(saveFamily(family.get()));
    const std::string file = read("whole");
    const Outcomes saves = runWithoutBlocks([&] { return saveFamily(family.get()) || read("whole") != file; });
    EXPECT_GE(saves.m_failed, 1);
    const Outcomes loads = runWithoutBlocks([&] { return static_cast<bool>(loadFamily()); });
    EXPECT_GE(loads.m_failed, 1);
    printf("%s: saves failed %d, aborted %d; loads failed %d, aborted %d\n", GetParam(), saves.m_failed,
           saves.m_aborted, loads.m_failed, loads.m_aborted);
}

/// Each operation writes more than the buffer holds. Names are kept by the format with a table, which ends the process
/// where there is no memory for one.
std::vector<std::function<bool_t(ISerializer*)>> makeLargeWrites(bool p_hasTable) {
    static const String text(std::string(9000, 't'));
    static const String escaped(std::string(3000, '\xFF'));
    static const String name(std::string(9000, 'n'));
    static const std::vector<double> reals(3000, 0.5);
    static const std::vector<float> singles(6000, 0.5F);
    static const std::vector<uint32_t> numbers(6000, 123456);
    std::vector<std::function<bool_t(ISerializer*)>> writes = {
        [](ISerializer* p_to) { return p_to->writeString("a", text, 0, 0); },
        [](ISerializer* p_to) { return p_to->writeString("a", text, 1, 0); },
        [](ISerializer* p_to) { return p_to->writeString("a", escaped, 0, 0); },
        [](ISerializer* p_to) { return p_to->writeStringRef("a", &text, 0, 0); },
        [](ISerializer* p_to) { return p_to->writeStringArray("a", 1, &text, 0, 0); },
        [](ISerializer* p_to) { return p_to->writeDoubleArray("a", 3000, reals.data(), 0, 0); },
        [](ISerializer* p_to) { return p_to->writeFloatArray("a", 6000, singles.data(), 0, 4); },
        [](ISerializer* p_to) { return p_to->writeUInt32Array("a", 6000, numbers.data(), 0, 0); },
        [](ISerializer* p_to) { return p_to->writeEnumArray("a", 6000, numbers.data(), 0, nullptr); }};
    if (!p_hasTable) {
        writes.insert(writes.end(),
                      {[](ISerializer* p_to) { return p_to->writeBool(name, 1, 0, 0); },
                       [](ISerializer* p_to) { return p_to->writeBool(name, 1, 1, 0); },
                       [](ISerializer* p_to) { return p_to->writeDouble(name, 0.5, 0, 0); },
                       [](ISerializer* p_to) { return p_to->writeUInt64(name, 1, 0, 0, nullptr); },
                       [](ISerializer* p_to) { return p_to->writeString(name, "", 0, 0); },
                       [](ISerializer* p_to) { return p_to->writeString(name, "a", 1, 0); },
                       [](ISerializer* p_to) { return p_to->writeStringRef(name, nullptr, 0, 0); },
                       [](ISerializer* p_to) { return p_to->writeNullObject(name); },
                       [](ISerializer* p_to) { return p_to->beginStructure(name, 0) && p_to->endStructure(); },
                       [](ISerializer* p_to) { return p_to->beginObject("a", name, name) && p_to->endObject(); },
                       [](ISerializer* p_to) {
                           return p_to->beginArray(name, 1, ZYR_ARRAY_OF_RECORDS) && p_to->beginArrayElement(0, "R") &&
                                  p_to->endArrayElement() && p_to->endArray();
                       }});
    }
    return writes;
}

TEST_P(FailingStorage, SerializersEndWithFalseWhereABufferIsNotGiven) {
    std::string name = GetParam();
    name[0] = static_cast<char>(name[0] - 'a' + 'A');
    size_t failures = 0;
    size_t place = 0;
    for (const auto& write : makeLargeWrites(name == "Zbf")) {
        bool isWritten = false;
        for (size_t number = 1; !isWritten && number < 30; number++) {
            const auto serializer = Ref<IObject>::adopt(zyr_createObjectFromName((name + "Serializer").c_str()));
            auto* to = static_cast<ISerializer*>(serializer.get());
            ASSERT_TRUE(to->initialize() && to->beginStructure("top", 0));
            failHeapBlock(number, 2048);
            const bool_t done = write(to);
            failHeapBlock(0, 0);
            isWritten = !test::hasHeapFailed();
            EXPECT_EQ(done != 0, isWritten) << place << " at block " << number;
            failures += !isWritten;
        }
        EXPECT_TRUE(isWritten) << place;
        place++;
    }
    EXPECT_GE(failures, place);
}

class FailingTable : public CoreModuleUpTest {};

TEST_F(FailingTable, LeavesNoOutputWhereItHasNoRoom) {
    const auto serializer = Ref<IObject>::adopt(zyr_createObjectFromName("ZbfSerializer"));
    auto* to = static_cast<ISerializer*>(serializer.get());
    const String name(std::string(9000, 'n'));
    for (const size_t number : {0, 1}) {
        ASSERT_TRUE(to->initialize() && to->writeBool(name, 1, 0, 0));
        failHeapBlock(number, 2048);
        EXPECT_EQ(to->getDataSize() != 0, number == 0);
        failHeapBlock(0, 0);
        EXPECT_EQ(to->getData() != nullptr, number == 0);
        EXPECT_TRUE(to->deinitialize());
    }
}

#endif

INSTANTIATE_TEST_SUITE_P(Formats, FailingStorage, testing::ValuesIn(c_formats));

} // namespace
} // namespace zyr
