/// The class of the binary writer.
#pragma once

#include "core_module/documents/zyr_writer_level.h"
#include "zyr_common/documents/zyr_binary_writer.h"

namespace zyr {

class BinaryWriterLevel : public UnstoredLevel<WriterLevel<IBinaryWriter>, IBinaryWriter> {
public:
    void setOutputData(Array<unsigned char>* p_data) override;

    bool_t writeBytes(const void* p_bytes, size_t p_size) override { return append(p_bytes, p_size); }
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    bool_t writeSingle##suffix(type p_value) override;                                                                 \
    bool_t writeMultiple##many(const type* p_values, size_t p_count) override;
#define ZYR_BASE128_NUMBER(suffix, type)                                                                               \
    bool_t writeSingle##suffix##Base128(type p_value) override;                                                        \
    bool_t writeMultiple##suffix##Base128(const type* p_values, size_t p_count) override;
#include "zyr_common/documents/zyr_raw_numbers.inl"
    uint8_t getSizeSingleUInt32Ext(uint32_t p_value) const override;
    bool_t writeSingleInt32Ext(int32_t p_value) override;
    bool_t writeSingleUInt32Ext(uint32_t p_value) override;

    bool_t beginBlock() override;
    bool_t endBlock() override;
    ILevelReserved* getBinaryWriterReserved() const override {
        return &m_binaryWriterReserved;
    }

    void init_This() {
        m_blocks.clear();
    }
    void release_This() {}
    void copy_This(const IBinaryWriter*) {}

private:
    template <typename T> bool writeNumbers(const T* p_values, size_t p_count);
    bool writeBooleans(const bool_t* p_values, size_t p_count);
    template <typename T> bool writeBase128(const T* p_values, size_t p_count);

    /// The places of the sizes of the open blocks.
    Array<size_t> m_blocks;
    mutable LevelReserved<BinaryWriterLevel> m_binaryWriterReserved{this};
};

using BinaryWriter = Implementation<BinaryWriterLevel>;

} // namespace zyr
