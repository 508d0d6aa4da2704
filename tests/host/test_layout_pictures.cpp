// The pictures of docs/layout.md: they are what the program draws, and none of the anchors is missing.
#include "host/zyr_layout_tree.h"

#include "support/zyr_temporary_directory.h"
#include "zyr_program_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <set>
#include <sstream>

namespace zyr {
namespace {

using nlohmann::json;
using testing::HasSubstr;
namespace fs = std::filesystem;

constexpr const char* DOCUMENT = ZYR_DOCUMENTS "/layout.md";
constexpr const char* PICTURES = ZYR_DOCUMENTS "/layout/";

/// The names of the examples, without their extension.
std::vector<std::string> listExamples() {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(PICTURES)) {
        if (entry.path().extension() == ".json") {
            names.push_back(entry.path().stem());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// Adds the texts that stand at a key anywhere in a value.
void collectTexts(const json& p_value, const std::string& p_key, std::set<std::string>& p_texts) {
    if (p_value.is_object() && p_value.contains(p_key) && p_value[p_key].is_string()) {
        p_texts.insert(p_value[p_key].get<std::string>());
    }
    for (const json& member : p_value) {
        if (member.is_structured()) {
            collectTexts(member, p_key, p_texts);
        }
    }
}

TEST(LayoutPictures, AreWhatTheProgramDraws) {
    TemporaryDirectory directory;
    setenv("XDG_STATE_HOME", directory.getPath().c_str(), 1);
    const std::vector<std::string> names = listExamples();
    EXPECT_GE(names.size(), 30u);
    for (const std::string& name : names) {
        SCOPED_TRACE(name + ": scripts/draw-layouts.sh draws all of them");
        const ProgramRun result =
            runProgram(ZYR_HOST_PROGRAM, {"layout", PICTURES + name + ".json", "--keep-going", "--svg", "-"});
        EXPECT_EQ(result.m_exitCode, name.starts_with("refused-") ? 1 : 0) << result.m_err;
        EXPECT_EQ(result.m_err, "");
        // Not compared by EXPECT_EQ, whose comparison of long texts takes longer than all the rest.
        EXPECT_TRUE(result.m_out == TemporaryDirectory::readFile(PICTURES + name + ".svg"));
    }
}

TEST(LayoutPictures, StandInTheDocumentWithTheirFiles) {
    const std::string document = TemporaryDirectory::readFile(DOCUMENT);
    for (const std::string& name : listExamples()) {
        EXPECT_THAT(document, HasSubstr("](layout/" + name + ".svg)"));
        EXPECT_THAT(document, HasSubstr("](layout/" + name + ".json)"));
    }
}

TEST(LayoutPictures, ShowEveryAnchor) {
    std::vector<json> examples;
    for (const std::string& name : listExamples()) {
        examples.push_back(json::parse(TemporaryDirectory::readFile(PICTURES + name + ".json")));
    }
    for (const host::LayoutWords& words : host::LAYOUT_WORDS) {
        for (const auto& [key, entries] : {std::pair(words.m_positionAnchor, words.m_positionTexts),
                                           std::pair(words.m_sizeAnchor, words.m_sizeTexts)}) {
            std::set<std::string> texts;
            for (const json& example : examples) {
                collectTexts(example, key, texts);
            }
            // The first anchor is the default and stands there without its name.
            for (const EnumerationEntry& entry : entries.subspan(1)) {
                EXPECT_EQ(texts.count(entry.m_text), 1u) << key << " " << entry.m_text;
            }
        }
    }
}

TEST(LayoutPictures, NameTheAnchorsThatTheyShow) {
    std::set<std::string> named; // "x PREV_LEFT"
    for (const std::string& name : listExamples()) {
        std::string drawing = TemporaryDirectory::readFile(PICTURES + name + ".svg");
        std::replace_if(
            drawing.begin(), drawing.end(), [](char p_letter) { return std::strchr(",<>", p_letter); }, ' ');
        // "x 20 PREV_LEFT": the key, its number and its anchor.
        std::istringstream words(drawing);
        std::string key;
        std::string number;
        for (std::string anchor; words >> anchor; key = std::move(number), number = std::move(anchor)) {
            if (!number.empty() && number.find_first_not_of("-+.e0123456789%") == std::string::npos) {
                named.insert(key + " " + anchor);
            }
        }
    }
    for (const host::LayoutWords& words : host::LAYOUT_WORDS) {
        for (const auto& [key, entries] :
             {std::pair(words.m_position, words.m_positionTexts), std::pair(words.m_size, words.m_sizeTexts)}) {
            for (const EnumerationEntry& entry : entries) {
                EXPECT_EQ(named.count(std::string(key) + " " + entry.m_text), 1u) << key << " " << entry.m_text;
            }
        }
    }
}

TEST(LayoutPictures, HaveATableWithEveryAnchor) {
    const std::string document = TemporaryDirectory::readFile(DOCUMENT);
    for (const host::LayoutWords& words : host::LAYOUT_WORDS) {
        for (const std::span<const EnumerationEntry> entries : {words.m_positionTexts, words.m_sizeTexts}) {
            for (const EnumerationEntry& entry : entries) {
                if (entry.m_number <= ZYR_POSITION_X_V_SEPARATOR_1 || entry.m_number == ZYR_POSITION_X_V_SEPARATOR_16) {
                    EXPECT_THAT(document, HasSubstr(std::string("`") + entry.m_text + "`"));
                }
            }
        }
    }
}

} // namespace
} // namespace zyr
