/// A file with a saved object, opened for being looked at.
#pragma once

#include "host/zyr_framework.h"
#include "host/zyr_saved_tree.h"

#include <memory>
#include <string>
#include <vector>

namespace zyr::host {

struct ObjectView {
    std::string m_path;
    std::string m_format;
    /// The tree's values lie in these bytes.
    std::unique_ptr<const std::string> m_bytes;
    SavedTree m_tree;
    /// What is wrong with the bytes.
    std::vector<std::string> m_problems;
    /// The object, once it was loaded; the fields that its classes do not have.
    Ref<IObject> m_object;
    std::vector<std::string> m_strangers;

    /// The object's node, or the null node.
    uint32_t getObjectNode() const { return m_tree.findChild(0, "fileObject"); }
};

/// Reads a file of that format, or of the one that is found. A file that is damaged has problems. Throws RunError that
/// names the reason for one that cannot be read at all.
ObjectView openObjectView(const std::string& p_path, const std::string& p_format);

/// Loads the object and gives the tree what its classes know. False, with the reasons, where it cannot be loaded; the
/// tree stays as it is then.
bool loadObjectView(Framework& p_framework, ObjectView& p_view, std::vector<std::string>& p_reasons);

/// The same where nothing speaks against it: for a file whose deferred files are no plain ones, nothing is loaded.
void loadPlainObjectView(Framework& p_framework, ObjectView& p_view);

/// The node of a path as the commands show it: from the object on, or else from the file's outermost fields. The empty
/// path is the object's. The null node for a path that leads nowhere.
uint32_t findSavedNode(const SavedTree& p_tree, const std::string& p_path);

} // namespace zyr::host
