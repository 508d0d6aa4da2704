#include "zyr_common/object/zyr_factories.h"

#include "support/log/zyr_log_recorder.h"
#include "support/zyr_fake_core.h"
#include "zyr_common/implementation/zyr_implementation.h"
#include "zyr_common/object/zyr_object_class.h"

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utility>

namespace zyr {
namespace {

using testing::ElementsAre;
using testing::ExitedWithCode;
using testing::HasSubstr;

int s_alive = 0;

template <int Number> class Registered : public ObjectClass<Registered<Number>, WObject> {
public:
    static constexpr const char* c_className = Number == 1 ? "First" : "Second";
    static constexpr const char* c_classGUIDText =
        Number == 1 ? "20000000-0000-4000-8000-000000000001" : "20000000-0000-4000-8000-000000000002";

    Registered() {
        this->initObjectInterface();
        s_alive++;
    }
    ~Registered() override { s_alive--; }
    void init_This() {}
    void release_This() {}
    void copy_This(const Registered*) {}
};
using First = Registered<1>;
using Second = Registered<2>;

/// Says that it is "First", as another module's class of the same name does.
class Twin : public First {};

/// A class of a template, whose argument's name is part of its key.
class OfFloat : public First {
public:
    const String& getClassTemplateTypeName() const override {
        static const String name("float");
        return name;
    }
};

struct SomeRecord {
    static constexpr const char* c_typeName = "SomeRecord";
    int m_number = 5;
};

class Factories : public testing::Test {
protected:
    void SetUp() override {
        m_core.addClass<Implementation<ObjectLevel<IObject>>>();
        s_alive = 0;
        test::takeLogLines();
    }
    void TearDown() override { EXPECT_EQ(s_alive, 0); }

    FakeCore m_core;
};

TEST_F(Factories, RegistrationNeedsAnInstanceAndGivesItBack) {
    zyr_addObjectAllocator<First>();
    EXPECT_EQ(s_alive, 0);
    EXPECT_EQ(m_core->m_objectAllocatorsByName.getSize(), 1u);
    EXPECT_EQ(m_core->m_objectAllocatorsByGUID.getSize(), 1u);
}

TEST_F(Factories, CreateByName) {
    zyr_addObjectAllocator<First>();
    zyr_addObjectAllocator<Second>();
    IObject* object = zyr_createObjectFromName("Second");
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(zyr_getClassName(object), "Second");
    EXPECT_EQ(object->getRefCount(), 0u);
    zyr_releaseObject(object);
}

TEST_F(Factories, UnknownAndEmptyNamesGiveNothingInSilence) {
    zyr_addObjectAllocator<First>();
    EXPECT_EQ(zyr_createObjectFromName("Third"), nullptr);
    EXPECT_EQ(zyr_createObjectFromName(""), nullptr);
    EXPECT_EQ(zyr_createUnknownVariableFromName("Third"), nullptr);
    EXPECT_THAT(test::takeLogLines(), ElementsAre());
}

TEST_F(Factories, CreateByGUIDAndTypeName) {
    zyr_addObjectAllocator<OfFloat>();
    IObject* object = zyr_createObjectFromGUIDAndTypeName(First::getStaticClassGUID(), "float");
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(zyr_getClassGUID(object), First::getStaticClassGUID());
    EXPECT_EQ(zyr_getClassTemplateTypeName(object), "float");
    zyr_releaseObject(object);
}

TEST_F(Factories, OtherTypeNameOrHalfAGUIDGivesNothingInSilence) {
    zyr_addObjectAllocator<First>();
    EXPECT_EQ(zyr_createObjectFromGUIDAndTypeName(First::getStaticClassGUID(), "float"), nullptr);
    EXPECT_EQ(zyr_createObjectFromGUIDAndTypeName(GUID_t_fromString("20000000-0000-4000-8000-00000000000f"), ""),
              nullptr);
    EXPECT_EQ(zyr_createObjectFromGUIDAndTypeName(GUID_t_fromString("f0000000-0000-4000-8000-000000000001"), ""),
              nullptr);
    EXPECT_THAT(test::takeLogLines(), ElementsAre());
}

TEST_F(Factories, SecondRegistrationOfANameKeepsTheFirstAllocator) {
    zyr_addObjectAllocator<First>();
    zyr_addObjectAllocator<Second>();
    zyr_addObjectAllocator<Twin>();
    EXPECT_EQ(m_core->m_objectAllocatorsByName.getSize(), 2u);
    EXPECT_EQ(m_core->m_objectAllocatorsByName.front(), &zyr_objectAllocator<First>);
    EXPECT_EQ(m_core->m_objectAllocatorsByGUID.getSize(), 2u);
    EXPECT_EQ(m_core->m_objectAllocatorsByGUID.front(), &zyr_objectAllocator<First>);
}

TEST_F(Factories, CreateRecordByName) {
    zyr_addUnknownVariableAllocator<SomeRecord>();
    SomeRecord* record = static_cast<SomeRecord*>(zyr_createUnknownVariableFromName("SomeRecord"));
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->m_number, 5);
    delete record;
}

TEST_F(Factories, CoreTableIsReadUnderItsLockAndCalledOutsideIt) {
    m_core.setEntry<IObject>([]() -> IObject* {
        EXPECT_TRUE(zyr_getApplicationData()->m_core->m_lock.tryWriteLock());
        zyr_getApplicationData()->m_core->m_lock.unlock();
        return nullptr;
    });
    EXPECT_EQ(zyr_createObject<IObject>(), nullptr);
}

bool s_locked;

TEST_F(Factories, AllocatorsRunUnderTheReadLock) {
    const auto allocator = +[]() -> IObject* {
        ApplicationData* data = zyr_getApplicationData();
        s_locked = !data->m_objectAllocatorLock.tryWriteLock() && data->m_objectAllocatorLock.tryReadLock();
        data->m_objectAllocatorLock.unlock();
        return new Implementation<ObjectLevel<IObject>>;
    };
    s_locked = false;
    m_core->m_objectAllocatorsByName.pushBack("Probe", allocator, nullptr);
    zyr_releaseObject(zyr_createObjectFromName("Probe"));
    EXPECT_TRUE(s_locked);
    s_locked = false;
    m_core->m_objectAllocatorsByGUID.pushBack(Pair<GUID_t, String>(), allocator, nullptr);
    zyr_releaseObject(zyr_createObjectFromGUIDAndTypeName(GUID_t(), ""));
    EXPECT_TRUE(s_locked);
    EXPECT_TRUE(m_core->m_objectAllocatorLock.tryWriteLock());
    m_core->m_objectAllocatorLock.unlock();
}

TEST_F(Factories, InterfaceObjectWithoutCoreEntryIsCreatedByGUID) {
    IObject* object = zyr_createInterfaceObject<IObject>();
    EXPECT_EQ(object->getClassName(), "Object");
    object->release();
}

TEST_F(Factories, NullEntryEndsTheProcess) {
    m_core->m_objectAllocatorsByName.pushBack("Null", nullptr, nullptr);
    m_core->m_objectAllocatorsByGUID.pushBack(Pair<GUID_t, String>(), nullptr, nullptr);
    m_core->m_unknownVariableAllocators.pushBack("Null", nullptr, nullptr);
    EXPECT_EXIT(zyr_createObjectFromName("Null"), ExitedWithCode(0),
                HasSubstr(test::assertionLine("zyr::IObject* zyr::zyr_createObjectFromName(const String&)",
                                              "it->m_second != NULL")));
    EXPECT_EXIT(zyr_createObjectFromGUIDAndTypeName(GUID_t(), ""), ExitedWithCode(0),
                HasSubstr(test::assertionLine(
                    "zyr::IObject* zyr::zyr_createObjectFromGUIDAndTypeName(const GUID_t&, const String&)",
                    "it->m_second != NULL")));
    EXPECT_EXIT(zyr_createUnknownVariableFromName("Null"), ExitedWithCode(0),
                HasSubstr(test::assertionLine("void* zyr::zyr_createUnknownVariableFromName(const String&)",
                                              "it->m_second != NULL")));
}

TEST_F(Factories, NullResultEndsTheProcess) {
    m_core->m_objectAllocatorsByName.pushBack(
        "Null", []() -> IObject* { return nullptr; }, nullptr);
    m_core->m_objectAllocatorsByGUID.pushBack(
        Pair<GUID_t, String>(), []() -> IObject* { return nullptr; }, nullptr);
    m_core->m_unknownVariableAllocators.pushBack(
        "Null", []() -> void* { return nullptr; }, nullptr);
    EXPECT_EXIT(zyr_createObjectFromName("Null"), ExitedWithCode(0), HasSubstr("|assert(rtnObject != NULL)"));
    EXPECT_EXIT(zyr_createObjectFromGUIDAndTypeName(GUID_t(), ""), ExitedWithCode(0),
                HasSubstr("|assert(rtnObject != NULL)"));
    EXPECT_EXIT(zyr_createUnknownVariableFromName("Null"), ExitedWithCode(0), HasSubstr("|assert(rtnVar != NULL)"));
}

TEST_F(Factories, MissingCoreTableEndsTheProcess) {
    EXPECT_EXIT(
        {
            static CoreModuleTable* volatile kept = std::exchange(m_core->m_core, nullptr);
            (void)kept;
            zyr_createObject<IObject>();
        },
        ExitedWithCode(0),
        testing::AllOf(HasSubstr("test|1|1|Interface* zyr::zyr_createObject() [with Interface = "),
                       HasSubstr("|assert(appData->m_core != NULL)")));
}

/// What is reported when there is no application data.
std::vector<std::string> linesWithout(const std::function<void()>& p_code) {
    test::takeLogLines();
    p_code();
    return test::takeLogLines();
}

TEST(FactoriesWithoutApplicationData, CreateNothingAndReport) {
    ASSERT_EQ(zyr_getApplicationData(), nullptr);
    EXPECT_THAT(linesWithout([] { EXPECT_EQ(zyr_createObjectFromName("Name"), nullptr); }),
                ElementsAre("common|0|2|zyr::IObject* zyr::zyr_createObjectFromName(const String&)|"
                            "Application data is NULL, cannot create object from name Name. Return NULL"));
    EXPECT_THAT(linesWithout([] {
                    EXPECT_EQ(zyr_createObjectFromGUIDAndTypeName(
                                  GUID_t_fromString("98880ce6-8e7d-4d88-89a8-8a97997c03b1"), "float"),
                              nullptr);
                }),
                ElementsAre("common|0|2|zyr::IObject* zyr::zyr_createObjectFromGUIDAndTypeName(const GUID_t&, const "
                            "String&)|Application data is NULL, cannot create object from GUID "
                            "98880ce6-8e7d-4d88-89a8-8a97997c03b1. Return NULL"));
    EXPECT_THAT(linesWithout([] { EXPECT_EQ(zyr_createUnknownVariableFromName("Name"), nullptr); }),
                ElementsAre("common|0|2|void* zyr::zyr_createUnknownVariableFromName(const String&)|"
                            "Application data is NULL, cannot create variable from name Name. Return NULL"));
    EXPECT_THAT(linesWithout([] { EXPECT_EQ(zyr_createObjectsFromParentName("Name"), nullptr); }),
                ElementsAre("common|0|2|zyr::IListOfObjects* zyr::zyr_createObjectsFromParentName(const String&)|"
                            "Application data is NULL, cannot create objects from name Name. Return NULL"));
    EXPECT_THAT(
        linesWithout([] { EXPECT_EQ(zyr_createObject<IObject>(), nullptr); }),
        ElementsAre(testing::AllOf(
            testing::StartsWith("test|0|2|Interface* zyr::zyr_createObject() [with Interface = "),
            testing::EndsWith("|Application data is NULL, cannot create object from name Object. Return NULL"))));
    EXPECT_THAT(linesWithout([] { zyr_addUnknownVariableAllocator<SomeRecord>(); }),
                ElementsAre(testing::EndsWith("|Application data is NULL, cannot allocate variable from name "
                                              "SomeRecord")));
}

/// A class that needs no interface object, so that it can be made without application data.
class StandaloneLevel : public ObjectLevel<IObject> {
public:
    using LevelBase = ObjectLevel<IObject>;
    StandaloneLevel() { s_alive++; }
    ~StandaloneLevel() override { s_alive--; }
};

TEST(FactoriesWithoutApplicationData, RegistrationReportsAndReleasesItsInstance) {
    s_alive = 0;
    EXPECT_THAT(
        linesWithout([] { zyr_addObjectAllocator<Implementation<StandaloneLevel>>(); }),
        ElementsAre(testing::AllOf(testing::StartsWith("test|0|2|void zyr::zyr_addObjectAllocator() [with T = "),
                                   testing::EndsWith("|Application data is NULL, cannot create object from "
                                                     "name Object"))));
    EXPECT_EQ(s_alive, 0);
}

} // namespace
} // namespace zyr
