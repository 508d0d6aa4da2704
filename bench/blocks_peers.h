/// Other ways to code a screen, for bench_blocks.
#pragma once

#include "support/zyr_screen_painter.h"

#include <memory>
#include <vector>

namespace zyr::bench {

/// The time that all threads of this process have spent on the processor, in milliseconds.
double getProcessTime();

size_t codeAsPng(const zyr_test::ScreenPainter& p_picture, int p_level);
/// The "quite OK" image format, as its public description has it.
size_t codeAsQoi(const zyr_test::ScreenPainter& p_picture);

/// A coder of streams: gives the bytes of each frame.
class StreamPeer {
public:
    virtual ~StreamPeer() = default;
    virtual size_t code(const zyr_test::ScreenPainter& p_picture, const std::vector<zyr_test::Area>& p_changed) = 0;
};

/// VP9 with what libvpx has for screens.
std::unique_ptr<StreamPeer> createVp9(uint32_t p_width, uint32_t p_height);
/// Tight as libvncserver codes the changed areas. Null where it is not installed.
std::unique_ptr<StreamPeer> createTight(uint32_t p_width, uint32_t p_height);

} // namespace zyr::bench
