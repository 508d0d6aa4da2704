#include "modules/elf_symbols.h"

#include <cstdlib>
#include <cxxabi.h>
#include <elf.h>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace zyr {

static std::string demangle(const std::string& p_name) {
    int status = 0;
    char* text = abi::__cxa_demangle(p_name.c_str(), nullptr, nullptr, &status);
    const std::string result = status == 0 ? text : p_name;
    free(text);
    return result;
}

ElfFile readElfFile(const std::string& p_path) {
    std::ifstream stream(p_path, std::ios::binary);
    std::string file(std::filesystem::file_size(p_path), 0);
    stream.read(file.data(), static_cast<std::streamsize>(file.size()));
    const auto* header = reinterpret_cast<const Elf64_Ehdr*>(file.data());
    if (file.size() < sizeof(*header) || file.compare(0, SELFMAG, ELFMAG) != 0) {
        throw std::runtime_error(p_path + " is no ELF file");
    }
    const auto* sections = reinterpret_cast<const Elf64_Shdr*>(file.data() + header->e_shoff);
    ElfFile result;
    for (size_t i = 0; i < header->e_shnum; i++) {
        const Elf64_Shdr& section = sections[i];
        const char* data = file.data() + section.sh_offset;
        const char* texts = file.data() + sections[section.sh_link].sh_offset;
        if (section.sh_type == SHT_DYNSYM) {
            const auto* symbols = reinterpret_cast<const Elf64_Sym*>(data);
            for (size_t n = 1; n < section.sh_size / sizeof(Elf64_Sym); n++) {
                if (ELF64_ST_BIND(symbols[n].st_info) == STB_LOCAL) {
                    // On AArch64 the linker lists sections here as well.
                    continue;
                }
                const std::string name = texts + symbols[n].st_name;
                result.m_symbols.push_back({name, demangle(name), symbols[n].st_shndx != SHN_UNDEF,
                                            ELF64_ST_TYPE(symbols[n].st_info) == STT_FUNC,
                                            ELF64_ST_BIND(symbols[n].st_info) == STB_GNU_UNIQUE});
            }
        } else if (section.sh_type == SHT_DYNAMIC) {
            const auto* entries = reinterpret_cast<const Elf64_Dyn*>(data);
            for (size_t n = 0; n < section.sh_size / sizeof(Elf64_Dyn); n++) {
                if (entries[n].d_tag == DT_SONAME) {
                    result.m_soname = texts + entries[n].d_un.d_val;
                } else if (entries[n].d_tag == DT_SYMBOLIC ||
                           (entries[n].d_tag == DT_FLAGS && (entries[n].d_un.d_val & DF_SYMBOLIC) != 0)) {
                    result.m_symbolic = true;
                }
            }
        }
    }
    return result;
}

} // namespace zyr
