// What a file can cost: memory in proportion to its bytes, whatever it promises.
#include "storage/storage_test.h"
#include "support/zyr_heap_watch.h"
#include "zyr_common/application/zyr_format_registries.h"
#include "zyr_common/digest/zyr_xxhash.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/formats/zyr_stored_objects.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"

#include <gmock/gmock.h>

namespace zyr {
namespace {

class MemoryBounds : public SampleTest {
protected:
    static std::string number(uint64_t p_number) {
        std::string bytes;
        for (; p_number > 127; p_number >>= 7) {
            bytes += static_cast<char>(p_number | 0x80);
        }
        return bytes + static_cast<char>(p_number);
    }
    static std::string part(const std::string& p_bytes) { return number(p_bytes.size()) + p_bytes; }
    static std::string text(const std::string& p_text) { return number(p_text.size() + 1) + p_text; }
    /// A field of the raw format.
    static std::string field(int p_kind, const std::string& p_name, const std::string& p_value) {
        return static_cast<char>(p_kind) + part(p_name) + p_value;
    }
    static std::string wrap(const std::string& p_payload, bool p_zbf) {
        const GUID_t identifier =
            GUID_t_fromString(p_zbf ? "b136dd6d-3d1d-45e6-81ab-6897c140739b" : "98880ce6-8e7d-4d88-89a8-8a97997c03b1");
        const uint64_t numbers[] = {
            zyr_xxHash64(p_payload.data(), p_payload.size(), p_zbf ? 0xf3e031aa0b4b71ac : 0x9375e58bc0c5ba10),
            p_payload.size()};
        return std::string(reinterpret_cast<const char*>(identifier.m_data), 16) +
               std::string(reinterpret_cast<const char*>(numbers), 16) + p_payload;
    }
    /// A raw file with an object of the class and these fields.
    static std::string makeRaw(const std::string& p_class, const std::string& p_fields) {
        return wrap("\x01" + field(11, "fileHeader", part(field(8, "format", text("raw")))) +
                        field(12, "fileObject", text(p_class) + text("") + part(p_fields)),
                    false);
    }
    /// What lies in a file of one of the text formats before and behind the fields of its object.
    static std::string makeJson(const std::string& p_class, const std::string& p_fields) {
        return "{\"fileHeader\":{\"format\":\"json\"},\"fileObject\":{\"_class\":\"" + p_class + "\"" + p_fields + "}}";
    }
    static std::string makeXml(const std::string& p_class, const std::string& p_fields) {
        return "<?xml version=\"1.0\"?><zyr><fileHeader format=\"xml\"/><fileObject _class=\"" + p_class + "\">" +
               p_fields + "</fileObject></zyr>";
    }
    /// The bytes that the load takes at most beside p_fixed for each one of the file.
    static void expectCost(const std::string& p_bytes, const char* p_format, bool p_loads, size_t p_fixed,
                           size_t p_factor) {
        test::startHeapPeak();
        const LogCapture capture;
        EXPECT_EQ(static_cast<bool>(load(p_bytes, p_format)), p_loads);
        EXPECT_LE(test::getHeapPeak(), p_fixed + p_factor * p_bytes.size());
        if (!p_loads) {
            ASSERT_FALSE(capture.getLines().empty());
            EXPECT_THAT(capture.getLines().back().message, testing::StartsWith("The "));
        }
    }
};

constexpr size_t FIXED_COST = 256 << 10;

#ifdef ZYR_TEST_HEAP_WATCHED
TEST_F(MemoryBounds, NewObjectsOfEveryClassAreSmall) {
    for (const auto& sample : test::makeDefaultObjects()) {
        sample.m_make();
        const size_t before = test::getHeapSize();
        const Ref<IObject> object = sample.m_make();
        EXPECT_LE(test::getHeapSize() - before, sample.m_name == "class/Lexer" ? 4500u : 2500u) << sample.m_name;
    }
}
#endif

TEST_F(MemoryBounds, CountsThatTheBytesCannotHoldAreRefused) {
    for (uint64_t count : {uint64_t(1000), uint64_t(1) << 31, uint64_t(1) << 60, UINT64_MAX}) {
        // Elements, texts, and numbers of 32 bits.
        expectCost(makeRaw("ListOfObjects", field(13, "items", part(number(count)))), "raw", false, FIXED_COST, 64);
        expectCost(makeRaw("ShapedObject", field(14, "parts", number(count))), "raw", false, FIXED_COST, 64);
        expectCost(makeRaw("NativeFormatInfo", field(17, "originalFile", number(count))), "raw", false, FIXED_COST, 64);
        // A field, a text and a group that are longer than the file.
        expectCost(makeRaw("NativeFormatInfo", field(8, "filePath", number(count))), "raw", false, FIXED_COST, 64);
        expectCost(makeRaw("ShapedObject", field(11, "place", number(count))), "raw", false, FIXED_COST, 64);
    }
}

TEST_F(MemoryBounds, StructureTablesThatTheBytesCannotHoldAreRefused) {
    const auto make = [](const std::string& p_table) {
        return wrap(std::string("\x01\x09\0\0\0\0\0\0\0", 9) + p_table, true);
    };
    for (uint64_t count : {uint64_t(1000), uint64_t(1) << 31, uint64_t(1) << 60, UINT64_MAX}) {
        expectCost(make(number(count)), "zbf", false, FIXED_COST, 64);
        expectCost(make(number(1) + text("") + number(count)), "zbf", false, FIXED_COST, 64);
        expectCost(make(number(1) + text("") + number(0) + number(count)), "zbf", false, FIXED_COST, 64);
        expectCost(make(number(1) + text("") + number(1) + number(count)), "zbf", false, FIXED_COST, 64);
    }
}

TEST_F(MemoryBounds, LargeStructureTablesCostASmallMultiple) {
    std::string table = number(100000);
    for (int i = 0; i < 100000; i++) {
        table += text("") + number(1) + text("") + number(1);
    }
    expectCost(wrap(std::string("\x01\x09\0\0\0\0\0\0\0", 9) + table + number(0), true), "zbf", false, FIXED_COST, 64);
}

TEST_F(MemoryBounds, DepthIsLimited) {
    constexpr int DEPTH = 200000;
    std::string raw;
    std::string json;
    std::string xml;
    for (int i = 0; i < 2000; i++) {
        raw = field(11, "a", part(raw));
    }
    for (int i = 0; i < DEPTH; i++) {
        json += "{\"a\":";
        xml += "<a>";
    }
    expectCost(makeRaw("Object", raw), "raw", true, FIXED_COST, 64);
    expectCost(makeJson("Object", ",\"a\":" + json + "1"), "json", false, FIXED_COST, 64);
    expectCost(makeXml("Object", xml), "xml", false, FIXED_COST, 64);
}

TEST_F(MemoryBounds, ListsInListsEndAtTheLimitOfDepth) {
    std::string raw;
    std::string json;
    for (int i = 0; i < 600; i++) {
        const std::string object = field(12, "object", text("ListOfObjects") + text("") + part(raw));
        raw = field(13, "items", part(number(1) + text("ObjectItem") + part(object)));
        json = ",\"items\":[{\"_type\":\"ObjectItem\",\"object\":{\"_class\":\"ListOfObjects\"" + json + "}}]";
    }
    expectCost(makeRaw("ListOfObjects", raw), "raw", false, FIXED_COST, 1100);
    expectCost(makeJson("ListOfObjects", json), "json", false, FIXED_COST, 1100);
}

TEST_F(MemoryBounds, AFileFullOfSmallObjectsCostsAMultiple) {
    // The least that an element is in the raw format, of the class that is largest in memory.
    std::string items;
    constexpr int COUNT = 2000;
    for (int i = 0; i < COUNT; i++) {
        items += text("I") + part(field(12, "object", text("Lexer") + text("") + part("")));
    }
    expectCost(makeRaw("ArrayOfObjects", field(13, "items", part(number(COUNT) + items))), "raw", true, FIXED_COST,
               250);
    expectCost(makeRaw("ArrayOfObjects", field(13, "items", part(number(COUNT) + std::string(COUNT, 1)))), "raw", true,
               FIXED_COST, 64);
}

/// Lists inside each other, 60 deep, with 100 objects in each. bench_stored_graph does it at full size.
TEST_F(MemoryBounds, ADeepGraphComesBackEqualForLessThanFourTimesItsMemory) {
    const size_t before = test::getHeapSize();
    auto root = Ref<IListOfObjects>::adopt(zyr_createObject<IListOfObjects>());
    IListOfObjects* list = root.get();
    for (int level = 0; level < 60; level++) {
        for (int i = 0; i < 100; i++) {
            const auto info = Ref<IDataFormatInfo>::adopt(zyr_createObject<IDataFormatInfo>());
            info->setFormatName((std::to_string(level) + std::string(90, 'x') + std::to_string(i)).c_str());
            list->pushBack(info.get());
        }
        const auto next = Ref<IListOfObjects>::adopt(zyr_createObject<IListOfObjects>());
        list->pushBack(next.get());
        list = next.get();
    }
    const size_t size = test::getHeapSize() - before;
    for (const char* format : c_formats) {
        SCOPED_TRACE(format);
        test::startHeapPeak();
        const std::string bytes = save(root.get(), format);
        ASSERT_FALSE(bytes.empty());
        // Some copies of the bytes are the test's own.
        EXPECT_LE(test::getHeapPeak(), 4 * size + 3 * bytes.size());
        test::startHeapPeak();
        const Ref<IObject> loaded = load(bytes, format);
        ASSERT_TRUE(loaded);
        EXPECT_LE(test::getHeapPeak(), 4 * size + bytes.size());
        EXPECT_TRUE(save(loaded.get(), format) == bytes);
    }
}

/// A kilobyte of compressed data that promises a size.
class CompressedBombs : public MemoryBounds, public testing::WithParamInterface<const char*> {
protected:
    static std::string make(uint64_t p_size, size_t p_packedSize, const char* p_format = "zbf") {
        const auto standIn = Ref<ICompressedObject>::adopt(zyr_createObject<ICompressedObject>());
        const auto info = Ref<IObject>::adopt(zyr_createObjectFromName(GetParam()));
        static_cast<ICompressionInfo*>(info.get())->setDecompressSize(p_size);
        standIn->setCompressionInfo(static_cast<ICompressionInfo*>(info.get()));
        const std::string packed(p_packedSize, 'x');
        standIn->getMutableCompressedData()->pushBackRange(packed.data(), packed.size());
        return save(standIn.get(), p_format);
    }
    /// The inner one could be true for its own size, which is far above that of the file.
    static Ref<IObject> makeDouble(const char* p_format = "zbf") {
        const std::string inner = make(uint64_t(100) << 20, 100 << 10, p_format);
        const auto standIn = Ref<ICompressedObject>::adopt(zyr_createObject<ICompressedObject>());
        const auto info = Ref<IObject>::adopt(zyr_createObjectFromName(GetParam()));
        auto* compression = static_cast<ICompressionInfo*>(info.get());
        EXPECT_NE(zyr_compressData(compression->getFormatName(), inner.data(), inner.size(),
                                   *standIn->getMutableCompressedData(), 1),
                  0U);
        compression->setDecompressSize(inner.size());
        standIn->setCompressionInfo(compression);
        return Ref<IObject>::share(standIn.get());
    }
};

TEST_P(CompressedBombs, AreRefusedBeforeMemoryIsTaken) {
    for (uint64_t size : {uint64_t(2) << 20, uint64_t(60) << 20, uint64_t(4) << 30, UINT64_MAX}) {
        expectCost(make(size, 1024), "zbf", false, FIXED_COST, 64);
    }
}

TEST_P(CompressedBombs, ThatCouldBeTrueCostWhatTheFormatCanUnpack) {
    expectCost(make(1 << 20, 1024), "zbf", false, FIXED_COST, 1100);
}

TEST_P(CompressedBombs, InsideOfEachOtherAreRefusedBeforeMemoryIsTaken) {
    const std::string bytes = save(makeDouble().get(), "zbf");
    EXPECT_LT(bytes.size(), 4096U);
    expectCost(bytes, "zbf", false, 4 * FIXED_COST, 64);
}

TEST_P(CompressedBombs, InsideOfEachOtherAreRefusedWhereAnotherModuleReadsThem) {
    // The list is of the core module, which has loads of its own.
    for (const char* format : c_formats) {
        SCOPED_TRACE(format);
        const auto list = Ref<IListOfObjects>::adopt(zyr_createObject<IListOfObjects>());
        list->pushBack(makeDouble(format).get());
        const std::string bytes = save(list.get(), format);
        EXPECT_LT(bytes.size(), 16384U);
        expectCost(bytes, format, false, 4 * FIXED_COST, 64);
    }
}

INSTANTIATE_TEST_SUITE_P(Infos, CompressedBombs, testing::Values("Lz4CompressionInfo", "ZipCompressionInfo"));

} // namespace
} // namespace zyr
