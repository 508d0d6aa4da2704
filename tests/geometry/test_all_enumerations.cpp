#include "zyr_common/colour/zyr_pixel_format.h"
#include "zyr_common/geometry/zyr_anchors.h"
#include "zyr_common/geometry/zyr_shape_enums.h"
#include "zyr_common/variable/zyr_variable_types.h"

#include <gtest/gtest.h>
#include <set>

namespace zyr {

template <class E> class AllEnumerations : public testing::Test {};

using EnumerationTypes =
    testing::Types<PositionXAnchorEnum, PositionYAnchorEnum, PositionZAnchorEnum, SizeWidthAnchorEnum,
                   SizeHeightAnchorEnum, SizeDepthAnchorEnum, HorizontalPlacementEnum, VerticalPlacementEnum, AxisEnum,
                   SplineTypeEnum, FilletTypeEnum, InterpolationEnum, VariableTypeEnum, VariableCategoryEnum>;
TYPED_TEST_SUITE(AllEnumerations, EnumerationTypes);

TYPED_TEST(AllEnumerations, HaveUniqueNumbersAndTexts) {
    std::set<uint32_t> numbers;
    std::set<std::string> texts;
    for (const EnumerationEntry& entry : EnumerationTable<TypeParam>::c_entries) {
        EXPECT_TRUE(numbers.insert(entry.m_number).second) << entry.m_number;
        EXPECT_TRUE(texts.insert(entry.m_text).second) << entry.m_text;
    }
}

TYPED_TEST(AllEnumerations, RoundTripEachText) {
    for (const EnumerationEntry& entry : EnumerationTable<TypeParam>::c_entries) {
        String text;
        uint32_t number = entry.m_number;
        EXPECT_EQ(zyr_convertEnumeration<TypeParam>(text, number, 0), 1);
        EXPECT_EQ(text, entry.m_text);
        number = 0xFFFFFF;
        EXPECT_EQ(zyr_convertEnumeration<TypeParam>(text, number, 1), 1);
        EXPECT_EQ(number, entry.m_number);
    }
}

TYPED_TEST(AllEnumerations, RefuseUnknownTextAndNumber) {
    String text("no such text");
    uint32_t number = 0xFFFFFF;
    EXPECT_EQ(zyr_convertEnumeration<TypeParam>(text, number, 0), 0);
    EXPECT_EQ(zyr_convertEnumeration<TypeParam>(text, number, 1), 0);
    EXPECT_EQ(text, "no such text");
    EXPECT_EQ(number, 0xFFFFFFu);
}

} // namespace zyr
