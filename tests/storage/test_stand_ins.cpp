// Objects that travel by a file of their own or in compressed form.
#include "storage/load_save_test.h"
#include "support/zyr_invariant.h"
#include "zyr_common/application/zyr_format_registries.h"
#include "zyr_common/formats/zyr_stored_objects.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"
#include "zyr_common/serialization/zyr_single_objects.h"
#include "zyr_common/variable/zyr_variable_reference.h"

namespace zyr {
namespace {

using testing::ElementsAre;

class StandIns : public LoadSaveTest {};

TEST_F(StandIns, ADeferredObjectLiesInItsOwnFile) {
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

TEST_F(StandIns, ADeferredFileIsOnlyWrittenWhereItMayBe) {
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

TEST_F(StandIns, FilesThatContainEachOtherEndWithALine) {
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

TEST_F(StandIns, FilesInAListTakeFromWhatTheLoadMayOpen) {
    INativeFormatInfo* info = makeInfo("deferred");
    IListOfObjects* list = zyr_createObject<IListOfObjects>();
    info->setDeferredFile("child.json");
    list->pushBack(info);
    list->pushBack(info);
    ASSERT_TRUE(zyr_saveToFile(list, "parent.json", "", 1, m_directory.getPath().c_str()));
    const std::string bytes = TemporaryDirectory::readFile(path("parent.json"));
    for (uint64_t most : {1, 2, 3}) {
        auto* deserializer = static_cast<IDeserializer*>(zyr_createObjectFromName("JsonDeserializer"));
        ASSERT_TRUE(deserializer->initialize(bytes.data(), bytes.size()));
        deserializer->setBaseDirectory(m_directory.getPath().c_str());
        VariableReference* files = deserializer->getVariableReferenceByPath("filesToOpen");
        ASSERT_NE(files, nullptr);
        auto* left = static_cast<uint64_t*>(files->getPointer());
        *left = most;
        bool_t found = 0;
        IObject* object = nullptr;
        EXPECT_EQ(deserializer->readSingleObject("fileObject", found, &object, String::getConstEmpty()), most != 1);
        EXPECT_EQ(*left, most == 3 ? 1U : 0U);
        if (object != nullptr) {
            object->release();
        }
        files->release();
        deserializer->release();
    }
    list->release();
    info->release();
}

/// Files of which each contains the next one, down to the last, which contains the object.
class ChainOfFiles : public LoadSaveTest {
protected:
    static constexpr int MOST = 64;

    void write(INativeFormatInfo* p_innermost, int p_numOfFiles) const {
        const std::string directory = m_directory.getPath();
        ASSERT_TRUE(zyr_saveToFile(p_innermost, name(p_numOfFiles - 1).c_str(), "", 0, directory.c_str()));
        INativeFormatInfo* info = makeInfo("deferred");
        for (int i = p_numOfFiles - 2; i >= 0; i--) {
            info->setDeferredFile(name(i + 1).c_str());
            ASSERT_TRUE(zyr_saveToFile(info, name(i).c_str(), "", 0, directory.c_str()));
        }
        info->release();
    }
    IObject* loadFirst() const { return zyr_loadFromFile(name(0).c_str(), "", m_directory.getPath().c_str()); }
    static std::string name(int p_number) { return std::to_string(p_number) + ".json"; }
};

TEST_F(ChainOfFiles, ComesBackUpToTheLimit) {
    INativeFormatInfo* info = makeInfo("innermost");
    write(info, MOST);
    IObject* loaded = loadFirst();
    expectInfo(loaded, "innermost");
    loaded->release();
    info->release();
}

TEST_F(ChainOfFiles, EndsWithALineBeyondTheLimit) {
    INativeFormatInfo* info = makeInfo("innermost");
    write(info, MOST + 1);
    const LogCapture capture;
    EXPECT_EQ(loadFirst(), nullptr);
    const std::vector<std::string> lines = warnings(capture);
    ASSERT_EQ(lines.size(), MOST + 1U);
    EXPECT_EQ(lines[0], "Unable to deserialize file: " + path(name(MOST)) + ". Too many loads inside each other");
    for (size_t i = 1; i < lines.size(); i++) {
        EXPECT_EQ(lines[i], "The object cannot be deserialized from loaded data: bad data format");
    }
    info->release();
}

TEST_F(ChainOfFiles, EndsWithALineWhereTheLastLoadIsOfCompressedData) {
    ILz4CompressionInfo* lz4 = zyr_createObject<ILz4CompressionInfo>();
    INativeFormatInfo* info = makeInfo("innermost");
    info->setCompressionInfo(lz4);
    write(info, MOST);
    const LogCapture capture;
    EXPECT_EQ(loadFirst(), nullptr);
    const std::vector<std::string> lines = warnings(capture);
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[0], "Unable to deserialize data. Too many loads inside each other");
    EXPECT_EQ(lines[1], "The object cannot be deserialized from data in lz4: file object is null");
    info->release();
    lz4->release();
}

TEST_F(StandIns, ACompressedObjectComesBackWithItsInfo) {
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

/// Lists inside each other, with a stand-in in the last one for as many lists, and so on. The loads are not nested too
/// deeply, and neither is any of them.
class DeepStandIns : public LoadSaveTest {
protected:
    static constexpr int NUM_OF_LISTS = 300;

    std::string make(int p_numOfLoads) const {
        std::string bytes;
        for (int load = 0; load < p_numOfLoads; load++) {
            Ref<IObject> object = bytes.empty() ? Ref<IObject>() : makeStandIn(bytes);
            for (int i = 0; i < NUM_OF_LISTS; i++) {
                const auto list = Ref<IListOfObjects>::adopt(zyr_createObject<IListOfObjects>());
                if (object) {
                    list->pushBack(object.get());
                }
                object = Ref<IObject>::share(list.get());
            }
            bytes = save(object.get(), "raw");
        }
        return bytes;
    }

private:
    static Ref<IObject> makeStandIn(const std::string& p_bytes) {
        const auto standIn = Ref<ICompressedObject>::adopt(zyr_createObject<ICompressedObject>());
        const auto zip = Ref<IZipCompressionInfo>::adopt(zyr_createObject<IZipCompressionInfo>());
        EXPECT_NE(zyr_compressData("zip", p_bytes.data(), p_bytes.size(), *standIn->getMutableCompressedData(), 1), 0U);
        zip->setDecompressSize(p_bytes.size());
        standIn->setCompressionInfo(zip.get());
        return Ref<IObject>::share(standIn.get());
    }
};

TEST_F(DeepStandIns, ComeBackUpToTheLimit) {
    const LogCapture capture;
    const auto loaded = Ref<IObject>::adopt(load(make(4), "raw"));
    EXPECT_TRUE(loaded);
    EXPECT_THAT(warnings(capture), ElementsAre());
}

TEST_F(DeepStandIns, EndWithALineBeyondTheLimit) {
    const std::string bytes = make(60);
    const LogCapture capture;
    EXPECT_EQ(load(bytes, "raw"), nullptr);
    // What the inner loads tell is told by the core module, in which the lists read themselves.
    EXPECT_THAT(warnings(capture), ElementsAre("The object cannot be deserialized from data: bad data format"));
}

TEST_F(StandIns, AnUnknownCompressionFailsAndLeavesTheObject) {
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

TEST_F(StandIns, ACompressedObjectWithoutAnObjectInsideGivesNullAndItsLine) {
    zyr_addCompressDataCallback("empty", [](const void*, size_t, Array<unsigned char>& p_output, bool_t) {
        p_output.pushBack('x');
        return size_t(1);
    });
    zyr_addDecompressDataCallback("empty", [](const void*, size_t, void* p_output, size_t p_size) {
        memset(p_output, 0, p_size);
        return p_size;
    });
    ICompressionInfo* compression = zyr_createObject<ICompressionInfo>();
    INativeFormatInfo* info = makeInfo("name");
    compression->setFormatName("empty");
    info->setCompressionInfo(compression);
    const std::string bytes = save(info, "json");
    const LogCapture capture;
    EXPECT_EQ(load(bytes, "json"), nullptr);
    EXPECT_THAT(warnings(capture),
                ElementsAre("The deserializer cannot be initialized from data: bad data content",
                            "The object cannot be deserialized from data in empty: file object is null",
                            "The object cannot be deserialized from data: bad data format"));
    info->release();
    compression->release();
}

TEST_F(StandIns, ACompressedObjectOfNoBytesGivesNullAndItsLine) {
    ICompressedObject* standIn = zyr_createObject<ICompressedObject>();
    ILz4CompressionInfo* lz4 = zyr_createObject<ILz4CompressionInfo>();
    standIn->setCompressionInfo(lz4);
    const std::string bytes = save(standIn, "zbf");
    const LogCapture capture;
    EXPECT_EQ(load(bytes, "zbf"), nullptr);
    EXPECT_THAT(warnings(capture),
                ElementsAre("Unable to deserialize data. Not enough data",
                            "The object cannot be deserialized from data in lz4: file object is null",
                            "The object cannot be deserialized from data: bad data format"));
    lz4->release();
    standIn->release();
}

TEST_F(StandIns, WhatTheCoreModuleDoesNotGiveEndsTheProcess) {
    const auto withoutEntry = [this](int p_entry, const auto& p_function) {
        getData()->m_core->m_entries[p_entry] =
            reinterpret_cast<moduleEntry_FUNC>(+[]() -> IObject* { return nullptr; });
        p_function();
    };
    INativeFormatInfo* info = makeInfo("name");
    ILz4CompressionInfo* lz4 = zyr_createObject<ILz4CompressionInfo>();
    m_directory.writeFile("a.json", save(info, "json"));
    ZYR_EXPECT_INVARIANT(withoutEntry(90, [&] { zyr_loadFromFile(path("a.json").c_str(), "", ""); }),
                         "assert\\(inputStreamFile != NULL\\)");
    ZYR_EXPECT_INVARIANT(withoutEntry(91, [&] { zyr_saveToFile(info, path("b.json").c_str(), "", 1, ""); }),
                         "assert\\(outputStreamFile != NULL\\)");
    info->setCompressionInfo(lz4);
    ZYR_EXPECT_INVARIANT(withoutEntry(7, [&] { save(info, "zbf"); }), "assert\\(compressedObject != NULL\\)");
    ZYR_EXPECT_INVARIANT(withoutEntry(7, [&] { save(info, "json"); }), "assert\\(compressedObject != NULL\\)");
    info->setDeferredFile("child.json");
    ZYR_EXPECT_INVARIANT(withoutEntry(1, [&] { save(info, "zbf"); }), "assert\\(deferredFileObject != NULL\\)");
    ZYR_EXPECT_INVARIANT(withoutEntry(1, [&] { save(info, "json"); }), "assert\\(deferredFileObject != NULL\\)");
    info->release();
    lz4->release();
}

TEST_F(StandIns, ABombIsRefusedBeforeItIsUnpacked) {
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

} // namespace
} // namespace zyr
