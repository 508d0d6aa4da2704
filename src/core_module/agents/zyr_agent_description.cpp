// What is known of an agent.
#include "zyr_common/agents/zyr_agent_description.h"
#include "core_module/zyr_core_class.h"
#include "zyr_common/implementation/zyr_implementation.h"
#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

#pragma pack(push, 1)
class AgentDescriptionState : public Record<AgentDescriptionState> {
public:
    GUID_t m_tokenGUID;
    uint32_t m_pid = 0;
    uint32_t m_sid = 0;
    bool_t m_system = 0;

    static constexpr const char* c_typeName = "AgentDescriptionState";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("tokenGUID", &AgentDescriptionState::m_tokenGUID),
                          zyr_field("pid", &AgentDescriptionState::m_pid),
                          zyr_field("sid", &AgentDescriptionState::m_sid),
                          zyr_field("system", &AgentDescriptionState::m_system));
    }
};
#pragma pack(pop)

template class RecordWalker<AgentDescriptionState>;

namespace {

class AgentDescriptionLevel
    : public StateLevel<ObjectLevel<IAgentDescription>, IAgentDescription, AgentDescriptionState> {
public:
    const GUID_t& getTokenGUID() const override { return m_state.m_tokenGUID; }
    void setTokenGUID(const GUID_t& p_tokenGUID) override { m_state.m_tokenGUID = p_tokenGUID; }
    uint32_t getPid() const override { return m_state.m_pid; }
    void setPid(uint32_t p_pid) override { m_state.m_pid = p_pid; }
    uint32_t getSid() const override { return m_state.m_sid; }
    void setSid(uint32_t p_sid) override { m_state.m_sid = p_sid; }
    bool_t isSystem() const override { return m_state.m_system; }
    void setSystem(bool_t p_system) override { m_state.m_system = p_system; }
    ILevelReserved* getAgentDescriptionReserved() const override { return &m_agentDescriptionReserved; }

    void copy_This(const IAgentDescription* p_src) {
        setTokenGUID(p_src->getTokenGUID());
        setPid(p_src->getPid());
        setSid(p_src->getSid());
        setSystem(p_src->isSystem());
    }

private:
    mutable LevelReserved<AgentDescriptionLevel> m_agentDescriptionReserved{this};
};

} // namespace

using AgentDescription = Implementation<AgentDescriptionLevel>;

ZYR_DEFINE_CORE_CLASS(AgentDescription)

} // namespace zyr
