// Null in the place of the other container.
#include "core_module/object_containers/object_containers_test.h"
#include "support/zyr_invariant.h"
#include "zyr_common/object_containers/zyr_array_of_objects.h"
#include "zyr_common/object_containers/zyr_hash_map_of_objects.h"
#include "zyr_common/object_containers/zyr_hash_multi_map_of_objects.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"
#include "zyr_common/object_containers/zyr_sorted_map_of_objects.h"
#include "zyr_common/object_containers/zyr_tree_node_array_of_objects.h"

namespace zyr {
namespace {

class ContainersWithoutSource : public ObjectContainersTest {
protected:
    template <class Interface> static void expectNoCopy() {
        const Ref<Interface> container = create<Interface>();
        ZYR_EXPECT_INVARIANT(container->setItems(nullptr, 1), "assert\\(p_src != NULL\\)");
    }
    template <class Interface> static void expectNoSwap() {
        const Ref<Interface> container = create<Interface>();
        ZYR_EXPECT_INVARIANT(container->swap(nullptr), "assert\\(p_other != NULL\\)");
    }
};

TEST_F(ContainersWithoutSource, EndTheProcessInACopy) {
    expectNoCopy<IArrayOfObjects>();
    expectNoCopy<IListOfObjects>();
    expectNoCopy<IHashMapOfObjects<int32_t>>();
    expectNoCopy<IHashMultiMapOfObjects<int32_t>>();
    expectNoCopy<ISortedMapOfObjects<int32_t>>();
    expectNoCopy<ITreeNodeArrayOfObjects>();
}

TEST_F(ContainersWithoutSource, EndTheProcessInAnExchange) {
    expectNoSwap<IListOfObjects>();
    expectNoSwap<IHashMapOfObjects<int32_t>>();
    expectNoSwap<IHashMultiMapOfObjects<int32_t>>();
}

} // namespace
} // namespace zyr
