#include "core_module/resources/zyr_resource_level.h"

#include "core_module/zyr_core_class.h"
#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template class RecordWalker<ResourceState>;
template class RecordWalker<ResourceIdentity>;

void Thumbnails::collectReferences(HashMultiSet<String, GUID_t>& p_references) const {
    for (const auto& entry : m_ids) {
        if (!entry.m_second.m_guid.isNull()) {
            p_references.add(String::getConstEmpty(), entry.m_second.m_guid);
        }
    }
}

bool_t Thumbnails::replaceGUIDs(const HashMap<GUID_t, GUID_t>& p_replacements) {
    bool_t replaced = 0;
    for (auto& entry : m_ids) {
        const auto replacement = p_replacements.findConst(entry.m_second.m_guid);
        if (replacement != p_replacements.endConst() && !entry.m_second.m_guid.isNull()) {
            entry.m_second.m_guid = replacement->m_second;
            replaced = 1;
        }
    }
    return replaced;
}

Array<NamedResourceID> Thumbnails::toArray() const {
    Array<NamedResourceID> thumbnails;
    for (const auto& entry : m_ids) {
        thumbnails.pushBack(NamedResourceID(entry.m_first, entry.m_second.m_guid, entry.m_second.m_subDataID));
    }
    return thumbnails;
}

void Thumbnails::fromArray(const Array<NamedResourceID>& p_thumbnails) {
    m_ids.clear();
    for (size_t i = 0; i < p_thumbnails.getSize(); i++) {
        const NamedResourceID& thumbnail = p_thumbnails.getData()[i];
        m_ids.pushBack(thumbnail.m_name, ResourceID(thumbnail.m_guid, thumbnail.m_subDataID), nullptr);
    }
}

ZYR_DEFINE_CORE_CLASS(Resource)

} // namespace zyr
