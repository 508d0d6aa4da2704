#include "core_module/resources/zyr_reference_unfolder.h"

#include "core_module/resources/zyr_resources_pack_level.h"
#include "zyr_common/memory/zyr_report.h"

namespace zyr {

ReferenceUnfolder::ReferenceUnfolder(const IResourcesPack* p_pack, HashMultiSet<String, GUID_t>& p_unfolded)
    : m_pack(p_pack), m_unfolded(p_unfolded) {
    forEachCategory(p_pack, [this](const IResourcesCategory* p_category) {
        forEachResource(p_category, [&](const IResource* p_resource) {
            if (!p_resource->getGUID().isNull()) {
                m_places.pushBack(p_resource->getGUID(), Place{p_category, p_resource}, nullptr);
            }
        });
    });
}

bool_t ReferenceUnfolder::unfold(const HashMultiSet<String, GUID_t>& p_collected) {
    // The caller may hand one set in for both.
    visitAll(HashMultiSet<String, GUID_t>(p_collected));
    for (auto it = m_visited.begin(); it != m_visited.end(); ++it) { // It grows on the way.
        HashMultiSet<String, GUID_t> references;
        (*it)->collectResourceGUIDReferences(1, references);
        visitAll(references);
    }
    if (!m_missing.isEmpty()) {
        ZYR_LOG_WARN("Unable to unfold all references: %zu resources are not in the pack, the first is %s",
                     m_missing.getSize(), String::newFromGUID(m_missing.front()).getData());
    }
    return m_missing.isEmpty();
}

void ReferenceUnfolder::visitAll(const HashMultiSet<String, GUID_t>& p_references) {
    for (const auto& category : p_references) {
        for (const auto& guid : category.m_second) {
            visit(category.m_first, guid.m_first);
        }
    }
}

void ReferenceUnfolder::visit(const String& p_categoryName, const GUID_t& p_guid) {
    const Place place = find(p_categoryName, p_guid);
    if (place.m_resource == nullptr) {
        m_missing.pushBack(p_guid, nullptr);
    } else if (m_unfolded.add(place.m_category->getName(), p_guid)) {
        m_visited.pushBack(place.m_resource);
    }
}

ReferenceUnfolder::Place ReferenceUnfolder::find(const String& p_categoryName, const GUID_t& p_guid) const {
    if (!p_categoryName.isEmpty()) {
        const IResourcesCategory* category = m_pack->getCategory(0, p_categoryName);
        return {category, category != nullptr ? category->getResource(0, p_guid) : nullptr};
    }
    const auto place = m_places.findConst(p_guid);
    return place != m_places.endConst() ? place->m_second : Place{nullptr, nullptr};
}

} // namespace zyr
