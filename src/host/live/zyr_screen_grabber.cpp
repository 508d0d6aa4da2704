#include "host/live/zyr_screen_grabber.h"

#include "host/zyr_run_error.h"

#include <cstring>
#include <sys/mman.h>
#include <unistd.h>

namespace zyr::host {

ScreenGrabber::ScreenGrabber(const ScreenConnection& p_connection) : m_connection(p_connection) {
    p_connection.findExtension(&xcb_shm_id, "MIT-SHM");
    xcb_connection_t* c = p_connection.get();
    const ReplyHandle<xcb_shm_query_version_reply_t> version(
        xcb_shm_query_version_reply(c, xcb_shm_query_version(c), nullptr));
    if (!version || version->major_version < 1 || (version->major_version == 1 && version->minor_version < 2)) {
        throw RunError("the X server shares no memory by descriptors (MIT-SHM 1.2)");
    }
}

ScreenGrabber::~ScreenGrabber() {
    release();
}

void ScreenGrabber::release() {
    if (m_segment != XCB_NONE) {
        xcb_shm_detach(m_connection.get(), m_segment);
        munmap(m_memory, m_size);
        m_segment = XCB_NONE;
    }
}

bool ScreenGrabber::fit(size_t p_size) {
    if (m_segment != XCB_NONE && p_size <= m_size) {
        return true;
    }
    release();
    xcb_connection_t* c = m_connection.get();
    const xcb_shm_seg_t segment = xcb_generate_id(c);
    // The server makes the memory and hands out a descriptor: no segment can be left behind.
    const ReplyHandle<xcb_shm_create_segment_reply_t> made(
        xcb_shm_create_segment_reply(c, xcb_shm_create_segment(c, segment, uint32_t(p_size), 0), nullptr));
    if (!made || made->nfd != 1) {
        return false;
    }
    const int descriptor = xcb_shm_create_segment_reply_fds(c, made.get())[0];
    void* const memory = mmap(nullptr, p_size, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    close(descriptor);
    if (memory == MAP_FAILED) {
        xcb_shm_detach(c, segment);
        return false;
    }
    m_segment = segment;
    m_memory = memory;
    m_size = p_size;
    return true;
}

bool ScreenGrabber::grab(xcb_drawable_t p_drawable, const ScreenArea& p_area, PictureBuffer& p_picture, uint32_t p_x,
                         uint32_t p_y) {
    const size_t pitch = size_t(p_area.m_width) * 4;
    if (p_area.m_width == 0 || p_area.m_height == 0 || !fit(pitch * p_area.m_height)) {
        return false;
    }
    xcb_connection_t* c = m_connection.get();
    const ReplyHandle<xcb_shm_get_image_reply_t> image(xcb_shm_get_image_reply(
        c,
        xcb_shm_get_image(c, p_drawable, int16_t(p_area.m_x), int16_t(p_area.m_y), uint16_t(p_area.m_width),
                          uint16_t(p_area.m_height), ~0u, XCB_IMAGE_FORMAT_Z_PIXMAP, m_segment, 0),
        nullptr));
    if (!image || !m_connection.hasWordPixels(image->depth)) {
        return false;
    }
    uint8_t* const first = p_picture.getPixels() + size_t(p_y) * p_picture.m_pitch + size_t(p_x) * 4;
    for (uint32_t y = 0; y < p_area.m_height; y++) {
        memcpy(first + size_t(y) * p_picture.m_pitch, static_cast<const uint8_t*>(m_memory) + size_t(y) * pitch, pitch);
    }
    return true;
}

} // namespace zyr::host
