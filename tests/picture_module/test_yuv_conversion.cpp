#include "picture_module/picture_module_test.h"
#include "support/zyr_failing_import.h"
#include "zyr_common/colour/zyr_picture_calls.h"

#include <cmath>
#include <cstring>
#include <string>
#include <tuple>

namespace zyr {

namespace {

constexpr uint8_t guard = 0xA5;
constexpr size_t margin = 64;

struct Size {
    uint32_t m_width;
    uint32_t m_height;
};

struct Model {
    PixelPlanesModelEnum m_model;
    uint32_t m_planes;
    uint32_t m_horizontal;
    uint32_t m_vertical;
};

constexpr Model models[] = {{ZYR_PLANES_MODEL_I420, 3, 2, 2}, {ZYR_PLANES_MODEL_YV12, 3, 2, 2},
                            {ZYR_PLANES_MODEL_NV12, 2, 2, 2}, {ZYR_PLANES_MODEL_NV21, 2, 2, 2},
                            {ZYR_PLANES_MODEL_I410, 3, 4, 4}, {ZYR_PLANES_MODEL_I411, 3, 4, 1},
                            {ZYR_PLANES_MODEL_I422, 3, 2, 1}, {ZYR_PLANES_MODEL_I444, 3, 1, 1}};

constexpr ColorSpaceEnum yuvSpaces[] = {ZYR_COLOR_SPACE_BT_601, ZYR_COLOR_SPACE_BT_601_FR, ZYR_COLOR_SPACE_BT_709,
                                        ZYR_COLOR_SPACE_BT_709_FR};

/// The weights of red and blue and the ranges of the samples.
struct Space {
    double m_red;
    double m_blue;
    double m_lumaOffset;
    double m_lumaScale;
    double m_chromaScale;
};

Space getSpace(ColorSpaceEnum p_space) {
    const bool is709 = p_space == ZYR_COLOR_SPACE_BT_709 || p_space == ZYR_COLOR_SPACE_BT_709_FR;
    const bool isFull = p_space == ZYR_COLOR_SPACE_BT_601_FR || p_space == ZYR_COLOR_SPACE_BT_709_FR;
    return {is709 ? 0.2126 : 0.299, is709 ? 0.0722 : 0.114, isFull ? 0.0 : 16.0, isFull ? 255.0 : 219.0,
            isFull ? 255.0 : 224.0};
}

void toYUV(ColorSpaceEnum p_space, const double (&p_rgb)[3], double (&p_yuv)[3]) {
    const Space space = getSpace(p_space);
    const double luma =
        (space.m_red * p_rgb[0] + (1 - space.m_red - space.m_blue) * p_rgb[1] + space.m_blue * p_rgb[2]) / 255;
    p_yuv[0] = space.m_lumaOffset + space.m_lumaScale * luma;
    p_yuv[1] = 128 + space.m_chromaScale * (p_rgb[2] / 255 - luma) / (2 * (1 - space.m_blue));
    p_yuv[2] = 128 + space.m_chromaScale * (p_rgb[0] / 255 - luma) / (2 * (1 - space.m_red));
}

void toRGB(ColorSpaceEnum p_space, const double (&p_yuv)[3], double (&p_rgb)[3]) {
    const Space space = getSpace(p_space);
    const double luma = (p_yuv[0] - space.m_lumaOffset) / space.m_lumaScale;
    p_rgb[2] = 255 * (luma + 2 * (1 - space.m_blue) * (p_yuv[1] - 128) / space.m_chromaScale);
    p_rgb[0] = 255 * (luma + 2 * (1 - space.m_red) * (p_yuv[2] - 128) / space.m_chromaScale);
    p_rgb[1] = (255 * luma - space.m_red * p_rgb[0] - space.m_blue * p_rgb[2]) / (1 - space.m_red - space.m_blue);
    for (double& value : p_rgb) {
        value = value < 0 ? 0 : (value > 255 ? 255 : value);
    }
}

/// Memory with guards on both sides.
class Guarded {
public:
    explicit Guarded(size_t p_size) : m_bytes(p_size + 2 * margin, guard) {}
    uint8_t* getData() { return m_bytes.data() + margin; }
    bool isIntact() const {
        for (size_t i = 0; i < margin; ++i) {
            if (m_bytes[i] != guard || m_bytes[m_bytes.size() - 1 - i] != guard) {
                return false;
            }
        }
        return true;
    }

private:
    std::vector<uint8_t> m_bytes;
};

/// Planes of one picture, rows with gaps.
struct Planes {
    Planes(const Model& p_model, Size p_size, uint32_t p_step = 1) : m_model(p_model), m_size(p_size), m_step(p_step) {
        for (uint32_t i = 0; i < 3; ++i) {
            const bool isPair = p_model.m_planes == 2 && i == 1;
            const uint32_t samples = i == 0 ? p_size.m_width : getChromaWidth() * (isPair ? 2 : 1);
            const uint32_t rows = i == 0 ? p_size.m_height : getChromaHeight();
            m_pitch[i] = samples * p_step + 5;
            m_memory.emplace_back(i < p_model.m_planes ? size_t{m_pitch[i]} * rows : 0);
        }
    }
    uint32_t getChromaWidth() const { return (m_size.m_width + m_model.m_horizontal - 1) / m_model.m_horizontal; }
    uint32_t getChromaHeight() const { return (m_size.m_height + m_model.m_vertical - 1) / m_model.m_vertical; }
    /// Sample 0 (Y), 1 (U) or 2 (V) of a pixel.
    uint8_t& at(uint32_t p_sample, uint32_t p_x, uint32_t p_y) {
        if (p_sample == 0) {
            return m_memory[0].getData()[p_y * m_pitch[0] + p_x * m_step];
        }
        const uint32_t x = p_x / m_model.m_horizontal;
        const uint32_t y = p_y / m_model.m_vertical;
        if (m_model.m_planes == 2) {
            const bool isFirst = (p_sample == 1) == (m_model.m_model == ZYR_PLANES_MODEL_NV12);
            return m_memory[1].getData()[y * m_pitch[1] + 2 * x + (isFirst ? 0 : 1)];
        }
        const uint32_t plane = m_model.m_model == ZYR_PLANES_MODEL_YV12 ? 3 - p_sample : p_sample;
        return m_memory[plane].getData()[y * m_pitch[plane] + x * m_step];
    }
    bool isIntact() const { return m_memory[0].isIntact() && m_memory[1].isIntact() && m_memory[2].isIntact(); }

    Model m_model;
    Size m_size;
    uint32_t m_step;
    uint32_t m_pitch[3];
    std::vector<Guarded> m_memory;
};

/// Packed pixels, rows with gaps.
struct Packed {
    Packed(Size p_size, uint32_t p_step, bool p_blueFirst)
        : m_step(p_step),
          m_pitch(p_size.m_width * p_step + 7),
          m_blueFirst(p_blueFirst),
          m_memory(size_t{m_pitch} * p_size.m_height) {}
    /// Channel 0 (red), 1, 2 or 3 (alpha).
    uint8_t& at(uint32_t p_channel, uint32_t p_x, uint32_t p_y) {
        const uint32_t place = m_blueFirst && p_channel < 3 ? 2 - p_channel : p_channel;
        return m_memory.getData()[p_y * m_pitch + p_x * m_step + place];
    }

    uint32_t m_step;
    uint32_t m_pitch;
    bool m_blueFirst;
    Guarded m_memory;
};

bool_t callToYUV(Size p_size, Packed& p_packed, Planes& p_planes, ColorSpaceEnum p_space) {
    const bool hasThree = p_planes.m_model.m_planes == 3;
    return zyr_picture_convertRGBToYUV(p_size.m_width, p_size.m_height, p_packed.m_memory.getData(), p_packed.m_step,
                                       p_packed.m_pitch, p_packed.m_blueFirst, p_planes.m_memory[0].getData(),
                                       p_planes.m_memory[1].getData(),
                                       hasThree ? p_planes.m_memory[2].getData() : nullptr, p_planes.m_step,
                                       p_planes.m_step, p_planes.m_step, p_planes.m_pitch[0], p_planes.m_pitch[1],
                                       hasThree ? p_planes.m_pitch[2] : 0, p_planes.m_model.m_model, p_space);
}

bool_t callToRGB(Size p_size, Planes& p_planes, Packed& p_packed, ColorSpaceEnum p_space) {
    const bool hasThree = p_planes.m_model.m_planes == 3;
    return zyr_picture_convertYUVToRGB(
        p_size.m_width, p_size.m_height, p_planes.m_memory[0].getData(), p_planes.m_memory[1].getData(),
        hasThree ? p_planes.m_memory[2].getData() : nullptr, p_planes.m_step, p_planes.m_step, p_planes.m_step,
        p_planes.m_pitch[0], p_planes.m_pitch[1], hasThree ? p_planes.m_pitch[2] : 0, p_packed.m_memory.getData(),
        p_packed.m_step, p_packed.m_pitch, p_packed.m_blueFirst, p_planes.m_model.m_model, p_space);
}

/// Slow gradients of different direction, so that subsampled chroma is close to that of each pixel.
void fill(Packed& p_packed, Size p_size) {
    for (uint32_t y = 0; y < p_size.m_height; ++y) {
        for (uint32_t x = 0; x < p_size.m_width; ++x) {
            p_packed.at(0, x, y) = static_cast<uint8_t>(40 + x);
            p_packed.at(1, x, y) = static_cast<uint8_t>(220 - y);
            p_packed.at(2, x, y) = static_cast<uint8_t>(60 + (x + y) / 2);
            if (p_packed.m_step == 4) {
                p_packed.at(3, x, y) = static_cast<uint8_t>(x * 3);
            }
        }
    }
}

/// The mean over the pixels that share a chroma sample.
void getMean(Packed& p_packed, Size p_size, const Model& p_model, uint32_t p_x, uint32_t p_y, double (&p_rgb)[3]) {
    const uint32_t x0 = p_x / p_model.m_horizontal * p_model.m_horizontal;
    const uint32_t y0 = p_y / p_model.m_vertical * p_model.m_vertical;
    double count = 0;
    p_rgb[0] = p_rgb[1] = p_rgb[2] = 0;
    for (uint32_t y = y0; y < y0 + p_model.m_vertical && y < p_size.m_height; ++y) {
        for (uint32_t x = x0; x < x0 + p_model.m_horizontal && x < p_size.m_width; ++x, ++count) {
            for (uint32_t i = 0; i < 3; ++i) {
                p_rgb[i] += p_packed.at(i, x, y);
            }
        }
    }
    for (double& value : p_rgb) {
        value /= count;
    }
}

constexpr Size sizes[] = {{2, 2}, {16, 16}, {34, 18}, {64, 48}, {17, 13}, {1, 1}};

std::string describe(const Model& p_model, ColorSpaceEnum p_space, Size p_size, uint32_t p_step, bool p_blueFirst) {
    return "model " + std::to_string(p_model.m_model) + " space " + std::to_string(p_space) + " size " +
           std::to_string(p_size.m_width) + "x" + std::to_string(p_size.m_height) + " step " + std::to_string(p_step) +
           (p_blueFirst ? " BGR" : " RGB");
}

} // namespace

TEST_F(PictureUpTest, RGBBecomesYUVInEveryModelAndSpace) {
    for (const Model& model : models) {
        for (ColorSpaceEnum space : yuvSpaces) {
            for (Size size : sizes) {
                for (uint32_t step : {4u, 3u}) {
                    for (bool blueFirst : {true, false}) {
                        SCOPED_TRACE(describe(model, space, size, step, blueFirst));
                        Packed packed(size, step, blueFirst);
                        Planes planes(model, size);
                        fill(packed, size);
                        ASSERT_TRUE(callToYUV(size, packed, planes, space));
                        EXPECT_TRUE(planes.isIntact());
                        double lumaError = 0;
                        double chromaError = 0;
                        for (uint32_t y = 0; y < size.m_height; ++y) {
                            for (uint32_t x = 0; x < size.m_width; ++x) {
                                const double rgb[3] = {double(packed.at(0, x, y)), double(packed.at(1, x, y)),
                                                       double(packed.at(2, x, y))};
                                double mean[3];
                                double yuv[3];
                                double chroma[3];
                                getMean(packed, size, model, x, y, mean);
                                toYUV(space, rgb, yuv);
                                toYUV(space, mean, chroma);
                                lumaError = std::fmax(lumaError, std::fabs(yuv[0] - planes.at(0, x, y)));
                                chromaError = std::fmax(chromaError, std::fabs(chroma[1] - planes.at(1, x, y)));
                                chromaError = std::fmax(chromaError, std::fabs(chroma[2] - planes.at(2, x, y)));
                            }
                        }
                        EXPECT_LE(lumaError, 1.6);
                        EXPECT_LE(chromaError, 2.1);
                    }
                }
            }
        }
    }
}

TEST_F(PictureUpTest, YUVBecomesRGBInEveryModelAndSpace) {
    for (const Model& model : models) {
        for (ColorSpaceEnum space : yuvSpaces) {
            for (Size size : sizes) {
                for (uint32_t step : {4u, 3u}) {
                    for (bool blueFirst : {true, false}) {
                        SCOPED_TRACE(describe(model, space, size, step, blueFirst));
                        Packed packed(size, step, blueFirst);
                        Planes planes(model, size);
                        for (uint32_t y = 0; y < size.m_height; ++y) {
                            for (uint32_t x = 0; x < size.m_width; ++x) {
                                planes.at(0, x, y) = static_cast<uint8_t>(50 + 2 * x + y);
                                planes.at(1, x, y) = static_cast<uint8_t>(100 + x / model.m_horizontal);
                                planes.at(2, x, y) = static_cast<uint8_t>(150 - y / model.m_vertical);
                            }
                        }
                        ASSERT_TRUE(callToRGB(size, planes, packed, space));
                        EXPECT_TRUE(packed.m_memory.isIntact());
                        double error = 0;
                        for (uint32_t y = 0; y < size.m_height; ++y) {
                            for (uint32_t x = 0; x < size.m_width; ++x) {
                                const double yuv[3] = {double(planes.at(0, x, y)), double(planes.at(1, x, y)),
                                                       double(planes.at(2, x, y))};
                                double rgb[3];
                                toRGB(space, yuv, rgb);
                                for (uint32_t i = 0; i < 3; ++i) {
                                    error = std::fmax(error, std::fabs(rgb[i] - packed.at(i, x, y)));
                                }
                                if (step == 4) {
                                    ASSERT_EQ(packed.at(3, x, y), 0xFF);
                                }
                            }
                        }
                        // Its limited BT.709 has a blue coefficient of seven bits.
                        EXPECT_LE(error, space == ZYR_COLOR_SPACE_BT_709 ? 4.2 : 2.6);
                    }
                }
            }
        }
    }
}

TEST_F(PictureUpTest, BothPixelOrdersGiveTheSamePlanes) {
    const Size size = {64, 48};
    for (const Model& model : models) {
        for (ColorSpaceEnum space : yuvSpaces) {
            Packed blueFirst(size, 4, true);
            Packed redFirst(size, 4, false);
            fill(blueFirst, size);
            fill(redFirst, size);
            Planes first(model, size);
            Planes second(model, size);
            ASSERT_TRUE(callToYUV(size, blueFirst, first, space));
            ASSERT_TRUE(callToYUV(size, redFirst, second, space));
            for (uint32_t y = 0; y < size.m_height; ++y) {
                for (uint32_t x = 0; x < size.m_width; ++x) {
                    for (uint32_t i = 0; i < 3; ++i) {
                        ASSERT_NEAR(first.at(i, x, y), second.at(i, x, y), 1) << describe(model, space, size, 4, true);
                    }
                }
            }
        }
    }
}

TEST_F(PictureUpTest, SampleStepsOfTwoGiveTheSamePictures) {
    const Size size = {34, 18};
    for (const Model& model : models) {
        if (model.m_planes != 3) {
            continue;
        }
        Packed packed(size, 4, true);
        fill(packed, size);
        Planes dense(model, size);
        Planes spread(model, size, 2);
        ASSERT_TRUE(callToYUV(size, packed, dense, ZYR_COLOR_SPACE_BT_601));
        ASSERT_TRUE(callToYUV(size, packed, spread, ZYR_COLOR_SPACE_BT_601));
        EXPECT_TRUE(spread.isIntact());
        Packed fromDense(size, 4, false);
        Packed fromSpread(size, 4, false);
        ASSERT_TRUE(callToRGB(size, dense, fromDense, ZYR_COLOR_SPACE_BT_709));
        ASSERT_TRUE(callToRGB(size, spread, fromSpread, ZYR_COLOR_SPACE_BT_709));
        for (uint32_t y = 0; y < size.m_height; ++y) {
            for (uint32_t x = 0; x < size.m_width; ++x) {
                for (uint32_t i = 0; i < 3; ++i) {
                    ASSERT_EQ(dense.at(i, x, y), spread.at(i, x, y)) << model.m_model;
                    ASSERT_EQ(fromDense.at(i, x, y), fromSpread.at(i, x, y)) << model.m_model << " " << x << " " << y;
                }
            }
        }
        // The bytes between the samples are nobody's.
        EXPECT_EQ(spread.m_memory[0].getData()[1], guard);
    }
}

TEST_F(PictureUpTest, SinglePlaneHoldsPixelsInOrderRGBA) {
    const Size size = {9, 4};
    Packed packed(size, 4, true);
    fill(packed, size);
    Packed plane(size, 4, false);
    Packed back(size, 3, true);
    ASSERT_TRUE(zyr_picture_convertRGBToYUV(9, 4, packed.m_memory.getData(), 4, packed.m_pitch, 1,
                                            plane.m_memory.getData(), nullptr, nullptr, 4, 0, 0, plane.m_pitch, 0, 0,
                                            ZYR_PLANES_MODEL_SINGLE, ZYR_COLOR_SPACE_RGB));
    ASSERT_TRUE(zyr_picture_convertYUVToRGB(9, 4, plane.m_memory.getData(), nullptr, nullptr, 4, 0, 0, plane.m_pitch, 0,
                                            0, back.m_memory.getData(), 3, back.m_pitch, 1, ZYR_PLANES_MODEL_SINGLE,
                                            ZYR_COLOR_SPACE_RGB));
    for (uint32_t y = 0; y < 4; ++y) {
        for (uint32_t x = 0; x < 9; ++x) {
            for (uint32_t i = 0; i < 4; ++i) {
                ASSERT_EQ(plane.at(i, x, y), packed.at(i, x, y));
            }
            for (uint32_t i = 0; i < 3; ++i) {
                ASSERT_EQ(back.at(i, x, y), packed.at(i, x, y));
            }
        }
    }
    EXPECT_TRUE(plane.m_memory.isIntact() && back.m_memory.isIntact());
}

TEST_F(PictureUpTest, RGBInThreeFullPlanesIsExact) {
    const Size size = {17, 5};
    Packed packed(size, 3, false);
    fill(packed, size);
    Planes planes(models[7], size, 2);
    Packed back(size, 4, true);
    ASSERT_TRUE(callToYUV(size, packed, planes, ZYR_COLOR_SPACE_RGB));
    ASSERT_TRUE(callToRGB(size, planes, back, ZYR_COLOR_SPACE_RGB));
    for (uint32_t y = 0; y < size.m_height; ++y) {
        for (uint32_t x = 0; x < size.m_width; ++x) {
            for (uint32_t i = 0; i < 3; ++i) {
                ASSERT_EQ(planes.at(i, x, y), packed.at(i, x, y));
                ASSERT_EQ(back.at(i, x, y), packed.at(i, x, y));
            }
            ASSERT_EQ(back.at(3, x, y), 0xFF);
        }
    }
}

TEST_F(PictureUpTest, ConversionsRefuseWhatHasNoMeaning) {
    const Size size = {16, 16};
    Packed packed(size, 4, true);
    for (const Model& model : models) {
        Planes planes(model, size);
        EXPECT_FALSE(callToYUV(size, packed, planes, ZYR_COLOR_SPACE_NONE));
        EXPECT_FALSE(callToRGB(size, planes, packed, ZYR_COLOR_SPACE_NONE));
        EXPECT_FALSE(callToYUV(size, packed, planes, static_cast<ColorSpaceEnum>(6)));
        EXPECT_EQ(callToYUV(size, packed, planes, ZYR_COLOR_SPACE_RGB), model.m_model == ZYR_PLANES_MODEL_I444);
        EXPECT_EQ(callToRGB(size, planes, packed, ZYR_COLOR_SPACE_RGB), model.m_model == ZYR_PLANES_MODEL_I444);
    }
    Planes planes({ZYR_PLANES_MODEL_NONE, 3, 1, 1}, size);
    EXPECT_FALSE(callToYUV(size, packed, planes, ZYR_COLOR_SPACE_BT_601));
    planes.m_model.m_model = ZYR_PLANES_MODEL_SINGLE;
    EXPECT_FALSE(callToYUV(size, packed, planes, ZYR_COLOR_SPACE_BT_601));
    planes.m_model.m_model = static_cast<PixelPlanesModelEnum>(10);
    EXPECT_FALSE(callToRGB(size, planes, packed, ZYR_COLOR_SPACE_BT_601));
}

TEST_F(PictureUpTest, ConversionWithoutAScalerFailsAndTheNextOneWorks) {
    const Model model = {ZYR_PLANES_MODEL_I422, 3, 2, 1};
    uint32_t width = 18; // Each time another one, so that no scaler is at rest for it.
    for (const auto& [function, result, isTold] :
         {std::tuple{"sws_getContext", 0, true}, std::tuple{"sws_setColorspaceDetails", -1, true},
          std::tuple{"sws_scale", 0, false}}) {
        const Size size = {width++, 14};
        Packed packed(size, 4, true);
        Planes planes(model, size);
        fill(packed, size);
        const size_t lines = m_application->getMessages().size();
        {
            const test::FailingImport failing("zyr_picture.so", function, result);
            EXPECT_FALSE(callToYUV(size, packed, planes, ZYR_COLOR_SPACE_BT_709)) << function;
            EXPECT_TRUE(failing.hasFailed()) << function;
        }
        const std::vector<std::string> messages = m_application->getMessages();
        EXPECT_EQ(messages.size(), lines + (isTold ? 1 : 0)) << function;
        if (isTold) {
            EXPECT_EQ(messages.back(),
                      "Unable to create scaler for picture of " + std::to_string(size.m_width) + " by 14 pixels");
        }
        EXPECT_TRUE(callToYUV(size, packed, planes, ZYR_COLOR_SPACE_BT_709)) << function;
    }
}

TEST_F(PictureUpTest, ConversionsRefuseWhatLiesOutsideTheRows) {
    const Size size = {16, 16};
    Packed packed(size, 4, true);
    Planes planes(models[0], size);
    auto toYUV = [&](uint32_t p_width, uint32_t p_height, uint32_t p_step, uint32_t p_pitch, uint32_t p_pitch0,
                     uint32_t p_pitch1) {
        return zyr_picture_convertRGBToYUV(p_width, p_height, packed.m_memory.getData(), p_step, p_pitch, 1,
                                           planes.m_memory[0].getData(), planes.m_memory[1].getData(),
                                           planes.m_memory[2].getData(), 1, 1, 1, p_pitch0, p_pitch1, p_pitch1,
                                           ZYR_PLANES_MODEL_I420, ZYR_COLOR_SPACE_BT_601);
    };
    EXPECT_TRUE(toYUV(16, 16, 4, 64, 16, 8));
    EXPECT_FALSE(toYUV(0, 16, 4, 64, 16, 8));
    EXPECT_FALSE(toYUV(16, 0, 4, 64, 16, 8));
    EXPECT_FALSE(toYUV(16, 16, 4, 63, 16, 8));
    EXPECT_FALSE(toYUV(16, 16, 4, 64, 15, 8));
    EXPECT_FALSE(toYUV(16, 16, 4, 64, 16, 7));
    EXPECT_FALSE(toYUV(16, 16, 2, 64, 16, 8));
    EXPECT_FALSE(toYUV(16, 16, 5, 640, 16, 8));
    EXPECT_FALSE(toYUV(0x40000001, 16, 4, 64, 16, 8)); // times four it would wrap to 4
    EXPECT_FALSE(toYUV(16, 16, 4, 0x80000000, 16, 8));
    EXPECT_FALSE(toYUV(16, 0x80000000, 4, 64, 16, 8));
    EXPECT_FALSE(zyr_picture_convertYUVToRGB(16, 16, nullptr, planes.m_memory[1].getData(),
                                             planes.m_memory[2].getData(), 1, 1, 1, 16, 8, 8, packed.m_memory.getData(),
                                             4, 64, 0, ZYR_PLANES_MODEL_I420, ZYR_COLOR_SPACE_BT_601));
    EXPECT_FALSE(zyr_picture_convertYUVToRGB(16, 16, planes.m_memory[0].getData(), planes.m_memory[1].getData(),
                                             nullptr, 1, 1, 1, 16, 8, 8, packed.m_memory.getData(), 4, 64, 0,
                                             ZYR_PLANES_MODEL_I420, ZYR_COLOR_SPACE_BT_601));
    EXPECT_FALSE(zyr_picture_convertYUVToRGB(16, 16, planes.m_memory[0].getData(), planes.m_memory[1].getData(),
                                             planes.m_memory[2].getData(), 1, 1, 1, 16, 8, 8, nullptr, 4, 64, 0,
                                             ZYR_PLANES_MODEL_I420, ZYR_COLOR_SPACE_BT_601));
    EXPECT_FALSE(zyr_picture_convertYUVToRGB(16, 16, planes.m_memory[0].getData(), planes.m_memory[1].getData(),
                                             planes.m_memory[2].getData(), 1, 0, 1, 16, 8, 8, packed.m_memory.getData(),
                                             4, 64, 0, ZYR_PLANES_MODEL_I420, ZYR_COLOR_SPACE_BT_601));
}

TEST_F(PictureUpTest, EvenSizesOfOddPicturesLieWithinTheirStorage) {
    Held<IImage> source = makeImage(641, 481, 504);
    Held<IImage> target = makeImage(641, 481, 500);
    source->clearColor(ColorRGBA<float>(0.2f, 0.6f, 0.8f, 1));
    std::vector<uint8_t> planes(642 * 482 * 3 / 2);
    uint8_t* u = planes.data() + 642 * 482;
    uint8_t* v = u + 321 * 241;
    EXPECT_TRUE(zyr_picture_convertRGBToYUV(642, 482, source->getData(), 4, source->getPitch(), 1, planes.data(), u, v,
                                            1, 1, 1, 642, 321, 321, ZYR_PLANES_MODEL_I420, ZYR_COLOR_SPACE_BT_601_FR));
    EXPECT_TRUE(zyr_picture_convertYUVToRGB(642, 482, planes.data(), u, v, 1, 1, 1, 642, 321, 321, target->getData(), 4,
                                            target->getPitch(), 0, ZYR_PLANES_MODEL_I420, ZYR_COLOR_SPACE_BT_601_FR));
    EXPECT_NEAR(getPixel(*target, 320, 240)[0], 51, 2);
    EXPECT_NEAR(getPixel(*target, 320, 240)[1], 153, 2);
    EXPECT_NEAR(getPixel(*target, 320, 240)[2], 204, 2);
}

} // namespace zyr
