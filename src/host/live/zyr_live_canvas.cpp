#include "host/live/zyr_live_canvas.h"

#include <algorithm>
#include <cstring>

namespace zyr::host {

namespace {

CanvasView viewOf(const Ref<IUnpackedFrameData>& p_picture) {
    const IImage* const image = p_picture ? p_picture->getSystemMemory(0, 1) : nullptr;
    return image == nullptr ? CanvasView()
                            : CanvasView{static_cast<const uint8_t*>(image->getData()), uint32_t(image->getPitch()),
                                         image->getWidth(), image->getHeight()};
}

void copyInto(const CanvasView& p_from, uint8_t* p_pixels, uint32_t p_width, uint32_t p_height, uint32_t p_x,
              uint32_t p_y) {
    if (p_x >= p_width || p_y >= p_height) {
        return;
    }
    const uint32_t width = std::min(p_from.m_width, p_width - p_x);
    const uint32_t height = std::min(p_from.m_height, p_height - p_y);
    for (uint32_t y = 0; y < height; y++) {
        memcpy(p_pixels + (size_t{p_y + y} * p_width + p_x) * 4, p_from.m_pixels + size_t{y} * p_from.m_pitch,
               size_t{width} * 4);
    }
}

} // namespace

void LiveCanvas::take(const LiveFrameHead& p_head, Ref<IUnpackedFrameData> p_picture) {
    if (p_head.m_codec == LiveCodec::VP9) {
        m_place = p_head;
        m_video = std::move(p_picture);
        return;
    }
    m_blocks = std::move(p_picture);
    if ((p_head.m_flags & LiveFrameHead::EXACT) != 0) {
        m_video.clear();
    }
}

CanvasView LiveCanvas::compose(const LiveStream& p_stream) {
    const uint32_t width = p_stream.m_codedWidth;
    const uint32_t height = p_stream.m_codedHeight;
    const CanvasView blocks = viewOf(m_blocks);
    const CanvasView video = viewOf(m_video);
    const CanvasView& only = video.m_pixels == nullptr ? blocks : video;
    if (video.m_pixels == nullptr || (video.m_width == width && video.m_height == height)) {
        return only;
    }
    m_pixels.resize(size_t{width} * height * 4);
    if (blocks.m_pixels != nullptr) {
        copyInto(blocks, m_pixels.data(), width, height, 0, 0);
    }
    copyInto(video, m_pixels.data(), width, height, m_place.m_x, m_place.m_y);
    return CanvasView{m_pixels.data(), width * 4, width, height};
}

} // namespace zyr::host
