/// Completion of the command line in shells, made from the options themselves.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace zyr::host {

/// A script for "bash", "zsh" or "fish" that completes commands, options and what options can be set to; file names
/// where anything may stand. Empty for another shell.
std::string makeCompletion(const CLI::App& p_app, const std::string& p_shell);

} // namespace zyr::host
