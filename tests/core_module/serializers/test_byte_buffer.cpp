#include "core_module/serializers/zyr_byte_buffer.h"

#include <gtest/gtest.h>

using namespace zyr;

namespace {

constexpr size_t MEGABYTE = 1 << 20;

/// A byte that tells its place.
uint8_t getByte(size_t p_place) {
    return static_cast<uint8_t>(p_place * 2654435761 >> 24);
}

bool appendBytes(ByteBuffer& p_buffer, size_t p_count) {
    for (size_t i = 0; i < p_count; i++) {
        const uint8_t byte = getByte(p_buffer.getSize());
        if (!p_buffer.append(&byte, 1)) {
            return false;
        }
    }
    return true;
}

size_t countRightBytes(const ByteBuffer& p_buffer) {
    size_t right = 0;
    for (size_t i = 0; i < p_buffer.getSize(); i++) {
        right += p_buffer.getData()[i] == getByte(i);
    }
    return right;
}

} // namespace

TEST(ByteBuffer, KeepsItsBytesWhileItGrowsBeyondTheHeap) {
    ByteBuffer buffer;
    ASSERT_TRUE(appendBytes(buffer, 9 * MEGABYTE));
    EXPECT_EQ(buffer.getSize(), 9 * MEGABYTE);
    EXPECT_EQ(countRightBytes(buffer), 9 * MEGABYTE);
}

TEST(ByteBuffer, KeepsItsBytesWhereThereIsNoMemory) {
    for (const size_t size : {size_t(100), 5 * MEGABYTE}) {
        ByteBuffer buffer;
        ASSERT_TRUE(appendBytes(buffer, size));
        EXPECT_EQ(buffer.reserve(size_t(1) << 60), nullptr);
        EXPECT_EQ(buffer.getSize(), size);
        EXPECT_EQ(countRightBytes(buffer), size);
        EXPECT_TRUE(appendBytes(buffer, 1000));
        EXPECT_EQ(countRightBytes(buffer), size + 1000);
    }
}

TEST(ByteBuffer, CanBeFilledAgainAfterItsRelease) {
    ByteBuffer buffer;
    for (const size_t size : {5 * MEGABYTE, size_t(100), 3 * MEGABYTE}) {
        ASSERT_TRUE(appendBytes(buffer, size));
        EXPECT_EQ(countRightBytes(buffer), size);
        buffer.release();
        EXPECT_EQ(buffer.getSize(), 0u);
    }
}

TEST(ByteBuffer, TextsOfEachLengthStandBehindEachOther) {
    ByteBuffer buffer;
    std::string expected;
    for (size_t length = 0; length < 200; length++) {
        const std::string text(length, static_cast<char>('a' + length % 26));
        ASSERT_TRUE(appendText(buffer, String(text)));
        // The length is one more, and takes a second byte from 128 on.
        if (length + 1 < 128) {
            expected += static_cast<char>(length + 1);
        } else {
            expected += static_cast<char>((length + 1) % 128 + 128);
            expected += static_cast<char>((length + 1) / 128);
        }
        expected += text;
    }
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(buffer.getData()), buffer.getSize()), expected);
}

TEST(ByteBuffer, OnlyLowerCaseGuidsBecomeBytes) {
    const String guid("0123fedc-4567-89ab-cdef-00ff10a9b8c7");
    ByteBuffer buffer;
    ASSERT_TRUE(appendText(buffer, guid));
    const uint8_t bytes[] = {0,    0x01, 0x23, 0xfe, 0xdc, 0x45, 0x67, 0x89, 0xab,
                             0xcd, 0xef, 0x00, 0xff, 0x10, 0xa9, 0xb8, 0xc7};
    ASSERT_EQ(buffer.getSize(), sizeof(bytes));
    EXPECT_EQ(memcmp(buffer.getData(), bytes, sizeof(bytes)), 0);
    buffer.setSize(0);
    ASSERT_TRUE(appendText(buffer, guid.getData(), guid.getLengthInBytes()));
    ASSERT_EQ(buffer.getSize(), sizeof(bytes));
    EXPECT_EQ(memcmp(buffer.getData(), bytes, sizeof(bytes)), 0);
    for (size_t place = 0; place < guid.getLengthInBytes(); place++) {
        for (int value = 0; value < 256; value++) {
            const char byte = static_cast<char>(value);
            String text = guid;
            const bool dash = text.getData()[place] == '-';
            text.getData()[place] = byte;
            const bool digit = (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'f');
            buffer.setSize(0);
            ASSERT_TRUE(appendText(buffer, text));
            ASSERT_EQ(buffer.getSize(), (dash ? byte == '-' : digit) ? 17u : 37u) << place << ' ' << value;
        }
    }
}
