#include "core_module/formats/zyr_zip_compression_info_level.h"

#include "core_module/zyr_core_class.h"
#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template class RecordWalker<ZipCompressionInfoState>;

ZipCompressionInfoLevel::ZipCompressionInfoLevel() {
    setFormatName("zip");
}

void ZipCompressionInfoLevel::init_This() {
    StateLevel::init_This();
    setFormatName("zip");
}

void ZipCompressionInfoLevel::copy_This(const IZipCompressionInfo* p_src) {
    setLevel(p_src->getLevel());
}

ZYR_DEFINE_CORE_CLASS(ZipCompressionInfo)

} // namespace zyr
