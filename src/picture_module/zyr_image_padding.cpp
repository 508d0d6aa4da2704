#include "picture_module/zyr_image_level.h"
#include "zyr_common/zyr_threading.h"

#include <cstring>

namespace zyr {

namespace {

/// No class bears it: only images of this module know it. It changes with what findIn's callers rely on.
const GUID_t& getModuleImageGUID() {
    static const GUID_t guid = [] {
        GUID_t value;
        GUID_t_fromString(value, "5f6d1c0a-93b2-4a7e-8c11-d0a4e7b2f359");
        return value;
    }();
    return guid;
}

void copyWhereDifferent(uint8_t* p_target, const uint8_t* p_source, size_t p_size) {
    if (memcmp(p_target, p_source, p_size) != 0) {
        memcpy(p_target, p_source, p_size);
    }
}

} // namespace

IObject* ImageLevel::findInterfaceObjectByClassGUID(const GUID_t& p_classGUID) const {
    if (p_classGUID == getModuleImageGUID()) {
        return const_cast<ImageLevel*>(this);
    }
    return LevelBase::findInterfaceObjectByClassGUID(p_classGUID);
}

const ImageLevel* ImageLevel::findIn(const IImage* p_image) {
    return p_image != nullptr
               ? static_cast<const ImageLevel*>(p_image->findInterfaceObjectByClassGUID(getModuleImageGUID()))
               : nullptr;
}

void ImageLevel::fillPadding() const {
    uint8_t* data = m_block.m_data;
    const bool isOdd = ((m_width | m_height) & 1) != 0;
    // Codecs read whole bytes.
    if (!isOdd || data == nullptr || m_bitsPerPixel % 8 != 0) {
        return;
    }
    const size_t pixelSize = m_bitsPerPixel / 8;
    const size_t rowSize = m_width * pixelSize;
    const uint32_t evenHeight = (m_height + 1) & ~1u;
    // Two streams may read one picture: the second one finds everything in place and writes nothing below the first.
    static Mutex mutex;
    const ScopedLock lock(mutex);
    if (evenHeight != m_height) {
        copyWhereDifferent(data + size_t{m_height} * m_pitch, data + size_t{m_height - 1} * m_pitch, rowSize);
    }
    if (m_width % 2 != 0) {
        // Where a caller's pitch leaves no room, all rows but the last are followed by the picture itself.
        const bool hasRoom = m_pitch >= rowSize + pixelSize;
        for (uint32_t y = hasRoom ? 0 : evenHeight - 1; y < evenHeight; ++y) {
            uint8_t* end = data + size_t{y} * m_pitch + rowSize;
            copyWhereDifferent(end, end - pixelSize, pixelSize);
        }
    }
}

} // namespace zyr
