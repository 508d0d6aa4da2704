/// A directory of its own for one test, removed with everything in it at the end.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace zyr {

class TemporaryDirectory {
public:
    TemporaryDirectory() {
        std::string pattern = (std::filesystem::temp_directory_path() / "zyr-test-XXXXXX").string();
        m_path = mkdtemp(pattern.data());
    }
    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    /// The path with a final "/".
    std::string getPath() const { return m_path + "/"; }

    /// Makes a file and gives its path.
    std::string writeFile(const std::string& p_name, const std::string& p_text) const {
        std::ofstream(getPath() + p_name, std::ios::binary) << p_text;
        return getPath() + p_name;
    }

    static std::string readFile(const std::string& p_path) {
        std::ifstream file(p_path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }

private:
    std::string m_path;
};

} // namespace zyr
