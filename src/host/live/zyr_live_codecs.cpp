#include "host/live/zyr_live_codecs.h"

#include "host/live/zyr_vp9_packets.h"
#include "host/zyr_encoder_options.h"
#include "host/zyr_run_error.h"

#include <algorithm>

namespace zyr::host {

namespace {

constexpr LiveCodec ALL[] = {LiveCodec::BLOCKS, LiveCodec::VP9};

/// Screens change in few places: speed goes before size, and two threads leave cores for what paints the screen.
EncoderOptions getLiveOptions(const std::string& p_implementation) {
    EncoderOptions options = getScreenOptions(p_implementation);
    if (p_implementation == "libvpx-vp9") {
        options.set("cpu-used", "8");
        options.set("threads", "2");
    } else if (p_implementation == "lz4") {
        options.set("dense", "1");
    }
    return options;
}

} // namespace

LiveCodecs::LiveCodecs(Framework& p_framework, const std::string& p_codec, unsigned p_quality)
    : m_market(openMarket(p_framework)) {
    for (const LiveCodec codec : ALL) {
        if (p_codec == "auto" || p_codec == getName(codec)) {
            agree(codec, p_quality);
        }
    }
    if (getCodecs() == 0) {
        throw RunError("no codec for live screens is usable here" + (p_codec == "auto" ? "" : ": '" + p_codec + "'"));
    }
}

const char* LiveCodecs::getName(LiveCodec p_codec) {
    return p_codec == LiveCodec::BLOCKS ? "blocks" : "vp9";
}

void LiveCodecs::agree(LiveCodec p_codec, unsigned p_quality) {
    Choice choice;
    choice.m_codec = getName(p_codec);
    choice.m_require = "sw"; // Hardware encoders keep frames back and know no key frame on request.
    std::vector<std::string> log;
    std::vector<std::string> notes;
    std::vector<std::unique_ptr<Match>> matches = judge(m_market, choice, log, notes);
    const Match* const best = chooseMatch(matches);
    const auto chosen =
        std::find_if(matches.begin(), matches.end(), [&](const auto& p_match) { return p_match.get() == best; });
    if (chosen == matches.end()) {
        return;
    }
    Way way;
    way.m_match = std::move(*chosen);
    Match& match = *way.m_match;
    EncoderOptions options(toText(match.m_info.codecOptions));
    options.add(getLiveOptions(toText(match.m_info.codecImplementation)));
    if (isSteeredByCrf(options)) {
        options.set("crf", std::to_string(crfOfQuality(p_quality)));
    }
    match.m_info.codecOptions = String(options.toText());
    if (p_codec == LiveCodec::VP9) {
        // Some browsers take all VP9 for limited, whatever it says: in full range they would show a film too dark.
        preferLimitedRange(match);
    }
    IFrameEncoder& encoder = *m_market.m_encoders[match.m_offer->m_encoder];
    IFrameDecoder& decoder = *m_market.m_decoders[match.m_wish->m_decoder];
    if (!encoder.initialize(match.m_info) || !decoder.initialize(match.m_decoderInfo)) {
        return;
    }
    way.m_encoder = &encoder;
    way.m_decoder = &decoder;
    if (p_codec == LiveCodec::VP9) {
        const ColorSpaceEnum space = firstOf(match.m_info.colorSpaces);
        m_fullRange = space == ZYR_COLOR_SPACE_BT_601_FR || space == ZYR_COLOR_SPACE_BT_709_FR;
        m_bt709 = space == ZYR_COLOR_SPACE_BT_709 || space == ZYR_COLOR_SPACE_BT_709_FR;
    }
    m_ways[size_t(p_codec)] = std::move(way);
}

uint8_t LiveCodecs::getCodecs() const {
    uint8_t codecs = 0;
    for (const LiveCodec codec : ALL) {
        codecs |= m_ways[size_t(codec)].m_encoder != nullptr ? codecBit(codec) : 0;
    }
    return codecs;
}

Ref<IFrameEncoderContext> LiveCodecs::createEncoder(LiveCodec p_codec) const {
    const Way& way = m_ways[size_t(p_codec)];
    auto context = Ref<IFrameEncoderContext>::adopt(way.m_encoder->createFrameEncoderContext());
    if (!context) {
        throw RunError("the encoder gives no context (see the log)");
    }
    if (way.m_match->m_info.lossless) {
        context->setQuality(100);
    }
    return context;
}

Ref<IFrameDecoderContext> LiveCodecs::createDecoder(LiveCodec p_codec) const {
    auto context = Ref<IFrameDecoderContext>::adopt(m_ways[size_t(p_codec)].m_decoder->createFrameDecoderContext());
    if (!context) {
        throw RunError("the decoder gives no context (see the log)");
    }
    return context;
}

bool LiveCodecs::isKey(LiveCodec p_codec, const uint8_t* p_data, size_t p_size) {
    if (p_codec == LiveCodec::BLOCKS) {
        return p_size > 1 && (p_data[1] & 1) != 0;
    }
    return isVp9Key(p_data, p_size);
}

} // namespace zyr::host
