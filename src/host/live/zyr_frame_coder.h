/// Encodes the pictures of one lane for all of its viewers.
#pragma once

#include "host/live/zyr_codec_choice.h"
#include "host/live/zyr_live_codecs.h"

#include <array>

namespace zyr::host {

/// An encoded picture.
struct CodedPicture {
    LiveCodec m_codec{};
    bool m_key = false;
    bool m_exact = false;
    Ref<IPackedFrameData> m_packet; ///< Null when the encoder failed.
};

/// Holds a context for each codec. Their states do not touch: a picture goes through one of them, and the others go on
/// from where they were. Times are microseconds. One thread.
class FrameCoder {
public:
    /// `p_codecs` must outlive the object.
    explicit FrameCoder(const LiveCodecs& p_codecs)
        : m_codecs(p_codecs), m_choice(p_codecs.getCodecs()), m_allowed(p_codecs.getCodecs()) {}

    /// Leaves only codecs that all viewers know.
    void setAllowed(uint8_t p_codecs);

    /// True when a picture encoded now would be a key frame, though it needs not be: a viewer misses what the chosen
    /// codec stands on (`p_missing`: codecBit() of the codecs), and the last key frame is a second ago.
    bool isKeyDue(uint8_t p_missing, bool p_atRest, uint64_t p_time) const;

    /// Encodes a picture. A key frame comes from a new context beside the running one, which it replaces.
    CodedPicture encode(IUnpackedFrameData& p_frame, uint8_t p_missing, bool p_atRest, uint64_t p_time);

private:
    struct Side {
        Ref<IFrameEncoderContext> m_context;
        uint64_t m_keyTime = 0; ///< 0: no key frame yet.
    };

    static uint64_t countChangedPixels(const IPackedFrameData& p_packet);

    const LiveCodecs& m_codecs;
    CodecChoice m_choice;
    uint8_t m_allowed;
    LiveCodec m_last{};
    std::array<Side, NUM_OF_LIVE_CODECS> m_sides;
};

} // namespace zyr::host
