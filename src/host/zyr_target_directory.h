/// A directory below which files are written, and never beside it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zyr::host {

/// Places below the directory are given by their words: directories, and the file's name at the end. Links on the way
/// are not followed. What fails throws RunError that names the place.
class TargetDirectory {
public:
    /// The directory must be there.
    explicit TargetDirectory(std::string p_path);
    ~TargetDirectory();
    TargetDirectory(const TargetDirectory&) = delete;
    TargetDirectory& operator=(const TargetDirectory&) = delete;

    /// Takes a path apart. Throws RunError for one that could lead out of the directory, or nowhere.
    static std::vector<std::string> splitPath(const std::string& p_path);

    /// Whether something stands at the place, whatever it is.
    bool has(const std::vector<std::string>& p_place) const;

    /// Writes a file, with the directories on the way. It is written beside its place and moved there when it is whole;
    /// what is there already stays unless p_replace is set. A directory is never replaced.
    void write(const std::vector<std::string>& p_place, const void* p_data, size_t p_size, bool p_replace) const;

private:
    std::string m_path;
    int m_descriptor;
};

} // namespace zyr::host
