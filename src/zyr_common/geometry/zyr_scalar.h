/// One number as a record, for places that take only records: containers of values, descriptors, stored objects.
///
///     Scalar<int32_t> count(3);
///     count += Scalar<int32_t>(4); // count.v is 7
#pragma once

#include "zyr_common/serialization/zyr_arithmetic_record.h"

namespace zyr {

#pragma pack(push, 1)

/// A number that streams under a key of its own. For 32- and 64-bit integers, float and double.
template <typename T> class Scalar : public ArithmeticRecord<Scalar<T>, T> {
public:
    /// the number; 0 at first
    T v;

    Scalar() { this->init_This(); }
    /// No conversion by accident: a number is not a record.
    explicit Scalar(T p_v) : v(p_v) {}

    static constexpr const char* c_typeName = "Scalar";
    static constexpr auto fields() { return zyr_fields(zyr_field("v", &Scalar::v)); }
};

#pragma pack(pop)

} // namespace zyr
