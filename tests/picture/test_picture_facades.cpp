#include "picture/virtual_slots.h"
#include "picture/zyr_picture.h"
#include "support/binary_layout.h"
#include "support/zyr_invariant.h"

#include <gtest/gtest.h>

using namespace zyr;
using namespace virtual_slots;

namespace {

/// A facade in front of an object that records calls.
template <class Facade, class Interface> class OpenFacade : public Facade {
public:
    explicit OpenFacade(RecordingObject* p_object) { this->m_interfaceObject = reinterpret_cast<Interface*>(p_object); }
};

/// The operation stands at the next slot of the interface, and the facade hands its call on to the same slot of the
/// interface object with the same arguments, and hands the answer back.
template <class Facade, class Interface> class ForwardingCheck {
public:
    template <typename Member> ForwardingCheck& next(Member p_member) {
        const size_t slot = getSlot(p_member);
        EXPECT_EQ(slot, m_nextSlot);
        lastCall = {};
        const uint64_t result = callSlot(m_facade, slot);
        EXPECT_EQ(lastCall.m_object, &m_object) << slot;
        EXPECT_EQ(lastCall.m_slot, slot);
        for (size_t i = 0; i < argumentsOf(p_member); ++i) {
            // A truth value fills one byte of its place.
            EXPECT_EQ(lastCall.m_arguments[i] & 0xFF, i + 1) << slot;
        }
        if (!returnsNothing(p_member)) {
            EXPECT_EQ(result & 0xFF, answer) << slot;
        }
        ++m_nextSlot;
        return *this;
    }

    /// The same where the first argument is a float, which travels apart from the numbers.
    ForwardingCheck& nextWithFloat(bool_t (Interface::*p_member)(float, uint32_t)) {
        const size_t slot = getSlot(p_member);
        EXPECT_EQ(slot, m_nextSlot);
        lastCall = {};
        EXPECT_EQ((m_facade->*p_member)(0.5f, 3), answer);
        EXPECT_EQ(lastCall.m_slot, slot);
        EXPECT_EQ(lastCall.m_arguments[0] & 0xFFFFFFFF, 3u);
        ++m_nextSlot;
        return *this;
    }

private:
    template <typename R, typename C, typename... A> static bool returnsNothing(R (C::*)(A...)) {
        return std::is_void_v<R>;
    }
    template <typename R, typename C, typename... A> static bool returnsNothing(R (C::*)(A...) const) {
        return std::is_void_v<R>;
    }

    RecordingObject m_object;
    // Its destructor would release the recording object, whose release does nothing.
    OpenFacade<Facade, Interface>* m_facade = new OpenFacade<Facade, Interface>(&m_object);
    size_t m_nextSlot = 43;

public:
    ~ForwardingCheck() { delete m_facade; }
};

} // namespace

TEST(PictureInterfaces, BeginBehindTheSlotsOfTheObject) {
    EXPECT_EQ(getSlot(&IObject::getObjectReserved), 42u);
}

TEST(FrameEncoderFacade, ForwardsItsOperationsInSlotOrder) {
    ForwardingCheck<WFrameEncoder, IFrameEncoder> check;
    check.next(&IFrameEncoder::getLibName);
    check.next(&IFrameEncoder::getLibVersion);
    check.next(&IFrameEncoder::getCodecName);
    check.next(&IFrameEncoder::getCodecProposals);
    check.next(&IFrameEncoder::getAdapterID);
    check.next(&IFrameEncoder::setAdapterID);
    check.next(&IFrameEncoder::initialize);
    check.next(&IFrameEncoder::deinitialize);
    check.next(&IFrameEncoder::getCodecInfo);
    check.next(&IFrameEncoder::createFrameEncoderContext);
    check.next(&IFrameEncoder::getFrameEncoderReserved);
}

TEST(FrameEncoderContextFacade, ForwardsItsOperationsInSlotOrder) {
    ForwardingCheck<WFrameEncoderContext, IFrameEncoderContext> check;
    check.next(&IFrameEncoderContext::initialize);
    check.next(&IFrameEncoderContext::deinitialize);
    check.next(&IFrameEncoderContext::encode);
    check.next(&IFrameEncoderContext::getEncoder);
    check.next(&IFrameEncoderContext::getQuality);
    check.next(&IFrameEncoderContext::setQuality);
    check.next(&IFrameEncoderContext::getFrameEncoderContextReserved);
}

TEST(FrameDecoderFacade, ForwardsItsOperationsInSlotOrder) {
    ForwardingCheck<WFrameDecoder, IFrameDecoder> check;
    check.next(&IFrameDecoder::getLibName);
    check.next(&IFrameDecoder::getLibVersion);
    check.next(&IFrameDecoder::getCodecName);
    check.next(&IFrameDecoder::getCodecRequests);
    check.next(&IFrameDecoder::initialize);
    check.next(&IFrameDecoder::deinitialize);
    check.next(&IFrameDecoder::getCodecInfo);
    check.next(&IFrameDecoder::createFrameDecoderContext);
    check.next(&IFrameDecoder::getFrameDecoderReserved);
}

TEST(FrameDecoderContextFacade, ForwardsItsOperationsInSlotOrder) {
    ForwardingCheck<WFrameDecoderContext, IFrameDecoderContext> check;
    check.next(&IFrameDecoderContext::initialize);
    check.next(&IFrameDecoderContext::deinitialize);
    check.next(&IFrameDecoderContext::decode);
    check.next(&IFrameDecoderContext::getDecoder);
    check.next(&IFrameDecoderContext::getFrameDecoderContextReserved);
}

TEST(PackedFrameDataFacade, ForwardsItsOperationsInSlotOrder) {
    ForwardingCheck<WPackedFrameData, IPackedFrameData> check;
    check.next(&IPackedFrameData::getWidth);
    check.next(&IPackedFrameData::getHeight);
    check.next(&IPackedFrameData::getVideoFrameID);
    check.next(&IPackedFrameData::getPackedData);
    check.next(&IPackedFrameData::getDiffmap);
    check.next(&IPackedFrameData::getUncompressedSize);
    check.next(&IPackedFrameData::getPackedFrameDataReserved);
}

TEST(UnpackedFrameDataFacade, ForwardsItsOperationsInSlotOrder) {
    ForwardingCheck<WUnpackedFrameData, IUnpackedFrameData> check;
    check.next(&IUnpackedFrameData::getWidth);
    check.next(&IUnpackedFrameData::getHeight);
    check.next(&IUnpackedFrameData::getVideoFrameID);
    check.next(&IUnpackedFrameData::getSystemMemory);
    check.next(&IUnpackedFrameData::getGPUMemory);
    check.next(&IUnpackedFrameData::getDiffmap);
    check.next(&IUnpackedFrameData::getUnpackedFrameDataReserved);
}

TEST(ImageFacade, ForwardsItsOperationsInSlotOrder) {
    ForwardingCheck<WImage, IImage> check;
    check.next(&IImage::init);
    check.next(&IImage::bindFixedSizeData);
    check.next(&IImage::clearColor);
    check.next(&IImage::convert);
    check.next(&IImage::changeFormat);
    check.next(&IImage::changeVerse);
    check.next(&IImage::changeSize);
    check.next(&IImage::mirror);
    check.next(&IImage::stretch);
    check.next(&IImage::compare);
    check.next(&IImage::extractDiffmap);
    check.next(&IImage::copyRect);
    check.next(&IImage::drawMask);
    check.next(&IImage::extractPackedBlocks);
    check.next(&IImage::drawPackedBlocks);
    check.next(&IImage::setAllocationModel);
    check.next(&IImage::getChannel);
    check.next(&IImage::setChannel);
    check.nextWithFloat(&IImage::setChannelValue);
    check.next(&IImage::simulateANDMask);
    check.next(&IImage::getWidth);
    check.next(&IImage::getHeight);
    check.next(&IImage::getPitch);
    check.next(&IImage::getFormat);
    check.next(&IImage::getColorSpace);
    check.next(&IImage::getBitsPerPixel);
    check.next(&IImage::getData);
    check.next(&IImage::getSize);
    check.next(&IImage::getPalette);
    check.next(&IImage::getColorDataFormatInfo);
    check.next(&IImage::setColorDataFormatInfo);
    check.next(&IImage::getAlphaDataFormatInfo);
    check.next(&IImage::setAlphaDataFormatInfo);
    check.next(&IImage::getImageReserved);
}

TEST(DiffmapFacade, ForwardsItsOperationsInSlotOrder) {
    ForwardingCheck<WDiffmap, IDiffmap> check;
    check.next(&IDiffmap::init);
    check.next(&IDiffmap::clearValue);
    check.next(&IDiffmap::changeSize);
    check.next(&IDiffmap::setAllocationModel);
    check.next(&IDiffmap::convert);
    check.next(&IDiffmap::isEmpty);
    check.next(&IDiffmap::convertIntoRects);
    check.next(&IDiffmap::drawSingleRect);
    check.next(&IDiffmap::drawMultipleRects);
    check.next(&IDiffmap::drawDiffmap);
    check.next(&IDiffmap::createSlice);
    check.next(&IDiffmap::printToLog);
    check.next(&IDiffmap::getNumOfBlocks);
    check.next(&IDiffmap::getImageWidth);
    check.next(&IDiffmap::getImageHeight);
    check.next(&IDiffmap::getHBlocks);
    check.next(&IDiffmap::getVBlocks);
    check.next(&IDiffmap::getBlockWidth);
    check.next(&IDiffmap::getBlockHeight);
    check.next(&IDiffmap::getData);
    check.next(&IDiffmap::getSize);
    check.next(&IDiffmap::getDiffmapReserved);
}

TEST(PaletteFacade, ForwardsItsOperationsInSlotOrder) {
    ForwardingCheck<WPalette, IPalette> check;
    check.next(&IPalette::init);
    check.next(&IPalette::resize);
    check.next(&IPalette::convert);
    check.next(&IPalette::changeFormat);
    check.next(&IPalette::getNumOfIndices);
    check.next(&IPalette::getData);
    check.next(&IPalette::getSize);
    check.next(&IPalette::getFormat);
    check.next(&IPalette::getPaletteReserved);
}

TEST(JpegFormatInfoFacade, ForwardsItsOperationsInSlotOrder) {
    ForwardingCheck<WJpegFormatInfo, IJpegFormatInfo> check;
    check.next(&IJpegFormatInfo::getFormatName);
    check.next(&IJpegFormatInfo::setFormatName);
    check.next(&IJpegFormatInfo::getDataFormatInfoReserved);
    check.next(&IJpegFormatInfo::getAccessType);
    check.next(&IJpegFormatInfo::setAccessType);
    check.next(&IJpegFormatInfo::getFilePath);
    check.next(&IJpegFormatInfo::setFilePath);
    check.next(&IJpegFormatInfo::isReadOnly);
    check.next(&IJpegFormatInfo::setReadOnly);
    check.next(&IJpegFormatInfo::getOriginalFile);
    check.next(&IJpegFormatInfo::getMutableOriginalFile);
    check.next(&IJpegFormatInfo::setOriginalFile);
    check.next(&IJpegFormatInfo::getNativeFormatInfoReserved);
    check.next(&IJpegFormatInfo::getQuality);
    check.next(&IJpegFormatInfo::setQuality);
    check.next(&IJpegFormatInfo::isProgressive);
    check.next(&IJpegFormatInfo::setProgressive);
    check.next(&IJpegFormatInfo::getJpegFormatInfoReserved);
}

TEST(ReadbackContextFacade, ForwardsItsOperationsInSlotOrder) {
    ForwardingCheck<WReadbackContext, IReadbackContext> check;
    check.next(&IReadbackContext::getAdapterID);
    check.next(&IReadbackContext::initialize);
    check.next(&IReadbackContext::getReadbackContextReserved);
}

TEST(SharedTextureFacade, ForwardsItsOperationsInSlotOrder) {
    ForwardingCheck<WSharedTexture, ISharedTexture> check;
    check.next(&ISharedTexture::getWidth);
    check.next(&ISharedTexture::getHeight);
    check.next(&ISharedTexture::getFormat);
    check.next(&ISharedTexture::getReadbackContext);
    check.next(&ISharedTexture::setReadbackContext);
    check.next(&ISharedTexture::getOriginalTexture);
    check.next(&ISharedTexture::setOriginalTexture);
    check.next(&ISharedTexture::getSharedHandle);
    check.next(&ISharedTexture::setSharedHandle);
    check.next(&ISharedTexture::copyToSystemMemory);
    check.next(&ISharedTexture::getDeviceInfo);
    check.next(&ISharedTexture::getSharedTextureReserved);
}

template <class Interface> static void expectIdentity(const char* p_guid, const char* p_name, const char* p_assertion) {
    EXPECT_TRUE(zyr_getInterfaceGUID<Interface>() == GUID_t_fromString(p_guid)) << p_name;
    EXPECT_STREQ(InterfaceTraits<Interface>::c_guidText, p_guid);
    EXPECT_STREQ(zyr_getNameAssociatedToType(static_cast<const Interface*>(nullptr)).getData(), p_name);
    EXPECT_STREQ(InterfaceTraits<Interface>::c_createdText, p_assertion);
}

TEST(PictureInterfaces, HaveTheirGUIDsAndNames) {
    expectIdentity<IDiffmap>("c01048e8-5f00-44ee-bb02-d6ea1c70192a", "Diffmap", "interfaceDiffmap != NULL");
    expectIdentity<IPalette>("7274d03f-1ef3-4c19-8161-9de500bc5ee0", "Palette", "interfacePalette != NULL");
    expectIdentity<IJpegFormatInfo>("fe267a96-07a2-462b-acf1-14c62da4026b", "JpegFormatInfo",
                                    "interfaceJpegFormatInfo != NULL");
    expectIdentity<IImage>("6b134e2a-abad-4af1-803d-56bd8df5aa40", "Image", "interfaceImage != NULL");
    expectIdentity<IReadbackContext>("182f7b5b-bc62-4059-990b-a1e6eb726c64", "ReadbackContext",
                                     "interfaceReadbackContext != NULL");
    expectIdentity<ISharedTexture>("ab2fc183-07cb-455e-9a48-80ad7ac79339", "SharedTexture",
                                   "interfaceSharedTexture != NULL");
    expectIdentity<IUnpackedFrameData>("738cfecb-372c-404a-bc99-48434aeb2a03", "UnpackedFrameData",
                                       "interfaceUnpackedFrameData != NULL");
    expectIdentity<IPackedFrameData>("d95984ee-40f7-4edb-b258-b98401987ab5", "PackedFrameData",
                                     "interfacePackedFrameData != NULL");
    expectIdentity<IFrameDecoder>("8d3bfe60-d157-4077-8ff0-68af1abc390d", "FrameDecoder",
                                  "interfaceFrameDecoder != NULL");
    expectIdentity<IFrameDecoderContext>("acdde0f5-4b0e-4040-b606-c32709806422", "FrameDecoderContext",
                                         "interfaceFrameDecoderContext != NULL");
    expectIdentity<IFrameEncoder>("c9d35a11-b322-495c-8ff0-25fd48216ebc", "FrameEncoder",
                                  "interfaceFrameEncoder != NULL");
    expectIdentity<IFrameEncoderContext>("0ca52f0f-8c1a-476d-a817-d3dd94f10e41", "FrameEncoderContext",
                                         "interfaceFrameEncoderContext != NULL");
}

TEST(PictureInterfaces, ReservedObjectsHaveTheirSettersInFront) {
    EXPECT_EQ(getSlot(&IUnpackedFrameDataReserved::setWidth), 2u);
    EXPECT_EQ(getSlot(&IUnpackedFrameDataReserved::setHeight), 3u);
    EXPECT_EQ(getSlot(&IUnpackedFrameDataReserved::setVideoFrameID), 4u);
    EXPECT_EQ(getSlot(&IUnpackedFrameDataReserved::setSystemMemory), 5u);
    EXPECT_EQ(getSlot(&IUnpackedFrameDataReserved::setGPUMemory), 6u);
    EXPECT_EQ(getSlot(&IUnpackedFrameDataReserved::setDiffmap), 7u);
    EXPECT_EQ(getSlot(&IUnpackedFrameDataReserved::init_This), 8u);
    EXPECT_EQ(getSlot(&IUnpackedFrameDataReserved::release_This), 9u);
    EXPECT_EQ(getSlot(&IPackedFrameDataReserved::setWidth), 2u);
    EXPECT_EQ(getSlot(&IPackedFrameDataReserved::setHeight), 3u);
    EXPECT_EQ(getSlot(&IPackedFrameDataReserved::setVideoFrameID), 4u);
    EXPECT_EQ(getSlot(&IPackedFrameDataReserved::getPackedDataMutable), 5u);
    EXPECT_EQ(getSlot(&IPackedFrameDataReserved::init_This), 9u);
    EXPECT_EQ(getSlot(&IPackedFrameDataReserved::release_This), 10u);
    EXPECT_EQ(getSlot(&IPackedFrameDataReserved::copy_Backwards), 11u);
    EXPECT_EQ(getSlot(&IPackedFrameDataReserved::readSerialized_Backwards), 12u);
    EXPECT_EQ(getSlot(&IPackedFrameDataReserved::writeSerialized_Backwards), 13u);
    EXPECT_EQ(getSlot(&IReadbackContextReserved::init_This), 5u);
    EXPECT_EQ(getSlot(&IReadbackContextReserved::release_This), 6u);
    EXPECT_EQ(getSlot(&ISharedTextureReserved::init_This), 5u);
    EXPECT_EQ(getSlot(&ISharedTextureReserved::release_This), 6u);
    EXPECT_EQ(getSlot(&ICopyReserved::init_This), 2u);
    EXPECT_EQ(getSlot(&ICopyReserved::release_This), 3u);
    EXPECT_EQ(getSlot(&ICopyReserved::copy_Backwards), 4u);
    EXPECT_EQ(getSlot(&ILifeCycleReserved::init_This), 2u);
    EXPECT_EQ(getSlot(&ILifeCycleReserved::release_This), 3u);
    EXPECT_EQ(getSlot(&ILevelReserved::init_This), 2u);
    EXPECT_EQ(getSlot(&ILevelReserved::writeSerialized_Backwards), 6u);
}

TEST(ImageFacade, WithoutThePictureModuleEndsTheProcess) {
    struct OwnImage : WImage {
        OwnImage() { initObjectInterface(); }
    };
    ZYR_EXPECT_INVARIANT(new OwnImage, "ERROR: assert\\(interfaceImage != NULL\\)");
}
