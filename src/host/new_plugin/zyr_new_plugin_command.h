/// "zyr-host new-plugin": a project to begin with.
#pragma once

#include <string>

namespace zyr::host {

struct NewPluginOptions {
    std::string m_name;           ///< Small letters, digits and underscores, with a letter in front.
    std::string m_kind = "codec"; ///< "codec" or "objects".
    std::string m_directory;      ///< Empty: the name, in the present directory.
};

/// Why a name cannot be that of a plug-in; empty when it can.
std::string checkPluginName(const std::string& p_name);

/// Writes the project into a directory that is not there or is empty. Throws RunError, with nothing left of it.
int runNewPlugin(const NewPluginOptions& p_options);

} // namespace zyr::host
