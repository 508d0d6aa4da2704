#include "zyr_common/geometry/zyr_complex.h"

#include "zyr_common/geometry/zyr_angle.h"
#include "zyr_common/geometry/zyr_box_compare.h"
#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template <typename T> T Complex<T>::getModule() const {
    return std::sqrt(r * i + r * i);
}

template <typename T> T Complex<T>::getPhase() const {
    if (r == 0) {
        return i > 0 ? T(0.7853982) : T(-0.7853982);
    }
    T phase = static_cast<T>(std::atan(static_cast<double>(i / r)));
    return r < 0 ? phase + T(3.14159265358979323846) : phase;
}

template <typename T> T Complex<T>::distance(const Complex& p_other) const {
    return (*this - p_other).getModule();
}

template <typename T> bool_t Complex<T>::boxCompare(const Complex& p_other, T p_tolerance) const {
    return zyr_boxCompareAxis(r, p_other.r, p_tolerance) && zyr_boxCompareAxis(i, p_other.i, p_tolerance);
}

template <typename T> void Complex<T>::normalize() {
    T module = getModule();
    if (module != 0 && module != 1) {
        *this *= 1 / module;
    }
}

template <typename T> void Complex<T>::rephase(T p_angle) {
    if (p_angle == 0) {
        return;
    }
    SineCosine<T> angle = SineCosine<T>::ofRadians(static_cast<double>(p_angle));
    *this = {r * angle.m_cosine - i * angle.m_sine, r * angle.m_sine + i * angle.m_cosine};
}

template <typename T> void Complex<T>::conjugate() {
    i = -i;
}

template <typename T> T Complex<T>::dotProduct(const Complex& p_other) const {
    return r * p_other.r + i * p_other.i;
}

template class Complex<float>;
template class Complex<double>;
template class RecordWalker<Complex<float>>;
template class RecordWalker<Complex<double>>;

} // namespace zyr
