// What reaches the C heap when blocks are given back.
#include "zyr_common/memory/zyr_memory.h"

#include <gmock/gmock.h>
#include <new>
#include <vector>

using namespace zyr;
using testing::ElementsAre;
using testing::IsEmpty;

// Not every compiler declares the forms that take a size.
void operator delete(void*, size_t) noexcept;
void operator delete[](void*, size_t) noexcept;

namespace {

bool isWatching = false;
std::vector<void*> freedBlocks;

/// The blocks of the C heap that the function gives back.
template <typename Function> std::vector<void*> getFreedBlocks(const Function& p_function) {
    freedBlocks.clear();
    freedBlocks.reserve(8);
    isWatching = true;
    p_function();
    isWatching = false;
    return freedBlocks;
}

/// Where the C heap's block of a block begins: two sizes stand in front.
void* getHeader(void* p_block) {
    return static_cast<char*>(p_block) - 16;
}

} // namespace

extern "C" {
void __real_free(void* p_block);
void __wrap_free(void* p_block) {
    if (isWatching) {
        freedBlocks.push_back(p_block);
    }
    __real_free(p_block);
}
}

TEST(FreedBlocks, FreeGivesTheBlockBackOnce) {
    void* block = zyr_malloc(10);
    void* const header = getHeader(block);
    EXPECT_THAT(getFreedBlocks([&] { zyr_free(block); }), ElementsAre(header));
}

TEST(FreedBlocks, FreeIgnoresNull) {
    EXPECT_THAT(getFreedBlocks([] { zyr_free(nullptr); }), IsEmpty());
}

TEST(FreedBlocks, DeleteTakesBlocksOfTheHeapFamily) {
    void* blocks[] = {zyr_malloc(10), zyr_malloc(10), zyr_malloc(10), zyr_malloc(10)};
    void* const headers[] = {getHeader(blocks[0]), getHeader(blocks[1]), getHeader(blocks[2]), getHeader(blocks[3])};
    EXPECT_THAT(getFreedBlocks([&] {
                    operator delete(blocks[0]);
                    operator delete[](blocks[1]);
                    operator delete(blocks[2], size_t(10));
                    operator delete[](blocks[3], size_t(10));
                }),
                testing::ElementsAreArray(headers));
}

TEST(FreedBlocks, DeleteIgnoresNull) {
    EXPECT_THAT(getFreedBlocks([] {
                    operator delete(nullptr);
                    operator delete[](nullptr);
                    operator delete(nullptr, std::align_val_t(64));
                    operator delete[](nullptr, std::align_val_t(64));
                }),
                IsEmpty());
}
