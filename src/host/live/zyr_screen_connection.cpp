#include "host/live/zyr_screen_connection.h"

#include "host/zyr_run_error.h"

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <xcb/randr.h>

namespace zyr::host {

namespace {

/// Titles are read up to so many bytes.
constexpr uint32_t LONGEST_TITLE = 1024;

xcb_screen_t* findScreen(xcb_connection_t* p_connection, int p_number) {
    xcb_screen_iterator_t it = xcb_setup_roots_iterator(xcb_get_setup(p_connection));
    for (; it.rem > 1 && p_number > 0; p_number--) {
        xcb_screen_next(&it);
    }
    return it.data;
}

std::string readName(const ScreenConnection& p_connection, xcb_atom_t p_atom) {
    xcb_connection_t* c = p_connection.get();
    const ReplyHandle<xcb_get_atom_name_reply_t> name(
        xcb_get_atom_name_reply(c, xcb_get_atom_name(c, p_atom), nullptr));
    return name ? std::string(xcb_get_atom_name_name(name.get()), size_t(xcb_get_atom_name_name_length(name.get())))
                : std::string();
}

std::string readTitle(const ScreenConnection& p_connection, xcb_window_t p_window, xcb_atom_t p_property) {
    xcb_connection_t* c = p_connection.get();
    const ReplyHandle<xcb_get_property_reply_t> title(xcb_get_property_reply(
        c, xcb_get_property(c, 0, p_window, p_property, XCB_ATOM_ANY, 0, LONGEST_TITLE / 4), nullptr));
    if (!title || title->format != 8) {
        return {};
    }
    return std::string(static_cast<const char*>(xcb_get_property_value(title.get())),
                       size_t(xcb_get_property_value_length(title.get())));
}

/// The first window below `p_parent`, itself left out, whose title holds the text.
xcb_window_t findByTitle(const ScreenConnection& p_connection, xcb_window_t p_parent, const std::string& p_title,
                         int p_depth) {
    constexpr int DEEPEST = 4;
    xcb_connection_t* c = p_connection.get();
    const ReplyHandle<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(c, xcb_query_tree(c, p_parent), nullptr));
    const int count = tree ? xcb_query_tree_children_length(tree.get()) : 0;
    for (int i = count - 1; i >= 0; i--) {
        const xcb_window_t window = xcb_query_tree_children(tree.get())[i];
        for (const xcb_atom_t property : {p_connection.getAtom("_NET_WM_NAME"), xcb_atom_t(XCB_ATOM_WM_NAME)}) {
            if (readTitle(p_connection, window, property).find(p_title) != std::string::npos) {
                return window;
            }
        }
        const xcb_window_t below =
            p_depth < DEEPEST ? findByTitle(p_connection, window, p_title, p_depth + 1) : XCB_NONE;
        if (below != XCB_NONE) {
            return below;
        }
    }
    return XCB_NONE;
}

bool parseNumber(const std::string& p_text, uint32_t& p_number) {
    const bool isHexadecimal = p_text.rfind("0x", 0) == 0;
    const char* const end = p_text.data() + p_text.size();
    const auto [stop, error] =
        std::from_chars(p_text.data() + (isHexadecimal ? 2 : 0), end, p_number, isHexadecimal ? 16 : 10);
    return error == std::errc() && stop == end;
}

} // namespace

ScreenConnection::ScreenConnection(const std::string& p_display) {
    int number = 0;
    m_connection = xcb_connect(p_display.empty() ? nullptr : p_display.c_str(), &number);
    if (xcb_connection_has_error(m_connection) != 0) {
        xcb_disconnect(m_connection);
        const char* const display = getenv("DISPLAY");
        throw RunError("cannot connect to the X server '" +
                       (p_display.empty() ? std::string(display != nullptr ? display : "") : p_display) + "'");
    }
    m_screen = findScreen(m_connection, number);
}

ScreenConnection::~ScreenConnection() {
    xcb_disconnect(m_connection);
}

xcb_atom_t ScreenConnection::getAtom(const char* p_name) const {
    const ReplyHandle<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
        m_connection, xcb_intern_atom(m_connection, 0, uint16_t(strlen(p_name)), p_name), nullptr));
    return atom ? atom->atom : xcb_atom_t(XCB_ATOM_NONE);
}

uint8_t ScreenConnection::findExtension(xcb_extension_t* p_extension, const char* p_name) const {
    const xcb_query_extension_reply_t* extension = xcb_get_extension_data(m_connection, p_extension);
    if (extension == nullptr || extension->present == 0) {
        throw RunError(std::string("the X server lacks the extension ") + p_name);
    }
    return extension->first_event;
}

bool ScreenConnection::hasWordPixels(uint8_t p_depth) const {
    const xcb_setup_t* setup = xcb_get_setup(m_connection);
    for (xcb_format_iterator_t it = xcb_setup_pixmap_formats_iterator(setup); it.rem > 0; xcb_format_next(&it)) {
        if (it.data->depth == p_depth) {
            return it.data->bits_per_pixel == 32 && setup->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST;
        }
    }
    return false;
}

ScreenArea findMonitor(const ScreenConnection& p_connection, const std::string& p_monitor) {
    p_connection.findExtension(&xcb_randr_id, "RANDR");
    xcb_connection_t* c = p_connection.get();
    // The server hides monitors from those that have not told which version they speak.
    free(xcb_randr_query_version_reply(c, xcb_randr_query_version(c, 1, 5), nullptr));
    const ReplyHandle<xcb_randr_get_monitors_reply_t> monitors(
        xcb_randr_get_monitors_reply(c, xcb_randr_get_monitors(c, p_connection.getRoot(), 1), nullptr));
    std::string known;
    uint32_t wanted = 0;
    const bool isNumber = parseNumber(p_monitor, wanted);
    uint32_t index = 0;
    xcb_randr_monitor_info_iterator_t it{};
    if (monitors) {
        it = xcb_randr_get_monitors_monitors_iterator(monitors.get());
    }
    for (; it.rem > 0; xcb_randr_monitor_info_next(&it), index++) {
        const std::string name = readName(p_connection, it.data->name);
        if (name == p_monitor || (isNumber && index == wanted)) {
            return ScreenArea{it.data->x, it.data->y, it.data->width, it.data->height};
        }
        known += (known.empty() ? "" : ", ") + name;
    }
    throw RunError("there is no monitor '" + p_monitor + "' (" + (known.empty() ? "there are none" : known) + ")");
}

xcb_window_t findWindow(const ScreenConnection& p_connection, const std::string& p_window) {
    uint32_t number = 0;
    xcb_connection_t* c = p_connection.get();
    if (parseNumber(p_window, number)) {
        const ReplyHandle<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(c, xcb_get_geometry(c, number), nullptr));
        if (geometry) {
            return number;
        }
    }
    const xcb_window_t window = findByTitle(p_connection, p_connection.getRoot(), p_window, 0);
    if (window == XCB_NONE) {
        throw RunError("there is no window '" + p_window + "'");
    }
    return window;
}

} // namespace zyr::host
