/// A message as bytes: an envelope of 24 bytes, the header, the payload. Little-endian; docs/transports.md.
#pragma once

#include "core_module/transport/zyr_byte_block.h"
#include "zyr_common/transport/zyr_data_message.h"
#include "zyr_common/transport/zyr_transport_state.h"

namespace zyr {

struct MessageEnvelope {
    static constexpr size_t SIZE = 24;
    /// Begins each envelope, so that a peer that speaks something else is told apart at once.
    static constexpr uint32_t MAGIC = 0x4d72797a; // "zyrM"
    /// The header is an object.
    static constexpr uint32_t HAS_OBJECT = 0x80000000;

    uint32_t m_type = 0;
    uint32_t m_id = 0;
    uint32_t m_headerSize = 0;
    bool m_hasObject = false;
    uint64_t m_payloadSize = 0;

    void write(unsigned char* p_bytes) const;
    /// False for bytes that are no envelope.
    bool read(const unsigned char* p_bytes);
};

/// Puts a message together from the bytes that come. A block grows with what has come, so that a large number in an
/// envelope costs nothing by itself.
class MessageAssembler {
public:
    void setLimits(uint64_t p_maxMessageSize, uint32_t p_maxHeaderSize) {
        m_maxMessageSize = p_maxMessageSize;
        m_maxHeaderSize = p_maxHeaderSize;
    }
    /// Takes bytes up to the end of the message; gives how many. Fewer than offered: the message is whole, or refused.
    size_t feed(const unsigned char* p_bytes, size_t p_size);
    /// Where the next bytes of the body belong, for reading without a copy; null while fewer than p_atLeast are
    /// missing.
    unsigned char* getSpace(size_t p_atLeast, size_t& p_size);
    /// Counts bytes that were written there.
    void addSpace(size_t p_size) { m_body.add(p_size); }

    bool isEmpty() const { return m_envelopeSize == 0; }
    bool isWhole() const {
        return m_reason == ZYR_TRANSPORT_CLOSE_NONE && m_envelopeSize == MessageEnvelope::SIZE &&
               m_body.getSize() == getBodySize();
    }
    /// Why the message was refused; NONE while it was not.
    TransportCloseReasonEnum getReason() const { return m_reason; }
    const char* getFailure() const { return m_failure; }
    /// The whole message, which the caller owns; the next one begins.
    DataMessage* take(bool& p_hasObject);
    void clear();

private:
    uint64_t getBodySize() const { return m_envelope.m_headerSize + m_envelope.m_payloadSize; }
    bool refuse(TransportCloseReasonEnum p_reason, const char* p_failure);
    bool readEnvelope();
    bool makeRoom();

    uint64_t m_maxMessageSize = 0;
    uint32_t m_maxHeaderSize = 0;
    unsigned char m_envelopeBytes[MessageEnvelope::SIZE];
    size_t m_envelopeSize = 0;
    MessageEnvelope m_envelope;
    ByteBlock m_body;
    TransportCloseReasonEnum m_reason = ZYR_TRANSPORT_CLOSE_NONE;
    const char* m_failure = "";
};

} // namespace zyr
