#include "support/zyr_slot_spy.h"
#include "zyr_common/settings/zyr_settings_handler.h"

#include <gtest/gtest.h>

namespace zyr {

TEST(SettingsHandlerFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WSettingsHandler* facade = spy.makeFacade<WSettingsHandler>();
    ISettingsHandler* handler = facade;
    spy.expectForwarded(handler, &ISettingsHandler::insertBool, 43);
    size_t slot = 44;
#define ZYR_RAW_BOOLEAN(suffix, many, type)
#define ZYR_RAW_NUMBER(suffix, many, type) spy.expectForwarded(handler, &ISettingsHandler::insert##suffix, slot++);
#include "zyr_common/documents/zyr_raw_numbers.inl"
    ASSERT_EQ(slot, 54u);
    spy.expectForwardedInOrder(handler, slot, &ISettingsHandler::insertString, &ISettingsHandler::insertEnum,
                               &ISettingsHandler::transfer, &ISettingsHandler::printCommandLineArguments,
                               &ISettingsHandler::selectCommandLineArgument,
                               &ISettingsHandler::getSettingsHandlerReserved);
    facade->release();
}

} // namespace zyr
