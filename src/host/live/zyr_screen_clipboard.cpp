#include "host/live/zyr_screen_clipboard.h"

#include <algorithm>

namespace zyr::host {

namespace {

/// Longer texts go piece by piece: not every server and not every program takes more at once.
constexpr size_t PIECE = 64 * 1024;
/// Those who stop taking theirs in the middle are forgotten.
constexpr size_t MOST_TRANSFERS = 8;

} // namespace

ScreenClipboard::ScreenClipboard(const std::string& p_display, size_t p_largest)
    : m_connection(p_display),
      m_largest(p_largest),
      m_window(xcb_generate_id(m_connection.get())),
      m_clipboard(m_connection.getAtom("CLIPBOARD")),
      m_utf8(m_connection.getAtom("UTF8_STRING")),
      m_targets(m_connection.getAtom("TARGETS")),
      m_pieces(m_connection.getAtom("INCR")),
      m_property(m_connection.getAtom("ZYR_CLIPBOARD")) {
    // Never shown: selections go from window to window.
    xcb_create_window(m_connection.get(), XCB_COPY_FROM_PARENT, m_window, m_connection.getRoot(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    watch(m_window, true);
    m_connection.flush();
}

void ScreenClipboard::request() {
    m_isReceiving = false;
    xcb_convert_selection(m_connection.get(), m_window, m_clipboard, m_utf8, m_property, XCB_CURRENT_TIME);
    m_connection.flush();
}

bool ScreenClipboard::offer(const std::string& p_text) {
    if (p_text.size() > m_largest) {
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
        sendText(p_request, notice.property);
    } else {
        notice.property = XCB_NONE;
    }
    xcb_send_event(c, 0, p_request.requestor, 0, reinterpret_cast<const char*>(&notice));
    m_connection.flush();
}

void ScreenClipboard::watch(xcb_window_t p_window, bool p_on) const {
    const uint32_t mask = p_on ? XCB_EVENT_MASK_PROPERTY_CHANGE : XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(m_connection.get(), p_window, XCB_CW_EVENT_MASK, &mask);
}

void ScreenClipboard::sendText(const xcb_selection_request_event_t& p_request, xcb_atom_t p_property) {
    const auto size = uint32_t(m_offered.size());
    if (size <= PIECE) {
        xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, p_request.requestor, p_property,
                            p_request.target, 8, size, m_offered.data());
        return;
    }
    if (m_transfers.size() == MOST_TRANSFERS) {
        m_transfers.pop_front();
    }
    m_transfers.push_back({p_request.requestor, p_property, p_request.target, m_offered});
    watch(p_request.requestor, true);
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, p_request.requestor, p_property, m_pieces, 32, 1,
                        &size);
}

/// Somebody has taken a piece; an empty one tells the end.
void ScreenClipboard::sendPiece(const xcb_property_notify_event_t& p_notice) {
    const auto transfer = std::find_if(m_transfers.begin(), m_transfers.end(), [&](const Transfer& p_transfer) {
        return p_transfer.m_requestor == p_notice.window && p_transfer.m_property == p_notice.atom;
    });
    if (transfer == m_transfers.end()) {
        return;
    }
    const size_t size = std::min(PIECE, transfer->m_text.size() - transfer->m_sent);
    if (size == 0 && transfer->m_requestor != m_window) {
        watch(transfer->m_requestor, false);
    }
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, transfer->m_requestor, transfer->m_property,
                        transfer->m_target, 8, uint32_t(size), transfer->m_text.data() + transfer->m_sent);
    transfer->m_sent += size;
    if (size == 0) {
        m_transfers.erase(transfer);
    }
    m_connection.flush();
}

/// Removes what was sent to us, which asks for the next piece. Null when it is no text.
ReplyHandle<xcb_get_property_reply_t> ScreenClipboard::takeProperty() const {
    xcb_connection_t* c = m_connection.get();
    ReplyHandle<xcb_get_property_reply_t> value(xcb_get_property_reply(
        c, xcb_get_property(c, 0, m_window, m_property, XCB_ATOM_ANY, 0, uint32_t(m_largest / 4 + 1)), nullptr));
    // Even what is too long to be read as a whole is removed.
    xcb_delete_property(c, m_window, m_property);
    m_connection.flush();
    return value;
}

bool ScreenClipboard::receive(const xcb_selection_notify_event_t& p_notice, std::string& p_text) {
    if (p_notice.property != m_property) {
        return false; // Nobody has text to give.
    }
    const ReplyHandle<xcb_get_property_reply_t> value = takeProperty();
    m_isReceiving = value && value->type == m_pieces;
    m_received.clear();
    if (!value || value->format != 8 || value->type != m_utf8 || value->bytes_after > 0) {
        return false;
    }
    p_text.assign(static_cast<const char*>(xcb_get_property_value(value.get())),
                  size_t(xcb_get_property_value_length(value.get())));
    return p_text.size() <= m_largest;
}

bool ScreenClipboard::receivePiece(std::string& p_text) {
    const ReplyHandle<xcb_get_property_reply_t> value = takeProperty();
    const size_t size = value ? size_t(xcb_get_property_value_length(value.get())) : 0;
    const bool isText = value && value->format == 8 && value->type == m_utf8 && value->bytes_after == 0;
    if (!isText || m_received.size() + size > m_largest) {
        m_isReceiving = false;
        return false;
    }
    if (size == 0) {
        m_isReceiving = false;
        p_text = std::move(m_received);
        return true;
    }
    m_received.append(static_cast<const char*>(xcb_get_property_value(value.get())), size);
    return false;
}

bool ScreenClipboard::update(std::string& p_text) {
    bool hasCome = false;
    while (const ReplyHandle<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
        const uint8_t type = event->response_type & 0x7F;
        if (type == XCB_SELECTION_REQUEST) {
            answer(*reinterpret_cast<const xcb_selection_request_event_t*>(event.get()));
        } else if (type == XCB_SELECTION_NOTIFY) {
            hasCome = receive(*reinterpret_cast<const xcb_selection_notify_event_t*>(event.get()), p_text) || hasCome;
        } else if (type == XCB_PROPERTY_NOTIFY) {
            const auto& notice = *reinterpret_cast<const xcb_property_notify_event_t*>(event.get());
            if (notice.state == XCB_PROPERTY_DELETE) {
                sendPiece(notice);
            } else if (m_isReceiving && notice.window == m_window && notice.atom == m_property) {
                hasCome = receivePiece(p_text) || hasCome;
            }
        } else if (type == XCB_SELECTION_CLEAR) {
            m_offered.clear();
        }
    }
    return hasCome;
}

} // namespace zyr::host
