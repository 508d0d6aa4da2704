/// Four numbers side by side, calculated with at once. Only for the matrices.
///
/// Each lane gives what the plain expression gives, to the bit and on every platform: nothing is reordered, fused or
/// estimated. Reads and writes need no alignment.
#pragma once

#include <cstring>

namespace zyr {

/// Numbers 0 to 3 in the order of memory. Operators work lane by lane. `float` and `double` exist.
template <typename T> class NumberLanes;

/// All four in one register.
template <> class NumberLanes<float> {
public:
    typedef float All __attribute__((vector_size(16)));

    NumberLanes() = default;
    /// Reads four numbers; only as many bytes as they have are touched.
    static NumberLanes load(const void* p_source) {
        NumberLanes lanes;
        memcpy(&lanes.m_all, p_source, sizeof(All));
        return lanes;
    }
    /// The same number in all lanes.
    static NumberLanes fill(float p_value) { return All{p_value, p_value, p_value, p_value}; }
    /// p_even in the lanes 0 and 2, p_odd in the lanes 1 and 3.
    static NumberLanes alternate(float p_even, float p_odd) { return All{p_even, p_odd, p_even, p_odd}; }
    /// Writes four numbers.
    void store(void* p_target) const { memcpy(p_target, &m_all, sizeof(All)); }

    /// How many registers hold the lanes: an algorithm that works part by part runs this often.
    static constexpr int c_parts = 1;
    template <int Part> All getPart() const { return m_all; }
    template <int Part> void setPart(All p_part) { m_all = p_part; }

    /// One lane by its number.
    template <int Lane> float get() const { return m_all[Lane]; }
    /// The lanes with these numbers, in this order.
    template <int A, int B, int C, int D> NumberLanes pick() const {
        return All(__builtin_shufflevector(m_all, m_all, A, B, C, D));
    }
    /// The same from two: 4 to 7 are the lanes of the other one.
    template <int A, int B, int C, int D> NumberLanes pick(NumberLanes p_other) const {
        return All(__builtin_shufflevector(m_all, p_other.m_all, A, B, C, D));
    }

    friend NumberLanes operator+(NumberLanes p_a, NumberLanes p_b) { return p_a.m_all + p_b.m_all; }
    friend NumberLanes operator-(NumberLanes p_a, NumberLanes p_b) { return p_a.m_all - p_b.m_all; }
    friend NumberLanes operator*(NumberLanes p_a, NumberLanes p_b) { return p_a.m_all * p_b.m_all; }
    friend NumberLanes operator/(NumberLanes p_a, NumberLanes p_b) { return p_a.m_all / p_b.m_all; }

private:
    NumberLanes(All p_all) : m_all(p_all) {}

    All m_all;
};

/// Two pairs, since the registers that every machine has hold two.
template <> class NumberLanes<double> {
public:
    typedef double Pair __attribute__((vector_size(16)));

    NumberLanes() = default;
    static NumberLanes load(const void* p_source) {
        NumberLanes lanes;
        memcpy(&lanes.m_low, p_source, sizeof(Pair));
        memcpy(&lanes.m_high, static_cast<const char*>(p_source) + sizeof(Pair), sizeof(Pair));
        return lanes;
    }
    static NumberLanes fill(double p_value) { return {Pair{p_value, p_value}, Pair{p_value, p_value}}; }
    static NumberLanes alternate(double p_even, double p_odd) { return {Pair{p_even, p_odd}, Pair{p_even, p_odd}}; }
    void store(void* p_target) const {
        memcpy(p_target, &m_low, sizeof(Pair));
        memcpy(static_cast<char*>(p_target) + sizeof(Pair), &m_high, sizeof(Pair));
    }

    static constexpr int c_parts = 2;
    template <int Part> Pair getPart() const { return Part == 0 ? m_low : m_high; }
    template <int Part> void setPart(Pair p_part) { (Part == 0 ? m_low : m_high) = p_part; }

    template <int Lane> double get() const { return Lane < 2 ? m_low[Lane % 2] : m_high[Lane % 2]; }
    template <int A, int B, int C, int D> NumberLanes pick() const {
        return {Pair(__builtin_shufflevector(m_low, m_high, A, B)), Pair(__builtin_shufflevector(m_low, m_high, C, D))};
    }
    template <int A, int B, int C, int D> NumberLanes pick(NumberLanes p_other) const {
        return {pickPair<A, B>(p_other), pickPair<C, D>(p_other)};
    }

    friend NumberLanes operator+(NumberLanes p_a, NumberLanes p_b) {
        return {p_a.m_low + p_b.m_low, p_a.m_high + p_b.m_high};
    }
    friend NumberLanes operator-(NumberLanes p_a, NumberLanes p_b) {
        return {p_a.m_low - p_b.m_low, p_a.m_high - p_b.m_high};
    }
    friend NumberLanes operator*(NumberLanes p_a, NumberLanes p_b) {
        return {p_a.m_low * p_b.m_low, p_a.m_high * p_b.m_high};
    }
    friend NumberLanes operator/(NumberLanes p_a, NumberLanes p_b) {
        return {p_a.m_low / p_b.m_low, p_a.m_high / p_b.m_high};
    }

private:
    NumberLanes(Pair p_low, Pair p_high) : m_low(p_low), m_high(p_high) {}

    template <int Lane> Pair pairOf(const NumberLanes& p_other) const {
        constexpr int half = Lane / 2;
        return half == 0 ? m_low : half == 1 ? m_high : half == 2 ? p_other.m_low : p_other.m_high;
    }
    template <int A, int B> Pair pickPair(const NumberLanes& p_other) const {
        return Pair(__builtin_shufflevector(pairOf<A>(p_other), pairOf<B>(p_other), A % 2, B % 2 + 2));
    }

    Pair m_low;
    Pair m_high;
};

} // namespace zyr
