// A target that names no word of its own, as somebody's first program may be. It has no prefix header, which would
// bring the word of the tests.
#undef ZYR_MODULE_WORD
#include "zyr_common/memory/zyr_report.h"

#include "support/zyr_logged_application.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zyr {
namespace {

TEST(UnnamedTarget, ReportsUnderTheWordOfTheLibrary) {
    LoggedApplication application;
    ZYR_LOG_WARN("message");
    EXPECT_THAT(application.getBodies(), testing::ElementsAre(testing::MatchesRegex(".* WARN  common .* - message")));
}

} // namespace
} // namespace zyr
