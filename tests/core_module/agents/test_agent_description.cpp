#include "core_module/core_module_test.h"
#include "zyr_common/agents/zyr_agent_description.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/storage/zyr_load_save.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {
namespace {

class AgentDescriptionTest : public CoreModuleUpTest {
protected:
    static constexpr const char* c_token = "01234567-89ab-4cde-8f01-23456789abcd";

    static Ref<IAgentDescription> makeAgent() {
        Ref<IAgentDescription> agent = Ref<IAgentDescription>::adopt(zyr_createObject<IAgentDescription>());
        agent->setTokenGUID(GUID_t_fromString(c_token));
        agent->setPid(4000000000U);
        agent->setSid(12);
        agent->setSystem(1);
        return agent;
    }
    static void expectAgent(const IAgentDescription* p_agent) {
        EXPECT_EQ(p_agent->getTokenGUID(), GUID_t_fromString(c_token));
        EXPECT_EQ(p_agent->getPid(), 4000000000U);
        EXPECT_EQ(p_agent->getSid(), 12U);
        EXPECT_TRUE(p_agent->isSystem());
    }
    static void expectEmpty(const IAgentDescription* p_agent) {
        EXPECT_TRUE(p_agent->getTokenGUID().isNull());
        EXPECT_EQ(p_agent->getPid(), 0U);
        EXPECT_EQ(p_agent->getSid(), 0U);
        EXPECT_FALSE(p_agent->isSystem());
    }
};

TEST_F(AgentDescriptionTest, StartsEmpty) {
    const auto agent = Ref<IAgentDescription>::adopt(zyr_createObject<IAgentDescription>());
    expectEmpty(agent.get());
}

TEST_F(AgentDescriptionTest, IsClearedToTheStart) {
    const auto agent = makeAgent();
    agent->clear();
    expectEmpty(agent.get());
}

TEST_F(AgentDescriptionTest, IsClonedWithItsValues) {
    const auto agent = makeAgent();
    const auto clone = Ref<IObject>::adopt(agent->clone());
    expectAgent(static_cast<IAgentDescription*>(clone.get()));
}

TEST_F(AgentDescriptionTest, ComesBackFromEachFormat) {
    const auto agent = makeAgent();
    for (const char* format : {"raw", "zbf", "xml", "json"}) {
        SCOPED_TRACE(format);
        Array<unsigned char> data;
        ASSERT_TRUE(zyr_saveToData(agent.get(), data, format, 0, ""));
        const auto loaded = Ref<IObject>::adopt(zyr_loadFromData(data, format, ""));
        ASSERT_TRUE(loaded);
        ASSERT_EQ(loaded->getClassName(), "AgentDescription");
        expectAgent(static_cast<IAgentDescription*>(loaded.get()));
    }
}

TEST_F(AgentDescriptionTest, StandsBehindAFacade) {
    WAgentDescription* facade = new WAgentDescription;
    facade->initObjectInterface();
    facade->setPid(5);
    EXPECT_EQ(facade->getPid(), 5U);
    EXPECT_EQ(facade->getClassName(), "AgentDescription");
    facade->release();
}

} // namespace
} // namespace zyr
