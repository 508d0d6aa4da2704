// Results that must have the same bits on every platform: the float forms, which take sines and cosines in double and
// narrow, and the double forms without them. The sums were taken on x86-64 and are compared on the target as well.
#include "zyr_common/geometry/zyr_matrix.h"
#include "zyr_common/geometry/zyr_rect.h"

#include <cstring>
#include <gtest/gtest.h>

namespace zyr {

namespace {

/// The 64-bit FNV-1a sum of the bytes of numbers.
class BitSum {
public:
    template <typename T> void add(T p_number) {
        unsigned char bytes[sizeof(T)];
        memcpy(bytes, &p_number, sizeof(T));
        for (unsigned char byte : bytes) {
            m_sum = (m_sum ^ byte) * 0x100000001b3;
        }
    }
    template <class R> void addRecord(const R& p_record) {
        zyr_forEachField<R>([&](const auto& p_field) { add(p_record.*p_field.m_member); });
    }
    template <typename T> void addMatrix(const Matrix4x4<T>& p_matrix) {
        for (uint32_t i = 0; i < 16; ++i) {
            add(p_matrix.getValue(i));
        }
    }
    uint64_t get() const { return m_sum; }

private:
    uint64_t m_sum = 0xcbf29ce484222325;
};

/// Numbers with many digits, the same on every platform.
template <typename T> T getNumber(uint32_t p_index) {
    return static_cast<T>((p_index * 2654435761u) % 200003) / static_cast<T>(317) - static_cast<T>(300);
}

} // namespace

TEST(SameBits, OfFloatRotations) {
    BitSum sum;
    for (uint32_t i = 0; i < 500; ++i) {
        Vector3<float> vector(getNumber<float>(i), getNumber<float>(i + 1), getNumber<float>(i + 2));
        vector.rotateX(getNumber<float>(i + 3));
        vector.rotateY(getNumber<float>(i + 4));
        vector.rotateZ(getNumber<float>(i + 5));
        vector.rotateAxis(getNumber<float>(i + 6), {getNumber<float>(i + 7), 1, getNumber<float>(i + 8)});
        sum.addRecord(vector);
        vector.normalize();
        sum.addRecord(vector);
        sum.add(Vector2<float>(vector.x, vector.y).getAngle());
    }
    EXPECT_EQ(sum.get(), 13481727422683667048u);
}

TEST(SameBits, OfFloatMatrices) {
    BitSum sum;
    for (uint32_t i = 0; i < 200; ++i) {
        Matrix4x4<float> matrix;
        matrix.translate({getNumber<float>(i), getNumber<float>(i + 1), getNumber<float>(i + 2)});
        matrix.rotateEuler(getNumber<float>(i + 3), getNumber<float>(i + 4), getNumber<float>(i + 5));
        matrix.scale({getNumber<float>(i + 6), getNumber<float>(i + 7), getNumber<float>(i + 8)});
        sum.addMatrix(matrix);
        Vector4<float> rotation = matrix.getRotationQuaternion();
        sum.addRecord(Vector4<float>::slerp(rotation, {0.5f, 0.5f, -0.5f, 0.5f}, 0.3f));
        matrix.inverse();
        sum.addMatrix(matrix);
    }
    EXPECT_EQ(sum.get(), 1196394107918361169u);
}

TEST(SameBits, OfDoubleMatrices) {
    BitSum sum;
    for (uint32_t i = 0; i < 200; ++i) {
        Matrix4x4<double> matrix;
        for (uint32_t k = 0; k < 16; ++k) {
            matrix.setValue(k, getNumber<double>(i * 16 + k));
        }
        Matrix4x4<double> inverse(matrix);
        inverse.inverse();
        sum.addMatrix(matrix * inverse);
        sum.addMatrix(inverse);
        sum.add(matrix.getRow(1).getModule());
    }
    EXPECT_EQ(sum.get(), 3986989632873977883u);
}

} // namespace zyr
