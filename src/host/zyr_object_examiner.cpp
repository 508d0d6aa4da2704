#include "host/zyr_object_examiner.h"

#include "host/zyr_object_file.h"
#include "host/zyr_run_error.h"

#include "zyr_common/formats/zyr_stored_objects.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/platform/zyr_base_path.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sys/stat.h>

namespace zyr::host {

namespace {

/// What loading allows as well.
constexpr size_t MAX_CHAIN = 64;
constexpr size_t MAX_PROBLEMS = 1000;

void add(std::vector<ObjectProblem>& p_problems, ObjectProblem::Kind p_kind, const std::string& p_file,
         const std::string& p_node, const std::string& p_text) {
    if (p_problems.size() < MAX_PROBLEMS) {
        p_problems.push_back({p_kind, p_file, p_node.empty() ? p_text : p_node + ": " + p_text});
    }
}

std::string textOf(const SavedTree& p_tree, uint32_t p_parent, const char* p_name) {
    const uint32_t node = p_tree.isGroup(p_parent) ? p_tree.findChild(p_parent, p_name) : c_noSavedNode;
    return node != c_noSavedNode && p_tree.getKind(node) == SavedKind::TEXT ? std::string(p_tree.getBytes(node)) : "";
}

bool leadsOut(const std::string& p_path) {
    const std::string path = "/" + p_path + "/";
    return path.find("/../") != std::string::npos || path.find("\\..") != std::string::npos ||
           path.find("..\\") != std::string::npos;
}

} // namespace

void ObjectExaminer::examine(const std::string& p_path, const std::string& p_format,
                             std::vector<ObjectProblem>& p_problems) {
    std::vector<Deferred> deferred;
    try {
        // The tree is gone before those of deferred files are made.
        examineFile(openObjectView(p_path, p_format), deferred, p_problems);
    } catch (const RunError& error) {
        add(p_problems, ObjectProblem::DAMAGE, p_path, "", error.what());
    }
    followAll(p_path, deferred, p_problems);
}

void ObjectExaminer::examine(const ObjectView& p_view, std::vector<ObjectProblem>& p_problems) {
    std::vector<Deferred> deferred;
    examineFile(p_view, deferred, p_problems);
    followAll(p_view.m_path, deferred, p_problems);
}

void ObjectExaminer::examineFile(const ObjectView& p_view, std::vector<Deferred>& p_deferred,
                                 std::vector<ObjectProblem>& p_problems) {
    for (const std::string& problem : p_view.m_problems) {
        add(p_problems, ObjectProblem::DAMAGE, p_view.m_path, "", problem);
    }
    examineHeader(p_view, p_problems);
    examineNodes(p_view, p_deferred, p_problems);
}

void ObjectExaminer::followAll(const std::string& p_path, const std::vector<Deferred>& p_deferred,
                               std::vector<ObjectProblem>& p_problems) {
    struct stat status {};
    stat(p_path.c_str(), &status);
    const FileNumber number(status.st_dev, status.st_ino);
    m_examined.insert(number);
    m_chain.emplace_back(number, p_path);
    for (const Deferred& file : p_deferred) {
        follow(p_path, file, p_problems);
    }
    m_chain.pop_back();
}

void ObjectExaminer::examineHeader(const ObjectView& p_view, std::vector<ObjectProblem>& p_problems) const {
    const SavedTree& tree = p_view.m_tree;
    const auto tell = [&](const std::string& p_text) {
        add(p_problems, ObjectProblem::DAMAGE, p_view.m_path, "", p_text);
    };
    const std::string extension = getExtensionOf(p_view.m_path);
    if (isObjectFormat(extension) && extension != p_view.m_format) {
        tell("its extension is that of " + extension + ", and it is " + p_view.m_format);
    }
    if (tree.getSize() == 1) {
        return; // What is wrong was told.
    }
    const uint32_t header = tree.findChild(0, "fileHeader");
    const uint32_t object = tree.findChild(0, "fileObject");
    if (p_view.m_format == "xml" && tree.findChild(0, "xml") == c_noSavedNode) {
        tell("the XML declaration is missing");
    }
    if (header == c_noSavedNode || !tree.isGroup(header)) {
        tell("the header \"fileHeader\" is missing");
    } else if (textOf(tree, header, "format") != p_view.m_format) {
        tell("the header tells of the format '" + textOf(tree, header, "format") + "', and it is " + p_view.m_format);
    }
    if (object == c_noSavedNode || tree.getKind(object) != SavedKind::OBJECT) {
        tell("the object \"fileObject\" is missing");
    }
}

void ObjectExaminer::examineNodes(const ObjectView& p_view, std::vector<Deferred>& p_deferred,
                                  std::vector<ObjectProblem>& p_problems) {
    static const std::string& deferredGUID = *new std::string(toText(zyr_getInterfaceGUID<IDeferredFileObject>()));
    const SavedTree& tree = p_view.m_tree;
    struct Level {
        uint32_t m_end;
        uint64_t m_index; ///< Of the next element of an array; UINT64_MAX for groups with names.
        std::set<const std::string*> m_names;
    };
    SavedPath path;
    std::vector<Level> levels(1, Level{tree.getNext(0), UINT64_MAX, {}});
    std::set<std::pair<std::string, std::string>> told;
    for (uint32_t node = 1; node < tree.getSize(); node++) {
        while (levels.size() > 1 && node >= levels.back().m_end) {
            levels.pop_back();
            path.pop();
        }
        Level& level = levels.back();
        path.push(tree, node, level.m_index != UINT64_MAX ? level.m_index++ : UINT64_MAX);
        // Names are interned, so each has one address.
        if (level.m_index == UINT64_MAX && !level.m_names.insert(&tree.getName(node)).second) {
            add(p_problems, ObjectProblem::DAMAGE, p_view.m_path, path.getText(), "it stands there twice");
        }
        if (tree.getKind(node) == SavedKind::OBJECT) {
            const std::string& name = tree.getClass(node);
            const std::string& guid = tree.getGUID(node);
            if (guid == deferredGUID) {
                p_deferred.push_back({path.getText(), textOf(tree, node, "filePath")});
            }
            if (!isKnown(name, guid) && told.emplace(name, guid).second) {
                add(p_problems, ObjectProblem::UNKNOWN, p_view.m_path, path.getText(),
                    "the class '" + name + "' (" + guid + ") is not known here");
            }
        }
        if (tree.isGroup(node)) {
            levels.push_back(Level{tree.getNext(node), tree.isArray(node) ? 0 : UINT64_MAX, {}});
        } else {
            path.pop();
        }
    }
}

bool ObjectExaminer::isKnown(const std::string& p_name, const std::string& p_guid) {
    const auto [place, isNew] = m_classes.emplace(std::make_pair(p_name, p_guid), false);
    if (!isNew) {
        return place->second;
    }
    HostApplicationData& data = m_framework.getApplicationData();
    const ScopedReadLock lock(data.m_objectAllocatorLock);
    const String name(p_name);
    const Pair<GUID_t, String> key(GUID_t_fromString(p_guid.c_str()), name.parseBracketsString('{', '}', nullptr));
    place->second =
        (!p_guid.empty() && data.m_objectAllocatorsByGUID.find(key) != data.m_objectAllocatorsByGUID.end()) ||
        data.m_objectAllocatorsByName.find(name) != data.m_objectAllocatorsByName.end();
    return place->second;
}

void ObjectExaminer::follow(const std::string& p_path, const Deferred& p_deferred,
                            std::vector<ObjectProblem>& p_problems) {
    const auto tell = [&](ObjectProblem::Kind p_kind, const std::string& p_text) {
        add(p_problems, p_kind, p_path, p_deferred.m_node, "the deferred file '" + p_deferred.m_name + "' " + p_text);
    };
    if (p_deferred.m_name.empty()) {
        tell(ObjectProblem::DEFERRED, "has no path");
        return;
    }
    if (p_deferred.m_name[0] == '/' || p_deferred.m_name[0] == '\\') {
        tell(ObjectProblem::PLACE, "has an absolute path");
    }
    if (leadsOut(p_deferred.m_name)) {
        tell(ObjectProblem::PLACE, "leads out of its directory with \"..\"");
    }
    const std::string resolved = toText(zyr_resolvePath(String(p_deferred.m_name), String(getDirectoryOf(p_path))));
    const std::string path = resolved.compare(0, 2, "./") == 0 ? resolved.substr(2) : resolved;
    struct stat status {};
    if (p_deferred.m_name.find('\0') != std::string::npos || stat(path.c_str(), &status) != 0) {
        tell(ObjectProblem::DEFERRED,
             errno == ENOENT ? "is missing" : std::string("cannot be read: ") + strerror(errno));
        return;
    }
    if (!S_ISREG(status.st_mode)) {
        tell(ObjectProblem::DEFERRED, "is no regular file");
        return;
    }
    const FileNumber number(status.st_dev, status.st_ino);
    const auto first = std::find_if(m_chain.begin(), m_chain.end(), [&](const auto& p) { return p.first == number; });
    if (first != m_chain.end()) {
        std::string files;
        for (auto it = first; it != m_chain.end(); ++it) {
            files += it->second + " > ";
        }
        tell(ObjectProblem::DEFERRED, "contains itself: " + files + first->second);
    } else if (m_chain.size() >= MAX_CHAIN) {
        tell(ObjectProblem::DEFERRED, "stands too deep in others");
    } else if (m_examined.insert(number).second) {
        examine(path, "", p_problems);
    }
}

} // namespace zyr::host
