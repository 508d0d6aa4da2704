#include "host/live/zyr_picture_beat.h"

#include <algorithm>

namespace zyr::host {

namespace {

constexpr uint64_t PICTURES_FOR_ONE_MORE = 64;

} // namespace

void PictureBeat::note(uint64_t p_interval, uint64_t p_newsTime, uint64_t p_captureTime) {
    const uint64_t soonest = p_captureTime + p_interval / 2;
    const uint64_t regular = std::max(m_nextTime + p_interval, soonest);
    const uint64_t waited = p_captureTime - std::min(p_captureTime, p_newsTime);
    m_slack = std::min(p_interval, m_slack);
    const uint64_t moved = std::min({waited, m_slack, regular - soonest});
    m_nextTime = regular - moved;
    m_slack += p_interval / PICTURES_FOR_ONE_MORE - moved;
}

} // namespace zyr::host
