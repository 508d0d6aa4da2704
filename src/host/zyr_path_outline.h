/// The outline of a path in absolute coordinates.
#pragma once

#include "zyr_common/geometry/zyr_path2d.h"

#include <string>

namespace zyr::host {

struct PathOutline {
    std::string m_text; ///< the `d` attribute: absolute letters, no H or V
    // What the drawing covers; control points count too.
    double m_left = 0;
    double m_top = 0;
    double m_right = 0;
    double m_bottom = 0;
};

/// Resolves every point against the one before. Throws std::range_error when a point, or the extent of the whole, is no
/// finite number.
PathOutline resolveOutline(const Path2D<double>& p_path);

/// A whole SVG document with the outline and a margin around it.
std::string makeSVG(const PathOutline& p_outline);

} // namespace zyr::host
