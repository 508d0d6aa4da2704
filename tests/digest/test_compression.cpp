#include "zyr_common/digest/zyr_compression.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace zyr {

typedef std::vector<unsigned char> Bytes;

/// One way of compression, with its fronts and callbacks.
struct Method {
    const char* m_name;
    size_t (*m_compress)(const void*, size_t, Array<unsigned char>&, bool_t);
    size_t (*m_decompress)(const void*, size_t, void*, size_t);
    size_t m_boundOf1000;
};

static void PrintTo(const Method& p_method, std::ostream* p_stream) {
    *p_stream << p_method.m_name;
}

class Compression : public testing::TestWithParam<Method> {};

static Bytes makeText(size_t p_size) {
    Bytes bytes(p_size);
    for (size_t i = 0; i < p_size; i++) {
        bytes[i] = (unsigned char)("frame "[i % 6]);
    }
    return bytes;
}

static Bytes makeNoise(size_t p_size) {
    std::mt19937 engine(5);
    Bytes bytes(p_size);
    std::generate(bytes.begin(), bytes.end(), [&] { return (unsigned char)(engine()); });
    return bytes;
}

TEST_P(Compression, GivesBackWhatItTook) {
    for (const Bytes& data : {makeText(1), makeText(1000), makeNoise(1000), makeNoise(100000), makeText(1000000)}) {
        Array<unsigned char> packed;
        const size_t packedSize = GetParam().m_compress(data.data(), data.size(), packed, 1);
        ASSERT_NE(packedSize, 0u);
        Bytes unpacked(data.size() + 10);
        EXPECT_EQ(GetParam().m_decompress(packed.getData(), packedSize, unpacked.data(), unpacked.size()), data.size());
        unpacked.resize(data.size());
        EXPECT_EQ(unpacked, data);
    }
}

TEST_P(Compression, TrimsTheArrayOnlyWhenAsked) {
    const Bytes data = makeText(1000);
    Array<unsigned char> packed;
    const size_t packedSize = GetParam().m_compress(data.data(), data.size(), packed, 0);
    EXPECT_LT(packedSize, 200u);
    EXPECT_EQ(packed.getSize(), GetParam().m_boundOf1000);
    EXPECT_EQ(GetParam().m_compress(data.data(), data.size(), packed, 1), packedSize);
    EXPECT_EQ(packed.getSize(), packedSize);
}

TEST_P(Compression, ReusesTheBlockOfAnOverrideModel) {
    const Bytes data = makeText(1000);
    Array<unsigned char> packed;
    packed.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, 0);
    GetParam().m_compress(data.data(), data.size(), packed, 1);
    const unsigned char* block = packed.getData();
    GetParam().m_compress(data.data(), data.size(), packed, 1);
    EXPECT_EQ(packed.getData(), block);
}

TEST_P(Compression, RefusesNothing) {
    Array<unsigned char> packed;
    EXPECT_EQ(GetParam().m_compress("abc", 0, packed, 1), 0u);
    EXPECT_EQ(GetParam().m_compress(nullptr, 3, packed, 1), 0u);
    EXPECT_EQ(packed.getData(), nullptr);
}

TEST_P(Compression, RefusesAnArrayOfFixedSize) {
    const Bytes data = makeText(1000);
    Bytes memory(GetParam().m_boundOf1000 + 1);
    for (size_t size : {size_t(10), GetParam().m_boundOf1000, GetParam().m_boundOf1000 + 1}) {
        Array<unsigned char> packed;
        packed.bindFixedSizeData(memory.data(), size);
        EXPECT_EQ(GetParam().m_compress(data.data(), data.size(), packed, 1), 0u) << size;
        EXPECT_EQ(packed.getSize(), size);
    }
}

TEST_P(Compression, RefusesWhatIsTooLargeForTheFormat) {
    Array<unsigned char> packed;
    EXPECT_EQ(GetParam().m_compress("abc", SIZE_MAX, packed, 1), 0u);
    EXPECT_EQ(GetParam().m_compress("abc", size_t(1) << 40, packed, 1), 0u);
    EXPECT_EQ(packed.getData(), nullptr);
}

TEST_P(Compression, DecompressionRefusesMissingBuffers) {
    Array<unsigned char> packed;
    const size_t packedSize = GetParam().m_compress("abc", 3, packed, 1);
    char out[8];
    EXPECT_EQ(GetParam().m_decompress(nullptr, packedSize, out, sizeof(out)), 0u);
    EXPECT_EQ(GetParam().m_decompress(packed.getData(), 0, out, sizeof(out)), 0u);
    EXPECT_EQ(GetParam().m_decompress(packed.getData(), packedSize, nullptr, sizeof(out)), 0u);
    EXPECT_EQ(GetParam().m_decompress(packed.getData(), packedSize, out, 0), 0u);
}

TEST_P(Compression, DecompressionStaysInsideItsBuffersForBrokenData) {
    const Bytes data = makeText(500);
    Array<unsigned char> packed;
    const size_t packedSize = GetParam().m_compress(data.data(), data.size(), packed, 1);
    std::mt19937 engine(7);
    for (int i = 0; i < 2000; i++) {
        // A copy of the exact size, so that a sanitizer sees each byte beyond.
        Bytes broken(packed.begin(), packed.begin() + packedSize);
        broken[engine() % broken.size()] ^= (unsigned char)(1 + engine() % 255);
        broken.resize(1 + engine() % broken.size());
        Bytes out(engine() % 600 + 1);
        const size_t size = GetParam().m_decompress(broken.data(), broken.size(), out.data(), out.size());
        EXPECT_TRUE(size <= out.size() || ptrdiff_t(size) < 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, Compression,
                         testing::Values(Method{"Lz4", zyr_compressLZ4, zyr_decompressLZ4, 1000 + 1000 / 255 + 16},
                                         Method{"Zip", zyr_compressZIP, zyr_decompressZIP, 128 + 1000 * 110 / 100},
                                         Method{"Lz4Callback", compressLZ4, decompressLZ4, 1000 + 1000 / 255 + 16},
                                         Method{"ZipCallback", compressZIP, decompressZIP, 128 + 1000 * 110 / 100}),
                         [](const auto& p_info) { return p_info.param.m_name; });

TEST(CompressionLz4, MakesOneRawBlock) {
    Array<unsigned char> packed;
    ASSERT_EQ(zyr_compressLZ4("abc", 3, packed, 1), 4u);
    EXPECT_EQ(Bytes(packed.begin(), packed.end()), (Bytes{0x30, 'a', 'b', 'c'}));
}

TEST(CompressionLz4, TooSmallADestinationGivesANegativeNumber) {
    const unsigned char block[] = {0x30, 'a', 'b', 'c'};
    char out[2];
    EXPECT_LT(ptrdiff_t(zyr_decompressLZ4(block, sizeof(block), out, sizeof(out))), 0);
}

TEST(CompressionZip, MakesAZlibStream) {
    Array<unsigned char> packed;
    ASSERT_NE(zyr_compressZIP("abc", 3, packed, 1), 0u);
    EXPECT_EQ(packed[0] & 0x0F, 8);
    EXPECT_EQ((packed[0] * 256 + packed[1]) % 31, 0);
    // The check sum of the text ends the stream.
    const size_t size = packed.getSize();
    EXPECT_EQ(Bytes(packed.begin() + size - 4, packed.end()), (Bytes{0x02, 0x4d, 0x01, 0x27}));
}

TEST(CompressionZip, ReadsAZlibStreamOfOtherMake) {
    const unsigned char stream[] = {0x78, 0x9c, 0x4b, 0x4c, 0x4a, 0x06, 0x00, 0x02, 0x4d, 0x01, 0x27};
    char out[4] = {};
    EXPECT_EQ(zyr_decompressZIP(stream, sizeof(stream), out, sizeof(out)), 3u);
    EXPECT_STREQ(out, "abc");
}

TEST(CompressionZip, TooSmallADestinationGivesZero) {
    const unsigned char stream[] = {0x78, 0x9c, 0x4b, 0x4c, 0x4a, 0x06, 0x00, 0x02, 0x4d, 0x01, 0x27};
    char out[2];
    EXPECT_EQ(zyr_decompressZIP(stream, sizeof(stream), out, sizeof(out)), 0u);
}

} // namespace zyr
