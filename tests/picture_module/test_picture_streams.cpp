#include "picture_module/picture_module_test.h"
#include "support/zyr_recording_serializer.h"
#include "zyr_common/containers/zyr_array.h"

#include <cstring>

namespace zyr {

namespace {

using test::RecordingDeserializer;
using test::RecordingSerializer;

/// Writes an object and reads it back into another one.
bool_t pass(IObject* p_from, IObject* p_to, RecordingSerializer::Kind p_kind) {
    RecordingSerializer serializer(p_kind);
    bool_t result = 0;
    if (!p_from->writeSerialized(&serializer, 1, result) || !result) {
        return 0;
    }
    result = 0;
    if (!p_from->writeSerialized(&serializer, 0, result) || !result) {
        return 0;
    }
    RecordingDeserializer deserializer(serializer.m_root);
    return p_to->readSerialized(&deserializer);
}

constexpr RecordingSerializer::Kind kinds[] = {RecordingSerializer::c_text, RecordingSerializer::c_binary};

} // namespace

TEST_F(PictureUpTest, ImageSurvivesAStream) {
    for (RecordingSerializer::Kind kind : kinds) {
        for (uint32_t format : {500u, 451u, 50u, 600u}) {
            Held<IImage> image = makeImage(7, 3, format);
            image->clearColor(ColorRGBA<float>(0.25f, 0.5f, 0.75f, 1));
            getRow(*image, 1)[0] ^= 0xFF;
            Held<IImage> back = make<IImage>();
            ASSERT_TRUE(pass(image.get(), back.get(), kind)) << format;
            EXPECT_TRUE(back->compare(image.get())) << format;
            EXPECT_EQ(back->getColorSpace(), ZYR_COLOR_SPACE_RGB);
        }
    }
}

TEST_F(PictureUpTest, IndexedImageKeepsItsPalette) {
    Held<IImage> image = make<IImage>();
    ASSERT_TRUE(image->init(2, 1, 0, static_cast<PixelFormatEnum>(4), ZYR_COLOR_SPACE_RGB, ZYR_PIXEL_FORMAT_RGB_8, 2));
    memcpy(image->getPalette()->getData(), "\1\2\3\4\5\6", 6);
    memcpy(image->getData(), "\1\0", 2);
    Held<IImage> back = make<IImage>();
    ASSERT_TRUE(pass(image.get(), back.get(), RecordingSerializer::c_text));
    ASSERT_NE(back->getPalette(), nullptr);
    EXPECT_EQ(back->getPalette()->getNumOfIndices(), 2u);
    EXPECT_EQ(0, memcmp(back->getPalette()->getData(), "\1\2\3\4\5\6", 6));
    EXPECT_EQ(0, memcmp(back->getData(), "\1\0", 2));
}

TEST_F(PictureUpTest, EmptyObjectsSurviveAStream) {
    for (RecordingSerializer::Kind kind : kinds) {
        Held<IImage> image = make<IImage>();
        EXPECT_TRUE(pass(image.get(), make<IImage>().get(), kind));
        Held<IDiffmap> diffmap = make<IDiffmap>();
        EXPECT_TRUE(pass(diffmap.get(), make<IDiffmap>().get(), kind));
        Held<IPalette> palette = make<IPalette>();
        EXPECT_TRUE(pass(palette.get(), make<IPalette>().get(), kind));
        Held<IPackedFrameData> frame = make<IPackedFrameData>();
        Held<IPackedFrameData> back = make<IPackedFrameData>();
        EXPECT_TRUE(pass(frame.get(), back.get(), kind));
        EXPECT_EQ(back->getDiffmap(0), nullptr);
    }
}

TEST_F(PictureUpTest, PaletteAndDiffmapSurviveAStream) {
    for (RecordingSerializer::Kind kind : kinds) {
        Held<IPalette> palette = make<IPalette>();
        ASSERT_TRUE(palette->init(2, ZYR_PIXEL_FORMAT_BGRA_8));
        memcpy(palette->getData(), "\1\2\3\4\5\6\7\10", 8);
        Held<IPalette> samePalette = make<IPalette>();
        ASSERT_TRUE(pass(palette.get(), samePalette.get(), kind));
        EXPECT_EQ(samePalette->getFormat(), ZYR_PIXEL_FORMAT_BGRA_8);
        EXPECT_EQ(0, memcmp(samePalette->getData(), palette->getData(), 8));
        Held<IDiffmap> diffmap = make<IDiffmap>();
        ASSERT_TRUE(diffmap->init(30, 20, 10, 7, 6));
        Held<IDiffmap> sameDiffmap = make<IDiffmap>();
        ASSERT_TRUE(pass(diffmap.get(), sameDiffmap.get(), kind));
        EXPECT_EQ(sameDiffmap->getNumOfBlocks(), 9u);
        EXPECT_EQ(sameDiffmap->getData()[8], 6);
    }
}

TEST_F(PictureUpTest, PackedFrameSurvivesAStream) {
    for (RecordingSerializer::Kind kind : kinds) {
        Held<IPackedFrameData> frame = make<IPackedFrameData>();
        Held<IDiffmap> diffmap = make<IDiffmap>();
        ASSERT_TRUE(diffmap->init(10, 10, 5, 5, 1));
        IPackedFrameDataReserved* fill = frame->getPackedFrameDataReserved();
        fill->setWidth(641);
        fill->setHeight(481);
        fill->setVideoFrameID(0x123456789ull);
        fill->setUncompressedSize(99);
        fill->getPackedDataMutable()->pushBackRange("abcde", 5);
        fill->setDiffmap(diffmap.get());
        Held<IPackedFrameData> back = make<IPackedFrameData>();
        ASSERT_TRUE(pass(frame.get(), back.get(), kind));
        EXPECT_EQ(back->getWidth(), 641u);
        EXPECT_EQ(back->getHeight(), 481u);
        EXPECT_EQ(back->getVideoFrameID(), 0x123456789ull);
        EXPECT_EQ(back->getUncompressedSize(), 99u);
        ASSERT_EQ(back->getPackedData()->getSize(), 5u);
        EXPECT_EQ(0, memcmp(back->getPackedData()->getData(), "abcde", 5));
        ASSERT_NE(back->getDiffmap(0), nullptr);
        EXPECT_EQ(back->getDiffmap(0)->getNumOfBlocks(), 4u);
    }
}

TEST_F(PictureUpTest, RawFramesAreNotStored) {
    Held<IUnpackedFrameData> frame = make<IUnpackedFrameData>();
    RecordingSerializer serializer(RecordingSerializer::c_text);
    bool_t result = 1;
    EXPECT_FALSE(frame->writeSerialized(&serializer, 0, result));
    EXPECT_FALSE(result);
}

TEST_F(PictureUpTest, StoredSizesAreBoundByTheBytesThatAreThere) {
    Held<IImage> image = makeImage(4, 4, 500);
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    bool_t result = 0;
    ASSERT_TRUE(image->writeSerialized(&serializer, 0, result));
    for (const auto& [width, height] : {std::pair<uint32_t, uint32_t>{30000, 10000}, {5, 4}, {4, 3}, {0, 4}}) {
        serializer.m_root.m_values["width"] = width;
        serializer.m_root.m_values["height"] = height;
        RecordingDeserializer deserializer(serializer.m_root);
        Held<IImage> back = make<IImage>();
        EXPECT_FALSE(back->readSerialized(&deserializer)) << width;
        EXPECT_EQ(back->getData(), nullptr);
    }
    serializer.m_root.m_values["width"] = uint32_t{4};
    serializer.m_root.m_values["height"] = uint32_t{4};
    serializer.m_root.m_values["pixels"] = std::vector<uint32_t>{64, 1, 2};
    RecordingDeserializer deserializer(serializer.m_root);
    EXPECT_FALSE(make<IImage>()->readSerialized(&deserializer));

    Held<IDiffmap> diffmap = make<IDiffmap>();
    ASSERT_TRUE(diffmap->init(30, 20, 10, 10, 1));
    RecordingSerializer mapSerializer(RecordingSerializer::c_binary);
    ASSERT_TRUE(diffmap->writeSerialized(&mapSerializer, 0, result));
    mapSerializer.m_root.m_values["blockWidth"] = uint32_t{0};
    RecordingDeserializer mapDeserializer(mapSerializer.m_root);
    EXPECT_FALSE(make<IDiffmap>()->readSerialized(&mapDeserializer));
}

} // namespace zyr
