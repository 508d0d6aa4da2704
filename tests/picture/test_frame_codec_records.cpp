#include "picture/virtual_slots.h"
#include "picture/zyr_frame_codec_info.h"
#include "picture/zyr_frame_codec_proposal.h"
#include "picture/zyr_frame_codec_request.h"
#include "zyr_common/object/zyr_type_names.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <string>
#include <vector>

using namespace zyr;
using testing::ElementsAre;
using virtual_slots::slotOf;

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
    EXPECT_EQ(slotOf(&RefCountedData::clone), 2u);
    EXPECT_EQ(slotOf(&RefCountedData::addRef), 3u);
    EXPECT_EQ(slotOf(&RefCountedData::release), 4u);
    EXPECT_EQ(slotOf(&FrameCodecRequest::readSerialized), 5u);
    EXPECT_EQ(slotOf(&FrameCodecRequest::writeSerialized), 6u);
    EXPECT_EQ(slotOf(&FrameCodecRequest::filterWithCodecInfo), 7u);
    EXPECT_EQ(slotOf(&FrameCodecProposal::readSerialized), 5u);
    EXPECT_EQ(slotOf(&FrameCodecProposal::writeSerialized), 6u);
    EXPECT_EQ(slotOf(&FrameCodecProposal::matchWithCodecRequest), 7u);
    EXPECT_EQ(slotOf(&FrameCodecInfo::readSerialized), 5u);
    EXPECT_EQ(slotOf(&FrameCodecInfo::writeSerialized), 6u);
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
    target = target;
    EXPECT_THAT(values(target.colorSpaces), ElementsAre(3, 5, 2));
}
