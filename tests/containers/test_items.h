/// Item types for the behaviour suites, an allocator that counts, and a random source that tells its seed.
#pragma once

#include "zyr_common/containers/zyr_hash.h"
#include "zyr_common/memory/zyr_allocator.h"
#include "zyr_common/text/zyr_string.h"

#include <gtest/gtest.h>
#include <random>

namespace zyr {

/// Counts its live instances and notices when it is used outside its life.
class Counted {
public:
    Counted() : Counted(0) {}
    explicit Counted(int p_value) : m_self(this), m_value(p_value) { s_live++; }
    Counted(const Counted& p_other) : Counted(p_other.getValue()) {}
    Counted& operator=(const Counted& p_other) {
        EXPECT_EQ(m_self, this);
        m_value = p_other.getValue();
        return *this;
    }
    ~Counted() {
        EXPECT_EQ(m_self, this);
        m_self = nullptr;
        s_live--;
    }

    int getValue() const {
        EXPECT_EQ(m_self, this);
        return m_value;
    }
    bool operator==(const Counted& p_other) const { return getValue() == p_other.getValue(); }
    bool operator<(const Counted& p_other) const { return getValue() < p_other.getValue(); }

    static inline int s_live = 0;

private:
    const Counted* m_self;
    int m_value;
};

template <> struct Hash<Counted> {
    uint32_t operator()(const Counted& p_key) const { return uint32_t(p_key.getValue()); }
};

/// The item that stands for a number; different numbers give different items.
template <typename T> T makeItem(int p_number);
template <> inline int makeItem<int>(int p_number) {
    return p_number;
}
template <> inline Counted makeItem<Counted>(int p_number) {
    return Counted(p_number);
}
template <> inline String makeItem<String>(int p_number) {
    // Short and long ones, so that inline and heap texts both occur.
    const std::string text = "item " + std::to_string(p_number) + std::string(p_number % 3 == 0 ? 80 : 0, '.');
    return String(text.c_str());
}
template <> inline const char* makeItem<const char*>(int p_number) {
    static char targets[100000];
    return &targets[p_number];
}

/// Allocations and releases that go through getCountingAllocator().
struct AllocatorCounts {
    int allocated = 0;
    int released = 0;
    /// When set, the next allocations give null.
    bool failing = false;
};
inline AllocatorCounts g_counts;

inline Allocator* getCountingAllocator() {
    static Allocator allocator = {
        [](size_t p_size) -> void* {
            if (g_counts.failing) {
                return nullptr;
            }
            g_counts.allocated++;
            return zyr_malloc(p_size);
        },
        [](void* p_block, size_t p_size) -> void* { return zyr_realloc(p_block, p_size); },
        [](void* p_block) {
            g_counts.released++;
            zyr_free(p_block);
        },
    };
    return &allocator;
}

/// A generator whose seed stands in the output of a test that fails.
class SeededRandom {
public:
    SeededRandom()
        : m_seed(std::random_device()()),
          m_trace(__FILE__, __LINE__, "seed " + std::to_string(m_seed)),
          m_engine(m_seed) {}
    /// A number from 0 up to but not including the limit.
    int below(int p_limit) { return int(m_engine() % uint32_t(p_limit)); }

private:
    uint32_t m_seed;
    testing::ScopedTrace m_trace;
    std::mt19937 m_engine;
};

/// Checks that no Counted is left when a test ends.
template <typename T> class ContainerTest : public testing::Test {
protected:
    void SetUp() override {
        m_live = Counted::s_live;
        g_counts = AllocatorCounts();
    }
    void TearDown() override { EXPECT_EQ(Counted::s_live, m_live) << "items leaked or destroyed twice"; }

    int m_live = 0;
};

typedef testing::Types<int, String, const char*, Counted> ItemTypes;

} // namespace zyr
