/// Which codec suits what a screen shows just now.
#pragma once

#include "host/live/zyr_live_messages.h"

namespace zyr::host {

/// Text, windows and stills go by blocks, moving pictures by VP9. Decided from what frames took, with hysteresis: a
/// second of expensive frames that come without a pause goes over to VP9, and a second of cheap ones comes back. Times
/// are microseconds. One thread.
class CodecChoice {
public:
    /// `p_codecs`: codecBit() of those to choose from, not 0.
    explicit CodecChoice(uint8_t p_codecs) : m_codecs(p_codecs) {}

    /// Narrows the choice, or widens it.
    void setCodecs(uint8_t p_codecs) { m_codecs = p_codecs; }

    /// The codec of the next frame; at rest the exact one where there is a choice.
    LiveCodec choose(bool p_atRest) const;

    /// A frame took so many bytes for so many pixels that had changed.
    void noteFrame(LiveCodec p_codec, bool p_key, uint64_t p_bytes, uint64_t p_changedPixels, uint64_t p_time);

private:
    void turn(bool p_motion, uint64_t p_time);

    uint8_t m_codecs;
    bool m_isMotion = false;
    uint64_t m_lastTime = 0;
    uint64_t m_streakStart = 0; ///< Since when frames speak for the other codec; 0: the last one did not.
};

} // namespace zyr::host
