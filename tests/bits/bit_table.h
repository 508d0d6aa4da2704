/// Large tables of calculated results, each summed up in one number that must be the same on every platform.
#pragma once

#include "support/zyr_number_source.h"
#include "zyr_common/geometry/zyr_matrix.h"

#include <cmath>
#include <cstring>
#include <type_traits>

namespace zyr {

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
