/// The picture module's implementations of the two kinds of frames.
#pragma once

#include "picture/zyr_diffmap.h"
#include "picture/zyr_frame_data.h"
#include "picture/zyr_image.h"
#include "picture/zyr_shared_texture.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/implementation/zyr_implementation.h"
#include "zyr_common/memory/zyr_ref.h"

namespace zyr {

/// See IUnpackedFrameData for the operations.
class UnpackedFrameDataLevel : public ObjectLevel<IUnpackedFrameData> {
public:
    using LevelBase = ObjectLevel<IUnpackedFrameData>;
    using LevelInterface = IUnpackedFrameData;

    ~UnpackedFrameDataLevel() override { release_This(); }

    uint32_t getWidth() const override { return m_width; }
    uint32_t getHeight() const override { return m_height; }
    uint64_t getVideoFrameID() const override { return m_videoFrameID; }
    IImage* getSystemMemory(bool_t p_addReference, bool_t p_existing) const override;
    ISharedTexture* getGPUMemory(bool_t p_addReference) const override;
    IDiffmap* getDiffmap(bool_t p_addReference) const override;
    IUnpackedFrameDataReserved* getUnpackedFrameDataReserved() const override { return &m_reserved; }

    void init_This();
    void release_This();
    void copy_This(const IUnpackedFrameData* p_src);
    /// Raw frames are not stored.
    bool_t readSerialized_This(IDeserializer* p_deserializer);
    bool_t writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass, bool_t& p_result);

private:
    class Reserved : public LevelReserved<UnpackedFrameDataLevel, IUnpackedFrameDataReserved> {
    public:
        using LevelReserved::LevelReserved;

        void setWidth(uint32_t p_width) override { m_level->m_width = p_width; }
        void setHeight(uint32_t p_height) override { m_level->m_height = p_height; }
        void setVideoFrameID(uint64_t p_videoFrameID) override { m_level->m_videoFrameID = p_videoFrameID; }
        void setSystemMemory(IImage* p_systemMemory) override;
        void setGPUMemory(ISharedTexture* p_gpuMemory) override;
        void setDiffmap(IDiffmap* p_diffmap) override;
    };

    uint32_t m_width = 0;
    uint32_t m_height = 0;
    uint64_t m_videoFrameID = 0;
    /// Filled on demand from the GPU memory, hence mutable.
    mutable Ref<IImage> m_systemMemory;
    Ref<ISharedTexture> m_gpuMemory;
    Ref<IDiffmap> m_diffmap;
    mutable Reserved m_reserved{this};
};

using UnpackedFrameData = Implementation<UnpackedFrameDataLevel>;

/// See IPackedFrameData for the operations.
class PackedFrameDataLevel : public ObjectLevel<IPackedFrameData> {
public:
    using LevelBase = ObjectLevel<IPackedFrameData>;
    using LevelInterface = IPackedFrameData;

    ~PackedFrameDataLevel() override { release_This(); }

    uint32_t getWidth() const override { return m_width; }
    uint32_t getHeight() const override { return m_height; }
    uint64_t getVideoFrameID() const override { return m_videoFrameID; }
    Array<uint8_t>* getPackedData() const override { return &m_packedData; }
    IDiffmap* getDiffmap(bool_t p_addReference) const override;
    uint64_t getUncompressedSize() const override { return m_uncompressedSize; }
    IPackedFrameDataReserved* getPackedFrameDataReserved() const override { return &m_reserved; }

    void init_This();
    void release_This();
    void copy_This(const IPackedFrameData* p_src);
    bool_t readSerialized_This(IDeserializer* p_deserializer);
    bool_t writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass, bool_t& p_result);

private:
    class Reserved : public LevelReserved<PackedFrameDataLevel, IPackedFrameDataReserved> {
    public:
        using LevelReserved::LevelReserved;

        void setWidth(uint32_t p_width) override { m_level->m_width = p_width; }
        void setHeight(uint32_t p_height) override { m_level->m_height = p_height; }
        void setVideoFrameID(uint64_t p_videoFrameID) override { m_level->m_videoFrameID = p_videoFrameID; }
        Array<uint8_t>* getPackedDataMutable() override { return &m_level->m_packedData; }
        void setPackedData(const Array<uint8_t>& p_packedData) override { m_level->m_packedData = p_packedData; }
        void setDiffmap(IDiffmap* p_diffmap) override;
        void setUncompressedSize(uint64_t p_uncompressedSize) override {
            m_level->m_uncompressedSize = p_uncompressedSize;
        }
    };

    uint32_t m_width = 0;
    uint32_t m_height = 0;
    uint64_t m_videoFrameID = 0;
    uint64_t m_uncompressedSize = 0;
    mutable Array<uint8_t> m_packedData;
    Ref<IDiffmap> m_diffmap;
    mutable Reserved m_reserved{this};
};

using PackedFrameData = Implementation<PackedFrameDataLevel>;

} // namespace zyr
