/// Takes pictures of a window through memory shared with the X server.
#pragma once

#include "host/live/zyr_screen_connection.h"
#include "host/zyr_video_source.h"

#include <xcb/shm.h>

namespace zyr::host {

/// One thread.
class ScreenGrabber {
public:
    /// Throws RunError when the server has no shared memory for us.
    explicit ScreenGrabber(const ScreenConnection& p_connection);
    ~ScreenGrabber();
    ScreenGrabber(const ScreenGrabber&) = delete;
    ScreenGrabber& operator=(const ScreenGrabber&) = delete;

    /// Copies an area of a drawable to a place in a picture, which must be large enough. False when the server refuses,
    /// as it does when the area is no longer all there.
    bool grab(xcb_drawable_t p_drawable, const ScreenArea& p_area, PictureBuffer& p_picture, uint32_t p_x,
              uint32_t p_y);

private:
    bool fit(size_t p_size);
    void release();

    const ScreenConnection& m_connection;
    xcb_shm_seg_t m_segment = XCB_NONE;
    void* m_memory = nullptr;
    size_t m_size = 0;
};

} // namespace zyr::host
