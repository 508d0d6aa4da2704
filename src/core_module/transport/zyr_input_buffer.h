/// Bytes that came and were not looked at yet. Not thread safe.
#pragma once

#include "core_module/transport/zyr_byte_block.h"
#include "core_module/transport/zyr_channel.h"

namespace zyr {

class InputBuffer {
public:
    const unsigned char* getData() const { return m_block.getData() + m_position; }
    size_t getSize() const { return m_block.getSize() - m_position; }
    void consume(size_t p_size) { m_position += p_size; }
    void clear() {
        m_block.clear();
        m_position = 0;
    }

    /// Reads once behind the bytes that are there, up to p_limit of them in all. p_moved: how many came.
    ChannelResultEnum fill(Channel& p_channel, size_t p_limit, size_t& p_moved) {
        m_block.consume(m_position);
        m_position = 0;
        p_moved = 0;
        if (!m_block.reserve(p_limit)) {
            return CHANNEL_LOST;
        }
        const ChannelResultEnum result =
            p_channel.read(m_block.getData() + m_block.getSize(), p_limit - m_block.getSize(), p_moved);
        m_block.add(p_moved);
        return result;
    }

private:
    ByteBlock m_block;
    size_t m_position = 0;
};

} // namespace zyr
