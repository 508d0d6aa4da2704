#include "zyr_common/transport/zyr_data_message.h"

#include "zyr_common/memory/zyr_memory.h"
#include "zyr_common/object/zyr_object.h"

namespace zyr {

DataMessage::DataMessage(uint32_t p_type, uint32_t p_id, unsigned char* p_block, uint32_t p_headerSize,
                         uint64_t p_payloadSize)
    : m_type(p_type), m_id(p_id), m_headerSize(p_headerSize), m_payloadSize(p_payloadSize), m_block(p_block) {}

DataMessage::~DataMessage() {
    setObject(nullptr);
    if (m_block != nullptr) {
        zyr_free(m_block);
    }
}

void DataMessage::setObject(IObject* p_object) {
    if (m_object != nullptr) {
        m_object->release();
    }
    m_object = p_object;
}

} // namespace zyr
