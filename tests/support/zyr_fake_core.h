/// Application data whose core table holds what the test puts into it.
#pragma once

#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/object/zyr_core_entries.h"

namespace zyr {

class FakeCore {
public:
    FakeCore() : m_data(new ApplicationData(0, 0)) { zyr_setApplicationData(m_data); }
    ~FakeCore() {
        m_data->deinitialize();
        zyr_setApplicationData(nullptr);
    }
    FakeCore(const FakeCore&) = delete;
    FakeCore& operator=(const FakeCore&) = delete;

    ApplicationData* operator->() const { return m_data; }

    /// Lets the entry of the interface call the function.
    template <class Interface> void setEntry(Interface* (*p_create)()) {
        m_data->m_core->m_entries[coreTableEntry<Interface>] = reinterpret_cast<moduleEntry_FUNC>(p_create);
    }

    /// Lets the entry of the class's interface create that class.
    template <class Class> void addClass() {
        setEntry<typename Class::Interface>([]() -> typename Class::Interface* { return new Class; });
    }

private:
    ApplicationData* m_data;
};

} // namespace zyr
