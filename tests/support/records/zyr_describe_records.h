/// For the sources of the record list alone.
#pragma once

#include "support/zyr_record_walk.h"

namespace zyr::test {

/// Describes the float and double form of each template. What is the same for all of them holds at compile time.
template <template <typename> class... Templates> void describe(std::vector<RecordKind>& p_kinds) {
    static_assert(((alignof(Templates<float>) == 1 && alignof(Templates<double>) == 1) && ...));
    (p_kinds.push_back(describeRecord<Templates<float>>()), ...);
    (p_kinds.push_back(describeRecord<Templates<double>>()), ...);
}

/// The solid shapes, which stand behind the plane ones among the shapes.
void describeSolidRecords(std::vector<RecordKind>& p_kinds);

} // namespace zyr::test
