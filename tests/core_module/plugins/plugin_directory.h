/// A directory with copies of made-up plug-in modules. A copy is a library of its own, also where another test has the
/// same module loaded.
#pragma once

#include "support/zyr_temporary_directory.h"

#include <initializer_list>

namespace zyr {

class PluginDirectory : public TemporaryDirectory {
public:
    PluginDirectory(std::initializer_list<const char*> p_names = {}) {
        for (const char* name : p_names) {
            add(name, name);
        }
    }

    /// Adds the module under another name and gives the path.
    std::string add(const std::string& p_module, const std::string& p_name) const {
        const std::string path = getPath() + p_name + ".so";
        std::filesystem::copy_file(ZYR_FAKE_PLUGINS + p_module + ".so", path);
        return path;
    }
};

} // namespace zyr
