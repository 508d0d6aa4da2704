/// Compression by zlib.
#pragma once

#include "core_module/formats/zyr_compression_info_level.h"

namespace zyr {

#pragma pack(push, 1)
class ZipCompressionInfoState : public Record<ZipCompressionInfoState> {
public:
    uint32_t m_level = 6;

    static constexpr const char* c_typeName = "ZipCompressionInfoState";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("level", &ZipCompressionInfoState::m_level).withDefault(6));
    }
};
#pragma pack(pop)

class ZipCompressionInfoLevel
    : public StateLevel<CompressionInfoLevel<IZipCompressionInfo>, IZipCompressionInfo, ZipCompressionInfoState> {
public:
    ZipCompressionInfoLevel();

    uint32_t getLevel() const override { return m_state.m_level; }
    void setLevel(uint32_t p_level) override { m_state.m_level = p_level; }
    ILevelReserved* getZipCompressionInfoReserved() const override { return &m_zipCompressionInfoReserved; }

    void init_This();
    void copy_This(const IZipCompressionInfo* p_src);

private:
    mutable LevelReserved<ZipCompressionInfoLevel> m_zipCompressionInfoReserved{this};
};

using ZipCompressionInfo = Implementation<ZipCompressionInfoLevel>;

} // namespace zyr
