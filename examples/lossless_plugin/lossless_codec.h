/// A lossless codec in a plug-in of its own: each picture is packed as one LZ4 block.
///
/// Small enough to be read in one sitting, whole enough to be used: hosts find it, negotiate with it and send streams
/// through it like any other codec.
#pragma once

#include "picture/zyr_codec_plugin.h"

class LosslessFrameEncoderContext;
class LosslessFrameDecoderContext;

/// The codec as both sides name it.
constexpr zyr::CodecOffer LOSSLESS_OFFER = {
    .m_codecName = "lossless", .m_implementation = "lz4", .m_rating = zyr::ZYR_CODEC_RATING_SUPER_FAST};

/// Offers one way of encoding, which works on every machine.
class LosslessFrameEncoder : public zyr::CodecEncoder<LosslessFrameEncoder, LosslessFrameEncoderContext> {
public:
    static constexpr const char* c_className = "LosslessFrameEncoder";
    static constexpr const char* c_classGUIDText = "f13b1975-252c-421f-95f1-3a53f79f63bc";
    static constexpr zyr::CodecOffer c_offer = LOSSLESS_OFFER;
};

/// One stream. Each packet stands for itself.
class LosslessFrameEncoderContext : public zyr::CodecEncoderContext<LosslessFrameEncoderContext, LosslessFrameEncoder> {
public:
    static constexpr const char* c_className = "LosslessFrameEncoderContext";
    static constexpr const char* c_classGUIDText = "bd0f068e-4b2a-4344-9b54-d66093add011";

    bool_t encodePicture(const zyr::IImage& p_image, zyr::Array<uint8_t>& p_bytes) override;

private:
    zyr::Array<unsigned char> m_rows; ///< The picture without gaps between its rows.
};

/// The other side.
class LosslessFrameDecoder : public zyr::CodecDecoder<LosslessFrameDecoder, LosslessFrameDecoderContext> {
public:
    static constexpr const char* c_className = "LosslessFrameDecoder";
    static constexpr const char* c_classGUIDText = "ad50e028-9ee8-478b-916b-8ad1b9a88313";
    static constexpr zyr::CodecOffer c_offer = LOSSLESS_OFFER;
};

class LosslessFrameDecoderContext : public zyr::CodecDecoderContext<LosslessFrameDecoderContext, LosslessFrameDecoder> {
public:
    static constexpr const char* c_className = "LosslessFrameDecoderContext";
    static constexpr const char* c_classGUIDText = "8296d74d-4fb0-45f0-b39e-67c45bf00afd";

    bool_t decodePicture(const zyr::Array<uint8_t>& p_bytes, zyr::IImage& p_image) override;

private:
    zyr::Array<unsigned char> m_rows;
};
