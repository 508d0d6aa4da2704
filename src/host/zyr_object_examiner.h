/// Looks for whatever is wrong with files that hold saved objects.
#pragma once

#include "host/zyr_object_view.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace zyr::host {

struct ObjectProblem {
    enum Kind {
        DAMAGE,   ///< It will not load, or not as it was saved.
        UNKNOWN,  ///< A class that is not known here.
        PLACE,    ///< A deferred file that lies where the file may lead anybody: an absolute path, or "..".
        DEFERRED, ///< A deferred file that is missing, no plain file, or one that contains itself.
    };
    Kind m_kind;
    std::string m_file;
    std::string m_text;
};

/// Deferred files are examined once, however often they are named.
class ObjectExaminer {
public:
    explicit ObjectExaminer(Framework& p_framework) : m_framework(p_framework) {}

    /// The file and all deferred files that it leads to. Nothing is loaded.
    void examine(const std::string& p_path, const std::string& p_format, std::vector<ObjectProblem>& p_problems);
    /// The same for one that is open.
    void examine(const ObjectView& p_view, std::vector<ObjectProblem>& p_problems);

private:
    using FileNumber = std::pair<uint64_t, uint64_t>;
    struct Deferred {
        std::string m_node; ///< Path of the node that names it.
        std::string m_name; ///< As it is named.
    };

    void examineFile(const ObjectView& p_view, std::vector<Deferred>& p_deferred,
                     std::vector<ObjectProblem>& p_problems);
    void followAll(const std::string& p_path, const std::vector<Deferred>& p_deferred,
                   std::vector<ObjectProblem>& p_problems);
    void examineHeader(const ObjectView& p_view, std::vector<ObjectProblem>& p_problems) const;
    void examineNodes(const ObjectView& p_view, std::vector<Deferred>& p_deferred,
                      std::vector<ObjectProblem>& p_problems);
    void follow(const std::string& p_path, const Deferred& p_deferred, std::vector<ObjectProblem>& p_problems);
    bool isKnown(const std::string& p_name, const std::string& p_guid);

    Framework& m_framework;
    std::map<std::pair<std::string, std::string>, bool> m_classes;
    std::set<FileNumber> m_examined;
    std::vector<std::pair<FileNumber, std::string>> m_chain; ///< From the outermost file to the one at hand.
};

} // namespace zyr::host
