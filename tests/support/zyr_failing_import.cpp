#include "support/zyr_failing_import.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

namespace zyr::test {

namespace {

using Word = intptr_t;
using Function = Word (*)(Word, Word, Word, Word, Word, Word, Word, Word, Word, Word);

Function s_real = nullptr;
Word s_result = 0;
int s_error = 0;
std::atomic<int> s_passing{0};
std::atomic<int> s_failing{0};
std::atomic<bool> s_hasFailed{false};

// Arguments that a function does not have are whatever stands in their place.
#if defined(__GNUC__)
__attribute__((no_sanitize("address", "undefined")))
#endif
Word callOrFail(Word a, Word b, Word c, Word d, Word e, Word f, Word g, Word h, Word i, Word j) {
    if (s_passing-- <= 0 && s_failing-- > 0) {
        s_hasFailed = true;
        if (s_error != 0) {
            errno = s_error;
        }
        return s_result;
    }
    return s_real(a, b, c, d, e, f, g, h, i, j);
}

struct Search {
    std::string m_module;
    const char* m_function;
    std::vector<void**>* m_entries;
};

/// Looks through one table of entries to be filled by the loader.
void searchTable(const Search& p_search, ElfW(Addr) p_base, const ElfW(Rela) * p_table, size_t p_bytes,
                 const ElfW(Sym) * p_symbols, const char* p_names) {
    for (size_t i = 0; p_table != nullptr && i < p_bytes / sizeof(ElfW(Rela)); i++) {
        const auto type = ELF64_R_TYPE(p_table[i].r_info);
#if defined(__aarch64__)
        const bool isEntry = type == R_AARCH64_JUMP_SLOT || type == R_AARCH64_GLOB_DAT;
#else
        const bool isEntry = type == R_X86_64_JUMP_SLOT || type == R_X86_64_GLOB_DAT;
#endif
        if (isEntry && strcmp(p_names + p_symbols[ELF64_R_SYM(p_table[i].r_info)].st_name, p_search.m_function) == 0) {
            p_search.m_entries->push_back(reinterpret_cast<void**>(p_base + p_table[i].r_offset));
        }
    }
}

int searchModule(dl_phdr_info* p_info, size_t, void* p_search) {
    const Search& search = *static_cast<const Search*>(p_search);
    const std::string name = p_info->dlpi_name;
    const bool isMeant = search.m_module.empty() ? name.empty()
                                                 : name.size() >= search.m_module.size() &&
                                                       name.compare(name.size() - search.m_module.size(),
                                                                    std::string::npos, search.m_module) == 0;
    if (!isMeant) {
        return 0;
    }
    for (int i = 0; i < p_info->dlpi_phnum; i++) {
        if (p_info->dlpi_phdr[i].p_type != PT_DYNAMIC) {
            continue;
        }
        const ElfW(Rela) * tables[2] = {};
        size_t sizes[2] = {};
        const ElfW(Sym)* symbols = nullptr;
        const char* names = nullptr;
        for (auto entry = reinterpret_cast<const ElfW(Dyn)*>(p_info->dlpi_addr + p_info->dlpi_phdr[i].p_vaddr);
             entry->d_tag != DT_NULL; entry++) {
            // The loader has made addresses of these.
            switch (entry->d_tag) {
            case DT_JMPREL:
                tables[0] = reinterpret_cast<const ElfW(Rela)*>(entry->d_un.d_ptr);
                break;
            case DT_PLTRELSZ:
                sizes[0] = entry->d_un.d_val;
                break;
            case DT_RELA:
                tables[1] = reinterpret_cast<const ElfW(Rela)*>(entry->d_un.d_ptr);
                break;
            case DT_RELASZ:
                sizes[1] = entry->d_un.d_val;
                break;
            case DT_SYMTAB:
                symbols = reinterpret_cast<const ElfW(Sym)*>(entry->d_un.d_ptr);
                break;
            case DT_STRTAB:
                names = reinterpret_cast<const char*>(entry->d_un.d_ptr);
                break;
            default:
                break;
            }
        }
        for (int k = 0; k < 2; k++) {
            searchTable(search, p_info->dlpi_addr, tables[k], sizes[k], symbols, names);
        }
    }
    return 1;
}

/// The entries lie in pages that the loader has closed, or not.
void setEntry(void** p_entry, void* p_value) {
    const uintptr_t page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
    void* start = reinterpret_cast<void*>(reinterpret_cast<uintptr_t>(p_entry) & ~(page - 1));
    ASSERT_EQ(mprotect(start, page, PROT_READ | PROT_WRITE), 0) << strerror(errno);
    *p_entry = p_value;
}

} // namespace

FailingImport::FailingImport(const std::string& p_module, const char* p_function, intptr_t p_result, int p_error,
                             int p_passing, int p_failing) {
    Search search{p_module, p_function, &m_entries};
    dl_iterate_phdr(&searchModule, &search);
    s_real = reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, p_function));
    if (s_real == nullptr && !m_entries.empty()) {
        // A library that only the module loads: what the loader has put there.
        s_real = reinterpret_cast<Function>(*m_entries[0]);
    }
    if (m_entries.empty() || s_real == nullptr) {
        ADD_FAILURE() << (p_module.empty() ? "the program" : p_module) << " does not call " << p_function;
        return;
    }
    s_result = p_result;
    s_error = p_error;
    s_passing = p_passing;
    s_failing = p_failing;
    s_hasFailed = false;
    for (void** entry : m_entries) {
        m_before.push_back(*entry);
        setEntry(entry, reinterpret_cast<void*>(&callOrFail));
    }
}

FailingImport::~FailingImport() {
    for (size_t i = 0; i < m_before.size(); i++) {
        setEntry(m_entries[i], m_before[i]);
    }
}

bool FailingImport::hasFailed() const {
    return s_hasFailed;
}

size_t countDescriptors() {
    size_t count = 0;
    DIR* directory = opendir("/proc/self/fd");
    while (const dirent* entry = readdir(directory)) {
        count += entry->d_name[0] != '.' ? 1 : 0;
    }
    closedir(directory);
    return count - 1; // Without the one that has just looked.
}

} // namespace zyr::test
