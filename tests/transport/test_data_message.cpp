#include "zyr_common/memory/zyr_memory.h"
#include "zyr_common/transport/zyr_data_message.h"

#include <cstring>
#include <gtest/gtest.h>

namespace zyr {

TEST(DataMessage, HasThePayloadBehindTheHeader) {
    unsigned char* block = static_cast<unsigned char*>(zyr_malloc(5));
    memcpy(block, "abcde", 5);
    DataMessage* message = new DataMessage(7, 9, block, 2, 3);
    EXPECT_EQ(message->getType(), 7u);
    EXPECT_EQ(message->getID(), 9u);
    EXPECT_EQ(message->getHeaderSize(), 2u);
    EXPECT_EQ(memcmp(message->getHeader(), "ab", 2), 0);
    EXPECT_EQ(message->getPayloadSize(), 3u);
    EXPECT_EQ(memcmp(message->getPayload(), "cde", 3), 0);
    EXPECT_EQ(message->getMutablePayload(), block + 2);
    EXPECT_EQ(message->getObject(), nullptr);
    message->release();
}

TEST(DataMessage, MayBeEmpty) {
    DataMessage* message = new DataMessage(1, 1, nullptr, 0, 0);
    EXPECT_EQ(message->getPayloadSize(), 0u);
    message->release();
}

} // namespace zyr
