#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/application/zyr_format_registries.h"
#include "zyr_common/containers/zyr_array.h"

#include "support/zyr_invariant.h"
#include "support/zyr_logged_application.h"
#include "support/zyr_stdout_capture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace zyr;
using testing::ElementsAre;

// Callbacks that tell themselves apart by their result and record what they got.

static const void* s_data = nullptr;
static size_t s_size = 0;
static bool_t s_flag = 0;
static std::string s_path;
static std::string s_format;
static const void* s_object = nullptr;
static const void* s_formatInfo = nullptr;
static uint32_t s_type = 0;

template <size_t Result>
static size_t compress(const void* p_data, size_t p_size, Array<unsigned char>& p_output, bool_t p_trim) {
    s_data = p_data;
    s_size = p_size;
    s_flag = p_trim;
    p_output.pushBack(static_cast<unsigned char>(Result));
    return Result;
}

template <size_t Result>
static size_t decompress(const void* p_data, size_t p_size, void* p_output, size_t p_outputSize) {
    s_data = p_data;
    s_size = p_size;
    s_object = p_output;
    s_type = static_cast<uint32_t>(p_outputSize);
    return Result;
}

static IObject* const OBJECT = reinterpret_cast<IObject*>(0x1000);
static IDataFormatInfo* const FORMAT_INFO = reinterpret_cast<IDataFormatInfo*>(0x2000);
static constexpr VariableTypeEnum TYPE = static_cast<VariableTypeEnum>(77);

static IObject* importData(VariableTypeEnum p_type, const Array<unsigned char>& p_data, const String& p_format,
                           IDataFormatInfo* p_formatInfo) {
    s_type = p_type;
    s_data = &p_data;
    s_format = p_format.getData();
    s_formatInfo = p_formatInfo;
    return OBJECT;
}

static bool_t exportData(IObject* p_object, Array<unsigned char>& p_data, const String& p_format,
                         const IDataFormatInfo* p_formatInfo) {
    s_object = p_object;
    s_data = &p_data;
    s_format = p_format.getData();
    s_formatInfo = p_formatInfo;
    return 1;
}

static IObject* importFile(VariableTypeEnum p_type, const String& p_path, const String& p_format,
                           IDataFormatInfo* p_formatInfo) {
    s_type = p_type;
    s_path = p_path.getData();
    s_format = p_format.getData();
    s_formatInfo = p_formatInfo;
    return OBJECT;
}

static bool_t exportFile(IObject* p_object, const String& p_path, const String& p_format,
                         const IDataFormatInfo* p_formatInfo) {
    s_object = p_object;
    s_path = p_path.getData();
    s_format = p_format.getData();
    s_formatInfo = p_formatInfo;
    return 1;
}

static GUID_t makeGUID(unsigned char p_byte) {
    GUID_t guid = {};
    reinterpret_cast<unsigned char*>(&guid)[15] = p_byte;
    return guid;
}

static size_t callCompress(const char* p_format) {
    Array<unsigned char> output;
    return zyr_compressData(p_format, "abc", 3, output, 1);
}

TEST(CompressionRegistry, CallsTheCallbackWithItsArguments) {
    LoggedApplication application;
    zyr_addCompressDataCallback("a", &compress<7>);
    zyr_addDecompressDataCallback("a", &decompress<9>);
    Array<unsigned char> output;
    char data[4] = {};
    EXPECT_EQ(zyr_compressData("a", data, 4, output, 1), 7u);
    EXPECT_EQ(s_data, data);
    EXPECT_EQ(s_size, 4u);
    EXPECT_EQ(s_flag, 1);
    EXPECT_EQ(output.getSize(), 1u);
    char target[2] = {};
    EXPECT_EQ(zyr_decompressData("a", data, 3, target, 2), 9u);
    EXPECT_EQ(s_data, data);
    EXPECT_EQ(s_size, 3u);
    EXPECT_EQ(s_object, target);
    EXPECT_EQ(s_type, 2u);
}

TEST(CompressionRegistry, OneCallbackServesAListOfWords) {
    LoggedApplication application;
    zyr_addCompressDataCallback("a,b, c", &compress<7>);
    EXPECT_EQ(callCompress("a"), 7u);
    EXPECT_EQ(callCompress("b"), 7u);
    EXPECT_EQ(callCompress("c"), 7u);
    EXPECT_EQ(callCompress("a,b"), 0u);
}

TEST(CompressionRegistry, TrailingBlankMakesAnotherWord) {
    LoggedApplication application;
    zyr_addCompressDataCallback("a ,b", &compress<7>);
    EXPECT_EQ(callCompress("a"), 0u);
    EXPECT_EQ(callCompress("a "), 7u);
}

TEST(CompressionRegistry, LatestRegistrationIsUsedAndTheEarlierStaysInTheList) {
    LoggedApplication application;
    zyr_addCompressDataCallback("a,b", &compress<1>);
    zyr_addCompressDataCallback("b", &compress<2>);
    EXPECT_EQ(callCompress("a"), 1u);
    EXPECT_EQ(callCompress("b"), 2u);
    EXPECT_EQ(application->m_compressDataCallbacks.find("b")->m_second->getSize(), 2u);
    EXPECT_EQ(application->m_compressDataCallbacks.find("b")->m_second->back(), &compress<1>);
}

TEST(CompressionRegistry, NewWordsStandInFront) {
    LoggedApplication application;
    zyr_addCompressDataCallback("a,b", &compress<1>);
    EXPECT_STREQ(application->m_compressDataCallbacks.begin()->m_first.getData(), "b");
}

TEST(CompressionRegistry, FailureOfTheLatestIsNotFollowedByTheEarlier) {
    LoggedApplication application;
    zyr_addCompressDataCallback("a", &compress<1>);
    zyr_addCompressDataCallback("a", &compress<0>);
    EXPECT_EQ(callCompress("a"), 0u);
}

TEST(CompressionRegistry, UnknownWordsAndEmptyListsGiveZeroInSilence) {
    LoggedApplication application;
    application->m_compressDataCallbacks.pushBack("empty", new List<compressData_FUNC>(), nullptr);
    application->m_decompressDataCallbacks.pushBack("empty", new List<decompressData_FUNC>(), nullptr);
    char target[2] = {};
    for (const char* format : {"unknown", "empty", ""}) {
        EXPECT_EQ(callCompress(format), 0u);
        EXPECT_EQ(zyr_decompressData(format, "a", 1, target, 2), 0u);
    }
    EXPECT_TRUE(application.getFileNames().empty());
}

static size_t registeringCompress(const void*, size_t, Array<unsigned char>& p_output, bool_t) {
    zyr_addCompressDataCallback("a", &compress<3>);
    return zyr_compressData("a", "x", 1, p_output, 0);
}

TEST(CompressionRegistry, CallbackMayRegisterAndLookUp) {
    LoggedApplication application;
    zyr_addCompressDataCallback("a", &registeringCompress);
    EXPECT_EQ(callCompress("a"), 3u);
}

TEST(CompressionRegistryDeathTest, NullCallbacksEndTheProcess) {
    LoggedApplication application;
    zyr_addCompressDataCallback("a", nullptr);
    zyr_addDecompressDataCallback("a", nullptr);
    ZYR_EXPECT_INVARIANT(callCompress("a"), "ERROR: assert\\(compressDataCallback != NULL\\)\n");
    ZYR_EXPECT_INVARIANT(zyr_decompressData("a", "a", 1, nullptr, 0),
                         "ERROR: assert\\(decompressDataCallback != NULL\\)\n");
}

TEST(ImportRegistry, CallsTheCallbackWithItsArguments) {
    LoggedApplication application;
    GUID_t guid = makeGUID(1);
    zyr_addImportFromDataCallback(guid, "a,b", &importData);
    zyr_addExportToDataCallback(guid, "a,b", &exportData);
    Array<unsigned char> data;
    EXPECT_EQ(zyr_importFromData(guid, TYPE, data, "b", FORMAT_INFO), OBJECT);
    EXPECT_EQ(s_type, 77u);
    EXPECT_EQ(s_data, &data);
    EXPECT_EQ(s_format, "b");
    EXPECT_EQ(s_formatInfo, FORMAT_INFO);
    EXPECT_TRUE(zyr_exportToData(guid, OBJECT, data, "a", FORMAT_INFO));
    EXPECT_EQ(s_object, OBJECT);
    EXPECT_EQ(s_data, &data);
    EXPECT_EQ(s_format, "a");
    EXPECT_EQ(s_formatInfo, FORMAT_INFO);
}

TEST(ImportRegistry, FileCallbacksGetAnAbsolutePath) {
    LoggedApplication application;
    GUID_t guid = makeGUID(1);
    zyr_addImportFromFileCallback(guid, "a", &importFile);
    zyr_addExportToFileCallback(guid, "a", &exportFile);
    std::string directory = std::filesystem::current_path().string() + "/";
    EXPECT_EQ(zyr_importFromFile(guid, TYPE, "sub\\file.a", "a", FORMAT_INFO), OBJECT);
    EXPECT_EQ(s_path, directory + "sub/file.a");
    EXPECT_EQ(s_type, 77u);
    EXPECT_EQ(s_format, "a");
    EXPECT_EQ(s_formatInfo, FORMAT_INFO);
    EXPECT_TRUE(zyr_exportToFile(guid, OBJECT, "file.a", "a", FORMAT_INFO));
    EXPECT_EQ(s_path, directory + "file.a");
    EXPECT_EQ(s_object, OBJECT);
    EXPECT_EQ(zyr_importFromFile(guid, TYPE, "/abs\\file.a", "a", nullptr), OBJECT);
    EXPECT_EQ(s_path, "/abs/file.a");
}

TEST(ImportRegistry, BothHalvesOfTheKeyMustMatch) {
    LoggedApplication application;
    zyr_addImportFromDataCallback(makeGUID(1), "a", &importData);
    zyr_addExportToDataCallback(makeGUID(1), "a", &exportData);
    zyr_addImportFromFileCallback(makeGUID(1), "a", &importFile);
    zyr_addExportToFileCallback(makeGUID(1), "a", &exportFile);
    Array<unsigned char> data;
    struct {
        unsigned char guid;
        const char* format;
    } const keys[] = {{2, "a"}, {1, "b"}};
    for (const auto& key : keys) {
        GUID_t guid = makeGUID(key.guid);
        EXPECT_EQ(zyr_importFromData(guid, TYPE, data, key.format, nullptr), nullptr);
        EXPECT_FALSE(zyr_exportToData(guid, OBJECT, data, key.format, nullptr));
        EXPECT_EQ(zyr_importFromFile(guid, TYPE, "/f", key.format, nullptr), nullptr);
        EXPECT_FALSE(zyr_exportToFile(guid, OBJECT, "/f", key.format, nullptr));
    }
    EXPECT_TRUE(application.getFileNames().empty());
}

TEST(ImportRegistryDeathTest, NullCallbacksEndTheProcess) {
    LoggedApplication application;
    GUID_t guid = makeGUID(1);
    zyr_addImportFromDataCallback(guid, "a", nullptr);
    zyr_addExportToDataCallback(guid, "a", nullptr);
    zyr_addImportFromFileCallback(guid, "a", nullptr);
    zyr_addExportToFileCallback(guid, "a", nullptr);
    Array<unsigned char> data;
    ZYR_EXPECT_INVARIANT(zyr_importFromData(guid, TYPE, data, "a", nullptr),
                         "assert\\(importFromDataCallback != NULL\\)");
    ZYR_EXPECT_INVARIANT(zyr_exportToData(guid, OBJECT, data, "a", nullptr),
                         "assert\\(exportToDataCallback != NULL\\)");
    ZYR_EXPECT_INVARIANT(zyr_importFromFile(guid, TYPE, "f", "a", nullptr),
                         "assert\\(importFromFileCallback != NULL\\)");
    ZYR_EXPECT_INVARIANT(zyr_exportToFile(guid, OBJECT, "f", "a", nullptr), "assert\\(exportToFileCallback != NULL\\)");
}

TEST(SerializerFileFormats, FirstWordOfAFormatStays) {
    LoggedApplication application;
    zyr_addSerializerFileFormat("a,b", "raw");
    zyr_addSerializerFileFormat("a,b", "xml");
    ASSERT_EQ(application->m_serializerFileFormats.getSize(), 1u);
    EXPECT_STREQ(application->m_serializerFileFormats.find("a,b")->m_second.getData(), "raw");
}

TEST(FormatRegistries, LogWithoutApplicationData) {
    GUID_t guid = makeGUID(1);
    Array<unsigned char> data;
    std::string output = captureStdout([&] {
        zyr_addCompressDataCallback("f,g", &compress<1>);
        zyr_addDecompressDataCallback("f,g", &decompress<1>);
        zyr_addImportFromDataCallback(guid, "f,g", &importData);
        zyr_addExportToDataCallback(guid, "f,g", &exportData);
        zyr_addImportFromFileCallback(guid, "f,g", &importFile);
        zyr_addExportToFileCallback(guid, "f,g", &exportFile);
        zyr_addSerializerFileFormat("f", "raw");
        EXPECT_EQ(zyr_compressData("f", "a", 1, data, 0), 0u);
        EXPECT_EQ(zyr_decompressData("f", "a", 1, nullptr, 0), 0u);
        EXPECT_EQ(zyr_importFromData(guid, TYPE, data, "f", nullptr), nullptr);
        EXPECT_FALSE(zyr_exportToData(guid, OBJECT, data, "f", nullptr));
        EXPECT_EQ(zyr_importFromFile(guid, TYPE, "p", "f", nullptr), nullptr);
        EXPECT_FALSE(zyr_exportToFile(guid, OBJECT, "p", "f", nullptr));
    });
    EXPECT_EQ(output, "WARN : Application data is NULL, cannot add compressData callback for formats: f,g\n"
                      "WARN : Application data is NULL, cannot add decompressData callback for formats: f,g\n"
                      "WARN : Application data is NULL, cannot add loadFromData callback for formats: f,g\n"
                      "WARN : Application data is NULL, cannot add saveToData callback for formats: f,g\n"
                      "WARN : Application data is NULL, cannot add loadFromFile callback for formats: f,g\n"
                      "WARN : Application data is NULL, cannot add SaveToFile callback for formats: f,g\n"
                      "WARN : Application data is NULL, cannot add serializer raw for file format: f\n"
                      "WARN : Application data is NULL, cannot compress data with format f\n"
                      "WARN : Application data is NULL, cannot decompress data with format f\n"
                      "WARN : Application data is NULL, cannot import file format f from data\n"
                      "WARN : Application data is NULL, cannot export file format f to data\n"
                      "WARN : Application data is NULL, cannot import file format f from file p\n"
                      "WARN : Application data is NULL, cannot export file format f to file p\n");
}
