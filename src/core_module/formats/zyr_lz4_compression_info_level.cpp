#include "core_module/formats/zyr_lz4_compression_info_level.h"

#include "core_module/zyr_core_class.h"
#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template class RecordWalker<Lz4CompressionInfoState>;

Lz4CompressionInfoLevel::Lz4CompressionInfoLevel() {
    setFormatName("lz4");
}

void Lz4CompressionInfoLevel::init_This() {
    StateLevel::init_This();
    setFormatName("lz4");
}

void Lz4CompressionInfoLevel::copy_This(const ILz4CompressionInfo* p_src) {
    setAcceleration(p_src->getAcceleration());
}

ZYR_DEFINE_CORE_CLASS(Lz4CompressionInfo)

} // namespace zyr
