#include "zyr_common/memory/zyr_ref.h"

#include "zyr_common/memory/zyr_ref_counted_data.h"

#include <gtest/gtest.h>

namespace zyr {
namespace {

/// Tells how many references it has and how many of its kind live.
class Counted : public RefCountedData {
public:
    Counted() { ++s_alive; }
    ~Counted() override { --s_alive; }

    uint32_t getRefCount() const { return m_refCounter.get(); }

    static inline int s_alive = 0;
};

class DerivedCounted : public Counted {};

TEST(Ref, HoldsNothingAtFirst) {
    const Ref<Counted> ref;
    EXPECT_EQ(ref.get(), nullptr);
    EXPECT_FALSE(ref);
}

TEST(Ref, AdoptsTheCallersReferenceAndGivesItBackAtItsEnd) {
    Counted* target = new Counted;
    {
        const Ref<Counted> ref = Ref<Counted>::adopt(target);
        EXPECT_EQ(ref.get(), target);
        EXPECT_EQ(ref.operator->(), target);
        EXPECT_EQ(&*ref, target);
        EXPECT_TRUE(ref);
        EXPECT_EQ(target->getRefCount(), 0u);
    }
    EXPECT_EQ(Counted::s_alive, 0);
}

TEST(Ref, SharingAddsAReferenceOfItsOwn) {
    const Ref<Counted> owner = Ref<Counted>::adopt(new Counted);
    {
        const Ref<Counted> ref = Ref<Counted>::share(owner.get());
        EXPECT_EQ(owner->getRefCount(), 1u);
    }
    EXPECT_EQ(owner->getRefCount(), 0u);
    EXPECT_EQ(Counted::s_alive, 1);
}

TEST(Ref, NullMayBeAdoptedAndShared) {
    EXPECT_FALSE(Ref<Counted>::adopt(nullptr));
    EXPECT_FALSE(Ref<Counted>::share(nullptr));
}

TEST(Ref, MovingHandsTheReferenceOver) {
    Ref<Counted> first = Ref<Counted>::adopt(new Counted);
    Counted* target = first.get();
    const Ref<Counted> second = std::move(first);
    EXPECT_EQ(first.get(), nullptr); // NOLINT(bugprone-use-after-move): an owner that was moved from holds nothing
    EXPECT_EQ(second.get(), target);
    EXPECT_EQ(target->getRefCount(), 0u);
}

TEST(Ref, AssignmentGivesTheFormerTargetBack) {
    Ref<Counted> ref = Ref<Counted>::adopt(new Counted);
    Counted* target = new Counted;
    ref = Ref<Counted>::adopt(target);
    EXPECT_EQ(ref.get(), target);
    EXPECT_EQ(Counted::s_alive, 1);
}

TEST(Ref, AssignmentToItselfKeepsTheTarget) {
    Ref<Counted> ref = Ref<Counted>::adopt(new Counted);
    Ref<Counted>& same = ref;
    ref = std::move(same);
    ASSERT_TRUE(ref);
    EXPECT_EQ(ref->getRefCount(), 0u);
}

TEST(Ref, SharingTheTargetThatItHoldsKeepsIt) {
    Ref<Counted> ref = Ref<Counted>::adopt(new Counted);
    ref = Ref<Counted>::share(ref.get());
    EXPECT_EQ(ref->getRefCount(), 0u);
    EXPECT_EQ(Counted::s_alive, 1);
}

TEST(Ref, TakesOverFromAnOwnerOfADerivedClass) {
    Ref<DerivedCounted> derived = Ref<DerivedCounted>::adopt(new DerivedCounted);
    const Ref<Counted> ref = std::move(derived);
    EXPECT_TRUE(ref);
    EXPECT_EQ(Counted::s_alive, 1);
}

TEST(Ref, ReleaseLeavesTheReferenceToTheCaller) {
    Ref<Counted> ref = Ref<Counted>::adopt(new Counted);
    Counted* target = ref.release();
    EXPECT_FALSE(ref);
    EXPECT_EQ(Counted::s_alive, 1);
    target->release();
}

TEST(Ref, GetAddsAReferenceWhereAsked) {
    const Ref<Counted> ref = Ref<Counted>::adopt(new Counted);
    EXPECT_EQ(ref.get(0), ref.get());
    EXPECT_EQ(ref->getRefCount(), 0u);
    EXPECT_EQ(ref.get(1), ref.get());
    EXPECT_EQ(ref->getRefCount(), 1u);
    ref->release();
    EXPECT_EQ(Ref<Counted>().get(1), nullptr);
}

/// Looks, while it is destroyed, at the owner that held it.
class Looking : public RefCountedData {
public:
    explicit Looking(Ref<Looking>& p_owner) : m_owner(p_owner) {}
    ~Looking() override { EXPECT_EQ(m_owner.get(), nullptr); }

private:
    Ref<Looking>& m_owner;
};

TEST(Ref, IsEmptyBeforeTheTargetIsDestroyed) {
    Ref<Looking> ref;
    ref = Ref<Looking>::adopt(new Looking(ref));
    ref.clear();
    EXPECT_FALSE(ref);
}

} // namespace
} // namespace zyr
