/// Options that several subcommands have in common.
#pragma once

#include "host/zyr_framework.h"

#include <CLI/CLI.hpp>

namespace zyr::host {

/// Where the log goes and what it takes. The record has to outlive the parsing, here and below.
void addLogOptions(CLI::App& p_command, FrameworkOptions& p_options);

/// Where modules and plug-ins are, and the log's.
void addFrameworkOptions(CLI::App& p_command, FrameworkOptions& p_options);

} // namespace zyr::host
