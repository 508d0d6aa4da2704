#include "core_module/core_module_test.h"
#include "zyr_common/documents/zyr_binary_reader.h"
#include "zyr_common/documents/zyr_binary_writer.h"

#include <gmock/gmock.h>
#include <limits>

namespace zyr {
namespace {

class BinaryDataTest : public CoreModuleUpTest {
protected:
    using Bytes = std::vector<int>;

    void SetUp() override {
        CoreModuleUpTest::SetUp();
        m_reader = zyr_createObject<IBinaryReader>();
        m_writer = zyr_createObject<IBinaryWriter>();
    }
    void TearDown() override {
        m_reader->release();
        m_writer->release();
    }

    /// In a block of its own size, so that a byte beyond is seen by the address sanitizer.
    void setInput(const Bytes& p_bytes) {
        m_input.clear();
        m_input.setAllocationModel(ZYR_ALLOC_CONDITION_ON_RESIZE, 1);
        for (int byte : p_bytes) {
            m_input.pushBack(static_cast<unsigned char>(byte));
        }
        m_reader->setInputData(&m_input);
    }
    Bytes getOutput() const {
        const Array<unsigned char>* output = m_writer->getOutputData(0);
        return Bytes(output->begin(), output->end());
    }
    /// The reader goes on with what the writer wrote.
    void readOutput() { m_reader->setInputData(m_writer->getOutputData(0)); }

    Array<unsigned char> m_input;
    IBinaryReader* m_reader = nullptr;
    IBinaryWriter* m_writer = nullptr;
};

TEST_F(BinaryDataTest, WritesNumbersLittleEndian) {
    EXPECT_TRUE(m_writer->writeSingleBoolean(7));
    EXPECT_TRUE(m_writer->writeSingleInt8(-2));
    EXPECT_TRUE(m_writer->writeSingleUInt16(0x0102));
    EXPECT_TRUE(m_writer->writeSingleInt32(-2));
    EXPECT_TRUE(m_writer->writeSingleFloat(1.0f));
    EXPECT_TRUE(m_writer->writeBytes("ab", 2));
    EXPECT_TRUE(m_writer->writeBytes(nullptr, 0));
    EXPECT_EQ(getOutput(), (Bytes{1, 0xFE, 2, 1, 0xFE, 0xFF, 0xFF, 0xFF, 0, 0, 0x80, 0x3F, 'a', 'b'}));
}

TEST_F(BinaryDataTest, ReadsEachTypeAsItIsWritten) {
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    const type numbers##suffix[] = {std::numeric_limits<type>::lowest(), 1, std::numeric_limits<type>::max()};         \
    m_writer->writeSingle##suffix(numbers##suffix[2]);                                                                 \
    m_writer->writeMultiple##many(numbers##suffix, 3);
#define ZYR_RAW_BOOLEAN(suffix, many, type)                                                                            \
    const type numbers##suffix[] = {0, 1, 200};                                                                        \
    m_writer->writeSingle##suffix(numbers##suffix[2]);                                                                 \
    m_writer->writeMultiple##many(numbers##suffix, 3);
#include "zyr_common/documents/zyr_raw_numbers.inl"
    readOutput();
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    {                                                                                                                  \
        type single = 0;                                                                                               \
        type values[3] = {};                                                                                           \
        EXPECT_TRUE(m_reader->readSingle##suffix(single));                                                             \
        EXPECT_EQ(single, numbers##suffix[2]) << #suffix;                                                              \
        EXPECT_TRUE(m_reader->readMultiple##many(values, 3));                                                          \
        EXPECT_THAT(values, testing::ElementsAreArray(numbers##suffix)) << #suffix;                                    \
    }
#define ZYR_RAW_BOOLEAN(suffix, many, type)                                                                            \
    {                                                                                                                  \
        type single = 0;                                                                                               \
        type values[3] = {};                                                                                           \
        EXPECT_TRUE(m_reader->readSingle##suffix(single));                                                             \
        EXPECT_EQ(single, 1);                                                                                          \
        EXPECT_TRUE(m_reader->readMultiple##many(values, 3));                                                          \
        EXPECT_THAT(values, testing::ElementsAre(0, 1, 1));                                                            \
    }
#include "zyr_common/documents/zyr_raw_numbers.inl"
    uint8_t byte = 0;
    EXPECT_FALSE(m_reader->readSingleUInt8(byte));
}

TEST_F(BinaryDataTest, ReadsBooleansAsZeroOrOne) {
    setInput({2, 0, 200});
    bool_t single = 5;
    EXPECT_TRUE(m_reader->readSingleBoolean(single));
    EXPECT_EQ(single, 1);
    bool_t values[2] = {5, 5};
    EXPECT_TRUE(m_reader->readMultipleBooleans(values, 2));
    EXPECT_EQ(values[0], 0);
    EXPECT_EQ(values[1], 1);
}

TEST_F(BinaryDataTest, LeavesPositionAndOutputsWhenBytesAreMissing) {
    setInput({1, 2, 3});
    uint32_t number = 77;
    uint16_t numbers[2] = {7, 8};
    char bytes[4] = "abc";
    EXPECT_FALSE(m_reader->readSingleUInt32(number));
    EXPECT_FALSE(m_reader->readMultipleUInt16(numbers, 2));
    EXPECT_FALSE(m_reader->readMultipleUInt16(numbers, SIZE_MAX / 2 + 2));
    EXPECT_FALSE(m_reader->readBytes(bytes, 4));
    EXPECT_EQ(number, 77u);
    EXPECT_EQ(numbers[0], 7);
    EXPECT_STREQ(bytes, "abc");
    EXPECT_TRUE(m_reader->readBytes(nullptr, 0));
    EXPECT_TRUE(m_reader->readSingleUInt16(numbers[0]));
    EXPECT_EQ(numbers[0], 0x0201);
}

TEST_F(BinaryDataTest, ReadsNothingWithoutAPlaceForIt) {
    setInput({1, 2, 3, 4});
    EXPECT_FALSE(m_reader->readBytes(nullptr, 1));
    EXPECT_FALSE(m_reader->readMultipleUInt16(nullptr, 2));
    EXPECT_FALSE(m_reader->readMultipleBooleans(nullptr, 1));
    EXPECT_FALSE(m_reader->readMultipleUInt16Base128(nullptr, 2, 0));
    EXPECT_TRUE(m_reader->readMultipleUInt16Base128(nullptr, 0, 0));
    uint32_t number = 0;
    EXPECT_TRUE(m_reader->readSingleUInt32(number));
    EXPECT_EQ(number, 0x04030201u);
}

TEST_F(BinaryDataTest, HasNothingToReadWithoutInput) {
    uint8_t byte = 0;
    EXPECT_FALSE(m_reader->readSingleUInt8(byte));
    setInput({1});
    m_reader->setInputData(nullptr);
    EXPECT_FALSE(m_reader->readSingleUInt8(byte));
}

TEST_F(BinaryDataTest, WritesVariableLengths) {
    EXPECT_TRUE(m_writer->writeSingleUInt32Base128(300));
    EXPECT_TRUE(m_writer->writeSingleInt32Base128(-1));
    EXPECT_TRUE(m_writer->writeSingleInt16Base128(64));
    const uint16_t numbers[] = {0, 127, 128};
    EXPECT_TRUE(m_writer->writeMultipleUInt16Base128(numbers, 3));
    EXPECT_EQ(getOutput(), (Bytes{0xAC, 2, 3, 0x80, 1, 0, 127, 0x80, 1}));
}

TEST_F(BinaryDataTest, ReadsVariableLengthsAsTheyAreWritten) {
#define ZYR_BASE128_NUMBER(suffix, type)                                                                               \
    const type numbers##suffix[] = {0, 1, static_cast<type>(-1), std::numeric_limits<type>::max(), 100};               \
    m_writer->writeMultiple##suffix##Base128(numbers##suffix, 5);                                                      \
    m_writer->writeSingle##suffix##Base128(numbers##suffix[3]);
#include "zyr_common/documents/zyr_raw_numbers.inl"
    readOutput();
#define ZYR_BASE128_NUMBER(suffix, type)                                                                               \
    {                                                                                                                  \
        const bool_t isSigned = std::numeric_limits<type>::is_signed;                                                  \
        type values[5] = {};                                                                                           \
        type single = 0;                                                                                               \
        EXPECT_TRUE(m_reader->readMultiple##suffix##Base128(values, 5, isSigned));                                     \
        EXPECT_THAT(values, testing::ElementsAreArray(numbers##suffix)) << #suffix;                                    \
        EXPECT_TRUE(m_reader->readSingle##suffix##Base128(single, isSigned));                                          \
        EXPECT_EQ(single, numbers##suffix[3]) << #suffix;                                                              \
    }
#include "zyr_common/documents/zyr_raw_numbers.inl"
}

TEST_F(BinaryDataTest, RefusesVariableLengthsBeyondTheTypeAndWithoutEnd) {
    setInput({0xAC, 2, 0x80});
    int8_t small = 9;
    EXPECT_FALSE(m_reader->readSingleInt8Base128(small, 0));
    EXPECT_FALSE(m_reader->readSingleInt8Base128(small, 1)); // 150
    EXPECT_EQ(small, 9);
    uint16_t number = 0;
    EXPECT_TRUE(m_reader->readSingleUInt16Base128(number, 0));
    EXPECT_EQ(number, 300);
    EXPECT_FALSE(m_reader->readSingleUInt16Base128(number, 0));
    EXPECT_EQ(number, 300);
    setInput({3});
    EXPECT_FALSE(m_reader->readSingleUInt16Base128(number, 1)); // -1
    setInput({0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 2});
    uint64_t large = 0;
    EXPECT_FALSE(m_reader->readSingleUInt64Base128(large, 0));
    setInput({0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 1});
    EXPECT_TRUE(m_reader->readSingleUInt64Base128(large, 0));
    EXPECT_EQ(large, UINT64_MAX);
}

TEST_F(BinaryDataTest, LeavesOutputsWhenALaterNumberIsFaulty) {
    setInput({1, 2, 0x80});
    uint32_t numbers[3] = {7, 8, 9};
    EXPECT_FALSE(m_reader->readMultipleUInt32Base128(numbers, 3, 0));
    EXPECT_EQ(numbers[0], 7u);
    EXPECT_TRUE(m_reader->readMultipleUInt32Base128(numbers, 2, 0));
    EXPECT_EQ(numbers[1], 2u);
}

TEST_F(BinaryDataTest, ReadsBooleansAndRealNumbersFromVariableLengths) {
    setInput({0xAC, 2, 0, 3, 4});
    bool_t values[2] = {5, 5};
    EXPECT_TRUE(m_reader->readMultipleBooleansBase128(values, 2, 0));
    EXPECT_EQ(values[0], 1);
    EXPECT_EQ(values[1], 0);
    float number = 0;
    EXPECT_TRUE(m_reader->readSingleFloatBase128(number, 1));
    EXPECT_EQ(number, -1.0f);
    double other = 0;
    EXPECT_TRUE(m_reader->readSingleDoubleBase128(other, 0));
    EXPECT_EQ(other, 4.0);
}

TEST_F(BinaryDataTest, StoresSmallNumbersInOneExtendedByte) {
    EXPECT_EQ(m_writer->getSizeSingleUInt32Ext(254), 1);
    EXPECT_EQ(m_writer->getSizeSingleUInt32Ext(255), 5);
    EXPECT_TRUE(m_writer->writeSingleUInt32Ext(254));
    EXPECT_TRUE(m_writer->writeSingleUInt32Ext(255));
    EXPECT_TRUE(m_writer->writeSingleInt32Ext(-1));
    EXPECT_EQ(getOutput(), (Bytes{254, 255, 255, 0, 0, 0, 255, 255, 255, 255, 255}));
    readOutput();
    uint32_t number = 0;
    EXPECT_TRUE(m_reader->readSingleUInt32Ext(number));
    EXPECT_EQ(number, 254u);
    EXPECT_TRUE(m_reader->readSingleUInt32Ext(number));
    EXPECT_EQ(number, 255u);
    int32_t negative = 0;
    EXPECT_TRUE(m_reader->readSingleInt32Ext(negative));
    EXPECT_EQ(negative, -1);
    setInput({255, 1, 2, 3});
    EXPECT_FALSE(m_reader->readSingleUInt32Ext(number));
    EXPECT_EQ(number, 255u);
    uint8_t byte = 0;
    EXPECT_TRUE(m_reader->readSingleUInt8(byte));
    EXPECT_EQ(byte, 255);
}

TEST_F(BinaryDataTest, ReadsBlocksByTheirIndex) {
    m_writer->beginBlock();
    m_writer->writeSingleUInt16(1);
    m_writer->writeSingleUInt16(2);
    m_writer->endBlock();
    m_writer->beginBlock();
    m_writer->endBlock();
    m_writer->writeSingleUInt8(9);
    EXPECT_EQ(getOutput(), (Bytes{4, 0, 0, 0, 0, 0, 0, 0, 1, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 9}));
    readOutput();
    ASSERT_TRUE(m_reader->beginGroupOfBlocks());
    ASSERT_TRUE(m_reader->pushBlock(ZYR_RAW_TYPE_UINT16));
    ASSERT_TRUE(m_reader->pushBlock(ZYR_RAW_TYPE_DOUBLE));
    EXPECT_FALSE(m_reader->readFromBlockIndex(0));
    ASSERT_TRUE(m_reader->endGroupOfBlocks());
    uint16_t number = 0;
    uint8_t byte = 0;
    ASSERT_TRUE(m_reader->readFromBlockIndex(1));
    EXPECT_FALSE(m_reader->readSingleUInt8(byte));
    for (int i = 0; i < 2; i++) {
        ASSERT_TRUE(m_reader->readFromBlockIndex(0));
        EXPECT_TRUE(m_reader->readSingleUInt16(number));
        EXPECT_EQ(number, 1);
        EXPECT_TRUE(m_reader->readSingleUInt16(number));
        EXPECT_EQ(number, 2);
        EXPECT_FALSE(m_reader->readSingleUInt16(number));
    }
    EXPECT_FALSE(m_reader->readFromBlockIndex(2));
    ASSERT_TRUE(m_reader->popGroupOfBlocks());
    EXPECT_TRUE(m_reader->readSingleUInt8(byte));
    EXPECT_EQ(byte, 9);
}

TEST_F(BinaryDataTest, ReadsBlocksInsideOfBlocks) {
    m_writer->beginBlock();
    m_writer->beginBlock();
    m_writer->writeSingleUInt8(5);
    m_writer->endBlock();
    m_writer->writeSingleUInt8(6);
    m_writer->endBlock();
    EXPECT_FALSE(m_writer->endBlock());
    readOutput();
    m_reader->beginGroupOfBlocks();
    ASSERT_TRUE(m_reader->pushBlock(ZYR_RAW_TYPE_UINT8));
    m_reader->endGroupOfBlocks();
    ASSERT_TRUE(m_reader->readFromBlockIndex(0));
    m_reader->beginGroupOfBlocks();
    ASSERT_TRUE(m_reader->pushBlock(ZYR_RAW_TYPE_UINT8));
    m_reader->endGroupOfBlocks();
    uint8_t byte = 0;
    ASSERT_TRUE(m_reader->readFromBlockIndex(0));
    EXPECT_TRUE(m_reader->readSingleUInt8(byte));
    EXPECT_EQ(byte, 5);
    ASSERT_TRUE(m_reader->popGroupOfBlocks());
    EXPECT_TRUE(m_reader->readSingleUInt8(byte));
    EXPECT_EQ(byte, 6);
    ASSERT_TRUE(m_reader->popGroupOfBlocks());
    EXPECT_FALSE(m_reader->popGroupOfBlocks());
    EXPECT_FALSE(m_reader->readSingleUInt8(byte));
}

TEST_F(BinaryDataTest, RefusesFaultyBlocks) {
    EXPECT_FALSE(m_reader->pushBlock(ZYR_RAW_TYPE_UINT8));
    EXPECT_FALSE(m_reader->endGroupOfBlocks());
    EXPECT_FALSE(m_reader->popGroupOfBlocks());
    setInput({3, 0, 0, 0, 0, 0, 0, 0, 1, 2, 3});
    m_reader->beginGroupOfBlocks();
    EXPECT_FALSE(m_reader->pushBlock(ZYR_RAW_TYPE_UINT16));
    EXPECT_FALSE(m_reader->pushBlock(static_cast<RawTypeEnum>(11)));
    EXPECT_FALSE(m_reader->popGroupOfBlocks());
    EXPECT_TRUE(m_reader->pushBlock(ZYR_RAW_TYPE_UINT8));
    setInput({4, 0, 0, 0, 0, 0, 0, 0, 1, 2, 3});
    m_reader->beginGroupOfBlocks();
    EXPECT_FALSE(m_reader->pushBlock(ZYR_RAW_TYPE_UINT8));
    setInput({255, 255, 255, 255, 255, 255, 255, 255, 1});
    m_reader->beginGroupOfBlocks();
    EXPECT_FALSE(m_reader->pushBlock(ZYR_RAW_TYPE_UINT8));
}

TEST_F(BinaryDataTest, WritesNothingIntoAnArrayThatCannotGrow) {
    unsigned char bytes[2] = {1, 2};
    Array<unsigned char> fixed;
    fixed.bindFixedSizeData(bytes, 2);
    m_writer->setOutputData(&fixed);
    EXPECT_FALSE(m_writer->writeSingleUInt8(3));
    EXPECT_FALSE(m_writer->writeSingleUInt32Base128(3));
    EXPECT_FALSE(m_writer->beginBlock());
    EXPECT_FALSE(m_writer->endBlock());
    EXPECT_EQ(fixed.getSize(), 2u);
    EXPECT_EQ(bytes[0], 1);
    m_writer->setOutputData(nullptr);
}

TEST_F(BinaryDataTest, WritesNothingWithoutItsBytes) {
    EXPECT_TRUE(m_writer->writeBytes(nullptr, 0));
    EXPECT_FALSE(m_writer->writeBytes(nullptr, 5));
    EXPECT_FALSE(m_writer->writeMultipleBooleans(nullptr, 5));
    EXPECT_FALSE(m_writer->writeMultipleDouble(nullptr, 5));
    EXPECT_FALSE(m_writer->writeMultipleInt64Base128(nullptr, 5));
    EXPECT_EQ(m_writer->getOutputData(0)->getSize(), 0u);
}

TEST_F(BinaryDataTest, AppendsToTheArrayThatItIsGiven) {
    Array<unsigned char>* output = new Array<unsigned char>;
    output->pushBack(1);
    m_writer->setOutputData(output);
    output->release();
    m_writer->writeSingleUInt8(2);
    EXPECT_EQ(getOutput(), (Bytes{1, 2}));
    Array<unsigned char>* shared = m_writer->getOutputData(1);
    EXPECT_EQ(shared, output);
    m_writer->setOutputData(nullptr);
    EXPECT_TRUE(getOutput().empty());
    EXPECT_EQ(shared->getSize(), 2u);
    shared->release();
}

TEST_F(BinaryDataTest, CopiesOutputAndStartsACopiedReaderAtTheBeginning) {
    m_writer->writeSingleUInt8(2);
    IBinaryWriter* writer = static_cast<IBinaryWriter*>(m_writer->clone());
    writer->writeSingleUInt8(3);
    EXPECT_EQ(writer->getOutputData(0)->getSize(), 2u);
    EXPECT_EQ(getOutput(), Bytes{2});
    writer->release();
    readOutput();
    uint8_t byte = 0;
    m_reader->readSingleUInt8(byte);
    IBinaryReader* reader = static_cast<IBinaryReader*>(m_reader->clone());
    EXPECT_TRUE(reader->readSingleUInt8(byte));
    reader->release();
}

} // namespace
} // namespace zyr
