/// The picture module's implementations of textures, their readback contexts and the JPEG format info.
///
/// There is no graphics device behind this module: a texture is the description of one that another module owns, and
/// reading it back is refused.
#pragma once

#include "picture/zyr_jpeg_format_info.h"
#include "picture/zyr_shared_texture.h"
#include "picture_module/zyr_codec_levels.h"
#include "picture_module/zyr_image_state.h"
#include "zyr_common/implementation/zyr_native_format_info_level.h"
#include "zyr_common/memory/zyr_ref.h"

namespace zyr {

/// See IReadbackContext for the operations.
class ReadbackContextLevel : public UnstoredLevel<ObjectLevel<IReadbackContext>, IReadbackContext> {
public:
    uint64_t getAdapterID() const override { return m_adapterID; }
    bool_t initialize(void* p_device) override;
    IReadbackContextReserved* getReadbackContextReserved() const override { return &m_reserved; }

    void init_This();
    void release_This() {}
    void copy_This(const IReadbackContext* p_src);

private:
    class Reserved : public LevelReserved<ReadbackContextLevel, IReadbackContextReserved> {
    public:
        using LevelReserved::LevelReserved;

        void setAdapterID(uint64_t p_adapterID) override { m_level->m_adapterID = p_adapterID; }
        void* getDevice() const override { return m_level->m_device; }
        void setDevice(void* p_device) override { m_level->m_device = p_device; }
    };

    uint64_t m_adapterID = 0;
    void* m_device = nullptr;
    mutable Reserved m_reserved{this};
};

/// See ISharedTexture for the operations.
class SharedTextureLevel : public UnstoredLevel<ObjectLevel<ISharedTexture>, ISharedTexture> {
public:
    ~SharedTextureLevel() override { release_This(); }

    uint32_t getWidth() const override { return m_width; }
    uint32_t getHeight() const override { return m_height; }
    PixelFormatEnum getFormat() const override { return m_format; }
    IReadbackContext* getReadbackContext(bool_t p_addReference) const override;
    void setReadbackContext(IReadbackContext* p_readbackContext) override;
    void* getOriginalTexture() const override { return m_originalTexture; }
    void setOriginalTexture(void* p_originalTexture) override { m_originalTexture = p_originalTexture; }
    void* getSharedHandle() const override { return m_sharedHandle; }
    void setSharedHandle(void* p_sharedHandle) override { m_sharedHandle = p_sharedHandle; }
    bool_t copyToSystemMemory(IImage* p_image) const override;
    bool_t getDeviceInfo(uint32_t& p_vendorID, uint32_t& p_deviceID) const override;
    ISharedTextureReserved* getSharedTextureReserved() const override { return &m_reserved; }

    void init_This();
    void release_This();
    void copy_This(const ISharedTexture* p_src);

private:
    class Reserved : public LevelReserved<SharedTextureLevel, ISharedTextureReserved> {
    public:
        using LevelReserved::LevelReserved;

        void setWidth(uint32_t p_width) override { m_level->m_width = p_width; }
        void setHeight(uint32_t p_height) override { m_level->m_height = p_height; }
        void setFormat(PixelFormatEnum p_format) override { m_level->m_format = p_format; }
    };

    uint32_t m_width = 0;
    uint32_t m_height = 0;
    PixelFormatEnum m_format = ZYR_PIXEL_FORMAT_NONE;
    Ref<IReadbackContext> m_readbackContext;
    void* m_originalTexture = nullptr;
    void* m_sharedHandle = nullptr;
    mutable Reserved m_reserved{this};
};

/// See IJpegFormatInfo for the operations.
class JpegFormatInfoLevel
    : public StateLevel<NativeFormatInfoLevel<IJpegFormatInfo>, IJpegFormatInfo, JpegFormatInfoState> {
public:
    uint8_t getQuality() const override { return static_cast<uint8_t>(m_state.m_quality); }
    void setQuality(uint8_t p_quality) override { m_state.m_quality = p_quality; }
    bool_t isProgressive() const override { return m_state.m_progressive; }
    void setProgressive(bool_t p_progressive) override { m_state.m_progressive = p_progressive; }
    ILevelReserved* getJpegFormatInfoReserved() const override { return &m_reserved; }

    void copy_This(const IJpegFormatInfo* p_src);

private:
    mutable LevelReserved<JpegFormatInfoLevel> m_reserved{this};
};

using ReadbackContext = Implementation<ReadbackContextLevel>;
using SharedTexture = Implementation<SharedTextureLevel>;
using JpegFormatInfo = Implementation<JpegFormatInfoLevel>;

} // namespace zyr
