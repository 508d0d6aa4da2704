/// Tells what is wrong with the text of an SVG path before the library reads it, which drops what is incomplete without
/// a word and stands still where a command is missing.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

namespace zyr::host {

/// What is wrong, with its place: "line 1, column 9: ...", then the line and a mark below the place.
class PathError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Throws PathError for a text that Path2D::pushBackSVGPath would not read whole. Gives what is read otherwise than by
/// SVG, with the place of the first one. Needs the core module.
std::vector<std::string> checkPath(const std::string& p_text);

} // namespace zyr::host
