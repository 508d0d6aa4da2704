#include "plugin_ffmpeg/zyr_fake_picture.h"

#include "zyr_common/object/zyr_factories.h"

#include <cstdio>
#include <cstring>

using namespace zyr;

namespace zyr_test {

namespace {

template <typename... Values> void recordCall(const char* p_format, Values... p_values) {
    char text[512];
    snprintf(text, sizeof(text), p_format, p_values...);
    fakeRecord().calls.push_back(text);
}

/// Blue becomes luma, green and red chroma, without any arithmetic: what was read where shows in the planes.
bool_t fakeConvertRGBToYUV(uint32_t p_width, uint32_t p_height, const void* p_src, uint32_t p_srcPixelSize,
                           uint32_t p_srcPitch, bool_t p_bgr, void* p_plane0, void* p_plane1, void* p_plane2,
                           uint32_t p_step0, uint32_t p_step1, uint32_t p_step2, uint32_t p_pitch0, uint32_t p_pitch1,
                           uint32_t p_pitch2, PixelPlanesModelEnum p_planesModel, ColorSpaceEnum p_colorSpace) {
    recordCall("convertRGBToYUV(%u, %u, pixel %u, pitch %u, bgr %u, steps %u %u %u, model %u, color space %u)", p_width,
               p_height, p_srcPixelSize, p_srcPitch, p_bgr, p_step0, p_step1, p_step2,
               static_cast<unsigned>(p_planesModel), static_cast<unsigned>(p_colorSpace));
    for (uint32_t y = 0; y < p_height; y++) {
        const uint8_t* source = static_cast<const uint8_t*>(p_src) + size_t(y) * p_srcPitch;
        for (uint32_t x = 0; x < p_width; x++) {
            static_cast<uint8_t*>(p_plane0)[size_t(y) * p_pitch0 + x] = source[x * 4];
            static_cast<uint8_t*>(p_plane1)[size_t(y / 2) * p_pitch1 + x / 2] = source[x * 4 + 1];
            static_cast<uint8_t*>(p_plane2)[size_t(y / 2) * p_pitch2 + x / 2] = source[x * 4 + 2];
        }
    }
    return fakeRecord().conversionResult;
}

bool_t fakeConvertYUVToRGB(uint32_t p_width, uint32_t p_height, const void* p_plane0, const void* p_plane1,
                           const void* p_plane2, uint32_t p_step0, uint32_t p_step1, uint32_t p_step2,
                           uint32_t p_pitch0, uint32_t p_pitch1, uint32_t p_pitch2, void* p_dst,
                           uint32_t p_dstPixelSize, uint32_t p_dstPitch, bool_t p_bgr,
                           PixelPlanesModelEnum p_planesModel, ColorSpaceEnum p_colorSpace) {
    recordCall("convertYUVToRGB(%u, %u, steps %u %u %u, pixel %u, pitch %u, bgr %u, model %u, color space %u)", p_width,
               p_height, p_step0, p_step1, p_step2, p_dstPixelSize, p_dstPitch, p_bgr,
               static_cast<unsigned>(p_planesModel), static_cast<unsigned>(p_colorSpace));
    for (uint32_t y = 0; y < p_height; y++) {
        uint8_t* target = static_cast<uint8_t*>(p_dst) + size_t(y) * p_dstPitch;
        for (uint32_t x = 0; x < p_width; x++) {
            target[x * 4] = static_cast<const uint8_t*>(p_plane0)[size_t(y) * p_pitch0 + x];
            target[x * 4 + 1] = static_cast<const uint8_t*>(p_plane1)[size_t(y / 2) * p_pitch1 + x / 2];
            target[x * 4 + 2] = static_cast<const uint8_t*>(p_plane2)[size_t(y / 2) * p_pitch2 + x / 2];
            target[x * 4 + 3] = 255;
        }
    }
    return fakeRecord().conversionResult;
}

template <class Fake, class Interface> void registerFake(ApplicationData& p_data) {
    const Pair<GUID_t, String> key(zyr_getInterfaceGUID<Interface>(), String());
    p_data.m_objectAllocatorsByGUID.pushBack(
        key, +[]() -> IObject* { return new Fake; }, nullptr);
}

bool_t initializeCore(ApplicationData*, uint32_t) {
    fakeRecord().calls.push_back("core");
    return 1;
}

bool_t initializePicture(ApplicationData* p_data, uint32_t) {
    fakeRecord().calls.push_back("picture");
    registerFake<FakeImage, IImage>(*p_data);
    registerFake<FakeUnpackedFrameData, IUnpackedFrameData>(*p_data);
    registerFake<FakePackedFrameData, IPackedFrameData>(*p_data);
    registerFake<FakeFrameEncoder, IFrameEncoder>(*p_data);
    registerFake<FakeFrameDecoder, IFrameDecoder>(*p_data);
    registerFake<FakeFrameEncoderContext, IFrameEncoderContext>(*p_data);
    registerFake<FakeFrameDecoderContext, IFrameDecoderContext>(*p_data);
    p_data->m_picture->m_convertRGBToYUV = fakeConvertRGBToYUV;
    p_data->m_picture->m_convertYUVToRGB = fakeConvertYUVToRGB;
    return 1;
}

} // namespace

FakeRecord& fakeRecord() {
    static FakeRecord record;
    return record;
}

bool_t FakeImage::init(uint32_t p_width, uint32_t p_height, uint32_t p_pitch, PixelFormatEnum p_format,
                       ColorSpaceEnum p_colorSpace, PixelFormatEnum p_paletteFormat, uint32_t p_numOfPaletteIndices) {
    recordCall("Image.init(%u, %u, %u, %u, %u, %u, %u)", p_width, p_height, p_pitch, static_cast<unsigned>(p_format),
               static_cast<unsigned>(p_colorSpace), static_cast<unsigned>(p_paletteFormat), p_numOfPaletteIndices);
    m_width = p_width;
    m_height = p_height;
    m_pitch = (p_width + 1) / 2 * 8;
    if (fakeRecord().imagesHaveMemory) {
        m_bytes.resize(size_t(m_pitch) * ((p_height + 1) / 2 * 2) + 64);
    }
    return fakeRecord().imagesHaveMemory;
}

IImage* FakeUnpackedFrameData::getSystemMemory(bool_t p_addReference, bool_t p_existing) const {
    recordCall("getSystemMemory(%u, %u)", p_addReference, p_existing);
    return m_systemMemory;
}

void FakeUnpackedFrameData::setSystemMemory(IImage* p_systemMemory) {
    if (p_systemMemory != nullptr) {
        p_systemMemory->addRef();
    }
    if (m_systemMemory != nullptr) {
        m_systemMemory->release();
    }
    m_systemMemory = p_systemMemory;
}

IDiffmap* FakePackedFrameData::getDiffmap(bool_t p_addReference) const {
    recordCall("getDiffmap(%u)", p_addReference);
    return m_diffmap;
}

void prepareFakeModules(ApplicationData& p_data) {
    p_data.m_coreInitializer = initializeCore;
    p_data.m_pictureInitializer = initializePicture;
}

} // namespace zyr_test
