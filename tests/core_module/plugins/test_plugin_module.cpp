#include "core_module/core_module_test.h"
#include "core_module/plugins/plugin_directory.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"
#include "zyr_common/plugins/zyr_plugin_modules.h"

#include <gmock/gmock.h>

namespace zyr {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Module : public WPluginModule {
public:
    Module() { initObjectInterface(); }
};

class PluginModuleTest : public CoreModuleUpTest {
protected:
    void SetUp() override {
        CoreModuleUpTest::SetUp();
        m_module = new Module;
    }
    void TearDown() override { m_module->release(); }

    static void* open(const std::string& p_path) { return dlopen(p_path.c_str(), RTLD_NOW | RTLD_LOCAL); }
    static bool isLoaded(const std::string& p_path) {
        void* handle = dlopen(p_path.c_str(), RTLD_NOW | RTLD_NOLOAD);
        if (handle != nullptr) {
            dlclose(handle);
        }
        return handle != nullptr;
    }
    void load(const char* p_name) { ASSERT_TRUE(m_module->initLibrary(open(m_directory.add(p_name, p_name)))); }

    PluginDirectory m_directory;
    IPluginModule* m_module = nullptr;
};

TEST_F(PluginModuleTest, WithoutALibraryGivesEmptyResults) {
    String text("before");
    GUID_t guid = GUID_t_fromString("70000000-0000-4000-8000-000000000001");
    List<String> words;
    List<GUID_t> guids;
    int version = 1;
    EXPECT_FALSE(m_module->getName(text));
    EXPECT_EQ(text, "");
    EXPECT_EQ(m_module->getVersion(), 0u);
    EXPECT_FALSE(m_module->getPluginGUID(guid));
    EXPECT_TRUE(guid.isNull());
    EXPECT_FALSE(m_module->getDependenciesComponentModules(words));
    EXPECT_FALSE(m_module->getDependenciesPluginModules(guids));
    EXPECT_FALSE(m_module->initialize(getData()));
    m_module->deinitialize();
    EXPECT_FALSE(m_module->isPluginExtensionSupported("extension", &version));
    EXPECT_EQ(m_module->getProcAddress("name"), nullptr);
    EXPECT_EQ(m_module->getLibraryHandle(), nullptr);
    IListOfObjects* objects = m_module->enumPublicObjects(zyr_getInterfaceGUID<IObject>());
    EXPECT_TRUE(objects->isEmpty());
    objects->release();
    EXPECT_THAT(m_application->getMessages(), ElementsAre("Library handle is NULL, cannot initialize plugin module"));
}

TEST_F(PluginModuleTest, GivesWhatTheModuleTells) {
    load("above_all");
    String text;
    GUID_t guid;
    List<String> words;
    List<GUID_t> guids;
    EXPECT_TRUE(m_module->getName(text));
    EXPECT_EQ(text, "above_all");
    EXPECT_EQ(m_module->getVersion(), 0x10000050000u);
    EXPECT_TRUE(m_module->getLongName(text));
    EXPECT_EQ(text, "above_all long");
    EXPECT_TRUE(m_module->getDescription(text));
    EXPECT_EQ(text, "above_all description");
    EXPECT_TRUE(m_module->getNamespace(text));
    EXPECT_EQ(text, "FAKE");
    EXPECT_TRUE(m_module->getPluginGUID(guid));
    EXPECT_EQ(guid, GUID_t_fromString("60000000-0000-4000-8000-000000000003"));
    EXPECT_TRUE(m_module->getDependenciesComponentModules(words));
    ASSERT_EQ(words.getSize(), 2u);
    EXPECT_EQ(words.front(), "common");
    EXPECT_EQ(words.back(), "core");
    EXPECT_TRUE(m_module->getDependenciesPluginModules(guids));
    ASSERT_EQ(guids.getSize(), 2u);
    EXPECT_EQ(guids.front(), GUID_t_fromString("60000000-0000-4000-8000-000000000002"));
    EXPECT_EQ(guids.back(), GUID_t_fromString("60000000-0000-4000-8000-000000000001"));
}

TEST_F(PluginModuleTest, HandsCallsOnToTheModule) {
    load("base");
    int version = 0;
    EXPECT_TRUE(m_module->isPluginExtensionSupported("extension", &version));
    EXPECT_EQ(version, 5);
    EXPECT_FALSE(m_module->isPluginExtensionSupported("other", &version));
    EXPECT_STREQ(static_cast<const char*>(m_module->getProcAddress("name")), "address");
    EXPECT_EQ(m_module->getProcAddress("other"), nullptr);
    setenv("ZYR_FAKE_ORDER", "", 1);
    EXPECT_TRUE(m_module->initialize(getData()));
    EXPECT_STREQ(getenv("ZYR_FAKE_ORDER"), "base ");
    m_module->deinitialize();
    EXPECT_STREQ(getenv("ZYR_FAKE_ORDER"), "deinitialized");
}

TEST_F(PluginModuleTest, RefusesALibraryWithoutAllExports) {
    void* handle = open(m_directory.add("lacks_export", "lacks_export"));
    EXPECT_FALSE(m_module->initLibrary(handle));
    EXPECT_EQ(m_module->getLibraryHandle(), nullptr);
    EXPECT_THAT(m_application->getMessages(),
                ElementsAre(testing::AllOf(HasSubstr("Unable to take over plugin module: it lacks an export: "),
                                           HasSubstr("zyr_plugin_getProcAddress"))));
    dlclose(handle);
}

TEST_F(PluginModuleTest, TakesOneLibraryOnly) {
    load("base");
    void* handle = m_module->getLibraryHandle();
    EXPECT_FALSE(m_module->initLibrary(handle));
    EXPECT_FALSE(m_module->initLibrary(nullptr));
    EXPECT_EQ(m_module->getLibraryHandle(), handle);
}

TEST_F(PluginModuleTest, ClosesALibraryThatWasNotInitialized) {
    const std::string path = m_directory.add("base", "base");
    ASSERT_TRUE(m_module->initLibrary(open(path)));
    EXPECT_TRUE(isLoaded(path));
    m_module->clear();
    EXPECT_FALSE(isLoaded(path));
    EXPECT_EQ(m_module->getLibraryHandle(), nullptr);
}

TEST_F(PluginModuleTest, KeepsALibraryThatWasInitialized) {
    const std::string path = m_directory.add("base", "base");
    ASSERT_TRUE(m_module->initLibrary(open(path)));
    EXPECT_TRUE(m_module->initialize(getData()));
    m_module->clear();
    EXPECT_TRUE(isLoaded(path));
}

TEST_F(PluginModuleTest, CopyHasNoLibrary) {
    load("base");
    IPluginModule* copy = static_cast<IPluginModule*>(m_module->clone());
    EXPECT_EQ(copy->getLibraryHandle(), nullptr);
    copy->release();
}

TEST_F(PluginModuleTest, EnumeratesObjectsOfItsOwnClasses) {
    load("fake_class");
    ASSERT_TRUE(m_module->initialize(getData()));
    IListOfObjects* objects = m_module->enumPublicObjects(zyr_getInterfaceGUID<IObject>());
    ASSERT_EQ(objects->getSize(), 1u);
    EXPECT_EQ(objects->front()->getClassName(), "FakeFormat");
    EXPECT_EQ(objects->front()->getRefCount(), 0u);
    objects->release();
    objects = m_module->enumPublicObjects(GUID_t_fromString("60000000-0000-4000-8000-00000000c1a5"));
    EXPECT_EQ(objects->getSize(), 1u);
    objects->release();
    objects = m_module->enumPublicObjects(zyr_getInterfaceGUID<IListOfObjects>());
    EXPECT_TRUE(objects->isEmpty());
    objects->release();
}

} // namespace
} // namespace zyr
