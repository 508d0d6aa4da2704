// A field behind a path of three words: finding it, using it and giving the reference back. Beside it a walk by hand
// that compares the words one after the other and takes a block for its result as well.
#include "bench_versus.h"
#include "zyr_common/geometry/zyr_vector.h"
#include "zyr_common/serialization/zyr_record_walker.h"
#include "zyr_common/variable/zyr_variable_reference.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

using namespace zyr;

#pragma pack(push, 1)

class Leaf : public Record<Leaf> {
public:
    float a;
    int32_t b;
    float c;
    double position;

    Leaf() { init_This(); }

    static constexpr const char* c_typeName = "Leaf";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("a", &Leaf::a), zyr_field("b", &Leaf::b), zyr_field("c", &Leaf::c),
                          zyr_field("position", &Leaf::position));
    }
};

class Branch : public Record<Branch> {
public:
    Leaf a;
    Leaf b;
    Leaf transform;
    float length;

    Branch() { init_This(); }

    static constexpr const char* c_typeName = "Branch";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("a", &Branch::a), zyr_field("b", &Branch::b),
                          zyr_field("transform", &Branch::transform), zyr_field("length", &Branch::length));
    }
};

class Tree : public Record<Tree> {
public:
    Branch a;
    Branch background;
    float height;

    Tree() { init_This(); }

    static constexpr const char* c_typeName = "Tree";
    static constexpr auto fields() {
        return zyr_fields(zyr_field("a", &Tree::a), zyr_field("background", &Tree::background),
                          zyr_field("height", &Tree::height));
    }
};

#pragma pack(pop)

template class zyr::RecordWalker<Leaf>;
template class zyr::RecordWalker<Branch>;
template class zyr::RecordWalker<Tree>;

namespace {

/// What a reference by hand holds.
struct HandReference {
    VariableTypeEnum m_type;
    void* m_pointer;
};

bool isWord(const char*& p_path, const char* p_word) {
    const size_t length = strlen(p_word);
    if (strncmp(p_path, p_word, length) != 0 || (p_path[length] != '.' && p_path[length] != 0)) {
        return false;
    }
    p_path += length + (p_path[length] == '.');
    return true;
}

HandReference* findByHand(Leaf& p_leaf, const char* p_path) {
    if (isWord(p_path, "a")) {
        return new HandReference{ZYR_VARIABLE_FLOAT, &p_leaf.a};
    }
    if (isWord(p_path, "b")) {
        return new HandReference{ZYR_VARIABLE_INT32, &p_leaf.b};
    }
    if (isWord(p_path, "c")) {
        return new HandReference{ZYR_VARIABLE_FLOAT, &p_leaf.c};
    }
    return isWord(p_path, "position") ? new HandReference{ZYR_VARIABLE_DOUBLE, &p_leaf.position} : nullptr;
}

HandReference* findByHand(Branch& p_branch, const char* p_path) {
    if (isWord(p_path, "a")) {
        return findByHand(p_branch.a, p_path);
    }
    if (isWord(p_path, "b")) {
        return findByHand(p_branch.b, p_path);
    }
    if (isWord(p_path, "transform")) {
        return findByHand(p_branch.transform, p_path);
    }
    return isWord(p_path, "length") ? new HandReference{ZYR_VARIABLE_FLOAT, &p_branch.length} : nullptr;
}

HandReference* findByHand(Tree& p_tree, const char* p_path) {
    if (isWord(p_path, "a")) {
        return findByHand(p_tree.a, p_path);
    }
    if (isWord(p_path, "background")) {
        return findByHand(p_tree.background, p_path);
    }
    return isWord(p_path, "height") ? new HandReference{ZYR_VARIABLE_FLOAT, &p_tree.height} : nullptr;
}

double load(VariableTypeEnum p_type, const void* p_pointer) {
    if (p_type == ZYR_VARIABLE_FLOAT) {
        float value;
        memcpy(&value, p_pointer, sizeof(value));
        return double(value);
    }
    double value;
    memcpy(&value, p_pointer, sizeof(value));
    return value;
}

void storeByHand(const HandReference& p_reference, double p_value) {
    if (p_reference.m_type == ZYR_VARIABLE_FLOAT) {
        const float value = float(p_value);
        memcpy(p_reference.m_pointer, &value, sizeof(value));
    } else {
        memcpy(p_reference.m_pointer, &p_value, sizeof(p_value));
    }
}

constexpr int COUNT = 100;

void check(bool p_condition) {
    if (!p_condition) {
        fprintf(stderr, "bench_variables: a field was not found\n");
        exit(1);
    }
}

} // namespace

static void readByPath(benchmark::State& p_state, const char* p_path) {
    Tree tree;
    const String path(p_path);
    double sum = 0;
    zyr::bench::compareSides(p_state, COUNT,
                             {{"zyr",
                               [&] {
                                   for (int i = 0; i < COUNT; i++) {
                                       VariableReference* reference = tree.getVariableReferenceByPath(path);
                                       check(reference != nullptr);
                                       sum += load(reference->getType(), reference->getPointer());
                                       reference->release();
                                   }
                                   benchmark::DoNotOptimize(sum);
                               }},
                              {"hand", [&] {
                                   for (int i = 0; i < COUNT; i++) {
                                       HandReference* reference = findByHand(tree, path.getData());
                                       check(reference != nullptr);
                                       sum += load(reference->m_type, reference->m_pointer);
                                       delete reference;
                                   }
                                   benchmark::DoNotOptimize(sum);
                               }}});
}
BENCHMARK_CAPTURE(readByPath, a.b.c, "a.b.c");
BENCHMARK_CAPTURE(readByPath, background.transform.position, "background.transform.position");

static void writeByPath(benchmark::State& p_state, const char* p_path) {
    Tree tree;
    const String path(p_path);
    zyr::bench::compareSides(p_state, COUNT,
                             {{"zyr",
                               [&] {
                                   for (int i = 0; i < COUNT; i++) {
                                       VariableReference* reference = tree.getVariableReferenceByPath(path);
                                       check(reference != nullptr && reference->changeValueDouble(i) != 0);
                                       reference->release();
                                   }
                                   benchmark::DoNotOptimize(tree);
                               }},
                              {"hand", [&] {
                                   for (int i = 0; i < COUNT; i++) {
                                       HandReference* reference = findByHand(tree, path.getData());
                                       check(reference != nullptr);
                                       storeByHand(*reference, i);
                                       delete reference;
                                   }
                                   benchmark::DoNotOptimize(tree);
                               }}});
}
BENCHMARK_CAPTURE(writeByPath, a.b.c, "a.b.c");
BENCHMARK_CAPTURE(writeByPath, background.transform.position, "background.transform.position");
