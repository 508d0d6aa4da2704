#include "host/live/zyr_codec_choice.h"

namespace zyr::host {

namespace {

/// A frame of blocks that is larger than this and takes more than this for a changed pixel is of many colours.
constexpr uint64_t EXPENSIVE_FRAME = 24'000;
constexpr double EXPENSIVE_PIXEL = 0.35;
/// A frame of VP9 below this is of a screen that hardly changes.
constexpr uint64_t CHEAP_FRAME = 3'000;
/// Frames farther apart than this are no motion.
constexpr uint64_t LONGEST_GAP = 400'000;
constexpr uint64_t MOTION_AFTER = 400'000;
constexpr uint64_t CALM_AFTER = 1'000'000;

} // namespace

LiveCodec CodecChoice::choose(bool p_atRest) const {
    if (m_codecs == codecBit(LiveCodec::VP9)) {
        return LiveCodec::VP9;
    }
    const bool isMotion = m_isMotion && !p_atRest && (m_codecs & codecBit(LiveCodec::VP9)) != 0;
    return isMotion ? LiveCodec::VP9 : LiveCodec::BLOCKS;
}

void CodecChoice::turn(bool p_motion, uint64_t p_time) {
    m_streakStart = m_streakStart == 0 ? p_time : m_streakStart;
    if (p_time - m_streakStart >= (p_motion ? MOTION_AFTER : CALM_AFTER)) {
        m_isMotion = p_motion;
        m_streakStart = 0;
    }
}

void CodecChoice::noteFrame(LiveCodec p_codec, bool p_key, uint64_t p_bytes, uint64_t p_changedPixels,
                            uint64_t p_time) {
    const bool isGap = p_time - m_lastTime > LONGEST_GAP;
    m_lastTime = p_time;
    if (p_key) {
        return; // A whole picture says nothing about what moves in it.
    }
    if (m_isMotion) {
        // What is sharpened at rest was motion until then: a pause is what speaks for calm.
        const bool isCheap = p_codec == LiveCodec::VP9 ? p_bytes < CHEAP_FRAME : isGap;
        if (isCheap || isGap) {
            turn(false, p_time);
        } else if (p_codec == LiveCodec::VP9) {
            m_streakStart = 0;
        }
        return;
    }
    const bool isExpensive = p_codec == LiveCodec::BLOCKS && p_bytes > EXPENSIVE_FRAME &&
                             double(p_bytes) > EXPENSIVE_PIXEL * double(p_changedPixels);
    if (isExpensive && !isGap) {
        turn(true, p_time);
    } else {
        m_streakStart = 0;
    }
}

} // namespace zyr::host
