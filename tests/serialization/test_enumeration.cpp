#include "serialization/sample_records.h"
#include "support/zyr_ignore_leaks.h"
#include "zyr_common/serialization/zyr_enumeration_maps.h"

#include <gtest/gtest.h>
#include <set>
#include <thread>
#include <vector>

namespace zyr {

TEST(Enumeration, ConvertsTextToNumber) {
    String text("BLUE");
    uint32_t number = 99;
    EXPECT_EQ(zyr_convertEnumeration<SampleColourEnum>(text, number, 1), 1);
    EXPECT_EQ(number, 7u);
    EXPECT_EQ(text, "BLUE");
}

TEST(Enumeration, ConvertsNumberToText) {
    String text("before");
    uint32_t number = 1;
    EXPECT_EQ(zyr_convertEnumeration<SampleColourEnum>(text, number, 0), 1);
    EXPECT_EQ(text, "RED");
    EXPECT_EQ(number, 1u);
}

TEST(Enumeration, LeavesItsOutputAloneForUnknownTextAndNumber) {
    String text("BLU");
    uint32_t number = 99;
    EXPECT_EQ(zyr_convertEnumeration<SampleColourEnum>(text, number, 1), 0);
    EXPECT_EQ(number, 99u);
    number = 2;
    EXPECT_EQ(zyr_convertEnumeration<SampleColourEnum>(text, number, 0), 0);
    EXPECT_EQ(text, "BLU");
}

TEST(Enumeration, IsCaseSensitive) {
    String text("blue");
    uint32_t number = 0;
    EXPECT_EQ(zyr_convertEnumeration<SampleColourEnum>(text, number, 1), 0);
}

TEST(Enumeration, GivesConstantTexts) {
    static_assert(c_enumerationSize<SampleColourEnum> == 3);
    EXPECT_STREQ(zyr_getEnumerationText(ZYR_SAMPLE_BLUE, "Unknown"), "BLUE");
    EXPECT_STREQ(zyr_getEnumerationText(SampleColourEnum(2), "Unknown"), "Unknown");
}

TEST(Enumeration, ListsItsTextsBehindWhatTheListHolds) {
    List<String> texts;
    texts.pushBack("first");
    zyr_listEnumerationTexts<SampleColourEnum>(texts);
    std::vector<std::string> found;
    for (const String& text : texts) {
        found.push_back(text.getData());
    }
    EXPECT_EQ(found, (std::vector<std::string>{"first", "NONE", "RED", "BLUE"}));
}

TEST(Enumeration, MapsAByteSizedOneInBothDirections) {
    EnumerationMaps<SampleSideEnum> maps;
    EXPECT_EQ(maps.m_numbers.find("RIGHT")->m_second, 200);
    EXPECT_EQ(maps.m_texts.find(200)->m_second, "RIGHT");
    EXPECT_EQ(maps.m_numbers.getSize(), 2u);
    EXPECT_EQ(maps.m_texts.find(1), maps.m_texts.end());
}

TEST(Enumeration, BuildsItsMapsOnceUnderManyFirstCallers) {
    static constexpr EnumerationEntry c_entries[] = {{10, "TEN"}, {20, "TWENTY"}, {30, "THIRTY"}};
    for (int round = 0; round < 50; ++round) {
        const IgnoreLeaks ignoreLeaks; // Maps are kept until the process ends.
        EnumerationTexts texts(c_entries, 3);
        std::vector<std::thread> threads;
        std::atomic<int> known{0};
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&] {
                String text("TWENTY");
                uint32_t number = 0;
                known += texts.convert(text, number, 1) && number == 20;
                number = 30;
                known += texts.convert(text, number, 0) && text == "THIRTY";
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        ASSERT_EQ(known, 8);
    }
}

} // namespace zyr
