#include "picture_module/picture_module_test.h"
#include "zyr_common/containers/zyr_array.h"

namespace zyr {

TEST_F(PictureUpTest, PackedFrameGivesBackWhatItsSettersStore) {
    Held<IPackedFrameData> frame = make<IPackedFrameData>();
    IPackedFrameDataReserved* fill = frame->getPackedFrameDataReserved();
    EXPECT_EQ(frame->getWidth(), 0u);
    EXPECT_EQ(frame->getPackedData()->getSize(), 0u);
    fill->setWidth(641);
    fill->setHeight(481);
    fill->setVideoFrameID(77);
    fill->setUncompressedSize(1234567);
    const uint8_t bytes[] = {1, 2, 3};
    fill->getPackedDataMutable()->pushBackRange(bytes, 3);
    EXPECT_EQ(frame->getWidth(), 641u);
    EXPECT_EQ(frame->getHeight(), 481u);
    EXPECT_EQ(frame->getVideoFrameID(), 77u);
    EXPECT_EQ(frame->getUncompressedSize(), 1234567u);
    ASSERT_EQ(frame->getPackedData()->getSize(), 3u);
    EXPECT_EQ(frame->getPackedData(), fill->getPackedDataMutable());
    EXPECT_EQ((*frame->getPackedData())[2], 3);
    EXPECT_EQ(frame->getDiffmap(0), nullptr);
}

TEST_F(PictureUpTest, PackedFrameCopiesDeeply) {
    Held<IPackedFrameData> frame = make<IPackedFrameData>();
    Held<IDiffmap> diffmap = make<IDiffmap>();
    Array<uint8_t> bytes;
    bytes.pushBack(9);
    frame->getPackedFrameDataReserved()->setPackedData(bytes);
    frame->getPackedFrameDataReserved()->setVideoFrameID(5);
    frame->getPackedFrameDataReserved()->setDiffmap(diffmap.get());
    Held<IPackedFrameData> copy(static_cast<IPackedFrameData*>(frame->clone()));
    EXPECT_NE(copy->getPackedData()->getData(), frame->getPackedData()->getData());
    EXPECT_EQ((*copy->getPackedData())[0], 9);
    EXPECT_EQ(copy->getVideoFrameID(), 5u);
    EXPECT_EQ(copy->getDiffmap(0), diffmap.get());
    frame->clear();
    EXPECT_TRUE(frame->getPackedData()->isEmpty());
    EXPECT_EQ(frame->getVideoFrameID(), 0u);
    EXPECT_EQ(diffmap->getRefCount(), 1u); // the copy's
}

TEST_F(PictureUpTest, UnpackedFrameTakesReferencesOfItsOwn) {
    Held<IUnpackedFrameData> frame = make<IUnpackedFrameData>();
    Held<IImage> image = makeImage(4, 4, 500);
    Held<ISharedTexture> texture = make<ISharedTexture>();
    Held<IDiffmap> diffmap = make<IDiffmap>();
    IUnpackedFrameDataReserved* fill = frame->getUnpackedFrameDataReserved();
    fill->setWidth(3);
    fill->setHeight(2);
    fill->setVideoFrameID(8);
    fill->setSystemMemory(image.get());
    fill->setGPUMemory(texture.get());
    fill->setDiffmap(diffmap.get());
    EXPECT_EQ(frame->getWidth(), 3u);
    EXPECT_EQ(frame->getHeight(), 2u);
    EXPECT_EQ(frame->getVideoFrameID(), 8u);
    EXPECT_EQ(image->getRefCount(), 1u);
    EXPECT_EQ(frame->getSystemMemory(0, 1), image.get());
    EXPECT_EQ(image->getRefCount(), 1u); // borrowed
    EXPECT_EQ(frame->getSystemMemory(1, 1), image.get());
    EXPECT_EQ(image->getRefCount(), 2u);
    image->release();
    EXPECT_EQ(frame->getGPUMemory(0), texture.get());
    EXPECT_EQ(frame->getDiffmap(0), diffmap.get());
    fill->setSystemMemory(image.get()); // the one that is there
    EXPECT_EQ(image->getRefCount(), 1u);
    fill->setSystemMemory(nullptr);
    EXPECT_EQ(image->getRefCount(), 0u);
    EXPECT_EQ(frame->getSystemMemory(0, 1), nullptr);
    EXPECT_EQ(frame->getSystemMemory(0, 0), nullptr); // the texture cannot be read here
    frame.reset();
    EXPECT_EQ(texture->getRefCount(), 0u);
    EXPECT_EQ(diffmap->getRefCount(), 0u);
}

TEST_F(PictureUpTest, FrameOutlivesTheMakersReferenceToItsPicture) {
    Held<IUnpackedFrameData> frame = make<IUnpackedFrameData>();
    {
        Held<IImage> image = makeImage(6, 6, 500);
        frame->getUnpackedFrameDataReserved()->setSystemMemory(image.get());
    }
    EXPECT_EQ(frame->getSystemMemory(0, 1)->getWidth(), 6u);
}

} // namespace zyr
