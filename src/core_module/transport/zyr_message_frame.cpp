#include "core_module/transport/zyr_message_frame.h"

namespace zyr {

namespace {

// What is set aside for a message of which nothing has come yet.
constexpr uint64_t FIRST_ROOM = 1 << 20;

template <typename T> void put(unsigned char* p_bytes, T p_number) {
    memcpy(p_bytes, &p_number, sizeof(p_number));
}

template <typename T> T get(const unsigned char* p_bytes) {
    T number;
    memcpy(&number, p_bytes, sizeof(number));
    return number;
}

} // namespace

void MessageEnvelope::write(unsigned char* p_bytes) const {
    put(p_bytes, MAGIC);
    put(p_bytes + 4, m_type);
    put(p_bytes + 8, m_id);
    put(p_bytes + 12, m_headerSize | (m_hasObject ? HAS_OBJECT : 0));
    put(p_bytes + 16, m_payloadSize);
}

bool MessageEnvelope::read(const unsigned char* p_bytes) {
    const uint32_t headerSize = get<uint32_t>(p_bytes + 12);
    m_type = get<uint32_t>(p_bytes + 4);
    m_id = get<uint32_t>(p_bytes + 8);
    m_headerSize = headerSize & ~HAS_OBJECT;
    m_hasObject = (headerSize & HAS_OBJECT) != 0;
    m_payloadSize = get<uint64_t>(p_bytes + 16);
    return get<uint32_t>(p_bytes) == MAGIC;
}

bool MessageAssembler::refuse(TransportCloseReasonEnum p_reason, const char* p_failure) {
    m_reason = p_reason;
    m_failure = p_failure;
    return false;
}

bool MessageAssembler::readEnvelope() {
    if (!m_envelope.read(m_envelopeBytes)) {
        return refuse(ZYR_TRANSPORT_CLOSE_PROTOCOL, "the bytes are no message");
    }
    // The sum of both could wrap, also below a limit that stands for none.
    if (m_envelope.m_headerSize > m_maxHeaderSize || m_envelope.m_headerSize > m_maxMessageSize ||
        m_envelope.m_payloadSize > m_maxMessageSize - m_envelope.m_headerSize) {
        return refuse(ZYR_TRANSPORT_CLOSE_TOO_BIG, "the message is above the limit");
    }
    return true;
}

bool MessageAssembler::makeRoom() {
    const uint64_t total = getBodySize();
    if (m_body.getSize() < m_body.getCapacity() || m_body.getSize() == total) {
        return true;
    }
    const uint64_t doubled = m_body.getCapacity() != 0 ? uint64_t{m_body.getCapacity()} * 2 : FIRST_ROOM;
    return m_body.reserve(doubled < total ? doubled : total) ||
           refuse(ZYR_TRANSPORT_CLOSE_TOO_BIG, "there is no memory for the message");
}

size_t MessageAssembler::feed(const unsigned char* p_bytes, size_t p_size) {
    if (p_size == 0) {
        return 0;
    }
    size_t used = 0;
    if (m_envelopeSize < MessageEnvelope::SIZE) {
        const size_t missing = MessageEnvelope::SIZE - m_envelopeSize;
        used = p_size < missing ? p_size : missing;
        memcpy(m_envelopeBytes + m_envelopeSize, p_bytes, used);
        m_envelopeSize += used;
        if (m_envelopeSize < MessageEnvelope::SIZE || !readEnvelope()) {
            return used;
        }
    }
    while (m_reason == ZYR_TRANSPORT_CLOSE_NONE && used < p_size && m_body.getSize() < getBodySize() && makeRoom()) {
        const size_t room = m_body.getCapacity() - m_body.getSize();
        const size_t part = p_size - used < room ? p_size - used : room;
        m_body.append(p_bytes + used, part);
        used += part;
    }
    return used;
}

unsigned char* MessageAssembler::getSpace(size_t p_atLeast, size_t& p_size) {
    if (m_envelopeSize < MessageEnvelope::SIZE || m_reason != ZYR_TRANSPORT_CLOSE_NONE ||
        getBodySize() - m_body.getSize() < p_atLeast || !makeRoom()) {
        return nullptr;
    }
    p_size = m_body.getCapacity() - m_body.getSize();
    return m_body.getData() + m_body.getSize();
}

DataMessage* MessageAssembler::take(bool& p_hasObject) {
    p_hasObject = m_envelope.m_hasObject;
    DataMessage* message = new DataMessage(m_envelope.m_type, m_envelope.m_id, m_body.release(),
                                           m_envelope.m_headerSize, m_envelope.m_payloadSize);
    m_envelopeSize = 0;
    return message;
}

void MessageAssembler::clear() {
    m_body.clear();
    m_envelopeSize = 0;
    m_reason = ZYR_TRANSPORT_CLOSE_NONE;
}

} // namespace zyr
