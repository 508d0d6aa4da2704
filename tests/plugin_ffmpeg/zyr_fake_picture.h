/// Core and picture modules of the test program itself: the least that the plug-in needs, which records the calls that
/// it gets.
#pragma once

#include "picture/zyr_frame_data.h"
#include "picture/zyr_frame_decoder.h"
#include "picture/zyr_frame_encoder.h"
#include "picture/zyr_image.h"
#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/implementation/zyr_implementation.h"

#include <string>
#include <vector>

namespace zyr_test {

/// How the fakes behave, and what they saw.
struct FakeRecord {
    std::vector<std::string> calls;
    int liveObjects = 0;
    bool imagesHaveMemory = true;
    bool_t conversionResult = 1;
};

/// One for the program; a test fixture empties it.
FakeRecord& fakeRecord();

/// What all fakes have in common. They are neither copied nor stored.
template <class Interface> class FakeObject : public zyr::ObjectLevel<Interface> {
public:
    FakeObject() { fakeRecord().liveObjects++; }
    ~FakeObject() override { fakeRecord().liveObjects--; }
    void copyUnsafe(const zyr::IObject*) override { fakeRecord().calls.push_back("copyUnsafe"); }
    zyr::IObject* clone() const override { return nullptr; }
    void clear() override { fakeRecord().calls.push_back("clear"); }
    bool_t readSerialized(zyr::IDeserializer*) override { return 0; }
    bool_t writeSerialized(zyr::ISerializer*, bool_t, bool_t&) override { return 0; }
};

/// A picture with four bytes per pixel whose storage covers the even size.
class FakeImage : public FakeObject<zyr::IImage> {
public:
    bool_t init(uint32_t p_width, uint32_t p_height, uint32_t p_pitch, zyr::PixelFormatEnum p_format,
                zyr::ColorSpaceEnum p_colorSpace, zyr::PixelFormatEnum p_paletteFormat,
                uint32_t p_numOfPaletteIndices) override;
    bool_t bindFixedSizeData(void*, uint32_t, uint32_t, uint32_t, zyr::PixelFormatEnum, zyr::ColorSpaceEnum,
                             zyr::PixelFormatEnum, uint32_t) override {
        return 0;
    }
    bool_t clearColor(const zyr::ColorRGBA<float>&) override { return 0; }
    bool_t convert(uint64_t, uint32_t, uint32_t, zyr::IImage*, uint64_t, bool_t) const override { return 0; }
    bool_t changeFormat(zyr::PixelFormatEnum, zyr::PixelFormatEnum) override { return 0; }
    bool_t changeVerse(bool_t, bool_t) override { return 0; }
    bool_t changeSize(uint32_t, uint32_t, bool_t, zyr::InterpolationEnum, zyr::SubsamplingEnum) override { return 0; }
    bool_t mirror(zyr::IImage*, bool_t, bool_t) const override { return 0; }
    bool_t stretch(zyr::IImage*, zyr::InterpolationEnum, zyr::SubsamplingEnum) const override { return 0; }
    bool_t compare(const zyr::IImage*) const override { return 0; }
    bool_t extractDiffmap(zyr::IDiffmap*, const zyr::IImage*, uint32_t, uint32_t) const override { return 0; }
    bool_t copyRect(const zyr::Rect<int>&, const zyr::IImage*, uint64_t, const zyr::Rect<int>&) override { return 0; }
    bool_t drawMask(const zyr::Vector2<int>&, const zyr::IImage*, const zyr::Rect<int>&,
                    const zyr::ColorRGBA<float>&) override {
        return 0;
    }
    bool_t extractPackedBlocks(zyr::IDiffmap*) override { return 0; }
    bool_t drawPackedBlocks(zyr::IImage*, zyr::IDiffmap*) override { return 0; }
    bool_t setAllocationModel(uint32_t, uint32_t) override { return 0; }
    bool_t getChannel(zyr::IImage*, uint32_t) const override { return 0; }
    bool_t setChannel(const zyr::IImage*, uint32_t) override { return 0; }
    bool_t setChannelValue(float, uint32_t) override { return 0; }
    bool_t simulateANDMask(const zyr::IImage*) override { return 0; }
    uint32_t getWidth() const override { return m_width; }
    uint32_t getHeight() const override { return m_height; }
    uint32_t getPitch() const override { return m_pitch; }
    zyr::PixelFormatEnum getFormat() const override { return zyr::ZYR_PIXEL_FORMAT_RGBA_8; }
    zyr::ColorSpaceEnum getColorSpace() const override { return zyr::ZYR_COLOR_SPACE_RGB; }
    uint32_t getBitsPerPixel() const override { return 32; }
    void* getData() const override { return m_bytes.empty() ? nullptr : const_cast<uint8_t*>(m_bytes.data()); }
    uint64_t getSize() const override { return uint64_t(m_pitch) * m_height; }
    zyr::IPalette* getPalette() const override { return nullptr; }
    zyr::IDataFormatInfo* getColorDataFormatInfo(bool_t) const override { return nullptr; }
    void setColorDataFormatInfo(zyr::IDataFormatInfo*) override {}
    zyr::IDataFormatInfo* getAlphaDataFormatInfo(bool_t) const override { return nullptr; }
    void setAlphaDataFormatInfo(zyr::IDataFormatInfo*) override {}
    zyr::ILevelReserved* getImageReserved() const override { return nullptr; }

    uint32_t m_width = 0;
    uint32_t m_height = 0;
    uint32_t m_pitch = 0;
    std::vector<uint8_t> m_bytes;
};

class FakeUnpackedFrameData : public FakeObject<zyr::IUnpackedFrameData>, public zyr::IUnpackedFrameDataReserved {
public:
    ~FakeUnpackedFrameData() override { FakeUnpackedFrameData::setSystemMemory(nullptr); }

    uint32_t getWidth() const override { return m_width; }
    uint32_t getHeight() const override { return m_height; }
    uint64_t getVideoFrameID() const override { return m_videoFrameID; }
    zyr::IImage* getSystemMemory(bool_t p_addReference, bool_t p_existing) const override;
    zyr::ISharedTexture* getGPUMemory(bool_t) const override { return m_gpuMemory; }
    zyr::IDiffmap* getDiffmap(bool_t) const override { return m_diffmap; }
    zyr::IUnpackedFrameDataReserved* getUnpackedFrameDataReserved() const override {
        return const_cast<FakeUnpackedFrameData*>(this);
    }

    void setWidth(uint32_t p_width) override { m_width = p_width; }
    void setHeight(uint32_t p_height) override { m_height = p_height; }
    void setVideoFrameID(uint64_t p_videoFrameID) override { m_videoFrameID = p_videoFrameID; }
    void setSystemMemory(zyr::IImage* p_systemMemory) override;
    void setGPUMemory(zyr::ISharedTexture* p_gpuMemory) override { m_gpuMemory = p_gpuMemory; }
    void setDiffmap(zyr::IDiffmap* p_diffmap) override { m_diffmap = p_diffmap; }
    void init_This() override {}
    void release_This() override {}

    uint32_t m_width = 0;
    uint32_t m_height = 0;
    uint64_t m_videoFrameID = 0;
    zyr::IImage* m_systemMemory = nullptr;
    zyr::ISharedTexture* m_gpuMemory = reinterpret_cast<zyr::ISharedTexture*>(0x10); ///< a setter has to remove it
    zyr::IDiffmap* m_diffmap = nullptr;                                              ///< only compared, never followed
};

class FakePackedFrameData : public FakeObject<zyr::IPackedFrameData>, public zyr::IPackedFrameDataReserved {
public:
    uint32_t getWidth() const override { return m_width; }
    uint32_t getHeight() const override { return m_height; }
    uint64_t getVideoFrameID() const override { return m_videoFrameID; }
    zyr::Array<uint8_t>* getPackedData() const override { return m_hasNoArray ? nullptr : &m_packedData; }
    zyr::IDiffmap* getDiffmap(bool_t p_addReference) const override;
    uint64_t getUncompressedSize() const override { return 0; }
    zyr::IPackedFrameDataReserved* getPackedFrameDataReserved() const override {
        return const_cast<FakePackedFrameData*>(this);
    }

    void setWidth(uint32_t p_width) override { m_width = p_width; }
    void setHeight(uint32_t p_height) override { m_height = p_height; }
    void setVideoFrameID(uint64_t p_videoFrameID) override { m_videoFrameID = p_videoFrameID; }
    zyr::Array<uint8_t>* getPackedDataMutable() override { return &m_packedData; }
    void setPackedData(const zyr::Array<uint8_t>& p_packedData) override { m_packedData.copy(&p_packedData); }
    void setDiffmap(zyr::IDiffmap* p_diffmap) override { m_diffmap = p_diffmap; }
    void setUncompressedSize(uint64_t) override {}
    void init_This() override {}
    void release_This() override {}
    void copy_Backwards(const zyr::IObject*) override {}
    bool_t readSerialized_Backwards(zyr::IDeserializer*) override { return 0; }
    bool_t writeSerialized_Backwards(zyr::ISerializer*, bool_t, bool_t, bool_t&) override { return 0; }

    uint32_t m_width = 0;
    uint32_t m_height = 0;
    uint64_t m_videoFrameID = 0;
    mutable zyr::Array<uint8_t> m_packedData;
    bool m_hasNoArray = false;
    zyr::IDiffmap* m_diffmap = nullptr; ///< only compared, never followed
};

class FakeCopyReserved : public zyr::ICopyReserved {
public:
    void init_This() override {}
    void release_This() override {}
    void copy_Backwards(const zyr::IObject*) override { fakeRecord().calls.push_back("copy_Backwards"); }
};

class FakeFrameEncoder : public FakeObject<zyr::IFrameEncoder> {
public:
    const zyr::String& getLibName() const override { return zyr::String::getConstEmpty(); }
    uint64_t getLibVersion() const override { return 0; }
    const zyr::String& getCodecName() const override { return zyr::String::getConstEmpty(); }
    void getCodecProposals(zyr::List<zyr::FrameCodecProposal*>&) override {}
    uint64_t getAdapterID() const override { return m_adapterID; }
    void setAdapterID(uint64_t p_adapterID) override { m_adapterID = p_adapterID; }
    bool_t initialize(const zyr::FrameCodecInfo&) override { return 0; }
    bool_t deinitialize() override { return 0; }
    const zyr::FrameCodecInfo* getCodecInfo() const override { return nullptr; }
    zyr::IFrameEncoderContext* createFrameEncoderContext() override { return nullptr; }
    zyr::ICopyReserved* getFrameEncoderReserved() const override { return &m_reserved; }

private:
    uint64_t m_adapterID = 0;
    mutable FakeCopyReserved m_reserved;
};

class FakeFrameDecoder : public FakeObject<zyr::IFrameDecoder> {
public:
    const zyr::String& getLibName() const override { return zyr::String::getConstEmpty(); }
    uint64_t getLibVersion() const override { return 0; }
    const zyr::String& getCodecName() const override { return zyr::String::getConstEmpty(); }
    void getCodecRequests(zyr::List<zyr::FrameCodecRequest*>&) override {}
    bool_t initialize(const zyr::FrameCodecInfo&) override { return 0; }
    bool_t deinitialize() override { return 0; }
    const zyr::FrameCodecInfo* getCodecInfo() const override { return nullptr; }
    zyr::IFrameDecoderContext* createFrameDecoderContext() override { return nullptr; }
    zyr::ICopyReserved* getFrameDecoderReserved() const override { return &m_reserved; }

private:
    mutable FakeCopyReserved m_reserved;
};

class FakeFrameEncoderContext : public FakeObject<zyr::IFrameEncoderContext> {
public:
    bool_t initialize(zyr::IFrameEncoder*) override { return 0; }
    bool_t deinitialize() override { return 0; }
    zyr::IPackedFrameData* encode(zyr::IUnpackedFrameData*) override { return nullptr; }
    zyr::IFrameEncoder* getEncoder() const override { return nullptr; }
    uint8_t getQuality() const override { return 0; }
    bool_t setQuality(uint8_t) override { return 0; }
    zyr::ILifeCycleReserved* getFrameEncoderContextReserved() const override { return nullptr; }
};

class FakeFrameDecoderContext : public FakeObject<zyr::IFrameDecoderContext> {
public:
    bool_t initialize(zyr::IFrameDecoder*) override { return 0; }
    bool_t deinitialize() override { return 0; }
    zyr::IUnpackedFrameData* decode(zyr::IPackedFrameData*) override { return nullptr; }
    zyr::IFrameDecoder* getDecoder() const override { return nullptr; }
    zyr::ILifeCycleReserved* getFrameDecoderContextReserved() const override { return nullptr; }
};

/// Stores initializers of fake core and picture modules, as the prepare functions of real ones do.
void prepareFakeModules(zyr::ApplicationData& p_data);

} // namespace zyr_test
