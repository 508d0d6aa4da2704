#include "zyr_common/geometry/zyr_scalar.h"

#include "zyr_common/geometry/zyr_rational.h"
#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

template class RecordWalker<Scalar<int32_t>>;
template class RecordWalker<Scalar<uint32_t>>;
template class RecordWalker<Scalar<int64_t>>;
template class RecordWalker<Scalar<uint64_t>>;
template class RecordWalker<Scalar<float>>;
template class RecordWalker<Scalar<double>>;

template class RecordWalker<Rational<int32_t>>;
template class RecordWalker<Rational<int64_t>>;

} // namespace zyr
