// Matrices and vectors beside the two libraries that others would take. All sides are built with the same options, for
// the processor that the library is built for, and none may reorder sums.
#include "bench_versus.h"
#include "zyr_common/geometry/zyr_matrix.h"

#include <Eigen/Dense>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <glm/glm.hpp>
#include <random>
#include <vector>

using namespace zyr;
using zyr::bench::compareSides;

namespace {

/// Enough to hide the loop, few enough to stay next to the processor.
constexpr size_t COUNT = 64;

template <typename T> std::vector<T> makeNumbers(size_t p_count) {
    std::mt19937 random(5);
    std::uniform_real_distribution<T> number(-2, 2);
    std::vector<T> numbers(p_count);
    for (T& value : numbers) {
        value = number(random);
    }
    return numbers;
}

/// The types of the three sides for matrices of N rows, and how they are filled and read.
template <typename T, int N> struct Matrices {
    typedef std::conditional_t<N == 3, Matrix3x3<T>, Matrix4x4<T>> Own;
    typedef Eigen::Matrix<T, N, N> EigenForm;
    typedef glm::mat<N, N, T> GlmForm;

    static void set(Own& p_matrix, int p_index, T p_value) { p_matrix.setValue(uint32_t(p_index), p_value); }
    static void set(EigenForm& p_matrix, int p_index, T p_value) { p_matrix.data()[p_index] = p_value; }
    static void set(GlmForm& p_matrix, int p_index, T p_value) { p_matrix[p_index / N][p_index % N] = p_value; }
    static T get(const Own& p_matrix, int p_index) { return p_matrix.getValue(uint32_t(p_index)); }
    static T get(const EigenForm& p_matrix, int p_index) { return p_matrix.data()[p_index]; }
    static T get(const GlmForm& p_matrix, int p_index) { return p_matrix[p_index / N][p_index % N]; }
    static constexpr int c_values = N * N;
};

template <typename T, int N> struct Vectors {
    typedef std::conditional_t<N == 3, Vector3<T>, Vector4<T>> Own;
    typedef Eigen::Matrix<T, N, 1> EigenForm;
    typedef glm::vec<N, T> GlmForm;

    static void set(Own& p_vector, int p_index, T p_value) { memcpy(address(p_vector, p_index), &p_value, sizeof(T)); }
    static void set(EigenForm& p_vector, int p_index, T p_value) { p_vector[p_index] = p_value; }
    static void set(GlmForm& p_vector, int p_index, T p_value) { p_vector[p_index] = p_value; }
    static T get(Own& p_vector, int p_index) {
        T value;
        memcpy(&value, address(p_vector, p_index), sizeof(T));
        return value;
    }
    static T get(const EigenForm& p_vector, int p_index) { return p_vector[p_index]; }
    static T get(const GlmForm& p_vector, int p_index) { return p_vector[p_index]; }
    static constexpr int c_values = N;

private:
    static char* address(Own& p_vector, int p_index) {
        return reinterpret_cast<char*>(&p_vector) + size_t(p_index) * sizeof(T);
    }
};

template <class Forms, class Value, typename T> std::vector<Value> makeAll(const std::vector<T>& p_numbers) {
    std::vector<Value> values(COUNT);
    size_t next = 0;
    for (Value& value : values) {
        for (int i = 0; i < Forms::c_values; i++) {
            Forms::set(value, i, p_numbers[next++]);
        }
    }
    return values;
}

/// A benchmark of unequal works says nothing.
template <class Forms, class A, class B>
void expectAlike(std::vector<A>& p_a, std::vector<B>& p_b, double p_tolerance) {
    for (size_t i = 0; i < COUNT; i++) {
        for (int k = 0; k < Forms::c_values; k++) {
            const double a = double(Forms::get(p_a[i], k));
            const double b = double(Forms::get(p_b[i], k));
            if (!(std::abs(a - b) <= p_tolerance * (1 + std::abs(a)))) {
                fprintf(stderr, "bench_geometry: the sides disagree: %g and %g\n", a, b);
                exit(1);
            }
        }
    }
}

/// One work on two arrays of operands, by each side's own words for it.
template <typename T, class Forms, class OwnWork, class EigenWork, class GlmWork>
void compareForms(benchmark::State& p_state, OwnWork p_own, EigenWork p_eigen, GlmWork p_glm) {
    const std::vector<T> first = makeNumbers<T>(COUNT * Forms::c_values + 1);
    const std::vector<T> second(first.rbegin(), first.rend());
    const auto ownA = makeAll<Forms, typename Forms::Own>(first);
    const auto ownB = makeAll<Forms, typename Forms::Own>(second);
    const auto eigenA = makeAll<Forms, typename Forms::EigenForm>(first);
    const auto eigenB = makeAll<Forms, typename Forms::EigenForm>(second);
    const auto glmA = makeAll<Forms, typename Forms::GlmForm>(first);
    const auto glmB = makeAll<Forms, typename Forms::GlmForm>(second);
    auto own = ownA;
    auto eigen = eigenA;
    auto glm = glmA;
    const auto runAll = [](auto& p_out, const auto& p_a, const auto& p_b, const auto& p_work) {
        for (size_t i = 0; i < COUNT; i++) {
            p_work(p_out[i], p_a[i], p_b[i]);
        }
        benchmark::ClobberMemory();
    };
    compareSides(p_state, COUNT,
                 {{"zyr", [&] { runAll(own, ownA, ownB, p_own); }},
                  {"eigen", [&] { runAll(eigen, eigenA, eigenB, p_eigen); }},
                  {"glm", [&] { runAll(glm, glmA, glmB, p_glm); }}});
    const double tolerance = sizeof(T) == 4 ? 1e-2 : 1e-9;
    expectAlike<Forms>(own, eigen, tolerance);
    expectAlike<Forms>(own, glm, tolerance);
}

} // namespace

template <typename T, int N> static void product(benchmark::State& p_state) {
    typedef Matrices<T, N> Forms;
    compareForms<T, Forms>(
        p_state, [](auto& p_out, const auto& p_a, const auto& p_b) { p_out = p_a * p_b; },
        [](auto& p_out, const auto& p_a, const auto& p_b) { p_out.noalias() = p_a * p_b; },
        [](auto& p_out, const auto& p_a, const auto& p_b) { p_out = p_a * p_b; });
}

/// The inverse of one place into another; here the own side copies first, since it inverts in place.
template <typename T, int N> static void inverse(benchmark::State& p_state) {
    typedef Matrices<T, N> Forms;
    compareForms<T, Forms>(
        p_state,
        [](auto& p_out, const auto& p_a, const auto&) {
            p_out = p_a;
            p_out.inverse();
        },
        [](auto& p_out, const auto& p_a, const auto&) { p_out = p_a.inverse(); },
        [](auto& p_out, const auto& p_a, const auto&) { p_out = glm::inverse(p_a); });
}

/// As above, where the result replaces the matrix: the inverse of the inverse, and so on. The diagonals are heavy, so
/// that rounding does not add up.
template <typename T, int N> static void inverseInPlace(benchmark::State& p_state) {
    typedef Matrices<T, N> Forms;
    std::vector<T> numbers = makeNumbers<T>(COUNT * Forms::c_values);
    for (size_t i = 0; i < numbers.size(); i++) {
        if (i % Forms::c_values % (N + 1) == 0) {
            numbers[i] += 12;
        }
    }
    auto own = makeAll<Forms, typename Forms::Own>(numbers);
    auto eigen = makeAll<Forms, typename Forms::EigenForm>(numbers);
    auto glm = makeAll<Forms, typename Forms::GlmForm>(numbers);
    const auto runAll = [](auto& p_matrices, const auto& p_work) {
        for (auto& matrix : p_matrices) {
            p_work(matrix);
        }
        benchmark::ClobberMemory();
    };
    compareSides(p_state, COUNT,
                 {{"zyr", [&] { runAll(own, [](auto& p_matrix) { p_matrix.inverse(); }); }},
                  {"eigen", [&] { runAll(eigen, [](auto& p_matrix) { p_matrix = p_matrix.inverse().eval(); }); }},
                  {"glm", [&] { runAll(glm, [](auto& p_matrix) { p_matrix = glm::inverse(p_matrix); }); }}});
}

template <typename T, int N> static void normalize(benchmark::State& p_state) {
    typedef Vectors<T, N> Forms;
    compareForms<T, Forms>(
        p_state,
        [](auto& p_out, const auto& p_a, const auto&) {
            p_out = p_a;
            p_out.normalize();
        },
        [](auto& p_out, const auto& p_a, const auto&) { p_out = p_a.normalized(); },
        [](auto& p_out, const auto& p_a, const auto&) { p_out = glm::normalize(p_a); });
}

BENCHMARK_TEMPLATE(product, float, 3);
BENCHMARK_TEMPLATE(product, double, 3);
BENCHMARK_TEMPLATE(product, float, 4);
BENCHMARK_TEMPLATE(product, double, 4);
BENCHMARK_TEMPLATE(inverse, float, 3);
BENCHMARK_TEMPLATE(inverse, double, 3);
BENCHMARK_TEMPLATE(inverse, float, 4);
BENCHMARK_TEMPLATE(inverse, double, 4);
BENCHMARK_TEMPLATE(inverseInPlace, float, 3);
BENCHMARK_TEMPLATE(inverseInPlace, double, 3);
BENCHMARK_TEMPLATE(inverseInPlace, float, 4);
BENCHMARK_TEMPLATE(inverseInPlace, double, 4);
BENCHMARK_TEMPLATE(normalize, float, 3);
BENCHMARK_TEMPLATE(normalize, double, 3);
BENCHMARK_TEMPLATE(normalize, float, 4);
BENCHMARK_TEMPLATE(normalize, double, 4);
