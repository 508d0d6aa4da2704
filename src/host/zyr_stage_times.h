/// The times that one stage took, in memory that does not grow with the run.
#pragma once

#include <array>
#include <cstdint>

namespace zyr::host {

/// Counts times in classes that are at most 1/128 of their value wide, so that percentiles are right within 0.8 %.
class StageTimes {
public:
    void add(uint64_t p_nanoseconds);

    /// The time in milliseconds below which `p_percent` percent of the pictures stayed; 0 without pictures.
    double getPercentile(double p_percent) const;

    /// Sum in seconds.
    double getTotal() const { return double(m_sum) / 1e9; }

private:
    static constexpr uint32_t BITS = 7; ///< Of a time that a class keeps behind the leading one.
    static constexpr uint32_t NUM_OF_CLASSES = (64 - BITS + 1) << BITS;

    std::array<uint32_t, NUM_OF_CLASSES> m_counts{};
    uint64_t m_count = 0;
    uint64_t m_sum = 0;
    uint64_t m_longest = 0;
};

} // namespace zyr::host
