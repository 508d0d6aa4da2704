// Loading and saving of whole objects: what is logged, and what stands afterwards.
#include "storage/load_save_test.h"
#include "zyr_common/application/zyr_format_registries.h"
#include "zyr_common/digest/zyr_xxhash.h"

#include <climits>
#include <filesystem>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zyr {
namespace {

using testing::ElementsAre;

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

TEST_F(LoadSaveTest, AnArrayThatCannotGrowIsLeftAsItWas) {
    INativeFormatInfo* info = makeInfo("name");
    unsigned char bytes[] = {1, 2};
    for (const char* format : {"raw", "json"}) {
        Array<unsigned char> data;
        data.bindFixedSizeData(bytes, sizeof(bytes));
        const LogCapture capture;
        EXPECT_FALSE(zyr_saveToData(info, data, format, 1, ""));
        EXPECT_THAT(warnings(capture),
                    testing::ElementsAre("The object cannot be serialized into data: bad object content"));
        EXPECT_EQ(data.getSize(), 2u);
        EXPECT_EQ(bytes[1], 2);
    }
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

TEST_F(LoadSaveTest, AFileWithAnUnknownExtensionGivesItsLine) {
    m_directory.writeFile("a.nope", "some bytes");
    const LogCapture capture;
    EXPECT_EQ(zyr_loadFromFile(path("a.nope").c_str(), "", ""), nullptr);
    EXPECT_THAT(warnings(capture), testing::Contains("Unable to find deserializer for format: nope"));
}

TEST_F(LoadSaveTest, AFileThatMustNotBeWrittenToStays) {
    constexpr uid_t nobody = 65534;
    INativeFormatInfo* info = makeInfo("name");
    m_directory.writeFile("a.json", "old");
    ASSERT_EQ(chmod(path("a.json").c_str(), 0444), 0);
    const bool isRoot = geteuid() == 0;
    if (isRoot) {
        ASSERT_EQ(chown(m_directory.getPath().c_str(), nobody, nobody), 0);
        ASSERT_EQ(seteuid(nobody), 0);
    }
    const LogCapture capture;
    const bool_t saved = zyr_saveToFile(info, path("a.json").c_str(), "", 1, "");
    if (isRoot) {
        ASSERT_EQ(seteuid(0), 0);
    }
    EXPECT_FALSE(saved);
    EXPECT_THAT(warnings(capture), ElementsAre("Unable to open file: " + path("a.json") + " for writing"));
    EXPECT_EQ(TemporaryDirectory::readFile(path("a.json")), "old");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_directory.getPath()), {}), 1);
    info->release();
}

TEST_F(LoadSaveTest, AFileMayHaveTheLongestName) {
    INativeFormatInfo* info = makeInfo("name");
    const std::string name = path(std::string(NAME_MAX - 5, 'n') + ".json");
    EXPECT_TRUE(zyr_saveToFile(info, name.c_str(), "", 1, ""));
    EXPECT_EQ(TemporaryDirectory::readFile(name), save(info, "json"));
    info->release();
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
