#include "host/live/zyr_viewer_pace.h"

#include <algorithm>

namespace zyr::host {

namespace {

constexpr ViewerPace::Lane LANES[ViewerPace::NUM_OF_LANES] = {{1, 100}, {2, 100}, {3, 100}, {3, 75}, {3, 50}};

constexpr uint64_t PERIOD = 1'000'000;
constexpr uint64_t FIRST_CALM = 3'000'000;
constexpr uint64_t LONGEST_CALM = 60'000'000;
/// A picture under way for so much longer than the round trip stands in a queue.
constexpr uint64_t LONG_QUEUE = 150'000;
/// A viewer that has drawn nothing for so long is not slow but stopped, which a smaller picture does not help.
constexpr uint64_t STOPPED = 1'500'000;

} // namespace

const ViewerPace::Lane& ViewerPace::describe(unsigned p_lane) {
    return LANES[std::min(p_lane, NUM_OF_LANES - 1)];
}

bool ViewerPace::change(unsigned p_lane, uint64_t p_time) {
    const bool up = p_lane < m_lane;
    if (!up) {
        // Falling back soon after a rise means that the rise was too early.
        const bool failed = m_lastWasUp && p_time - m_changeTime < 2 * m_calmNeeded;
        m_calmNeeded = failed ? std::min(2 * m_calmNeeded, LONGEST_CALM) : std::max(m_calmNeeded, FIRST_CALM);
    }
    m_lastWasUp = up;
    m_lane = p_lane;
    m_changeTime = p_time;
    m_calmStart = p_time;
    return true;
}

bool ViewerPace::notePicture(bool p_hadCredit, uint64_t p_queued, uint64_t p_roundTrip, uint64_t p_time) {
    if (p_queued > STOPPED) {
        m_periodStart = 0;
        m_unproved = 0;
        return false;
    }
    if (m_periodStart == 0) {
        m_periodStart = p_time;
        m_calmStart = m_calmStart == 0 ? p_time : m_calmStart;
        m_due = 0;
        m_missed = 0;
    }
    m_due++;
    const uint64_t oldest = p_time - p_queued;
    if (oldest != m_oldest) {
        // It draws, only slowly. Until this is known it may as well have stopped.
        m_oldest = oldest;
        m_missed += m_unproved;
        m_unproved = 0;
    }
    m_unproved += !p_hadCredit && p_queued > p_roundTrip + LONG_QUEUE ? 1 : 0;
    if (p_time - m_periodStart < PERIOD) {
        return false;
    }
    const bool congested = m_missed * 4 > m_due;
    m_periodStart = 0;
    if (congested) {
        m_calmStart = p_time;
        return m_lane + 1 < NUM_OF_LANES && change(m_lane + 1, p_time);
    }
    return m_lane > 0 && p_time - m_calmStart >= m_calmNeeded && change(m_lane - 1, p_time);
}

} // namespace zyr::host
