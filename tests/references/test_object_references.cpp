#include "zyr_common/references/zyr_object_references.h"

#include "support/binary_layout.h"
#include "support/zyr_record_walk.h"
#include "support/zyr_recording_serializer.h"
#include "support/zyr_stub_object.h"

namespace zyr {
namespace {

using test::Calls;
using test::RecordingDeserializer;
using test::RecordingSerializer;

const char* const FIRST_TEXT = "10000000-0000-4000-8000-000000000001";
const GUID_t FIRST = GUID_t_fromString(FIRST_TEXT);
const GUID_t SECOND = GUID_t_fromString("20000000-0000-4000-8000-000000000002");

/// Tells when it goes.
class TrackedObject : public test::StubObject<IObject> {
public:
    explicit TrackedObject(bool& p_alive) : m_alive(p_alive) { m_alive = true; }
    ~TrackedObject() override { m_alive = false; }

private:
    bool& m_alive;
};

class ObjectReferences : public testing::Test {
protected:
    ~ObjectReferences() override {
        m_object->release();
        EXPECT_FALSE(m_alive);
        m_other->release();
        EXPECT_FALSE(m_otherAlive);
    }

    bool m_alive = false;
    bool m_otherAlive = false;
    IObject* m_object = new TrackedObject(m_alive);
    IObject* m_other = new TrackedObject(m_otherAlive);
};

/// Counts the changes of the flag that the record makes itself.
template <class Base> class WatchedReference : public Base {
public:
    void setDirty(bool_t p_dirty) override {
        m_calls += p_dirty ? "1" : "0";
        Base::setDirty(p_dirty);
    }
    std::string m_calls;
};

} // namespace

TEST_F(ObjectReferences, KeepTheOrderOfTheirOperations) {
    EXPECT_EQ(getSlot(&ObjectNameReference::clear), 2u);
    EXPECT_EQ(getSlot(&ObjectNameReference::readSerialized), 3u);
    EXPECT_EQ(getSlot(&ObjectNameReference::writeSerialized), 4u);
    EXPECT_EQ(getSlot(&ObjectNameReference::refObject), 5u);
    EXPECT_EQ(getSlot(&ObjectNameReference::getObject), 6u);
    EXPECT_EQ(getSlot(&ObjectNameReference::getName), 7u);
    EXPECT_EQ(getSlot(&ObjectNameReference::setDirty), 8u);
    EXPECT_EQ(getSlot(&ObjectNameReference::isDirty), 9u);

    EXPECT_EQ(getSlot(&ObjectGUIDReference::clear), 2u);
    EXPECT_EQ(getSlot(&ObjectGUIDReference::readSerialized), 3u);
    EXPECT_EQ(getSlot(&ObjectGUIDReference::writeSerialized), 4u);
    EXPECT_EQ(getSlot(&ObjectGUIDReference::refObject), 5u);
    EXPECT_EQ(getSlot(&ObjectGUIDReference::getObject), 6u);
    EXPECT_EQ(getSlot(&ObjectGUIDReference::getGUID), 7u);
    EXPECT_EQ(getSlot(&ObjectGUIDReference::setGUID), 8u);
    EXPECT_EQ(getSlot(&ObjectGUIDReference::setDirty), 9u);
    EXPECT_EQ(getSlot(&ObjectGUIDReference::isDirty), 10u);

    EXPECT_EQ(getSlot(&ObjectInputGUIDReference::refObjectInputIndex), 11u);
    EXPECT_EQ(getSlot(&ObjectInputGUIDReference::getInputIndex), 12u);
}

TEST_F(ObjectReferences, HoldTheirMembersSideBySide) {
    ObjectNameReference name;
    name.refObject(m_object, "name");
    EXPECT_EQ(readAt<IObject*>(&name, 8), m_object);
    EXPECT_EQ(static_cast<const void*>(&name.getName()), reinterpret_cast<const char*>(&name) + 16);
    EXPECT_EQ(readAt<bool_t>(&name, 128), 1);
    name.setDirty(0);
    EXPECT_EQ(readAt<bool_t>(&name, 128), 0);

    ObjectInputGUIDReference input;
    input.refObjectInputIndex(m_object, FIRST, 0x01020304);
    EXPECT_EQ(readAt<IObject*>(&input, 8), m_object);
    EXPECT_EQ(readAt<GUID_t>(&input, 16), FIRST);
    EXPECT_EQ(readAt<bool_t>(&input, 32), 1);
    EXPECT_EQ(readAt<uint32_t>(&input, 33), 0x01020304u);
}

TEST_F(ObjectReferences, StartUnresolvedEmptyAndDirty) {
    ObjectNameReference name;
    EXPECT_EQ(name.getObject(), nullptr);
    EXPECT_EQ(name.getName(), "");
    EXPECT_EQ(name.isDirty(), 1);
    ObjectInputGUIDReference input;
    EXPECT_EQ(input.getObject(), nullptr);
    EXPECT_EQ(input.getGUID(), GUID_t());
    EXPECT_EQ(input.isDirty(), 1);
    EXPECT_EQ(input.getInputIndex(), 0u);
}

TEST_F(ObjectReferences, AreNamedAfterTheirClass) {
    EXPECT_EQ(ObjectNameReference().getClassName(), "ObjectNameReference");
    EXPECT_EQ(ObjectGUIDReference().getClassName(), "ObjectGUIDReference");
    EXPECT_EQ(ObjectInputGUIDReference().getClassName(), "ObjectInputGUIDReference");
}

TEST_F(ObjectReferences, HoldTheObjectWithOneReference) {
    ObjectGUIDReference reference;
    EXPECT_EQ(reference.refObject(m_object, FIRST), 1);
    EXPECT_EQ(reference.getObject(), m_object);
    EXPECT_EQ(reference.getGUID(), FIRST);
    EXPECT_EQ(m_object->getRefCount(), 1u);
    EXPECT_EQ(reference.refObject(m_other, SECOND), 1);
    EXPECT_EQ(reference.getObject(), m_other);
    EXPECT_EQ(reference.getGUID(), SECOND);
    EXPECT_EQ(m_object->getRefCount(), 0u);
    EXPECT_EQ(m_other->getRefCount(), 1u);

    ObjectNameReference name;
    EXPECT_EQ(name.refObject(m_object, "first"), 1);
    EXPECT_EQ(name.refObject(m_other, "second"), 1);
    EXPECT_EQ(name.getObject(), m_other);
    EXPECT_EQ(name.getName(), "second");
    EXPECT_EQ(m_object->getRefCount(), 0u);
    EXPECT_EQ(m_other->getRefCount(), 2u);
}

TEST_F(ObjectReferences, MayTakeTheObjectThatTheyHoldAsItsLastHolder) {
    bool alive = false;
    IObject* object = new TrackedObject(alive);
    ObjectGUIDReference reference;
    reference.refObject(object, FIRST);
    object->release();
    reference.refObject(object, SECOND);
    EXPECT_TRUE(alive);
    EXPECT_EQ(object->getRefCount(), 0u);
    ObjectNameReference name;
    name.refObject(object, "first");
    reference.refObject(nullptr, FIRST);
    name.refObject(object, "second");
    EXPECT_TRUE(alive);
    name.refObject(nullptr, name.getName());
    EXPECT_FALSE(alive);
    EXPECT_EQ(name.getName(), "second");
}

TEST_F(ObjectReferences, KeepTheKeyWhenAnObjectComesWithoutOne) {
    ObjectGUIDReference reference;
    reference.setGUID(FIRST);
    reference.setDirty(0);
    EXPECT_EQ(reference.refObject(m_object, GUID_t()), 1);
    EXPECT_EQ(reference.getObject(), m_object);
    EXPECT_EQ(reference.getGUID(), FIRST);
    EXPECT_EQ(reference.isDirty(), 1);

    ObjectNameReference name;
    name.refObject(nullptr, "kept");
    name.setDirty(0);
    EXPECT_EQ(name.refObject(m_object, ""), 1);
    EXPECT_EQ(name.getObject(), m_object);
    EXPECT_EQ(name.getName(), "kept");
    EXPECT_EQ(name.isDirty(), 1);
}

TEST_F(ObjectReferences, TakeAnEmptyKeyWithoutAnObject) {
    ObjectGUIDReference reference;
    reference.refObject(m_object, FIRST);
    EXPECT_EQ(reference.refObject(nullptr, GUID_t()), 1);
    EXPECT_EQ(reference.getObject(), nullptr);
    EXPECT_EQ(reference.getGUID(), GUID_t());

    ObjectNameReference name;
    name.refObject(m_object, "gone");
    EXPECT_EQ(name.refObject(nullptr, ""), 1);
    EXPECT_EQ(name.getObject(), nullptr);
    EXPECT_EQ(name.getName(), "");
}

TEST_F(ObjectReferences, SetTheFlagThroughTheirOwnOperationOnEachWay) {
    WatchedReference<ObjectGUIDReference> reference;
    reference.refObject(m_object, FIRST);
    reference.refObject(m_object, GUID_t());
    reference.refObject(nullptr, SECOND);
    reference.copy_This(ObjectGUIDReference());
    EXPECT_EQ(reference.m_calls, "1111");
    reference.setGUID(FIRST);
    EXPECT_EQ(reference.m_calls, "1111");

    WatchedReference<ObjectNameReference> name;
    name.refObject(m_object, "first");
    name.refObject(m_object, "");
    name.refObject(nullptr, "");
    name.copy_This(ObjectNameReference());
    EXPECT_EQ(name.m_calls, "1111");
}

TEST_F(ObjectReferences, GiveACopyTheirKeyAndNotTheirObject) {
    ObjectInputGUIDReference source;
    source.refObjectInputIndex(m_object, FIRST, 7);
    source.setDirty(0);
    ObjectInputGUIDReference copy(source);
    EXPECT_EQ(copy.getObject(), nullptr);
    EXPECT_EQ(copy.getGUID(), FIRST);
    EXPECT_EQ(copy.getInputIndex(), 7u);
    EXPECT_EQ(copy.isDirty(), 1);
    EXPECT_EQ(source.getObject(), m_object);
    EXPECT_EQ(source.isDirty(), 0);
    EXPECT_EQ(m_object->getRefCount(), 1u);

    ObjectInputGUIDReference assigned;
    assigned.refObject(m_other, SECOND);
    assigned = source;
    EXPECT_EQ(assigned.getObject(), nullptr);
    EXPECT_EQ(assigned.getGUID(), FIRST);
    EXPECT_EQ(assigned.getInputIndex(), 7u);
    EXPECT_EQ(m_other->getRefCount(), 0u);

    ObjectNameReference name;
    name.refObject(m_object, "name");
    ObjectNameReference nameCopy(name);
    EXPECT_EQ(nameCopy.getObject(), nullptr);
    EXPECT_EQ(nameCopy.getName(), "name");
    EXPECT_EQ(nameCopy.isDirty(), 1);
    nameCopy.refObject(m_other, "other");
    nameCopy = name;
    EXPECT_EQ(nameCopy.getObject(), nullptr);
    EXPECT_EQ(nameCopy.getName(), "name");
    EXPECT_EQ(m_other->getRefCount(), 0u);
}

TEST_F(ObjectReferences, ClearReleasesTheObjectAndEmptiesTheKey) {
    ObjectInputGUIDReference input;
    input.refObjectInputIndex(m_object, FIRST, 7);
    input.setDirty(0);
    static_cast<ObjectGUIDReference&>(input).clear();
    EXPECT_EQ(input.getObject(), nullptr);
    EXPECT_EQ(input.getGUID(), GUID_t());
    EXPECT_EQ(input.getInputIndex(), 0u);
    EXPECT_EQ(input.isDirty(), 1);
    EXPECT_EQ(m_object->getRefCount(), 0u);

    ObjectNameReference name;
    name.refObject(m_object, "name");
    name.setDirty(0);
    name.clear();
    EXPECT_EQ(name.getObject(), nullptr);
    EXPECT_EQ(name.getName(), "");
    EXPECT_EQ(name.isDirty(), 1);
    EXPECT_EQ(m_object->getRefCount(), 0u);
}

TEST_F(ObjectReferences, ReleasingALevelLeavesThePointerForTheInitThatFollows) {
    ObjectGUIDReference reference;
    reference.refObject(m_object, FIRST);
    reference.release_This();
    EXPECT_EQ(m_object->getRefCount(), 0u);
    EXPECT_EQ(reference.getObject(), m_object);
    EXPECT_EQ(reference.getGUID(), GUID_t());
    reference.init_This();
    EXPECT_EQ(reference.getObject(), nullptr);
    EXPECT_EQ(reference.isDirty(), 1);
}

TEST_F(ObjectReferences, SetGUIDLeavesTheObjectAlone) {
    ObjectGUIDReference reference;
    reference.refObject(m_object, FIRST);
    reference.setDirty(0);
    reference.setGUID(SECOND);
    EXPECT_EQ(reference.getObject(), m_object);
    EXPECT_EQ(reference.getGUID(), SECOND);
    EXPECT_EQ(reference.isDirty(), 1);
}

TEST_F(ObjectReferences, TheIndexFormGivesWhatRefObjectGivesAndStoresTheIndex) {
    class Refusing : public ObjectInputGUIDReference {
        bool_t refObject(IObject*, const GUID_t&) override { return 0; }
    };
    ObjectInputGUIDReference input;
    EXPECT_EQ(input.refObjectInputIndex(m_object, FIRST, 3), 1);
    EXPECT_EQ(input.getObject(), m_object);
    EXPECT_EQ(input.getInputIndex(), 3u);
    Refusing refusing;
    EXPECT_EQ(refusing.refObjectInputIndex(m_object, FIRST, 4), 0);
    EXPECT_EQ(refusing.getInputIndex(), 4u);
}

TEST_F(ObjectReferences, WriteTheirKeysAsAttributesInTheFirstPass) {
    ObjectInputGUIDReference input;
    input.refObjectInputIndex(m_object, FIRST, 5);
    ObjectNameReference name;
    name.refObject(nullptr, "someone");
    for (RecordingSerializer::Kind kind : {RecordingSerializer::c_text, RecordingSerializer::c_binary}) {
        RecordingSerializer serializer(kind);
        bool_t result = 0;
        EXPECT_EQ(input.writeSerialized(&serializer, 0, result), 1);
        EXPECT_EQ(name.writeSerialized(&serializer, 0, result), 1);
        EXPECT_EQ(result, 1);
        EXPECT_EQ(serializer.m_calls,
                  (Calls{std::string("writeString guidRef '") + FIRST_TEXT + "' attribute",
                         "writeUInt32 inputIndex 5 attribute", "writeString nameRef 'someone' attribute"}));
    }
}

TEST_F(ObjectReferences, ReadTheirKeysAndLeaveObjectAndFlag) {
    test::SerializedNode root;
    root.m_values["guidRef"] = std::string(FIRST_TEXT);
    root.m_values["inputIndex"] = uint32_t(9);
    root.m_values["nameRef"] = std::string("someone");
    RecordingDeserializer deserializer(root);
    ObjectInputGUIDReference input;
    input.refObject(m_object, SECOND);
    input.setDirty(0);
    EXPECT_EQ(input.readSerialized(&deserializer), 1);
    EXPECT_EQ(input.getGUID(), FIRST);
    EXPECT_EQ(input.getInputIndex(), 9u);
    EXPECT_EQ(input.getObject(), m_object);
    EXPECT_EQ(input.isDirty(), 0);
    ObjectNameReference name;
    name.refObject(m_object, "before");
    name.setDirty(0);
    EXPECT_EQ(name.readSerialized(&deserializer), 1);
    EXPECT_EQ(name.getName(), "someone");
    EXPECT_EQ(name.getObject(), m_object);
    EXPECT_EQ(name.isDirty(), 0);
    EXPECT_EQ(deserializer.m_calls, (Calls{"readString guidRef", "readUInt32 inputIndex", "readString nameRef"}));
}

TEST_F(ObjectReferences, AnEmptyTextLeavesTheGUID) {
    test::SerializedNode root;
    root.m_values["guidRef"] = std::string();
    RecordingDeserializer deserializer(root);
    ObjectGUIDReference reference;
    reference.setGUID(FIRST);
    EXPECT_EQ(reference.readSerialized(&deserializer), 1);
    EXPECT_EQ(reference.getGUID(), FIRST);
}

TEST_F(ObjectReferences, StopAtTheFirstReadThatFails) {
    test::SerializedNode root;
    root.m_values["inputIndex"] = uint32_t(9);
    RecordingDeserializer deserializer(root);
    deserializer.m_failures = {"readString guidRef"};
    ObjectInputGUIDReference input;
    EXPECT_EQ(input.readSerialized(&deserializer), 0);
    EXPECT_EQ(deserializer.m_calls, (Calls{"readString guidRef"}));
    EXPECT_EQ(input.getInputIndex(), 0u);
}

TEST(ReferenceRecords, HoldWhatAllRecordsHold) {
    test::walkRecord<ObjectNameReference>();
    test::walkRecord<ObjectGUIDReference>();
    test::walkRecord<ObjectInputGUIDReference>();
}

} // namespace zyr
