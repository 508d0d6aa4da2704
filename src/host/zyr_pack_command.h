/// The subcommands of "zyr-host object" that work on packs of files.
///
/// A pack is a saved IResourcesPack. Each directory is a category with its path, "." for the first one; each file is a
/// dynamic resource with the file's name, whose packed data are its bytes.
#pragma once

#include "host/zyr_framework.h"

#include <string>
#include <vector>

namespace zyr::host {

struct PackOptions {
    FrameworkOptions m_framework;
    std::string m_directory;
    std::string m_output;
    bool m_force = false; ///< Replaces the output.
    bool m_progress = true;
};

struct PackListOptions {
    FrameworkOptions m_framework;
    std::string m_pack;
    bool m_json = false;
};

struct PackExtractOptions {
    FrameworkOptions m_framework;
    std::string m_pack;
    std::vector<std::string> m_names; ///< Files, or directories with all below. Empty: everything.
    std::string m_directory = ".";
    bool m_force = false; ///< Replaces files.
    bool m_progress = true;
};

/// Each gives the exit code of the program.
int runObjectPack(const PackOptions& p_options);
int runObjectList(const PackListOptions& p_options);
int runObjectExtract(const PackExtractOptions& p_options);

} // namespace zyr::host
