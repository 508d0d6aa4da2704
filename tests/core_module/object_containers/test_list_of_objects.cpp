#include "core_module/core_module_test.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/object/zyr_object_class.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"

#include <gmock/gmock.h>

namespace zyr {
namespace {

using testing::ElementsAre;

/// A facade, as other modules use the list.
class ObjectList : public WListOfObjects {
public:
    ObjectList() { initObjectInterface(); }
};

class ListOfObjectsTest : public CoreModuleUpTest {
protected:
    void SetUp() override {
        CoreModuleUpTest::SetUp();
        m_list = new ObjectList;
        for (const char* name : {"a", "b", "c"}) {
            IDataFormatInfo* item = zyr_createObject<IDataFormatInfo>();
            item->setFormatName(name);
            m_items.push_back(item);
        }
    }
    void TearDown() override {
        m_list->release();
        for (IDataFormatInfo* item : m_items) {
            EXPECT_EQ(item->getRefCount(), 0u);
            item->release();
        }
    }

    static std::vector<std::string> namesOf(const IListOfObjects* p_list) {
        std::vector<std::string> names;
        for (auto it = p_list->beginConst(); it != p_list->endConst(); ++it) {
            names.push_back(static_cast<const IDataFormatInfo*>(*it)->getFormatName().getData());
        }
        return names;
    }
    void pushAll() {
        for (IDataFormatInfo* item : m_items) {
            m_list->pushBack(item);
        }
    }

    IListOfObjects* m_list = nullptr;
    std::vector<IDataFormatInfo*> m_items;
};

TEST_F(ListOfObjectsTest, StartsEmpty) {
    EXPECT_TRUE(m_list->isEmpty());
    EXPECT_EQ(m_list->getSize(), 0u);
    EXPECT_EQ(m_list->front(), nullptr);
    EXPECT_EQ(m_list->frontConst(), nullptr);
    EXPECT_EQ(m_list->back(), nullptr);
    EXPECT_EQ(m_list->backConst(), nullptr);
    EXPECT_TRUE(m_list->begin() == m_list->end());
}

TEST_F(ListOfObjectsTest, HoldsOneReferenceOnEachElement) {
    m_list->pushBack(m_items[0]);
    EXPECT_EQ(m_items[0]->getRefCount(), 1u);
    m_list->pushBack(m_items[0]);
    EXPECT_EQ(m_items[0]->getRefCount(), 2u);
    m_list->popFront();
    EXPECT_EQ(m_items[0]->getRefCount(), 1u);
    m_list->popBack();
    EXPECT_EQ(m_items[0]->getRefCount(), 0u);
}

TEST_F(ListOfObjectsTest, KeepsTheOrder) {
    m_list->pushBack(m_items[1]);
    m_list->pushBack(m_items[2]);
    m_list->pushFront(m_items[0]);
    EXPECT_THAT(namesOf(m_list), ElementsAre("a", "b", "c"));
    EXPECT_EQ(m_list->front(), m_items[0]);
    EXPECT_EQ(m_list->backConst(), m_items[2]);
    EXPECT_EQ(m_list->getSize(), 3u);
}

TEST_F(ListOfObjectsTest, PopsAtBothEnds) {
    pushAll();
    m_list->popFront();
    m_list->popBack();
    EXPECT_THAT(namesOf(m_list), ElementsAre("b"));
}

TEST_F(ListOfObjectsTest, PopOfAnEmptyListIsReported) {
    m_list->popBack();
    m_list->popFront();
    EXPECT_THAT(m_application->getMessages(),
                ElementsAre("Cannot pop further, the list is empty", "Cannot pop further, the list is empty"));
}

/// A class on top of the list, in the shape that all such classes have.
class NamedList : public ObjectClass<NamedList, WListOfObjects> {
public:
    static constexpr const char* c_className = "NamedList";
    static constexpr const char* c_classGUIDText = "70000000-0000-4000-8000-000000000002";
    NamedList() {
        initObjectInterface();
        init_This();
    }
    void init_This() { m_name = "new"; }
    void release_This() {}
    void copy_This(const NamedList* p_src) { m_name = p_src->m_name; }

    String m_name;
};

TEST_F(ListOfObjectsTest, ClassOnTopOfItIsCopiedWithClones) {
    NamedList* list = new NamedList;
    list->m_name = "mine";
    list->pushBack(m_items[0]);
    NamedList* clone = static_cast<NamedList*>(list->clone());
    EXPECT_EQ(clone->m_name, "mine");
    EXPECT_THAT(namesOf(clone), ElementsAre("a"));
    EXPECT_NE(clone->front(), m_items[0]);
    clone->release();
    list->release();
}

TEST_F(ListOfObjectsTest, FacadeCopiesElementsSharedOrCloned) {
    ObjectList* copy = new ObjectList;
    m_list->pushBack(m_items[0]);
    ObjectList* list = static_cast<ObjectList*>(m_list);
    copy->copy_Backwards(list, 1);
    EXPECT_EQ(copy->front(), m_items[0]);
    copy->copy_Backwards(list);
    EXPECT_NE(copy->front(), m_items[0]);
    EXPECT_THAT(namesOf(copy), ElementsAre("a"));
    copy->release();
}

TEST_F(ListOfObjectsTest, RefusesNull) {
    auto position = m_list->begin();
    m_list->pushBack(nullptr);
    m_list->pushFront(nullptr);
    m_list->insert(position, 0, nullptr);
    EXPECT_TRUE(m_list->isEmpty());
}

TEST_F(ListOfObjectsTest, InsertsBeforeAndBehindAPosition) {
    m_list->pushBack(m_items[1]);
    auto position = m_list->begin();
    m_list->insert(position, 0, m_items[0]);
    position = m_list->find(m_items[1]);
    m_list->insert(position, 1, m_items[2]);
    EXPECT_THAT(namesOf(m_list), ElementsAre("a", "b", "c"));
}

TEST_F(ListOfObjectsTest, RemovesAPosition) {
    pushAll();
    auto position = m_list->find(m_items[1]);
    m_list->remove(position);
    EXPECT_THAT(namesOf(m_list), ElementsAre("a", "c"));
    EXPECT_EQ(m_items[1]->getRefCount(), 0u);
}

TEST_F(ListOfObjectsTest, RemoveBehindTheEndIsReported) {
    pushAll();
    auto position = m_list->end();
    m_list->remove(position);
    EXPECT_EQ(m_list->getSize(), 3u);
    EXPECT_THAT(m_application->getMessages(), ElementsAre("Unable to remove NULL entry from the list"));
}

TEST_F(ListOfObjectsTest, RemovesARangeWithoutItsLast) {
    pushAll();
    auto first = m_list->begin();
    auto last = m_list->find(m_items[2]);
    m_list->removeRange(first, last);
    EXPECT_THAT(namesOf(m_list), ElementsAre("c"));
    EXPECT_EQ(m_items[0]->getRefCount(), 0u);
    EXPECT_EQ(m_items[1]->getRefCount(), 0u);
}

TEST_F(ListOfObjectsTest, RefusesPositionsOfAnotherList) {
    ObjectList* other = new ObjectList;
    other->pushBack(m_items[0]);
    other->pushBack(m_items[1]);
    m_list->pushBack(m_items[2]);
    auto foreign = other->begin();
    auto foreignEnd = other->find(m_items[1]);
    auto own = m_list->begin();
    m_list->insert(foreign, 0, m_items[2]);
    m_list->remove(foreign);
    m_list->removeRange(foreign, foreignEnd);
    m_list->removeRange(own, foreignEnd);
    EXPECT_THAT(namesOf(m_list), ElementsAre("c"));
    EXPECT_THAT(namesOf(other), ElementsAre("a", "b"));
    EXPECT_EQ(m_items[0]->getRefCount(), 1u);
    // Equal lines are one.
    EXPECT_THAT(m_application->getMessages(), ElementsAre("Unable to use the position: it is another container's"));
    other->release();
}

TEST_F(ListOfObjectsTest, FindsByAddress) {
    pushAll();
    EXPECT_EQ(*m_list->find(m_items[2]), m_items[2]);
    EXPECT_EQ(*m_list->findConst(m_items[0]), m_items[0]);
    EXPECT_TRUE(m_list->find(nullptr) == m_list->end());
    EXPECT_TRUE(m_list->findConst(nullptr) == m_list->endConst());
    m_list->pushBack(m_items[0]);
    EXPECT_EQ(m_list->count(m_items[0]), 2u);
    EXPECT_EQ(m_list->count(m_items[1]), 1u);
    EXPECT_EQ(m_list->count(nullptr), 0u);
}

TEST_F(ListOfObjectsTest, SetItemsSharesOrClones) {
    pushAll();
    ObjectList* other = new ObjectList;
    other->setItems(m_list, 1);
    EXPECT_EQ(other->front(), m_items[0]);
    EXPECT_EQ(m_items[0]->getRefCount(), 2u);
    other->setItems(m_list, 0);
    EXPECT_NE(other->front(), m_items[0]);
    EXPECT_EQ(m_items[0]->getRefCount(), 1u);
    EXPECT_THAT(namesOf(other), ElementsAre("a", "b", "c"));
    EXPECT_EQ(other->front()->getRefCount(), 0u);
    other->release();
}

TEST_F(ListOfObjectsTest, SetItemsOfItselfKeepsThem) {
    pushAll();
    m_list->setItems(m_list, 1);
    EXPECT_THAT(namesOf(m_list), ElementsAre("a", "b", "c"));
    EXPECT_EQ(m_items[0]->getRefCount(), 1u);
}

TEST_F(ListOfObjectsTest, SwapExchangesTheElements) {
    ObjectList* other = new ObjectList;
    m_list->pushBack(m_items[0]);
    other->pushBack(m_items[1]);
    other->pushBack(m_items[2]);
    m_list->swap(other);
    EXPECT_THAT(namesOf(m_list), ElementsAre("b", "c"));
    EXPECT_THAT(namesOf(other), ElementsAre("a"));
    m_list->swap(m_list);
    EXPECT_THAT(namesOf(m_list), ElementsAre("b", "c"));
    for (IDataFormatInfo* item : m_items) {
        EXPECT_EQ(item->getRefCount(), 1u);
    }
    other->release();
}

TEST_F(ListOfObjectsTest, CopyClonesTheElementsUnlessTheyAreToBeShared) {
    pushAll();
    ObjectList* copy = new ObjectList;
    copy->copyUnsafe(m_list);
    EXPECT_THAT(namesOf(copy), ElementsAre("a", "b", "c"));
    EXPECT_NE(copy->front(), m_items[0]);
    copy->copy_Backwards(static_cast<ObjectList*>(m_list), 1);
    EXPECT_EQ(copy->front(), m_items[0]);
    copy->copy_Backwards(static_cast<ObjectList*>(m_list), 0);
    EXPECT_NE(copy->front(), m_items[0]);
    copy->release();
}

TEST_F(ListOfObjectsTest, ClearReleasesTheElements) {
    pushAll();
    m_list->clear();
    EXPECT_TRUE(m_list->isEmpty());
    EXPECT_EQ(m_items[0]->getRefCount(), 0u);
}

TEST_F(ListOfObjectsTest, WalksTheGUIDsOfItsElementsWhenAsked) {
    pushAll();
    m_list->regenerateGUIDsWhereAvailable(1);
    List<GUID_t> guids;
    m_list->collectGUIDsWhereAvailable(0, guids);
    EXPECT_EQ(guids.getSize(), 1u);
    guids.clear();
    m_list->collectGUIDsWhereAvailable(1, guids);
    EXPECT_EQ(guids.getSize(), 4u);
    EXPECT_EQ(guids.back(), m_items[2]->getGUID());
    HashMap<GUID_t, GUID_t> replacements;
    const GUID_t replacement = GUID_t_fromString("70000000-0000-4000-8000-000000000009");
    replacements.pushBack(m_items[1]->getGUID(), replacement, nullptr);
    m_list->replaceGUIDsWhereAvailable(0, replacements);
    EXPECT_NE(m_items[1]->getGUID(), replacement);
    m_list->replaceGUIDsWhereAvailable(1, replacements);
    EXPECT_EQ(m_items[1]->getGUID(), replacement);
    m_list->clearGUID(0);
    EXPECT_FALSE(m_items[1]->getGUID().isNull());
    m_list->clearGUID(1);
    EXPECT_TRUE(m_items[1]->getGUID().isNull());
    m_list->replaceGUIDsWithFakeCounterGUIDs(1);
    EXPECT_FALSE(m_items[1]->getGUID().isNull());
}

} // namespace
} // namespace zyr
