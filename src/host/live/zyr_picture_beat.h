/// When pictures may be taken, so that they keep a rate.
#pragma once

#include <cstdint>

namespace zyr::host {

/// Keeps the rate on the average: a picture that came late does not put off the next one. A painter at the very same
/// rate would wait for the beat with each picture, by the same time, for ever: so the beat may move towards the
/// painter, by one picture in 64 at most. Times are microseconds. One thread.
class PictureBeat {
public:
    /// No picture before this.
    uint64_t getNextTime() const { return m_nextTime; }

    /// A picture was taken. `p_newsTime` is when it was first there, `p_interval` the time between two pictures.
    void note(uint64_t p_interval, uint64_t p_newsTime, uint64_t p_captureTime);

private:
    uint64_t m_nextTime = 0;
    uint64_t m_slack = UINT64_MAX; ///< By so much the beat may still move.
};

} // namespace zyr::host
