#include "core_module/resources/zyr_resources_pack_level.h"

#include "core_module/object_containers/zyr_list_of_objects_level.h"
#include "core_module/resources/zyr_pack_merger.h"
#include "core_module/resources/zyr_reference_unfolder.h"
#include "core_module/resources/zyr_stored_list.h"
#include "core_module/zyr_core_class.h"
#include "core_module/zyr_outer_layer.h"
#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template <typename K> IObject* makeHashMapOfObjects();

#pragma pack(push, 1)
/// An entry of the map of digests.
class DigestEntry : public Record<DigestEntry, GUIDDigestPair> {
public:
    GUID_t m_key;

    DigestEntry() = default;
    DigestEntry(const GUID_t& p_key, const GUIDDigestPair& p_pair) : Record(p_pair), m_key(p_key) {}

    static constexpr const char* c_typeName = "DigestEntry";
    static constexpr auto fields() { return zyr_fields(zyr_field("guid", &DigestEntry::m_key)); }
};

class StoredDigests : public Record<StoredDigests> {
public:
    Array<DigestEntry> m_entries;

    static constexpr const char* c_typeName = "StoredDigests";
    static constexpr auto fields() { return zyr_fields(zyr_field("guidToDigest", &StoredDigests::m_entries)); }
};
#pragma pack(pop)

template class RecordWalker<DigestEntry>;
template class RecordWalker<StoredDigests>;

namespace {

const String& getCategoriesKey() {
    static const String& key = makePermanent<String>("categories");
    return key;
}

bool_t writeDigests(const HashMap<GUID_t, GUIDDigestPair>& p_map, ISerializer* p_serializer, bool_t p_firstPass,
                    bool_t p_headerPass) {
    StoredDigests digests;
    for (const auto& entry : p_map) {
        digests.m_entries.pushBack(DigestEntry(entry.m_first, entry.m_second));
    }
    bool_t result = 1;
    return digests.writeSerialized_This(p_serializer, p_firstPass, p_headerPass, result);
}

bool_t readDigests(HashMap<GUID_t, GUIDDigestPair>& p_map, IDeserializer* p_deserializer) {
    StoredDigests digests;
    if (!digests.readSerialized_This(p_deserializer)) {
        return 0;
    }
    p_map.clear();
    for (size_t i = 0; i < digests.m_entries.getSize(); i++) {
        p_map.pushBack(digests.m_entries[i].m_key, digests.m_entries[i], nullptr);
    }
    return 1;
}

} // namespace

Ref<IHashMapOfObjects<String>> makeCategoryMap() {
    return Ref<IHashMapOfObjects<String>>::adopt(
        static_cast<IHashMapOfObjects<String>*>(makeHashMapOfObjects<String>()));
}

ResourcesPackLevel::ResourcesPackLevel() : m_categories(makeCategoryMap()) {}

bool_t ResourcesPackLevel::insertCategory(IResourcesCategory* p_category) {
    if (p_category == nullptr) {
        ZYR_LOG_WARN("Unable to add a category: it is null");
        return 0;
    }
    if (m_categories->count(p_category->getName()) != 0) {
        ZYR_LOG_WARN("Unable to add category %s: the name is taken", p_category->getName().getData());
        return 0;
    }
    return m_categories->pushBack(p_category->getName(), p_category, nullptr);
}

IResourcesCategory* ResourcesPackLevel::getCategory(bool_t p_addReference, const String& p_name) const {
    const auto entry = m_categories->findConst(p_name);
    IResourcesCategory* category =
        entry != m_categories->endConst() ? asInterface<IResourcesCategory>(entry->m_second) : nullptr;
    if (p_addReference && category != nullptr) {
        category->addRef();
    }
    return category;
}

IResource* ResourcesPackLevel::findResource(const GUID_t& p_guid) const {
    IResource* resource = nullptr;
    forEachCategory(getOuterLayer<IResourcesPack>(this), [&](const IResourcesCategory* p_category) {
        resource = resource != nullptr ? resource : p_category->getResource(0, p_guid);
    });
    return resource;
}

bool_t ResourcesPackLevel::unfoldCollectedGUIDReferences(const HashMultiSet<String, GUID_t>& p_collected,
                                                         HashMultiSet<String, GUID_t>& p_unfolded) const {
    return ReferenceUnfolder(getOuterLayer<IResourcesPack>(this), p_unfolded).unfold(p_collected);
}

bool_t ResourcesPackLevel::updateResourceContentDigest(const GUID_t& p_guid) const {
    IResource* resource = findResource(p_guid);
    GUID_t digest;
    if (resource == nullptr || !computeContentDigest(resource, digest)) {
        return 0;
    }
    resource->setContentDigest(digest);
    resource->setDirtyContent(0);
    const GUIDDigestPair pair(resource->getName(), p_guid, digest);
    GUIDDigestPair* existing = nullptr;
    if (!m_guidToDigestMap.pushBack(p_guid, pair, &existing)) {
        *existing = pair;
    }
    return 1;
}

bool_t ResourcesPackLevel::mergeResourcesPack(const IResourcesPack* p_src, HashMap<GUID_t, GUID_t>& p_replacements) {
    if (p_src == nullptr) {
        ZYR_LOG_WARN("Unable to merge a resources pack: it is null");
        return 0;
    }
    IResourcesPack* self = getOuterLayer<IResourcesPack>(this);
    return p_src->getTLIObject() == self || PackMerger(self, p_replacements).merge(p_src);
}

void ResourcesPackLevel::collectResourceGUIDReferences(bool_t p_deep,
                                                       HashMultiSet<String, GUID_t>& p_references) const {
    Base::collectResourceGUIDReferences(p_deep, p_references);
    if (p_deep) {
        m_categories->collectResourceGUIDReferences(1, p_references);
    }
}

void ResourcesPackLevel::collectGUIDsWhereAvailable(bool_t p_deep, List<GUID_t>& p_guids) const {
    Base::collectGUIDsWhereAvailable(p_deep, p_guids);
    if (p_deep) {
        forEachCategory(
            this, [&](const IResourcesCategory* p_category) { p_category->collectGUIDsWhereAvailable(1, p_guids); });
    }
}

void ResourcesPackLevel::replaceGUIDsWhereAvailable(bool_t p_deep, HashMap<GUID_t, GUID_t>& p_replacements) {
    Base::replaceGUIDsWhereAvailable(p_deep, p_replacements);
    if (p_deep) {
        forEachCategory(
            this, [&](IResourcesCategory* p_category) { p_category->replaceGUIDsWhereAvailable(1, p_replacements); });
        replaceDigestGUIDs(p_replacements);
    }
}

void ResourcesPackLevel::replaceDigestGUIDs(const HashMap<GUID_t, GUID_t>& p_replacements) {
    HashMap<GUID_t, GUIDDigestPair> map;
    const auto replace = [&](const GUID_t& p_guid) {
        const auto replacement = p_replacements.findConst(p_guid);
        return replacement != p_replacements.endConst() ? replacement->m_second : p_guid;
    };
    for (const auto& entry : m_guidToDigestMap) {
        const GUIDDigestPair pair(entry.m_second.m_name, replace(entry.m_second.m_guid), entry.m_second.m_digest);
        map.pushBack(replace(entry.m_first), pair, nullptr);
    }
    m_guidToDigestMap.swap(map);
}

void ResourcesPackLevel::clearGUID(bool_t p_deep) {
    Base::clearGUID(p_deep);
    if (p_deep) {
        forEachCategory(this, [](IResourcesCategory* p_category) { p_category->clearGUID(1); });
        m_guidToDigestMap.clear();
    }
}

void ResourcesPackLevel::regenerateGUIDsWhereAvailable(bool_t p_deep) {
    Base::regenerateGUIDsWhereAvailable(p_deep);
    if (p_deep) {
        forEachCategory(this, [](IResourcesCategory* p_category) { p_category->regenerateGUIDsWhereAvailable(1); });
        m_guidToDigestMap.clear();
    }
}

void ResourcesPackLevel::replaceGUIDsWithFakeCounterGUIDs(bool_t p_deep) {
    Base::replaceGUIDsWithFakeCounterGUIDs(p_deep);
    if (p_deep) {
        forEachCategory(this, [](IResourcesCategory* p_category) { p_category->replaceGUIDsWithFakeCounterGUIDs(1); });
        m_guidToDigestMap.clear();
    }
}

void ResourcesPackLevel::release_This() {
    m_categories->clear();
    m_guidToDigestMap.clear();
}

void ResourcesPackLevel::copy_This(const IResourcesPack* p_src) {
    m_categories->setItems(p_src->getCategories(), 0);
    m_guidToDigestMap = *p_src->getGUIDToDigestMap();
}

bool_t ResourcesPackLevel::readSerialized_This(IDeserializer* p_deserializer) {
    Ref<IListOfObjects> categories;
    if (!readList(p_deserializer, getCategoriesKey(), zyr_getInterfaceGUID<IResourcesCategory>(), categories)) {
        return 0;
    }
    if (categories) {
        m_categories->clear();
        for (auto it = categories->beginConst(); it != categories->endConst(); ++it) {
            if (!insertCategory(static_cast<IResourcesCategory*>(*it))) {
                return 0;
            }
        }
    }
    return readDigests(m_guidToDigestMap, p_deserializer);
}

bool_t ResourcesPackLevel::writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                                                bool_t& p_result) {
    // As a list: a category brings its name itself, so that the two cannot differ.
    const Ref<IListOfObjects> categories = Ref<IListOfObjects>::adopt(new ListOfObjects);
    forEachCategory(this, [&](IResourcesCategory* p_category) { categories->pushBack(p_category); });
    p_result = writeList(p_serializer, getCategoriesKey(), p_firstPass, p_headerPass, categories.get()) &&
               writeDigests(m_guidToDigestMap, p_serializer, p_firstPass, p_headerPass);
    return p_result;
}

ZYR_DEFINE_CORE_CLASS(ResourcesPack)

} // namespace zyr
