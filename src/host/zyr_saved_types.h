/// Gives the tree of a file what only the classes of its objects know: the types of fields in text formats, the words
/// of enumerations in binary ones, and which fields the classes do not have.
#pragma once

#include "host/zyr_saved_tree.h"

#include <string>
#include <vector>

namespace zyr::host {

/// The two other trees are of the same object as its classes save it: in a binary format, which has the types, and in a
/// text format, which has the words. p_strangers gets the paths of the fields that stand in p_tree alone.
void addSavedTypes(SavedTree& p_tree, const SavedTree& p_typed, const SavedTree& p_worded,
                   std::vector<std::string>& p_strangers);

} // namespace zyr::host
