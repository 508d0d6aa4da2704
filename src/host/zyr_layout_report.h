/// The solved layout as JSON, and its numbers as text.
#pragma once

#include "host/zyr_layout_tree.h"

#include <string>

namespace zyr::host {

/// The shortest text that reads back as the same number of its type; "nan", "inf" and "-inf".
template <typename T> std::string getNumberText(T p_number);

/// One object with a list of all nodes, parents before their children. docs/layout.md tells the keys.
template <typename T> std::string makeLayoutReport(const Layout<T>& p_layout);

} // namespace zyr::host
