/// A host with the core module, as tests see it.
#pragma once

#include "support/zyr_ignore_leaks.h"
#include "support/zyr_logged_application.h"
#include "zyr_common/object/zyr_factories.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

namespace zyr {

/// The module is loaded anew for each test, since it keeps its pointer to the application data, and closed behind it.
class CoreModuleTest : public testing::Test {
protected:
    using Prepare = void (*)(ApplicationData*);

    CoreModuleTest() {
        const IgnoreLeaks ignoreLeaks; // The module's texts and allocator that are never destroyed.
        m_handle = dlopen(ZYR_CORE_MODULE, RTLD_NOW | RTLD_LOCAL);
        if (m_handle == nullptr) {
            ADD_FAILURE() << dlerror();
            abort();
        }
        m_prepare = reinterpret_cast<Prepare>(dlsym(m_handle, "zyr_core_prepare"));
    }
    ~CoreModuleTest() override {
        delete m_application;
        dlclose(m_handle);
    }

    ApplicationData* getData() const { return m_application->getData(); }

    /// Brings the common library and the module up.
    void initialize() {
        const IgnoreLeaks ignoreLeaks;
        ASSERT_TRUE(getData()->commonInitialize());
        m_prepare(getData());
        ASSERT_TRUE(getData()->coreInitialize());
    }

    void* m_handle;
    Prepare m_prepare;
    LoggedApplication* m_application = new LoggedApplication;
};

/// The same with the module up.
class CoreModuleUpTest : public CoreModuleTest {
protected:
    void SetUp() override { initialize(); }
};

} // namespace zyr
