#include "core_module/documents/document_test.h"
#include "zyr_common/documents/zyr_config_parser.h"

namespace zyr {
namespace {

class ConfigParserTest : public ParserTest<IConfigParser> {
protected:
    /// "[section] name=value;name=#number;"
    std::string read(const std::string& p_text) {
        if (!parse(p_text)) {
            return getMessages().empty() ? "fault" : getMessages()[0];
        }
        std::string sections;
        for (const ConfigSection* section : m_parser->getSections()) {
            sections += "[" + show(section->getName()) + "]";
            for (const ConfigPair* pair : section->getPairs()) {
                sections += show(pair->getName()) + "=" + (pair->isNumeric() ? "#" : "") + show(pair->getValue()) + ";";
            }
        }
        return sections;
    }
};

TEST_F(ConfigParserTest, ReadsSectionsAndPairs) {
    EXPECT_EQ(read("a = 1\r\n\n [ two words ]\rb=c d \n[e]"), "[]a=#1;[two words]b=c d;[e]");
    EXPECT_EQ(read(""), "");
    EXPECT_EQ(read("\xEF\xBB\xBF"
                   "key==x"),
              "[]key==x;");
    EXPECT_EQ(read("a="), "[]a=;");
}

TEST_F(ConfigParserTest, GoesOnWithASectionThatIsBegunAgain) {
    EXPECT_EQ(read("[a]\nx=1\n[b]\ny=2\n[a]\nx=3"), "[a]x=#1;x=#3;[b]y=#2;");
}

TEST_F(ConfigParserTest, SkipsComments) {
    EXPECT_EQ(read("# one\n; two\n[a] # three\nx = y # four\nz = a#b;c ;d\nq = \"r\" ; five\nw = #"),
              "[a]x=y;z=a#b;c;q=r;w=;");
}

TEST_F(ConfigParserTest, KeepsBlanksAndKnowsEscapesBetweenQuotes) {
    EXPECT_EQ(read("a = \"  x # \\\"y\\\\ \\n\\t\\r\"\nb=\"12\""), "[]a=  x # \"y\\ \n\t\r;b=12;");
}

TEST_F(ConfigParserTest, MarksNumbers) {
    EXPECT_EQ(read("a=-1.5e3\nb=+2\nc=0x1F\nd=1x\ne=.5\nf=0x\ng=--1\nh=+-1\ni=1 2\nj=007"),
              "[]a=#-1.5e3;b=#+2;c=#0x1F;d=1x;e=.5;f=0x;g=--1;h=+-1;i=1 2;j=007;");
}

TEST_F(ConfigParserTest, ReportsEveryFaultyLineAndKeepsNothing) {
    EXPECT_FALSE(parse("good = 1\nbad\n = 2\n[open\n[]\nx = \"y\nz = \"\\q\"\nv = \"w\" u\ngood = 2\n"));
    EXPECT_EQ(getMessages(),
              (std::vector<std::string>{"2:1 Line without a value: \"bad\"", "3:2 Value without a name: \"= 2\"",
                                        "4:1 Section without a closing bracket: \"[open\"",
                                        "5:1 Section without a name: \"[]\"", "6:5 Text without end: \"\"y\"",
                                        "7:6 Unknown escape: \"\\q\"\"", "8:9 Text behind the value: \"u\""}));
    EXPECT_TRUE(m_parser->getSections().isEmpty());
}

TEST_F(ConfigParserTest, StopsAtTenFaults) {
    std::string text;
    for (int i = 0; i < 20; i++) {
        text += "bad\n";
    }
    EXPECT_FALSE(parse(text));
    EXPECT_EQ(getMessages().size(), 10u);
}

TEST_F(ConfigParserTest, RefusesWhatIsNoUTF8) {
    EXPECT_EQ(read("a = \xff"), "1:5 Bytes that are no UTF-8: \"?\"");
}

TEST_F(ConfigParserTest, LetsGoOfItsSections) {
    ASSERT_TRUE(parse("a=1"));
    ASSERT_TRUE(parse("b=2"));
    EXPECT_EQ(m_parser->getSections().getSize(), 1u);
    m_parser->deinitialize();
    EXPECT_TRUE(m_parser->getSections().isEmpty());
}

} // namespace
} // namespace zyr
