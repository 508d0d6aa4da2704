#include "picture/zyr_codec_enums.h"
#include "support/zyr_invariant.h"
#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/colour/zyr_picture_calls.h"

#include <gmock/gmock.h>

using namespace zyr;
using testing::HasSubstr;

namespace {

struct Call {
    uint64_t m_numbers[11];
    const void* m_pointers[4];
    uint32_t m_width, m_height, m_model, m_space;
};
Call lastCall;

bool_t recordRGBToYUV(uint32_t p_width, uint32_t p_height, const void* p_source, uint32_t p_step, uint32_t p_pitch,
                      bool_t p_flag, void* p_plane0, void* p_plane1, void* p_plane2, uint32_t p_step0, uint32_t p_step1,
                      uint32_t p_step2, uint32_t p_pitch0, uint32_t p_pitch1, uint32_t p_pitch2,
                      PixelPlanesModelEnum p_model, ColorSpaceEnum p_space) {
    lastCall = {{p_step, p_pitch, p_flag, p_step0, p_step1, p_step2, p_pitch0, p_pitch1, p_pitch2, 0, 0},
                {p_source, p_plane0, p_plane1, p_plane2},
                p_width,
                p_height,
                p_model,
                p_space};
    return 1;
}

bool_t recordYUVToRGB(uint32_t p_width, uint32_t p_height, const void* p_plane0, const void* p_plane1,
                      const void* p_plane2, uint32_t p_step0, uint32_t p_step1, uint32_t p_step2, uint32_t p_pitch0,
                      uint32_t p_pitch1, uint32_t p_pitch2, void* p_target, uint32_t p_step, uint32_t p_pitch,
                      bool_t p_flag, PixelPlanesModelEnum p_model, ColorSpaceEnum p_space) {
    lastCall = {{p_step, p_pitch, p_flag, p_step0, p_step1, p_step2, p_pitch0, p_pitch1, p_pitch2, 0, 0},
                {p_target, p_plane0, p_plane1, p_plane2},
                p_width,
                p_height,
                p_model,
                p_space};
    return 0;
}

uint8_t memory[4];

bool_t callRGBToYUV() {
    return zyr_picture_convertRGBToYUV(640, 480, memory, 4, 2560, 1, memory + 1, memory + 2, memory + 3, 1, 2, 3, 641,
                                       322, 323, ZYR_PLANES_MODEL_I420, ZYR_COLOR_SPACE_BT_601_FR);
}

bool_t callYUVToRGB() {
    return zyr_picture_convertYUVToRGB(640, 480, memory + 1, memory + 2, memory + 3, 1, 2, 3, 641, 322, 323, memory, 4,
                                       2560, 0, ZYR_PLANES_MODEL_I444, ZYR_COLOR_SPACE_BT_709);
}

/// The application data of one test.
class PictureCalls : public testing::Test {
protected:
    void SetUp() override {
        m_appData = new ApplicationData(0, 1);
        m_appData->m_logFile = stdout;
        m_appData->m_logFileOpened = 1;
        zyr_setApplicationData(m_appData);
        lastCall = {};
    }
    void TearDown() override { zyr_setApplicationData(nullptr); }

    ApplicationData* m_appData;
};

} // namespace

TEST(PictureCallsWithoutApplicationData, RefuseWithTheLineOfAnotherCall) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(callRGBToYUV(), 0);
    EXPECT_EQ(callYUVToRGB(), 0);
    const std::string line = "WARN : Application data is NULL, cannot execute call getFontSizeMetrics. Return FALSE\n";
    EXPECT_EQ(testing::internal::GetCapturedStdout(), line + line);
}

TEST_F(PictureCalls, RefuseWhenTheTableIsEmpty) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(callRGBToYUV(), 0);
    EXPECT_EQ(callYUVToRGB(), 0);
    const std::string output = testing::internal::GetCapturedStdout();
    EXPECT_THAT(output, HasSubstr(" WARN  common bool_t zyr::zyr_picture_convertRGBToYUV(uint32_t, uint32_t, "));
    EXPECT_THAT(output, HasSubstr("Function pointer convertRGBToYUV is NULL, unable to execute. Return FALSE\n"));
    EXPECT_THAT(output, HasSubstr("Function pointer convertYUVToRGB is NULL, unable to execute. Return FALSE\n"));
}

TEST_F(PictureCalls, HandRGBToYUVOnUnchanged) {
    m_appData->m_picture->m_convertRGBToYUV = &recordRGBToYUV;
    EXPECT_EQ(callRGBToYUV(), 1);
    const uint64_t numbers[11] = {4, 2560, 1, 1, 2, 3, 641, 322, 323, 0, 0};
    EXPECT_THAT(lastCall.m_numbers, testing::ElementsAreArray(numbers));
    EXPECT_THAT(lastCall.m_pointers, testing::ElementsAre(memory, memory + 1, memory + 2, memory + 3));
    EXPECT_EQ(lastCall.m_width, 640u);
    EXPECT_EQ(lastCall.m_height, 480u);
    EXPECT_EQ(lastCall.m_model, 2u);
    EXPECT_EQ(lastCall.m_space, 3u);
}

TEST_F(PictureCalls, HandYUVToRGBOnUnchangedAndGiveItsResult) {
    m_appData->m_picture->m_convertYUVToRGB = &recordYUVToRGB;
    EXPECT_EQ(callYUVToRGB(), 0);
    const uint64_t numbers[11] = {4, 2560, 0, 1, 2, 3, 641, 322, 323, 0, 0};
    EXPECT_THAT(lastCall.m_numbers, testing::ElementsAreArray(numbers));
    EXPECT_THAT(lastCall.m_pointers, testing::ElementsAre(memory, memory + 1, memory + 2, memory + 3));
    EXPECT_EQ(lastCall.m_model, 9u);
    EXPECT_EQ(lastCall.m_space, 4u);
}

TEST_F(PictureCalls, EndTheProcessWithoutATable) {
    auto call = [this](bool_t (*p_call)()) {
        delete m_appData->m_picture;
        m_appData->m_picture = nullptr;
        p_call();
    };
    ZYR_EXPECT_INVARIANT(call(&callRGBToYUV), "ERROR common bool_t zyr::zyr_picture_convertRGBToYUV.* - "
                                              "assert\\(appData->m_picture != NULL\\)");
    ZYR_EXPECT_INVARIANT(call(&callYUVToRGB), "ERROR common bool_t zyr::zyr_picture_convertYUVToRGB.* - "
                                              "assert\\(appData->m_picture != NULL\\)");
}
