#include "picture/zyr_frame_codec_info.h"
#include "picture/zyr_frame_codec_proposal.h"
#include "picture/zyr_frame_codec_request.h"
#include "support/binary_layout.h"
#include "support/zyr_recording_serializer.h"
#include "zyr_common/object/zyr_type_names.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <string>
#include <vector>

using namespace zyr;
using testing::ElementsAre;

namespace {

/// Offset of a member in a record with a virtual table.
template <typename R, typename M> size_t offsetIn(const R& p_record, M R::*p_member) {
    return static_cast<size_t>(reinterpret_cast<const char*>(&(p_record.*p_member)) -
                               reinterpret_cast<const char*>(&p_record));
}

/// The listed fields follow each other without gaps behind the counted base, and end with the record.
template <class R> void expectNoGaps() {
    R record;
    size_t offset = sizeof(RefCountedData);
    zyr_forEachField<R>([&](const auto& p_field) {
        EXPECT_EQ(offsetIn(record, p_field.m_member), offset) << p_field.m_key;
        offset += sizeof(record.*p_field.m_member);
    });
    EXPECT_EQ(offset, sizeof(R));
}

template <class R> std::vector<std::string> keysOf() {
    std::vector<std::string> keys;
    zyr_forEachField<R>([&](const auto& p_field) { keys.push_back(p_field.m_key); });
    return keys;
}

/// Gives each field a value of its own.
template <class R> void fill(R& p_record) {
    uint32_t number = 1;
    zyr_forEachField<R>([&](const auto& p_field) {
        auto& value = p_record.*p_field.m_member;
        using M = std::decay_t<decltype(value)>;
        if constexpr (std::is_same_v<M, String>) {
            value = p_field.m_key;
        } else if constexpr (std::is_arithmetic_v<M> || std::is_enum_v<M>) {
            value = static_cast<M>(number++);
        }
    });
}

template <typename E> std::vector<uint32_t> values(const HashSet<E>& p_set) {
    std::vector<uint32_t> result;
    for (const auto& entry : p_set) {
        result.push_back(entry.m_first);
    }
    return result;
}

const std::vector<std::string> requestKeys = {"codecName",
                                              "codecImplementation",
                                              "codecOptions",
                                              "hardwareDeviceName",
                                              "rating",
                                              "planesModelSingle",
                                              "planesModel420",
                                              "planesModel410",
                                              "planesModel411",
                                              "planesModel422",
                                              "planesModel444",
                                              "planesModelYUV",
                                              "planesModel",
                                              "colorSpaceRGB",
                                              "colorSpaceBT601",
                                              "colorSpaceBT601FullRange",
                                              "colorSpaceBT709",
                                              "colorSpaceBT709FullRange",
                                              "colorSpaceYUV",
                                              "colorSpace",
                                              "codecProfileBaseline",
                                              "codecProfileMain",
                                              "codecProfileHigh",
                                              "codecProfile",
                                              "variableQuality",
                                              "video",
                                              "lossless",
                                              "packedBlocks",
                                              "multiSlice",
                                              "compressionRle",
                                              "compressionLz4",
                                              "compressionZip",
                                              "compression"};

} // namespace

TEST(FrameCodecRequest, ListsItsFieldsInOrderWithoutGaps) {
    EXPECT_EQ(sizeof(FrameCodecRequest), 570u);
    EXPECT_EQ(keysOf<FrameCodecRequest>(), requestKeys);
    expectNoGaps<FrameCodecRequest>();
}

TEST(FrameCodecProposal, HasTheAdapterBehindTheRating) {
    EXPECT_EQ(sizeof(FrameCodecProposal), 578u);
    std::vector<std::string> keys = requestKeys;
    keys.insert(keys.begin() + 5, "adapterID");
    EXPECT_EQ(keysOf<FrameCodecProposal>(), keys);
    expectNoGaps<FrameCodecProposal>();
}

TEST(FrameCodecInfo, ListsItsFieldsInOrderWithoutGaps) {
    EXPECT_EQ(sizeof(FrameCodecInfo), 785u);
    EXPECT_THAT(keysOf<FrameCodecInfo>(),
                ElementsAre("codecName", "codecImplementation", "codecOptions", "hardwareDeviceName", "rating",
                            "adapterID", "planesModels", "colorSpaces", "codecProfiles", "variableQuality", "video",
                            "lossless", "packedBlocks", "multiSlice", "compressions"));
    expectNoGaps<FrameCodecInfo>();
}

TEST(FrameCodecRecords, HaveTheirOperationsInSlotOrder) {
    EXPECT_EQ(getSlot(&RefCountedData::clone), 2u);
    EXPECT_EQ(getSlot(&RefCountedData::addRef), 3u);
    EXPECT_EQ(getSlot(&RefCountedData::release), 4u);
    EXPECT_EQ(getSlot(&FrameCodecRequest::readSerialized), 5u);
    EXPECT_EQ(getSlot(&FrameCodecRequest::writeSerialized), 6u);
    EXPECT_EQ(getSlot(&FrameCodecRequest::filterWithCodecInfo), 7u);
    EXPECT_EQ(getSlot(&FrameCodecProposal::readSerialized), 5u);
    EXPECT_EQ(getSlot(&FrameCodecProposal::writeSerialized), 6u);
    EXPECT_EQ(getSlot(&FrameCodecProposal::matchWithCodecRequest), 7u);
    EXPECT_EQ(getSlot(&FrameCodecInfo::readSerialized), 5u);
    EXPECT_EQ(getSlot(&FrameCodecInfo::writeSerialized), 6u);
}

TEST(FrameCodecRecords, HaveTheirTypeNames) {
    EXPECT_STREQ(zyr_getNameAssociatedToType(static_cast<FrameCodecRequest*>(nullptr)).getData(), "FrameCodecRequest");
    EXPECT_STREQ(zyr_getNameAssociatedToType(static_cast<FrameCodecProposal*>(nullptr)).getData(),
                 "FrameCodecProposal");
    EXPECT_STREQ(zyr_getNameAssociatedToType(static_cast<FrameCodecInfo*>(nullptr)).getData(), "FrameCodecInfo");
}

template <class R> class FrameCodecFeatureRecord : public testing::Test {};
using FeatureRecords = testing::Types<FrameCodecRequest, FrameCodecProposal>;
TYPED_TEST_SUITE(FrameCodecFeatureRecord, FeatureRecords);

TYPED_TEST(FrameCodecFeatureRecord, StartsEmpty) {
    TypeParam record;
    zyr_forEachField<TypeParam>([&](const auto& p_field) {
        const auto& value = record.*p_field.m_member;
        if constexpr (std::is_same_v<std::decay_t<decltype(value)>, String>) {
            EXPECT_TRUE(value.isEmpty()) << p_field.m_key;
        } else {
            EXPECT_EQ(static_cast<uint64_t>(value), 0u) << p_field.m_key;
        }
    });
}

TYPED_TEST(FrameCodecFeatureRecord, CopiesTakeEveryFieldAndNoCount) {
    TypeParam source;
    fill(source);
    source.addRef();
    TypeParam constructed(source);
    TypeParam assigned;
    assigned = source;
    TypeParam* cloned = source.clone();
    zyr_forEachField<TypeParam>([&](const auto& p_field) {
        EXPECT_TRUE(constructed.*p_field.m_member == source.*p_field.m_member) << p_field.m_key;
        EXPECT_TRUE(assigned.*p_field.m_member == source.*p_field.m_member) << p_field.m_key;
        EXPECT_TRUE(cloned->*p_field.m_member == source.*p_field.m_member) << p_field.m_key;
    });
    cloned->release(); // its count is its own, so this frees it
}

TEST(FrameCodecInfo, StartsEmpty) {
    FrameCodecInfo info;
    EXPECT_TRUE(info.codecName.isEmpty());
    EXPECT_EQ(info.rating, 0u);
    EXPECT_EQ(info.adapterID, 0u);
    EXPECT_TRUE(info.planesModels.isEmpty());
    EXPECT_TRUE(info.colorSpaces.isEmpty());
    EXPECT_TRUE(info.codecProfiles.isEmpty());
    EXPECT_TRUE(info.compressions.isEmpty());
    EXPECT_EQ(info.variableQuality | info.video | info.lossless | info.packedBlocks | info.multiSlice, 0);
}

TEST(FrameCodecInfo, CopiesReplaceTheSetsAndKeepTheirOrder) {
    FrameCodecInfo source;
    fill(source);
    for (uint32_t value : {3u, 5u, 2u}) {
        source.colorSpaces.pushBack(static_cast<ColorSpaceEnum>(value), nullptr);
    }
    source.compressions.pushBack(ZYR_COMPRESSION_ZIP, nullptr);
    FrameCodecInfo target;
    target.colorSpaces.pushBack(ZYR_COLOR_SPACE_RGB, nullptr);
    target.planesModels.pushBack(ZYR_PLANES_MODEL_I444, nullptr);
    target = source;
    EXPECT_THAT(values(target.colorSpaces), ElementsAre(3, 5, 2));
    EXPECT_THAT(values(target.compressions), ElementsAre(3));
    EXPECT_TRUE(target.planesModels.isEmpty());
    EXPECT_STREQ(target.codecOptions.getData(), "codecOptions");
    EXPECT_EQ(target.rating, source.rating);
    EXPECT_EQ(target.adapterID, source.adapterID);
    EXPECT_EQ(target.multiSlice, source.multiSlice);
    const FrameCodecInfo& itself = target;
    target = itself;
    EXPECT_THAT(values(target.colorSpaces), ElementsAre(3, 5, 2));
}

namespace {

using zyr::test::Calls;
using zyr::test::RecordingDeserializer;
using zyr::test::RecordingSerializer;

/// The keys of the calls that write, in order, with the operation in front.
Calls getWrites(const RecordingSerializer& p_serializer) {
    Calls writes;
    for (const std::string& call : p_serializer.m_calls) {
        const size_t end = call.find(' ', call.find(' ') + 1);
        writes.push_back(call.substr(0, end));
    }
    return writes;
}

/// What a record of features writes: texts, enumerations and truth values.
template <class R> Calls getExpectedWrites() {
    Calls writes;
    zyr_forEachField<R>([&](const auto& p_field) {
        using M = typename std::decay_t<decltype(p_field)>::Member;
        const char* operation = std::is_same_v<M, String> ? "writeString "
                                : std::is_enum_v<M>       ? "writeEnum "
                                : sizeof(M) == 8          ? "writeUInt64 "
                                                          : "writeBool ";
        writes.push_back(std::string(operation) + p_field.m_key);
    });
    return writes;
}

template <class R> void write(R& p_record, RecordingSerializer& p_serializer) {
    bool_t result = 0;
    EXPECT_EQ(p_record.writeSerialized(&p_serializer, 0, result), 1);
    EXPECT_EQ(result, 1);
}

} // namespace

TYPED_TEST(FrameCodecFeatureRecord, WritesItsFieldsInOrderOnceInBothKindsOfFormats) {
    for (RecordingSerializer::Kind kind : {RecordingSerializer::c_text, RecordingSerializer::c_binary}) {
        TypeParam record;
        RecordingSerializer serializer(kind);
        write(record, serializer);
        EXPECT_EQ(getWrites(serializer), getExpectedWrites<TypeParam>());
    }
}

TYPED_TEST(FrameCodecFeatureRecord, SurvivesAStream) {
    TypeParam record;
    fill(record);
    record.rating = ZYR_CODEC_RATING_ULTRA_FAST;
    // Numbers that no text stands for would not come back from a text format.
    uint32_t number = 0;
    zyr_forEachField<TypeParam>([&](const auto& p_field) {
        auto& value = record.*p_field.m_member;
        using M = std::decay_t<decltype(value)>;
        if constexpr (std::is_same_v<M, RequestTypeEnum> || std::is_same_v<M, ProposalTypeEnum>) {
            value = static_cast<M>(number++ % 3);
        } else if constexpr (std::is_same_v<M, bool_t>) {
            value = number % 2;
        }
    });
    RecordingSerializer serializer(RecordingSerializer::c_text);
    write(record, serializer);
    RecordingDeserializer deserializer(serializer.m_root);
    TypeParam back;
    ASSERT_EQ(back.readSerialized(&deserializer), 1);
    zyr_forEachField<TypeParam>(
        [&](const auto& p_field) { EXPECT_TRUE(back.*p_field.m_member == record.*p_field.m_member) << p_field.m_key; });
}

TEST(FrameCodecRequest, WritesTheTextsOfItsEnumerations) {
    FrameCodecRequest request;
    request.codecName = "vp9";
    request.rating = ZYR_CODEC_RATING_NORMAL;
    request.planesModel420 = ZYR_REQUEST_MANDATORY_16;
    request.planesModelYUV = 1;
    RecordingSerializer serializer(RecordingSerializer::c_text);
    write(request, serializer);
    EXPECT_EQ(serializer.m_calls[0], "writeString codecName 'vp9' attribute");
    EXPECT_EQ(serializer.m_calls[4], "writeEnum rating 5=NORMAL attribute");
    EXPECT_EQ(serializer.m_calls[6], "writeEnum planesModel420 34=MANDATORY_16 attribute");
    EXPECT_EQ(serializer.m_calls[11], "writeBool planesModelYUV 1 attribute");
}

TEST(FrameCodecInfo, WritesItsSetsAsElementsInTheSecondPass) {
    FrameCodecInfo info;
    for (uint32_t value : {3u, 5u, 2u}) {
        info.colorSpaces.pushBack(static_cast<ColorSpaceEnum>(value), nullptr);
    }
    RecordingSerializer text(RecordingSerializer::c_text);
    write(info, text);
    EXPECT_EQ(getWrites(text),
              (Calls{"writeString codecName", "writeString codecImplementation", "writeString codecOptions",
                     "writeString hardwareDeviceName", "writeEnum rating", "writeUInt64 adapterID",
                     "writeBool variableQuality", "writeBool video", "writeBool lossless", "writeBool packedBlocks",
                     "writeBool multiSlice", "writeEnumArray planesModels", "writeEnumArray colorSpaces",
                     "writeEnumArray codecProfiles", "writeEnumArray compressions"}));
    RecordingSerializer binary(RecordingSerializer::c_binary);
    write(info, binary);
    EXPECT_EQ(getWrites(binary),
              (Calls{"writeString codecName", "writeString codecImplementation", "writeString codecOptions",
                     "writeString hardwareDeviceName", "writeEnum rating", "writeUInt64 adapterID",
                     "writeEnumArray planesModels", "writeEnumArray colorSpaces", "writeEnumArray codecProfiles",
                     "writeBool variableQuality", "writeBool video", "writeBool lossless", "writeBool packedBlocks",
                     "writeBool multiSlice", "writeEnumArray compressions"}));
}

TEST(FrameCodecInfo, StreamKeepsTheOrderOfItsSets) {
    FrameCodecInfo info;
    for (uint32_t value : {3u, 5u, 2u}) {
        info.colorSpaces.pushBack(static_cast<ColorSpaceEnum>(value), nullptr);
    }
    info.codecProfiles.pushBack(ZYR_CODEC_PROFILE_HIGH, nullptr);
    info.adapterID = ~0ull;
    RecordingSerializer serializer(RecordingSerializer::c_text);
    write(info, serializer);
    RecordingDeserializer deserializer(serializer.m_root);
    FrameCodecInfo back;
    ASSERT_EQ(back.readSerialized(&deserializer), 1);
    EXPECT_THAT(values(back.colorSpaces), ElementsAre(3, 5, 2));
    EXPECT_THAT(values(back.codecProfiles), ElementsAre(3));
    EXPECT_TRUE(back.planesModels.isEmpty());
    EXPECT_EQ(back.adapterID, ~0ull);
}

TEST(FrameCodecInfo, ReadingKeepsPresentElementsAhead) {
    FrameCodecInfo info;
    for (uint32_t value : {3u, 5u, 2u}) {
        info.colorSpaces.pushBack(static_cast<ColorSpaceEnum>(value), nullptr);
    }
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    write(info, serializer);
    RecordingDeserializer deserializer(serializer.m_root);
    FrameCodecInfo back;
    back.colorSpaces.pushBack(ZYR_COLOR_SPACE_BT_709, nullptr);
    back.colorSpaces.pushBack(ZYR_COLOR_SPACE_BT_601, nullptr);
    ASSERT_EQ(back.readSerialized(&deserializer), 1);
    EXPECT_THAT(values(back.colorSpaces), ElementsAre(4, 2, 3, 5));
}

TEST(FrameCodecInfo, ReadingStopsAtTheFirstFailure) {
    FrameCodecInfo info;
    info.codecName = "vp9";
    info.video = 1;
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    write(info, serializer);
    RecordingDeserializer deserializer(serializer.m_root);
    deserializer.m_failures.insert("readEnum rating");
    FrameCodecInfo back;
    EXPECT_EQ(back.readSerialized(&deserializer), 0);
    EXPECT_STREQ(back.codecName.getData(), "vp9");
    EXPECT_EQ(back.video, 0);
}

TEST(FrameCodecInfo, WritingStopsAtTheFirstFailure) {
    FrameCodecInfo info;
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    serializer.m_failures.insert("writeUInt64 adapterID");
    bool_t result = 1;
    EXPECT_EQ(info.writeSerialized(&serializer, 0, result), 0);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(serializer.m_calls.size(), 6u);
}
