/// The one place where a stream calls its encoder and its decoder.
#pragma once

#include "host/zyr_encoder_options.h"
#include "host/zyr_framework.h"
#include "host/zyr_negotiation.h"
#include "host/zyr_plane_picture.h"

#include <string>

namespace zyr::host {

/// What an encoder made of a picture.
struct EncodedFrame {
    Ref<IPackedFrameData> m_packet; ///< Null when it failed.
    std::string m_reason;           ///< Of a failure: the last warning of the log.
};

/// What a decoder made of a packet.
struct DecodedFrame {
    Ref<IUnpackedFrameData> m_picture; ///< Null when it failed.
    std::string m_reason;
};

/// An encoder context and a decoder context of one agreed way of coding. encode() and setQuality() belong to one
/// thread, decode() to one that may be another.
class StreamCoder {
public:
    /// `p_match` must outlive the object; its `m_info` gets the options that the encoder is opened with.
    StreamCoder(Match& p_match, const Market& p_market);

    /// Initializes both sides and makes the contexts. `p_options` go on top of those that were agreed. Throws RunError.
    void open(const EncoderOptions& p_options, unsigned p_quality);

    /// Changes the quality from the next picture on. An encoder that takes its quality only when it is opened is opened
    /// anew, which makes the next picture a key frame.
    void setQuality(unsigned p_quality);
    unsigned getQuality() const { return m_quality; }

    /// Opens the encoder anew with these options on top of those it has. Throws RunError.
    void reopen(const EncoderOptions& p_options);

    /// Times that the encoder was opened anew.
    uint64_t getReopenings() const { return m_reopenings; }

    const std::string& getImplementation() const { return m_implementation; }

    /// True when another quality costs a new context.
    bool isQualityFixed() const { return isSteeredByCrf(m_options); }

    /// Encodes a picture. `p_planes` gets the planes that the encoder saw, where it uses the picture module's
    /// conversion; otherwise it is left empty. Null: they are not wanted.
    EncodedFrame encode(IUnpackedFrameData& p_frame, PlanePicture* p_planes);

    /// Decodes a packet. `p_planes` as above.
    DecodedFrame decode(IPackedFrameData& p_packet, PlanePicture* p_planes);

private:
    void openEncoder();

    Match& m_match;
    IFrameEncoder& m_encoder;
    IFrameDecoder& m_decoder;
    Ref<IFrameEncoderContext> m_encoderContext;
    Ref<IFrameDecoderContext> m_decoderContext;
    EncoderOptions m_options;
    std::string m_implementation;
    unsigned m_quality = 0;
    uint64_t m_reopenings = 0;
};

} // namespace zyr::host
