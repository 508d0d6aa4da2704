/// Compression by LZ4.
#pragma once

#include "core_module/formats/zyr_compression_info_level.h"

namespace zyr {

#pragma pack(push, 1)
class Lz4CompressionInfoState : public Record<Lz4CompressionInfoState> {
public:
    uint32_t m_acceleration = 1;

    static constexpr const char* c_typeName = "Lz4CompressionInfoState";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("acceleration", &Lz4CompressionInfoState::m_acceleration).withDefault(1));
    }
};
#pragma pack(pop)

class Lz4CompressionInfoLevel
    : public StateLevel<CompressionInfoLevel<ILz4CompressionInfo>, ILz4CompressionInfo, Lz4CompressionInfoState> {
public:
    Lz4CompressionInfoLevel();

    uint32_t getAcceleration() const override { return m_state.m_acceleration; }
    void setAcceleration(uint32_t p_acceleration) override { m_state.m_acceleration = p_acceleration; }
    ILevelReserved* getLz4CompressionInfoReserved() const override { return &m_lz4CompressionInfoReserved; }

    void init_This();
    void copy_This(const ILz4CompressionInfo* p_src);

private:
    mutable LevelReserved<Lz4CompressionInfoLevel> m_lz4CompressionInfoReserved{this};
};

using Lz4CompressionInfo = Implementation<Lz4CompressionInfoLevel>;

} // namespace zyr
