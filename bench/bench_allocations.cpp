#include "bench_allocations.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <link.h>

// The program's definitions come before the C library's for everything that is loaded; these are the C library's own
// names for what they stand in front of.
extern "C" {
void* __libc_malloc(size_t p_size);
void* __libc_calloc(size_t p_count, size_t p_size);
void* __libc_realloc(void* p_block, size_t p_size);
}

namespace zyr::bench {

namespace {

constexpr size_t MAX_MODULES = 8;

struct Range {
    uintptr_t m_begin = 0;
    uintptr_t m_end = 0;
    std::atomic<size_t> m_count{0};
};

Range g_ranges[MAX_MODULES];
size_t g_numOfRanges = 0;

} // namespace

static void note(const void* p_caller) {
    const uintptr_t caller = reinterpret_cast<uintptr_t>(p_caller);
    for (size_t i = 0; i < g_numOfRanges; i++) {
        if (caller >= g_ranges[i].m_begin && caller < g_ranges[i].m_end) {
            g_ranges[i].m_count.fetch_add(1, std::memory_order_relaxed);
        }
    }
}

void watchModules(const std::vector<std::string>& p_fileNames) {
    for (const std::string& name : p_fileNames) {
        struct Search {
            const std::string& m_name;
            Range& m_range;
        } search{name, g_ranges[g_numOfRanges]};
        dl_iterate_phdr(
            [](dl_phdr_info* p_info, size_t, void* p_search) {
                Search& wanted = *static_cast<Search*>(p_search);
                const std::string path = p_info->dlpi_name;
                if (path.size() < wanted.m_name.size() ||
                    path.compare(path.size() - wanted.m_name.size(), std::string::npos, wanted.m_name) != 0) {
                    return 0;
                }
                for (int i = 0; i < p_info->dlpi_phnum; i++) {
                    const ElfW(Phdr)& segment = p_info->dlpi_phdr[i];
                    if (segment.p_type == PT_LOAD && (segment.p_flags & PF_X) != 0) {
                        wanted.m_range.m_begin = p_info->dlpi_addr + segment.p_vaddr;
                        wanted.m_range.m_end = wanted.m_range.m_begin + segment.p_memsz;
                    }
                }
                return 1;
            },
            &search);
        g_numOfRanges++;
    }
}

std::vector<size_t> countAllocations() {
    std::vector<size_t> counts;
    for (size_t i = 0; i < g_numOfRanges; i++) {
        counts.push_back(g_ranges[i].m_count.load(std::memory_order_relaxed));
    }
    return counts;
}

} // namespace zyr::bench

extern "C" {

__attribute__((visibility("default"))) void* malloc(size_t p_size) {
    zyr::bench::note(__builtin_return_address(0));
    return __libc_malloc(p_size);
}

__attribute__((visibility("default"))) void* calloc(size_t p_count, size_t p_size) {
    zyr::bench::note(__builtin_return_address(0));
    return __libc_calloc(p_count, p_size);
}

__attribute__((visibility("default"))) void* realloc(void* p_block, size_t p_size) {
    zyr::bench::note(__builtin_return_address(0));
    return __libc_realloc(p_block, p_size);
}

} // extern "C"
