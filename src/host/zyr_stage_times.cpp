#include "host/zyr_stage_times.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace zyr::host {

void StageTimes::add(uint64_t p_nanoseconds) {
    const uint32_t width = uint32_t(std::bit_width(p_nanoseconds));
    const uint32_t shift = width > BITS + 1 ? width - BITS - 1 : 0;
    m_counts[(size_t(shift) << BITS) + size_t(p_nanoseconds >> shift)]++;
    m_count++;
    m_sum += p_nanoseconds;
    m_longest = std::max(m_longest, p_nanoseconds);
}

double StageTimes::getPercentile(double p_percent) const {
    const uint64_t rank = std::max<uint64_t>(1, uint64_t(std::ceil(p_percent / 100.0 * double(m_count))));
    uint64_t count = 0;
    for (size_t i = 0; i < m_counts.size(); i++) {
        count += m_counts[i];
        if (count >= rank) {
            const size_t shift = i >> BITS > 0 ? (i >> BITS) - 1 : 0;
            const uint64_t end = (uint64_t(i - (shift << BITS)) + 1) << shift;
            return double(std::min(end - 1, m_longest)) / 1e6;
        }
    }
    return 0;
}

} // namespace zyr::host
