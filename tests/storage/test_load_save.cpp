// Loading and saving of whole objects: what is logged, and what stands afterwards.
#include "core_module/core_module_test.h"
#include "support/log_capture.h"
#include "zyr_common/application/zyr_format_registries.h"
#include "zyr_common/digest/zyr_xxhash.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/formats/zyr_stored_objects.h"
#include "zyr_common/storage/zyr_load_save.h"

#include <climits>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zyr {
namespace {

using testing::ElementsAre;

class LoadSaveTest : public CoreModuleUpTest {
protected:
    std::string path(const std::string& p_name) const { return m_directory.getPath() + p_name; }

    static INativeFormatInfo* makeInfo(const char* p_name) {
        INativeFormatInfo* info = zyr_createObject<INativeFormatInfo>();
        const unsigned char bytes[] = {1, 2, 3, 250, 5};
        info->setFormatName(p_name);
        info->setFilePath("some/path");
        info->setReadOnly(1);
        info->getMutableOriginalFile()->pushBackRange(bytes, sizeof(bytes));
        return info;
    }
    static void expectInfo(IObject* p_object, const char* p_name) {
        ASSERT_NE(p_object, nullptr);
        ASSERT_EQ(p_object->getClassName(), "NativeFormatInfo");
        const INativeFormatInfo* info = static_cast<const INativeFormatInfo*>(p_object);
        EXPECT_EQ(info->getFormatName(), p_name);
        EXPECT_EQ(info->getFilePath(), "some/path");
        EXPECT_TRUE(info->isReadOnly());
        EXPECT_EQ(info->getOriginalFile()->getSize(), 5U);
    }
    std::string save(IObject* p_object, const std::string& p_format) const {
        Array<unsigned char> data;
        EXPECT_TRUE(zyr_saveToData(p_object, data, p_format.c_str(), 1, m_directory.getPath().c_str()));
        return std::string(reinterpret_cast<const char*>(data.getData()), data.getSize());
    }
    static IObject* load(const std::string& p_bytes, const char* p_format) {
        Array<unsigned char> data;
        data.setAllocationModel(ZYR_ALLOC_CONDITION_ON_RESIZE, 1);
        data.pushBackRange(p_bytes.data(), p_bytes.size());
        return zyr_loadFromData(data, p_format, "");
    }
    /// The messages of this program's copy of the library at the level of warnings.
    static std::vector<std::string> warnings(const LogCapture& p_capture) {
        std::vector<std::string> messages;
        for (const CapturedLine& line : p_capture.getLines()) {
            if (line.level <= 2) {
                EXPECT_EQ(line.level, 2);
                EXPECT_FALSE(line.echo);
                messages.push_back(line.message);
            }
        }
        return messages;
    }
    static void expectOnlyLine(const std::string& p_bytes, const char* p_format, const std::string& p_line) {
        const LogCapture capture;
        EXPECT_EQ(load(p_bytes, p_format), nullptr);
        EXPECT_THAT(warnings(capture), ElementsAre(p_line));
    }
    void expectOnlyFileLine(const std::string& p_name, const char* p_format, const std::string& p_line) const {
        const LogCapture capture;
        EXPECT_EQ(zyr_loadFromFile(path(p_name).c_str(), p_format, ""), nullptr);
        EXPECT_THAT(warnings(capture), ElementsAre(p_line));
    }

    TemporaryDirectory m_directory;
};

TEST_F(LoadSaveTest, ObjectsComeBackFromMemoryInEachFormat) {
    INativeFormatInfo* info = makeInfo("name");
    for (const char* format : {"raw", "zbf", "xml", "json"}) {
        SCOPED_TRACE(format);
        IObject* loaded = load(save(info, format), format);
        expectInfo(loaded, "name");
        loaded->release();
    }
    info->release();
}

TEST_F(LoadSaveTest, ObjectsComeBackFromFilesInEachFormat) {
    INativeFormatInfo* info = makeInfo("name");
    for (const char* name : {"a.raw", "a.zbf", "a.xml", "a.json"}) {
        SCOPED_TRACE(name);
        EXPECT_TRUE(zyr_saveToFile(info, name, "", 1, m_directory.getPath().c_str()));
        IObject* loaded = zyr_loadFromFile(name, "", m_directory.getPath().c_str());
        expectInfo(loaded, "name");
        loaded->release();
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_directory.getPath()), {}), 4);
    info->release();
}

TEST_F(LoadSaveTest, ABinaryFileBeginsWithIdentifierHashAndSize) {
    INativeFormatInfo* info = makeInfo("name");
    for (const auto& [format, identifier, seed] :
         {std::tuple("zbf", "b136dd6d-3d1d-45e6-81ab-6897c140739b", uint64_t(0xf3e031aa0b4b71ac)),
          std::tuple("raw", "98880ce6-8e7d-4d88-89a8-8a97997c03b1", uint64_t(0x9375e58bc0c5ba10))}) {
        const std::string bytes = save(info, format);
        uint64_t hash = 0;
        uint64_t size = 0;
        memcpy(&hash, bytes.data() + 16, 8);
        memcpy(&size, bytes.data() + 24, 8);
        EXPECT_EQ(memcmp(bytes.data(), GUID_t_fromString(identifier).m_data, 16), 0);
        EXPECT_EQ(size, bytes.size() - 32);
        EXPECT_EQ(hash, zyr_xxHash64(bytes.data() + 32, size, seed));
    }
    info->release();
}

TEST_F(LoadSaveTest, SavingToMemoryAppends) {
    INativeFormatInfo* info = makeInfo("name");
    Array<unsigned char> data;
    data.pushBack('x');
    EXPECT_TRUE(zyr_saveToData(info, data, "json", 1, ""));
    EXPECT_EQ(data[0], 'x');
    EXPECT_EQ(data[1], '{');
    info->release();
}

TEST_F(LoadSaveTest, AnUnknownFormatGivesItsTwoLines) {
    INativeFormatInfo* info = makeInfo("name");
    const LogCapture capture;
    Array<unsigned char> data;
    EXPECT_FALSE(zyr_saveToData(info, data, "nope", 1, ""));
    EXPECT_TRUE(data.isEmpty());
    EXPECT_EQ(load("", "nope"), nullptr);
    EXPECT_FALSE(zyr_saveToFile(info, path("a.nope").c_str(), "", 1, ""));
    EXPECT_THAT(
        warnings(capture),
        ElementsAre("Serializer not found for file format: nope", "Unable to find serializer for format: nope",
                    "Deserializer not found for file format: nope", "Unable to find deserializer for format: nope",
                    "Serializer not found for file format: nope", "Unable to find serializer for format: nope"));
    info->release();
}

TEST_F(LoadSaveTest, BadBytesGiveOneLineEach) {
    INativeFormatInfo* info = makeInfo("name");
    const std::string zbf = save(info, "zbf");
    const std::string raw = save(info, "raw");
    std::string other = zbf;
    other[0] ^= 1;
    std::string changed = zbf;
    changed.back() ^= 1;
    std::string empty = zbf.substr(0, 32);
    memset(empty.data() + 24, 0, 8);
    expectOnlyLine(zbf.substr(0, 15), "zbf", "Unable to deserialize data. Not enough data");
    expectOnlyLine(zbf.substr(0, 23), "zbf", "Unable to deserialize data. Not enough data");
    expectOnlyLine(zbf.substr(0, 31), "zbf", "Unable to deserialize data. Not enough data");
    expectOnlyLine(zbf.substr(0, 32), "zbf", "Unable to deserialize data. Not enough data");
    expectOnlyLine(empty, "zbf", "Unable to deserialize data. Not enough data");
    expectOnlyLine(zbf.substr(0, zbf.size() - 1), "zbf", "Unable to deserialize data. Corrupted data");
    expectOnlyLine(changed, "zbf", "Unable to deserialize data. Corrupted data");
    expectOnlyLine(other, "zbf", "Unable to deserialize data. Corrupted header identifier");
    expectOnlyLine(zbf, "raw", "Unable to deserialize raw format because file format is zbf");
    expectOnlyLine(raw, "zbf", "Unable to deserialize zbf format because file format is raw");
    expectOnlyLine("{", "json", "The deserializer cannot be initialized from data: bad data content");
    expectOnlyLine("", "xml", "The deserializer cannot be initialized from data: bad data content");
    expectOnlyLine("{}", "json", "The file header cannot be deserialized from data: bad data format");
    expectOnlyLine("{\"fileHeader\":{\"format\":\"xml\"}}", "json",
                   "The file format: xml doesn't match the requested format: json");
    expectOnlyLine("{\"fileHeader\":{\"format\":\"json\"}}", "json",
                   "The object cannot be deserialized from data: bad data format");
    expectOnlyLine("{\"fileHeader\":{\"format\":\"json\"},\"fileObject\":{\"_class\":\"Nobody\"}}", "json",
                   "The object cannot be deserialized from data: bad data format");
    expectOnlyLine("{\"fileHeader\":{\"format\":\"json\"},\"fileObject\":"
                   "{\"_class\":\"NativeFormatInfo\",\"readOnly\":7}}",
                   "json", "The object cannot be deserialized from data: bad data format");
    info->release();
}

TEST_F(LoadSaveTest, BadFilesGiveOneLineEach) {
    INativeFormatInfo* info = makeInfo("name");
    const std::string zbf = save(info, "zbf");
    std::string other = zbf;
    other[0] ^= 1;
    m_directory.writeFile("short.zbf", zbf.substr(0, 20));
    m_directory.writeFile("cut.zbf", zbf.substr(0, zbf.size() - 1));
    m_directory.writeFile("other.zbf", other);
    m_directory.writeFile("bad.json", "{");
    m_directory.writeFile("empty.json", "{}");
    m_directory.writeFile("renamed.xml", "<zyr/>");
    m_directory.writeFile("object.json", "{\"fileHeader\":{\"format\":\"json\"}}");
    m_directory.writeFile("moved.raw", zbf);
    expectOnlyFileLine("missing.zbf", "", "Unable to open file: " + path("missing.zbf") + " for reading");
    expectOnlyFileLine("short.zbf", "", "Unable to deserialize file: " + path("short.zbf") + ". Not enough data");
    expectOnlyFileLine("cut.zbf", "", "Unable to deserialize file: " + path("cut.zbf") + ". Corrupted data");
    expectOnlyFileLine("other.zbf", "",
                       "Unable to deserialize file: " + path("other.zbf") + ". Corrupted header identifier");
    expectOnlyFileLine("bad.json", "", "The deserializer cannot be initialized from loaded data: bad data content");
    expectOnlyFileLine("empty.json", "", "The file header cannot be deserialized from data: bad data format");
    expectOnlyFileLine("object.json", "", "The object cannot be deserialized from loaded data: bad data format");
    expectOnlyFileLine("moved.raw", "", "Unable to deserialize raw format because file format is zbf");
    info->release();
}

TEST_F(LoadSaveTest, AChangedExtensionIsRefusedUnlessTheFormatIsNamed) {
    INativeFormatInfo* info = makeInfo("name");
    zyr_addSerializerFileFormat("other", "json");
    m_directory.writeFile("a.other", save(info, "json"));
    expectOnlyFileLine("a.other", "", "The file format: json doesn't match the requested format: other");
    IObject* loaded = zyr_loadFromFile(path("a.other").c_str(), "json", "");
    expectInfo(loaded, "name");
    loaded->release();
    info->release();
}

TEST_F(LoadSaveTest, AnXmlFileWithoutDeclarationIsRefusedWithItsOwnLine) {
    const LogCapture capture;
    EXPECT_EQ(load("<zyr><fileHeader format='xml'/></zyr>", "xml"), nullptr);
    EXPECT_THAT(warnings(capture), ElementsAre("Xml header not found, non standard xml format",
                                               "The file header cannot be deserialized from data: bad data format"));
}

TEST_F(LoadSaveTest, NothingIsSavedOfNoObject) {
    const LogCapture capture;
    Array<unsigned char> data;
    EXPECT_FALSE(zyr_saveToData(nullptr, data, "json", 1, ""));
    EXPECT_TRUE(data.isEmpty());
    EXPECT_THAT(warnings(capture), ElementsAre("The object cannot be serialized into data: bad object content"));
}

TEST_F(LoadSaveTest, AFailedSaveLeavesTheOldFileAndNothingElse) {
    INativeFormatInfo* info = makeInfo("name");
    m_directory.writeFile("a.json", "old");
    {
        const LogCapture capture;
        EXPECT_FALSE(zyr_saveToFile(nullptr, path("a.json").c_str(), "", 1, ""));
        EXPECT_FALSE(zyr_saveToFile(info, path("missing/a.json").c_str(), "", 1, ""));
        EXPECT_FALSE(zyr_saveToFile(info, m_directory.getPath().c_str(), "json", 1, ""));
        EXPECT_THAT(warnings(capture), ElementsAre("The object cannot be serialized into data: bad object content",
                                                   "Unable to open file: " + path("missing/a.json") + " for writing",
                                                   "Unable to open file: " + m_directory.getPath() + " for writing"));
    }
    {
        // No file may grow: the disk is full, as far as this process goes.
        struct rlimit old;
        getrlimit(RLIMIT_FSIZE, &old);
        signal(SIGXFSZ, SIG_IGN);
        const struct rlimit none = {16, old.rlim_max};
        const LogCapture capture;
        setrlimit(RLIMIT_FSIZE, &none);
        EXPECT_FALSE(zyr_saveToFile(info, path("a.json").c_str(), "", 1, ""));
        setrlimit(RLIMIT_FSIZE, &old);
        EXPECT_THAT(warnings(capture), ElementsAre("Unable to write file: " + path("a.json")));
    }
    EXPECT_EQ(TemporaryDirectory::readFile(path("a.json")), "old");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_directory.getPath()), {}), 1);
    info->release();
}

TEST_F(LoadSaveTest, ASavedFileKeepsThePermissionsAndTheLinkOfTheOldOne) {
    INativeFormatInfo* info = makeInfo("name");
    m_directory.writeFile("a.json", "old");
    chmod(path("a.json").c_str(), 0640);
    ASSERT_EQ(symlink("a.json", path("link.json").c_str()), 0);
    EXPECT_TRUE(zyr_saveToFile(info, path("link.json").c_str(), "", 1, ""));
    struct stat status;
    ASSERT_EQ(lstat(path("link.json").c_str(), &status), 0);
    EXPECT_TRUE(S_ISLNK(status.st_mode));
    ASSERT_EQ(lstat(path("a.json").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640U);
    EXPECT_EQ(TemporaryDirectory::readFile(path("a.json")), save(info, "json"));
    info->release();
}

TEST_F(LoadSaveTest, AFileInADirectoryThatMustNotBeChangedIsWrittenTo) {
    constexpr uid_t nobody = 65534;
    INativeFormatInfo* info = makeInfo("name");
    m_directory.writeFile("a.json", "old");
    struct stat old;
    ASSERT_EQ(stat(path("a.json").c_str(), &old), 0);
    const bool isRoot = geteuid() == 0;
    ASSERT_EQ(chmod(m_directory.getPath().c_str(), 0555), 0);
    if (isRoot) {
        ASSERT_EQ(chown(path("a.json").c_str(), nobody, nobody), 0);
        ASSERT_EQ(seteuid(nobody), 0);
    }
    const bool_t saved = zyr_saveToFile(info, path("a.json").c_str(), "", 1, "");
    if (isRoot) {
        ASSERT_EQ(seteuid(0), 0);
    }
    ASSERT_EQ(chmod(m_directory.getPath().c_str(), 0755), 0);
    EXPECT_TRUE(saved);
    struct stat status;
    ASSERT_EQ(stat(path("a.json").c_str(), &status), 0);
    EXPECT_EQ(status.st_ino, old.st_ino);
    EXPECT_EQ(TemporaryDirectory::readFile(path("a.json")), save(info, "json"));
    info->release();
}

TEST_F(LoadSaveTest, AFileMayHaveTheLongestName) {
    INativeFormatInfo* info = makeInfo("name");
    const std::string name = path(std::string(NAME_MAX - 5, 'n') + ".json");
    EXPECT_TRUE(zyr_saveToFile(info, name.c_str(), "", 1, ""));
    EXPECT_EQ(TemporaryDirectory::readFile(name), save(info, "json"));
    info->release();
}

TEST_F(LoadSaveTest, ADeferredObjectLiesInItsOwnFile) {
    for (const char* format : {"raw", "zbf", "xml", "json"}) {
        SCOPED_TRACE(format);
        INativeFormatInfo* info = makeInfo("deferred");
        const std::string child = std::string("child.") + format;
        const std::string parent = std::string("parent.") + format;
        info->setDeferredFile(child.c_str());
        EXPECT_TRUE(zyr_saveToFile(info, parent.c_str(), "", 1, m_directory.getPath().c_str()));
        ASSERT_NE(info->getDeferredFile(), nullptr);
        EXPECT_EQ(*info->getDeferredFile(), child.c_str());
        EXPECT_TRUE(std::filesystem::exists(path(child)));
        IObject* loaded = zyr_loadFromFile(parent.c_str(), "", m_directory.getPath().c_str());
        expectInfo(loaded, "deferred");
        ASSERT_NE(loaded->getDeferredFile(), nullptr);
        EXPECT_EQ(*loaded->getDeferredFile(), child.c_str());
        EXPECT_FALSE(loaded->isDeferredFileReadOnly());
        loaded->release();
        info->release();
    }
}

TEST_F(LoadSaveTest, ADeferredFileIsOnlyWrittenWhereItMayBe) {
    INativeFormatInfo* info = makeInfo("deferred");
    info->setDeferredFile("child.json");
    EXPECT_TRUE(zyr_saveToFile(info, "parent.json", "", 0, m_directory.getPath().c_str()));
    EXPECT_FALSE(std::filesystem::exists(path("child.json")));
    info->setDeferredFileReadOnly(1);
    EXPECT_TRUE(zyr_saveToFile(info, "parent.json", "", 1, m_directory.getPath().c_str()));
    EXPECT_FALSE(std::filesystem::exists(path("child.json")));
    EXPECT_TRUE(info->isDeferredFileReadOnly());
    info->setDeferredFileReadOnly(0);
    info->setDeferredFile("missing/child.json");
    EXPECT_FALSE(zyr_saveToFile(info, "other.json", "", 1, m_directory.getPath().c_str()));
    ASSERT_NE(info->getDeferredFile(), nullptr);
    EXPECT_EQ(*info->getDeferredFile(), "missing/child.json");
    EXPECT_FALSE(std::filesystem::exists(path("other.json")));
    info->release();
}

TEST_F(LoadSaveTest, FilesThatContainEachOtherEndWithALine) {
    INativeFormatInfo* info = makeInfo("deferred");
    info->setDeferredFile("b.json");
    ASSERT_TRUE(zyr_saveToFile(info, "a.json", "", 0, m_directory.getPath().c_str()));
    info->setDeferredFile("a.json");
    ASSERT_TRUE(zyr_saveToFile(info, "b.json", "", 0, m_directory.getPath().c_str()));
    const LogCapture capture;
    EXPECT_EQ(zyr_loadFromFile("a.json", "", m_directory.getPath().c_str()), nullptr);
    EXPECT_THAT(warnings(capture), ElementsAre("Unable to deserialize file: " + path("a.json") + ". It contains itself",
                                               "The object cannot be deserialized from loaded data: bad data format",
                                               "The object cannot be deserialized from loaded data: bad data format"));
    info->release();
}

TEST_F(LoadSaveTest, ACompressedObjectComesBackWithItsInfo) {
    ILz4CompressionInfo* lz4 = zyr_createObject<ILz4CompressionInfo>();
    IZipCompressionInfo* zip = zyr_createObject<IZipCompressionInfo>();
    for (ICompressionInfo* compression : {static_cast<ICompressionInfo*>(lz4), static_cast<ICompressionInfo*>(zip)}) {
        INativeFormatInfo* info = makeInfo("compressed");
        info->setCompressionInfo(compression);
        for (const char* format : {"raw", "zbf", "xml", "json"}) {
            SCOPED_TRACE(format);
            const std::string bytes = save(info, format);
            EXPECT_NE(bytes.find("CompressedObject"), std::string::npos);
            EXPECT_EQ(info->getCompressionInfo(0), compression);
            IObject* loaded = load(bytes, format);
            expectInfo(loaded, "compressed");
            ASSERT_NE(loaded->getCompressionInfo(0), nullptr);
            EXPECT_EQ(loaded->getCompressionInfo(0)->getFormatName(), compression->getFormatName());
            loaded->release();
        }
        info->release();
        EXPECT_EQ(compression->getRefCount(), 0U);
        compression->release();
    }
}

TEST_F(LoadSaveTest, AnUnknownCompressionFailsAndLeavesTheObject) {
    ICompressionInfo* unknown = zyr_createObject<ICompressionInfo>();
    INativeFormatInfo* info = makeInfo("name");
    unknown->setFormatName("nope");
    info->setCompressionInfo(unknown);
    const LogCapture capture;
    Array<unsigned char> data;
    EXPECT_FALSE(zyr_saveToData(info, data, "json", 1, ""));
    EXPECT_TRUE(data.isEmpty());
    EXPECT_EQ(info->getCompressionInfo(0), unknown);
    EXPECT_EQ(unknown->getRefCount(), 1U);
    EXPECT_THAT(warnings(capture), ElementsAre("The object cannot be serialized into data: bad object content"));
    info->release();
    unknown->release();
}

TEST_F(LoadSaveTest, ABombIsRefusedBeforeItIsUnpacked) {
    ILz4CompressionInfo* lz4 = zyr_createObject<ILz4CompressionInfo>();
    INativeFormatInfo* info = makeInfo("name");
    info->setCompressionInfo(lz4);
    std::string bytes = save(info, "json");
    const size_t place = bytes.find("\"decompressSize\": ") + strlen("\"decompressSize\": ");
    bytes.replace(place, bytes.find_first_of(",\n", place) - place, "4294967296");
    const LogCapture capture;
    EXPECT_EQ(load(bytes, "json"), nullptr);
    EXPECT_THAT(warnings(capture),
                ElementsAre("The object cannot be deserialized from data in lz4: unable to decompress data",
                            "The object cannot be deserialized from data: bad data format"));
    info->release();
    lz4->release();
}

TEST(LoadSave, WithoutApplicationDataGivesItsLines) {
    zyr_setApplicationData(nullptr);
    const LogCapture capture;
    Array<unsigned char> data;
    EXPECT_FALSE(zyr_saveToData(nullptr, data, "xml", 1, ""));
    EXPECT_FALSE(zyr_saveToFile(nullptr, "a.b", "xml", 1, ""));
    EXPECT_EQ(zyr_loadFromData(data, "xml", ""), nullptr);
    EXPECT_EQ(zyr_loadFromFile("a.b", "xml", ""), nullptr);
    std::vector<std::string> messages;
    for (const CapturedLine& line : capture.getLines()) {
        messages.push_back(line.module + ": " + line.message);
    }
    EXPECT_THAT(messages, ElementsAre("common: Application data is NULL, cannot save file format xml to data",
                                      "common: Application data is NULL, cannot export file format xml to file a.b",
                                      "common: Application data is NULL, cannot load file format xml from data",
                                      "common: Application data is NULL, cannot import file format xml from file a.b"));
}

} // namespace
} // namespace zyr
