/// The arguments of "zyr-host object pack", "list" and "extract".
#pragma once

#include "host/zyr_pack_command.h"

#include <CLI/CLI.hpp>

namespace zyr::host {

/// Holds what was parsed, so it has to live as long as the parser.
class PackArguments {
public:
    /// Adds the subcommands. What runs leaves its exit code in p_result.
    void add(CLI::App& p_object, int& p_result);

private:
    void addPack(CLI::App& p_object, int& p_result);
    void addList(CLI::App& p_object, int& p_result);
    void addExtract(CLI::App& p_object, int& p_result);

    PackOptions m_pack;
    PackListOptions m_list;
    PackExtractOptions m_extract;
};

} // namespace zyr::host
