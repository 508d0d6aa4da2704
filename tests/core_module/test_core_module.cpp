#include "core_module/core_module_test.h"
#include "zyr_common/documents/zyr_lexer.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object/zyr_object_class.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"
#include "zyr_common/plugins/zyr_plugin_modules.h"

#include <gmock/gmock.h>

namespace zyr {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// The serializers and deserializers, which have no entry in the table.
constexpr int32_t c_numOfNamedClasses = 8;

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
    int32_t last = -1;
    for (auto it = getData()->m_objectAllocatorsByName.begin(); it != getData()->m_objectAllocatorsByName.end(); ++it) {
        int32_t entry = findCoreEntry(it->m_first.getData(), nullptr);
        if (entry < 0) {
            entry =
                last + 1 > NUM_OF_CORE_ENTRY_NAMES ? last + 1 : NUM_OF_CORE_ENTRY_NAMES; // Behind all with an entry.
        }
        EXPECT_GT(entry, last) << it->m_first.getData();
        last = entry;
    }
    EXPECT_EQ(last, NUM_OF_CORE_ENTRY_NAMES + c_numOfNamedClasses - 1);
    EXPECT_EQ(getData()->m_objectAllocatorsByName.getSize(), getData()->m_objectAllocatorsByGUID.getSize());
}

/// What every class of the table has to do.
class EachClass : public CoreModuleUpTest {
protected:
    /// Calls the function with a new object of each class and the number of its entry.
    template <typename Function> void forEach(Function p_function) {
        for (int32_t i = 0; i < NUM_OF_CORE_ENTRY_NAMES; i++) {
            SCOPED_TRACE(coreEntryNames[i]);
            const auto create = reinterpret_cast<objectAllocator_FUNC>(getData()->m_core->m_entries[i]);
            const auto object = Ref<IObject>::adopt(create());
            if (object) {
                m_numOfClasses++;
                p_function(object.get(), i);
            }
        }
        EXPECT_GE(m_numOfClasses, 10);
        EXPECT_EQ(static_cast<size_t>(m_numOfClasses + c_numOfNamedClasses),
                  getData()->m_objectAllocatorsByName.getSize());
    }

    int m_numOfClasses = 0;
};

TEST_F(EachClass, HasTheNameOfItsEntryAndOneOwner) {
    forEach([](IObject* p_object, int32_t p_entry) {
        EXPECT_STREQ(p_object->getClassName().getData(), coreEntryNames[p_entry]);
        EXPECT_EQ(p_object->getRefCount(), 0u);
        EXPECT_EQ(p_object->getTLIObject(), p_object);
    });
}

TEST_F(EachClass, IsCreatedByNameAndByGUIDWithTemplateTypeName) {
    forEach([](IObject* p_object, int32_t) {
        const auto byName = Ref<IObject>::adopt(zyr_createObjectFromName(p_object->getClassName()));
        ASSERT_TRUE(byName);
        EXPECT_EQ(byName->getClassName(), p_object->getClassName());
        const auto byGUID = Ref<IObject>::adopt(
            zyr_createObjectFromGUIDAndTypeName(p_object->getClassGUID(), p_object->getClassTemplateTypeName()));
        ASSERT_TRUE(byGUID);
        EXPECT_EQ(byGUID->getClassName(), p_object->getClassName());
        EXPECT_EQ(zyr_createObjectFromGUIDAndTypeName(p_object->getClassGUID(), "another type"), nullptr);
    });
}

TEST_F(EachClass, IsCopiedClonedAndCleared) {
    forEach([this](IObject* p_object, int32_t p_entry) {
        p_object->regenerateGUIDsWhereAvailable(0);
        p_object->setDirty(1);
        const auto clone = Ref<IObject>::adopt(p_object->clone());
        ASSERT_TRUE(clone);
        EXPECT_EQ(clone->getClassName(), p_object->getClassName());
        EXPECT_EQ(clone->getGUID(), p_object->getGUID());
        EXPECT_TRUE(clone->isDirty());
        EXPECT_EQ(clone->getRefCount(), 0u);

        const auto copy =
            Ref<IObject>::adopt(reinterpret_cast<objectAllocator_FUNC>(getData()->m_core->m_entries[p_entry])());
        EXPECT_TRUE(copy->copy(p_object));
        EXPECT_EQ(copy->getGUID(), p_object->getGUID());
        copy->clear();
        EXPECT_TRUE(copy->getGUID().isNull());
        EXPECT_FALSE(copy->isDirty());
        EXPECT_FALSE(p_object->getGUID().isNull());
    });
}

TEST_F(EachClass, RefusesToCopyAnotherClass) {
    const auto other = Ref<IObject>::adopt(zyr_createObject<IObject>());
    forEach([&](IObject* p_object, int32_t p_entry) {
        p_object->setDirty(1);
        EXPECT_EQ(p_object->copy(other.get()), p_entry == 0);
        EXPECT_EQ(p_object->isDirty(), p_entry != 0);
        EXPECT_FALSE(p_object->copy(nullptr));
    });
}

TEST_F(EachClass, HasItsReservedObjectAndAnswersToItsGUIDs) {
    forEach([](IObject* p_object, int32_t) {
        EXPECT_NE(p_object->getObjectReserved(), nullptr);
        EXPECT_TRUE(p_object->findClassGUID(p_object->getClassGUID()));
        EXPECT_EQ(p_object->findInterfaceObjectByClassGUID(p_object->getClassGUID()), p_object);
        EXPECT_EQ(p_object->findInterfaceObjectByClassGUID(zyr_getInterfaceGUID<IObject>()), p_object);
        EXPECT_FALSE(p_object->findClassGUID(GUID_t()));
        EXPECT_EQ(p_object->findInterfaceObjectByClassGUID(GUID_t()), nullptr);
    });
}

TEST_F(CoreModuleUpTest, UnusedEntryLogsItsNumberAndGivesNull) {
    const auto create = reinterpret_cast<IObject* (*)()>(getData()->m_core->m_entries[123]);
    EXPECT_EQ(create(), nullptr);
    EXPECT_THAT(m_application->getMessages(),
                ElementsAre("Unable to create object: the core module does not use entry 123"));
}

TEST_F(CoreModuleUpTest, EveryEntryWithANameHasAClass) {
    for (int32_t i = 0; i < NUM_OF_CORE_ENTRY_NAMES; i++) {
        const auto create = reinterpret_cast<objectAllocator_FUNC>(getData()->m_core->m_entries[i]);
        EXPECT_TRUE(Ref<IObject>::adopt(create())) << coreEntryNames[i];
    }
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

TEST_F(CoreModuleUpTest, CopiesASourceThatIsALayerAroundItsClass) {
    HostFormat* format = new HostFormat;
    format->setFormatName("name");
    format->setFilePath("path");
    const auto copy = Ref<INativeFormatInfo>::adopt(zyr_createObject<INativeFormatInfo>());
    EXPECT_TRUE(copy->copy(format));
    EXPECT_EQ(copy->getFilePath(), "path");
    // A facade of the base interface around an implementation of the derived one.
    const IObject* around = static_cast<const IObject*>(format);
    const auto base = Ref<IDataFormatInfo>::adopt(zyr_createObject<IDataFormatInfo>());
    base->copyUnsafe(around);
    EXPECT_EQ(base->getFormatName(), "name");
    format->release();
}

/// A layer that only forwards: it is no HostFormat itself, and one stands inside of it.
class AroundHostFormat : public WObject {
public:
    explicit AroundHostFormat(HostFormat* p_format) { m_interfaceObject = p_format; }
};

TEST_F(CoreModuleUpTest, ClassOfAnotherModuleCopiesASourceThatIsALayerAroundIt) {
    HostFormat* format = new HostFormat;
    format->setFilePath("path");
    IObject* around = new AroundHostFormat(format);
    HostFormat* copy = new HostFormat;
    copy->copyUnsafe(around);
    EXPECT_EQ(copy->getFilePath(), "path");
    copy->clear();
    EXPECT_TRUE(copy->copy(around));
    EXPECT_EQ(copy->getFilePath(), "path");
    const auto info = Ref<INativeFormatInfo>::adopt(zyr_createObject<INativeFormatInfo>());
    EXPECT_TRUE(info->copy(around));
    EXPECT_EQ(info->getFilePath(), "path");
    around->release();
    copy->release();
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
