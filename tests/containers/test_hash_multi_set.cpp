#include "zyr_common/containers/zyr_hash_multi_set.h"
#include "zyr_common/text/zyr_string.h"

#include <gtest/gtest.h>

namespace zyr {

TEST(HashMultiSet, HoldsEachValueOfAKeyOnce) {
    HashMultiSet<String, int> set;
    EXPECT_TRUE(set.add("a", 1));
    EXPECT_TRUE(set.add("a", 2));
    EXPECT_FALSE(set.add("a", 1));
    EXPECT_TRUE(set.add("b", 1));
    EXPECT_EQ(set.getSize(), 2U);
    EXPECT_EQ(set.find("a")->m_second.getSize(), 2U);
    EXPECT_EQ(set.find("b")->m_second.getSize(), 1U);
}

TEST(HashMultiSet, KnowsWhichKeyHasWhichValue) {
    HashMultiSet<String, int> set;
    set.add("a", 1);
    EXPECT_TRUE(set.contains("a", 1));
    EXPECT_FALSE(set.contains("a", 2));
    EXPECT_FALSE(set.contains("b", 1));
}

TEST(HashMultiSet, KeepsTheOrderOfKeysAndValues) {
    HashMultiSet<String, int> set;
    set.add("b", 3);
    set.add("a", 7);
    set.add("b", 1);
    EXPECT_EQ(set.begin()->m_first, "b");
    EXPECT_EQ(set.begin()->m_second.front(), 3);
    EXPECT_EQ(set.begin()->m_second.back(), 1);
}

TEST(HashMultiSet, IsCopiedWithItsValues) {
    HashMultiSet<String, int> set;
    set.add("a", 1);
    HashMultiSet<String, int> copy = set;
    set.add("a", 2);
    EXPECT_TRUE(copy.contains("a", 1));
    EXPECT_FALSE(copy.contains("a", 2));
}

} // namespace zyr
