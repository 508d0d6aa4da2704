#include "host/live/zyr_access_token.h"
#include "host/live/zyr_live_access.h"
#include "host/live/zyr_live_address.h"
#include "host/live/zyr_live_identity.h"
#include "host/zyr_run_error.h"
#include "support/zyr_temporary_directory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace zyr::host {

namespace {

std::string failureOf(const std::string& p_path) {
    try {
        readAccessToken(p_path);
    } catch (const RunError& error) {
        return error.what();
    }
    return "";
}

class TokenFile : public testing::Test {
protected:
    void write(const std::string& p_text, std::filesystem::perms p_permissions) {
        std::ofstream(m_path) << p_text;
        std::filesystem::permissions(m_path, p_permissions);
    }

    TemporaryDirectory m_directory;
    const std::string m_path = m_directory.getPath() + "token";
};

} // namespace

TEST(AccessToken, Is128BitsInHexadecimal) {
    const std::string token = createAccessToken();
    EXPECT_EQ(token.size(), 32u);
    EXPECT_EQ(token.find_first_not_of("0123456789abcdef"), std::string::npos);
    EXPECT_NE(createAccessToken(), token);
}

TEST(AccessToken, IsTheSameOnlyToTheLastByte) {
    EXPECT_TRUE(isSameSecret("0123456789abcdef", "0123456789abcdef"));
    EXPECT_FALSE(isSameSecret("0123456789abcdef", "0123456789abcdee"));
    EXPECT_FALSE(isSameSecret("0123456789abcdef", "1123456789abcdef"));
    EXPECT_FALSE(isSameSecret("0123456789abcdef", "0123456789abcde"));
    EXPECT_FALSE(isSameSecret("0123456789abcdef", "0123456789abcdef0"));
    EXPECT_FALSE(isSameSecret("abab", "abababab"));
    EXPECT_FALSE(isSameSecret("0123456789abcdef", ""));
}

TEST(AccessToken, ThatIsEmptyOpensNothing) {
    EXPECT_FALSE(isSameSecret("", ""));
    EXPECT_FALSE(isSameSecret("", "a"));
}

TEST_F(TokenFile, GivesItsFirstLine) {
    write("0123456789abcdef\nmore\n", std::filesystem::perms::owner_read);
    EXPECT_EQ(readAccessToken(m_path), "0123456789abcdef");
}

TEST_F(TokenFile, IsRefusedWhenOthersCanReadIt) {
    write("0123456789abcdef\n", std::filesystem::perms::owner_read | std::filesystem::perms::others_read);
    EXPECT_EQ(failureOf(m_path), "the token in '" + m_path + "' can be read by others: chmod 600 it");
}

TEST_F(TokenFile, IsRefusedWhenTheTokenIsShort) {
    write("0123456789abcde\n", std::filesystem::perms::owner_read);
    EXPECT_EQ(failureOf(m_path), "the token in '" + m_path + "' is not of 16 to 512 characters");
}

TEST_F(TokenFile, IsRefusedWhenItIsNotThere) {
    EXPECT_EQ(failureOf(m_path), "cannot read the token from '" + m_path + "': No such file or directory");
}

TEST(AccessCheck, LetsThoseInWhoKnowTheToken) {
    const LiveAccess access{"0123456789abcdef", {}};
    LiveHello hello;
    hello.m_secret = "0123456789abcdef";
    AccessCheck check;
    check.begin(access, hello);
    EXPECT_TRUE(check.isDone());
    EXPECT_TRUE(check.isGranted());
}

TEST(AccessCheck, TakesNoTokenForAPassword) {
    const LiveAccess access{"0123456789abcdef", {}};
    LiveHello hello;
    hello.m_user = "root";
    hello.m_secret = "0123456789abcdef";
    AccessCheck check;
    check.begin(access, hello);
    EXPECT_TRUE(check.isDone());
    EXPECT_FALSE(check.isGranted());
}

TEST(LiveAddress, IsTakenApart) {
    LiveAddress address;
    ASSERT_TRUE(parseLiveAddress("https://desk.example:8443/#token=abc", address));
    EXPECT_TRUE(address.m_secure);
    EXPECT_EQ(address.m_host, "desk.example");
    EXPECT_EQ(address.m_port, 8443u);
    EXPECT_EQ(address.m_token, "abc");
    EXPECT_EQ(address.getOrigin(), "https://desk.example:8443");
    ASSERT_TRUE(parseLiveAddress("http://[::1]:80", address));
    EXPECT_FALSE(address.m_secure);
    EXPECT_EQ(address.m_host, "::1");
    EXPECT_EQ(address.m_token, "");
    EXPECT_EQ(address.getHostField(), "[::1]");
    ASSERT_TRUE(parseLiveAddress("https://a", address));
    EXPECT_EQ(address.m_port, 443u);
}

TEST(LiveAddress, RefusesOtherForms) {
    LiveAddress address;
    address.m_host = "before";
    for (const char* text :
         {"", "desk", "ftp://desk", "https://", "https://desk:0", "https://desk:65536", "https://desk:1x",
          "https://desk/path", "https://me@desk", "https://[::1", "https://desk#x"}) {
        EXPECT_FALSE(parseLiveAddress(text, address)) << text;
    }
    EXPECT_EQ(address.m_host, "before");
}

TEST(LiveIdentity, KnowsLoopbackAddresses) {
    EXPECT_TRUE(isLoopback("127.0.0.1"));
    EXPECT_TRUE(isLoopback("127.8.9.1"));
    EXPECT_TRUE(isLoopback("::1"));
    EXPECT_TRUE(isLoopback("localhost"));
    EXPECT_FALSE(isLoopback("0.0.0.0"));
    EXPECT_FALSE(isLoopback("::"));
    EXPECT_FALSE(isLoopback(""));
    EXPECT_FALSE(isLoopback("192.168.1.27"));
}

TEST(LiveIdentity, IsCalledByLoopbackNamesAndThoseGiven) {
    const std::vector<std::string> names{"localhost", "127.0.0.1", "::1", "desk.example"};
    EXPECT_EQ(findServerNames("127.0.0.1", {"desk.example", "localhost"}), names);
}

TEST(LiveIdentity, MakesHostsAndOrigins) {
    const std::vector<std::string> hosts{"localhost:8443", "[::1]:8443"};
    EXPECT_EQ(makeHosts({"localhost", "::1"}, 8443, true), hosts);
    const std::vector<std::string> usual{"localhost:443", "localhost"};
    EXPECT_EQ(makeHosts({"localhost"}, 443, true), usual);
    const std::vector<std::string> origins{"https://localhost:8443", "https://[::1]:8443"};
    EXPECT_EQ(makeOrigins(hosts, true), origins);
}

} // namespace zyr::host
