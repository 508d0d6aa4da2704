#include "host/live/zyr_live_source.h"
#include "host/live/zyr_screen_connection.h"
#include "host/live/zyr_screen_grabber.h"
#include "host/zyr_run_error.h"

#include <xcb/damage.h>
#include <xcb/randr.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <cstdlib>
#include <poll.h>

namespace zyr::host {

namespace {

/// Programs paint a picture by several requests. Once nothing more came for so many milliseconds it is taken for whole;
/// half a picture would have to be sent twice.
constexpr int PAINT_GAP = 1;
/// Those who paint without a break are not waited for, in microseconds.
constexpr uint64_t LONGEST_PAINT = 5'000;

class ScreenSource : public LiveSource {
public:
    explicit ScreenSource(const ScreenChoice& p_choice);
    ~ScreenSource() override { xcb_damage_destroy(m_connection.get(), m_damage); }

    int getDescriptor() const override { return m_connection.getDescriptor(); }
    bool update() override;
    bool grab(PictureBuffer& p_picture) override;
    bool findChanged(LiveArea& p_area) const override;
    bool takeCursor(CursorPicture& p_cursor) override;
    bool findPointer(int32_t& p_x, int32_t& p_y) override;
    void getOrigin(int32_t& p_x, int32_t& p_y) const override {
        p_x = m_origin.m_x;
        p_y = m_origin.m_y;
    }
    bool hasEnded() const override { return m_ended; }

private:
    void watch();
    void findArea();
    void note(const xcb_generic_event_t& p_event);
    void takeEvents();
    bool takeDamage();
    void awaitPainters();
    ScreenArea findDirty(const PictureBuffer& p_picture) const;

    ScreenChoice m_choice;
    ScreenConnection m_connection;
    ScreenGrabber m_grabber;
    xcb_drawable_t m_drawable;
    xcb_damage_damage_t m_damage = XCB_NONE;
    uint8_t m_damageEvents;
    uint8_t m_fixesEvents;
    uint8_t m_randrEvents;
    ScreenArea m_area;                      ///< In the drawable.
    ScreenArea m_origin;                    ///< On the screen.
    xcb_xfixes_region_t m_taken = XCB_NONE; ///< Where damage is put to be looked at.
    unsigned m_takenSequence = 0;           ///< Of the request that did so last: earlier damage is no news.
    uint64_t m_newsTime = 0;
    const PictureBuffer* m_known = nullptr; ///< Shows the area as it was before the dirty part; null: no picture does.
    ScreenArea m_dirty{};                   ///< In the drawable.
    LiveArea m_changed;                     ///< By the last grab, in the picture.
    bool m_hasNews = true;
    bool m_hasMoved = true; ///< The area is to be looked up again.
    bool m_hasCursor = true;
    bool m_ended = false;
};

ScreenSource::ScreenSource(const ScreenChoice& p_choice)
    : m_choice(p_choice),
      m_connection(p_choice.m_display),
      m_grabber(m_connection),
      m_drawable(m_connection.getRoot()),
      m_damageEvents(m_connection.findExtension(&xcb_damage_id, "DAMAGE")),
      m_fixesEvents(m_connection.findExtension(&xcb_xfixes_id, "XFIXES")),
      m_randrEvents(m_connection.findExtension(&xcb_randr_id, "RANDR")) {
    if (!m_connection.hasWordPixels(m_connection.getScreen().root_depth)) {
        throw RunError("the screen's pixels are not of 32 bits: a depth of " +
                       std::to_string(m_connection.getScreen().root_depth) + " cannot be shown");
    }
    if (!p_choice.m_window.empty()) {
        m_drawable = findWindow(m_connection, p_choice.m_window);
    }
    if (!p_choice.m_monitor.empty()) {
        findMonitor(m_connection, p_choice.m_monitor); // Throws now; later its absence is the end.
    }
    watch();
    findArea();
}

void ScreenSource::watch() {
    xcb_connection_t* c = m_connection.get();
    // Each extension answers those only who tell their version first.
    free(xcb_xfixes_query_version_reply(c, xcb_xfixes_query_version(c, 5, 0), nullptr));
    free(xcb_damage_query_version_reply(c, xcb_damage_query_version(c, 1, 1), nullptr));
    free(xcb_randr_query_version_reply(c, xcb_randr_query_version(c, 1, 5), nullptr));
    m_damage = xcb_generate_id(c);
    xcb_damage_create(c, m_damage, m_drawable, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
    m_taken = xcb_generate_id(c);
    xcb_xfixes_create_region(c, m_taken, 0, nullptr);
    xcb_xfixes_select_cursor_input(c, m_connection.getRoot(), XCB_XFIXES_CURSOR_NOTIFY_MASK_DISPLAY_CURSOR);
    xcb_randr_select_input(c, m_connection.getRoot(),
                           XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE);
    const uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(c, m_drawable, XCB_CW_EVENT_MASK, &mask);
    m_connection.flush();
}

void ScreenSource::findArea() {
    m_hasMoved = false;
    m_known = nullptr;
    xcb_connection_t* c = m_connection.get();
    const ReplyHandle<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(c, xcb_get_geometry(c, m_drawable), nullptr));
    if (!geometry) {
        m_ended = true;
        return;
    }
    m_area = ScreenArea{0, 0, geometry->width, geometry->height};
    m_origin = m_area;
    if (!m_choice.m_window.empty()) {
        const ReplyHandle<xcb_translate_coordinates_reply_t> place(xcb_translate_coordinates_reply(
            c, xcb_translate_coordinates(c, m_drawable, m_connection.getRoot(), 0, 0), nullptr));
        m_origin.m_x = place ? place->dst_x : 0;
        m_origin.m_y = place ? place->dst_y : 0;
        // Only what lies on the screen can be read.
        const ReplyHandle<xcb_get_geometry_reply_t> screen(
            xcb_get_geometry_reply(c, xcb_get_geometry(c, m_connection.getRoot()), nullptr));
        const int left = std::max(0, -m_origin.m_x);
        const int top = std::max(0, -m_origin.m_y);
        const int right = std::min(int(m_area.m_width), int(screen ? screen->width : 0) - m_origin.m_x);
        const int bottom = std::min(int(m_area.m_height), int(screen ? screen->height : 0) - m_origin.m_y);
        m_area = ScreenArea{left, top, uint32_t(std::max(0, right - left)), uint32_t(std::max(0, bottom - top))};
        m_origin.m_x += left;
        m_origin.m_y += top;
    } else if (!m_choice.m_monitor.empty()) {
        try {
            m_area = findMonitor(m_connection, m_choice.m_monitor);
            m_origin = m_area;
        } catch (const RunError&) {
            m_ended = true; // It was unplugged.
        }
    }
}

void ScreenSource::note(const xcb_generic_event_t& p_event) {
    const uint8_t type = p_event.response_type & 0x7F;
    if (type == m_damageEvents + XCB_DAMAGE_NOTIFY) {
        const bool isTaken = int32_t(p_event.full_sequence - m_takenSequence) < 0;
        m_newsTime = isTaken || m_hasNews ? m_newsTime : getLiveTime();
        m_hasNews = m_hasNews || !isTaken;
    } else if (type == m_fixesEvents + XCB_XFIXES_CURSOR_NOTIFY) {
        m_hasCursor = true;
    } else if (type == m_randrEvents + XCB_RANDR_SCREEN_CHANGE_NOTIFY || type == m_randrEvents + XCB_RANDR_NOTIFY ||
               type == XCB_CONFIGURE_NOTIFY || type == XCB_MAP_NOTIFY) {
        m_hasMoved = true;
        m_hasNews = true;
    } else if (type == XCB_DESTROY_NOTIFY) {
        m_ended = true;
    }
}

void ScreenSource::takeEvents() {
    while (const ReplyHandle<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
        note(*event);
    }
}

bool ScreenSource::update() {
    takeEvents();
    if (!m_connection.isAlive()) {
        throw RunError("the X server has gone");
    }
    return m_hasNews && !m_ended;
}

/// Adds what was painted to what is dirty. False when that is nothing.
bool ScreenSource::takeDamage() {
    xcb_connection_t* c = m_connection.get();
    // Before the picture is taken: what is painted meanwhile must show up as damage again.
    m_hasNews = false;
    m_takenSequence = xcb_damage_subtract(c, m_damage, XCB_NONE, m_taken).sequence;
    const ReplyHandle<xcb_xfixes_fetch_region_reply_t> region(
        xcb_xfixes_fetch_region_reply(c, xcb_xfixes_fetch_region(c, m_taken), nullptr));
    if (!region) {
        m_known = nullptr;
        return false;
    }
    const xcb_rectangle_t& box = region->extents;
    if (box.width == 0 || box.height == 0) {
        return false;
    }
    if (m_dirty.m_width == 0) {
        m_dirty = ScreenArea{box.x, box.y, box.width, box.height};
        return true;
    }
    const int right = std::max(m_dirty.m_x + int(m_dirty.m_width), box.x + int(box.width));
    const int bottom = std::max(m_dirty.m_y + int(m_dirty.m_height), box.y + int(box.height));
    m_dirty.m_x = std::min(m_dirty.m_x, int(box.x));
    m_dirty.m_y = std::min(m_dirty.m_y, int(box.y));
    m_dirty.m_width = uint32_t(right - m_dirty.m_x);
    m_dirty.m_height = uint32_t(bottom - m_dirty.m_y);
    return true;
}

void ScreenSource::awaitPainters() {
    const uint64_t start = getLiveTime();
    const bool isPainted = start - m_newsTime < uint64_t{PAINT_GAP} * 1000;
    while (takeDamage() && isPainted && getLiveTime() - start < LONGEST_PAINT) {
        takeEvents(); // The reply may have brought some, which do not make the descriptor readable again.
        pollfd wait{m_connection.getDescriptor(), POLLIN, 0};
        if (!m_hasNews && poll(&wait, 1, PAINT_GAP) > 0) {
            takeEvents();
        }
        if (!m_hasNews) {
            return;
        }
    }
}

/// The part of the drawable that the picture does not show as it is.
ScreenArea ScreenSource::findDirty(const PictureBuffer& p_picture) const {
    // What other windows over a window do is not told as its damage.
    const bool isKnown = &p_picture == m_known && m_choice.m_window.empty() && p_picture.m_width == m_area.m_width &&
                         p_picture.m_height == m_area.m_height;
    if (!isKnown) {
        return m_area;
    }
    const int left = std::max(m_dirty.m_x, m_area.m_x);
    const int top = std::max(m_dirty.m_y, m_area.m_y);
    const int right = std::min(m_dirty.m_x + int(m_dirty.m_width), m_area.m_x + int(m_area.m_width));
    const int bottom = std::min(m_dirty.m_y + int(m_dirty.m_height), m_area.m_y + int(m_area.m_height));
    return ScreenArea{left, top, uint32_t(std::max(0, right - left)), uint32_t(std::max(0, bottom - top))};
}

bool ScreenSource::grab(PictureBuffer& p_picture) {
    awaitPainters();
    if (m_hasMoved) {
        findArea();
    }
    if (m_ended || m_area.m_width == 0 || m_area.m_height == 0) {
        m_hasMoved = true; // A window that has left the screen may come back.
        return false;
    }
    const ScreenArea changed = findDirty(p_picture);
    m_changed = LiveArea{changed.m_x - m_area.m_x, changed.m_y - m_area.m_y, changed.m_width, changed.m_height};
    const bool isNothing = changed.m_width == 0 || changed.m_height == 0;
    if (m_known != &p_picture || !isNothing) {
        if (p_picture.m_width != m_area.m_width || p_picture.m_height != m_area.m_height) {
            p_picture.resize(m_area.m_width, m_area.m_height);
        }
        if (!m_grabber.grab(m_drawable, changed, p_picture, uint32_t(changed.m_x - m_area.m_x),
                            uint32_t(changed.m_y - m_area.m_y))) {
            m_hasMoved = true; // The size has changed under our hands; the event is on its way.
            return false;
        }
    }
    m_known = &p_picture;
    m_dirty = ScreenArea{};
    return true;
}

bool ScreenSource::findChanged(LiveArea& p_area) const {
    p_area = m_changed;
    return true;
}

bool ScreenSource::takeCursor(CursorPicture& p_cursor) {
    if (!m_hasCursor) {
        return false;
    }
    m_hasCursor = false;
    xcb_connection_t* c = m_connection.get();
    const ReplyHandle<xcb_xfixes_get_cursor_image_reply_t> image(
        xcb_xfixes_get_cursor_image_reply(c, xcb_xfixes_get_cursor_image(c), nullptr));
    if (!image) {
        return false;
    }
    p_cursor = CursorPicture{image->width, image->height, image->xhot, image->yhot, {}};
    const uint32_t* pixels = xcb_xfixes_get_cursor_image_cursor_image(image.get());
    const int count = xcb_xfixes_get_cursor_image_cursor_image_length(image.get());
    p_cursor.m_pixels.reserve(size_t(count) * 4);
    for (int i = 0; i < count; i++) {
        const uint32_t alpha = pixels[i] >> 24;
        for (const unsigned shift : {16u, 8u, 0u}) {
            const uint32_t sample = pixels[i] >> shift & 255;
            p_cursor.m_pixels.push_back(uint8_t(alpha == 0 ? 0 : std::min<uint32_t>(255, sample * 255 / alpha)));
        }
        p_cursor.m_pixels.push_back(uint8_t(alpha));
    }
    return true;
}

bool ScreenSource::findPointer(int32_t& p_x, int32_t& p_y) {
    xcb_connection_t* c = m_connection.get();
    const ReplyHandle<xcb_query_pointer_reply_t> pointer(
        xcb_query_pointer_reply(c, xcb_query_pointer(c, m_connection.getRoot()), nullptr));
    if (!pointer) {
        return false;
    }
    p_x = pointer->root_x - m_origin.m_x;
    p_y = pointer->root_y - m_origin.m_y;
    return p_x >= 0 && p_y >= 0 && p_x < int32_t(m_area.m_width) && p_y < int32_t(m_area.m_height);
}

} // namespace

std::unique_ptr<LiveSource> openScreenSource(const ScreenChoice& p_choice) {
    return std::make_unique<ScreenSource>(p_choice);
}

} // namespace zyr::host
