/// Runs of the layout command for tests: layouts as JSON or as text, in a directory of their own.
#pragma once

#include "support/zyr_temporary_directory.h"
#include "zyr_program_run.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>

namespace zyr {

using nlohmann::json;

class LayoutRuns : public testing::Test {
protected:
    void SetUp() override { setenv("XDG_STATE_HOME", (m_directory.getPath() + "state").c_str(), 1); }

    ProgramRun runText(const std::string& p_text, const std::vector<std::string>& p_options = {}) const {
        std::vector<std::string> arguments = {"layout", m_directory.writeFile("layout.json", p_text)};
        arguments.insert(arguments.end(), p_options.begin(), p_options.end());
        return runProgram(ZYR_HOST_PROGRAM, arguments);
    }

    ProgramRun run(const json& p_layout, const std::vector<std::string>& p_options = {}) const {
        return runText(p_layout.dump(), p_options);
    }

    /// The nodes of a run that must succeed, the root first.
    json nodesOf(const json& p_layout) const {
        const ProgramRun result = run(p_layout);
        EXPECT_EQ(result.m_exitCode, 0) << result.m_err;
        EXPECT_EQ(result.m_err, "");
        return json::parse(result.m_out, nullptr, false)["nodes"];
    }

    /// The solved children of a root of 400 by 300 that has more members: lists of x, y, width and height, without
    /// those of grandchildren.
    std::vector<json> solve(const json& p_children, const json& p_root = {},
                            const std::string& p_type = "int32") const {
        json root = {{"width", 400}, {"height", 300}, {"children", p_children}};
        root.update(p_root.is_null() ? json::object() : p_root);
        std::vector<json> places;
        for (const json& node : nodesOf({{"type", p_type}, {"root", root}})) {
            const std::string path = node["path"];
            if (std::count(path.begin(), path.end(), '/') == 1) {
                const json& solved = node["solved"];
                places.push_back({solved["x"], solved["y"], solved["width"], solved["height"]});
            }
        }
        return places;
    }

    json solveOne(const json& p_child, const json& p_root = {}, const std::string& p_type = "int32") const {
        return solve(json::array({p_child}), p_root, p_type).at(0);
    }

    /// The text must be refused with exit code 1, one message and no output.
    void expectRefused(const std::string& p_text, const std::string& p_message) const {
        SCOPED_TRACE(p_text);
        const ProgramRun result = runText(p_text);
        EXPECT_EQ(result.m_exitCode, 1);
        EXPECT_EQ(result.m_out, "");
        EXPECT_EQ(result.m_err, "zyr-host: " + m_directory.getPath() + "layout.json: " + p_message + "\n");
    }

    void expectChildRefused(const json& p_child, const std::string& p_message) const {
        expectRefused(json{{"root", {{"width", 400}, {"height", 300}, {"children", json::array({p_child})}}}}.dump(),
                      p_message);
    }

    TemporaryDirectory m_directory;
};

} // namespace zyr
