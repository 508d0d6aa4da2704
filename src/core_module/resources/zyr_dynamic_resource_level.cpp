#include "core_module/resources/zyr_dynamic_resource_level.h"

#include "core_module/resources/zyr_content_digest.h"
#include "core_module/zyr_core_class.h"
#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/serialization/zyr_byte_stream.h"
#include "zyr_common/serialization/zyr_record_walker.h"
#include "zyr_common/storage/zyr_load_save.h"
#include "zyr_common/storage/zyr_payload_wrapper.h"

#include <utility>

namespace zyr {

template class RecordWalker<DynamicResourceState>;

namespace {

const String& getPackedDataKey() {
    static const String& key = makePermanent<String>("packedData");
    return key;
}

const String& getPackedFormat() {
    static const String& format = makePermanent<String>("zbf");
    return format;
}

/// The object with a reference if it is a resource; otherwise the reference is given back.
Ref<IResource> adoptResource(IObject* p_object) {
    Ref<IObject> object = Ref<IObject>::adopt(p_object);
    IResource* resource = asInterface<IResource>(object.get());
    return resource != nullptr ? Ref<IResource>::adopt(static_cast<IResource*>(object.release())) : Ref<IResource>();
}

Ref<IResource> loadResource(const Array<unsigned char>& p_packedData) {
    return adoptResource(zyr_loadFromData(p_packedData, getPackedFormat(), String::getConstEmpty()));
}

/// Whether the data begin as a saved object does: other bytes are not worth a try and its lines in the log.
bool isPackedResource(const Array<unsigned char>& p_packedData) {
    return p_packedData.getSize() > c_payloadWrapperSize &&
           zyr_getPayloadFormat(p_packedData.getData()) == PayloadFormat::ZBF;
}

/// Lives for the time in which a walker is inside the content of a resource. What is unpacked inside of what was
/// unpacked stays in memory until the walk comes back, so the depth is bounded.
class ContentWalk {
public:
    ContentWalk() { s_depth++; }
    ~ContentWalk() { s_depth--; }
    ContentWalk(const ContentWalk&) = delete;
    ContentWalk& operator=(const ContentWalk&) = delete;

    bool isAllowed() const {
        if (s_depth == MAX_DEPTH + 1) {
            ZYR_LOG_WARN("Unable to enter a resource: %u are packed inside each other", MAX_DEPTH);
        }
        return s_depth <= MAX_DEPTH;
    }

private:
    static constexpr uint32_t MAX_DEPTH = 64;
    static thread_local uint32_t s_depth;
};

thread_local uint32_t ContentWalk::s_depth = 0;

} // namespace

void DynamicResourceLevel::setUnpackedResource(IResource* p_resource) {
    for (IResource* inner = p_resource; inner != nullptr;) {
        if (inner->getTLIObject() == getTLIObject()) {
            ZYR_LOG_WARN("Unable to set the unpacked resource of %s: it contains this resource", getName().getData());
            return;
        }
        IDynamicResource* holder = asInterface<IDynamicResource>(inner);
        inner = holder != nullptr ? holder->getUnpackedResource(0) : nullptr;
    }
    m_unpacked = Ref<IResource>::share(p_resource);
    if (p_resource == nullptr) {
        return;
    }
    followContentGUID();
    if (getGUID().isNull()) {
        useGUID(p_resource->getGUID());
    }
    setDirtyContent(1);
}

bool_t DynamicResourceLevel::unpackResourceFromPackedData() {
    Ref<IResource> resource = loadResource(m_packedData);
    if (!resource) {
        ZYR_LOG_WARN("Unable to unpack resource %s: its data are no resource", getName().getData());
        return 0;
    }
    if (!m_state.m_resourceGUID.isNull() && resource->getGUID() != m_state.m_resourceGUID) {
        ZYR_LOG_WARN("Unable to unpack resource %s: its data are the resource %s", getName().getData(),
                     String::newFromGUID(resource->getGUID()).getData());
        return 0;
    }
    m_unpacked = std::move(resource);
    followContentGUID();
    setDirtyContent(0);
    return 1;
}

bool_t DynamicResourceLevel::packResourceToPackedData() {
    if (!m_unpacked) {
        ZYR_LOG_WARN("Unable to pack resource %s: it has no unpacked resource", getName().getData());
        return 0;
    }
    if (isReadOnly()) {
        ZYR_LOG_WARN("Unable to pack resource %s: it is read-only", getName().getData());
        return 0;
    }
    Array<unsigned char> packedData;
    if (!zyr_saveToData(m_unpacked.get(), packedData, getPackedFormat(), 0, String::getConstEmpty())) {
        return 0;
    }
    m_packedData = packedData;
    followContentGUID();
    zyr_generateGUIDFromXXHash128(getMutableContentDigest(), m_packedData.getData(), m_packedData.getSize());
    setDirtyContent(0);
    return 1;
}

bool_t DynamicResourceLevel::prepareToStore() {
    IDynamicResource* self = static_cast<IDynamicResource*>(getTLIObject());
    return !m_unpacked || !self->isContentDirty() || self->isReadOnly() || self->packResourceToPackedData();
}

void DynamicResourceLevel::followContentGUID() {
    m_state.m_resourceGUID = m_unpacked->getGUID();
}

Ref<IResource> DynamicResourceLevel::openContent() const {
    if (m_unpacked || !isPackedResource(m_packedData)) {
        return Ref<IResource>::share(m_unpacked.get());
    }
    return loadResource(m_packedData);
}

template <typename Function> void DynamicResourceLevel::readContent(Function p_function) const {
    const ContentWalk walk;
    const Ref<IResource> content = walk.isAllowed() ? openContent() : Ref<IResource>();
    if (content) {
        p_function(content.get());
    }
}

template <typename Function> void DynamicResourceLevel::changeContent(Function p_function) {
    const ContentWalk walk;
    if (isReadOnly() || !walk.isAllowed()) {
        return;
    }
    m_unpacked = openContent();
    if (m_unpacked) {
        p_function(m_unpacked.get());
        followContentGUID();
        setDirtyContent(1);
    }
}

void DynamicResourceLevel::collectResourceGUIDReferences(bool_t p_deep,
                                                         HashMultiSet<String, GUID_t>& p_references) const {
    Base::collectResourceGUIDReferences(p_deep, p_references);
    if (p_deep) {
        readContent([&](IResource* p_content) { p_content->collectResourceGUIDReferences(1, p_references); });
    }
}

void DynamicResourceLevel::collectGUIDsWhereAvailable(bool_t p_deep, List<GUID_t>& p_guids) const {
    Base::collectGUIDsWhereAvailable(p_deep, p_guids);
    if (p_deep) {
        readContent([&](IResource* p_content) { p_content->collectGUIDsWhereAvailable(1, p_guids); });
    }
}

void DynamicResourceLevel::replaceGUIDsWhereAvailable(bool_t p_deep, HashMap<GUID_t, GUID_t>& p_replacements) {
    Base::replaceGUIDsWhereAvailable(p_deep, p_replacements);
    if (p_deep) {
        changeContent([&](IResource* p_content) { p_content->replaceGUIDsWhereAvailable(1, p_replacements); });
    }
}

void DynamicResourceLevel::clearGUID(bool_t p_deep) {
    Base::clearGUID(p_deep);
    if (p_deep) {
        changeContent([](IResource* p_content) { p_content->clearGUID(1); });
    }
}

void DynamicResourceLevel::regenerateGUIDsWhereAvailable(bool_t p_deep) {
    Base::regenerateGUIDsWhereAvailable(p_deep);
    if (p_deep) {
        changeContent([](IResource* p_content) { p_content->regenerateGUIDsWhereAvailable(1); });
    }
}

void DynamicResourceLevel::replaceGUIDsWithFakeCounterGUIDs(bool_t p_deep) {
    Base::replaceGUIDsWithFakeCounterGUIDs(p_deep);
    if (p_deep) {
        changeContent([](IResource* p_content) { p_content->replaceGUIDsWithFakeCounterGUIDs(1); });
    }
}

void DynamicResourceLevel::init_This() {
    Base::init_This();
    m_packedData.clear();
}

void DynamicResourceLevel::release_This() {
    Base::release_This();
    m_unpacked.clear();
}

void DynamicResourceLevel::copy_This(const IDynamicResource* p_src) {
    setResourceGUID(p_src->getResourceGUID());
    setReadOnly(p_src->isReadOnly());
    setPackedData(*p_src->getPackedData());
    const IResource* unpacked = p_src->getUnpackedResource(0);
    m_unpacked = unpacked != nullptr ? adoptResource(unpacked->clone()) : Ref<IResource>();
}

bool_t DynamicResourceLevel::readSerialized_This(IDeserializer* p_deserializer) {
    static uint32_t cache = 0;
    m_unpacked.clear();
    return Base::readSerialized_This(p_deserializer) &&
           readBytes(p_deserializer, getPackedDataKey(), cache, m_packedData);
}

bool_t DynamicResourceLevel::writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                                                  bool_t& p_result) {
    p_result = Base::writeSerialized_This(p_serializer, p_firstPass, p_headerPass, p_result) &&
               writeBytes(p_serializer, getPackedDataKey(), p_firstPass, p_headerPass, m_packedData.getData(),
                          m_packedData.getSize());
    return p_result;
}

ZYR_DEFINE_CORE_CLASS(DynamicResource)

} // namespace zyr
