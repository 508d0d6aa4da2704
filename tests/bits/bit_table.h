/// Large tables of calculated results, each summed up in one number that must be the same on every platform.
#pragma once

#include "zyr_common/geometry/zyr_matrix.h"

#include <cmath>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <type_traits>

namespace zyr {

/// Where the arguments come from: the same numbers on every platform, for ever. The arguments of a function may be
/// evaluated in any order, those in braces are not, so whoever draws several at once uses braces.
class NumberSource {
public:
    explicit NumberSource(uint64_t p_seed) : m_state(p_seed) {}

    uint64_t next() {
        m_state = m_state * 6364136223846793005u + 1442695040888963407u;
        const uint64_t mixed = (m_state ^ (m_state >> 31)) * 0x9E3779B97F4A7C15u;
        return mixed ^ (mixed >> 29);
    }
    /// From 0 to p_limit - 1.
    uint32_t below(uint32_t p_limit) { return static_cast<uint32_t>((next() >> 32) % p_limit); }
    /// From -1000 to 1000: whole for the integers, with many digits for the others, never negative for the unsigned.
    template <typename T> T number() {
        if constexpr (std::is_floating_point_v<T>) {
            return static_cast<T>(static_cast<double>(static_cast<int32_t>(below(634001)) - 317000) / 317);
        } else {
            return static_cast<T>(std::is_signed_v<T> ? static_cast<int32_t>(below(2001)) - 1000 : below(1001));
        }
    }
    /// From -1 to 1.
    template <typename T> T unit() { return number<T>() / 1000; }
    /// As number, and one in eight at or beyond what a formula stands.
    template <typename T> T wildNumber() {
        if (below(8) != 0) {
            return number<T>();
        }
        if constexpr (std::is_floating_point_v<T>) {
            constexpr T wild[] = {T(0),     T(-0.0),       T(1),        T(-1),        T(0.5),
                                  T(1e-30), T(-1e-30),     T(1e30),     T(-1e30),     T(100),
                                  T(65536), T(16777217.0), T(INFINITY), T(-INFINITY), T(NAN)};
            return wild[below(15)];
        } else {
            constexpr T least = std::numeric_limits<T>::min();
            constexpr T most = std::numeric_limits<T>::max();
            constexpr T wild[] = {T(0), T(1), T(-1), T(2), T(100), T(65536), least, most, T(least + 1), T(most / 2)};
            return wild[below(10)];
        }
    }
    template <typename T> Vector2<T> vector2() { return Vector2<T>{number<T>(), number<T>()}; }
    template <typename T> Vector3<T> vector3() { return Vector3<T>{number<T>(), number<T>(), number<T>()}; }

private:
    uint64_t m_state;
};

/// The sum (64-bit FNV-1a) and the number of the results that were added.
///
/// Two things are not compared, since processors and C libraries are free in them. The sign and the payload of a
/// not-a-number: each counts as the same one. And the last bit of a sine, a tangent or an arcus in double, which
/// depends on how the C library was built and even on the processor it runs on: what was calculated from one in the
/// double forms is added by addNarrow. The float forms narrow such results themselves, and square roots are exact: both
/// are compared in full.
class BitTable {
public:
    template <typename T> void add(T p_number) {
        static_assert(std::is_arithmetic_v<T> || std::is_enum_v<T>);
        if constexpr (std::is_floating_point_v<T>) {
            if (std::isnan(p_number)) {
                addBytes("nan", 3);
                return;
            }
        }
        addBytes(&p_number, sizeof(T));
    }
    template <typename T> void addNarrow(T p_number) {
        if constexpr (std::is_floating_point_v<T>) {
            add(static_cast<float>(p_number));
        } else {
            add(p_number);
        }
    }

    template <typename T> void add(const Matrix3x3<T>& p_matrix) {
        for (uint32_t i = 0; i < 9; ++i) {
            add(p_matrix.getValue(i));
        }
    }
    template <typename T> void add(const Matrix4x4<T>& p_matrix) {
        for (uint32_t i = 0; i < 16; ++i) {
            add(p_matrix.getValue(i));
        }
    }
    template <typename T> void addNarrow(const Matrix3x3<T>& p_matrix) {
        for (uint32_t i = 0; i < 9; ++i) {
            addNarrow(p_matrix.getValue(i));
        }
    }
    template <typename T> void addNarrow(const Matrix4x4<T>& p_matrix) {
        for (uint32_t i = 0; i < 16; ++i) {
            addNarrow(p_matrix.getValue(i));
        }
    }

    /// The numbers of a record's own level.
    template <class R> void addRecord(const R& p_record) {
        zyr_forEachField<R>([&](const auto& p_field) { add(p_record.*p_field.m_member); });
    }
    template <class R> void addRecordNarrow(const R& p_record) {
        zyr_forEachField<R>([&](const auto& p_field) { addNarrow(p_record.*p_field.m_member); });
    }

    void addText(const char* p_text) { addBytes(p_text, strlen(p_text) + 1); }

    uint64_t getDigest() const { return m_digest; }
    uint32_t getCount() const { return m_count; }

private:
    void addBytes(const void* p_data, size_t p_size) {
        const unsigned char* bytes = static_cast<const unsigned char*>(p_data);
        for (size_t i = 0; i < p_size; ++i) {
            m_digest = (m_digest ^ bytes[i]) * 0x100000001B3;
        }
        ++m_count;
    }

    uint64_t m_digest = 0xCBF29CE484222325;
    uint32_t m_count = 0;
};

// The tables. Each draws from a source of its own, so that one of them can grow without the others.
void zyr_fillFloatMatrices(BitTable& p_table);
void zyr_fillDoubleMatrices(BitTable& p_table);
void zyr_fillProjections(BitTable& p_table);
void zyr_fillQuaternions(BitTable& p_table);
void zyr_fillVectors(BitTable& p_table);
void zyr_fillComplexNumbers(BitTable& p_table);
void zyr_fillRectangles(BitTable& p_table);
void zyr_fillAnchoredRectangles(BitTable& p_table);
void zyr_fillAnchoredBoxes(BitTable& p_table);
void zyr_fillTransforms(BitTable& p_table);
void zyr_fillShapes(BitTable& p_table);
void zyr_fillPaths(BitTable& p_table);
void zyr_fillNoise(BitTable& p_table);
void zyr_fillEscapeCounts(BitTable& p_table);
void zyr_fillNumberTexts(BitTable& p_table);
void zyr_fillTextNumbers(BitTable& p_table);
void zyr_fillConversions(BitTable& p_table);
void zyr_fillColours(BitTable& p_table);

} // namespace zyr
