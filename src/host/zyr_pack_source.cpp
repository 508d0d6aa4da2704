#include "host/zyr_pack_source.h"

#include "host/zyr_pack_contents.h"
#include "host/zyr_run_error.h"
#include "host/zyr_standard_output.h"

#include <algorithm>
#include <filesystem>

namespace zyr::host {

namespace {

namespace fs = std::filesystem;

class Collector {
public:
    Collector(const std::string& p_except, std::vector<std::string>& p_passed)
        : m_passed(p_passed), m_except(p_except) {}

    void collect(const fs::path& p_directory, const std::string& p_path) {
        SourceFolder folder{p_path, {}};
        std::vector<fs::path> below;
        for (const fs::directory_entry& entry : list(p_directory)) {
            const std::string name = getName(entry);
            if (entry.is_symlink() || !(entry.is_directory() || entry.is_regular_file())) {
                m_passed.push_back(entry.path().string());
            } else if (entry.is_directory()) {
                below.push_back(entry.path());
            } else if (!isExcepted(entry.path())) {
                folder.m_files.push_back({name, entry.path().string(), getSize(entry)});
            }
        }
        m_folders.push_back(folder);
        for (const fs::path& path : below) {
            collect(path, makePackPath(p_path, path.filename().string()));
        }
    }

    std::vector<SourceFolder> m_folders;

private:
    static std::vector<fs::directory_entry> list(const fs::path& p_directory) {
        std::error_code error;
        std::vector<fs::directory_entry> entries(fs::directory_iterator(p_directory, error), fs::directory_iterator());
        if (error) {
            throw RunError(maskControls(p_directory.string()) + ": it cannot be read: " + error.message());
        }
        std::sort(entries.begin(), entries.end());
        return entries;
    }

    static std::string getName(const fs::directory_entry& p_entry) {
        const std::string name = p_entry.path().filename().string();
        const std::string masked = maskControls(name);
        if (masked != name) {
            throw RunError(maskControls(p_entry.path().string()) +
                           ": its name has control characters, or bytes that are no UTF-8");
        }
        return name;
    }

    static uint64_t getSize(const fs::directory_entry& p_entry) {
        const uint64_t size = p_entry.file_size();
        if (size > UINT32_MAX) {
            throw RunError(p_entry.path().string() + ": it has 4 GB or more");
        }
        return size;
    }

    bool isExcepted(const fs::path& p_path) const {
        std::error_code error;
        return fs::equivalent(p_path, m_except, error);
    }

    std::vector<std::string>& m_passed;
    const fs::path m_except;
};

} // namespace

std::vector<SourceFolder> collectSources(const std::string& p_directory, const std::string& p_except,
                                         std::vector<std::string>& p_passed) {
    Collector collector(p_except, p_passed);
    try {
        collector.collect(p_directory, ".");
    } catch (const fs::filesystem_error& error) {
        throw RunError(maskControls(error.path1().string()) + ": it cannot be read: " + error.code().message());
    }
    return collector.m_folders;
}

} // namespace zyr::host
