/// What an encoder offers.
///
/// Proposals are plain values: they can be stored or sent to the other end of a connection. One owner at a time.
///
///     FrameCodecInfo agreed;
///     if (proposal->matchWithCodecRequest(request, agreed)) {
///         encoder->initialize(agreed);
///     } else {
///         explain(proposal->findMismatch(request));
///     }
#pragma once

#include "picture/zyr_codec_enums.h"
#include "zyr_common/memory/zyr_ref_counted_data.h"
#include "zyr_common/serialization/zyr_record.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

class FrameCodecInfo;
class FrameCodecRequest;

/// What keeps a proposal and a request from each other. For people: programs only ask whether they match.
struct CodecMismatch {
    enum Kind {
        NOTHING,         ///< They match.
        ANOTHER_CODEC,   ///< The codec names differ.
        ENCODER_INSISTS, ///< On a feature that the request does not mention.
        DECODER_INSISTS, ///< On a feature that the proposal does not offer.
        NO_COMMON_YUV,   ///< A YUV member of the group is asked for, and none is shared.
        NO_COMMON        ///< A member of the group is asked for, and none is shared.
    };
    Kind m_kind = NOTHING;
    const char* m_feature = ""; ///< The field ("planesModel420"), or the group ("planes model"). Lives forever.
};

#pragma pack(push, 1)

/// One way of encoding, with how the encoder treats each feature. All fields are empty, 0 or false at first. The fields
/// are those of FrameCodecRequest, with the weights of an encoder.
///
///     FrameCodecInfo info; // new: nothing in it is emptied
///     if (proposal->matchWithCodecRequest(*request, info)) {
///         encoder->initialize(info);
///         decoder->initialize(info); // both work with the first element of each set
///     }
class FrameCodecProposal : public Record<FrameCodecProposal, RefCountedData> {
public:
    String codecName;           ///< The codec, such as "vp9".
    String codecImplementation; ///< The implementation of it, such as "libvpx-vp9".
    String codecOptions;        ///< Options for the implementation: `key=value` pairs joined by commas.
    String hardwareDeviceName;  ///< Hardware path, "vaapi" or empty.
    CodecRatingEnum rating;     ///< Speed class of this way of encoding.
    uint64_t adapterID;         ///< The graphics adapter that the proposal is tied to.
    /// The layouts of picture samples that the encoder takes, see PixelPlanesModelEnum.
    ProposalTypeEnum planesModelSingle;
    /// Those with chroma planes of their own, by the ratio of their sizes.
    ProposalTypeEnum planesModel420;
    ProposalTypeEnum planesModel410;
    ProposalTypeEnum planesModel411;
    ProposalTypeEnum planesModel422;
    ProposalTypeEnum planesModel444;
    bool_t planesModelYUV; ///< At least one of the five YUV models must be agreed.
    bool_t planesModel;    ///< At least one of the six models must be agreed.
    /// The colour spaces that the encoder takes, see ColorSpaceEnum. RGB stands apart: it is no YUV space.
    ProposalTypeEnum colorSpaceRGB;
    ProposalTypeEnum colorSpaceBT601;
    ProposalTypeEnum colorSpaceBT601FullRange;
    ProposalTypeEnum colorSpaceBT709;
    ProposalTypeEnum colorSpaceBT709FullRange;
    bool_t colorSpaceYUV; ///< At least one of the four YUV colour spaces must be agreed.
    bool_t colorSpace;    ///< At least one of the five colour spaces must be agreed.
    /// The profiles of streams that the encoder writes.
    ProposalTypeEnum codecProfileBaseline;
    ProposalTypeEnum codecProfileMain;
    ProposalTypeEnum codecProfileHigh;
    bool_t codecProfile;              ///< At least one profile must be agreed.
    ProposalTypeEnum variableQuality; ///< The quality can be changed while coding.
    ProposalTypeEnum video;           ///< The codec works as a video codec.
    /// Every decoded picture equals the coded one, bit by bit.
    ProposalTypeEnum lossless;
    /// For codecs that send a picture in blocks; others leave these two alone.
    ProposalTypeEnum packedBlocks;
    ProposalTypeEnum multiSlice;
    /// How such blocks may be packed, see CompressionTypeEnum.
    ProposalTypeEnum compressionRle;
    ProposalTypeEnum compressionLz4;
    ProposalTypeEnum compressionZip;
    bool_t compression; ///< At least one compression must be agreed.

    /// Offers nothing.
    FrameCodecProposal() { init_This(); }
    /// A copy starts with a count of its own.
    FrameCodecProposal(const FrameCodecProposal& p_src) : Record() { copy_Backwards(p_src); }
    /// Takes over all fields; the count stays.
    FrameCodecProposal& operator=(const FrameCodecProposal& p_src) {
        copy_Backwards(p_src);
        return *this;
    }

    /// A copy with a count of its own, which the caller owns.
    FrameCodecProposal* clone() const override { return new FrameCodecProposal(*this); }

    // Slot order is a contract between separately built modules.
    /// Read and write all fields in their order, under their names. 0 at the first entry that fails; what was read
    /// stays.
    virtual bool_t readSerialized(IDeserializer* p_deserializer) { return Record::readSerialized(p_deserializer); }
    virtual bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) {
        return Record::writeSerialized(p_serializer, p_headerPass, p_result);
    }
    /// Agrees with a decoder. True when the pair is compatible; then `p_codecInfo`, which has to be new since nothing
    /// in it is emptied, holds every feature that both share, ordered by the request's ranks: the first element of each
    /// set is the choice, the others are alternatives in falling order. Only the codec names must be equal, the
    /// implementations need not be. On false `p_codecInfo` may be partly filled. Refusing is not logged.
    virtual bool_t matchWithCodecRequest(const FrameCodecRequest& p_request, FrameCodecInfo& p_codecInfo) const;

    /// The first thing on which `matchWithCodecRequest` breaks with the same request, for people to read.
    CodecMismatch findMismatch(const FrameCodecRequest& p_request) const;

    static constexpr const char* c_typeName = "FrameCodecProposal";
    static constexpr auto fields() {
        return zyr_fields(
            zyr_field("codecName", &FrameCodecProposal::codecName),
            zyr_field("codecImplementation", &FrameCodecProposal::codecImplementation),
            zyr_field("codecOptions", &FrameCodecProposal::codecOptions),
            zyr_field("hardwareDeviceName", &FrameCodecProposal::hardwareDeviceName),
            zyr_field("rating", &FrameCodecProposal::rating), zyr_field("adapterID", &FrameCodecProposal::adapterID),
            zyr_field("planesModelSingle", &FrameCodecProposal::planesModelSingle),
            zyr_field("planesModel420", &FrameCodecProposal::planesModel420),
            zyr_field("planesModel410", &FrameCodecProposal::planesModel410),
            zyr_field("planesModel411", &FrameCodecProposal::planesModel411),
            zyr_field("planesModel422", &FrameCodecProposal::planesModel422),
            zyr_field("planesModel444", &FrameCodecProposal::planesModel444),
            zyr_field("planesModelYUV", &FrameCodecProposal::planesModelYUV),
            zyr_field("planesModel", &FrameCodecProposal::planesModel),
            zyr_field("colorSpaceRGB", &FrameCodecProposal::colorSpaceRGB),
            zyr_field("colorSpaceBT601", &FrameCodecProposal::colorSpaceBT601),
            zyr_field("colorSpaceBT601FullRange", &FrameCodecProposal::colorSpaceBT601FullRange),
            zyr_field("colorSpaceBT709", &FrameCodecProposal::colorSpaceBT709),
            zyr_field("colorSpaceBT709FullRange", &FrameCodecProposal::colorSpaceBT709FullRange),
            zyr_field("colorSpaceYUV", &FrameCodecProposal::colorSpaceYUV),
            zyr_field("colorSpace", &FrameCodecProposal::colorSpace),
            zyr_field("codecProfileBaseline", &FrameCodecProposal::codecProfileBaseline),
            zyr_field("codecProfileMain", &FrameCodecProposal::codecProfileMain),
            zyr_field("codecProfileHigh", &FrameCodecProposal::codecProfileHigh),
            zyr_field("codecProfile", &FrameCodecProposal::codecProfile),
            zyr_field("variableQuality", &FrameCodecProposal::variableQuality),
            zyr_field("video", &FrameCodecProposal::video), zyr_field("lossless", &FrameCodecProposal::lossless),
            zyr_field("packedBlocks", &FrameCodecProposal::packedBlocks),
            zyr_field("multiSlice", &FrameCodecProposal::multiSlice),
            zyr_field("compressionRle", &FrameCodecProposal::compressionRle),
            zyr_field("compressionLz4", &FrameCodecProposal::compressionLz4),
            zyr_field("compressionZip", &FrameCodecProposal::compressionZip),
            zyr_field("compression", &FrameCodecProposal::compression));
    }
};

#pragma pack(pop)

static_assert(sizeof(FrameCodecProposal) == 578);

} // namespace zyr
