#include "picture_module/picture_module_test.h"
#include "zyr_common/containers/zyr_list.h"

namespace zyr {

TEST_F(PictureUpTest, EncoderKeepsAdapterAndAgreedRecord) {
    Held<IFrameEncoder> encoder = make<IFrameEncoder>();
    EXPECT_EQ(encoder->getAdapterID(), 0u);
    encoder->setAdapterID(0x1234567890ull);
    EXPECT_EQ(encoder->getAdapterID(), 0x1234567890ull);
    FrameCodecInfo info;
    info.codecName = "vp9";
    info.colorSpaces.pushBack(ZYR_COLOR_SPACE_BT_601, nullptr);
    EXPECT_TRUE(encoder->initialize(info));
    EXPECT_STREQ(encoder->getCodecName().getData(), "vp9");
    EXPECT_EQ(encoder->getCodecInfo()->colorSpaces.frontConst(), ZYR_COLOR_SPACE_BT_601);
    List<FrameCodecProposal*> proposals;
    encoder->getCodecProposals(proposals);
    EXPECT_TRUE(proposals.isEmpty());
    Held<IFrameEncoder> copy(static_cast<IFrameEncoder*>(encoder->clone()));
    EXPECT_EQ(copy->getAdapterID(), 0x1234567890ull);
    EXPECT_STREQ(copy->getCodecName().getData(), "vp9");
    encoder->clear();
    EXPECT_EQ(encoder->getAdapterID(), 0u);
    EXPECT_TRUE(encoder->getCodecName().isEmpty());
}

TEST_F(PictureUpTest, EncoderContextHoldsItsEncoder) {
    Held<IFrameEncoder> encoder = make<IFrameEncoder>();
    Held<IFrameEncoderContext> context(encoder->createFrameEncoderContext());
    EXPECT_EQ(context->getEncoder(), encoder.get());
    EXPECT_EQ(encoder->getRefCount(), 1u);
    EXPECT_FALSE(context->initialize(encoder.get()));
    EXPECT_EQ(context->getQuality(), 60);
    EXPECT_TRUE(context->setQuality(90));
    EXPECT_EQ(context->getQuality(), 90);
    EXPECT_EQ(context->encode(nullptr), nullptr);
    EXPECT_TRUE(context->deinitialize());
    EXPECT_EQ(context->getEncoder(), nullptr);
    EXPECT_EQ(encoder->getRefCount(), 0u);
    EXPECT_FALSE(context->deinitialize());
}

TEST_F(PictureUpTest, DecoderAndItsContextBehaveAlike) {
    Held<IFrameDecoder> decoder = make<IFrameDecoder>();
    FrameCodecInfo info;
    info.codecName = "h264";
    EXPECT_TRUE(decoder->initialize(info));
    EXPECT_STREQ(decoder->getCodecName().getData(), "h264");
    List<FrameCodecRequest*> requests;
    decoder->getCodecRequests(requests);
    EXPECT_TRUE(requests.isEmpty());
    Held<IFrameDecoderContext> context(decoder->createFrameDecoderContext());
    EXPECT_EQ(context->getDecoder(), decoder.get());
    EXPECT_EQ(context->decode(nullptr), nullptr);
    EXPECT_TRUE(context->deinitialize());
    EXPECT_FALSE(context->deinitialize());
    EXPECT_FALSE(context->initialize(nullptr));
    EXPECT_TRUE(context->initialize(decoder.get()));
    EXPECT_TRUE(decoder->deinitialize());
}

TEST_F(PictureUpTest, SharedTextureDescribesAndRefusesToRead) {
    Held<ISharedTexture> texture = make<ISharedTexture>();
    Held<IReadbackContext> readback = make<IReadbackContext>();
    Held<IImage> image = make<IImage>();
    int native = 0;
    texture->getSharedTextureReserved()->setWidth(640);
    texture->getSharedTextureReserved()->setHeight(480);
    texture->getSharedTextureReserved()->setFormat(ZYR_PIXEL_FORMAT_BGRA_8);
    texture->setOriginalTexture(&native);
    texture->setSharedHandle(&native + 1);
    texture->setReadbackContext(readback.get());
    EXPECT_EQ(texture->getWidth(), 640u);
    EXPECT_EQ(texture->getHeight(), 480u);
    EXPECT_EQ(texture->getFormat(), ZYR_PIXEL_FORMAT_BGRA_8);
    EXPECT_EQ(texture->getOriginalTexture(), &native);
    EXPECT_EQ(texture->getSharedHandle(), &native + 1);
    EXPECT_EQ(texture->getReadbackContext(0), readback.get());
    EXPECT_EQ(readback->getRefCount(), 1u);
    uint32_t vendor = 1;
    uint32_t device = 2;
    EXPECT_FALSE(texture->getDeviceInfo(vendor, device));
    EXPECT_EQ(vendor, 1u);
    EXPECT_FALSE(texture->copyToSystemMemory(image.get()));
    texture->setReadbackContext(nullptr);
    EXPECT_EQ(readback->getRefCount(), 0u);
}

TEST_F(PictureUpTest, ReadbackContextTakesOneDevice) {
    Held<IReadbackContext> readback = make<IReadbackContext>();
    int device = 0;
    EXPECT_FALSE(readback->initialize(nullptr));
    EXPECT_TRUE(readback->initialize(&device));
    EXPECT_FALSE(readback->initialize(&device));
    EXPECT_EQ(readback->getReadbackContextReserved()->getDevice(), &device);
    readback->getReadbackContextReserved()->setAdapterID(5);
    EXPECT_EQ(readback->getAdapterID(), 5u);
}

TEST_F(PictureUpTest, JpegFormatInfoKeepsQualityBesideItsBases) {
    Held<IJpegFormatInfo> info = make<IJpegFormatInfo>();
    EXPECT_EQ(info->getQuality(), 75);
    EXPECT_FALSE(info->isProgressive());
    info->setQuality(90);
    info->setProgressive(1);
    info->setFormatName("jpeg");
    info->setFilePath("/tmp/a.jpg");
    Held<IJpegFormatInfo> copy(static_cast<IJpegFormatInfo*>(info->clone()));
    EXPECT_EQ(copy->getQuality(), 90);
    EXPECT_TRUE(copy->isProgressive());
    EXPECT_STREQ(copy->getFormatName().getData(), "jpeg");
    EXPECT_STREQ(copy->getFilePath().getData(), "/tmp/a.jpg");
    copy->clear();
    EXPECT_EQ(copy->getQuality(), 75);
    EXPECT_TRUE(copy->findClassGUID(zyr_getInterfaceGUID<IDataFormatInfo>()));
}

} // namespace zyr
