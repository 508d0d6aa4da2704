/// Which share of a screen's pictures a viewer's connection carries.
#pragma once

#include <cstdint>

namespace zyr::host {

/// Moves a viewer between lanes: lane 0 has every picture at full size, the next ones fewer pictures, the last ones
/// smaller pictures too. A congested connection goes down step by step; it comes back up after a time of calm that
/// doubles with every attempt that failed. Times are microseconds. One thread.
class ViewerPace {
public:
    static constexpr unsigned NUM_OF_LANES = 5;

    /// The lane's share of pictures and of size.
    struct Lane {
        unsigned m_divisor; ///< Every so many-th picture.
        unsigned m_percent; ///< Of the screen's width and height.
    };
    static const Lane& describe(unsigned p_lane);

    unsigned getLane() const { return m_lane; }

    /// A picture was due for the viewer. `p_hadCredit` is false when too many were under way, `p_queued` is how long
    /// its oldest picture has been, `p_roundTrip` the shortest round trip. True when the lane has changed.
    bool notePicture(bool p_hadCredit, uint64_t p_queued, uint64_t p_roundTrip, uint64_t p_time);

private:
    bool change(unsigned p_lane, uint64_t p_time);

    unsigned m_lane = 0;
    unsigned m_due = 0;      ///< Of the present period.
    unsigned m_missed = 0;   ///< Of these, those without credit.
    unsigned m_unproved = 0; ///< More of them, if something is drawn later.
    uint64_t m_oldest = 0;   ///< When the oldest picture under way was sent.
    uint64_t m_periodStart = 0;
    uint64_t m_changeTime = 0;
    uint64_t m_calmStart = 0;
    uint64_t m_calmNeeded = 0;
    bool m_lastWasUp = false;
};

} // namespace zyr::host
