#include "zyr_common/storage/zyr_file_format_header.h"

#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template class RecordWalker<FileFormatHeader>;
template class RecordWalker<XmlFormatHeader>;

void XmlFormatHeader::init_This() {
    m_version = "1.0";
    m_encoding = "utf-8";
}

} // namespace zyr
