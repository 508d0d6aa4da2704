/// The vocabulary by which an encoder and a decoder agree on one way of coding.
///
/// The numbers are stored and sent as they are, and the texts at the end are the ones that serializers write: neither
/// may ever change. `zyr_convertEnumeration` converts in both directions and is safe on any thread. A number without a
/// text can't be written to a text format.
#pragma once

#include "zyr_common/serialization/zyr_enumeration.h"
#include "zyr_common/zyr_types.h"

namespace zyr {

/// How much a decoder wants a feature: not at all, if there is a choice, or as a condition; each on one of 17 ranks. A
/// lower rank comes first.
///
/// All even values from 2 on are mandatory. A mandatory feature that the encoder lacks ends the negotiation; an
/// optional one is just not agreed on. Ranks only order the features of one group among each other: planes models,
/// colour spaces, profiles or compressions.
enum RequestTypeEnum : uint32_t {
    /// Not wanted: an encoder that insists on it doesn't match.
    ZYR_REQUEST_NONE = 0,
    /// Wanted if possible, on the first rank.
    ZYR_REQUEST_OPTIONAL = 1,
    /// A condition, on the first rank.
    ZYR_REQUEST_MANDATORY = 2,
    /// From here on in pairs, each on the rank in its name.
    ZYR_REQUEST_OPTIONAL_1 = 3,
    ZYR_REQUEST_MANDATORY_1 = 4,
    ZYR_REQUEST_OPTIONAL_2 = 5,
    ZYR_REQUEST_MANDATORY_2 = 6,
    ZYR_REQUEST_OPTIONAL_3 = 7,
    ZYR_REQUEST_MANDATORY_3 = 8,
    ZYR_REQUEST_OPTIONAL_4 = 9,
    ZYR_REQUEST_MANDATORY_4 = 10,
    ZYR_REQUEST_OPTIONAL_5 = 11,
    ZYR_REQUEST_MANDATORY_5 = 12,
    ZYR_REQUEST_OPTIONAL_6 = 13,
    ZYR_REQUEST_MANDATORY_6 = 14,
    ZYR_REQUEST_OPTIONAL_7 = 15,
    ZYR_REQUEST_MANDATORY_7 = 16,
    ZYR_REQUEST_OPTIONAL_8 = 17,
    ZYR_REQUEST_MANDATORY_8 = 18,
    ZYR_REQUEST_OPTIONAL_9 = 19,
    ZYR_REQUEST_MANDATORY_9 = 20,
    ZYR_REQUEST_OPTIONAL_10 = 21,
    ZYR_REQUEST_MANDATORY_10 = 22,
    ZYR_REQUEST_OPTIONAL_11 = 23,
    ZYR_REQUEST_MANDATORY_11 = 24,
    ZYR_REQUEST_OPTIONAL_12 = 25,
    ZYR_REQUEST_MANDATORY_12 = 26,
    ZYR_REQUEST_OPTIONAL_13 = 27,
    ZYR_REQUEST_MANDATORY_13 = 28,
    ZYR_REQUEST_OPTIONAL_14 = 29,
    ZYR_REQUEST_MANDATORY_14 = 30,
    ZYR_REQUEST_OPTIONAL_15 = 31,
    ZYR_REQUEST_MANDATORY_15 = 32,
    ZYR_REQUEST_OPTIONAL_16 = 33,
    /// The last rank.
    ZYR_REQUEST_MANDATORY_16 = 34
};

/// How an encoder treats a feature. Encoders have no ranks: among what both sides can do, the decoder chooses.
enum ProposalTypeEnum : uint32_t {
    ZYR_PROPOSAL_NONE = 0,     ///< The encoder does not do this.
    ZYR_PROPOSAL_OPTIONAL = 1, ///< The encoder does this if asked.
    ZYR_PROPOSAL_MANDATORY = 2 ///< The encoder cannot work unless this is asked for.
};

/// Speed class of a codec implementation, as its author rates it. It takes no part in the matching: the agreed record
/// has the encoder's.
enum CodecRatingEnum : uint32_t {
    /// not rated
    ZYR_CODEC_RATING_NONE = 0,
    ZYR_CODEC_RATING_ULTRA_SLOW = 1,
    ZYR_CODEC_RATING_SUPER_SLOW = 2,
    ZYR_CODEC_RATING_VERY_SLOW = 3,
    ZYR_CODEC_RATING_SLOW = 4,
    ZYR_CODEC_RATING_NORMAL = 5,
    ZYR_CODEC_RATING_FAST = 6,
    ZYR_CODEC_RATING_VERY_FAST = 7,
    ZYR_CODEC_RATING_SUPER_FAST = 8,
    ZYR_CODEC_RATING_ULTRA_FAST = 9
};

/// How the samples of a picture are laid out in planes. In all but `SINGLE` the first plane is luma in full size. YV12,
/// NV12 and NV21 are for pictures only: they can't be negotiated.
enum PixelPlanesModelEnum : uint32_t {
    /// unknown, or not agreed
    ZYR_PLANES_MODEL_NONE = 0,
    ZYR_PLANES_MODEL_SINGLE = 1, ///< Packed pixels in one plane.
    /// chroma halved on both axes; planes Y, U, V
    ZYR_PLANES_MODEL_I420 = 2,
    /// the same with V before U
    ZYR_PLANES_MODEL_YV12 = 3,
    /// chroma halved on both axes in one plane, U and V taking turns
    ZYR_PLANES_MODEL_NV12 = 4,
    /// the same with V before U
    ZYR_PLANES_MODEL_NV21 = 5,
    /// chroma a quarter on both axes
    ZYR_PLANES_MODEL_I410 = 6,
    /// chroma a quarter across, full height
    ZYR_PLANES_MODEL_I411 = 7,
    /// chroma half across, full height
    ZYR_PLANES_MODEL_I422 = 8,
    /// chroma in full size
    ZYR_PLANES_MODEL_I444 = 9
};

/// What the numbers of a picture mean. Limited range keeps luma within 16 to 235 and chroma within 16 to 240; full
/// range uses all of 0 to 255. The matrices are those of the ITU recommendations in the names.
enum ColorSpaceEnum : uint32_t {
    /// unknown, or not agreed
    ZYR_COLOR_SPACE_NONE = 0,
    /// red, green and blue themselves, without a matrix
    ZYR_COLOR_SPACE_RGB = 1,
    ZYR_COLOR_SPACE_BT_601 = 2,    ///< Limited range.
    ZYR_COLOR_SPACE_BT_601_FR = 3, ///< Full range.
    ZYR_COLOR_SPACE_BT_709 = 4,    ///< Limited range.
    ZYR_COLOR_SPACE_BT_709_FR = 5  ///< Full range.
};

/// The coding tools that a stream may use, where a codec has such a choice.
enum FrameCodecProfileEnum : uint32_t {
    /// the codec has no such choice, or none was agreed
    ZYR_CODEC_PROFILE_NONE = 0,
    /// the fewest tools
    ZYR_CODEC_PROFILE_BASELINE = 1,
    ZYR_CODEC_PROFILE_MAIN = 2,
    /// the most tools
    ZYR_CODEC_PROFILE_HIGH = 3
};

/// How packed data is compressed.
enum CompressionTypeEnum : uint32_t {
    /// the bytes as they are
    ZYR_COMPRESSION_NONE = 0,
    /// runs of equal values
    ZYR_COMPRESSION_RLE = 1,
    ZYR_COMPRESSION_LZ4 = 2,
    ZYR_COMPRESSION_ZIP = 3
};

/// What part of a picture that comes in layers a frame carries.
enum FrameLayerTypeEnum : uint32_t {
    /// the picture has no layers
    ZYR_FRAME_LAYER_NONE = 0,
    ZYR_FRAME_LAYER_SMALL_DYNAMIC = 1,
    ZYR_FRAME_LAYER_LARGE_DYNAMIC = 2,
    ZYR_FRAME_LAYER_QUALITY_UPDATE = 3
};

/// Rank of a request, 0 to 16; 0 for a value that is no request.
ZYR_API uint8_t zyr_getRequestPriority(RequestTypeEnum p_requestType);

/// 1 for the mandatory requests of any rank, otherwise 0.
ZYR_API bool_t zyr_isRequestMandatory(RequestTypeEnum p_requestType);

/// Name of a frame layer for messages: "None", "SmallDynamic", "LargeDynamic", "QualityUpdate" or "Unknown".
ZYR_API const char* zyr_getFrameLayerTypeString(FrameLayerTypeEnum p_layerType);

/// The texts as they stand in files, in the order of the numbers; so for all tables below.
template <> struct EnumerationTable<RequestTypeEnum> {
    static constexpr EnumerationEntry c_entries[] = {
        {0, "NONE"},          {1, "OPTIONAL"},      {2, "MANDATORY"},     {3, "OPTIONAL_1"},    {4, "MANDATORY_1"},
        {5, "OPTIONAL_2"},    {6, "MANDATORY_2"},   {7, "OPTIONAL_3"},    {8, "MANDATORY_3"},   {9, "OPTIONAL_4"},
        {10, "MANDATORY_4"},  {11, "OPTIONAL_5"},   {12, "MANDATORY_5"},  {13, "OPTIONAL_6"},   {14, "MANDATORY_6"},
        {15, "OPTIONAL_7"},   {16, "MANDATORY_7"},  {17, "OPTIONAL_8"},   {18, "MANDATORY_8"},  {19, "OPTIONAL_9"},
        {20, "MANDATORY_9"},  {21, "OPTIONAL_10"},  {22, "MANDATORY_10"}, {23, "OPTIONAL_11"},  {24, "MANDATORY_11"},
        {25, "OPTIONAL_12"},  {26, "MANDATORY_12"}, {27, "OPTIONAL_13"},  {28, "MANDATORY_13"}, {29, "OPTIONAL_14"},
        {30, "MANDATORY_14"}, {31, "OPTIONAL_15"},  {32, "MANDATORY_15"}, {33, "OPTIONAL_16"},  {34, "MANDATORY_16"}};
};

template <> struct EnumerationTable<ProposalTypeEnum> {
    static constexpr EnumerationEntry c_entries[] = {{0, "NONE"}, {1, "OPTIONAL"}, {2, "MANDATORY"}};
};

template <> struct EnumerationTable<CodecRatingEnum> {
    static constexpr EnumerationEntry c_entries[] = {
        {0, "NONE"},   {1, "ULTRA_SLOW"}, {2, "SUPER_SLOW"}, {3, "VERY_SLOW"},  {4, "SLOW"},
        {5, "NORMAL"}, {6, "FAST"},       {7, "VERY_FAST"},  {8, "SUPER_FAST"}, {9, "ULTRA_FAST"}};
};

template <> struct EnumerationTable<PixelPlanesModelEnum> {
    static constexpr EnumerationEntry c_entries[] = {{0, "NONE"}, {1, "SINGLE"}, {2, "I420"}, {3, "YV12"}, {4, "NV12"},
                                                     {5, "NV21"}, {6, "I410"},   {7, "I411"}, {8, "I422"}, {9, "I444"}};
};

template <> struct EnumerationTable<ColorSpaceEnum> {
    static constexpr EnumerationEntry c_entries[] = {{0, "NONE"},      {1, "RGB"},    {2, "BT_601"},
                                                     {3, "BT_601_FR"}, {4, "BT_709"}, {5, "BT_709_FR"}};
};

template <> struct EnumerationTable<FrameCodecProfileEnum> {
    static constexpr EnumerationEntry c_entries[] = {{0, "NONE"}, {1, "BASELINE"}, {2, "MAIN"}, {3, "HIGH"}};
};

template <> struct EnumerationTable<CompressionTypeEnum> {
    static constexpr EnumerationEntry c_entries[] = {{0, "NONE"}, {1, "RLE"}, {2, "LZ4"}, {3, "ZIP"}};
};

} // namespace zyr
