/// What a decoder wants.
///
/// Requests are plain values: they can be stored or sent to the other end of a connection. One owner at a time.
///
///     FrameCodecRequest request;
///     request.codecName = "vp9";
///     request.planesModel420 = ZYR_REQUEST_MANDATORY;
///     request.colorSpaceBT709 = ZYR_REQUEST_OPTIONAL;   // the first choice
///     request.colorSpaceBT601 = ZYR_REQUEST_OPTIONAL_1; // the second
///     request.colorSpaceYUV = 1;                        // one of the two it must be
#pragma once

#include "picture/zyr_codec_enums.h"
#include "zyr_common/memory/zyr_ref_counted_data.h"
#include "zyr_common/serialization/zyr_record.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

class FrameCodecInfo;

#pragma pack(push, 1)

/// One way of decoding, with the weight and rank of each feature. All fields are empty, 0 or false at first: such a
/// request wants nothing and matches every encoder of the same name that insists on nothing.
///
///     Ref<FrameCodecRequest> request = Ref<FrameCodecRequest>::adopt(new FrameCodecRequest);
///     request->codecName = "vp9";
///     request->planesModel420 = ZYR_REQUEST_MANDATORY;      // nothing else can be shown
///     request->colorSpaceBT709 = ZYR_REQUEST_OPTIONAL;      // preferred
///     request->colorSpaceBT601 = ZYR_REQUEST_OPTIONAL_1;    // otherwise this one
///     request->colorSpace = 1;                              // but one of the two
class FrameCodecRequest : public Record<FrameCodecRequest, RefCountedData> {
public:
    String codecName;           ///< The codec, such as "vp9".
    String codecImplementation; ///< The implementation of it, such as "libvpx-vp9".
    String codecOptions;        ///< Options for the implementation: `key=value` pairs joined by commas.
    String hardwareDeviceName;  ///< Hardware path, "vaapi" or empty.
    CodecRatingEnum rating;     ///< Speed class of this way of decoding.
    /// The layouts of picture samples that the decoder can give, see PixelPlanesModelEnum.
    RequestTypeEnum planesModelSingle;
    /// Those with chroma planes of their own, by the ratio of their sizes.
    RequestTypeEnum planesModel420;
    RequestTypeEnum planesModel410;
    RequestTypeEnum planesModel411;
    RequestTypeEnum planesModel422;
    RequestTypeEnum planesModel444;
    bool_t planesModelYUV; ///< At least one of the five YUV models must be agreed.
    bool_t planesModel;    ///< At least one of the six models must be agreed.
    /// The colour spaces that the decoder can give, see ColorSpaceEnum.
    RequestTypeEnum colorSpaceRGB;
    RequestTypeEnum colorSpaceBT601;
    RequestTypeEnum colorSpaceBT601FullRange;
    RequestTypeEnum colorSpaceBT709;
    RequestTypeEnum colorSpaceBT709FullRange;
    bool_t colorSpaceYUV; ///< At least one of the four YUV colour spaces must be agreed.
    bool_t colorSpace;    ///< At least one of the five colour spaces must be agreed.
    /// The profiles of streams that the decoder reads.
    RequestTypeEnum codecProfileBaseline;
    RequestTypeEnum codecProfileMain;
    RequestTypeEnum codecProfileHigh;
    bool_t codecProfile;             ///< At least one profile must be agreed.
    RequestTypeEnum variableQuality; ///< The quality can be changed while coding.
    RequestTypeEnum video;           ///< The codec works as a video codec.
    /// Every decoded picture equals the coded one, bit by bit.
    RequestTypeEnum lossless;
    /// For codecs that send a picture in blocks; others leave these two alone.
    RequestTypeEnum packedBlocks;
    RequestTypeEnum multiSlice;
    /// How such blocks may be packed, see CompressionTypeEnum.
    RequestTypeEnum compressionRle;
    RequestTypeEnum compressionLz4;
    RequestTypeEnum compressionZip;
    bool_t compression; ///< At least one compression must be agreed.

    /// Wants nothing.
    FrameCodecRequest() { init_This(); }
    /// A copy starts with a count of its own.
    FrameCodecRequest(const FrameCodecRequest& p_src) : Record() { copy_Backwards(p_src); }
    /// Takes over all fields; the count stays.
    FrameCodecRequest& operator=(const FrameCodecRequest& p_src) {
        copy_Backwards(p_src);
        return *this;
    }

    /// A copy with a count of its own, which the caller owns.
    FrameCodecRequest* clone() const override { return new FrameCodecRequest(*this); }

    // Slot order is a contract between separately built modules.
    /// Read and write all fields in their order, under their names. 0 at the first entry that fails; what was read
    /// stays.
    virtual bool_t readSerialized(IDeserializer* p_deserializer) { return Record::readSerialized(p_deserializer); }
    virtual bool_t writeSerialized(ISerializer* p_serializer, bool_t p_headerPass, bool_t& p_result) {
        return Record::writeSerialized(p_serializer, p_headerPass, p_result);
    }
    /// Narrows the request to what `p_codecInfo` still allows: features that it lacks become NONE, mandatory ones too.
    /// Of the texts only the codec name is written, and the rating is not. False when a group that must have a match
    /// has none; `p_out` is partly written then.
    virtual bool_t filterWithCodecInfo(const FrameCodecInfo& p_codecInfo, FrameCodecRequest& p_out) const;

    static constexpr const char* c_typeName = "FrameCodecRequest";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("codecName", &FrameCodecRequest::codecName),
                          zyr_field("codecImplementation", &FrameCodecRequest::codecImplementation),
                          zyr_field("codecOptions", &FrameCodecRequest::codecOptions),
                          zyr_field("hardwareDeviceName", &FrameCodecRequest::hardwareDeviceName),
                          zyr_field("rating", &FrameCodecRequest::rating),
                          zyr_field("planesModelSingle", &FrameCodecRequest::planesModelSingle),
                          zyr_field("planesModel420", &FrameCodecRequest::planesModel420),
                          zyr_field("planesModel410", &FrameCodecRequest::planesModel410),
                          zyr_field("planesModel411", &FrameCodecRequest::planesModel411),
                          zyr_field("planesModel422", &FrameCodecRequest::planesModel422),
                          zyr_field("planesModel444", &FrameCodecRequest::planesModel444),
                          zyr_field("planesModelYUV", &FrameCodecRequest::planesModelYUV),
                          zyr_field("planesModel", &FrameCodecRequest::planesModel),
                          zyr_field("colorSpaceRGB", &FrameCodecRequest::colorSpaceRGB),
                          zyr_field("colorSpaceBT601", &FrameCodecRequest::colorSpaceBT601),
                          zyr_field("colorSpaceBT601FullRange", &FrameCodecRequest::colorSpaceBT601FullRange),
                          zyr_field("colorSpaceBT709", &FrameCodecRequest::colorSpaceBT709),
                          zyr_field("colorSpaceBT709FullRange", &FrameCodecRequest::colorSpaceBT709FullRange),
                          zyr_field("colorSpaceYUV", &FrameCodecRequest::colorSpaceYUV),
                          zyr_field("colorSpace", &FrameCodecRequest::colorSpace),
                          zyr_field("codecProfileBaseline", &FrameCodecRequest::codecProfileBaseline),
                          zyr_field("codecProfileMain", &FrameCodecRequest::codecProfileMain),
                          zyr_field("codecProfileHigh", &FrameCodecRequest::codecProfileHigh),
                          zyr_field("codecProfile", &FrameCodecRequest::codecProfile),
                          zyr_field("variableQuality", &FrameCodecRequest::variableQuality),
                          zyr_field("video", &FrameCodecRequest::video),
                          zyr_field("lossless", &FrameCodecRequest::lossless),
                          zyr_field("packedBlocks", &FrameCodecRequest::packedBlocks),
                          zyr_field("multiSlice", &FrameCodecRequest::multiSlice),
                          zyr_field("compressionRle", &FrameCodecRequest::compressionRle),
                          zyr_field("compressionLz4", &FrameCodecRequest::compressionLz4),
                          zyr_field("compressionZip", &FrameCodecRequest::compressionZip),
                          zyr_field("compression", &FrameCodecRequest::compression));
    }
};

#pragma pack(pop)

static_assert(sizeof(FrameCodecRequest) == 570);

} // namespace zyr
