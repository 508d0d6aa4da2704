#include "support/zyr_slot_spy.h"
#include "zyr_common/agents/zyr_agent_description.h"

namespace zyr {

TEST(AgentDescriptionFacade, ForwardsEachOperationToItsSlot) {
    SlotSpy spy;
    WAgentDescription* facade = spy.makeFacade<WAgentDescription>();
    spy.expectForwardedInOrder<IAgentDescription>(
        facade, 43, &IAgentDescription::getTokenGUID, &IAgentDescription::setTokenGUID, &IAgentDescription::getPid,
        &IAgentDescription::setPid, &IAgentDescription::getSid, &IAgentDescription::setSid,
        &IAgentDescription::isSystem, &IAgentDescription::setSystem, &IAgentDescription::getAgentDescriptionReserved);
    facade->release();
}

} // namespace zyr
