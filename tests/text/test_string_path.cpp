#include "support/zyr_print_text.h"
#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/text/zyr_string.h"

#include <gmock/gmock.h>

using namespace zyr;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<std::string> getLevels(const char* p_path) {
    List<String> list;
    String(p_path).getNestedDirectories(list);
    std::vector<std::string> levels;
    for (const String& level : list) {
        levels.push_back(level.getData());
    }
    return levels;
}

} // namespace

TEST(StringLines, StartIsBehindTheBreakBefore) {
    const String text("ab\ncd\r\nef");
    const size_t starts[] = {0, 0, 0, 3, 3, 3, 6, 7, 7, 7};
    for (size_t i = 0; i < std::size(starts); i++) {
        EXPECT_EQ(text.getLineStartInBytes(i), starts[i]) << i;
        EXPECT_EQ(text.getLineStartInCharacters(i), i - starts[i]) << i;
    }
    EXPECT_EQ(text.getLineStartInBytes(100), 7u);
}

TEST(StringLines, StartCountsCharacters) {
    const String text("x\n\xC3\xA4\xE2\x82\xAC"
                      "b");
    EXPECT_EQ(text.getLineStartInBytes(7), 2u);
    EXPECT_EQ(text.getLineStartInCharacters(7), 2u);
}

TEST(StringLines, EndIsTheBreakOrTheEnd) {
    const String text("ab\ncd\r\nef\rg");
    EXPECT_EQ(text.getLineEndInBytes(0), 2u);
    EXPECT_EQ(text.getLineEndInBytes(2), 2u);
    EXPECT_EQ(text.getLineEndInBytes(3), 6u);
    EXPECT_EQ(text.getLineEndInBytes(5), 6u);
    EXPECT_EQ(text.getLineEndInBytes(6), 6u);
    EXPECT_EQ(text.getLineEndInBytes(7), 9u);
    EXPECT_EQ(text.getLineEndInBytes(10), 11u);
    EXPECT_EQ(text.getLineEndInBytes(99), 11u);
    EXPECT_EQ(String("a\r").getLineEndInBytes(0), 1u);
}

TEST(StringCase, ChangesAsciiLettersOnly) {
    String text("aZ\xC3\xA4[1`{@");
    text.convertToUpperCase();
    EXPECT_EQ(text, "AZ\xC3\xA4[1`{@");
    text.convertToLowerCase();
    EXPECT_EQ(text, "az\xC3\xA4[1`{@");
}

TEST(StringCase, EndsAtTheFirstZero) {
    String text("a\0b", 3);
    text.convertToUpperCase();
    EXPECT_EQ(memcmp(text.getData(), "A\0b", 3), 0);
}

TEST(StringPath, DirectoryPathKeepsItsSeparator) {
    EXPECT_EQ(String("a/b/c").getDirectoryPath(), "a/b/");
    EXPECT_EQ(String("a/b/").getDirectoryPath(), "a/b/");
    EXPECT_EQ(String("a\\b").getDirectoryPath(), "a\\");
    EXPECT_EQ(String("/a").getDirectoryPath(), "/");
    EXPECT_EQ(String("a").getDirectoryPath(), "");
    EXPECT_EQ(String("").getDirectoryPath(), "");
}

TEST(StringPath, ABackslashWinsOverASlash) {
    String directory;
    EXPECT_EQ(String("a\\b/c").getDirectoryPath(), "a\\");
    EXPECT_EQ(String("a\\b/c").getFileName(&directory), "b/c");
    EXPECT_EQ(directory, "a\\");
}

TEST(StringPath, FileNameIsBehindTheLastSeparator) {
    String directory("old");
    EXPECT_EQ(String("dir/sub/name.txt").getFileName(&directory), "name.txt");
    EXPECT_EQ(directory, "dir/sub/");
    EXPECT_EQ(String("/name").getFileName(&directory), "name");
    EXPECT_EQ(directory, "/");
    EXPECT_EQ(String("dir/").getFileName(nullptr), "");
}

TEST(StringPath, FileNameWithoutASeparatorLeavesTheDirectory) {
    String directory("old");
    EXPECT_EQ(String("name").getFileName(&directory), "name");
    EXPECT_EQ(directory, "old");
}

TEST(StringPath, FileNameMayPutTheDirectoryIntoTheReceiver) {
    String path("dir/name");
    EXPECT_EQ(path.getFileName(&path), "name");
    EXPECT_EQ(path, "dir/");
}

TEST(StringPath, DirectoryNameIsTheLastOne) {
    String parent("old");
    EXPECT_EQ(String("a/b/c").getDirectoryName(&parent), "b");
    EXPECT_EQ(parent, "a/");
    EXPECT_EQ(String("a/b/c/").getDirectoryName(&parent), "c");
    EXPECT_EQ(parent, "a/b/");
    EXPECT_EQ(String("a/").getDirectoryName(&parent), "a");
    EXPECT_EQ(parent, "");
    EXPECT_EQ(String("/a/").getDirectoryName(&parent), "a");
    EXPECT_EQ(parent, "/");
    EXPECT_EQ(String("a/b/").getDirectoryName(nullptr), "b");
}

TEST(StringPath, DirectoryNameWithoutASeparatorIsEmptyAndClearsTheParent) {
    String parent("old");
    EXPECT_EQ(String("abc").getDirectoryName(&parent), "");
    EXPECT_EQ(parent, "");
}

TEST(StringPath, OnlyALeadingSlashIsAbsolute) {
    EXPECT_TRUE(String("/a").isAbsolutePath());
    EXPECT_FALSE(String("a/").isAbsolutePath());
    EXPECT_FALSE(String("\\a").isAbsolutePath());
    EXPECT_FALSE(String("C:/a").isAbsolutePath());
    EXPECT_FALSE(String("").isAbsolutePath());
}

TEST(StringPath, CoherentSlashes) {
    String text("\\a\\b/c\\");
    text.setCoherentPathSlashes();
    EXPECT_EQ(text, "/a/b/c/");
}

TEST(StringPath, NormalizedPathsEndInASlash) {
    for (const auto& [path, expected] : {std::pair<const char*, const char*>{"a\\b", "a/b/"},
                                         {"a/b/", "a/b/"},
                                         {"a\\", "a/"},
                                         {"", "/"},
                                         {"/", "/"}}) {
        String text(path);
        text.normalizeDirectoryPath();
        EXPECT_EQ(text, expected);
    }
}

TEST(StringPath, NestedDirectoriesFromTheTopDown) {
    EXPECT_THAT(getLevels("a/b/c/"), ElementsAre("a/", "a/b/", "a/b/c/"));
    EXPECT_THAT(getLevels("/a/b/"), ElementsAre("/a/", "/a/b/"));
    EXPECT_THAT(getLevels("a/b"), ElementsAre("a/"));
    EXPECT_THAT(getLevels("abc"), IsEmpty());
    EXPECT_THAT(getLevels(""), IsEmpty());
    EXPECT_THAT(getLevels("/"), IsEmpty());
}

TEST(StringPath, NestedDirectoriesGoInFrontOfTheList) {
    List<String> list;
    list.pushBack("last");
    String("a/b/").getNestedDirectories(list);
    EXPECT_EQ(list.getSize(), 3u);
    EXPECT_EQ(list.front(), "a/");
    EXPECT_EQ(list.back(), "last");
}

TEST(StringPath, RootOfADottedPath) {
    String root;
    String rest("old");
    String::getStringPathRoot("a.b.c", root, rest);
    EXPECT_EQ(root, "a");
    EXPECT_EQ(rest, "b.c");
    String::getStringPathRoot("abc", root, rest);
    EXPECT_EQ(root, "abc");
    EXPECT_EQ(rest, "");
    String::getStringPathRoot("a.", root, rest);
    EXPECT_EQ(root, "a");
    EXPECT_EQ(rest, "");
    String::getStringPathRoot(".a", root, rest);
    EXPECT_EQ(root, "");
    EXPECT_EQ(rest, "a");
}

TEST(StringPath, PathMayBeOneOfTheOutputs) {
    String root;
    String path("a.b.c");
    String::getStringPathRoot(path, root, path);
    EXPECT_EQ(root, "a");
    EXPECT_EQ(path, "b.c");
    String rest;
    String::getStringPathRoot(path, path, rest);
    EXPECT_EQ(path, "b");
    EXPECT_EQ(rest, "c");
    String::getStringPathRoot(path, root, path);
    EXPECT_EQ(root, "b");
    EXPECT_EQ(path, "");
}
