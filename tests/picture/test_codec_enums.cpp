#include "picture/zyr_codec_enums.h"
#include "zyr_common/text/zyr_string.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

using namespace zyr;

namespace {

/// Every row in both directions, and neither the next number nor the lower-case word.
template <typename E> void expectTexts(const std::vector<std::string>& p_texts) {
    for (uint32_t i = 0; i < p_texts.size(); ++i) {
        String text;
        uint32_t number = i;
        EXPECT_EQ(zyr_convertEnumeration<E>(text, number, 0), 1) << i;
        EXPECT_STREQ(text.getData(), p_texts[i].c_str());
        number = 0xDEAD;
        text = p_texts[i].c_str();
        EXPECT_EQ(zyr_convertEnumeration<E>(text, number, 1), 1) << p_texts[i];
        EXPECT_EQ(number, i);
    }
    String text("before");
    uint32_t number = static_cast<uint32_t>(p_texts.size());
    EXPECT_EQ(zyr_convertEnumeration<E>(text, number, 0), 0);
    EXPECT_STREQ(text.getData(), "before");
    text = "none";
    number = 77;
    EXPECT_EQ(zyr_convertEnumeration<E>(text, number, 1), 0);
    EXPECT_EQ(number, 77u);
}

} // namespace

TEST(CodecEnumerations, AreThirtyTwoBitsWide) {
    EXPECT_EQ(sizeof(RequestTypeEnum), 4u);
    EXPECT_EQ(sizeof(ProposalTypeEnum), 4u);
    EXPECT_EQ(sizeof(CodecRatingEnum), 4u);
    EXPECT_EQ(sizeof(PixelPlanesModelEnum), 4u);
    EXPECT_EQ(sizeof(ColorSpaceEnum), 4u);
    EXPECT_EQ(sizeof(FrameCodecProfileEnum), 4u);
    EXPECT_EQ(sizeof(CompressionTypeEnum), 4u);
}

TEST(CodecEnumerations, RequestTypesHaveTheirTexts) {
    expectTexts<RequestTypeEnum>({"NONE",         "OPTIONAL",     "MANDATORY",    "OPTIONAL_1",   "MANDATORY_1",
                                  "OPTIONAL_2",   "MANDATORY_2",  "OPTIONAL_3",   "MANDATORY_3",  "OPTIONAL_4",
                                  "MANDATORY_4",  "OPTIONAL_5",   "MANDATORY_5",  "OPTIONAL_6",   "MANDATORY_6",
                                  "OPTIONAL_7",   "MANDATORY_7",  "OPTIONAL_8",   "MANDATORY_8",  "OPTIONAL_9",
                                  "MANDATORY_9",  "OPTIONAL_10",  "MANDATORY_10", "OPTIONAL_11",  "MANDATORY_11",
                                  "OPTIONAL_12",  "MANDATORY_12", "OPTIONAL_13",  "MANDATORY_13", "OPTIONAL_14",
                                  "MANDATORY_14", "OPTIONAL_15",  "MANDATORY_15", "OPTIONAL_16",  "MANDATORY_16"});
}

TEST(CodecEnumerations, OtherTypesHaveTheirTexts) {
    expectTexts<ProposalTypeEnum>({"NONE", "OPTIONAL", "MANDATORY"});
    expectTexts<CodecRatingEnum>({"NONE", "ULTRA_SLOW", "SUPER_SLOW", "VERY_SLOW", "SLOW", "NORMAL", "FAST",
                                  "VERY_FAST", "SUPER_FAST", "ULTRA_FAST"});
    expectTexts<PixelPlanesModelEnum>(
        {"NONE", "SINGLE", "I420", "YV12", "NV12", "NV21", "I410", "I411", "I422", "I444"});
    expectTexts<ColorSpaceEnum>({"NONE", "RGB", "BT_601", "BT_601_FR", "BT_709", "BT_709_FR"});
    expectTexts<FrameCodecProfileEnum>({"NONE", "BASELINE", "MAIN", "HIGH"});
    expectTexts<CompressionTypeEnum>({"NONE", "RLE", "LZ4", "ZIP"});
}

TEST(CodecEnumerations, PartOfAWordIsUnknown) {
    String text("ULTRA");
    uint32_t number = 5;
    EXPECT_EQ(zyr_convertEnumeration<CodecRatingEnum>(text, number, 1), 0);
    EXPECT_EQ(number, 5u);
    number = 10;
    EXPECT_EQ(zyr_convertEnumeration<CodecRatingEnum>(text, number, 0), 0);
    EXPECT_STREQ(text.getData(), "ULTRA");
}

TEST(CodecEnumerations, ConvertersServeSeveralThreadsAtOnce) {
    std::vector<std::thread> threads;
    std::atomic<int> failures = 0;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&failures] {
            for (uint32_t number = 0; number < 4; ++number) {
                String text;
                uint32_t back = 99;
                uint32_t asked = number;
                failures += !zyr_convertEnumeration<CompressionTypeEnum>(text, asked, 0);
                failures += !zyr_convertEnumeration<CompressionTypeEnum>(text, back, 1);
                failures += back != number;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failures, 0);
}

TEST(RequestPriority, IsTheNumberInTheText) {
    for (uint32_t value = 3; value <= 34; ++value) {
        EXPECT_EQ(zyr_getRequestPriority(static_cast<RequestTypeEnum>(value)), (value - 1) / 2) << value;
    }
    EXPECT_EQ(zyr_getRequestPriority(ZYR_REQUEST_OPTIONAL_16), 16);
    EXPECT_EQ(zyr_getRequestPriority(ZYR_REQUEST_MANDATORY_16), 16);
}

TEST(RequestPriority, IsZeroOutsideTheRankedValues) {
    for (uint32_t value : {0u, 1u, 2u, 35u, 36u, 1000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(zyr_getRequestPriority(static_cast<RequestTypeEnum>(value)), 0) << value;
    }
}

TEST(RequestMandatory, HoldsForEvenValuesFromTwo) {
    for (uint32_t value = 0; value < 80; ++value) {
        const bool_t expected = value >= 2 && value <= 34 && value % 2 == 0;
        EXPECT_EQ(zyr_isRequestMandatory(static_cast<RequestTypeEnum>(value)), expected) << value;
    }
    EXPECT_EQ(zyr_isRequestMandatory(static_cast<RequestTypeEnum>(0xFFFFFFFE)), 0);
}

TEST(FrameLayerType, HasItsTexts) {
    const char* texts[] = {"None", "SmallDynamic", "LargeDynamic", "QualityUpdate", "Unknown", "Unknown"};
    for (uint32_t value = 0; value < 6; ++value) {
        EXPECT_STREQ(zyr_getFrameLayerTypeString(static_cast<FrameLayerTypeEnum>(value)), texts[value]);
    }
}
