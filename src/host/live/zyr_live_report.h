/// What a viewer has measured.
#pragma once

#include "host/live/zyr_live_client.h"
#include "host/zyr_stage_times.h"

#include <string>

namespace zyr::host {

/// One thread.
class LiveReport {
public:
    void note(const ShownFrame& p_frame, uint64_t p_shownTime);

    /// Pictures, of one packet or of two.
    uint64_t getFrames() const { return m_frames; }

    /// As JSON, or as a table for people.
    std::string toText(bool p_json) const;

private:
    StageTimes m_capture;
    StageTimes m_encode;
    StageTimes m_queue;
    StageTimes m_network;
    StageTimes m_decode;
    StageTimes m_draw;
    StageTimes m_total;
    uint64_t m_frames = 0;
    uint64_t m_failed = 0;
    uint64_t m_keys = 0;
    uint64_t m_exact = 0;
    uint64_t m_bytes = 0;
    std::array<uint64_t, NUM_OF_LIVE_CODECS> m_ofCodec{};
    std::array<uint64_t, NUM_OF_LIVE_CODECS> m_bytesOfCodec{};
    uint64_t m_regions = 0;
    LiveFrameHead m_region; ///< The last one.
    uint64_t m_firstTime = 0;
    uint64_t m_lastTime = 0;
    uint64_t m_roundTrip = 0;
    LiveStream m_stream;
};

} // namespace zyr::host
