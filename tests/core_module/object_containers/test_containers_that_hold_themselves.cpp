// Walks over containers that hold themselves end, with one line.
#include "core_module/core_module_test.h"
#include "zyr_common/containers/zyr_array.h"
#include "zyr_common/containers/zyr_hash_multi_set.h"
#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object_containers/zyr_array_of_objects.h"
#include "zyr_common/object_containers/zyr_hash_map_of_objects.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"
#include "zyr_common/storage/zyr_load_save.h"

#include <gmock/gmock.h>

namespace zyr {
namespace {

using testing::ElementsAre;

class ContainersThatHoldThemselves : public CoreModuleUpTest {
protected:
    static constexpr const char* c_line =
        "Unable to enter ListOfObjects: 1024 containers are inside each other, or it holds itself";

    /// A list that holds itself twice: without an end of the whole walk, it would take 2 to the depth.
    void SetUp() override {
        CoreModuleUpTest::SetUp();
        m_list = Ref<IListOfObjects>::adopt(zyr_createObject<IListOfObjects>());
        m_list->pushBack(m_list.get());
        m_list->pushBack(m_list.get());
    }
    void TearDown() override {
        m_list->clear(); // It would hold itself for ever.
        m_list.clear();
    }
    static Ref<IListOfObjects> makeNested(uint32_t p_depth) {
        Ref<IListOfObjects> list = Ref<IListOfObjects>::adopt(zyr_createObject<IListOfObjects>());
        for (uint32_t i = 1; i < p_depth; i++) {
            Ref<IListOfObjects> outer = Ref<IListOfObjects>::adopt(zyr_createObject<IListOfObjects>());
            outer->pushBack(list.get());
            list = std::move(outer);
        }
        return list;
    }
    static uint32_t getDepth(const IListOfObjects* p_list) {
        uint32_t depth = 1;
        for (; !p_list->isEmpty(); depth++) {
            p_list = static_cast<const IListOfObjects*>(p_list->frontConst());
        }
        return depth;
    }

    Ref<IListOfObjects> m_list;
};

TEST_F(ContainersThatHoldThemselves, AreNotSavedInAnyFormat) {
    std::vector<std::string> lines;
    for (const char* format : {"raw", "zbf", "xml", "json"}) {
        SCOPED_TRACE(format);
        Array<unsigned char> data;
        EXPECT_FALSE(zyr_saveToData(m_list.get(), data, format, 0, ""));
        EXPECT_TRUE(data.isEmpty());
        lines.insert(lines.end(), {"Unable to write ListOfObjects: it holds itself",
                                   "The object cannot be serialized into data: bad object content"});
        EXPECT_EQ(m_application->getMessages(), lines);
    }
}

TEST_F(ContainersThatHoldThemselves, AreClonedEmptyWithOneLine) {
    const auto clone = Ref<IObject>::adopt(m_list->clone());
    EXPECT_TRUE(static_cast<IListOfObjects*>(clone.get())->isEmpty());
    EXPECT_EQ(m_list->getSize(), 2U);
    EXPECT_THAT(m_application->getMessages(), ElementsAre(c_line));
}

TEST_F(ContainersThatHoldThemselves, AreSharedAsTheyAre) {
    const auto other = Ref<IListOfObjects>::adopt(zyr_createObject<IListOfObjects>());
    other->setItems(m_list.get(), 1);
    EXPECT_EQ(other->getSize(), 2U);
    EXPECT_THAT(m_application->getMessages(), ElementsAre());
}

TEST_F(ContainersThatHoldThemselves, EndEachWalkerWithOneLine) {
    HashMultiSet<String, GUID_t> references;
    m_list->collectResourceGUIDReferences(1, references);
    EXPECT_THAT(m_application->getMessages(), ElementsAre(c_line));
    List<GUID_t> guids;
    m_list->collectGUIDsWhereAvailable(1, guids);
    HashMap<GUID_t, GUID_t> replacements;
    m_list->replaceGUIDsWhereAvailable(1, replacements);
    m_list->regenerateGUIDsWhereAvailable(1);
    m_list->replaceGUIDsWithFakeCounterGUIDs(1);
    m_list->clearGUID(1);
    EXPECT_TRUE(m_list->getGUID().isNull());
}

TEST_F(ContainersThatHoldThemselves, EndWalksThroughOtherContainers) {
    const auto map = Ref<IHashMapOfObjects<String>>::adopt(zyr_createObject<IHashMapOfObjects<String>>());
    const auto array = Ref<IArrayOfObjects>::adopt(zyr_createObject<IArrayOfObjects>());
    map->pushBack("array", array.get(), nullptr);
    array->pushBack(map.get());
    const auto clone = Ref<IObject>::adopt(map->clone());
    EXPECT_TRUE(static_cast<IHashMapOfObjects<String>*>(clone.get())->isEmpty());
    Array<unsigned char> data;
    EXPECT_FALSE(zyr_saveToData(map.get(), data, "zbf", 0, ""));
    array->clear();
}

TEST_F(ContainersThatHoldThemselves, LeaveTheNextWalkAlone) {
    Ref<IObject>::adopt(m_list->clone());
    const auto list = makeNested(3);
    const auto clone = Ref<IObject>::adopt(list->clone());
    EXPECT_EQ(getDepth(static_cast<IListOfObjects*>(clone.get())), 3U);
}

TEST_F(ContainersThatHoldThemselves, AreToldFromDeepOnesByTheirDepthAlone) {
    const auto deepest = makeNested(1024);
    const auto clone = Ref<IObject>::adopt(deepest->clone());
    EXPECT_EQ(getDepth(static_cast<IListOfObjects*>(clone.get())), 1024U);
    EXPECT_THAT(m_application->getMessages(), ElementsAre());
    const auto empty = Ref<IObject>::adopt(makeNested(1025)->clone());
    EXPECT_EQ(getDepth(static_cast<IListOfObjects*>(empty.get())), 1U);
    EXPECT_THAT(m_application->getMessages(), ElementsAre(c_line));
}

} // namespace
} // namespace zyr
