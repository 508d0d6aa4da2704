#include "zyr_common/digest/zyr_xxhash.h"

#include <gtest/gtest.h>

namespace zyr {

TEST(XxHash, GivesThePublishedHashes) {
    EXPECT_EQ(zyr_xxHash32("", 0, 0), 0x02CC5D05u);
    EXPECT_EQ(zyr_xxHash32("abc", 3, 0), 0x32D153FFu);
    EXPECT_EQ(zyr_xxHash64("", 0, 0), 0xEF46DB3751D8E999u);
    EXPECT_EQ(zyr_xxHash64("abc", 3, 0), 0x44BC2CF5AD770999u);
}

TEST(XxHash, DependsOnTheSeed) {
    EXPECT_EQ(zyr_xxHash32("", 0, 0x9E3779B1), 0x36B78AE7u);
    EXPECT_NE(zyr_xxHash64("abc", 3, 1), zyr_xxHash64("abc", 3, 0));
    EXPECT_NE(zyr_xxHash64("abc", 3, uint64_t(1) << 40), zyr_xxHash64("abc", 3, 0));
}

TEST(XxHash, OfNullIsThatOfNothing) {
    EXPECT_EQ(zyr_xxHash32(nullptr, 9, 0), 0x02CC5D05u);
    EXPECT_EQ(zyr_xxHash64(nullptr, 9, 0), 0xEF46DB3751D8E999u);
}

} // namespace zyr
