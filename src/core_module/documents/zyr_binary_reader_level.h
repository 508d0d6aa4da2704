/// The class of the binary reader.
#pragma once

#include "core_module/documents/zyr_reader_level.h"
#include "zyr_common/documents/zyr_binary_reader.h"

namespace zyr {

/// A copy reads the same input from the beginning.
class BinaryReaderLevel : public UnstoredLevel<ReaderLevel<IBinaryReader>, IBinaryReader> {
public:
    void setInputData(Array<unsigned char>* p_data) override;

    bool_t readBytes(void* p_dest, size_t p_size) override;
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    bool_t readSingle##suffix(type& p_value) override;                                                                 \
    bool_t readSingle##suffix##Base128(type& p_value, bool_t p_signed) override;                                       \
    bool_t readMultiple##many(type* p_values, size_t p_count) override;                                                \
    bool_t readMultiple##many##Base128(type* p_values, size_t p_count, bool_t p_signed) override;
#include "zyr_common/documents/zyr_raw_numbers.inl"
    bool_t readSingleInt32Ext(int32_t& p_value) override;
    bool_t readSingleUInt32Ext(uint32_t& p_value) override;

    bool_t beginGroupOfBlocks() override;
    bool_t pushBlock(RawTypeEnum p_type) override;
    bool_t endGroupOfBlocks() override;
    bool_t readFromBlockIndex(size_t p_index) override;
    bool_t popGroupOfBlocks() override;
    ILevelReserved* getBinaryReaderReserved() const override {
        return &m_binaryReaderReserved;
    }

    void init_This() {
        start();
    }
    void release_This() {}
    void copy_This(const IBinaryReader*) {
        start();
    }

private:
    struct Block {
        size_t m_begin;
        size_t m_size;
    };
    struct Group {
        size_t m_firstBlock;
        size_t m_next;     ///< behind the last block
        size_t m_outerEnd; ///< where reading ended around the group
        bool m_open;
    };

    void start();
    size_t getRest() const;
    const unsigned char* here() const {
        return getInputData()->getData() + m_position;
    }
    template <typename T> bool readNumbers(T* p_values, size_t p_count);
    template <typename T> bool readNumber(T& p_value) {
        return readNumbers(&p_value, 1);
    }
    bool readBooleans(bool_t* p_values, size_t p_count);
    template <typename Value, typename T> bool readBase128(T* p_values, size_t p_count, bool_t p_signed);
    bool takeBase128(uint64_t& p_number);

    size_t m_position = 0;
    size_t m_end = 0;
    Array<Block> m_blocks;
    Array<Group> m_groups;
    mutable LevelReserved<BinaryReaderLevel> m_binaryReaderReserved{this};
};

using BinaryReader = Implementation<BinaryReaderLevel>;

} // namespace zyr
