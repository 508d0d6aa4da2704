/// What is known of an agent: a process that works for the host on the other side of a connection.
///
/// These objects are made by the core module. Not thread safe.
#pragma once

#include "zyr_common/object/zyr_object.h"

namespace zyr {

/// Plain values, kept and stored as they are given.
class IAgentDescription : public IObject {
public:
    /// With this token the agent shows that it was started by the host; the null GUID at first.
    virtual const GUID_t& getTokenGUID() const = 0;
    virtual void setTokenGUID(const GUID_t& p_tokenGUID) = 0;
    /// Its process id; 0 at first.
    virtual uint32_t getPid() const = 0;
    virtual void setPid(uint32_t p_pid) = 0;
    /// The session in which it runs; 0 at first.
    virtual uint32_t getSid() const = 0;
    virtual void setSid(uint32_t p_sid) = 0;
    /// True for an agent of the system, which belongs to no user's session.
    virtual bool_t isSystem() const = 0;
    virtual void setSystem(bool_t p_system) = 0;
    /// For facades' subclasses: the operations on this level alone. Never null; not counted.
    virtual ILevelReserved* getAgentDescriptionReserved() const = 0;
};

ZYR_INTERFACE_TRAITS(AgentDescription, IObject, "12b0802a-bfb0-4fb3-9439-973afd87d879")

/// Forwards each operation to the AgentDescription of its module; what extends that class derives from this.
template <class Interface> class AgentDescriptionFacade : public ObjectFacade<Interface> {
public:
    using ObjectFacade<Interface>::m_interfaceObject;

    const GUID_t& getTokenGUID() const override { return m_interfaceObject->getTokenGUID(); }
    void setTokenGUID(const GUID_t& p_tokenGUID) override { m_interfaceObject->setTokenGUID(p_tokenGUID); }
    uint32_t getPid() const override { return m_interfaceObject->getPid(); }
    void setPid(uint32_t p_pid) override { m_interfaceObject->setPid(p_pid); }
    uint32_t getSid() const override { return m_interfaceObject->getSid(); }
    void setSid(uint32_t p_sid) override { m_interfaceObject->setSid(p_sid); }
    bool_t isSystem() const override { return m_interfaceObject->isSystem(); }
    void setSystem(bool_t p_system) override { m_interfaceObject->setSystem(p_system); }
    ILevelReserved* getAgentDescriptionReserved() const override {
        return m_interfaceObject->getAgentDescriptionReserved();
    }
};

using WAgentDescription = AgentDescriptionFacade<IAgentDescription>;

} // namespace zyr
