#include "picture_module/zyr_frame_levels.h"

#include "picture_module/zyr_diffmap_level.h"
#include "picture_module/zyr_image_level.h"
#include "picture_module/zyr_image_state.h"
#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/serialization/zyr_byte_stream.h"
#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template class RecordWalker<PackedFrameState>;

void UnpackedFrameDataLevel::Reserved::setSystemMemory(IImage* p_systemMemory) {
    m_level->m_systemMemory = Ref<IImage>::share(p_systemMemory);
}

void UnpackedFrameDataLevel::Reserved::setGPUMemory(ISharedTexture* p_gpuMemory) {
    m_level->m_gpuMemory = Ref<ISharedTexture>::share(p_gpuMemory);
}

void UnpackedFrameDataLevel::Reserved::setDiffmap(IDiffmap* p_diffmap) {
    m_level->m_diffmap = Ref<IDiffmap>::share(p_diffmap);
}

IImage* UnpackedFrameDataLevel::getSystemMemory(bool_t p_addReference, bool_t p_existing) const {
    if (!m_systemMemory && !p_existing && m_gpuMemory) {
        Ref<IImage> image = Ref<IImage>::adopt(new Image);
        if (m_gpuMemory->copyToSystemMemory(image.get())) {
            m_systemMemory = std::move(image);
        }
    }
    // Whoever takes the image may be about to code it, in its even size.
    const ImageLevel* ownImage = ImageLevel::findIn(m_systemMemory.get());
    if (ownImage != nullptr) {
        ownImage->fillPadding();
    }
    return m_systemMemory.get(p_addReference);
}

ISharedTexture* UnpackedFrameDataLevel::getGPUMemory(bool_t p_addReference) const {
    return m_gpuMemory.get(p_addReference);
}

IDiffmap* UnpackedFrameDataLevel::getDiffmap(bool_t p_addReference) const {
    return m_diffmap.get(p_addReference);
}

void UnpackedFrameDataLevel::init_This() {
    m_width = 0;
    m_height = 0;
    m_videoFrameID = 0;
}

void UnpackedFrameDataLevel::release_This() {
    m_systemMemory.clear();
    m_gpuMemory.clear();
    m_diffmap.clear();
}

void UnpackedFrameDataLevel::copy_This(const IUnpackedFrameData* p_src) {
    m_width = p_src->getWidth();
    m_height = p_src->getHeight();
    m_videoFrameID = p_src->getVideoFrameID();
    m_systemMemory = Ref<IImage>::share(p_src->getSystemMemory(0, 1));
    m_gpuMemory = Ref<ISharedTexture>::share(p_src->getGPUMemory(0));
    m_diffmap = Ref<IDiffmap>::share(p_src->getDiffmap(0));
}

bool_t UnpackedFrameDataLevel::readSerialized_This(IDeserializer*) {
    return 0;
}

bool_t UnpackedFrameDataLevel::writeSerialized_This(ISerializer*, bool_t, bool_t, bool_t& p_result) {
    p_result = 0;
    return 0;
}

void PackedFrameDataLevel::Reserved::setDiffmap(IDiffmap* p_diffmap) {
    m_level->m_diffmap = Ref<IDiffmap>::share(p_diffmap);
}

IDiffmap* PackedFrameDataLevel::getDiffmap(bool_t p_addReference) const {
    return m_diffmap.get(p_addReference);
}

void PackedFrameDataLevel::init_This() {
    m_width = 0;
    m_height = 0;
    m_videoFrameID = 0;
    m_uncompressedSize = 0;
}

void PackedFrameDataLevel::release_This() {
    m_packedData.clear();
    m_diffmap.clear();
}

void PackedFrameDataLevel::copy_This(const IPackedFrameData* p_src) {
    m_width = p_src->getWidth();
    m_height = p_src->getHeight();
    m_videoFrameID = p_src->getVideoFrameID();
    m_uncompressedSize = p_src->getUncompressedSize();
    m_packedData = *p_src->getPackedData();
    m_diffmap = Ref<IDiffmap>::share(p_src->getDiffmap(0));
}

static const String& getPackedDataKey() {
    static const String& key = makePermanent<String>("packedData");
    return key;
}

static const String& getDiffmapKey() {
    static const String& key = makePermanent<String>("diffmap");
    return key;
}

bool_t PackedFrameDataLevel::readSerialized_This(IDeserializer* p_deserializer) {
    static uint32_t cache = 0;
    PackedFrameState state;
    if (!state.readSerialized_This(p_deserializer) ||
        !readBytes(p_deserializer, getPackedDataKey(), cache, m_packedData)) {
        return 0;
    }
    m_width = state.m_width;
    m_height = state.m_height;
    m_videoFrameID = state.m_videoFrameID;
    m_uncompressedSize = state.m_uncompressedSize;
    bool_t isFound = 0;
    if (!p_deserializer->enterGroup(getDiffmapKey(), isFound) || !isFound) {
        return !isFound;
    }
    Diffmap* diffmap = new Diffmap;
    const bool_t isRead = diffmap->readSerialized(p_deserializer);
    // An empty map stands for none.
    if (isRead && diffmap->getData() != nullptr) {
        m_diffmap = Ref<IDiffmap>::share(diffmap);
    }
    diffmap->release();
    return p_deserializer->leaveGroup() && isRead;
}

bool_t PackedFrameDataLevel::writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                                                  bool_t& p_result) {
    PackedFrameState state;
    state.m_width = m_width;
    state.m_height = m_height;
    state.m_videoFrameID = m_videoFrameID;
    state.m_uncompressedSize = m_uncompressedSize;
    p_result = state.writeSerialized_This(p_serializer, p_firstPass, p_headerPass, p_result) &&
               writeBytes(p_serializer, getPackedDataKey(), p_firstPass, p_headerPass, m_packedData.getData(),
                          m_packedData.getSize());
    if (!p_result || (!p_headerPass && p_firstPass && !p_serializer->isBinaryFormat())) {
        return p_result;
    }
    Diffmap empty;
    IDiffmap* diffmap = m_diffmap ? m_diffmap.get() : &empty;
    const String& typeName = zyr_getNameAssociatedToType(static_cast<const IDiffmap*>(nullptr));
    bool_t isWritten = 1;
    if (p_headerPass) {
        p_result = p_serializer->beginHeaderStructure(typeName) &&
                   diffmap->writeSerialized(p_serializer, 1, isWritten) && p_serializer->endHeaderStructure() &&
                   p_serializer->writeHeaderField(getDiffmapKey(), ZYR_HEADER_FIELD_RECORD, 0, typeName);
    } else {
        p_result = p_serializer->beginStructure(getDiffmapKey(), 0) &&
                   diffmap->writeSerialized(p_serializer, 0, isWritten) && p_serializer->endStructure();
    }
    return p_result;
}

} // namespace zyr
