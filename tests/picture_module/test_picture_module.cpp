#include "picture_module/picture_module_test.h"
#include "support/zyr_stdout_capture.h"

namespace zyr {

TEST_F(PictureModuleTest, CannotInitializeBeforePrepare) {
    EXPECT_FALSE(getData()->pictureInitialize());
    EXPECT_EQ(getData()->m_pictureState, 0u);
}

TEST_F(PictureModuleTest, PrepareTakesNoApplicationDataQuietlyButForALine) {
    EXPECT_EQ(captureStdout([this] { m_preparePicture(nullptr); }),
              "WARN : Application data is NULL, cannot prepare component module: picture\n");
    EXPECT_EQ(getData()->m_pictureInitializer, nullptr);
}

TEST_F(PictureModuleTest, RefusesAHostOfAnotherMinorVersion) {
    getData()->m_frameworkVersion += uint64_t{1} << 16;
    m_preparePicture(getData());
    EXPECT_FALSE(getData()->pictureInitialize());
    EXPECT_EQ(getData()->m_pictureState, 2u);
    EXPECT_EQ(getData()->m_picture->m_convertRGBToYUV, nullptr);
}

TEST_F(PictureUpTest, FillsItsTable) {
    EXPECT_EQ(getData()->m_pictureState, 1u);
    EXPECT_NE(getData()->m_picture->m_convertRGBToYUV, nullptr);
    EXPECT_NE(getData()->m_picture->m_convertYUVToRGB, nullptr);
}

TEST_F(PictureUpTest, RegistersEveryInterfaceByNameAndByGUID) {
    auto check = [](const GUID_t& p_guid, const char* p_name) {
        Held<IObject> byGUID(zyr_createObjectFromGUIDAndTypeName(p_guid, String()));
        Held<IObject> byName(zyr_createObjectFromName(p_name));
        ASSERT_NE(byGUID, nullptr) << p_name;
        ASSERT_NE(byName, nullptr) << p_name;
        EXPECT_STREQ(byGUID->getClassName().getData(), p_name);
        EXPECT_TRUE(byName->getClassGUID() == p_guid) << p_name;
        EXPECT_TRUE(byName->findClassGUID(zyr_getInterfaceGUID<IObject>())) << p_name;
        EXPECT_EQ(byGUID->getRefCount(), 0u);
        EXPECT_EQ(zyr_createObjectFromGUIDAndTypeName(p_guid, "float"), nullptr);
    };
    check(zyr_getInterfaceGUID<IDiffmap>(), "Diffmap");
    check(zyr_getInterfaceGUID<IPalette>(), "Palette");
    check(zyr_getInterfaceGUID<IJpegFormatInfo>(), "JpegFormatInfo");
    check(zyr_getInterfaceGUID<IImage>(), "Image");
    check(zyr_getInterfaceGUID<IReadbackContext>(), "ReadbackContext");
    check(zyr_getInterfaceGUID<ISharedTexture>(), "SharedTexture");
    check(zyr_getInterfaceGUID<IUnpackedFrameData>(), "UnpackedFrameData");
    check(zyr_getInterfaceGUID<IPackedFrameData>(), "PackedFrameData");
    check(zyr_getInterfaceGUID<IFrameDecoder>(), "FrameDecoder");
    check(zyr_getInterfaceGUID<IFrameDecoderContext>(), "FrameDecoderContext");
    check(zyr_getInterfaceGUID<IFrameEncoder>(), "FrameEncoder");
    check(zyr_getInterfaceGUID<IFrameEncoderContext>(), "FrameEncoderContext");
}

TEST_F(PictureUpTest, FacadesWorkOnItsObjects) {
    struct OwnImage : WImage {
        OwnImage() { initObjectInterface(); }
    };
    Held<OwnImage> image(new OwnImage);
    EXPECT_TRUE(image->init(4, 2, 0, ZYR_PIXEL_FORMAT_RGBA_8, ZYR_COLOR_SPACE_RGB, static_cast<PixelFormatEnum>(0), 0));
    EXPECT_EQ(image->getWidth(), 4u);
    EXPECT_EQ(image->getTLIObject(), image.get());
    EXPECT_STREQ(image->getClassName().getData(), "Image");
}

} // namespace zyr
