/// The arguments of "zyr-host object" and the subcommands below it.
#pragma once

#include "host/zyr_object_command.h"
#include "host/zyr_pack_arguments.h"

#include <CLI/CLI.hpp>

namespace zyr::host {

/// Holds what was parsed, so it has to live as long as the parser.
class ObjectArguments {
public:
    /// Adds the subcommand. What runs leaves its exit code in p_result.
    void add(CLI::App& p_program, int& p_result);

private:
    void addShow(CLI::App& p_object, int& p_result);
    void addCheck(CLI::App& p_object, int& p_result);
    void addDiff(CLI::App& p_object, int& p_result);
    void addConvert(CLI::App& p_object, int& p_result);

    ObjectShowOptions m_show;
    ObjectCheckOptions m_check;
    ObjectDiffOptions m_diff;
    ObjectConvertOptions m_convert;
    PackArguments m_pack;
};

} // namespace zyr::host
