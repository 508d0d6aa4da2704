#include "zyr_common/services/zyr_format_info_implementation.h"

#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template class RecordWalker<DataFormatInfoState>;
template class RecordWalker<NativeFormatInfoState>;
template class RecordWalker<CompressionInfoState>;
template class RecordWalker<Lz4CompressionInfoState>;
template class RecordWalker<ZipCompressionInfoState>;

static const String& getOriginalFileKey() {
    static const String key("originalFile");
    return key;
}

bool_t readOriginalFile(IDeserializer* p_deserializer, Array<unsigned char>& p_originalFile) {
    static uint32_t cache = 0;
    Array<uint32_t> words;
    if (!p_deserializer->readUInt32Array(getOriginalFileKey(), cache, words, 0)) {
        return 0;
    }
    if (words.isEmpty()) {
        return 1;
    }
    const size_t size = words.getData()[0];
    if (size > (words.getSize() - 1) * sizeof(uint32_t)) {
        ZYR_LOG_WARN("Unable to read original file: %zu bytes are stored as %zu words", size, words.getSize() - 1);
        return 0;
    }
    p_originalFile.resize(size);
    if (size != 0) {
        memcpy(p_originalFile.getData(), words.getData() + 1, size);
    }
    return 1;
}

bool_t writeOriginalFile(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                         const Array<unsigned char>& p_originalFile) {
    if (!p_headerPass && p_firstPass && !p_serializer->isBinaryFormat()) {
        return 1;
    }
    const size_t size = p_originalFile.getSize();
    if (size > 0xFFFFFFFF) {
        ZYR_LOG_WARN("Unable to write original file: it has %zu bytes", size);
        return 0;
    }
    Array<uint32_t> words;
    words.resize(1 + (size + sizeof(uint32_t) - 1) / sizeof(uint32_t));
    memset(words.getData(), 0, words.getSize() * sizeof(uint32_t));
    words.getData()[0] = static_cast<uint32_t>(size);
    if (size != 0) {
        memcpy(words.getData() + 1, p_originalFile.getData(), size);
    }
    const uint32_t count = static_cast<uint32_t>(words.getSize());
    bool_t result = 1;
    if (p_headerPass) {
        return p_serializer->declareUInt32Array(getOriginalFileKey(), count, words.getData(), result);
    }
    return p_serializer->writeUInt32Array(getOriginalFileKey(), count, words.getData(), 0, 0);
}

} // namespace zyr
