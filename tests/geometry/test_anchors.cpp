#include "zyr_common/geometry/zyr_anchors.h"

#include "zyr_common/geometry/zyr_shape_enums.h"

#include <gtest/gtest.h>
#include <vector>

namespace zyr {

namespace {

typedef std::vector<std::pair<int, std::string>> Texts;

/// The sixteen separators behind a table.
Texts withSeparators(Texts p_texts, const std::string& p_axis) {
    for (int i = 0; i < 16; ++i) {
        p_texts.emplace_back(128 + i, p_axis + "_SEPARATOR_" + std::to_string(i + 1));
    }
    return p_texts;
}

template <typename E>
void expectTexts(const Texts& p_expected, const char* (*p_getString)(E), void (*p_getStrings)(List<String>&)) {
    std::vector<std::string> expected(256, "Unknown");
    List<String> list;
    list.pushBack("before");
    p_getStrings(list);
    List<String>::iterator item = list.begin();
    EXPECT_EQ(*item, "before");
    for (const auto& [number, text] : p_expected) {
        expected[number] = text;
        ++item;
        EXPECT_EQ(*item, text.c_str());
    }
    EXPECT_EQ(list.getSize(), p_expected.size() + 1);
    for (int number = 0; number < 256; ++number) {
        EXPECT_EQ(p_getString(E(number)), expected[number]) << number;
    }
}

template <typename E> void expectMaps(const Texts& p_expected, const EnumerationMaps<E>& p_maps) {
    EXPECT_EQ(p_maps.m_numbers.getSize(), p_expected.size());
    EXPECT_EQ(p_maps.m_texts.getSize(), p_expected.size());
    auto number = p_maps.m_texts.beginConst();
    for (const auto& [value, text] : p_expected) {
        EXPECT_EQ(number->m_first, value);
        EXPECT_EQ(number->m_second, text.c_str());
        auto found = p_maps.m_numbers.findConst(text.c_str());
        ASSERT_NE(found, p_maps.m_numbers.endConst());
        EXPECT_EQ(found->m_second, value);
        ++number;
    }
}

const Texts c_positionXTexts = withSeparators({{0, "LEFT"},
                                               {1, "RIGHT"},
                                               {2, "CENTER"},
                                               {3, "PARENT_WIDTH_PERCENT"},
                                               {4, "ABSOLUTE"},
                                               {5, "PREV_LEFT"},
                                               {6, "PREV_RIGHT"},
                                               {7, "PREV_CENTER"},
                                               {8, "PREV_LEFT_PLUS_WIDTH_PERCENT"},
                                               {9, "NEXT_LEFT"},
                                               {10, "NEXT_RIGHT"},
                                               {11, "NEXT_CENTER"},
                                               {12, "NEXT_LEFT_PLUS_WIDTH_PERCENT"},
                                               {13, "RIGHT_MINUS_WIDTH"},
                                               {14, "PARENT_WIDTH_PERCENT_MINUS_WIDTH"},
                                               {15, "PARENT_WIDTH_PERCENT_WITHOUT_WIDTH"}},
                                              "V");
const Texts c_positionYTexts = withSeparators({{0, "TOP"},
                                               {1, "BOTTOM"},
                                               {2, "CENTER"},
                                               {3, "PARENT_HEIGHT_PERCENT"},
                                               {4, "ABSOLUTE"},
                                               {5, "PREV_TOP"},
                                               {6, "PREV_BOTTOM"},
                                               {7, "PREV_CENTER"},
                                               {8, "PREV_TOP_PLUS_HEIGHT_PERCENT"},
                                               {9, "NEXT_TOP"},
                                               {10, "NEXT_BOTTOM"},
                                               {11, "NEXT_CENTER"},
                                               {12, "NEXT_TOP_PLUS_HEIGHT_PERCENT"},
                                               {13, "BOTTOM_MINUS_HEIGHT"},
                                               {14, "PARENT_HEIGHT_PERCENT_MINUS_HEIGHT"},
                                               {15, "PARENT_HEIGHT_PERCENT_WITHOUT_HEIGHT"}},
                                              "H");
const Texts c_positionZTexts = withSeparators({{0, "NEAR"},
                                               {1, "FAR"},
                                               {2, "CENTER"},
                                               {3, "PARENT_DEPTH_PERCENT"},
                                               {4, "ABSOLUTE"},
                                               {5, "PREV_NEAR"},
                                               {6, "PREV_FAR"},
                                               {7, "PREV_CENTER"},
                                               {8, "PREV_NEAR_PLUS_DEPTH_PERCENT"},
                                               {9, "NEXT_NEAR"},
                                               {10, "NEXT_FAR"},
                                               {11, "NEXT_CENTER"},
                                               {12, "NEXT_NEAR_PLUS_DEPTH_PERCENT"},
                                               {13, "FAR_MINUS_DEPTH"},
                                               {14, "PARENT_DEPTH_PERCENT_MINUS_DEPTH"},
                                               {15, "PARENT_DEPTH_PERCENT_WITHOUT_DEPTH"}},
                                              "D");
const Texts c_sizeWidthTexts = withSeparators({{0, "WIDTH"},
                                               {1, "PARENT_WIDTH"},
                                               {2, "PARENT_WIDTH_PERCENT"},
                                               {3, "RATIO"},
                                               {4, "RATIO_ASPECT"},
                                               {5, "RATIO_ASPECT_UPPER_LIMIT"},
                                               {6, "RATIO_ASPECT_LOWER_LIMIT"},
                                               {7, "LEFT"},
                                               {8, "RIGHT"},
                                               {9, "CENTER"},
                                               {10, "PREV_LEFT"},
                                               {11, "PREV_RIGHT"},
                                               {12, "PREV_CENTER"},
                                               {13, "PREV_WIDTH"},
                                               {14, "PREV_WIDTH_PERCENT"},
                                               {15, "NEXT_LEFT"},
                                               {16, "NEXT_RIGHT"},
                                               {17, "NEXT_CENTER"},
                                               {18, "NEXT_WIDTH"},
                                               {19, "NEXT_WIDTH_PERCENT"},
                                               {20, "WIDTH_NEWLINE"},
                                               {21, "CONTENT_WIDTH"},
                                               {22, "CONTENT_WIDTH_NO_DS"}},
                                              "V");
const Texts c_sizeHeightTexts = withSeparators({{0, "HEIGHT"},
                                                {1, "PARENT_HEIGHT"},
                                                {2, "PARENT_HEIGHT_PERCENT"},
                                                {3, "RATIO"},
                                                {4, "RATIO_ASPECT"},
                                                {5, "RATIO_ASPECT_UPPER_LIMIT"},
                                                {6, "RATIO_ASPECT_LOWER_LIMIT"},
                                                {7, "TOP"},
                                                {8, "BOTTOM"},
                                                {9, "CENTER"},
                                                {10, "PREV_TOP"},
                                                {11, "PREV_BOTTOM"},
                                                {12, "PREV_CENTER"},
                                                {13, "PREV_HEIGHT"},
                                                {14, "PREV_HEIGHT_PERCENT"},
                                                {15, "NEXT_TOP"},
                                                {16, "NEXT_BOTTOM"},
                                                {17, "NEXT_CENTER"},
                                                {18, "NEXT_HEIGHT"},
                                                {19, "NEXT_HEIGHT_PERCENT"},
                                                {20, "HEIGHT_NEWLINE"},
                                                {21, "CONTENT_HEIGHT"},
                                                {22, "CONTENT_HEIGHT_NO_DS"}},
                                               "H");
const Texts c_sizeDepthTexts = withSeparators({{0, "DEPTH"},
                                               {1, "PARENT_DEPTH"},
                                               {2, "PARENT_DEPTH_PERCENT"},
                                               {3, "RATIO"},
                                               {4, "RATIO_ASPECT"},
                                               {5, "RATIO_ASPECT_UPPER_LIMIT"},
                                               {6, "RATIO_ASPECT_LOWER_LIMIT"},
                                               {7, "NEAR"},
                                               {8, "FAR"},
                                               {9, "CENTER"},
                                               {10, "PREV_NEA"},
                                               {11, "PREV_FAR"},
                                               {12, "PREV_CENTER"},
                                               {13, "PREV_DEPTH"},
                                               {14, "PREV_DEPTH_PERCENT"},
                                               {15, "NEXT_NEAR"},
                                               {16, "NEXT_FAR"},
                                               {17, "NEXT_CENTER"},
                                               {18, "NEXT_DEPTH"},
                                               {19, "NEXT_DEPTH_PERCENT"},
                                               {20, "DEPTH_NEWLINE"},
                                               {21, "CONTENT_DEPTH"}},
                                              "D");

} // namespace

TEST(PositionXAnchor, HasItsTexts) {
    expectTexts(c_positionXTexts, &zyr_getPositionXAnchorString, &zyr_getPositionXAnchorStrings);
    expectMaps(c_positionXTexts, g_positionXAnchorMaps);
}

TEST(PositionYAnchor, HasItsTexts) {
    expectTexts(c_positionYTexts, &zyr_getPositionYAnchorString, &zyr_getPositionYAnchorStrings);
    expectMaps(c_positionYTexts, g_positionYAnchorMaps);
}

TEST(PositionZAnchor, HasItsTexts) {
    expectTexts(c_positionZTexts, &zyr_getPositionZAnchorString, &zyr_getPositionZAnchorStrings);
    expectMaps(c_positionZTexts, g_positionZAnchorMaps);
}

TEST(SizeWidthAnchor, HasItsTexts) {
    expectTexts(c_sizeWidthTexts, &zyr_getSizeWidthAnchorString, &zyr_getSizeWidthAnchorStrings);
    expectMaps(c_sizeWidthTexts, g_sizeWidthAnchorMaps);
}

TEST(SizeHeightAnchor, HasItsTexts) {
    expectTexts(c_sizeHeightTexts, &zyr_getSizeHeightAnchorString, &zyr_getSizeHeightAnchorStrings);
    expectMaps(c_sizeHeightTexts, g_sizeHeightAnchorMaps);
}

TEST(SizeDepthAnchor, HasItsTexts) {
    expectTexts(c_sizeDepthTexts, &zyr_getSizeDepthAnchorString, &zyr_getSizeDepthAnchorStrings);
    expectMaps(c_sizeDepthTexts, g_sizeDepthAnchorMaps);
}

TEST(Placements, HaveTheirTexts) {
    expectTexts({{0, "LEFT"}, {1, "RIGHT"}, {2, "CENTER"}}, &zyr_getHorizontalPlacementString,
                &zyr_getHorizontalPlacementStrings);
    expectTexts({{0, "TOP"}, {1, "BOTTOM"}, {2, "CENTER"}}, &zyr_getVerticalPlacementString,
                &zyr_getVerticalPlacementStrings);
    expectTexts({{0, "X"}, {1, "Y"}, {2, "Z"}}, &zyr_getAxisString, &zyr_getAxisStrings);
}

TEST(ShapeEnumerations, HaveTheirMaps) {
    expectMaps({{0, "LINEAR"},
                {1, "QUADRATIC"},
                {2, "CUBIC"},
                {3, "BEZIER_QUADRATIC"},
                {4, "BEZIER_CUBIC"},
                {5, "NURBS_QUADRATIC"},
                {6, "NURBS_CUBIC"}},
               g_splineTypeMaps);
    expectMaps({{0, "LINEAR"},
                {1, "CONVEX"},
                {2, "CONCAVE"},
                {3, "HALFCIRCLE"},
                {4, "ONESTEP"},
                {5, "TWOSTEPS"},
                {6, "ENGRAVED"}},
               g_filletTypeMaps);
    expectMaps({{0, "NEAREST"},
                {1, "LINEAR"},
                {2, "QUADRATIC"},
                {3, "CUBIC"},
                {4, "BEZIER_QUADRATIC"},
                {5, "BEZIER_CUBIC"},
                {6, "ROUND"}},
               g_interpolationMaps);
}

TEST(Anchors, AreBytes) {
    EXPECT_EQ(sizeof(PositionXAnchorEnum), 1u);
    EXPECT_EQ(sizeof(PositionYAnchorEnum), 1u);
    EXPECT_EQ(sizeof(PositionZAnchorEnum), 1u);
    EXPECT_EQ(sizeof(SizeWidthAnchorEnum), 1u);
    EXPECT_EQ(sizeof(SizeHeightAnchorEnum), 1u);
    EXPECT_EQ(sizeof(SizeDepthAnchorEnum), 1u);
    EXPECT_EQ(sizeof(SplineTypeEnum), 1u);
    EXPECT_EQ(sizeof(FilletTypeEnum), 1u);
    EXPECT_EQ(sizeof(InterpolationEnum), 1u);
}

} // namespace zyr
