#include "host/live/zyr_live_strangers.h"

#include <gtest/gtest.h>

namespace zyr::host {

namespace {

/// One after the other from the given time on.
void add(std::vector<Stranger>& p_strangers, const std::string& p_origin, size_t p_count, uint64_t p_firstEnd) {
    for (size_t i = 0; i < p_count; i++) {
        p_strangers.push_back({uint32_t(p_strangers.size() + 1), p_origin, p_firstEnd + i});
    }
}

} // namespace

TEST(LiveStrangers, AnOriginIsTheAddressWithoutItsPort) {
    EXPECT_EQ(findOrigin("127.0.0.1:4711"), "127.0.0.1");
    EXPECT_EQ(findOrigin("unix"), "unix");
}

TEST(LiveStrangers, AnOriginOfIpv6IsTheNetworkThatOneMachineCanHave) {
    EXPECT_EQ(findOrigin("[2001:db8:1:2:3:4:5:6]:80"), "2001:db8:1:2::/64");
    EXPECT_EQ(findOrigin("[2001:db8:1:2:ffff::1]:81"), "2001:db8:1:2::/64");
    EXPECT_EQ(findOrigin("[fe80::1%eth0]:81"), "fe80::/64");
    EXPECT_EQ(findOrigin("[::1]:81"), "::/64");
}

TEST(LiveStrangers, AddressesOfIpv4WithinIpv6StayApart) {
    EXPECT_NE(findOrigin("[::ffff:10.0.0.1]:80"), findOrigin("[::ffff:10.0.0.2]:80"));
}

TEST(LiveStrangers, NobodyLeavesWhileThereIsRoom) {
    std::vector<Stranger> strangers;
    EXPECT_EQ(findLeaver(strangers, "a"), 0u);
    add(strangers, "a", MOST_STRANGERS_OF_ONE - 1, 100);
    add(strangers, "b", MOST_STRANGERS_OF_ONE, 1);
    EXPECT_EQ(findLeaver(strangers, "a"), 0u);
}

TEST(LiveStrangers, AnOriginThatHasItsShareLosesTheOneWhoseTimeEndsFirst) {
    std::vector<Stranger> strangers;
    add(strangers, "b", 1, 1);
    add(strangers, "a", MOST_STRANGERS_OF_ONE, 100);
    strangers[5].m_end = 50;
    EXPECT_EQ(findLeaver(strangers, "a"), 6u);
}

TEST(LiveStrangers, WhenAllIsFullTheOriginThatHasTheMostLosesOne) {
    std::vector<Stranger> strangers;
    add(strangers, "few", 2, 1);
    add(strangers, "many", 9, 100);
    for (char name = 'A'; strangers.size() < MOST_STRANGERS; name++) {
        add(strangers, std::string(1, name), 1, 2);
    }
    EXPECT_EQ(findLeaver(strangers, "new"), 3u);
    EXPECT_EQ(findLeaver(strangers, "few"), 3u);
}

} // namespace zyr::host
