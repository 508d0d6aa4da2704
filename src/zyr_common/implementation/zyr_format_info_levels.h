/// The format infos as the reference modules implement them. Another module's level can extend these.
#pragma once

#include "zyr_common/implementation/zyr_object_implementation.h"
#include "zyr_common/serialization/zyr_record.h"

namespace zyr {

template <> struct EnumerationTable<NativeFormatAccessTypeEnum> {
    static constexpr EnumerationEntry c_entries[] = {{0, "NONE"}, {1, "MEMORY"}, {2, "FILE"}};
};

#pragma pack(push, 1)
class DataFormatInfoState : public Record<DataFormatInfoState> {
public:
    String m_formatName;

    static constexpr const char* c_typeName = "DataFormatInfoState";
    static constexpr auto fields() { return zyr_fields(zyr_field("formatName", &DataFormatInfoState::m_formatName)); }
};
#pragma pack(pop)

template <class Interface>
class DataFormatInfoImplementation
    : public StateLevel<ObjectImplementation<Interface>, IDataFormatInfo, DataFormatInfoState> {
public:
    const String& getFormatName() const override { return this->m_state.m_formatName; }
    void setFormatName(const String& p_formatName) override { this->m_state.m_formatName = p_formatName; }
    ILevelReserved* getDataFormatInfoReserved() const override { return &m_dataFormatInfoReserved; }

    void copy_This(const IDataFormatInfo* p_src) { setFormatName(p_src->getFormatName()); }

private:
    mutable LevelReserved<DataFormatInfoImplementation> m_dataFormatInfoReserved{this};
};

using DataFormatInfo = Implementation<DataFormatInfoImplementation<IDataFormatInfo>>;

#pragma pack(push, 1)
class NativeFormatInfoState : public Record<NativeFormatInfoState> {
public:
    NativeFormatAccessTypeEnum m_accessType = ZYR_NATIVE_FORMAT_ACCESS_NONE;
    String m_filePath;
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

template <class Interface>
class NativeFormatInfoImplementation
    : public StateLevel<DataFormatInfoImplementation<Interface>, INativeFormatInfo, NativeFormatInfoState> {
    using Base = StateLevel<DataFormatInfoImplementation<Interface>, INativeFormatInfo, NativeFormatInfoState>;

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

    void init_This() {
        Base::init_This();
        m_originalFile.clear();
    }
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
    Array<unsigned char> m_originalFile;
    mutable LevelReserved<NativeFormatInfoImplementation> m_nativeFormatInfoReserved{this};
};

using NativeFormatInfo = Implementation<NativeFormatInfoImplementation<INativeFormatInfo>>;

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
class CompressionInfoImplementation
    : public StateLevel<DataFormatInfoImplementation<Interface>, ICompressionInfo, CompressionInfoState> {
public:
    uint64_t getDecompressSize() const override { return this->m_state.m_decompressSize; }
    void setDecompressSize(uint64_t p_decompressSize) override { this->m_state.m_decompressSize = p_decompressSize; }
    ILevelReserved* getCompressionInfoReserved() const override { return &m_compressionInfoReserved; }

    void copy_This(const ICompressionInfo* p_src) { setDecompressSize(p_src->getDecompressSize()); }

private:
    mutable LevelReserved<CompressionInfoImplementation> m_compressionInfoReserved{this};
};

using CompressionInfo = Implementation<CompressionInfoImplementation<ICompressionInfo>>;

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

template <class Interface>
class Lz4CompressionInfoImplementation
    : public StateLevel<CompressionInfoImplementation<Interface>, ILz4CompressionInfo, Lz4CompressionInfoState> {
    using Base = StateLevel<CompressionInfoImplementation<Interface>, ILz4CompressionInfo, Lz4CompressionInfoState>;

public:
    Lz4CompressionInfoImplementation() { this->setFormatName("lz4"); }

    uint32_t getAcceleration() const override { return this->m_state.m_acceleration; }
    void setAcceleration(uint32_t p_acceleration) override { this->m_state.m_acceleration = p_acceleration; }
    ILevelReserved* getLz4CompressionInfoReserved() const override { return &m_lz4CompressionInfoReserved; }

    void init_This() {
        Base::init_This();
        this->setFormatName("lz4");
    }
    void copy_This(const ILz4CompressionInfo* p_src) { setAcceleration(p_src->getAcceleration()); }

private:
    mutable LevelReserved<Lz4CompressionInfoImplementation> m_lz4CompressionInfoReserved{this};
};

using Lz4CompressionInfo = Implementation<Lz4CompressionInfoImplementation<ILz4CompressionInfo>>;

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

template <class Interface>
class ZipCompressionInfoImplementation
    : public StateLevel<CompressionInfoImplementation<Interface>, IZipCompressionInfo, ZipCompressionInfoState> {
    using Base = StateLevel<CompressionInfoImplementation<Interface>, IZipCompressionInfo, ZipCompressionInfoState>;

public:
    ZipCompressionInfoImplementation() { this->setFormatName("zip"); }

    uint32_t getLevel() const override { return this->m_state.m_level; }
    void setLevel(uint32_t p_level) override { this->m_state.m_level = p_level; }
    ILevelReserved* getZipCompressionInfoReserved() const override { return &m_zipCompressionInfoReserved; }

    void init_This() {
        Base::init_This();
        this->setFormatName("zip");
    }
    void copy_This(const IZipCompressionInfo* p_src) { setLevel(p_src->getLevel()); }

private:
    mutable LevelReserved<ZipCompressionInfoImplementation> m_zipCompressionInfoReserved{this};
};

using ZipCompressionInfo = Implementation<ZipCompressionInfoImplementation<IZipCompressionInfo>>;

} // namespace zyr
