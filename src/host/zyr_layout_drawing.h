/// Draws a solved layout as SVG: parents, rectangles with their names, separators, borders, contents, and a mark for
/// each number that shows from where to where it counts. Below stand the numbers themselves. The same scene always
/// gives the same text.
#pragma once

#include "host/zyr_layout_scene.h"

#include <string>

namespace zyr::host {

/// The longest side of a drawing in pixels.
inline constexpr double MAX_DRAWING_SIZE = 20000;

/// A whole SVG document with p_scale pixels for each unit. Empty when a side would be longer than MAX_DRAWING_SIZE.
std::string drawScene(const Scene& p_scene, double p_scale);

} // namespace zyr::host
