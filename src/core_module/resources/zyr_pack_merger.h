/// Adds the resources of one pack to another one.
#pragma once

#include "zyr_common/containers/zyr_hash_set.h"
#include "zyr_common/memory/zyr_ref.h"
#include "zyr_common/object_containers/zyr_hash_map_of_objects.h"
#include "zyr_common/resources/zyr_resources_pack.h"

namespace zyr {

/// Lives for one merge.
class PackMerger {
public:
    PackMerger(IResourcesPack* p_target, HashMap<GUID_t, GUID_t>& p_replacements);

    /// See IResourcesPack::mergeResourcesPack.
    bool_t merge(const IResourcesPack* p_source);

private:
    template <typename Function> void forEachIncoming(Function p_function) const;
    bool_t sortOut();
    bool_t computeIncomingDigest(IResource* p_resource, GUID_t& p_digest);
    void separateReferringOnes();
    void replaceGUID(const GUID_t& p_guid);
    void add(IResourcesCategory* p_category);
    void mergeDigests(const IResourcesPack* p_source);

    IResourcesPack* m_target;
    HashMap<GUID_t, GUID_t>& m_replacements;
    /// What the replacements become, once nothing can fail any more.
    HashMap<GUID_t, GUID_t> m_ownReplacements;
    HashMap<GUID_t, IResource*> m_present;
    /// Copies of the source's categories, which the target takes over.
    Ref<IHashMapOfObjects<String>> m_incoming;
    /// Of incoming resources by the GUIDs that they come with: those that get a fresh one, and those that the target
    /// has already.
    HashSet<GUID_t> m_separate;
    HashSet<GUID_t> m_shared;
};

} // namespace zyr
