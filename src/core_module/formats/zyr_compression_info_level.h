/// How an object is compressed: what all compressors share.
#pragma once

#include "zyr_common/implementation/zyr_data_format_info_level.h"

namespace zyr {

#pragma pack(push, 1)
class CompressionInfoState : public Record<CompressionInfoState> {
public:
    uint64_t m_decompressSize = 0;

    static constexpr const char* c_typeName = "CompressionInfoState";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("decompressSize", &CompressionInfoState::m_decompressSize));
    }
};
#pragma pack(pop)

template <class Interface>
class CompressionInfoLevel : public StateLevel<DataFormatInfoLevel<Interface>, ICompressionInfo, CompressionInfoState> {
public:
    uint64_t getDecompressSize() const override { return this->m_state.m_decompressSize; }
    void setDecompressSize(uint64_t p_decompressSize) override { this->m_state.m_decompressSize = p_decompressSize; }
    ILevelReserved* getCompressionInfoReserved() const override { return &m_compressionInfoReserved; }

    void copy_This(const ICompressionInfo* p_src) { setDecompressSize(p_src->getDecompressSize()); }

private:
    mutable LevelReserved<CompressionInfoLevel> m_compressionInfoReserved{this};
};

using CompressionInfo = Implementation<CompressionInfoLevel<ICompressionInfo>>;

} // namespace zyr
