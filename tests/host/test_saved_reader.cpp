// Trees of damaged files: whatever the bytes are, they are read or told about, within bounds.
#include "host/zyr_object_view.h"
#include "host/zyr_saved_reader.h"
#include "host/zyr_saved_value.h"
#include "support/zyr_ignore_leaks.h"
#include "support/zyr_logged_application.h"
#include "zyr_common/digest/zyr_xxhash.h"
#include "zyr_object_files.h"

#include <cstring>
#include <random>

namespace zyr {
namespace {

using host::SavedReading;
using host::SavedTree;

class SavedReader : public ObjectFiles, public testing::WithParamInterface<const char*> {
protected:
    void SetUp() override {
        ObjectFiles::SetUp();
        const IgnoreLeaks ignoreLeaks; // Texts that are never destroyed.
        ASSERT_TRUE(m_application.getData()->commonInitialize());
    }

    std::string makeFile() const {
        const std::string name = std::string("b.") + GetParam();
        writeList("a.json");
        EXPECT_EQ(run({"convert", getPath("a.json"), getPath(name)}).m_exitCode, 0);
        return read(name);
    }
    /// Gives the wrapper the hash and size of what is behind it.
    static void mend(std::string& p_bytes) {
        const std::string format = GetParam();
        if ((format == "raw" || format == "zbf") && p_bytes.size() > 32) {
            const uint64_t size = p_bytes.size() - 32;
            const uint64_t seed = format == "raw" ? 0x9375e58bc0c5ba10 : 0xf3e031aa0b4b71ac;
            const uint64_t hash = zyr_xxHash64(p_bytes.data() + 32, size, seed);
            memcpy(p_bytes.data() + 16, &hash, sizeof(hash));
            memcpy(p_bytes.data() + 24, &size, sizeof(size));
        }
    }
    /// Reads all of the tree, too. Gives the number of problems.
    static size_t readAll(const std::string& p_bytes) {
        SavedTree tree;
        std::vector<std::string> problems;
        SavedReading::read(p_bytes, GetParam(), tree, problems);
        for (uint32_t node = 0; node < tree.getSize(); node++) {
            EXPECT_GT(tree.getNext(node), node);
            EXPECT_LE(tree.getNext(node), tree.getSize());
            if (!tree.isGroup(node)) {
                host::makeSavedJson(tree, node);
                host::makeSavedLine(tree, node, false);
            }
        }
        return problems.size();
    }

    LoggedApplication m_application;
};

TEST_P(SavedReader, SeesEveryCut) {
    const std::string file = makeFile();
    ASSERT_EQ(readAll(file), 0U);
    const size_t last = file.back() == '\n' ? file.size() - 1 : file.size();
    for (size_t size = 0; size < last; size++) {
        EXPECT_GT(readAll(file.substr(0, size)), 0U) << size;
        std::string mended = file.substr(0, size);
        mend(mended);
        readAll(mended);
    }
}

TEST_P(SavedReader, SurvivesChanges) {
    const std::string file = makeFile();
    std::mt19937 random(1);
    for (int i = 0; i < 3000; i++) {
        std::string changed = file;
        for (uint32_t changes = 1 + random() % 4; changes > 0; changes--) {
            changed[random() % changed.size()] = static_cast<char>(random());
        }
        mend(changed);
        readAll(changed);
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, SavedReader, testing::Values("raw", "zbf", "xml", "json"));

TEST(SavedReading, LimitsDepth) {
    std::string text;
    for (int i = 0; i < 3000; i++) {
        text += "{\"a\":";
    }
    SavedTree tree;
    std::vector<std::string> problems;
    SavedReading::read(text, "json", tree, problems);
    ASSERT_EQ(problems.size(), 1U);
    EXPECT_NE(problems[0].find("it is nested too deeply"), std::string::npos) << problems[0];
}

/// A record inside a record, as deep as the reader goes.
TEST(SavedReading, LimitsTheDepthOfBinaryFiles) {
    std::string payload;
    for (int i = 0; i < 1100; i++) {
        std::string length;
        for (size_t size = payload.size(); length.empty() || size > 0; size >>= 7) {
            length += static_cast<char>((size & 0x7F) | (size > 0x7F ? 0x80 : 0));
        }
        payload = std::string("\x0b\x01r") + length + payload;
    }
    payload = '\x01' + payload;
    std::string file = std::string("\x98\x88\x0c\xe6\x8e\x7d\x4d\x88\x89\xa8\x8a\x97\x99\x7c\x03\xb1", 16);
    const uint64_t hash = zyr_xxHash64(payload.data(), payload.size(), 0x9375e58bc0c5ba10);
    const uint64_t size = payload.size();
    file.append(reinterpret_cast<const char*>(&hash), 8).append(reinterpret_cast<const char*>(&size), 8);
    file += payload;
    SavedTree tree;
    std::vector<std::string> problems;
    SavedReading::read(file, "raw", tree, problems);
    ASSERT_EQ(problems.size(), 1U);
    EXPECT_NE(problems[0].find("r.r: it is nested too deeply"), std::string::npos);
    EXPECT_EQ(tree.getSize(), 1U + 1024U);
}

TEST(SavedReading, RefusesBombs) {
    const std::string file =
        "{\"fileObject\": {\"_class\": \"CompressedObject\", \"_guid\": \"83582bd1-560c-4772-b68e-12b81a8d53cf\", "
        "\"compressionInfo\": {\"formatName\": \"zip\", \"decompressSize\": 4294967296}, \"compressedData\": [4, 1]}}";
    SavedTree tree;
    std::vector<std::string> problems;
    SavedReading::read(file, "json", tree, problems);
    EXPECT_EQ(problems, std::vector<std::string>{"fileObject: its bytes cannot unpack to 4294967296"});
}

TEST(SavedPaths, LeadToTheNodesThatTheyName) {
    const std::string file = "{\"fileObject\": {\"_class\": \"A\", \"a.b\": {\"\": [{\"x\": 1}, {\"x\": 2}]}}}";
    SavedTree tree;
    std::vector<std::string> problems;
    SavedReading::read(file, "json", tree, problems);
    host::SavedPath path;
    uint32_t node = host::findSavedNode(tree, "");
    for (const uint64_t index : {UINT64_MAX, UINT64_MAX, uint64_t(0), UINT64_MAX}) {
        path.push(tree, ++node, index);
    }
    EXPECT_EQ(path.getText(), "\"a.b\".\"\"[0].x");
    EXPECT_EQ(host::findSavedNode(tree, path.getText()), node);
    EXPECT_EQ(host::makeSavedJson(tree, host::findSavedNode(tree, "\"a.b\".\"\"[1].x")), "2");
}

} // namespace
} // namespace zyr
