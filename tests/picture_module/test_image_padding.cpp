// What lies in a picture behind its odd width or height, where the codecs' conversions read it.

#include "picture_module/picture_module_test.h"

#include <cstring>

namespace zyr {

namespace {

constexpr uint8_t PAINT = 0xCD;

class FacadeImage : public WImage {
public:
    FacadeImage() { initObjectInterface(); }
};

/// The memory is painted first, as if an earlier picture had been there.
void paintAndFill(const IImage& p_image) {
    memset(p_image.getData(), PAINT, size_t{p_image.getPitch()} * ((p_image.getHeight() + 1) & ~1u));
    fillWithNumbers(p_image);
}

/// What a codec gets from a frame that holds the picture.
Held<IUnpackedFrameData> makeFrame(IImage& p_image) {
    Held<IUnpackedFrameData> frame(zyr_createInterfaceObject<IUnpackedFrameData>());
    frame->getUnpackedFrameDataReserved()->setSystemMemory(&p_image);
    return frame;
}

/// Whether the pixels inside are those of fillWithNumbers, and those of the even size copies of the edge.
testing::AssertionResult isPadded(const IImage& p_image) {
    const uint32_t size = p_image.getBitsPerPixel() / 8;
    const uint32_t width = p_image.getWidth();
    const uint32_t height = p_image.getHeight();
    for (uint32_t y = 0; y < ((height + 1) & ~1u); ++y) {
        for (uint32_t i = 0; i < ((width + 1) & ~1u) * size; ++i) {
            const uint32_t column = i < width * size ? i : i - size;
            const uint32_t row = y < height ? y : y - 1;
            if (getRow(p_image, y)[i] != static_cast<uint8_t>(17 * row + 7 * column + 3)) {
                return testing::AssertionFailure() << "byte " << i << " of row " << y << " differs";
            }
        }
    }
    return testing::AssertionSuccess();
}

} // namespace

TEST_F(PictureUpTest, FrameHandsItsPictureOutWithCopiesOfItsEdgeBehindIt) {
    for (const uint32_t format : {500, 504, 450, 53, 700}) {
        for (const auto& [width, height] :
             {std::pair(5u, 3u), std::pair(5u, 4u), std::pair(6u, 3u), std::pair(1u, 1u)}) {
            Held<IImage> image = makeImage(width, height, format);
            Held<IUnpackedFrameData> frame = makeFrame(*image);
            for (int round = 0; round < 2; ++round) { // A picture that is filled anew is padded anew.
                paintAndFill(*image);
                EXPECT_EQ(frame->getSystemMemory(0, 1), image.get());
                EXPECT_TRUE(isPadded(*image)) << format << ", " << width << "x" << height;
            }
        }
    }
}

TEST_F(PictureUpTest, FramePadsAPictureBehindAFacade) {
    Held<IImage> image(new FacadeImage);
    ASSERT_TRUE(image->init(5, 3, 0, ZYR_PIXEL_FORMAT_RGBA_8, ZYR_COLOR_SPACE_RGB, ZYR_PIXEL_FORMAT_NONE, 0));
    Held<IUnpackedFrameData> frame = makeFrame(*image);
    paintAndFill(*image);
    EXPECT_EQ(frame->getSystemMemory(0, 0), image.get());
    EXPECT_TRUE(isPadded(*image));
}

TEST_F(PictureUpTest, FrameLeavesMemoryAloneThatIsNotThePicturesOwn) {
    std::vector<uint8_t> memory(24 * 4, PAINT);
    Held<IImage> image = make<IImage>();
    ASSERT_TRUE(image->bindFixedSizeData(memory.data(), 5, 3, 24, ZYR_PIXEL_FORMAT_RGBA_8, ZYR_COLOR_SPACE_RGB,
                                         ZYR_PIXEL_FORMAT_NONE, 0));
    Held<IUnpackedFrameData> frame = makeFrame(*image);
    frame->getSystemMemory(0, 1);
    EXPECT_EQ(memory, std::vector<uint8_t>(24 * 4, PAINT));
}

TEST_F(PictureUpTest, FramePadsAtTheEndWhereThePitchOfACallerLeavesNoRoom) {
    for (const uint32_t height : {3u, 4u}) {
        Held<IImage> image = make<IImage>();
        ASSERT_TRUE(image->init(5, height, 20, ZYR_PIXEL_FORMAT_RGBA_8, ZYR_COLOR_SPACE_RGB, ZYR_PIXEL_FORMAT_NONE, 0));
        uint8_t* data = getRow(*image, 0);
        memset(data, PAINT, 84);
        fillWithNumbers(*image);
        const std::vector<uint8_t> pixels(data, data + 20 * height);
        makeFrame(*image)->getSystemMemory(0, 1);
        EXPECT_EQ(memcmp(data, pixels.data(), pixels.size()), 0) << "the picture itself stays";
        if (height == 3) {
            EXPECT_EQ(memcmp(data + 60, data + 40, 20), 0) << "the last row is repeated";
        }
        EXPECT_EQ(memcmp(data + 80, data + 76, 4), 0) << "the last pixel is repeated";
    }
}

} // namespace zyr
