/// The options of "zyr-host conform".
#pragma once

#include "host/conform/zyr_conform_command.h"

#include <CLI/CLI.hpp>

namespace zyr::host {

struct ConformArguments {
    /// Adds the command; its exit code goes to `p_result`.
    void add(CLI::App& p_program, int& p_result);

private:
    ConformOptions m_options;
};

} // namespace zyr::host
