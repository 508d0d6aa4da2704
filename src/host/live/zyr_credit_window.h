/// How many frames may be under way to a viewer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>

namespace zyr::host {

/// Counts what was sent and what the viewer has drawn, and measures the round trip of it. Times are microseconds of any
/// clock that only goes on. The latency of a connection grows with the frames in flight, so there are never more than
/// the connection needs to be kept busy. One thread.
class CreditWindow {
public:
    static constexpr unsigned LARGEST = 4;

    /// A frame was handed to the connection.
    void noteSent(uint32_t p_sequence, uint64_t p_time);

    /// The viewer has drawn a frame and thereby all before it. False for a frame that was never sent, or has been told
    /// before.
    bool noteDrawn(uint32_t p_sequence, uint64_t p_time);

    /// Frames that may be in flight when frames come `p_interval` apart: the round trip's worth, and one more.
    unsigned getSize(uint64_t p_interval) const;

    bool hasCredit(uint64_t p_interval) const { return m_inFlight.size() < getSize(p_interval); }

    size_t getInFlight() const { return m_inFlight.size(); }

    /// The shortest round trip of late, 0 before the first.
    uint64_t getRoundTrip() const { return m_shortest; }

    /// The round trip of the frame that was drawn last.
    uint64_t getLatestRoundTrip() const { return m_latest; }

    /// How long the oldest frame in flight has been so.
    uint64_t getOldestAge(uint64_t p_time) const { return m_inFlight.empty() ? 0 : p_time - m_inFlight.front().m_time; }

private:
    struct Sent {
        uint32_t m_sequence;
        uint64_t m_time;
    };

    std::deque<Sent> m_inFlight;
    uint64_t m_shortest = 0;
    uint64_t m_latest = 0;
    uint64_t m_shortestTime = 0;
    uint64_t m_nextShortest = 0; ///< Of the present period, to take over when the one in use grows old.
};

} // namespace zyr::host
