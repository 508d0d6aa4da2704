#include "zyr_common/serialization/zyr_byte_stream.h"

#include "zyr_common/memory/zyr_report.h"

#include <cstring>

namespace zyr {

bool_t readBytes(IDeserializer* p_deserializer, const String& p_key, uint32_t& p_cache, Array<uint8_t>& p_bytes) {
    Array<uint32_t> words;
    p_bytes.clear();
    if (!p_deserializer->readUInt32Array(p_key, p_cache, words, 0)) {
        return 0;
    }
    if (words.isEmpty()) {
        return 1;
    }
    const size_t size = words.getData()[0];
    if (size > (words.getSize() - 1) * sizeof(uint32_t)) {
        ZYR_LOG_WARN("Unable to read %s: %zu bytes are stored as %zu words", p_key.getData(), size,
                     words.getSize() - 1);
        return 0;
    }
    if (size != 0) {
        p_bytes.pushBackRange(words.getData() + 1, size);
    }
    return 1;
}

bool_t writeBytes(ISerializer* p_serializer, const String& p_key, bool_t p_firstPass, bool_t p_headerPass,
                  const void* p_data, size_t p_size) {
    if (!p_headerPass && p_firstPass && !p_serializer->isBinaryFormat()) {
        return 1;
    }
    if (p_size > 0xFFFFFFFF) {
        ZYR_LOG_WARN("Unable to write %s: it has %zu bytes", p_key.getData(), p_size);
        return 0;
    }
    Array<uint32_t> words;
    words.resize(1 + (p_size + sizeof(uint32_t) - 1) / sizeof(uint32_t));
    words.getData()[words.getSize() - 1] = 0;
    words.getData()[0] = static_cast<uint32_t>(p_size);
    if (p_size != 0) {
        memcpy(words.getData() + 1, p_data, p_size);
    }
    const uint32_t count = static_cast<uint32_t>(words.getSize());
    bool_t result = 1;
    return p_headerPass ? p_serializer->declareUInt32Array(p_key, count, words.getData(), result)
                        : p_serializer->writeUInt32Array(p_key, count, words.getData(), 0, 0);
}

} // namespace zyr
