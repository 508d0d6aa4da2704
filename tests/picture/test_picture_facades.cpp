#include "picture/zyr_picture.h"
#include "support/zyr_invariant.h"
#include "support/zyr_slot_spy.h"

#include <gtest/gtest.h>

using namespace zyr;

namespace {

/// The operations stand at the slots behind those of the object, one behind the other, and the facade hands each call
/// on.
template <class Facade, class Interface, typename... Operations> void expectForwarded(Operations... p_operations) {
    SlotSpy spy;
    Facade* facade = spy.makeFacade<Facade>();
    spy.expectForwardedInOrder(static_cast<Interface*>(facade), 43, p_operations...);
    facade->release();
}

} // namespace

TEST(PictureInterfaces, BeginBehindTheSlotsOfTheObject) {
    EXPECT_EQ(getSlot(&IObject::getObjectReserved), 42u);
}

TEST(FrameEncoderFacade, ForwardsItsOperationsInSlotOrder) {
    expectForwarded<WFrameEncoder, IFrameEncoder>(
        &IFrameEncoder::getLibName, &IFrameEncoder::getLibVersion, &IFrameEncoder::getCodecName,
        &IFrameEncoder::getCodecProposals, &IFrameEncoder::getAdapterID, &IFrameEncoder::setAdapterID,
        &IFrameEncoder::initialize, &IFrameEncoder::deinitialize, &IFrameEncoder::getCodecInfo,
        &IFrameEncoder::createFrameEncoderContext, &IFrameEncoder::getFrameEncoderReserved);
}

TEST(FrameEncoderContextFacade, ForwardsItsOperationsInSlotOrder) {
    expectForwarded<WFrameEncoderContext, IFrameEncoderContext>(
        &IFrameEncoderContext::initialize, &IFrameEncoderContext::deinitialize, &IFrameEncoderContext::encode,
        &IFrameEncoderContext::getEncoder, &IFrameEncoderContext::getQuality, &IFrameEncoderContext::setQuality,
        &IFrameEncoderContext::getFrameEncoderContextReserved);
}

TEST(FrameDecoderFacade, ForwardsItsOperationsInSlotOrder) {
    expectForwarded<WFrameDecoder, IFrameDecoder>(
        &IFrameDecoder::getLibName, &IFrameDecoder::getLibVersion, &IFrameDecoder::getCodecName,
        &IFrameDecoder::getCodecRequests, &IFrameDecoder::initialize, &IFrameDecoder::deinitialize,
        &IFrameDecoder::getCodecInfo, &IFrameDecoder::createFrameDecoderContext,
        &IFrameDecoder::getFrameDecoderReserved);
}

TEST(FrameDecoderContextFacade, ForwardsItsOperationsInSlotOrder) {
    expectForwarded<WFrameDecoderContext, IFrameDecoderContext>(
        &IFrameDecoderContext::initialize, &IFrameDecoderContext::deinitialize, &IFrameDecoderContext::decode,
        &IFrameDecoderContext::getDecoder, &IFrameDecoderContext::getFrameDecoderContextReserved);
}

TEST(PackedFrameDataFacade, ForwardsItsOperationsInSlotOrder) {
    expectForwarded<WPackedFrameData, IPackedFrameData>(
        &IPackedFrameData::getWidth, &IPackedFrameData::getHeight, &IPackedFrameData::getVideoFrameID,
        &IPackedFrameData::getPackedData, &IPackedFrameData::getDiffmap, &IPackedFrameData::getUncompressedSize,
        &IPackedFrameData::getPackedFrameDataReserved);
}

TEST(UnpackedFrameDataFacade, ForwardsItsOperationsInSlotOrder) {
    expectForwarded<WUnpackedFrameData, IUnpackedFrameData>(
        &IUnpackedFrameData::getWidth, &IUnpackedFrameData::getHeight, &IUnpackedFrameData::getVideoFrameID,
        &IUnpackedFrameData::getSystemMemory, &IUnpackedFrameData::getGPUMemory, &IUnpackedFrameData::getDiffmap,
        &IUnpackedFrameData::getUnpackedFrameDataReserved);
}

TEST(ImageFacade, ForwardsItsOperationsInSlotOrder) {
    expectForwarded<WImage, IImage>(
        &IImage::init, &IImage::bindFixedSizeData, &IImage::clearColor, &IImage::convert, &IImage::changeFormat,
        &IImage::changeVerse, &IImage::changeSize, &IImage::mirror, &IImage::stretch, &IImage::compare,
        &IImage::extractDiffmap, &IImage::copyRect, &IImage::drawMask, &IImage::extractPackedBlocks,
        &IImage::drawPackedBlocks, &IImage::setAllocationModel, &IImage::getChannel, &IImage::setChannel,
        &IImage::setChannelValue, &IImage::simulateANDMask, &IImage::getWidth, &IImage::getHeight, &IImage::getPitch,
        &IImage::getFormat, &IImage::getColorSpace, &IImage::getBitsPerPixel, &IImage::getData, &IImage::getSize,
        &IImage::getPalette, &IImage::getColorDataFormatInfo, &IImage::setColorDataFormatInfo,
        &IImage::getAlphaDataFormatInfo, &IImage::setAlphaDataFormatInfo, &IImage::getImageReserved);
}

TEST(DiffmapFacade, ForwardsItsOperationsInSlotOrder) {
    expectForwarded<WDiffmap, IDiffmap>(
        &IDiffmap::init, &IDiffmap::clearValue, &IDiffmap::changeSize, &IDiffmap::setAllocationModel,
        &IDiffmap::convert, &IDiffmap::isEmpty, &IDiffmap::convertIntoRects, &IDiffmap::drawSingleRect,
        &IDiffmap::drawMultipleRects, &IDiffmap::drawDiffmap, &IDiffmap::createSlice, &IDiffmap::printToLog,
        &IDiffmap::getNumOfBlocks, &IDiffmap::getImageWidth, &IDiffmap::getImageHeight, &IDiffmap::getHBlocks,
        &IDiffmap::getVBlocks, &IDiffmap::getBlockWidth, &IDiffmap::getBlockHeight, &IDiffmap::getData,
        &IDiffmap::getSize, &IDiffmap::getDiffmapReserved);
}

TEST(PaletteFacade, ForwardsItsOperationsInSlotOrder) {
    expectForwarded<WPalette, IPalette>(&IPalette::init, &IPalette::resize, &IPalette::convert, &IPalette::changeFormat,
                                        &IPalette::getNumOfIndices, &IPalette::getData, &IPalette::getSize,
                                        &IPalette::getFormat, &IPalette::getPaletteReserved);
}

TEST(JpegFormatInfoFacade, ForwardsItsOperationsInSlotOrder) {
    expectForwarded<WJpegFormatInfo, IJpegFormatInfo>(
        &IJpegFormatInfo::getFormatName, &IJpegFormatInfo::setFormatName, &IJpegFormatInfo::getDataFormatInfoReserved,
        &IJpegFormatInfo::getAccessType, &IJpegFormatInfo::setAccessType, &IJpegFormatInfo::getFilePath,
        &IJpegFormatInfo::setFilePath, &IJpegFormatInfo::isReadOnly, &IJpegFormatInfo::setReadOnly,
        &IJpegFormatInfo::getOriginalFile, &IJpegFormatInfo::getMutableOriginalFile, &IJpegFormatInfo::setOriginalFile,
        &IJpegFormatInfo::getNativeFormatInfoReserved, &IJpegFormatInfo::getQuality, &IJpegFormatInfo::setQuality,
        &IJpegFormatInfo::isProgressive, &IJpegFormatInfo::setProgressive, &IJpegFormatInfo::getJpegFormatInfoReserved);
}

TEST(ReadbackContextFacade, ForwardsItsOperationsInSlotOrder) {
    expectForwarded<WReadbackContext, IReadbackContext>(&IReadbackContext::getAdapterID, &IReadbackContext::initialize,
                                                        &IReadbackContext::getReadbackContextReserved);
}

TEST(SharedTextureFacade, ForwardsItsOperationsInSlotOrder) {
    expectForwarded<WSharedTexture, ISharedTexture>(
        &ISharedTexture::getWidth, &ISharedTexture::getHeight, &ISharedTexture::getFormat,
        &ISharedTexture::getReadbackContext, &ISharedTexture::setReadbackContext, &ISharedTexture::getOriginalTexture,
        &ISharedTexture::setOriginalTexture, &ISharedTexture::getSharedHandle, &ISharedTexture::setSharedHandle,
        &ISharedTexture::copyToSystemMemory, &ISharedTexture::getDeviceInfo, &ISharedTexture::getSharedTextureReserved);
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
