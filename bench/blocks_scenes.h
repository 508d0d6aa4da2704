/// The frames on which codecs for screens are compared.
#pragma once

#include "support/zyr_screen_painter.h"

#include <string>
#include <vector>

namespace zyr::bench {

struct Scene {
    std::string m_name;
    std::vector<zyr_test::ScreenPainter> m_frames; ///< all of one size
};

/// Typing, a moving window, scrolling text, all redrawn: of 1280x720.
std::vector<Scene> paintScreenScenes(uint32_t p_numOfFrames);
/// One photograph.
Scene paintPhotograph();
/// Frames of a video file.
Scene readClip(const std::string& p_path, uint32_t p_numOfFrames);

} // namespace zyr::bench
