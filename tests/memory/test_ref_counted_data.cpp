#include "support/binary_layout.h"
#include "zyr_common/memory/zyr_ref_counted_data.h"

#include <gmock/gmock.h>

using namespace zyr;

namespace {

class Counted : public RefCountedData {
public:
    explicit Counted(int& p_deleted) : m_deleted(p_deleted) {}
    ~Counted() override { m_deleted++; }

    uint32_t getCount() const { return m_refCounter.get(); }

private:
    int& m_deleted;
};

} // namespace

TEST(RefCountedData, HoldsItsCounterBehindTheTable) {
    EXPECT_EQ(sizeof(RefCountedData), 24u);
    int deleted = 0;
    Counted object(deleted);
    const uint32_t* counter = readAt<uint32_t*>(&object, 8);
    object.addRef();
    EXPECT_EQ(*counter, 1u);
}

TEST(RefCountedData, KeepsTheOrderOfItsVirtualOperations) {
    EXPECT_EQ(getSlot(&RefCountedData::clone), 2u);
    EXPECT_EQ(getSlot(&RefCountedData::addRef), 3u);
    EXPECT_EQ(getSlot(&RefCountedData::release), 4u);
}

TEST(RefCountedData, DiesAtTheFirstReleaseWhenNeverAdded) {
    int deleted = 0;
    (new Counted(deleted))->release();
    EXPECT_EQ(deleted, 1);
}

TEST(RefCountedData, NeedsOneMoreReleaseForEachHolder) {
    int deleted = 0;
    Counted* object = new Counted(deleted);
    EXPECT_EQ(object->addRef(), object);
    EXPECT_EQ(object->getCount(), 1u);
    object->release();
    EXPECT_EQ(object->getCount(), 0u);
    EXPECT_EQ(deleted, 0);
    object->release();
    EXPECT_EQ(deleted, 1);
}

TEST(RefCountedData, CloneOfTheRootIsPlainAndFresh) {
    int deleted = 0;
    Counted object(deleted);
    object.addRef();
    RefCountedData* clone = object.clone();
    EXPECT_EQ(typeid(*clone), typeid(RefCountedData));
    EXPECT_EQ(*readAt<uint32_t*>(clone, 8), 0u);
    clone->release();
}

TEST(RefCountedData, CopiesKeepTheirOwnCount) {
    int deleted = 0;
    Counted source(deleted);
    source.addRef();
    Counted copy(source);
    EXPECT_EQ(copy.getCount(), 0u);
    copy.addRef();
    copy.addRef();
    static_cast<RefCountedData&>(copy) = source;
    EXPECT_EQ(copy.getCount(), 2u);
    EXPECT_EQ(source.getCount(), 1u);
}
