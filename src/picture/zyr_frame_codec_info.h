/// What an encoder and a decoder agreed on.
///
/// The sets keep the order of insertion, and it means something: the first element is the agreed choice, those behind
/// it are the alternatives in falling order of preference. Copies and stored records keep it. One owner at a time.
#pragma once

#include "picture/zyr_codec_enums.h"
#include "zyr_common/containers/zyr_hash_set.h"
#include "zyr_common/memory/zyr_ref_counted_data.h"
#include "zyr_common/serialization/zyr_record.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

#pragma pack(push, 1)

/// The record with which encoder and decoder are initialized. All fields are empty, 0 or false at first. Reading adds
/// to what the sets hold.
class FrameCodecInfo : public Record<FrameCodecInfo, RefCountedData> {
public:
    String codecName;           ///< The codec, such as "vp9".
    String codecImplementation; ///< The implementation of it, such as "libvpx-vp9".
    String codecOptions;        ///< Options for the implementation: `key=value` pairs joined by commas.
    String hardwareDeviceName;  ///< Hardware path, "vaapi" or empty.
    /// Speed class of the encoder; the decoder's is not kept.
    CodecRatingEnum rating;
    uint64_t adapterID; ///< The graphics adapter of the encoder.
    /// Layouts that both sides handle. Code works with the first one.
    HashSet<PixelPlanesModelEnum> planesModels;
    /// Colour spaces that both sides handle. Code works with the first one.
    HashSet<ColorSpaceEnum> colorSpaces;
    /// Profiles that both sides handle; empty where none was asked for.
    HashSet<FrameCodecProfileEnum> codecProfiles;
    /// The quality may be changed while the stream runs.
    bool_t variableQuality;
    /// The codec works on a sequence of pictures, so that frames depend on those before.
    bool_t video;
    /// Every decoded picture equals the coded one, bit by bit.
    bool_t lossless;
    /// For codecs that send a picture in blocks.
    bool_t packedBlocks;
    bool_t multiSlice;
    /// How such blocks may be packed, the first one preferred.
    HashSet<CompressionTypeEnum> compressions;

    /// Nothing is agreed.
    FrameCodecInfo() { init_This(); }
    /// Copies empty the sets of the target first and keep the order of the source.
    FrameCodecInfo(const FrameCodecInfo& p_src) : Record() { copy_Backwards(p_src); }
    /// As the copy; the count stays.
    FrameCodecInfo& operator=(const FrameCodecInfo& p_src) {
        copy_Backwards(p_src);
        return *this;
    }

    /// A copy with a count of its own, which the caller owns.
    FrameCodecInfo* clone() const override { return new FrameCodecInfo(*this); }

    // Slot order is a contract between separately built modules.
    /// Read and write all fields in their order, under their names. 0 at the first entry that fails; what was read
    /// stays.
    virtual bool_t readSerialized(IDeserializer* p_deserializer) { return Record::readSerialized(p_deserializer); }
    virtual bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) {
        return Record::writeSerialized(p_serializer, p_headerPass, p_result);
    }

    static constexpr const char* c_typeName = "FrameCodecInfo";
    static constexpr auto fields() {
        return zyr_fields(
            zyr_field("codecName", &FrameCodecInfo::codecName),
            zyr_field("codecImplementation", &FrameCodecInfo::codecImplementation),
            zyr_field("codecOptions", &FrameCodecInfo::codecOptions),
            zyr_field("hardwareDeviceName", &FrameCodecInfo::hardwareDeviceName),
            zyr_field("rating", &FrameCodecInfo::rating), zyr_field("adapterID", &FrameCodecInfo::adapterID),
            zyr_field("planesModels", &FrameCodecInfo::planesModels),
            zyr_field("colorSpaces", &FrameCodecInfo::colorSpaces),
            zyr_field("codecProfiles", &FrameCodecInfo::codecProfiles),
            zyr_field("variableQuality", &FrameCodecInfo::variableQuality), zyr_field("video", &FrameCodecInfo::video),
            zyr_field("lossless", &FrameCodecInfo::lossless), zyr_field("packedBlocks", &FrameCodecInfo::packedBlocks),
            zyr_field("multiSlice", &FrameCodecInfo::multiSlice),
            zyr_field("compressions", &FrameCodecInfo::compressions));
    }
};

#pragma pack(pop)

static_assert(sizeof(FrameCodecInfo) == 785);

} // namespace zyr
