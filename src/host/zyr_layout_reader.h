/// Makes a layout from the JSON that describes it. docs/layout.md tells the keys.
#pragma once

#include "host/zyr_layout_tree.h"
#include "host/zyr_strict_json.h"

namespace zyr::host {

/// The word of the layout's number type: "int32", "int64", "float" (when the file names none) or "double". Throws
/// JsonError for another one.
std::string readLayoutType(const nlohmann::json& p_file);

/// Reads a file whose number type is T: int32_t, int64_t, float or double. Throws JsonError.
template <typename T> Layout<T> readLayout(const nlohmann::json& p_file);

} // namespace zyr::host
