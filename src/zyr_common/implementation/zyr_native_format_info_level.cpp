#include "zyr_common/implementation/zyr_native_format_info_level.h"

#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/serialization/zyr_byte_stream.h"
#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template class RecordWalker<NativeFormatInfoState>;

static const String& getOriginalFileKey() {
    static const String& key = makePermanent<String>("originalFile");
    return key;
}

bool_t readOriginalFile(IDeserializer* p_deserializer, Array<unsigned char>& p_originalFile) {
    static uint32_t cache = 0;
    return readBytes(p_deserializer, getOriginalFileKey(), cache, p_originalFile);
}

bool_t writeOriginalFile(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                         const Array<unsigned char>& p_originalFile) {
    return writeBytes(p_serializer, getOriginalFileKey(), p_firstPass, p_headerPass, p_originalFile.getData(),
                      p_originalFile.getSize());
}

} // namespace zyr
