// Matrices, quaternions, vectors and complex numbers.
#include "bits/bit_table.h"
#include "zyr_common/geometry/zyr_complex.h"
#include "zyr_common/geometry/zyr_scalar.h"

namespace zyr {

namespace {

template <class M> M makeMatrix(NumberSource& p_source, uint32_t p_size) {
    M matrix;
    for (uint32_t i = 0; i < p_size; ++i) {
        matrix.setValue(i, p_source.number<decltype(matrix.getValue(0))>());
    }
    return matrix;
}

template <class M> void addArithmetic(BitTable& p_table, const M& p_a, const M& p_b) {
    const auto factor = p_b.getValue(3);
    p_table.add(p_a + p_b);
    p_table.add(p_a - p_b);
    p_table.add(p_a * p_b);
    p_table.add(p_a * factor);
    p_table.add(p_a / factor);
}

template <class M> void addInverses(BitTable& p_table, const M& p_matrix) {
    for (void (M::*operation)() :
         {&M::inverse, &M::transposedInverse, &M::affineInverse, &M::affineTransposedInverse, &M::transpose}) {
        M result(p_matrix);
        (result.*operation)();
        p_table.add(result);
    }
}

template <typename T> void fillMatrices3x3(BitTable& p_table, NumberSource& p_source) {
    for (uint32_t round = 0; round < 200; ++round) {
        Matrix3x3<T> a = makeMatrix<Matrix3x3<T>>(p_source, 9);
        const Matrix3x3<T> b = makeMatrix<Matrix3x3<T>>(p_source, 9);
        addArithmetic(p_table, a, b);
        addInverses(p_table, a);
        p_table.addRecord(a * p_source.vector3<T>());
        p_table.addRecord(a.transform(p_source.vector2<T>()));
        p_table.addRecord(a.getRow(round % 3));
        p_table.addRecord(a.getColumn(round % 3));
        if (round % 4 == 0) {
            a.setIdentity();
        }
        a.translate(p_source.vector2<T>());
        a.scale(p_source.vector2<T>());
        a.uniformScale(p_source.unit<T>());
        p_table.add(a);
        p_table.addRecord(a * p_source.vector3<T>());
        Vector2<T> translation;
        T rotation = 0;
        Vector2<T> scale;
        a.decompose(translation, rotation, scale);
        p_table.addRecord(translation);
        p_table.addRecord(scale);
        p_table.addNarrow(rotation);
        a.rotate(p_source.number<T>());
        p_table.addNarrow(a);
        // A row is three times another: the determinant is 0, or what rounding leaves of it.
        Matrix3x3<T> singular(b);
        for (uint32_t i = 0; i < 9; i += 3) {
            singular.setValue(i + 1, 3 * b.getValue(i));
        }
        singular.inverse();
        p_table.add(singular);
    }
}

template <typename T> void fillMatrices4x4(BitTable& p_table, NumberSource& p_source) {
    for (uint32_t round = 0; round < 200; ++round) {
        Matrix4x4<T> a = makeMatrix<Matrix4x4<T>>(p_source, 16);
        const Matrix4x4<T> b = makeMatrix<Matrix4x4<T>>(p_source, 16);
        addArithmetic(p_table, a, b);
        addInverses(p_table, a);
        p_table.addRecord(a * a.getRow(round % 4));
        p_table.addRecord(a * a.getColumn(round % 4));
        p_table.addRecord(a.transform(p_source.vector3<T>()));
        if (round % 4 == 0) {
            a.setIdentity();
        }
        a.translate(p_source.vector3<T>());
        a.scale(p_source.vector3<T>());
        a.uniformScale(p_source.unit<T>());
        p_table.add(a);
        Vector3<T> translation;
        Vector3<T> rotation;
        Vector3<T> scale;
        a.decompose(translation, rotation, scale);
        p_table.addRecord(translation);
        p_table.addRecord(scale);
        p_table.addRecordNarrow(rotation);
        a.toEuler(rotation);
        p_table.addRecordNarrow(rotation);
        const Vector3<T> degrees = p_source.vector3<T>();
        a.rotateEuler(degrees);
        p_table.addNarrow(a);
        a.rotateX(degrees.z);
        a.rotateY(degrees.x);
        a.rotateZ(degrees.y);
        p_table.addNarrow(a);
        a.rotateAxis(degrees.x, p_source.vector3<T>());
        p_table.addNarrow(a);
        a.compose(translation, degrees, scale);
        p_table.addNarrow(a);
    }
}

template <typename T> Vector4<T> makeQuaternion(NumberSource& p_source, bool p_halfTurn) {
    Vector4<T> quaternion{p_source.unit<T>(), p_source.unit<T>(), p_source.unit<T>(), p_source.unit<T>()};
    if (p_halfTurn) {
        quaternion.w = 0;
    }
    quaternion.normalize();
    return quaternion;
}

template <typename T> void fillQuaternionsOf(BitTable& p_table, NumberSource& p_source) {
    for (uint32_t round = 0; round < 400; ++round) {
        // A half turn takes the branches by the largest value of the diagonal.
        const Vector4<T> a = makeQuaternion<T>(p_source, round % 3 == 0);
        const Vector4<T> b = makeQuaternion<T>(p_source, false);
        Matrix4x4<T> matrix;
        matrix.setRotationQuaternion(a);
        p_table.add(matrix);
        p_table.addRecord(matrix.getRotationQuaternion());
        matrix.translate(p_source.vector3<T>());
        matrix.rotateQuaternion(b);
        p_table.add(matrix);
        p_table.addRecord(matrix.getRotationQuaternion());
        const T t = (p_source.unit<T>() + 1) / 2;
        p_table.addRecordNarrow(Vector4<T>::slerp(a, b, t));
        // Near ones are blended on a line, without a sine.
        p_table.addRecord(Vector4<T>::slerp(a, a + b * T(0.01), t));
        p_table.addRecord(Vector4<T>::slerp(a, a, t));
    }
}

template <class V, typename T> void addVectorArithmetic(BitTable& p_table, const V& p_a, const V& p_b, T p_value) {
    p_table.addRecord(p_a + p_b);
    p_table.addRecord(p_a - p_b);
    p_table.addRecord(p_a * p_b);
    p_table.addRecord(p_a / p_b);
    p_table.addRecord(p_a + p_value);
    p_table.addRecord(p_a - p_value);
    p_table.addRecord(p_a * p_value);
    p_table.addRecord(p_a / p_value);
    p_table.addRecord(-p_a);
    V sum(p_a);
    sum += p_b;
    sum -= p_value;
    sum *= p_b;
    sum *= p_value;
    sum += p_value;
    sum -= p_b;
    sum /= p_b;
    p_table.addRecord(sum);
    sum = p_a;
    sum /= p_value;
    p_table.addRecord(sum);
}

template <class V, typename T> void addMeasures(BitTable& p_table, const V& p_a, const V& p_b, T p_value) {
    p_table.add(p_a.getModule());
    p_table.add(p_a.getModuleSquare());
    p_table.add(p_a.distance(p_b));
    p_table.add(p_a.dotProduct(p_b));
    p_table.add(p_a.boxCompare(p_b, p_value));
    V unit(p_a);
    unit.normalize();
    p_table.addRecord(unit);
}

template <class V, typename T> void addRotations(BitTable& p_table, V p_vector, T p_degrees, const Vector3<T>& p_axis) {
    p_vector.rotateX(p_degrees);
    p_table.addRecordNarrow(p_vector);
    p_vector.rotateY(p_degrees);
    p_table.addRecordNarrow(p_vector);
    p_vector.rotateZ(p_degrees);
    p_table.addRecordNarrow(p_vector);
    p_vector.rotateAxis(p_degrees, p_axis);
    p_table.addRecordNarrow(p_vector);
}

template <typename T> void fillVectorsOf(BitTable& p_table, NumberSource& p_source) {
    for (uint32_t round = 0; round < 200; ++round) {
        const bool wild = round % 2 == 1;
        auto number = [&] { return wild ? p_source.wildNumber<T>() : p_source.number<T>(); };
        const Vector4<T> a{number(), number(), number(), number()};
        const Vector4<T> b{number(), number(), number(), number()};
        const T value = number();
        const Vector2<T> a2(a.x, a.y);
        const Vector2<T> b2(b.x, b.y);
        const Vector3<T> a3(a.x, a.y, a.z);
        const Vector3<T> b3(b.x, b.y, b.z);
        addVectorArithmetic(p_table, a2, b2, value);
        addVectorArithmetic(p_table, a3, b3, value);
        addVectorArithmetic(p_table, a, b, value);
        addVectorArithmetic(p_table, Scalar<T>(a.x), Scalar<T>(b.x), value);
        addMeasures(p_table, a2, b2, value);
        addMeasures(p_table, a3, b3, value);
        addMeasures(p_table, a, b, value);
        p_table.addRecord(a3.crossProduct(b3));
        p_table.addNarrow(a2.getAngle());
        p_table.addNarrow(a3.getAngle(b3));
        p_table.addNarrow(a.getAngle(b));
        if (!wild) {
            // The integer forms cut sines to -1, 0 or 1: beyond a turn and a quarter the last bit would decide.
            const T degrees = std::is_integral_v<T> ? T(p_source.below(451)) : value;
            Vector2<T> turned(a2);
            turned.rotate(degrees);
            p_table.addRecordNarrow(turned);
            addRotations(p_table, a3, degrees, b3);
            addRotations(p_table, a, degrees, b3);
            addRotations(p_table, a3, T(90 * (round % 5)), b3);
        }
    }
}

template <typename T> void fillComplexNumbersOf(BitTable& p_table, NumberSource& p_source) {
    for (uint32_t round = 0; round < 400; ++round) {
        const Complex<T> a{p_source.wildNumber<T>(), p_source.wildNumber<T>()};
        const Complex<T> b{p_source.number<T>(), p_source.number<T>()};
        const T value = p_source.wildNumber<T>();
        addVectorArithmetic(p_table, a, b, value);
        p_table.add(a.getModule());
        p_table.addNarrow(a.getPhase());
        p_table.add(a.distance(b));
        p_table.add(a.boxCompare(b, value));
        p_table.add(a.dotProduct(b));
        Complex<T> changed(a);
        changed.normalize();
        p_table.addRecord(changed);
        changed.conjugate();
        p_table.addRecord(changed);
        changed = b;
        changed.rephase(p_source.number<T>());
        p_table.addRecordNarrow(changed);
    }
}

template <typename T> void fillProjectionsOf(BitTable& p_table, NumberSource& p_source) {
    for (uint32_t round = 0; round < 300; ++round) {
        T sides[6];
        for (T& side : sides) {
            side = round % 2 == 0 ? p_source.number<T>() : p_source.wildNumber<T>();
        }
        if (round % 10 == 0) {
            sides[5] = -1;
        } else if (round % 10 == 4) {
            sides[round % 3 * 2 + 1] = sides[round % 3 * 2];
        }
        Matrix4x4<T> matrix;
        matrix.setPerspective(sides[0], sides[1], sides[2], sides[3], sides[4], sides[5]);
        p_table.add(matrix);
        matrix.setOrtho(sides[0], sides[1], sides[2], sides[3], sides[4], sides[5]);
        p_table.add(matrix);
        const T view = 40 + p_source.unit<T>() * 30;
        matrix.setPerspective(view, p_source.unit<T>() + 2, T(0.1) + T(round), 1000);
        p_table.addNarrow(matrix);
    }
}

} // namespace

void zyr_fillFloatMatrices(BitTable& p_table) {
    NumberSource source(1);
    fillMatrices3x3<float>(p_table, source);
    fillMatrices4x4<float>(p_table, source);
}

void zyr_fillDoubleMatrices(BitTable& p_table) {
    NumberSource source(2);
    fillMatrices3x3<double>(p_table, source);
    fillMatrices4x4<double>(p_table, source);
}

void zyr_fillProjections(BitTable& p_table) {
    NumberSource source(3);
    fillProjectionsOf<float>(p_table, source);
    fillProjectionsOf<double>(p_table, source);
}

void zyr_fillQuaternions(BitTable& p_table) {
    NumberSource source(4);
    fillQuaternionsOf<float>(p_table, source);
    fillQuaternionsOf<double>(p_table, source);
}

void zyr_fillVectors(BitTable& p_table) {
    NumberSource source(5);
    fillVectorsOf<uint32_t>(p_table, source);
    fillVectorsOf<int32_t>(p_table, source);
    fillVectorsOf<uint64_t>(p_table, source);
    fillVectorsOf<int64_t>(p_table, source);
    fillVectorsOf<float>(p_table, source);
    fillVectorsOf<double>(p_table, source);
}

void zyr_fillComplexNumbers(BitTable& p_table) {
    NumberSource source(6);
    fillComplexNumbersOf<float>(p_table, source);
    fillComplexNumbersOf<double>(p_table, source);
}

} // namespace zyr
