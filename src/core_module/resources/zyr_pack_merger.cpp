#include "core_module/resources/zyr_pack_merger.h"

#include "core_module/resources/zyr_resources_pack_level.h"
#include "zyr_common/containers/zyr_hash_multi_map.h"

namespace zyr {

static GUID_t getReplacement(const HashMap<GUID_t, GUID_t>& p_replacements, const GUID_t& p_guid) {
    const auto replacement = p_replacements.findConst(p_guid);
    return replacement != p_replacements.endConst() ? replacement->m_second : p_guid;
}

PackMerger::PackMerger(IResourcesPack* p_target, HashMap<GUID_t, GUID_t>& p_replacements)
    : m_target(p_target),
      m_replacements(p_replacements),
      m_ownReplacements(p_replacements),
      m_incoming(makeCategoryMap()) {
    forEachCategory(p_target, [this](const IResourcesCategory* p_category) {
        forEachResource(p_category, [this](IResource* p_resource) {
            m_present.pushBack(p_resource->getGUID(), p_resource, nullptr);
        });
    });
}

/// Adds the resource under each one that it refers to.
static void collectReferring(const IResource* p_resource, HashMultiMap<GUID_t, GUID_t>& p_referring) {
    HashMultiSet<String, GUID_t> references;
    p_resource->collectResourceGUIDReferences(1, references);
    for (const auto& category : references) {
        for (const auto& guid : category.m_second) {
            p_referring.pushBack(guid.m_first, p_resource->getGUID());
        }
    }
}

template <typename Function> void PackMerger::forEachIncoming(Function p_function) const {
    for (auto it = m_incoming->beginConst(); it != m_incoming->endConst(); ++it) {
        if (IResourcesCategory* category = asInterface<IResourcesCategory>(it->m_second)) {
            p_function(category);
        }
    }
}

bool_t PackMerger::merge(const IResourcesPack* p_source) {
    m_incoming->setItems(p_source->getCategories(), 0);
    if (!sortOut()) {
        return 0;
    }
    separateReferringOnes();
    m_replacements = m_ownReplacements;
    forEachIncoming([this](IResourcesCategory* p_category) {
        for (const auto& guid : m_shared) {
            p_category->removeResource(guid.m_first);
        }
        if (!m_replacements.isEmpty()) {
            p_category->replaceGUIDsWhereAvailable(1, m_replacements);
        }
        add(p_category);
    });
    mergeDigests(p_source);
    return 1;
}

/// Of resources with one GUID, those with equal contents are shared and the others get another GUID.
bool_t PackMerger::sortOut() {
    bool_t done = 1;
    forEachIncoming([&](const IResourcesCategory* p_category) {
        forEachResource(p_category, [&](IResource* p_resource) {
            const GUID_t& guid = p_resource->getGUID();
            const auto present = m_present.find(getReplacement(m_replacements, guid));
            if (!done || guid.isNull() || present == m_present.end() || m_separate.check(guid)) {
                return;
            }
            GUID_t presentDigest;
            GUID_t incomingDigest;
            done = computeContentDigest(present->m_second, presentDigest) &&
                   computeIncomingDigest(p_resource, incomingDigest);
            if (done && presentDigest == incomingDigest) {
                m_shared.pushBack(guid, nullptr);
            } else if (done) {
                replaceGUID(guid);
            }
        });
    });
    return done;
}

/// Of the resource as it is once the caller's replacements are made.
bool_t PackMerger::computeIncomingDigest(IResource* p_resource, GUID_t& p_digest) {
    if (m_replacements.isEmpty()) {
        return computeContentDigest(p_resource, p_digest);
    }
    const Ref<IObject> replaced = Ref<IObject>::adopt(p_resource->clone());
    replaced->replaceGUIDsWhereAvailable(1, m_replacements);
    return computeContentDigest(static_cast<IResource*>(replaced.get()), p_digest);
}

void PackMerger::replaceGUID(const GUID_t& p_guid) {
    GUID_t fresh;
    GUID_t* former = nullptr;
    zyr_generateGUID(fresh);
    if (!m_ownReplacements.pushBack(p_guid, fresh, &former)) {
        *former = fresh;
    }
    m_separate.pushBack(p_guid, nullptr);
}

/// A shared resource that refers to one with another GUID from here on is not the target's any more, nor is one that
/// refers to that.
void PackMerger::separateReferringOnes() {
    HashMultiMap<GUID_t, GUID_t> referring;
    forEachIncoming([&](const IResourcesCategory* p_category) {
        forEachResource(p_category, [&](const IResource* p_resource) {
            if (m_shared.check(p_resource->getGUID())) {
                collectReferring(p_resource, referring);
            }
        });
    });
    List<GUID_t> replaced;
    for (const auto& entry : m_separate) {
        replaced.pushBack(entry.m_first);
    }
    for (auto it = replaced.begin(); it != replaced.end(); ++it) { // It grows on the way.
        const auto entry = referring.find(*it);
        for (size_t i = 0; entry != referring.end() && i < entry->m_second.getSize(); i++) {
            const GUID_t& other = entry->m_second[i];
            if (m_shared.remove(other)) {
                replaceGUID(other);
                replaced.pushBack(other);
            }
        }
    }
}

void PackMerger::add(IResourcesCategory* p_category) {
    IResourcesCategory* present = m_target->getCategory(0, p_category->getName());
    if (present == nullptr) {
        m_target->insertCategory(p_category);
        return;
    }
    forEachResource(p_category, [&](IResource* p_resource) { present->pushBackResource(p_resource); });
}

void PackMerger::mergeDigests(const IResourcesPack* p_source) {
    for (const auto& entry : *p_source->getGUIDToDigestMap()) {
        const GUIDDigestPair& pair = entry.m_second;
        m_target->getMutableGUIDToDigestMap()->pushBack(
            getReplacement(m_replacements, entry.m_first),
            GUIDDigestPair(pair.m_name, getReplacement(m_replacements, pair.m_guid), pair.m_digest), nullptr);
    }
}

} // namespace zyr
