/// The description of a data format as modules implement it, which the levels of all format infos derive from.
#pragma once

#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/implementation/zyr_implementation.h"
#include "zyr_common/serialization/zyr_record.h"

namespace zyr {

#pragma pack(push, 1)
/// The stored fields of the level.
class DataFormatInfoState : public Record<DataFormatInfoState> {
public:
    /// the word in files; empty at first
    String m_formatName;

    static constexpr const char* c_typeName = "DataFormatInfoState";
    static constexpr auto fields() { return zyr_fields(zyr_field("formatName", &DataFormatInfoState::m_formatName)); }
};
#pragma pack(pop)

/// The level itself; the interface is the most derived one.
template <class Interface>
class DataFormatInfoLevel : public StateLevel<ObjectLevel<Interface>, IDataFormatInfo, DataFormatInfoState> {
public:
    const String& getFormatName() const override { return this->m_state.m_formatName; }
    void setFormatName(const String& p_formatName) override { this->m_state.m_formatName = p_formatName; }
    ILevelReserved* getDataFormatInfoReserved() const override { return &m_dataFormatInfoReserved; }

    /// Takes over the name.
    void copy_This(const IDataFormatInfo* p_src) { setFormatName(p_src->getFormatName()); }

private:
    mutable LevelReserved<DataFormatInfoLevel> m_dataFormatInfoReserved{this};
};

/// The class that a module registers.
using DataFormatInfo = Implementation<DataFormatInfoLevel<IDataFormatInfo>>;

} // namespace zyr
