#include "zyr_common/transport/zyr_transport_features.h"

#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template class RecordWalker<TransportFeatures>;

void TransportFeatures::init_This() {
    Record::init_This();
    m_contentSecurityPolicy = "default-src 'self'; img-src 'self' blob: data:; worker-src 'self' blob:; "
                              "object-src 'none'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";
}

} // namespace zyr
