// Large outputs, which a serializer hands over instead of having them copied: nobody may notice.
#include "storage/load_save_test.h"
#include "zyr_common/application/zyr_format_registries.h"
#include "zyr_common/memory/zyr_power_of_two.h"
#include "zyr_common/serialization/zyr_serializer_reserved.h"
#include "zyr_common/serialization/zyr_single_objects.h"

#include <numeric>

namespace zyr {
namespace {

constexpr const char* FORMATS[] = {"raw", "zbf", "xml", "json"};

class GivenOutputTest : public LoadSaveTest {
protected:
    /// An object whose output has some hundred thousand bytes.
    static INativeFormatInfo* makeLargeInfo() {
        INativeFormatInfo* info = makeInfo("name");
        std::vector<unsigned char> bytes(300000);
        std::iota(bytes.begin(), bytes.end(), static_cast<unsigned char>(1));
        info->getMutableOriginalFile()->pushBackRange(bytes.data(), bytes.size());
        return info;
    }
    static std::string getBytes(const Array<unsigned char>& p_data) {
        return std::string(reinterpret_cast<const char*>(p_data.getData()), p_data.getSize());
    }
    static bool_t saveTo(Array<unsigned char>& p_data, IObject* p_object, const char* p_format) {
        return zyr_saveToData(p_object, p_data, p_format, 1, "");
    }
    /// What a save appends to an array that holds something.
    static std::string getAppended(IObject* p_object, const char* p_format) {
        Array<unsigned char> data;
        data.pushBack('x');
        EXPECT_TRUE(saveTo(data, p_object, p_format));
        return getBytes(data).substr(1);
    }
};

size_t numOfBlocks = 0;
void* countBlock(size_t p_size) {
    numOfBlocks++;
    return zyr_malloc(p_size);
}

TEST_F(GivenOutputTest, ANewArrayHasTheSameBytesAndCapacityAsOneThatTheyWereAppendedTo) {
    INativeFormatInfo* info = makeLargeInfo();
    for (const char* format : FORMATS) {
        SCOPED_TRACE(format);
        Array<unsigned char> data;
        ASSERT_TRUE(saveTo(data, info, format));
        ASSERT_GT(data.getSize(), 300000U);
        EXPECT_TRUE(getBytes(data) == getAppended(info, format));
        EXPECT_EQ(data.getAllocatedSize(), zyr_getNearestPowerOfTwo(data.getSize()));
        EXPECT_EQ(data.getAllocCondition(), ZYR_ALLOC_CONDITION_ON_RESIZE);
        EXPECT_EQ(data.getAllocStep(), ZYR_ALLOC_STEP_POWER_OF_TWO);
        IObject* loaded = zyr_loadFromData(data, format, "");
        ASSERT_NE(loaded, nullptr);
        EXPECT_EQ(static_cast<INativeFormatInfo*>(loaded)->getOriginalFile()->getSize(), 300005U);
        loaded->release();
    }
    info->release();
}

TEST_F(GivenOutputTest, TheArrayGrowsAndShrinksAsEver) {
    INativeFormatInfo* info = makeLargeInfo();
    Array<unsigned char> data;
    ASSERT_TRUE(saveTo(data, info, "raw"));
    const std::string bytes = getBytes(data);
    data.pushBackRange(bytes.data(), bytes.size());
    EXPECT_TRUE(getBytes(data) == bytes + bytes);
    EXPECT_TRUE(data.resize(10));
    EXPECT_EQ(getBytes(data), bytes.substr(0, 10));
    EXPECT_EQ(data.getAllocatedSize(), 16U);
    info->release();
}

TEST_F(GivenOutputTest, AnArrayKeepsItsOwnAllocator) {
    INativeFormatInfo* info = makeLargeInfo();
    Allocator allocator = {&countBlock, &zyr_realloc, &zyr_free};
    Array<unsigned char> data;
    data.setAllocatorUnsafe(&allocator);
    numOfBlocks = 0;
    ASSERT_TRUE(saveTo(data, info, "zbf"));
    EXPECT_GT(numOfBlocks, 0U);
    EXPECT_TRUE(getBytes(data) == getAppended(info, "zbf"));
    info->release();
}

TEST_F(GivenOutputTest, AnArrayKeepsItsOwnModel) {
    INativeFormatInfo* info = makeLargeInfo();
    Array<unsigned char> data;
    data.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, 1);
    ASSERT_TRUE(saveTo(data, info, "json"));
    EXPECT_EQ(data.getAllocCondition(), ZYR_ALLOC_CONDITION_ON_OVERFLOW);
    EXPECT_EQ(data.getAllocatedSize(), data.getSize());
    EXPECT_TRUE(getBytes(data) == getAppended(info, "json"));
    info->release();
}

TEST_F(GivenOutputTest, ASerializerGivesItsOutputOnceAndOnlyWhereItFits) {
    INativeFormatInfo* info = makeLargeInfo();
    for (const char* format : FORMATS) {
        SCOPED_TRACE(format);
        ISerializer* serializer = zyr_getSerializerFromFileFormat(format);
        ASSERT_TRUE(serializer->initialize());
        ASSERT_TRUE(serializer->writeSingleObject<IObject>("object", info));
        ISerializerReserved* reserved = zyr_findReserved(serializer);
        ASSERT_NE(reserved, nullptr);
        const size_t front = serializer->isBinaryFormat() ? 32 : 0;
        const auto* data = static_cast<const char*>(serializer->getData());
        const std::string bytes(data, serializer->getDataSize());
        EXPECT_EQ(reserved->giveOutput(data + 1, front, bytes.size()), nullptr);
        EXPECT_EQ(reserved->giveOutput(nullptr, front, bytes.size()), nullptr);
        EXPECT_EQ(reserved->giveOutput(data, 32 - front, bytes.size()), nullptr);
        EXPECT_EQ(reserved->giveOutput(data, front, size_t(1) << 40), nullptr);
        ASSERT_TRUE(serializer->getData() == data && serializer->getDataSize() == bytes.size());
        void* block = reserved->giveOutput(data, front, front + bytes.size());
        ASSERT_NE(block, nullptr);
        const char* given = static_cast<const char*>(block) + front; // A block that is cut may move.
        EXPECT_EQ(serializer->getDataSize(), 0U);
        EXPECT_EQ(reserved->giveOutput(data, front, front + bytes.size()), nullptr);
        // Another output leaves what was given as it was.
        ASSERT_TRUE(serializer->initialize());
        ASSERT_TRUE(serializer->writeSingleObject<IObject>("object", info));
        EXPECT_NE(serializer->getData(), given);
        EXPECT_TRUE(std::string(static_cast<const char*>(serializer->getData()), serializer->getDataSize()) == bytes);
        EXPECT_TRUE(std::string(given, bytes.size()) == bytes);
        zyr_free(block);
        serializer->deinitialize();
        serializer->release();
    }
    info->release();
}

} // namespace
} // namespace zyr
