#include "zyr_common/references/zyr_resource_id.h"

#include "support/binary_layout.h"
#include "support/zyr_record_walk.h"
#include "support/zyr_recording_serializer.h"

namespace zyr {
namespace {

using test::Calls;
using test::RecordingDeserializer;
using test::RecordingSerializer;

const char* const GUID_TEXT = "10000000-0000-4000-8000-000000000001";
const char* const DIGEST_TEXT = "20000000-0000-4000-8000-000000000002";
const GUID_t SOME_GUID = GUID_t_fromString(GUID_TEXT);
const GUID_t DIGEST = GUID_t_fromString(DIGEST_TEXT);

template <class R> Calls callsOfWriting(R& p_record, RecordingSerializer::Kind p_kind) {
    RecordingSerializer serializer(p_kind);
    bool_t result = 0;
    EXPECT_EQ(p_record.writeSerialized(&serializer, 0, result), 1);
    EXPECT_EQ(result, 1);
    return serializer.m_calls;
}

/// The type behind a path, none without a field there.
VariableTypeEnum typeBehind(ResourceID& p_record, const char* p_path) {
    VariableReference* reference = p_record.getVariableReferenceByPath(p_path);
    VariableTypeEnum type = reference ? reference->getType() : ZYR_VARIABLE_NONE;
    if (reference) {
        reference->release();
    }
    return type;
}

} // namespace

TEST(ResourceID, StartsWithoutGUIDAndPart) {
    ResourceID id;
    EXPECT_EQ(id.m_guid, GUID_t());
    EXPECT_EQ(id.m_subDataID, 0xFFFFFFFEu);
    NamedResourceID named;
    EXPECT_EQ(named.m_name, "");
    EXPECT_EQ(named.m_subDataID, 0xFFFFFFFEu);
    RankGUIDPair rank;
    EXPECT_EQ(rank.m_rank, 0);
    EXPECT_EQ(rank.m_guid, GUID_t());
    GUIDDigestPair digest;
    EXPECT_EQ(digest.m_name, "");
    EXPECT_EQ(digest.m_guid, GUID_t());
    EXPECT_EQ(digest.m_digest, GUID_t());
}

TEST(ResourceID, TakesItsMembersFromTheConstructor) {
    NamedResourceID named("name", SOME_GUID, 3);
    EXPECT_EQ(named.m_name, "name");
    EXPECT_EQ(named.m_guid, SOME_GUID);
    EXPECT_EQ(named.m_subDataID, 3u);
    RankGUIDPair rank(-2, SOME_GUID);
    EXPECT_EQ(rank.m_rank, -2);
    EXPECT_EQ(rank.m_guid, SOME_GUID);
    GUIDDigestPair digest("name", SOME_GUID, DIGEST);
    EXPECT_EQ(digest.m_name, "name");
    EXPECT_EQ(digest.m_guid, SOME_GUID);
    EXPECT_EQ(digest.m_digest, DIGEST);
}

TEST(ResourceID, KeepsOperationsAndMembersInTheirPlaces) {
    EXPECT_EQ(getSlot(&ResourceID::clear), 2u);
    EXPECT_EQ(getSlot(&ResourceID::getVariableReferenceByPath), 3u);
    EXPECT_EQ(getSlot(&ResourceID::readSerialized), 4u);
    EXPECT_EQ(getSlot(&ResourceID::writeSerialized), 5u);
    NamedResourceID named("name", SOME_GUID, 0x01020304);
    EXPECT_EQ(readAt<GUID_t>(&named, 8), SOME_GUID);
    EXPECT_EQ(readAt<uint32_t>(&named, 24), 0x01020304u);
    EXPECT_EQ(static_cast<void*>(&named.m_name), reinterpret_cast<char*>(&named) + 28);
    RankGUIDPair rank(-2, SOME_GUID);
    EXPECT_EQ(readAt<int32_t>(&rank, 0), -2);
    EXPECT_EQ(readAt<GUID_t>(&rank, 4), SOME_GUID);
    GUIDDigestPair digest("name", SOME_GUID, DIGEST);
    EXPECT_EQ(readAt<GUID_t>(&digest, 112), SOME_GUID);
    EXPECT_EQ(readAt<GUID_t>(&digest, 128), DIGEST);
}

TEST(ResourceID, IsNamedAfterItsClass) {
    EXPECT_EQ(ResourceID().getClassName(), "ResourceID");
    EXPECT_EQ(NamedResourceID().getClassName(), "NamedResourceID");
    EXPECT_EQ(RankGUIDPair().getClassName(), "RankGUIDPair");
    EXPECT_EQ(GUIDDigestPair().getClassName(), "GUIDDigestPair");
}

TEST(ResourceID, FindsItsFieldsByPath) {
    NamedResourceID named;
    EXPECT_EQ(typeBehind(named, "name"), ZYR_VARIABLE_STRING);
    EXPECT_EQ(typeBehind(named, "guidRef"), ZYR_VARIABLE_GUID);
    EXPECT_EQ(typeBehind(named, "subDataID"), ZYR_VARIABLE_UINT32);
    EXPECT_EQ(typeBehind(named, "guidRef.x"), ZYR_VARIABLE_NONE);
    ResourceID id;
    EXPECT_EQ(typeBehind(id, "name"), ZYR_VARIABLE_NONE);
    EXPECT_EQ(typeBehind(id, ""), ZYR_VARIABLE_NONE);
}

TEST(ResourceID, WritesItsKeysAsAttributesInTheFirstPass) {
    NamedResourceID named("name", SOME_GUID, 3);
    RankGUIDPair rank(-2, SOME_GUID);
    GUIDDigestPair digest("name", SOME_GUID, DIGEST);
    const std::string guidCall = std::string("writeString guidRef '") + GUID_TEXT + "' attribute";
    for (RecordingSerializer::Kind kind : {RecordingSerializer::c_text, RecordingSerializer::c_binary}) {
        EXPECT_EQ(callsOfWriting(named, kind),
                  (Calls{guidCall, "writeUInt32 subDataID 3=? attribute", "writeString name 'name' attribute"}));
        EXPECT_EQ(callsOfWriting(rank, kind), (Calls{"writeInt32 rank -2 attribute", guidCall}));
        EXPECT_EQ(callsOfWriting(digest, kind),
                  (Calls{"writeString name 'name' attribute", guidCall,
                         std::string("writeString digestRef '") + DIGEST_TEXT + "' attribute"}));
    }
}

TEST(ResourceID, ShowsNoPartAndTheLastPartAsWords) {
    ResourceID none(SOME_GUID, 0xFFFFFFFE);
    ResourceID last(SOME_GUID, 0xFFFFFFFF);
    EXPECT_EQ(callsOfWriting(none, RecordingSerializer::c_text).back(),
              "writeUInt32 subDataID 4294967294=NONE attribute");
    EXPECT_EQ(callsOfWriting(last, RecordingSerializer::c_text).back(),
              "writeUInt32 subDataID 4294967295=MAX attribute");
}

TEST(ResourceID, ConvertsItsTwoWordsAndNoOther) {
    uint32_t number = 5;
    String word("NONE");
    EXPECT_EQ(zyr_convertEnumeration<SubDataIDEnum>(word, number, 1), 1);
    EXPECT_EQ(number, 0xFFFFFFFEu);
    word = "MAX";
    EXPECT_EQ(zyr_convertEnumeration<SubDataIDEnum>(word, number, 1), 1);
    EXPECT_EQ(number, 0xFFFFFFFFu);
    word = "max";
    number = 5;
    EXPECT_EQ(zyr_convertEnumeration<SubDataIDEnum>(word, number, 1), 0);
    EXPECT_EQ(zyr_convertEnumeration<SubDataIDEnum>(word, number, 0), 0);
    EXPECT_EQ(number, 5u);
    EXPECT_EQ(word, "max");
}

TEST(ResourceID, ReadsWithTheSameConverter) {
    class Watching : public RecordingDeserializer {
    public:
        using RecordingDeserializer::RecordingDeserializer;
        bool_t readUInt32(const String&, uint32_t&, uint32_t& p_value, EnumerationConverter p_converter) override {
            String word("MAX");
            return p_converter(word, p_value, 1);
        }
    } deserializer{test::SerializedNode()};
    ResourceID id(SOME_GUID, 3);
    EXPECT_EQ(id.readSerialized(&deserializer), 1);
    EXPECT_EQ(id.m_subDataID, 0xFFFFFFFFu);
    EXPECT_EQ(id.m_guid, SOME_GUID);
}

TEST(ResourceID, ClearsAllLevelsThroughItsBase) {
    NamedResourceID named("name", SOME_GUID, 3);
    static_cast<ResourceID&>(named).clear();
    EXPECT_EQ(named.m_name, "");
    EXPECT_EQ(named.m_guid, GUID_t());
    EXPECT_EQ(named.m_subDataID, 0xFFFFFFFEu);
}

TEST(ResourceID, HoldsWhatAllRecordsHold) {
    test::walkRecord<RankGUIDPair>();
    test::walkRecord<GUIDDigestPair>();
    test::walkRecord<ResourceID>();
    test::walkRecord<NamedResourceID>();
}

} // namespace zyr
