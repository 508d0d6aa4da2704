#include "zyr_common/platform/zyr_base128.h"

#include "zyr_common/memory/zyr_report.h"

namespace zyr {

namespace {

template <typename T> uint8_t getSize(T p_value) {
    uint8_t size = 1;
    while (p_value >= 0x80) {
        p_value >>= 7;
        ++size;
    }
    return size;
}

template <typename T> void writeBytes(uint8_t* p_dstBytes, uint8_t p_sizeInBytes, T p_value) {
    for (uint8_t i = 0; i < p_sizeInBytes; ++i) {
        uint8_t more = i + 1 < p_sizeInBytes ? 0x80 : 0;
        p_dstBytes[i] = static_cast<uint8_t>((p_value & 0x7F) | more);
        p_value >>= 7;
    }
}

// A run of bytes that never ends must not lead the reader out of its source, so it stops at the width's maximum.
template <typename T> T readBytes(const uint8_t* p_srcBytes, uint8_t* p_sizeInBytes) {
    constexpr uint8_t maximum = sizeof(T) == 4 ? 5 : 10;
    T value = 0;
    uint8_t size = 0;
    bool more = true;
    while (more && size < maximum) {
        uint8_t byte = p_srcBytes[size];
        value |= static_cast<T>(byte & 0x7F) << (7 * size);
        more = (byte & 0x80) != 0;
        ++size;
    }
    if (p_sizeInBytes != nullptr) {
        *p_sizeInBytes = size;
    }
    return value;
}

template <typename U, typename S> U mapSigned(S p_value) {
    U value = static_cast<U>(p_value);
    return p_value >= 0 ? 2 * value : 1 - 2 * value;
}

template <typename S, typename U> S unmapSigned(U p_value) {
    U magnitude = p_value >> 1;
    return static_cast<S>((p_value & 1) != 0 ? U(0) - magnitude : magnitude);
}

} // namespace

uint8_t zyr_getUInt32Base128SizeInBytes(uint32_t p_value) {
    return getSize(p_value);
}

void zyr_writeUInt32Base128Bytes(uint8_t* p_dstBytes, uint8_t p_sizeInBytes, uint32_t p_value) {
    ZYR_ASSERT(p_dstBytes != NULL);
    ZYR_ASSERT(p_sizeInBytes <= 5);
    writeBytes(p_dstBytes, p_sizeInBytes, p_value);
}

uint32_t zyr_readUInt32Base128Bytes(const uint8_t* p_srcBytes, uint8_t* p_sizeInBytes) {
    return readBytes<uint32_t>(p_srcBytes, p_sizeInBytes);
}

uint8_t zyr_getUInt64Base128SizeInBytes(uint64_t p_value) {
    return getSize(p_value);
}

void zyr_writeUInt64Base128Bytes(uint8_t* p_dstBytes, uint8_t p_sizeInBytes, uint64_t p_value) {
    ZYR_ASSERT(p_dstBytes != NULL);
    ZYR_ASSERT(p_sizeInBytes <= 10);
    writeBytes(p_dstBytes, p_sizeInBytes, p_value);
}

uint64_t zyr_readUInt64Base128Bytes(const uint8_t* p_srcBytes, uint8_t* p_sizeInBytes) {
    return readBytes<uint64_t>(p_srcBytes, p_sizeInBytes);
}

uint8_t zyr_getInt32Base128SizeInBytes(int32_t p_value) {
    return getSize(mapSigned<uint32_t>(p_value));
}

void zyr_writeInt32Base128Bytes(uint8_t* p_dstBytes, uint8_t p_sizeInBytes, int32_t p_value) {
    ZYR_ASSERT(p_dstBytes != NULL);
    ZYR_ASSERT(p_sizeInBytes <= 5);
    writeBytes(p_dstBytes, p_sizeInBytes, mapSigned<uint32_t>(p_value));
}

int32_t zyr_readInt32Base128Bytes(const uint8_t* p_srcBytes, uint8_t* p_sizeInBytes) {
    return unmapSigned<int32_t>(readBytes<uint32_t>(p_srcBytes, p_sizeInBytes));
}

uint8_t zyr_getInt64Base128SizeInBytes(int64_t p_value) {
    return getSize(mapSigned<uint64_t>(p_value));
}

void zyr_writeInt64Base128Bytes(uint8_t* p_dstBytes, uint8_t p_sizeInBytes, int64_t p_value) {
    ZYR_ASSERT(p_dstBytes != NULL);
    ZYR_ASSERT(p_sizeInBytes <= 10);
    writeBytes(p_dstBytes, p_sizeInBytes, mapSigned<uint64_t>(p_value));
}

int64_t zyr_readInt64Base128Bytes(const uint8_t* p_srcBytes, uint8_t* p_sizeInBytes) {
    return unmapSigned<int64_t>(readBytes<uint64_t>(p_srcBytes, p_sizeInBytes));
}

} // namespace zyr
