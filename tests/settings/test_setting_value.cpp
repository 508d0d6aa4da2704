#include "support/binary_layout.h"
#include "zyr_common/settings/zyr_setting_value.h"

#include <gtest/gtest.h>

namespace zyr {

static bool_t convertNothing(String&, int&, bool_t) {
    return 0;
}

TEST(SettingValue, HasNoVariableAtFirst) {
    SettingValue setting;
    EXPECT_EQ(setting.getType(), ZYR_VARIABLE_NONE);
    bool_t truth = 7;
    EXPECT_EQ(setting.getReferenceBool(truth), nullptr);
    EXPECT_EQ(truth, 7);
#define ZYR_RAW_BOOLEAN(suffix, many, type)
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    {                                                                                                                  \
        type numbers[3] = {7, 8, 9};                                                                                   \
        EXPECT_EQ(setting.getReference##suffix(numbers[0], numbers[1], numbers[2]), nullptr);                          \
        EXPECT_EQ(numbers[0], 7);                                                                                      \
        EXPECT_EQ(numbers[1], 8);                                                                                      \
        EXPECT_EQ(numbers[2], 9);                                                                                      \
    }
#include "zyr_common/documents/zyr_raw_numbers.inl"
    String text("kept");
    settingEnum_FUNC callback = &convertNothing;
    EXPECT_EQ(setting.getReferenceString(text), nullptr);
    EXPECT_EQ(setting.getReferenceEnum(text, callback), nullptr);
    EXPECT_EQ(text, "kept");
    EXPECT_EQ(callback, &convertNothing);
}

TEST(SettingValue, GivesAddressDefaultAndRangeOfEachNumber) {
    const VariableTypeEnum firstType = ZYR_VARIABLE_INT8;
    uint32_t type_ = firstType;
#define ZYR_RAW_BOOLEAN(suffix, many, type)
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    {                                                                                                                  \
        SettingValue setting;                                                                                          \
        type variable = 1;                                                                                             \
        type numbers[3] = {};                                                                                          \
        setting.setReference##suffix(&variable, 5, 0, 10);                                                             \
        EXPECT_EQ(setting.getReference##suffix(numbers[0], numbers[1], numbers[2]), &variable);                        \
        EXPECT_EQ(numbers[0], 5);                                                                                      \
        EXPECT_EQ(numbers[1], 0);                                                                                      \
        EXPECT_EQ(numbers[2], 10);                                                                                     \
        EXPECT_EQ(variable, 1);                                                                                        \
        EXPECT_EQ(static_cast<uint32_t>(setting.getType()), type_++);                                                  \
    }
#include "zyr_common/documents/zyr_raw_numbers.inl"
    EXPECT_EQ(type_, 12u);
}

TEST(SettingValue, HoldsBooleansTextsAndWords) {
    SettingValue setting;
    bool_t truth = 0;
    setting.setReferenceBool(&truth, 1);
    EXPECT_EQ(setting.getType(), ZYR_VARIABLE_BOOL);
    bool_t initial = 0;
    EXPECT_EQ(setting.getReferenceBool(initial), &truth);
    EXPECT_EQ(initial, 1);
    String variable;
    setting.setReferenceString(&variable, "text");
    EXPECT_EQ(setting.getType(), ZYR_VARIABLE_STRING);
    String text;
    EXPECT_EQ(setting.getReferenceString(text), &variable);
    EXPECT_EQ(text, "text");
    int number = 0;
    setting.setReferenceEnum(&number, "WORD", &convertNothing);
    EXPECT_EQ(static_cast<int>(setting.getType()), 81);
    settingEnum_FUNC callback = nullptr;
    EXPECT_EQ(setting.getReferenceEnum(text, callback), &number);
    EXPECT_EQ(text, "WORD");
    EXPECT_EQ(callback, &convertNothing);
}

TEST(SettingValue, DropsVariableAndNamesWhenCleared) {
    SettingValue setting;
    int variable = 0;
    setting.setReferenceInt32(&variable, 5, 0, 10);
    setting.setEnvName("name");
    setting.clear();
    EXPECT_EQ(setting.getType(), ZYR_VARIABLE_NONE);
    EXPECT_TRUE(setting.getEnvName().isEmpty());
}

TEST(SettingValue, TakesOverThatThereIsNoVariable) {
    SettingValue setting;
    int variable = 0;
    setting.setReferenceInt32(&variable, 5, 0, 10);
    setting.copy_This(SettingValue());
    EXPECT_EQ(setting.getType(), ZYR_VARIABLE_NONE);
}

TEST(SettingValue, IsClonedWithAReferenceOfItsOwn) {
    int variable = 0;
    SettingValue* setting = new SettingValue;
    setting->setReferenceInt32(&variable, 5, 0, 10);
    setting->setCmdDescDisable("description");
    SettingValue* clone = setting->clone();
    EXPECT_NE(readAt<void*>(clone, 24), readAt<void*>(setting, 24));
    setting->release();
    int numbers[3] = {};
    EXPECT_EQ(clone->getReferenceInt32(numbers[0], numbers[1], numbers[2]), &variable);
    EXPECT_EQ(numbers[2], 10);
    EXPECT_EQ(clone->getCmdDescDisable(), "description");
    SettingValue assigned;
    assigned = *clone;
    clone->release();
    EXPECT_EQ(assigned.getType(), ZYR_VARIABLE_INT32);
}

TEST(SettingValue, KeepsEachNameInItsField) {
    SettingValue setting;
    size_t offset = 24 + 8 + 24 + sizeof(String);
    size_t slot = 33;
#define CHECK_NAME(Name)                                                                                               \
    setting.set##Name(#Name);                                                                                          \
    EXPECT_EQ(setting.get##Name(), #Name);                                                                             \
    EXPECT_EQ(reinterpret_cast<const char*>(&setting.get##Name()) - reinterpret_cast<const char*>(&setting),           \
              static_cast<ptrdiff_t>(offset));                                                                         \
    EXPECT_EQ(getSlot(&SettingValue::get##Name), slot);                                                                \
    EXPECT_EQ(getSlot(&SettingValue::set##Name), slot + 1);                                                            \
    offset += sizeof(String);                                                                                          \
    slot += 2;
    CHECK_NAME(RegName)
    CHECK_NAME(RegPath)
    CHECK_NAME(EnvName)
    CHECK_NAME(ConfName)
    CHECK_NAME(ConfSection)
    CHECK_NAME(CmdShort)
    CHECK_NAME(CmdShortDisable)
    CHECK_NAME(CmdName)
    CHECK_NAME(CmdNameDisable)
    CHECK_NAME(CmdDesc)
    CHECK_NAME(CmdDescDisable)
    EXPECT_EQ(offset + sizeof(void*), sizeof(SettingValue));
}

TEST(SettingValue, HasItsOperationsInTheirSlots) {
    size_t slot = 5;
    EXPECT_EQ(getSlot(&SettingValue::clear), slot++);
    EXPECT_EQ(getSlot(&SettingValue::getType), slot++);
    EXPECT_EQ(getSlot(&SettingValue::getReferenceBool), slot++);
    EXPECT_EQ(getSlot(&SettingValue::setReferenceBool), slot++);
#define ZYR_RAW_BOOLEAN(suffix, many, type)
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    EXPECT_EQ(getSlot(&SettingValue::getReference##suffix), slot++);                                                   \
    EXPECT_EQ(getSlot(&SettingValue::setReference##suffix), slot++);
#include "zyr_common/documents/zyr_raw_numbers.inl"
    EXPECT_EQ(getSlot(&SettingValue::getReferenceString), slot++);
    EXPECT_EQ(getSlot(&SettingValue::setReferenceString), slot++);
    EXPECT_EQ(getSlot(&SettingValue::getReferenceEnum), slot++);
    EXPECT_EQ(getSlot(&SettingValue::setReferenceEnum), slot++);
    EXPECT_EQ(slot, 33u);
}

} // namespace zyr
