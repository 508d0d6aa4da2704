// What viewers that have been let in say.
#include "host/live/zyr_live_server.h"

namespace zyr::host {

namespace {

constexpr uint64_t BETWEEN_CLIPBOARDS = 200'000;

} // namespace

bool LiveServer::takeFromViewer(Guest& p_guest, const DataMessage& p_message, uint64_t p_now) {
    ViewerLink& link = *p_guest.m_link;
    LiveReader reader(p_message.getHeader(), p_message.getHeaderSize());
    const auto type = LiveMessage(p_message.getType());
    const bool steers = m_control.isPossible() && m_control.getController() == link.getId();
    LiveAcknowledge acknowledge;
    switch (type) {
    case LiveMessage::ACKNOWLEDGE:
        // One that does not fit is of a frame before a change of lanes.
        return acknowledge.read(reader) && (link.noteDrawn(acknowledge, p_now) || true);
    case LiveMessage::NEED_KEY:
        link.forgetFrames();
        return true;
    case LiveMessage::POINTER:
    case LiveMessage::WHEEL:
    case LiveMessage::KEY:
    case LiveMessage::RELEASE_ALL:
        return !steers || m_control.take(type, reader, m_pictures.getArea(),
                                         p_now); // What comes after a loss of control is too late.
    case LiveMessage::CONTROL:
        takeControl(link.getId(), reader.take<uint8_t>() != 0);
        return reader.isGood();
    case LiveMessage::PING:
        link.send(LiveMessage::PONG, LiveWriter().add(reader.take<uint64_t>()).add(p_now).getBytes());
        return reader.isGood();
    case LiveMessage::CLIPBOARD_SET:
        if (p_message.getPayloadSize() > LARGEST_CLIPBOARD) {
            return false;
        }
        if (steers) {
            m_control.offerClipboard(
                std::string(reinterpret_cast<const char*>(p_message.getPayload()), size_t(p_message.getPayloadSize())));
        }
        return true;
    case LiveMessage::CLIPBOARD_GET:
        if (steers && p_now - link.m_clipboardTime >= BETWEEN_CLIPBOARDS) {
            link.m_clipboardTime = p_now;
            link.m_wantsClipboard = true;
            m_control.requestClipboard();
        }
        return true;
    default:
        return false;
    }
}

void LiveServer::takeControl(uint32_t p_viewer, bool p_wants) {
    if (m_control.isPossible() && (p_wants || m_control.getController() == p_viewer)) {
        m_control.give(p_wants ? p_viewer : ScreenControl::NOBODY);
    }
    tellControl();
}

void LiveServer::tellControl() {
    const uint32_t controller = m_control.getController();
    for (auto& [id, guest] : m_guests) {
        if (guest.m_link->m_state == ViewerLink::State::VIEWING) {
            const LiveControl control = !m_control.isPossible()               ? LiveControl::VIEW_ONLY
                                        : controller == id                    ? LiveControl::YOURS
                                        : controller == ScreenControl::NOBODY ? LiveControl::FREE
                                                                              : LiveControl::ANOTHERS;
            guest.m_link->send(LiveMessage::CONTROL_STATE, {uint8_t(control)});
        }
    }
}

void LiveServer::takeClipboard() {
    std::string text;
    if (!m_control.updateClipboard(text)) {
        return;
    }
    for (auto& [id, guest] : m_guests) {
        if (guest.m_link->m_wantsClipboard && id == m_control.getController()) {
            guest.m_link->send(LiveMessage::CLIPBOARD, {}, text.data(), text.size());
        }
        guest.m_link->m_wantsClipboard = false;
    }
}

} // namespace zyr::host
