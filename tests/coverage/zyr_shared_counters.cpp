// Part of every program and module of the coverage build. The compiler's runtime writes counts when a process ends by
// exit alone, and as its user. Here all processes count in one file for each program and module, mapped into each of
// them: so a child that becomes another program, ends by _exit or a signal, or is another user's, is counted too, and
// nothing has to be done when it ends. With ZYR_WRITE_COUNTS in the environment a program, or what loads a module, does
// nothing but write that file's counts for gcov.

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <elf.h>
#include <fcntl.h>
#include <link.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

extern "C" {
[[gnu::visibility("hidden")]] extern char zyr_countersBegin[];
[[gnu::visibility("hidden")]] extern char zyr_countersEnd[];
void __gcov_dump();

/// In place of the runtime's own, which every object file calls at the end.
[[gnu::visibility("hidden")]] void __wrap___gcov_exit() {}
}

namespace {

constexpr size_t DIGITS_FOR_BYTE = 2;
constexpr mode_t FOR_ALL_USERS = 0666;

/// The place of the counts: the directory, and the digits of the link's number.
struct CountersPath {
    char m_text[256] = ZYR_COUNTERS_DIRECTORY "/";
    bool m_isKnown = false;
};

void appendDigits(CountersPath& p_path, const unsigned char* p_bytes, size_t p_size) {
    size_t end = strlen(p_path.m_text);
    for (size_t i = 0; i < p_size && end + DIGITS_FOR_BYTE < sizeof(p_path.m_text); i++) {
        p_path.m_text[end++] = "0123456789abcdef"[p_bytes[i] >> 4];
        p_path.m_text[end++] = "0123456789abcdef"[p_bytes[i] & 15];
    }
    p_path.m_isKnown = true;
}

size_t aligned(size_t p_size) {
    return (p_size + 3) / 4 * 4;
}

/// Takes the number of the link from the notes of the loaded file that holds the counters.
int findPath(dl_phdr_info* p_info, size_t, void* p_path) {
    const auto counters = reinterpret_cast<ElfW(Addr)>(zyr_countersBegin) - p_info->dlpi_addr;
    bool isOurs = false;
    for (int i = 0; i < p_info->dlpi_phnum; i++) {
        const ElfW(Phdr)& part = p_info->dlpi_phdr[i];
        isOurs |= part.p_type == PT_LOAD && counters - part.p_vaddr < part.p_memsz;
    }
    for (int i = 0; isOurs && i < p_info->dlpi_phnum; i++) {
        const ElfW(Phdr)& part = p_info->dlpi_phdr[i];
        const char* note = reinterpret_cast<const char*>(p_info->dlpi_addr + part.p_vaddr);
        const char* end = note + part.p_memsz;
        while (part.p_type == PT_NOTE && note < end) {
            const auto* head = reinterpret_cast<const ElfW(Nhdr)*>(note);
            const char* bytes = note + sizeof(*head) + aligned(head->n_namesz);
            if (head->n_type == NT_GNU_BUILD_ID) {
                appendDigits(*static_cast<CountersPath*>(p_path), reinterpret_cast<const unsigned char*>(bytes),
                             head->n_descsz);
                return 1;
            }
            note = bytes + aligned(head->n_descsz);
        }
    }
    return 0;
}

/// Behind the constructors that tell the runtime of the counters, before all others.
[[gnu::constructor(101)]] void shareCounters() {
    const size_t size = zyr_countersEnd - zyr_countersBegin;
    CountersPath path;
    dl_iterate_phdr(findPath, &path);
    if (size == 0 || !path.m_isKnown) {
        return;
    }
    const int file = open(path.m_text, O_RDWR | O_CREAT | O_CLOEXEC, FOR_ALL_USERS);
    if (file >= 0) {
        fchmod(file, FOR_ALL_USERS);
    }
    const bool isKept = file >= 0 && ftruncate(file, off_t(size)) == 0;
    // Without the file, behind another root, children are counted at least.
    mmap(zyr_countersBegin, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED | (isKept ? 0 : MAP_ANONYMOUS),
         isKept ? file : -1, 0);
    if (file >= 0) {
        close(file);
    }
    if (getenv("ZYR_WRITE_COUNTS") != nullptr) {
        __gcov_dump();
        _exit(0);
    }
}

} // namespace
