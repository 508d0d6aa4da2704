// Matrices, vectors and quaternions at random against their textbook forms in long double. Tolerances are a few dozen
// units in the last place, so a wrong sign, index or factor in any single term shows.
#include "geometry/textbook.h"
#include "support/zyr_number_source.h"
#include "zyr_common/geometry/zyr_matrix.h"
#include "zyr_common/geometry/zyr_rect.h"

#include <algorithm>

namespace zyr {

namespace {

using textbook::Real;

constexpr int c_rounds = 300;

/// From -2 to 2.
template <typename T> T makeNumber(NumberSource& p_source) {
    return p_source.unit<T>() * 2;
}

template <typename T> Vector3<T> makeVector(NumberSource& p_source) {
    return Vector3<T>{makeNumber<T>(p_source), makeNumber<T>(p_source), makeNumber<T>(p_source)};
}

/// From -400 to 400 degrees.
template <typename T> T makeAngle(NumberSource& p_source) {
    return p_source.unit<T>() * 400;
}

template <class M> M makeMatrix(NumberSource& p_source, uint32_t p_size) {
    typedef decltype(M().getValue(0)) T;
    M matrix;
    for (uint32_t i = 0; i < p_size * p_size; ++i) {
        matrix.setValue(i, makeNumber<T>(p_source));
    }
    return matrix;
}

template <typename T> textbook::Point read(const Vector3<T>& p_vector) {
    return {p_vector.x, p_vector.y, p_vector.z};
}

template <typename T> textbook::Quaternion read(const Vector4<T>& p_vector) {
    return {p_vector.x, p_vector.y, p_vector.z, p_vector.w};
}

template <typename T> Vector4<T> makeQuaternion(NumberSource& p_source) {
    Vector4<T> quaternion{makeNumber<T>(p_source), makeNumber<T>(p_source), makeNumber<T>(p_source),
                          makeNumber<T>(p_source)};
    quaternion.normalize();
    return quaternion;
}

/// The largest value of a matrix.
Real getLargest(const textbook::Matrix& p_matrix) {
    Real largest = 0;
    for (const auto& row : p_matrix.m_at) {
        for (Real value : row) {
            largest = std::max(largest, std::fabs(value));
        }
    }
    return largest;
}

} // namespace

template <typename T> class RandomMatrix : public testing::Test {
protected:
    /// Checks products and inverses of one size.
    template <class M> void checkAlgebra(uint32_t p_size) {
        const int size = static_cast<int>(p_size);
        int regular = 0;
        for (int round = 0; round < c_rounds; ++round) {
            const M a = makeMatrix<M>(m_source, p_size);
            const M b = makeMatrix<M>(m_source, p_size);
            const textbook::Matrix expectedA = textbook::read(a, size);
            textbook::expectNear<T>(a * b, expectedA * textbook::read(b, size), 4);

            Real determinant = 0;
            const textbook::Matrix inverse = textbook::inverted(expectedA, determinant);
            if (std::fabs(determinant) < Real(0.1)) {
                continue;
            }
            ++regular;
            // Each cofactor is off by what its products of values up to 2 round to; the determinant enlarges that.
            const Real largest = getLargest(inverse);
            const Real magnitude = (8 + largest * 16) / std::fabs(determinant);
            M actual(a);
            actual.inverse();
            textbook::expectNear<T>(actual, inverse, magnitude);
            actual = a;
            actual.transposedInverse();
            textbook::expectNear<T>(actual, textbook::transposed(inverse), magnitude);
            actual = a;
            actual.transpose();
            textbook::expectNear<T>(actual, textbook::transposed(expectedA), 0);
        }
        EXPECT_GT(regular, c_rounds / 2);
    }

    /// One operation of a matrix against the matrix that it multiplies by on the right, or sets.
    template <typename Operation> void checkOperation(Operation p_operation, const textbook::Matrix& p_right) {
        const Matrix4x4<T> start = makeMatrix<Matrix4x4<T>>(m_source, 4);
        Matrix4x4<T> actual(start);
        p_operation(actual);
        textbook::expectNear<T>(actual, textbook::read(start, 4) * p_right, 8);
    }

    NumberSource m_source{2024};
};

typedef testing::Types<float, double> RealTypes;

class RealTypeNames {
public:
    template <typename T> static std::string GetName(int) { return sizeof(T) == 4 ? "float" : "double"; }
};

TYPED_TEST_SUITE(RandomMatrix, RealTypes, RealTypeNames);

TYPED_TEST(RandomMatrix, Of3x3MultipliesAndInvertsAsTheTextbookDoes) {
    this->template checkAlgebra<Matrix3x3<TypeParam>>(3);
}

TYPED_TEST(RandomMatrix, Of4x4MultipliesAndInvertsAsTheTextbookDoes) {
    this->template checkAlgebra<Matrix4x4<TypeParam>>(4);
}

TYPED_TEST(RandomMatrix, MultipliesVectorsAndTransformsPoints) {
    typedef TypeParam T;
    NumberSource& source = this->m_source;
    for (int round = 0; round < c_rounds; ++round) {
        const Matrix3x3<T> plane = makeMatrix<Matrix3x3<T>>(source, 3);
        const Matrix4x4<T> space = makeMatrix<Matrix4x4<T>>(source, 4);
        const Vector4<T> vector{makeNumber<T>(source), makeNumber<T>(source), makeNumber<T>(source),
                                makeNumber<T>(source)};
        const Real given[] = {vector.x, vector.y, vector.z, vector.w};
        const textbook::Matrix a = textbook::read(plane, 3);
        const textbook::Matrix b = textbook::read(space, 4);
        Real planeImage[3] = {};
        Real planePoint[3] = {};
        Real spaceImage[4] = {};
        Real spacePoint[4] = {};
        for (int row = 0; row < 4; ++row) {
            for (int k = 0; k < 4; ++k) {
                spaceImage[row] += b.m_at[row][k] * given[k];
                spacePoint[row] += b.m_at[row][k] * (k == 3 ? 1 : given[k]);
                if (row < 3 && k < 3) {
                    planeImage[row] += a.m_at[row][k] * given[k];
                    planePoint[row] += a.m_at[row][k] * (k == 2 ? 1 : given[k]);
                }
            }
        }
        textbook::expectNear<T>(plane * Vector3<T>(vector.x, vector.y, vector.z),
                                textbook::Point{planeImage[0], planeImage[1], planeImage[2]}, 4);
        const Vector2<T> point = plane.transform({vector.x, vector.y});
        EXPECT_NEAR(point.x, planePoint[0], textbook::getTolerance<T>(4));
        EXPECT_NEAR(point.y, planePoint[1], textbook::getTolerance<T>(4));
        textbook::expectNear<T>(space * vector,
                                textbook::Quaternion{spaceImage[0], spaceImage[1], spaceImage[2], spaceImage[3]}, 4);
        textbook::expectNear<T>(space.transform({vector.x, vector.y, vector.z}),
                                textbook::Point{spacePoint[0], spacePoint[1], spacePoint[2]}, 4);
    }
}

TYPED_TEST(RandomMatrix, OfRotationAndTranslationHasItsAffineInverse) {
    typedef TypeParam T;
    NumberSource& source = this->m_source;
    for (int round = 0; round < c_rounds; ++round) {
        Matrix4x4<T> space;
        space.translate(makeVector<T>(source));
        space.rotateAxis(makeAngle<T>(source), makeVector<T>(source));
        Matrix3x3<T> plane;
        plane.translate({makeNumber<T>(source), makeNumber<T>(source)});
        plane.rotate(makeAngle<T>(source));
        Real determinant = 0;
        const textbook::Matrix spaceInverse = textbook::inverted(textbook::read(space, 4), determinant);
        EXPECT_NEAR(determinant, 1, textbook::getTolerance<T>(1));
        const textbook::Matrix planeInverse = textbook::inverted(textbook::read(plane, 3), determinant);
        EXPECT_NEAR(determinant, 1, textbook::getTolerance<T>(1));
        Matrix4x4<T> actual(space);
        actual.affineInverse();
        textbook::expectNear<T>(actual, spaceInverse, 4);
        actual = space;
        actual.affineTransposedInverse();
        textbook::expectNear<T>(actual, textbook::transposed(spaceInverse), 4);
        Matrix3x3<T> actualPlane(plane);
        actualPlane.affineInverse();
        textbook::expectNear<T>(actualPlane, planeInverse, 4);
        actualPlane = plane;
        actualPlane.affineTransposedInverse();
        textbook::expectNear<T>(actualPlane, textbook::transposed(planeInverse), 4);
    }
}

TYPED_TEST(RandomMatrix, TurnsByRodriguesAndEuler) {
    typedef TypeParam T;
    NumberSource& source = this->m_source;
    for (int round = 0; round < c_rounds; ++round) {
        const T angle = makeAngle<T>(source);
        const Vector3<T> axis = makeVector<T>(source);
        const Vector3<T> degrees{makeAngle<T>(source), makeAngle<T>(source), makeAngle<T>(source)};
        this->checkOperation([&](auto& p_matrix) { p_matrix.rotateAxis(angle, axis); },
                             textbook::makeRotation(angle, read(axis)));
        this->checkOperation([&](auto& p_matrix) { p_matrix.rotateX(angle); },
                             textbook::makeRotation(angle, {1, 0, 0}));
        this->checkOperation([&](auto& p_matrix) { p_matrix.rotateY(angle); },
                             textbook::makeRotation(angle, {0, 1, 0}));
        this->checkOperation([&](auto& p_matrix) { p_matrix.rotateZ(angle); },
                             textbook::makeRotation(angle, {0, 0, 1}));
        this->checkOperation([&](auto& p_matrix) { p_matrix.rotateEuler(degrees); },
                             textbook::makeEulerRotation(read(degrees)));
        this->checkOperation([&](auto& p_matrix) { p_matrix.translate(axis); }, textbook::makeTranslation(read(axis)));
        this->checkOperation([&](auto& p_matrix) { p_matrix.scale(axis); }, textbook::makeScale(read(axis)));
    }
}

TYPED_TEST(RandomMatrix, OfThePlaneTurnsFromYTowardX) {
    typedef TypeParam T;
    for (int round = 0; round < c_rounds; ++round) {
        const T degrees = makeAngle<T>(this->m_source);
        const Real angle = degrees * textbook::c_degree;
        textbook::Matrix expected = textbook::Matrix::identity(3);
        expected.m_at[0][0] = std::cos(angle);
        expected.m_at[0][1] = std::sin(angle);
        expected.m_at[1][0] = -std::sin(angle);
        expected.m_at[1][1] = std::cos(angle);
        const Matrix3x3<T> start = makeMatrix<Matrix3x3<T>>(this->m_source, 3);
        Matrix3x3<T> actual(start);
        actual.rotate(degrees);
        textbook::expectNear<T>(actual, textbook::read(start, 3) * expected, 4);
    }
}

TYPED_TEST(RandomMatrix, OfAQuaternionTurnsBackward) {
    typedef TypeParam T;
    for (int round = 0; round < c_rounds; ++round) {
        const Vector4<T> quaternion = makeQuaternion<T>(this->m_source);
        const textbook::Quaternion q = read(quaternion);
        textbook::Matrix expected = textbook::Matrix::identity(4);
        for (int column = 0; column < 3; ++column) {
            const textbook::Quaternion axis = {Real(column == 0), Real(column == 1), Real(column == 2), 0};
            const textbook::Quaternion image = textbook::conjugated(q) * axis * q;
            expected.m_at[0][column] = image.x;
            expected.m_at[1][column] = image.y;
            expected.m_at[2][column] = image.z;
        }
        Matrix4x4<T> matrix;
        matrix.setRotationQuaternion(quaternion);
        textbook::expectNear<T>(matrix, expected, 1);
        this->checkOperation([&](auto& p_matrix) { p_matrix.rotateQuaternion(quaternion); }, expected);
        if (std::fabs(quaternion.w) < T(0.05)) {
            continue;
        }
        // Out of the matrix it comes with a w above 0, and the less exact the smaller that is.
        const Real w = quaternion.w;
        const Vector4<T> found = matrix.getRotationQuaternion();
        textbook::expectNear<T>(found, read(w < 0 ? -quaternion : quaternion), 1 / (w * w));
    }
}

TYPED_TEST(RandomMatrix, GivesTheQuaternionOfAHalfTurnByItsLargestPart) {
    typedef TypeParam T;
    int seen[3] = {};
    for (int round = 0; round < c_rounds; ++round) {
        Vector4<T> quaternion = makeQuaternion<T>(this->m_source);
        quaternion.w = 0;
        quaternion.normalize();
        Matrix4x4<T> matrix;
        matrix.setRotationQuaternion(quaternion);
        // Without this, rounding decides whether the sum of the diagonal and 1 is above 0.
        const T shift = 16 * std::numeric_limits<T>::epsilon();
        for (uint32_t i : {0u, 5u, 10u}) {
            matrix.setValue(i, matrix.getValue(i) - shift);
        }
        const Vector4<T> found = matrix.getRotationQuaternion();
        const T parts[] = {quaternion.x, quaternion.y, quaternion.z};
        int largest = 0;
        for (int i = 1; i < 3; ++i) {
            largest = std::fabs(parts[i]) > std::fabs(parts[largest]) ? i : largest;
        }
        ++seen[largest];
        textbook::expectNear<T>(found, read(parts[largest] < 0 ? -quaternion : quaternion), 4);
    }
    EXPECT_GT(std::min({seen[0], seen[1], seen[2]}), c_rounds / 6);
}

// Not a rotation: then each of the four forms reads its own values, and the w of the last three is not 0.
TYPED_TEST(RandomMatrix, GivesAQuaternionByTheFourForms) {
    typedef TypeParam T;
    int seen[4] = {};
    for (int round = 0; round < c_rounds * 2; ++round) {
        const Matrix4x4<T> matrix = makeMatrix<Matrix4x4<T>>(this->m_source, 4);
        const textbook::Matrix m = textbook::read(matrix, 4);
        const Real diagonal[] = {m.m_at[0][0], m.m_at[1][1], m.m_at[2][2]};
        // Differences across the diagonal, and sums.
        const Real dx = m.m_at[1][2] - m.m_at[2][1];
        const Real dy = m.m_at[2][0] - m.m_at[0][2];
        const Real dz = m.m_at[0][1] - m.m_at[1][0];
        const Real xy = m.m_at[0][1] + m.m_at[1][0];
        const Real xz = m.m_at[0][2] + m.m_at[2][0];
        const Real yz = m.m_at[1][2] + m.m_at[2][1];
        const Real trace = 1 + diagonal[0] + diagonal[1] + diagonal[2];
        int form = 0;
        Real square = trace;
        if (trace <= Real(1e-8)) {
            int largest = diagonal[0] > diagonal[1] && diagonal[0] > diagonal[2] ? 0 : 1;
            largest = largest == 1 && diagonal[1] <= diagonal[2] ? 2 : largest;
            form = 1 + largest;
            square = 1 + 2 * diagonal[largest] - (trace - 1);
        }
        if (std::fabs(trace) < Real(0.05) || square < Real(0.05)) {
            continue;
        }
        ++seen[form];
        const Real s = 2 * std::sqrt(square);
        const textbook::Quaternion expected[] = {{dx / s, dy / s, dz / s, s / 4},
                                                 {s / 4, xy / s, xz / s, dx / s},
                                                 {xy / s, s / 4, yz / s, dy / s},
                                                 {xz / s, yz / s, s / 4, dz / s}};
        textbook::expectNear<T>(matrix.getRotationQuaternion(), expected[form], 40);
    }
    EXPECT_GT(std::min({seen[0], seen[1], seen[2], seen[3]}), 10);
}

TYPED_TEST(RandomMatrix, OfAFrustumSendsItsCornersToTheCube) {
    typedef TypeParam T;
    NumberSource& source = this->m_source;
    for (int round = 0; round < c_rounds; ++round) {
        const T left = makeNumber<T>(source);
        const T right = left + T(0.5) + std::fabs(makeNumber<T>(source));
        const T bottom = makeNumber<T>(source);
        const T top = bottom + T(0.5) + std::fabs(makeNumber<T>(source));
        const T near = T(0.5) + std::fabs(makeNumber<T>(source));
        const T far = near + T(0.5) + std::fabs(makeNumber<T>(source));
        Matrix4x4<T> frustum;
        frustum.setPerspective(left, right, bottom, top, near, far);
        Matrix4x4<T> box;
        box.setOrtho(left, right, bottom, top, near, far);
        Matrix4x4<T> endless;
        endless.setPerspective(left, right, bottom, top, near, -1);
        for (int corner = 0; corner < 8; ++corner) {
            const T x = (corner & 1) != 0 ? right : left;
            const T y = (corner & 2) != 0 ? top : bottom;
            const T depth = (corner & 4) != 0 ? far : near;
            const textbook::Point expected = {Real((corner & 1) != 0 ? 1 : -1), Real((corner & 2) != 0 ? 1 : -1),
                                              Real((corner & 4) != 0 ? 1 : -1)};
            const T widening = depth / near;
            const Vector4<T> image = frustum * Vector4<T>(x * widening, y * widening, -depth, 1);
            textbook::expectNear<T>(Vector3<T>(image.x, image.y, image.z) / image.w, expected, 40);
            EXPECT_NEAR(image.w, depth, textbook::getTolerance<T>(1));
            textbook::expectNear<T>(box.transform({x, y, -depth}), expected, 40);
            // The same sides; the depth runs from the near plane to almost 1 at infinity.
            const Vector4<T> farImage = endless * Vector4<T>(x * widening, y * widening, -depth, 1);
            const Real z = Real(0.999) - 2 * Real(0.999) * near / depth;
            textbook::expectNear<T>(Vector3<T>(farImage.x, farImage.y, farImage.z) / farImage.w,
                                    textbook::Point{expected.x, expected.y, z}, 40);
        }
    }
}

TYPED_TEST(RandomMatrix, OfAnAngleOfViewIsASymmetricFrustum) {
    typedef TypeParam T;
    NumberSource& source = this->m_source;
    for (int round = 0; round < c_rounds; ++round) {
        const T view = 70 + source.unit<T>() * 50;
        const T aspect = T(1.5) + source.unit<T>();
        const T near = T(0.5) + std::fabs(makeNumber<T>(source));
        const T far = near + T(0.5) + std::fabs(makeNumber<T>(source));
        Matrix4x4<T> frustum;
        frustum.setPerspective(view, aspect, near, far);
        const Real cotangent = 1 / std::tan(view * static_cast<Real>(0.017453292) / 2);
        textbook::Matrix expected(4);
        expected.m_at[0][0] = cotangent / aspect;
        expected.m_at[1][1] = cotangent;
        expected.m_at[2][2] = -(static_cast<Real>(far) + near) / (static_cast<Real>(far) - near);
        expected.m_at[2][3] = -2 * static_cast<Real>(far) * near / (static_cast<Real>(far) - near);
        expected.m_at[3][2] = -1;
        textbook::expectNear<T>(frustum, expected, 40);
    }
}

TYPED_TEST(RandomMatrix, ComesApartIntoTranslationAnglesAndScale) {
    typedef TypeParam T;
    NumberSource& source = this->m_source;
    // Angles come back through the shorter constant of pi.
    const Real angleTolerance = 1e-5L + textbook::getTolerance<T>(400);
    auto expectAngle = [&](T p_actual, T p_expected, T p_least, const char* p_axis) {
        EXPECT_NEAR(std::remainder(static_cast<Real>(p_actual) - p_expected, Real(360)), 0, angleTolerance) << p_axis;
        EXPECT_GE(p_actual, p_least - angleTolerance) << p_axis;
        EXPECT_LE(p_actual, p_least + 360 + angleTolerance) << p_axis;
    };
    for (int round = 0; round < c_rounds; ++round) {
        const Vector3<T> place = makeVector<T>(source);
        const Vector3<T> degrees{makeAngle<T>(source), source.unit<T>() * 85, makeAngle<T>(source)};
        const Vector3<T> size{T(0.5) + std::fabs(makeNumber<T>(source)), T(0.5) + std::fabs(makeNumber<T>(source)),
                              T(0.5) + std::fabs(makeNumber<T>(source))};
        Matrix4x4<T> space;
        space.translate(place);
        space.rotateEuler(degrees);
        Vector3<T> rotation;
        Matrix4x4<T> pure;
        pure.rotateEuler(degrees);
        pure.toEuler(rotation);
        expectAngle(rotation.x, degrees.x, -90, "x, rotation alone");
        expectAngle(rotation.y, degrees.y, -360, "y, rotation alone");
        expectAngle(rotation.z, degrees.z, 0, "z, rotation alone");
        space.scale(size);
        Vector3<T> translation;
        Vector3<T> scale;
        space.decompose(translation, rotation, scale);
        textbook::expectNear<T>(translation, read(place), 1);
        textbook::expectNear<T>(scale, read(size), 4);
        expectAngle(rotation.x, degrees.x, -90, "x");
        expectAngle(rotation.y, degrees.y, -360, "y");
        expectAngle(rotation.z, degrees.z, 0, "z");

        Matrix3x3<T> plane;
        plane.translate({place.x, place.y});
        plane.rotate(degrees.x);
        plane.scale({size.x, size.y});
        Vector2<T> planeTranslation;
        T planeRotation = 0;
        Vector2<T> planeScale;
        plane.decompose(planeTranslation, planeRotation, planeScale);
        EXPECT_EQ(planeTranslation, Vector2<T>(place.x, place.y));
        EXPECT_NEAR(planeScale.x, size.x, textbook::getTolerance<T>(4));
        EXPECT_NEAR(planeScale.y, size.y, textbook::getTolerance<T>(4));
        // The plane's rotation runs from y toward x.
        expectAngle(planeRotation, -degrees.x, 0, "plane");
    }
}

TYPED_TEST(RandomMatrix, ComposesTheScaleWithTheRotationAboutX) {
    typedef TypeParam T;
    NumberSource& source = this->m_source;
    for (int round = 0; round < c_rounds; ++round) {
        const Vector3<T> degrees{makeAngle<T>(source), makeAngle<T>(source), makeAngle<T>(source)};
        const Vector3<T> scale = makeVector<T>(source);
        Matrix4x4<T> matrix;
        matrix.compose(makeVector<T>(source), degrees, scale);
        textbook::expectNear<T>(matrix, textbook::makeScale(read(scale)) * textbook::makeRotation(degrees.x, {1, 0, 0}),
                                4);
    }
}

TYPED_TEST(RandomMatrix, SendsARectangleIntoTheOneAroundItsCorners) {
    typedef TypeParam T;
    NumberSource& source = this->m_source;
    for (int round = 0; round < c_rounds; ++round) {
        const Rect<T> rect{makeNumber<T>(source), makeNumber<T>(source), makeNumber<T>(source), makeNumber<T>(source)};
        Matrix3x3<T> matrix = makeMatrix<Matrix3x3<T>>(source, 3);
        // Keeps the divisor away from 0.
        matrix.setValue(8, 20 + matrix.getValue(8));
        const textbook::Matrix m = textbook::read(matrix, 3);
        Real least[2] = {INFINITY, INFINITY};
        Real most[2] = {-INFINITY, -INFINITY};
        for (int corner = 0; corner < 4; ++corner) {
            const Real x = static_cast<Real>(rect.x) + ((corner & 1) != 0 ? rect.width : T(0));
            const Real y = static_cast<Real>(rect.y) + ((corner & 2) != 0 ? rect.height : T(0));
            const Real divisor = m.m_at[2][0] * x + m.m_at[2][1] * y + m.m_at[2][2];
            for (int row = 0; row < 2; ++row) {
                const Real place = (m.m_at[row][0] * x + m.m_at[row][1] * y + m.m_at[row][2]) / divisor;
                least[row] = std::min(least[row], place);
                most[row] = std::max(most[row], place);
            }
        }
        Rect<T> out;
        rect.transformIntoBoundingRect(matrix, out);
        EXPECT_NEAR(out.x, least[0], textbook::getTolerance<T>(4));
        EXPECT_NEAR(out.y, least[1], textbook::getTolerance<T>(4));
        EXPECT_NEAR(out.width, most[0] - least[0], textbook::getTolerance<T>(4));
        EXPECT_NEAR(out.height, most[1] - least[1], textbook::getTolerance<T>(4));
    }
}

template <typename T> class RandomVector : public RandomMatrix<T> {};

TYPED_TEST_SUITE(RandomVector, RealTypes, RealTypeNames);

TYPED_TEST(RandomVector, MeasuresAndMultipliesAsTheTextbookDoes) {
    typedef TypeParam T;
    NumberSource& source = this->m_source;
    for (int round = 0; round < c_rounds; ++round) {
        const Vector3<T> a = makeVector<T>(source);
        const Vector3<T> b = makeVector<T>(source);
        const textbook::Point expectedA = read(a);
        const textbook::Point expectedB = read(b);
        const textbook::Point between = expectedA + Real(-1) * expectedB;
        EXPECT_NEAR(a.getModule(), textbook::length(expectedA), textbook::getTolerance<T>(4));
        EXPECT_NEAR(a.getModuleSquare(), textbook::dot(expectedA, expectedA), textbook::getTolerance<T>(8));
        EXPECT_NEAR(a.dotProduct(b), textbook::dot(expectedA, expectedB), textbook::getTolerance<T>(8));
        EXPECT_NEAR(a.distance(b), textbook::length(between), textbook::getTolerance<T>(4));
        textbook::expectNear<T>(a.crossProduct(b), textbook::cross(expectedA, expectedB), 8);
        Vector3<T> unit(a);
        unit.normalize();
        textbook::expectNear<T>(unit, (1 / textbook::length(expectedA)) * expectedA, 1);

        const Vector4<T> longA(a.x, a.y, a.z, b.z);
        const Vector4<T> longB(b.x, b.y, a.x, b.y);
        const Real product = textbook::dot(read(longA), read(longB));
        EXPECT_NEAR(longA.dotProduct(longB), product, textbook::getTolerance<T>(8));
        EXPECT_NEAR(longA.getModule(), std::sqrt(textbook::dot(read(longA), read(longA))),
                    textbook::getTolerance<T>(4));
        const Vector2<T> shortA(a.x, a.y);
        const Vector2<T> shortB(b.x, b.y);
        EXPECT_NEAR(shortA.dotProduct(shortB), expectedA.x * expectedB.x + expectedA.y * expectedB.y,
                    textbook::getTolerance<T>(8));
        EXPECT_NEAR(shortA.distance(shortB), std::hypot(between.x, between.y), textbook::getTolerance<T>(4));

        // An angle from its cosine is worst near 0 and 180 degrees.
        const Real cosine =
            textbook::dot(expectedA, expectedB) / (textbook::length(expectedA) * textbook::length(expectedB));
        const Real degrees = 180 / std::acos(Real(-1));
        const Real sine = std::sqrt(1 - cosine * cosine);
        EXPECT_NEAR(a.getAngle(b), std::acos(cosine) * degrees, 1e-5L + textbook::getTolerance<T>(60) / sine);
        Real direction = std::atan2(expectedA.y, expectedA.x) * degrees;
        direction += direction < 0 ? 360 : 0;
        EXPECT_NEAR(shortA.getAngle(), direction, 1e-5L + textbook::getTolerance<T>(360));
    }
}

TYPED_TEST(RandomVector, TurnsByRodrigues) {
    typedef TypeParam T;
    NumberSource& source = this->m_source;
    auto check = [](auto p_vector, auto p_operation, const textbook::Point& p_expected) {
        p_operation(p_vector);
        textbook::expectNear<T>(p_vector, p_expected, 4);
    };
    for (int round = 0; round < c_rounds; ++round) {
        const Vector3<T> vector = makeVector<T>(source);
        const Vector4<T> longVector(vector.x, vector.y, vector.z, 7);
        const Vector3<T> axis = makeVector<T>(source);
        const T degrees = makeAngle<T>(source);
        auto checkBoth = [&](auto p_operation, const textbook::Point& p_axis) {
            const textbook::Point expected = textbook::rotated(read(vector), degrees, p_axis);
            check(vector, p_operation, expected);
            check(longVector, p_operation, expected);
        };
        checkBoth([&](auto& p_vector) { p_vector.rotateX(degrees); }, {1, 0, 0});
        checkBoth([&](auto& p_vector) { p_vector.rotateY(degrees); }, {0, 1, 0});
        checkBoth([&](auto& p_vector) { p_vector.rotateZ(degrees); }, {0, 0, 1});
        checkBoth([&](auto& p_vector) { p_vector.rotateAxis(degrees, axis); }, read(axis));
        Vector2<T> flat(vector.x, vector.y);
        flat.rotate(degrees);
        const textbook::Point expected = textbook::rotated({vector.x, vector.y, 0}, degrees, {0, 0, 1});
        EXPECT_NEAR(flat.x, expected.x, textbook::getTolerance<T>(4));
        EXPECT_NEAR(flat.y, expected.y, textbook::getTolerance<T>(4));
    }
}

TYPED_TEST(RandomVector, GoesAlongTheShorterArcBetweenQuaternions) {
    typedef TypeParam T;
    NumberSource& source = this->m_source;
    int lines = 0;
    for (int round = 0; round < c_rounds; ++round) {
        const Vector4<T> a = makeQuaternion<T>(source);
        Vector4<T> b = makeQuaternion<T>(source);
        if (round % 3 == 0) {
            b = a + b * T(0.3);
            b.normalize();
        }
        if (round % 2 == 0) {
            b = -b;
        }
        const Real cosine = std::fabs(textbook::dot(read(a), read(b)));
        if (std::fabs(cosine - Real(0.9)) < Real(1e-4)) {
            continue;
        }
        lines += cosine > Real(0.9) ? 1 : 0;
        const T t = (source.unit<T>() + 1) / 2;
        textbook::expectNear<T>(Vector4<T>::slerp(a, b, t), textbook::slerp(read(a), read(b), t), 4);
    }
    EXPECT_GT(lines, 50);
    EXPECT_LT(lines, c_rounds - 100);
}

} // namespace zyr
