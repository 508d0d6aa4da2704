/// Every record of the library that lists its fields. Link zyr_test_record_list.
#pragma once

#include "support/zyr_record_walk.h"

namespace zyr::test {

/// Numbers, vectors, matrices, boxes, positions and colours.
std::vector<RecordKind> describeGeometryRecords();
/// Plane and solid shapes, contours, hulls, splines, transforms.
std::vector<RecordKind> describeShapeRecords();
/// References, headers, commands of paths, descriptors and what codecs agree upon.
std::vector<RecordKind> describeOtherRecords();

} // namespace zyr::test
