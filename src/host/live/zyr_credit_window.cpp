#include "host/live/zyr_credit_window.h"

#include <algorithm>

namespace zyr::host {

namespace {

/// A shortest round trip is believed for so long, in microseconds: ways of packets change.
constexpr uint64_t PERIOD = 5'000'000;

} // namespace

void CreditWindow::noteSent(uint32_t p_sequence, uint64_t p_time) {
    m_inFlight.push_back({p_sequence, p_time});
}

bool CreditWindow::noteDrawn(uint32_t p_sequence, uint64_t p_time) {
    const auto drawn = std::find_if(m_inFlight.begin(), m_inFlight.end(),
                                    [&](const Sent& p_sent) { return p_sent.m_sequence == p_sequence; });
    if (drawn == m_inFlight.end()) {
        return false;
    }
    m_latest = std::max<uint64_t>(p_time - drawn->m_time, 1);
    m_inFlight.erase(m_inFlight.begin(), drawn + 1);
    m_nextShortest = m_nextShortest == 0 ? m_latest : std::min(m_nextShortest, m_latest);
    if (m_shortest == 0 || m_latest < m_shortest) {
        m_shortest = m_latest;
        m_shortestTime = p_time;
        m_nextShortest = 0;
    } else if (p_time - m_shortestTime > PERIOD) {
        m_shortest = m_nextShortest;
        m_shortestTime = p_time;
        m_nextShortest = 0;
    }
    return true;
}

unsigned CreditWindow::getSize(uint64_t p_interval) const {
    if (m_shortest == 0 || p_interval == 0) {
        return 1;
    }
    return unsigned(std::min<uint64_t>(LARGEST, 1 + (m_shortest + p_interval - 1) / p_interval));
}

} // namespace zyr::host
