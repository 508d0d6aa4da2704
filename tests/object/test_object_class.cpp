#include "zyr_common/object/zyr_object_class.h"

#include "support/log/zyr_log_recorder.h"
#include "support/zyr_fake_core.h"
#include "zyr_common/implementation/zyr_native_format_info_level.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zyr {
namespace {

using testing::ExitedWithCode;
using testing::HasSubstr;

std::vector<std::string> s_steps;

class Counter : public ObjectClass<Counter, WObject> {
public:
    static constexpr const char* c_className = "Counter";
    static constexpr const char* c_classGUIDText = "10000000-0000-4000-8000-000000000001";

    Counter() {
        initObjectInterface();
        init_This();
    }
    ~Counter() override { release_This(); }

    void init_This() {
        s_steps.push_back("Counter::init_This");
        m_number = 7;
    }
    void release_This() { s_steps.push_back("Counter::release_This"); }
    void copy_This(const Counter* p_src) {
        s_steps.push_back("Counter::copy_This");
        m_number = p_src->m_number;
    }

    int m_number = 0;
};

class Timer : public ObjectClass<Timer, Counter> {
public:
    static constexpr const char* c_className = "Timer";
    static constexpr const char* c_classGUIDText = "10000000-0000-4000-8000-000000000002";

    Timer() { init_This(); }
    ~Timer() override { release_This(); }

    void init_This() {
        s_steps.push_back("Timer::init_This");
        m_seconds = 1;
    }
    void release_This() { s_steps.push_back("Timer::release_This"); }
    void copy_This(const Timer* p_src) {
        s_steps.push_back("Timer::copy_This");
        m_seconds = p_src->m_seconds;
    }

    int m_seconds = 0;
};

class NamedFormat : public ObjectClass<NamedFormat, WDataFormatInfo> {
public:
    static constexpr const char* c_className = "NamedFormat";
    static constexpr const char* c_classGUIDText = "10000000-0000-4000-8000-000000000003";

    NamedFormat() { initObjectInterface(); }
    void init_This() {}
    void release_This() {}
    void copy_This(const NamedFormat*) {}
    IObject* getInterfaceObject() const { return m_interfaceObject; }
};

class ObjectClassTest : public testing::Test {
protected:
    void SetUp() override {
        m_core.addClass<Implementation<ObjectLevel<IObject>>>();
        m_core.addClass<DataFormatInfo>();
        s_steps.clear();
    }

    FakeCore m_core;
};

TEST_F(ObjectClassTest, HasItsOwnNameAndGUID) {
    Counter* object = new Counter;
    EXPECT_EQ(object->getClassName(), "Counter");
    EXPECT_EQ(object->getClassGUID(), GUID_t_fromString("10000000-0000-4000-8000-000000000001"));
    EXPECT_EQ(&object->getClassGUID(), &Counter::getStaticClassGUID());
    EXPECT_EQ(object->getClassTemplateTypeName(), "");
    object->release();
}

TEST_F(ObjectClassTest, FindsTheGUIDsOfItselfAndItsBases) {
    IObject* object = new Timer;
    EXPECT_TRUE(object->findClassGUID(Timer::getStaticClassGUID()));
    EXPECT_TRUE(object->findClassGUID(Counter::getStaticClassGUID()));
    EXPECT_TRUE(object->findClassGUID(zyr_getInterfaceGUID<IObject>()));
    EXPECT_FALSE(object->findClassGUID(zyr_getInterfaceGUID<IDataFormatInfo>()));
    EXPECT_FALSE(object->findClassGUID(GUID_t()));
    object->release();
}

TEST_F(ObjectClassTest, ComparesBothHalvesOfAGUID) {
    IObject* object = new Counter;
    EXPECT_FALSE(object->findClassGUID(GUID_t_fromString("10000000-0000-4000-8000-00000000000f")));
    EXPECT_FALSE(object->findClassGUID(GUID_t_fromString("f0000000-0000-4000-8000-000000000001")));
    object->release();
}

TEST_F(ObjectClassTest, GivesTheLayerThatAnswersToAGUID) {
    NamedFormat* object = new NamedFormat;
    EXPECT_EQ(object->findInterfaceObjectByClassGUID(NamedFormat::getStaticClassGUID()), object);
    EXPECT_EQ(object->findInterfaceObjectByClassGUID(zyr_getInterfaceGUID<IDataFormatInfo>()),
              object->getInterfaceObject());
    EXPECT_EQ(object->findInterfaceObjectByClassGUID(zyr_getInterfaceGUID<IObject>()), object->getInterfaceObject());
    EXPECT_EQ(object->findInterfaceObjectByClassGUID(Counter::getStaticClassGUID()), nullptr);
    object->release();
}

TEST_F(ObjectClassTest, ClearRunsFromTheLastLevelToTheFirstAndBack) {
    Timer* object = new Timer;
    object->m_number = 1;
    object->m_seconds = 2;
    object->setDirty(1);
    s_steps.clear();
    object->clear();
    EXPECT_EQ(s_steps, (std::vector<std::string>{"Timer::release_This", "Counter::release_This", "Counter::init_This",
                                                 "Timer::init_This"}));
    EXPECT_EQ(object->m_number, 7);
    EXPECT_EQ(object->m_seconds, 1);
    EXPECT_FALSE(object->isDirty());
    object->release();
}

TEST_F(ObjectClassTest, CopyClearsAndCopiesFromTheFirstLevelToTheLast) {
    Timer* source = new Timer;
    source->m_number = 1;
    source->m_seconds = 2;
    source->setDirty(1);
    Timer* object = new Timer;
    s_steps.clear();
    object->copyUnsafe(source);
    EXPECT_EQ(s_steps, (std::vector<std::string>{"Timer::release_This", "Counter::release_This", "Counter::init_This",
                                                 "Timer::init_This", "Counter::copy_This", "Timer::copy_This"}));
    EXPECT_EQ(object->m_number, 1);
    EXPECT_EQ(object->m_seconds, 2);
    EXPECT_TRUE(object->isDirty());
    source->release();
    object->release();
}

TEST_F(ObjectClassTest, CloneIsOfTheSameClassWithCountZero) {
    Timer* object = new Timer;
    object->m_number = 3;
    object->m_seconds = 4;
    object->addRef();
    IObject* clone = object->clone();
    ASSERT_EQ(clone->getClassName(), "Timer");
    EXPECT_EQ(clone->getRefCount(), 0u);
    EXPECT_EQ(static_cast<Timer*>(clone)->m_number, 3);
    EXPECT_EQ(static_cast<Timer*>(clone)->m_seconds, 4);
    EXPECT_EQ(clone->getTLIObject(), clone);
    clone->release();
    object->release();
    object->release();
}

TEST_F(ObjectClassTest, CheckedCopyReachesTheLevelOfTheSubclass) {
    Counter* source = new Counter;
    source->m_number = 5;
    Counter* object = new Counter;
    EXPECT_TRUE(object->copy(source));
    EXPECT_EQ(object->m_number, 5);
    source->release();
    object->release();
}

TEST_F(ObjectClassTest, CheckedCopyTakesADerivedSource) {
    Timer* source = new Timer;
    source->m_number = 5;
    Counter* object = new Counter;
    EXPECT_TRUE(object->copy(source));
    EXPECT_EQ(object->m_number, 5);
    source->release();
    object->release();
}

TEST_F(ObjectClassTest, CheckedCopyRefusesAnotherClassAndChangesNothing) {
    test::takeLogLines();
    Counter* source = new Counter;
    Timer* object = new Timer;
    object->m_number = 5;
    EXPECT_FALSE(object->copy(source));
    EXPECT_FALSE(object->copy(nullptr));
    EXPECT_EQ(object->m_number, 5);
    const std::vector<std::string> lines = test::takeLogLines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_THAT(lines[0], testing::EndsWith("|Unable to copy object: the source is not of class Timer"));
    source->release();
    object->release();
}

TEST_F(ObjectClassTest, DestructionReleasesLevelsFromTheLast) {
    IObject* object = new Timer;
    s_steps.clear();
    object->release();
    EXPECT_EQ(s_steps, (std::vector<std::string>{"Timer::release_This", "Counter::release_This"}));
}

TEST_F(ObjectClassTest, CopyFromNothingEndsTheProcess) {
    EXPECT_EXIT(
        {
            IObject* object = new Counter;
            object->copyUnsafe(nullptr);
        },
        ExitedWithCode(0), HasSubstr("|assert(p_src != NULL)"));
}

} // namespace
} // namespace zyr
