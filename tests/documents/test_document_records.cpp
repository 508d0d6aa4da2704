#include "support/binary_layout.h"
#include "support/log/zyr_log_recorder.h"
#include "zyr_common/documents/zyr_config_section.h"
#include "zyr_common/documents/zyr_method_info.h"
#include "zyr_common/documents/zyr_parser_log_message.h"
#include "zyr_common/documents/zyr_raw_type.h"

#include <gmock/gmock.h>

namespace zyr {

static uint32_t getCount(const void* p_counted) {
    return *readAt<uint32_t*>(p_counted, 8);
}

TEST(ConfigPair, IsEmptyAtFirstAndAfterClear) {
    ConfigPair fresh;
    ConfigPair pair("name", "12", 1);
    EXPECT_EQ(pair.getName(), "name");
    EXPECT_EQ(pair.getValue(), "12");
    EXPECT_EQ(pair.isNumeric(), 1);
    EXPECT_EQ(readAt<uint8_t>(&pair, 248), 1);
    pair.clear();
    for (const ConfigPair* empty : {&fresh, &pair}) {
        EXPECT_TRUE(empty->getName().isEmpty());
        EXPECT_TRUE(empty->getValue().isEmpty());
        EXPECT_EQ(empty->isNumeric(), 0);
    }
}

TEST(ConfigPair, IsClonedWithItsFields) {
    ConfigPair pair("name", "12", 1);
    RefCountedData* clone = static_cast<const RefCountedData&>(pair).clone();
    ConfigPair* copy = dynamic_cast<ConfigPair*>(clone);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->getName(), "name");
    EXPECT_EQ(copy->getValue(), "12");
    EXPECT_EQ(copy->isNumeric(), 1);
    EXPECT_EQ(getCount(copy), 0u);
    copy->release();
}

TEST(ConfigPair, HasItsOperationsInTheirSlots) {
    EXPECT_EQ(getSlot(&ConfigPair::getName), 5u);
    EXPECT_EQ(getSlot(&ConfigPair::setName), 6u);
    EXPECT_EQ(getSlot(&ConfigPair::getValue), 7u);
    EXPECT_EQ(getSlot(&ConfigPair::setValue), 8u);
    EXPECT_EQ(getSlot(&ConfigPair::isNumeric), 9u);
    EXPECT_EQ(getSlot(&ConfigPair::setNumeric), 10u);
}

TEST(ConfigSection, ListsAPairAsOftenAsItIsAdded) {
    ConfigSection section;
    ConfigPair* pair = new ConfigPair("a", "b", 0);
    section.pushBackPair(pair);
    section.pushBackPair(nullptr);
    section.pushBackPair(pair);
    EXPECT_EQ(section.getPairs().getSize(), 2u);
    EXPECT_EQ(getCount(pair), 2u);
    section.clearPairs();
    EXPECT_TRUE(section.getPairs().isEmpty());
    EXPECT_EQ(getCount(pair), 0u);
    pair->release();
}

TEST(ConfigSection, SharesPairsWithItsCopies) {
    ConfigSection section;
    section.setName("name");
    ConfigPair* pair = new ConfigPair("a", "b", 0);
    section.pushBackPair(pair);
    pair->release();
    {
        const ConfigSection copy(section);
        ConfigSection assigned;
        assigned = section;
        EXPECT_EQ(copy.getName(), "name");
        EXPECT_EQ(assigned.getPairs().frontConst(), pair);
        EXPECT_EQ(getCount(pair), 2u);
    }
    EXPECT_EQ(getCount(pair), 0u);
    section.clear();
    EXPECT_TRUE(section.getName().isEmpty());
}

TEST(ConfigSection, EndsTheProcessForANullPairInTheList) {
    ConfigSection section;
    const_cast<List<ConfigPair*>&>(section.getPairs()).pushBack(nullptr);
    EXPECT_EXIT(
        section.clearPairs(), testing::ExitedWithCode(0),
        testing::HasSubstr(test::assertionLine("virtual void zyr::ConfigSection::clearPairs()", "*it != NULL")));
    const_cast<List<ConfigPair*>&>(section.getPairs()).clear();
}

TEST(ConfigSection, HasItsOperationsInTheirSlots) {
    EXPECT_EQ(getSlot(&ConfigSection::getName), 5u);
    EXPECT_EQ(getSlot(&ConfigSection::setName), 6u);
    EXPECT_EQ(getSlot(&ConfigSection::getPairs), 7u);
    EXPECT_EQ(getSlot(&ConfigSection::pushBackPair), 8u);
    EXPECT_EQ(getSlot(&ConfigSection::clearPairs), 9u);
}

TEST(MethodInfo, HoldsItsThreeFieldsUntilItIsCleared) {
    int target = 0;
    MethodInfo info("name", &target, "description");
    EXPECT_EQ(info.m_name, "name");
    EXPECT_EQ(readAt<void*>(&info, 112), &target);
    EXPECT_EQ(info.m_description, "description");
    EXPECT_EQ(info.getClassName(), "MethodInfo");
    info.clear();
    EXPECT_TRUE(info.m_name.isEmpty());
    EXPECT_EQ(info.m_pointer, nullptr);
    EXPECT_TRUE(info.m_description.isEmpty());
}

TEST(StringCursor, KeepsTheBoundsOfItsTextWhenCleared) {
    const char* text = "text";
    StringCursor cursor(3, 5, text, text + 4, text + 2);
    cursor.clear();
    EXPECT_EQ(cursor.m_line, 0u);
    EXPECT_EQ(cursor.m_column, 0u);
    EXPECT_EQ(cursor.m_begin, text);
    EXPECT_EQ(cursor.m_end, text + 4);
    EXPECT_EQ(cursor.m_current, nullptr);
}

TEST(Token, IsBoundToAnEmptyTextWhenCleared) {
    Token token(ZYR_TOKEN_TYPE_KEYWORD, WrappedString("first"), WrappedString("second"), StringCursor());
    EXPECT_EQ(readAt<size_t>(&token, 34), 5u);
    token.clear();
    EXPECT_EQ(token.m_type, ZYR_TOKEN_TYPE_NONE);
    for (const WrappedString* text : {&token.m_text, &token.m_content}) {
        EXPECT_NE(text->getData(), nullptr);
        EXPECT_EQ(text->getSize(), 0u);
    }
    const char zeros[22] = {};
    EXPECT_EQ(memcmp(&token.m_scalar, zeros, sizeof(zeros)), 0);
}

TEST(ParserLogMessage, IsAWarningWithoutAPlaceAtFirst) {
    ParserLogMessage message;
    EXPECT_EQ(message.m_level, ZYR_LOG_LEVEL_WARN);
    EXPECT_EQ(message.m_cursor.m_line, 0u);
    EXPECT_TRUE(message.m_text.isEmpty());
}

TEST(RawTypeEnum, NumbersItsTypesInTheOrderOfTheOperations) {
    EXPECT_EQ(ZYR_RAW_TYPE_BOOLEAN, 0u);
    EXPECT_EQ(ZYR_RAW_TYPE_INT32, 5u);
    EXPECT_EQ(ZYR_RAW_TYPE_DOUBLE, 10u);
}

} // namespace zyr
