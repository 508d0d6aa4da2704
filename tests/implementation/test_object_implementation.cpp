#include "zyr_common/implementation/zyr_implementation.h"

#include "core_module/formats/zyr_lz4_compression_info_level.h"
#include "core_module/formats/zyr_zip_compression_info_level.h"
#include "support/zyr_fake_core.h"
#include "support/zyr_stub_object.h"
#include "zyr_common/implementation/zyr_native_format_info_level.h"
#include "zyr_common/variable/zyr_variable_factories.h"
#include "zyr_common/variable/zyr_variable_reference.h"

#include <gtest/gtest.h>

namespace zyr {
namespace {

using Object = Implementation<ObjectLevel<IObject>>;

const GUID_t SOME_GUID = GUID_t_fromString("40000000-0000-4000-8000-000000000001");
const GUID_t OTHER_GUID = GUID_t_fromString("40000000-0000-4000-8000-000000000002");

/// Gives an object an instance GUID.
void setGUID(IObject* p_object, const GUID_t& p_guid) {
    HashMap<GUID_t, GUID_t> replacements;
    replacements.pushBack(p_object->getGUID(), p_guid, nullptr);
    p_object->replaceGUIDsWhereAvailable(0, replacements);
}

class ObjectImplementationTest : public testing::Test {
protected:
    ~ObjectImplementationTest() override { m_object->release(); }

    Object* m_object = new Object;
};

TEST_F(ObjectImplementationTest, IsNamedAfterItsInterface) {
    EXPECT_EQ(m_object->getClassName(), "Object");
    EXPECT_EQ(m_object->getClassGUID(), zyr_getInterfaceGUID<IObject>());
    EXPECT_EQ(m_object->getClassTemplateTypeName(), "");
    EXPECT_EQ(m_object->getClassTemplateTypeEnum(), ZYR_VARIABLE_NONE);
    EXPECT_EQ(m_object->getClassTemplateTypeSize(), 0u);
}

TEST_F(ObjectImplementationTest, StartsWithoutGUIDFlagsFileAndCompression) {
    EXPECT_EQ(m_object->getGUID(), GUID_t());
    EXPECT_EQ(m_object->getRefCount(), 0u);
    EXPECT_FALSE(m_object->isDirty());
    EXPECT_FALSE(m_object->isDeletePending());
    EXPECT_EQ(m_object->getDeferredFile(), nullptr);
    EXPECT_FALSE(m_object->isDeferredFileReadOnly());
    EXPECT_EQ(m_object->getCompressionInfo(1), nullptr);
    EXPECT_EQ(m_object->getTLIObject(), m_object);
}

TEST_F(ObjectImplementationTest, FindsItselfUnderTheGUIDsOfItsInterfaces) {
    NativeFormatInfo* info = new NativeFormatInfo;
    EXPECT_TRUE(info->findClassGUID(zyr_getInterfaceGUID<INativeFormatInfo>()));
    EXPECT_TRUE(info->findClassGUID(zyr_getInterfaceGUID<IDataFormatInfo>()));
    EXPECT_TRUE(info->findClassGUID(zyr_getInterfaceGUID<IObject>()));
    EXPECT_FALSE(info->findClassGUID(zyr_getInterfaceGUID<ICompressionInfo>()));
    EXPECT_EQ(info->findInterfaceObjectByClassGUID(zyr_getInterfaceGUID<IDataFormatInfo>()), info);
    EXPECT_EQ(info->findInterfaceObjectByClassGUID(zyr_getInterfaceGUID<ICompressionInfo>()), nullptr);
    info->release();
}

TEST_F(ObjectImplementationTest, QueryAddsAReferenceToTheLayer) {
    IObject* layer = nullptr;
    EXPECT_TRUE(m_object->queryInterfaceObject(zyr_getInterfaceGUID<IObject>(), &layer));
    EXPECT_EQ(layer, m_object);
    EXPECT_EQ(m_object->getRefCount(), 1u);
    layer->release();
}

TEST_F(ObjectImplementationTest, QueryForAnotherClassGivesNull) {
    IObject* layer = m_object;
    EXPECT_FALSE(m_object->queryInterfaceObject(SOME_GUID, &layer));
    EXPECT_EQ(layer, nullptr);
    EXPECT_EQ(m_object->getRefCount(), 0u);
}

TEST_F(ObjectImplementationTest, DeferredFileIsACountedText) {
    m_object->setDeferredFile("first");
    String* first = m_object->getDeferredFile();
    first->addRef();
    m_object->setDeferredFile("second");
    EXPECT_EQ(*first, "first");
    EXPECT_EQ(*m_object->getDeferredFile(), "second");
    first->release();
}

TEST_F(ObjectImplementationTest, DeferredFileMayBeSetToItself) {
    m_object->setDeferredFile(
        "a path that is long enough not to stand inside the object that holds it, so on the heap");
    m_object->setDeferredFile(*m_object->getDeferredFile());
    EXPECT_EQ(*m_object->getDeferredFile(),
              "a path that is long enough not to stand inside the object that holds it, so on the heap");
}

TEST_F(ObjectImplementationTest, EmptyPathTakesTheDeferredFileAway) {
    m_object->setDeferredFile("first");
    m_object->setDeferredFile("");
    EXPECT_EQ(m_object->getDeferredFile(), nullptr);
}

TEST_F(ObjectImplementationTest, CompressionInfoIsHeldByAReference) {
    Lz4CompressionInfo* info = new Lz4CompressionInfo;
    m_object->setCompressionInfo(info);
    EXPECT_EQ(info->getRefCount(), 1u);
    EXPECT_EQ(m_object->getCompressionInfo(0), info);
    EXPECT_EQ(info->getRefCount(), 1u);
    EXPECT_EQ(m_object->getCompressionInfo(1), info);
    EXPECT_EQ(info->getRefCount(), 2u);
    info->release();
    m_object->setCompressionInfo(info);
    EXPECT_EQ(info->getRefCount(), 1u);
    m_object->setCompressionInfo(nullptr);
    EXPECT_EQ(info->getRefCount(), 0u);
    info->release();
}

TEST_F(ObjectImplementationTest, CollectsItsGUIDOnlyIfItHasOne) {
    List<GUID_t> guids;
    m_object->collectGUIDsWhereAvailable(1, guids);
    EXPECT_TRUE(guids.isEmpty());
    setGUID(m_object, SOME_GUID);
    m_object->collectGUIDsWhereAvailable(1, guids);
    EXPECT_EQ(guids.getSize(), 1u);
    EXPECT_EQ(guids.front(), SOME_GUID);
}

TEST_F(ObjectImplementationTest, ReplacesItsGUIDOnlyByWhatIsListed) {
    setGUID(m_object, SOME_GUID);
    HashMap<GUID_t, GUID_t> replacements;
    replacements.pushBack(OTHER_GUID, GUID_t(), nullptr);
    m_object->replaceGUIDsWhereAvailable(0, replacements);
    EXPECT_EQ(m_object->getGUID(), SOME_GUID);
    replacements.pushBack(SOME_GUID, OTHER_GUID, nullptr);
    m_object->replaceGUIDsWhereAvailable(0, replacements);
    EXPECT_EQ(m_object->getGUID(), OTHER_GUID);
}

TEST_F(ObjectImplementationTest, RegeneratedGUIDsDiffer) {
    m_object->regenerateGUIDsWhereAvailable(0);
    const GUID_t first = m_object->getGUID();
    EXPECT_FALSE(first.isNull());
    EXPECT_EQ(first.m_data[6] & 0xF0, 0x40);
    m_object->regenerateGUIDsWhereAvailable(0);
    EXPECT_NE(m_object->getGUID(), first);
    m_object->clearGUID(0);
    EXPECT_TRUE(m_object->getGUID().isNull());
}

TEST_F(ObjectImplementationTest, FakeGUIDsCountBehindTheFirstHalfOfTheClassGUID) {
    m_object->replaceGUIDsWithFakeCounterGUIDs(0);
    const GUID_t first = m_object->getGUID();
    m_object->replaceGUIDsWithFakeCounterGUIDs(0);
    const GUID_t second = m_object->getGUID();
    EXPECT_EQ(memcmp(first.m_data, zyr_getInterfaceGUID<IObject>().m_data, 8), 0);
    EXPECT_EQ(memcmp(first.m_data, second.m_data, 15), 0);
    EXPECT_EQ(first.m_data[15] + 1, second.m_data[15]);
}

TEST_F(ObjectImplementationTest, CopyTakesOverAllButCountDeletePendingAndOuterLayer) {
    Object* source = new Object;
    Lz4CompressionInfo* info = new Lz4CompressionInfo;
    setGUID(source, SOME_GUID);
    source->setDirty(1);
    source->setDeferredFile("file");
    source->setDeferredFileReadOnly(1);
    source->setCompressionInfo(info);
    source->setDeletePending();
    source->setTLIObject(info);
    source->addRef();
    m_object->copyUnsafe(source);
    EXPECT_EQ(m_object->getGUID(), SOME_GUID);
    EXPECT_TRUE(m_object->isDirty());
    EXPECT_EQ(*m_object->getDeferredFile(), "file");
    EXPECT_NE(m_object->getDeferredFile(), source->getDeferredFile());
    EXPECT_TRUE(m_object->isDeferredFileReadOnly());
    EXPECT_EQ(m_object->getCompressionInfo(0), info);
    EXPECT_EQ(info->getRefCount(), 2u);
    EXPECT_FALSE(m_object->isDeletePending());
    EXPECT_EQ(m_object->getTLIObject(), m_object);
    EXPECT_EQ(m_object->getRefCount(), 0u);
    source->release();
    source->release();
    info->release();
}

TEST_F(ObjectImplementationTest, CheckedCopyOfItselfChangesNothing) {
    setGUID(m_object, SOME_GUID);
    m_object->setDirty(1);
    m_object->setDeferredFile("file");
    EXPECT_TRUE(m_object->copy(m_object));
    EXPECT_EQ(m_object->getGUID(), SOME_GUID);
    EXPECT_TRUE(m_object->isDirty());
    ASSERT_NE(m_object->getDeferredFile(), nullptr);
    EXPECT_EQ(*m_object->getDeferredFile(), "file");
    EXPECT_EQ(m_object->getRefCount(), 0u);
}

TEST_F(ObjectImplementationTest, ClearGivesTheStateOfANewObject) {
    setGUID(m_object, SOME_GUID);
    m_object->setDirty(1);
    m_object->setDeletePending();
    m_object->setDeferredFile("file");
    m_object->setDeferredFileReadOnly(1);
    m_object->clear();
    EXPECT_TRUE(m_object->getGUID().isNull());
    EXPECT_FALSE(m_object->isDirty());
    EXPECT_FALSE(m_object->isDeletePending());
    EXPECT_EQ(m_object->getDeferredFile(), nullptr);
    EXPECT_FALSE(m_object->isDeferredFileReadOnly());
}

TEST_F(ObjectImplementationTest, HasNoFieldsBehindPaths) {
    EXPECT_EQ(m_object->getVariableReference("name"), nullptr);
    EXPECT_EQ(m_object->getVariableReferenceByPath("name.x"), nullptr);
    EXPECT_FALSE(m_object->setVariableValue("name", nullptr));
    EXPECT_FALSE(m_object->setVariableValueByPath("name.x", nullptr));
}

class VariableOfAnObject : public testing::Test {
protected:
    ~VariableOfAnObject() override { m_info->release(); }

    /// Hands a value over and forgets it.
    bool_t set(const char* p_name, VariableValue* p_value) {
        bool_t done = m_info->setVariableValue(p_name, p_value);
        p_value->release();
        return done;
    }
    bool_t setByPath(const char* p_path, VariableValue* p_value) {
        bool_t done = m_info->setVariableValueByPath(p_path, p_value);
        p_value->release();
        return done;
    }

    ZipCompressionInfo* m_info = new ZipCompressionInfo;
};

TEST_F(VariableOfAnObject, IsSetByNameAndByPath) {
    EXPECT_TRUE(set("level", zyr_createVariableValue<uint32_t>("", 7)));
    EXPECT_EQ(m_info->getLevel(), 7u);
    EXPECT_TRUE(setByPath("level", zyr_createVariableValue<uint32_t>("", 8)));
    EXPECT_EQ(m_info->getLevel(), 8u);
}

TEST_F(VariableOfAnObject, IsSetOnTheLevelThatHasIt) {
    EXPECT_TRUE(set("formatName", zyr_createVariableValue<String>("", "some format")));
    EXPECT_EQ(m_info->getFormatName(), "some format");
}

TEST_F(VariableOfAnObject, TakesAConvertedNumber) {
    EXPECT_TRUE(set("level", zyr_createVariableValue<double>("", 5.9)));
    EXPECT_EQ(m_info->getLevel(), 5u);
}

TEST_F(VariableOfAnObject, StaysWhenTheValueDoesNotFit) {
    m_info->setLevel(3);
    EXPECT_FALSE(set("level", zyr_createVariableValue<String>("", "7")));
    EXPECT_FALSE(set("unknown", zyr_createVariableValue<uint32_t>("", 7)));
    EXPECT_FALSE(setByPath("level.x", zyr_createVariableValue<uint32_t>("", 7)));
    EXPECT_FALSE(m_info->setVariableValue("level", nullptr));
    EXPECT_FALSE(m_info->setVariableValueByPath("level", nullptr));
    EXPECT_EQ(m_info->getLevel(), 3u);
}

/// An outer layer that has a field of its own.
class FieldObject : public test::StubObject<IObject> {
public:
    VariableReference* getVariableReference(const String& p_name) override {
        return p_name == "field" ? new VariableReference(ZYR_VARIABLE_FLOAT, &m_field) : nullptr;
    }
    VariableReference* getVariableReferenceByPath(const String& p_path) override {
        return p_path == "field.x" ? new VariableReference(ZYR_VARIABLE_FLOAT, &m_x) : nullptr;
    }

    float m_field = 0;
    float m_x = 0;
};

TEST_F(VariableOfAnObject, IsLookedUpInTheOutermostLayer) {
    FieldObject outer;
    m_info->setTLIObject(&outer);
    EXPECT_TRUE(set("field", zyr_createVariableValue<float>("", 1.5f)));
    EXPECT_TRUE(setByPath("field.x", zyr_createVariableValue<float>("", 2.5f)));
    EXPECT_FALSE(setByPath("level", zyr_createVariableValue<uint32_t>("", 7)));
    EXPECT_EQ(outer.m_field, 1.5f);
    EXPECT_EQ(outer.m_x, 2.5f);
}

} // namespace
} // namespace zyr
