#include "picture_module/picture_module_test.h"
#include "zyr_common/colour/zyr_picture_calls.h"

#include <atomic>
#include <cstring>
#include <thread>

namespace zyr {

namespace {

constexpr uint32_t width = 320;
constexpr uint32_t height = 180;
constexpr uint32_t numOfThreads = 4;
constexpr uint32_t numOfRounds = 20;

/// Converts a picture of one colour there and back; false when another thread's colour comes out.
bool convertThereAndBack(IImage& p_image, uint8_t p_gray, ColorSpaceEnum p_space) {
    std::vector<uint8_t> planes(width * height * 3 / 2);
    uint8_t* u = planes.data() + width * height;
    uint8_t* v = u + width * height / 4;
    memset(p_image.getData(), p_gray, p_image.getSize());
    if (!zyr_picture_convertRGBToYUV(width, height, p_image.getData(), 4, p_image.getPitch(), 1, planes.data(), u, v, 1,
                                     1, 1, width, width / 2, width / 2, ZYR_PLANES_MODEL_I420, p_space) ||
        !zyr_picture_convertYUVToRGB(width, height, planes.data(), u, v, 1, 1, 1, width, width / 2, width / 2,
                                     p_image.getData(), 4, p_image.getPitch(), 0, ZYR_PLANES_MODEL_I420, p_space)) {
        return false;
    }
    for (uint32_t y = 0; y < height; y += 7) {
        const int red = getRow(p_image, y)[4 * (y % width)];
        if (red < p_gray - 3 || red > p_gray + 3) {
            return false;
        }
    }
    return true;
}

} // namespace

TEST_F(PictureUpTest, ThreadsShareStorageAndScalersWithoutMixingPictures) {
    std::atomic<uint32_t> failures = 0;
    std::vector<std::thread> threads;
    for (uint32_t i = 0; i < numOfThreads; ++i) {
        threads.emplace_back([&failures, i] {
            for (uint32_t round = 0; round < numOfRounds; ++round) {
                Held<IImage> image = makeImage(width, height, 500);
                const ColorSpaceEnum space = round % 2 == 0 ? ZYR_COLOR_SPACE_BT_709_FR : ZYR_COLOR_SPACE_BT_601_FR;
                failures += !convertThereAndBack(*image, static_cast<uint8_t>(20 + 50 * i + round), space);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failures, 0u);
}

TEST_F(PictureUpTest, ThreadsTakeOnePictureOfOddSizeFromFramesOfTheirOwn) {
    Held<IImage> image = makeImage(65, 33, 500);
    fillWithNumbers(*image);
    uint32_t sums[2] = {};
    std::vector<std::thread> threads;
    for (uint32_t& sum : sums) {
        threads.emplace_back([&image, &sum] {
            Held<IUnpackedFrameData> frame(zyr_createInterfaceObject<IUnpackedFrameData>());
            frame->getUnpackedFrameDataReserved()->setSystemMemory(image.get());
            const IImage* given = frame->getSystemMemory(0, 1);
            for (uint32_t i = 0; i < 66 * 34 * 4; ++i) {
                sum = 31 * sum + getRow(*given, 0)[i];
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(sums[0], sums[1]);
}

} // namespace zyr
