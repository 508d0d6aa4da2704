// What serializers and deserializers do beside writing and reading: headers, copies, their reserved objects.
#include "core_module/serializers/serializer_test.h"

namespace zyr {
namespace {

class SerializerSlots : public EachFormat {
protected:
    template <class Interface> static Interface* create(const char* p_kind) {
        return static_cast<Interface*>(zyr_createObjectFromName((std::string(GetParam()) + p_kind).c_str()));
    }
    static std::string take(ISerializer* p_serializer) {
        std::string bytes(static_cast<const char*>(p_serializer->getData()), p_serializer->getDataSize());
        p_serializer->release();
        return bytes;
    }

    /// A header with a field of each kind.
    static void declareFields(ISerializer* p_serializer) {
        const String text("text");
        const float single = 1;
        const double real = 2;
        const uint32_t number = 3;
        const Array<String> texts;
        EXPECT_TRUE(p_serializer->beginHeader());
        EXPECT_TRUE(p_serializer->beginHeaderStructure("Sample"));
        int place = 0;
        const auto expectDone = [&](const auto& p_declare) {
            bool_t result = 0;
            EXPECT_TRUE(p_declare(String(("field" + std::to_string(place++)).c_str()), result)) << place;
            EXPECT_TRUE(result) << place;
        };
        ISerializer& to = *p_serializer;
        expectDone([&](const String& p_name, bool_t& p_result) { return to.declareBool(p_name, 1, p_result); });
        expectDone([&](const String& p_name, bool_t& p_result) { return to.declareEnum(p_name, 1, p_result); });
        expectDone([&](const String& p_name, bool_t& p_result) { return to.declareInt32(p_name, 1, p_result); });
        expectDone([&](const String& p_name, bool_t& p_result) { return to.declareUInt32(p_name, 1, p_result); });
        expectDone([&](const String& p_name, bool_t& p_result) { return to.declareInt64(p_name, 1, p_result); });
        expectDone([&](const String& p_name, bool_t& p_result) { return to.declareUInt64(p_name, 1, p_result); });
        expectDone([&](const String& p_name, bool_t& p_result) { return to.declareFloat(p_name, 1, p_result); });
        expectDone([&](const String& p_name, bool_t& p_result) { return to.declareDouble(p_name, 1, p_result); });
        expectDone([&](const String& p_name, bool_t& p_result) { return to.declareString(p_name, text, p_result); });
        expectDone(
            [&](const String& p_name, bool_t& p_result) { return to.declareStringRef(p_name, &text, p_result); });
        expectDone(
            [&](const String& p_name, bool_t& p_result) { return to.declareStringArray(p_name, texts, p_result); });
        expectDone(
            [&](const String& p_name, bool_t& p_result) { return to.declareFloatArray(p_name, 1, &single, p_result); });
        expectDone(
            [&](const String& p_name, bool_t& p_result) { return to.declareDoubleArray(p_name, 1, &real, p_result); });
        expectDone([&](const String& p_name, bool_t& p_result) {
            return to.declareUInt32Array(p_name, 1, &number, p_result);
        });
        expectDone(
            [&](const String& p_name, bool_t& p_result) { return to.declareEnumArray(p_name, 1, &number, p_result); });
        EXPECT_TRUE(p_serializer->endHeaderStructure());
        EXPECT_TRUE(p_serializer->writeHeaderField("top", ZYR_HEADER_FIELD_RECORD, 0, "Sample"));
        EXPECT_TRUE(p_serializer->endHeader());
    }
    static void writeTop(ISerializer* p_serializer) {
        EXPECT_TRUE(p_serializer->beginStructure("top", 0));
        EXPECT_TRUE(p_serializer->writeUInt32("field3", 7, 0, 0, nullptr));
        EXPECT_TRUE(p_serializer->endStructure());
    }

    /// Whether a used serializer, which is released, starts again as a new one does.
    void expectAsNew(ISerializer* p_serializer) {
        writeTop(p_serializer);
        const std::string bytes = take(p_serializer);
        ISerializer* fresh = create<ISerializer>("Serializer");
        EXPECT_TRUE(fresh->initialize());
        writeTop(fresh);
        EXPECT_EQ(bytes, take(fresh));
    }
};

TEST_P(SerializerSlots, DeclareFieldsOfEachKind) {
    ISerializer* plain = create<ISerializer>("Serializer");
    ISerializer* declaring = create<ISerializer>("Serializer");
    ASSERT_TRUE(plain->initialize() && declaring->initialize());
    declareFields(declaring);
    writeTop(plain);
    writeTop(declaring);
    const bool hasHeader = declaring->hasHeaderSection();
    EXPECT_EQ(hasHeader, *GetParam() == 'Z');
    EXPECT_EQ(declaring->isBinaryFormat() != 0, !isText());
    const std::string bytes = take(declaring);
    // The other formats declare nothing.
    EXPECT_EQ(bytes == take(plain), !hasHeader);
    EXPECT_EQ(bytes.find("field14") != std::string::npos, hasHeader);
    read(bytes, [](IDeserializer* p_deserializer) {
        uint32_t cache = 0;
        uint32_t value = 0;
        EXPECT_TRUE(p_deserializer->readUInt32("field3", cache, value, nullptr));
        EXPECT_EQ(value, 7U);
    });
}

TEST_P(SerializerSlots, CopySettingsAndNoOutput) {
    ISerializer* serializer = create<ISerializer>("Serializer");
    ASSERT_TRUE(serializer->initialize());
    EXPECT_TRUE(serializer->setBaseDirectory("/base"));
    EXPECT_TRUE(serializer->setWritingDeferredFiles(1));
    writeTop(serializer);
    auto* copy = static_cast<ISerializer*>(serializer->clone());
    EXPECT_EQ(copy->getClassName(), serializer->getClassName());
    EXPECT_EQ(copy->getBaseDirectory(), "/base");
    EXPECT_TRUE(copy->isWritingDeferredFiles());
    ASSERT_TRUE(copy->initialize());
    ISerializer* fresh = create<ISerializer>("Serializer");
    ASSERT_TRUE(fresh->initialize());
    EXPECT_EQ(take(copy), take(fresh));

    serializer->clear();
    EXPECT_EQ(serializer->getBaseDirectory(), "");
    EXPECT_FALSE(serializer->isWritingDeferredFiles());
    EXPECT_TRUE(serializer->initialize());
    serializer->release();
}

TEST_P(SerializerSlots, CopyTheDirectoryOfADeserializer) {
    IDeserializer* deserializer = create<IDeserializer>("Deserializer");
    EXPECT_TRUE(deserializer->setBaseDirectory("/base"));
    const std::string bytes = write([](ISerializer*) {});
    ASSERT_TRUE(deserializer->initialize(bytes.data(), bytes.size()));
    EXPECT_EQ(deserializer->isBinaryFormat() != 0, !isText());
    auto* copy = static_cast<IDeserializer*>(deserializer->clone());
    EXPECT_EQ(copy->getBaseDirectory(), "/base");
    bool_t found = 1;
    ASSERT_TRUE(copy->initialize(bytes.data(), bytes.size()));
    EXPECT_TRUE(copy->enterGroup("top", found));
    EXPECT_TRUE(found);
    copy->release();

    deserializer->clear();
    EXPECT_EQ(deserializer->getBaseDirectory(), "");
    deserializer->release();
}

TEST_P(SerializerSlots, GiveTheirReservedObjects) {
    ISerializer* serializer = create<ISerializer>("Serializer");
    EXPECT_TRUE(serializer->setBaseDirectory("/base"));
    ASSERT_NE(serializer->getSerializerReserved(), nullptr);
    serializer->getSerializerReserved()->release_This();
    EXPECT_EQ(serializer->getBaseDirectory(), "");
    serializer->getSerializerReserved()->init_This();
    EXPECT_FALSE(serializer->isWritingDeferredFiles());
    serializer->release();

    IDeserializer* deserializer = create<IDeserializer>("Deserializer");
    EXPECT_TRUE(deserializer->setBaseDirectory("/base"));
    ASSERT_NE(deserializer->getDeserializerReserved(), nullptr);
    deserializer->getDeserializerReserved()->release_This();
    EXPECT_EQ(deserializer->getBaseDirectory(), "");
    deserializer->release();
}

TEST_P(SerializerSlots, RefuseToEndWhatHasNotBegun) {
    ISerializer* serializer = create<ISerializer>("Serializer");
    ASSERT_TRUE(serializer->initialize());
    EXPECT_FALSE(serializer->endStructure());
    EXPECT_FALSE(serializer->endObject());
    EXPECT_FALSE(serializer->endArray());
    expectAsNew(serializer);
}

TEST_P(SerializerSlots, WriteNothingOutsideOfInitializeAndDeinitialize) {
    ISerializer* serializer = create<ISerializer>("Serializer");
    const String text("text");
    const uint32_t numbers[2] = {1, 2};
    for (int i = 0; i < 2; i++) {
        EXPECT_FALSE(serializer->beginStructure("a", 0)) << i;
        EXPECT_FALSE(serializer->beginStructure("xml", 1)) << i;
        EXPECT_FALSE(serializer->beginObject("a", "Name", "guid")) << i;
        EXPECT_FALSE(serializer->beginArray("a", 1, ZYR_ARRAY_OF_RECORDS)) << i;
        EXPECT_FALSE(serializer->beginArrayElement(0, "Name")) << i;
        EXPECT_FALSE(serializer->beginArrayElement(0, "")) << i;
        EXPECT_FALSE(serializer->writeNullObject("a")) << i;
        EXPECT_FALSE(serializer->writeBool("a", 1, 0, 0)) << i;
        EXPECT_FALSE(serializer->writeInt64("a", 1, 0, 1, nullptr)) << i;
        EXPECT_FALSE(serializer->writeDouble("a", 1, 0, 0)) << i;
        EXPECT_FALSE(serializer->writeString("a", text, 0, 0)) << i;
        EXPECT_FALSE(serializer->writeStringRef("a", nullptr, 0, 0)) << i;
        EXPECT_FALSE(serializer->writeStringArray("a", 1, &text, 0, 0)) << i;
        EXPECT_FALSE(serializer->writeUInt32Array("a", 2, numbers, 0, 0)) << i;
        EXPECT_FALSE(serializer->writeEnumArray("a", 2, numbers, 0, nullptr)) << i;
        EXPECT_FALSE(serializer->endStructure()) << i;
        if (serializer->hasHeaderSection()) {
            bool_t result = 1;
            EXPECT_FALSE(serializer->beginHeaderStructure("Name")) << i;
            EXPECT_FALSE(serializer->writeHeaderField("a", ZYR_HEADER_FIELD_RECORD, 0, "Name")) << i;
            EXPECT_FALSE(serializer->endHeaderStructure()) << i;
            EXPECT_FALSE(serializer->declareFloat("b", 1, result)) << i;
            EXPECT_FALSE(result) << i;
        }
        EXPECT_EQ(serializer->getData(), nullptr) << i;
        EXPECT_EQ(serializer->getDataSize(), 0u) << i;
        ASSERT_TRUE(serializer->initialize());
        writeTop(serializer);
        EXPECT_NE(serializer->getDataSize(), 0u);
        EXPECT_TRUE(serializer->deinitialize());
    }
    ASSERT_TRUE(serializer->initialize());
    expectAsNew(serializer);
}

TEST_P(SerializerSlots, GoOnBehindWhatTheyHaveGiven) {
    ISerializer* asked = create<ISerializer>("Serializer");
    ISerializer* fresh = create<ISerializer>("Serializer");
    for (ISerializer* serializer : {asked, fresh}) {
        const auto ask = [&] {
            if (serializer == asked) {
                EXPECT_NE(serializer->getData(), nullptr);
                EXPECT_EQ(serializer->getDataSize(), serializer->getDataSize());
            }
        };
        ASSERT_TRUE(serializer->initialize());
        ask();
        EXPECT_TRUE(serializer->beginStructure("xml", 1));
        ask();
        EXPECT_TRUE(serializer->endStructure());
        writeTop(serializer);
        ask();
        EXPECT_TRUE(serializer->writeString("last", "text", 0, 0));
        ask();
        EXPECT_TRUE(serializer->beginStructure("group", 0));
        EXPECT_TRUE(serializer->endStructure());
    }
    const std::string bytes = take(asked);
    EXPECT_EQ(bytes, take(fresh));
    read(bytes, [](IDeserializer* p_deserializer) {
        EXPECT_TRUE(p_deserializer->leaveGroup());
        bool_t found = 0;
        uint32_t cache = 0;
        String last;
        EXPECT_TRUE(p_deserializer->readString("last", cache, last, nullptr));
        EXPECT_EQ(last, "text");
        EXPECT_TRUE(p_deserializer->enterGroup("group", found));
        EXPECT_TRUE(found);
    });
}

TEST_P(SerializerSlots, TellTheClassOfTheInnermostObject) {
    const std::string bytes = write([](ISerializer* p_serializer) {
        EXPECT_TRUE(p_serializer->beginObject("outer", "Outer", "outer id"));
        EXPECT_TRUE(p_serializer->beginObject("inner", "Inner", ""));
        EXPECT_TRUE(p_serializer->endObject());
        EXPECT_TRUE(p_serializer->beginStructure("group", 0));
        EXPECT_TRUE(p_serializer->endStructure());
        EXPECT_TRUE(p_serializer->writeNullObject("null"));
        EXPECT_TRUE(p_serializer->endObject());
    });
    read(bytes, [](IDeserializer* p_deserializer) {
        bool_t found = 0;
        const auto expectClass = [&](const char* p_name, const char* p_guidText) {
            EXPECT_EQ(p_deserializer->getCurrentObjectTypeName(), p_name);
            EXPECT_EQ(p_deserializer->getCurrentObjectGUIDText(), p_guidText);
        };
        expectClass("", "");
        EXPECT_TRUE(p_deserializer->enterObject("outer", found) && found);
        expectClass("Outer", "outer id");
        EXPECT_TRUE(p_deserializer->enterObject("inner", found) && found);
        EXPECT_TRUE(p_deserializer->leaveObject());
        expectClass("Outer", "outer id");
        EXPECT_TRUE(p_deserializer->enterObject("inner", found) && found);
        expectClass("Inner", "");
        EXPECT_TRUE(p_deserializer->leaveObject());
        EXPECT_TRUE(p_deserializer->enterGroup("group", found) && found);
        expectClass("Outer", "outer id");
        EXPECT_TRUE(p_deserializer->leaveGroup());
        EXPECT_TRUE(p_deserializer->enterObject("null", found) && !found);
        expectClass("Outer", "outer id");
        EXPECT_TRUE(p_deserializer->leaveObject());
        expectClass("", "");
    });
}

INSTANTIATE_TEST_SUITE_P(Formats, SerializerSlots, testing::ValuesIn(c_formatPrefixes));

} // namespace
} // namespace zyr
