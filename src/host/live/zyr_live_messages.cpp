#include "host/live/zyr_live_messages.h"

namespace zyr::host {

std::vector<uint8_t> LiveHello::write() const {
    return LiveWriter().add(m_version).add(m_flags).add(m_codecs).addText(m_user).addText(m_secret).getBytes();
}

bool LiveHello::read(LiveReader p_reader) {
    m_version = p_reader.take<uint32_t>();
    m_flags = p_reader.take<uint32_t>();
    m_codecs = p_reader.take<uint8_t>();
    m_user = p_reader.takeText(LONGEST_NAME);
    m_secret = p_reader.takeText(LONGEST_SECRET);
    return p_reader.isGood();
}

std::vector<uint8_t> LiveAcknowledge::write() const {
    return LiveWriter().add(m_sequence).add(m_decodeMicros).add(m_drawMicros).getBytes();
}

bool LiveAcknowledge::read(LiveReader p_reader) {
    m_sequence = p_reader.take<uint32_t>();
    m_decodeMicros = p_reader.take<uint32_t>();
    m_drawMicros = p_reader.take<uint32_t>();
    return p_reader.isGood();
}

std::vector<uint8_t> LivePointer::write() const {
    return LiveWriter().add(m_x).add(m_y).add(m_buttons).getBytes();
}

bool LivePointer::read(LiveReader p_reader) {
    m_x = p_reader.take<int32_t>();
    m_y = p_reader.take<int32_t>();
    m_buttons = p_reader.take<uint16_t>();
    return p_reader.isGood();
}

std::vector<uint8_t> LiveWheel::write() const {
    return LiveWriter().add(m_x).add(m_y).getBytes();
}

bool LiveWheel::read(LiveReader p_reader) {
    m_x = p_reader.take<int8_t>();
    m_y = p_reader.take<int8_t>();
    return p_reader.isGood();
}

std::vector<uint8_t> LiveKey::write() const {
    return LiveWriter().add(m_symbol).add(m_code).add(uint8_t(m_down ? 1 : 0)).getBytes();
}

bool LiveKey::read(LiveReader p_reader) {
    m_symbol = p_reader.take<uint32_t>();
    m_code = p_reader.take<uint16_t>();
    m_down = p_reader.take<uint8_t>() != 0;
    return p_reader.isGood();
}

std::vector<uint8_t> LiveWelcome::write() const {
    return LiveWriter().add(m_version).add(m_viewer).add(m_flags).getBytes();
}

bool LiveWelcome::read(LiveReader p_reader) {
    m_version = p_reader.take<uint32_t>();
    m_viewer = p_reader.take<uint32_t>();
    m_flags = p_reader.take<uint32_t>();
    return p_reader.isGood();
}

std::vector<uint8_t> LiveStream::write() const {
    LiveWriter writer;
    writer.add(m_width).add(m_height).add(m_codedWidth).add(m_codedHeight).add(m_codecs);
    return writer.add(uint8_t(m_fullRange ? 1 : 0)).add(uint8_t(m_bt709 ? 1 : 0)).getBytes();
}

bool LiveStream::read(LiveReader p_reader) {
    m_width = p_reader.take<uint32_t>();
    m_height = p_reader.take<uint32_t>();
    m_codedWidth = p_reader.take<uint32_t>();
    m_codedHeight = p_reader.take<uint32_t>();
    m_codecs = p_reader.take<uint8_t>();
    m_fullRange = p_reader.take<uint8_t>() != 0;
    m_bt709 = p_reader.take<uint8_t>() != 0;
    return p_reader.isGood();
}

std::vector<uint8_t> LiveCursor::write() const {
    return LiveWriter().add(m_width).add(m_height).add(m_hotX).add(m_hotY).getBytes();
}

bool LiveCursor::read(LiveReader p_reader) {
    m_width = p_reader.take<uint16_t>();
    m_height = p_reader.take<uint16_t>();
    m_hotX = p_reader.take<uint16_t>();
    m_hotY = p_reader.take<uint16_t>();
    return p_reader.isGood();
}

std::vector<uint8_t> LiveStatistics::write() const {
    LiveWriter writer;
    writer.add(m_framesPerSecond).add(m_kilobitsPerSecond).add(m_roundTripMicros).add(m_dropped);
    return writer.add(m_viewers).add(m_window).add(m_lane).getBytes();
}

bool LiveStatistics::read(LiveReader p_reader) {
    m_framesPerSecond = p_reader.take<uint32_t>();
    m_kilobitsPerSecond = p_reader.take<uint32_t>();
    m_roundTripMicros = p_reader.take<uint32_t>();
    m_dropped = p_reader.take<uint32_t>();
    m_viewers = p_reader.take<uint16_t>();
    m_window = p_reader.take<uint8_t>();
    m_lane = p_reader.take<uint8_t>();
    return p_reader.isGood();
}

} // namespace zyr::host
