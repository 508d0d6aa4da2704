#include "core_module/object_containers/zyr_list_of_objects_level.h"
#include "support/log/zyr_log_recorder.h"
#include "support/zyr_fake_core.h"
#include "support/zyr_ignore_leaks.h"
#include "zyr_common/implementation/zyr_native_format_info_level.h"
#include "zyr_common/object/zyr_object_class.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zyr {
namespace {

using testing::ElementsAre;
using testing::ExitedWithCode;
using testing::HasSubstr;

int s_parents = 0;

class Parent : public ObjectClass<Parent, WDataFormatInfo> {
public:
    static constexpr const char* c_className = "Parent";
    static constexpr const char* c_classGUIDText = "30000000-0000-4000-8000-000000000001";
    Parent() {
        initObjectInterface();
        s_parents++;
    }
    ~Parent() override { s_parents--; }
    void init_This() {}
    void release_This() {}
    void copy_This(const Parent*) {}
};

template <int Number> class Child : public ObjectClass<Child<Number>, Parent> {
public:
    static constexpr const char* c_className = Number == 1 ? "Child1" : "Child2";
    static constexpr const char* c_classGUIDText =
        Number == 1 ? "30000000-0000-4000-8000-000000000002" : "30000000-0000-4000-8000-000000000003";
    void init_This() {}
    void release_This() {}
    void copy_This(const Child*) {}
};

class CreateObjects : public testing::Test {
protected:
    void SetUp() override {
        m_core.addClass<DataFormatInfo>();
        m_core.addClass<ListOfObjects>();
        s_parents = 0;
        zyr_addObjectAllocator<Child<2>>();
        zyr_addObjectAllocator<DataFormatInfo>();
        zyr_addObjectAllocator<Parent>();
        zyr_addObjectAllocator<Child<1>>();
    }

    static std::vector<std::string> namesOf(IListOfObjects* p_list) {
        std::vector<std::string> names;
        for (auto it = p_list->beginConst(); it != p_list->endConst(); ++it) {
            names.push_back((*it)->getClassName().getData());
        }
        return names;
    }

    FakeCore m_core;
};

TEST_F(CreateObjects, FromParentGUIDGivesTheSubclassesInOrderOfRegistration) {
    IListOfObjects* list = zyr_createObjectsFromParentGUID(Parent::getStaticClassGUID());
    EXPECT_THAT(namesOf(list), ElementsAre("Child2", "Child1"));
    list->release();
}

TEST_F(CreateObjects, FromAnInterfaceGUIDLeavesOutItsOwnImplementation) {
    IListOfObjects* list = zyr_createObjectsFromParentGUID(zyr_getInterfaceGUID<IDataFormatInfo>());
    EXPECT_THAT(namesOf(list), ElementsAre("Child2", "Parent", "Child1"));
    list->release();
}

TEST_F(CreateObjects, FromAnUnknownGUIDGivesAnEmptyList) {
    IListOfObjects* list = zyr_createObjectsFromParentGUID(GUID_t());
    EXPECT_TRUE(list->isEmpty());
    list->release();
}

TEST_F(CreateObjects, ListHoldsTheOnlyReferences) {
    IListOfObjects* list = zyr_createObjectsFromParentGUID(Parent::getStaticClassGUID());
    EXPECT_EQ(list->front()->getRefCount(), 0u);
    EXPECT_EQ(s_parents, 2);
    list->release();
    EXPECT_EQ(s_parents, 0);
}

TEST_F(CreateObjects, FromParentNameIsTheSameAndKeepsOneObject) {
    const IgnoreLeaks ignoreLeaks;
    IListOfObjects* list = zyr_createObjectsFromParentName("Parent");
    ASSERT_NE(list, nullptr);
    EXPECT_THAT(namesOf(list), ElementsAre("Child2", "Child1"));
    list->release();
    EXPECT_EQ(s_parents, 1);
}

TEST_F(CreateObjects, FromAnUnknownParentNameGivesNothingInSilence) {
    test::takeLogLines();
    EXPECT_EQ(zyr_createObjectsFromParentName("Nobody"), nullptr);
    EXPECT_THAT(test::takeLogLines(), ElementsAre());
}

TEST_F(CreateObjects, BrokenInvariantsEndTheProcess) {
    const std::string function = "zyr::IListOfObjects* zyr::zyr_createObjectsFromParentGUID(const GUID_t&)";
    EXPECT_EXIT(
        {
            m_core->m_objectAllocatorsByGUID.pushFront(Pair<GUID_t, String>(), nullptr, nullptr);
            zyr_createObjectsFromParentGUID(GUID_t());
        },
        ExitedWithCode(0), HasSubstr(test::assertionLine(function, "it->m_second != NULL")));
    EXPECT_EXIT(
        {
            m_core->m_objectAllocatorsByGUID.pushFront(
                Pair<GUID_t, String>(), []() -> IObject* { return nullptr; }, nullptr);
            zyr_createObjectsFromParentGUID(GUID_t());
        },
        ExitedWithCode(0), HasSubstr(test::assertionLine(function, "rtnObject != NULL")));
    EXPECT_EXIT(
        {
            m_core.setEntry<IListOfObjects>([]() -> IListOfObjects* { return nullptr; });
            zyr_createObjectsFromParentGUID(GUID_t());
        },
        ExitedWithCode(0), HasSubstr(test::assertionLine(function, "rtnList != NULL")));
}

} // namespace
} // namespace zyr
