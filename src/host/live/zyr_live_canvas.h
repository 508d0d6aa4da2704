/// What a viewer has of a live screen.
#pragma once

#include "host/live/zyr_live_messages.h"
#include "host/zyr_framework.h"

#include <vector>

namespace zyr::host {

/// Pixels R,G,B,A, which belong to someone else.
struct CanvasView {
    const uint8_t* m_pixels = nullptr;
    uint32_t m_pitch = 0;
    uint32_t m_width = 0;
    uint32_t m_height = 0;
};

/// The picture of the blocks, and over it that of the region that goes by VP9, until blocks come that are exact. One
/// thread.
class LiveCanvas {
public:
    /// A packet was decoded. What lies outside of the stream's picture is left out.
    void take(const LiveFrameHead& p_head, Ref<IUnpackedFrameData> p_picture);

    /// The whole, until the next call of any operation. Null pixels before the first picture.
    CanvasView compose(const LiveStream& p_stream);

private:
    Ref<IUnpackedFrameData> m_blocks;
    Ref<IUnpackedFrameData> m_video; ///< Null when blocks show all.
    LiveFrameHead m_place;           ///< Of the video.
    std::vector<uint8_t> m_pixels;
};

} // namespace zyr::host
