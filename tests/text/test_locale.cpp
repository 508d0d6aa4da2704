// Numbers under a locale of the host whose decimal sign is a comma.
#include "support/zyr_host_locale.h"
#include "zyr_common/containers/zyr_pair.h"
#include "zyr_common/text/zyr_number_text.h"
#include "zyr_common/text/zyr_string.h"

#include <gtest/gtest.h>

using namespace zyr;

namespace {

class CommaLocale : public testing::Test {
protected:
    void SetUp() override {
        char text[8];
        snprintf(text, sizeof(text), "%.1f", 1.5);
        ASSERT_STREQ(text, "1,5") << "the locale is in force";
    }

    HostLocale m_locale{"de_DE"};
};

} // namespace

TEST_F(CommaLocale, ChangesNothingInTheTextOfNumbers) {
    String text;
    zyr_convertDoubleToString(1e10, text);
    EXPECT_STREQ(text.getData(), "1.000000e+10");
    zyr_convertDoubleToStringPrec(-2.5, text, 1);
    EXPECT_STREQ(text.getData(), "-2.5");
    EXPECT_STREQ(String::newFormatted("%.2f %d", 1.25, 1000000).getData(), "1.25 1000000");
    EXPECT_STREQ(String::newFormatted(L"%.2f", 1.25).getData(), "1.25");
    EXPECT_EQ(zyr_convertStringToDouble("1.5e1"), 15.0);
    EXPECT_EQ(zyr_convertStringToDouble("1,5"), 1.0);
    EXPECT_EQ(String("x[12]").parseBracketsUInt32('[', ']'), 12u);

    char after[8];
    snprintf(after, sizeof(after), "%.1f", 1.5);
    EXPECT_STREQ(after, "1,5") << "the host's own locale stays in force";
}
