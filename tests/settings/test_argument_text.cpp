#include "zyr_common/settings/zyr_argument_text.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace zyr {

static std::vector<std::string> split(const char* p_text) {
    Array<String> arguments;
    std::vector<std::string> result;
    if (!zyr_splitArguments(p_text, arguments)) {
        EXPECT_TRUE(arguments.isEmpty());
        return {"fault"};
    }
    for (const String& argument : arguments) {
        result.emplace_back(argument.getData());
    }
    return result;
}

using Arguments = std::vector<std::string>;

TEST(ArgumentText, IsSplitAtBlanksOutsideOfQuotes) {
    EXPECT_EQ(split(""), Arguments());
    EXPECT_EQ(split("  a\tb \n c "), (Arguments{"a", "b", "c"}));
    EXPECT_EQ(split("a\"b c\"d 'e \\f' \"\" \\\"\\  \"\\\\\""), (Arguments{"ab cd", "e \\f", "", "\" ", "\\"}));
    EXPECT_EQ(split("a\\"), Arguments{"a\\"});
}

TEST(ArgumentText, IsRefusedWithAnOpenQuote) {
    EXPECT_EQ(split("a \"b"), Arguments{"fault"});
    EXPECT_EQ(split("'a"), Arguments{"fault"});
}

TEST(ArgumentText, GivesBackWhatWasJoined) {
    Array<String> arguments;
    const Arguments texts = {"plain", "", "two words", "\"'\\", "tab\t", "ä"};
    for (const std::string& text : texts) {
        arguments.pushBack(text);
    }
    String joined;
    zyr_joinArguments(arguments, joined);
    EXPECT_EQ(joined, "plain \"\" \"two words\" \"\\\"'\\\\\" \"tab\t\" ä");
    EXPECT_EQ(split(joined.getData()), texts);
}

} // namespace zyr
