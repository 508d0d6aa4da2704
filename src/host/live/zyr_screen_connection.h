/// A connection to an X server with the extensions that a live screen needs.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>
#include <xcb/xcb.h>

namespace zyr::host {

struct ReplyReleaser {
    void operator()(void* p_reply) const { free(p_reply); }
};
/// An answer or an event of the X server, which is freed with free().
template <typename Reply> using ReplyHandle = std::unique_ptr<Reply, ReplyReleaser>;

/// A rectangle of the screen, in pixels.
struct ScreenArea {
    int m_x = 0;
    int m_y = 0;
    uint32_t m_width = 0;
    uint32_t m_height = 0;

    bool operator==(const ScreenArea&) const = default;
};

/// Owns the connection. One thread.
class ScreenConnection {
public:
    /// Connects to a display, the one of the environment when the text is empty. Throws RunError.
    explicit ScreenConnection(const std::string& p_display);
    ~ScreenConnection();
    ScreenConnection(const ScreenConnection&) = delete;
    ScreenConnection& operator=(const ScreenConnection&) = delete;

    xcb_connection_t* get() const { return m_connection; }
    const xcb_screen_t& getScreen() const { return *m_screen; }
    xcb_window_t getRoot() const { return m_screen->root; }
    int getDescriptor() const { return xcb_get_file_descriptor(m_connection); }

    /// False once the server has gone.
    bool isAlive() const { return xcb_connection_has_error(m_connection) == 0; }

    /// Sends what is waiting to be sent.
    void flush() const { xcb_flush(m_connection); }

    /// The number of an atom, made if it is not there.
    xcb_atom_t getAtom(const char* p_name) const;

    /// The number of the first event of an extension. Throws RunError when the server lacks it.
    uint8_t findExtension(xcb_extension_t* p_extension, const char* p_name) const;

    /// True when pictures of this depth come as four bytes per pixel: B, G, R and one more.
    bool hasWordPixels(uint8_t p_depth) const;

private:
    xcb_connection_t* m_connection;
    xcb_screen_t* m_screen;
};

/// Where a monitor of the screen lies, by its name ("HDMI-1") or its number from 0. Throws RunError, which names those
/// that there are.
ScreenArea findMonitor(const ScreenConnection& p_connection, const std::string& p_monitor);

/// A window by its number ("0x1c00007") or a part of its title. Throws RunError.
xcb_window_t findWindow(const ScreenConnection& p_connection, const std::string& p_window);

} // namespace zyr::host
