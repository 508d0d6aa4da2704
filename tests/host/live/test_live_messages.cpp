#include "host/live/zyr_live_messages.h"

#include <gtest/gtest.h>

namespace zyr::host {

namespace {

template <typename Message> bool readFrom(Message& p_message, const std::vector<uint8_t>& p_bytes) {
    return p_message.read(LiveReader(p_bytes.data(), p_bytes.size()));
}

/// Every head of fewer bytes is refused.
template <typename Message> void expectShorterOnesRefused(const Message& p_message) {
    std::vector<uint8_t> bytes = p_message.write();
    while (!bytes.empty()) {
        bytes.pop_back();
        Message other;
        EXPECT_FALSE(readFrom(other, bytes)) << bytes.size();
    }
}

} // namespace

TEST(LiveHello, HasItsBytes) {
    LiveHello hello;
    hello.m_flags = LiveHello::WANTS_CONTROL;
    hello.m_codecs = 3;
    hello.m_user = "ann";
    hello.m_secret = "xy";
    const std::vector<uint8_t> bytes{2, 0, 0, 0, 1, 0, 0, 0, 3, 3, 0, 'a', 'n', 'n', 2, 0, 'x', 'y'};
    EXPECT_EQ(hello.write(), bytes);
}

TEST(LiveHello, IsReadBack) {
    LiveHello hello;
    hello.m_user = "ann";
    hello.m_secret = "secret";
    LiveHello other;
    ASSERT_TRUE(readFrom(other, hello.write()));
    EXPECT_EQ(other.m_user, "ann");
    EXPECT_EQ(other.m_secret, "secret");
}

TEST(LiveHello, RefusesTextsAboveTheirLimits) {
    LiveHello hello;
    LiveHello other;
    hello.m_secret = std::string(LONGEST_SECRET, 's');
    EXPECT_TRUE(readFrom(other, hello.write()));
    hello.m_secret += 's';
    EXPECT_FALSE(readFrom(other, hello.write()));
    hello.m_secret = "s";
    hello.m_user = std::string(LONGEST_NAME + 1, 'u');
    EXPECT_FALSE(readFrom(other, hello.write()));
}

TEST(LiveMessages, AreRefusedWhenCutShort) {
    LiveHello hello;
    hello.m_secret = "secret";
    expectShorterOnesRefused(hello);
    expectShorterOnesRefused(LiveAcknowledge{});
    expectShorterOnesRefused(LivePointer{});
    expectShorterOnesRefused(LiveWheel{});
    expectShorterOnesRefused(LiveKey{});
    expectShorterOnesRefused(LiveWelcome{});
    expectShorterOnesRefused(LiveStream{});
    expectShorterOnesRefused(LiveCursor{});
    expectShorterOnesRefused(LiveStatistics{});
}

TEST(LiveMessages, MayBeLongerThanThisVersionKnows) {
    std::vector<uint8_t> bytes = LivePointer{5, -6, 1}.write();
    bytes.push_back(99);
    LivePointer pointer;
    ASSERT_TRUE(readFrom(pointer, bytes));
    EXPECT_EQ(pointer.m_x, 5);
    EXPECT_EQ(pointer.m_y, -6);
    EXPECT_EQ(pointer.m_buttons, 1);
}

TEST(LiveStream, IsReadBack) {
    LiveStream stream{1921, 1081, 960, 540, 3, true, false};
    LiveStream other;
    ASSERT_TRUE(readFrom(other, stream.write()));
    EXPECT_EQ(other, stream);
}

} // namespace zyr::host
