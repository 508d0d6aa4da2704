#include "core_module/object_containers/object_containers_test.h"
#include "zyr_common/object_containers/zyr_array_of_objects.h"

namespace zyr {
namespace {

using test::RecordingSerializer;
using testing::ElementsAre;

/// A facade, as other modules use the array.
class ObjectArray : public WArrayOfObjects {
public:
    ObjectArray() { initObjectInterface(); }
};

class ArrayOfObjectsTest : public ObjectContainersTest {
protected:
    void SetUp() override {
        ObjectContainersTest::SetUp();
        m_array = new ObjectArray;
    }
    void TearDown() override {
        m_array->release();
        ObjectContainersTest::TearDown();
    }
    void pushAll() {
        for (IObject* item : m_items) {
            m_array->pushBack(item);
        }
    }
    static std::vector<std::string> namesOf(const IArrayOfObjects* p_array) {
        std::vector<std::string> names;
        for (uint64_t i = 0; i < p_array->getSize(); i++) {
            names.push_back(nameOf(p_array->getData()[i]));
        }
        return names;
    }

    ObjectArray* m_array = nullptr;
};

TEST_F(ArrayOfObjectsTest, HoldsOneReferenceOnEachElement) {
    pushAll();
    EXPECT_THAT(namesOf(m_array), ElementsAre("a", "b", "c"));
    EXPECT_EQ(countReferences(1), 1u);
    EXPECT_EQ(m_array->get(1), m_items[1]);
    EXPECT_EQ(m_array->get(3), nullptr);
    EXPECT_GE(m_array->getAllocatedSize(), 3u);
    m_array->clear();
    EXPECT_EQ(m_array->getSize(), 0u);
    EXPECT_EQ(countReferences(1), 0u);
}

TEST_F(ArrayOfObjectsTest, ReplaceGivesTheOldElementBack) {
    pushAll();
    EXPECT_TRUE(m_array->replace(0, m_items[2]));
    EXPECT_TRUE(m_array->replace(1, nullptr));
    EXPECT_THAT(namesOf(m_array), ElementsAre("c", "null", "c"));
    EXPECT_EQ(countReferences(0), 0u);
    EXPECT_EQ(countReferences(2), 2u);
}

TEST_F(ArrayOfObjectsTest, ReplaceBehindTheEndChangesNothing) {
    pushAll();
    EXPECT_FALSE(m_array->replace(3, m_items[0]));
    EXPECT_THAT(m_application->getMessages(), ElementsAre("Unable to replace object 3: the array has 3"));
    EXPECT_EQ(countReferences(0), 1u);
}

TEST_F(ArrayOfObjectsTest, PopHandsElementsOverInTheirOrder) {
    pushAll();
    IObject* popped[5] = {};
    EXPECT_EQ(m_array->popBack(popped, 2), 2u);
    EXPECT_EQ(popped[0], m_items[1]);
    EXPECT_EQ(popped[1], m_items[2]);
    EXPECT_EQ(countReferences(2), 1u);
    popped[0]->release();
    popped[1]->release();
    EXPECT_EQ(m_array->popBack(nullptr, 5), 1u);
    EXPECT_EQ(m_array->popBack(popped, 5), 0u);
}

TEST_F(ArrayOfObjectsTest, CopyHoldsClonesOrSharedElements) {
    pushAll();
    const auto copy = create<IArrayOfObjects>();
    EXPECT_TRUE(copy->copy(m_array));
    EXPECT_THAT(namesOf(copy.get()), ElementsAre("a", "b", "c"));
    EXPECT_NE(copy->get(0), m_items[0]);
    copy->setItems(m_array, 1);
    EXPECT_EQ(copy->get(0), m_items[0]);
    copy->setItems(copy.get(), 1);
    EXPECT_EQ(countReferences(0), 2u);
}

TEST_F(ArrayOfObjectsTest, WalkersReachTheElements) {
    pushAll();
    m_array->pushBack(nullptr);
    m_array->regenerateGUIDsWhereAvailable(1);
    List<GUID_t> guids;
    m_array->collectGUIDsWhereAvailable(1, guids);
    EXPECT_EQ(guids.getSize(), 4u);
    guids.clear();
    m_array->collectGUIDsWhereAvailable(0, guids);
    EXPECT_EQ(guids.getSize(), 1u);
    m_array->clearGUID(1);
    EXPECT_TRUE(m_items[2]->getGUID().isNull());
    m_array->replaceGUIDsWithFakeCounterGUIDs(1);
    EXPECT_FALSE(m_items[2]->getGUID().isNull());
}

TEST_F(ArrayOfObjectsTest, IsStoredWithNullSharedAndNestedElements) {
    const auto inner = create<IArrayOfObjects>();
    inner->pushBack(m_items[1]);
    m_array->pushBack(m_items[0]);
    m_array->pushBack(nullptr);
    m_array->pushBack(m_items[0]);
    m_array->pushBack(inner.get());
    for (auto kind : {RecordingSerializer::c_binary, RecordingSerializer::c_text}) {
        const Ref<IObject> read = stream(m_array, kind);
        auto* array = static_cast<IArrayOfObjects*>(read.get());
        ASSERT_EQ(array->getSize(), 4u);
        EXPECT_EQ(nameOf(array->get(0)), "a");
        EXPECT_EQ(array->get(1), nullptr);
        // An element that stands twice is stored twice.
        EXPECT_EQ(nameOf(array->get(2)), "a");
        EXPECT_NE(array->get(2), array->get(0));
        ASSERT_EQ(array->get(3)->getClassName(), "ArrayOfObjects");
        EXPECT_THAT(namesOf(static_cast<IArrayOfObjects*>(array->get(3))), ElementsAre("b"));
    }
}

TEST_F(ArrayOfObjectsTest, IsStoredInStructuresOfOneItemEach) {
    m_array->pushBack(m_items[0]);
    m_array->pushBack(nullptr);
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    bool_t result = 0;
    EXPECT_TRUE(m_array->writeSerialized(&serializer, 0, result));
    const std::string guid = String::newFromGUID(m_items[0]->getClassGUID()).getData();
    EXPECT_EQ(serializer.m_calls,
              (test::Calls{"beginArray items 2 254", "beginArrayElement 0 ObjectItem",
                           "beginObject object DataFormatInfo " + guid, "writeString formatName 'a' attribute",
                           "endObject", "endArrayElement", "beginArrayElement 1 ", "endArrayElement", "endArray"}));
}

TEST_F(ArrayOfObjectsTest, DeclaresTheClassesOfItsElements) {
    m_array->pushBack(m_items[0]);
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    bool_t result = 0;
    EXPECT_TRUE(m_array->writeSerialized(&serializer, 1, result));
    EXPECT_EQ(serializer.m_calls,
              (test::Calls{"beginHeaderStructure ObjectItem", "beginHeaderStructure DataFormatInfo",
                           "declareString formatName", "endHeaderStructure", "writeHeaderField object FFFFFFFF 0 ",
                           "endHeaderStructure", "writeHeaderField items FFFFFFFD FFFFFFFE ObjectItem"}));
}

TEST_F(ArrayOfObjectsTest, ElementOfAnUnknownClassLeavesNullInItsPlace) {
    pushAll();
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    bool_t result = 0;
    EXPECT_TRUE(m_array->writeSerialized(&serializer, 0, result));
    auto& object = serializer.m_root.m_arrays["items"][1].second->m_objects["object"];
    object->m_className = "Unknown";
    object->m_guidText = "80000000-0000-4000-8000-000000000001";
    test::RecordingDeserializer deserializer(serializer.m_root);
    const auto copy = create<IArrayOfObjects>();
    EXPECT_TRUE(copy->readSerialized(&deserializer));
    EXPECT_THAT(namesOf(copy.get()), ElementsAre("a", "null", "c"));
}

TEST_F(ArrayOfObjectsTest, FailureOfAnElementIsToldAndTheOthersStay) {
    pushAll();
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    serializer.m_failures = {"beginArrayElement 1"};
    bool_t result = 1;
    EXPECT_FALSE(m_array->writeSerialized(&serializer, 0, result));
    EXPECT_FALSE(result);
    RecordingSerializer whole(RecordingSerializer::c_binary);
    EXPECT_TRUE(m_array->writeSerialized(&whole, 0, result));
    test::RecordingDeserializer deserializer(whole.m_root);
    deserializer.m_failures = {"enterArrayElement 1"};
    const auto copy = create<IArrayOfObjects>();
    EXPECT_FALSE(copy->readSerialized(&deserializer));
    EXPECT_THAT(namesOf(copy.get()), ElementsAre("a"));
}

} // namespace
} // namespace zyr
