#include "core_module/core_module_test.h"
#include "zyr_common/documents/zyr_lexer.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/object/zyr_object_class.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"
#include "zyr_common/plugins/zyr_plugin_modules.h"

#include <gmock/gmock.h>

namespace zyr {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

/// A class of the host on top of an implementation of the module.
class HostFormat : public ObjectClass<HostFormat, WNativeFormatInfo> {
public:
    static constexpr const char* c_className = "HostFormat";
    static constexpr const char* c_classGUIDText = "70000000-0000-4000-8000-000000000001";
    HostFormat() { initObjectInterface(); }
    void init_This() {}
    void release_This() {}
    void copy_This(const HostFormat*) {}
};

TEST_F(CoreModuleTest, PrepareOnlyStoresTheInitializer) {
    EXPECT_EQ(getData()->m_coreInitializer, nullptr);
    m_prepare(getData());
    EXPECT_NE(getData()->m_coreInitializer, nullptr);
    EXPECT_EQ(getData()->m_coreState, ZYR_MODULE_STATE_NOT_INITIALIZED);
    for (moduleEntry_FUNC entry : getData()->m_core->m_entries) {
        EXPECT_EQ(entry, nullptr);
    }
    EXPECT_TRUE(getData()->m_objectAllocatorsByName.isEmpty());
}

TEST_F(CoreModuleTest, PrepareWithoutApplicationDataDoesNothing) {
    testing::internal::CaptureStdout();
    m_prepare(nullptr);
    fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "WARN : Application data is NULL, cannot prepare component module: core\n");
}

TEST_F(CoreModuleTest, PatchVersionOfTheHostIsFree) {
    getData()->m_frameworkVersion = 0x10000050007;
    initialize();
    EXPECT_EQ(getData()->m_coreState, ZYR_MODULE_STATE_INITIALIZED);
}

TEST_F(CoreModuleTest, RefusesHostsOfOtherVersions) {
    ASSERT_TRUE(getData()->commonInitialize());
    m_prepare(getData());
    for (uint64_t version : {0x10000060000ul, 0x20000050000ul, 0x10000040000ul, 0x50000ul}) {
        getData()->m_frameworkVersion = version;
        getData()->m_coreState = ZYR_MODULE_STATE_NOT_INITIALIZED;
        EXPECT_FALSE(getData()->coreInitialize());
        EXPECT_EQ(getData()->m_core->m_entries[0], nullptr);
        EXPECT_TRUE(getData()->m_objectAllocatorsByName.isEmpty());
    }
}

TEST_F(CoreModuleUpTest, FillsEveryEntryOfTheTable) {
    for (moduleEntry_FUNC entry : getData()->m_core->m_entries) {
        EXPECT_NE(entry, nullptr);
    }
    EXPECT_TRUE(getData()->m_core->m_lock.tryWriteLock());
    getData()->m_core->m_lock.unlock();
}

TEST_F(CoreModuleUpTest, RegistersItsClassesInTheOrderOfTheTable) {
    std::vector<std::string> names;
    for (auto it = getData()->m_objectAllocatorsByName.begin(); it != getData()->m_objectAllocatorsByName.end(); ++it) {
        names.push_back(it->m_first.getData());
    }
    EXPECT_THAT(names,
                ElementsAre("Object", "DataFormatInfo", "NativeFormatInfo", "CompressionInfo", "Lz4CompressionInfo",
                            "ZipCompressionInfo", "ListOfObjects", "Lexer", "PluginModule", "PluginModulesHandler"));
}

template <class Interface> void expectCreatable() {
    SCOPED_TRACE(InterfaceTraits<Interface>::c_typeName);
    Interface* object = zyr_createObject<Interface>();
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(object->getRefCount(), 0u);
    EXPECT_STREQ(object->getClassName().getData(), InterfaceTraits<Interface>::c_typeName);
    EXPECT_EQ(object->getClassGUID(), zyr_getInterfaceGUID<Interface>());
    object->release();
    IObject* byGUID = zyr_createObjectFromGUIDAndTypeName(zyr_getInterfaceGUID<Interface>(), "");
    ASSERT_NE(byGUID, nullptr);
    byGUID->release();
}

TEST_F(CoreModuleUpTest, CreatesItsClassesByTableAndByGUID) {
    expectCreatable<IObject>();
    expectCreatable<IDataFormatInfo>();
    expectCreatable<INativeFormatInfo>();
    expectCreatable<ICompressionInfo>();
    expectCreatable<ILz4CompressionInfo>();
    expectCreatable<IZipCompressionInfo>();
    expectCreatable<IListOfObjects>();
    expectCreatable<ILexer>();
    expectCreatable<IPluginModule>();
    expectCreatable<IPluginModulesHandler>();
}

TEST_F(CoreModuleUpTest, EntryWithoutClassLogsItsNameAndGivesNull) {
    const auto create = reinterpret_cast<IObject* (*)()>(getData()->m_core->m_entries[104]);
    EXPECT_EQ(create(), nullptr);
    EXPECT_THAT(m_application->getMessages(),
                ElementsAre("Unable to create object: the core module has no implementation of ConfigParser"));
}

TEST_F(CoreModuleUpTest, UnusedEntryLogsItsNumberAndGivesNull) {
    const auto create = reinterpret_cast<IObject* (*)()>(getData()->m_core->m_entries[123]);
    EXPECT_EQ(create(), nullptr);
    EXPECT_THAT(m_application->getMessages(),
                ElementsAre("Unable to create object: the core module does not use entry 123"));
}

TEST_F(CoreModuleUpTest, EntriesThatGiveNothingAllSayTheirName) {
    size_t missing = 0;
    for (int32_t i = 0; i < NUM_OF_CORE_ENTRY_NAMES; i++) {
        IObject* object = reinterpret_cast<IObject* (*)()>(getData()->m_core->m_entries[i])();
        if (object != nullptr) {
            object->release();
            continue;
        }
        missing++;
        EXPECT_THAT(m_application->getMessages().back(), EndsWith(coreEntryNames[i]));
    }
    EXPECT_EQ(missing, static_cast<size_t>(NUM_OF_CORE_ENTRY_NAMES - 10));
}

TEST_F(CoreModuleUpTest, StandsBehindClassesOfOtherModules) {
    HostFormat* format = new HostFormat;
    format->setFormatName("name");
    format->setFilePath("path");
    format->setDirty(1);
    IObject* clone = format->clone();
    ASSERT_EQ(clone->getClassName(), "HostFormat");
    EXPECT_EQ(static_cast<HostFormat*>(clone)->getFormatName(), "name");
    EXPECT_EQ(static_cast<HostFormat*>(clone)->getFilePath(), "path");
    EXPECT_TRUE(clone->isDirty());
    EXPECT_EQ(clone->getTLIObject(), clone);
    clone->release();
    format->release();
}

TEST_F(CoreModuleUpTest, GivesListsOfRegisteredSubclasses) {
    zyr_addObjectAllocator<HostFormat>();
    IListOfObjects* list = zyr_createObjectsFromParentGUID(zyr_getInterfaceGUID<IDataFormatInfo>());
    std::vector<std::string> names;
    for (auto it = list->beginConst(); it != list->endConst(); ++it) {
        names.push_back((*it)->getClassName().getData());
    }
    EXPECT_THAT(names, ElementsAre("NativeFormatInfo", "CompressionInfo", "Lz4CompressionInfo", "ZipCompressionInfo",
                                   "HostFormat"));
    list->release();
}

TEST_F(CoreModuleUpTest, LogsUnderItsOwnName) {
    reinterpret_cast<IObject* (*)()>(getData()->m_core->m_entries[123])();
    EXPECT_THAT(m_application->getBodies().at(0), HasSubstr(" WARN  zyr_core.so zyr::IObject* zyr::"));
}

} // namespace
} // namespace zyr
