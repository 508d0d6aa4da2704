#include "modules/elf_symbols.h"
#include "support/zyr_ignore_leaks.h"

#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <set>
#include <sstream>

namespace zyr {
namespace {

struct ModuleFile {
    const char* m_name;
    const char* m_path;
    const char* m_exports;
};

const ModuleFile MODULES[] = {
#include "module_list.inc"
};

void PrintTo(const ModuleFile& p_module, std::ostream* p_stream) {
    *p_stream << p_module.m_name;
}

std::set<std::string> wordsOf(const std::string& p_text) {
    std::istringstream stream(p_text);
    return {std::istream_iterator<std::string>(stream), {}};
}

/// Adds the functions of namespace zyr that a header offers: "ZYR_API <result> zyr_<name>(".
void addOfferedFunctions(std::istream& p_header, std::set<std::string>& p_names) {
    std::string text;
    for (std::string line; std::getline(p_header, line);) {
        text += line.substr(0, line.find("//")) + '\n'; // Comments may name functions too.
    }
    const std::string mark = "ZYR_API ";
    for (size_t start = text.find(mark); start != std::string::npos; start = text.find(mark, start + 1)) {
        const std::string declaration = text.substr(start, text.find_first_of(";{(", start) - start);
        const size_t name = declaration.rfind("zyr_");
        if (name != std::string::npos && declaration.find_first_of(" *&", name) == std::string::npos) {
            p_names.insert(declaration.substr(name));
        }
    }
}

/// The same for all headers below the folder.
std::set<std::string> offeredFunctions(const std::string& p_folder) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(p_folder)) {
        if (entry.path().extension() == ".h") {
            std::ifstream stream(entry.path());
            addOfferedFunctions(stream, names);
        }
    }
    // The entry points are declared for plug-ins, which define them.
    std::erase_if(names, [](const std::string& p_name) { return p_name.rfind("zyr_plugin_", 0) == 0; });
    return names;
}

/// The name of a symbol without namespace and arguments. A function template has its result in front.
std::string functionName(const ElfSymbol& p_symbol) {
    const std::string& text = p_symbol.m_demangledName;
    const size_t start = text.find("zyr::zyr_");
    return start == std::string::npos ? text : text.substr(start + 5, text.find_first_of("<(", start) - start - 5);
}

class Modules : public testing::TestWithParam<ModuleFile> {
protected:
    const ElfFile m_file = readElfFile(GetParam().m_path);
};

TEST_P(Modules, HasItsFileNameAsSoname) {
    EXPECT_EQ(m_file.m_soname, GetParam().m_name);
}

TEST_P(Modules, BindsItsOwnReferencesInside) {
    EXPECT_TRUE(m_file.m_symbolic);
}

TEST_P(Modules, ExportsItsEntryPointsAndTheFunctionsOfTheLibraryAndNothingElse) {
    const std::set<std::string> offered = offeredFunctions(ZYR_SOURCE_DIR);
    std::set<std::string> missing = wordsOf(GetParam().m_exports);
    for (const ElfSymbol& symbol : m_file.m_symbols) {
        if (!symbol.m_defined || missing.erase(symbol.m_name) != 0) {
            continue;
        }
        const std::string& name = symbol.m_demangledName;
        EXPECT_EQ(name.compare(0, 5, "zyr::"), 0) << name;
        EXPECT_EQ(offered.count(functionName(symbol)), 1u) << name;
        EXPECT_TRUE(symbol.m_function) << name;
    }
    EXPECT_THAT(missing, testing::IsEmpty());
}

TEST_P(Modules, OffersEveryFunctionOfTheCommonLibrary) {
    std::set<std::string> missing = offeredFunctions(ZYR_SOURCE_DIR "/zyr_common");
    ASSERT_GT(missing.size(), 100u);
    for (const ElfSymbol& symbol : m_file.m_symbols) {
        if (symbol.m_defined && symbol.m_demangledName.compare(0, 5, "zyr::") == 0) {
            missing.erase(functionName(symbol));
        }
    }
    EXPECT_THAT(missing, testing::IsEmpty());
}

TEST_P(Modules, OffersTheFactoriesOfVariablesForEachType) {
    std::map<std::string, int> instances;
    for (const ElfSymbol& symbol : m_file.m_symbols) {
        if (symbol.m_defined) {
            instances[functionName(symbol)]++;
        }
    }
    EXPECT_EQ(instances["zyr_createVariableValue"], 67);
    EXPECT_EQ(instances["zyr_createVariableDescriptor"], 67);
}

TEST_P(Modules, SharesNothingOfTheFrameworkWithOtherModules) {
    for (const ElfSymbol& symbol : m_file.m_symbols) {
        EXPECT_FALSE(symbol.m_defined && symbol.m_unique) << symbol.m_name;
        if (!symbol.m_defined) {
            EXPECT_THAT(symbol.m_demangledName, testing::Not(testing::HasSubstr("zyr::")));
            // The sanitizers' own copies of these are not called by the module.
            EXPECT_THAT(symbol.m_demangledName, testing::Not(testing::StartsWith("operator new")));
            EXPECT_THAT(symbol.m_demangledName, testing::Not(testing::StartsWith("operator delete")));
        }
    }
}

TEST_P(Modules, LoadsAndUnloadsTwice) {
    const std::set<std::string> exports = wordsOf(GetParam().m_exports);
    const IgnoreLeaks ignoreLeaks;
    for (int round = 0; round < 2; round++) {
        void* handle = dlopen(GetParam().m_path, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(handle, nullptr) << dlerror();
        for (const std::string& name : exports) {
            EXPECT_NE(dlsym(handle, name.c_str()), nullptr) << name;
        }
        dlclose(handle);
        EXPECT_EQ(dlopen(GetParam().m_path, RTLD_NOW | RTLD_NOLOAD), nullptr) << "the module stays loaded";
    }
}

INSTANTIATE_TEST_SUITE_P(OfTheBuild, Modules, testing::ValuesIn(MODULES),
                         [](const testing::TestParamInfo<ModuleFile>& p_info) {
                             const std::string name = p_info.param.m_name;
                             return name.substr(0, name.find('.'));
                         });

} // namespace
} // namespace zyr
