#include "core_module/documents/zyr_binary_reader_level.h"

#include "core_module/zyr_core_class.h"

#include <limits>

namespace zyr {

namespace {

constexpr unsigned char EXTENDED = 255;

/// The size of the numbers in a block; 0 for an unknown type.
size_t getRawSize(RawTypeEnum p_type) {
    static const size_t sizes[] = {
#define ZYR_RAW_NUMBER(suffix, many, type) sizeof(type),
#include "zyr_common/documents/zyr_raw_numbers.inl"
    };
    return p_type < sizeof(sizes) / sizeof(sizes[0]) ? sizes[p_type] : 0;
}

/// What an unsigned number in Base128 stands for. False when it is not in the range of the type.
template <typename T> bool convertNumber(uint64_t p_number, bool_t p_signed, T& p_value) {
    const bool isNegative = p_signed && (p_number & 1) != 0;
    const uint64_t magnitude = p_signed ? p_number >> 1 : p_number;
    if constexpr (std::is_same_v<T, bool>) {
        p_value = magnitude != 0;
        return true;
    } else if constexpr (std::is_floating_point_v<T>) {
        p_value = isNegative ? -static_cast<T>(magnitude) : static_cast<T>(magnitude);
        return true;
    } else {
        using Limits = std::numeric_limits<T>;
        const uint64_t lowest = Limits::is_signed ? static_cast<uint64_t>(Limits::max()) + 1 : 0;
        if (magnitude > (isNegative ? lowest : static_cast<uint64_t>(Limits::max()))) {
            return false;
        }
        p_value = static_cast<T>(isNegative ? 0 - magnitude : magnitude);
        return true;
    }
}

} // namespace

void BinaryReaderLevel::start() {
    m_position = 0;
    m_end = getInputData() != nullptr ? getInputData()->getSize() : 0;
    m_blocks.clear();
    m_groups.clear();
}

void BinaryReaderLevel::setInputData(Array<unsigned char>* p_data) {
    ReaderLevel::setInputData(p_data);
    start();
}

/// The array can have become shorter since.
size_t BinaryReaderLevel::getRest() const {
    const size_t size = getInputData() != nullptr ? getInputData()->getSize() : 0;
    const size_t end = m_end < size ? m_end : size;
    return m_position < end ? end - m_position : 0;
}

bool_t BinaryReaderLevel::readBytes(void* p_dest, size_t p_size) {
    return readNumbers(static_cast<unsigned char*>(p_dest), p_size);
}

template <typename T> bool BinaryReaderLevel::readNumbers(T* p_values, size_t p_count) {
    if (p_count > getRest() / sizeof(T) || (p_values == nullptr && p_count != 0)) {
        return false;
    }
    if (p_count != 0) {
        memcpy(p_values, here(), p_count * sizeof(T));
        m_position += p_count * sizeof(T);
    }
    return true;
}

bool BinaryReaderLevel::takeBase128(uint64_t& p_number) {
    const size_t rest = getRest();
    p_number = 0;
    for (size_t i = 0; i < 10 && i < rest; ++i) {
        const uint64_t byte = *here();
        ++m_position;
        if (i == 9 && byte > 1) {
            return false;
        }
        p_number |= (byte & 0x7F) << (7 * i);
        if (byte < 0x80) {
            return true;
        }
    }
    return false;
}

template <typename Value, typename T>
bool BinaryReaderLevel::readBase128(T* p_values, size_t p_count, bool_t p_signed) {
    if (p_values == nullptr && p_count != 0) {
        return false;
    }
    const size_t begin = m_position;
    // All are looked at before the first is stored.
    for (int pass = 0; pass < 2; ++pass) {
        m_position = begin;
        for (size_t i = 0; i < p_count; ++i) {
            uint64_t number;
            Value value;
            if (!takeBase128(number) || !convertNumber(number, p_signed, value)) {
                m_position = begin;
                return false;
            }
            if (pass == 1) {
                p_values[i] = value;
            }
        }
    }
    return true;
}

bool BinaryReaderLevel::readBooleans(bool_t* p_values, size_t p_count) {
    if (!readNumbers(p_values, p_count)) {
        return false;
    }
    for (size_t i = 0; i < p_count; ++i) {
        p_values[i] = p_values[i] != 0;
    }
    return true;
}

#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    bool_t BinaryReaderLevel::readSingle##suffix(type& p_value) {                                                      \
        return readNumber(p_value);                                                                                    \
    }                                                                                                                  \
    bool_t BinaryReaderLevel::readSingle##suffix##Base128(type& p_value, bool_t p_signed) {                            \
        return readBase128<type>(&p_value, 1, p_signed);                                                               \
    }                                                                                                                  \
    bool_t BinaryReaderLevel::readMultiple##many(type* p_values, size_t p_count) {                                     \
        return readNumbers(p_values, p_count);                                                                         \
    }                                                                                                                  \
    bool_t BinaryReaderLevel::readMultiple##many##Base128(type* p_values, size_t p_count, bool_t p_signed) {           \
        return readBase128<type>(p_values, p_count, p_signed);                                                         \
    }
#define ZYR_RAW_BOOLEAN(suffix, many, type)                                                                            \
    bool_t BinaryReaderLevel::readSingle##suffix(type& p_value) {                                                      \
        return readBooleans(&p_value, 1);                                                                              \
    }                                                                                                                  \
    bool_t BinaryReaderLevel::readSingle##suffix##Base128(type& p_value, bool_t p_signed) {                            \
        return readBase128<bool>(&p_value, 1, p_signed);                                                               \
    }                                                                                                                  \
    bool_t BinaryReaderLevel::readMultiple##many(type* p_values, size_t p_count) {                                     \
        return readBooleans(p_values, p_count);                                                                        \
    }                                                                                                                  \
    bool_t BinaryReaderLevel::readMultiple##many##Base128(type* p_values, size_t p_count, bool_t p_signed) {           \
        return readBase128<bool>(p_values, p_count, p_signed);                                                         \
    }
#include "zyr_common/documents/zyr_raw_numbers.inl"

bool_t BinaryReaderLevel::readSingleInt32Ext(int32_t& p_value) {
    uint32_t value;
    if (!readSingleUInt32Ext(value)) {
        return 0;
    }
    p_value = static_cast<int32_t>(value);
    return 1;
}

bool_t BinaryReaderLevel::readSingleUInt32Ext(uint32_t& p_value) {
    const size_t begin = m_position;
    unsigned char first = 0;
    if (!readNumber(first)) {
        return 0;
    }
    if (first != EXTENDED) {
        p_value = first;
        return 1;
    }
    if (!readNumber(p_value)) {
        m_position = begin;
        return 0;
    }
    return 1;
}

bool_t BinaryReaderLevel::beginGroupOfBlocks() {
    m_groups.pushBack({m_blocks.getSize(), m_position, m_end, true});
    return 1;
}

bool_t BinaryReaderLevel::pushBlock(RawTypeEnum p_type) {
    const size_t numberSize = getRawSize(p_type);
    if (m_groups.isEmpty() || !m_groups[m_groups.getSize() - 1].m_open || numberSize == 0) {
        return 0;
    }
    const size_t begin = m_position;
    uint64_t size = 0;
    if (!readNumber(size) || size > getRest() || size % numberSize != 0) {
        m_position = begin;
        return 0;
    }
    m_blocks.pushBack({m_position, size});
    m_position += size;
    return 1;
}

bool_t BinaryReaderLevel::endGroupOfBlocks() {
    if (m_groups.isEmpty() || !m_groups[m_groups.getSize() - 1].m_open) {
        return 0;
    }
    Group& group = m_groups[m_groups.getSize() - 1];
    group.m_open = false;
    group.m_next = m_position;
    return 1;
}

bool_t BinaryReaderLevel::readFromBlockIndex(size_t p_index) {
    if (m_groups.isEmpty() || m_groups[m_groups.getSize() - 1].m_open) {
        return 0;
    }
    const size_t first = m_groups[m_groups.getSize() - 1].m_firstBlock;
    if (p_index >= m_blocks.getSize() - first) {
        return 0;
    }
    const Block& block = m_blocks[first + p_index];
    m_position = block.m_begin;
    m_end = block.m_begin + block.m_size;
    return 1;
}

bool_t BinaryReaderLevel::popGroupOfBlocks() {
    if (m_groups.isEmpty() || m_groups[m_groups.getSize() - 1].m_open) {
        return 0;
    }
    const Group group = m_groups.popBack();
    m_blocks.resize(group.m_firstBlock);
    m_position = group.m_next;
    m_end = group.m_outerEnd;
    return 1;
}

ZYR_DEFINE_CORE_CLASS(BinaryReader)

} // namespace zyr
