// Placements and what lies between two of them, at random, against their textbook form in long double.
#include "geometry/textbook.h"
#include "support/zyr_number_source.h"
#include "zyr_common/geometry/zyr_transform.h"

namespace zyr {

namespace {

using textbook::Real;

constexpr int c_rounds = 300;

template <typename T> Vector3<T> makeVector(NumberSource& p_source, T p_limit) {
    return Vector3<T>{p_source.unit<T>() * p_limit, p_source.unit<T>() * p_limit, p_source.unit<T>() * p_limit};
}

template <typename T> ShapeTransform3D<T> makeTransform(NumberSource& p_source) {
    ShapeTransform3D<T> transform;
    transform.position = makeVector<T>(p_source, 2);
    transform.offset = makeVector<T>(p_source, 2);
    transform.eulerRotation = makeVector<T>(p_source, 400);
    transform.slerpRotation = makeVector<T>(p_source, 400);
    transform.scale = makeVector<T>(p_source, 2);
    transform.postScale = makeVector<T>(p_source, 2);
    transform.skew = makeVector<T>(p_source, 2);
    transform.postSkew = makeVector<T>(p_source, 2);
    return transform;
}

template <typename T> textbook::Point read(const Vector3<T>& p_vector) {
    return {p_vector.x, p_vector.y, p_vector.z};
}

textbook::Quaternion makeEulerQuaternion(const textbook::Point& p_degrees) {
    return textbook::makeQuaternion(p_degrees.z, {0, 0, 1}) * textbook::makeQuaternion(p_degrees.y, {0, 1, 0}) *
           textbook::makeQuaternion(p_degrees.x, {1, 0, 0});
}

/// p + 2 w (v x p) + 2 v x (v x p), also for a quaternion whose length is not 1.
textbook::Matrix makeRotation(const textbook::Quaternion& p_quaternion) {
    const textbook::Point v = {p_quaternion.x, p_quaternion.y, p_quaternion.z};
    textbook::Matrix matrix = textbook::Matrix::identity(4);
    for (int column = 0; column < 3; ++column) {
        const textbook::Point axis = {Real(column == 0), Real(column == 1), Real(column == 2)};
        const textbook::Point across = textbook::cross(v, axis);
        const textbook::Point image = axis + (2 * p_quaternion.w) * across + Real(2) * textbook::cross(v, across);
        matrix.m_at[0][column] = image.x;
        matrix.m_at[1][column] = image.y;
        matrix.m_at[2][column] = image.z;
    }
    return matrix;
}

/// The parts in their order, around the rotation that is interpolated on an arc.
template <typename F> textbook::Matrix makePlacement(F p_blend, const textbook::Matrix& p_slerpRotation) {
    return textbook::makeTranslation(p_blend(0)) * textbook::makeScale(p_blend(1)) * p_slerpRotation *
           textbook::makeEulerRotation(p_blend(2)) * textbook::makeScale(p_blend(3)) *
           textbook::makeTranslation(p_blend(4));
}

template <typename T> textbook::Point getPart(const ShapeTransform3D<T>& p_transform, int p_part) {
    const Vector3<T> parts[] = {p_transform.position, p_transform.postScale, p_transform.eulerRotation,
                                p_transform.scale, p_transform.offset};
    return read(parts[p_part]);
}

} // namespace

template <typename T> class RandomTransform : public testing::Test {};

typedef testing::Types<float, double> RealTypes;

class RealTypeNames {
public:
    template <typename T> static std::string GetName(int) { return sizeof(T) == 4 ? "float" : "double"; }
};

TYPED_TEST_SUITE(RandomTransform, RealTypes, RealTypeNames);

TYPED_TEST(RandomTransform, MultipliesItsPartsOut) {
    typedef TypeParam T;
    NumberSource source(41);
    for (int round = 0; round < c_rounds; ++round) {
        const ShapeTransform3D<T> transform = makeTransform<T>(source);
        const textbook::Matrix expected = makePlacement([&](int p_part) { return getPart(transform, p_part); },
                                                        textbook::makeEulerRotation(read(transform.slerpRotation)));
        textbook::expectNear<T>(transform.getTransformMatrix(), expected, 16);
    }
}

TYPED_TEST(RandomTransform, BlendsItsPartsAndTurnsOnTheShorterArc) {
    typedef TypeParam T;
    NumberSource source(42);
    int arcs = 0;
    int lines = 0;
    for (int round = 0; round < c_rounds * 2; ++round) {
        const ShapeTransform3D<T> from = makeTransform<T>(source);
        ShapeTransform3D<T> to = makeTransform<T>(source);
        if (round % 3 == 0) {
            to.slerpRotation = from.slerpRotation + makeVector<T>(source, 30);
        }
        const T t = (source.unit<T>() + 1) / 2;
        const textbook::Quaternion a = makeEulerQuaternion(read(from.slerpRotation));
        const textbook::Quaternion b = makeEulerQuaternion(read(to.slerpRotation));
        const Real cosine = std::fabs(textbook::dot(a, b));
        // A quaternion with a small w comes out of its matrix less exactly.
        if (std::fabs(a.w) < Real(0.2) || std::fabs(b.w) < Real(0.2) || std::fabs(cosine - Real(0.9)) < Real(1e-4)) {
            continue;
        }
        ++(cosine < Real(0.9) ? arcs : lines);
        auto blend = [&](int p_part) {
            return static_cast<Real>(t) * getPart(to, p_part) + (1 - static_cast<Real>(t)) * getPart(from, p_part);
        };
        const textbook::Matrix expected = makePlacement(blend, makeRotation(textbook::slerp(a, b, t)));
        // The blended angles, up to 400 degrees, are rounded before they are turned by.
        textbook::expectNear<T>(from.interpolate(to, t), expected, 16 * 7);
    }
    EXPECT_GT(arcs, 100);
    EXPECT_GT(lines, 50);
}

} // namespace zyr
