#include "zyr_common/application/zyr_application_data.h"
#include "zyr_common/implementation/zyr_implementation.h"
#include "zyr_common/object/zyr_core_entries.h"
#include "zyr_common/plugins/zyr_plugin_modules.h"

#include "support/zyr_logged_application.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace zyr;
using testing::ElementsAre;
using testing::IsEmpty;

static std::vector<std::string> s_calls;
static IListOfObjects* const MODULES = reinterpret_cast<IListOfObjects*>(0x1000);

// A handler that records its calls. Directories whose name begins with "bad" fail.
class RecordingHandlerLevel : public UnstoredLevel<ObjectLevel<IPluginModulesHandler>, IPluginModulesHandler> {
public:
    RecordingHandlerLevel() { s_calls.push_back("new"); }
    ~RecordingHandlerLevel() override { s_calls.push_back("delete"); }

    bool_t loadFromDirectory(const String& p_directory) override {
        s_calls.push_back(std::string("load ") + p_directory.getData());
        return strncmp(p_directory.getData(), "bad", 3) != 0;
    }
    bool_t initializePluginModules(ApplicationData* p_applicationData) override {
        s_calls.push_back(p_applicationData == zyr_getApplicationData() ? "initialize" : "initialize something else");
        return 0;
    }
    IListOfObjects* getPluginModules(bool_t p_addReference) const override {
        s_calls.push_back(p_addReference ? "get with reference" : "get");
        return MODULES;
    }
    ILevelReserved* getPluginModulesHandlerReserved() const override { return &m_reserved; }

    void init_This() {}
    void release_This() {}
    void copy_This(const IPluginModulesHandler*) {}

private:
    mutable LevelReserved<RecordingHandlerLevel> m_reserved{this};
};

using RecordingHandler = Implementation<RecordingHandlerLevel>;

static IPluginModulesHandler* createHandler() {
    return new RecordingHandler;
}

static IPluginModulesHandler* createNothing() {
    return nullptr;
}

class PluginModulesOfApplication : public testing::Test {
protected:
    PluginModulesOfApplication() { s_calls.clear(); }

    void setCreator(IPluginModulesHandler* (*p_create)()) {
        m_application->m_core->m_entries[coreTableEntry<IPluginModulesHandler>] =
            reinterpret_cast<moduleEntry_FUNC>(p_create);
    }

    bool_t initialize(std::initializer_list<const char*> p_directories) {
        List<String> directories;
        for (const char* directory : p_directories) {
            directories.pushBack(directory);
        }
        return m_application->pluginModulesInitialize(directories);
    }

    LoggedApplication m_application;
};

static const char* const NO_HANDLER = "Unable to create PluginModulesHandler. Maybe core module is not initialized yet";

TEST_F(PluginModulesOfApplication, WithoutCoreModuleAreRefusedWithALine) {
    EXPECT_FALSE(initialize({"a"}));
    EXPECT_THAT(m_application.getMessages(), ElementsAre(NO_HANDLER));
}

TEST_F(PluginModulesOfApplication, NullHandlerIsRefusedWithALine) {
    setCreator(&createNothing);
    EXPECT_FALSE(initialize({"a"}));
    EXPECT_THAT(m_application.getMessages(), ElementsAre(NO_HANDLER));
}

TEST(PluginModulesWithoutApplicationData, AreRefusedWithTheFactorysLineAndTheirOwn) {
    ApplicationData* data = new ApplicationData(0, 0);
    testing::internal::CaptureStdout();
    EXPECT_FALSE(data->pluginModulesInitialize(List<String>()));
    fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "WARN : Application data is NULL, cannot create object from name PluginModulesHandler. Return NULL\n"
              "WARN : " +
                  std::string(NO_HANDLER) + "\n");
    delete data;
}

TEST_F(PluginModulesOfApplication, WithoutCoreTableEndTheProcess) {
    EXPECT_EXIT(
        {
            // Kept in sight, so that it is no leak.
            [[maybe_unused]] static CoreModuleTable* volatile table = nullptr;
            table = m_application->m_core;
            m_application->m_core = nullptr;
            initialize({});
        },
        testing::ExitedWithCode(0), "");
    EXPECT_THAT(m_application.getMessages(), ElementsAre("assert(appData->m_core != NULL)"));
}

TEST_F(PluginModulesOfApplication, AreLoadedInOrderAndThenInitialized) {
    setCreator(&createHandler);
    EXPECT_TRUE(initialize({"a", "b"}));
    EXPECT_THAT(s_calls, ElementsAre("new", "load a", "load b", "initialize"));
}

TEST_F(PluginModulesOfApplication, FirstBadDirectoryEndsTheCallWithoutInitialization) {
    setCreator(&createHandler);
    EXPECT_FALSE(initialize({"a", "bad", "b"}));
    EXPECT_THAT(s_calls, ElementsAre("new", "load a", "load bad"));
    EXPECT_NE(m_application->m_pluginModulesHandler, nullptr);
}

TEST_F(PluginModulesOfApplication, HandlerIsKeptForTheNextCall) {
    setCreator(&createHandler);
    EXPECT_TRUE(initialize({}));
    EXPECT_TRUE(initialize({"a"}));
    EXPECT_THAT(s_calls, ElementsAre("new", "initialize", "load a", "initialize"));
}

TEST_F(PluginModulesOfApplication, AreAskedFromTheHandler) {
    EXPECT_EQ(m_application->getPluginModules(1), nullptr);
    setCreator(&createHandler);
    initialize({});
    s_calls.clear();
    EXPECT_EQ(m_application->getPluginModules(0), MODULES);
    EXPECT_EQ(m_application->getPluginModules(1), MODULES);
    EXPECT_THAT(s_calls, ElementsAre("get", "get with reference"));
}

TEST_F(PluginModulesOfApplication, HandlerIsReleasedAtTheEnd) {
    setCreator(&createHandler);
    initialize({});
    m_application->deinitialize();
    EXPECT_EQ(m_application->m_pluginModulesHandler, nullptr);
    EXPECT_THAT(s_calls, ElementsAre("new", "initialize", "delete"));
    EXPECT_EQ(m_application->getPluginModules(0), nullptr);
}
