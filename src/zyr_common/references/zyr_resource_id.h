/// Identities of stored data: which object, which part of it, in which order, with which content. Plain values; one
/// owner at a time.
///
/// A GUID names the object itself, wherever it is stored; a digest names its content, so that two copies of the same
/// content can be told from two versions. A new record names nothing: its GUIDs are all zero.
#pragma once

#include "zyr_common/digest/zyr_guid.h"
#include "zyr_common/serialization/zyr_record.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

/// The numbers of parts of a resource that stand as words in a text format.
enum SubDataIDEnum : uint32_t {
    ZYR_SUB_DATA_ID_NONE = 0xFFFFFFFE, ///< no part in particular
    ZYR_SUB_DATA_ID_MAX = 0xFFFFFFFF   ///< behind the last part
};

template <> struct EnumerationTable<SubDataIDEnum> {
    static constexpr EnumerationEntry c_entries[] = {{ZYR_SUB_DATA_ID_NONE, "NONE"}, {ZYR_SUB_DATA_ID_MAX, "MAX"}};
};

#pragma pack(push, 1)

/// An object and its rank among others. Stored as "rank" and "guidRef".
class RankGUIDPair : public Record<RankGUIDPair> {
public:
    /// Lower ranks come first for those who sort by it.
    int32_t m_rank;
    /// The object.
    GUID_t m_guid;

    /// Rank 0 of no object.
    RankGUIDPair() { init_This(); }
    RankGUIDPair(int p_rank, const GUID_t& p_guid) : m_rank(p_rank), m_guid(p_guid) {}

    static constexpr const char* c_typeName = "RankGUIDPair";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("rank", &RankGUIDPair::m_rank), zyr_field("guidRef", &RankGUIDPair::m_guid));
    }
};

/// A named object and the digest of its content. Stored as "name", "guidRef" and "digestRef".
class GUIDDigestPair : public Record<GUIDDigestPair> {
public:
    /// For people; not unique.
    String m_name;
    /// The object.
    GUID_t m_guid;
    /// The 128 bits of a digest in the form of a GUID.
    GUID_t m_digest;

    /// Without a name; both GUIDs are all zero.
    GUIDDigestPair() { init_This(); }
    GUIDDigestPair(const String& p_name, const GUID_t& p_guid, const GUID_t& p_digest)
        : m_name(p_name), m_guid(p_guid), m_digest(p_digest) {}

    static constexpr const char* c_typeName = "GUIDDigestPair";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("name", &GUIDDigestPair::m_name), zyr_field("guidRef", &GUIDDigestPair::m_guid),
                          zyr_field("digestRef", &GUIDDigestPair::m_digest));
    }
};

/// A resource, or one part of it. Stored as "guidRef" and "subDataID". The order of the virtual operations is a
/// contract between separately built modules.
///
///     ResourceID picture(guid, ZYR_SUB_DATA_ID_NONE); // the whole of it
///     ResourceID frame(guid, 3);                      // its part number 3
class ResourceID : public Record<ResourceID> {
public:
    /// The resource.
    GUID_t m_guid;
    /// A number of the owner's choice, or one of SubDataIDEnum.
    uint32_t m_subDataID;

    /// Names nothing, and no part of it.
    ResourceID() { init_This(); }
    ResourceID(const GUID_t& p_guid, uint32_t p_subDataID) : m_guid(p_guid), m_subDataID(p_subDataID) {}
    ResourceID(const ResourceID&) = default;
    ResourceID& operator=(const ResourceID&) = default;
    virtual ~ResourceID() = default;

    /// Back to no resource and no part in particular.
    virtual void clear() { Record::clear(); }
    /// A reference to the field of this key, which the caller owns; null for other keys.
    virtual VariableReference* getVariableReferenceByPath(const String& p_path) {
        return Record::getVariableReferenceByPath(p_path);
    }
    /// Read and write the fields, those of the base first. 0 when the stream fails; what was read until then stays.
    virtual bool_t readSerialized(IDeserializer* p_deserializer) { return Record::readSerialized(p_deserializer); }
    virtual bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) {
        return Record::writeSerialized(p_serializer, p_headerPass, p_result);
    }

    static constexpr const char* c_typeName = "ResourceID";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("guidRef", &ResourceID::m_guid),
                          zyr_field("subDataID", &ResourceID::m_subDataID)
                              .withDefault(ZYR_SUB_DATA_ID_NONE)
                              .withConverter(&zyr_convertEnumeration<SubDataIDEnum>));
    }
};

/// A resource with a name. Stored as a ResourceID with "name" behind it.
class NamedResourceID : public Record<NamedResourceID, ResourceID> {
public:
    /// for people, and for finding the resource again where its GUID is unknown
    String m_name;

    /// Names nothing, without a name.
    NamedResourceID() = default;
    NamedResourceID(const String& p_name, const GUID_t& p_guid, uint32_t p_subDataID)
        : Record(ResourceID(p_guid, p_subDataID)), m_name(p_name) {}

    static constexpr const char* c_typeName = "NamedResourceID";
    static constexpr auto fields() { return zyr_fields(zyr_field("name", &NamedResourceID::m_name)); }
};

#pragma pack(pop)

static_assert(sizeof(RankGUIDPair) == 20 && alignof(RankGUIDPair) == 1);
static_assert(sizeof(GUIDDigestPair) == 144 && alignof(GUIDDigestPair) == 1);
static_assert(sizeof(ResourceID) == 28 && alignof(ResourceID) == 1);
static_assert(sizeof(NamedResourceID) == 140 && alignof(NamedResourceID) == 1);

} // namespace zyr
