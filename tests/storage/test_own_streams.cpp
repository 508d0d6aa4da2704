// Saves and loads through file streams of another make, of which only the operations work that they need.
#include "core_module/core_module_test.h"
#include "support/log_capture.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/object/zyr_core_entries.h"
#include "zyr_common/storage/zyr_load_save.h"
#include "zyr_common/streams/zyr_file_stream.h"

#include <filesystem>
#include <map>
#include <vector>

namespace zyr {
namespace {

/// Files that are known to nobody else.
std::map<std::string, std::string> s_files;

class OwnOutput : public WOutputStreamFile {
public:
    bool_t open(const String& p_path) override {
        m_file = &s_files[p_path.getData()];
        m_file->clear();
        return 1;
    }
    uint64_t writeBytes(const void* p_data, uint64_t p_size) override {
        m_file->append(static_cast<const char*>(p_data), p_size);
        return p_size;
    }
    bool_t flush() override { return 0; }

private:
    std::string* m_file = nullptr;
};

class OwnInput : public WInputStreamFile {
public:
    bool_t open(const String& p_path) override {
        m_rest = s_files[p_path.getData()];
        return !m_rest.empty();
    }
    uint64_t getFileSize() const override { return m_rest.size(); }
    uint64_t readBytes(void* p_data, uint64_t p_size) override {
        const size_t size = m_rest.copy(static_cast<char*>(p_data), p_size);
        m_rest.erase(0, size);
        return size;
    }

private:
    std::string m_rest;
};

/// A file of the system that tells which one, and not whether it was flushed.
class TellingOutput : public WOutputStreamFile {
public:
    bool_t open(const String& p_path) override {
        s_opened.emplace_back(p_path.getData());
        return WOutputStreamFile::open(p_path);
    }
    bool_t flush() override {
        WOutputStreamFile::flush();
        return 0;
    }

    static inline std::vector<std::string> s_opened;
};

/// Lets the core table make the class in place of its own, which stays the class's interface object.
template <class Class, class Interface> class ReplacedEntry {
public:
    ReplacedEntry() : m_entry(&zyr_getApplicationData()->m_core->m_entries[coreTableEntry<Interface>]) {
        s_own = *m_entry;
        s_place = m_entry;
        *m_entry = reinterpret_cast<moduleEntry_FUNC>(&make);
    }
    ReplacedEntry(const ReplacedEntry&) = delete;
    ReplacedEntry& operator=(const ReplacedEntry&) = delete;
    ~ReplacedEntry() { *m_entry = s_own; }

private:
    static Interface* make() {
        *s_place = s_own;
        Class* stream = new Class;
        stream->initObjectInterface();
        *s_place = reinterpret_cast<moduleEntry_FUNC>(&make);
        return stream;
    }

    static inline moduleEntry_FUNC s_own = nullptr;
    static inline moduleEntry_FUNC* s_place = nullptr;
    moduleEntry_FUNC* m_entry;
};

class OwnStreamsTest : public CoreModuleUpTest {
protected:
    void SetUp() override {
        CoreModuleUpTest::SetUp();
        m_object = zyr_createObject<IDataFormatInfo>();
        m_object->setFormatName("kept");
    }
    void TearDown() override {
        m_object->release();
        s_files.clear();
    }
    bool_t save(const std::string& p_path) { return zyr_saveToFile(m_object, p_path.c_str(), "", 0, ""); }
    void expectLoaded(const std::string& p_path) {
        IObject* loaded = zyr_loadFromFile(p_path.c_str(), "", "");
        ASSERT_NE(loaded, nullptr);
        EXPECT_EQ(static_cast<IDataFormatInfo*>(loaded)->getFormatName(), "kept");
        loaded->release();
    }

    TemporaryDirectory m_directory;
    IDataFormatInfo* m_object = nullptr;
};

TEST_F(OwnStreamsTest, SaveAndLoadByOpeningReadingAndWritingAlone) {
    const ReplacedEntry<OwnOutput, IOutputStreamFile> output;
    const ReplacedEntry<OwnInput, IInputStreamFile> input;
    const std::string path = m_directory.getPath() + "object.json";
    ASSERT_TRUE(save(path));
    EXPECT_FALSE(s_files[path].empty());
    EXPECT_FALSE(std::filesystem::exists(path));
    expectLoaded(path);
}

TEST_F(OwnStreamsTest, AreToldThePathItselfOnce) {
    const ReplacedEntry<TellingOutput, IOutputStreamFile> output;
    const std::string path = m_directory.getPath() + "object.json";
    for (int i = 0; i < 2; i++) {
        TellingOutput::s_opened.clear();
        ASSERT_TRUE(save(path));
        EXPECT_EQ(TellingOutput::s_opened, std::vector<std::string>{path});
        expectLoaded(path);
    }
}

} // namespace
} // namespace zyr
