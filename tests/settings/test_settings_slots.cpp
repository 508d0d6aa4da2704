#include "support/zyr_slot_spy.h"
#include "zyr_common/settings/zyr_settings_handler.h"

#include <gtest/gtest.h>

namespace zyr {

TEST(SettingsHandlerFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WSettingsHandler* facade = spy.makeFacade<WSettingsHandler>();
    ISettingsHandler* handler = facade;
    // The insertions have more arguments than the spy looks at.
    const String text("text");
    bool_t truth = 0;
    SlotSpy::takeCalls();
    handler->insertBool(&truth, 0, text, text, text, text, text, text, text, text, text, text, text);
    size_t slot = 43;
    EXPECT_EQ(getSlot(&ISettingsHandler::insertBool), slot);
#define ZYR_RAW_BOOLEAN(suffix, many, type)
#define ZYR_RAW_NUMBER(suffix, many, type)                                                                             \
    type number##suffix = 0;                                                                                           \
    handler->insert##suffix(&number##suffix, 0, 0, 0, text, text, text, text, text, text, text, text);                 \
    EXPECT_EQ(getSlot(&ISettingsHandler::insert##suffix), ++slot);
#include "zyr_common/documents/zyr_raw_numbers.inl"
    String variable;
    handler->insertString(&variable, text, text, text, text, text, text, text, text, text);
    EXPECT_EQ(getSlot(&ISettingsHandler::insertString), ++slot);
    int word = 0;
    handler->insertEnum(&word, text, text, text, text, text, text, text, text, text, nullptr);
    EXPECT_EQ(getSlot(&ISettingsHandler::insertEnum), ++slot);
    const std::vector<SlotSpy::Call> calls = SlotSpy::takeCalls();
    ASSERT_EQ(calls.size(), 13u);
    for (size_t i = 0; i < calls.size(); i++) {
        EXPECT_EQ(calls[i].m_slot, 43 + i);
    }
    EXPECT_EQ(calls[0].m_arguments[0], reinterpret_cast<uint64_t>(&truth));
    spy.expectForwarded(handler, &ISettingsHandler::transfer, 56);
    spy.expectForwarded(handler, &ISettingsHandler::printCommandLineArguments, 57);
    spy.expectForwarded(handler, &ISettingsHandler::selectCommandLineArgument, 58);
    spy.expectForwarded(handler, &ISettingsHandler::getSettingsHandlerReserved, 59);
    facade->release();
}

} // namespace zyr
