/// The description of a file in its own format as modules implement it. Other modules' levels extend it.
#pragma once

#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/implementation/zyr_data_format_info_level.h"

namespace zyr {

/// The words in files.
template <> struct EnumerationTable<NativeFormatAccessTypeEnum> {
    static constexpr EnumerationEntry c_entries[] = {{0, "NONE"}, {1, "MEMORY"}, {2, "FILE"}};
};

#pragma pack(push, 1)
/// The stored fields of the level but for the bytes of the original.
class NativeFormatInfoState : public Record<NativeFormatInfoState> {
public:
    /// where the original is found
    NativeFormatAccessTypeEnum m_accessType = ZYR_NATIVE_FORMAT_ACCESS_NONE;
    /// UTF-8, as it was given
    String m_filePath;
    /// the original is not to be written over
    bool_t m_readOnly = 0;

    static constexpr const char* c_typeName = "NativeFormatInfoState";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("accessType", &NativeFormatInfoState::m_accessType),
                          zyr_field("filePath", &NativeFormatInfoState::m_filePath),
                          zyr_field("readOnly", &NativeFormatInfoState::m_readOnly));
    }
};
#pragma pack(pop)

/// Read and write the bytes of an original file under their key.
bool_t readOriginalFile(IDeserializer* p_deserializer, Array<unsigned char>& p_originalFile);
bool_t writeOriginalFile(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                         const Array<unsigned char>& p_originalFile);

/// The level itself, for the classes of other modules too; the interface is the most derived one.
template <class Interface>
class NativeFormatInfoLevel
    : public StateLevel<DataFormatInfoLevel<Interface>, INativeFormatInfo, NativeFormatInfoState> {
    using Base = StateLevel<DataFormatInfoLevel<Interface>, INativeFormatInfo, NativeFormatInfoState>;

public:
    NativeFormatAccessTypeEnum getAccessType() const override { return this->m_state.m_accessType; }
    void setAccessType(NativeFormatAccessTypeEnum p_accessType) override { this->m_state.m_accessType = p_accessType; }
    const String& getFilePath() const override { return this->m_state.m_filePath; }
    void setFilePath(const String& p_filePath) override { this->m_state.m_filePath = p_filePath; }
    bool_t isReadOnly() const override { return this->m_state.m_readOnly; }
    void setReadOnly(bool_t p_readOnly) override { this->m_state.m_readOnly = p_readOnly; }
    const Array<unsigned char>* getOriginalFile() const override { return &m_originalFile; }
    Array<unsigned char>* getMutableOriginalFile() override { return &m_originalFile; }
    void setOriginalFile(const Array<unsigned char>& p_originalFile) override { m_originalFile = p_originalFile; }
    ILevelReserved* getNativeFormatInfoReserved() const override { return &m_nativeFormatInfoReserved; }

    /// Without an original.
    void init_This() {
        Base::init_This();
        m_originalFile.clear();
    }
    /// Takes over all fields; the bytes are copied.
    void copy_This(const INativeFormatInfo* p_src) {
        setAccessType(p_src->getAccessType());
        setFilePath(p_src->getFilePath());
        setReadOnly(p_src->isReadOnly());
        setOriginalFile(*p_src->getOriginalFile());
    }
    bool_t readSerialized_This(IDeserializer* p_deserializer) {
        return Base::readSerialized_This(p_deserializer) && readOriginalFile(p_deserializer, m_originalFile);
    }
    bool_t writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass, bool_t& p_result) {
        p_result = Base::writeSerialized_This(p_serializer, p_firstPass, p_headerPass, p_result) &&
                   writeOriginalFile(p_serializer, p_firstPass, p_headerPass, m_originalFile);
        return p_result;
    }

private:
    /// the bytes of the original; empty where they are not held
    Array<unsigned char> m_originalFile;
    mutable LevelReserved<NativeFormatInfoLevel> m_nativeFormatInfoReserved{this};
};

using NativeFormatInfo = Implementation<NativeFormatInfoLevel<INativeFormatInfo>>;

} // namespace zyr
