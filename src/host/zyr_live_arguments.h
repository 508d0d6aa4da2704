/// The arguments of "zyr-host serve" and "zyr-host view".
#pragma once

#include "host/zyr_command_line.h"

#include <CLI/CLI.hpp>

namespace zyr::host {

/// Holds what was parsed, so it has to live as long as the parser.
class LiveArguments {
public:
    /// Adds the subcommands. What runs leaves its exit code in p_result.
    void add(CLI::App& p_program, int& p_result);

private:
    void addServe(CLI::App& p_program, int& p_result);
    void addView(CLI::App& p_program, int& p_result);

    ServeOptions m_serve;
    ViewOptions m_view;
};

} // namespace zyr::host
