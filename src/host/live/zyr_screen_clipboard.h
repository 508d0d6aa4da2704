/// The clipboard of an X screen, as text.
#pragma once

#include "host/live/zyr_screen_connection.h"

#include <cstdint>
#include <deque>
#include <string>

namespace zyr::host {

/// Reads the clipboard when asked, and offers a text of its own when told to. Long texts travel piece by piece, the
/// next one when the last was taken. One thread, which calls update() when the descriptor is readable.
class ScreenClipboard {
public:
    /// Throws RunError.
    ScreenClipboard(const std::string& p_display, size_t p_largest);

    int getDescriptor() const { return m_connection.getDescriptor(); }

    /// Asks the clipboard's owner for its text, which update() gives when it comes.
    void request();

    /// Becomes the clipboard's owner. What is longer than the limit is refused: false.
    bool offer(const std::string& p_text);

    /// Serves whoever asks for the offered text. True when a requested text has come.
    bool update(std::string& p_text);

private:
    /// A text that somebody takes piece by piece.
    struct Transfer {
        xcb_window_t m_requestor;
        xcb_atom_t m_property;
        xcb_atom_t m_target;
        std::string m_text;
        size_t m_sent = 0;
    };

    void answer(const xcb_selection_request_event_t& p_request);
    void sendText(const xcb_selection_request_event_t& p_request, xcb_atom_t p_property);
    void watch(xcb_window_t p_window, bool p_on) const;
    void sendPiece(const xcb_property_notify_event_t& p_notice);
    bool receive(const xcb_selection_notify_event_t& p_notice, std::string& p_text);
    bool receivePiece(std::string& p_text);
    ReplyHandle<xcb_get_property_reply_t> takeProperty() const;

    ScreenConnection m_connection;
    size_t m_largest;
    xcb_window_t m_window;
    xcb_atom_t m_clipboard;
    xcb_atom_t m_utf8;
    xcb_atom_t m_targets;
    xcb_atom_t m_pieces;
    xcb_atom_t m_property;
    std::string m_offered;
    std::deque<Transfer> m_transfers;
    std::string m_received;     ///< Of a text that comes piece by piece.
    bool m_isReceiving = false; ///< One does.
};

} // namespace zyr::host
