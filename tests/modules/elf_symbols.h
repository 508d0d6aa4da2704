/// What a shared object tells the dynamic loader.
#pragma once

#include <string>
#include <vector>

namespace zyr {

struct ElfSymbol {
    /// As it stands in the file, without a version.
    std::string m_name;
    /// As C++ reads it.
    std::string m_demangledName;
    bool m_defined;
    bool m_function;
    /// Bound once in the whole process, whatever module defines it.
    bool m_unique;
};

struct ElfFile {
    std::string m_soname;
    /// References of the library to itself are bound inside it.
    bool m_symbolic = false;
    std::vector<ElfSymbol> m_symbols;
};

/// Reads the dynamic section and the dynamic symbols of a 64-bit file. Throws std::runtime_error if it is none.
ElfFile readElfFile(const std::string& p_path);

} // namespace zyr
