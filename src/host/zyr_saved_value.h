/// Values of saved objects as texts.
#pragma once

#include "host/zyr_saved_tree.h"

#include <string>

namespace zyr::host {

/// "uint32", "text", "object"...
const char* getSavedTypeText(SavedKind p_kind);

/// A text between quotation marks, with JSON's escapes. One that is no UTF-8 is "\bytes:" and its bytes in hexadecimal,
/// as in the text formats.
std::string quoteSavedText(std::string_view p_text);

/// The value of a node without nodes in it as JSON: what is no number stands as a text ("nan"), enumerations as their
/// words. So does an array of a text format that holds nothing but such values.
std::string makeSavedJson(const SavedTree& p_tree, uint32_t p_node);

/// The same for a reader at a terminal: without control characters and, unless p_full, no longer than a line.
std::string makeSavedLine(const SavedTree& p_tree, uint32_t p_node, bool p_full);

} // namespace zyr::host
