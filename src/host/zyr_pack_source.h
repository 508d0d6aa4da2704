/// The files of a directory that become a pack.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zyr::host {

struct SourceFile {
    std::string m_name;
    std::string m_path; ///< To be opened.
    uint64_t m_size;
};

/// One directory: its path below the first one, which is "." itself, and its files in the order of their names.
struct SourceFolder {
    std::string m_path;
    std::vector<SourceFile> m_files;
};

/// Lists the directory and those below, each before what it holds. What is neither file nor directory, and p_except,
/// which may not exist, is passed over; of the former, p_passed has the paths. Throws RunError for a directory that
/// cannot be read, for names with control characters or bytes that are no UTF-8, and for files of 4 GB and more.
std::vector<SourceFolder> collectSources(const std::string& p_directory, const std::string& p_except,
                                         std::vector<std::string>& p_passed);

} // namespace zyr::host
