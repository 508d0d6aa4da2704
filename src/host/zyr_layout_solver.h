/// Solves a layout with the framework's solvers.
///
/// A node is solved inside its parent's rectangle as that was solved, so all results are in the parent's coordinates.
/// Among siblings, one whose anchors name the next one waits for it. A rectangle whose anchors ask for its content, and
/// that names none, is solved three times around its children: first with a content of no size, then its children in
/// what comes out, then with the size that they cover; at last its children are solved again.
#pragma once

#include "host/zyr_layout_tree.h"

#include <stdexcept>

namespace zyr::host {

/// Why a node has no solution, its place in the file first: "/root/children/0/xAnchor: ...".
class LayoutError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Writes the solved part of every node. A node that can't be solved throws LayoutError; with p_keepGoing it gets its
/// reason as m_failure, as do those that need it, and the result is false. More solves than LAYOUT_MAX_SOLVES throw in
/// both cases.
template <typename T> bool solveLayout(Layout<T>& p_layout, bool p_keepGoing);
inline constexpr size_t LAYOUT_MAX_SOLVES = 1000000;

/// Finds the marks of every solved node: what each of its numbers adds to what its anchor gives for 0, before border,
/// limits and wraps.
template <typename T> void findLayoutMarks(Layout<T>& p_layout);

} // namespace zyr::host
