#include "host/zyr_stream_coder.h"

#include "host/zyr_run_error.h"

namespace zyr::host {

namespace {

/// Runs a call with the log of this thread kept, and hands the planes of its conversion to `p_planes`.
template <typename Call>
void callAndWatch(PlanePicture* p_planes, uint32_t p_width, uint32_t p_height, bool& p_failed, std::string& p_reason,
                  Call p_call) {
    HostApplicationData::startListeningHere();
    if (p_planes != nullptr) {
        p_planes->clear();
        PlaneTap::listen([&](const PlaneView& p_view) { p_view.copyTo(*p_planes, p_width, p_height); }, p_call);
    } else {
        p_call();
    }
    const std::vector<std::string> lines = HostApplicationData::stopListeningHere();
    for (size_t i = 0; p_failed && i < lines.size(); i++) {
        LogLine parts;
        if (parseLogLine(lines[i], parts) && parts.m_level == "WARN") {
            p_reason = parts.m_message;
        }
    }
}

} // namespace

StreamCoder::StreamCoder(Match& p_match, const Market& p_market)
    : m_match(p_match),
      m_encoder(*p_market.m_encoders[p_match.m_offer->m_encoder]),
      m_decoder(*p_market.m_decoders[p_match.m_wish->m_decoder]),
      m_options(toText(p_match.m_info.codecOptions)),
      m_implementation(toText(p_match.m_info.codecImplementation)) {}

void StreamCoder::open(const EncoderOptions& p_options, unsigned p_quality) {
    m_quality = p_quality;
    const bool steered = isSteeredByCrf(m_options);
    if (steered) {
        m_options.set("crf", std::to_string(crfOfQuality(p_quality)));
    }
    m_options.add(p_options);
    openEncoder();
    if (!m_decoder.initialize(m_match.m_decoderInfo)) {
        throw RunError("the decoder refused what was negotiated (see the log)");
    }
    m_decoderContext = Ref<IFrameDecoderContext>::adopt(m_decoder.createFrameDecoderContext());
}

void StreamCoder::openEncoder() {
    m_encoderContext.clear();
    m_match.m_info.codecOptions = String(m_options.toText());
    if (!m_encoder.initialize(m_match.m_info)) {
        throw RunError("the encoder refused what was negotiated (see the log)");
    }
    m_encoderContext = Ref<IFrameEncoderContext>::adopt(m_encoder.createFrameEncoderContext());
    m_encoderContext->setQuality(uint8_t(m_quality));
}

void StreamCoder::setQuality(unsigned p_quality) {
    if (p_quality == m_quality) {
        return;
    }
    m_quality = p_quality;
    if (isQualityFixed()) {
        reopen(EncoderOptions("crf=" + std::to_string(crfOfQuality(p_quality))));
    } else {
        m_encoderContext->setQuality(uint8_t(p_quality));
    }
}

void StreamCoder::reopen(const EncoderOptions& p_options) {
    m_options.add(p_options);
    openEncoder();
    m_reopenings++;
}

EncodedFrame StreamCoder::encode(IUnpackedFrameData& p_frame, PlanePicture* p_planes) {
    EncodedFrame result;
    bool failed = false;
    callAndWatch(p_planes, p_frame.getWidth(), p_frame.getHeight(), failed, result.m_reason, [&] {
        result.m_packet = Ref<IPackedFrameData>::adopt(m_encoderContext->encode(&p_frame));
        failed = !result.m_packet;
    });
    return result;
}

DecodedFrame StreamCoder::decode(IPackedFrameData& p_packet, PlanePicture* p_planes) {
    DecodedFrame result;
    bool failed = false;
    callAndWatch(p_planes, p_packet.getWidth(), p_packet.getHeight(), failed, result.m_reason, [&] {
        result.m_picture = Ref<IUnpackedFrameData>::adopt(m_decoderContext->decode(&p_packet));
        failed = !result.m_picture;
    });
    return result;
}

} // namespace zyr::host
