#include "storage/object_fills.h"

#include "core_module/object_containers/object_containers_test.h"
#include "zyr_common/implementation/zyr_container_stream.h"
#include "zyr_common/object_containers/zyr_array_of_objects.h"
#include "zyr_common/object_containers/zyr_hash_map_of_objects.h"
#include "zyr_common/object_containers/zyr_hash_multi_map_of_objects.h"
#include "zyr_common/object_containers/zyr_list_of_objects.h"
#include "zyr_common/object_containers/zyr_sorted_map_of_objects.h"
#include "zyr_common/object_containers/zyr_tree_node_array_of_objects.h"
#include "zyr_common/object_containers/zyr_tree_node_hash_map_of_objects.h"
#include "zyr_common/object_containers/zyr_tree_node_hash_multi_map_of_objects.h"
#include "zyr_common/object_containers/zyr_tree_node_list_of_objects.h"
#include "zyr_common/object_containers/zyr_tree_node_sorted_map_of_objects.h"

namespace zyr::test {

namespace {

Ref<IDataFormatInfo> makeElement(const char* p_name) {
    auto element = Ref<IDataFormatInfo>::adopt(zyr_createObject<IDataFormatInfo>());
    element->setFormatName(p_name);
    return element;
}

void fillDataFormatInfo(IObject* p_object) {
    static_cast<IDataFormatInfo*>(p_object)->setFormatName("a name");
}

void fillNativeFormatInfo(IObject* p_object) {
    auto* info = static_cast<INativeFormatInfo*>(p_object);
    fillDataFormatInfo(info);
    info->setAccessType(ZYR_NATIVE_FORMAT_ACCESS_FILE);
    info->setFilePath("a/path");
    info->setReadOnly(1);
    info->getMutableOriginalFile()->pushBackRange("seven b", 7);
}

void fillCompressionInfo(IObject* p_object) {
    auto* info = static_cast<ICompressionInfo*>(p_object);
    fillDataFormatInfo(info);
    info->setDecompressSize(uint64_t(5) << 40);
}

void fillLz4CompressionInfo(IObject* p_object) {
    fillCompressionInfo(p_object);
    static_cast<ILz4CompressionInfo*>(p_object)->setAcceleration(7);
}

void fillZipCompressionInfo(IObject* p_object) {
    fillCompressionInfo(p_object);
    static_cast<IZipCompressionInfo*>(p_object)->setLevel(9);
}

template <class Container> void fillRow(IObject* p_object) {
    auto* container = static_cast<Container*>(p_object);
    container->pushBack(makeElement("first").get());
    container->pushBack(nullptr);
    container->pushBack(makeElement("third").get());
}

template <class Map, typename K> void fillMap(IObject* p_object) {
    auto* map = static_cast<Map*>(p_object);
    for (int i = 0; i < 3; i++) {
        const auto element = makeElement("element");
        IObject* object = i == 1 ? nullptr : element.get();
        if constexpr (requires { map->pushBack(getKey<K>(i), object, nullptr); }) {
            map->pushBack(getKey<K>(i), object, nullptr);
        } else {
            map->insert(getKey<K>(i), object, nullptr);
        }
    }
}

/// Two children, and one below the first.
template <class Node, typename Add> void fillTree(IObject* p_root, Add p_add) {
    const auto first = Ref<Node>::adopt(zyr_createObject<Node>());
    p_add(first.get(), Ref<Node>::adopt(zyr_createObject<Node>()).get(), 2);
    p_add(static_cast<Node*>(p_root), first.get(), 0);
    p_add(static_cast<Node*>(p_root), Ref<Node>::adopt(zyr_createObject<Node>()).get(), 1);
}

template <class Node> void fillTreeRow(IObject* p_root) {
    fillTree<Node>(p_root, [](Node* p_parent, Node* p_child, int) { p_parent->pushBack(p_child); });
}

template <class Node, typename K> void fillTreeMap(IObject* p_root) {
    fillTree<Node>(p_root, [](Node* p_parent, Node* p_child, int p_key) {
        if constexpr (requires { p_parent->pushBack(getKey<K>(p_key), p_child); }) {
            p_parent->pushBack(getKey<K>(p_key), p_child);
        } else {
            p_parent->insert(getKey<K>(p_key), p_child);
        }
    });
}

/// The maps of one type of keys.
template <typename K> void addMaps(std::vector<ObjectFill>& p_fills, const std::string& p_word) {
    if constexpr (isStoredKey<K>) {
        p_fills.push_back({"HashMapOfObjects{" + p_word + "}", &fillMap<IHashMapOfObjects<K>, K>});
        p_fills.push_back({"SortedMapOfObjects{" + p_word + "}", &fillMap<ISortedMapOfObjects<K>, K>});
        if constexpr (!std::is_same_v<K, GUID_t>) {
            p_fills.push_back({"HashMultiMapOfObjects{" + p_word + "}", &fillMap<IHashMultiMapOfObjects<K>, K>});
            p_fills.push_back(
                {"TreeNodeHashMapOfObjects{" + p_word + "}", &fillTreeMap<ITreeNodeHashMapOfObjects<K>, K>});
            p_fills.push_back(
                {"TreeNodeHashMultiMapOfObjects{" + p_word + "}", &fillTreeMap<ITreeNodeHashMultiMapOfObjects<K>, K>});
            p_fills.push_back(
                {"TreeNodeSortedMapOfObjects{" + p_word + "}", &fillTreeMap<ITreeNodeSortedMapOfObjects<K>, K>});
        }
    }
}

} // namespace

std::vector<ObjectFill> getObjectFills() {
    std::vector<ObjectFill> fills = {
        {"DataFormatInfo", &fillDataFormatInfo},
        {"NativeFormatInfo", &fillNativeFormatInfo},
        {"CompressionInfo", &fillCompressionInfo},
        {"Lz4CompressionInfo", &fillLz4CompressionInfo},
        {"ZipCompressionInfo", &fillZipCompressionInfo},
        {"ArrayOfObjects", &fillRow<IArrayOfObjects>},
        {"ListOfObjects", &fillRow<IListOfObjects>},
        {"TreeNodeArrayOfObjects", &fillTreeRow<ITreeNodeArrayOfObjects>},
        {"TreeNodeListOfObjects", &fillTreeRow<ITreeNodeListOfObjects>},
    };
    addResourceFills(fills);
    addTransportFills(fills);
#define ZYR_KEY(type, word) addMaps<type>(fills, word);
#define ZYR_GUID_KEY ZYR_KEY
#include "zyr_common/object/zyr_object_keys.inl"
    return fills;
}

} // namespace zyr::test
