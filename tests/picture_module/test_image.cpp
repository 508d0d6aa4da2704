#include "picture_module/picture_module_test.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/geometry/zyr_shape_enums.h"

#include <cstring>

namespace zyr {

namespace {

constexpr uint32_t workFormats[] = {450, 451, 500, 501, 502, 503, 504, 505, 506, 507};

/// Byte of each channel in a pixel of the format, -1 for none.
struct Order {
    uint32_t m_format;
    int m_place[4];
};
constexpr Order orders[] = {{450, {0, 1, 2, -1}}, {451, {2, 1, 0, -1}}, {500, {0, 1, 2, 3}}, {501, {0, 1, 2, -1}},
                            {502, {1, 2, 3, 0}},  {503, {1, 2, 3, -1}}, {504, {2, 1, 0, 3}}, {505, {2, 1, 0, -1}},
                            {506, {3, 2, 1, 0}},  {507, {3, 2, 1, -1}}};

constexpr PixelFormatEnum none = ZYR_PIXEL_FORMAT_NONE;

} // namespace

TEST_F(PictureUpTest, NewImageIsEmpty) {
    Held<IImage> image = make<IImage>();
    EXPECT_EQ(image->getWidth(), 0u);
    EXPECT_EQ(image->getHeight(), 0u);
    EXPECT_EQ(image->getPitch(), 0u);
    EXPECT_EQ(image->getData(), nullptr);
    EXPECT_EQ(image->getSize(), 0u);
    EXPECT_EQ(image->getFormat(), none);
    EXPECT_FALSE(image->clearColor(ColorRGBA<float>()));
    EXPECT_FALSE(image->changeVerse(1, 1));
    EXPECT_FALSE(image->changeSize(2, 2, 1, ZYR_INTERPOLATION_LINEAR, ZYR_SUBSAMPLING_NONE));
}

TEST_F(PictureUpTest, InitDescribesThePicture) {
    Held<IImage> image = makeImage(640, 480, 500);
    EXPECT_EQ(image->getWidth(), 640u);
    EXPECT_EQ(image->getHeight(), 480u);
    EXPECT_EQ(image->getPitch(), 2560u);
    EXPECT_EQ(image->getFormat(), ZYR_PIXEL_FORMAT_RGBA_8);
    EXPECT_EQ(image->getColorSpace(), ZYR_COLOR_SPACE_RGB);
    EXPECT_EQ(image->getBitsPerPixel(), 32u);
    EXPECT_EQ(image->getSize(), 2560u * 480);
    EXPECT_EQ(image->getPalette(), nullptr);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(image->getData()) % 64, 0u);
}

TEST_F(PictureUpTest, OddPicturesHaveRoomForOneMorePixelAndRow) {
    Held<IImage> image = makeImage(641, 481, 500);
    EXPECT_EQ(image->getPitch(), 642u * 4);
    memset(image->getData(), 0x55, size_t{image->getPitch()} * 482 + 16); // the sanitizers watch
    EXPECT_EQ(makeImage(3, 3, 450)->getPitch(), 12u);
}

TEST_F(PictureUpTest, InitKeepsAGivenPitch) {
    Held<IImage> image = make<IImage>();
    EXPECT_TRUE(image->init(10, 4, 64, ZYR_PIXEL_FORMAT_RGBA_8, ZYR_COLOR_SPACE_RGB, none, 0));
    EXPECT_EQ(image->getPitch(), 64u);
    EXPECT_FALSE(image->init(10, 4, 39, ZYR_PIXEL_FORMAT_RGBA_8, ZYR_COLOR_SPACE_RGB, none, 0));
    EXPECT_EQ(image->getPitch(), 64u);
}

TEST_F(PictureUpTest, InitRefusesWhatCannotBeAndKeepsThePicture) {
    Held<IImage> image = makeImage(4, 4, 500);
    void* data = image->getData();
    auto init = [&image](uint32_t p_width, uint32_t p_height, uint32_t p_format) {
        return image->init(p_width, p_height, 0, static_cast<PixelFormatEnum>(p_format), ZYR_COLOR_SPACE_RGB, none, 0);
    };
    EXPECT_FALSE(init(0, 4, 500));
    EXPECT_FALSE(init(4, 0, 500));
    EXPECT_FALSE(init(4, 4, 7));
    EXPECT_FALSE(init(4, 4, 1250));
    EXPECT_FALSE(init(32769, 4, 500));
    EXPECT_FALSE(init(32768, 32768, 500));
    EXPECT_FALSE(init(0xFFFFFFFF, 0xFFFFFFFF, 500));
    EXPECT_EQ(image->getWidth(), 4u);
    EXPECT_EQ(image->getData(), data);
}

TEST_F(PictureUpTest, StorageOfALargePictureIsUsedAgain) {
    void* first;
    {
        Held<IImage> image = makeImage(640, 360, 500);
        first = image->getData();
    }
    Held<IImage> again = makeImage(640, 360, 500);
    EXPECT_EQ(again->getData(), first);
    Held<IImage> other = makeImage(640, 360, 500);
    EXPECT_NE(other->getData(), first);
}

TEST_F(PictureUpTest, BoundPictureDrawsOnForeignMemoryAndKeepsItsForm) {
    uint8_t memory[4 * 12 + 4];
    memset(memory, 0x77, sizeof(memory));
    Held<IImage> image = make<IImage>();
    EXPECT_FALSE(image->bindFixedSizeData(nullptr, 3, 4, 0, ZYR_PIXEL_FORMAT_RGBA_8, ZYR_COLOR_SPACE_RGB, none, 0));
    ASSERT_TRUE(image->bindFixedSizeData(memory, 3, 4, 0, ZYR_PIXEL_FORMAT_RGBA_8, ZYR_COLOR_SPACE_RGB, none, 0));
    EXPECT_EQ(image->getPitch(), 12u);
    EXPECT_EQ(image->getData(), memory);
    EXPECT_TRUE(image->clearColor(ColorRGBA<float>(1, 0, 0, 1)));
    EXPECT_EQ(memory[0], 0xFF);
    EXPECT_EQ(memory[4 * 12 - 1], 0xFF);
    EXPECT_EQ(memory[4 * 12], 0x77);
    EXPECT_FALSE(image->changeFormat(ZYR_PIXEL_FORMAT_BGRA_8, none));
    EXPECT_FALSE(image->changeSize(2, 2, 1, ZYR_INTERPOLATION_LINEAR, ZYR_SUBSAMPLING_NONE));
    EXPECT_FALSE(image->setAllocationModel(6, 0));
    EXPECT_TRUE(image->changeVerse(1, 1));
    Held<IImage> copy(static_cast<IImage*>(image->clone()));
    EXPECT_NE(copy->getData(), memory);
    EXPECT_TRUE(copy->compare(image.get()));
    image->clear();
    EXPECT_EQ(image->getData(), nullptr);
}

TEST_F(PictureUpTest, ConvertsBetweenAllPackedFormats) {
    const uint32_t width = 301; // more than one piece of a row, and odd
    for (const Order& from : orders) {
        Held<IImage> source = makeImage(width, 3, from.m_format);
        fillWithNumbers(*source);
        for (const Order& to : orders) {
            Held<IImage> target = makeImage(width, 3, to.m_format);
            ASSERT_TRUE(source->convert(0, 0, 0, target.get(), 0, 0));
            for (uint32_t y = 0; y < 3; ++y) {
                for (uint32_t x = 0; x < width; ++x) {
                    const std::vector<uint8_t> a = getPixel(*source, x, y);
                    const std::vector<uint8_t> b = getPixel(*target, x, y);
                    for (uint32_t i = 0; i < 3; ++i) {
                        ASSERT_EQ(b[to.m_place[i]], a[from.m_place[i]]) << from.m_format << " to " << to.m_format;
                    }
                    if (to.m_place[3] >= 0) {
                        ASSERT_EQ(b[to.m_place[3]], from.m_place[3] >= 0 ? a[from.m_place[3]] : 0xFF)
                            << from.m_format << " to " << to.m_format;
                    }
                }
            }
        }
    }
}

TEST_F(PictureUpTest, ConvertsAPartFromPlaceToPlace) {
    Held<IImage> source = makeImage(8, 8, 500);
    Held<IImage> target = makeImage(6, 6, 451);
    fillWithNumbers(*source);
    target->clearColor(ColorRGBA<float>());
    const uint64_t from = 2 * source->getPitch() + 3 * 4;
    const uint64_t to = 1 * target->getPitch() + 2 * 3;
    ASSERT_TRUE(source->convert(from, 4, 5, target.get(), to, 0));
    EXPECT_EQ(getPixel(*target, 2, 1)[0], getPixel(*source, 3, 2)[2]);
    EXPECT_EQ(getPixel(*target, 5, 5)[2], getPixel(*source, 6, 6)[0]);
    EXPECT_EQ(getPixel(*target, 1, 1)[0], 0);
    EXPECT_EQ(getPixel(*target, 2, 0)[0], 0);
    EXPECT_FALSE(source->convert(from, 6, 1, target.get(), 0, 0)); // beyond the source's row
    EXPECT_FALSE(source->convert(0, 5, 1, target.get(), to, 0));   // beyond the target's row
    EXPECT_FALSE(source->convert(0, 1, 6, target.get(), to, 0));   // beyond its rows
    EXPECT_FALSE(source->convert(1, 1, 1, target.get(), 0, 0));    // inside a pixel
    EXPECT_FALSE(source->convert(8 * source->getPitch(), 1, 1, target.get(), 0, 0));
    EXPECT_FALSE(source->convert(0, 0, 3, target.get(), 0, 0));
    EXPECT_FALSE(source->convert(0, 0, 0, nullptr, 0, 0));
    EXPECT_FALSE(source->convert(0, 0, 0, target.get(), 0, 0)); // too small
}

TEST_F(PictureUpTest, ConvertCanGiveTheTargetItsSize) {
    Held<IImage> source = makeImage(8, 5, 500);
    Held<IImage> empty = make<IImage>();
    Held<IImage> small = makeImage(1, 1, 450);
    fillWithNumbers(*source);
    EXPECT_TRUE(source->convert(0, 0, 0, empty.get(), 0, 1));
    EXPECT_TRUE(empty->compare(source.get()));
    EXPECT_TRUE(source->convert(0, 0, 0, small.get(), 0, 1));
    EXPECT_EQ(small->getFormat(), ZYR_PIXEL_FORMAT_RGB_8);
    EXPECT_EQ(small->getWidth(), 8u);
    EXPECT_EQ(getPixel(*small, 7, 4)[1], getPixel(*source, 7, 4)[1]);
}

TEST_F(PictureUpTest, ChangeFormatConvertsInPlace) {
    Held<IImage> image = makeImage(5, 5, 504);
    fillWithNumbers(*image);
    const std::vector<uint8_t> before = getPixel(*image, 4, 3);
    EXPECT_TRUE(image->changeFormat(ZYR_PIXEL_FORMAT_RGB_8, none));
    EXPECT_EQ(image->getBitsPerPixel(), 24u);
    EXPECT_EQ(getPixel(*image, 4, 3), (std::vector<uint8_t>{before[2], before[1], before[0]}));
    EXPECT_FALSE(image->changeFormat(static_cast<PixelFormatEnum>(600), none));
    EXPECT_EQ(image->getFormat(), ZYR_PIXEL_FORMAT_RGB_8);
}

TEST_F(PictureUpTest, IndexedPicturesAreReadThroughTheirPalette) {
    Held<IImage> image = make<IImage>();
    ASSERT_TRUE(image->init(2, 2, 0, static_cast<PixelFormatEnum>(4), ZYR_COLOR_SPACE_RGB, ZYR_PIXEL_FORMAT_BGR_8, 3));
    ASSERT_NE(image->getPalette(), nullptr);
    EXPECT_EQ(image->getPalette()->getNumOfIndices(), 3u);
    const uint8_t colors[] = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    memcpy(image->getPalette()->getData(), colors, sizeof(colors));
    const uint8_t numbers[2][2] = {{0, 2}, {1, 200}};
    for (uint32_t y = 0; y < 2; ++y) {
        memcpy(getRow(*image, y), numbers[y], 2);
    }
    Held<IImage> target = makeImage(2, 2, 500);
    EXPECT_TRUE(image->convert(0, 0, 0, target.get(), 0, 0));
    EXPECT_EQ(getPixel(*target, 0, 0), (std::vector<uint8_t>{3, 2, 1, 255}));
    EXPECT_EQ(getPixel(*target, 1, 0), (std::vector<uint8_t>{9, 8, 7, 255}));
    EXPECT_EQ(getPixel(*target, 0, 1), (std::vector<uint8_t>{6, 5, 4, 255}));
    EXPECT_EQ(getPixel(*target, 1, 1), (std::vector<uint8_t>{0, 0, 0, 0})); // beyond the palette
    EXPECT_FALSE(target->convert(0, 0, 0, image.get(), 0, 0));
    EXPECT_TRUE(image->changeFormat(ZYR_PIXEL_FORMAT_RGBA_8, none));
    EXPECT_EQ(image->getPalette(), nullptr);
    EXPECT_TRUE(image->compare(target.get()));
}

TEST_F(PictureUpTest, MirrorsInEveryPixelSize) {
    for (uint32_t format : {450u, 500u, 53u}) {
        for (uint32_t verse = 0; verse < 4; ++verse) {
            const bool horizontal = (verse & 1) != 0;
            const bool vertical = (verse & 2) != 0;
            Held<IImage> source = makeImage(37, 5, format);
            Held<IImage> target = make<IImage>();
            fillWithNumbers(*source);
            ASSERT_TRUE(source->mirror(target.get(), horizontal, vertical));
            EXPECT_EQ(target->getFormat(), source->getFormat());
            for (uint32_t y = 0; y < 5; ++y) {
                for (uint32_t x = 0; x < 37; ++x) {
                    ASSERT_EQ(getPixel(*target, horizontal ? 36 - x : x, vertical ? 4 - y : y),
                              getPixel(*source, x, y));
                }
            }
            EXPECT_TRUE(source->changeVerse(horizontal, vertical));
            EXPECT_TRUE(source->compare(target.get()));
        }
    }
}

TEST_F(PictureUpTest, ChangeSizeCutsOrAddsTransparentBlack) {
    Held<IImage> image = makeImage(4, 4, 500);
    Held<IImage> before = makeImage(4, 4, 500);
    fillWithNumbers(*image);
    fillWithNumbers(*before);
    EXPECT_TRUE(image->changeSize(6, 3, 0, ZYR_INTERPOLATION_NEAREST, ZYR_SUBSAMPLING_NONE));
    EXPECT_EQ(image->getWidth(), 6u);
    EXPECT_EQ(image->getHeight(), 3u);
    EXPECT_EQ(getPixel(*image, 3, 2), getPixel(*before, 3, 2));
    EXPECT_EQ(getPixel(*image, 4, 2), (std::vector<uint8_t>{0, 0, 0, 0}));
    EXPECT_FALSE(image->changeSize(0, 3, 0, ZYR_INTERPOLATION_NEAREST, ZYR_SUBSAMPLING_NONE));
    EXPECT_FALSE(image->changeSize(40000, 3, 0, ZYR_INTERPOLATION_NEAREST, ZYR_SUBSAMPLING_NONE));
    EXPECT_EQ(image->getWidth(), 6u);
}

TEST_F(PictureUpTest, NearestStretchByWholeFactorsRepeatsPixels) {
    for (uint32_t format : {450u, 504u, 53u}) {
        Held<IImage> source = makeImage(5, 4, format);
        Held<IImage> target = makeImage(15, 8, format);
        fillWithNumbers(*source);
        ASSERT_TRUE(source->stretch(target.get(), ZYR_INTERPOLATION_NEAREST, ZYR_SUBSAMPLING_NONE));
        for (uint32_t y = 0; y < 8; ++y) {
            for (uint32_t x = 0; x < 15; ++x) {
                ASSERT_EQ(getPixel(*target, x, y), getPixel(*source, x / 3, y / 2)) << format;
            }
        }
    }
}

TEST_F(PictureUpTest, BoxReductionByTwoTakesTheMeanOfFour) {
    for (uint32_t format : {500u, 451u, 53u}) {
        Held<IImage> source = makeImage(32, 16, format);
        Held<IImage> target = makeImage(16, 8, format);
        fillWithNumbers(*source);
        ASSERT_TRUE(source->stretch(target.get(), ZYR_INTERPOLATION_LINEAR, ZYR_SUBSAMPLING_BOX));
        for (uint32_t y = 0; y < 8; ++y) {
            for (uint32_t x = 0; x < 16; ++x) {
                for (size_t i = 0; i < getPixel(*target, x, y).size(); ++i) {
                    const int sum = getPixel(*source, 2 * x, 2 * y)[i] + getPixel(*source, 2 * x + 1, 2 * y)[i] +
                                    getPixel(*source, 2 * x, 2 * y + 1)[i] + getPixel(*source, 2 * x + 1, 2 * y + 1)[i];
                    ASSERT_EQ(getPixel(*target, x, y)[i], (sum + 2) / 4) << format;
                }
            }
        }
    }
}

TEST_F(PictureUpTest, BilinearStretchKeepsASlopeBetweenFormats) {
    Held<IImage> source = makeImage(64, 2, 450);
    Held<IImage> target = makeImage(128, 4, 504);
    for (uint32_t y = 0; y < 2; ++y) {
        for (uint32_t i = 0; i < 64 * 3; ++i) {
            getRow(*source, y)[i] = static_cast<uint8_t>(4 * (i / 3));
        }
    }
    ASSERT_TRUE(source->stretch(target.get(), ZYR_INTERPOLATION_LINEAR, ZYR_SUBSAMPLING_NONE));
    for (uint32_t x = 0; x < 128; ++x) {
        const double expected = 4 * ((x + 0.5) / 2 - 0.5);
        ASSERT_NEAR(getPixel(*target, x, 1)[0], expected < 0 ? 0 : (expected > 252 ? 252 : expected), 2.5) << x;
        ASSERT_EQ(getPixel(*target, x, 1)[3], 0xFF);
    }
    EXPECT_TRUE(source->changeSize(32, 2, 1, ZYR_INTERPOLATION_LINEAR, ZYR_SUBSAMPLING_BOX));
    EXPECT_NEAR(getPixel(*source, 16, 0)[0], 130, 3);
    EXPECT_FALSE(source->stretch(source.get(), ZYR_INTERPOLATION_LINEAR, ZYR_SUBSAMPLING_NONE));
    EXPECT_FALSE(source->stretch(make<IImage>().get(), ZYR_INTERPOLATION_LINEAR, ZYR_SUBSAMPLING_NONE));
}

TEST_F(PictureUpTest, CompareLooksAtPixelsAndNothingElse) {
    for (uint32_t format : workFormats) {
        Held<IImage> first = makeImage(7, 3, format);
        Held<IImage> second = makeImage(7, 3, format);
        memset(first->getData(), 0x11, first->getSize());
        memset(second->getData(), 0x22, second->getSize());
        fillWithNumbers(*first);
        fillWithNumbers(*second);
        EXPECT_TRUE(first->compare(second.get())) << format;
        for (uint32_t i = 0; i < first->getBitsPerPixel() / 8; ++i) {
            uint8_t& byte = getRow(*second, 2)[6 * (first->getBitsPerPixel() / 8) + i];
            byte ^= 1;
            const bool isUnused =
                ((format == 501 || format == 505) && i == 3) || ((format == 503 || format == 507) && i == 0);
            EXPECT_EQ(first->compare(second.get()) != 0, isUnused) << format << " " << i;
            byte ^= 1;
        }
    }
    Held<IImage> image = makeImage(7, 3, 500);
    EXPECT_FALSE(image->compare(nullptr));
    EXPECT_FALSE(image->compare(makeImage(7, 4, 500).get()));
    EXPECT_FALSE(image->compare(makeImage(8, 3, 500).get()));
    EXPECT_FALSE(image->compare(makeImage(7, 3, 501).get()));
}

TEST_F(PictureUpTest, CompareOfNarrowFormatsLooksAtPartOfTheLastByte) {
    Held<IImage> first = makeImage(3, 1, 50);
    Held<IImage> second = makeImage(3, 1, 50);
    *getRow(*first, 0) = 0xA0;
    *getRow(*second, 0) = 0xBF;
    EXPECT_TRUE(first->compare(second.get()));
    *getRow(*second, 0) = 0x80;
    EXPECT_FALSE(first->compare(second.get()));
}

TEST_F(PictureUpTest, OverflowModelKeepsTheBlockOfALargerPicture) {
    Held<IImage> image = makeImage(400, 400, 500);
    EXPECT_FALSE(image->setAllocationModel(0, 0));
    EXPECT_FALSE(image->setAllocationModel(2, 0));
    EXPECT_TRUE(image->setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, ZYR_ALLOC_STEP_DOUBLE));
    EXPECT_TRUE(image->init(400, 400, 0, ZYR_PIXEL_FORMAT_RGBA_8, ZYR_COLOR_SPACE_RGB, none, 0));
    void* data = image->getData();
    EXPECT_TRUE(image->init(200, 300, 0, ZYR_PIXEL_FORMAT_RGBA_8, ZYR_COLOR_SPACE_RGB, none, 0));
    EXPECT_EQ(image->getData(), data);
    EXPECT_EQ(image->getPitch(), 800u);
}

TEST_F(PictureUpTest, CopyAndCloneAreDeep) {
    Held<IImage> image = makeImage(9, 3, 504);
    Held<IDataFormatInfo> info(zyr_createObject<IDataFormatInfo>());
    fillWithNumbers(*image);
    image->setColorDataFormatInfo(info.get());
    Held<IImage> copy(static_cast<IImage*>(image->clone()));
    EXPECT_TRUE(copy->compare(image.get()));
    EXPECT_NE(copy->getData(), image->getData());
    EXPECT_EQ(copy->getColorDataFormatInfo(0), info.get());
    EXPECT_EQ(copy->getAlphaDataFormatInfo(0), nullptr);
    EXPECT_EQ(info->getRefCount(), 2u);
    getRow(*image, 0)[0] ^= 0xFF;
    EXPECT_FALSE(copy->compare(image.get()));
    Held<IImage> other = makeImage(2, 2, 450);
    EXPECT_TRUE(other->copy(image.get()));
    EXPECT_TRUE(other->compare(image.get()));
    EXPECT_FALSE(other->copy(info.get()));
    image->clear();
    copy->clear();
    other->clear();
    EXPECT_EQ(info->getRefCount(), 0u);
}

TEST_F(PictureUpTest, PaletteConvertsAndResizes) {
    Held<IPalette> palette = make<IPalette>();
    EXPECT_EQ(palette->getData(), nullptr);
    EXPECT_FALSE(palette->resize(4));
    EXPECT_FALSE(palette->init(0, ZYR_PIXEL_FORMAT_RGB_8));
    EXPECT_FALSE(palette->init(2, static_cast<PixelFormatEnum>(53)));
    EXPECT_FALSE(palette->init(65537, ZYR_PIXEL_FORMAT_RGB_8));
    ASSERT_TRUE(palette->init(2, ZYR_PIXEL_FORMAT_RGB_8));
    EXPECT_EQ(palette->getSize(), 6u);
    uint8_t* colors = static_cast<uint8_t*>(palette->getData());
    for (uint8_t i = 0; i < 6; ++i) {
        EXPECT_EQ(colors[i], 0);
        colors[i] = static_cast<uint8_t>(i + 1);
    }
    Held<IPalette> other = make<IPalette>();
    EXPECT_TRUE(palette->convert(other.get()));
    EXPECT_EQ(other->getFormat(), ZYR_PIXEL_FORMAT_RGB_8);
    ASSERT_TRUE(other->init(1, ZYR_PIXEL_FORMAT_BGRA_8));
    EXPECT_TRUE(palette->convert(other.get()));
    EXPECT_EQ(other->getNumOfIndices(), 2u);
    EXPECT_EQ(0, memcmp(other->getData(), "\3\2\1\xFF\6\5\4\xFF", 8));
    EXPECT_TRUE(other->changeFormat(ZYR_PIXEL_FORMAT_RGB_8));
    EXPECT_EQ(0, memcmp(other->getData(), palette->getData(), 6));
    EXPECT_TRUE(other->resize(3));
    EXPECT_EQ(0, memcmp(other->getData(), "\1\2\3\4\5\6\0\0\0", 9));
    EXPECT_TRUE(other->resize(1));
    EXPECT_EQ(other->getSize(), 3u);
    Held<IPalette> copy(static_cast<IPalette*>(palette->clone()));
    EXPECT_EQ(0, memcmp(copy->getData(), palette->getData(), 6));
    EXPECT_FALSE(palette->convert(palette.get()));
}

} // namespace zyr
