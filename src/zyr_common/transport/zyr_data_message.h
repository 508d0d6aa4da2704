/// A message that came over a transport. Belongs to whoever received it, by one reference. Not thread safe apart from
/// the count.
#pragma once

#include "zyr_common/memory/zyr_ref_counted_data.h"

namespace zyr {

#pragma pack(push, 1)

/// The order of the virtual operations and of the fields is a contract between separately built modules.
class DataMessage : public RefCountedData {
public:
    /// Takes over p_block, a block of the framework's heap that holds the header, and the payload right behind it; null
    /// where both are empty.
    DataMessage(uint32_t p_type, uint32_t p_id, unsigned char* p_block, uint32_t p_headerSize, uint64_t p_payloadSize);
    DataMessage(const DataMessage&) = delete;
    DataMessage& operator=(const DataMessage&) = delete;
    ~DataMessage() override;

    /// What the message is about; the two ends agree on the numbers.
    uint32_t getType() const { return m_type; }
    /// The sender's running number, from 1 on.
    uint32_t getID() const { return m_id; }
    /// The bytes belong to the message and stay as long as it does. Header and payload lie in one block, the payload
    /// behind the header; both may be empty.
    const unsigned char* getHeader() const { return m_block; }
    uint32_t getHeaderSize() const { return m_headerSize; }
    const unsigned char* getPayload() const { return m_block + m_headerSize; }
    /// The same to be changed in place, which the sender doesn't see.
    unsigned char* getMutablePayload() { return m_block + m_headerSize; }
    uint64_t getPayloadSize() const { return m_payloadSize; }
    /// The object that receiveMessageObject restored from the header; null for other messages. Belongs to the message.
    IObject* getObject() const { return m_object; }
    /// Takes over the caller's reference.
    void setObject(IObject* p_object);

private:
    uint32_t m_type;
    uint32_t m_id;
    /// in bytes, like the payload's
    uint32_t m_headerSize;
    uint64_t m_payloadSize;
    /// owned; null where header and payload are empty
    unsigned char* m_block;
    IObject* m_object = nullptr;
};

#pragma pack(pop)

static_assert(sizeof(DataMessage) == sizeof(RefCountedData) + 36);

} // namespace zyr
