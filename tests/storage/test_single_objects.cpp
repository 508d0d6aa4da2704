// Objects in a stream that are held by pointers of their own class.
#include "core_module/core_module_test.h"
#include "support/log_capture.h"
#include "support/zyr_invariant.h"
#include "zyr_common/formats/zyr_format_info.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object/zyr_object_class.h"
#include "zyr_common/object_containers/zyr_hash_map_of_objects.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"
#include "zyr_common/serialization/zyr_single_objects.h"
#include "zyr_common/storage/zyr_load_save.h"

#include <array>

namespace zyr {
namespace {

/// A class of this program, without an interface.
class Leaf : public ObjectClass<Leaf, WObject> {
public:
    static constexpr const char* c_className = "Leaf";
    static constexpr const char* c_classGUIDText = "10000000-0000-4000-8000-0000000000a1";

    Leaf() { initObjectInterface(); }
    void init_This() {}
    void release_This() {}
    void copy_This(const Leaf*) {}
};

/// Holds an object in a field of its own.
class Holder : public ObjectClass<Holder, WObject> {
public:
    static constexpr const char* c_className = "Holder";
    static constexpr const char* c_classGUIDText = "10000000-0000-4000-8000-0000000000a2";

    Holder() { initObjectInterface(); }
    void init_This() {}
    void release_This() {}
    void copy_This(const Holder*) {}
    bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) override {
        IObject* const held = m_held;
        p_result = p_headerPass ? p_serializer->writeHeaderSingleObject<IObject>("held", held, p_result)
                                : p_serializer->writeSingleObject<IObject>("held", held);
        return p_result;
    }

    IObject* m_held = nullptr; ///< Not owned.
};

/// Begins a group and doesn't end it.
class Leaver : public ObjectClass<Leaver, WObject> {
public:
    static constexpr const char* c_className = "Leaver";
    static constexpr const char* c_classGUIDText = "10000000-0000-4000-8000-0000000000a3";

    Leaver() { initObjectInterface(); }
    void init_This() {}
    void release_This() {}
    void copy_This(const Leaver*) {}
    bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) override {
        return p_result = p_headerPass || p_serializer->beginStructure("group", 0);
    }
};

class SingleObjects : public CoreModuleUpTest {
protected:
    void SetUp() override {
        CoreModuleUpTest::SetUp();
        m_serializer = Ref<IObject>::adopt(zyr_createObjectFromName("ZbfSerializer"));
        m_deserializer = Ref<IObject>::adopt(zyr_createObjectFromName("ZbfDeserializer"));
        ASSERT_TRUE(getSerializer()->initialize());
    }
    void TearDown() override {
        m_serializer.clear();
        m_deserializer.clear();
    }
    ISerializer* getSerializer() const { return static_cast<ISerializer*>(m_serializer.get()); }
    IDeserializer* getDeserializer() const { return static_cast<IDeserializer*>(m_deserializer.get()); }

    /// Writes the object twice, for the second to show that the first was left.
    template <class T> void write(T* p_object) {
        bool_t result = 0;
        ASSERT_TRUE(getSerializer()->beginHeader());
        EXPECT_TRUE(getSerializer()->writeHeaderSingleObject("first", p_object, result));
        EXPECT_TRUE(result);
        ASSERT_TRUE(getSerializer()->endHeader());
        EXPECT_TRUE(getSerializer()->writeSingleObject("first", p_object));
        EXPECT_TRUE(getSerializer()->writeSingleObject("second", p_object));
        ASSERT_TRUE(getDeserializer()->initialize(getSerializer()->getData(), getSerializer()->getDataSize()));
    }
    template <class T> T* read(const char* p_name) {
        bool_t found = 0;
        T* object = nullptr;
        EXPECT_TRUE(getDeserializer()->readSingleObject(p_name, found, &object, String::getConstEmpty()));
        EXPECT_EQ(found, object != nullptr);
        return object;
    }

    /// Reads the object with these members.
    static Ref<IObject> readDocument(const std::string& p_members, const char* p_defaultTypeName) {
        const std::string text = "{\"object\": {" + p_members + "}}";
        const auto deserializer = Ref<IObject>::adopt(zyr_createObjectFromName("JsonDeserializer"));
        auto* json = static_cast<IDeserializer*>(deserializer.get());
        EXPECT_TRUE(json->initialize(text.data(), text.size()));
        bool_t found = 0;
        IObject* object = nullptr;
        EXPECT_TRUE(json->readSingleObject("object", found, &object, p_defaultTypeName));
        EXPECT_EQ(found, object != nullptr);
        return Ref<IObject>::adopt(object);
    }

    Ref<IObject> m_serializer;
    Ref<IObject> m_deserializer;
};

TEST_F(SingleObjects, OfAnInterfaceComeBackAsSuch) {
    const auto list = Ref<IListOfObjects>::adopt(zyr_createObject<IListOfObjects>());
    list->pushBack(Ref<IObject>::adopt(zyr_createObject<IObject>()).get());
    write(list.get());
    const auto first = Ref<IListOfObjects>::adopt(read<IListOfObjects>("first"));
    const auto second = Ref<IListOfObjects>::adopt(read<IListOfObjects>("second"));
    ASSERT_TRUE(first && second);
    EXPECT_EQ(second->getSize(), 1u);
    EXPECT_EQ(second->getRefCount(), 0u);
}

TEST_F(SingleObjects, OfAClassOfThisProgramComeBackAsSuch) {
    zyr_addObjectAllocator<Leaf>();
    const auto leaf = Ref<Leaf>::adopt(new Leaf);
    write(leaf.get());
    EXPECT_TRUE(Ref<Leaf>::adopt(read<Leaf>("first")));
}

TEST_F(SingleObjects, ThatHoldThemselvesEndTheWriting) {
    const auto first = Ref<Holder>::adopt(new Holder);
    const auto second = Ref<Holder>::adopt(new Holder);
    first->m_held = second.get();
    second->m_held = first.get();
    bool_t result = 1;
    ASSERT_TRUE(getSerializer()->beginHeader());
    {
        const LogCapture capture;
        EXPECT_FALSE(getSerializer()->writeHeaderSingleObject<IObject>("first", first.get(), result));
        ASSERT_EQ(capture.getLines().size(), 1u);
        EXPECT_EQ(capture.getLines()[0].message, "Unable to write Holder: it holds itself");
    }
    EXPECT_FALSE(result);
    EXPECT_FALSE(getSerializer()->writeSingleObject<IObject>("first", first.get()));
    // The chain is left again: this one is no part of it.
    EXPECT_TRUE(getSerializer()->writeSingleObject<IObject>("leaf", Ref<Leaf>::adopt(new Leaf).get()));
    Array<uint8_t> data;
    for (const char* format : {"raw", "zbf", "xml", "json"}) {
        EXPECT_FALSE(zyr_saveToData(first.get(), data, format, 0, String())) << format;
    }
}

TEST_F(SingleObjects, ThatLeaveAGroupOpenAreNotSaved) {
    Leaver leaver;
    Holder outer;
    outer.m_held = &leaver;
    Array<uint8_t> data;
    data.pushBack(1);
    for (const char* format : {"raw", "zbf", "xml", "json"}) {
        const LogCapture capture;
        EXPECT_FALSE(zyr_saveToData(&outer, data, format, 0, String())) << format;
        ASSERT_EQ(capture.getLines().size(), 1u) << format;
        EXPECT_EQ(capture.getLines()[0].message, "The object cannot be serialized into data: bad object content");
    }
    EXPECT_EQ(data.getSize(), 1u);
}

TEST_F(SingleObjects, OfAChainThatIsLongAreWritten) {
    std::array<Holder, 200> chain;
    for (size_t i = 1; i < chain.size(); i++) {
        chain[i - 1].m_held = &chain[i];
    }
    Array<uint8_t> data;
    for (const char* format : {"raw", "zbf", "xml", "json"}) {
        EXPECT_TRUE(zyr_saveToData(&chain[0], data, format, 0, String())) << format;
    }
}

TEST_F(SingleObjects, OfAnotherClassAreReleasedAndNotFound) {
    zyr_addObjectAllocator<Leaf>();
    const auto map = Ref<IHashMapOfObjects<int32_t>>::adopt(zyr_createObject<IHashMapOfObjects<int32_t>>());
    write(map.get());
    EXPECT_EQ(read<IListOfObjects>("first"), nullptr);
    EXPECT_EQ(read<Leaf>("first"), nullptr);
    EXPECT_EQ(read<IHashMapOfObjects<uint32_t>>("first"), nullptr);
    EXPECT_TRUE(Ref<IObject>::adopt(read<IHashMapOfObjects<int32_t>>("second")));
}

TEST_F(SingleObjects, OfAnUnknownClassAreReplacedByTheDefaultOne) {
    const auto object = readDocument("\"_class\": \"Nobody\", \"formatName\": \"name\"", "DataFormatInfo");
    ASSERT_TRUE(object);
    ASSERT_EQ(object->getClassName(), "DataFormatInfo");
    EXPECT_EQ(static_cast<IDataFormatInfo*>(object.get())->getFormatName(), "name");
    EXPECT_FALSE(readDocument("\"_class\": \"Nobody\"", ""));
}

TEST_F(SingleObjects, WithoutAClassAreOfTheDefaultOne) {
    const auto object = readDocument("", "ListOfObjects");
    ASSERT_TRUE(object);
    EXPECT_EQ(object->getClassName(), "ListOfObjects");
}

TEST_F(SingleObjects, OfAKnownGUIDTakeTheArgumentOfTheirTypeNameOrElseOfTheDefaultOne) {
    const String guid = String::newFromGUID(zyr_getInterfaceGUID<IHashMapOfObjects<int32_t>>());
    const std::string text = std::string("\"_guid\": \"") + guid.getData() + "\"";
    const char* defaultName = "Nobody{uint64}";
    EXPECT_EQ(readDocument(text + ", \"_class\": \"Nobody{int32}\"", defaultName)->getClassName(),
              "HashMapOfObjects{int32}");
    EXPECT_EQ(readDocument(text + ", \"_class\": \"Nobody{other}\"", defaultName)->getClassName(),
              "HashMapOfObjects{uint64}");
    EXPECT_EQ(readDocument(text, defaultName)->getClassName(), "HashMapOfObjects{uint64}");
    EXPECT_FALSE(readDocument(text, ""));
}

TEST_F(SingleObjects, OfAnUnknownGUIDAreMadeByName) {
    const char* text = "\"_guid\": \"10000000-0000-4000-8000-0000000000ff\", \"_class\": \"ListOfObjects\"";
    EXPECT_EQ(readDocument(text, "DataFormatInfo")->getClassName(), "ListOfObjects");
}

TEST_F(SingleObjects, WithAnUnknownDefaultClassEndTheProcess) {
    ZYR_EXPECT_INVARIANT(readDocument("\"_class\": \"Nobody\"", "NobodyElse"), "assert\\(object != NULL\\)");
}

TEST_F(SingleObjects, ThatAreNotThereComeBackAsNull) {
    write(static_cast<IListOfObjects*>(nullptr));
    EXPECT_EQ(read<IListOfObjects>("first"), nullptr);
    EXPECT_EQ(read<IListOfObjects>("missing"), nullptr);
}

} // namespace
} // namespace zyr
