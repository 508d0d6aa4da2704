#include "zyr_common/memory/zyr_ref_counted_data.h"

namespace zyr {

RefCountedData* RefCountedData::clone() const {
    return new RefCountedData();
}

RefCountedData* RefCountedData::addRef() {
    zyr_interlockedIncrementUInt32(m_refCounter.m_value);
    return this;
}

void RefCountedData::release() {
    if (zyr_interlockedDecrementUInt32(m_refCounter.m_value) == 0xFFFFFFFF) {
        delete this;
    }
}

} // namespace zyr
