#include "core_module/core_module_test.h"
#include "core_module/plugins/plugin_directory.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"
#include "zyr_common/plugins/zyr_plugin_modules.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace zyr {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class PluginModulesHandlerTest : public CoreModuleUpTest {
protected:
    void SetUp() override {
        CoreModuleUpTest::SetUp();
        m_handler = zyr_createObject<IPluginModulesHandler>();
        setenv("ZYR_FAKE_ORDER", "", 1);
    }
    void TearDown() override { m_handler->release(); }

    std::vector<std::string> loadedNames() const {
        std::vector<std::string> names;
        IListOfObjects* modules = m_handler->getPluginModules(0);
        for (auto it = modules->beginConst(); it != modules->endConst(); ++it) {
            String name;
            static_cast<const IPluginModule*>(*it)->getName(name);
            names.push_back(name.getData());
        }
        return names;
    }
    bool_t load(const TemporaryDirectory& p_directory) {
        return m_handler->loadFromDirectory(p_directory.getPath().c_str());
    }
    /// The messages without what doesn't come from the handler.
    std::vector<std::string> reports() const {
        std::vector<std::string> messages;
        for (const std::string& line : m_application->getBodies()) {
            if (line.find(" WARN ") != std::string::npos) {
                messages.push_back(line.substr(line.find(" - ") + 3));
            }
        }
        return messages;
    }

    IPluginModulesHandler* m_handler = nullptr;
};

TEST_F(PluginModulesHandlerTest, LoadsTheModulesOfADirectoryInOrderOfTheirNames) {
    const PluginDirectory directory = {"base", "orphan", "above_base"};
    EXPECT_TRUE(load(directory));
    EXPECT_THAT(loadedNames(), ElementsAre("above_base", "base", "orphan"));
    EXPECT_STREQ(getenv("ZYR_FAKE_ORDER"), "");
    EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(PluginModulesHandlerTest, TakesADirectoryWithoutFinalSlash) {
    const PluginDirectory directory = {"base"};
    const std::string path = directory.getPath();
    EXPECT_TRUE(m_handler->loadFromDirectory(path.substr(0, path.size() - 1).c_str()));
    EXPECT_THAT(loadedNames(), ElementsAre("base"));
}

TEST_F(PluginModulesHandlerTest, MissingDirectoryIsFalse) {
    const PluginDirectory directory;
    EXPECT_FALSE(m_handler->loadFromDirectory((directory.getPath() + "none").c_str()));
    EXPECT_THAT(reports().back(), StartsWith("Unable to read plugin modules directory: "));
}

TEST_F(PluginModulesHandlerTest, EmptyDirectoryIsTrue) {
    EXPECT_TRUE(load(PluginDirectory()));
    EXPECT_THAT(loadedNames(), IsEmpty());
}

TEST_F(PluginModulesHandlerTest, PassesOverFilesThatAreNoLibraries) {
    const PluginDirectory directory = {"base"};
    directory.writeFile("readme.txt", "text");
    std::filesystem::create_directory(directory.getPath() + "directory.so");
    EXPECT_TRUE(load(directory));
    EXPECT_THAT(loadedNames(), ElementsAre("base"));
    EXPECT_THAT(reports(), IsEmpty());
    EXPECT_THAT(m_application->getMessages(),
                ElementsAre("Not a plugin module: " + directory.getPath() + "readme.txt"));
}

TEST_F(PluginModulesHandlerTest, ReportsAndPassesOverWhatCannotBeLoaded) {
    const PluginDirectory directory = {"base", "crashing", "exiting", "lacks_export", "no_guid", "nameless"};
    directory.writeFile("text.so", "text");
    std::filesystem::create_symlink("nowhere", directory.getPath() + "link.so");
    ASSERT_EQ(mkfifo((directory.getPath() + "pipe.so").c_str(), 0600), 0);
    EXPECT_TRUE(load(directory));
    EXPECT_THAT(loadedNames(), ElementsAre("base"));
    const std::string start = "Unable to load plugin module " + directory.getPath();
    EXPECT_THAT(reports(), ElementsAre("Unable to get stat from file path: " + directory.getPath() + "link.so",
                                       StartsWith(start + "crashing.so: loading it ends the process with signal 11 ("),
                                       start + "exiting.so: loading it ends the process with status 3",
                                       StartsWith(start + "lacks_export.so: it lacks an export: "),
                                       start + "nameless.so: it doesn't tell its identity",
                                       start + "no_guid.so: it has no GUID", start + "pipe.so: it is no file",
                                       AllOf(StartsWith(start + "text.so: "), EndsWith("file too short"))));
}

TEST_F(PluginModulesHandlerTest, RefusesOtherVersionsButNotOtherPatches) {
    const PluginDirectory directory = {"other_major", "other_minor", "other_patch"};
    EXPECT_TRUE(load(directory));
    EXPECT_THAT(loadedNames(), ElementsAre("other_patch"));
    EXPECT_THAT(reports(),
                ElementsAre(EndsWith("other_major.so: its version 2.5.0 doesn't fit the framework's version 1.5.0"),
                            EndsWith("other_minor.so: its version 1.6.0 doesn't fit the framework's version 1.5.0")));
}

TEST_F(PluginModulesHandlerTest, RefusesASecondModuleOfTheSameGUID) {
    const PluginDirectory directory = {"base"};
    directory.add("base", "second");
    EXPECT_TRUE(load(directory));
    EXPECT_TRUE(load(directory));
    EXPECT_THAT(loadedNames(), ElementsAre("base"));
    EXPECT_THAT(reports(), ElementsAre(EndsWith("second.so: its GUID is that of the loaded plug-in module base"),
                                       EndsWith("base.so: its GUID is that of the loaded plug-in module base"),
                                       EndsWith("second.so: its GUID is that of the loaded plug-in module base")));
}

TEST_F(PluginModulesHandlerTest, InitializesModulesBehindThoseThatTheyDependOn) {
    EXPECT_TRUE(load(PluginDirectory{"above_all", "above_base", "base"}));
    EXPECT_TRUE(m_handler->initializePluginModules(getData()));
    EXPECT_STREQ(getenv("ZYR_FAKE_ORDER"), "base above_base above_all ");
    EXPECT_THAT(loadedNames(), ElementsAre("base", "above_base", "above_all"));
}

TEST_F(PluginModulesHandlerTest, InitializesEachModuleOnce) {
    EXPECT_TRUE(load(PluginDirectory{"base"}));
    EXPECT_TRUE(m_handler->initializePluginModules(getData()));
    EXPECT_TRUE(load(PluginDirectory{"above_base"}));
    EXPECT_TRUE(m_handler->initializePluginModules(getData()));
    EXPECT_STREQ(getenv("ZYR_FAKE_ORDER"), "base above_base ");
    EXPECT_THAT(loadedNames(), ElementsAre("base", "above_base"));
}

TEST_F(PluginModulesHandlerTest, LeavesOutWhatCannotBeInitialized) {
    EXPECT_TRUE(
        load(PluginDirectory{"above_failing", "base", "circle_1", "circle_2", "failing", "graphics", "orphan"}));
    EXPECT_FALSE(m_handler->initializePluginModules(getData()));
    EXPECT_STREQ(getenv("ZYR_FAKE_ORDER"), "base failing ");
    EXPECT_THAT(loadedNames(), ElementsAre("base"));
    EXPECT_THAT(
        reports(),
        ElementsAre("Unable to initialize plugin module failing: it failed",
                    "Unable to initialize plugin module graphics: it needs the component module graphics, which is not "
                    "there",
                    "Unable to initialize plugin module orphan: it needs the plug-in module "
                    "60000000-0000-4000-8000-000000000099, which is not there",
                    "Unable to initialize plugin module above_failing: it needs the plug-in module "
                    "60000000-0000-4000-8000-000000000008, which is not there",
                    "Unable to initialize plugin module circle_1: it depends on itself through other plug-in modules",
                    "Unable to initialize plugin module circle_2: it depends on itself through other plug-in "
                    "modules"));
}

TEST_F(PluginModulesHandlerTest, TakesAComponentModuleThatIsPrepared) {
    getData()->m_graphicsInitializer = [](ApplicationData*, uint32_t) -> bool_t { return 1; };
    EXPECT_TRUE(load(PluginDirectory{"graphics"}));
    EXPECT_TRUE(m_handler->initializePluginModules(getData()));
    EXPECT_THAT(loadedNames(), ElementsAre("graphics"));
}

TEST_F(PluginModulesHandlerTest, WithoutApplicationDataInitializesNothing) {
    EXPECT_TRUE(load(PluginDirectory{"base"}));
    EXPECT_FALSE(m_handler->initializePluginModules(nullptr));
    EXPECT_STREQ(getenv("ZYR_FAKE_ORDER"), "");
    EXPECT_THAT(loadedNames(), ElementsAre("base"));
}

TEST_F(PluginModulesHandlerTest, GivesItsListWithAReferenceWhenAsked) {
    IListOfObjects* modules = m_handler->getPluginModules(1);
    EXPECT_EQ(modules->getRefCount(), 1u);
    EXPECT_EQ(m_handler->getPluginModules(0), modules);
    EXPECT_EQ(modules->getRefCount(), 1u);
    modules->release();
}

TEST_F(PluginModulesHandlerTest, ServesTheApplicationData) {
    const PluginDirectory directory = {"fake_class", "crashing"};
    List<String> directories;
    directories.pushBack(directory.getPath().c_str());
    EXPECT_TRUE(getData()->pluginModulesInitialize(directories));
    ASSERT_NE(getData()->getPluginModules(0), nullptr);
    EXPECT_EQ(getData()->getPluginModules(0)->getSize(), 1u);
    // An object of one module on top of an implementation of another, made and released by a third.
    IDataFormatInfo* format = static_cast<IDataFormatInfo*>(zyr_createObjectFromName("FakeFormat"));
    ASSERT_NE(format, nullptr);
    format->setFormatName("name");
    EXPECT_EQ(format->getFormatName(), "fake:name");
    IObject* clone = format->clone();
    EXPECT_EQ(clone->getClassName(), "FakeFormat");
    EXPECT_EQ(static_cast<IDataFormatInfo*>(clone)->getFormatName(), "fake:name");
    clone->release();
    format->release();
}

TEST_F(PluginModulesHandlerTest, OfTheApplicationDataFailsOnAMissingDirectory) {
    const PluginDirectory directory = {"base"};
    List<String> directories;
    directories.pushBack(directory.getPath().c_str());
    directories.pushBack((directory.getPath() + "none").c_str());
    EXPECT_FALSE(getData()->pluginModulesInitialize(directories));
    EXPECT_STREQ(getenv("ZYR_FAKE_ORDER"), "");
}

} // namespace
} // namespace zyr
