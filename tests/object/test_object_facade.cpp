#include "support/log/zyr_log_recorder.h"
#include "support/zyr_fake_core.h"
#include "zyr_common/implementation/zyr_implementation.h"
#include "zyr_common/implementation/zyr_native_format_info_level.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zyr {
namespace {

using testing::AllOf;
using testing::ExitedWithCode;
using testing::HasSubstr;

int s_alive = 0;
int s_created = 0;

/// An interface object whose life is counted.
class CountedLevel : public ObjectLevel<IObject> {
public:
    using LevelBase = ObjectLevel<IObject>;
    CountedLevel() {
        s_alive++;
        s_created++;
    }
    ~CountedLevel() override { s_alive--; }
};
using Counted = Implementation<CountedLevel>;

/// The least that a class on top of a facade can be.
template <class Facade> class Layer : public Facade {
public:
    Layer() { this->initObjectInterface(); }
    auto* getInterfaceObject() const { return this->m_interfaceObject; }
};
using ObjectLayer = Layer<WObject>;

class ObjectFacadeLife : public testing::Test {
protected:
    void SetUp() override {
        m_core.addClass<Counted>();
        m_core.addClass<DataFormatInfo>();
        m_core.addClass<NativeFormatInfo>();
        s_alive = 0;
        s_created = 0;
    }

    FakeCore m_core;
};

TEST_F(ObjectFacadeLife, FreshObjectHasCountZero) {
    IObject* object = new ObjectLayer;
    EXPECT_EQ(object->getRefCount(), 0u);
    object->release();
}

TEST_F(ObjectFacadeLife, FirstReleaseOfAFreshObjectDestroysIt) {
    IObject* object = new ObjectLayer;
    EXPECT_EQ(s_alive, 1);
    object->release();
    EXPECT_EQ(s_alive, 0);
}

TEST_F(ObjectFacadeLife, AddedReferenceIsGivenBackFirst) {
    IObject* object = new ObjectLayer;
    EXPECT_EQ(object->addRef(), object);
    EXPECT_EQ(object->getRefCount(), 1u);
    object->release();
    EXPECT_EQ(s_alive, 1);
    EXPECT_EQ(object->getRefCount(), 0u);
    object->release();
    EXPECT_EQ(s_alive, 0);
}

TEST_F(ObjectFacadeLife, GlobalReleaseIsTheSame) {
    zyr_releaseObject(new ObjectLayer);
    EXPECT_EQ(s_alive, 0);
}

TEST_F(ObjectFacadeLife, InterfaceObjectIsCreatedOnce) {
    ObjectLayer* object = new ObjectLayer;
    IObject* first = object->getInterfaceObject();
    EXPECT_EQ(object->initObjectInterface(), first);
    EXPECT_EQ(object->getInterfaceObject(), first);
    EXPECT_EQ(s_created, 1);
    object->release();
}

TEST_F(ObjectFacadeLife, InterfaceObjectKnowsItsFacade) {
    ObjectLayer* object = new ObjectLayer;
    EXPECT_EQ(object->getInterfaceObject()->getTLIObject(), object);
    object->release();
}

TEST_F(ObjectFacadeLife, InterfaceObjectOfAStackKnowsTheOutermostLayer) {
    m_core.setEntry<IObject>([]() -> IObject* {
        zyr_getApplicationData()->m_core->m_entries[0] =
            reinterpret_cast<moduleEntry_FUNC>(static_cast<IObject* (*)()>([]() -> IObject* { return new Counted; }));
        return new ObjectLayer;
    });
    ObjectLayer* outer = new ObjectLayer;
    ObjectLayer* inner = static_cast<ObjectLayer*>(outer->getInterfaceObject());
    EXPECT_EQ(inner->getInterfaceObject()->getTLIObject(), outer);
    outer->release();
    EXPECT_EQ(s_alive, 0);
}

TEST_F(ObjectFacadeLife, InitAndReleaseReachTheLevelOfTheInterface) {
    Layer<WNativeFormatInfo>* info = new Layer<WNativeFormatInfo>;
    info->setFormatName("name");
    info->setFilePath("path");
    info->init_This();
    EXPECT_EQ(info->getFilePath(), "");
    EXPECT_EQ(info->getFormatName(), "name");
    info->setDeferredFile("file");
    info->release_This();
    EXPECT_NE(info->getDeferredFile(), nullptr);
    info->release();
}

TEST_F(ObjectFacadeLife, InitOfTheBaseFacadeReachesTheObjectLevel) {
    ObjectLayer* object = new ObjectLayer;
    object->setDirty(1);
    object->setDeferredFile("file");
    object->init_This();
    EXPECT_FALSE(object->isDirty());
    EXPECT_NE(object->getDeferredFile(), nullptr);
    object->release_This();
    EXPECT_EQ(object->getDeferredFile(), nullptr);
    object->release();
}

TEST_F(ObjectFacadeLife, CopyBackwardsCopiesAllLevelsOfTheSource) {
    Layer<WNativeFormatInfo>* source = new Layer<WNativeFormatInfo>;
    source->setDirty(1);
    source->setFormatName("name");
    source->setFilePath("path");
    Layer<WNativeFormatInfo>* target = new Layer<WNativeFormatInfo>;
    target->copy_Backwards(source);
    EXPECT_TRUE(target->isDirty());
    EXPECT_EQ(target->getFormatName(), "name");
    EXPECT_EQ(target->getFilePath(), "path");
    source->release();
    target->release();
}

TEST_F(ObjectFacadeLife, CopyOfTheBaseFacadeCopiesTheObjectLevel) {
    ObjectLayer* source = new ObjectLayer;
    source->setDirty(1);
    ObjectLayer* target = new ObjectLayer;
    target->copy_This(source);
    EXPECT_TRUE(target->isDirty());
    source->release();
    target->release();
}

using ObjectFacadeDeath = ObjectFacadeLife;

TEST_F(ObjectFacadeDeath, CopyFromNothingEndsTheProcess) {
    EXPECT_EXIT(
        {
            ObjectLayer* object = new ObjectLayer;
            object->copy_This(nullptr);
        },
        ExitedWithCode(0),
        AllOf(HasSubstr("test|1|1|void zyr::ObjectFacade<Interface>::copy_This("),
              HasSubstr("[with Interface = zyr::IObject]|assert(p_src != NULL)")));
    EXPECT_EXIT(
        {
            Layer<WDataFormatInfo>* info = new Layer<WDataFormatInfo>;
            info->copy_Backwards(nullptr);
        },
        ExitedWithCode(0), AllOf(HasSubstr("test|1|1|"), HasSubstr("|assert(p_src != NULL)")));
}

TEST_F(ObjectFacadeDeath, DestructionWithoutInterfaceObjectEndsTheProcess) {
    EXPECT_EXIT(
        {
            WObject* object = new WObject;
            object->release();
        },
        ExitedWithCode(0),
        HasSubstr("test|1|1|zyr::ObjectFacade<Interface>::~ObjectFacade() [with Interface = zyr::IObject]|"
                  "assert(m_interfaceObject != NULL)"));
}

TEST_F(ObjectFacadeDeath, FailedCreationOfTheInterfaceObjectEndsTheProcess) {
    m_core.setEntry<IObject>([]() -> IObject* { return nullptr; });
    m_core.setEntry<IDataFormatInfo>([]() -> IDataFormatInfo* { return nullptr; });
    EXPECT_EXIT(new ObjectLayer, ExitedWithCode(0),
                AllOf(HasSubstr("test|1|1|"), HasSubstr("|assert(m_interfaceObject != NULL)")));
    EXPECT_EXIT(new Layer<WDataFormatInfo>, ExitedWithCode(0),
                AllOf(HasSubstr("test|1|1|Interface* zyr::ObjectFacade<Interface>::initObjectInterface() [with "),
                      HasSubstr("|assert(interfaceDataFormatInfo != NULL)")));
}

} // namespace
} // namespace zyr
