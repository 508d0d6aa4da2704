#include "support/records/zyr_record_list.h"
#include "zyr_common/colour/zyr_color.h"
#include "zyr_common/geometry/zyr_complex.h"
#include "zyr_common/geometry/zyr_ext_box.h"
#include "zyr_common/geometry/zyr_ext_dimension.h"
#include "zyr_common/geometry/zyr_ext_position.h"
#include "zyr_common/geometry/zyr_ext_rect.h"
#include "zyr_common/geometry/zyr_matrix.h"
#include "zyr_common/geometry/zyr_rational.h"
#include "zyr_common/geometry/zyr_scalar.h"

namespace zyr::test {

namespace {

template <typename... T> struct Types {};

template <template <typename> class Template, typename... T>
void describe(std::vector<RecordKind>& p_kinds, Types<T...>) {
    auto one = [&]<class R>(std::type_identity<R>) {
        static_assert(alignof(R) == 1 && std::is_trivially_copyable_v<R> && !std::is_polymorphic_v<R>);
        p_kinds.push_back(describeRecord<R>());
    };
    (one(std::type_identity<Template<T>>()), ...);
}

} // namespace

std::vector<RecordKind> describeGeometryRecords() {
    std::vector<RecordKind> kinds;
    const Types<int32_t, int64_t> integers;
    const Types<float, double> floats;
    const Types<int32_t, int64_t, float, double> four;
    const Types<uint32_t, int32_t, uint64_t, int64_t, float, double> six;
    describe<Rational>(kinds, integers);
    describe<Complex>(kinds, floats);
    describe<Scalar>(kinds, six);
    describe<Vector2>(kinds, six);
    describe<Vector3>(kinds, six);
    describe<Vector4>(kinds, six);
    describe<Matrix3x3>(kinds, floats);
    describe<Matrix4x4>(kinds, floats);
    describe<RectSize>(kinds, four);
    describe<Rect>(kinds, four);
    describe<BoxSize>(kinds, floats);
    describe<Box>(kinds, floats);
    describe<ExtPositionX>(kinds, floats);
    describe<ExtPositionY>(kinds, floats);
    describe<ExtPositionZ>(kinds, floats);
    describe<ExtDimensionWidth>(kinds, floats);
    describe<ExtDimensionHeight>(kinds, floats);
    describe<ExtDimensionDepth>(kinds, floats);
    describe<ExtVector2>(kinds, four);
    describe<ExtVector3>(kinds, floats);
    describe<ExtRect>(kinds, four);
    describe<ExtBox>(kinds, floats);
    describe<ColorRGB>(kinds, floats);
    describe<ColorRGBA>(kinds, floats);
    describe<ColorRGBAStop>(kinds, floats);
    return kinds;
}

} // namespace zyr::test
