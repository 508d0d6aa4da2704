/// The ways of coding that a live stream goes by, as the plug-ins offer them here.
#pragma once

#include "host/live/zyr_live_messages.h"
#include "host/zyr_negotiation.h"

#include <array>

namespace zyr::host {

/// Encoders and decoders, negotiated once. Contexts may be made and used on any thread, one at a time; the framework
/// must outlive all of it.
class LiveCodecs {
public:
    /// `p_codec` is "auto" for all that there are, or a codec's name. `p_quality` is that of VP9. Throws RunError when
    /// none of them is usable.
    LiveCodecs(Framework& p_framework, const std::string& p_codec, unsigned p_quality);

    /// codecBit() of each usable codec.
    uint8_t getCodecs() const;
    bool has(LiveCodec p_codec) const { return (getCodecs() & codecBit(p_codec)) != 0; }

    bool isFullRange() const { return m_fullRange; }
    bool isBt709() const { return m_bt709; }

    /// A context whose first frame is a key frame. The codec must be usable.
    Ref<IFrameEncoderContext> createEncoder(LiveCodec p_codec) const;
    Ref<IFrameDecoderContext> createDecoder(LiveCodec p_codec) const;

    /// What a decoder of the codec was told. The codec must be usable.
    const FrameCodecInfo& getDecoderInfo(LiveCodec p_codec) const {
        return m_ways[size_t(p_codec)].m_match->m_decoderInfo;
    }

    /// True for a packet that can be decoded without what came before.
    static bool isKey(LiveCodec p_codec, const uint8_t* p_data, size_t p_size);

    static const char* getName(LiveCodec p_codec);

private:
    struct Way {
        std::unique_ptr<Match> m_match;
        IFrameEncoder* m_encoder = nullptr; ///< The market's.
        IFrameDecoder* m_decoder = nullptr;
    };

    void agree(LiveCodec p_codec, unsigned p_quality);

    Market m_market;
    std::array<Way, NUM_OF_LIVE_CODECS> m_ways;
    bool m_fullRange = false;
    bool m_bt709 = false;
};

} // namespace zyr::host
