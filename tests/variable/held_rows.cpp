#include "variable/held_rows.h"

#include "support/zyr_record_walk.h"
#include "support/zyr_stub_object.h"

namespace zyr::test {

template <typename T> T makeSample() {
    if constexpr (std::is_same_v<T, String*>) {
        static String string("a counted text");
        return &string;
    } else if constexpr (std::is_same_v<T, IObject*>) {
        static StubObject<IObject> object;
        return &object;
    } else if constexpr (std::is_same_v<T, String>) {
        return "a text that is too long to stand inside the object that holds it, so that it has a block of its own";
    } else if constexpr (RecordLevel<T>) {
        T record;
        std::vector<RecordLeaf> leaves;
        collectLeaves<T>(reinterpret_cast<const char*>(&record), record, "", leaves);
        uint32_t number = 1;
        for (const RecordLeaf& leaf : leaves) {
            leaf.m_kind->m_makeDifferent(leaf.at(&record), number++);
        }
        return record;
    } else {
        T sample = T();
        makeLeafDifferent<T>(&sample, 3);
        return sample;
    }
}

#define ZYR_VARIABLE_BOOLEAN(suffix, type, row)
#define ZYR_VARIABLE_NUMBER(suffix, type, row) template type makeSample<type>();
#define ZYR_VARIABLE_RECORD ZYR_VARIABLE_NUMBER
#define ZYR_VARIABLE_POINTER ZYR_VARIABLE_NUMBER
#include "zyr_common/variable/zyr_variable_accessors.inl"

} // namespace zyr::test
