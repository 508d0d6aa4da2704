#include "core_module/resources/zyr_content_digest.h"

#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/storage/zyr_load_save.h"

namespace zyr {

static bool_t computePackedDigest(IDynamicResource* p_resource, GUID_t& p_digest) {
    const bool mustPack =
        p_resource->isContentDirty() && !p_resource->isReadOnly() && p_resource->getUnpackedResource(0) != nullptr;
    if (mustPack && !p_resource->packResourceToPackedData()) {
        return 0;
    }
    const Array<unsigned char>* data = p_resource->getPackedData();
    zyr_generateGUIDFromXXHash128(p_digest, data->getData(), data->getSize());
    return 1;
}

bool_t computeContentDigest(IResource* p_resource, GUID_t& p_digest) {
    if (IDynamicResource* dynamicResource = asInterface<IDynamicResource>(p_resource)) {
        return computePackedDigest(dynamicResource, p_digest);
    }
    const Ref<IObject> object = Ref<IObject>::adopt(p_resource->clone());
    IResource* content = static_cast<IResource*>(object.get());
    content->clearGUID(0);
    content->setContentDigest(GUID_t());
    content->setDirtyContent(0);
    // Else a stand-in would be saved in its place.
    content->setDeferredFile(String::getConstEmpty());
    content->setCompressionInfo(nullptr);
    Array<unsigned char> data;
    if (!zyr_saveToData(content, data, "raw", 0, String::getConstEmpty())) {
        return 0;
    }
    zyr_generateGUIDFromXXHash128(p_digest, data.getData(), data.getSize());
    return 1;
}

} // namespace zyr
