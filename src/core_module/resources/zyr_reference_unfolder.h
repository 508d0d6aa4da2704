/// Follows references from resource to resource inside a pack.
#pragma once

#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/resources/zyr_resources_pack.h"

namespace zyr {

/// Lives for one unfolding. Each resource is visited once.
class ReferenceUnfolder {
public:
    ReferenceUnfolder(const IResourcesPack* p_pack, HashMultiSet<String, GUID_t>& p_unfolded);

    /// See IResourcesPack::unfoldCollectedGUIDReferences.
    bool_t unfold(const HashMultiSet<String, GUID_t>& p_collected);

private:
    struct Place {
        const IResourcesCategory* m_category;
        const IResource* m_resource;
    };

    void visitAll(const HashMultiSet<String, GUID_t>& p_references);
    void visit(const String& p_categoryName, const GUID_t& p_guid);
    Place find(const String& p_categoryName, const GUID_t& p_guid) const;

    const IResourcesPack* m_pack;
    HashMultiSet<String, GUID_t>& m_unfolded;
    HashMap<GUID_t, Place> m_places;
    List<const IResource*> m_visited;
    HashSet<GUID_t> m_missing;
};

} // namespace zyr
