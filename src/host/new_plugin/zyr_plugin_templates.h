/// The files of new projects, as they stand beside this header.
#pragma once

#include <vector>

namespace zyr::host {

/// A file, with %name%, %Name%, %NAME% and %guid0% to %guid9% in its path and text.
struct PluginTemplate {
    const char* m_folder; ///< "common" or the kind of a project.
    const char* m_path;
    const char* m_text;
};

/// All of them. The source is made by the build.
const std::vector<PluginTemplate>& listPluginTemplates();

} // namespace zyr::host
