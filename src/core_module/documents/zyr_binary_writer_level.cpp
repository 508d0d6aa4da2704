#include "core_module/documents/zyr_binary_writer_level.h"

#include "core_module/zyr_core_class.h"
#include "zyr_common/platform/zyr_base128.h"

namespace zyr {

namespace {

constexpr unsigned char EXTENDED = 255;

/// Gives the number of bytes; there is room for ten.
template <typename T> uint8_t encodeBase128(unsigned char* p_bytes, T p_value) {
    uint8_t size = 0;
    if constexpr (sizeof(T) == 8 && std::is_signed_v<T>) {
        size = zyr_getInt64Base128SizeInBytes(p_value);
        zyr_writeInt64Base128Bytes(p_bytes, size, p_value);
    } else if constexpr (sizeof(T) == 8) {
        size = zyr_getUInt64Base128SizeInBytes(p_value);
        zyr_writeUInt64Base128Bytes(p_bytes, size, p_value);
    } else if constexpr (std::is_signed_v<T>) {
        size = zyr_getInt32Base128SizeInBytes(p_value);
        zyr_writeInt32Base128Bytes(p_bytes, size, p_value);
    } else {
        size = zyr_getUInt32Base128SizeInBytes(p_value);
        zyr_writeUInt32Base128Bytes(p_bytes, size, p_value);
    }
    return size;
}

} // namespace

void BinaryWriterLevel::setOutputData(Array<unsigned char>* p_data) {
    WriterLevel::setOutputData(p_data);
    m_blocks.clear();
}

template <typename T> bool BinaryWriterLevel::writeNumbers(const T* p_values, size_t p_count) {
    return p_count <= SIZE_MAX / sizeof(T) && append(p_values, p_count * sizeof(T));
}

bool BinaryWriterLevel::writeBooleans(const bool_t* p_values, size_t p_count) {
    const size_t begin = getOutputData(0)->getSize();
    if (!append(p_values, p_count)) {
        return false;
    }
    unsigned char* bytes = getOutputData(0)->getData() + begin;
    for (size_t i = 0; i < p_count; ++i) {
        bytes[i] = bytes[i] != 0;
    }
    return true;
}

template <typename T> bool BinaryWriterLevel::writeBase128(const T* p_values, size_t p_count) {
    if (p_values == nullptr && p_count != 0) {
        return false;
    }
    const size_t begin = getOutputData(0)->getSize();
    for (size_t i = 0; i < p_count; ++i) {
        unsigned char bytes[10];
        if (!append(bytes, encodeBase128(bytes, p_values[i]))) {
            getOutputData(0)->resize(begin);
            return false;
        }
    }
    return true;
}

#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    bool_t BinaryWriterLevel::writeSingle##suffix(type p_value) {                                                      \
        return writeNumbers(&p_value, 1);                                                                              \
    }                                                                                                                  \
    bool_t BinaryWriterLevel::writeMultiple##many(const type* p_values, size_t p_count) {                              \
        return writeNumbers(p_values, p_count);                                                                        \
    }
#define ZYR_RAW_BOOLEAN(suffix, many, type)                                                                            \
    bool_t BinaryWriterLevel::writeSingle##suffix(type p_value) {                                                      \
        return writeBooleans(&p_value, 1);                                                                             \
    }                                                                                                                  \
    bool_t BinaryWriterLevel::writeMultiple##many(const type* p_values, size_t p_count) {                              \
        return writeBooleans(p_values, p_count);                                                                       \
    }
#define ZYR_BASE128_NUMBER(suffix, type)                                                                               \
    bool_t BinaryWriterLevel::writeSingle##suffix##Base128(type p_value) {                                             \
        return writeBase128(&p_value, 1);                                                                              \
    }                                                                                                                  \
    bool_t BinaryWriterLevel::writeMultiple##suffix##Base128(const type* p_values, size_t p_count) {                   \
        return writeBase128(p_values, p_count);                                                                        \
    }
#include "zyr_common/documents/zyr_raw_numbers.inl"

uint8_t BinaryWriterLevel::getSizeSingleUInt32Ext(uint32_t p_value) const {
    return p_value < EXTENDED ? 1 : 1 + sizeof(p_value);
}

bool_t BinaryWriterLevel::writeSingleInt32Ext(int32_t p_value) {
    return writeSingleUInt32Ext(static_cast<uint32_t>(p_value));
}

bool_t BinaryWriterLevel::writeSingleUInt32Ext(uint32_t p_value) {
    unsigned char bytes[1 + sizeof(p_value)] = {static_cast<unsigned char>(p_value)};
    if (p_value >= EXTENDED) {
        bytes[0] = EXTENDED;
        memcpy(bytes + 1, &p_value, sizeof(p_value));
    }
    return append(bytes, getSizeSingleUInt32Ext(p_value));
}

bool_t BinaryWriterLevel::beginBlock() {
    const size_t place = getOutputData(0)->getSize();
    if (!writeSingleUInt64(0)) {
        return 0;
    }
    m_blocks.pushBack(place);
    return 1;
}

bool_t BinaryWriterLevel::endBlock() {
    if (m_blocks.isEmpty()) {
        return 0;
    }
    const size_t place = m_blocks.popBack();
    Array<unsigned char>* output = getOutputData(0);
    const size_t begin = place + sizeof(uint64_t);
    if (output->getSize() < begin) {
        return 0; // The array became shorter since.
    }
    const uint64_t size = output->getSize() - begin;
    memcpy(output->getData() + place, &size, sizeof(size));
    return 1;
}

ZYR_DEFINE_CORE_CLASS(BinaryWriter)

} // namespace zyr
