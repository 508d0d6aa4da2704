#include "zyr_common/text/zyr_time_text.h"

#include <ctime>
#include <gmock/gmock.h>

using namespace zyr;

namespace {

/// The seconds in a text of the given strptime form, read as UTC.
time_t readSeconds(const std::string& p_text, const char* p_form) {
    tm fields = {};
    EXPECT_NE(strptime(p_text.c_str(), p_form, &fields), nullptr) << p_text;
    return timegm(&fields);
}

} // namespace

TEST(TimeText, IsThePresentUtcTimeWithMicroseconds) {
    String text("old");
    const time_t before = time(nullptr);
    zyr_getCurrentTimeString(text);
    const time_t after = time(nullptr);
    const std::string value = text.getData();
    ASSERT_THAT(value, testing::MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{6}"));
    // The coarse clock of time() can lie one tick behind.
    EXPECT_GE(readSeconds(value, "%Y-%m-%d %H:%M:%S") + 1, before);
    EXPECT_LE(readSeconds(value, "%Y-%m-%d %H:%M:%S"), after + 1);
}

TEST(TimeText, DigestHasMillisecondsAndNoSeparatorsInTheTime) {
    String text("old");
    const time_t before = time(nullptr);
    zyr_getCurrentTimeStringDigest(text);
    const time_t after = time(nullptr);
    const std::string value = text.getData();
    ASSERT_THAT(value, testing::MatchesRegex("_[0-9]{4}-[0-9]{2}-[0-9]{2}_[0-9]{9}"));
    const std::string seconds = value.substr(0, value.size() - 3);
    EXPECT_GE(readSeconds(seconds, "_%Y-%m-%d_%H%M%S") + 1, before);
    EXPECT_LE(readSeconds(seconds, "_%Y-%m-%d_%H%M%S"), after + 1);
}
