#include "host/live/zyr_screen_clipboard.h"

#include <algorithm>

namespace zyr::host {

ScreenClipboard::ScreenClipboard(const std::string& p_display, size_t p_largest)
    : m_connection(p_display),
      m_largest(p_largest),
      m_window(xcb_generate_id(m_connection.get())),
      m_clipboard(m_connection.getAtom("CLIPBOARD")),
      m_utf8(m_connection.getAtom("UTF8_STRING")),
      m_targets(m_connection.getAtom("TARGETS")),
      m_property(m_connection.getAtom("ZYR_CLIPBOARD")) {
    // Never shown: selections go from window to window.
    xcb_create_window(m_connection.get(), XCB_COPY_FROM_PARENT, m_window, m_connection.getRoot(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    m_connection.flush();
}

void ScreenClipboard::request() {
    xcb_convert_selection(m_connection.get(), m_window, m_clipboard, m_utf8, m_property, XCB_CURRENT_TIME);
    m_connection.flush();
}

bool ScreenClipboard::offer(const std::string& p_text) {
    // One request carries the text to whoever asks.
    const size_t room = size_t(xcb_get_maximum_request_length(m_connection.get())) * 4 - 64;
    if (p_text.size() > std::min(m_largest, room)) {
        return false;
    }
    m_offered = p_text;
    xcb_connection_t* c = m_connection.get();
    xcb_set_selection_owner(c, m_window, m_clipboard, XCB_CURRENT_TIME);
    // Whoever asks from here on gets this text. Events that come with the reply wait for update().
    const ReplyHandle<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(c, xcb_get_selection_owner(c, m_clipboard), nullptr));
    return owner && owner->owner == m_window;
}

void ScreenClipboard::answer(const xcb_selection_request_event_t& p_request) {
    xcb_connection_t* c = m_connection.get();
    xcb_selection_notify_event_t notice{};
    notice.response_type = XCB_SELECTION_NOTIFY;
    notice.time = p_request.time;
    notice.requestor = p_request.requestor;
    notice.selection = p_request.selection;
    notice.target = p_request.target;
    notice.property = p_request.property != XCB_NONE ? p_request.property : p_request.target;
    if (p_request.target == m_targets) {
        const xcb_atom_t known[] = {m_targets, m_utf8, XCB_ATOM_STRING};
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, p_request.requestor, notice.property, XCB_ATOM_ATOM, 32, 3,
                            known);
    } else if (p_request.target == m_utf8 || p_request.target == XCB_ATOM_STRING) {
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, p_request.requestor, notice.property, p_request.target, 8,
                            uint32_t(m_offered.size()), m_offered.data());
    } else {
        notice.property = XCB_NONE;
    }
    xcb_send_event(c, 0, p_request.requestor, 0, reinterpret_cast<const char*>(&notice));
    m_connection.flush();
}

bool ScreenClipboard::receive(const xcb_selection_notify_event_t& p_notice, std::string& p_text) {
    if (p_notice.property != m_property) {
        return false; // Nobody has text to give.
    }
    xcb_connection_t* c = m_connection.get();
    const ReplyHandle<xcb_get_property_reply_t> value(xcb_get_property_reply(
        c, xcb_get_property(c, 1, m_window, m_property, XCB_ATOM_ANY, 0, uint32_t(m_largest / 4 + 1)), nullptr));
    // A type of another name is the owner's wish to send it piece by piece, which only long texts need.
    if (!value || value->format != 8 || value->type != m_utf8 || value->bytes_after > 0) {
        return false;
    }
    p_text.assign(static_cast<const char*>(xcb_get_property_value(value.get())),
                  size_t(xcb_get_property_value_length(value.get())));
    return p_text.size() <= m_largest;
}

bool ScreenClipboard::update(std::string& p_text) {
    bool hasCome = false;
    while (const ReplyHandle<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
        const uint8_t type = event->response_type & 0x7F;
        if (type == XCB_SELECTION_REQUEST) {
            answer(*reinterpret_cast<const xcb_selection_request_event_t*>(event.get()));
        } else if (type == XCB_SELECTION_NOTIFY) {
            hasCome = receive(*reinterpret_cast<const xcb_selection_notify_event_t*>(event.get()), p_text) || hasCome;
        } else if (type == XCB_SELECTION_CLEAR) {
            m_offered.clear();
        }
    }
    return hasCome;
}

} // namespace zyr::host
