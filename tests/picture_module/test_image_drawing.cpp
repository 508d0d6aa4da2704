#include "picture_module/picture_module_test.h"
#include "zyr_common/geometry/zyr_rect.h"
#include "zyr_common/geometry/zyr_vector.h"

#include <climits>
#include <cstring>

namespace zyr {

using Bytes = std::vector<uint8_t>;

TEST_F(PictureUpTest, CopyRectMovesPixelsBetweenFormats) {
    Held<IImage> source = makeImage(8, 8, 500);
    Held<IImage> target = makeImage(10, 10, 451);
    fillWithNumbers(*source);
    target->clearColor(ColorRGBA<float>());
    ASSERT_TRUE(target->copyRect(Rect<int>(6, 5, 3, 2), source.get(), 0, Rect<int>(1, 2, 3, 2)));
    const Bytes pixel = getPixel(*source, 3, 3);
    EXPECT_EQ(getPixel(*target, 8, 6), (Bytes{pixel[2], pixel[1], pixel[0]}));
    EXPECT_EQ(getPixel(*target, 9, 6), (Bytes{0, 0, 0}));
    EXPECT_EQ(getPixel(*target, 8, 7), (Bytes{0, 0, 0}));
}

TEST_F(PictureUpTest, CopyRectStartsAtThePosition) {
    Held<IImage> source = makeImage(8, 8, 500);
    Held<IImage> target = makeImage(8, 8, 500);
    fillWithNumbers(*source);
    const uint64_t position = 3 * source->getPitch() + 2 * 4;
    ASSERT_TRUE(target->copyRect(Rect<int>(0, 0, 1, 1), source.get(), position, Rect<int>(1, 1, 1, 1)));
    EXPECT_EQ(getPixel(*target, 0, 0), getPixel(*source, 3, 4));
    EXPECT_FALSE(target->copyRect(Rect<int>(0, 0, 1, 1), source.get(), position + 1, Rect<int>(1, 1, 1, 1)));
}

TEST_F(PictureUpTest, CopyRectIsCutAtBothPictures) {
    Held<IImage> source = makeImage(4, 4, 500);
    Held<IImage> target = makeImage(4, 4, 500);
    fillWithNumbers(*source);
    target->clearColor(ColorRGBA<float>());
    ASSERT_TRUE(target->copyRect(Rect<int>(-1, -2, 10, 10), source.get(), 0, Rect<int>(0, 0, 10, 10)));
    EXPECT_EQ(getPixel(*target, 0, 0), getPixel(*source, 1, 2));
    EXPECT_EQ(getPixel(*target, 2, 1), getPixel(*source, 3, 3));
    EXPECT_EQ(getPixel(*target, 3, 1), (Bytes{0, 0, 0, 0}));
    ASSERT_TRUE(target->copyRect(Rect<int>(0, 0, 4, 4), source.get(), 0, Rect<int>(-3, -3, 4, 4)));
    EXPECT_EQ(getPixel(*target, 3, 3), getPixel(*source, 0, 0));
    EXPECT_TRUE(target->copyRect(Rect<int>(INT_MAX, 0, 4, 4), source.get(), 0, Rect<int>(0, 0, 4, 4)));
    EXPECT_TRUE(target->copyRect(Rect<int>(0, 0, INT_MAX, INT_MAX), source.get(), 0,
                                 Rect<int>(INT_MIN, INT_MIN, INT_MAX, INT_MAX)));
    EXPECT_FALSE(target->copyRect(Rect<int>(0, 0, 2, 2), source.get(), 0, Rect<int>(0, 0, 2, 3)));
    EXPECT_FALSE(target->copyRect(Rect<int>(0, 0, -2, 2), source.get(), 0, Rect<int>(0, 0, -2, 2)));
    EXPECT_FALSE(target->copyRect(Rect<int>(0, 0, 2, 2), nullptr, 0, Rect<int>(0, 0, 2, 2)));
}

TEST_F(PictureUpTest, CopyRectWithinOnePictureMayOverlap) {
    Held<IImage> before = makeImage(12, 12, 500);
    for (int step : {-1, 1}) {
        Held<IImage> image = makeImage(12, 12, 500);
        fillWithNumbers(*image);
        fillWithNumbers(*before);
        ASSERT_TRUE(image->copyRect(Rect<int>(2 + step, 2 + step, 8, 8), image.get(), 0, Rect<int>(2, 2, 8, 8)));
        for (uint32_t y = 2; y < 10; ++y) {
            for (uint32_t x = 2; x < 10; ++x) {
                ASSERT_EQ(getPixel(*image, x + step, y + step), getPixel(*before, x, y));
            }
        }
    }
}

TEST_F(PictureUpTest, MaskBlendsTheColorByItsAlpha) {
    Held<IImage> image = makeImage(4, 1, 500);
    Held<IImage> mask = makeImage(3, 1, 103);
    image->clearColor(ColorRGBA<float>(0, 0, 1, 1));
    const uint8_t covers[] = {0, 128, 255};
    memcpy(getRow(*mask, 0), covers, 3);
    ASSERT_TRUE(image->drawMask(Vector2<int>(1, 0), mask.get(), Rect<int>(0, 0, 3, 1), ColorRGBA<float>(1, 0, 0, 1)));
    EXPECT_EQ(getPixel(*image, 0, 0), (Bytes{0, 0, 255, 255}));
    EXPECT_EQ(getPixel(*image, 1, 0), (Bytes{0, 0, 255, 255}));
    EXPECT_EQ(getPixel(*image, 2, 0), (Bytes{128, 0, 127, 255}));
    EXPECT_EQ(getPixel(*image, 3, 0), (Bytes{255, 0, 0, 255}));
    EXPECT_FALSE(image->drawMask(Vector2<int>(0, 0), nullptr, Rect<int>(0, 0, 3, 1), ColorRGBA<float>(1, 0, 0, 1)));
    EXPECT_FALSE(image->drawMask(Vector2<int>(0, 0), mask.get(), Rect<int>(0, 0, -3, 1), ColorRGBA<float>(1, 0, 0, 1)));
}

TEST_F(PictureUpTest, MaskWithoutAlphaUsesItsValue) {
    Held<IImage> image = makeImage(2, 1, 450);
    Held<IImage> mask = makeImage(2, 1, 53);
    image->clearColor(ColorRGBA<float>());
    getRow(*mask, 0)[0] = 255;
    getRow(*mask, 0)[1] = 0;
    ASSERT_TRUE(
        image->drawMask(Vector2<int>(-5, 0), mask.get(), Rect<int>(-5, 0, 20, 1), ColorRGBA<float>(0, 1, 0, 0.5f)));
    EXPECT_EQ(getPixel(*image, 0, 0), (Bytes{0, 127, 0}));
    EXPECT_EQ(getPixel(*image, 1, 0), (Bytes{0, 0, 0}));
}

TEST_F(PictureUpTest, ChannelsComeApartAndTogether) {
    for (uint32_t format : {450u, 451u, 500u, 503u, 506u}) {
        Held<IImage> image = makeImage(300, 2, format);
        fillWithNumbers(*image);
        Held<IImage> words = makeImage(300, 2, 500);
        ASSERT_TRUE(image->convert(0, 0, 0, words.get(), 0, 0));
        const bool hasAlpha = format == 500 || format == 506;
        Held<IImage> rebuilt = makeImage(300, 2, format);
        for (uint32_t channel = 0; channel < 4; ++channel) {
            Held<IImage> plane = make<IImage>();
            ASSERT_TRUE(image->getChannel(plane.get(), channel));
            EXPECT_EQ(plane->getFormat(), 53u);
            for (uint32_t x = 0; x < 300; ++x) {
                ASSERT_EQ(getRow(*plane, 1)[x], getPixel(*words, x, 1)[channel]) << format << " " << channel;
            }
            EXPECT_EQ(rebuilt->setChannel(plane.get(), channel) != 0, channel < 3 || hasAlpha);
        }
        EXPECT_TRUE(rebuilt->compare(image.get())) << format;
    }
    Held<IImage> image = makeImage(4, 4, 500);
    EXPECT_FALSE(image->getChannel(make<IImage>().get(), 4));
    EXPECT_FALSE(image->setChannel(makeImage(4, 4, 500).get(), 0));
    EXPECT_FALSE(image->setChannel(makeImage(4, 3, 53).get(), 0));
}

TEST_F(PictureUpTest, ChannelValueFillsOneChannel) {
    Held<IImage> image = makeImage(3, 2, 502);
    fillWithNumbers(*image);
    const Bytes before = getPixel(*image, 2, 1);
    EXPECT_TRUE(image->setChannelValue(1, 3));
    EXPECT_EQ(getPixel(*image, 2, 1), (Bytes{255, before[1], before[2], before[3]}));
    EXPECT_TRUE(image->setChannelValue(0.5f, 0));
    EXPECT_EQ(getPixel(*image, 2, 1)[1], 127);
    EXPECT_FALSE(image->setChannelValue(1, 4));
    EXPECT_FALSE(makeImage(2, 2, 501)->setChannelValue(1, 3));
}

TEST_F(PictureUpTest, ANDMaskMakesMarkedPixelsTransparent) {
    Held<IImage> image = makeImage(2, 1, 504);
    Held<IImage> mask = makeImage(2, 1, 53);
    image->clearColor(ColorRGBA<float>(1, 1, 1, 0));
    getRow(*mask, 0)[0] = 1;
    getRow(*mask, 0)[1] = 0;
    ASSERT_TRUE(image->simulateANDMask(mask.get()));
    EXPECT_EQ(getPixel(*image, 0, 0), (Bytes{0, 0, 0, 0}));
    EXPECT_EQ(getPixel(*image, 1, 0), (Bytes{255, 255, 255, 255}));
    EXPECT_FALSE(image->simulateANDMask(makeImage(3, 1, 53).get()));
    EXPECT_FALSE(makeImage(2, 1, 450)->simulateANDMask(mask.get()));
}

TEST_F(PictureUpTest, DiffmapMarksTheBlocksThatDiffer) {
    Held<IImage> first = makeImage(40, 20, 500);
    Held<IImage> second = makeImage(40, 20, 500);
    fillWithNumbers(*first);
    fillWithNumbers(*second);
    getRow(*second, 3)[17 * 4] ^= 1;  // block 1 of row 0
    getRow(*second, 19)[39 * 4] ^= 1; // the cut block in the corner
    Held<IDiffmap> diffmap = make<IDiffmap>();
    ASSERT_TRUE(second->extractDiffmap(diffmap.get(), first.get(), 16, 16));
    EXPECT_EQ(diffmap->getHBlocks(), 3u);
    EXPECT_EQ(diffmap->getVBlocks(), 2u);
    EXPECT_EQ(Bytes(diffmap->getData(), diffmap->getData() + 6), (Bytes{0, 1, 0, 0, 0, 1}));
    ASSERT_TRUE(second->extractDiffmap(diffmap.get(), nullptr, 100, 100));
    EXPECT_EQ(Bytes(diffmap->getData(), diffmap->getData() + 1), (Bytes{1}));
    ASSERT_TRUE(second->extractDiffmap(diffmap.get(), second.get(), 7, 3));
    EXPECT_TRUE(diffmap->isEmpty());
    EXPECT_FALSE(second->extractDiffmap(diffmap.get(), makeImage(40, 21, 500).get(), 16, 16));
    EXPECT_FALSE(second->extractDiffmap(diffmap.get(), makeImage(40, 20, 504).get(), 16, 16));
    EXPECT_FALSE(second->extractDiffmap(diffmap.get(), first.get(), 0, 16));
    EXPECT_FALSE(second->extractDiffmap(nullptr, first.get(), 16, 16));
}

TEST_F(PictureUpTest, PackedBlocksCarryTheChangesFromOnePictureToTheOther) {
    Held<IImage> previous = makeImage(37, 21, 504);
    Held<IImage> current = makeImage(37, 21, 504);
    fillWithNumbers(*previous);
    fillWithNumbers(*current);
    for (uint32_t y : {0u, 9u, 20u}) {
        memset(getRow(*current, y) + 30 * 4, 0x42, 7 * 4);
    }
    Held<IDiffmap> diffmap = make<IDiffmap>();
    ASSERT_TRUE(current->extractDiffmap(diffmap.get(), previous.get(), 8, 8));
    Held<IImage> strip(static_cast<IImage*>(current->clone()));
    ASSERT_TRUE(strip->extractPackedBlocks(diffmap.get()));
    EXPECT_EQ(strip->getWidth(), 8u);
    EXPECT_EQ(strip->getHeight(), 6 * 8u);
    ASSERT_TRUE(strip->drawPackedBlocks(previous.get(), diffmap.get()));
    EXPECT_TRUE(previous->compare(current.get()));
    Held<IDiffmap> all = make<IDiffmap>();
    ASSERT_TRUE(all->init(37, 21, 8, 8, 1));
    EXPECT_FALSE(strip->drawPackedBlocks(previous.get(), all.get())); // more blocks than the strip holds
    all->clearValue(0);
    EXPECT_FALSE(strip->extractPackedBlocks(all.get()));
    EXPECT_FALSE(current->extractPackedBlocks(all.get()));
    EXPECT_FALSE(current->extractPackedBlocks(nullptr));
    EXPECT_EQ(current->getWidth(), 37u);
}

} // namespace zyr
